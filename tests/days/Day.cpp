#include "tests/days/Day.h"

#include "host/CommentFaults.h"
#include "host/NativeWriter.h"
#include "host/SavedState.h"
#include "host/Sections.h"
#include "tests/days/ChangeWriter.h"

namespace days {

std::string Finding::told() const {
  return (check ? std::string(nameOf(*check)) + ": " : "") + what;
}

Day::Day(std::string_view document, std::uint32_t otherOrder, Tally& tally, Device::LeftOut leftOut)
    : device_(document, 0, leftOut),
      other_(document, otherOrder, leftOut),
      tally_(tally),
      facts_(device_.document(), device_.leftOut()) {
  follow();
  check();
}

std::vector<Finding> Day::of(const Script& script, std::uint32_t otherOrder, Tally& tally,
                             Device::LeftOut leftOut) {
  Day day(script.document, otherOrder, tally, leftOut);
  for (const std::string& line : script.lines) {
    if (!day.findings_.empty()) break;
    day.line(line);
  }
  day.checkSaved();
  return day.findings_;
}

void Day::line(std::string_view text) {
  ++lines_;
  const Snapshot before = device_.output();
  const auto outcome = device_.line(text);
  if (other_.line(text) != outcome) {
    findings_.push_back({lines_, std::nullopt, "a line is refused in one walk order only"});
  }
  follow();
  if (outcome != host::Changes::Outcome::applied) {
    checkBadComment(text);
    return checkRefused(before);
  }
  facts_.stepIs(text, device_.document(), device_.reports(), device_.leftOut());
  check();
}

void Day::checkRefused(const Snapshot& before) {
  if (device_.output() == before && device_.document() == *facts_.find({})) return;
  findings_.push_back({lines_, std::nullopt, "a refused line changed something"});
}

// A root that is out may be what would read it, later.
void Day::checkBadComment(std::string_view text) {
  const bool isBad = device_.reports()[0].find(" of this comment: expected ") != std::string::npos;
  if (!isBad || !device_.leftOut().empty() || device_.isEndedBy(text)) return;
  findings_.push_back({lines_, std::nullopt, "a line is refused that ends no process"});
}

void Day::checkSaved() {
  const Snapshot now = device_.output();
  const std::string saved =
      host::savedStateJson(device_.native(), now.model(), host::Layout::compact);
  const host::Native native;
  const host::Model model;
  host::readSavedStateText(saved, native, model);
  const bool isSame = host::nativePlace(native)->value() == device_.document();
  if (!isSame || !(Snapshot(model) == now)) {
    findings_.push_back({lines_, std::nullopt, "the device is saved as another one"});
  }
  const auto written = [](const Device& device) {
    return host::nativeJson(device.native(), host::Layout::compact);
  };
  if (written(device_) == written(other_)) return;
  findings_.push_back({lines_, std::nullopt, "the walk order shows in the written document"});
}

void Day::check() {
  const Snapshot now = device_.output();
  compare(Check::order, now, other_.output());

  const host::Model model = now.model();
  Follower sweeps(model);
  checkFeed(sweeps);
  const Reports restart = Life(device_.native(), model, 0).reports;
  checkFeed(sweeps);
  const Snapshot restarted(model);
  compare(Check::restart, now, restarted, restart);
  const Reports again = Life(device_.native(), model, 0).reports;
  compare(Check::again, restarted, Snapshot(model), again);

  const host::Model empty;
  const Reports rebuild = Life(device_.native(), empty, 0).reports;
  compare(Check::rebuild, now, Snapshot(empty), rebuild);
}

void Day::follow() {
  checkFeed(follower_);
  checkFeed(otherFollower_);
}

void Day::checkFeed(Follower& follower) {
  const std::string wrong = follower.commit();
  if (!wrong.empty()) findings_.push_back({lines_, std::nullopt, wrong});
}

void Day::compare(Check check, const Snapshot& left, const Snapshot& right, const Reports& fresh) {
  const Excused before = std::exchange(excused_[check], {});
  if (left == right) return;
  for (const Difference& difference : left.differences(right)) {
    const std::size_t row = exclusionOf({check, difference, facts_, fresh}, before);
    if (row == exclusions().size()) {
      findings_.push_back({lines_, check, difference.told()});
    } else {
      ++tally_.used[row];
      excused_[check].emplace(difference.place, Excuse{difference.left, row});
    }
  }
}

std::size_t Day::exclusionOf(const Seen& seen, const Excused& before) const {
  const auto& table = exclusions();
  for (std::size_t row = 0; row < table.size(); ++row) {
    const bool isMeant = (table[row].checks & static_cast<unsigned>(seen.check)) != 0;
    if (isMeant && row != tally_.without && table[row].holds(seen)) return row;
  }
  // What went apart for a reason stays apart, for as long as the device says the same there.
  const auto found = before.find(seen.difference.place);
  const bool stands = seen.check != Check::again && found != before.end() &&
                      found->second.left == seen.difference.left;
  return stands ? found->second.row : table.size();
}

Script scriptOf(const Plan& plan, Values values) {
  const host::Native before;
  host::Changes changes(before, [](const std::string& /*report*/) {});
  for (const Step& step : plan.before) changes.line(changeLine(step, plan.focus, before, values));
  // A start over these would end the process.
  for (const host::BadComment& bad : host::badComments(before)) {
    before.cliConfig->commentDel(Rok::String(bad.key));
  }
  Script script{host::nativeJson(before, host::Layout::compact), {}};
  // The lines are written for the device as the document makes it.
  Device device(script.document, 0, Device::LeftOut::returns);
  for (const Step& step : plan.changes) {
    script.lines.push_back(changeLine(step, plan.focus, device.native(), values));
    device.line(script.lines.back());
  }
  for (const Step& step : plan.closing) {
    for (std::string& line : closingLines(step)) script.lines.push_back(std::move(line));
  }
  return script;
}

}  // namespace days
