// The watched inputs of a state machine.
#include <functional>
#include <stdexcept>

#include "Dorpel/Slab.h"
#include "Rok/StateMachine.h"
#include "tests/support/DeviceTree.h"
#include "tests/support/RokDevice.h"
#include "tests/support/RokListener.h"

namespace watchTest {
namespace {

using namespace RokTest;
using Rok::AllocTrackTypeInfo;
using Rok::Ptr;

// ===== Watches

// Runs a test's code in its handlers.
class Script final : public Rok::PtrInterface {
 public:
  Calls calls;
  std::function<void()> act;
};

// Watches two attributes of a bell, or one key of one.
class ScriptSm final : public Rok::StateMachine<ScriptSm> {
 public:
  static constexpr std::string_view rokTypeName = "ScriptSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"bell", &ScriptSm::bell},
                      Rok::Argument{"script", &ScriptSm::script}};
  }
  Ptr<Bell const> bell() const { return bell_.ptr(); }
  const Ptr<Script>& script() const { return script_; }
  auto& watch() { return bell_; }

  void handleTone() { run("tone"); }
  void handleChime(const Rok::String& key) { run("chime " + std::string(key)); }

 private:
  friend Rok::StateMachine<ScriptSm>;
  using RokBell = Rok::Watch<ScriptSm, Bell, Rok::On<Bell::Attr::tone, &ScriptSm::handleTone>,
                             Rok::On<Bell::Attr::chime, &ScriptSm::handleChime>>;
  ScriptSm(const Ptr<Bell const>& bell, const Ptr<Script>& script)
      : bell_(*this, bell), script_(script) {}
  auto parts() { return std::tie(bell_); }
  void run(const std::string& what) {
    script_->calls.push_back(what);
    if (script_->act) script_->act();
    script_->calls.push_back("end of " + what);  // the machine is still there
  }

  RokBell bell_;
  Ptr<Script> script_;
};

// Reacts to a tone twice, the second time also as a zombie.
class TwiceSm final : public Rok::StateMachine<TwiceSm> {
 public:
  static constexpr std::string_view rokTypeName = "TwiceSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"bell", &TwiceSm::bell},
                      Rok::Argument{"script", &TwiceSm::script}};
  }
  Ptr<Bell const> bell() const { return bell_.ptr(); }
  const Ptr<Script>& script() const { return script_; }
  auto& watch() { return bell_; }

  void handleTone() {
    script_->calls.push_back("tone");
    if (script_->act) script_->act();
  }
  void followTone() { script_->calls.push_back("follow"); }

 private:
  friend Rok::StateMachine<TwiceSm>;
  using RokBell = Rok::Watch<TwiceSm, Bell, Rok::On<Bell::Attr::tone, &TwiceSm::handleTone>,
                             Rok::OnEvenZombie<Bell::Attr::tone, &TwiceSm::followTone>>;
  TwiceSm(const Ptr<Bell const>& bell, const Ptr<Script>& script)
      : bell_(*this, bell), script_(script) {}
  auto parts() { return std::tie(bell_); }

  RokBell bell_;
  Ptr<Script> script_;
};

class KeyScriptSm final : public Rok::StateMachine<KeyScriptSm> {
 public:
  static constexpr std::string_view rokTypeName = "KeyScriptSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"bell", &KeyScriptSm::bell},
                      Rok::Argument{"script", &KeyScriptSm::script}};
  }
  Ptr<Bell const> bell() const { return bell_.ptr(); }
  const Ptr<Script>& script() const { return script_; }
  auto& watch() { return bell_; }

  void handleChime(const Rok::String& key) {
    script_->calls.push_back("chime " + std::string(key));
    if (script_->act) script_->act();
    script_->calls.push_back("end of chime " + std::string(key));
  }

 private:
  friend Rok::StateMachine<KeyScriptSm>;
  using RokBell =
      Rok::KeyedWatch<KeyScriptSm, Bell, Rok::On<Bell::Attr::chime, &KeyScriptSm::handleChime>>;
  KeyScriptSm(const Ptr<Bell const>& bell, const Ptr<Script>& script)
      : bell_(*this, bell, Rok::String("dawn")), script_(script) {}
  auto parts() { return std::tie(bell_); }

  RokBell bell_;
  Ptr<Script> script_;
};

