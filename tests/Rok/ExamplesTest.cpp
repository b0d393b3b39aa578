// The EXAMPLE blocks of the headers, compiled and run. A test holds each block against this file.
#include <cassert>
#include <sstream>

#include "Rok/Rok.h"
#include "Rok/Strep.h"
#include "tests/support/HeaderExample.h"

namespace {

TEST(Examples, Ptr) {
  struct Lamp : Rok::PtrInterface {
    bool lit = false;
  };
  Rok::Ptr<Lamp> lamp = Rok::make<Lamp>();
  Rok::Ptr<Lamp const> seen = lamp;
  lamp->lit = true;
  assert(seen->lit && lamp->references() == 2);
}

TEST(Examples, HashMap) {
  Rok::HashMap2018<Rok::Hm2018NEI<0x51, Velmo::String, int>> ports;
  ports.newMember("Ethernet1", 7);
  assert(*ports.find("Ethernet1") == 7);
  int sum = 0;
  for (const auto& [name, number] : ports) {
    ports.deleteMember(name);
    sum += number;
  }
  assert(ports.members() == 0 && sum == 7);
}

TEST(Examples, StdIterator) {
  Rok::HashMap2018<Rok::Hm2018NEI<0x51, Velmo::String, int>> ports;
  ports.newMember("Ethernet1", 7);
  ports.newMember("Ethernet2", 8);
  int sum = 0;
  for (auto port = ports.iterator(); port; ++port) {
    ports.deleteMember(port.key());
    assert(port.currNodeNonStale() == nullptr);
    sum += port.currNodeMaybeStale()->value();
  }
  EXPECT_EQ(ports.members(), 0u);
  EXPECT_EQ(sum, 15);
}

TEST(Examples, Hash) {
  struct PortId {
    unsigned slot = 0;
    Velmo::String name;
    std::uint32_t hash(std::uint32_t seed) const {
      return Rok::hashSingleAttr(Rok::hashSingleAttr(seed, slot), name);
    }
    bool operator==(const PortId&) const = default;
  };
  Rok::HashMap2018<Rok::Hm2018NEI<0x52, PortId, int>> speeds;
  speeds.newMember({1, "Ethernet1"}, 10);
  EXPECT_EQ(speeds.get({1, "Ethernet1"}), 10);
  EXPECT_EQ(speeds.find({2, "Ethernet1"}), nullptr);
}

TEST(Examples, Optional) {
  std::ostringstream out;
  Rok::Optional<int> rate;
  Rok::DynOptional<int> burst(40);
  out << rate << ", " << burst;
  assert(out.str() == "(absent), 40");
}

TEST(Examples, Exceptions) {
  struct Dscp {
    explicit Dscp(int v) : value(static_cast<unsigned char>(v)) {
      if (!Rok::isUpTo(63, v)) Rok::throwRangeException(Rok::_fmt("%d is not a DSCP", v));
    }
    unsigned char value;
  };
  EXPECT_EQ(Dscp(46).value, 46);
  try {
    static_cast<void>(Dscp(302));
    FAIL() << "made";
  } catch (const Rok::RangeException& e) {
    EXPECT_STREQ(e.what(), "302 is not a DSCP");
  }
}

TEST(Examples, OrderedMap) {
  Rok::OrderedMap<std::uint32_t, Velmo::String> rules;
  rules.memberIs(20, "deny");
  rules.memberIs(10, "permit");
  std::string order;
  for (const auto& [number, text] : rules) {
    rules.deleteMember(number);
    order += std::to_string(number) + " " + text.data() + ", ";
  }
  assert(rules.members() == 0 && order == "10 permit, 20 deny, ");
}

TEST(Examples, String) {
  Velmo::String classifier("edge-in");
  Velmo::String placeholder = classifier.addLeft("__yang_[").addRight("]_[]");
  assert(placeholder == "__yang_[edge-in]_[]");
}

namespace index {

class PortSm {
 public:
  using BySpeed = Rok::Index<unsigned, PortSm, 0x5eedu>;
  PortSm(const Rok::Ptr<BySpeed>& bySpeed, unsigned speed) : entry_(bySpeed, speed, *this) {}
  void reset() { ++resets; }
  int resets = 0;

