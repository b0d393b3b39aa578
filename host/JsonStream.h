// The parser's view of a text that comes in blocks. For the host's own readers only.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "host/Json.h"
#include "host/Text.h"
#include "host/TextPosition.h"

namespace host {

// A stream as the parser wants it: Peek() is NUL at the end, so a NUL in the text looks like the
// end, and `atEnd` distinguishes the two.
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
    if (at_ == end_) fill();
    return c;
  }
  std::size_t Tell() const { return before_ + static_cast<std::size_t>(at_ - begin_); }

  // Skips white space. What comes then is a token, or the end.
  void beginToken() {
    while (Peek() == ' ' || Peek() == '\n' || Peek() == '\r' || Peek() == '\t') Take();
    token_ = Tell();
  }
  // Where the token begins that is being read, or was read last.
  std::size_t token() const { return token_; }

  // The rest of the current block, and a way to skip the front of it.
  std::string_view block() const { return {at_, end_}; }
  void skip(std::size_t bytes) {
    at_ += bytes;
    if (at_ == end_) fill();
  }

  bool atEnd() const { return at_ == end_; }
  bool failed() const { return file_ != nullptr && std::ferror(file_) != 0; }
  // Where a byte of the line that is being read stands.
  TextPosition at(std::size_t offset) const {
    countLines(at_);
    const std::size_t column = offset >= lines_.start ? offset - lines_.start : 0;
    return {lines_.ended + 1, column + 1};
  }

  // A parser that writes into its input would call these; ours doesn't.
  Ch* PutBegin() { return nullptr; }
  void Put(Ch /*c*/) {}
  void Flush() {}
  std::size_t PutEnd(Ch* /*begin*/) { return 0; }

 private:
  static constexpr std::size_t blockSize = std::size_t{64} * 1024;

  // Lines are counted where a position is asked for, or a block at a time: a test of each character
  // costs more than all of that.
  struct Lines {
    std::size_t ended = 0;
    std::size_t start = 0;  // of the line behind them
    std::size_t end = 0;    // up to where they are counted

    void pass(std::string_view text, std::size_t offset) {
      const auto more = std::count(text.begin(), text.end(), '\n');
      if (more == 0) return;
      ended += static_cast<std::size_t>(more);
      start = offset + text.rfind('\n') + 1;
    }
  };

  // Up to a byte of the current block, or further where they were counted further.
  void countLines(const char* to) const {
    const std::size_t offset = before_ + static_cast<std::size_t>(to - begin_);
    if (offset <= lines_.end) return;
    const std::size_t from = lines_.end;
    lines_.pass({begin_ + (from - before_), to}, from);
    lines_.end = offset;
  }

  void fill() {
    if (file_ == nullptr) return;
    countLines(end_);
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
  std::size_t token_ = 0;
  mutable Lines lines_;  // at least in those blocks
};

// UTF-8 that the parser copies by stretches of bytes that stand for themselves.
struct Utf8InBlocks : rapidjson::UTF8<> {};

}  // namespace host

template <>
inline void host::rapidjson::SkipWhitespace(host::JsonStream& stream) {
  stream.beginToken();
}

// Strings are most of a document. The parser calls Transcode before a byte that needs no treatment;
// its own one copies that byte alone, and reading a document takes an eighth more instructions.
template <>
struct host::rapidjson::Transcoder<host::Utf8InBlocks, host::rapidjson::UTF8<>>
    : host::rapidjson::Transcoder<host::rapidjson::UTF8<>, host::rapidjson::UTF8<>> {
  template <class In, class Out>
  static bool Transcode(In& in, Out& out) {
    const std::string_view plain = in.block().substr(0, host::plainPrefix(in.block()));
    std::memcpy(out.Push(static_cast<SizeType>(plain.size())), plain.data(), plain.size());
    in.skip(plain.size());
    return true;
  }
};

namespace host {

using JsonParser = rapidjson::GenericReader<Utf8InBlocks, rapidjson::UTF8<>>;

// Parses one text with a handler. Returns what is wrong with the syntax, empty when nothing is; a
// handler that stopped gives an empty text, too.
struct SyntaxFault {
  std::string reason;
  std::size_t offset = 0;
};

// What a message adds when a text begins as one of another encoding does.
inline std::string encodingHint(std::string_view begin) {
  const auto at = [&](std::size_t i) { return i < begin.size() ? begin[i] : ' '; };
  if (begin.starts_with("\xef\xbb\xbf"))
    return " (it begins with a byte-order mark: leave that out)";
  const bool isUtf16 = begin.starts_with("\xff\xfe") || begin.starts_with("\xfe\xff") ||
                       at(0) == '\0' || at(1) == '\0';
  return isUtf16 ? " (it looks like UTF-16: write it as UTF-8)" : "";
}

template <class Handler>
SyntaxFault parseJson(JsonStream& stream, Handler& handler) {
  JsonParser parser;
  const std::string begin(stream.block().substr(0, 3));
  constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseFullPrecisionFlag;
  const rapidjson::ParseResult result = parser.Parse<flags>(stream, handler);
  if (result.Code() == rapidjson::kParseErrorTermination) return {};
  const bool isNul = stream.Peek() == '\0' && !stream.atEnd();
  if (!isNul && !result.IsError()) return {};
  const std::size_t offset = isNul ? stream.Tell() : result.Offset();
  const char* reason = isNul ? "a NUL byte" : rapidjson::GetParseError_En(result.Code());
  return {reason + (offset < 2 ? encodingHint(begin) : ""), offset};
}

}  // namespace host
