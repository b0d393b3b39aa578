#include "host/publish/Image.h"

#include <cstring>
#include <new>
#include <string>

#include "host/publish/EntryName.h"

namespace host {
namespace {

// How a value stands in an image: a byte that says which form it has, and the value. One that is not
// there has no bytes.
enum class Form : char { no, yes, number, text, ownKey, list };

template <class Number>
void appendNumber(std::string& out, Number number) {
  char bytes[sizeof number];
  std::memcpy(bytes, &number, sizeof number);
  out.append(bytes, sizeof number);
}
template <class Number>
Number numberAt(const char* bytes) {
  Number number;
  std::memcpy(&number, bytes, sizeof number);
  return number;
}

void append(std::string& out, const LeafValue& value, std::string_view ownKey) {
  if (isAbsent(value)) return;
  const auto form = [&](Form which) { out += static_cast<char>(which); };
  if (const auto* boolean = std::get_if<bool>(&value)) {
    form(*boolean ? Form::yes : Form::no);
  } else if (const auto* number = std::get_if<std::uint64_t>(&value)) {
    form(Form::number);
    appendNumber(out, *number);
  } else if (const auto text = textOf(value)) {
    const bool isKey = *text == ownKey;
    form(isKey ? Form::ownKey : Form::text);
    if (!isKey) out += *text;
  } else {
    form(Form::list);
    for (const unsigned element : std::get<std::vector<unsigned>>(value))
      appendNumber(out, element);
  }
}

std::vector<unsigned> listOf(std::string_view bytes) {
  std::vector<unsigned> list(bytes.size() / sizeof(unsigned));
  for (std::size_t i = 0; i < list.size(); ++i) {
    list[i] = numberAt<unsigned>(bytes.data() + i * sizeof(unsigned));
  }
  return list;
}

bool isOwnKey(std::string_view bytes) {
  return !bytes.empty() && bytes.front() == static_cast<char>(Form::ownKey);
}

// The last key of a name of an entry.
std::string_view ownKeyOf(std::string_view name) {
  Keys keys;
  keysOfName(name, keys);
  return keys.empty() ? std::string_view() : keys.back();
}

}  // namespace

Ref<Image> Image::withRoom(const RecordKind& kind, std::size_t leaves, std::string_view name,
                           std::string_view values) {
  const std::size_t table = leaves * sizeof(Leaf);
  const std::size_t tailSize = table + values.size() + name.size();
  void* block = ::operator new(sizeof(Image) + tailSize);
  auto* image = new (block) Image(kind, leaves, tailSize);
  char* tail = reinterpret_cast<char*>(image + 1);
  values.copy(tail + table, values.size());  // memcpy takes no null of an empty text
  name.copy(tail + table + values.size(), name.size());
  image->nameAt_ = static_cast<std::uint32_t>(table + values.size());
  image->nameSize_ = static_cast<std::uint32_t>(name.size());
  return Ref<Image>(image);
}

Ref<Image> Image::make(const Source& source) {
  const bool isNew = source.before == nullptr || source.before->isGone();
  const std::string_view ownKey = source.keys.empty() ? std::string_view() : source.keys.back();
  const std::size_t leaves = source.kind.leaves.size();
  static thread_local std::string values;
  static thread_local std::vector<Leaf> table;
  values.clear();
  table.clear();
  bool isChanged = isNew;
  for (std::size_t i = 0; i < leaves; ++i) {
    const auto at = static_cast<std::uint32_t>(values.size());
    append(values, source.kind.read(source.record, i, source.keys, {}), ownKey);
    const std::string_view value = std::string_view(values).substr(at);
    const bool isSame = !isNew && source.before->value(i) == value;
    table.push_back({isSame ? source.before->leafChanged(i) : source.commit, at,
                     static_cast<std::uint32_t>(value.size())});
    isChanged |= !isSame;
  }
  if (!isChanged) return {};
  Ref<Image> image = withRoom(source.kind, leaves, source.name, values);
  std::copy(table.begin(), table.end(), image->leafTable());
  image->changed_ = source.commit;
  image->came_ = isNew ? source.commit : source.before->came_;
  if (source.before != nullptr) {
    image->went_ = isNew ? source.before->changed_ : source.before->went_;
  }
  return image;
}

Ref<Image> Image::gone(const Image& before, Commit commit) {
  Ref<Image> image = withRoom(before.kind(), 0, before.name(), {});
  image->changed_ = commit;
  image->went_ = commit;
  return image;
}

void Image::destroy() const {
  this->~Image();
  ::operator delete(const_cast<Image*>(this));
}

void Image::keys(Keys& keys) const { keysOfName(name(), keys); }

std::string_view Image::value(std::size_t number) const {
  const Leaf& leaf = leafTable()[number];
  return {tail() + leaves_ * sizeof(Leaf) + leaf.at, leaf.size};
}

LeafValue Image::leaf(std::size_t number) const {
  std::string_view bytes = value(number);
  if (bytes.empty()) return {};
  const auto form = static_cast<Form>(bytes.front());
  bytes.remove_prefix(1);
  switch (form) {
    case Form::no:
      return false;
    case Form::yes:
      return true;
    case Form::number:
      return numberAt<std::uint64_t>(bytes.data());
    case Form::text:
      return bytes;
    case Form::ownKey:
      return ownKeyOf(name());
    case Form::list:
      break;
  }
  return listOf(bytes);
}

RecordAt Image::at(const Keys& keys) const {
  return {*kind_, keys, this, [](const RecordAt& at, std::size_t leaf) {
            const auto& image = *static_cast<const Image*>(at.record);
            return isOwnKey(image.value(leaf)) ? LeafValue(at.keys.back()) : image.leaf(leaf);
          }};
}

RowSet Image::changedSince(Commit commit, std::span<const View::Row> rows) const {
  RowSet changed = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (leafChanged(rows[i].leaf) > commit) changed |= RowSet{1} << i;
  }
  return changed;
}

bool Image::hasLostSince(Commit commit) const {
  if (went_ > commit) return true;
  if (came_ > commit) return false;
  for (std::size_t i = 0; i < leaves_; ++i) {
    if (leafChanged(i) > commit && value(i).empty()) return true;
  }
  return false;
}

}  // namespace host
