# What is installed, and where: libraries, headers, CMake package, pkg-config files, program, YANG.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/qosopenconfig)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/qosopenconfig)

# Each finds the libraries from where it lies, also where the loader doesn't look by itself.
file(RELATIVE_PATH to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(libraries qosopenconfig qosopenconfig_host)
set_target_properties(${libraries} PROPERTIES INSTALL_RPATH $ORIGIN)
set_target_properties(qosoc PROPERTIES INSTALL_RPATH $ORIGIN/${to_libraries})
foreach(library IN LISTS libraries)
  target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:${headers}>)
endforeach()

install(TARGETS ${libraries} EXPORT qosopenconfigTargets
  LIBRARY COMPONENT library NAMELINK_COMPONENT development)
install(TARGETS qosoc COMPONENT program)
# In /usr it does, and Debian wants no such path there.
function(qos_plain_in_usr component)
  foreach(file IN LISTS ARGN)
    install(CODE "if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
      file(RPATH_REMOVE FILE \"\$ENV{DESTDIR}/usr/${file}\")
    endif()" COMPONENT ${component})
  endforeach()
endfunction()
foreach(library IN LISTS libraries)
  qos_plain_in_usr(library ${CMAKE_INSTALL_LIBDIR}/$<TARGET_FILE_NAME:${library}>)
endforeach()
qos_plain_in_usr(program ${CMAKE_INSTALL_BINDIR}/$<TARGET_FILE_NAME:qosoc>)

# The headers of whole floors, and of the upper two what an embedder needs. What stands in them is
# exported by the libraries.
install(DIRECTORY Dorpel Velmo Rok models DESTINATION ${headers} COMPONENT development
  FILES_MATCHING PATTERN *.h)
set(upper_headers
  QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h
  QosOpenConfig/QosOpenConfigClassifierKivToOCSmAcl.h
  QosOpenConfig/QosOpenConfigClassifierKivToOCSmClassMap.h
  QosOpenConfig/QosOpenConfigClassifierKivToOCSmPolicyMap.h
  QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h
  QosOpenConfig/QosOpenConfigForwardingGroupKivToOcSm.h
  QosOpenConfig/QosOpenConfigHelper.h
  QosOpenConfig/QosOpenConfigHelperComments.h
  QosOpenConfig/QosOpenConfigHelperTxQueues.h
  QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h
  QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSmBindings.h
  QosOpenConfig/QosOpenConfigPfcKivToOCSm.h
  QosOpenConfig/QosOpenConfigQueueKivToOcSm.h
  QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h
  QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h
  QosOpenConfig/QosOpenConfigTypes.h
  host/Changes.h
  host/CommentFaults.h
  host/Fault.h
  host/Feed.h
  host/JsonSchema.h
  host/JsonWriter.h
  host/KeptRoots.h
  host/LeafDiff.h
  host/LeavesOfText.h
  host/Model.h
  host/ModelReader.h
  host/ModelWriter.h
  host/Native.h
  host/NativeReader.h
  host/NativeWriter.h
  host/OpenConfigJson.h
  host/Pointer.h
  host/Roots.h
  host/SavedState.h
  host/TextPosition.h
  host/Version.h
  host/feed/FeedLine.h
  host/feed/LeafChanges.h
  host/feed/RecordChange.h
  host/openconfig/Leaf.h
  host/openconfig/LeafText.h
  host/openconfig/Leaves.h
  host/openconfig/RecordKind.h
  host/openconfig/RecordStore.h
  host/openconfig/Subtree.h
  host/openconfig/View.h)
foreach(header IN LISTS upper_headers)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${headers}/${folder} COMPONENT development)
endforeach()

set(made ${PROJECT_BINARY_DIR}/packaging)
configure_package_config_file(packaging/qosopenconfigConfig.cmake.in
  ${made}/qosopenconfigConfig.cmake INSTALL_DESTINATION ${package} NO_SET_AND_CHECK_MACRO)
# Before 1.0 each minor version may change what is there.
write_basic_package_version_file(${made}/qosopenconfigConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${made}/qosopenconfigConfig.cmake ${made}/qosopenconfigConfigVersion.cmake
  DESTINATION ${package} COMPONENT development)
install(EXPORT qosopenconfigTargets NAMESPACE qosopenconfig:: DESTINATION ${package}
  COMPONENT development)

# They name the prefix from where they lie, so that it may be another one when this is installed.
file(RELATIVE_PATH pc_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pc_prefix ${pc_prefix})
foreach(dir IN ITEMS libdir includedir)
  string(TOUPPER CMAKE_INSTALL_${dir} variable)
  cmake_path(APPEND pc_${dir} "\${prefix}" ${${variable}})
endforeach()
foreach(name IN ITEMS qosopenconfig qosopenconfig-host)
  configure_file(packaging/${name}.pc.in ${made}/${name}.pc @ONLY)
  install(FILES ${made}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
endforeach()

install(FILES yang/qosoc-augments.yang
  DESTINATION ${CMAKE_INSTALL_DATADIR}/yang/modules/qosopenconfig COMPONENT program)
# What the program prints of itself. Where the packages go, zsh looks for what vendors bring.
set(share ${PROJECT_BINARY_DIR}/share)
set(zsh zsh/site-functions)
if(CMAKE_INSTALL_PREFIX STREQUAL /usr)
  set(zsh zsh/vendor-completions)
endif()
install(FILES ${share}/qosoc.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
install(FILES ${share}/qosoc.bash RENAME qosoc
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)
install(FILES ${share}/_qosoc DESTINATION ${CMAKE_INSTALL_DATADIR}/${zsh} COMPONENT program)
install(FILES ${share}/qosoc-native.schema.json
  DESTINATION ${CMAKE_INSTALL_DATADIR}/qosopenconfig COMPONENT program)
install(FILES LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documents)
