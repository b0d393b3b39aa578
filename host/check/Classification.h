// What the native objects of classification say of each classifier and its terms, gathered from all
// of them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/Native.h"
#include "host/Pointer.h"
#include "models/openconfig/Classifier.h"

namespace host {

using ClassifierType = QosOc::Classifier::Type;

// A class of a policy map.
struct TermClass {
  Tokens place;
  bool hasAction;  // that sets a traffic class
  bool hasTarget;  // a traffic class that has a forwarding group
};

// The native objects that bear the name of one term.
struct TermObjects {
  bool hasClassMap = false;
  bool isMatched = false;                  // the class map has a match statement
  Rok::Ptr<Acl::AclConfig const> acls[2];  // by family
  std::vector<TermClass> classes;

  // Whether an ACL of a family has rules.
  bool hasRules(ClassifierType family) const;
};

// What makes a classifier one of a type.
struct TypeMaker {
  ClassifierType type;
  Tokens place;
};

struct ClassifierObjects {
  bool hasPlaceholder = false;
  bool hasRules[2] = {};  // by family: an ACL of a term has rules
  std::map<std::string, TermObjects, std::less<>> terms;
  // The class maps, a match statement each, in no order.
  std::vector<TypeMaker> classMaps;
  // What comes behind them, in the order of a start: ACLs with rules and policy maps.
  std::vector<TypeMaker> later;
  // The policy maps whose names have the classifier, in name order.
  std::vector<Tokens> policyMaps;

  // Whether the model has the classifier when all roots are built.
  bool isMade() const { return !later.empty() || (hasPlaceholder && !classMaps.empty()); }
};

using Classification = std::map<std::string, ClassifierObjects, std::less<>>;

Classification classificationOf(const Native& native);

}  // namespace host
