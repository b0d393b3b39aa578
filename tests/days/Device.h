// A device with all ten roots over it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/Changes.h"
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
  // Reads the document and builds the roots.
  Device(std::string_view document, std::uint32_t orderSeed);
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  // Applies a change line.
  host::Changes::Outcome line(std::string_view text);

  const host::Native& native() const { return native_; }
  // What the native objects hold.
  host::Value document() const;
  Snapshot output() const { return Snapshot(model_); }
  const host::Model& model() const { return model_; }
  // What the roots raised at the start.
  const Reports& startReports() const { return life_.reports; }
  // Of the last line.
  const Reports& reports() const { return reports_; }

 private:
  const std::uint32_t orderSeed_;
  host::Native native_;
  host::Model model_;
  Life life_;
  Reports reports_;
  host::Changes changes_{native_,
                         [this](const std::string& report) { reports_.push_back(report); }};
};

// What a device comes to that is mounted from `document` and never changed.
host::Native mounted(std::string_view document, std::uint32_t orderSeed);

}  // namespace days
