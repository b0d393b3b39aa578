// "scheduler-policies": {}
#include "host/model/Parts.h"

namespace host {

ModelPart schedulerPoliciesPart() {
  const Schema unread = Schema::unavailable("this part of the model can't be read yet");
  return {"scheduler-policies", Schema::keyed(Key::name(), unread),
          [](const Model&, const std::string&, const Value&) {},
          [](JsonWriter& out, const Model&) {
            out.beginObject();
            out.endObject();
          }};
}

}  // namespace host
