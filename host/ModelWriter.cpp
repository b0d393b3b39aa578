#include "host/ModelWriter.h"

#include "host/model/Parts.h"

namespace host {

std::string modelJson(const Model& model, Layout layout, const TextSink& sink) {
  JsonWriter out(layout, sink);
  out.beginObject();
  for (const ModelPart& part : modelParts()) {
    out.key(part.name);
    part.write(out, model);
  }
  out.endObject();
  return out.take();
}

}  // namespace host
