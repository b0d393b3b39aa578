// The native value types that more than one record uses.
#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <ostream>

#include "Rok/Rok.h"

namespace Nerit {

// An interface's identity: its long name, such as Ethernet7/1.
class IntfId {
 public:
  IntfId() = default;
  explicit IntfId(const Rok::String& name) : name_(name) {}

  // The long name.
  const Rok::String& stringValue() const { return name_; }
  // The long name with its leading letters cut to the first two: Et7/1.
  QOS_EXPORT Rok::String shortName() const;

  std::uint32_t hash(std::uint32_t seed) const { return Rok::hashSingleAttr(seed, name_); }
  friend auto operator<=>(const IntfId&, const IntfId&) = default;
  friend std::ostream& operator<<(std::ostream& out, const IntfId& id) { return out << id.name_; }

 private:
  Rok::String name_;
};

}  // namespace Nerit

namespace Umb {

// The identity of an ACL rule. The default is the key of no rule.
class UniqueId {
 public:
  UniqueId() { doInit(); }
  UniqueId(std::uint32_t high, std::uint16_t middle, std::uint16_t low)
      : high_(high), middle_(middle), low_(low) {}

  // Sets the default: all bits.
  void doInit() {
    high_ = 0xffffffffu;
    middle_ = low_ = 0xffffu;
  }

  std::uint32_t hash(std::uint32_t seed) const {
    return Rok::hashSingleAttr(
        seed, std::uint64_t{high_} << 32 | std::uint64_t{middle_} << 16 | std::uint64_t{low_});
  }
  friend auto operator<=>(const UniqueId&, const UniqueId&) = default;
  friend std::ostream& operator<<(std::ostream& out, const UniqueId& id) {
    return out << id.high_ << "." << id.middle_ << "." << id.low_;
  }

 private:
  std::uint32_t high_;
  std::uint16_t middle_;
  std::uint16_t low_;
};

}  // namespace Umb

namespace Qos {

// A one-byte number that is not to be mistaken for another one. Every byte is legal.
template <class Form>
struct ByteValue {
  unsigned char value = Form::initial;

  constexpr ByteValue() = default;
  // Throws: RangeException with the type's text for a number that is no byte.
  template <std::integral Number>
  constexpr ByteValue(Number number) : value(static_cast<unsigned char>(number)) {
    if (!Rok::isUpTo(0xff, number)) Rok::throwRangeException(Form::text);
  }

  constexpr std::uint32_t hash(std::uint32_t seed) const {
    return Rok::hashSingleAttr(seed, value);
  }
  friend constexpr auto operator<=>(const ByteValue&, const ByteValue&) = default;
  friend std::ostream& operator<<(std::ostream& out, const ByteValue& v) {
    return out << static_cast<unsigned>(v.value);
  }
};

// The initial value and the text of the exception, of a TxQueueId.
struct TxQueueIdForm {
  static constexpr unsigned char initial = 16;
  static constexpr const char* text =
      "Qos::TxQueueId::value < Qos::TxQueueId::min or > Qos::TxQueueId::max not allowed";
};
// The same of a Percent.
struct PercentForm {
  static constexpr unsigned char initial = 101;
  static constexpr const char* text =
      "Qos::Percent::value < Qos::Percent::min or > Qos::Percent::max not allowed";
};
// The same of a TrafficClass.
struct TrafficClassForm {
  static constexpr unsigned char initial = 0;
  static constexpr const char* text =
      "Qos::TrafficClass::value < Qos::TrafficClass::min or > Qos::TrafficClass::max not allowed";
};

using TxQueueId = ByteValue<TxQueueIdForm>;  // a transmit queue; 16 means none
using Percent = ByteValue<PercentForm>;      // 0 to 100; 101 means not configured
using TrafficClass = ByteValue<TrafficClassForm>;
inline constexpr TxQueueId noTxQueue{16};
inline constexpr Percent percentNotConfigured{101};
inline constexpr unsigned percentMax = 100;

// The decimal number.
QOS_EXPORT std::string valueToStrep(const TxQueueId& id);

// A name that is not to be mistaken for another one.
template <class Tag>
struct NameValue {
  Rok::String name;

  NameValue() = default;
  NameValue(const Rok::String& n) : name(n) {}
  NameValue(const char* n) : name(n) {}

  bool empty() const { return name.empty(); }
  std::uint32_t hash(std::uint32_t seed) const { return Rok::hashSingleAttr(seed, name); }
  friend auto operator<=>(const NameValue&, const NameValue&) = default;
  friend std::ostream& operator<<(std::ostream& out, const NameValue& v) { return out << v.name; }
};

using QueueName = NameValue<struct QueueNameTag>;
using ForwardingGroupName = NameValue<struct ForwardingGroupNameTag>;

// What a transmit queue is for.
enum class QueueType : unsigned char { unicast = 0, multicast = 1 };
using enum QueueType;
QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(QueueType);
inline std::ostream& operator<<(std::ostream& out, QueueType v) { return Rok::enumPrint(out, v); }
// The enumerator's name.
QOS_EXPORT std::string stringValue(QueueType type);

// Strict, not configured, or any other setting.
enum class TxQueuePriority : unsigned char { strictPriority = 0, priorityNotConfigured = 2 };
using enum TxQueuePriority;
QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(TxQueuePriority);
inline std::ostream& operator<<(std::ostream& out, TxQueuePriority v) {
  return Rok::enumPrint(out, v);
}

// A transmit queue of one interface or of one QoS profile.
struct TxQueue {
  TxQueueId id;
  QueueType type = unicast;

  std::uint32_t hash(std::uint32_t seed) const {
    return Rok::hashSingleAttr(Rok::hashSingleAttr(seed, id), type);
  }
  // A total order for collections; nothing depends on which.
  friend auto operator<=>(const TxQueue&, const TxQueue&) = default;
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const TxQueue& queue);

}  // namespace Qos
