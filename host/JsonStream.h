// The parser's view of a text that comes in blocks. For the host's own readers only.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "host/Json.h"

namespace host {

// A stream as the parser wants it: Peek() is NUL at the end, so a NUL in the text looks like the
// end and `atEnd` tells the two apart.
class JsonStream {
 public:
  using Ch = char;  // NOLINT(readability-identifier-naming): the parser's name

  // A text, which must outlive the stream.
  explicit JsonStream(std::string_view text) : begin_(text.data()), end_(begin_ + text.size()) {
    at_ = begin_;
  }
  // An open file.
  explicit JsonStream(std::FILE* file)
      : file_(file), block_(std::make_unique<char[]>(blockSize)), begin_(block_.get()) {
    at_ = end_ = begin_;
    fill();
  }

  Ch Peek() const { return at_ != end_ ? *at_ : '\0'; }
  Ch Take() {
    if (at_ == end_) return '\0';
    const char c = *at_++;
    if (c == '\n') {
      ++line_;
      lineStart_ = Tell();
    }
    if (at_ == end_) fill();
    return c;
  }
  std::size_t Tell() const { return before_ + static_cast<std::size_t>(at_ - begin_); }

  bool atEnd() const { return at_ == end_; }
  bool failed() const { return file_ != nullptr && std::ferror(file_) != 0; }
  // "line:column" of a byte of the line that is being read.
  std::string position(std::size_t offset) const {
    const std::size_t column = offset >= lineStart_ ? offset - lineStart_ : 0;
    return std::to_string(line_) + ':' + std::to_string(column + 1);
  }

  // A parser that writes into its input would call these; ours doesn't.
  Ch* PutBegin() { return nullptr; }
  void Put(Ch /*c*/) {}
  void Flush() {}
  std::size_t PutEnd(Ch* /*begin*/) { return 0; }

 private:
  static constexpr std::size_t blockSize = std::size_t{64} * 1024;

  void fill() {
    if (file_ == nullptr) return;
    before_ += static_cast<std::size_t>(end_ - begin_);
    at_ = begin_;
    end_ = begin_ + std::fread(block_.get(), 1, blockSize, file_);
  }

  std::FILE* file_ = nullptr;
  std::unique_ptr<char[]> block_;
  const char* begin_;
  const char* at_ = nullptr;
  const char* end_ = nullptr;
  std::size_t before_ = 0;  // bytes in the blocks before this one
  std::size_t line_ = 1;
  std::size_t lineStart_ = 0;
};

// Parses one text with a handler. Returns what is wrong with the syntax, empty when nothing is; a
// handler that stopped gives an empty text, too.
struct SyntaxFault {
  std::string reason;
  std::size_t offset = 0;
};
template <class Handler>
SyntaxFault parseJson(JsonStream& stream, Handler& handler) {
  rapidjson::Reader parser;
  constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag;
  const rapidjson::ParseResult result = parser.Parse<flags>(stream, handler);
  if (result.Code() == rapidjson::kParseErrorTermination) return {};
  if (stream.Peek() == '\0' && !stream.atEnd()) return {"a NUL byte", stream.Tell()};
  if (!result.IsError()) return {};
  return {rapidjson::GetParseError_En(result.Code()), result.Offset()};
}

}  // namespace host
