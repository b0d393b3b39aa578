#include "host/Nearest.h"

#include <gtest/gtest.h>

namespace host::nearestTest {
namespace {

const std::vector<std::string_view> sections{"class-maps", "policy-maps", "interfaces", "comments"};

TEST(Nearest, IsTheNameWithTheFewestSlips) {
  EXPECT_EQ(nearest("clas-maps", sections), "class-maps");
  EXPECT_EQ(nearest("class-mapss", sections), "class-maps");
  EXPECT_EQ(nearest("class_maps", sections), "class-maps");
  EXPECT_EQ(nearest("lcass-maps", sections), "class-maps");
  EXPECT_EQ(nearest("interface", sections), "interfaces");
}

TEST(Nearest, DoesNotCountCase) { EXPECT_EQ(nearest("Class-Maps", sections), "class-maps"); }

TEST(Nearest, IsNoNameWithMoreSlipsThanAThirdOfTheLetters) {
  EXPECT_EQ(nearest("abcde", {"abcxx"}), "");
  EXPECT_EQ(nearest("abcdef", {"abcdxx"}), "abcdxx");
  EXPECT_EQ(nearest("class", {"classes"}), "classes");
  EXPECT_EQ(nearest("queue-names", sections), "");
}

TEST(Nearest, MayHaveASlipFromThreeLettersOn) {
  EXPECT_EQ(nearest("enc", {"wred", "ecn"}), "ecn");
  EXPECT_EQ(nearest("xy", {"xz"}), "");
  EXPECT_EQ(nearest("XY", {"xy"}), "xy");
}

TEST(Nearest, IsNoNameOfAnotherNumber) {
  EXPECT_EQ(nearest("Ethernet1", {"Ethernet2", "Ethernet11"}), "");
  EXPECT_EQ(nearest("Etherent1", {"Ethernet2", "Ethernet1"}), "Ethernet1");
  EXPECT_EQ(nearest("Etherent1", {"Ethernet2", "Ethernet"}), "Ethernet");
  EXPECT_EQ(nearest("ethernet1", {"Ethernet1"}), "Ethernet1");
}

TEST(Nearest, CountsTwoLettersThatChangedPlacesOnce) {
  EXPECT_EQ(nearest("--fromat", {"--from", "--format"}), "--format");
}

TEST(Nearest, OfSeveralIsTheFirst) { EXPECT_EQ(nearest("abc", {"abx", "aby"}), "abx"); }

TEST(Nearest, IsNothingForAnEmptyOrAnEndlessWord) {
  EXPECT_EQ(nearest("", {"a", ""}), "");
  const std::string endless(1000, 'a');
  EXPECT_EQ(nearest(endless, {endless}), "");
}

// A device may have thousands of bad references and of names.
TEST(NearNames, OfManyAreTheSameAsOfFew) {
  std::vector<std::string> many;
  for (int i = 0; i < 4000; ++i) many.push_back("Ethernet" + std::to_string(i));
  many.insert(many.begin() + 2000, "Port-Channel7");
  const NearNames names({many.begin(), many.end()});
  EXPECT_EQ(names.nearest("Prot-Channel7"), "Port-Channel7");
  EXPECT_EQ(names.nearest("Ethernet9999"), "");
  EXPECT_EQ(names.nearest("Ehternet3210"), "Ethernet3210");
}

TEST(NearNames, OfTooManyAreNotSearched) {
  const std::vector<std::string_view> names(5000, "Ethernet");
  EXPECT_EQ(NearNames(names).nearest("Ehternet"), "");
}

TEST(NearNames, DoNotCompareWhatIsTheSameInAll) {
  const std::vector<std::string_view> names{"__yang_[IPV4__core]"};
  EXPECT_EQ(NearNames(names).nearest("__yang_[IPV4__edge]"), "__yang_[IPV4__core]");
  EXPECT_EQ(NearNames(names, 14).nearest("__yang_[IPV4__edge]"), "");
  EXPECT_EQ(NearNames(names, 14).nearest("__yang_[IPV4__cor]"), "__yang_[IPV4__core]");
  EXPECT_EQ(NearNames(names, 14).nearest("cor"), "");
}

TEST(DidYouMean, AsksForTheNearestName) {
  EXPECT_EQ(didYouMean("interface", sections), ": did you mean interfaces?");
  EXPECT_EQ(didYouMean("queues", sections), "");
  EXPECT_EQ(didYouMeanOf("ENC", {"ecn", "wred"}), ": did you mean ecn? (legal: ecn, wred)");
  EXPECT_EQ(didYouMeanOf("shape", {"ecn", "wred"}), " (legal: ecn, wred)");
}

}  // namespace
}  // namespace host::nearestTest
