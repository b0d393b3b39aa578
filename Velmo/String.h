// OVERVIEW
//   A value string whose copies share one immutable, counted buffer. The buffer keeps the hash of
//   its bytes, so a copy is an increment, and comparing or looking up a copied name is mostly a
//   compare of two pointers. One name is held in many places of this system (as a key, an
//   id, a config id), so copies must be cheap.
//
// RULES
//   - Any bytes are legal, NUL included. data() is always followed by a NUL.
//   - A change makes a new buffer unless this string is the only owner of its buffer.
//   - The count is plain: strings stay on one thread.
//   - At most 4 GiB less a few bytes; longer throws std::length_error.
//
// EXAMPLE
//   Velmo::String classifier("edge-in");
//   Velmo::String placeholder = classifier.addLeft("__yang_[").addRight("]_[]");
//   assert(placeholder == "__yang_[edge-in]_[]");
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

#include "Dorpel/Export.h"
#include "Velmo/Hash.h"

namespace Velmo {

class String {
 public:
  constexpr String() noexcept = default;
  String(const char* text) : String(std::string_view(text)) {}
  String(std::string_view text) : rep_(text.empty() ? nullptr : newRep(text, {})) {}
  String(const std::string& text) : String(std::string_view(text)) {}
  String(const String& other) noexcept : rep_(other.rep_) {
    if (rep_ != nullptr) ++rep_->references;
  }
  String(String&& other) noexcept : rep_(other.rep_) { other.rep_ = nullptr; }
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): the count goes up before it goes down
  String& operator=(const String& other) noexcept {
    if (other.rep_ != nullptr) ++other.rep_->references;
    release();
    rep_ = other.rep_;
    return *this;
  }
  String& operator=(String&& other) noexcept {
    std::swap(rep_, other.rep_);
    return *this;
  }
  ~String() { release(); }

  // Replaces the text. Copies keep theirs.
  String& assign(std::string_view text) { return *this = String(text); }
  // Puts another text behind it. Copies keep theirs. Throws: std::bad_alloc.
  QOS_EXPORT String& append(std::string_view text);

  // A new string with the text put in front.
  String addLeft(std::string_view text) const { return joined(text, *this); }
  // The same with the text behind.
  String addRight(std::string_view text) const { return joined(*this, text); }

  std::size_t size() const noexcept { return rep_ != nullptr ? rep_->size : 0; }
  bool empty() const noexcept { return rep_ == nullptr; }
  const char* data() const noexcept { return rep_ != nullptr ? rep_->text : ""; }
  operator std::string_view() const noexcept { return {data(), size()}; }

  // Whether the bytes are those before the NUL of `text`.
  bool equal(const char* text) const noexcept { return std::string_view(*this) == text; }
  // Negative, zero or positive, by unsigned bytes.
  int compare(std::string_view other) const noexcept {
    return std::string_view(*this).compare(other);
  }

  // Never 0. Computed once for a buffer and all its copies.
  std::uint32_t hash() const noexcept {
    if (rep_ != nullptr && rep_->hash != 0) return rep_->hash;
    return computeHash();
  }

  // True when both share one buffer. For tests: when they do is unspecified.
  bool shares(const String& other) const noexcept { return rep_ == other.rep_; }

  friend bool operator==(const String& a, const String& b) noexcept {
    if (a.rep_ == b.rep_) return true;
    if (a.rep_ == nullptr || b.rep_ == nullptr) return false;
    return a.rep_->size == b.rep_->size && sameBytes(*a.rep_, *b.rep_);
  }
  template <class Text>
  requires(std::convertible_to<const Text&, std::string_view> &&
           !std::same_as<Text, String>) friend bool
  operator==(const String& a, const Text& b) noexcept {
    return std::string_view(a) == std::string_view(b);
  }
  friend std::strong_ordering operator<=>(const String& a, const String& b) noexcept {
    if (a.rep_ == b.rep_) return std::strong_ordering::equal;
    return std::string_view(a) <=> std::string_view(b);
  }

 private:
  struct Rep {
    std::uint32_t references;
    std::uint32_t size;
    std::uint32_t hash;
    std::uint32_t capacity;  // bytes of text, without the NUL
    char text[1];
  };

  // A buffer with `left` and `right` one behind the other, and room for `reserve` bytes in all.
  QOS_EXPORT static Rep* newRep(std::string_view left, std::string_view right,
                                std::size_t reserve = 0);
  QOS_EXPORT static void freeRep(Rep* rep) noexcept;
  QOS_EXPORT std::uint32_t computeHash() const noexcept;
  QOS_EXPORT static bool sameBytes(const Rep& a, const Rep& b) noexcept;
  static String joined(std::string_view left, std::string_view right) {
    String result;
    if (!left.empty() || !right.empty()) result.rep_ = newRep(left, right);
    return result;
  }
  void release() noexcept {
    if (rep_ != nullptr && --rep_->references == 0) freeRep(rep_);
  }

  Rep* rep_ = nullptr;
};

QOS_EXPORT std::ostream& operator<<(std::ostream& out, const String& text);

}  // namespace Velmo
