// `qosoc check --shape`: the form of a document, judged as `qosoc check` judges it.
#include <gtest/gtest.h>

#include "Qosoc.h"

namespace shapeOptionTest {
namespace {

using support::HostFolder;
using support::HostRun;
using support::hostRun;
using support::qosoc;

constexpr std::string_view bad = R"({
  "queue-names": {"EF": 256, "EF": 1},
  "class-maps": {"qos": {"V": {"match": ["ip-access-group", 1]}}, "1": {}},
  "comments": {"a": "b", "a": 7}
} ])";

class ShapeOption : public testing::Test {
 protected:
  std::string file(std::string_view text) { return folder_.file("native.json", text); }

  HostFolder folder_;
};

void expectSame(const HostRun& a, const HostRun& b) {
  EXPECT_EQ(a.exit, b.exit);
  EXPECT_EQ(a.out, b.out);
  EXPECT_EQ(a.err, b.err);
}

TEST_F(ShapeOption, SaysNothingOfARightDocument) {
  for (const std::string text :
       {"{}", R"({"class-maps": {"qos": {"V": {"match": ["ip-access-group"]}}}})"}) {
    expectSame(qosoc({"check", "--shape", file(text)}), {0, "", ""});
    expectSame(qosoc({"check", "--shape", "-"}, {text}), {0, "", ""});
  }
}

TEST_F(ShapeOption, SaysOfABadDocumentWhatCheckSays) {
  const std::string path = file(bad);
  const HostRun check = qosoc({"check", path});
  EXPECT_EQ(check.exit, 2);
  for (const char* place : {"2:25", "2:30", "3:61", "3:67", "4:26", "5:3"}) {
    EXPECT_NE((check.out + check.err).find(path + ':' + place + ": "), std::string::npos) << place;
  }
  expectSame(qosoc({"check", "--shape", path}), check);
}

TEST_F(ShapeOption, SaysTheSameOfWhatCannotBeReadTwice) {
  expectSame(qosoc({"check", "-", "--shape"}, {std::string(bad)}),
             qosoc({"check", "-"}, {std::string(bad)}));
}

TEST_F(ShapeOption, ReadsAFileOnStandardInputFromWhereItStands) {
  const std::string path = file("skipped\n" + std::string(bad));
  const auto run = [&](const std::string& option) {
    const std::string command = "(read line; exec '" + std::string(paths::qosoc) + "' check - " +
                                option + ") <'" + path + "'";
    return hostRun({"/bin/sh", "-c", command});
  };
  EXPECT_EQ(run("").exit, 2);
  EXPECT_NE((run("").out + run("").err).find("standard input:2:25: "), std::string::npos);
  expectSame(run("--shape"), run(""));
}

TEST_F(ShapeOption, DoesNotReadComments) {
  const std::string path = file(R"({
    "interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {}}}},
    "comments": {"if-Et1-uc-txq-3": "{\"MetaData-OpenConfig\":{\"scheduler-policy\":1}}"}})");
  EXPECT_EQ(qosoc({"check", path}).exit, 1);
  expectSame(qosoc({"check", "--shape", path}), {0, "", ""});
}

TEST_F(ShapeOption, PrintsObjectsForPrograms) {
  const std::string path = file(bad);
  const HostRun check = qosoc({"check", path, "--json"});
  EXPECT_NE(check.out.find("/queue-names/EF"), std::string::npos);
  expectSame(qosoc({"check", path, "--json", "--shape"}), check);
}

TEST_F(ShapeOption, JudgesNoChanges) {
  const HostRun run = qosoc({"check", file("{}"), "--shape", "--changes", "none.jsonl"});
  EXPECT_EQ(run.exit, 2);
  EXPECT_EQ(run.err.substr(0, run.err.find('\n')),
            "qosoc: --shape judges a document without changes (see qosoc check --help)");
}

TEST_F(ShapeOption, NamesAFileThatCannotBeRead) {
  for (const std::string& path : {folder_.path("none.json"), folder_.path(".")}) {
    const HostRun run = qosoc({"check", "--shape", path});
    EXPECT_EQ(run.exit, 2);
    expectSame(run, qosoc({"check", path}));
  }
}

}  // namespace
}  // namespace shapeOptionTest
