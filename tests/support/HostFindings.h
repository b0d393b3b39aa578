// What `check` finds in a document, as texts.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/NativeReader.h"
#include "host/Pointer.h"
#include "host/check/Check.h"

namespace support {

// "KIND POINTER: text", in the order of the places.
inline std::vector<std::string> findings(std::string_view document) {
  const host::Native native;
  host::readNativeText(document, native);
  std::vector<std::string> lines;
  for (const host::Finding& finding : host::findingsOf(native)) {
    lines.push_back(std::string(finding.kind) + ' ' + host::shownPointer(finding.place) + ": " +
                    finding.text);
  }
  return lines;
}

}  // namespace support
