// A walk over all leaves of a model, as a view shows them, in the order of the document: what
// flattens a model and what writes the document are both such walks. What a leaf or a key can't
// hold is left out and warned of.
#pragma once

#include <functional>
#include <string>

#include "host/Model.h"
#include "host/openconfig/LeftOut.h"
#include "host/openconfig/Subtree.h"
#include "host/openconfig/View.h"

namespace host {

class LeafWalk {
 public:
  // All must outlive the walk. Without `warn` no warning is made. With `only`, the walk has the
  // leaves within that subtree, and of the entries around them the keys.
  LeafWalk(const View& view, const Warn& warn, const Subtree& only);
  virtual ~LeafWalk() = default;
  LeafWalk(const LeafWalk&) = delete;
  LeafWalk& operator=(const LeafWalk&) = delete;

 protected:
  // Calls the functions below, in the order of the document.
  void walk(const Model& model);

 private:
  // A list begins with its first entry. Those of a container kind are leaves of the entry around it.
  virtual void listBegins(const RecordKind& /*kind*/) {}
  virtual void listEnds() {}
  virtual void entryBegins(const RecordKind& /*kind*/, std::string_view /*key*/) {}
  virtual void entryEnds() {}
  // The value is there.
  virtual void leaf(const RecordKind& kind, const View::Row& row, const LeafValue& value) = 0;

  // An entry around the leaf. One above the subtree begins only once a leaf within is there.
  struct Open {
    const RecordKind* kind;
    std::string_view key;
    bool* listHasBegun;
    bool hasBegun = false;
    const View::Row* keyRow = nullptr;  // the key's, once the walk has passed it
    LeafValue keyValue = {};
  };
  using Relation = Subtree::Relation;

  void entries(const RecordKind& kind, const void* holder);
  void listEntry(const Open& open, const void* entry, const void* record, std::string_view misfit);
  void entry(const RecordKind& kind, const void* entry, const void* record);
  void leaves(const RecordKind& kind, const void* record);
  void read(const RecordKind& kind, const void* record, const View::Row& row);
  void passKey(const RecordKind& kind, const void* record, const View::Row& row);
  void beginEntries();
  bool isWithin(const View::Row& row);

  const View& view_;
  const Subtree& only_;
  const Warn& warn_;
  Faults faults_;
  Keys keys_;
  std::vector<Open> open_;
  Relation relation_;  // of the entry or container that the walk is at
  std::string path_;   // of it, unless it is within
  RecordLeaf at_{};    // what `faults_` is reported for
};

}  // namespace host
