// Native class maps: what the class-map translator watches.
#pragma once

#include "Rok/Rok.h"

namespace Qos {

// The family of a class map or policy map. Other values are legal and are not translated.
enum class MapType : unsigned char { mapQos = 1 };
using enum MapType;

// What a class map matches through. Other values are legal.
enum class ClassMapMatchOption : unsigned char { matchIpAccessGroup = 1, matchIpv6AccessGroup = 2 };
using enum ClassMapMatchOption;

QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(MapType);
QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(ClassMapMatchOption);
inline std::ostream& operator<<(std::ostream& out, MapType v) { return Rok::enumPrint(out, v); }
inline std::ostream& operator<<(std::ostream& out, ClassMapMatchOption v) {
  return Rok::enumPrint(out, v);
}

// One match statement. Only its presence matters.
class ClassMapMatch final : public Rok::PtrInterface {};

// One class map.
class ClassMapConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> name{130};
    static constexpr Rok::Attribute<> type{131};
    static constexpr Rok::Attribute<ClassMapMatchOption> match{132};
  };
  using Matches =
      Rok::HashMap2018<Rok::Hm2018NEI<0x6a09e667u, ClassMapMatchOption, Rok::Ptr<ClassMapMatch>>>;

  ClassMapConfig(const Rok::String& name, MapType type) : type_(type), name_(name) {}

  const Rok::String& name() const { return name_; }
  MapType type() const { return type_; }

  // The match statements, one an option. Notifies: match, with the option.
  const Matches& match() const { return match_; }
  Rok::Ptr<ClassMapMatch> match(ClassMapMatchOption option) const { return match_.get(option); }
  void matchIs(ClassMapMatchOption option, const Rok::Ptr<ClassMapMatch>& match) {
    memberIs(match_, option, match, Attr::match);
  }
  void matchDel(ClassMapMatchOption option) { memberDel(match_, option, Attr::match); }

 private:
  MapType type_;
  Rok::String name_;
  Matches match_;
};

namespace Input {

// The class maps of one map type.
class ClassMapTypeConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> type{130};
    static constexpr Rok::Attribute<Rok::String> cmap{131};
  };
  using ClassMaps =
      Rok::HashMap2018<Rok::Hm2018NEI<0xbb67ae85u, Rok::String, Rok::Ptr<ClassMapConfig>>>;

  explicit ClassMapTypeConfig(MapType type) : type_(type) {}

  MapType type() const { return type_; }

  // The class maps by name. Notifies: cmap, with the name.
  const ClassMaps& cmap() const { return cmap_; }
  Rok::Ptr<ClassMapConfig> cmap(const Rok::String& name) const { return cmap_.get(name); }
  void cmapIs(const Rok::String& name, const Rok::Ptr<ClassMapConfig>& cmap) {
    // The key shares the text of the object's own name. A host that read the two separately would
    // otherwise keep a second text for each class map.
    const bool isOwnName = cmap && cmap->name() == name;
    memberIs(cmap_, isOwnName ? cmap->name() : name, cmap, Attr::cmap);
  }
  void cmapDel(const Rok::String& name) { memberDel(cmap_, name, Attr::cmap); }

 private:
  MapType type_;
  ClassMaps cmap_;
};

}  // namespace Input
}  // namespace Qos
