// The texts that documents use for native bytes.
#pragma once

#include "host/Schema.h"
#include "models/native/AclConfig.h"
#include "models/native/Values.h"

namespace host {

inline constexpr Name mapTypes[] = {{"qos", static_cast<unsigned char>(Qos::mapQos)}};

inline constexpr Name matchOptions[] = {
    {"ip-access-group", static_cast<unsigned char>(Qos::matchIpAccessGroup)},
    {"ipv6-access-group", static_cast<unsigned char>(Qos::matchIpv6AccessGroup)}};

inline constexpr Name actionTypes[] = {
    {"set-traffic-class", static_cast<unsigned char>(Qos::actionSetTc)}};

inline constexpr Name priorities[] = {
    {"strict", static_cast<unsigned char>(Qos::strictPriority)},
    {"unset", static_cast<unsigned char>(Qos::priorityNotConfigured)}};

}  // namespace host
