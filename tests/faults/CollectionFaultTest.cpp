// What the framework's own containers are like when an allocation of theirs has failed: as before,
// or at least whole.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "EachAllocation.h"
#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "Rok/Rok.h"
#include "Velmo/Vector.h"
#include "models/native/QosInput.h"
#include "tests/support/HostListener.h"

namespace faults::collectionFaultTest {
namespace {

using Map = Rok::HashMap2018<Rok::Hm2018NEI<0x51u, Rok::String, Velmo::ByteVector>>;
using Ordered = Rok::OrderedMap<Rok::String, Rok::String>;

Rok::String key(int i) { return std::to_string(i); }

Velmo::ByteVector bytes(unsigned char byte) { return Velmo::ByteVector(20, byte); }

Map mapOf(int members) {
  Map map;
  for (int i = 0; i < members; ++i) map.newMember(key(i), bytes(static_cast<unsigned char>(i)));
  return map;
}

// Whether the map holds these members and no others, and finds each.
void expectWhole(const Map& map, int members) {
  EXPECT_EQ(map.members(), static_cast<std::uint32_t>(members));
  for (int i = 0; i < members; ++i) {
    const Velmo::ByteVector* found = map.find(key(i));
    ASSERT_NE(found, nullptr) << i;
    EXPECT_EQ(*found, bytes(static_cast<unsigned char>(i)));
  }
}

// ===== HashMap2018

TEST(HashMapWithoutMemory, IsAsBeforeWhenAnInsertFails) {
  // Through the first chunks, the first index and the index's first growth.
  for (const int members : {0, 1, 2, 4, 8, 10, 16, 20, 32}) {
    const Rok::String last = key(members);
    const Velmo::ByteVector value = bytes(static_cast<unsigned char>(members));
    eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
      Map map = mapOf(members);
      const std::uint64_t version = map.version();
      if (!strikes(n, kind, [&] { map.newMember(last, value); })) return false;
      expectWhole(map, members);
      EXPECT_EQ(map.version(), version);
      map.newMember(last, value);
      expectWhole(map, members + 1);
      return true;
    });
  }
}

TEST(HashMapWithoutMemory, IsAsBeforeWhenTheValueThatIsGivenBackCannotBeCopied) {
  eachFault([](std::uint64_t n, AllocationFault::Kind kind) {
    Map map = mapOf(1);
    const Rok::String name = key(0);
    Velmo::ByteVector removed;
    {
      const auto i = map.iterator();
      if (!strikes(n, kind, [&] { map.deleteMember(name, &removed); })) return false;
      EXPECT_NE(i.currNodeNonStale(), nullptr);
    }
    expectWhole(map, 1);
    EXPECT_TRUE(map.deleteMember(name, &removed));
    EXPECT_EQ(removed, bytes(0));
    return true;
  });
}

TEST(HashMapWithoutMemory, CanBeEmptiedAndDestroyedUnderAnIterator) {
  Map map = mapOf(3);
  auto kept = std::make_optional<Map>(mapOf(3));
  auto i = map.iterator();
  auto j = kept->iterator();
  const AllocationFault fault(1, AllocationFault::Kind::forGood);
  map._memberDelAll();
  kept.reset();
  EXPECT_FALSE(fault.struck());
  EXPECT_EQ(map.members(), 0u);
  i.advance();
  EXPECT_FALSE(i);
}

TEST(HashMapWithoutMemory, DeletesWithoutAllocating) {
  Map map = mapOf(20);
  const Rok::String name = key(7);
  const AllocationFault fault(1, AllocationFault::Kind::forGood);
  EXPECT_TRUE(map.deleteMember(name));
  EXPECT_FALSE(fault.struck());
}

TEST(HashMapWithoutMemory, HoldsAPartOfWhatItWasToCopy) {
  const Map from = mapOf(12);
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    const std::int64_t live = liveAllocations();
    {
      Map to = mapOf(3);
      if (!strikes(n, kind, [&] { to = from; })) return false;
      EXPECT_LT(to.members(), 12u);
      std::uint32_t visited = 0;
      for (auto i = to.iterator(); i; ++i) visited += to.find(i.key()) != nullptr ? 1 : 0;
      EXPECT_EQ(visited, to.members());
      to = from;
      expectWhole(to, 12);
    }
    EXPECT_EQ(liveAllocations(), live);
    return true;
  });
}

// ===== OrderedMap

TEST(OrderedMapWithoutMemory, IsAsBeforeWhenAWriteFails) {
  const Rok::String name("b");
  const Rok::String value("new");
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    Ordered map;
    map.memberIs("a", "1");
    map.memberIs("c", "3");
    const Ordered before = map;
    const std::uint64_t version = map.version();
    if (!strikes(n, kind, [&] { map.memberIs(name, value); })) return false;
    EXPECT_TRUE(map == before);
    EXPECT_EQ(map.version(), version);
    return true;
  });
}

