#include "ForeignRapidJson.h"

#include <rapidjson/document.h>

namespace foreign {

std::uint64_t numberOf(const std::string& json) {
  rapidjson::Document document;
  rapidjson::StringStream stream(json.c_str());
  document.ParseStream(stream);
  return document.GetUint64();
}

bool hasMember(const std::string& json, const char* name) {
  rapidjson::Document document;
  rapidjson::StringStream stream(json.c_str());
  document.ParseStream(stream);
  return document.FindMember(name) != document.MemberEnd();
}

}  // namespace foreign
