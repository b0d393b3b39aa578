// "pfc": {"watchdog": {...}}
#include "host/model/Parts.h"

namespace host {
namespace {

// Only the values that every model begins with.
Schema pfcSchema() {
  const std::string since = ", since this part of the model can't be read yet";
  const Schema one = Schema::exactly(Schema::number(1), Value(std::uint64_t{1}), "1" + since);
  const Schema zero = Schema::exactly(Schema::real(), Value(0.0), "0" + since);
  const Schema none = Schema::exactly(Schema::text(), Value(""), "an empty string" + since);
  return Schema::record({{"watchdog", Schema::record({{"action", one},
                                                      {"priorities", none},
                                                      {"time-a", zero},
                                                      {"time-b", zero},
                                                      {"time-c", zero}})}});
}

void writePfc(JsonWriter& out, const Model& /*model*/) {
  out.beginObject();
  out.key("watchdog");
  out.beginObject();
  out.key("action");
  out.number(1);
  out.key("priorities");
  out.text("");
  for (const char* time : {"time-a", "time-b", "time-c"}) {
    out.key(time);
    out.real(0);
  }
  out.endObject();
  out.endObject();
}

}  // namespace

ModelPart pfcPart() {
  return {"pfc", pfcSchema(), [](const Model&, const std::string&, const Value&) {}, writePfc};
}

}  // namespace host
