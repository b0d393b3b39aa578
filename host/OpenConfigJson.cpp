#include "host/OpenConfigJson.h"

#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

#include "host/Sorted.h"
#include "host/Text.h"

namespace host {
namespace {

using namespace QosOc::Config;

constexpr unsigned highestDscp = 63;

// Characters that Unicode keeps for a program's inner use: the last two of each plane, and 32 more.
bool isNoncharacter(char32_t c) { return (c & 0xfffe) == 0xfffe || (c >= 0xfdd0 && c <= 0xfdef); }

// What a YANG string may hold: neither noncharacters nor most control characters.
bool isYangString(std::string_view text) {
  while (!text.empty()) {
    const std::optional<char32_t> c = takeCharacter(text);
    if (!c || isNoncharacter(*c)) return false;
    if (*c < 0x20 && *c != '\t' && *c != '\n' && *c != '\r') return false;
  }
  return true;
}

// A node of the tree: its path, and the native object that its values come from.
struct Node {
  std::string path;
  std::string native;
};

std::string predicate(std::string_view key, std::string_view value) {
  const char* quote = value.find('\'') == std::string_view::npos ? "'" : "\"";
  return '[' + std::string(key) + '=' + quote + shown(value) + quote + ']';
}

// Writes one text. Values are judged before anything is written, so that a container that would be
// empty is never begun.
class Writer {
 public:
  Writer(Layout layout, const OpenConfigJson::Warn& leftOut) : out_(layout), leftOut_(leftOut) {}

  std::string tree(const Model& model);

 private:
  // The values of a family that the leaves can hold.
  struct Family {
    std::optional<unsigned> dscp;
    std::vector<unsigned> dscpSet;
    bool empty() const { return !dscp && dscpSet.empty(); }
  };

  void classifiers(const ClassifiersDir& dir);
  void classifier(std::string_view name, const Classifier& classifier);
  std::vector<std::pair<std::string_view, const Term*>> termsOf(std::string_view classifierName,
                                                                const Classifier& classifier);
  void term(std::string_view classifierName, std::string_view id, const Term& term);
  void actions(std::string_view targetGroup);
  void conditions(const Family& ipv4, const Family& ipv6);
  void family(std::string_view name, const Family& family);

  void classifierType(std::string_view name, QosOc::Classifier::Type type);
  std::string_view targetGroupOf(std::string_view classifierName, const Term& term);
  Family familyOf(const TermConditionsIpConfig& config, std::string_view name, const Node& term);

  void beginContainer(std::string_view name) {
    out_.key(name);
    out_.beginObject();
  }
  void leaf(std::string_view name, std::string_view text) {
    out_.key(name);
    out_.text(text);
  }
  void leftOut(const Node& node, std::string_view below, const std::string& reason) {
    leftOut_(node.path + std::string(below) + ": " + reason + ": left out (from " + node.native +
             ')');
  }

