// A device whose roots return, changed by lines.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/Changes.h"
#include "host/KeptRoots.h"
#include "host/NativeReader.h"
#include "tests/support/HostDevice.h"

namespace support {

class KeptDevice {
 public:
  using BadComments = host::KeptRoots::BadComments;
  using LeftOut = host::KeptRoots::LeftOut;
  using Reports = std::vector<std::string>;

  struct Options {
    std::vector<std::string> roots = {};
    LeftOut leftOut = LeftOut::returns;
    BadComments badComments = BadComments::refused;
    bool isEchoed = false;  // reports go to standard error, too: for a process that ends
  };

  explicit KeptDevice(std::string_view document) : KeptDevice(document, Options()) {}
  KeptDevice(std::string_view document, const Options& options)
      : isEchoed_(options.isEchoed),
        native_(mounted(document)),
        roots_(options.roots, native_, model_, options.leftOut, report()),
        changes_(native_, roots_, options.badComments, report()) {}

  const host::Native& native() const { return native_; }
  const host::Model& model() const { return model_; }
  const host::KeptRoots& roots() const { return roots_; }

  // The reports since the last call: at first those of the start.
  Reports reports() { return std::exchange(reports_, {}); }
  // The reports of a line. Those before it are dropped.
  Reports line(std::string_view patch) {
    reports_.clear();
    changes_.line(patch);
    return reports();
  }
  Reports put(const std::string& path, const std::string& value) {
    return line(hostLine("add", path, value));
  }
  Reports remove(const std::string& path) { return line(hostLine("remove", path)); }

 private:
  static host::Native mounted(std::string_view document) {
    host::Native native;
    host::readNativeText(document, native);
    return native;
  }
  host::KeptRoots::Report report() {
    return [this](const std::string& line) {
      reports_.push_back(line);
      if (isEchoed_) std::fprintf(stderr, "%s\n", line.c_str());
    };
  }

  const bool isEchoed_;
  Reports reports_;
  host::Native native_;
  host::Model model_;
  host::KeptRoots roots_;
  host::Changes changes_;
};

// A text as JSON has it, with quotes.
inline std::string quotedJson(std::string_view text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') json += '\\';
    json += c;
  }
  return json + '"';
}

// The text of a comment of ours, as a value of the native document.
inline std::string ourComment(const std::string& metaData) {
  return quotedJson(R"({"MetaData-OpenConfig":)" + metaData + '}');
}

}  // namespace support
