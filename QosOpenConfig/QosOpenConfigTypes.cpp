#include "QosOpenConfig/QosOpenConfigTypes.h"

#include <utility>

namespace QosOc {
namespace {

// What stands for a collection, whatever it holds: the text form serves traces and generic
// access to single values, and generic access reaches the entries one by one. So the two classes
// with a collection have no parser either.
constexpr const char* collectionStrep = "None";

template <class Map>
bool sameEntries(const Map& a, const Map& b) {
  return &a == &b || a == b;
}

// The entry under a key, or the value that a missing one reads as.
template <class Map>
typename Map::Value entryOr(const Map& map, const typename Map::Key& key,
                            const typename Map::Value& missing) {
  const typename Map::Value* found = map.find(key);
  return found != nullptr ? *found : missing;
}

// The key is a copy: the value that holds it is moved.
template <class Map>
void entryIs(Map& map, typename Map::Key key, typename Map::Value&& value) {
  const auto [node, isNew] = map.newMember(key, std::move(value));
  // A value that finds its key there hasn't been taken.
  if (!isNew) node->value() = std::move(value);
}

template <class Map>
typename Map::Value entryDel(Map& map, const typename Map::Key& key, typename Map::Value missing) {
  map.deleteMember(key, &missing);
  return missing;
}

unsigned char byteOf(SchedulerPriorityCommentInfo value) {
  return static_cast<unsigned char>(value);
}

}  // namespace

// ===== SchedulerPriorityCommentInfo

const Rok::EnumType<unsigned char>& rokEnumType(SchedulerPriorityCommentInfo) {
  static const Rok::EnumType<unsigned char> type("QosOc::SchedulerPriorityCommentInfo",
                                                 {{0, "NONE"}, {1, "STRICT"}});
  return type;
}

std::string stringValue(SchedulerPriorityCommentInfo value) {
  return rokEnumType(value).stringValue(byteOf(value));
}

std::string valueToStrep(SchedulerPriorityCommentInfo value) {
  return rokEnumType(value).valueToStrep(byteOf(value));
}

void sequenceToValue(Rok::CharRange& range, SchedulerPriorityCommentInfo& out) {
  out = Rok::Impl::fromStrep<SchedulerPriorityCommentInfo>(range);
}

SchedulerPriorityCommentInfo SchedulerPriorityCommentInfoInstance(unsigned value) {
  if (value > 255) {
    Rok::throwRangeException(
        Rok::_fmt("QosOc::SchedulerPriorityCommentInfo has no value %u", value));
  }
  return static_cast<SchedulerPriorityCommentInfo>(value);
}

SchedulerPriorityCommentInfo SchedulerPriorityCommentInfoInstance(const Rok::String& text) {
  return Rok::strepToValue<SchedulerPriorityCommentInfo>(text);
}

// ===== SchedulerInputCommentInfo

SchedulerInputCommentInfo::SchedulerInputCommentInfo(Rok::CharRange& range) {
  range.needString("Value('QosOc::SchedulerInputCommentInfo', ** {");
  range.needString("'inputId': ");
  inputId_ = Rok::deserializeAttr<Rok::String>(range, "inputId");
  range.needString(", 'q': ");
  q_ = Rok::deserializeAttr<Rok::String>(range, "q");
  range.needString(", 'weight': ");
  weight_ = Rok::deserializeAttr<std::uint64_t>(range, "weight");
  range.needString("})");
}

Rok::String valueToStrep(const SchedulerInputCommentInfo& value) {
  return Rok::_fmt(
      "Value('QosOc::SchedulerInputCommentInfo', ** {'inputId': %s, 'q': %s, 'weight': %lu})",
      Rok::valueToStrep(value.inputId()).data(), Rok::valueToStrep(value.q()).data(),
      value.weight());
}

std::ostream& operator<<(std::ostream& out, const SchedulerInputCommentInfo& value) {
  return out << valueToStrep(value);
}

// ===== OneRateTwoColorCommentInfo

OneRateTwoColorCommentInfo::OneRateTwoColorCommentInfo(Rok::CharRange& range) {
  range.needString("Value('QosOc::OneRateTwoColorCommentInfo', ** {");
  range.needString("'cir': ");
  cir_ = Rok::deserializeAttr<std::uint64_t>(range, "cir");
  range.needString(", 'cirPct': ");
  cirPct_ = Rok::deserializeAttr<std::uint8_t>(range, "cirPct");
  range.needString("})");
}

Rok::String valueToStrep(const OneRateTwoColorCommentInfo& value) {
  return Rok::_fmt("Value('QosOc::OneRateTwoColorCommentInfo', ** {'cir': %lu, 'cirPct': %u})",
                   value.cir(), unsigned{value.cirPct()});
}

std::ostream& operator<<(std::ostream& out, const OneRateTwoColorCommentInfo& value) {
  return out << valueToStrep(value);
}

// ===== SchedulerCommentInfo

SchedulerCommentInfo::SchedulerCommentInfo(Rok::CharRange& /*range*/) : SchedulerCommentInfo(0) {
  Rok::SassertHelper(Rok::falseExpr)
      << "No String constructor for SchedulerCommentInfo - has collection";
}

SchedulerInputCommentInfo SchedulerCommentInfo::inputs(const Rok::String& inputId) const {
  return entryOr(inputs_, inputId, SchedulerInputCommentInfo());
}

void SchedulerCommentInfo::inputsIs(SchedulerInputCommentInfo input) {
  entryIs(inputs_, input.inputId(), std::move(input));
}

SchedulerInputCommentInfo SchedulerCommentInfo::inputsDel(const Rok::String& inputId) {
  return entryDel(inputs_, inputId, SchedulerInputCommentInfo());
}

bool SchedulerCommentInfo::operator==(const SchedulerCommentInfo& other) const {
  return sequence_ == other.sequence_ && priority_ == other.priority_ &&
         oneRateTwoColor_ == other.oneRateTwoColor_ && sameEntries(inputs_, other.inputs_);
}

Rok::String valueToStrep(const SchedulerCommentInfo& value) {
  return Rok::_fmt(
      "Value('QosOc::SchedulerCommentInfo', ** {'sequence': %u, 'priority': %s, "
      "'oneRateTwoColor': %s, 'inputs': %s})",
      value.sequence(), valueToStrep(value.priority()).c_str(),
      valueToStrep(value.oneRateTwoColor()).data(), collectionStrep);
}

std::ostream& operator<<(std::ostream& out, const SchedulerCommentInfo& value) {
  return out << valueToStrep(value);
}

// ===== SchedulerPolicyProfileCommentInfo

SchedulerPolicyProfileCommentInfo::SchedulerPolicyProfileCommentInfo(Rok::CharRange& /*range*/)
    : SchedulerPolicyProfileCommentInfo("") {
  Rok::SassertHelper(Rok::falseExpr)
      << "No String constructor for SchedulerPolicyProfileCommentInfo - has collection";
}

SchedulerCommentInfo SchedulerPolicyProfileCommentInfo::schedulers(std::uint32_t sequence) const {
  return entryOr(schedulers_, sequence, SchedulerCommentInfo(0));
}

void SchedulerPolicyProfileCommentInfo::schedulersIs(SchedulerCommentInfo scheduler) {
  entryIs(schedulers_, scheduler.sequence(), std::move(scheduler));
}

SchedulerCommentInfo SchedulerPolicyProfileCommentInfo::schedulersDel(std::uint32_t sequence) {
  return entryDel(schedulers_, sequence, SchedulerCommentInfo(0));
}

bool SchedulerPolicyProfileCommentInfo::operator==(
    const SchedulerPolicyProfileCommentInfo& other) const {
  return name_ == other.name_ && sameEntries(schedulers_, other.schedulers_);
}

Rok::String valueToStrep(const SchedulerPolicyProfileCommentInfo& value) {
  return Rok::_fmt(
      "Value('QosOc::SchedulerPolicyProfileCommentInfo', ** {'name': %s, 'schedulers': %s})",
      Rok::valueToStrep(value.name()).data(), collectionStrep);
}

std::ostream& operator<<(std::ostream& out, const SchedulerPolicyProfileCommentInfo& value) {
  return out << valueToStrep(value);
}

// ===== SchedulerPolicyCommentInfo and QueueManagementProfileCommentInfo: bare strings

SchedulerPolicyCommentInfo::SchedulerPolicyCommentInfo(Rok::CharRange& range)
    : schedulerPolicy_(Rok::deserializeAttr<Rok::String>(range, "schedulerPolicy")) {}

Rok::String valueToStrep(const SchedulerPolicyCommentInfo& value) {
  return Rok::valueToStrep(value.schedulerPolicy());
}

std::ostream& operator<<(std::ostream& out, const SchedulerPolicyCommentInfo& value) {
  return out << valueToStrep(value);
}

QueueManagementProfileCommentInfo::QueueManagementProfileCommentInfo(Rok::CharRange& range)
    : queueManagementProfile_(Rok::deserializeAttr<Rok::String>(range, "queueManagementProfile")) {}

Rok::String valueToStrep(const QueueManagementProfileCommentInfo& value) {
  return Rok::valueToStrep(value.queueManagementProfile());
}

std::ostream& operator<<(std::ostream& out, const QueueManagementProfileCommentInfo& value) {
  return out << valueToStrep(value);
}

// ===== CommentInfo

CommentInfo::CommentInfo(Rok::CharRange& range) {
  range.needString("Value('QosOc::CommentInfo', ** {");
  range.needString("'sPInfo': ");
  sPInfo_ = Rok::deserializeAttr<SchedulerPolicyCommentInfo>(range, "sPInfo");
  range.needString(", 'qMPInfo': ");
  qMPInfo_ = Rok::deserializeAttr<QueueManagementProfileCommentInfo>(range, "qMPInfo");
  range.needString("})");
}

Rok::String valueToStrep(const CommentInfo& value) {
  return Rok::_fmt("Value('QosOc::CommentInfo', ** {'sPInfo': %s, 'qMPInfo': %s})",
                   valueToStrep(value.sPInfo()).data(), valueToStrep(value.qMPInfo()).data());
}

std::ostream& operator<<(std::ostream& out, const CommentInfo& value) {
  return out << valueToStrep(value);
}

}  // namespace QosOc