TEST(Watch, CallsTheHandlerOfTheAttributeThatChangedAndNoOther) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto sm = ScriptSm::create(bell, script);
  bell->toneIs(440);
  bell->strike("dawn");
  bell->volumeIs(11);
  EXPECT_EQ(script->calls, (Calls{"tone", "end of tone", "chime dawn", "end of chime dawn"}));
}

TEST(Watch, ReadsItsInput) {
  const auto bell = Rok::make<Bell>();
  const auto sm = ScriptSm::create(bell, Rok::make<Script>());
  EXPECT_TRUE(sm->watch());
  EXPECT_EQ(sm->watch().get(), bell.get());
  EXPECT_EQ(sm->watch()->tone(), 0);
  EXPECT_EQ(&*sm->watch(), bell.get());
  EXPECT_EQ(sm->watch().ptr(), bell);
  const auto deaf = ScriptSm::create(Ptr<Bell const>(), Rok::make<Script>());
  EXPECT_FALSE(deaf->watch());
  EXPECT_EQ(deaf->watch().ptr(), nullptr);
}

TEST(Watch, MarkedForDeletionRefusesACallThatStillReachesIt) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto sm = ScriptSm::create(bell, script);
  sm->watch().rokMarkedForDeletionIs(true);  // and still switched on
  bell->toneIs(440);
  EXPECT_EQ(script->calls, Calls{});
  sm->watch().rokMarkedForDeletionIs(false);
  sm->watch().ownerDel();
  bell->toneIs(441);
  EXPECT_EQ(script->calls, Calls{});
}

TEST(Watch, RunsSeveralReactionsToOneAttributeInTheirOrder) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  auto sm = TwiceSm::create(bell, script);
  bell->toneIs(440);
  EXPECT_EQ(script->calls, (Calls{"tone", "follow"}));
  script->calls.clear();
  script->act = [&] { sm = nullptr; };
  bell->toneIs(441);
  EXPECT_EQ(script->calls, (Calls{"tone", "follow"})) << "the machine lives until both are done";
  bell->toneIs(442);
  EXPECT_EQ(script->calls.size(), 2u);
}

TEST(Watch, AFirstReactionThatThrowsKeepsTheSecondFromRunning) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto sm = TwiceSm::create(bell, script);
  script->act = [] { throw std::runtime_error("out of tune"); };
  EXPECT_THROW(bell->toneIs(440), std::runtime_error);
  EXPECT_EQ(script->calls, Calls{"tone"});
}

TEST(Watch, AsAZombieRunsOnlyTheReactionsThatAZombieHas) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto sm = TwiceSm::create(bell, script);
  sm->watch().rokMarkedForDeletionIs(true);  // and still switched on
  bell->toneIs(440);
  EXPECT_EQ(script->calls, Calls{"follow"});
  sm->watch().ownerDel();
  bell->toneIs(441);
  EXPECT_EQ(script->calls, Calls{"follow"}) << "the watch has no owner any more";
}

TEST(Watch, WithoutAnInputRunsNoReactionNotEvenThoseOfAZombie) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto sm = TwiceSm::create(bell, script);
  sm->watch().inputDel();
  sm->watch().onAttribute(Bell::Attr::tone.id, nullptr);
  sm->watch().rokMarkedForDeletionIs(true);
  sm->watch().onAttribute(Bell::Attr::tone.id, nullptr);
  const auto deaf = TwiceSm::create(Ptr<Bell const>(), script);
  deaf->watch().onAttribute(Bell::Attr::tone.id, nullptr);
  EXPECT_EQ(script->calls, Calls{});
}

TEST(Watch, AReactionThatLetsGoOfTheInputKeepsTheNextFromRunning) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto sm = TwiceSm::create(bell, script);
  script->act = [&] { sm->watch().inputDel(); };
  bell->toneIs(440);
  EXPECT_EQ(script->calls, Calls{"tone"});
}

TEST(Watch, OfOneAttributeSaysSoToItsNotifier) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  EXPECT_EQ(TwiceSm::create(bell, script)->watch().interest(),
            Rok::NotifieeList::interestIn(Bell::Attr::tone.id));
  EXPECT_EQ(ScriptSm::create(bell, script)->watch().interest(), 0u) << "it watches two";
}

