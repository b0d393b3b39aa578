// A device with two ports, the tree of machines over it, and which levels of it handle events.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "Rok/StateMachine.h"
#include "tests/support/RokDevice.h"

namespace RokTest {

using Rok::Ptr;

using Lines = Sheet::Lines;
using Notes = std::vector<std::string>;

inline std::size_t notifieesOf(const Ptr<Rok::Notifier>& object) {
  return object->notifieeList()->notifiees();
}

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
  // Changes a value at each level and returns the levels that handled it.
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
inline const std::set<std::string> everything{"device", "port", "lane"};

}  // namespace RokTest
