#include "host/ModelWriter.h"

#include "host/model/Parts.h"

namespace host {

std::string modelJson(const Model& model, Layout layout, const TextSink& sink) {
  JsonWriter out(layout, sink);
  writeModel(out, model);
  return out.take();
}

void writeModel(JsonWriter& out, const Model& model) {
  out.beginObject();
  for (const ModelPart& part : modelParts()) {
    out.key(part.name);
    part.write(out, model);
  }
  out.endObject();
}

}  // namespace host
