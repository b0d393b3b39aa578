// /qos/classifiers
#include <bitset>

#include "host/Text.h"
#include "host/openconfig/Lists.h"

namespace host {
namespace {

using namespace QosOc::Config;

constexpr unsigned highestDscp = 63;

// A term's values come from native objects of different kinds that all bear its derived name.
struct TermName {
  std::string_view classifier;
  std::string_view term;

  std::string of(const char* kind) const {
    const std::string name = "__yang_[" + std::string(classifier) + "]_[" + std::string(term) + ']';
    return std::string("the ") + kind + ' ' + quoted(name);
  }
};

class FamilyLeaves {
 public:
  FamilyLeaves(Tree& tree, const TermName& name) : tree_(tree), name_(name) {}

  void write(const TermConditionsIpConfig& family) {
    if (family.dscp && fits("dscp", *family.dscp)) tree_.number("dscp", *family.dscp);
    tree_.numbers("dscp-set", dscpSet(family));
  }

 private:
  std::vector<unsigned> dscpSet(const TermConditionsIpConfig& family) {
    std::vector<unsigned> set;
    std::bitset<highestDscp + 1> seen;
    for (const unsigned dscp : family.dscpSet) {
      if (!fits("dscp-set", dscp)) continue;
      if (seen[dscp]) {
        leftOut("dscp-set", dscp, " is there twice");
        continue;
      }
      seen.set(dscp);
      set.push_back(dscp);
    }
    return set;
  }
  bool fits(const char* leaf, unsigned dscp) {
    if (dscp <= highestDscp) return true;
    leftOut(leaf, dscp, " is above 63");
    return false;
  }
  void leftOut(const char* leaf, unsigned dscp, const char* reason) {
    tree_.leftOut(leaf, std::to_string(dscp) + reason, name_.of("access list"));
  }

  Tree& tree_;
  const TermName& name_;
};

void familyJson(Tree& tree, const char* name, const TermConditionsIpConfig& family,
                const TermName& term) {
  tree.container(
      name, [&] { tree.container("config", [&] { FamilyLeaves(tree, term).write(family); }); });
}

// A blanked action and conditions without a DSCP have no leaves.
void termJson(Tree& tree, const TermName& name, const Term& term) {
  tree.container("actions", [&] {
    tree.container("config", [&] {
      if (!term.actions) return;
      tree.name("target-group", term.actions->config.targetGroup,
                [&] { return name.of("policy-map class"); });
    });
  });
  tree.container("conditions", [&] {
    if (!term.conditions) return;
    familyJson(tree, "ipv4", term.conditions->ipv4, name);
    familyJson(tree, "ipv6", term.conditions->ipv6, name);
  });
  tree.container("config", [&] { tree.word("id", name.term); });
  tree.word("id", name.term);
}

void typeJson(Tree& tree, const TermName& name, QosOc::Classifier::Type type) {
  if (const char* word = classifierTypeName(type)) return tree.word("type", word);
  tree.leftOut("type", keyText(type) + " is no type of a classifier", name.of("class map"));
}

void classifierJson(Tree& tree, std::string_view name, const Classifier& classifier) {
  tree.container("config", [&] {
    tree.word("name", name);
    if (const auto& type = classifier.config().type) typeJson(tree, {name, ""}, *type);
  });
  tree.word("name", name);
  if (!classifier.terms()) return;
  tree.list(
      "terms", "term", "id", classifier.terms()->term(),
      [&](std::string_view id) {
        return TermName{name, id}.of("class map");
      },
      [&](std::string_view id, const Term& term) {
        termJson(tree, {name, id}, term);
      });
}

}  // namespace

const char* classifierTypeName(QosOc::Classifier::Type type) {
  switch (type) {
    case QosOc::Classifier::classifierTypeIpv4:
      return "IPV4";
    case QosOc::Classifier::classifierTypeIpv6:
      return "IPV6";
  }
  return nullptr;
}

void classifiersJson(Tree& tree, const ClassifiersDir& dir) {
  tree.list(
      "classifiers", "classifier", "name", dir.classifier(),
      [](std::string_view name) {
        return TermName{name, ""}.of("class map");
      },
      [&](std::string_view name, const auto& classifier) {
        classifierJson(tree, name, *classifier);
      });
}

}  // namespace host
