// The same output in a data tree of libyang: changing one leaf, building the tree, its memory.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support/BytesInUse.h"
#include "support/Check.h"
#include "support/Child.h"
#include "support/Comparisons.h"
#include "support/LibyangTree.h"
#include "support/Order.h"
#include "support/Seconds.h"
#include "support/Series.h"
#include "support/Sizes.h"

namespace Bench {
namespace {

constexpr std::size_t largestBatch = 45'000;
constexpr std::size_t changesWanted = 20'000;  // in each repetition
constexpr const char* groups[] = {"group-1", "group-2"};

// Seconds of one edit.
struct Edits {
  double byPath[repetitions];
  double held[repetitions];
};

// A term's path and its leaf, as an event finds them: the path was just made, and what is held is
// held.
struct Term {
  std::string path;
  lyd_node* leaf;
};

class EditTimes {
 public:
  explicit EditTimes(std::size_t classMaps) {
    tree_.buildTyped(classMaps, LibyangTree::Terms::whole);
    for (std::string& path : tree_.groupPaths(classMaps)) {
      if (terms_.size() == largestBatch) break;
      terms_.push_back({path, tree_.leaf(path)});
    }
  }

  Edits run() {
    Edits edits{};
    for (double& seconds : edits.byPath) {
      seconds = time([&](const Term& term, const char* group) { tree_.change(term.path, group); });
    }
    for (double& seconds : edits.held) {
      seconds =
          time([](const Term& term, const char* group) { LibyangTree::change(term.leaf, group); });
    }
    return edits;
  }

 private:
  // Seconds of an edit: all terms, in another random order each time, get another group.
  template <class Change>
  double time(const Change& change) {
    double seconds = 0;
    std::size_t edits = 0;
    while (edits < changesWanted) {
      shuffle(terms_, random_);
      const char* group = groups[++rounds_ % 2];
      const double start = threadSeconds();
      for (const Term& term : terms_) change(term, group);
      seconds += threadSeconds() - start;
      edits += terms_.size();
      require(std::string(lyd_get_value(terms_[0].leaf)) == group, "the group of a term");
    }
    return seconds / static_cast<double>(edits);
  }

  LibyangTree tree_;
  std::vector<Term> terms_;
  Random random_{4};
  std::size_t rounds_ = 0;
};

Edits edits(std::size_t classMaps) { return EditTimes(classMaps).run(); }

// Seconds a class map.
template <LibyangTree::Terms terms>
double typedBuild(std::size_t classMaps) {
  LibyangTree tree;
  const double start = threadSeconds();
  tree.buildTyped(classMaps, terms);
  const double seconds = threadSeconds() - start;
  tree.check(classMaps);
  return seconds / static_cast<double>(classMaps);
}

double pathBuild(std::size_t classMaps) {
  LibyangTree tree;
  const std::vector<std::string> paths = tree.groupPaths(classMaps);
  const double start = threadSeconds();
  tree.buildByPath(paths);
  const double seconds = threadSeconds() - start;
  tree.check(classMaps);
  return seconds / static_cast<double>(classMaps);
}

// Bytes a class map.
template <LibyangTree::Terms terms>
double treeBytes(std::size_t classMaps) {
  LibyangTree tree;
  const std::uint64_t empty = bytesInUse();
  tree.buildTyped(classMaps, terms);
  return static_cast<double>(bytesInUse() - empty) / static_cast<double>(classMaps);
}

// ===== Registration

void addEdits(std::size_t size) {
  registerTogether({"libyang edit by path", "libyang edit of a held leaf"}, size, [=] {
    const Edits all = inChild<edits>(size);
    Measured measured;
    measured[at("libyang edit by path", size)].seconds = {all.byPath, all.byPath + repetitions};
    measured[at("libyang edit of a held leaf", size)].seconds = {all.held, all.held + repetitions};
    return measured;
  });
}

void memoryUse(benchmark::State& state) {
  const auto size = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    state.counters["ids bytes"] = inChild<treeBytes<LibyangTree::Terms::ids>>(size);
    state.counters["whole bytes"] = inChild<treeBytes<LibyangTree::Terms::whole>>(size);
  }
}

}  // namespace

double libyangTypedBuild(std::size_t classMaps) {
  return inChild<typedBuild<LibyangTree::Terms::ids>>(classMaps);
}
double libyangWholeBuild(std::size_t classMaps) {
  return inChild<typedBuild<LibyangTree::Terms::whole>>(classMaps);
}

void libyang(Comparisons& comparisons) {
  comparisons.subject("libyang");
  for (const std::size_t size : sizes()) {
    addEdits(size);
    benchmark::RegisterBenchmark("libyang memory", memoryUse)
        ->Arg(static_cast<std::int64_t>(size))
        ->Repetitions(1)
        ->Iterations(1);
    for (const char* edit : {"libyang edit by path", "libyang edit of a held leaf"}) {
      for (const char* event : {"event class-map-match", "event action-change"}) {
        comparisons.add(at(edit, size), at(event, size));
      }
    }
    comparisons.add(at("libyang build, typed", size), at("start-up of a class map", size));
    comparisons.add(at("libyang build of whole terms, typed", size),
                    at("start-up of a term's whole road", size));
    comparisons.add(at("libyang memory", size) + " ids bytes",
                    at("memory of a class map", size) + " output bytes");
    comparisons.add(at("libyang memory", size) + " whole bytes",
                    at("memory of a term's whole road", size) + " output bytes");
  }
  for (const std::size_t size : sizes()) {
    if (size > 100'000 || (isQuick() && size > 10'000)) continue;  // it would take long
    registerInTurns({{"libyang build, by path", &inChild<pathBuild>}}, size, 1);
    comparisons.add(at("libyang build, by path", size),
                    at("start-up of a term's whole road", size));
  }
}

}  // namespace Bench
