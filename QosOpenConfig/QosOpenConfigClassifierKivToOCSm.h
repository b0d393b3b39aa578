// Native classification into OpenConfig classifiers.
//
// A class map takes part only when its name is a derived one: `__yang_[C]_[]` stands for classifier
// C,
// `__yang_[C]_[T]` for its term T. Class maps of other names are mirrored and have no effect.
//
// What wakes what:
//   cmap of Qos::Input::ClassMapTypeConfig    ClassMapTypeSm::handleClassMapConfig(name)
//   match of Qos::ClassMapConfig              ClassMapSm::handleClassMapMatch(option)
#pragma once

#include <iosfwd>
#include <utility>

#include "Rok/Rok.h"
#include "models/native/ClassMap.h"
#include "models/openconfig/Classifier.h"

namespace QosOc {

// ===== Names

// The classifier in the name of a placeholder class map, `__yang_[C]_[]`. Empty for any other name.
QOS_EXPORT Velmo::String classifierNameFromClassName(const Velmo::String& className);

// The classifier and the term in a name `__yang_[C]_[T]`. Two empty names for any other name.
QOS_EXPORT std::pair<Velmo::String, Velmo::String> classifierKeyFromConfigObjName(
    const Velmo::String& name);

// ===== Class maps

// One class map. Makes the classifier, its config and the term exist; never touches a term's
// conditions or actions.
class ClassMapSm final : public Rok::StateMachine<ClassMapSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassMapSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cmapConfig", &ClassMapSm::cmapConfig},
                      Rok::Argument{"classifierDir", &ClassMapSm::classifierDir}};
  }
  static Rok::Ptr<ClassMapSm> ClassMapSmIs(const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
                                           const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  Rok::Ptr<Qos::ClassMapConfig const> cmapConfig() const { return cmapConfig_.ptr(); }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  // Empty without a config.
  Velmo::String cmapName() const;
  Qos::MapType type() const;

  // A match statement came or went. Either way the classifier is written: only the deletion of the
  // class map removes anything.
  void handleClassMapMatch(Qos::ClassMapMatchOption option);
  Classifier::Type classifierTypeFromMatchOption(Qos::ClassMapMatchOption option) const;
  // Removes the term, or the classifier when this is its placeholder.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<ClassMapSm>;
  using RokCmapConfig =
      Rok::Watch<ClassMapSm, Qos::ClassMapConfig,
                 Rok::On<Qos::ClassMapConfig::Attr::match, &ClassMapSm::handleClassMapMatch>>;

  ClassMapSm(const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
             const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(cmapConfig_); }
  void makeTerm(Config::Terms& terms) const;
  void traceDecoders() const;

  RokCmapConfig cmapConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  // What the class map's name decodes to. It never changes, so it is decoded once: both empty for a
  // class map that is not one of ours, the term alone for a placeholder.
  Velmo::String classifierName_;
  Velmo::String termId_;
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const ClassMapSm& sm);

// The class maps of one map type. Mirrors them and, at start, sweeps the classifiers and terms that
// no class map stands for any more.
class ClassMapTypeSm final : public Rok::StateMachine<ClassMapTypeSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassMapTypeSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cmapTypeConfig", &ClassMapTypeSm::cmapTypeConfig},
                      Rok::Argument{"classifierDir", &ClassMapTypeSm::classifierDir}};
  }
  using CmapConfigSmKeyFunktor =
      Rok::KeyFunktor<&ClassMapSm::cmapConfig, &Qos::ClassMapConfig::name>;
  using CmapConfigSm = Rok::Children<ClassMapSm, 0x9b05688cu, CmapConfigSmKeyFunktor>;

  static Rok::Ptr<ClassMapTypeSm> ClassMapTypeSmIs(
      const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  Rok::Ptr<Qos::Input::ClassMapTypeConfig const> cmapTypeConfig() const {
    return cmapTypeConfig_.ptr();
  }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  Qos::MapType type() const;

  const CmapConfigSm& cmapConfigSm() const { return cmapConfigSm_; }
  Rok::Ptr<ClassMapSm> cmapConfigSmIs(const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
                                      const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
    return cmapConfigSm_.is(cmapConfig, classifierDir);
  }
  void cmapConfigSmDel(const Velmo::String& name) { cmapConfigSm_.del(name); }
  void cmapConfigSmDelAll() { cmapConfigSm_.delAll(); }

  // A class map came or went.
  void handleClassMapConfig(const Velmo::String& name);
  // Has each class map's machine take back what it wrote; all of them stay.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<ClassMapTypeSm>;
  using RokCmapTypeConfig = Rok::Watch<
      ClassMapTypeSm, Qos::Input::ClassMapTypeConfig,
      Rok::On<Qos::Input::ClassMapTypeConfig::Attr::cmap, &ClassMapTypeSm::handleClassMapConfig>>;

  ClassMapTypeSm(const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
                 const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(cmapTypeConfig_, cmapConfigSm_); }
  void sweepStaleClassifiers();
  void sweepStaleTerms(const Velmo::String& classifierName);
  bool hasClassMap(const Velmo::String& name) const;

  RokCmapTypeConfig cmapTypeConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  CmapConfigSm cmapConfigSm_;
};

