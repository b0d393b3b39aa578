#include "Rok/StateMachine.h"

#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "Dorpel/Slab.h"
#include "tests/support/RokDevice.h"
#include "tests/support/RokListener.h"

namespace stateMachineTest {
namespace {

using namespace RokTest;
using Rok::AllocTrackTypeInfo;
using Rok::Ptr;
using Lines = Sheet::Lines;
using Notes = std::vector<std::string>;

std::size_t notifieesOf(const Ptr<Rok::Notifier>& object) {
  return object->notifieeList()->notifiees();
}

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

class DeviceTree : public testing::Test {
 protected:
  DeviceTree() {
    device_->portIs(portOf("Ethernet1", {"lane1", "lane2"}));
    port_ = device_->port("Ethernet1");
    lane_ = *port_->lane().find("lane1");
    root_ = DeviceSm::create(device_, sheet_);
    portSm_ = root_->portSm().child("Ethernet1");
    laneSm_ = portSm_->laneSm().child("lane1");
  }
  // Changes something at each level and returns what was heard.
  std::set<std::string> heard() {
    ++value_;
    sheet_->takeNotes();
    device_->hostnameIs(Rok::_fmt("host%d", value_));
    port_->mtuIs(value_);
    lane_->speedIs(value_);
    std::set<std::string> result;
    if (!sheet_->takeNotes().empty()) result.insert("device");
    if (sheet_->line("Ethernet1") == "mtu " + std::to_string(value_)) result.insert("port");
    if (sheet_->line("lane1") == "speed " + std::to_string(value_)) result.insert("lane");
    return result;
  }

