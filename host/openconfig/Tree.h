// Writes the OpenConfig tree. A container, a list or an entry is written with the first leaf below
// it, or not at all, so that a renderer just tells what may be there:
//
//   tree.list("queues", "queue", [&] {
//     tree.entry("name", name, native, [&] { tree.word("name", name); });
//   });
//
// What a leaf can't hold is left out, with a warning. The tree knows the path of that leaf;
// `native()` tells the native object that the value comes from, and is asked only then.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/JsonWriter.h"
#include "host/Sorted.h"

namespace host {

class Tree {
 public:
  using Warn = std::function<void(const std::string&)>;

  Tree(Layout layout, const Warn& warn, const TextSink& sink = nullptr)
      : out_(layout, sink), warn_(warn) {}

  // A whole text: one container, which is there even when it is empty. With a sink, that gets the
  // text, and the result is empty.
  template <class Body>
  std::string whole(std::string_view name, const Body& body) {
    out_.beginObject();
    container(name, [&] {
      beginLevels();
      body();
    });
    out_.endObject();
    return out_.take();
  }

  template <class Body>
  void container(std::string_view name, const Body& body) {
    level({.name = name}, body);
  }

  // The list `name` in the container `around`.
  template <class Body>
  void list(std::string_view around, std::string_view name, const Body& body) {
    container(around, [&] { level({.name = name, .isList = true}, body); });
  }

  // An entry of a list, under a key that is a text. Without a key, it is bookkeeping: not written.
  template <class Native, class Body>
  void entry(std::string_view key, std::string_view value, const Native& native, const Body& body) {
    if (value.empty()) return;
    if (isYangString(value)) return level({.key = key, .value = value}, body);
    entryLeftOut(key, value, article(key) + " that YANG strings can't hold", native());
  }
  void entryLeftOut(std::string_view key, std::string_view value, std::string_view reason,
                    std::string_view native);

  // A list of everything in a collection by name: `native(name)` and `body(name, value)`.
  template <class Map, class Native, class Body>
  void list(std::string_view around, std::string_view name, std::string_view key, const Map& map,
            const Native& native, const Body& body) {
    list(around, name, [&] {
      for (const auto& [text, value] : sorted(map)) {
        entry(
            key, text, [&, &text = text] { return native(text); },
            [&, &text = text, &value = value] { body(text, *value); });
      }
    });
  }

  // A leaf with the name of something. Without one, it is not written.
  template <class Native>
  void name(std::string_view leaf, std::string_view name, const Native& native) {
    if (isYangString(name)) return word(leaf, name);
    leftOut(leaf, notAName(name), native());
  }
  // A leaf with a text that fits. An empty one is not written.
  void word(std::string_view leaf, std::string_view text);
  void number(std::string_view leaf, std::uint64_t number);
  // RFC 7951 writes numbers of 64 bits as texts.
  void number64(std::string_view leaf, std::uint64_t number) { word(leaf, std::to_string(number)); }
  void boolean(std::string_view leaf, bool v);
  // A leaf-list. An empty one is not written.
  void numbers(std::string_view leaf, const std::vector<unsigned>& numbers);

  void leftOut(std::string_view leaf, std::string_view reason, std::string_view native);

 private:
  // A container; a list; or an entry of a list, which has a key in place of a name.
  struct Level {
    std::string_view name = {};
    bool isList = false;
    std::string_view key = {};
    std::string_view value = {};
  };

  template <class Body>
  void level(const Level& level, const Body& body) {
    levels_.push_back(level);
    body();
    endLevel();
  }
  void beginLevels();
  void endLevel();
  void key(std::string_view leaf);
  void warn(const std::string& path, std::string_view reason, std::string_view native) const;
  std::string path() const;

  static bool isYangString(std::string_view text);
  static std::string article(std::string_view key);
  static std::string notAName(std::string_view text);

  JsonWriter out_;
  const Warn& warn_;
  std::vector<Level> levels_;
  std::size_t begun_ = 0;  // so many of them are written
};

}  // namespace host
