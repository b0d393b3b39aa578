#include "Velmo/String.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>

#include "Dorpel/Slab.h"

namespace Velmo {

namespace {

template <class Word>
std::uint64_t wordAt(const char* at) {
  Word word = 0;
  std::memcpy(&word, at, sizeof(word));
  return word;
}

// All bytes of a text that is shorter than a word, some of them twice.
std::uint64_t shortWord(const char* at, std::size_t size) {
  if (size >= 4) return wordAt<std::uint32_t>(at) << 32 | wordAt<std::uint32_t>(at + size - 4);
  if (size == 0) return 0;
  return wordAt<std::uint8_t>(at) << 16 | wordAt<std::uint8_t>(at + size / 2) << 8 |
         wordAt<std::uint8_t>(at + size - 1);
}

}  // namespace

// Reads whole words only: the last one overlaps the one before.
std::uint32_t hashBytes(std::string_view bytes) noexcept {
  const char* at = bytes.data();
  const std::size_t size = bytes.size();
  std::uint64_t hash = size;
  if (size < 8) {
    hash = hashMix(hash, shortWord(at, size));
  } else {
    const char* last = at + size - 8;
    for (; at < last; at += 8) hash = hashMix(hash, wordAt<std::uint64_t>(at));
    hash = hashMix(hash, wordAt<std::uint64_t>(last));
  }
  const auto folded = static_cast<std::uint32_t>(hash ^ (hash >> 32));
  return folded != 0 ? folded : 1;
}

String::Rep* String::newRep(std::string_view left, std::string_view right, std::size_t reserve) {
  const std::size_t size = left.size() + right.size();
  constexpr std::size_t limit = std::numeric_limits<std::uint32_t>::max() - sizeof(Rep);
  if (size > limit) throw std::length_error("Velmo::String: text too long");
  const std::size_t capacity = std::max(size, std::min(reserve, limit));
  void* block = Dorpel::slabAllocOrStdMalloc(offsetof(Rep, text) + capacity + 1);
  auto* rep = static_cast<Rep*>(block);
  rep->references = 1;
  rep->size = static_cast<std::uint32_t>(size);
  rep->hash = 0;
  rep->capacity = static_cast<std::uint32_t>(capacity);
  char* text = static_cast<char*>(block) + offsetof(Rep, text);
  if (!left.empty()) std::memcpy(text, left.data(), left.size());
  if (!right.empty()) std::memcpy(text + left.size(), right.data(), right.size());
  text[size] = '\0';
  return rep;
}

void String::freeRep(Rep* rep) noexcept {
  Dorpel::slabFreeOrStdFree(rep, offsetof(Rep, text) + rep->capacity + 1);
}

bool String::sameBytes(const Rep& a, const Rep& b) noexcept {
  if (a.hash != 0 && b.hash != 0 && a.hash != b.hash) return false;
  return std::memcmp(a.text, b.text, a.size) == 0;
}

std::uint32_t String::computeHash() const noexcept {
  const std::uint32_t hash = hashBytes(*this);
  if (rep_ != nullptr) rep_->hash = hash;
  return hash;
}

String& String::append(std::string_view text) {
  if (text.empty()) return *this;
  const std::size_t size = this->size() + text.size();
  if (rep_ != nullptr && rep_->references == 1 && size <= rep_->capacity) {
    char* end = reinterpret_cast<char*>(rep_) + offsetof(Rep, text) + rep_->size;
    // The text may be a part of this string: move, then close with the NUL.
    std::memmove(end, text.data(), text.size());
    end[text.size()] = '\0';
    rep_->size = static_cast<std::uint32_t>(size);
    rep_->hash = 0;
    return *this;
  }
  Rep* grown = newRep(*this, text, rep_ != nullptr ? size + size / 2 : 0);
  release();
  rep_ = grown;
  return *this;
}

std::ostream& operator<<(std::ostream& out, const String& text) {
  return out << std::string_view(text);
}

}  // namespace Velmo
