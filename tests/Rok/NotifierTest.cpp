#include "Rok/Notifier.h"

#include "tests/support/RokListener.h"
#include "tests/support/RokMaps.h"

namespace notifierTest {
namespace {

using namespace RokTest;
using Rok::Ptr;

// ===== What notifies, and what is told

TEST(Notifier, AChangedScalarNotifiesItsAttributeWithoutAKey) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto listener = listen(bell, "a", calls);
  Rok::AttributeId seen = 0;
  listener->reactionIs([&](Rok::AttributeId id, const void* key) {
    seen = id;
    EXPECT_EQ(key, nullptr);
    EXPECT_EQ(bell->tone(), 440) << "the reader sees the new state";
  });
  bell->toneIs(440);
  EXPECT_EQ(seen, 130u);
  EXPECT_EQ(calls, Calls{"a"});
}

TEST(Notifier, AChangedEntryNotifiesItsAttributeAndItsKey) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto listener = listen(bell, "a", calls);
  std::vector<std::string> seen;
  listener->reactionIs([&](Rok::AttributeId id, const void* key) {
    EXPECT_EQ(id, 132u);
    const auto& name = *static_cast<const Rok::String*>(key);
    const int* value = bell->chime().find(name);
    seen.push_back(std::string(name) + (value != nullptr ? std::to_string(*value) : "-"));
  });
  bell->chimeIs("dawn", 1);
  bell->chimeIs("dawn", 2);
  bell->chimeDel("dawn");
  EXPECT_EQ(seen, (std::vector<std::string>{"dawn1", "dawn2", "dawn-"}));
}

TEST(Notifier, AnEqualValueNotifiesNothing) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto listener = listen(bell, "a", calls);
  bell->toneIs(0);
  bell->chimeDel("dawn");
  EXPECT_EQ(calls, Calls{});
  bell->chimeIs("dawn", 1);
  calls.clear();
  bell->chimeIs("dawn", 1);
  bell->chimeDel("dusk");
  EXPECT_EQ(calls, Calls{});
}

TEST(Notifier, AKeyThatIsAPartOfTheEntryOutlivesIt) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  bell->chimeIs("dawn", 1);
  const auto first = listen(bell, "a", calls);
  const auto second = listen(bell, "b", calls);
  std::string seen;
  second->reactionIs([&](Rok::AttributeId, const void* key) {
    seen = std::string_view(*static_cast<const Rok::String*>(key));
  });
  bell->chimeDel(bell->chime().member("dawn")->key());
  EXPECT_EQ(seen, "dawn");
  bell->chimeIs("dawn", 1);
  first->onceIs([&] { bell->chimeDel("dawn"); });
  bell->chimeIs(bell->chime().member("dawn")->key(), 2);
  EXPECT_EQ(seen, "dawn");
}

TEST(Notifier, WithoutObserversAChangeIsJustAChange) {
  const auto bell = Rok::make<Bell>();
  bell->toneIs(440);
  bell->strike("dawn");
  EXPECT_EQ(bell->tone(), 440);
  EXPECT_EQ(bell->chime().members(), 1u);
  EXPECT_TRUE(bell->notifieeList()->empty());
}

// ===== The life of a notifiee

TEST(Notifiee, HoldsItsNotifierAlive) {
  Calls calls;
  bool gone = false;
  auto bell = Rok::make<Bell>(gone);
  auto listener = listen(bell, "a", calls);
  bell = nullptr;
  EXPECT_FALSE(gone);
  listener = nullptr;
  EXPECT_TRUE(gone);
}

TEST(Notifiee, LeavesTheListWithItsLastReference) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  auto a = listen(bell, "a", calls);
  auto b = listen(bell, "b", calls);
  EXPECT_EQ(bell->notifieeList()->notifiees(), 2u);
  a = nullptr;
  EXPECT_EQ(bell->notifieeList()->notifiees(), 1u);
  b = nullptr;
  EXPECT_EQ(bell->notifieeList()->notifiees(), 0u);
  EXPECT_TRUE(bell->notifieeList()->empty());
}

TEST(Notifiee, LeavesTheListInItsDestructorWhenItIsAMember) {
  struct Plain final : Rok::PtrInterface::NotifieeConst {
    void onAttribute(Rok::AttributeId /*id*/, const void* /*key*/) override {}
  };
  const auto bell = Rok::make<Bell>();
  {
    Plain plain;
    plain.notifierIs(bell.get());
    plain.isRegisteredNotifieeIs(true);
    EXPECT_EQ(bell->notifieeList()->notifiees(), 1u);
  }
  EXPECT_TRUE(bell->notifieeList()->empty());
}

