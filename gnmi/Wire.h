// OVERVIEW: answers as bytes, from the leaf tables and without protobuf's objects. A notification is
// a body, its updates and deletions, which all subscribers of one encoding and one filter share; and
// a head, which each has of its own. The same bytes serve an answer of Get and one of Subscribe.
//
// RULES
// - Updates and deletions have full paths, with all keys. The prefix has origin and target alone.
// - A leaf by itself is a scalar of the encoding: by PROTO a typed one, in which enumerations and
//   identities are their names, numbers without sign `uint_val`, and decimals `double_val`.
//
// EXAMPLE: a record of which all leaves changed, and one that went
//   Wire wire(view, Wire::Encoding::proto);
//   std::string body;
//   wire.updates(body, {kinds::queue, {"q"}, record}, host::allRows);
//   wire.deletion(body, kinds::queue, {"r"});
//   const std::string head = notificationHead(timestamp, prefix);
//   send(messageHead(head.size() + body.size()) + head + body);
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/openconfig/NodeJson.h"

namespace server {

class Wire {
 public:
  enum class Encoding : unsigned char { json, jsonIetf, proto };

  // The view must outlive it.
  Wire(const host::View& view, Encoding encoding);

  // Appends an update for each of the rows that is there. Returns how many are.
  std::size_t updates(std::string& body, const host::RecordAt& at, host::RowSet rows);
  // Appends the update of a node by its value as JSON. The node is the one at `below` (containers
  // and a leaf, or empty) of an entry; without a kind, of the root.
  void jsonUpdate(std::string& body, const host::RecordKind* kind, const host::Keys& keys,
                  std::string_view below, std::string_view json);
  // Appends the deletion of such a node.
  void deletion(std::string& body, const host::RecordKind* kind, const host::Keys& keys,
                std::string_view below = {});

  host::JsonStyle style() const;

 private:
  // The elements of a path below the record that has the leaf, as bytes.
  struct Row {
    std::string elements;
    std::size_t leaf;
    host::LeafType type;
  };
  struct Kind {
    std::string containers;  // the elements from the holder to the list or the container, as bytes
    std::string_view list;   // the name of the list
    std::vector<Row> rows;
  };

  void add(const host::RecordKind& kind);
  void wayTo(const host::RecordKind& kind, std::span<const std::string_view> keys);
  void nodeWay(const host::RecordKind* kind, const host::Keys& keys, std::string_view below);
  void update(std::string& body, std::string_view below);
  void setValue(host::LeafType type, const host::LeafValue& value);
  void setTyped(host::LeafType type, const host::LeafValue& value);
  void setJson(std::string_view json);

  const host::View& view_;
  const Encoding encoding_;
  std::unordered_map<const host::RecordKind*, Kind> kinds_;
  std::string way_;    // the elements to the record or node, as bytes
  std::string value_;  // the typed value, as bytes
  std::string json_;
};

// What a notification has beside its body. Both are left out when they are empty.
struct NotificationPrefix {
  std::string_view origin = {};
  std::string_view target = {};
};
std::string notificationHead(std::int64_t timestamp, const NotificationPrefix& prefix);
// What stands before a notification of so many bytes in a SubscribeResponse; in a GetResponse, once
// for each.
std::string messageHead(std::size_t notification);
// The SubscribeResponse that says that all was sent that was there.
std::string_view syncResponse();

}  // namespace server
