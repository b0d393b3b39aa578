// Records by their fields: how values print, and what writers in place can reach.
#include "models/openconfig/Fields.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <type_traits>

#include "models/openconfig/Classifier.h"
#include "models/openconfig/ForwardingGroup.h"
#include "models/openconfig/Interface.h"
#include "models/openconfig/Pfc.h"
#include "models/openconfig/Queue.h"
#include "models/openconfig/SchedulerPolicy.h"

namespace QosOc::Config::fieldsTest {
namespace {

template <class T>
std::string printed(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

// ===== Printing

struct Sample {
  bool flag = false;
  unsigned char byte = 0;
  double real = 0;
  Rok::Optional<unsigned char> maybe;
  Velmo::ByteVector bytes;
  static constexpr auto fields() {
    return std::tuple{Field{"flag", &Sample::flag}, Field{"byte", &Sample::byte},
                      Field{"real", &Sample::real}, Field{"maybe", &Sample::maybe},
                      Field{"bytes", &Sample::bytes}};
  }
};

TEST(Fields, PrintInTheirOrderEachByItsType) {
  EXPECT_EQ(printed(Sample()), "{flag false, byte 0, real 0, maybe (absent), bytes []}");
  EXPECT_EQ(printed(Sample{true, 65, 1.5, static_cast<unsigned char>(66), {7, 67}}),
            "{flag true, byte 65, real 1.5, maybe 66, bytes [7, 67]}");
}

TEST(Fields, OfARecordWithoutAnyPrintAsBraces) {
  struct Nothing {
    static constexpr auto fields() { return std::tuple<>(); }
  };
  EXPECT_EQ(printed(Nothing()), "{}");
}

TEST(Fields, ARecordThatOnlyWrapsAnotherPrintsLikeIt) {
  EXPECT_EQ(printed(TermActions{{"gold"}}), printed(TermActionsConfig{"gold"}));
}

// ===== Writing in place

// Another record than the one that is there, given to a writer as a whole.
template <class Record>
constexpr bool reachesTheKey = std::is_base_of_v<Record, typename Record::Content>;

TEST(Records, AWriterInPlaceCannotReachTheKey) {
  EXPECT_FALSE(reachesTheKey<Term>);
  EXPECT_FALSE(reachesTheKey<Queue>);
  EXPECT_FALSE(reachesTheKey<QueueManagementProfile>);
  EXPECT_FALSE(reachesTheKey<InterfaceOutputQueue>);

  const auto queues = Rok::make<QueuesDir>();
  Queue other("b");
  other.config.name = "voice";
  queues->qContentIs("a") = other;
  EXPECT_EQ(queues->q("a").name, "a");
  EXPECT_EQ(queues->q("a").config.name, "voice") << "all that isn't key is taken";
  EXPECT_EQ(queues->q("b"), Queue());
}

TEST(Records, AWriterInPlaceWritesToWhatWasFound) {
  const auto terms = Rok::make<Terms>();
  terms->termIs(Term("voice"));
  const Term* found = terms->term().find("voice");
  terms->termContent(*found).actions = TermActions{{"gold"}};
  EXPECT_EQ(found->actions->config.targetGroup, "gold");

  const auto entries = Rok::make<InterfaceOutputQueues>("");
  entries->qContentIs("q").config.name = "q";
  entries->qContent(*entries->q().find("q")).config.queueManagementProfile = "red";
  EXPECT_EQ(entries->q("q").config, (InterfaceOutputQueueConfig{"q", "red"}));
}

TEST(Records, ATermThatIsMadeHasItsIdInBothPlacesAndOneThatIsThereStays) {
  const auto terms = Rok::make<Terms>();
  EXPECT_EQ(terms->termMade("voice").configId, "voice");
  terms->termContent(*terms->term().find("voice")).configId = "";
  EXPECT_EQ(terms->termMade("voice").configId, "");
  EXPECT_EQ(terms->term().members(), 1u);
}

}  // namespace
}  // namespace QosOc::Config::fieldsTest