// The machine's own watch alone, or among others on the same notifier, or for one key.
template <class Sm>
void expectOwnerOutlivesItsHandler(bool amongOthers) {
  SCOPED_TRACE(Sm::rokTypeName);
  bool bellGone = false;
  auto bell = Rok::make<Bell>(bellGone);
  const auto script = Rok::make<Script>();
  Calls calls;
  std::vector<Ptr<Listener>> others;
  const auto listenToo = [&](const char* name, std::uint64_t interest) {
    if (amongOthers) others.push_back(listen(bell, name, calls, interest));
  };
  listenToo("before", 0);
  listenToo("keyed before", interestInChime("dawn"));
  auto sm = Sm::create(bell, script);
  listenToo("behind", 0);
  listenToo("keyed behind", interestInChime("dawn"));
  script->act = [&] {
    sm = nullptr;
    EXPECT_EQ(AllocTrackTypeInfo::of<Sm>().blocks(), 1u) << "it lives until its handler returns";
  };
  bell->strike("dawn");
  EXPECT_EQ(AllocTrackTypeInfo::of<Sm>().blocks(), 0u);
  EXPECT_EQ(script->calls, (Calls{"chime dawn", "end of chime dawn"}));
  if (amongOthers) {
    EXPECT_EQ(calls, (Calls{"before", "behind", "keyed before", "keyed behind"}));
  }
  EXPECT_EQ(notifieesOf(bell), others.size());
  others.clear();
  bell = nullptr;
  EXPECT_TRUE(bellGone);
}

TEST(Watch, AHandlerMayDropTheLastReferenceToItsOwner) {
  for (const bool amongOthers : {false, true}) {
    expectOwnerOutlivesItsHandler<ScriptSm>(amongOthers);
    expectOwnerOutlivesItsHandler<KeyScriptSm>(amongOthers);
  }
}

TEST(Watch, AHandlerMayDropItsOwnerAndItsNotifierTogether) {
  bool bellGone = false;
  auto bell = Rok::make<Bell>(bellGone);
  const auto script = Rok::make<Script>();
  auto sm = ScriptSm::create(bell, script);
  Bell* raw = bell.get();
  bell = nullptr;
  script->act = [&] {
    sm = nullptr;
    EXPECT_FALSE(bellGone);
  };
  raw->toneIs(440);
  EXPECT_TRUE(bellGone);
  EXPECT_EQ(AllocTrackTypeInfo::of<ScriptSm>().blocks(), 0u);
}

TEST(Watch, AHandlerMayRemoveTheMachineOfALaterWatch) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto silent = Rok::make<Script>();
  const auto first = ScriptSm::create(bell, script);
  auto second = ScriptSm::create(bell, silent);
  auto keyed = KeyScriptSm::create(bell, silent);
  script->act = [&] {
    second = nullptr;
    keyed = nullptr;
  };
  bell->strike("dawn");
  EXPECT_EQ(silent->calls, Calls{});
  EXPECT_EQ(notifieesOf(bell), 1u);
}

TEST(Watch, AnExceptionOfAHandlerReachesTheWriterAndLeavesTheMachineAtWork) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto sm = ScriptSm::create(bell, script);
  script->act = [] { Rok::throwRangeException("out of range"); };
  EXPECT_THROW(bell->toneIs(440), Rok::RangeException);
  EXPECT_EQ(sm->references(), 1u);
  script->act = nullptr;
  bell->toneIs(441);
  EXPECT_EQ(script->calls, (Calls{"tone", "tone", "end of tone"}));
}

// ===== Keyed watches

TEST(KeyedWatch, HearsOfItsKeyOnly) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto sm = KeyScriptSm::create(bell, script);
  EXPECT_EQ(sm->watch().key(), "dawn");
  bell->strike("dusk");
  bell->toneIs(440);
  EXPECT_EQ(script->calls, Calls{});
  bell->strike("dawn");
  bell->chimeDel("dawn");
  EXPECT_EQ(script->calls,
            (Calls{"chime dawn", "end of chime dawn", "chime dawn", "end of chime dawn"}));
}

