# gRPC, protobuf and what generates from their files, as Debian's libgrpc++-dev, libprotobuf-dev and
# protobuf-compiler-grpc bring them: QOS_GRPC_FOUND, and the target qos_grpc. The package files of gRPC
# fail where one of the three is missing, so the parts are looked for one by one.
include_guard()
find_program(QOS_PROTOC protoc)
find_program(QOS_GRPC_PLUGIN grpc_cpp_plugin)
find_path(QOS_GRPC_INCLUDE grpcpp/grpcpp.h)
find_path(QOS_PROTOBUF_INCLUDE google/protobuf/any.proto)
# gRPC's headers call Abseil's locks.
set(QOS_GRPC_FOUND TRUE)
foreach(library IN ITEMS grpc++ grpc gpr protobuf absl_synchronization)
  string(MAKE_C_IDENTIFIER "QOS_LIBRARY_${library}" found)
  find_library(${found} ${library})
  list(APPEND grpc_libraries ${${found}})
  if(NOT ${found})
    set(QOS_GRPC_FOUND FALSE)
  endif()
endforeach()
foreach(part IN ITEMS QOS_PROTOC QOS_GRPC_PLUGIN QOS_GRPC_INCLUDE QOS_PROTOBUF_INCLUDE)
  if(NOT ${part})
    set(QOS_GRPC_FOUND FALSE)
  endif()
  mark_as_advanced(${part})
endforeach()

if(QOS_GRPC_FOUND)
  find_package(Threads REQUIRED)
  add_library(qos_grpc INTERFACE)
  target_include_directories(qos_grpc SYSTEM INTERFACE ${QOS_GRPC_INCLUDE} ${QOS_PROTOBUF_INCLUDE})
  target_link_libraries(qos_grpc INTERFACE ${grpc_libraries} Threads::Threads)
endif()

# The protocol of some .proto files, as a static library of what is generated from them: messages and
# services. Its headers are included as <NAME.pb.h>.
#
#   qos_protocol(qos_gnmi_protocol PATH proto FILES gnmi_ext gnmi)
function(qos_protocol target)
  cmake_parse_arguments(PROTOCOL "" "PATH" "FILES" ${ARGN})
  set(from ${CMAKE_CURRENT_SOURCE_DIR}/${PROTOCOL_PATH})
  set(to ${CMAKE_CURRENT_BINARY_DIR}/${PROTOCOL_PATH})
  file(MAKE_DIRECTORY ${to})
  list(TRANSFORM PROTOCOL_FILES APPEND .proto OUTPUT_VARIABLE read)
  list(TRANSFORM read PREPEND ${from}/)
  foreach(file IN LISTS PROTOCOL_FILES)
    list(APPEND sources ${to}/${file}.pb.cc ${to}/${file}.grpc.pb.cc)
    list(APPEND headers ${to}/${file}.pb.h ${to}/${file}.grpc.pb.h)
  endforeach()
  add_custom_command(OUTPUT ${sources} ${headers}
    COMMAND ${QOS_PROTOC} -I ${from} -I ${QOS_PROTOBUF_INCLUDE} --cpp_out=${to} --grpc_out=${to}
      --plugin=protoc-gen-grpc=${QOS_GRPC_PLUGIN} ${read}
    DEPENDS ${read}
    VERBATIM)
  # For what reads the headers and compiles nothing.
  add_custom_target(${target}_generated DEPENDS ${headers})
  add_library(${target} STATIC ${sources} ${headers})
  add_dependencies(${target} ${target}_generated)
  target_include_directories(${target} SYSTEM PUBLIC ${to})
  target_link_libraries(${target} PUBLIC qos_grpc)
  target_compile_features(${target} PUBLIC cxx_std_20)
  # Generated code isn't ours to warn of.
  target_compile_options(${target} PRIVATE -w)
endfunction()
