// What happens to a notification while it goes round.
#include <algorithm>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>

#include "Rok/Notifier.h"
#include "tests/support/RokListener.h"
#include "tests/support/RokMaps.h"

namespace notifieeWalkTest {
namespace {

using namespace RokTest;
using Rok::Ptr;

// ===== What happens to a notification while it goes round

// An actor whose reaction is the test's, and bystanders round it, who must not suffer. All of them
// want to hear of everything, or of one attribute, or of one key of it.
struct Shape {
  const char* name;
  Wish wish;
  int before;
  int behind;
  bool outsiders;  // there are two that want to hear of everything as well
};

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
}  // namespace notifieeWalkTest
