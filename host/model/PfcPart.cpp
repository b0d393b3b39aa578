// "pfc": {"watchdog": {...}}
#include "host/model/Parts.h"

namespace host {
namespace {

using QosOc::Config::Pfc;
using QosOc::Config::PfcWatchdog;

Codec<PfcWatchdog> watchdogCodec() {
  return record<PfcWatchdog>({member("action", &PfcWatchdog::action, number<std::uint8_t>()),
                              member("priorities", &PfcWatchdog::priorities, text()),
                              member("time-a", &PfcWatchdog::timeA, real()),
                              member("time-b", &PfcWatchdog::timeB, real()),
                              member("time-c", &PfcWatchdog::timeC, real())});
}

Codec<Pfc> pfcCodec() {
  return record<Pfc>({attribute("watchdog", &Pfc::watchdog, &Pfc::watchdogIs, watchdogCodec())});
}

}  // namespace

ModelPart pfcPart() {
  const Codec<Pfc> codec = pfcCodec();
  return {"pfc", codec.schema,
          [=](const Model& model, const Rok::String& /*key*/, const Value& value) {
            codec.read(*model.pfc, value);
          },
          [=](JsonWriter& out, const Model& model) { codec.write(out, *model.pfc); }};
}

}  // namespace host
