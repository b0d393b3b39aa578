#include "Rok/StateMachine.h"

#include <stdexcept>

#include "Dorpel/Slab.h"
#include "tests/support/DeviceTree.h"
#include "tests/support/RokDevice.h"
#include "tests/support/RokListener.h"

namespace stateMachineTest {
namespace {

using namespace RokTest;
using Rok::AllocTrackTypeInfo;
using Rok::Ptr;

// ===== Life

// Tells what is on while it initializes, and writes to its own input meanwhile.
class BirthSm final : public Rok::StateMachine<BirthSm> {
 public:
  static constexpr std::string_view rokTypeName = "BirthSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"port", &BirthSm::port},
                      Rok::Argument{"sheet", &BirthSm::sheet},
                      Rok::Argument{"outPort", &BirthSm::outPort}};
  }
  Ptr<Port const> port() const { return port_.ptr(); }
  const Ptr<Sheet>& sheet() const { return sheet_; }
  const Ptr<Port>& outPort() const { return outPort_; }

  void handleMtu() { sheet_->note("mtu " + std::to_string(port_->mtu())); }
  void handleInitialized() {
    sheet_->note(hasNotificationActive() ? "machine on" : "machine off");
    sheet_->note(port_.hasNotificationActive() ? "watch on" : "watch off");
    const auto lane = laneSm_.is(Ptr<Lane const>(Rok::make<Lane>("lane1")), sheet_);
    sheet_->note(lane->hasNotificationActive() ? "child on" : "child off");
    outPort_->mtuIs(9000);
  }

 private:
  friend Rok::StateMachine<BirthSm>;
  using RokPort = Rok::Watch<BirthSm, Port, Rok::On<Port::Attr::mtu, &BirthSm::handleMtu>>;
  BirthSm(const Ptr<Port const>& port, const Ptr<Sheet>& sheet, const Ptr<Port>& outPort)
      : port_(*this, port), sheet_(sheet), outPort_(outPort), laneSm_(*this) {
    rokInitialize<&BirthSm::handleInitialized>();
  }
  auto parts() { return std::tie(port_, laneSm_); }

  RokPort port_;
  Ptr<Sheet> sheet_;
  Ptr<Port> outPort_;
  PortSm::Lanes laneSm_;
};

TEST(StateMachine, WatchesAndChildrenAreOnDuringInitializationAndTheMachineComesOnAfterIt) {
  const auto port = portOf("Ethernet1");
  const auto sheet = Rok::make<Sheet>();
  const auto sm = BirthSm::create(port, sheet, port);
  EXPECT_EQ(sheet->takeNotes(), (Notes{"machine off", "watch on", "child on", "mtu 9000"}));
  EXPECT_TRUE(sm->hasNotificationActive());
  EXPECT_EQ(sm->references(), 1u);
}

TEST(StateMachine, AConstructedTreeHasCaughtUpWithItsInputs) {
  const auto device = deviceOf({"Ethernet2"});
  device->portIs(portOf("Ethernet1", {"lane1", "lane2"}));
  const auto sheet = Rok::make<Sheet>();
  const auto root = DeviceSm::create(device, sheet);
  EXPECT_EQ(sheet->lines(), (Lines{{"Ethernet1", "mtu 1500"},
                                   {"Ethernet2", "mtu 1500"},
                                   {"lane1", "speed 10"},
                                   {"lane2", "speed 10"}}));
  EXPECT_EQ(root->portSm().members(), 2u);
  EXPECT_EQ(root->portSm().child("Ethernet1")->laneSm().members(), 2u);
  EXPECT_EQ(root->device(), device);
}

TEST(StateMachine, DescribesItselfByItsNameAndItsArguments) {
  const Rok::FwkType& type = PortSm::rokType();
  EXPECT_EQ(type.name, "PortSm");
  EXPECT_EQ(type.attributeName(130), "port");
  EXPECT_EQ(type.attributeName(131), "sheet");
  EXPECT_EQ(type.attributeName(132), "area");
  EXPECT_EQ(type.attributeName(133), "parent");
  EXPECT_EQ(type.attributeName(134), "");
  const auto root = DeviceSm::create(deviceOf({}), Rok::make<Sheet>());
  EXPECT_EQ(root->fwkType().name, "DeviceSm");
}

