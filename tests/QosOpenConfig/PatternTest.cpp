// What the state-machine pattern promises, for every machine of the library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/Events.h"
#include "tests/support/MachineTable.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::patternTest {
namespace {

using support::Facts;
using support::House;
using support::TraceCapture;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// The tree of a machine, and no other, over the native objects of a House.
template <class Sm>
class Tree : public testing::Test {
 protected:
  Tree() { support::buildTreeOf<Sm>(house_); }

  Rok::Ptr<Sm> machine() const { return support::standing<Sm>(house_); }
  Rok::Ptr<support::RootOf<Sm>> root() const {
    return support::rootOf<support::RootOf<Sm>>(house_);
  }
  std::string model() const { return support::text(house_.model); }
  // What is traced while an event happens and is undone.
  std::vector<std::string> heard(std::string_view event) {
    const support::Change change = support::prepared(house_.native, event);
    const TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    change.write();
    change.undo();
    return trace.lines();
  }

  House house_;
};

template <class Sm>
std::size_t blocks() {
  return Rok::AllocTrackTypeInfo::of<Sm>().blocks();
}

// ===== All of them

template <class Sm>
class Pattern : public Tree<Sm> {};
TYPED_TEST_SUITE(Pattern, support::Machines, support::ByName);

TYPED_TEST(Pattern, TheFactoryReturnsAMachineThatIsSwitchedOn) {
  const auto made = support::makeFrom<TypeParam>(support::arguments<TypeParam>(this->house_));
  EXPECT_TRUE(made->hasNotificationActive());
  EXPECT_EQ(made->fwkType().name, Facts<TypeParam>::name);
}

TYPED_TEST(Pattern, TheMachineOfTheTreeIsSwitchedOn) {
  EXPECT_TRUE(this->machine()->hasNotificationActive());
}

TYPED_TEST(Pattern, ArgumentsReadBack) {
  const auto given = support::arguments<TypeParam>(this->house_);
  EXPECT_EQ(support::argumentsOf(*support::makeFrom<TypeParam>(given)), given);
}

TYPED_TEST(Pattern, WithoutAnInputItIsMadeAndReadsBackThatThereIsNone) {
  const auto deaf = support::makeDeaf<TypeParam>(this->house_);
  constexpr auto input = support::inputPlace<TypeParam>();
  EXPECT_EQ(std::get<input>(support::argumentsOf(*deaf)), nullptr);
}

TYPED_TEST(Pattern, TheSwitchOfTheRootReachesIt) {
  const auto machine = this->machine();
  this->root()->hasNotificationActiveIs(false);
  EXPECT_FALSE(machine->hasNotificationActive());
  this->root()->hasNotificationActiveIs(true);
  EXPECT_TRUE(machine->hasNotificationActive());
}

TYPED_TEST(Pattern, TheEndOfTheRootEndsItAndLeavesTheOutput) {
  const std::string before = this->model();
  EXPECT_GT(blocks<TypeParam>(), 0u);
  const TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  this->house_.roots.clear();
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(blocks<TypeParam>(), 0u);
  EXPECT_THAT(support::watched(this->house_.native), IsEmpty());
  EXPECT_EQ(this->model(), before);
}

// ===== Those that compute attributes

template <class Sm>
class PatternComputed : public Tree<Sm> {
 protected:
  // Compares every computed attribute of a machine.
  void expect(const Sm& sm, bool hasInput) {
    const auto expectOne = [&](const auto& attribute) {
      using Value = std::decay_t<decltype(attribute.value)>;
      EXPECT_EQ(std::invoke(attribute.get, sm), hasInput ? attribute.value : Value());
    };
    std::apply([&](const auto&... attribute) { (expectOne(attribute), ...); },
               Facts<Sm>::computed());
  }
};
TYPED_TEST_SUITE(PatternComputed, support::ComputingMachines, support::ByName);

TYPED_TEST(PatternComputed, AttributesReadTheInput) { this->expect(*this->machine(), true); }

TYPED_TEST(PatternComputed, AttributesAreTheDefaultsWithoutAnInput) {
  this->expect(*support::makeDeaf<TypeParam>(this->house_), false);
}

// ===== Those that hear something

template <class Sm>
class PatternWatch : public Tree<Sm> {
 protected:
  void expectHears() {
    for (const char* event : Facts<Sm>::events)
      EXPECT_THAT(this->heard(event), Not(IsEmpty())) << event;
  }
  void expectDeaf() {
    const std::string before = this->model();
    for (const char* event : Facts<Sm>::events) EXPECT_THAT(this->heard(event), IsEmpty()) << event;
    EXPECT_EQ(this->model(), before);
  }
};
TYPED_TEST_SUITE(PatternWatch, support::WatchingMachines, support::ByName);

TYPED_TEST(PatternWatch, EachEventIsHeard) { this->expectHears(); }

TYPED_TEST(PatternWatch, SwitchedOffItHearsNothingAndSwitchedOnItHearsAgain) {
  const auto root = this->root();
  root->hasNotificationActiveIs(false);
  root->hasNotificationActiveIs(false);
  this->expectDeaf();
  root->hasNotificationActiveIs(true);
  root->hasNotificationActiveIs(true);
  this->expectHears();
}

TYPED_TEST(PatternWatch, SwitchedOnItReplaysNothingThatItMissed) {
  const auto root = this->root();
  const std::string before = this->model();
  root->hasNotificationActiveIs(false);
  for (const char* event : Facts<TypeParam>::events) {
    support::prepared(this->house_.native, event).write();
  }
  const TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  root->hasNotificationActiveIs(true);
  EXPECT_THAT(trace.lines(), IsEmpty());
  EXPECT_EQ(this->model(), before);
}

TYPED_TEST(PatternWatch, AZombieHearsNothingAndRevivedItHearsAgain) {
  const auto machine = this->machine();
  machine->rokDoZombieReactors(true);
  EXPECT_TRUE(machine->rokMarkedForDeletion());
  this->expectDeaf();
  machine->rokDoZombieReactors(false);
  this->expectHears();
}

TYPED_TEST(PatternWatch, AfterTheEndOfTheRootNobodyHears) {
  this->house_.roots.clear();
  this->expectDeaf();
}

// Outside the tree, which is switched off, so that nothing else hears.
TYPED_TEST(PatternWatch, AMachineOfTheFactoryHears) {
  const auto arguments = support::arguments<TypeParam>(this->house_);
  this->root()->hasNotificationActiveIs(false);
  const auto made = support::makeFrom<TypeParam>(arguments);
  this->expectHears();
}

// ===== Those with a chained input

template <class Sm>
class PatternChainedInput : public Tree<Sm> {
 protected:
  auto in() const { return std::invoke(Facts<Sm>::chain.in, *this->machine()); }
  template <class Input>
  void pointAt(const Input& input) const {
    std::invoke(Facts<Sm>::chain.is, *this->machine(), input);
  }
  void release() const { std::invoke(Facts<Sm>::chain.del, *this->machine()); }