TEST(KeyedWatch, TwoOfOneKeyAreBothCalled) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto a = KeyScriptSm::create(bell, script);
  auto b = KeyScriptSm::create(bell, script);
  bell->strike("dawn");
  EXPECT_EQ(script->calls.size(), 4u);
  b = nullptr;
  bell->strike("dawn");
  EXPECT_EQ(script->calls.size(), 6u);
}

TEST(KeyedWatch, ThatGoesLeavesTheOthersOfItsNotifierRegistered) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  Calls calls;
  const auto first = listen(bell, "first", calls);
  const auto second = listen(bell, "second", calls);
  const Dorpel::SlabUse before = Dorpel::slabUse();
  auto keyed = KeyScriptSm::create(bell, script);
  keyed = nullptr;
  EXPECT_EQ(notifieesOf(bell), 2u);
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks) << "the index goes too";
  bell->strike("dawn");
  EXPECT_EQ(calls, (Calls{"first", "second"}));
  EXPECT_EQ(script->calls, Calls{});
}

TEST(KeyedWatch, ZombieAndSwitchHoldForItAsForAnyOther) {
  const auto bell = Rok::make<Bell>();
  const auto script = Rok::make<Script>();
  const auto sm = KeyScriptSm::create(bell, script);
  sm->hasNotificationActiveIs(false);
  bell->strike("dawn");
  sm->hasNotificationActiveIs(true);
  sm->rokDoZombieReactors(true);
  bell->strike("dawn");
  EXPECT_EQ(script->calls, Calls{});
  sm->rokDoZombieReactors(false);
  bell->strike("dawn");
  EXPECT_EQ(script->calls, (Calls{"chime dawn", "end of chime dawn"}));
}

// Watches one slot; the keys of the slots have colliding hashes.
class SlotSm final : public Rok::StateMachine<SlotSm> {
 public:
  static constexpr std::string_view rokTypeName = "SlotSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"device", &SlotSm::device},
                      Rok::Argument{"sheet", &SlotSm::sheet}, Rok::Argument{"slot", &SlotSm::slot}};
  }
  Ptr<Device const> device() const { return device_.ptr(); }
  const Ptr<Sheet>& sheet() const { return sheet_; }
  Blunt slot() const { return device_.key(); }
  void handleSlot(Blunt slot) {
    sheet_->note(std::to_string(device_.key().number) + " hears of " + std::to_string(slot.number));
  }
  std::uint64_t interest() const { return device_.interest(); }

 private:
  friend Rok::StateMachine<SlotSm>;
  using RokDevice =
      Rok::KeyedWatch<SlotSm, Device, Rok::On<Device::Attr::slot, &SlotSm::handleSlot>>;
  SlotSm(const Ptr<Device const>& device, const Ptr<Sheet>& sheet, Blunt slot)
      : device_(*this, device, slot), sheet_(sheet) {}
  auto parts() { return std::tie(device_); }

  RokDevice device_;
  Ptr<Sheet> sheet_;
};

TEST(KeyedWatch, OfAKeyWhoseHashCollidesIsNotCalled) {
  const auto device = deviceOf({});
  const auto sheet = Rok::make<Sheet>();
  const auto one = SlotSm::create(device, sheet, Blunt{1});
  auto two = SlotSm::create(device, sheet, Blunt{2});
  ASSERT_EQ(one->interest(), two->interest());
  device->slotIs({1}, 5);
  device->slotIs({2}, 5);
  device->slotIs({3}, 5);
  EXPECT_EQ(sheet->takeNotes(), (Notes{"1 hears of 1", "2 hears of 2"}));
  two = nullptr;
  device->slotIs({2}, 6);
  device->slotIs({1}, 6);
  EXPECT_EQ(sheet->takeNotes(), Notes{"1 hears of 1"});
}

// ===== Chained inputs

class ChainedInput : public testing::Test {
 protected:
  ChainedInput() { sheet_->takeNotes(); }
  Notes heard() { return sheet_->takeNotes(); }

  Ptr<Port> port_ = portOf("Ethernet1");
  Ptr<Sheet> sheet_ = Rok::make<Sheet>();
  Ptr<DeviceSm> root_ = DeviceSm::create(deviceOf({}), Rok::make<Sheet>());
  Ptr<PortSm> sm_ = PortSm::create(port_, sheet_, Rok::String("east"), root_.get());
  Ptr<Profile> profile_ = Rok::make<Profile>();
};

