// The children of a state machine.
#include <functional>
#include <sstream>

#include "Dorpel/Slab.h"
#include "Rok/StateMachine.h"
#include "tests/support/DeviceTree.h"
#include "tests/support/RokDevice.h"

namespace childrenTest {
namespace {

using namespace RokTest;
using Rok::AllocTrackTypeInfo;
using Rok::Ptr;

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

}  // namespace
}  // namespace childrenTest
