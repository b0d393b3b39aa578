// The texts that documents use for native bytes.
#pragma once

#include "host/Schema.h"
#include "models/native/AclConfig.h"

namespace host {

inline constexpr Name mapTypes[] = {{"qos", static_cast<unsigned char>(Qos::mapQos)}};

inline constexpr Name matchOptions[] = {
    {"ip-access-group", static_cast<unsigned char>(Qos::matchIpAccessGroup)},
    {"ipv6-access-group", static_cast<unsigned char>(Qos::matchIpv6AccessGroup)}};

}  // namespace host