TEST_F(ChainedInput, AFirstObjectIsWatchedAndNoHandlerIsCalled) {
  EXPECT_EQ(sm_->profileIn(), nullptr);
  port_->profileIs(profile_);
  EXPECT_EQ(sm_->profileIn(), profile_);
  EXPECT_EQ(heard(), Notes{});
  profile_->rateIs(5);
  EXPECT_EQ(heard(), Notes{"rate 5"});
}

TEST_F(ChainedInput, TheSameObjectAgainChangesNothing) {
  port_->profileIs(profile_);
  const std::uint32_t references = profile_->references();
  sm_->profileInIs(profile_);
  EXPECT_EQ(profile_->references(), references);
  EXPECT_EQ(notifieesOf(profile_), 1u);
  profile_->rateIs(5);
  EXPECT_EQ(heard(), Notes{"rate 5"});
}

TEST_F(ChainedInput, AnotherObjectTakesThePlaceOfTheFirstAndNoHandlerIsCalled) {
  port_->profileIs(profile_);
  const auto other = Rok::make<Profile>();
  other->rateIs(7);
  port_->profileIs(other);
  EXPECT_EQ(heard(), Notes{});
  EXPECT_EQ(sm_->profileIn(), other);
  EXPECT_EQ(profile_->references(), 1u);
  EXPECT_EQ(notifieesOf(profile_), 0u);
  profile_->rateIs(5);
  EXPECT_EQ(heard(), Notes{});
  other->rateIs(8);
  EXPECT_EQ(heard(), Notes{"rate 8"});
}

TEST_F(ChainedInput, NullReleasesTheObject) {
  port_->profileIs(profile_);
  port_->profileIs(nullptr);
  EXPECT_EQ(sm_->profileIn(), nullptr);
  EXPECT_EQ(profile_->references(), 1u);
  EXPECT_EQ(notifieesOf(profile_), 0u);
  profile_->rateIs(5);
  EXPECT_EQ(heard(), Notes{});
  sm_->profileInIs(nullptr);
  sm_->profileInDel();
  port_->profileIs(profile_);
  profile_->rateIs(6);
  EXPECT_EQ(heard(), Notes{"rate 6"}) << "it comes back";
}

TEST_F(ChainedInput, ReleasesTheLastReferenceToTheOldObject) {
  port_->profileIs(profile_);
  profile_ = nullptr;
  port_->profileIs(nullptr);
  port_->profileIs(Rok::make<Profile>());
  port_->profileIs(Rok::make<Profile>());
  EXPECT_EQ(sm_->profileIn()->references(), 3u) << "the port, the watch and this";
}

TEST_F(ChainedInput, AFirstObjectGetsTheZombieStateOfTheOwner) {
  sm_->rokDoZombieReactors(true);
  sm_->profileInIs(profile_);
  profile_->rateIs(5);
  EXPECT_EQ(heard(), Notes{});
  sm_->rokDoZombieReactors(false);
  profile_->rateIs(6);
  EXPECT_EQ(heard(), Notes{"rate 6"});
}

TEST_F(ChainedInput, AnotherObjectGetsTheZombieStateOfTheOwner) {
  port_->profileIs(profile_);
  sm_->rokDoZombieReactors(true);
  const auto other = Rok::make<Profile>();
  sm_->profileInIs(other);
  other->rateIs(5);
  EXPECT_EQ(heard(), Notes{});
  sm_->rokDoZombieReactors(false);
  other->rateIs(6);
  EXPECT_EQ(heard(), Notes{"rate 6"});
}

TEST_F(ChainedInput, AnObjectReleasedWhileTheOwnerIsAZombieLeavesNoMarkBehind) {
  port_->profileIs(profile_);
  sm_->rokDoZombieReactors(true);
  sm_->profileInDel();
  sm_->rokDoZombieReactors(false);
  sm_->profileInIs(profile_);
  profile_->rateIs(6);
  EXPECT_EQ(heard(), Notes{"rate 6"});
}

TEST_F(ChainedInput, IsSwitchedWithItsOwner) {
  port_->profileIs(profile_);
  sm_->hasNotificationActiveIs(false);
  profile_->rateIs(5);
  const auto other = Rok::make<Profile>();
  sm_->profileInIs(other);
  other->rateIs(5);
  EXPECT_EQ(heard(), Notes{}) << "a watch that is pointed elsewhere keeps its switch";
  sm_->hasNotificationActiveIs(true);
  other->rateIs(6);
  EXPECT_EQ(heard(), Notes{"rate 6"});
}

