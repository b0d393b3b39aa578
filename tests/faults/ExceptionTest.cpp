// What a translator refuses: at start, when the exception leaves the factory in the middle of what
// it mirrors, and later, when it leaves the native write. Whoever else is there goes on, and the
// native write that puts things right is all that it takes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Allocations.h"
#include "Faults.h"
#include "host/Place.h"
#include "tests/support/Events.h"
#include "tests/support/HostListener.h"
#include "tests/support/House.h"

namespace faults::exceptionTest {
namespace {

using support::Change;
using support::freshModel;
using support::House;
using support::prepared;
using support::text;
using support::Watched;
using support::watched;
using testing::IsEmpty;
using testing::SizeIs;

// What is reported of the exception that leaves; empty when none does.
template <class Act>
std::string reportOf(const Act& act) {
  std::string report;
  host::Writes([&](const std::string& what) { report = what; })(act);
  return report;
}

struct ByFaultName {
  std::string operator()(const testing::TestParamInfo<Fault>& info) const {
    return info.param.name;
  }
};

bool refuses(const Fault& fault, std::string_view root) {
  return std::find(fault.roots.begin(), fault.roots.end(), root) != fault.roots.end();
}

std::vector<Fault> allFaults() { return {faultTable().begin(), faultTable().end()}; }
std::vector<Fault> faultsOfEvents() {
  std::vector<Fault> found = allFaults();
  std::erase_if(found, [](const Fault& fault) { return fault.place == nullptr; });
  return found;
}

// Changes that none of the faults has to do with.
constexpr std::string_view otherEvents[] = {
    "ARuleComes",         "AnActionChanges",  "ATrafficClassMoves", "AnInterfaceIsBound",
    "TheWatchdogChanges", "PrioritiesChange", "APolicyProfileComes"};

// ===== At start

class StartOverAFault : public testing::TestWithParam<Fault> {};

// The roots that refuse the fault, on an output of their own each.
TEST_P(StartOverAFault, IsRefusedWithoutATraceAndGoesWellWhenTheFaultIsRepaired) {
  const Fault& fault = GetParam();
  House house;
  fault.strike(house.native);
  for (const host::Root& root : host::roots()) {
    if (!refuses(fault, root.name)) house.build(root.name);
  }
  const Watched before = watched(house.native);
  const std::string others = text(house.model);
  std::map<std::string_view, host::Model> outputs;
  for (const std::string_view root : fault.roots) {
    const auto build = [&] { host::rootNamed(root)->factory(house.native, outputs[root]); };
    EXPECT_EQ(reportOf(build), fault.report) << root;
    EXPECT_EQ(watched(house.native), before) << root;
  }
  EXPECT_EQ(text(house.model), others);

  fault.repair(house.native);
  for (const std::string_view root : fault.roots) {
    const auto built = host::rootNamed(root)->factory(house.native, outputs[root]);
    EXPECT_EQ(text(outputs[root]), freshModel(house.native, root)) << root;
  }
}

TEST_P(StartOverAFault, LosesNoMemory) {
  const Fault& fault = GetParam();
  const auto live = [&] {
    {
      House house;
      fault.strike(house.native);
      for (const std::string_view root : fault.roots) {
        const std::string report = reportOf([&] { house.build(root); });
        EXPECT_EQ(report, fault.report);
      }
    }
    return liveAllocations();
  };
  const std::int64_t before = live();  // with what is made once in the life of the process
  EXPECT_EQ(live(), before);
}

INSTANTIATE_TEST_SUITE_P(With, StartOverAFault, testing::ValuesIn(allFaults()), ByFaultName());

// ===== Later

class Refusal : public testing::TestWithParam<Fault> {
 protected:
  Refusal() {
    house_.build();
    place_ = GetParam().place(house_.native);
  }
  std::string strike() {
    return reportOf([this] { GetParam().strike(house_.native); });
  }
  // Something happens to each translator, and what may have been wrong is repaired.
  static void goOn(House& house) {
    for (const std::string_view event : otherEvents) {
      const Change change = prepared(house.native, event);
      EXPECT_EQ(reportOf(change.write), "") << event;
    }
    EXPECT_EQ(reportOf([&] { GetParam().repair(house.native); }), "");
  }

  House house_;
  const Rok::PtrInterface* place_ = nullptr;
};

TEST_P(Refusal, LeavesTheWriteWhenAllObserversHaveBeenTold) {
  std::vector<Rok::AttributeId> heard;
  const auto last = Rok::make<support::HostNotifiee>(
      *place_, [&](Rok::AttributeId id, const void* /*key*/) { heard.push_back(id); });
  EXPECT_EQ(strike(), GetParam().report);
  EXPECT_THAT(heard, SizeIs(1));
}

// Against a device that never had the fault.
TEST_P(Refusal, KeepsNobodyFromWorkingAndIsRepairedByTheNextGoodEvent) {
  House sound;
  sound.build();
  goOn(sound);
  EXPECT_EQ(strike(), GetParam().report);
  goOn(house_);
  EXPECT_EQ(text(house_.model), text(sound.model));
  EXPECT_EQ(watched(house_.native), watched(sound.native));
}

TEST_P(Refusal, LeavesNobodyRegisteredWhenTheRootsGo) {
  strike();
  house_.roots.clear();
  EXPECT_THAT(watched(house_.native), IsEmpty());
}

TEST_P(Refusal, LosesNoMemory) {
  const auto live = [] {
    {
      House house;
      house.build();
      const std::string report = reportOf([&] { GetParam().strike(house.native); });
      EXPECT_EQ(report, GetParam().report);
      GetParam().repair(house.native);
    }
    return liveAllocations();
  };
  const std::int64_t before = live();
  EXPECT_EQ(live(), before);
}

// Class maps and ACLs are the exception to repairs: a null entry can be replaced, but its deletion
// finds no child, and there that is the end.
TEST(RefusalDeathTest, OfAClassMapOrAnAclIsNotToBeRepairedByDeletion) {
  const Rok::String name("__yang_[c4]_[u]");
  House house;
  house.build();
  const auto& classMaps = *house.native.aclConfig->cmapType().find(Qos::mapQos);
  EXPECT_EQ(reportOf([&] { classMaps->cmapIs(name, nullptr); }), "null argument: cmapConfig");
  EXPECT_DEATH(classMaps->cmapDel(name), "ClassMapSm: no child to delete under key __yang_.c4._.u");
  const auto& acls = *house.native.acls->config().find(Acl::aclTypeIpv4);
  EXPECT_EQ(reportOf([&] { acls->aclIs(name, nullptr); }), "null argument: aclConfig");
  EXPECT_DEATH(acls->aclDel(name), "AclConfigSm: no child to delete under key __yang_.c4._.u");
}

INSTANTIATE_TEST_SUITE_P(Of, Refusal, testing::ValuesIn(faultsOfEvents()), ByFaultName());

}  // namespace
}  // namespace faults::exceptionTest
