#include "Device.h"

#include "apps/qosoc/Arguments.h"
#include "apps/qosoc/Input.h"
#include "host/CommentFaults.h"
#include "host/ModelReader.h"
#include "host/NativeReader.h"

namespace qosoc {
namespace {

host::Clock clockOf(const std::optional<std::string>& stampFile, const Log& log) {
  if (!stampFile) return host::Clock();
  try {
    return host::Clock(*stampFile, [&log](const std::string& fault) { log.error(fault); });
  } catch (const std::runtime_error& error) {
    throw UsageError(std::string("--stamp-file: ") + error.what());
  }
}

// "line 3: root x: built" is no fault.
bool isFault(const std::string& report) { return !report.ends_with(": built"); }

// Without "line 3: ", which counts the lines of all connections.
std::string withoutNumber(const std::string& report) {
  const std::size_t colon = report.find(": ");
  return report.starts_with("line ") ? report.substr(colon + 2) : report;
}

}  // namespace

Device::Device(const Source& source, const Log& log)
    : log_(log), clock_(clockOf(source.stampFile, log)) {
  read(source);
  const auto report = [this](const std::string& line) { this->report(line); };
  roots_ = std::make_unique<host::KeptRoots>(std::span<const std::string>(), native_, model_,
                                             source.leftOut, report);
  changes_ = std::make_unique<host::Changes>(native_, *roots_, host::Changes::BadComments::refused,
                                             report);
  feed_ = std::make_unique<host::Feed>(model_);
  subscription_ = feed_->onRecords([this](const host::RecordChanges& changes) {
    hasPublished_ = store_.publish(changes, feed_->committed(), clock_.next());
  });
  feed_->commit();
}

void Device::read(const Source& source) {
  readFile(source.native, [this](std::FILE* file) { host::readNative(file, native_); });
  std::vector<host::Fault> faults;
  for (const host::BadComment& bad : host::badComments(native_)) {
    faults.emplace_back(bad.place(), bad.reason());
  }
  if (!faults.empty()) throw InputError(source.native, host::Refusal(std::move(faults)));
  if (!source.initial) return;
  readFile(*source.initial, [this](std::FILE* file) { host::readModel(file, model_); });
}

void Device::report(const std::string& line) {
  const std::string text = withoutNumber(line);
  const std::string shown = (number_ == 0 ? "" : "line " + std::to_string(number_) + ": ") + text;
  isFault(line) ? log_.warning(shown) : log_.info(shown);
  if (isFault(line) && raised_.empty()) raised_ = text;
}

Device::Answer Device::line(std::uint64_t number, std::string_view text,
                            const std::function<void()>& published) {
  using Outcome = host::Changes::Outcome;
  number_ = number;
  raised_.clear();
  hasPublished_ = false;
  const Outcome outcome = changes_->line(text);
  if (outcome == Outcome::refused) {
    const host::Fault& fault = changes_->refusal();
    return {Answer::Kind::refused, fault.pointer(), fault.what()};
  }
  if (outcome == Outcome::applied) feed_->commit();
  if (hasPublished_) published();
  if (raised_.empty()) return {Answer::Kind::applied};
  return {Answer::Kind::raised, {}, raised_};
}

}  // namespace qosoc
