#include "support/Images.h"

#include "host/Feed.h"
#include "support/BytesInUse.h"
#include "support/Check.h"
#include "support/ClassMapDevice.h"

namespace Bench {
namespace {

constexpr std::size_t leavesOfTerm = 4;  // id, config/id, dscp, target-group

void addTerms(const host::Model& model, std::size_t terms) {
  std::size_t added = 0;
  for (std::size_t number = 0; added < terms; ++number) {
    const Rok::String name(classifierName(number));
    const Rok::String id(termName(number));
    const auto classifier = model.classifiers->classifierIs(name);
    if (id.empty()) {  // the number of a placeholder
      classifier->typeIs(QosOc::Classifier::classifierTypeIpv4);
      continue;
    }
    const auto made = classifier->termsIs();
    QosOc::Config::TermContent& term = made->termContent(made->termMade(id));
    term.conditions.emplace().ipv4.dscp = static_cast<unsigned char>(number % 64);
    term.actions.emplace().config.targetGroup = "group-" + std::to_string(number % 8);
    ++added;
  }
}

}  // namespace

double imageBytes(std::size_t terms) {
  const host::Model model;
  addTerms(model, terms);
  host::Feed feed(model);
  const std::uint64_t before = bytesInUse();
  std::size_t leaves = 0;
  {
    const auto subscription = feed.onLeaves(
        {}, [&](const host::LeafChanges& changes) { leaves = changes.updated.size(); });
    feed.commit();
  }
  feed.commit();  // lets the ended observer go
  const std::uint64_t after = bytesInUse();
  require(leaves >= terms * leavesOfTerm, "leaves of the terms");
  return static_cast<double>(after - before) / static_cast<double>(terms * leavesOfTerm);
}

}  // namespace Bench
