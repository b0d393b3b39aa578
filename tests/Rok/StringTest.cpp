#include "Rok/String.h"

#include <type_traits>

namespace stringTest {
namespace {

using Rok::String;
using Name = Rok::LimitedString<8>;

TEST(LimitedString, ATextOfExactlyTheLimitIsAccepted) {
  EXPECT_EQ(Name(String("12345678")).value(), "12345678");
  Name name;
  name = String("87654321");
  EXPECT_EQ(name.value(), "87654321");
}

TEST(LimitedString, OneByteMoreThrowsAndKeepsTheOldText) {
  Name name(String("edge"));
  try {
    name = String("123456789");
    FAIL() << "accepted";
  } catch (const Rok::RangeException& e) {
    EXPECT_STREQ(e.what(), "Rok::String::bytes > maxLength() not allowed");
  }
  EXPECT_EQ(name.value(), "edge");
  EXPECT_THROW(Name(String("123456789")), Rok::RangeException);
}

TEST(LimitedString, TheLimitIsInBytesAndNotInCharacters) {
  EXPECT_NO_THROW(Name(String("\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4")));
  EXPECT_THROW(Name(String("\xc3\xa4\xc3\xa4\xc3\xa4\xc3\xa4.")), Rok::RangeException);
  EXPECT_NO_THROW(Name(String(std::string_view("\0\0\0\0\0\0\0\0", 8))));
}

TEST(LimitedString, IsEmptyByDefaultAndComparesByText) {
  EXPECT_EQ(Name().value(), "");
  EXPECT_EQ(Name(String("edge")), Name(String("edge")));
  EXPECT_FALSE(Name(String("edge")) == Name(String("core")));
  const String& text = Name(String("edge")).value();
  EXPECT_TRUE((std::is_same_v<Rok::String, Velmo::String>));
  static_cast<void>(text);
}

TEST(LimitedString, ReadsAsAString) {
  const Name name(String("edge"));
  const String& text = name;
  EXPECT_EQ(text.addRight("-in"), "edge-in");
}

}  // namespace
}  // namespace stringTest
