#include "Rok/Ptr.h"

#include <atomic>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "Dorpel/Slab.h"
#include "Rok/FwkType.h"

namespace ptrTest {
namespace {

using Rok::Ptr;

// Writes its last moments into a journal.
struct Lamp : Rok::PtrInterface {
  using Journal = std::vector<std::string>;

  Lamp() = default;
  explicit Lamp(Journal& lines) : journal(&lines) {}
  void zeroReferencesIs(bool v) override {
    if (journal != nullptr) journal->push_back(v ? "zero" : "not zero");
    whole = lit == 1;
  }
  ~Lamp() override {
    if (journal != nullptr) journal->push_back(whole ? "gone" : "gone without a zero");
  }

  Journal* journal = nullptr;
  int lit = 1;
  bool whole = false;
};

TEST(Ptr, AnObjectIsBornWithOneReference) {
  const Ptr<Lamp> lamp = Rok::make<Lamp>();
  EXPECT_EQ(lamp->references(), 1u);
}

TEST(Ptr, ACopyTakesAReferenceAndGivesItBack) {
  const Ptr<Lamp> lamp = Rok::make<Lamp>();
  {
    const Ptr<Lamp> copy = lamp;
    EXPECT_EQ(lamp->references(), 2u);
    Ptr<Lamp> assigned;
    assigned = copy;
    EXPECT_EQ(lamp->references(), 3u);
    const Ptr<Lamp> raw(lamp.get());
    EXPECT_EQ(lamp->references(), 4u);
    assigned = nullptr;
    EXPECT_EQ(lamp->references(), 3u);
  }
  EXPECT_EQ(lamp->references(), 1u);
}

TEST(Ptr, AMoveHandsTheReferenceOver) {
  Ptr<Lamp> lamp = Rok::make<Lamp>();
  Lamp* object = lamp.get();
  Ptr<Lamp> moved = std::move(lamp);
  EXPECT_EQ(moved.get(), object);
  EXPECT_EQ(lamp, nullptr);  // NOLINT(bugprone-use-after-move): null is what a move leaves
  EXPECT_EQ(object->references(), 1u);
  Ptr<Lamp> assigned = Rok::make<Lamp>();
  assigned = std::move(moved);
  EXPECT_EQ(assigned.get(), object);
  EXPECT_EQ(object->references(), 1u);
}

TEST(Ptr, AssigningItselfChangesNothing) {
  Ptr<Lamp> lamp = Rok::make<Lamp>();
  Ptr<Lamp>& same = lamp;
  lamp = same;
  EXPECT_EQ(lamp->references(), 1u);
  lamp = std::move(same);
  EXPECT_EQ(lamp->references(), 1u);
}

TEST(Ptr, ConvertsToAPointerToConstAndToABase) {
  const Ptr<Lamp> lamp = Rok::make<Lamp>();
  const Ptr<Lamp const> seen = lamp;
  EXPECT_EQ(lamp->references(), 2u);
  EXPECT_EQ(seen.get(), lamp.get());
  EXPECT_TRUE(seen == lamp);
  const Ptr<Rok::PtrInterface> base = lamp;
  EXPECT_EQ(base->references(), 3u);
  Ptr<Lamp> given = lamp;
  const Ptr<Lamp const> taken = std::move(given);
  EXPECT_EQ(lamp->references(), 4u);
  EXPECT_FALSE((std::is_convertible_v<Ptr<Lamp const>, Ptr<Lamp>>));
  EXPECT_FALSE((std::is_convertible_v<Ptr<Rok::PtrInterface>, Ptr<Lamp>>));
}

TEST(Ptr, NullIsFalseAndEqualToNullptr) {
  const Ptr<Lamp> nothing;
  EXPECT_FALSE(nothing);
  EXPECT_TRUE(nothing == nullptr);
  EXPECT_EQ(nothing, Ptr<Lamp>(nullptr));
  const Ptr<Lamp> lamp = Rok::make<Lamp>();
  EXPECT_TRUE(lamp);
  EXPECT_FALSE(lamp == nullptr);
  EXPECT_NE(lamp, nothing);
}

TEST(Ptr, AdoptAndReleaseMoveAReferenceWithoutCounting) {
  Ptr<Lamp> lamp = Rok::make<Lamp>();
  Lamp* object = lamp.release();
  EXPECT_EQ(lamp, nullptr);
  EXPECT_EQ(object->references(), 1u);
  lamp = Ptr<Lamp>::adopt(object);
  EXPECT_EQ(object->references(), 1u);
}

TEST(Ptr, SwapExchangesTheObjects) {
  Ptr<Lamp> a = Rok::make<Lamp>();
  Ptr<Lamp> b;
  Lamp* object = a.get();
  a.swap(b);
  EXPECT_EQ(a, nullptr);
  EXPECT_EQ(b.get(), object);
}

TEST(Ptr, ZeroReferencesIsRunsOnTheWholeObjectBeforeTheDestructor) {
  Lamp::Journal journal;
  Ptr<Lamp> lamp = Rok::make<Lamp>(journal);
  Ptr<Lamp> copy = lamp;
  lamp = nullptr;
  EXPECT_TRUE(journal.empty());
  copy = nullptr;
  EXPECT_EQ(journal, (Lamp::Journal{"zero", "gone"}));
}

TEST(Ptr, AReferenceMayBeBorrowedDuringTheLastMoments) {
  struct Borrower : Lamp {
    using Lamp::Lamp;
    void zeroReferencesIs(bool v) override {
      {
        const Ptr<Borrower> borrowed(this);
        const Ptr<Borrower> again = borrowed;
        EXPECT_EQ(references(), 3u);
      }
      const Ptr<Borrower> once(this);
      Lamp::zeroReferencesIs(v);
    }
  };
  Lamp::Journal journal;
  Rok::make<Borrower>(journal);
  EXPECT_EQ(journal, (Lamp::Journal{"zero", "gone"}));
}

TEST(Ptr, AReferenceMayBeTakenAndGivenBackInAConstructor) {
  struct Early : Lamp {
    explicit Early(Journal& lines) : Lamp(lines) {
      const Ptr<Early> self(this);
      EXPECT_EQ(references(), 2u);
    }
  };
  Lamp::Journal journal;
  const Ptr<Early> early = Rok::make<Early>(journal);
  EXPECT_TRUE(journal.empty());
  EXPECT_EQ(early->references(), 1u);
}

TEST(Ptr, AMemberObjectKeepsItsBirthReference) {
  struct House : Rok::PtrInterface {
    explicit House(Lamp::Journal& lines) : lamp(lines) {}
    Lamp lamp;
  };
  Lamp::Journal journal;
  {
    const Ptr<House> house = Rok::make<House>(journal);
    { const Ptr<Lamp> borrowed(&house->lamp); }
    EXPECT_TRUE(journal.empty());
    EXPECT_EQ(house->lamp.references(), 1u);
  }
  EXPECT_EQ(journal, (Lamp::Journal{"gone without a zero"}));
}

TEST(Ptr, TheFlagsDoNotDisturbTheCount) {
  Lamp::Journal journal;
  Ptr<Lamp> lamp = Rok::make<Lamp>(journal);
  const Ptr<Lamp> copy = lamp;
  lamp->hasNotificationActiveIs(true);
  EXPECT_TRUE(lamp->hasNotificationActive());
  EXPECT_FALSE(lamp->rokMarkedForDeletion());
  lamp->rokMarkedForDeletionIs(true);
  EXPECT_TRUE(lamp->rokMarkedForDeletion());
  EXPECT_EQ(lamp->references(), 2u);
  lamp->hasNotificationActiveIs(false);
  EXPECT_FALSE(lamp->hasNotificationActive());
  EXPECT_TRUE(lamp->rokMarkedForDeletion());
  lamp->hasNotificationActiveIs(true);
  EXPECT_EQ(lamp->references(), 2u);
  lamp = nullptr;
  EXPECT_TRUE(journal.empty());
  EXPECT_EQ(copy->references(), 1u);
}

TEST(Ptr, AnObjectWithBothFlagsUpDiesWithItsLastReference) {
  Lamp::Journal journal;
  Ptr<Lamp> lamp = Rok::make<Lamp>(journal);
  lamp->hasNotificationActiveIs(true);
  lamp->rokMarkedForDeletionIs(true);
  lamp = nullptr;
  EXPECT_EQ(journal, (Lamp::Journal{"zero", "gone"}));
}

TEST(Ptr, TheFlagsAreDownAtBirth) {
  const Ptr<Lamp> lamp = Rok::make<Lamp>();
  EXPECT_FALSE(lamp->hasNotificationActive());
  EXPECT_FALSE(lamp->rokMarkedForDeletion());
}

TEST(Ptr, TheCoreIsOneWord) { EXPECT_EQ(sizeof(Rok::VFPtrInterface), 4u); }

TEST(Ptr, NobodyCanWatchAPlainObject) { EXPECT_EQ(Rok::make<Lamp>()->notifieeList(), nullptr); }

TEST(Ptr, ObjectsComeFromTheSlabsAndGoBackWithTheirOwnSize) {
  struct Large : Lamp {
    char room[200] = {};
  };
  const Dorpel::SlabUse before = Dorpel::slabUse();
  {
    const Ptr<Lamp> lamp = Rok::make<Large>();
    EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
    EXPECT_GE(Dorpel::slabUse().bytes, before.bytes + sizeof(Large));
  }
  EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes);
}

TEST(Ptr, AConstructorThatThrowsGivesItsBlockBack) {
  struct Broken : Lamp {
    Broken() { throw 1; }
  };
  const Dorpel::SlabUse before = Dorpel::slabUse();
  EXPECT_THROW(Rok::make<Broken>(), int);
  EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes);
}

