// The leaves of a document in the format `openconfig`, by a walk that knows nothing of the tables.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/Json.h"
#include "rapidjson/stringbuffer.h"
#include "rapidjson/writer.h"

namespace support {

using FlatLeaves = std::map<std::string, std::string>;  // values as compact JSON by their paths

inline std::string jsonText(const host::rapidjson::Value& value) {
  host::rapidjson::StringBuffer buffer;
  host::rapidjson::Writer<host::rapidjson::StringBuffer> writer(buffer);
  value.Accept(writer);
  return {buffer.GetString(), buffer.GetSize()};
}

namespace Impl {

// Of an entry only the key is a leaf without a container around it.
inline std::string keyOf(const host::rapidjson::Value& entry) {
  for (const auto& member : entry.GetObject()) {
    if (member.value.IsObject() || member.value.IsArray()) continue;
    std::string key;
    for (const char c :
         member.value.IsString() ? std::string(member.value.GetString()) : jsonText(member.value)) {
      if (c == ']' || c == '\\') key += '\\';
      key += c;
    }
    return '[' + std::string(member.name.GetString()) + '=' + key + ']';
  }
  return "[none]";
}

inline void flatten(const host::rapidjson::Value& value, const std::string& path,
                    FlatLeaves& leaves) {
  if (value.IsObject()) {
    for (const auto& member : value.GetObject()) {
      const std::string name = member.name.GetString();
      // The members of the document are qualified, the roots of paths are not.
      flatten(member.value, path + '/' + (path.empty() ? name.substr(name.find(':') + 1) : name),
              leaves);
    }
  } else if (value.IsArray() && value.Size() > 0 && value[0].IsObject()) {
    for (const auto& entry : value.GetArray()) flatten(entry, path + keyOf(entry), leaves);
  } else {
    leaves.emplace(path, jsonText(value));
  }
}

}  // namespace Impl

inline FlatLeaves flatDocument(const std::string& document) {
  host::rapidjson::Document parsed;
  parsed.Parse(document.c_str());
  FlatLeaves leaves;
  Impl::flatten(parsed, "", leaves);
  return leaves;
}

}  // namespace support
