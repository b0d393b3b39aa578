#include "Rok/Sassert.h"

#include <csignal>

namespace sassertTest {
namespace {

TEST(SassertDeathTest, ReportsTheExpressionAndTheMessageAndAborts) {
  EXPECT_EXIT(Rok::SassertHelper("type <= 1") << "Unexpected ACL type " << 7,
              testing::KilledBySignal(SIGABRT),
              "^assertion failed: type <= 1: Unexpected ACL type 7\n");
}

TEST(SassertDeathTest, WithoutAMessageReportsTheExpressionAlone) {
  EXPECT_EXIT(Rok::SassertHelper("iter_"), testing::KilledBySignal(SIGABRT),
              "^assertion failed: iter_\n");
}

TEST(SassertDeathTest, AnAssertionWithoutAConditionOfItsOwnShowsAFixedExpression) {
  EXPECT_STREQ(Rok::falseExpr, "\"false\" == nullptr");
  EXPECT_EXIT(Rok::SassertHelper(Rok::falseExpr) << "lost", testing::KilledBySignal(SIGABRT),
              "^assertion failed: \"false\" == nullptr: lost\n");
}

TEST(SassertDeathTest, NoHandlerCatchesIt) {
  EXPECT_EXIT(
      {
        try {
          Rok::SassertHelper("held") << "no way back";
        } catch (...) {
          std::exit(0);
        }
      },
      testing::KilledBySignal(SIGABRT), "^assertion failed: held: no way back\n");
}

}  // namespace
}  // namespace sassertTest
