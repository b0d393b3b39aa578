// Reading a long native document, beside RapidJSON. DocumentsMain.cpp says what is done.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "support/Comparisons.h"
#include "support/DocumentCosts.h"
#include "support/NativeDocument.h"
#include "support/Sizes.h"

namespace Bench {
namespace {

std::string titleOf(const std::string& way) { return "document, " + way; }

Measured measure(std::size_t megabytes) {
  const std::string file = QOS_BENCH_BINARY_DIR "/native.json";
  const std::uint64_t bytes = writeNativeDocument(file, megabytes * 1'000'000);
  Measured measured;
  for (auto& [way, series] : documentCosts(QOS_BENCH_BINARY_DIR "/documents", QOS_BENCH_QOSOC, file,
                                           isQuick() ? repetitions : 1)) {
    series.counters["file bytes"] = static_cast<double>(bytes);
    measured[at(titleOf(way), megabytes)] = series;
  }
  std::filesystem::remove(file);
  return measured;
}

}  // namespace

void documents(Comparisons& comparisons) {
  comparisons.subject("Native document");
  const std::size_t size = documentMegabytes();
  std::vector<std::string> names;
  for (const char* way : {"dom", "events", "parser", "shape", "read", "qosoc check",
                          "qosoc check --shape", "qosoc translate", "qosoc translate --feed"}) {
    names.push_back(titleOf(way));
    const std::string figure = at(names.back(), size);
    if (names.size() > 1) comparisons.add(figure, at(titleOf("dom"), size));
    comparisons.add(figure + " peak bytes", figure + " file bytes");
  }
  const std::string translate = at(titleOf("qosoc translate"), size);
  const std::string feed = at(titleOf("qosoc translate --feed"), size);
  comparisons.add(feed, translate);
  comparisons.add(at(titleOf("qosoc check"), size), translate);
  for (const char* bare : {"events", "parser"}) {
    comparisons.add(at(titleOf("shape"), size), at(titleOf(bare), size));
  }
  comparisons.add(feed + " peak bytes", translate + " peak bytes");
  registerTogether(names, size, [=] { return measure(size); });
}

}  // namespace Bench