  Ptr<Device> device_ = deviceOf({"Ethernet2"});
  Ptr<Sheet> sheet_ = Rok::make<Sheet>();
  Ptr<Port> port_;
  Ptr<Lane> lane_;
  Ptr<DeviceSm> root_;
  Ptr<PortSm> portSm_;
  Ptr<LaneSm> laneSm_;
  int value_ = 100;
};
const std::set<std::string> everything{"device", "port", "lane"};
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

// ===== Mirroring

TEST_F(DeviceTree, FollowsItsInputs) {
  device_->portIs(portOf("Ethernet3", {"lane3"}));
  EXPECT_EQ(root_->portSm().members(), 3u);
  EXPECT_EQ(sheet_->line("Ethernet3"), "mtu 1500");
  EXPECT_EQ(sheet_->line("lane3"), "speed 10");
  device_->port("Ethernet3")->laneIs(Rok::make<Lane>("lane4", 40));
  EXPECT_EQ(sheet_->line("lane4"), "speed 40");
  port_->laneDel("lane1");
  EXPECT_EQ(sheet_->line("lane1"), "(no line)");
  EXPECT_EQ(portSm_->laneSm().members(), 1u);
  device_->portDel("Ethernet3");
  EXPECT_EQ(sheet_->line("Ethernet3"), "(no line)");
  EXPECT_EQ(sheet_->line("lane4"), "(no line)");
  EXPECT_EQ(root_->portSm().members(), 2u);
}

TEST_F(DeviceTree, AChangeThatNoWatchNamesCallsNobody) {
  const int writes = sheet_->writes();
  port_->descriptionIs("uplink");
  EXPECT_EQ(sheet_->writes(), writes);
  EXPECT_TRUE(sheet_->takeNotes().empty());
}

TEST_F(DeviceTree, IsTwiceWithTheSameArgumentsReturnsTheSameChild) {
  const auto blocks = AllocTrackTypeInfo::of<PortSm>().blocks();
  const std::uint64_t version = root_->portSm().map().version();
  const auto again = root_->portSmIs(port_, sheet_, "east", root_.get());
  EXPECT_EQ(again, portSm_);
  EXPECT_EQ(AllocTrackTypeInfo::of<PortSm>().blocks(), blocks);
  EXPECT_EQ(root_->portSm().map().version(), version);
}

// What `act` throws, and that it changed nothing.
class Reinstantiation : public DeviceTree {
 protected:
  void expectThrow(const Ptr<Port>& port, const Ptr<Sheet>& sheet, const Rok::String& area,
                   DeviceSm* parent, Rok::AttributeId id, const std::string& attribute,
                   const std::string& values) {
    const std::uint64_t version = root_->portSm().map().version();
    const auto blocks = AllocTrackTypeInfo::of<PortSm>().blocks();
    try {
      root_->portSmIs(port, sheet, area, parent);
      ADD_FAILURE() << "nothing thrown";
    } catch (const Rok::MutatorReinstantiatingException& e) {
      EXPECT_EQ(e.attribute(), attribute);
      EXPECT_EQ(e.attributeId(), id);
      EXPECT_EQ(e.what(), "PortSm: a child built with another " + attribute + " (attribute " +
                              std::to_string(id) + ") exists: " + values);
    }
    EXPECT_EQ(root_->portSm().map().version(), version);
    EXPECT_EQ(root_->portSm().child("Ethernet1"), portSm_);
    EXPECT_EQ(AllocTrackTypeInfo::of<PortSm>().blocks(), blocks);
    EXPECT_EQ(heard(), everything);
  }
  static std::string addresses(const void* a, const void* b) {
    std::ostringstream out;
    out << a << ", not " << b;
    return out.str();
  }
};

TEST_F(Reinstantiation, AnotherInputUnderTheSameKeyThrows) {
  const auto twin = portOf("Ethernet1");
  expectThrow(twin, sheet_, "east", root_.get(), 130, "port", addresses(port_.get(), twin.get()));
}

TEST_F(Reinstantiation, AnotherOutputUnderTheSameKeyThrows) {
  const auto other = Rok::make<Sheet>();
  expectThrow(port_, other, "east", root_.get(), 131, "sheet",
              addresses(sheet_.get(), other.get()));
}

TEST_F(Reinstantiation, AnotherValueUnderTheSameKeyThrows) {
  expectThrow(port_, sheet_, "west", root_.get(), 132, "area", "east, not west");
}

TEST_F(Reinstantiation, AnotherRawPointerUnderTheSameKeyThrows) {
  const auto other = DeviceSm::create(deviceOf({}), Rok::make<Sheet>());
  expectThrow(port_, sheet_, "east", other.get(), 133, "parent",
              addresses(root_.get(), other.get()));
}

TEST_F(Reinstantiation, OfSeveralArgumentsThatDifferTheFirstIsTold) {
  const auto other = Rok::make<Sheet>();
  expectThrow(port_, other, "west", root_.get(), 131, "sheet",
              addresses(sheet_.get(), other.get()));
}

// A child whose construction runs a test's code, as one that writes to what its parent watches
// does.
class NestSm final : public Rok::StateMachine<NestSm> {
 public:
  struct Step final : Rok::PtrInterface {
    std::function<void()> act;
  };
  static constexpr std::string_view rokTypeName = "NestSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"lane", &NestSm::lane}, Rok::Argument{"step", &NestSm::step}};
  }
  Ptr<Lane const> lane() const { return lane_.ptr(); }
  const Ptr<Step>& step() const { return step_; }
  void handleSpeed() {}
  void handleInitialized() {
    if (const auto act = std::exchange(step_->act, nullptr)) act();
  }

 private:
  friend Rok::StateMachine<NestSm>;
  using RokLane = Rok::Watch<NestSm, Lane, Rok::On<Lane::Attr::speed, &NestSm::handleSpeed>>;
  NestSm(const Ptr<Lane const>& lane, const Ptr<Step>& step) : lane_(*this, lane), step_(step) {
    rokInitialize<&NestSm::handleInitialized>();
  }
  auto parts() { return std::tie(lane_); }

  RokLane lane_;
  Ptr<Step> step_;
};

// Whatever counts its parts may own children.
struct NestOwner {
  void rokPartNew() {}
};

class NestedConstruction : public testing::Test {
 protected:
  Ptr<NestSm> is(const Ptr<Lane>& lane) { return nests_.is(Ptr<Lane const>(lane), step_); }

