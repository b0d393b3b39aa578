// Class maps: they make classifiers and terms exist.
#pragma once

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "Rok/Rok.h"
#include "models/native/AclConfig.h"
#include "models/openconfig/Classifier.h"

namespace QosOc {

// One class map. Makes the classifier, its config and the term exist; never touches a term's
// conditions or actions.
class QOS_EXPORT ClassMapSm final : public Rok::StateMachine<ClassMapSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassMapSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cmapConfig", &Self::cmapConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir}};
  }
  static auto ClassMapSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::ClassMapConfig const> cmapConfig() const { return cmapConfig_.ptr(); }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  // Empty without a config; the type is then the default.
  Velmo::String cmapName() const { return cmapConfig_.read(&Qos::ClassMapConfig::name); }
  Qos::MapType type() const { return cmapConfig_.read(&Qos::ClassMapConfig::type); }

  // A match statement came or went. Either way the classifier is written: only the deletion of the
  // class map removes anything.
  void handleClassMapMatch(Qos::ClassMapMatchOption option);
  // IPv4 for an option that has no family, with a trace of the fault.
  Classifier::Type classifierTypeFromMatchOption(Qos::ClassMapMatchOption option) const;
  // Removes the term, or the classifier when this is its placeholder.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokCmapConfig =
      Rok::Watch<Self, Qos::ClassMapConfig,
                 Rok::On<Qos::ClassMapConfig::Attr::match, &Self::handleClassMapMatch>>;

  ClassMapSm(Rok::In<Qos::ClassMapConfig> cmapConfig,
             Rok::Out<Config::ClassifiersDir> classifierDir);
  auto parts() { return std::tie(cmapConfig_); }
  void traceDecoders() const;

  RokCmapConfig cmapConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  TermPath path_;
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const ClassMapSm& sm);

// The class maps of one map type. Mirrors them and, at start, sweeps the classifiers and terms that
// no class map stands for any more.
class QOS_EXPORT ClassMapTypeSm final : public Rok::StateMachine<ClassMapTypeSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassMapTypeSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"cmapTypeConfig", &Self::cmapTypeConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir}};
  }
  using CmapConfigSmKeyFunktor =
      Rok::KeyFunktor<&ClassMapSm::cmapConfig, &Qos::ClassMapConfig::name>;
  using CmapConfigSm = Rok::Children<ClassMapSm, 0x9b05688cu, CmapConfigSmKeyFunktor>;

  static auto ClassMapTypeSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::Ptr<Qos::Input::ClassMapTypeConfig const> cmapTypeConfig() const {
    return cmapTypeConfig_.ptr();
  }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  // The default without a config.
  Qos::MapType type() const { return cmapTypeConfig_.read(&Qos::Input::ClassMapTypeConfig::type); }

  const CmapConfigSm& cmapConfigSm() const { return cmapConfigSm_; }
  auto cmapConfigSmIs(const auto&... arguments) { return cmapConfigSm_.is(arguments...); }
  void cmapConfigSmDel(const Velmo::String& name) { cmapConfigSm_.del(name); }
  void cmapConfigSmDelAll() { cmapConfigSm_.delAll(); }

  // A class map came or went.
  void handleClassMapConfig(const Velmo::String& name);
  // Has each class map's machine take back what it wrote; all of them stay.
  void doPrepareToDie();
  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;
  using RokCmapTypeConfig =
      Rok::Watch<Self, Qos::Input::ClassMapTypeConfig,
                 Rok::On<Qos::Input::ClassMapTypeConfig::Attr::cmap, &Self::handleClassMapConfig>>;

  ClassMapTypeSm(Rok::In<Qos::Input::ClassMapTypeConfig> cmapTypeConfig,
                 Rok::Out<Config::ClassifiersDir> classifierDir);
  auto parts() { return std::tie(cmapTypeConfig_, cmapConfigSm_); }
  void sweepStaleClassifiers();
  void sweepStaleTerms(Config::Classifier& classifier);
  bool hasClassMap(const Velmo::String& name) const;

  RokCmapTypeConfig cmapTypeConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  CmapConfigSm cmapConfigSm_;
};

// The root: the class maps of the one map type that is translated. It watches nothing: what the
// native side has under mapQos at construction is followed for good.
class QOS_EXPORT ClassMapKivToOcSm final : public Rok::StateMachine<ClassMapKivToOcSm> {
 public:
  static constexpr std::string_view rokTypeName = "ClassMapKivToOcSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"qosAclConfig", &Self::qosAclConfig},
                      Rok::Argument{"classifierDir", &Self::classifierDir}};
  }
  using CmapTypeConfigSmKeyFunktor =
      Rok::KeyFunktor<&ClassMapTypeSm::cmapTypeConfig, &Qos::Input::ClassMapTypeConfig::type>;
  using CmapTypeConfigSm = Rok::Children<ClassMapTypeSm, 0x1f83d9abu, CmapTypeConfigSmKeyFunktor>;

  static auto ClassMapKivToOcSmIs(const auto&... arguments) { return create(arguments...); }

  Rok::In<Qos::Input::AclConfig> qosAclConfig() const { return qosAclConfig_; }
  Rok::Out<Config::ClassifiersDir> classifierDir() const { return classifierDir_; }
  // The one that is translated.
  static constexpr Qos::MapType mapType() { return Qos::mapQos; }

  const CmapTypeConfigSm& cmapTypeConfigSm() const { return cmapTypeConfigSm_; }
  auto cmapTypeConfigSmIs(const auto&... arguments) { return cmapTypeConfigSm_.is(arguments...); }
  void cmapTypeConfigSmDel(Qos::MapType mapType) { cmapTypeConfigSm_.del(mapType); }
  void cmapTypeConfigSmDelAll() { cmapTypeConfigSm_.delAll(); }

  void handleInitialized();

 private:
  friend Rok::StateMachine<Self>;

  ClassMapKivToOcSm(Rok::In<Qos::Input::AclConfig> qosAclConfig,
                    Rok::Out<Config::ClassifiersDir> classifierDir);
  auto parts() { return std::tie(cmapTypeConfigSm_); }

  Rok::Ptr<Qos::Input::AclConfig const> qosAclConfig_;
  Rok::Ptr<Config::ClassifiersDir> classifierDir_;
  CmapTypeConfigSm cmapTypeConfigSm_;
};

// Deaf without qosAclConfig. Requires: classifierDir.
// Throws: MutatorArgNullPointerException "cmapTypeConfig" when there is no mapQos entry.
QOS_EXPORT Rok::Factory<ClassMapKivToOcSm> classMapKivToOcSmFactory;
// Deaf without cmapTypeConfig. Requires: classifierDir.
QOS_EXPORT Rok::Factory<ClassMapTypeSm> classMapTypeSmFactory;
// Deaf without cmapConfig. Requires: classifierDir.
QOS_EXPORT Rok::Factory<ClassMapSm> classMapSmFactory;

}  // namespace QosOc
