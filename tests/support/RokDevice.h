// A small native model (a device with ports, ports with lanes and a profile), an output, and the
// state machines that keep the one in step with the other: a root, a child, a leaf.
#pragma once

#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "Rok/Rok.h"
#include "tests/support/RokMaps.h"

namespace RokTest {

// ===== Native objects

class Lane final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> name{130};
    static constexpr Rok::Attribute<> speed{131};
  };
  explicit Lane(const Rok::String& name, int speed = 10) : name_(name), speed_(speed) {}

  const Rok::String& name() const { return name_; }
  int speed() const { return speed_; }
  void speedIs(int v) { attributeIs(speed_, v, Attr::speed); }

 private:
  Rok::String name_;
  int speed_;
};

class Profile final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> rate{130};
  };
  int rate() const { return rate_; }
  void rateIs(int v) { attributeIs(rate_, v, Attr::rate); }

 private:
  int rate_ = 0;
};

class Port final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> name{130};
    static constexpr Rok::Attribute<> mtu{131};
    static constexpr Rok::Attribute<> profile{132};
    static constexpr Rok::Attribute<Rok::String> lane{133};
    static constexpr Rok::Attribute<> description{134};
  };
  using Lanes = Rok::HashMap2018<Rok::Hm2018NEI<0x81, Rok::String, Rok::Ptr<Lane>>>;

  explicit Port(const Rok::String& name, int mtu = 1500) : name_(name), mtu_(mtu) {}

  const Rok::String& name() const { return name_; }
  int mtu() const { return mtu_; }
  void mtuIs(int v) { attributeIs(mtu_, v, Attr::mtu); }
  const Rok::Ptr<Profile>& profile() const { return profile_; }
  void profileIs(const Rok::Ptr<Profile>& v) { attributeIs(profile_, v, Attr::profile); }
  const Lanes& lane() const { return lane_; }
  void laneIs(const Rok::Ptr<Lane>& v) { memberIs(lane_, v->name(), v, Attr::lane); }
  void laneDel(const Rok::String& name) { memberDel(lane_, name, Attr::lane); }
  // No machine watches this one.
  void descriptionIs(const Rok::String& v) { attributeIs(description_, v, Attr::description); }

 private:
  Rok::String name_;
  int mtu_;
  Rok::Ptr<Profile> profile_;
  Lanes lane_;
  Rok::String description_;
};

class Device final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> hostname{130};
    static constexpr Rok::Attribute<Rok::String> port{131};
    static constexpr Rok::Attribute<Blunt> slot{132};
  };
  using Ports = Rok::HashMap2018<Rok::Hm2018NEI<0x82, Rok::String, Rok::Ptr<Port>>>;
  using Slots = Rok::HashMap2018<Rok::Hm2018NEI<0x83, Blunt, int>>;

  const Rok::String& hostname() const { return hostname_; }
  void hostnameIs(const Rok::String& v) { attributeIs(hostname_, v, Attr::hostname); }
  const Ports& port() const { return port_; }
  Rok::Ptr<Port> port(const Rok::String& name) const {
    const auto* found = port_.find(name);
    return found != nullptr ? *found : nullptr;
  }
  void portIs(const Rok::Ptr<Port>& v) { memberIs(port_, v->name(), v, Attr::port); }
  void portDel(const Rok::String& name) { memberDel(port_, name, Attr::port); }
  // Notifies of the removal of a port that was never there.
  void portDelFalsely(const Rok::String& name) { notify(Attr::port, name); }
  // The keys of the slots have colliding hashes.
  void slotIs(Blunt slot, int v) { memberIs(slot_, slot, v, Attr::slot); }

 private:
  Rok::String hostname_;
  Ports port_;
  Slots slot_;
};