// ===== Velmo

TEST(StringWithoutMemory, IsAsBeforeWhenItCannotGrow) {
  eachFault([](std::uint64_t n, AllocationFault::Kind kind) {
    Velmo::String text("a text of some length");
    const Velmo::String copy = text;
    if (!strikes(n, kind, [&] { text.append(" and more"); })) return false;
    EXPECT_EQ(text, "a text of some length");
    EXPECT_TRUE(text.shares(copy));
    return true;
  });
}

TEST(StringWithoutMemory, IsAsBeforeWhenItCannotBeAssigned) {
  eachFault([](std::uint64_t n, AllocationFault::Kind kind) {
    Velmo::String text("old");
    if (!strikes(n, kind, [&] { text.assign("new"); })) return false;
    EXPECT_EQ(text, "old");
    return true;
  });
}

TEST(ByteVectorWithoutMemory, IsAsBeforeWhenItCannotGrow) {
  eachFault([](std::uint64_t n, AllocationFault::Kind kind) {
    Velmo::ByteVector vector(8, 7);
    vector.shrink_to_fit();
    if (!strikes(n, kind, [&] { vector.push_back(8); })) return false;
    EXPECT_EQ(vector, Velmo::ByteVector(8, 7));
    return true;
  });
}

// ===== Notifications

class Lamp final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> lit{130};
    static constexpr Rok::Attribute<int> bulb{131};
  };
  bool lit() const { return lit_; }
  void litIs(bool v) { attributeIs(lit_, v, Attr::lit); }

 private:
  bool lit_ = false;
};

// Watches one key, or one attribute.
class Watcher final : public Rok::PtrInterface::NotifieeConst {
 public:
  explicit Watcher(std::uint64_t interest) : NotifieeConst(interest) {}
  void onAttribute(Rok::AttributeId /*id*/, const void* /*key*/) override { ++calls; }

  int calls = 0;
};

Rok::Ptr<Watcher> watcher(const Lamp& lamp, std::uint64_t interest) {
  const auto made = Rok::make<Watcher>(interest);
  made->hasNotificationActiveIs(true);
  made->notifierIs(&lamp);
  return made;
}

const std::uint64_t ofLit = Rok::NotifieeList::interestIn(Lamp::Attr::lit.id);
const std::uint64_t ofBulb = Rok::NotifieeList::interestIn(Lamp::Attr::bulb.id, 7);

// Behind so many others of the attribute.
void expectThatAFailedRegistrationLeavesTheListAsItWas(int others, std::uint64_t interest) {
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    const auto lamp = Rok::make<Lamp>();
    std::vector<Rok::Ptr<Watcher>> first;
    for (int i = 0; i < others; ++i) {
      first.push_back(watcher(*lamp, ofLit));
      first.back()->isRegisteredNotifieeIs(true);
    }
    const auto last = watcher(*lamp, interest);
    if (!strikes(n, kind, [&] { last->isRegisteredNotifieeIs(true); })) return false;
    EXPECT_FALSE(last->isRegisteredNotifiee());
    EXPECT_EQ(lamp->notifieeList()->notifiees(), static_cast<std::size_t>(others));
    EXPECT_EQ(lamp->notifieeList()->empty(), others == 0);
    lamp->litIs(true);
    EXPECT_EQ(last->calls, 0);
    for (const auto& other : first) EXPECT_EQ(other->calls, 1);
    last->isRegisteredNotifieeIs(true);
    EXPECT_EQ(lamp->notifieeList()->notifiees(), static_cast<std::size_t>(others) + 1);
    return true;
  });
}

TEST(NotifieeListWithoutMemory, IsAsBeforeWhenANotifieeOfAnAttributeCannotRegister) {
  for (const int others : {1, 2, 3, 15, 16, 17}) {
    expectThatAFailedRegistrationLeavesTheListAsItWas(others, ofLit);
  }
}

TEST(NotifieeListWithoutMemory, IsAsBeforeWhenANotifieeOfAKeyCannotRegister) {
  for (const int others : {0, 1, 2, 17}) {
    expectThatAFailedRegistrationLeavesTheListAsItWas(others, ofBulb);
  }
}

TEST(NotifieeListWithoutMemory, ForgetsANotifieeWithoutAllocating) {
  const auto lamp = Rok::make<Lamp>();
  std::vector<Rok::Ptr<Watcher>> watchers;
  for (int i = 0; i < 40; ++i) {
    watchers.push_back(watcher(*lamp, i % 2 == 0 ? ofLit : ofBulb));
    watchers.back()->isRegisteredNotifieeIs(true);
  }
  const AllocationFault fault(1, AllocationFault::Kind::forGood);
  watchers.clear();
  EXPECT_FALSE(fault.struck());
  EXPECT_TRUE(lamp->notifieeList()->empty());
}

