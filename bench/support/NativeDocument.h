// A native document of any length, as `qosoc` reads it: an edge router with many customers.
//
// A customer has a classifier of ten class maps with an ACL for each term, a policy map that is
// bound to the customer's interface, and eight tx queues there, two of them with ECN settings,
// each with a comment that names a scheduler policy and a queue-management profile. Every hundred
// customers share one of each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Bench {

// Writes a document of about so many bytes, within a part in a hundred, as a machine prints it:
// without white space. Returns how many there are.
std::uint64_t writeNativeDocument(const std::string& path, std::uint64_t bytes);

}  // namespace Bench