 private:
  BySpeed::Entry entry_;
};

TEST(Examples, Index) {
  const auto bySpeed = Rok::make<PortSm::BySpeed>();
  PortSm slow(bySpeed, 10);
  PortSm fast(bySpeed, 100);
  bySpeed->each(100, [](PortSm& port) { port.reset(); });
  assert(slow.resets == 0 && fast.resets == 1);
}

}  // namespace index

TEST(Examples, ValueMap) {
  Rok::ValueMap<0x58, Velmo::String, int> speeds;
  speeds.is("Ethernet1", 100);
  assert(speeds.get("Ethernet1") == 100 && speeds.get("Ethernet2") == 0);
}

TEST(Examples, Found) {
  Rok::HashMap2018<Rok::Hm2018NEI<0x52, Velmo::String, int>> ports;
  ports.newMember("Ethernet1", 7);
  Rok::Found mine;
  assert(*mine.in(ports, "Ethernet1") == 7);
  ports.deleteMember("Ethernet1");
  assert(mine.in(ports, "Ethernet1") == nullptr);
}

TEST(Examples, WalkOrder) {
  Rok::HashMap2018<Rok::Hm2018NEI<0x53, Velmo::String, int>> ports;
  ports.newMember("Ethernet1", 7);
  int served = 0;
  Rok::inWalkOrder(
      ports, {"Ethernet1", "Ethernet2"}, false, [](const Velmo::String&) {},
      [&](const Velmo::String& name) { served += ports.get(name); });
  assert(served == 7);
}

TEST(Examples, Strep) {
  struct Limit {
    explicit Limit(Rok::CharRange& range) {
      range.needString("Limit(");
      rate = Rok::deserializeAttr<std::uint64_t>(range, "rate");
      range.needString(")");
    }
    std::uint64_t rate = 0;
  };
  assert(Rok::strepToValue<Limit>("Limit(40)").rate == 40);
  assert(Rok::valueToStrep(Velmo::String("it's")) == R"('it\'s')");
}

namespace notifier {

class Port final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> mtu{130};
  };
  unsigned mtu() const { return mtu_; }
  void mtuIs(unsigned v) { attributeIs(mtu_, v, Attr::mtu); }

 private:
  unsigned mtu_ = 1500;
};

}  // namespace notifier

TEST(Examples, Notifier) {
  const auto port = Rok::make<notifier::Port>();
  port->mtuIs(9000);
  EXPECT_EQ(port->mtu(), 9000u);
}

namespace machine {

class Port final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> mtu{130};
  };
  const Rok::String& name() const { return name_; }
  unsigned mtu() const { return mtu_; }
  void mtuIs(unsigned v) { attributeIs(mtu_, v, Attr::mtu); }

 private:
  Rok::String name_ = "Ethernet1";
  unsigned mtu_ = 1500;
};

struct Log final : Rok::PtrInterface {
  void line(const Rok::String& name, unsigned mtu) { text = Rok::_fmt("%s %u", name.data(), mtu); }
  void lineDel(const Rok::String& /*name*/) { text = ""; }
  Rok::String text;
};

// Keeps one line for each port of a device.
class PortSm final : public Rok::StateMachine<PortSm> {
 public:
  static constexpr std::string_view rokTypeName = "PortSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"port", &Self::port}, Rok::Argument{"log", &Self::log}};
  }
  static auto PortSmIs(const auto&... arguments) { return create(arguments...); }
  Rok::Ptr<Port const> port() const { return port_.ptr(); }
  const Rok::Ptr<Log>& log() const { return log_; }
  void handleMtu() { log_->line(port_->name(), port_->mtu()); }
  void doPrepareToDie() { log_->lineDel(port_->name()); }
  void handleInitialized() { handleMtu(); }

 private:
  friend Rok::StateMachine<Self>;
  using RokPort = Rok::Watch<Self, Port, Rok::On<Port::Attr::mtu, &Self::handleMtu>>;
  PortSm(Rok::In<Port> port, Rok::Out<Log> log) : port_(*this, port), log_(log) {
    rokInitialize<&Self::handleInitialized>();
  }
  auto parts() { return std::tie(port_); }

  RokPort port_;
  Rok::Ptr<Log> log_;
};
Rok::Factory<PortSm> portSmFactory;

Rok::Ptr<PortSm> portSmFactory(Rok::In<Port> port, Rok::Out<Log> log) {
  return PortSm::PortSmIs(port, log);
}

using MtuOfPort = Rok::Watch<PortSm, Port, Rok::On<Port::Attr::mtu, &PortSm::handleMtu>>;
static_assert(std::is_base_of_v<Rok::PtrInterface::NotifieeConst, MtuOfPort>);

class Device final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<Rok::String> port{130};
  };
  using Ports = Rok::HashMap2018<Rok::Hm2018NEI<0x57, Rok::String, Rok::Ptr<Port>>>;
  const Ports& port() const { return port_; }
  void portIs(const Rok::Ptr<Port>& port) { memberIs(port_, port->name(), port, Attr::port); }
  void portDel(const Rok::String& name) { memberDel(port_, name, Attr::port); }

 private:
  Ports port_;
};