  auto mounted() const { return Facts<Sm>::mounted(this->house_); }
  template <class Input>
  void mount(const Input& input) const {
    Facts<Sm>::mountChained(this->house_, input);
  }
  // Another object of the kind that is mounted.
  auto another() const {
    return Rok::make<std::remove_const_t<typename decltype(mounted())::element_type>>();
  }
  std::size_t linesOfTheEvent() { return this->heard(Facts<Sm>::chainEvent).size(); }
};
TYPED_TEST_SUITE(PatternChainedInput, support::ChainedMachines, support::ByName);

std::size_t watchers(const Rok::Notifier& notifier) { return notifier.notifieeList()->notifiees(); }

TYPED_TEST(PatternChainedInput, ItFollowsWhatIsMounted) {
  const auto first = this->mounted();
  const auto next = this->another();
  EXPECT_EQ(this->in(), first);
  this->mount(next);
  EXPECT_EQ(this->in(), next);
  EXPECT_EQ(watchers(*first), 0u);
  EXPECT_GT(watchers(*next), 0u);
}

TYPED_TEST(PatternChainedInput, WithoutAnythingMountedItIsReleasedUntilTheNextComes) {
  const auto first = this->mounted();
  this->mount(decltype(this->another())());
  EXPECT_EQ(this->in(), nullptr);
  EXPECT_EQ(watchers(*first), 0u);
  this->mount(first);
  EXPECT_EQ(this->in(), first);
  EXPECT_GT(this->linesOfTheEvent(), 0u);
}

TYPED_TEST(PatternChainedInput, PointedElsewhereItRegistersThereOnceAndCallsNoHandler) {
  const auto other = this->another();
  const std::size_t before = watchers(*this->mounted());
  const TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  this->pointAt(other);
  this->pointAt(other);
  EXPECT_EQ(this->in(), other);
  EXPECT_EQ(watchers(*other), 1u);
  EXPECT_EQ(watchers(*this->mounted()), before - 1);
  EXPECT_THAT(trace.lines(), IsEmpty());
}

TYPED_TEST(PatternChainedInput, ReleasedItHearsNothingUntilItIsPointedThereAgain) {
  const std::size_t before = this->linesOfTheEvent();
  const std::size_t watching = watchers(*this->mounted());
  this->release();
  EXPECT_EQ(this->in(), nullptr);
  EXPECT_EQ(watchers(*this->mounted()), watching - 1);
  EXPECT_LT(this->linesOfTheEvent(), before);
  this->pointAt(this->mounted());
  EXPECT_EQ(this->linesOfTheEvent(), before);
}

TYPED_TEST(PatternChainedInput, TheSwitchOfTheRootReachesIt) {
  this->root()->hasNotificationActiveIs(false);
  EXPECT_EQ(this->linesOfTheEvent(), 0u);
  this->root()->hasNotificationActiveIs(true);
  EXPECT_GT(this->linesOfTheEvent(), 0u);
}

TYPED_TEST(PatternChainedInput, ThatOfAZombieHearsNothing) {
  const std::size_t before = this->linesOfTheEvent();
  this->machine()->rokDoZombieReactors(true);
  EXPECT_LT(this->linesOfTheEvent(), before);
}

TYPED_TEST(PatternChainedInput, ADeafMachineHasNone) {
  const auto deaf = support::makeDeaf<TypeParam>(this->house_);
  EXPECT_EQ(std::invoke(Facts<TypeParam>::chain.in, *deaf), nullptr);
}

// ===== Children of a collection

template <class Sm>
class PatternChild : public Tree<Sm> {
 protected:
  using Parent = typename Facts<Sm>::Parent;
  using Arguments = support::ArgumentsOf<Sm>;