TEST(StateMachine, IsCountedByItsAllocationTracker) {
  auto& tracker = AllocTrackTypeInfo::of<DeviceSm>();
  EXPECT_EQ(tracker.blocks(), 0u);
  {
    const auto a = DeviceSm::create(deviceOf({}), Rok::make<Sheet>());
    const auto b = DeviceSm::create(deviceOf({}), Rok::make<Sheet>());
    EXPECT_EQ(tracker.blocks(), 2u);
    EXPECT_EQ(tracker.bytes(), 2 * sizeof(DeviceSm));
  }
  EXPECT_EQ(tracker.blocks(), 0u);
  EXPECT_EQ(tracker.bytes(), 0u);
}

TEST(StateMachine, ANullWatchedInputLeavesItDeaf) {
  const auto sheet = Rok::make<Sheet>();
  const auto sm = LaneSm::create(Ptr<Lane const>(), sheet);
  EXPECT_EQ(sm->lane(), nullptr);
  EXPECT_EQ(sheet->writes(), 0);
  sm->hasNotificationActiveIs(false);
  sm->hasNotificationActiveIs(true);
  sm->rokDoZombieReactors(true);
  EXPECT_TRUE(sm->rokMarkedForDeletion());
}

// Is about its second argument, which it doesn't watch; watches another one.
class QuietSm final : public Rok::StateMachine<QuietSm> {
 public:
  static constexpr std::string_view rokTypeName = "QuietSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"sheet", &QuietSm::sheet},
                      Rok::Argument{"device", &QuietSm::device},
                      Rok::Argument{"port", &QuietSm::port}};
  }
  const Ptr<Sheet>& sheet() const { return sheet_; }
  const Ptr<Device const>& device() const { return device_; }
  Ptr<Port const> port() const { return port_.ptr(); }
  void bind(const Ptr<Profile const>& profile) { profile_.inputIs(profile); }

  void handleMtu() { sheet_->note("mtu"); }
  void handleRate() { sheet_->note("rate"); }
  void handleBound() { sheet_->note("bound"); }
  void first() { sheet_->note("first"); }
  void second() { sheet_->note("second"); }

 private:
  friend Rok::StateMachine<QuietSm>;
  using RokPort = Rok::Watch<QuietSm, Port, Rok::On<Port::Attr::mtu, &QuietSm::handleMtu>>;
  using RokProfile =
      Rok::Watch<QuietSm, Profile, Rok::On<Profile::Attr::rate, &QuietSm::handleRate>,
                 Rok::OnBound<&QuietSm::handleBound>>;
  QuietSm(const Ptr<Sheet>& sheet, const Ptr<Device const>& device, const Ptr<Port const>& port)
      : sheet_(sheet), device_(device), port_(*this, port), profile_(*this) {
    rokInitialize<&QuietSm::second, &QuietSm::first>();
  }
  auto parts() { return std::tie(port_, profile_); }

  Ptr<Sheet> sheet_;
  Ptr<Device const> device_;
  RokPort port_;
  RokProfile profile_;
};

TEST(StateMachine, ItsStepsRunInTheOrderGiven) {
  const auto sheet = Rok::make<Sheet>();
  QuietSm::create(sheet, Ptr<Device const>(deviceOf({})), Ptr<Port const>());
  EXPECT_EQ(sheet->takeNotes(), (Notes{"second", "first"}));
}

TEST(StateMachine, WithoutItsFirstNativeInputItRunsNoStepAndNoWatchCallsIt) {
  const auto sheet = Rok::make<Sheet>();
  const auto port = portOf("Ethernet1");
  const auto profile = Rok::make<Profile>();
  auto sm = QuietSm::create(sheet, Ptr<Device const>(), Ptr<Port const>(port));
  EXPECT_TRUE(sm->hasNotificationActive());
  EXPECT_EQ(sm->port(), port) << "the other inputs are held";
  port->mtuIs(9000);
  sm->bind(profile);
  profile->rateIs(1);
  sm->hasNotificationActiveIs(false);
  sm->hasNotificationActiveIs(true);
  port->mtuIs(1500);
  EXPECT_EQ(sheet->takeNotes(), Notes{});
  sm = nullptr;
  EXPECT_EQ(notifieesOf(port), 0u);
  EXPECT_EQ(notifieesOf(profile), 0u);
}

