// A device with all ten roots over it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/Changes.h"
#include "host/KeptRoots.h"
#include "host/Model.h"
#include "host/Native.h"
#include "host/Value.h"
#include "tests/days/Difference.h"

namespace days {

using Roots = std::vector<Rok::Ptr<Rok::PtrInterface>>;
using Reports = std::vector<std::string>;

// Fresh roots over native objects and a model, while they stand. Each walks its hash collections in
// the order of `orderSeed`.
struct Life {
  Life(const host::Native& native, const host::Model& model, std::uint32_t orderSeed);

  Reports reports;  // of roots whose factory raised
  Roots roots;
};

class Device {
 public:
  using LeftOut = host::KeptRoots::LeftOut;

  // Reads the document and builds the roots.
  Device(std::string_view document, std::uint32_t orderSeed, LeftOut leftOut = LeftOut::stays);
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  // Applies a change line.
  host::Changes::Outcome line(std::string_view text);

  const host::Native& native() const { return native_; }
  // What the native objects hold.
  host::Value document() const;
  Snapshot output() const { return Snapshot(model_); }
  const host::Model& model() const { return model_; }
  // What the roots that are out raised last.
  Reports leftOut() const;
  // Of the last line.
  const Reports& reports() const { return reports_; }
  // Whether the line would end the process if it weren't refused: a process of its own applies it.
  bool isEndedBy(std::string_view line);

 private:
  void report(const std::string& report);

  const std::uint32_t orderSeed_;
  host::Native native_;
  host::Model model_;
  Reports reports_;
  std::map<std::string, std::string> lastRaised_;  // by root
  host::KeptRoots roots_;
  host::Changes changes_{native_, roots_, host::Changes::BadComments::refused,
                         [this](const std::string& text) { report(text); }};
};

// What a device comes to that is mounted from `document` and never changed.
host::Native mounted(std::string_view document, std::uint32_t orderSeed);

}  // namespace days
