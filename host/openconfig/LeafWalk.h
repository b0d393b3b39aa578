// A walk over all leaves of a model, as a view shows them, in the order of the document: what
// flattens a model and what writes the document are both such walks. What a leaf or a key can't
// hold is left out and warned of.
#pragma once

#include <functional>
#include <string>

#include "host/Model.h"
#include "host/openconfig/View.h"

namespace host {

class LeafWalk {
 public:
  // Gets a line for each value that is left out.
  using Warn = std::function<void(const std::string&)>;

  // Both must outlive the walk. Without `warn` no warning is made.
  LeafWalk(const View& view, const Warn& warn);
  virtual ~LeafWalk() = default;
  LeafWalk(const LeafWalk&) = delete;
  LeafWalk& operator=(const LeafWalk&) = delete;

 protected:
  void walk(const Model& model);

 private:
  // A list begins with its first entry. Those of a container kind are leaves of the entry around it.
  virtual void listBegins(const RecordKind& /*kind*/) {}
  virtual void listEnds() {}
  virtual void entryBegins(const RecordKind& /*kind*/, std::string_view /*key*/) {}
  virtual void entryEnds() {}
  // The value is there.
  virtual void leaf(const RecordKind& kind, const View::Row& row, const LeafValue& value) = 0;

  void entries(const RecordKind& kind, const void* holder);
  void entry(const RecordKind& kind, const void* entry, const void* record);
  void leaves(const RecordKind& kind, const void* record);
  void read(const RecordKind& kind, const void* record, const View::Row& row);

  std::string pathOf(const RecordKind& kind, std::size_t depth) const;
  void leafLeftOut(const std::string& reason);
  void leftOut(const std::string& path, std::string_view reason, const std::string& native);

  struct Current {
    const RecordKind* kind;
    const void* record;
    std::size_t leaf;
  };

  const View& view_;
  const Warn& warn_;
  Faults faults_;
  Keys keys_;
  Current at_{};  // what `faults_` is reported for
};

}  // namespace host