TEST(Notifiee, OnZeroReferencesRunsOnceBeforeItsEnd) {
  struct Last final : Rok::PtrInterface::NotifieeConst {
    explicit Last(Calls& lines) : calls(lines) {}
    ~Last() override { calls.push_back("gone"); }
    void onZeroReferences() override {
      calls.push_back(isRegisteredNotifiee() ? "zero, registered" : "zero");
      NotifieeConst::onZeroReferences();
      calls.push_back(isRegisteredNotifiee() ? "registered" : "unregistered");
    }
    void onAttribute(Rok::AttributeId /*id*/, const void* /*key*/) override {}
    Calls& calls;
  };
  Calls calls;
  const auto bell = Rok::make<Bell>();
  auto last = Rok::make<Last>(calls);
  last->notifierIs(bell.get());
  last->isRegisteredNotifieeIs(true);
  last = nullptr;
  EXPECT_EQ(calls, (Calls{"zero, registered", "unregistered", "gone"}));
}

TEST(Notifiee, ReferencesThatHaveNotGoneLeaveItInTheList) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto listener = listen(bell, "a", calls);
  listener->zeroReferencesIs(false);
  EXPECT_EQ(bell->notifieeList()->notifiees(), 1u);
  bell->toneIs(440);
  EXPECT_EQ(calls, Calls{"a"});
}

TEST(Notifiee, IsCalledOnlyWhileItIsRegisteredAndSwitchedOn) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto listener = Rok::make<Listener>("a", calls);
  bell->strike("dawn");
  listener->notifierIs(bell.get());
  bell->strike("dawn");
  listener->hasNotificationActiveIs(true);
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{});
  listener->isRegisteredNotifieeIs(true);
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{"a"});
  listener->hasNotificationActiveIs(false);
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{"a"});
  listener->hasNotificationActiveIs(true);
  listener->isRegisteredNotifieeIs(false);
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{"a"});
}

TEST(Notifiee, RegisteringTwiceOrLeavingTwiceChangesNothing) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto listener = listen(bell, "a", calls);
  listener->isRegisteredNotifieeIs(true);
  EXPECT_EQ(bell->notifieeList()->notifiees(), 1u);
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{"a"});
  listener->isRegisteredNotifieeIs(false);
  listener->isRegisteredNotifieeIs(false);
  EXPECT_TRUE(bell->notifieeList()->empty());
}

TEST(Notifiee, RegistersNowhereWithoutANotifierOrWithOneThatNobodyCanWatch) {
  struct Plain : Rok::PtrInterface {};
  Calls calls;
  const auto listener = Rok::make<Listener>("a", calls);
  listener->isRegisteredNotifieeIs(true);
  EXPECT_FALSE(listener->isRegisteredNotifiee());
  const auto plain = Rok::make<Plain>();
  listener->notifierIs(plain.get());
  listener->isRegisteredNotifieeIs(true);
  EXPECT_FALSE(listener->isRegisteredNotifiee());
  EXPECT_EQ(plain->references(), 2u);
}

TEST(Notifiee, ANewNotifierEndsTheRegistrationWithTheOldOne) {
  Calls calls;
  const auto oldBell = Rok::make<Bell>();
  const auto newBell = Rok::make<Bell>();
  const auto listener = listen(oldBell, "a", calls);
  listener->notifierIs(newBell.get());
  EXPECT_EQ(listener->notifier(), newBell.get());
  EXPECT_TRUE(oldBell->notifieeList()->empty());
  EXPECT_FALSE(listener->isRegisteredNotifiee());
  EXPECT_EQ(oldBell->references(), 1u);
  listener->isRegisteredNotifieeIs(true);
  oldBell->strike("dawn");
  EXPECT_EQ(calls, Calls{});
  newBell->strike("dawn");
  EXPECT_EQ(calls, Calls{"a"});
  listener->notifierIs(nullptr);
  EXPECT_TRUE(newBell->notifieeList()->empty());
  EXPECT_EQ(listener->notifier(), nullptr);
}

TEST(Notifiee, TheSameNotifierAgainKeepsTheRegistration) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto listener = listen(bell, "a", calls);
  listener->notifierIs(bell.get());
  EXPECT_TRUE(listener->isRegisteredNotifiee());
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{"a"});
}