inline Rok::Ptr<Port> portOf(const Rok::String& name,
                             std::initializer_list<const char*> lanes = {}) {
  auto port = Rok::make<Port>(name);
  for (const char* lane : lanes) port->laneIs(Rok::make<Lane>(lane));
  return port;
}
inline Rok::Ptr<Device> deviceOf(std::initializer_list<const char*> ports) {
  auto device = Rok::make<Device>();
  for (const char* port : ports) device->portIs(portOf(port));
  return device;
}

// ===== The output

// Lines by name, and how often they were written.
class Sheet final : public Rok::PtrInterface {
 public:
  using Lines = std::map<std::string, std::string>;

  const Lines& lines() const { return lines_; }
  std::string line(const std::string& name) const {
    const auto found = lines_.find(name);
    return found != lines_.end() ? found->second : "(no line)";
  }
  void lineIs(std::string_view name, const std::string& text) {
    ++writes_;
    lines_[std::string(name)] = text;
  }
  void lineDel(std::string_view name) {
    ++writes_;
    lines_.erase(std::string(name));
  }
  int writes() const { return writes_; }

  // What the machines note of their construction and teardown.
  void note(const std::string& text) { notes_.push_back(text); }
  std::vector<std::string> takeNotes() { return std::exchange(notes_, {}); }

 private:
  Lines lines_;
  int writes_ = 0;
  std::vector<std::string> notes_;
};

// ===== State machines

class DeviceSm;

// A leaf.
class LaneSm final : public Rok::StateMachine<LaneSm> {
 public:
  static constexpr std::string_view rokTypeName = "LaneSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"lane", &Self::lane}, Rok::Argument{"sheet", &Self::sheet}};
  }

  Rok::Ptr<Lane const> lane() const { return lane_.ptr(); }
  const Rok::Ptr<Sheet>& sheet() const { return sheet_; }

  void handleSpeed() { sheet_->lineIs(lane_->name(), "speed " + std::to_string(lane_->speed())); }
  void doPrepareToDie() { sheet_->lineDel(lane_->name()); }
  void handleInitialized() { handleSpeed(); }

 private:
  friend Rok::StateMachine<Self>;
  using RokLane = Rok::Watch<Self, Lane, Rok::On<Lane::Attr::speed, &Self::handleSpeed>>;
  LaneSm(Rok::In<Lane> lane, Rok::Out<Sheet> sheet) : lane_(*this, lane), sheet_(sheet) {
    rokInitialize<&Self::handleInitialized>();
  }
  auto parts() { return std::tie(lane_); }

  RokLane lane_;
  Rok::Ptr<Sheet> sheet_;
};

