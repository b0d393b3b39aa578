#include "tests/days/check/Case.h"

#include <algorithm>
#include <set>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "host/Text.h"

namespace days {
namespace {

// A leaf that holds the name of an entry elsewhere.
struct ReferenceLeaf {
  std::string_view under;  // the beginning of its path
  std::string_view end;
  std::string_view list;  // of the entries
};
constexpr ReferenceLeaf referenceLeaves[] = {
    {"/qos/interfaces/", "/output/scheduler-policy/config/name",
     "/qos/scheduler-policies/scheduler-policy"},
    {"/qos/interfaces/", "/config/queue-management-profile",
     "/qos/queue-management-profiles/queue-management-profile"},
    {"/qos/interfaces/", "[type=IPV4]/config/name", "/qos/classifiers/classifier"},
    {"/qos/interfaces/", "[type=IPV6]/config/name", "/qos/classifiers/classifier"},
    {"/qos/scheduler-policies/", "/config/queue", "/qos/queues/queue"},
    {"/qos/classifiers/", "/config/target-group", "/qos/forwarding-groups/forwarding-group"},
    {"/qos/forwarding-groups/", "/config/output-queue", "/qos/queues/queue"}};

std::string unquoted(const std::string& json) { return json.substr(1, json.size() - 2); }

}  // namespace

std::string entryPath(std::string_view list, std::string_view key, std::string_view value) {
  return std::string(list) + '[' + std::string(key) + '=' + std::string(value) + ']';
}
std::string classifierPath(std::string_view name) {
  return entryPath("/qos/classifiers/classifier", "name", name);
}
std::string interfacePath(std::string_view name) {
  return entryPath("/qos/interfaces/interface", "interface-id", name);
}

std::string classifierOf(const std::string& className) {
  const Rok::String name(className);
  const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(name);
  const Rok::String found =
      classifier.empty() ? QosOc::classifierNameFromClassName(name) : classifier;
  return std::string(std::string_view(found));
}
bool isAboutLeaf(const host::Finding& finding, const std::string& path) {
  const host::Tokens& place = finding.place;
  if (finding.kind != "order") return false;
  if (place[0] == "interfaces")
    return path.starts_with(interfacePath(place[1]) + "/output/scheduler-policy");
  if (place[0] == "service-policies")
    return path.starts_with(interfacePath(place.back()) + "/input/");
  if (place[0] == "class-maps")
    return path == classifierPath(classifierOf(place[2])) + "/config/type";
  if (place[0] == "qos-profiles") {
    const Rok::String profile = decodeQMPProfileName(Rok::String(place[1]));
    return path.starts_with(
        entryPath("/qos/queue-management-profiles/queue-management-profile", "name", profile));
  }
  if (place[0] != "comments" || !path.starts_with("/qos/interfaces/")) return false;
  const std::size_t begin = path.find("/output/queues/queue[name=");
  if (begin == path.npos) return false;
  const std::size_t name = path.find('=', begin) + 1;
  return finding.text.find(host::quoted(path.substr(name, path.find(']', name) - name))) !=
         std::string::npos;
}

Case::Case(const Document& document)
    : document_(document),
      findings_(host::findingsOf(mounted(document.text(), 0))),
      outcomes_(document.text()) {}

const Outcomes& Case::outcomesWithout(const host::Tokens& place) const {
  const auto found = without_.find(place);
  if (found != without_.end()) return found->second;
  return without_.emplace(place, Outcomes(document_.without(place).text())).first->second;
}

bool Case::isSame(const Document& other, const Select& select) const {
  return isSame(Outcomes(other.text()), select);
}

bool Case::isSameWithout(const host::Tokens& place, const Select& select) const {
  return isSame(outcomesWithout(place), select);
}

bool Case::isSame(const Outcomes& other, const Select& select) const {
  const auto isSettled = [&](const std::string& path) {
    if (select && !select(path)) return false;
    return std::none_of(findings_.begin(), findings_.end(),
                        [&](const host::Finding& finding) { return isAboutLeaf(finding, path); });
  };
  return outcomes_.differences(other, isSettled).empty();
}

bool Case::hasLeaf(const Select& select) const {
  return std::any_of(outcomes_.values().begin(), outcomes_.values().end(),
                     [&](const auto& leaf) { return select(leaf.first); });
}

bool Case::hasFindingOf(std::string_view kind) const {
  return std::any_of(findings_.begin(), findings_.end(),
                     [&](const host::Finding& finding) { return finding.kind == kind; });
}

std::vector<Reference> danglingReferences(const LeafMap& leaves) {
  std::vector<Reference> dangling;
  for (const auto& [path, value] : leaves) {
    for (const auto& [under, end, list] : referenceLeaves) {
      if (!path.starts_with(under) || !path.ends_with(end)) continue;
      const std::string name = unquoted(value);
      if (leaves.contains(entryPath(list, "name", name) + "/name")) continue;
      dangling.push_back({path, name});
    }
  }
  return dangling;
}

}  // namespace days