TEST_F(ChainedInput, ANewInputOfTheWholeChainIsHeardInsideTheNotification) {
  port_->profileIs(profile_);
  profile_->rateIs(1);
  heard();
  // The old profile is released by the port while the port still notifies.
  profile_ = nullptr;
  const auto other = Rok::make<Profile>();
  port_->profileIs(other);
  other->rateIs(9);
  EXPECT_EQ(heard(), Notes{"rate 9"});
}

// ===== Inputs that ask to be told when they are bound

class BoundSm final : public Rok::StateMachine<BoundSm> {
 public:
  static constexpr std::string_view rokTypeName = "BoundSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"sheet", &BoundSm::sheet}};
  }
  const Ptr<Sheet>& sheet() const { return sheet_; }
  auto& profileIn() { return profileIn_; }
  void handleProfile() {
    sheet_->note("bound to " + std::to_string(profileIn_->rate()) +
                 (profileIn_.isRegisteredNotifiee() ? ", registered" : ", not registered"));
  }
  void handleRate() { sheet_->note("rate " + std::to_string(profileIn_->rate())); }

 private:
  friend Rok::StateMachine<BoundSm>;
  using RokProfileIn =
      Rok::Watch<BoundSm, Profile, Rok::On<Profile::Attr::rate, &BoundSm::handleRate>,
                 Rok::OnBound<&BoundSm::handleProfile>>;
  explicit BoundSm(const Ptr<Sheet>& sheet) : sheet_(sheet), profileIn_(*this) {}
  auto parts() { return std::tie(profileIn_); }

  Ptr<Sheet> sheet_;
  RokProfileIn profileIn_;
};

class OnBound : public testing::Test {
 protected:
  static Ptr<Profile> profileOf(int rate) {
    auto profile = Rok::make<Profile>();
    profile->rateIs(rate);
    return profile;
  }
  Notes heard() { return sheet_->takeNotes(); }

  Ptr<Sheet> sheet_ = Rok::make<Sheet>();
  Ptr<BoundSm> sm_ = BoundSm::create(sheet_);
};

TEST_F(OnBound, IsCalledAfterTheObjectIsSetAndBeforeTheWatchRegisters) {
  const auto profile = profileOf(5);
  sm_->profileIn().inputIs(Ptr<Profile const>(profile));
  EXPECT_EQ(heard(), Notes{"bound to 5, not registered"});
  profile->rateIs(6);
  EXPECT_EQ(heard(), Notes{"rate 6"});
  sm_->profileIn().inputIs(Ptr<Profile const>(profileOf(7)));
  EXPECT_EQ(heard(), Notes{"bound to 7, not registered"});
}

TEST_F(OnBound, IsNotCalledForTheSameObjectOrForNone) {
  const auto profile = profileOf(5);
  sm_->profileIn().inputIs(Ptr<Profile const>(profile));
  heard();
  sm_->profileIn().inputIs(Ptr<Profile const>(profile));
  sm_->profileIn().notifierIs(profile.get());
  sm_->profileIn().inputIs(nullptr);
  sm_->profileIn().notifierIs(nullptr);
  EXPECT_EQ(heard(), Notes{});
}

TEST_F(OnBound, IsNotCalledForAZombieNorWithoutAnOwner) {
  sm_->profileIn().inputIs(Ptr<Profile const>(profileOf(5)));
  heard();
  sm_->rokDoZombieReactors(true);
  sm_->profileIn().inputIs(Ptr<Profile const>(profileOf(6)));
  EXPECT_EQ(heard(), Notes{});
  sm_->rokDoZombieReactors(false);
  sm_->profileIn().inputIs(Ptr<Profile const>(profileOf(7)));
  EXPECT_EQ(heard(), Notes{"bound to 7, not registered"});
  sm_->profileIn().ownerDel();
  sm_->profileIn().inputIs(Ptr<Profile const>(profileOf(8)));
  EXPECT_EQ(heard(), Notes{});
}

}  // namespace
}  // namespace watchTest
