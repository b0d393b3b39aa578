// OpenConfig classifiers and their terms: what the class-map, ACL and policy-map translators write.
#pragma once

#include <ostream>

#include "Rok/Rok.h"
#include "Velmo/Vector.h"
#include "models/openconfig/Records.h"

namespace QosOc::Classifier {

// The address family of a classifier.
enum class Type : unsigned char { classifierTypeIpv4 = 0, classifierTypeIpv6 = 1 };
using enum Type;

QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(Type);
inline std::ostream& operator<<(std::ostream& out, Type v) { return Rok::enumPrint(out, v); }

}  // namespace QosOc::Classifier

namespace QosOc::Config {

// What a classifier is called and which family it matches. Every writer sets both.
struct ClassifierConfig {
  static constexpr RecordId record = RecordId::classifier;
  Rok::String name;
  Rok::Optional<QosOc::Classifier::Type> type;

  static constexpr auto fields() {
    return std::tuple{Field{"name", &ClassifierConfig::name},
                      Field{"type", &ClassifierConfig::type}};
  }

  bool operator==(const ClassifierConfig&) const = default;
  explicit operator bool() const { return *this != ClassifierConfig(); }
};

// The DSCPs of one family: a single one in `dscp`, several in `dscpSet`, never both.
struct TermConditionsIpConfig {
  Rok::Optional<unsigned char> dscp;
  Velmo::ByteVector dscpSet;

  TermConditionsIpConfig() = default;
  explicit TermConditionsIpConfig(Rok::Optional<unsigned char> single) : dscp(single) {}
  // A DSCP, 0 to 63, behind those that are there.
  void dscpSetPush(unsigned char value) { dscpSet.push_back(value); }

  static constexpr auto fields() {
    return std::tuple{Field{"dscp", &TermConditionsIpConfig::dscp},
                      Field{"dscpSet", &TermConditionsIpConfig::dscpSet}};
  }

  bool operator==(const TermConditionsIpConfig&) const = default;
  explicit operator bool() const { return *this != TermConditionsIpConfig(); }
};

// What a term matches. Present, with both members default, it says that the term has lost its ACL;
// absent, that no ACL has been seen yet.
struct TermConditions {
  TermConditionsIpConfig ipv4;
  TermConditionsIpConfig ipv6;

  static constexpr auto fields() {
    return std::tuple{Field{"ipv4", &TermConditions::ipv4}, Field{"ipv6", &TermConditions::ipv6}};
  }

  bool operator==(const TermConditions&) const = default;
  explicit operator bool() const { return *this != TermConditions(); }
};

// The action that is translated: the group to which a term's packets go.
struct TermActionsConfig {
  Rok::String targetGroup;  // the name of a forwarding group; empty when the action was withdrawn

  static constexpr auto fields() {
    return std::tuple{Field{"targetGroup", &TermActionsConfig::targetGroup}};
  }

  bool operator==(const TermActionsConfig&) const = default;
  explicit operator bool() const { return *this != TermActionsConfig(); }
};

// What a term does.
struct TermActions {
  TermActionsConfig config;

  static constexpr auto fields() { return Wrapped{Field{"config", &TermActions::config}}; }

  bool operator==(const TermActions&) const = default;
  explicit operator bool() const { return *this != TermActions(); }
};

// What a term holds beside its key. Its writers share it: each changes its own field in place.
struct TermContent {
  Rok::String configId;  // every writer makes it equal to `id`
  Rok::Optional<TermConditions> conditions;
  Rok::Optional<TermActions> actions;

  bool operator==(const TermContent&) const = default;
};

// One term of a classifier.
struct Term : TermContent {
  static constexpr RecordId record = RecordId::term;
  using Content = TermContent;
  Rok::String id;  // the key

  Term() = default;
  explicit Term(const Rok::String& key) : id(key) {}

