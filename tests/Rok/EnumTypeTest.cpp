#include "Rok/EnumType.h"

#include <sstream>

#include "Rok/Exceptions.h"

namespace enumTypeTest {
namespace {

enum class Color : unsigned char { red = 1, green = 2, deepBlue = 200 };

const Rok::EnumType<unsigned char>& rokEnumType(Color) {
  static const Rok::EnumType<unsigned char> type("Color",
                                                 {{1, "red"}, {2, "green"}, {200, "deepBlue"}});
  return type;
}
std::ostream& operator<<(std::ostream& out, Color v) { return Rok::enumPrint(out, v); }

const auto& type = Rok::EnumType<unsigned char>::instance<Color>();

TEST(EnumType, AValueReadsAsItsName) {
  EXPECT_EQ(type.name(), "Color");
  EXPECT_EQ(type.stringValue(1), "red");
  EXPECT_EQ(type.stringValue(200), "deepBlue");
}

TEST(EnumType, AValueWithoutANameReadsAsItsNumber) {
  EXPECT_EQ(type.stringValue(0), "0");
  EXPECT_EQ(type.stringValue(7), "7");
  EXPECT_EQ(type.stringValue(255), "255");
}

TEST(EnumType, EveryByteReadsBackFromItsTextualRepresentation) {
  for (int value = 0; value < 256; ++value) {
    const auto byte = static_cast<unsigned char>(value);
    EXPECT_EQ(type.strepToValue(type.valueToStrep(byte)), byte) << value;
  }
}

TEST(EnumType, ATextIsANameOrACanonicalDecimalOrNothing) {
  EXPECT_EQ(type.strepToValue("green"), 2);
  EXPECT_EQ(type.strepToValue("0"), 0);
  EXPECT_EQ(type.strepToValue("2"), 2);
  EXPECT_EQ(type.strepToValue("255"), 255);
  for (const char* text : {"", "Green", "green ", " green", "gree", "256", "1000", "-1", "+1", "01",
                           "00", "007", "1.0", "0x1", "1 ", " 1", "1a"}) {
    EXPECT_EQ(type.strepToValue(text), std::nullopt) << '"' << text << '"';
  }
  EXPECT_EQ(type.strepToValue(std::string_view("1\0", 2)), std::nullopt);
}

TEST(EnumType, TheSequenceIsTheDeclarationOrder) {
  EXPECT_EQ(type.size(), 3u);
  EXPECT_EQ(type.sequenceToValue(0), 1);
  EXPECT_EQ(type.sequenceToValue(1), 2);
  EXPECT_EQ(type.sequenceToValue(2), 200);
  try {
    static_cast<void>(type.sequenceToValue(3));
    FAIL() << "accepted";
  } catch (const Rok::RangeException& e) {
    EXPECT_STREQ(e.what(), "cannot access index 3 of an array with size 3");
  }
}

TEST(EnumType, AnEnumerationPrintsByItsName) {
  std::ostringstream out;
  out << Color::deepBlue << " " << Color{9} << " ";
  type.operatorLessLess(out, 2);
  EXPECT_EQ(out.str(), "deepBlue 9 green");
}

}  // namespace
}  // namespace enumTypeTest
