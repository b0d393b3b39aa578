#include "Rok/Notifier.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>

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

// ===== What happens to a notification while it goes round

// An actor whose reaction is the test's, and bystanders round it, who must not suffer. All of them
// want to hear of everything, or of one attribute, or of one key of it.
enum class Wish { all, attribute, key };
struct Shape {
  const char* name;
  Wish wish;
  int before;
  int behind;
  bool outsiders;  // there are two that want to hear of everything as well
};

std::uint64_t interestOf(Wish wish, const Rok::String& chime) {
  if (wish == Wish::all) return 0;
  if (wish == Wish::attribute) return Rok::NotifieeList::interestIn(Bell::Attr::chime.id);
  return interestInChime(chime);
}

// So many that others are found by their interest. They are switched off.
std::vector<Ptr<Listener>> crowd(const Ptr<Bell>& bell, Calls& calls) {
  std::vector<Ptr<Listener>> all;
  for (int i = 0; i < 16; ++i) {
    all.push_back(listen(bell, "one of the crowd", calls));
    all.back()->hasNotificationActiveIs(false);
  }
  return all;
}

void PrintTo(const Shape& shape, std::ostream* out) { *out << shape.name; }

class NotifieeListWalk : public testing::TestWithParam<Shape> {
 protected:
  void SetUp() override {
    if (GetParam().outsiders) outsiders_.push_back(listen(bell_, "o1", calls_));
    if (GetParam().wish == Wish::attribute) crowd_ = crowd(bell_, calls_);
    for (int i = 0; i < GetParam().before; ++i) {
      before_.push_back(newListener("b" + std::to_string(i)));
    }
    actor_ = newListener("actor");
    for (int i = 0; i < GetParam().behind; ++i) {
      behind_.push_back(newListener("z" + std::to_string(i)));
    }
    if (GetParam().outsiders) outsiders_.push_back(listen(bell_, "o2", calls_));
  }
  void TearDown() override {
    // Whatever happened, the list is in order: all leave, and nothing is left.
    actor_ = nullptr;
    before_.clear();
    behind_.clear();
    outsiders_.clear();
    crowd_.clear();
    EXPECT_TRUE(!bell_ || bell_->notifieeList()->empty());
  }