// A child with children of its own, an argument by value, a raw back pointer to its parent, and an
// input that it reaches through another.
class PortSm final : public Rok::StateMachine<PortSm> {
 public:
  static constexpr std::string_view rokTypeName = "PortSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"port", &Self::port}, Rok::Argument{"sheet", &Self::sheet},
                      Rok::Argument{"area", &Self::area}, Rok::Argument{"parent", &Self::parent}};
  }
  using LaneSmKeyFunktor = Rok::KeyFunktor<&LaneSm::lane, &Lane::name>;
  using Lanes = Rok::Children<LaneSm, 0x84, LaneSmKeyFunktor>;

  Rok::Ptr<Port const> port() const { return port_.ptr(); }
  const Rok::Ptr<Sheet>& sheet() const { return sheet_; }
  const Rok::String& area() const { return area_; }
  DeviceSm* parent() const { return parent_; }
  Lanes& laneSm() { return laneSm_; }

  void hasNotificationActiveIs(bool v) override {
    ++switches;
    StateMachine::hasNotificationActiveIs(v);
  }

  Rok::Ptr<Profile const> profileIn() const { return profileIn_.ptr(); }
  void profileInIs(Rok::In<Profile> profile) { profileIn_.inputIs(profile); }
  void profileInDel() { profileIn_.inputDel(); }

  void handleMtu() { sheet_->lineIs(port_->name(), "mtu " + std::to_string(port_->mtu())); }
  void handleProfile() { profileIn_.follow(*this); }
  void handleRate() { sheet_->note("rate " + std::to_string(profileIn_->rate())); }
  void handleLane(const Rok::String& name) {
    laneSm_.mirror(port_->lane(), name, Rok::entry, sheet_);
  }
  void doPrepareToDie() {
    laneSm_.withdrawAll();
    sheet_->lineDel(port_->name());
  }
  void handleInitialized() {
    handleMtu();
    handleProfile();
    eachKey<&Self::handleLane>(port_->lane());
  }

  int switches = 0;  // calls of hasNotificationActiveIs

 private:
  friend Rok::StateMachine<Self>;
  using RokPort = Rok::Watch<Self, Port, Rok::On<Port::Attr::mtu, &Self::handleMtu>,
                             Rok::On<Port::Attr::profile, &Self::handleProfile>,
                             Rok::On<Port::Attr::lane, &Self::handleLane>>;
  PortSm(Rok::In<Port> port, Rok::Out<Sheet> sheet, const Rok::String& area, DeviceSm* parent)
      : port_(*this, port),
        sheet_(sheet),
        area_(area),
        parent_(parent),
        profileIn_(*this),
        laneSm_(*this) {
    rokInitialize<&Self::handleInitialized>();
  }
  auto parts() { return std::tie(port_, profileIn_, laneSm_); }

  RokPort port_;
  Rok::Ptr<Sheet> sheet_;
  Rok::String area_;
  DeviceSm* parent_;
  using RokProfileIn = Rok::ChainedWatch<Self, &Self::port_, &Port::profile,
                                         Rok::On<Profile::Attr::rate, &Self::handleRate>>;
  RokProfileIn profileIn_;
  Lanes laneSm_;
};

// A root that mirrors the ports and, at start, sweeps the lines that no port stands for.
class DeviceSm final : public Rok::StateMachine<DeviceSm> {
 public:
  static constexpr std::string_view rokTypeName = "DeviceSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"device", &Self::device}, Rok::Argument{"sheet", &Self::sheet}};
  }
  using PortSmKeyFunktor = Rok::KeyFunktor<&PortSm::port, &Port::name>;
  using Ports = Rok::Children<PortSm, 0x85, PortSmKeyFunktor>;

  Rok::Ptr<Device const> device() const { return device_.ptr(); }
  const Rok::Ptr<Sheet>& sheet() const { return sheet_; }
  Ports& portSm() { return portSm_; }
  auto portSmIs(const auto&... arguments) { return portSm_.is(arguments...); }

  void handleHostname() { sheet_->note("hostname " + std::string(device_->hostname())); }
  void handlePort(const Rok::String& name) {
    portSm_.mirrorKnown(device_->port(), name, Rok::entry, sheet_, "east", this);
  }
  void doPrepareToDie() { portSm_.prepareToDie(); }
  void handleInitialized() {
    eachKey<&Self::handlePort>(device_->port());
    const Sheet::Lines old = sheet_->lines();
    for (const auto& [name, text] : old) {
      if (text.starts_with("mtu ") && !device_->port(name)) sheet_->lineDel(name);
    }
  }

 private:
  friend Rok::StateMachine<Self>;
  using RokDevice = Rok::Watch<Self, Device, Rok::On<Device::Attr::port, &Self::handlePort>,
                               Rok::On<Device::Attr::hostname, &Self::handleHostname>>;
  DeviceSm(Rok::In<Device> device, Rok::Out<Sheet> sheet)
      : device_(*this, device), sheet_(sheet), portSm_(*this) {
    rokInitialize<&Self::handleInitialized>();
  }
  auto parts() { return std::tie(device_, portSm_); }

  RokDevice device_;
  Rok::Ptr<Sheet> sheet_;
  Ports portSm_;
};

}  // namespace RokTest
