#include "host/openconfig/View.h"

namespace host {
namespace {

bool isAugment(std::string_view path) {
  return path.find("qosoc-augments:") != std::string_view::npos;
}

// The path below `state` of a leaf below `config`; empty for any other leaf.
std::string mirrored(std::string_view path) {
  constexpr std::string_view config = "config";
  const std::size_t slash = std::min(path.rfind('/'), path.size());
  std::string_view container = path.substr(0, slash);
  if (container != config && !container.ends_with("/config")) return {};
  container.remove_suffix(config.size());
  return std::string(container) + "state" + std::string(path.substr(slash));
}

bool has(const RecordKind& kind, std::string_view path) {
  return std::any_of(kind.leaves.begin(), kind.leaves.end(),
                     [&](const RecordKind::Row& row) { return row.path == path; });
}

}  // namespace

View::View(const ViewOptions& options) : options_(options) {
  if (options.interfaceRef) outermost_.push_back(&kinds::referencedInterface);
  for (const RecordKind* kind : outermostKinds()) {
    if (shows(*kind)) outermost_.push_back(kind);
  }
  for (const RecordKind* kind : outermost_) add(*kind);
}

std::span<const RecordKind* const> View::children(const RecordKind& kind) const {
  const Part* part = find(kind);
  return part != nullptr ? std::span(part->children) : std::span<const RecordKind* const>();
}

std::span<const View::Row> View::rows(const RecordKind& kind) const {
  const Part* part = find(kind);
  return part != nullptr ? std::span(part->rows) : std::span<const Row>();
}

bool View::shows(const RecordKind& kind) const {
  return options_.augments || !isAugment(kind.path);
}

bool View::shows(const RecordKind::Row& row) const {
  if (row.shown == Shown::withInterfaceRef && !options_.interfaceRef) return false;
  return options_.augments || !isAugment(row.path);
}

void View::add(const RecordKind& kind) {
  Part part{&kind, rowsOf(kind), {}};
  for (const RecordKind* child : kind.children) {
    if (shows(*child)) part.children.push_back(child);
  }
  parts_.push_back(part);
  for (const RecordKind* child : part.children) add(*child);
}

std::vector<View::Row> View::rowsOf(const RecordKind& kind) const {
  std::vector<Row> rows;
  for (std::size_t i = 0; i < kind.leaves.size(); ++i) {
    const RecordKind::Row& row = kind.leaves[i];
    if (!shows(row)) continue;
    rows.push_back({std::string(row.path), row.type, i});
    std::string mirror = options_.state ? mirrored(row.path) : "";
    if (!mirror.empty() && !has(kind, mirror)) {
      rows.push_back({std::move(mirror), row.type, i, true});
    }
  }
  std::sort(rows.begin(), rows.end(),
            [](const Row& a, const Row& b) { return pathLess(a.path, b.path); });
  return rows;
}

const View::Part* View::find(const RecordKind& kind) const {
  const auto found = std::find_if(parts_.begin(), parts_.end(),
                                  [&](const Part& part) { return part.kind == &kind; });
  return found != parts_.end() ? &*found : nullptr;
}

}  // namespace host