  static constexpr auto fields() {
    return std::tuple{KeyField{"id", &Term::id}, Field{"configId", &Term::configId},
                      Field{"conditions", &Term::conditions}, Field{"actions", &Term::actions}};
  }

  bool operator==(const Term&) const = default;
  // False for the default term, which stands for a missing one.
  explicit operator bool() const { return *this != Term(); }
};

// The terms of one classifier.
class Terms final : public Rok::PtrInterface {
 public:
  using Members = RecordMap<Term, 0xa54ff53au, &Term::id>;
  using Map = Members::Map;

  static constexpr auto entries() { return Records{&Terms::term, &Terms::termIs, &Terms::termDel}; }

  const Map& term() const { return terms_.map(); }
  // A copy of the term; a default Term when there is none.
  Term term(const Rok::String& id) const { return terms_.get(id); }
  // Inserts the term, or replaces the one with its id.
  void termIs(const Term& term) { terms_.is(term); }
  // The term of that id: as it stands, or a new one of which the id and the config's id are set.
  const Term& termMade(const Rok::String& id) {
    return terms_.made(id, [&](TermContent& added) { added.configId = id; });
  }
  // What a term that was found or made here holds beside its id, to be written in place.
  // Requires: the term is still there.
  TermContent& termContent(const Term& found) { return terms_.content(found); }
  // Removes a term and gives it back; a default Term when there was none.
  Term termDel(const Rok::String& id) {
    Term removed;
    terms_.del(id, &removed);
    return removed;
  }

  void markerIs(const Marker& marker) { terms_.markerIs(marker); }

 private:
  Members terms_;
};

class Classifier final : public Rok::PtrInterface {
 public:
  static constexpr RecordId record = ClassifierConfig::record;

  explicit Classifier(const Rok::String& name) : name_(name) {}

  static constexpr auto attributes() {
    return std::tuple{attribute("config", &Classifier::config, &Classifier::configIs),
                      child("terms", &Classifier::terms, &Classifier::termsIs)};
  }

  const Rok::String& name() const { return name_; }

  const ClassifierConfig& config() const { return config_.get(); }
  void configIs(const ClassifierConfig& config) { config_.is(marker_, config); }
  // The same with the classifier's own name, for a writer that mostly writes what is there.
  void typeIs(QosOc::Classifier::Type type) {
    if (config().name == name_ && config().type == type) return;
    config_.is(marker_, {name_, type});
  }

  // Null when there are none.
  const Rok::Ptr<Terms>& terms() const { return terms_; }
  const Rok::Ptr<Terms>& termsIs() {
    if (!terms_) made(terms_, marker_);
    return terms_;
  }
  void termsDel() { removed(terms_, marker_, record); }

  void markerIs(const Marker& marker) {
    marker_ = marker;
    if (terms_) terms_->markerIs(marker);
  }

 private:
  Rok::String name_;
  Recorded<ClassifierConfig> config_;
  Rok::Ptr<Terms> terms_;
  Marker marker_;
};

// All classifiers by name.
class ClassifiersDir final : public Rok::PtrInterface {
 public:
  using Classifiers = ObjectMap<Classifier, 0x510e527fu, &Classifier::name>;

  static constexpr auto entries() {
    return Objects{&ClassifiersDir::classifier, &ClassifiersDir::classifierIs,
                   &ClassifiersDir::classifierDel};
  }

  const Classifiers::Map& classifier() const { return classifiers_.map(); }
  Rok::Ptr<Classifier> classifier(const Rok::String& name) const { return classifiers_.get(name); }
  Rok::Ptr<Classifier> classifierIs(const Rok::String& name) { return classifiers_.is(name); }
  // Removes the classifier with its terms.
  void classifierDel(const Rok::String& name) { classifiers_.del(name); }

  void journalIs(Journal* journal) { classifiers_.markerIs(Marker(journal)); }

 private:
  Classifiers classifiers_;
};

}  // namespace QosOc::Config