// Watches two inputs and one key, has children, and throws at a point of the test's choice.
class StormSm final : public Rok::StateMachine<StormSm> {
 public:
  static constexpr std::string_view rokTypeName = "StormSm";
  static constexpr auto rokArguments() {
    return std::tuple{
        Rok::Argument{"device", &StormSm::device}, Rok::Argument{"port", &StormSm::port},
        Rok::Argument{"sheet", &StormSm::sheet}, Rok::Argument{"point", &StormSm::point}};
  }
  Ptr<Device const> device() const { return device_.ptr(); }
  Ptr<Port const> port() const { return port_.ptr(); }
  const Ptr<Sheet>& sheet() const { return sheet_; }
  int point() const { return point_; }

  void handleChange() { sheet_->note("change"); }
  void handlePort(const Rok::String& name) { sheet_->note("port " + std::string(name)); }
  void handleInitialized() {
    throwAt(4);
    int next = 5;
    for (auto i = port_->lane().iterator(); i; ++i) {
      laneSm_.is(Ptr<Lane const>(i.currNodeNonStale()->value()), sheet_);
      throwAt(next++);
    }
  }

 private:
  friend Rok::StateMachine<StormSm>;
  using RokDevice =
      Rok::Watch<StormSm, Device, Rok::On<Device::Attr::hostname, &StormSm::handleChange>>;
  using RokPort = Rok::Watch<StormSm, Port, Rok::On<Port::Attr::mtu, &StormSm::handleChange>>;
  using RokPortKey =
      Rok::KeyedWatch<StormSm, Device, Rok::On<Device::Attr::port, &StormSm::handlePort>>;
  StormSm(const Ptr<Device const>& device, const Ptr<Port const>& port, const Ptr<Sheet>& sheet,
          int point)
      : point_(point),
        device_(*this, device),
        afterFirst_(throwAt(1)),
        port_(*this, port),
        afterSecond_(throwAt(2)),
        portKey_(*this, device, Rok::String("Ethernet1")),
        afterThird_(throwAt(3)),
        sheet_(sheet),
        laneSm_(*this) {
    rokInitialize<&StormSm::handleInitialized>();
  }
  auto parts() { return std::tie(device_, port_, portKey_, laneSm_); }
  bool throwAt(int point) const {
    if (point == point_) throw std::runtime_error("storm at " + std::to_string(point));
    return true;
  }

  int point_;
  RokDevice device_;
  bool afterFirst_;
  RokPort port_;
  bool afterSecond_;
  RokPortKey portKey_;
  bool afterThird_;
  Ptr<Sheet> sheet_;
  PortSm::Lanes laneSm_;
};

TEST(StateMachine, AConstructorThatThrowsAnywhereLeavesNothingRegisteredAndLeaksNothing) {
  const auto device = deviceOf({"Ethernet1"});
  const auto port = device->port("Ethernet1");
  for (const char* lane : {"lane1", "lane2", "lane3"}) port->laneIs(Rok::make<Lane>(lane));
  const auto sheet = Rok::make<Sheet>();
  Calls calls;
  // Others watch the same objects, with a key and without, and must not suffer.
  const auto other = DeviceSm::create(device, sheet);
  const std::size_t onDevice = notifieesOf(device);
  const std::size_t onPort = notifieesOf(port);
  const auto lanes = AllocTrackTypeInfo::of<LaneSm>().blocks();
  const Dorpel::SlabUse before = Dorpel::slabUse();
  for (int point = 1; point <= 7; ++point) {
    SCOPED_TRACE(point);
    try {
      StormSm::create(device, port, sheet, point);
      FAIL() << "nothing thrown";
    } catch (const std::runtime_error& e) {
      EXPECT_EQ(e.what(), "storm at " + std::to_string(point));
    }
    EXPECT_EQ(notifieesOf(device), onDevice);
    EXPECT_EQ(notifieesOf(port), onPort);
    EXPECT_EQ(notifieesOf(*port->lane().find("lane1")), 1u);
    EXPECT_EQ(AllocTrackTypeInfo::of<StormSm>().blocks(), 0u);
    EXPECT_EQ(AllocTrackTypeInfo::of<LaneSm>().blocks(), lanes);
    EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
    EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes);
    port->mtuIs(2000 + point);
    EXPECT_EQ(sheet->line("Ethernet1"), "mtu " + std::to_string(2000 + point));
    EXPECT_TRUE(sheet->takeNotes().empty());
  }
  const auto sm = StormSm::create(device, port, sheet, 0);
  EXPECT_EQ(notifieesOf(device), onDevice + 2);
  EXPECT_EQ(notifieesOf(port), onPort + 1);
  port->mtuIs(1);
  device->portDel("Ethernet1");
  EXPECT_EQ(sheet->takeNotes(), (Notes{"change", "port Ethernet1"}));
}