// Mirrors the ports of a device.
class DeviceSm final : public Rok::StateMachine<DeviceSm> {
 public:
  static constexpr std::string_view rokTypeName = "DeviceSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"device", &Self::device}, Rok::Argument{"log", &Self::log}};
  }
  using PortSmKeyFunktor = Rok::KeyFunktor<&PortSm::port, &Port::name>;
  using PortSms = Rok::Children<PortSm, 0x54u, PortSmKeyFunktor>;
  Rok::Ptr<Device const> device() const { return device_.ptr(); }
  const Rok::Ptr<Log>& log() const { return log_; }
  void handlePort(const Rok::String& name) {
    portSm_.mirror(device_->port(), name, Rok::entry, log_);
  }
  void handleInitialized() { eachKey<&Self::handlePort>(device_->port()); }

 private:
  friend Rok::StateMachine<Self>;
  using RokDevice = Rok::Watch<Self, Device, Rok::On<Device::Attr::port, &Self::handlePort>>;
  DeviceSm(Rok::In<Device> device, Rok::Out<Log> log)
      : device_(*this, device), log_(log), portSm_(*this) {
    rokInitialize<&Self::handleInitialized>();
  }
  auto parts() { return std::tie(device_, portSm_); }

  RokDevice device_;
  Rok::Ptr<Log> log_;
  PortSms portSm_;
};

}  // namespace machine

TEST(Examples, Children) {
  const auto device = Rok::make<machine::Device>();
  const auto log = Rok::make<machine::Log>();
  const auto sm = machine::DeviceSm::create(device, log);
  device->portIs(Rok::make<machine::Port>());
  EXPECT_EQ(log->text, "Ethernet1 1500");
  device->portDel("Ethernet1");
  EXPECT_EQ(log->text, "");
}

TEST(Examples, StateMachine) {
  const auto port = Rok::make<machine::Port>();
  const auto log = Rok::make<machine::Log>();
  const auto sm = machine::portSmFactory(port, log);
  EXPECT_EQ(log->text, "Ethernet1 1500");
  port->mtuIs(9000);
  EXPECT_EQ(log->text, "Ethernet1 9000");
  sm->doPrepareToDie();
  EXPECT_EQ(log->text, "");
}

struct Counter {
  void handleTick(int n);
  int ticks() const { return 3; }
};

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceLevel handler{traceHandle, 8};
constexpr Rok::TraceLevel detail{traceHandle, 9};

void Counter::handleTick(int n) {
  Rok::traceEntry(handler, *this, n);
  if (n % 2 == 0) Rok::traceLine(detail, "an even tick: ", n);
  if (Rok::TraceHelper line{detail}) line << "ticks so far: " << ticks();
}

TEST(Examples, Trace) {
  std::string text;
  const auto before =
      Rok::TraceFacility::sinkIs([&](const Rok::TraceFacility::Line& line) { text = line.text; });
  Rok::TraceFacility::levelIs(9, true);
  Counter().handleTick(3);
  Rok::TraceFacility::levelDelAll();
  Rok::TraceFacility::sinkIs(before);
  EXPECT_EQ(text, "ticks so far: 3");
}

enum class MapType : unsigned char { mapQos = 1 };
inline const Rok::EnumType<unsigned char>& rokEnumType(MapType) {
  static const Rok::EnumType<unsigned char> type("Qos::MapType", {{1, "mapQos"}});
  return type;
}
inline std::ostream& operator<<(std::ostream& out, MapType v) { return Rok::enumPrint(out, v); }

TEST(Examples, EnumType) {
  std::ostringstream out;
  out << MapType::mapQos;
  EXPECT_EQ(out.str(), "mapQos");
}

TEST(ExamplesDeathTest, Sassert) {
  const int type = 7;
  EXPECT_DEATH(if (type > 1) Rok::SassertHelper("type <= 1") << "Unexpected ACL type " << type;
               , "Unexpected ACL type 7");
}

// ===== The blocks are those of the headers

class HeaderExamples : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Headers, HeaderExamples,
                         testing::Values("Rok/EnumType.h", "Rok/Exceptions.h", "Rok/Hash.h",
                                         "Rok/HashMap2018.h", "Rok/Index.h", "Rok/Notifier.h",
                                         "Rok/Optional.h", "Rok/OrderedMap.h", "Rok/Ptr.h",
                                         "Rok/Sassert.h", "Rok/StateMachine.h", "Rok/Children.h",
                                         "Rok/Watch.h", "Rok/ValueMap.h", "Rok/Found.h",
                                         "Rok/WalkOrder.h", "Rok/StdIterator.h", "Rok/Strep.h",
                                         "Rok/Trace.h", "Velmo/String.h"));

TEST_P(HeaderExamples, AreTheOnesThatRunHere) {
  support::expectExample(GetParam(), "tests/Rok/ExamplesTest.cpp");
}

}  // namespace
