// How a translation is printed: the model once at the end, or after each change line, or what each
// line changed.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Arguments.h"
#include "Command.h"
#include "Output.h"
#include "host/Model.h"

namespace qosoc {

class Printer {
 public:
  using Report = std::function<void(const std::string&)>;

  virtual ~Printer() = default;
  // The roots are built. `report` gets what is wrong when the output fails, once.
  virtual void start(const host::Model& model, Report report) = 0;
  // A change line is done; `number` counts them, blank ones too.
  virtual void line(std::uint64_t number, bool isRefused) = 0;
  virtual void end() = 0;
};

// The values of --format.
Words formats();

// By --each, --feed, --format and the options of Shown, onto the file of --output or standard output.
// Requires: the command knows them. Throws: UsageError.
std::unique_ptr<Printer> printerOf(const Arguments& arguments,
                                   const std::optional<OutputFile>& file);

}  // namespace qosoc