// Forgets one of its watches.
class ForgetfulSm final : public Rok::StateMachine<ForgetfulSm> {
 public:
  static constexpr std::string_view rokTypeName = "ForgetfulSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"lane", &ForgetfulSm::lane}};
  }
  Ptr<Lane const> lane() const { return lane_.ptr(); }
  void handleSpeed() {}

 private:
  friend Rok::StateMachine<ForgetfulSm>;
  using RokLane =
      Rok::Watch<ForgetfulSm, Lane, Rok::On<Lane::Attr::speed, &ForgetfulSm::handleSpeed>>;
  explicit ForgetfulSm(const Ptr<Lane const>& lane)
      : lane_(*this, lane), again_(*this, lane), laneSm_(*this) {}
  auto parts() { return std::tie(lane_, laneSm_); }

  RokLane lane_;
  RokLane again_;
  PortSm::Lanes laneSm_;
};

TEST(StateMachineDeathTest, PartsThatForgetOneEndTheProcess) {
  const auto lane = Rok::make<Lane>("lane1");
  EXPECT_DEATH(
      ForgetfulSm::create(Ptr<Lane const>(lane)),
      "^assertion failed: named == rokParts_: ForgetfulSm::parts\\(\\) names 2 of 3 watches "
      "and collections\n");
}

// ===== The notification switch

const std::set<std::string> nothing;

TEST_F(DeviceTree, IsOnAfterItsConstruction) {
  EXPECT_TRUE(root_->hasNotificationActive());
  EXPECT_TRUE(portSm_->hasNotificationActive());
  EXPECT_TRUE(laneSm_->hasNotificationActive());
  EXPECT_EQ(heard(), everything);
}

TEST_F(DeviceTree, IsSwitchedOffAndOnInWhole) {
  root_->hasNotificationActiveIs(false);
  EXPECT_FALSE(root_->hasNotificationActive());
  EXPECT_FALSE(portSm_->hasNotificationActive());
  EXPECT_FALSE(laneSm_->hasNotificationActive());
  EXPECT_EQ(heard(), nothing);
  root_->hasNotificationActiveIs(true);
  EXPECT_TRUE(laneSm_->hasNotificationActive());
  EXPECT_EQ(heard(), everything);
}

TEST_F(DeviceTree, IsSwitchedFromAnyMachineDown) {
  portSm_->hasNotificationActiveIs(false);
  EXPECT_EQ(heard(), std::set<std::string>{"device"});
  portSm_->hasNotificationActiveIs(true);
  EXPECT_EQ(heard(), everything);
}

TEST_F(DeviceTree, SwitchingTwiceDoesNotWalkTheChildrenAgain) {
  const int switches = portSm_->switches;
  root_->hasNotificationActiveIs(true);
  EXPECT_EQ(portSm_->switches, switches);
  root_->hasNotificationActiveIs(false);
  EXPECT_EQ(portSm_->switches, switches + 1);
  root_->hasNotificationActiveIs(false);
  EXPECT_EQ(portSm_->switches, switches + 1);
  root_->hasNotificationActiveIs(true);
  EXPECT_EQ(portSm_->switches, switches + 2);
}

// ===== Zombies

TEST_F(DeviceTree, ANotificationAtAZombieHasNoEffect) {
  laneSm_->rokDoZombieReactors(true);
  EXPECT_TRUE(laneSm_->rokMarkedForDeletion());
  EXPECT_EQ(heard(), (std::set<std::string>{"device", "port"}));
  laneSm_->rokDoZombieReactors(false);
  EXPECT_FALSE(laneSm_->rokMarkedForDeletion());
  EXPECT_EQ(heard(), everything);
}

