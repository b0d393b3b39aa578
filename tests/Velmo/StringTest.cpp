#include "Velmo/String.h"

#include <array>
#include <compare>
#include <cstring>
#include <random>
#include <stdexcept>
#include <utility>

#include "Dorpel/Slab.h"

namespace stringTest {
namespace {

using Velmo::String;
using namespace std::string_view_literals;

// Not equal to any text at hand, so that it needs a buffer of its own.
String fresh(const char* text) { return String(text); }

TEST(VelmoString, IsEmptyByDefault) {
  const String text;
  EXPECT_TRUE(text.empty());
  EXPECT_EQ(text.size(), 0u);
  EXPECT_STREQ(text.data(), "");
  EXPECT_EQ(text, "");
  EXPECT_EQ(text, String(""));
}

TEST(VelmoString, IsMadeFromACharPointerAViewOrAStandardString) {
  const std::string standard = "edge";
  EXPECT_EQ(String("edge").size(), 4u);
  EXPECT_EQ(std::string_view(String("edge")), "edge");
  EXPECT_EQ(std::string_view(String("edge-in"sv.substr(0, 4))), "edge");
  EXPECT_EQ(std::string_view(String(standard)), "edge");
}

TEST(VelmoString, DataIsFollowedByANul) {
  for (std::size_t size = 0; size < 600; ++size) {
    const std::string standard(size, 'x');
    String text(standard);
    EXPECT_EQ(std::strlen(text.data()), size);
    text.append("y");
    EXPECT_EQ(std::strlen(text.data()), size + 1);
  }
}

TEST(VelmoString, ACopySharesTheBuffer) {
  const String text("classifier");
  const String copy = text;
  EXPECT_TRUE(copy.shares(text));
  EXPECT_EQ(copy.data(), text.data());
  String assigned;
  assigned = text;
  EXPECT_TRUE(assigned.shares(text));
}

TEST(VelmoString, TheBufferGoesBackWithItsLastOwner) {
  const Dorpel::SlabUse before = Dorpel::slabUse();
  {
    String text("classifier");
    EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
    const String copy = text;
    EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
    text = String();
    EXPECT_EQ(copy, "classifier");
    EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks + 1);
  }
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
  EXPECT_EQ(Dorpel::slabUse().bytes, before.bytes);
}

TEST(VelmoString, AnEmptyTextHasNoBuffer) {
  const Dorpel::SlabUse before = Dorpel::slabUse();
  const String a("");
  const String b = String().addLeft("").addRight("");
  String c("x");
  c.assign("");
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
  EXPECT_TRUE(a.empty() && b.empty() && c.empty());
}

TEST(VelmoString, AMoveTakesTheBufferAndLeavesAUsableString) {
  String text("classifier");
  const char* buffer = text.data();
  String moved = std::move(text);
  EXPECT_EQ(moved.data(), buffer);
  text = "again";  // NOLINT(bugprone-use-after-move): a moved-from string takes a new value
  EXPECT_EQ(text, "again");
  String assigned("old");
  assigned = std::move(moved);
  EXPECT_EQ(assigned.data(), buffer);
}

TEST(VelmoString, AChangeOfOneOwnerLeavesTheOthersAlone) {
  String text("edge");
  const String copy = text;
  text.append("-in");
  EXPECT_EQ(text, "edge-in");
  EXPECT_EQ(copy, "edge");
  String other = copy;
  other.assign("core");
  EXPECT_EQ(other, "core");
  EXPECT_EQ(copy, "edge");
}

TEST(VelmoString, ASharedBufferIsNotWrittenToEvenWhenItHasRoom) {
  String text("edge");
  text.append("-in");
  const String copy = text;
  text.append("-1");
  EXPECT_EQ(text, "edge-in-1");
  EXPECT_EQ(copy, "edge-in");
  EXPECT_STREQ(copy.data(), "edge-in");
}

TEST(VelmoString, AChangeOfTheOnlyOwnerIsNotSeenThroughAnOldHash) {
  String text("edge");
  text.append("-in");  // now its buffer has room for more
  const std::uint32_t old = text.hash();
  const char* buffer = text.data();
  text.append("-1");
  EXPECT_EQ(text.data(), buffer);
  EXPECT_NE(text.hash(), old);
  EXPECT_EQ(text.hash(), String("edge-in-1").hash());
}

TEST(VelmoString, AssigningItselfChangesNothing) {
  String text("edge");
  String& same = text;
  text = same;
  EXPECT_EQ(text, "edge");
  text = std::move(same);
  EXPECT_EQ(text, "edge");
  text.assign(text);
  EXPECT_EQ(text, "edge");
}

TEST(VelmoString, AssignsAPartOfItself) {
  String text("classifier-map");
  text.assign(std::string_view(text).substr(11));
  EXPECT_EQ(text, "map");
}

TEST(VelmoString, AppendsAPartOfItself) {
  String text("ab");
  text.append(text);
  EXPECT_EQ(text, "abab");
  text.append(std::string_view(text).substr(1, 2));
  EXPECT_EQ(text, "ababba");
}

TEST(VelmoString, AppendsAPartOfItselfWithAndWithoutRoomInItsBuffer) {
  String text("0123456789");
  std::string model("0123456789");
  for (int i = 0; i < 60; ++i) {
    const std::size_t from = static_cast<std::size_t>(i) % model.size();
    const std::string part = model.substr(from, 7);
    text.append(std::string_view(text).substr(from, 7));
    model += part;
    ASSERT_EQ(std::string_view(text), model);
    ASSERT_EQ(text.data()[text.size()], '\0');
  }
}

TEST(VelmoString, AppendingNothingKeepsTheSharedBuffer) {
  String text("edge");
  const String copy = text;
  text.append("");
  EXPECT_TRUE(text.shares(copy));
}

TEST(VelmoString, AppendChains) {
  String text;
  EXPECT_EQ(&text.append("a"), &text);
  text.append("b").append("c");
  EXPECT_EQ(text, "abc");
}

TEST(VelmoString, AddLeftAndAddRightMakeNewStrings) {
  const String text("edge");
  EXPECT_EQ(text.addLeft("__yang_["), "__yang_[edge");
  EXPECT_EQ(text.addRight("]_[]"), "edge]_[]");
  EXPECT_EQ(text, "edge");
  EXPECT_EQ(String().addLeft("x"), "x");
  EXPECT_EQ(String().addRight("x"), "x");
  EXPECT_EQ(text.addLeft(text).addRight(text), "edgeedgeedge");
}

TEST(VelmoString, HoldsNulBytes) {
  const String text("a\0b\0"sv);
  EXPECT_EQ(text.size(), 4u);
  EXPECT_EQ(std::string_view(text), "a\0b\0"sv);
  EXPECT_NE(text, String("a"));
  EXPECT_NE(text.hash(), String("a").hash());
  EXPECT_EQ(text.addRight("c"), String("a\0b\0c"sv));
  String appended("a");
  appended.append("\0"sv).append("b\0"sv);
  EXPECT_EQ(appended, text);
  EXPECT_FALSE(text.equal("a"));
  EXPECT_NE(String("a\0b"sv), String("a\0c"sv));
}

TEST(VelmoString, ComparesByUnsignedBytes) {
  const String ascii("z");
  const String latin("\xe4");
  EXPECT_LT(ascii, latin);
  EXPECT_LT(ascii.compare(latin), 0);
  EXPECT_GT(latin.compare(ascii), 0);
  EXPECT_LT(String("\x7f"), String("\x80"));
}

TEST(VelmoString, OrdersPrefixesFirstAndNulBeforeAll) {
  EXPECT_LT(String("edge"), String("edge-in"));
  EXPECT_LT(String(), String("\0"sv));
  EXPECT_LT(String("a\0"sv), String("a\1"));
  EXPECT_EQ(String("edge").compare("edge"), 0);
  EXPECT_LT(String("edge").compare("edge-in"), 0);
  EXPECT_GT(String("f").compare("edge-in"), 0);
  EXPECT_EQ(String("edge") <=> String("edge"), std::strong_ordering::equal);
  EXPECT_EQ(String("edge") <=> String("core"), std::strong_ordering::greater);
  const String text("edge");
  const String copy = text;
  EXPECT_EQ(text <=> copy, std::strong_ordering::equal);
}

TEST(VelmoString, IsEqualByTextWhateverTheBuffer) {
  const String a = fresh("classifier");
  const String b = fresh("classifier");
  EXPECT_FALSE(a.shares(b));
  EXPECT_EQ(a, b);
  EXPECT_EQ(a, "classifier");
  EXPECT_EQ(a, "classifier"sv);
  EXPECT_TRUE(a.equal("classifier"));
  EXPECT_NE(a, fresh("classifies"));
  EXPECT_NE(a, fresh("classifier2"));
  EXPECT_NE(a, String());
  EXPECT_NE(String(), a);
  EXPECT_FALSE(a.equal("classify"));
}

TEST(VelmoString, IsEqualOrNotWithAnyStateOfTheHashes) {
  const String a = fresh("classifier");
  const String b = fresh("classifier");
  const String c = fresh("classifies");
  a.hash();
  EXPECT_EQ(a, b);
  EXPECT_NE(a, c);
  b.hash();
  c.hash();
  EXPECT_EQ(a, b);
  EXPECT_NE(a, c);
}

TEST(VelmoString, HasTheSameHashForEqualTexts) {
  EXPECT_EQ(fresh("classifier").hash(), fresh("classifier").hash());
  EXPECT_EQ(String().hash(), String("").hash());
  EXPECT_NE(String().hash(), 0u);
  EXPECT_EQ(String("x").hash(), Velmo::hashBytes("x"));
  String built("class");
  built.append("ifier");
  EXPECT_EQ(built.hash(), fresh("classifier").hash());
}

TEST(VelmoString, PrintsItsBytes) {
  std::ostringstream out;
  out << String("a\0\xe4"sv) << "|" << String();
  EXPECT_EQ(out.str(), "a\0\xe4|"sv);
}

TEST(VelmoString, ATextThatIsTooLongThrowsBeforeItReadsAByte) {
  const char byte = 'x';
  const std::string_view tooLong(&byte, std::size_t{1} << 32);
  try {
    const String text(tooLong);
    FAIL() << "made a string of " << text.size();
  } catch (const std::length_error& e) {
    EXPECT_STREQ(e.what(), "Velmo::String: text too long");
  }
  String unharmed("edge");
  EXPECT_THROW(unharmed.append(tooLong), std::length_error);
  EXPECT_EQ(unharmed, "edge");
  EXPECT_THROW((void)unharmed.addLeft(tooLong), std::length_error);
}

TEST(VelmoString, RandomOperationsAgreeWithAStandardString) {
  constexpr std::size_t size = 8;
  std::mt19937 random(20240611);
  const auto pick = [&](std::size_t n) { return random() % n; };
  const Dorpel::SlabUse before = Dorpel::slabUse();
  {
    std::array<String, size> texts;
    std::array<std::string, size> models;
    const auto word = [&] {
      std::string result(pick(12), '\0');
      for (char& c : result) c = static_cast<char>(pick(4) == 0 ? pick(256) : 'a' + pick(3));
      return result;
    };
    for (int step = 0; step < 200'000; ++step) {
      const std::size_t a = pick(size);
      const std::size_t b = pick(size);
      const std::string w = word();
      switch (pick(9)) {
        case 0:
          texts[a].assign(w);
          models[a] = w;
          break;
        case 1:
          texts[a].append(w);
          models[a] += w;
          break;
        case 2:
          texts[a] = texts[b];
          models[a] = models[b];
          break;
        case 3:
          texts[a] = texts[b].addLeft(w);
          models[a] = w + models[b];
          break;
        case 4:
          texts[a] = texts[b].addRight(w);
          models[a] = models[b] + w;
          break;
        case 5: {
          const std::size_t from = pick(models[b].size() + 1);
          const std::size_t count = pick(20);
          const std::string part = models[b].substr(from, count);
          texts[a].append(std::string_view(texts[b]).substr(from, count));
          models[a] += part;
          break;
        }
        case 6:
          std::swap(texts[a], texts[b]);
          std::swap(models[a], models[b]);
          break;
        case 7: {
          String copy = texts[b];
          copy.append(w);
          ASSERT_EQ(std::string_view(copy), models[b] + w);
          break;
        }
        default:
          ASSERT_EQ(texts[a] == texts[b], models[a] == models[b]);
          ASSERT_EQ(texts[a] < texts[b], models[a] < models[b]);
          ASSERT_EQ(texts[a].compare(texts[b]) < 0, models[a].compare(models[b]) < 0);
          ASSERT_EQ(texts[a].hash(), Velmo::hashBytes(models[a]));
          break;
      }
      if (models[a].size() > 2000) {
        texts[a].assign(w);
        models[a] = w;
      }
      ASSERT_EQ(std::string_view(texts[a]), models[a]);
      ASSERT_EQ(std::string_view(texts[b]), models[b]);
      ASSERT_EQ(texts[a].data()[texts[a].size()], '\0');
    }
  }
  EXPECT_EQ(Dorpel::slabUse().blocks, before.blocks);
}

}  // namespace
}  // namespace stringTest