TEST(Notifiee, AZombieIsSwitchedOffAndMarkedAndComesBack) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto listener = listen(bell, "a", calls);
  listener->rokDoZombieReactors(true);
  EXPECT_TRUE(listener->rokMarkedForDeletion());
  EXPECT_FALSE(listener->hasNotificationActive());
  EXPECT_TRUE(listener->isRegisteredNotifiee());
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{});
  listener->rokDoZombieReactors(false);
  EXPECT_FALSE(listener->rokMarkedForDeletion());
  EXPECT_TRUE(listener->hasNotificationActive());
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{"a"});
}

TEST(Notifiee, BecomingAZombieTwiceChangesNothing) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto listener = listen(bell, "a", calls);
  listener->rokDoZombieReactors(true);
  listener->hasNotificationActiveIs(true);
  listener->rokDoZombieReactors(true);
  EXPECT_TRUE(listener->hasNotificationActive()) << "the second time does nothing at all";
  listener->hasNotificationActiveIs(false);
  listener->rokDoZombieReactors(false);
  listener->hasNotificationActiveIs(false);
  listener->rokDoZombieReactors(false);
  EXPECT_FALSE(listener->hasNotificationActive());
}

TEST(Notifiee, AZombieWithoutANotifierIsOnlyMarked) {
  Calls calls;
  const auto listener = Rok::make<Listener>("a", calls);
  listener->hasNotificationActiveIs(true);
  listener->rokDoZombieReactors(true);
  EXPECT_TRUE(listener->rokMarkedForDeletion());
  EXPECT_TRUE(listener->hasNotificationActive());
}

// ===== Many notifiees

TEST(NotifieeList, TheOrderOfRegistrationOutlivesRemovalsAndCompaction) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  std::vector<Ptr<Listener>> listeners;
  Calls expected;
  for (int i = 0; i < 200; ++i) listeners.push_back(listen(bell, std::to_string(i), calls));
  for (int i = 0; i < 200; ++i) {
    if (i % 10 == 3) {
      expected.push_back(std::to_string(i));
    } else {
      listeners[static_cast<std::size_t>(i)]->isRegisteredNotifieeIs(false);
    }
  }
  EXPECT_EQ(bell->notifieeList()->notifiees(), 20u);
  const auto last = listen(bell, "last", calls);
  expected.push_back("last");
  bell->strike("dawn");
  EXPECT_EQ(calls, expected);
  for (const auto& listener : listeners) listener->isRegisteredNotifieeIs(false);
  EXPECT_EQ(bell->notifieeList()->notifiees(), 1u);
  calls.clear();
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{"last"});
}

TEST(NotifieeList, TheOrderOutlivesACompactionAtTheEndOfAWalk) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  std::vector<Ptr<Listener>> listeners;
  for (int i = 0; i < 100; ++i) listeners.push_back(listen(bell, std::to_string(i), calls));
  listeners[50]->onceIs([&] {
    for (std::size_t i = 0; i < 100; ++i) {
      if (i % 10 != 9) listeners[i]->isRegisteredNotifieeIs(false);
    }
  });
  bell->strike("dawn");
  Calls expected;
  for (int i = 0; i <= 50; ++i) expected.push_back(std::to_string(i));
  for (const char* name : {"59", "69", "79", "89", "99"}) expected.push_back(name);
  EXPECT_EQ(calls, expected);
  calls.clear();
  bell->strike("dawn");
  EXPECT_EQ(calls, (Calls{"9", "19", "29", "39", "49", "59", "69", "79", "89", "99"}));
  listeners[99]->isRegisteredNotifieeIs(false);
  listeners[9]->isRegisteredNotifieeIs(false);
  calls.clear();
  bell->strike("dawn");
  EXPECT_EQ(calls, (Calls{"19", "29", "39", "49", "59", "69", "79", "89"}));
}

// ===== Notifiees of one attribute

TEST(NotifieesOfAnAttribute, AreNotDisturbedForAnotherOneInACrowd) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  std::vector<Ptr<Listener>> ofTone;
  for (int i = 0; i < 100; ++i) {
    ofTone.push_back(
        listen(bell, std::to_string(i), calls, Rok::NotifieeList::interestIn(Bell::Attr::tone.id)));
  }
  bell->toneIs(1);
  ASSERT_EQ(calls.size(), 100u);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(calls[static_cast<std::size_t>(i)], std::to_string(i));
  calls.clear();
  bell->strike("dawn");
  bell->volumeIs(1);
  EXPECT_EQ(calls.size(), 2u * 16u) << "only the first few are asked each time";
}

