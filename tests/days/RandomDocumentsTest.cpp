// Random documents: what `check` finds in them is held against what their translation comes to, and
// the other way round. RapidCheck draws them and makes one that fails small; RC_PARAMS choose how
// many and which, as for random days.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "host/CommentFaults.h"
#include "tests/days/check/Claims.h"
#include "tests/days/check/Effects.h"
#include "tests/days/check/Grammar.h"

namespace days {

void showValue(const DocumentPlan& plan, std::ostream& out) {
  out << documentOf(plan).text() << '\n';
}

}  // namespace days

namespace rc {

template <>
struct Arbitrary<days::DocumentPlan> {
  static Gen<days::DocumentPlan> arbitrary() {
    using days::DocumentPlan;
    using days::Step;
    const auto byte = gen::resize(kNominalSize, gen::map(gen::inRange(0, 256), [](int n) {
                                    return static_cast<std::uint8_t>(n);
                                  }));
    const auto topic = gen::map(gen::resize(kNominalSize, gen::inRange<int>(0, days::topics)),
                                [](int n) { return static_cast<days::Topic>(n); });
    const auto isBad =
        gen::map(gen::resize(kNominalSize, gen::inRange(0, 4)), [](int n) { return n == 3; });
    const auto steps =
        gen::resize(12, gen::container<std::vector<Step>>(gen::container<Step>(byte)));
    return gen::build<DocumentPlan>(gen::set(&DocumentPlan::topic, topic),
                                    gen::set(&DocumentPlan::hasBadValues, isBad),
                                    gen::set(&DocumentPlan::steps, steps));
  }
};

}  // namespace rc

namespace days {
namespace {

struct Tally {
  ClaimTally claims;
  ExemptionTally exemptions;
};

class DocumentProgress {
 public:
  void documentIs(bool raised, bool isClean) {
    ++documents_;
    raised_ += raised;
    clean_ += isClean;
    if (isShown_ && documents_ % 1000 == 0) std::fputs(shown().c_str(), stderr);
  }
  void table(const Tally& tally) const {
    if (!isShown_) return;
    std::string text = shown() + "Findings:\n";
    for (const auto& [kind, count] : tally.claims.findings) text += line(count, kind);
    text += "Findings of order:\n" + line(tally.claims.seenOrders, "several outcomes were seen") +
            line(tally.claims.unseenOrders, "one outcome was seen") +
            line(tally.claims.unseenReferences, "references that no order brought into the model");
    for (const std::string& unseen : tally.claims.unseen) text += "  " + unseen + '\n';
    text += "Places without effect that have no finding:\n";
    for (std::size_t row = 0; row < exemptions().size(); ++row)
      text += line(tally.exemptions.used[row], exemptions()[row].name);
    std::fputs(text.c_str(), stderr);
  }

 private:
  static std::string line(std::size_t count, std::string_view what) {
    const std::string number = std::to_string(count);
    return std::string(9 - std::min<std::size_t>(9, number.size()), ' ') + number + ' ' +
           std::string(what) + '\n';
  }
  std::string shown() const {
    return std::to_string(documents_) + " documents, " + std::to_string(clean_) +
           " without a finding, " + std::to_string(raised_) + " over which a root raises\n";
  }

  const bool isShown_ = std::getenv("QOS_DAYS_PROGRESS") != nullptr;
  std::size_t documents_ = 0;
  std::size_t clean_ = 0;
  std::size_t raised_ = 0;
};

std::vector<std::string> judged(const Document& document, Tally& tally,
                                DocumentProgress& progress) {
  const Case one(document);
  const bool raised = one.outcomes().hasRaised();
  progress.documentIs(raised, one.findings().empty());
  std::vector<std::string> wrong = falseFindings(one, tally.claims);
  const auto add = [&](std::vector<std::string> lines) {
    wrong.insert(wrong.end(), lines.begin(), lines.end());
  };
  add(unclaimed(one));
  if (!raised && !one.hasFindingOf("raises")) add(silentLosses(one, tally.exemptions));
  return wrong;
}

// The document that failed, over what an earlier one left there, and what was wrong with it.
void write(const std::string& directory, const Document& document, const std::string& wrong) {
  std::filesystem::create_directories(directory);
  std::ofstream(directory + "/document.json") << document.text() << '\n';
  std::ofstream(directory + "/wrong.txt") << wrong;
}

// Whether the findings name the comments that end the process, if there are any.
bool endsProcess(const Document& document) {
  const host::Native native = mounted(document.text(), 0);
  std::size_t found = 0;
  for (const host::Finding& finding : host::findingsOf(native))
    found += finding.kind == "comment-type";
  RC_ASSERT(found == host::commentFaults(native).size());
  return found != 0;
}

TEST(RandomDocuments, AreFoundToLoseWhatTheirTranslationLoses) {
  setenv("RC_PARAMS", "max_success=300 seed=20261121 max_size=24", 0);
  const char* chosen = std::getenv("QOS_DAYS_DIRECTORY");
  const std::string directory = chosen != nullptr ? chosen : QOS_DAYS_DIRECTORY;
  DocumentProgress progress;
  Tally tally;
  const bool isRight = rc::check("findings are true and whole", [&](const DocumentPlan& plan) {
    const Document document = documentOf(plan);
    if (endsProcess(document)) return;
    const std::vector<std::string> wrong = judged(document, tally, progress);
    std::string all;
    for (const std::string& line : wrong) all += line + '\n';
    if (wrong.empty()) return;
    write(directory, document, all);
    RC_FAIL(all);
  });
  progress.table(tally);
  EXPECT_TRUE(isRight) << "The smallest document that fails is in " << directory;
}

// ===== The orders

// The one that names a policy stands between two that don't, and decides when it is met last.
TEST(Orders, LetAnyOfThreeTxQueuesBeMetLast) {
  const Outcomes outcomes(
      R"({"interfaces":{"Ethernet1":{"tx-queues":{"mc-3":{},"uc-3":{},"uc-4":{}}}},"comments":)"
      R"({"if-Et1-uc-txq-3":"{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"x\"}}}"}})",
      256);
  const std::string path =
      "/qos/interfaces/interface[interface-id=Ethernet1]/output/scheduler-policy/config/name";
  EXPECT_EQ(outcomes.values().at(path), (std::set<std::string>{"", "\"x\""}));
}

// ===== The table of exemptions

class EachExemption : public testing::TestWithParam<std::size_t> {};

TEST_P(EachExemption, ExemptsAPlaceOfItsExampleThatNothingElseExempts) {
  const Exemption& row = exemptions()[GetParam()];
  const Case one((Document(row.example)));
  ExemptionTally all;
  EXPECT_THAT(silentLosses(one, all), testing::IsEmpty()) << row.example;
  ExemptionTally others;
  others.without = GetParam();
  EXPECT_THAT(silentLosses(one, others), testing::Not(testing::IsEmpty())) << row.name;
}

TEST_P(EachExemption, SaysWhatAndWhy) {
  const Exemption& row = exemptions()[GetParam()];
  EXPECT_FALSE(row.name.empty());
  EXPECT_TRUE(row.reason.ends_with('.')) << row.reason;
}

INSTANTIATE_TEST_SUITE_P(Table, EachExemption, testing::Range<std::size_t>(0, exemptions().size()));

}  // namespace
}  // namespace days
