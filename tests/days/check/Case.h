// A random document with what `check` finds in it and what its translations come to.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/check/Check.h"
#include "tests/days/check/Document.h"
#include "tests/days/check/Translation.h"

namespace days {

// The path of an entry of a list: "/qos/queues/queue[name=V]".
std::string entryPath(std::string_view list, std::string_view key, std::string_view value);
std::string classifierPath(std::string_view name);
std::string interfacePath(std::string_view name);

// That a name of a class map or of a class has, also that of a placeholder; empty for another's.
std::string classifierOf(const std::string& className);

// Whether a finding says of the leaf at a path that it depends on the order.
bool isAboutLeaf(const host::Finding& finding, const std::string& path);

class Case {
 public:
  using Select = Outcomes::Select;

  // Requires: no comment of the document ends the process.
  explicit Case(const Document& document);

  const Document& document() const { return document_; }
  const std::vector<host::Finding>& findings() const { return findings_; }
  const Outcomes& outcomes() const { return outcomes_; }
  const Outcomes& outcomesWithout(const host::Tokens& place) const;

  // Whether another document has the same leaves. Those that depend on the order, or that are not
  // selected, don't count.
  bool isSame(const Document& other, const Select& select = nullptr) const;
  bool isSameWithout(const host::Tokens& place, const Select& select = nullptr) const;
  // Whether any order has a leaf that is selected.
  bool hasLeaf(const Select& select) const;
  bool hasFindingOf(std::string_view kind) const;

 private:
  bool isSame(const Outcomes& other, const Select& select) const;

  const Document document_;
  const std::vector<host::Finding> findings_;
  const Outcomes outcomes_;
  mutable std::map<host::Tokens, Outcomes> without_;
};

// Of leaves that refer to others: what they name, and whether that is there.
struct Reference {
  std::string path;
  std::string name;

  friend auto operator<=>(const Reference&, const Reference&) = default;
};
std::vector<Reference> danglingReferences(const LeafMap& leaves);

}  // namespace days
