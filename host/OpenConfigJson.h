// The `openconfig` format: the OpenConfig QoS tree as JSON by RFC 7951. Types, ranges, keys and
// uniqueness always hold in it: what a leaf can't hold is left out, with a warning.
#pragma once

#include <functional>
#include <string>
#include <unordered_set>

#include "Dorpel/Export.h"
#include "host/JsonWriter.h"
#include "host/Model.h"
#include "host/openconfig/Subtree.h"
#include "host/openconfig/View.h"

namespace QOS_EXPORT host {

class OpenConfigJson {
 public:
  using Warn = std::function<void(const std::string&)>;

  // `warn` gets one line for each value that is left out, once in the lifetime of the renderer.
  // With `only`, a document has the leaves within that subtree, and of the entries around them the
  // keys.
  explicit OpenConfigJson(Warn warn, const ViewOptions& shown = {}, Subtree only = {})
      : warn_(std::move(warn)), view_(shown), only_(std::move(only)) {}

  // With a sink, that gets the text, and the result is empty.
  std::string json(const Model& model, Layout layout, const TextSink& sink = nullptr);
  // Warns as `json` would and makes no text. A sink may call it while that gets the text.
  void warn(const Model& model);

 private:
  void warnOnce(const std::string& warning);

  Warn warn_;
  View view_;
  Subtree only_;
  std::unordered_set<std::string> warned_;
};

}  // namespace host
