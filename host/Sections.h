// The sections of the native document, one for each top-level member. Each is in a file of its
// own below sections/ and is entered in the table of Sections.cpp.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "host/Native.h"
#include "host/Place.h"
#include "host/Schema.h"
#include "host/SchemaReader.h"

namespace host {

struct Section {
  std::string_view name;
  Schema schema;
  // The section's place over the native objects, which outlive it.
  std::function<std::unique_ptr<Place>(const Native& native)> place;
  // Puts the entries of a value into what is mounted. A section that is one object is replaced.
  std::function<void(const Native& native, const Value& value, Writes& writes)> put;
};

// The schema of a whole native document.
const Schema& nativeSchema();

// The place of the whole document.
std::unique_ptr<Place> nativePlace(const Native& native);

// Mounts what is read by the schema of a native document, as it is read. `native` must outlive it.
std::unique_ptr<EntrySink> nativeSink(const Native& native);

}  // namespace host
