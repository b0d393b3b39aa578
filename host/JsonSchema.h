// The native document's schema in the standard form, for editors and other validators.
#pragma once

#include <string>

#include "Dorpel/Export.h"

namespace QOS_EXPORT host {

// A JSON Schema, draft 2020-12, of the native document, made from the table by which this program
// reads it. It accepts what the reader takes, and refuses what it refuses for its shape, but for
// what no such schema can see: a member or a key that is there twice, also where a name or a text
// stands beside its number (`qos` and `1`, `7` and `"7"`), and a whole number that is written with
// a fraction or an exponent (`40.0`, `4e1`).
std::string nativeJsonSchema();

}  // namespace host