  Ptr<Listener> newListener(const std::string& name) {
    return listen(bell_, name, calls_, interestOf(GetParam().wish, "dawn"));
  }
  // Notifies once and returns who was called.
  Calls ring() {
    calls_.clear();
    bell_->strike("dawn");
    return calls_;
  }
  static Calls joined(std::initializer_list<Calls> parts) {
    Calls all;
    for (const Calls& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  }
  static Calls names(const std::vector<Ptr<Listener>>& listeners) {
    Calls result;
    for (const auto& listener : listeners) result.push_back(listener->name());
    return result;
  }
  Calls outsiders() const { return names(outsiders_); }
  Calls before() const { return names(before_); }
  Calls behind() const { return names(behind_); }
  Calls everyone() const { return joined({outsiders(), before(), {"actor"}, behind()}); }

  Calls calls_;
  bool bellGone_ = false;
  Ptr<Bell> bell_ = Rok::make<Bell>(bellGone_);
  std::vector<Ptr<Listener>> crowd_;
  std::vector<Ptr<Listener>> outsiders_;
  std::vector<Ptr<Listener>> before_;
  Ptr<Listener> actor_;
  std::vector<Ptr<Listener>> behind_;
};

// The cells that need somebody before and behind the actor, and those that need outsiders.
using NotifieeListCrowd = NotifieeListWalk;
using NotifieeListMixed = NotifieeListWalk;

constexpr Shape single{"Single", Wish::all, 0, 0, false};
constexpr Shape many{"Many", Wish::all, 2, 3, false};
constexpr Shape singleOfAttribute{"SingleOfAttribute", Wish::attribute, 0, 0, false};
constexpr Shape manyOfAttribute{"ManyOfAttribute", Wish::attribute, 3, 3, true};
constexpr Shape singleKeyed{"SingleKeyed", Wish::key, 0, 0, false};
constexpr Shape manyKeyed{"ManyKeyed", Wish::key, 2, 3, false};
constexpr Shape singleMixed{"SingleKeyedAmongOthers", Wish::key, 0, 0, true};
constexpr Shape manyMixed{"ManyKeyedAmongOthers", Wish::key, 3, 2, true};
const auto shapeName = [](const auto& shape) { return std::string(shape.param.name); };
INSTANTIATE_TEST_SUITE_P(Shapes, NotifieeListWalk,
                         testing::Values(single, many, singleOfAttribute, manyOfAttribute,
                                         singleKeyed, manyKeyed, singleMixed, manyMixed),
                         shapeName);
INSTANTIATE_TEST_SUITE_P(Shapes, NotifieeListCrowd,
                         testing::Values(many, manyOfAttribute, manyKeyed, manyMixed), shapeName);
INSTANTIATE_TEST_SUITE_P(Shapes, NotifieeListMixed,
                         testing::Values(manyOfAttribute, singleMixed, manyMixed), shapeName);

TEST_P(NotifieeListWalk, AllAreCalledInTheOrderOfTheirRegistration) {
  EXPECT_EQ(ring(), everyone());
  EXPECT_EQ(ring(), everyone());
}

TEST_P(NotifieeListWalk, ANotifieeThatRemovesItselfIsCalledOnceAndNobodyIsMissed) {
  actor_->reactionIs([&] { actor_->isRegisteredNotifieeIs(false); });
  EXPECT_EQ(ring(), everyone());
  EXPECT_EQ(ring(), joined({outsiders(), before(), behind()}));
}

TEST_P(NotifieeListCrowd, ARemovedEarlierNotifieeHasBeenCalledAndNobodyIsMissed) {
  actor_->onceIs([&] { before_[0]->isRegisteredNotifieeIs(false); });
  EXPECT_EQ(ring(), everyone());
  before_.erase(before_.begin());
  EXPECT_EQ(ring(), everyone());
}

TEST_P(NotifieeListCrowd, ARemovedLaterNotifieeIsNotCalledAndNobodyElseIsMissed) {
  actor_->onceIs([&] {
    behind_[0]->isRegisteredNotifieeIs(false);
    behind_.erase(behind_.begin());
  });
  const Calls called = ring();
  EXPECT_EQ(called, everyone());
  EXPECT_EQ(ring(), everyone());
}

TEST_P(NotifieeListCrowd, ALaterNotifieeWhoseLastReferenceIsDroppedIsNotCalled) {
  actor_->onceIs([&] { behind_.pop_back(); });
  const Calls called = ring();
  EXPECT_EQ(called, everyone());
}

TEST_P(NotifieeListWalk, WhenEverybodyIsRemovedTheWalkEnds) {
  actor_->onceIs([&] {
    for (auto* group : {&crowd_, &outsiders_, &before_, &behind_}) {
      for (const auto& listener : *group) listener->isRegisteredNotifieeIs(false);
    }
    actor_->isRegisteredNotifieeIs(false);
  });
  EXPECT_EQ(ring(), joined({outsiders(), before(), {"actor"}}));
  EXPECT_TRUE(bell_->notifieeList()->empty());
  EXPECT_EQ(ring(), Calls{});
}

TEST_P(NotifieeListWalk, AnAddedNotifieeIsNotCalledForThisChangeAndIsTheLastForTheNext) {
  actor_->onceIs([&] { behind_.push_back(newListener("new")); });
  Calls expected = everyone();
  EXPECT_EQ(ring(), expected);
  expected.insert(expected.end(), "new");
  EXPECT_EQ(ring(), expected);
}

TEST_P(NotifieeListWalk, AHundredAddedNotifieesAreNotCalledForThisChange) {
  actor_->onceIs([&] {
    for (int i = 0; i < 100; ++i) behind_.push_back(newListener("new" + std::to_string(i)));
  });
  const Calls expected = everyone();
  EXPECT_EQ(ring(), expected);
  EXPECT_EQ(ring(), everyone());
}

TEST_P(NotifieeListWalk, ANotifieeThatReplacesItselfIsNotCalledForThisChange) {
  actor_->onceIs([&] {
    actor_->isRegisteredNotifieeIs(false);
    behind_.push_back(newListener("successor"));
  });
  const Calls expected = everyone();
  EXPECT_EQ(ring(), expected);
  EXPECT_EQ(ring(), joined({outsiders(), before(), behind()}));
}

TEST_P(NotifieeListWalk, ANotifieeThatLeavesAndComesBackIsNotCalledAgainAndIsTheLast) {
  actor_->onceIs([&] {
    actor_->isRegisteredNotifieeIs(false);
    actor_->isRegisteredNotifieeIs(true);
  });
  EXPECT_EQ(ring(), everyone());
  EXPECT_EQ(ring(), joined({outsiders(), before(), behind(), {"actor"}}));
}

TEST_P(NotifieeListCrowd, ALaterNotifieeThatLeavesAndComesBackIsNewAndIsNotCalled) {
  actor_->onceIs([&] {
    behind_[0]->isRegisteredNotifieeIs(false);
    behind_[0]->isRegisteredNotifieeIs(true);
    std::rotate(behind_.begin(), behind_.begin() + 1, behind_.end());
  });
  Calls called = ring();
  Calls expected = everyone();
  expected.pop_back();
  EXPECT_EQ(called, expected);
  EXPECT_EQ(ring(), everyone());
}

TEST_P(NotifieeListWalk, ANestedNotificationOfTheSameKeyGoesRoundInFullThenTheOuterOne) {
  actor_->onceIs([&] { bell_->strike("dawn"); });
  EXPECT_EQ(ring(), joined({outsiders(), before(), {"actor"}, everyone(), behind()}));
}

TEST_P(NotifieeListWalk, AWriteOfAnotherAttributeGoesRoundInTheMiddle) {
  actor_->onceIs([&] { bell_->toneIs(bell_->tone() + 1); });
  const Calls listenersToAll = GetParam().wish == Wish::all ? everyone() : outsiders();
  EXPECT_EQ(ring(), joined({outsiders(), before(), {"actor"}, listenersToAll, behind()}));
}

TEST_P(NotifieeListCrowd, RemovalsInANestedNotificationHoldForTheOuterOne) {
  actor_->onceIs([&] {
    behind_[0]->onceIs([&] {
      behind_[1]->isRegisteredNotifieeIs(false);
      behind_.erase(behind_.begin() + 1);
    });
    bell_->strike("dawn");
  });
  const Calls called = ring();
  EXPECT_EQ(called, joined({outsiders(), before(), {"actor"}, everyone(), behind()}));
}

TEST_P(NotifieeListWalk, ANotifieeAddedBeforeANestedNotificationHearsOnlyOfThatOne) {
  Calls old;
  actor_->onceIs([&] {
    old = behind();
    behind_.push_back(newListener("new"));
    bell_->strike("dawn");
  });
  const Calls called = ring();
  EXPECT_EQ(called, joined({outsiders(), before(), {"actor"}, everyone(), old}));
}

TEST_P(NotifieeListWalk, TheNotifierLivesUntilTheNotificationIsThrough) {
  Bell* bell = bell_.get();
  actor_->onceIs([&] {
    bell_ = nullptr;
    for (auto* group : {&crowd_, &outsiders_, &before_, &behind_}) {
      for (const auto& listener : *group) listener->notifierIs(nullptr);
    }
    actor_->notifierIs(nullptr);
    EXPECT_FALSE(bellGone_);
    EXPECT_EQ(bell->references(), 1u) << "the notification's own";
  });
  calls_.clear();
  bell->strike("dawn");
  EXPECT_TRUE(bellGone_);
  EXPECT_EQ(calls_, joined({outsiders(), before(), {"actor"}}));
}

TEST_P(NotifieeListWalk, TheNotifierWhoseLastOutsideReferenceGoesTellsAllItsNotifiees) {
  Bell* bell = bell_.get();
  actor_->onceIs([&] { bell_ = nullptr; });
  calls_.clear();
  bell->strike("dawn");
  EXPECT_EQ(calls_, everyone());
  EXPECT_FALSE(bellGone_) << "the notifiees still hold it";
}

TEST_P(NotifieeListCrowd, ANotifieeThatIsSwitchedOffMidWalkIsNotCalled) {
  actor_->reactionIs([&] { behind_[0]->hasNotificationActiveIs(false); });
  Calls expected = everyone();
  std::erase(expected, behind_[0]->name());
  EXPECT_EQ(ring(), expected);
  actor_->reactionIs(std::function<void()>([] {}));
  behind_[0]->hasNotificationActiveIs(true);
  EXPECT_EQ(ring(), everyone()) << "it has kept its place";
}

TEST_P(NotifieeListCrowd, ANotifieeThatBecomesAZombieMidWalkIsNotCalled) {
  actor_->onceIs([&] { behind_[0]->rokDoZombieReactors(true); });
  Calls expected = everyone();
  std::erase(expected, behind_[0]->name());
  EXPECT_EQ(ring(), expected);
  behind_[0]->rokDoZombieReactors(false);
  EXPECT_EQ(ring(), everyone());
}

TEST_P(NotifieeListWalk, ANotifieeThatMovesToAnotherNotifierHearsOfThatOneOnly) {
  const auto other = Rok::make<Bell>();
  actor_->onceIs([&] {
    actor_->notifierIs(other.get());
    actor_->isRegisteredNotifieeIs(true);
  });
  EXPECT_EQ(ring(), everyone());
  EXPECT_EQ(ring(), joined({outsiders(), before(), behind()}));
  calls_.clear();
  other->strike("dawn");
  EXPECT_EQ(calls_, Calls{"actor"});
}

TEST_P(NotifieeListWalk, WhenOneThrowsAllOthersAreToldAndTheExceptionGoesOn) {
  actor_->onceIs([&] { throw std::runtime_error("first"); });
  try {
    ring();
    FAIL() << "nothing thrown";
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "first");
  }
  EXPECT_EQ(calls_, everyone());
  EXPECT_EQ(ring(), everyone()) << "the list is in order afterwards";
}