// The root: the class maps of the one map type that is translated. It watches nothing: what the
// native side has under mapQos at construction is what it follows all its life.
class ClassMapKivToOcSm final : public Rok::StateMachine<ClassMapKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassMapKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"qosAclConfig", &ClassMapKivToOcSm::qosAclConfig},
                      Rok::Argument{"classifierDir", &ClassMapKivToOcSm::classifierDir}};
  }
  using CmapTypeConfigSmKeyFunktor =
      Rok::KeyFunktor<&ClassMapTypeSm::cmapTypeConfig, &Qos::Input::ClassMapTypeConfig::type>;
  using CmapTypeConfigSm = Rok::Children<ClassMapTypeSm, 0x1f83d9abu, CmapTypeConfigSmKeyFunktor>;

  // Throws: MutatorArgNullPointerException "cmapTypeConfig" when there is no mapQos entry.
  static Rok::Ptr<ClassMapKivToOcSm> ClassMapKivToOcSmIs(
      const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

  const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig() const { return qosAclConfig_; }
  const Rok::Ptr<Config::ClassifiersDir>& classifierDir() const { return classifierDir_; }
  static constexpr Qos::MapType mapType() { return Qos::mapQos; }

  const CmapTypeConfigSm& cmapTypeConfigSm() const { return cmapTypeConfigSm_; }
  Rok::Ptr<ClassMapTypeSm> cmapTypeConfigSmIs(
      const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
      const Rok::Ptr<Config::ClassifiersDir>& classifierDir) {
    return cmapTypeConfigSm_.is(cmapTypeConfig, classifierDir);
  }
  void cmapTypeConfigSmDel(Qos::MapType mapType) { cmapTypeConfigSm_.del(mapType); }
  void cmapTypeConfigSmDelAll() { cmapTypeConfigSm_.delAll(); }

  void handleInitialized();

 private:
  friend Rok::StateMachine<ClassMapKivToOcSm>;

  ClassMapKivToOcSm(const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
                    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
  auto parts() { return std::tie(cmapTypeConfigSm_); }

  Rok::Ptr<Qos::Input::AclConfig const> qosAclConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  CmapTypeConfigSm cmapTypeConfigSm_;
};

// ===== Factories. Each returns when its whole tree is built and the output is in line.

QOS_EXPORT Rok::Ptr<ClassMapKivToOcSm> classMapKivToOcSmFactory(
    const Rok::Ptr<Qos::Input::AclConfig const>& qosAclConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
QOS_EXPORT Rok::Ptr<ClassMapTypeSm> classMapTypeSmFactory(
    const Rok::Ptr<Qos::Input::ClassMapTypeConfig const>& cmapTypeConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);
QOS_EXPORT Rok::Ptr<ClassMapSm> classMapSmFactory(
    const Rok::Ptr<Qos::ClassMapConfig const>& cmapConfig,
    const Rok::Ptr<Config::ClassifiersDir>& classifierDir);

}  // namespace QosOc
