// A device with class maps, the translator that follows them, and the classifiers that it writes.
//
// Ten class maps make one classifier: its placeholder and nine terms. Events happen to terms, which
// are nine tenths of a configuration; placeholders stay.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "support/Order.h"

namespace Bench {

// The name of class map `number`: `__yang_[edge-in-00042]_[voice-07]`.
std::string classMapName(std::size_t number);
// Its parts. The term is empty for every tenth class map, the placeholder.
std::string classifierName(std::size_t number);
std::string termName(std::size_t number);

// The numbers of all terms of a device of `classMaps` class maps, in a fixed random order.
std::vector<std::size_t> shuffledTerms(std::size_t classMaps, Random& random);

class ClassMapDevice {
 public:
  // What a host has at hand when an event arrives. It was just read from a message, so the name
  // shares its text with no other string and its hash has not been computed.
  struct Change {
    std::size_t number;
    Velmo::String name;
    Rok::Ptr<Qos::ClassMapConfig> classMap;  // without a match
    Rok::Ptr<Qos::ClassMapMatch> match;
  };

  // The native side only, all class maps with their match.
  explicit ClassMapDevice(std::size_t classMaps);

  // The translator and its output come, and go.
  void start();
  void machinesDel() { root_ = nullptr; }
  void outputDel() { output_ = nullptr; }

  // The directories that the translators write, once they are there.
  template <class Visitor>
  void eachOutput(const Visitor& visit) const {
    visit(output_);
  }

  static Change change(std::size_t number);

  // The events, from the native write on: finding the object to change is the host's part.
  void add(const Change& change) { classMaps_->cmapIs(change.name, change.classMap); }
  void match(const Change& change) {
    change.classMap->matchIs(Qos::matchIpAccessGroup, change.match);
  }
  void remove(const Change& change) { classMaps_->cmapDel(change.name); }

  // Ends the process unless the output has what all class maps stand for, and no more.
  void check() const;

 private:
  void checkClassMap(std::size_t number) const;

  std::size_t size_;
  Rok::Ptr<Qos::Input::AclConfig> native_;
  Rok::Ptr<Qos::Input::ClassMapTypeConfig> classMaps_;
  Rok::Ptr<QosOc::Config::ClassifiersDir> output_;
  Rok::Ptr<QosOc::ClassMapKivToOcSm> root_;
};

}  // namespace Bench
