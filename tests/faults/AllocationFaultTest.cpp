// Memory runs out at each allocation in turn: while a root is built, and while a native change
// goes round. Whatever was under way, the exception leaves, nothing is lost or left behind, and
// what comes after finds the house in order.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "EachAllocation.h"
#include "tests/support/Events.h"
#include "tests/support/House.h"

namespace faults::allocationFaultTest {
namespace {

using support::Change;
using support::Event;
using support::events;
using support::freshModel;
using support::House;
using support::text;
using support::Watched;
using support::watched;
using testing::AnyOf;
using testing::IsEmpty;

// What is made once in the life of the process is no leak.
void warmUp() {
  const House house;
  freshModel(house.native);
  watched(house.native);
}

// ===== Starts

struct ByRootName {
  std::string operator()(const testing::TestParamInfo<std::string>& info) const {
    std::string name = info.param;
    std::erase(name, '-');
    return name;
  }
};

std::vector<std::string> rootNames() {
  std::vector<std::string> names;
  for (const host::Root& root : host::roots()) names.emplace_back(root.name);
  return names;
}

class StartWithoutMemory : public testing::TestWithParam<std::string> {};

TEST_P(StartWithoutMemory, LeavesNothingBehindAndTheNextStartIsLikeAnyOther) {
  const House house;
  warmUp();
  const host::Root& root = *host::rootNamed(GetParam());
  const std::string expected = freshModel(house.native, root.name);
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    const std::int64_t live = liveAllocations();
    bool struck = false;
    {
      const host::Model model;
      Rok::Ptr<Rok::PtrInterface> built;
      struck = strikes(n, kind, [&] { built = root.factory(house.native, model); });
      EXPECT_EQ(built == nullptr, struck);
      built = nullptr;
      EXPECT_THAT(watched(house.native), IsEmpty()) << "allocation " << n;
      built = root.factory(house.native, model);
      EXPECT_EQ(text(model), expected) << "over what was written, allocation " << n;
    }
    EXPECT_EQ(liveAllocations(), live) << "allocation " << n;
    EXPECT_EQ(freshModel(house.native, root.name), expected) << "allocation " << n;
    return struck;
  });
}

INSTANTIATE_TEST_SUITE_P(OfTheRoot, StartWithoutMemory, testing::ValuesIn(rootNames()),
                         ByRootName());

TEST(StartWithoutMemoryOfOneRoot, LeavesTheOthersAtWork) {
  House house;
  house.build();
  const Watched before = watched(house.native);
  const std::string model = text(house.model);
  for (const host::Root& root : host::roots()) {
    const host::Model other;
    Rok::Ptr<Rok::PtrInterface> built;
    EXPECT_TRUE(strikes(2, AllocationFault::Kind::once,
                        [&] { built = root.factory(house.native, other); }));
    EXPECT_EQ(watched(house.native), before) << root.name;
  }
  EXPECT_EQ(text(house.model), model);
}

// ===== Events

struct ByEventName {
  std::string operator()(const testing::TestParamInfo<Event>& info) const {
    return info.param.name;
  }
};

class EventWithoutMemory : public testing::TestWithParam<Event> {};

// Writes again, back and forth. What nobody heard of is refused once at most: a deletion that was
// lost leaves a child that the next deletion takes along.
void writeOnAndOn(const Change& change) {
  EXPECT_NO_THROW(change.write());
  if (!change.undo) return;
  try {
    change.undo();
  } catch (const Rok::MutatorReinstantiatingException&) {
  }
  EXPECT_NO_THROW(change.write());
  EXPECT_NO_THROW(change.undo());
  EXPECT_NO_THROW(change.write());
}

TEST_P(EventWithoutMemory, LeavesTheHouseInOrder) {
  warmUp();
  House reference;
  reference.build();
  const std::string before = freshModel(reference.native);
  const Change lasting = GetParam().prepare(reference.native);
  lasting.write();
  const std::string after = freshModel(reference.native);
  writeOnAndOn(lasting);
  const std::string lastly = text(reference.model);
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    const std::int64_t live = liveAllocations();
    bool struck = false;
    {
      House house;
      house.build();
      const Change change = GetParam().prepare(house.native);
      struck = strikes(n, kind, change.write);
      EXPECT_THAT(freshModel(house.native), AnyOf(before, after)) << "allocation " << n;
      writeOnAndOn(change);
      if (GetParam().endsAlike) {
        EXPECT_EQ(text(house.model), lastly) << "allocation " << n;
      }
      house.roots.clear();
      EXPECT_THAT(watched(house.native), IsEmpty()) << "allocation " << n;
      EXPECT_EQ(freshModel(house.native), after) << "allocation " << n;
    }
    EXPECT_EQ(liveAllocations(), live) << "allocation " << n;
    return struck;
  });
}

INSTANTIATE_TEST_SUITE_P(When, EventWithoutMemory,
                         testing::ValuesIn(events().begin(), events().end()), ByEventName());

}  // namespace
}  // namespace faults::allocationFaultTest
