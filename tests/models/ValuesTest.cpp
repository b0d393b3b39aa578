// The native value types: identities, numbers and names.
#include "models/native/Values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/Refusals.h"

namespace valuesTest {
namespace {

template <class T>
std::string printed(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

// ===== Interfaces

TEST(IntfId, IsItsLongName) {
  const Nerit::IntfId id("Ethernet7/1");
  EXPECT_EQ(id.stringValue(), "Ethernet7/1");
  EXPECT_EQ(printed(id), "Ethernet7/1");
  EXPECT_EQ(id, Nerit::IntfId("Ethernet7/1"));
  EXPECT_NE(id, Nerit::IntfId("Ethernet7"));
  EXPECT_LT(Nerit::IntfId("Ethernet1"), Nerit::IntfId("Ethernet2"));
  EXPECT_EQ(Nerit::IntfId().stringValue(), "");
}

TEST(IntfId, TheShortNameKeepsTwoOfTheLeadingLettersAndAllThatFollows) {
  const auto shortName = [](const char* name) {
    return std::string(std::string_view(Nerit::IntfId(name).shortName()));
  };
  EXPECT_EQ(shortName("Ethernet7/1"), "Et7/1");
  EXPECT_EQ(shortName("Port-Channel12"), "Po-Channel12");
  EXPECT_EQ(shortName("Et3"), "Et3");
  EXPECT_EQ(shortName("p7"), "p7");
  EXPECT_EQ(shortName("Eth"), "Et");
  EXPECT_EQ(shortName("7abc"), "7abc");
  EXPECT_EQ(shortName(""), "");
}

TEST(IntfId, EqualIdsHashAlikeAndTheSeedMatters) {
  EXPECT_EQ(Nerit::IntfId("Ethernet1").hash(5), Nerit::IntfId("Ethernet1").hash(5));
  EXPECT_NE(Nerit::IntfId("Ethernet1").hash(5), Nerit::IntfId("Ethernet2").hash(5));
  EXPECT_NE(Nerit::IntfId("Ethernet1").hash(5), Nerit::IntfId("Ethernet1").hash(6));
}

// ===== Identities of rules

TEST(UniqueId, TheDefaultIsAllBitsAndDoInitRestoresIt) {
  EXPECT_EQ(Umb::UniqueId(), Umb::UniqueId(0xffffffffu, 0xffff, 0xffff));
  Umb::UniqueId id(1, 2, 3);
  EXPECT_NE(id, Umb::UniqueId());
  id.doInit();
  EXPECT_EQ(id, Umb::UniqueId());
}

TEST(UniqueId, EachPartCountsForEqualityHashAndOrder) {
  const Umb::UniqueId id(1, 2, 3);
  EXPECT_EQ(id, Umb::UniqueId(1, 2, 3));
  EXPECT_EQ(id.hash(7), Umb::UniqueId(1, 2, 3).hash(7));
  for (const Umb::UniqueId& other :
       {Umb::UniqueId(2, 2, 3), Umb::UniqueId(1, 3, 3), Umb::UniqueId(1, 2, 4)}) {
    EXPECT_NE(id, other);
    EXPECT_NE(id.hash(7), other.hash(7));
    EXPECT_LT(id, other);
  }
  EXPECT_NE(Umb::UniqueId(1, 2, 3).hash(7), Umb::UniqueId(1, 3, 2).hash(7));
  EXPECT_NE(id.hash(7), id.hash(8));
  EXPECT_EQ(printed(id), "1.2.3");
}

// ===== Numbers and names

TEST(ByteValue, DefaultsSayThatNothingIsThere) {
  EXPECT_EQ(Qos::TxQueueId(), Qos::noTxQueue);
  EXPECT_EQ(Qos::TxQueueId().value, 16);
  EXPECT_EQ(Qos::Percent(), Qos::percentNotConfigured);
  EXPECT_EQ(Qos::Percent().value, 101);
  EXPECT_EQ(Qos::percentMax, 100u);
  EXPECT_EQ(sizeof(Qos::TxQueueId) + sizeof(Qos::Percent) + sizeof(Qos::TrafficClass), 3u);
}

TEST(ByteValue, PrintsAsANumberAndComparesByIt) {
  EXPECT_EQ(printed(Qos::TxQueueId(65)), "65");
  EXPECT_EQ(printed(Qos::Percent(7)), "7");
  EXPECT_EQ(printed(Qos::TrafficClass(0)), "0");
  EXPECT_LT(Qos::TrafficClass(2), Qos::TrafficClass(200));
  EXPECT_EQ(Qos::TxQueueId(3).hash(1), Qos::TxQueueId(3).hash(1));
  EXPECT_NE(Qos::TxQueueId(3).hash(1), Qos::TxQueueId(4).hash(1));
}

template <class Number>
class ByteNumber : public testing::Test {};
struct TxQueueIds {
  using Number = Qos::TxQueueId;
  static constexpr const char* text =
      "Qos::TxQueueId::value < Qos::TxQueueId::min or > Qos::TxQueueId::max not allowed";
};
struct Percents {
  using Number = Qos::Percent;
  static constexpr const char* text =
      "Qos::Percent::value < Qos::Percent::min or > Qos::Percent::max not allowed";
};
struct TrafficClasses {
  using Number = Qos::TrafficClass;
  static constexpr const char* text =
      "Qos::TrafficClass::value < Qos::TrafficClass::min or > Qos::TrafficClass::max not allowed";
};
using ByteNumbers = testing::Types<TxQueueIds, Percents, TrafficClasses>;
TYPED_TEST_SUITE(ByteNumber, ByteNumbers);

TYPED_TEST(ByteNumber, TakesEveryByteInWhateverTypeItComes) {
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(typename TypeParam::Number(byte).value, byte);
    EXPECT_EQ(typename TypeParam::Number(static_cast<unsigned char>(byte)).value, byte);
    EXPECT_EQ(typename TypeParam::Number(static_cast<std::uint64_t>(byte)).value, byte);
  }
}

TYPED_TEST(ByteNumber, RefusesWhatIsNoByteByItsText) {
  for (const auto number : {256ll, 272ll, 0x100000000ll, -1ll, -240ll}) {
    EXPECT_EQ(support::outOfRange([&] { typename TypeParam::Number{number}; }), TypeParam::text);
  }
  EXPECT_EQ(support::outOfRange([] { typename TypeParam::Number{~0ull}; }), TypeParam::text);
}

// One kind of number is not to pass for another, nor one kind of name.
static_assert(!std::is_convertible_v<Qos::TxQueueId, Qos::TrafficClass>);
static_assert(!std::is_convertible_v<Qos::QueueName, Qos::ForwardingGroupName>);

TEST(NameValue, IsItsText) {
  const Qos::QueueName name("high");
  EXPECT_EQ(name.name, "high");
  EXPECT_FALSE(name.empty());
  EXPECT_TRUE(Qos::QueueName().empty());
  EXPECT_EQ(name, Qos::QueueName(Rok::String("high")));
  EXPECT_EQ(name.hash(3), Qos::QueueName("high").hash(3));
  EXPECT_NE(name.hash(3), Qos::QueueName("low").hash(3));
  EXPECT_EQ(printed(name), "high");
  EXPECT_EQ(printed(Qos::ForwardingGroupName("bulk")), "bulk");
}

TEST(NameValue, OrdersByUnsignedBytes) {
  std::vector<Qos::ForwardingGroupName> names = {"b", "\xc3\xa4", "a", "B", "", "ab"};
  std::ranges::sort(names);
  EXPECT_THAT(names,
              testing::ElementsAre(Qos::ForwardingGroupName(""), "B", "a", "ab", "b", "\xc3\xa4"));
}

TEST(TxQueueId, TheTextOfAnIdIsItsDecimalNumber) {
  EXPECT_EQ(Qos::valueToStrep(Qos::TxQueueId(0)), "0");
  EXPECT_EQ(Qos::valueToStrep(Qos::TxQueueId(16)), "16");
  EXPECT_EQ(Qos::valueToStrep(Qos::TxQueueId(255)), "255");
}

TEST(QueueType, HasTheNativeValuesAndTheirNames) {
  EXPECT_EQ(static_cast<int>(Qos::unicast), 0);
  EXPECT_EQ(static_cast<int>(Qos::multicast), 1);
  EXPECT_EQ(Qos::stringValue(Qos::unicast), "unicast");
  EXPECT_EQ(Qos::stringValue(Qos::multicast), "multicast");
  EXPECT_EQ(Qos::stringValue(Qos::QueueType{5}), "5");
  EXPECT_EQ(printed(Qos::multicast), "multicast");
}

TEST(TxQueuePriority, ZeroIsStrictAndTwoIsNotConfigured) {
  EXPECT_EQ(static_cast<int>(Qos::strictPriority), 0);
  EXPECT_EQ(static_cast<int>(Qos::priorityNotConfigured), 2);
  EXPECT_EQ(printed(Qos::strictPriority), "strictPriority");
  EXPECT_EQ(printed(Qos::priorityNotConfigured), "priorityNotConfigured");
  EXPECT_EQ(printed(Qos::TxQueuePriority{1}), "1") << "any other setting";
  EXPECT_EQ(sizeof(Qos::TxQueuePriority) + sizeof(Qos::QueueType), 2u);
}

// ===== Tx queues

TEST(TxQueue, TheDefaultIsNoUnicastQueue) {
  EXPECT_EQ(Qos::TxQueue().id.value, 16);
  EXPECT_EQ(Qos::TxQueue().type, Qos::unicast);
}

TEST(TxQueue, EqualIdsOfDifferentTypesAreDifferentKeys) {
  const Qos::TxQueue one{3, Qos::unicast};
  const Qos::TxQueue other{3, Qos::multicast};
  EXPECT_NE(one, other);
  EXPECT_NE(one.hash(9), other.hash(9));
  Rok::HashMap2018<Rok::Hm2018NEI<0x77u, Qos::TxQueue, int>> map;
  map.newMember(one, 1);
  map.newMember(other, 2);
  EXPECT_EQ(map.members(), 2u);
  EXPECT_EQ(*map.find(one), 1);
  EXPECT_EQ(*map.find(other), 2);
}

TEST(TxQueue, OrderIsTotalAndAgreesWithEquality) {
  std::vector<Qos::TxQueue> all;
  for (unsigned char id = 0; id < 18; ++id) {
    all.push_back({id, Qos::unicast});
    all.push_back({id, Qos::multicast});
  }
  for (const auto& a : all) {
    for (const auto& b : all) {
      EXPECT_EQ((a < b) + (b < a) + (a == b), 1);
      if (a == b) {
        EXPECT_EQ(a.hash(1), b.hash(1));
      }
    }
  }
  EXPECT_EQ(std::set(all.begin(), all.end()).size(), all.size());
}

TEST(TxQueue, PrintsTypeAndId) {
  EXPECT_EQ(printed(Qos::TxQueue{3, Qos::multicast}), "multicast-3");
  EXPECT_EQ(printed(Qos::TxQueue()), "unicast-16");
}

}  // namespace
}  // namespace valuesTest
