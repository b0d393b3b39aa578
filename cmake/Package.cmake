# The packages of `cpack -G DEB`: the libraries, what it takes to build with them, and the program.
# Each is a component of the installation.
set(QOS_MAINTAINER "qosopenconfig maintainers <maintainers@qosopenconfig.example>"
  CACHE STRING "Whom the packages name as their maintainer")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT ${QOS_MAINTAINER})
# CPack's own default, which it leaves out: so a package's first line is its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_NAME} built using CMake")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_OUTPUT_FILE_PREFIX packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development program)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SOURCE ${PROJECT_NAME})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/QosOpenConfig ${PROJECT_BINARY_DIR}/host)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# The trigger in the place of the scripts that CPack writes where none are named; these are not there.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
  ${PROJECT_SOURCE_DIR}/packaging/triggers postinst postrm)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# Of exactly this version.
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_PROGRAM_DEPENDS library)

file(TIMESTAMP CHANGELOG.md date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(packaging/changelog.in ${made}/changelog @ONLY)
configure_file(packaging/copyright ${made}/copyright COPYONLY)
execute_process(COMMAND ${QOS_GZIP} -9 --no-name --force ${made}/changelog)

# qos_package(COMPONENT NAME SECTION DESCRIPTION), with what Debian wants to find in each package and
# an installation by hand doesn't get.
function(qos_package component name section description)
  string(TOUPPER ${component} key)
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${key}_DESCRIPTION ${description} PARENT_SCOPE)
  install(FILES ${made}/copyright ${made}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name}
    COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

qos_package(library libqosopenconfig${PROJECT_VERSION_MAJOR} libs
  "QoS configuration into an OpenConfig model - libraries
State machines that keep the OpenConfig QoS model of a device in line with
its native configuration, event by event, and a host for them: the native
document and its changes, both formats of the model, and a feed of changes.")
qos_package(development libqosopenconfig-dev libdevel
  "QoS configuration into an OpenConfig model - development files
Headers, CMake package and pkg-config files for programs that embed the
translators of libqosopenconfig${PROJECT_VERSION_MAJOR}.")
qos_package(program qosoc net
  "QoS configuration into an OpenConfig model - program
qosoc reads the native QoS configuration of a device as a JSON document,
applies streams of changes to it, and prints the OpenConfig QoS model, or
what each change changed in it.")

include(CPack)
