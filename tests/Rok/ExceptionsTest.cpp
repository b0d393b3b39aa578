#include "Rok/Exceptions.h"

#include <array>
#include <sstream>

namespace exceptionsTest {
namespace {

constexpr std::array<std::string_view, 2> names{"port", "log"};
const Rok::FwkType portSm{"PortSm", names};

template <class Exception, class Act>
std::string textOf(const Act& act) {
  try {
    act();
  } catch (const Exception& e) {
    return e.what();
  }
  return "nothing thrown";
}

TEST(Exceptions, ARangeExceptionCarriesItsTextAlone) {
  EXPECT_EQ(textOf<Rok::RangeException>([] { Rok::throwRangeException("too far"); }), "too far");
  EXPECT_EQ(textOf<Rok::RangeException>(
                [] { Rok::throwRangeException(Velmo::String("much ").addRight("too far")); }),
            "much too far");
}

TEST(Exceptions, AnIndexAtTheSizeOrBeyondThrows) {
  EXPECT_EQ(textOf<Rok::RangeException>([] { Rok::checkIndex(17, 17); }),
            "cannot access index 17 of an array with size 17");
  EXPECT_EQ(textOf<Rok::RangeException>([] { Rok::checkIndex(20, 8); }),
            "cannot access index 20 of an array with size 8");
  EXPECT_EQ(textOf<Rok::RangeException>([] { Rok::checkIndex(0, 0); }),
            "cannot access index 0 of an array with size 0");
  EXPECT_NO_THROW(Rok::checkIndex(16, 17));
  EXPECT_NO_THROW(Rok::checkIndex(0, 1));
}

TEST(Exceptions, ANullArgumentIsNamedWithItsClassAndNumber) {
  try {
    Rok::throwMutatorArgNullPointerException("log", portSm, 131);
  } catch (const Rok::MutatorArgNullPointerException& e) {
    EXPECT_STREQ(e.what(), "PortSm: argument log (attribute 131) must not be null");
    EXPECT_EQ(e.attribute(), "log");
    EXPECT_EQ(e.attributeId(), 131u);
  }
}

TEST(Exceptions, AnotherTextUnderTheSameKeyIsShownBesideTheOldOne) {
  try {
    Rok::throwMutatorReinstantiating(portSm, 130, "Ethernet1", "Ethernet2");
  } catch (const Rok::MutatorReinstantiatingException& e) {
    EXPECT_STREQ(e.what(),
                 "PortSm: a child built with another port (attribute 130) exists: Ethernet1, not "
                 "Ethernet2");
    EXPECT_EQ(e.attribute(), "port");
    EXPECT_EQ(e.attributeId(), 130u);
  }
}

TEST(Exceptions, AnotherObjectUnderTheSameKeyIsShownByItsAddress) {
  const int one = 1;
  const int two = 2;
  std::ostringstream text;
  text << "PortSm: a child built with another log (attribute 131) exists: "
       << static_cast<const void*>(&one) << ", not " << static_cast<const void*>(&two);
  try {
    Rok::Impl::throwMutatorReinstantiating(portSm, 131, &one, &two);
  } catch (const Rok::MutatorReinstantiatingException& e) {
    EXPECT_EQ(e.what(), text.str());
    EXPECT_EQ(e.attribute(), "log");
    EXPECT_EQ(e.attributeId(), 131u);
  }
}

TEST(Exceptions, AnotherValueUnderTheSameKeyIsPrinted) {
  EXPECT_EQ(textOf<Rok::MutatorReinstantiatingException>(
                [] { Rok::Impl::throwMutatorReinstVal(portSm, 131, 7, 8); }),
            "PortSm: a child built with another log (attribute 131) exists: 7, not 8");
}

TEST(Exceptions, AllAreThrownAsSuchAndCaughtByTheirBases) {
  EXPECT_THROW(Rok::throwRangeException("x"), Rok::Exception);
  EXPECT_THROW(Rok::throwMutatorArgNullPointerException("log", portSm, 131), Rok::MutatorException);
  EXPECT_THROW(Rok::throwMutatorReinstantiating(portSm, 130, "", ""), Rok::MutatorException);
  EXPECT_THROW(Rok::throwMutatorReinstantiating(portSm, 130, "", ""), std::runtime_error);
}

TEST(Exceptions, FmtFormatsLikePrintf) {
  EXPECT_EQ(Rok::_fmt("if-%s-%s-%d", "Ethernet1", "in", 3), "if-Ethernet1-in-3");
  EXPECT_EQ(Rok::_fmt("%%%03u|%x", 7u, 255u), "%007|ff");
  EXPECT_EQ(Rok::_fmt("%s", ""), "");
  const std::string longText(5000, 'x');
  EXPECT_EQ(Rok::_fmt("<%s>", longText.c_str()), "<" + longText + ">");
}

}  // namespace
}  // namespace exceptionsTest