TEST_F(DeviceTree, AZombieDoesNotMakeItsChildrenZombies) {
  root_->rokDoZombieReactors(true);
  EXPECT_FALSE(portSm_->rokMarkedForDeletion());
  EXPECT_FALSE(laneSm_->rokMarkedForDeletion());
  EXPECT_EQ(heard(), (std::set<std::string>{"port", "lane"}));
}

TEST_F(DeviceTree, BecomingAZombieLeavesTheMachinesOwnSwitchAlone) {
  root_->rokDoZombieReactors(true);
  EXPECT_TRUE(root_->hasNotificationActive());
}

TEST_F(DeviceTree, AZombieThatIsSwitchedOffAndOnStaysDeaf) {
  root_->rokDoZombieReactors(true);
  root_->hasNotificationActiveIs(false);
  root_->hasNotificationActiveIs(true);
  EXPECT_EQ(heard(), (std::set<std::string>{"port", "lane"}));
}

TEST_F(DeviceTree, BecomingAZombieTwiceChangesNothing) {
  root_->rokDoZombieReactors(true);
  root_->rokDoZombieReactors(true);
  EXPECT_EQ(heard(), (std::set<std::string>{"port", "lane"}));
  root_->rokDoZombieReactors(false);
  root_->rokDoZombieReactors(false);
  EXPECT_EQ(heard(), everything);
}

TEST_F(DeviceTree, ReferencesThatHaveNotGoneTearNothingDown) {
  root_->zeroReferencesIs(false);
  portSm_->zeroReferencesIs(false);
  EXPECT_FALSE(root_->rokMarkedForDeletion());
  EXPECT_EQ(root_->portSm().members(), 2u);
  EXPECT_EQ(portSm_->laneSm().members(), 2u);
  EXPECT_EQ(heard(), everything);
}

// ===== Teardown

TEST_F(DeviceTree, DestroyingTheRootTouchesNoOutputAndLeavesNothingBehind) {
  const Lines lines = sheet_->lines();
  const int writes = sheet_->writes();
  laneSm_ = nullptr;
  portSm_ = nullptr;
  root_ = nullptr;
  EXPECT_EQ(sheet_->writes(), writes);
  EXPECT_EQ(sheet_->lines(), lines);
  EXPECT_EQ(notifieesOf(device_), 0u);
  EXPECT_EQ(notifieesOf(port_), 0u);
  EXPECT_EQ(notifieesOf(lane_), 0u);
  EXPECT_EQ(AllocTrackTypeInfo::of<PortSm>().blocks(), 0u);
  EXPECT_EQ(AllocTrackTypeInfo::of<LaneSm>().blocks(), 0u);
  EXPECT_EQ(sheet_->references(), 1u);
  EXPECT_EQ(heard(), nothing);
}

TEST_F(DeviceTree, ANewRootOverTheSameOutputSweepsWhatIsStale) {
  laneSm_ = nullptr;
  portSm_ = nullptr;
  root_ = nullptr;
  device_->portDel("Ethernet2");
  device_->portIs(portOf("Ethernet5"));
  port_->mtuIs(9000);
  EXPECT_EQ(sheet_->line("Ethernet2"), "mtu 1500") << "no machine watched when it went";
  root_ = DeviceSm::create(device_, sheet_);
  EXPECT_EQ(sheet_->lines(), (Lines{{"Ethernet1", "mtu 9000"},
                                    {"Ethernet5", "mtu 1500"},
                                    {"lane1", "speed 10"},
                                    {"lane2", "speed 10"}}));
}

TEST_F(DeviceTree, TwoRootsOverOneInputLiveSideBySide) {
  const auto other = Rok::make<Sheet>();
  auto second = DeviceSm::create(device_, other);
  port_->mtuIs(9000);
  EXPECT_EQ(sheet_->line("Ethernet1"), "mtu 9000");
  EXPECT_EQ(other->line("Ethernet1"), "mtu 9000");
  second = nullptr;
  EXPECT_EQ(heard(), everything);
}

