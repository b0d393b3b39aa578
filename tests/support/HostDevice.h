// A native side as the host mounts it, with a listener that writes down every notification.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Changes.h"
#include "host/Native.h"
#include "host/Sections.h"

namespace support {

// Watches one native object and says what it hears.
class HostNotifiee final : public Rok::PtrInterface::NotifieeConst {
 public:
  using Hear = std::function<void(Rok::AttributeId, const void*)>;
  HostNotifiee(const Rok::PtrInterface& notifier, Hear hear) : hear_(std::move(hear)) {
    notifierIs(&notifier);
    hasNotificationActiveIs(true);
    isRegisteredNotifieeIs(true);
  }
  ~HostNotifiee() override { isRegisteredNotifieeIs(false); }
  void onAttribute(Rok::AttributeId id, const void* key) override { hear_(id, key); }

 private:
  Hear hear_;
};

// Writes down the notifications of all class maps, also of those that come later:
// "cmapType 7", "cmap 1/VOICE", "match VOICE 2".
class HostListener {
 public:
  explicit HostListener(const host::Native& native) {
    watch(*native.aclConfig, [this, config = native.aclConfig](const void* key) {
      const auto type = *static_cast<const Qos::MapType*>(key);
      heard_.push_back("cmapType " + number(type));
      if (const auto* entry = config->cmapType().find(type)) watchType(*entry);
    });
    for (auto i = native.aclConfig->cmapType().iterator(); i; ++i) {
      watchType(i.currNodeNonStale()->value());
    }
  }

  // What was heard since the last call.
  std::vector<std::string> heard() { return std::exchange(heard_, {}); }

 private:
  template <class Enum>
  static std::string number(Enum v) {
    return std::to_string(static_cast<unsigned>(v));
  }
  void watch(const Rok::PtrInterface& object, std::function<void(const void*)> hear) {
    notifiees_.push_back(Rok::make<HostNotifiee>(
        object, [hear = std::move(hear)](Rok::AttributeId, const void* key) { hear(key); }));
  }
  void watchType(const Rok::Ptr<Qos::Input::ClassMapTypeConfig>& type) {
    watch(*type, [this, raw = type.get()](const void* key) {
      const Rok::String name = *static_cast<const Rok::String*>(key);
      heard_.push_back("cmap " + number(raw->type()) + "/" + std::string(name));
      if (const auto* entry = raw->cmap().find(name)) watchClassMap(*entry);
    });
    for (auto i = type->cmap().iterator(); i; ++i) watchClassMap(i.currNodeNonStale()->value());
  }
  void watchClassMap(const Rok::Ptr<Qos::ClassMapConfig>& classMap) {
    watch(*classMap, [this, name = std::string(classMap->name())](const void* key) {
      const auto option = *static_cast<const Qos::ClassMapMatchOption*>(key);
      heard_.push_back("match " + name + " " + number(option));
    });
  }

  std::vector<Rok::Ptr<HostNotifiee>> notifiees_;
  std::vector<std::string> heard_;
};

// A device that is mounted from a document and changed by lines.
struct HostDevice {
  explicit HostDevice(std::string_view document = "{}") { host::readNativeText(document, native); }

  host::Changes::Outcome line(std::string_view patch) { return changes.line(patch); }
  // The notifications of one line.
  std::vector<std::string> heardFrom(std::string_view patch) {
    HostListener listener(native);
    changes.line(patch);
    return listener.heard();
  }

  Rok::Ptr<Qos::Input::ClassMapTypeConfig> classMaps(unsigned char type = 1) const {
    const auto* found = native.aclConfig->cmapType().find(Qos::MapType{type});
    return found != nullptr ? *found : nullptr;
  }
  Rok::Ptr<Qos::ClassMapConfig> classMap(const Rok::String& name, unsigned char type = 1) const {
    const auto* found = classMaps(type)->cmap().find(name);
    return found != nullptr ? *found : nullptr;
  }
  // The class maps of a type with their options, sorted: "VOICE 1 2".
  std::vector<std::string> contents(unsigned char type = 1) const {
    std::vector<std::string> result;
    for (auto i = classMaps(type)->cmap().iterator(); i; ++i) {
      result.push_back(described(*i.currNodeNonStale()->value()));
    }
    std::sort(result.begin(), result.end());
    return result;
  }
  static std::string described(const Qos::ClassMapConfig& classMap) {
    std::vector<unsigned> options;
    for (auto i = classMap.match().iterator(); i; ++i) {
      options.push_back(static_cast<unsigned>(i.key()));
    }
    std::sort(options.begin(), options.end());
    std::string text{std::string_view(classMap.name())};
    for (const unsigned option : options) text += ' ' + std::to_string(option);
    return text;
  }

  host::Native native;
  std::vector<std::string> reports;
  host::Changes changes{native, [this](const std::string& line) { reports.push_back(line); }};
};

// "place: reason" of the fault that leaves `read`, or "" when there is none.
template <class Read>
std::string hostFault(const Read& read) {
  try {
    read();
  } catch (const host::Fault& fault) {
    return fault.place() + ": " + fault.what();
  }
  return "";
}

}  // namespace support
