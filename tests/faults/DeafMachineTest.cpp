// Each machine of the library without its first native input, beside the ten roots of a device: it
// is made, and does nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "Allocations.h"
#include "tests/support/Events.h"
#include "tests/support/House.h"
#include "tests/support/MachineTable.h"
#include "tests/support/TraceCapture.h"

namespace faults::deafMachineTest {
namespace {

using support::Change;
using support::Event;
using support::events;
using support::House;
using support::makeDeaf;
using support::text;
using support::TraceCapture;
using support::Watched;
using support::watched;
using testing::IsEmpty;

// The house keeps the machine, and its parent, which has to outlive it.
template <class Sm>
void keepDeaf(House& house) {
  const auto made = makeDeaf<Sm>(house);
  if constexpr (!support::isRoot<Sm>) {
    house.roots.push_back(support::standing<typename support::Facts<Sm>::Parent>(house));
  }
  house.roots.push_back(made);
}
template <class... Sm>
void keepAllDeaf(House& house, testing::Types<Sm...> /*machines*/) {
  (keepDeaf<Sm>(house), ...);
}

// ===== At start

template <class Sm>
class DeafMachine : public testing::Test {
 protected:
  DeafMachine() {
    house_.build();
    // What a start of the root would sweep.
    house_.model.classifiers->classifierIs("stale")->typeIs(QosOc::Classifier::classifierTypeIpv4);
    house_.model.schedulerPolicies->schedulerPolicyIs("stale");
    house_.model.queueManagementProfiles->queueManagementProfileIs(
        QosOc::Config::QueueManagementProfile("stale"));
  }

  House house_;
};
TYPED_TEST_SUITE(DeafMachine, support::Machines, support::ByName);

TYPED_TEST(DeafMachine, IsMadeWithoutATraceAndWritesNothing) {
  const std::string before = text(this->house_.model);
  TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  const auto sm = makeDeaf<TypeParam>(this->house_);
  EXPECT_TRUE(sm->hasNotificationActive());
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(text(this->house_.model), before);
}

TYPED_TEST(DeafMachine, LeavesNobodyRegistered) {
  const Watched before = watched(this->house_.native);
  makeDeaf<TypeParam>(this->house_);
  EXPECT_EQ(watched(this->house_.native), before);
}

TYPED_TEST(DeafMachine, LosesNoMemory) {
  const auto live = [] {
    {
      House house;
      house.build();
      makeDeaf<TypeParam>(house);
    }
    return liveAllocations();
  };
  const std::int64_t before = live();
  EXPECT_EQ(live(), before);
}

// ===== Later

class DeafMachines : public testing::TestWithParam<Event> {};

// Against a device without them.
TEST_P(DeafMachines, HearNothing) {
  const auto lines = [](House& house) {
    TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    const Change change = GetParam().prepare(house.native);
    change.write();
    if (change.undo) change.undo();
    return trace.lines().size();
  };
  House plain;
  plain.build();
  House house;
  house.build();
  keepAllDeaf(house, support::Machines());
  EXPECT_EQ(lines(house), lines(plain));
  EXPECT_EQ(text(house.model), text(plain.model));
}

struct ByEventName {
  std::string operator()(const testing::TestParamInfo<Event>& info) const {
    return info.param.name;
  }
};
INSTANTIATE_TEST_SUITE_P(At, DeafMachines, testing::ValuesIn(events().begin(), events().end()),
                         ByEventName());

}  // namespace
}  // namespace faults::deafMachineTest
