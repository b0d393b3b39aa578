// What the translators of classification share: the names that lead to a classifier and its term,
// and the way to both in the output.
#pragma once

#include <cstdint>
#include <utility>

#include "Rok/Rok.h"
#include "models/native/QosInput.h"
#include "models/openconfig/Classifier.h"

namespace QosOc {

// ===== Names

// The classifier in the name of a placeholder class map, `__yang_[C]_[]`. Empty for any other name.
QOS_EXPORT Velmo::String classifierNameFromClassName(const Velmo::String& className);

// The classifier and the term in a name `__yang_[C]_[T]`. Two empty names for any other name.
QOS_EXPORT std::pair<Velmo::String, Velmo::String> classifierKeyFromConfigObjName(
    const Velmo::String& name);

// The IPv4 and the IPv6 classifier in the name of a policy map, `__yang_[IPV4__A][IPV6__B]`, each
// of them optional. Two empty names for any other name, and for the bare `__yang_`.
QOS_EXPORT std::pair<Velmo::String, Velmo::String> classifiersFromPmapName(
    const Velmo::String& pmapName);

// The forwarding group that serves a traffic class: the first in name order, empty when there is
// none. Requires: map.
QOS_EXPORT Velmo::String targetGroupFromTc(
    std::uint32_t tc, const Rok::Ptr<Qos::ForwardingGroupNameToTcMap const>& map);

// ===== Terms

// The way of a state machine to the term that it writes, by the names of the classifier and of the
// term: both empty for a machine that writes nothing, the term alone empty for one that writes the
// classifier alone. An event that changes one term looks up nothing, as long as no classifier and
// no term of this one comes or goes.
class QOS_EXPORT TermPath {
 public:
  TermPath() = default;
  TermPath(const Velmo::String& classifierName, const Velmo::String& termId)
      : classifierName_(classifierName), termId_(termId) {}

  const Velmo::String& classifierName() const { return classifierName_; }
  const Velmo::String& termId() const { return termId_; }
  // Whether it leads to a term.
  bool isTerm() const { return !termId_.empty(); }

  // The classifier, a new one if there is none.
  Config::Classifier& classifierIs(Config::ClassifiersDir& dir);
  // What the term of a classifier that was just got here holds: as it stands, or that of a new one.
  Config::TermContent& termIs(Config::Classifier& classifier);
  // The term, or null where it or its classifier is missing.
  const Config::Term* term(const Config::ClassifiersDir& dir);
  // What the term holds, if it is there; null otherwise.
  Config::TermContent* content(const Config::ClassifiersDir& dir);
  // Removes the term, and with the last one all that the classifier has of terms. Returns false
  // where the classifier has none to begin with.
  bool termDel(const Config::ClassifiersDir& dir);

 private:
  Config::Classifier* classifier(const Config::ClassifiersDir& dir);

  Velmo::String classifierName_;
  Velmo::String termId_;
  Rok::Found foundClassifier_;
  Rok::Found foundTerm_;
};

}  // namespace QosOc
