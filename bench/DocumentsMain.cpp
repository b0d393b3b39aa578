// documents: a long native document, and what reading it costs beside RapidJSON.
//
//   documents write FILE MEGABYTES
//   documents WAY FILE                  prints seconds and the peak of memory in bytes
//   documents report FILE QOSOC         medians of five runs of each way, and of `QOSOC check`, `QOSOC
//                                       check --shape`, `QOSOC translate` and `QOSOC translate --feed`,
//                                       all in turns
//
// dom: a rapidjson::Document with the parser's default flags, which is RapidJSON's own parse.
// events: the parser alone with the same flags, and a handler that does nothing.
// parser: the same with the flags and the stream of our readers.
// shape: host::checkShape, which judges the form and builds nothing.
// read: host::readNative, the whole way into native objects.
// All read the file by blocks of 64 KB.
#include <rapidjson/document.h>
#include <rapidjson/filereadstream.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/Fault.h"
#include "host/NativeReader.h"
#include "host/Shape.h"
#include "support/BareParser.h"
#include "support/Check.h"
#include "support/DocumentCosts.h"
#include "support/NativeDocument.h"
#include "support/Seconds.h"

namespace Bench {
namespace {

// ===== One way of reading

class InputFile {
 public:
  explicit InputFile(const std::string& path) : file_(std::fopen(path.c_str(), "rb")) {
    require(file_ != nullptr, "cannot read " + path);
  }
  std::FILE* stream() const { return file_.get(); }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Close> file_;
};

// As RapidJSON reads it. It reads a block at once.
class Blocks {
 public:
  explicit Blocks(const std::string& path) : file_(path) {}
  rapidjson::FileReadStream& stream() { return stream_; }

 private:
  InputFile file_;
  char block_[std::size_t{64} * 1024];
  rapidjson::FileReadStream stream_{file_.stream(), block_, sizeof(block_)};
};

void dom(const std::string& path) {
  Blocks file(path);
  // Not freed: freeing it is not a part of what is measured.
  auto* document = new rapidjson::Document;
  document->ParseStream(file.stream());
  require(!document->HasParseError() && document->HasMember("class-maps"), "a document by dom");
}

void events(const std::string& path) {
  Blocks file(path);
  rapidjson::BaseReaderHandler<> nothing;
  rapidjson::Reader reader;
  require(!reader.Parse(file.stream(), nothing).IsError(), "a document by events");
}

void parser(const std::string& path) {
  InputFile file(path);
  parseBarely(file.stream());
}

void shape(const std::string& path) {
  InputFile file(path);
  host::checkShape(file.stream());  // throws unless it is right
}

void read(const std::string& path) {
  const auto* native = new host::Native;
  host::readNative(path, *native);
  require((*native->aclConfig->cmapType().find(Qos::mapQos))->cmap().members() != 0,
          "a document by read");
}

using Way = void (*)(const std::string& path);
const std::map<std::string, Way> ways = {
    {"dom", dom}, {"events", events}, {"parser", parser}, {"shape", shape}, {"read", read}};

int measure(Way way, const std::string& path) {
  const double start = threadSeconds();
  way(path);
  const double seconds = threadSeconds() - start;
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("%.6f %ld\n", seconds, usage.ru_maxrss * 1024);
  std::fflush(stdout);
  _exit(0);  // nothing of it has to be taken down
}

// ===== All of them

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

int report(const std::string& self, const std::string& path, const std::string& qosoc) {
  const auto fileBytes = static_cast<double>(std::filesystem::file_size(path));
  Measured measured = documentCosts(self, qosoc, path, repetitions);
  const double dom = median(measured["dom"].seconds);
  std::printf("%-24s %10s %12s %12s %12s\n", "", "seconds", "of dom's", "peak, MB", "of the file");
  for (const auto& [what, series] : measured) {
    const double seconds = median(series.seconds);
    const double peak = series.counters.at("peak bytes");
    std::printf("%-24s %10.3f %12.2f %12.1f %12.2f\n", what.c_str(), seconds, seconds / dom,
                peak / 1e6, peak / fileBytes);
  }
  return 0;
}

int main(const std::vector<std::string>& arguments) {
  if (arguments.size() == 3) {
    if (const auto way = ways.find(arguments[1]); way != ways.end()) {
      return measure(way->second, arguments[2]);
    }
  }
  if (arguments.size() == 4 && arguments[1] == "write") {
    std::cout << writeNativeDocument(arguments[2], std::stoull(arguments[3]) * 1'000'000) << '\n';
    return 0;
  }
  if (arguments.size() == 4 && arguments[1] == "report") {
    return report(arguments[0], arguments[2], arguments[3]);
  }
  std::cerr << "usage: documents write FILE MEGABYTES | dom|events|parser|shape|read FILE | report "
               "FILE QOSOC\n";
  return 1;
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) { return Bench::main({argv, argv + argc}); }
