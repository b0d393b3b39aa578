#include "host/LeavesOfText.h"

#include "host/CommentFaults.h"
#include "host/NativeReader.h"
#include "host/Roots.h"
#include "host/Text.h"
#include "host/openconfig/DocumentReader.h"
#include "host/openconfig/Leaves.h"

namespace host {
namespace {

void readOpenConfig(const std::string& file, std::string_view text, const ViewOptions& view,
                    const Subtree& only, LeavesOfText& result) {
  DocumentLeaves document = readDocument(text, view);
  result.faults = linesOf(document.faults, file);
  result.leaves = std::move(document.leaves);
  std::erase_if(result.leaves, [&](const LeafText& leaf) { return !only.within(leaf.path); });
}

void translate(const std::string& file, std::string_view text, const ViewOptions& view,
               const Subtree& only, LeavesOfText& result) {
  const auto fault = [&](const std::string& line) {
    result.faults.push_back(shown(file) + ": " + line);
  };
  const Native native;
  try {
    readNativeText(text, native);
  } catch (const Refusal& refused) {
    result.faults = linesOf(refused.faults(), file);
    return;
  }
  for (const std::string& line : commentFaults(native)) fault(line);
  if (!result.faults.empty()) return;
  const Model model;
  const auto roots = buildRoots({}, native, model, fault);
  if (!result.faults.empty()) return;
  const auto warn = [&](const std::string& line) {
    result.warnings.push_back(shown(file) + ": " + line);
  };
  result.leaves = leavesOf(model, View(view), warn, only);
}

}  // namespace

LeavesOfText leavesOfText(const std::string& file, std::string_view text, const ViewOptions& view,
                          const Subtree& only) {
  LeavesOfText result;
  const auto& read = isOpenConfig(text) ? readOpenConfig : translate;
  read(file, text, view, only, result);
  return result;
}

}  // namespace host