  JsonWriter out_;
  const OpenConfigJson::Warn& leftOut_;
};

Node classifierNode(std::string_view name) {
  return {"/openconfig-qos:qos/classifiers/classifier" + predicate("name", name),
          "the class map " + quoted("__yang_[" + std::string(name) + "]_[]")};
}

// A term's values come from native objects of different kinds that all bear its derived name.
Node termNode(std::string_view classifierName, std::string_view id, const char* kind) {
  const std::string name = "__yang_[" + std::string(classifierName) + "]_[" + std::string(id) + ']';
  return {classifierNode(classifierName).path + "/terms/term" + predicate("id", id),
          std::string("the ") + kind + (' ' + quoted(name))};
}

std::string Writer::tree(const Model& model) {
  out_.beginObject();
  beginContainer("openconfig-qos:qos");
  classifiers(*model.classifiers);
  out_.endObject();
  out_.endObject();
  return out_.take();
}

void Writer::classifiers(const ClassifiersDir& dir) {
  bool begun = false;
  for (const auto& [name, entry] : sorted(dir.classifier())) {
    if (name.empty()) continue;
    if (!isYangString(name)) {
      leftOut(classifierNode(name), "", "a name that YANG strings can't hold");
      continue;
    }
    if (!begun) {
      beginContainer("classifiers");
      out_.key("classifier");
      out_.beginArray();
      begun = true;
    }
    classifier(name, **entry);
  }
  if (!begun) return;
  out_.endArray();
  out_.endObject();
}

void Writer::classifier(std::string_view name, const Classifier& classifier) {
  out_.beginObject();
  beginContainer("config");
  leaf("name", name);
  if (const auto& type = classifier.config().type) classifierType(name, *type);
  out_.endObject();
  leaf("name", name);
  if (const auto terms = termsOf(name, classifier); !terms.empty()) {
    beginContainer("terms");
    out_.key("term");
    out_.beginArray();
    for (const auto& [id, entry] : terms) term(name, id, *entry);
    out_.endArray();
    out_.endObject();
  }
  out_.endObject();
}

void Writer::classifierType(std::string_view name, QosOc::Classifier::Type type) {
  switch (type) {
    case QosOc::Classifier::classifierTypeIpv4:
      return leaf("type", "IPV4");
    case QosOc::Classifier::classifierTypeIpv6:
      return leaf("type", "IPV6");
  }
  leftOut(classifierNode(name), "/config/type",
          std::to_string(static_cast<unsigned>(type)) + " is no type of a classifier");
}

std::vector<std::pair<std::string_view, const Term*>> Writer::termsOf(
    std::string_view classifierName, const Classifier& classifier) {
  if (!classifier.terms()) return {};
  auto terms = sorted(classifier.terms()->term());
  std::erase_if(terms, [&](const auto& entry) {
    const std::string_view id = entry.first;
    if (id.empty()) return true;
    if (isYangString(id)) return false;
    leftOut(termNode(classifierName, id, "class map"), "", "an id that YANG strings can't hold");
    return true;
  });
  return terms;
}

void Writer::term(std::string_view classifierName, std::string_view id, const Term& term) {
  const std::string_view targetGroup = targetGroupOf(classifierName, term);
  Family ipv4;
  Family ipv6;
  if (term.conditions && *term.conditions) {
    const Node node = termNode(classifierName, id, "access list");
    ipv4 = familyOf(term.conditions->ipv4, "ipv4", node);
    ipv6 = familyOf(term.conditions->ipv6, "ipv6", node);
  }
  out_.beginObject();
  actions(targetGroup);
  conditions(ipv4, ipv6);
  beginContainer("config");
  leaf("id", id);
  out_.endObject();
  leaf("id", id);
  out_.endObject();
}

void Writer::actions(std::string_view targetGroup) {
  if (targetGroup.empty()) return;
  beginContainer("actions");
  beginContainer("config");
  leaf("target-group", targetGroup);
  out_.endObject();
  out_.endObject();
}

void Writer::conditions(const Family& ipv4, const Family& ipv6) {
  if (ipv4.empty() && ipv6.empty()) return;
  beginContainer("conditions");
  family("ipv4", ipv4);
  family("ipv6", ipv6);
  out_.endObject();
}

void Writer::family(std::string_view name, const Family& family) {
  if (family.empty()) return;
  beginContainer(name);
  beginContainer("config");
  if (family.dscp) {
    out_.key("dscp");
    out_.number(*family.dscp);
  }
  if (!family.dscpSet.empty()) {
    out_.key("dscp-set");
    out_.beginArray();
    for (const unsigned dscp : family.dscpSet) out_.number(dscp);
    out_.endArray();
  }
  out_.endObject();
  out_.endObject();
}

// Empty when there is none to write. A blanked action is this system's own bookkeeping.
std::string_view Writer::targetGroupOf(std::string_view classifierName, const Term& term) {
  if (!term.actions) return {};
  const std::string_view group = term.actions->config.targetGroup;
  if (isYangString(group)) return group;
  leftOut(termNode(classifierName, term.id, "policy-map class"), "/actions/config/target-group",
          quoted(group) + " is a name that YANG strings can't hold");
  return {};
}

Writer::Family Writer::familyOf(const TermConditionsIpConfig& config, std::string_view name,
                                const Node& term) {
  const std::string below = "/conditions/" + std::string(name) + "/config/";
  const auto fits = [&](unsigned dscp, const char* leaf) {
    if (dscp <= highestDscp) return true;
    leftOut(term, below + leaf, std::to_string(dscp) + " is above 63");
    return false;
  };
  Family family;
  if (config.dscp && fits(*config.dscp, "dscp")) family.dscp = *config.dscp;
  std::bitset<highestDscp + 1> seen;
  for (const unsigned dscp : config.dscpSet) {
    if (!fits(dscp, "dscp-set")) continue;
    if (seen[dscp]) {
      leftOut(term, below + "dscp-set", std::to_string(dscp) + " is there twice");
      continue;
    }
    seen.set(dscp);
    family.dscpSet.push_back(dscp);
  }
  return family;
}

}  // namespace

std::string OpenConfigJson::json(const Model& model, Layout layout) {
  const Warn warnOnce = [this](const std::string& warning) {
    if (warned_.insert(warning).second) warn_(warning);
  };
  return Writer(layout, warnOnce).tree(model);
}

}  // namespace host
