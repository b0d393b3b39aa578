#include "support/ClassMapDevice.h"

#include <cstdio>

#include "support/Check.h"

namespace Bench {
namespace {

constexpr std::size_t classMapsOfClassifier = 10;

std::string numbered(const char* format, std::size_t number) {
  char text[40];
  std::snprintf(text, sizeof(text), format, number);
  return text;
}

}  // namespace

std::string classifierName(std::size_t number) {
  return numbered("edge-in-%05zu", number / classMapsOfClassifier);
}

std::string termName(std::size_t number) {
  const std::size_t term = number % classMapsOfClassifier;
  return term == 0 ? "" : numbered("voice-%02zu", term);
}

std::string classMapName(std::size_t number) {
  return "__yang_[" + classifierName(number) + "]_[" + termName(number) + "]";
}

std::vector<std::size_t> shuffledTerms(std::size_t classMaps, Random& random) {
  std::vector<std::size_t> terms = shuffledNumbers(classMaps, random);
  std::erase_if(terms, [](std::size_t number) { return number % classMapsOfClassifier == 0; });
  return terms;
}

ClassMapDevice::ClassMapDevice(std::size_t classMaps)
    : size_(classMaps),
      native_(Rok::make<Qos::Input::AclConfig>()),
      classMaps_(Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos)) {
  native_->cmapTypeIs(Qos::mapQos, classMaps_);
  Random random(1);
  for (const std::size_t number : shuffledNumbers(size_, random)) {
    const Change arrival = change(number);
    add(arrival);
    match(arrival);
  }
}

void ClassMapDevice::start() {
  output_ = Rok::make<QosOc::Config::ClassifiersDir>();
  root_ = QosOc::classMapKivToOcSmFactory(native_, output_);
}

ClassMapDevice::Change ClassMapDevice::change(std::size_t number) {
  const Velmo::String name(classMapName(number));
  return {number, Velmo::String(std::string_view(name)),
          Rok::make<Qos::ClassMapConfig>(name, Qos::mapQos), Rok::make<Qos::ClassMapMatch>()};
}

void ClassMapDevice::check() const {
  require(output_->classifier().members() == size_ / classMapsOfClassifier,
          "number of classifiers");
  for (std::size_t number = 0; number < size_; ++number) checkClassMap(number);
}

void ClassMapDevice::checkClassMap(std::size_t number) const {
  const auto classifier = output_->classifier(classifierName(number));
  require(classifier && classifier->config().name == classifier->name() &&
              classifier->config().type == QosOc::Classifier::classifierTypeIpv4,
          "config of the classifier of " + classMapName(number));
  require(classifier->terms() && classifier->terms()->term().members() == classMapsOfClassifier - 1,
          "number of terms beside " + classMapName(number));
  const std::string term = termName(number);
  if (term.empty()) return;
  require(classifier->terms()->term(term).configId == term, "term of " + classMapName(number));
}

}  // namespace Bench
