// Paths of gNMI as messages, from the texts that people write, and what a resolved one says.
#pragma once

#include <gnmi.pb.h>

#include <string>
#include <string_view>

#include "gnmi/Path.h"
#include "gnmi/Refused.h"

namespace support {

// "/qos/queues/queue[name=q]"; in a key's value, `\` stands before what is meant as it is.
inline gnmi::Path gnmiPath(std::string_view text) {
  gnmi::Path path;
  const auto upTo = [&](std::string_view ends) {
    std::string part;
    for (; !text.empty() && ends.find(text.front()) == std::string_view::npos;
         text.remove_prefix(1)) {
      if (text.front() == '\\') text.remove_prefix(1);
      part += text.front();
    }
    return part;
  };
  if (text == "/") return path;
  while (!text.empty()) {
    text.remove_prefix(1);
    gnmi::PathElem& elem = *path.add_elem();
    elem.set_name(upTo("/["));
    while (text.starts_with('[')) {
      text.remove_prefix(1);
      const std::string name = upTo("=");
      text.remove_prefix(1);
      (*elem.mutable_key())[name] = upTo("]");
      text.remove_prefix(1);
    }
  }
  return path;
}

// "/qos/queues/queue[name=*]"
inline std::string gnmiShown(const server::Path::Top& top) {
  std::string path;
  std::size_t key = 0;
  for (const host::Node* node : top.way) {
    path += '/' + node->name;
    if (node->list != nullptr) {
      path += '[' + std::string(node->list->key) + '=' + top.keys[key++].value_or("*") + ']';
    }
  }
  return path.empty() ? "/" : path;
}

// "UNIMPLEMENTED path.elem[0]: ..."; empty when it is served.
template <class Ask>
std::string gnmiRefusal(const Ask& ask) {
  try {
    ask();
  } catch (const server::Refused& refused) {
    const char* code = refused.code() == grpc::StatusCode::UNIMPLEMENTED      ? "UNIMPLEMENTED "
                       : refused.code() == grpc::StatusCode::INVALID_ARGUMENT ? "INVALID_ARGUMENT "
                                                                              : "? ";
    return code + std::string(refused.what());
  }
  return {};
}

}  // namespace support
