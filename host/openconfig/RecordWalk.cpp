#include "host/openconfig/RecordWalk.h"

namespace host {
namespace {

using Which = EntriesWanted::Which;

class Walk {
 public:
  Walk(const View& view, const ChooseEntries& choose, const RecordVisit& visit)
      : view_(view), choose_(choose), visit_(visit) {}

  void entries(const RecordKind& kind, const void* holder) {
    const EntriesWanted wanted = choose_ ? choose_(kind, keys_) : EntriesWanted{Which::all};
    if (wanted.which == Which::none) return;
    if (wanted.which == Which::one && kind.isList()) {
      const void* found = kind.find(holder, wanted.key);
      if (found != nullptr) entry(kind, wanted.key, found);
      return;
    }
    kind.each(holder, [&](std::string_view key, std::string_view misfit, const void* found) {
      if (misfit.empty()) entry(kind, key, found);
    });
  }

 private:
  void entry(const RecordKind& kind, std::string_view key, const void* found) {
    const void* record = kind.record(found);
    if (record == nullptr) return;
    if (kind.isList()) keys_.push_back(key);
    visit_({kind, keys_, record});
    for (const RecordKind* child : view_.children(kind)) entries(*child, found);
    if (kind.isList()) keys_.pop_back();
  }

  const View& view_;
  const ChooseEntries& choose_;
  const RecordVisit& visit_;
  Keys keys_;
};

}  // namespace

void eachRecord(const Model& model, const View& view, const RecordVisit& visit) {
  eachRecord(model, view, nullptr, visit);
}

void eachRecord(const Model& model, const View& view, const ChooseEntries& choose,
                const RecordVisit& visit) {
  Walk walk(view, choose, visit);
  for (const RecordKind* kind : view.outermost()) walk.entries(*kind, &model);
}

}  // namespace host
