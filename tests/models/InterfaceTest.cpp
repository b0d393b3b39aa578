// The OpenConfig interface records.
#include "models/openconfig/Interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace QosOc::Config::interfaceTest {
namespace {

using QosOc::Classifier::classifierTypeIpv4;
using QosOc::Classifier::classifierTypeIpv6;

template <class T>
std::string printed(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

InterfaceInputClassifier inputClassifier(QosOc::Classifier::Type type, const Rok::String& name) {
  InterfaceInputClassifier classifier(type);
  classifier.config = {name, type};
  return classifier;
}

// ===== Input

TEST(InterfaceInputClassifier, IsTrueWhenItDiffersFromTheDefaultInAnyField) {
  EXPECT_FALSE(InterfaceInputClassifier());
  EXPECT_FALSE(InterfaceInputClassifier(classifierTypeIpv4)) << "the default's own type";
  EXPECT_TRUE(InterfaceInputClassifier(classifierTypeIpv6));
  EXPECT_TRUE(inputClassifier(classifierTypeIpv4, "a"));
  InterfaceInputClassifier classifier;
  classifier.config.type = classifierTypeIpv6;
  EXPECT_TRUE(classifier);
}

TEST(InterfaceInputClassifier, EqualityComparesAllFields) {
  const auto classifier = inputClassifier(classifierTypeIpv4, "a");
  EXPECT_EQ(classifier, inputClassifier(classifierTypeIpv4, "a"));
  EXPECT_NE(classifier, inputClassifier(classifierTypeIpv4, "b"));
  auto other = classifier;
  other.type = classifierTypeIpv6;
  EXPECT_NE(classifier, other);
  other = classifier;
  other.config.type = classifierTypeIpv6;
  EXPECT_NE(classifier, other);
}

TEST(InterfaceInputClassifier, PrintsAllItHolds) {
  EXPECT_EQ(printed(inputClassifier(classifierTypeIpv6, "a")),
            "{type classifierTypeIpv6, config {name a, type classifierTypeIpv6}}");
}

TEST(InterfaceInputClassifiers, AMissingEntryReadsAsTheDefaultWhateverTheType) {
  const auto classifiers = Rok::make<InterfaceInputClassifiers>();
  EXPECT_EQ(classifiers->classifier(classifierTypeIpv4), InterfaceInputClassifier());
  EXPECT_EQ(classifiers->classifier(classifierTypeIpv6), InterfaceInputClassifier());
}

TEST(InterfaceInputClassifiers, HoldOneEntryForEachTypeAndReplaceItWhole) {
  const auto classifiers = Rok::make<InterfaceInputClassifiers>();
  classifiers->classifierIs(inputClassifier(classifierTypeIpv4, "a"));
  classifiers->classifierIs(inputClassifier(classifierTypeIpv6, "b"));
  classifiers->classifierIs(inputClassifier(classifierTypeIpv4, "c"));
  EXPECT_EQ(classifiers->classifier().members(), 2u);
  EXPECT_EQ(classifiers->classifier(classifierTypeIpv4), inputClassifier(classifierTypeIpv4, "c"));
  classifiers->classifierDel(classifierTypeIpv4);
  classifiers->classifierDel(classifierTypeIpv4);
  EXPECT_FALSE(classifiers->classifier(classifierTypeIpv4));
  EXPECT_EQ(classifiers->classifier(classifierTypeIpv6), inputClassifier(classifierTypeIpv6, "b"));
}

TEST(InterfaceInput, ClassifiersIsCreatesOnce) {
  const auto input = Rok::make<InterfaceInput>();
  EXPECT_EQ(input->classifiers(), nullptr);
  const auto classifiers = input->classifiersIs();
  ASSERT_NE(classifiers, nullptr);
  EXPECT_EQ(input->classifiersIs(), classifiers);
  EXPECT_EQ(input->classifiers(), classifiers);
}

// ===== Output

TEST(InterfaceOutputQueue, IsTheDefaultUntilItHoldsSomething) {
  EXPECT_FALSE(InterfaceOutputQueue());
  EXPECT_FALSE(InterfaceOutputQueue(""));
  EXPECT_TRUE(InterfaceOutputQueue("q"));
  for (const auto field :
       {&InterfaceOutputQueueConfig::name, &InterfaceOutputQueueConfig::queueManagementProfile}) {
    InterfaceOutputQueue queue;
    queue.config.*field = "x";
    EXPECT_TRUE(queue);
    EXPECT_NE(queue, InterfaceOutputQueue());
  }
}

TEST(InterfaceOutputQueue, PrintsAllItHolds) {
  InterfaceOutputQueue queue("q");
  queue.config = {"q", "gold"};
  EXPECT_EQ(printed(queue), "{name q, config {name q, queueManagementProfile gold}}");
}

TEST(InterfaceOutputQueues, AWriteReplacesTheWholeRecordAndAMissingOneReadsAsTheDefault) {
  const auto queues = Rok::make<InterfaceOutputQueues>("");
  EXPECT_EQ(queues->name(), "");
  EXPECT_EQ(queues->q("q"), InterfaceOutputQueue());
  InterfaceOutputQueue queue("q");
  queue.config = {"q", "gold"};
  queues->qIs(queue);
  EXPECT_EQ(queues->q("q"), queue);
  queues->qIs(InterfaceOutputQueue("q"));
  EXPECT_EQ(queues->q("q"), InterfaceOutputQueue("q"));
  EXPECT_EQ(queues->q().members(), 1u);
}

TEST(InterfaceOutput, HasNothingAtFirst) {
  const auto output = Rok::make<InterfaceOutput>();
  EXPECT_EQ(output->queues(), nullptr);
  EXPECT_FALSE(output->schedulerPolicy().has_value());
  EXPECT_FALSE(output->pfc());
}

TEST(InterfaceOutput, QueuesIsCreatesOnceAndGetsWhatIsThereWhateverTheName) {
  const auto output = Rok::make<InterfaceOutput>();
  const auto queues = output->queuesIs("");
  EXPECT_EQ(output->queuesIs("other"), queues);
  EXPECT_EQ(output->queues()->name(), "");
}

TEST(InterfaceOutput, TheSchedulerPolicyIsSetFilledAndClearedEmpty) {
  const auto output = Rok::make<InterfaceOutput>();
  output->schedulerPolicyIs(InterfaceOutputSchedulerPolicy{{"wan"}});
  ASSERT_TRUE(output->schedulerPolicy().has_value());
  EXPECT_EQ(output->schedulerPolicy()->config.name, "wan");
  output->schedulerPolicyIs(InterfaceOutput::SchedulerPolicy());
  EXPECT_FALSE(output->schedulerPolicy().has_value());
}

TEST(InterfaceOutput, PfcIsReplacedWhole) {
  const auto output = Rok::make<InterfaceOutput>();
  output->pfcIs({"18"});
  EXPECT_EQ(output->pfc(), IntfPfc{"18"});
  EXPECT_TRUE(output->pfc());
  output->pfcIs(IntfPfc());
  EXPECT_FALSE(output->pfc());
}

TEST(InterfaceOutput, ItsRecordsCompareAndPrintAllTheyHold) {
  EXPECT_FALSE(InterfaceOutputSchedulerPolicy());
  EXPECT_TRUE((InterfaceOutputSchedulerPolicy{{"wan"}}));
  EXPECT_NE((InterfaceOutputSchedulerPolicy{{"wan"}}), (InterfaceOutputSchedulerPolicy{{"lan"}}));
  EXPECT_EQ(printed(InterfaceOutputSchedulerPolicy{{"wan"}}), "{config {name wan}}");
  EXPECT_FALSE(InterfaceOutputSchedulerPolicyConfig());
  EXPECT_TRUE(InterfaceOutputSchedulerPolicyConfig{"wan"});
  EXPECT_EQ(printed(InterfaceOutputSchedulerPolicyConfig{"wan"}), "{name wan}");
  EXPECT_NE(IntfPfc{"1"}, IntfPfc{"2"});
  EXPECT_EQ(printed(IntfPfc{"18"}), "{priorities 18}");
}

// ===== Interfaces

TEST(InterfaceConfig, IsDefaultUntilItHoldsAnId) {
  EXPECT_FALSE(InterfaceConfig());
  EXPECT_TRUE((InterfaceConfig{"Ethernet1"}));
  EXPECT_NE((InterfaceConfig{"Ethernet1"}), (InterfaceConfig{"Ethernet2"}));
}

TEST(Interface, HasItsIdAndNothingElseAtFirst) {
  const auto interface = Rok::make<Interface>("Ethernet1");
  EXPECT_EQ(interface->interfaceId(), "Ethernet1");
  EXPECT_FALSE(interface->config()) << "the config is its writers' affair";
  EXPECT_EQ(interface->input(), nullptr);
  EXPECT_EQ(interface->output(), nullptr);
}

TEST(Interface, InputAndOutputAreCreatedOnceAndRemovedApart) {
  const auto interface = Rok::make<Interface>("Ethernet1");
  const auto input = interface->inputIs();
  const auto output = interface->outputIs();
  EXPECT_EQ(interface->inputIs(), input);
  EXPECT_EQ(interface->outputIs(), output);
  interface->inputDel();
  EXPECT_EQ(interface->input(), nullptr);
  EXPECT_EQ(interface->output(), output);
  EXPECT_NE(interface->inputIs(), input);
  interface->outputDel();
  interface->outputDel();
  EXPECT_EQ(interface->output(), nullptr);
}

TEST(InterfacesDir, InterfaceIsKeepsWhatIsThereAndALookupNeverCreates) {
  const auto dir = Rok::make<InterfacesDir>();
  EXPECT_EQ(dir->interface("Ethernet1"), nullptr);
  EXPECT_EQ(dir->interface().members(), 0u);
  const auto interface = dir->interfaceIs("Ethernet1");
  interface->configIs({"Ethernet1"});
  const auto input = interface->inputIs();
  EXPECT_EQ(dir->interfaceIs("Ethernet1"), interface);
  EXPECT_EQ(dir->interface("Ethernet1")->input(), input);
  EXPECT_EQ(dir->interface("Ethernet1")->config().interfaceId, "Ethernet1");
  EXPECT_EQ(dir->interface().members(), 1u);
}

}  // namespace
}  // namespace QosOc::Config::interfaceTest
