// Another user of RapidJSON in the program, who has no assertions.
#pragma once

#include <cstdint>
#include <string>

namespace foreign {

// What RapidJSON without assertions makes of a text as a number: anything, but it returns.
std::uint64_t numberOf(const std::string& json);
// Whether a text, read as an object, has members; the same holds.
bool hasMember(const std::string& json, const char* name);

}  // namespace foreign
