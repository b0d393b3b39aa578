# The library `days`: what makes, runs and judges a random day.
set(include ${PROJECT_BINARY_DIR}/include/days)
file(MAKE_DIRECTORY ${include}/tests)
file(CREATE_LINK ${CMAKE_CURRENT_LIST_DIR} ${include}/tests/days SYMBOLIC)
file(CREATE_LINK ${CMAKE_CURRENT_LIST_DIR}/../support ${include}/tests/support SYMBOLIC)

set(sources
  ChangeWriter.cpp
  Day.cpp
  Device.cpp
  Difference.cpp
  Exclusions.cpp
  Facts.cpp
  Follower.cpp
  Reproducer.cpp
  check/Case.cpp
  check/Claims.cpp
  check/Document.cpp
  check/Effects.cpp
  check/Exemptions.cpp
  check/Grammar.cpp
  check/Translation.cpp
  exclusions/Attachments.cpp
  exclusions/Bindings.cpp
  exclusions/Classifiers.cpp
  exclusions/ForwardingGroups.cpp
  exclusions/Native.cpp
  exclusions/Profiles.cpp
  exclusions/Queues.cpp
  exclusions/Start.cpp)
list(TRANSFORM sources PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
add_library(days STATIC ${sources})
target_include_directories(days PUBLIC ${include})
target_link_libraries(days PUBLIC qos_translators_headers qos_host_headers qos_host_whole
  PRIVATE qos_options)
target_precompile_headers(days PRIVATE <algorithm> <map> <set> <string> <vector> <Rok/Rok.h>
  <host/Value.h>)
set_target_properties(days PROPERTIES UNITY_BUILD ${QOS_UNITY} UNITY_BUILD_BATCH_SIZE 8)