// A child whose end a test sees: no other pointer holds its hook.
class EndingSm final : public Rok::StateMachine<EndingSm> {
 public:
  static constexpr std::string_view rokTypeName = "EndingSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"lane", &EndingSm::lane},
                      Rok::Argument{"hook", &EndingSm::hook}};
  }
  Ptr<Lane const> lane() const { return lane_.ptr(); }
  const Ptr<Hook>& hook() const { return hook_; }
  void handleSpeed() {}

 private:
  friend Rok::StateMachine<EndingSm>;
  using RokLane = Rok::Watch<EndingSm, Lane, Rok::On<Lane::Attr::speed, &EndingSm::handleSpeed>>;
  EndingSm(const Ptr<Lane const>& lane, const Ptr<Hook>& hook) : lane_(*this, lane), hook_(hook) {}
  auto parts() { return std::tie(lane_); }

  RokLane lane_;
  Ptr<Hook> hook_;
};

// A parent of such children, with an attribute whose end is seen too.
class TeardownSm final : public Rok::StateMachine<TeardownSm> {
 public:
  static constexpr std::string_view rokTypeName = "TeardownSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"port", &TeardownSm::port},
                      Rok::Argument{"hook", &TeardownSm::hook},
                      Rok::Argument{"sheet", &TeardownSm::sheet}};
  }
  using Children = Rok::Children<EndingSm, 0x86, Rok::KeyFunktor<&EndingSm::lane, &Lane::name>>;

  Ptr<Port const> port() const { return port_.ptr(); }
  const Ptr<Hook>& hook() const { return hook_; }
  const Ptr<Sheet>& sheet() const { return sheet_; }
  auto& watch() { return port_; }
  Children& endingSm() { return endingSm_; }

  void handleMtu() { sheet_->note("handler"); }

 private:
  friend Rok::StateMachine<TeardownSm>;
  using RokPort = Rok::Watch<TeardownSm, Port, Rok::On<Port::Attr::mtu, &TeardownSm::handleMtu>>;
  TeardownSm(const Ptr<Port const>& port, const Ptr<Hook>& hook, const Ptr<Sheet>& sheet)
      : port_(*this, port), endingSm_(*this), hook_(hook), sheet_(sheet) {}
  auto parts() { return std::tie(port_, endingSm_); }

  // The children stand before the attributes, so that the destructor alone would release them
  // later.
  RokPort port_;
  Children endingSm_;
  Ptr<Hook> hook_;
  Ptr<Sheet> sheet_;
};

TEST(Teardown, MakesZombiesThenClearsOwnersThenReleasesChildrenThenAttributes) {
  const auto port = portOf("Ethernet1");
  const auto sheet = Rok::make<Sheet>();
  auto sm =
      TeardownSm::create(port, Rok::make<Hook>([&] { sheet->note("attribute gone"); }), sheet);
  TeardownSm* dying = sm.get();
  sm->endingSm().is(Ptr<Lane const>(Rok::make<Lane>("lane1")), Rok::make<Hook>([&, dying] {
                      sheet->note("child gone");
                      EXPECT_TRUE(dying->rokMarkedForDeletion());
                      EXPECT_TRUE(dying->watch().rokMarkedForDeletion());
                      EXPECT_FALSE(dying->watch().hasNotificationActive());
                      EXPECT_EQ(dying->port(), port) << "the inputs are still there";
                      // Even a watch that comes back to life no longer knows its owner.
                      dying->watch().rokDoZombieReactors(false);
                      port->mtuIs(9000);
                    }));
  port->mtuIs(1);
  EXPECT_EQ(sheet->takeNotes(), Notes{"handler"});
  sm = nullptr;
  EXPECT_EQ(sheet->takeNotes(), (Notes{"child gone", "attribute gone"}));
  EXPECT_EQ(notifieesOf(port), 0u);
  EXPECT_EQ(AllocTrackTypeInfo::of<TeardownSm>().blocks(), 0u);
  EXPECT_EQ(AllocTrackTypeInfo::of<EndingSm>().blocks(), 0u);
}

TEST(Teardown, AChildThatSurvivesItsParentStaysAtWork) {
  const auto device = deviceOf({"Ethernet1"});
  const auto sheet = Rok::make<Sheet>();
  auto root = DeviceSm::create(device, sheet);
  const auto child = root->portSm().child("Ethernet1");
  root = nullptr;
  device->port("Ethernet1")->mtuIs(9000);
  EXPECT_EQ(sheet->line("Ethernet1"), "mtu 9000") << "another pointer still holds it";
  EXPECT_FALSE(child->rokMarkedForDeletion());
}

}  // namespace
}  // namespace stateMachineTest