TEST(NotifieesOfAnAttribute, StayBehindOneAnotherWhenTheCrowdHasGone) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const std::uint64_t tone = Rok::NotifieeList::interestIn(Bell::Attr::tone.id);
  auto others = crowd(bell, calls);
  const auto first = listen(bell, "first", calls, tone);
  others.clear();
  const auto second = listen(bell, "second", calls, tone);
  bell->toneIs(1);
  EXPECT_EQ(calls, (Calls{"first", "second"}));
}

TEST(NotifieesOfAnAttribute, ComeBetweenThoseOfEverythingAndThoseOfAKey) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto others = crowd(bell, calls);
  const auto ofKey = listen(bell, "of the key", calls, interestOf(Wish::key, "dawn"));
  const auto ofChime = listen(bell, "of the chime", calls, interestOf(Wish::attribute, "dawn"));
  const auto all = listen(bell, "all", calls);
  bell->strike("dawn");
  EXPECT_EQ(calls, (Calls{"all", "of the chime", "of the key"}));
  calls.clear();
  bell->toneIs(1);
  EXPECT_EQ(calls, Calls{"all"});
}

TEST(NotifieesOfAnAttribute, RemovedByAnotherKindMidWalkAreNotCalled) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto others = crowd(bell, calls);
  const auto all = listen(bell, "all", calls);
  Ptr<Listener> ofChime = listen(bell, "of the chime", calls, interestOf(Wish::attribute, "dawn"));
  Ptr<Listener> ofKey = listen(bell, "of the key", calls, interestOf(Wish::key, "dawn"));
  ofChime->onceIs([&] { ofKey = nullptr; });
  bell->strike("dawn");
  EXPECT_EQ(calls, (Calls{"all", "of the chime"}));
  calls.clear();
  all->onceIs([&] { ofChime = nullptr; });
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{"all"});
  EXPECT_EQ(bell->notifieeList()->notifiees(), 17u);
}

TEST(NotifieesOfAnAttribute, TheIndexGoesWithTheLastOfThem) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto others = crowd(bell, calls);
  bell->strike("dawn");
  const Dorpel::SlabUse before = Dorpel::slabUse();
  {
    const auto ofChime = listen(bell, "of the chime", calls, interestOf(Wish::attribute, "dawn"));
    ofChime->onceIs([&] { ofChime->isRegisteredNotifieeIs(false); });
    bell->strike("dawn");
  }
  EXPECT_EQ(bell->notifieeList()->notifiees(), 16u);
  bell->toneIs(1);
  EXPECT_EQ(calls, Calls{"of the chime"});
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
}

// ===== Keyed notifiees

TEST(KeyedNotifiees, AreCalledOnlyForTheirKey) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto dawn = listen(bell, "dawn", calls, interestInChime("dawn"));
  const auto dusk = listen(bell, "dusk", calls, interestInChime("dusk"));
  bell->strike("dawn");
  EXPECT_EQ(calls, Calls{"dawn"});
  bell->strike("dusk");
  EXPECT_EQ(calls, (Calls{"dawn", "dusk"}));
  bell->strike("noon");
  bell->toneIs(440);
  EXPECT_EQ(calls, (Calls{"dawn", "dusk"}));
  EXPECT_EQ(bell->notifieeList()->notifiees(), 2u);
}

TEST(KeyedNotifiees, OfOneKeyAreAllCalledInOrder) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto a = listen(bell, "a", calls, interestInChime("dawn"));
  const auto b = listen(bell, "b", calls, interestInChime("dawn"));
  bell->strike("dawn");
  EXPECT_EQ(calls, (Calls{"a", "b"}));
  a->isRegisteredNotifieeIs(false);
  bell->strike("dawn");
  EXPECT_EQ(calls, (Calls{"a", "b", "b"}));
}

TEST(KeyedNotifiees, ComeAfterThoseThatWatchTheWholeAttribute) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto keyed = listen(bell, "keyed", calls, interestInChime("dawn"));
  const auto first = listen(bell, "first", calls);
  const auto second = listen(bell, "second", calls);
  bell->strike("dawn");
  EXPECT_EQ(calls, (Calls{"first", "second", "keyed"}));
}

