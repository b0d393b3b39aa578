// One line of a change stream: an RFC 6902 patch, read but not yet checked against the document.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Fault.h"
#include "host/Schema.h"

namespace host {

class Patch {
 public:
  enum class Kind { add, replace, remove, test };
  struct Operation {
    Kind kind;
    std::string path;
  };

  // Throws: Fault for a line that is no patch, or holds a `move` or a `copy`.
  explicit Patch(std::string_view line);
  ~Patch();
  Patch(const Patch&) = delete;
  Patch& operator=(const Patch&) = delete;

  const std::vector<Operation>& operations() const { return operations_; }
  // The value of an operation, checked and canonical. Requires: the operation isn't a `remove`.
  // Throws: Fault, without a place.
  Value value(std::size_t operation, const Schema& schema) const;

 private:
  struct Text;
  std::unique_ptr<Text> text_;
  std::vector<Operation> operations_;
};

}  // namespace host