// ===== Watches

class LampSm final : public Rok::StateMachine<LampSm> {
 public:
  static constexpr std::string_view rokTypeName = "LampSm";
  static constexpr auto rokArguments() { return std::tuple<>(); }
  void handleLit() { ++reactions; }

  using RokLamp = Rok::Watch<LampSm, Lamp, Rok::On<Lamp::Attr::lit, &LampSm::handleLit>>;
  LampSm() : lamp(*this) {}

  RokLamp lamp;
  int reactions = 0;

 private:
  friend Rok::StateMachine<LampSm>;
  auto parts() { return std::tie(lamp); }
};

TEST(WatchWithoutMemory, HasNoInputAndIsBoundByTheNextCall) {
  eachFault([](std::uint64_t n, AllocationFault::Kind kind) {
    const auto old = Rok::make<Lamp>();
    const auto next = Rok::make<Lamp>();
    const auto other = watcher(*next, ofLit);
    other->isRegisteredNotifieeIs(true);
    const auto sm = LampSm::create();
    sm->lamp.inputIs(old);
    if (!strikes(n, kind, [&] { sm->lamp.inputIs(next); })) return false;
    EXPECT_EQ(sm->lamp.get(), nullptr);
    EXPECT_TRUE(old->notifieeList()->empty());
    sm->lamp.inputIs(next);
    next->litIs(true);
    EXPECT_EQ(sm->reactions, 1);
    return true;
  });
}

// ===== Native objects

// Two collections that are one to a reader: either both have a name, or neither.
TEST(GroupNamesWithoutMemory, AreWrittenOrNot) {
  const Qos::ForwardingGroupName name{"new"};
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    const auto map = Rok::make<Qos::ForwardingGroupNameToTcMap>();
    map->forwardingGroupNameToTcIs(Qos::ForwardingGroupName{"old"}, Qos::TrafficClass{5});
    const Qos::TrafficClass tc{3};
    if (!strikes(n, kind, [&] { map->forwardingGroupNameToTcIs(name, tc); })) return false;
    EXPECT_EQ(map->firstName(tc), nullptr);
    EXPECT_EQ(map->forwardingGroupNameToTc().find(name), nullptr);
    return true;
  });
}

TEST(GroupNamesWithoutMemory, MoveOrStay) {
  const Qos::ForwardingGroupName name{"name"};
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    const auto map = Rok::make<Qos::ForwardingGroupNameToTcMap>();
    map->forwardingGroupNameToTcIs(name, Qos::TrafficClass{5});
    const Qos::TrafficClass tc{3};
    if (!strikes(n, kind, [&] { map->forwardingGroupNameToTcIs(name, tc); })) return false;
    EXPECT_EQ(map->firstName(tc), nullptr);
    EXPECT_EQ(*map->firstName(Qos::TrafficClass{5}), name);
    EXPECT_EQ(*map->forwardingGroupNameToTc().find(name), Qos::TrafficClass{5});
    return true;
  });
}

// ===== Comments

// More than the buffers on the stack hold.
TEST(CommentWithoutMemory, IsAnExceptionWhenItIsTooLargeForTheStack) {
  const std::string text =
      R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"fair"}},"rest":")";
  const Velmo::String comment(text + std::string(20'000, 'r') + "\"}");
  int faults = 0;
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    const std::int64_t live = liveAllocations();
    const bool struck = strikes(n, kind, [&] { deserializeJsonComment(comment); });
    EXPECT_EQ(liveAllocations(), live);
    EXPECT_EQ(deserializeJsonComment(comment).sPInfo().schedulerPolicy(), "fair");
    faults += struck ? 1 : 0;
    return struck;
  });
  EXPECT_GT(faults, 2);
}

TEST(CommentWithoutMemory, IsNotWrittenByHalves) {
  const QosOc::SchedulerPolicyCommentInfo policy(Velmo::String(std::string(2000, 'p')));
  const QosOc::CommentInfo info(policy, QosOc::QueueManagementProfileCommentInfo("q"));
  const Velmo::String expected = serializeJsonComment(info);
  eachFault([&](std::uint64_t n, AllocationFault::Kind kind) {
    const std::int64_t live = liveAllocations();
    const bool struck = strikes(n, kind, [&] { serializeJsonComment(info); });
    EXPECT_EQ(liveAllocations(), live);
    EXPECT_EQ(serializeJsonComment(info), expected);
    return struck;
  });
}

}  // namespace
}  // namespace faults::collectionFaultTest
