// The manual page.
#include <gtest/gtest.h>

#include "Paths.h"
#include "apps/qosoc/Commands.h"
#include "apps/qosoc/Help.h"
#include "host/Version.h"
#include "tests/support/HostProgram.h"

namespace manualTest {
namespace {

using support::HostRun;
using support::hostRun;
using support::hostText;

// The page as a terminal without styles shows it, with one space for several.
std::string page() {
  const HostRun run = hostRun(
      {"bash", "-c", R"("$0" manual | groff -ww -man -Tascii -P-cbou -rLL=400n | tr -s ' ')",
       paths::qosoc});
  EXPECT_EQ(run.err, "");
  return run.out;
}

TEST(Manual, IsPrintedAsItIsInstalled) {
  const HostRun run = hostRun({paths::qosoc, "manual"});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, hostText(std::string(paths::share) + "/qosoc.1"));
}

TEST(Manual, IsTypesetWithoutAWarning) {
  const HostRun run =
      hostRun({"groff", "-ww", "-man", "-z", std::string(paths::share) + "/qosoc.1"});
  EXPECT_EQ(run.exit, 0) << "groff is needed";
  EXPECT_EQ(run.err, "");
}

TEST(Manual, HasTheSectionsThatOneLooksFor) {
  const std::string text = page();
  EXPECT_NE(text.find("qosoc " + std::string(host::version())), std::string::npos);
  for (const char* section : {"NAME", "SYNOPSIS", "OPTIONS", "COMMANDS", "ENVIRONMENT"}) {
    EXPECT_NE(text.find("\n" + std::string(section) + "\n"), std::string::npos) << section;
  }
  EXPECT_NE(text.find("\n qosoc - translates native QoS configuration"), std::string::npos) << text;
}

TEST(Manual, SaysEverythingOfEachCommand) {
  const std::string text = page();
  for (const qosoc::Command* command : qosoc::commands()) {
    const std::size_t begin = text.find("\n qosoc " + std::string(command->name) + "\n");
    ASSERT_NE(begin, std::string::npos) << command->name;
    const std::string part = text.substr(begin);
    for (const qosoc::Option& option : command->options) {
      const std::string label = qosoc::optionLabel(option);
      EXPECT_NE(part.find("\n " + label), std::string::npos) << label;
    }
    EXPECT_NE(part.find("\n Example:\n\n $ "), std::string::npos) << command->name;
    EXPECT_NE(part.find("\n Exit code:\n\n 0 "), std::string::npos) << command->name;
  }
}

TEST(Manual, ShowsWhatIsTypedAsItIsTyped) {
  const std::string text = page();
  EXPECT_NE(text.find("\n ~ PATH OLD -> NEW a leaf of both, with its values\n"), std::string::npos);
  EXPECT_NE(text.find("\n $ qosoc translate router.json --changes changes.jsonl --each\n"),
            std::string::npos);
  EXPECT_NE(text.find("leave out what is not in OpenConfig's own modules"), std::string::npos);
}

}  // namespace
}  // namespace manualTest