  Rok::Ptr<Parent> parent() const { return support::standing<Parent>(this->house_); }
  const auto& children() const { return Facts<Sm>::collectionOf(*parent()); }
  Arguments given() const { return support::arguments<Sm>(this->house_); }

  // The mutators of the collection.
  Rok::Ptr<Sm> is(const Arguments& arguments) const {
    return std::apply([this](const auto&... each) { return Facts<Sm>::is(*parent(), each...); },
                      arguments);
  }
  template <class Key>
  void del(const Key& key) const {
    std::invoke(Facts<Sm>::collection.del, *parent(), key);
  }
  void delAll() const { std::invoke(Facts<Sm>::collection.delAll, *parent()); }

  // Another value for an argument, under which the key of the child is the same.
  template <std::size_t place>
  auto another() {
    using Argument = std::tuple_element_t<place, Arguments>;
    using Input = decltype(Facts<Sm>::made(Facts<Sm>::key()));
    if constexpr (std::is_same_v<Argument, Velmo::String>) {
      return Velmo::String("another");
    } else if constexpr (std::is_same_v<Argument, Nerit::IntfId>) {
      return support::otherInterface;
    } else if constexpr (std::is_same_v<Argument, Classifier::Type>) {
      return Classifier::classifierTypeIpv6;
    } else if constexpr (std::is_pointer_v<Argument>) {
      return support::standing<std::remove_pointer_t<Argument>>(otherHouse()).get();
    } else if constexpr (std::is_convertible_v<Input, Argument>) {
      return Argument(Facts<Sm>::made(Facts<Sm>::key()));
    } else {
      return Argument(Rok::make<std::remove_const_t<typename Argument::element_type>>());
    }
  }

