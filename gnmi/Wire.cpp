#include "gnmi/Wire.h"

#include <charconv>

#include "gnmi/Protobuf.h"

namespace server {
namespace {

using namespace protobuf;
using host::RecordKind;

// The numbers of the fields, as gnmi.proto has them.
namespace field {
constexpr unsigned responseNotification = 1;  // of a GetResponse and of a SubscribeResponse
constexpr unsigned responseSync = 3;
constexpr unsigned timestamp = 1, prefix = 2, update = 4, deletion = 5;
constexpr unsigned updatePath = 1, updateValue = 3;
constexpr unsigned origin = 2, elem = 3, target = 4;
constexpr unsigned elemName = 1, elemKey = 2, keyName = 1, keyValue = 2;
constexpr unsigned stringValue = 1, uintValue = 3, boolValue = 4, listValue = 8, jsonValue = 10,
                   jsonIetfValue = 11, doubleValue = 14;
constexpr unsigned listElement = 1;
}  // namespace field

void appendElement(std::string& out, std::string_view name) {
  appendHead(out, field::elem, fieldSize(name.size()));
  appendBytes(out, field::elemName, name);
}
void appendElements(std::string& out, std::string_view path) {
  while (!path.empty()) appendElement(out, host::takeName(path));
}

void appendEntry(std::string& out, std::string_view list, std::string_view key,
                 std::string_view value) {
  const std::size_t keySize = fieldSize(key.size()) + fieldSize(value.size());
  appendHead(out, field::elem, fieldSize(list.size()) + fieldSize(keySize));
  appendBytes(out, field::elemName, list);
  appendHead(out, field::elemKey, keySize);
  appendBytes(out, field::keyName, key);
  appendBytes(out, field::keyValue, value);
}

double decimal(std::string_view text) {
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

Wire::Wire(const host::View& view, Encoding encoding) : view_(view), encoding_(encoding) {
  for (const RecordKind* kind : view.outermost()) add(*kind);
}

void Wire::add(const RecordKind& kind) {
  Kind& to = kinds_[&kind];
  if (kind.parent == nullptr) appendElement(to.containers, kind.root->name);
  std::string_view path = kind.path;
  if (kind.isList()) {
    const std::size_t slash = path.rfind('/');
    to.list = path.substr(slash + 1);
    path = slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
  }
  appendElements(to.containers, path);
  for (const host::View::Row& row : view_.rows(kind)) {
    Row& added = to.rows.emplace_back(Row{{}, row.leaf, row.type});
    appendElements(added.elements, row.path);
  }
  for (const RecordKind* child : view_.children(kind)) add(*child);
}

std::size_t Wire::updates(std::string& body, const host::RecordAt& at, host::RowSet rows) {
  const std::vector<Row>& all = kinds_.at(&at.kind).rows;
  way_.clear();
  wayTo(at.kind, at.keys);
  std::size_t count = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if ((rows >> i & 1) == 0) continue;
    const host::LeafValue value = at.leaf(all[i].leaf);
    if (host::isAbsent(value)) continue;
    setValue(all[i].type, value);
    update(body, all[i].elements);
    ++count;
  }
  return count;
}

void Wire::jsonUpdate(std::string& body, const RecordKind* kind, const host::Keys& keys,
                      std::string_view below, std::string_view json) {
  nodeWay(kind, keys, below);
  setJson(json);
  update(body, {});
}

void Wire::deletion(std::string& body, const RecordKind* kind, const host::Keys& keys,
                    std::string_view below) {
  nodeWay(kind, keys, below);
  appendBytes(body, field::deletion, way_);
}

host::JsonStyle Wire::style() const {
  return encoding_ == Encoding::jsonIetf ? host::JsonStyle::ietf : host::JsonStyle::plain;
}

// ===== Paths

void Wire::wayTo(const RecordKind& kind, std::span<const std::string_view> keys) {
  const Kind& to = kinds_.at(&kind);
  const auto above = kind.isList() ? keys.first(keys.size() - 1) : keys;
  if (kind.parent != nullptr) wayTo(*kind.parent, above);
  way_ += to.containers;
  if (kind.isList()) appendEntry(way_, to.list, kind.key, keys.back());
}

void Wire::nodeWay(const RecordKind* kind, const host::Keys& keys, std::string_view below) {
  way_.clear();
  if (kind != nullptr) wayTo(*kind, keys);
  appendElements(way_, below);
}

void Wire::update(std::string& body, std::string_view below) {
  const std::size_t path = way_.size() + below.size();
  appendHead(body, field::update, fieldSize(path) + fieldSize(value_.size()));
  appendHead(body, field::updatePath, path);
  body += way_;
  body += below;
  appendBytes(body, field::updateValue, value_);
}

// ===== Values

void Wire::setValue(host::LeafType type, const host::LeafValue& value) {
  if (encoding_ == Encoding::proto) return setTyped(type, value);
  json_.clear();
  appendLeaf(json_, style(), type, value);
  setJson(json_);
}

void Wire::setJson(std::string_view json) {
  value_.clear();
  const bool isIetf = style() == host::JsonStyle::ietf;
  appendBytes(value_, isIetf ? field::jsonIetfValue : field::jsonValue, json);
}

void Wire::setTyped(host::LeafType type, const host::LeafValue& value) {
  value_.clear();
  if (const auto* boolean = std::get_if<bool>(&value)) {
    appendNumber(value_, field::boolValue, *boolean ? 1 : 0);
  } else if (const auto* number = std::get_if<std::uint64_t>(&value)) {
    appendNumber(value_, field::uintValue, *number);
  } else if (const auto text = host::textOf(value)) {
    if (type == host::LeafType::decimal64) {
      appendDouble(value_, field::doubleValue, decimal(*text));
    } else {
      const bool isIdentity = type == host::LeafType::identityref;
      appendBytes(value_, field::stringValue, isIdentity ? host::identityName(*text) : *text);
    }
  } else {
    const auto& list = std::get<std::vector<unsigned>>(value);
    std::size_t size = 0;
    for (const unsigned element : list) size += fieldSize(1 + varintSize(element));
    appendHead(value_, field::listValue, size);
    for (const unsigned element : list) {
      appendHead(value_, field::listElement, 1 + varintSize(element));
      appendNumber(value_, field::uintValue, element);
    }
  }
}

// ===== Messages

std::string notificationHead(std::int64_t timestamp, const NotificationPrefix& prefix) {
  std::string head;
  if (timestamp != 0) {
    appendNumber(head, field::timestamp, static_cast<std::uint64_t>(timestamp));
  }
  std::string path;
  if (!prefix.origin.empty()) appendBytes(path, field::origin, prefix.origin);
  if (!prefix.target.empty()) appendBytes(path, field::target, prefix.target);
  if (!path.empty()) appendBytes(head, field::prefix, path);
  return head;
}

std::string messageHead(std::size_t notification) {
  std::string head;
  appendHead(head, field::responseNotification, notification);
  return head;
}

std::string_view syncResponse() {
  static constexpr char bytes[] = {tag(field::responseSync, varintType), 1};
  return {bytes, sizeof bytes};
}

}  // namespace server