TEST_P(NotifieeListCrowd, OfSeveralExceptionsTheFirstGoesOn) {
  actor_->onceIs([&] { throw std::runtime_error("first"); });
  behind_[0]->onceIs([&] { throw std::logic_error("second"); });
  try {
    ring();
    FAIL() << "nothing thrown";
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "first");
  }
  EXPECT_EQ(calls_, everyone());
}

TEST_P(NotifieeListMixed, TheExceptionOfAnUnkeyedNotifieeComesBeforeThatOfAKeyedOne) {
  outsiders_[1]->onceIs([&] { throw std::runtime_error("outsider"); });
  actor_->onceIs([&] { throw std::runtime_error("actor"); });
  try {
    ring();
    FAIL() << "nothing thrown";
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "outsider");
  }
  EXPECT_EQ(calls_, everyone());
}

TEST_P(NotifieeListWalk, ANestedExceptionReachesTheHandlerThatCausedIt) {
  std::string caught;
  actor_->onceIs([&] {
    actor_->onceIs([] { throw std::runtime_error("inner"); });
    try {
      bell_->strike("dawn");
    } catch (const std::runtime_error& e) {
      caught = e.what();
    }
  });
  EXPECT_EQ(ring(), joined({outsiders(), before(), {"actor"}, everyone(), behind()}));
  EXPECT_EQ(caught, "inner");
}