 private:
  const House& otherHouse() {
    if (otherHouse_.roots.empty()) support::buildTreeOf<Sm>(otherHouse_);
    return otherHouse_;
  }
  House otherHouse_;
};
TYPED_TEST_SUITE(PatternChild, support::CollectedMachines, support::ByName);

// What a write throws, as its text, the argument and the id; "" when it throws nothing.
template <class Exception>
std::string refusal(const std::function<void()>& write) {
  try {
    write();
  } catch (const Exception& e) {
    return std::string(e.what()) + "; " + e.attribute() + " " + std::to_string(e.attributeId());
  }
  return "";
}
std::string idOf(std::size_t place) { return std::to_string(130 + place); }

TYPED_TEST(PatternChild, ANullArgumentIsRefusedByItsName) {
  const std::string before = this->model();
  const auto members = this->children().members();
  support::eachPlace<TypeParam>([&](auto place) {
    auto arguments = this->given();
    if constexpr (support::isPointer<std::decay_t<decltype(std::get<place>(arguments))>>) {
      std::get<place>(arguments) = nullptr;
      const std::string name = support::nameAt<TypeParam>(place);
      EXPECT_EQ(refusal<Rok::MutatorArgNullPointerException>([&] { this->is(arguments); }),
                std::string(Facts<TypeParam>::name) + ": argument " + name + " (attribute " +
                    idOf(place) + ") must not be null; " + name + " " + idOf(place));
    }
  });
  EXPECT_EQ(this->children().members(), members);
  EXPECT_EQ(this->model(), before);
}

TYPED_TEST(PatternChild, TheSameArgumentsGiveTheSameChild) {
  const std::string before = this->model();
  const auto members = this->children().members();
  EXPECT_EQ(this->is(this->given()), this->machine());
  EXPECT_EQ(this->children().members(), members);
  EXPECT_EQ(this->model(), before);
}

// All arguments from a place on are others, so that each is once the first.
TYPED_TEST(PatternChild, TheFirstArgumentThatDiffersIsRefusedByItsName) {
  const std::string before = this->model();
  const auto child = this->machine();
  const auto given = this->given();
  const auto members = this->children().members();
  support::eachPlace<TypeParam>([&](auto first) {
    auto arguments = given;
    support::eachPlace<TypeParam>([&](auto place) {
      if (place() >= first()) std::get<place>(arguments) = this->template another<place>();
    });
    const std::string name = support::nameAt<TypeParam>(first);
    const std::string text =
        refusal<Rok::MutatorReinstantiatingException>([&] { this->is(arguments); });
    EXPECT_THAT(text,
                StartsWith(std::string(Facts<TypeParam>::name) + ": a child built with another " +
                           name + " (attribute " + idOf(first) + ") exists: "));
    EXPECT_THAT(text, testing::EndsWith("; " + name + " " + idOf(first)));
  });
  EXPECT_EQ(this->machine(), child);
  EXPECT_EQ(support::argumentsOf(*child), given);
  EXPECT_EQ(this->children().members(), members);
  EXPECT_EQ(this->model(), before);
}

TYPED_TEST(PatternChild, AnotherKeyMakesAnotherChild) {
  const auto otherKey = Facts<TypeParam>::otherKey();
  this->del(otherKey);
  const auto child = this->machine();
  const auto members = this->children().members();
  auto arguments = this->given();
  std::get<support::inputPlace<TypeParam>()>(arguments) = Facts<TypeParam>::made(otherKey);
  const auto made = this->is(arguments);
  EXPECT_NE(made, child);
  EXPECT_EQ(this->children().child(otherKey), made);
  EXPECT_EQ(this->machine(), child);
  EXPECT_EQ(this->children().members(), members + 1);
}

TYPED_TEST(PatternChild, DeletingItLeavesTheOutputAndEndsIt) {
  const std::string before = this->model();
  const auto members = this->children().members();
  this->del(Facts<TypeParam>::key());
  EXPECT_EQ(this->machine(), nullptr);
  EXPECT_EQ(this->children().members(), members - 1);
  for (const char* event : Facts<TypeParam>::events)
    EXPECT_THAT(this->heard(event), IsEmpty()) << event;
  this->del(Facts<TypeParam>::key());
  EXPECT_EQ(this->children().members(), members - 1) << "a key without a child";
  EXPECT_EQ(this->model(), before);
}

TYPED_TEST(PatternChild, DeletingAllLeavesTheOutputAndEndsThem) {
  const std::string before = this->model();
  this->delAll();
  EXPECT_EQ(this->children().members(), 0u);
  for (const char* event : Facts<TypeParam>::events)
    EXPECT_THAT(this->heard(event), IsEmpty()) << event;
  this->delAll();
  EXPECT_EQ(this->children().members(), 0u);
  EXPECT_EQ(this->model(), before);
}

TYPED_TEST(PatternChild, TheFactoryBuildsWhatItsParentBuilds) {
  const auto given = this->given();
  const auto lines = [&](const auto& make) {
    this->del(Facts<TypeParam>::key());
    const TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    make();
    return trace.linesWithoutAddresses();
  };
  const auto byParent = lines([&] { this->is(given); });
  EXPECT_THAT(byParent, Not(IsEmpty()));
  EXPECT_EQ(lines([&] { support::makeFrom<TypeParam>(given); }), byParent);
}

TYPED_TEST(PatternChild, AZombieParentLeavesItAsItIs) {
  this->parent()->rokDoZombieReactors(true);
  EXPECT_FALSE(this->machine()->rokMarkedForDeletion());
  for (const char* event : Facts<TypeParam>::events) {
    EXPECT_THAT(this->heard(event), Not(IsEmpty())) << event;
  }
}

TYPED_TEST(PatternChild, AParentWithoutAnInputHasNone) {
  const auto deaf = support::makeDeaf<typename Facts<TypeParam>::Parent>(this->house_);
  EXPECT_EQ(Facts<TypeParam>::collectionOf(*deaf).members(), 0u);
}

// ===== Children that their parent mirrors for life

template <class Sm>
class PatternMirror : public PatternChild<Sm> {};
TYPED_TEST_SUITE(PatternMirror, support::MirroredMachines, support::ByName);

TYPED_TEST(PatternMirror, AnotherNativeObjectUnderItsKeyIsRefused) {
  const std::string before = this->model();
  const auto child = this->machine();
  const auto given = this->given();
  const std::string name = support::nameAt<TypeParam>(support::inputPlace<TypeParam>());
  EXPECT_THAT(
      refusal<Rok::MutatorReinstantiatingException>([&] {
        Facts<TypeParam>::mount(this->house_, Facts<TypeParam>::made(Facts<TypeParam>::key()));
      }),
      StartsWith(std::string(Facts<TypeParam>::name) + ": a child built with another " + name));
  EXPECT_EQ(this->machine(), child);
  EXPECT_EQ(support::argumentsOf(*child), given);
  EXPECT_EQ(this->model(), before);
}

// Not even over an output that others emptied.
TYPED_TEST(PatternMirror, AParentThatIsToldOfItAgainKeepsItAndWritesNothing) {
  const auto child = this->machine();
  const host::Model& model = this->house_.model;
  for (const auto& [name, each] : model.classifiers->classifier()) {
    model.classifiers->classifierDel(name);
  }
  for (const auto& [name, each] : model.queues->q()) model.queues->qDel(name);
  for (const auto& [name, each] : model.queueManagementProfiles->queueManagementProfile()) {
    model.queueManagementProfiles->queueManagementProfileDel(name);
  }
  for (const auto& [name, each] : model.interfaces->interface()) {
    each->inputDel();
    each->outputDel();
  }
  const std::string before = this->model();
  std::invoke(Facts<TypeParam>::told, *this->parent(), Facts<TypeParam>::key());
  EXPECT_EQ(this->machine(), child);
  EXPECT_EQ(this->model(), before);
}

}  // namespace
}  // namespace QosOc::patternTest
