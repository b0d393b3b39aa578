#include "Printer.h"

#include <optional>
#include <utility>

#include "Messages.h"
#include "Progress.h"
#include "Shown.h"
#include "StandardOutput.h"
#include "host/Feed.h"
#include "host/ModelWriter.h"
#include "host/Nearest.h"
#include "host/OpenConfigJson.h"
#include "host/Text.h"
#include "host/feed/FeedLine.h"

namespace qosoc {
namespace {

// ===== The whole model

// How a model is printed: `render` hands its text on piece by piece, and warns as it goes; `warn`
// warns alone. The same warning comes once.
struct Format {
  std::function<void(const host::Model&, host::Layout, const host::TextSink&)> render;
  std::function<void(const host::Model&)> warn;
};

void tellWarning(const std::string& warning) { tell("warning: " + warning); }

Format formatOf(const std::string& format, const Shown& shown) {
  if (format == "model") {
    if (!shown.option.empty()) throw UsageError(shown.option + " is for the format openconfig");
    return {host::modelJson, [](const host::Model& /*model*/) {}};
  }
  if (format != "openconfig") {
    throw UsageError("--format: expected openconfig or model, not " + host::quoted(format) +
                     host::didYouMean(format, names(formats())));
  }
  const auto renderer = std::make_shared<host::OpenConfigJson>(tellWarning, shown.view, shown.only);
  return {[renderer](const host::Model& model, host::Layout layout, const host::TextSink& sink) {
            renderer->json(model, layout, sink);
          },
          [renderer](const host::Model& model) { renderer->warn(model); }};
}

class ModelPrinter final : public Printer {
 public:
  ModelPrinter(Format format, bool each, std::optional<OutputFile> file)
      : format_(std::move(format)), each_(each), file_(std::move(file)) {}

  void start(const host::Model& model, Report report) override {
    model_ = &model;
    out_.emplace(report);
    report_ = std::move(report);
    if (each_) print(host::Layout::compact);
  }
  void line(std::uint64_t /*number*/, bool /*isRefused*/) override {
    if (each_) print(host::Layout::compact);
  }
  void end() override {
    if (file_) return write();
    if (each_) return;
    const Stage stage("printing");
    print(host::Layout::pretty);
  }

 private:
  // A larger text is not held.
  static constexpr std::size_t largeText = std::size_t{4} * 1024 * 1024;

  // Nothing is written before all warnings are out. So the text is held until it is whole, and one
  // that gets large has the warnings of the rest made ahead, and goes out as it comes from there on.
  void print(host::Layout layout) {
    std::string held;
    bool isLarge = false;
    format_.render(*model_, layout, [&](std::string_view piece) {
      if (isLarge) return out_->write(piece);
      held += piece;
      isLarge = held.size() > largeText;
      if (!isLarge) return;
      format_.warn(*model_);
      out_->write(std::exchange(held, {}));
    });
    out_->write(held);
    if (layout == host::Layout::compact) out_->write("\n");
    out_->flush();
  }

  void write() {
    try {
      file_->write([this](const host::TextSink& sink) {
        format_.render(*model_, host::Layout::pretty, sink);
      });
    } catch (const OutputError& error) {
      report_(error.what());
    }
  }

  Format format_;
  bool each_;
  std::optional<OutputFile> file_;
  Report report_;
  const host::Model* model_ = nullptr;
  std::optional<StandardOutput> out_;
};

// ===== What each line changed

class FeedPrinter final : public Printer {
 public:
  explicit FeedPrinter(const Shown& shown) : shown_(shown) {}

  void start(const host::Model& model, Report report) override {
    out_.emplace(std::move(report));
    feed_.emplace(model);
    subscription_ = feed_->onLeaves({shown_.view, shown_.only, tellWarning},
                                    [this](const host::LeafChanges& changes) { print(changes); });
    epoch_ = host::newEpoch();
    commit({0, epoch_});
  }
  void line(std::uint64_t number, bool isRefused) override { commit({number, {}, isRefused}); }
  void end() override {}

 private:
  void commit(const host::FeedHead& head) {
    head_ = head;
    feed_->commit();
  }
  void print(const host::LeafChanges& changes) {
    host::feedLine(head_, changes, [this](std::string_view piece) { out_->write(piece); });
    out_->write("\n");
    out_->flush();
  }

  Shown shown_;
  std::optional<StandardOutput> out_;
  std::string epoch_;
  host::FeedHead head_{0};
  std::optional<host::Feed> feed_;
  host::Feed::Subscription subscription_;
};

// ===== Which of them

// A file is written whole, at the end: a stream is read while it grows, and would wait for that.
void expectNoStream(const Arguments& arguments) {
  for (const std::string option : {"--each", "--feed"}) {
    if (!arguments.has(option)) continue;
    throw UsageError("--output: what " + option +
                     " prints is a stream, and a file is written whole: use > FILE");
  }
}

}  // namespace

Words formats() {
  static constexpr Word words[] = {
      {"openconfig", "the OpenConfig tree, as clients of OpenConfig read it"},
      {"model", "every field of the output records, absent ones as null"},
  };
  return words;
}

std::unique_ptr<Printer> printerOf(const Arguments& arguments,
                                   const std::optional<OutputFile>& file) {
  if (file) expectNoStream(arguments);
  const Shown shown(arguments);
  if (!shown.only.isShown(host::View(shown.view))) {
    throw UsageError("--only: " + shown.only.path() + ": the other options leave all of it out");
  }
  const bool each = arguments.has("--each");
  const auto format = arguments.value("--format");
  if (!arguments.has("--feed")) {
    return std::make_unique<ModelPrinter>(formatOf(format.value_or("openconfig"), shown), each,
                                          file);
  }
  if (each || format) {
    throw UsageError(std::string("--feed and ") + (each ? "--each" : "--format") +
                     " are two ways to print: give one");
  }
  return std::make_unique<FeedPrinter>(shown);
}

}  // namespace qosoc
