// The OpenConfig interface records.
#include "models/openconfig/Interface.h"

#include <gtest/gtest.h>

namespace QosOc::Config::interfaceTest {
namespace {

using QosOc::Classifier::classifierTypeIpv4;
using QosOc::Classifier::classifierTypeIpv6;

InterfaceInputClassifier inputClassifier(QosOc::Classifier::Type type, const Rok::String& name) {
  InterfaceInputClassifier classifier(type);
  classifier.config = {name, type};
  return classifier;
}

// ===== Input

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

// ===== Interfaces

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