TEST(KeyedNotifiees, OneAddedByAnUnkeyedOneIsNotCalledForThisChange) {
  for (const bool anotherThere : {false, true}) {
    Calls calls;
    const auto bell = Rok::make<Bell>();
    const auto unkeyed = listen(bell, "unkeyed", calls);
    Ptr<Listener> old;
    if (anotherThere) old = listen(bell, "old", calls, interestInChime("dawn"));
    Ptr<Listener> added;
    unkeyed->onceIs([&] { added = listen(bell, "added", calls, interestInChime("dawn")); });
    bell->strike("dawn");
    EXPECT_EQ(calls, anotherThere ? (Calls{"unkeyed", "old"}) : Calls{"unkeyed"});
    calls.clear();
    bell->strike("dawn");
    EXPECT_EQ(calls,
              anotherThere ? (Calls{"unkeyed", "old", "added"}) : (Calls{"unkeyed", "added"}));
  }
}

TEST(KeyedNotifiees, OneThatAnUnkeyedOneRemovesOrReplacesIsNotCalled) {
  for (const std::size_t others : {0u, 1u, 2u}) {
    Calls calls;
    const auto bell = Rok::make<Bell>();
    const auto unkeyed = listen(bell, "unkeyed", calls);
    Ptr<Listener> keyed = listen(bell, "keyed", calls, interestInChime("dawn"));
    std::vector<Ptr<Listener>> rest;
    Calls expected{"unkeyed"};
    for (std::size_t i = 0; i < others; ++i) {
      rest.push_back(listen(bell, "rest", calls, interestInChime("dawn")));
      expected.push_back("rest");
    }
    // Gone and back: it is a new one.
    unkeyed->onceIs([&] {
      keyed->isRegisteredNotifieeIs(false);
      keyed->isRegisteredNotifieeIs(true);
    });
    bell->strike("dawn");
    EXPECT_EQ(calls, expected);
    // Gone, with another in its place, perhaps at its very address.
    unkeyed->onceIs([&] {
      keyed = nullptr;
      keyed = listen(bell, "keyed", calls, interestInChime("dawn"));
    });
    calls.clear();
    bell->strike("dawn");
    EXPECT_EQ(calls, expected);
    unkeyed->onceIs([&] { keyed = nullptr; });
    calls.clear();
    bell->strike("dawn");
    EXPECT_EQ(calls, expected);
  }
}

TEST(KeyedNotifiees, MayUnregisterDuringTheirCall) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto keyed = listen(bell, "keyed", calls, interestInChime("dawn"));
  const auto dusk = listen(bell, "dusk", calls, interestInChime("dusk"));
  keyed->reactionIs([&] {
    keyed->isRegisteredNotifieeIs(false);
    dusk->isRegisteredNotifieeIs(false);
  });
  bell->strike("dawn");
  EXPECT_TRUE(bell->notifieeList()->empty());
  bell->strike("dawn");
  bell->strike("dusk");
  EXPECT_EQ(calls, Calls{"keyed"});
}

TEST(KeyedNotifiees, TheIndexGoesWithTheLastOfThem) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  const auto unkeyed = listen(bell, "unkeyed", calls);
  const auto second = listen(bell, "second", calls);
  const Dorpel::SlabUse before = Dorpel::slabUse();
  std::vector<Ptr<Listener>> keyed;
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 100; ++i) {
      keyed.push_back(listen(bell, "keyed", calls, interestInChime(Rok::_fmt("chime%d", i % 50))));
    }
    EXPECT_EQ(bell->notifieeList()->notifiees(), 102u);
    EXPECT_GT(Dorpel::slabUse().blocks, before.blocks + 100);
    keyed.clear();
    EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
    EXPECT_EQ(bell->notifieeList()->notifiees(), 2u);
  }
  bell->chimeIs("chime1", 1);
  EXPECT_EQ(calls, (Calls{"unkeyed", "second"}));
}

TEST(KeyedNotifiees, AKeyThatEmptiesDuringItsWalkLeavesTheIndexAfterIt) {
  Calls calls;
  const auto bell = Rok::make<Bell>();
  bell->strike("dawn");
  const Dorpel::SlabUse before = Dorpel::slabUse();
  {
    const auto a = listen(bell, "a", calls, interestInChime("dawn"));
    const auto b = listen(bell, "b", calls, interestInChime("dawn"));
    a->reactionIs([&] {
      a->isRegisteredNotifieeIs(false);
      b->isRegisteredNotifieeIs(false);
    });
    bell->strike("dawn");
    EXPECT_EQ(calls, Calls{"a"});
    EXPECT_TRUE(bell->notifieeList()->empty());
    a->reactionIs(std::function<void()>([] {}));
    b->isRegisteredNotifieeIs(true);
    bell->strike("dawn");
    EXPECT_EQ(calls, (Calls{"a", "b"}));
  }
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
}

}  // namespace
}  // namespace notifierTest