  NestOwner owner_;
  Rok::Children<NestSm, 0x86, Rok::KeyFunktor<&NestSm::lane, &Lane::name>> nests_{owner_};
  Ptr<NestSm::Step> step_ = Rok::make<NestSm::Step>();
  Ptr<Lane> lane_ = Rok::make<Lane>("lane1");
  Ptr<NestSm> stored_;
};

TEST_F(NestedConstruction, OfTheSameKeyMakesTheChildThatStaysAndIsReturned) {
  step_->act = [&] { stored_ = is(lane_); };
  const auto child = is(lane_);
  EXPECT_EQ(child, stored_);
  EXPECT_EQ(nests_.child("lane1"), stored_);
  EXPECT_EQ(nests_.members(), 1u);
  EXPECT_EQ(notifieesOf(lane_), 1u) << "the one made in vain has gone";
}

TEST_F(NestedConstruction, FromOtherArgumentsThrowsAndItsChildStays) {
  const auto twin = Rok::make<Lane>("lane1");
  step_->act = [&] { stored_ = is(twin); };
  EXPECT_THROW(is(lane_), Rok::MutatorReinstantiatingException);
  EXPECT_EQ(nests_.child("lane1"), stored_);
  EXPECT_EQ(notifieesOf(lane_), 0u) << "the one made in vain has gone";
  EXPECT_EQ(notifieesOf(twin), 1u);
}

TEST_F(NestedConstruction, OfAnotherKeyLeavesBothChildren) {
  const auto other = Rok::make<Lane>("lane2");
  step_->act = [&] { stored_ = is(other); };
  const auto child = is(lane_);
  EXPECT_EQ(nests_.child("lane1"), child);
  EXPECT_EQ(nests_.child("lane2"), stored_);
}

TEST_F(DeviceTree, ANullArgumentThrowsWithItsNameAndCreatesNothing) {
  const auto sheet = Rok::make<Sheet>();
  const auto port = portOf("Ethernet7");
  const auto textOf = [&](const Ptr<Port const>& p, const Ptr<Sheet>& s, DeviceSm* parent) {
    try {
      root_->portSmIs(p, s, "east", parent);
    } catch (const Rok::MutatorArgNullPointerException& e) {
      return e.attribute() + " " + std::to_string(e.attributeId()) + " " + e.what();
    }
    return std::string("nothing thrown");
  };
  EXPECT_EQ(textOf(nullptr, sheet, root_.get()),
            "port 130 PortSm: argument port (attribute 130) must not be null");
  EXPECT_EQ(textOf(port, nullptr, root_.get()),
            "sheet 131 PortSm: argument sheet (attribute 131) must not be null");
  EXPECT_EQ(textOf(port, sheet, nullptr),
            "parent 133 PortSm: argument parent (attribute 133) must not be null");
  EXPECT_EQ(textOf(nullptr, nullptr, nullptr),
            "port 130 PortSm: argument port (attribute 130) must not be null");
  EXPECT_EQ(textOf(port_, nullptr, root_.get()),
            "sheet 131 PortSm: argument sheet (attribute 131) must not be null")
      << "also where a child stands already";
  EXPECT_EQ(root_->portSm().members(), 2u);
  EXPECT_EQ(notifieesOf(port), 0u);
}

TEST_F(DeviceTree, ANativeObjectReplacedUnderItsNameThrowsOutOfTheWriter) {
  EXPECT_THROW(device_->portIs(portOf("Ethernet1")), Rok::MutatorReinstantiatingException);
  EXPECT_EQ(root_->portSm().child("Ethernet1"), portSm_);
}

TEST_F(DeviceTree, DelReleasesTheChildAndLeavesTheOutputAlone) {
  laneSm_ = nullptr;
  const auto lanes = AllocTrackTypeInfo::of<LaneSm>().blocks();
  const Lines lines = sheet_->lines();
  EXPECT_TRUE(portSm_->laneSm().del("lane1"));
  EXPECT_FALSE(portSm_->laneSm().del("lane1"));
  EXPECT_EQ(AllocTrackTypeInfo::of<LaneSm>().blocks(), lanes - 1);
  EXPECT_EQ(portSm_->laneSm().child("lane1"), nullptr);
  portSm_->laneSm().delAll();
  EXPECT_EQ(portSm_->laneSm().members(), 0u);
  EXPECT_EQ(sheet_->lines(), lines);
  EXPECT_EQ(notifieesOf(lane_), 0u);
}

TEST_F(DeviceTree, WithdrawHasTheChildTakeBackWhatItWroteAndReleasesIt) {
  portSm_->laneSm().withdraw("lane1");
  EXPECT_EQ(sheet_->line("lane1"), "(no line)");
  EXPECT_EQ(sheet_->line("lane2"), "speed 10");
  EXPECT_EQ(portSm_->laneSm().members(), 1u);
}

TEST_F(DeviceTree, WithdrawOfAKeyWithoutAChildHasNoEffect) {
  const int writes = sheet_->writes();
  portSm_->laneSm().withdraw("lane9");
  EXPECT_EQ(sheet_->writes(), writes);
  EXPECT_EQ(portSm_->laneSm().members(), 2u);
}

TEST_F(DeviceTree, WithdrawByAKeyThatLivesInTheChildIsSafe) {
  const Rok::String& key = laneSm_->lane()->name();
  laneSm_ = nullptr;
  lane_ = nullptr;
  const_cast<Port&>(*portSm_->port()).laneDel(key);
  EXPECT_EQ(portSm_->laneSm().members(), 1u);
}

using DeviceTreeDeathTest = DeviceTree;

TEST_F(DeviceTreeDeathTest, WithdrawKnownOfAKeyWithoutAChildEndsTheProcess) {
  EXPECT_DEATH(
      portSm_->laneSm().withdrawKnown("lane9"),
      "^assertion failed: \"false\" == nullptr: LaneSm: no child to delete under key lane9\n");
  EXPECT_DEATH(device_->portDelFalsely("Ethernet9"),
               "^assertion failed: \"false\" == nullptr: PortSm: no child to delete under key "
               "Ethernet9\n");
}

TEST_F(DeviceTree, WithdrawKnownOfAChildThatIsThereIsAWithdraw) {
  portSm_->laneSm().withdrawKnown("lane1");
  EXPECT_EQ(sheet_->line("lane1"), "(no line)");
  EXPECT_EQ(portSm_->laneSm().members(), 1u);
}

TEST_F(DeviceTree, PrepareToDieHasAllTakeBackWhatTheyWroteAndLeavesThemInTheCollection) {
  laneSm_ = nullptr;
  root_->doPrepareToDie();
  EXPECT_EQ(sheet_->lines(), Lines{});
  EXPECT_EQ(root_->portSm().members(), 2u);
  EXPECT_EQ(heard(), (std::set<std::string>{"device", "port"})) << "they are alive and at work";
}

TEST_F(DeviceTree, WithdrawAllHasAllTakeBackWhatTheyWroteAndRemovesThem) {
  portSm_->laneSm().withdrawAll();
  EXPECT_EQ(sheet_->line("lane1"), "(no line)");
  EXPECT_EQ(sheet_->line("lane2"), "(no line)");
  EXPECT_EQ(portSm_->laneSm().members(), 0u);
}

TEST_F(DeviceTree, ChildrenAreWalkedByTheirKeys) {
  std::set<std::string> names;
  for (auto i = portSm_->laneSm().iterator(); i; ++i) {
    names.insert(std::string(i.key()));
    EXPECT_EQ(i.currNodeNonStale()->value()->lane()->name(), i.key());
  }
  EXPECT_EQ(names, (std::set<std::string>{"lane1", "lane2"}));
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
  EXPECT_EQ(sheet_->line("Ethernet2"), "mtu 1500") << "nobody was there to see it go";
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

// A child whose end a test sees: nobody else holds its hook.
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
  EXPECT_EQ(sheet->line("Ethernet1"), "mtu 9000") << "somebody else still holds it";
  EXPECT_FALSE(child->rokMarkedForDeletion());
}

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
  EXPECT_EQ(script->calls, Calls{"follow"}) << "nobody is there to react";
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
}  // namespace stateMachineTest
