// A device that has something for every translator, and its ten roots.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/Model.h"
#include "host/Native.h"
#include "host/Roots.h"

namespace support {

using Roots = std::vector<Rok::Ptr<Rok::PtrInterface>>;

// All eleven sections of a document, each with as little as makes its translators write.
extern const std::string_view smallDocument;

struct House {
  explicit House(std::string_view document = smallDocument);

  // Builds all roots in their order. Throws: what leaves one of them.
  void build();
  // Builds one root beside those that are there.
  void build(std::string_view root);

  host::Native native;
  host::Model model;
  Roots roots;
};

// Its class maps and policy maps of the type `qos`, and its IPv4 ACLs.
Qos::Input::ClassMapTypeConfig& classMaps(const host::Native& native);
Qos::Input::PolicyMapTypeConfig& policyMaps(const host::Native& native);
Acl::Input::AclTypeConfig& acls(const host::Native& native);

// A class of a policy map, with an action that sets traffic class 5.
Rok::Ptr<Qos::ClassAction> newClassAction(const Rok::String& name);

// The model as a text.
std::string text(const host::Model& model);

// What fresh roots make of a native side and an output without anything in it.
std::string freshModel(const host::Native& native);
// The same with a single root.
std::string freshModel(const host::Native& native, std::string_view root);

// The number of notifiees of each native object that has any, by its place.
using Watched = std::map<std::string, std::size_t>;
Watched watched(const host::Native& native);

}  // namespace support
