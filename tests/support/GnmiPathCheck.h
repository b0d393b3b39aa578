// Paths made of bytes, held against a matcher that knows neither tables nor kinds: which leaves of a
// model a path takes in, by the texts of both alone.
#pragma once

#include <gnmi.pb.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "gnmi/Path.h"
#include "gnmi/Refused.h"
#include "host/openconfig/LeafPath.h"
#include "host/openconfig/RecordWalk.h"
#include "tests/support/GnmiPath.h"
#include "tests/support/HostModel.h"

namespace support {

using GnmiElems = google::protobuf::RepeatedPtrField<gnmi::PathElem>;

// Members of the augmenting module may be asked for without it.
inline bool gnmiElemMatches(const gnmi::PathElem& asked, const gnmi::PathElem& elem) {
  const std::string& name = asked.name();
  const std::string bare = elem.name().substr(elem.name().find(':') + 1);
  if (name != "*" && name != elem.name() && name != bare) return false;
  return std::all_of(asked.key().begin(), asked.key().end(), [&](const auto& key) {
    const auto own = elem.key().find(key.first);
    return own != elem.key().end() && (key.second == "*" || key.second == own->second);
  });
}

// Whether the leaf is what the elements from `i` on ask for from its element `k` on, or lies below.
inline bool gnmiMatches(const GnmiElems& asked, const GnmiElems& leaf, int i = 0, int k = 0) {
  if (i == asked.size()) return true;
  if (asked[i].name() == "...") {
    if (!asked[i].key().empty()) return false;
    for (int from = k; from <= leaf.size(); ++from) {
      if (gnmiMatches(asked, leaf, i + 1, from)) return true;
    }
    return false;
  }
  return k < leaf.size() && gnmiElemMatches(asked[i], leaf[k]) &&
         gnmiMatches(asked, leaf, i + 1, k + 1);
}

class GnmiPathCheck {
 public:
  GnmiPathCheck() : view_({.augments = true, .state = true, .interfaceRef = true}) {
    host::eachRecord(built_.model, view_, [&](const host::RecordAt& at) {
      for (std::size_t row = 0; row < view_.rows(at.kind).size(); ++row) {
        std::string path;
        host::appendEntryPath(path, at.kind, at.keys);
        host::appendBelow(path, view_.rows(at.kind)[row].path);
        leaves_.push_back({&at.kind, {at.keys.begin(), at.keys.end()}, row, gnmiPath(path)});
      }
    });
  }

  // What is wrong with the path that some bytes stand for; empty when nothing is.
  std::string check(std::string_view bytes) const {
    gnmi::Path path;
    gnmi::Path prefix;
    make(bytes, prefix, path);
    gnmi::Path whole = prefix;
    whole.MergeFrom(path);
    try {
      const server::Path resolved({prefix, path, "path"}, view_);
      const std::string wrong = compare(resolved, whole.elem());
      return wrong.empty() ? walked(resolved) : wrong;
    } catch (const server::Refused& refused) {
      const bool isServed = std::any_of(leaves_.begin(), leaves_.end(), [&](const Leaf& leaf) {
        return gnmiMatches(whole.elem(), leaf.path.elem());
      });
      return isServed ? "refused: " + std::string(refused.what()) : "";
    }
  }

 private:
  struct Leaf {
    const host::RecordKind* kind;
    std::vector<std::string> keys;
    std::size_t row;
    gnmi::Path path;
  };

  static std::size_t taken(std::string_view& bytes) {
    if (bytes.empty()) return 255;
    const auto byte = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    return byte;
  }

  // The path of a leaf, with elements changed, left out and put in.
  void make(std::string_view bytes, gnmi::Path& prefix, gnmi::Path& path) const {
    const std::size_t high = taken(bytes);
    const Leaf& leaf = leaves_[(high * 256 + taken(bytes)) % leaves_.size()];
    const std::size_t split = taken(bytes);
    std::size_t number = 0;
    for (const gnmi::PathElem& elem : leaf.path.elem()) {
      gnmi::Path& to = number++ < split ? prefix : path;
      if (!put(bytes, elem, to)) return;
    }
  }

  static bool put(std::string_view& bytes, const gnmi::PathElem& elem, gnmi::Path& to) {
    const auto keys = elem.key().empty() ? std::string() : elem.key().begin()->first;
    const std::size_t way = taken(bytes) % 32;
    if (way == 0) return false;
    if (way == 1) return true;
    if (way == 2 || way == 3) to.add_elem()->set_name("...");
    if (way == 3) return true;
    gnmi::PathElem& put = *to.add_elem();
    put = elem;
    if (way == 4) put.set_name("*");
    if (way == 5) put.clear_key();
    if (way == 6) put.mutable_key()->clear(), put.set_name("*");
    if (way == 7 && !keys.empty()) (*put.mutable_key())[keys] = "*";
    if (way == 8) (*put.mutable_key())["name"] = "q";
    if (way == 9 && !bytes.empty()) {
      const std::size_t size = std::min(bytes.size(), taken(bytes) % 8);
      put.set_name(std::string(bytes.substr(0, size)));
      bytes.remove_prefix(std::min(bytes.size(), size));
    }
    return true;
  }

  std::string compare(const server::Path& path, const GnmiElems& asked) const {
    for (const Leaf& leaf : leaves_) {
      const host::Keys keys(leaf.keys.begin(), leaf.keys.end());
      const bool isIn = (path.rows(*leaf.kind, keys) >> leaf.row & 1) != 0;
      if (isIn != gnmiMatches(asked, leaf.path.elem())) {
        return (isIn ? "takes in " : "leaves out ") + leaf.path.ShortDebugString();
      }
    }
    return {};
  }

  // A walk by keys comes to all records that a walk of the whole model finds wanted, and in its order.
  std::string walked(const server::Path& path) const {
    std::vector<const void*> expected;
    std::vector<const void*> found;
    const auto adding = [&path](std::vector<const void*>& to) {
      return [&path, &to](const host::RecordAt& at) {
        if (path.rows(at.kind, at.keys) != 0) to.push_back(at.record);
      };
    };
    host::eachRecord(built_.model, view_, adding(expected));
    host::eachRecord(
        built_.model, view_, [&](const auto& kind, auto above) { return path.wanted(kind, above); },
        adding(found));
    return found == expected ? "" : "another walk";
  }

  HostModel built_ = hostFullModel();
  host::View view_;
  std::vector<Leaf> leaves_;  // of each record all that the view shows, also where it is absent
};

}  // namespace support