// Two threads that begin together and do two million turns each: enough to meet on a busy machine.
template <class A, class B>
void atOnce(const A& a, const B& b) {
  constexpr int turns = 2'000'000;
  Rok::VFPtrInterface::threadSafePointers_ = true;
  std::atomic<int> ready = 0;
  const auto meet = [&ready] {
    ++ready;
    while (ready < 2) std::this_thread::yield();
  };
  std::thread other([&] {
    meet();
    for (int i = 0; i < turns; ++i) b(i);
  });
  meet();
  for (int i = 0; i < turns; ++i) a(i);
  other.join();
  Rok::VFPtrInterface::threadSafePointers_ = false;
}

TEST(Ptr, TwoThreadsCountOneObjectWhenPointersAreThreadSafe) {
  Lamp::Journal journal;
  Ptr<Lamp> lamp = Rok::make<Lamp>(journal);
  const auto copyTwice = [&lamp](int) {
    const Ptr<Lamp> copy = lamp;
    const Ptr<Lamp const> again = copy;
  };
  atOnce(copyTwice, copyTwice);
  EXPECT_EQ(lamp->references(), 1u);
  EXPECT_TRUE(journal.empty());
  lamp = nullptr;
  EXPECT_EQ(journal, (Lamp::Journal{"zero", "gone"}));
}

TEST(Ptr, AFlagThatMovesDoesNotLoseTheCountOfAnotherThread) {
  const Ptr<Lamp> lamp = Rok::make<Lamp>();
  atOnce([&lamp](int) { const Ptr<Lamp> copy = lamp; },
         [&lamp](int i) { lamp->hasNotificationActiveIs(i % 2 == 0); });
  EXPECT_EQ(lamp->references(), 1u);
  EXPECT_FALSE(lamp->hasNotificationActive());
}

}  // namespace
}  // namespace ptrTest
