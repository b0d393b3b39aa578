// Names and terms. The machines are in the files of class maps, ACLs and policy maps.
#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"

#include <string_view>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmUnit.h"
#include "QosOpenConfig/QosOpenConfigHelperNames.h"

namespace QosOc {
namespace {

// The forms are those of the expressions "^__yang_\[([^\]]+)\]_\[\]$" and
// "^__yang_\[([^\]]+)\]_\[([^\]]+)\]$". A name inside brackets is any bytes but "]", and at least
// one: a "[" or a line terminator inside is accepted.

constexpr std::string_view prefix = "__yang_[";
constexpr std::string_view middle = "]_[";
constexpr std::string_view suffix = "]";

// The two texts inside the brackets; the second may be empty, and a name of another form gives two
// empty ones.
struct InBrackets {
  std::string_view classifier;
  std::string_view term;
};

InBrackets inBrackets(std::string_view name) {
  if (!name.starts_with(prefix)) return {};
  name.remove_prefix(prefix.size());
  const std::size_t end = name.find(']');
  if (end == 0 || end == std::string_view::npos) return {};
  const std::string_view rest = name.substr(end);
  if (!rest.starts_with(middle)) return {};
  const std::string_view term = rest.substr(middle.size());
  if (term.empty() || term.find(']') != term.size() - 1) return {};
  return {name.substr(0, end), term.substr(0, term.size() - suffix.size())};
}

}  // namespace

constinit Rok::TraceHandle ClassifierUnit::traceHandle("OpenConfigQos", false);

// ===== Names

Velmo::String ClassifierUnit::configObjName(std::string_view classifier, std::string_view term) {
  Velmo::String name(prefix);
  return name.append(classifier).append(middle).append(term).append(suffix);
}

TermPath ClassifierUnit::pathOf(std::string_view name) {
  const InBrackets found = inBrackets(name);
  return {found.classifier, found.term};
}

// The operand of an action is wider than a traffic class: what exceeds a byte has no name.
const Qos::ForwardingGroupName* ClassifierUnit::firstGroupName(
    std::uint32_t tc, const Qos::ForwardingGroupNameToTcMap& map) {
  return tc <= 0xff ? map.firstName(tc) : nullptr;
}

Velmo::String classifierNameFromClassName(const Velmo::String& className) {
  Rok::traceCall(ClassifierUnit::handler, " ( ", className);
  const InBrackets found = inBrackets(className);
  return found.term.empty() ? found.classifier : std::string_view();
}

std::pair<Velmo::String, Velmo::String> classifierKeyFromConfigObjName(const Velmo::String& name) {
  Rok::traceCall(ClassifierUnit::handler, " ( ", name);
  const InBrackets found = inBrackets(name);
  if (found.term.empty()) return {};
  return {found.classifier, found.term};
}

std::pair<Velmo::String, Velmo::String> classifiersFromPmapName(const Velmo::String& pmapName) {
  Rok::traceCall(ClassifierUnit::handler, ", pmapName = ", pmapName);
  const auto found = Helper::pmapClassifiers(pmapName);
  if (!found) return {};
  return {found->ipv4, found->ipv6};
}

Velmo::String targetGroupFromTc(std::uint32_t tc,
                                const Rok::Ptr<Qos::ForwardingGroupNameToTcMap const>& map) {
  Rok::traceCall(ClassifierUnit::handler, ", tc = ", tc);
  const Qos::ForwardingGroupName* name = ClassifierUnit::firstGroupName(tc, *map);
  return name != nullptr ? name->name : Velmo::String();
}

// ===== Terms

Config::Classifier& TermPath::classifierIs(Config::ClassifiersDir& dir) {
  if (Config::Classifier* found = classifier(dir)) return *found;
  return *dir.classifierIs(classifierName_);
}

Config::Classifier* TermPath::classifier(const Config::ClassifiersDir& dir) {
  const auto* found = foundClassifier_.in(dir.classifier(), classifierName_);
  return found != nullptr ? found->get() : nullptr;
}

Config::TermContent& TermPath::termIs(Config::Classifier& classifier) {
  Config::Terms& terms = *classifier.termsIs();
  const Config::Term* found = foundTerm_.in(terms.term(), termId_);
  if (found == nullptr) {
    found = &terms.termMade(termId_);
    foundTerm_.is(terms.term(), found);
  }
  return terms.termContent(*found);
}

const Config::Term* TermPath::term(const Config::ClassifiersDir& dir) {
  const Config::Classifier* found = classifier(dir);
  if (found == nullptr || !found->terms()) return nullptr;
  return foundTerm_.in(found->terms()->term(), termId_);
}

Config::TermContent* TermPath::content(const Config::ClassifiersDir& dir) {
  const Config::Term* found = term(dir);
  return found != nullptr ? &classifier(dir)->terms()->termContent(*found) : nullptr;
}

bool TermPath::termDel(const Config::ClassifiersDir& dir) {
  Config::Classifier* found = classifier(dir);
  if (found == nullptr || !found->terms()) return false;
  Config::Terms& terms = *found->terms();
  terms.termDel(termId_);
  if (terms.term().members() == 0) found->termsDel();
  return true;
}

}  // namespace QosOc
