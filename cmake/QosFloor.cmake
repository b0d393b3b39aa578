# A floor of the architecture: an object library whose sources see the headers of their own floor and of the
# floors below, and of nothing else. Headers are included as "Floor/Header.h"; each floor gets an
# include directory that holds a link to its folder alone, so an upward include does not compile. The
# targets are qos_rok and qos_rok_headers: they must meet no other project's.
#
#   qos_floor(rok PATH Rok SOURCES Ptr.cpp ... FLOORS velmo)
#
# The handlers are many small functions, and what GCC allows a source to grow by inlining is used up
# halfway through them. With room for all, an event takes 10 to 25 % fewer instructions.
set(inlining $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:--param=large-unit-insns=60000>)
function(qos_floor name)
  cmake_parse_arguments(FLOOR "" "PATH" "SOURCES;FLOORS" ${ARGN})
  set(include ${PROJECT_BINARY_DIR}/include/${name})
  get_filename_component(parent ${include}/${FLOOR_PATH} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${FLOOR_PATH} ${include}/${FLOOR_PATH} SYMBOLIC)

  # The headers alone, for those that link the shared library.
  add_library(qos_${name}_headers INTERFACE)
  target_include_directories(qos_${name}_headers INTERFACE ${include})
  foreach(floor IN LISTS FLOOR_FLOORS)
    target_link_libraries(qos_${name}_headers INTERFACE qos_${floor}_headers)
  endforeach()

  add_library(qos_${name} OBJECT ${FLOOR_SOURCES})
  target_link_libraries(qos_${name} PUBLIC qos_${name}_headers PRIVATE qos_options)
  target_compile_options(qos_${name} PRIVATE ${inlining})
  set_target_properties(qos_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  set_property(GLOBAL APPEND PROPERTY QOS_FLOORS qos_${name})
endfunction()
