#include "Rok/Trace.h"

#include <string>
#include <vector>

#include "Rok/Exceptions.h"

namespace {

using Rok::TraceFacility;
using Rok::TraceHandle;
using Rok::TraceHelper;

struct Seen {
  std::string handle;
  unsigned level;
  std::string text;
};

class Trace : public testing::Test {
 protected:
  Trace() {
    before_ = TraceFacility::sinkIs([this](const TraceFacility::Line& line) {
      lines_.push_back({std::string(line.handle), line.level, std::string(line.text)});
      file_ = line.sourceFile;
      sourceLine_ = line.sourceLine;
      function_ = line.functionName;
    });
    TraceFacility::levelDelAll();
  }
  ~Trace() override {
    TraceFacility::sinkIs(before_);
    TraceFacility::levelDelAll();
  }
  std::vector<std::string> texts() {
    std::vector<std::string> result;
    for (const Seen& line : lines_) result.push_back(line.text);
    lines_.clear();
    return result;
  }
  using Texts = std::vector<std::string>;

  std::vector<Seen> lines_;
  std::string file_;
  unsigned sourceLine_ = 0;
  std::string function_;

 private:
  TraceFacility::Sink before_;
};

// Handles live as long as the process, like those of the units.
constinit TraceHandle first("RokTest", false);
constinit TraceHandle second("RokTest", false);
constinit TraceHandle other("RokTestOther", false);

TEST_F(Trace, IsOffAtFirst) {
  for (unsigned level = 0; level < TraceFacility::levels; ++level) EXPECT_FALSE(first.isOn(level));
  const TraceHelper line(first, 0);
  EXPECT_FALSE(line);
}

TEST_F(Trace, OffEvaluatesNoOperand) {
  int evaluated = 0;
  const auto operand = [&] {
    ++evaluated;
    return "x";
  };
  if (TraceHelper line{first, 8}) line << operand();
  EXPECT_EQ(evaluated, 0);
  EXPECT_TRUE(lines_.empty());
  TraceFacility::levelIs("RokTest", 8, true);
  if (TraceHelper line{first, 8}) line << operand();
  EXPECT_EQ(evaluated, 1);
  EXPECT_EQ(texts(), Texts{"x"});
}

TEST_F(Trace, ALevelIsSwitchedAlone) {
  TraceFacility::levelIs("RokTest", 8, true);
  for (unsigned level = 0; level < TraceFacility::levels; ++level) {
    EXPECT_EQ(first.isOn(level), level == 8) << level;
  }
  TraceFacility::levelIs("RokTest", 0, true);
  TraceFacility::levelIs("RokTest", 8, false);
  EXPECT_TRUE(first.isOn(0));
  EXPECT_FALSE(first.isOn(8));
}

TEST_F(Trace, HandlesOfOneNameGoTogetherAndOthersDoNot) {
  TraceFacility::levelIs("RokTest", 9, true);
  EXPECT_TRUE(first.isOn(9));
  EXPECT_TRUE(second.isOn(9));
  EXPECT_FALSE(other.isOn(9));
  TraceFacility::levelIs("RokTestOther", 9, true);
  TraceFacility::levelIs("RokTest", 9, false);
  EXPECT_FALSE(first.isOn(9));
  EXPECT_FALSE(second.isOn(9));
  EXPECT_TRUE(other.isOn(9));
}

TEST_F(Trace, ALevelOfAllNamesAddsToThatOfOne) {
  TraceFacility::levelIs(2, true);
  EXPECT_TRUE(first.isOn(2));
  EXPECT_TRUE(other.isOn(2));
  TraceFacility::levelIs("RokTest", 2, true);
  TraceFacility::levelIs(2, false);
  EXPECT_TRUE(first.isOn(2));
  EXPECT_FALSE(other.isOn(2));
}

TEST_F(Trace, ALevelSwitchedOnBeforeAHandlesFirstUseHolds) {
  static constinit TraceHandle byName("RokTestEarly", false);
  static constinit TraceHandle byLevel("RokTestEarlyToo", false);
  TraceFacility::levelIs("RokTestEarly", 8, true);
  EXPECT_TRUE(byName.isOn(8));
  EXPECT_FALSE(byName.isOn(2));
  TraceFacility::levelIs(9, true);
  EXPECT_TRUE(byLevel.isOn(9));
  EXPECT_FALSE(byLevel.isOn(8));
}

TEST_F(Trace, DelAllSwitchesEverythingOff) {
  TraceFacility::levelIs("RokTest", 8, true);
  TraceFacility::levelIs(9, true);
  TraceFacility::levelDelAll();
  EXPECT_FALSE(first.isOn(8));
  EXPECT_FALSE(first.isOn(9));
  EXPECT_FALSE(other.isOn(9));
}

TEST_F(Trace, ALevelAboveNineThrowsAndSwitchesNothing) {
  for (const bool on : {true, false}) {
    try {
      TraceFacility::levelIs("RokTest", 10, on);
      FAIL() << "accepted";
    } catch (const Rok::RangeException& e) {
      EXPECT_STREQ(e.what(), "trace level 10 is not one of 0 to 9");
    }
    EXPECT_THROW(TraceFacility::levelIs(4711, on), Rok::RangeException);
  }
  for (unsigned level = 0; level < TraceFacility::levels; ++level) EXPECT_FALSE(first.isOn(level));
  EXPECT_NO_THROW(TraceFacility::levelIs("RokTest", 9, true));
}

TEST_F(Trace, ALineCarriesItsHandleItsLevelAndItsPlace) {
  TraceFacility::levelIs(2, true);
  if (TraceHelper line{other, 2}) line << "here";
  const unsigned here = __LINE__ - 1;
  ASSERT_EQ(lines_.size(), 1u);
  EXPECT_EQ(lines_[0].handle, "RokTestOther");
  EXPECT_EQ(lines_[0].level, 2u);
  EXPECT_EQ(lines_[0].text, "here");
  EXPECT_EQ(sourceLine_, here);
  EXPECT_EQ(file_, __FILE__);
  { const TraceHelper line(other, 2, "file.cpp", 7, "int f()"); }
  EXPECT_EQ(file_, "file.cpp");
  EXPECT_EQ(sourceLine_, 7u);
  EXPECT_EQ(function_, "int f()");
}

TEST_F(Trace, TheLineReachesTheSinkWhenItEndsAndInOnePiece) {
  TraceFacility::levelIs(9, true);
  {
    TraceHelper line(first, 9);
    line << "a" << 1;
    EXPECT_TRUE(lines_.empty());
    line << "b";
    EXPECT_TRUE(lines_.empty());
  }
  EXPECT_EQ(texts(), Texts{"a1b"});
}

TEST_F(Trace, ALineInsideALineEndsFirst) {
  TraceFacility::levelIs(9, true);
  {
    TraceHelper outer(first, 9);
    outer << "outer ";
    if (TraceHelper inner{first, 9}) inner << "inner";
    outer << "end";
  }
  EXPECT_EQ(texts(), (Texts{"inner", "outer end"}));
}

struct Lamp {
  int watts;
  friend std::ostream& operator<<(std::ostream& out, const Lamp& lamp) {
    return out << "Lamp(" << lamp.watts << ")";
  }
};

TEST_F(Trace, TakesTextsNumbersAndWhateverPrints) {
  TraceFacility::levelIs(9, true);
  if (TraceHelper line{first, 9}) {
    const char* text = "pointer";
    line << text << ' ' << Velmo::String("velmo") << ' ' << std::string("standard") << ' '
         << std::string_view("view") << ' ' << 42u << ' ' << -1 << ' ' << Lamp{60};
  }
  EXPECT_EQ(texts(), Texts{"pointer velmo standard view 42 -1 Lamp(60)"});
  Rok::TraceStream stream;
  stream << "x" << 7u << Lamp{3};
  stream.stream() << "y";
  EXPECT_EQ(stream.text(), "x7Lamp(3)y");
}

TEST_F(Trace, ControlCharactersAreEscapedSoThatALineStaysOneLine) {
  TraceFacility::levelIs(9, true);
  if (TraceHelper line{first, 9}) {
    line << Velmo::String(std::string_view("a\nb\r\t\0c\x1f\x7f\\ \xe4~", 13));
  }
  EXPECT_EQ(texts(), Texts{"a\\x0ab\\x0d\\x09\\x00c\\x1f\\x7f\\ \xe4~"});
}

class Counter {
 public:
  void handleTick(int n, const Velmo::String& name) {
    Rok::traceEntry(Rok::TraceLevel{first, 8}, *this, n, name);
  }
  void handleInitialized() { Rok::traceEntry(Rok::TraceLevel{first, 8}, *this); }
};
struct Named {
  void handleTick(int n) { Rok::traceEntry(Rok::TraceLevel{first, 8}, *this, n); }
  void handleForms(int n) {
    constexpr Rok::TraceLevel level{first, 8};
    Rok::traceLine(level, "n = ", n);
    Rok::traceOf(level, *this, "n = ", n);
    Rok::traceIn(level, *this, ", n = ", n);
    const Rok::TraceAt here(level);
    [&] { Rok::traceIn(here, *this, ", out of a lambda"); }();
  }
  friend std::ostream& operator<<(std::ostream& out, const Named&) { return out << "Named( x )::"; }
};
int decode(const Velmo::String& name) {
  Rok::traceCall(Rok::TraceLevel{first, 8}, " ( ", name);
  return 1;
}

TEST_F(Trace, AnEntryLineHoldsTheObjectTheSignatureAndTheArguments) {
  TraceFacility::levelIs(8, true);
  Named().handleTick(3);
  EXPECT_EQ(texts(), Texts{"Named( x ):: void {anonymous}::Named::handleTick(int) ( 3 ) "});
}

TEST_F(Trace, AnEntryLineShowsAnObjectThatDoesNotPrintByItsAddress) {
  TraceFacility::levelIs(8, true);
  Counter counter;
  std::ostringstream address;
  address << static_cast<const void*>(&counter);
  counter.handleTick(3, "edge");
  counter.handleInitialized();
  EXPECT_EQ(
      texts(),
      (Texts{address.str() +
                 " void {anonymous}::Counter::handleTick(int, const Velmo::String&) ( 3, edge ) ",
             address.str() + " void {anonymous}::Counter::handleInitialized() (  ) "}));
}

TEST_F(Trace, ACallLineHoldsTheSignatureAndTheArgument) {
  TraceFacility::levelIs(8, true);
  decode("edge");
  EXPECT_EQ(texts(), Texts{"int {anonymous}::decode(const Velmo::String&) ( edge"});
}

TEST_F(Trace, ALineInOneStatementHoldsItsPartsBehindWhatItsFormPutsFirst) {
  TraceFacility::levelIs(8, true);
  Named().handleForms(3);
  const std::string in = "Named( x ):: void {anonymous}::Named::handleForms(int)";
  EXPECT_EQ(texts(),
            (Texts{"n = 3", "Named( x ):: n = 3", in + ", n = 3", in + ", out of a lambda"}))
      << "a place that was taken outside of the lambda names the function";
}

TEST_F(Trace, LinesInOneStatementAreSilentWhenTheirLevelIsOff) {
  TraceFacility::levelIs(9, true);
  TraceFacility::levelIs(2, true);
  Named().handleTick(3);
  Named().handleForms(3);
  decode("edge");
  EXPECT_TRUE(lines_.empty());
}

TEST_F(Trace, ASinkIsReplacedAndRestored) {
  TraceFacility::levelIs(9, true);
  std::string elsewhere;
  TraceFacility::Sink mine =
      TraceFacility::sinkIs([&](const TraceFacility::Line& line) { elsewhere += line.text; });
  if (TraceHelper line{first, 9}) line << "one";
  EXPECT_EQ(elsewhere, "one");
  EXPECT_TRUE(lines_.empty());
  TraceFacility::sinkIs(mine);
  if (TraceHelper line{first, 9}) line << "two";
  EXPECT_EQ(elsewhere, "one");
  EXPECT_EQ(texts(), Texts{"two"});
}

TEST_F(Trace, WithoutASinkLinesGoToStandardError) {
  TraceFacility::levelIs(9, true);
  TraceFacility::Sink mine = TraceFacility::sinkIs(nullptr);
  testing::internal::CaptureStderr();
  if (TraceHelper line{first, 9}) line << "to\nstandard error";
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "RokTest 9 to\\x0astandard error\n");
  EXPECT_FALSE(TraceFacility::sinkIs(mine));
}

TEST_F(Trace, ASinkMayReplaceItself) {
  TraceFacility::levelIs(9, true);
  std::string seen;
  TraceFacility::Sink mine = TraceFacility::sinkIs(
      [&seen, large = std::string(100, 'x')](const TraceFacility::Line& line) {
        TraceFacility::sinkIs(nullptr);
        seen = std::string(line.text) + large;
      });
  if (TraceHelper line{first, 9}) line << "once";
  EXPECT_EQ(seen, "once" + std::string(100, 'x'));
  TraceFacility::sinkIs(mine);
}

}  // namespace
