# The compiler gets several sources of a target at once: most of what one of them costs is what all of
# them instantiate. At most so many, and of one folder; sources with SKIP_UNITY_BUILD_INCLUSION or
# with compile options of their own stay alone.
#
#   qos_unity(qos_host 8)
#
# The names in their unnamed namespaces must differ. Where QOS_UNITY is off, as it is for a release,
# each source is compiled alone.
function(qos_unity target size)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${QOS_UNITY} UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    get_filename_component(folder ${source} DIRECTORY)
    string(MAKE_C_IDENTIFIER "in_${folder}" folder)
    list(APPEND ${folder} ${source})
    list(LENGTH ${folder} count)
    math(EXPR batch "(${count} - 1) / ${size}")
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${folder}_${batch})
  endforeach()
endfunction()