TEST_P(NotifieeListWalk, AThrowerThatRemovedItselfIsGone) {
  actor_->onceIs([&] {
    actor_->isRegisteredNotifieeIs(false);
    throw std::runtime_error("last words");
  });
  EXPECT_THROW(ring(), std::runtime_error);
  EXPECT_EQ(ring(), joined({outsiders(), before(), behind()}));
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

// ===== Random walks

// Notifiees that register, leave and notify at random from inside their calls. For each
// notification it is known who was registered when it began; of those, whoever has stayed all the
// while is called exactly once, and nobody else.
class Turmoil {
 public:
  explicit Turmoil(std::uint32_t seed) : random_(seed) {
    for (std::size_t i = 0; i < 24; ++i) {
      Member member;
      member.wish = i < 8 ? Wish::all : i < 14 ? Wish::attribute : Wish::key;
      member.key = member.wish == Wish::key ? static_cast<int>(i % 3) : -1;
      const std::uint64_t interest = interestOf(member.wish, chime(member.key));
      member.listener = Rok::make<Listener>("", calls_, interest);
      member.listener->notifierIs(bell_.get());
      member.listener->hasNotificationActiveIs(true);
      members_.push_back(member);
      members_[i].listener->reactionIs([this, i] { onCall(i); });
    }
  }

  void run(int rounds) {
    for (int round = 0; round < rounds && !testing::Test::HasFatalFailure(); ++round) {
      for (int i = 0; i < 5; ++i) toggle(pick(members_.size()));
      notify(static_cast<int>(pick(3)));
    }
    for (const Member& member : members_) member.listener->isRegisteredNotifieeIs(false);
    crowd_.clear();
    EXPECT_TRUE(bell_->notifieeList()->empty());
  }

 private:
  struct Member {
    Ptr<Listener> listener;
    Wish wish = Wish::all;
    int key = -1;
    std::optional<int> since;  // when it was registered
  };
  struct Round {
    int key;
    int start;
    std::vector<std::size_t> called;
    std::set<std::size_t> present;  // registered since before the start
  };

  std::size_t pick(std::size_t n) { return random_() % n; }
  static Rok::String chime(int key) { return Rok::_fmt("chime%d", key); }
  bool wants(const Member& member, int key) const { return member.key < 0 || member.key == key; }

  void toggle(std::size_t i) {
    Member& member = members_[i];
    if (member.since) {
      member.listener->isRegisteredNotifieeIs(false);
      member.since.reset();
      for (Round* round : rounds_) round->present.erase(i);
    } else {
      member.listener->isRegisteredNotifieeIs(true);
      member.since = ++clock_;
    }
  }
  void notify(int key) {
    Round round{key, ++clock_, {}, {}};
    for (std::size_t i = 0; i < members_.size(); ++i) {
      if (members_[i].since && wants(members_[i], key)) round.present.insert(i);
    }
    rounds_.push_back(&round);
    bell_->strike(chime(key));
    rounds_.pop_back();
    check(round);
  }
  void onCall(std::size_t i) {
    Round& round = *rounds_.back();
    ASSERT_TRUE(round.present.contains(i))
        << "called though it is new, has left or wants another key";
    round.called.push_back(i);
    const std::size_t what = pick(100);
    if (what < 25) toggle(pick(members_.size()));
    if (what < 10) toggle(i);
    if (what >= 90 && rounds_.size() < 4) notify(static_cast<int>(pick(3)));
  }
  void check(const Round& round) {
    const std::set<std::size_t> once(round.called.begin(), round.called.end());
    ASSERT_EQ(once.size(), round.called.size()) << "called twice";
    for (const std::size_t i : round.present) ASSERT_TRUE(once.contains(i)) << i << " missed";
    ASSERT_TRUE(std::ranges::is_sorted(round.called, {}, [&](std::size_t i) {
      return members_[i].wish;
    })) << "one that wants less came before one that wants more";
  }

  std::mt19937 random_;
  Calls calls_;
  Ptr<Bell> bell_ = Rok::make<Bell>();
  std::vector<Ptr<Listener>> crowd_ = crowd(bell_, calls_);
  std::vector<Member> members_;
  std::vector<Round*> rounds_;
  int clock_ = 0;
};

TEST(NotifieeList, InATurmoilWhoeverStaysIsCalledOnceAndNobodyElseIs) {
  for (std::uint32_t seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    Turmoil(seed).run(400);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace notifierTest
