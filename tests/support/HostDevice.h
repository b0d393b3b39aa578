// A native side as the host mounts it, changed by lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/Changes.h"
#include "host/Native.h"
#include "host/NativeReader.h"
#include "tests/support/HostListener.h"

namespace support {

// An operation of a change line, and a line of one operation.
inline std::string hostOperation(const std::string& op, const std::string& path,
                                 const std::string& value = "") {
  return R"({"op": ")" + op + R"(", "path": ")" + path + "\"" +
         (value.empty() ? "" : ", \"value\": " + value) + "}";
}
inline std::string hostLine(const std::string& op, const std::string& path,
                            const std::string& value = "") {
  return "[" + hostOperation(op, path, value) + "]";
}

// A device that is mounted from a document and changed by lines.
struct HostDevice {
  explicit HostDevice(std::string_view document = "{}") { host::readNativeText(document, native); }

  host::Changes::Outcome line(std::string_view patch) { return changes.line(patch); }
  // What is reported of a line of one operation, without "line N: "; empty when nothing is.
  std::string reportOf(const std::string& op, const std::string& path,
                       const std::string& value = "") {
    reports.clear();
    line(hostLine(op, path, value));
    return reports.empty() ? "" : reports.front().substr(reports.front().find(": ") + 2);
  }
  // The notifications of a line of one operation, and of any line.
  std::vector<std::string> heardFrom(const std::string& op, const std::string& path,
                                     const std::string& value = "") {
    return heardFrom(hostLine(op, path, value));
  }
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

// "place: reason" of each fault that leaves `read`, a line each.
template <class Read>
std::string hostFault(const Read& read) {
  const auto text = [](const host::Fault& fault) { return fault.place() + ": " + fault.what(); };
  try {
    read();
  } catch (const host::Fault& fault) {
    return text(fault);
  } catch (const host::Refusal& refusal) {
    std::string lines;
    for (const host::Fault& fault : refusal.faults())
      lines += (lines.empty() ? "" : "\n") + text(fault);
    return lines;
  }
  return "";
}

}  // namespace support
