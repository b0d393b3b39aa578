// A text of any length, seen through a window that slides over it: what was passed is dropped, and what
// comes is read by blocks. The window grows with what is held in it.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string_view>
#include <vector>

#include "host/ByteBlock.h"

namespace host {

class TextWindow {
 public:
  static constexpr std::size_t blockSize = std::size_t{64} * 1024;

  // Both outlive the window. `block` bytes are read at once.
  explicit TextWindow(std::FILE* file, std::size_t block = blockSize);
  explicit TextWindow(std::string_view text, std::size_t block = blockSize);

  // The bytes in front, up to the end of the window. A NUL stands there, and a block of bytes behind it
  // can be read.
  const char* at() const { return at_; }
  std::string_view rest() const { return {at_, end_}; }
  void pass(std::size_t bytes) { at_ += bytes; }
  // Whether a byte is the NUL at the end of the window, and none of the text.
  bool isEnd(const char* byte) const { return byte == end_; }

  // Reads on, so that rest() grows. Pointers into the window are void then. False at the end of the text,
  // or when it can't be read.
  bool more();
  // Reads on until so many bytes are in front or the text ends.
  void require(std::size_t bytes) {
    while (static_cast<std::size_t>(end_ - at_) < bytes && more()) continue;
  }

 private:
  // What stands behind the text.
  static constexpr std::size_t margin = 1 + ByteBlock::size;

  std::size_t room() const { return bytes_.size() - margin; }
  std::size_t read(char* to, std::size_t size);

  std::FILE* file_ = nullptr;
  std::string_view text_;  // that is not read yet, without a file
  std::vector<char> bytes_;
  const char* at_ = nullptr;
  const char* end_ = nullptr;
};

}  // namespace host
