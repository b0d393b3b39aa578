// OpenConfig classifiers and their terms: what the class-map, ACL and policy-map translators write.
#pragma once

#include <ostream>

#include "Rok/Rok.h"
#include "Velmo/Vector.h"
#include "models/openconfig/Records.h"

namespace QosOc::Classifier {

enum class Type : unsigned char { classifierTypeIpv4 = 0, classifierTypeIpv6 = 1 };
using enum Type;

QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(Type);
inline std::ostream& operator<<(std::ostream& out, Type v) { return Rok::enumPrint(out, v); }

}  // namespace QosOc::Classifier

namespace QosOc::Config {

// What a classifier is called and which family it matches. Every writer sets both.
struct ClassifierConfig {
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
  explicit TermConditionsIpConfig(Rok::Optional<unsigned char> dscp) : dscp(dscp) {}
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

struct Term : TermContent {
  using Content = TermContent;
  Rok::String id;  // the key

  Term() = default;
  explicit Term(const Rok::String& id) : id(id) {}

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
  struct KeyFunktor {
    const Rok::String& operator()(const Term& term) const { return term.id; }
  };
  using Map = Rok::HashMap2018<Rok::Hm2018NII<0xa54ff53au, Rok::String, Term, KeyFunktor>>;

  static constexpr auto entries() { return Records{&Terms::term, &Terms::termIs}; }

  const Map& term() const { return term_; }
  // A copy of the term; a default Term when there is none.
  Term term(const Rok::String& id) const {
    const Term* found = term_.find(id);
    return found != nullptr ? *found : Term();
  }
  // Inserts the term, or replaces the one with its id.
  void termIs(const Term& term) {
    const auto [node, isNew] = term_.newMember(term.id, term);
    if (!isNew) node->value() = term;
  }
  // The term of that id: as it stands, or a new one of which the id and the config's id are set.
  const Term& termMade(const Rok::String& id) {
    const auto [node, isNew] = term_.newMember(id, id);
    if (isNew) node->value().configId = id;
    return node->value();
  }
  // What a term that was found or made here holds beside its id, to be written in place.
  // Requires: the term is still there. (The map isn't const, only the view of it that readers get.)
  TermContent& termContent(const Term& term) { return const_cast<Term&>(term); }
  // Removes a term and gives it back; a default Term when there was none.
  Term termDel(const Rok::String& id) {
    Term removed;
    term_.deleteMember(id, &removed);
    return removed;
  }

 private:
  Map term_;
};

class Classifier final : public Rok::PtrInterface {
 public:
  explicit Classifier(const Rok::String& name) : name_(name) {}

  static constexpr auto attributes() {
    return std::tuple{attribute("config", &Classifier::config, &Classifier::configIs),
                      child("terms", &Classifier::terms, &Classifier::termsIs)};
  }

  const Rok::String& name() const { return name_; }

  const ClassifierConfig& config() const { return config_; }
  void configIs(const ClassifierConfig& config) { config_ = config; }
  // The same with the classifier's own name, for a writer that mostly writes what is there.
  void typeIs(QosOc::Classifier::Type type) {
    if (config_.name == name_ && config_.type == type) return;
    config_ = {name_, type};
  }

  // Null when there are none.
  const Rok::Ptr<Terms>& terms() const { return terms_; }
  const Rok::Ptr<Terms>& termsIs() {
    if (!terms_) terms_ = Rok::make<Terms>();
    return terms_;
  }
  void termsDel() { terms_ = nullptr; }

 private:
  Rok::String name_;
  ClassifierConfig config_;
  Rok::Ptr<Terms> terms_;
};

// All classifiers by name.
class ClassifiersDir final : public Rok::PtrInterface {
 public:
  using Classifiers = ObjectMap<Classifier, 0x510e527fu, &Classifier::name>;

  static constexpr auto entries() {
    return Objects{&ClassifiersDir::classifier, &ClassifiersDir::classifierIs};
  }

  const Classifiers::Map& classifier() const { return classifiers_.map(); }
  Rok::Ptr<Classifier> classifier(const Rok::String& name) const { return classifiers_.get(name); }
  Rok::Ptr<Classifier> classifierIs(const Rok::String& name) { return classifiers_.is(name); }
  // Removes the classifier with its terms.
  void classifierDel(const Rok::String& name) { classifiers_.del(name); }

 private:
  Classifiers classifiers_;
};

}  // namespace QosOc::Config
