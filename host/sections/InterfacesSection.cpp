// "interfaces": {"<name>": {"tx-queues": {...}, "pfc": {"priorities": n}}}
#include "host/sections/TxQueues.h"

namespace host {
namespace {

using Pfc::PortConfig;
using Qos::IntfConfig;
using Qos::Input::Config;

constexpr Setting<PortConfig> portSettings[] = {
    attribute<&PortConfig::priorities, &PortConfig::prioritiesIs>("priorities"),
};

constexpr Setting<IntfConfig> intfSettings[] = {
    part<TxQueues<IntfConfig>>("tx-queues"),
    object<&IntfConfig::pfcPortConfig, &IntfConfig::pfcPortConfigIs, Record<portSettings>>("pfc"),
};

using Interfaces = Objects<all(&Config::intfConfig), &Config::intfConfigIs, &Config::intfConfigDel,
                           Record<intfSettings>>;

}  // namespace

Section interfacesSection() { return section(&Native::qosConfig, part<Interfaces>("interfaces")); }

}  // namespace host
