// A day that went wrong, as files that `qosoc translate` replays.
#pragma once

#include <string>
#include <vector>

#include "tests/days/Day.h"

namespace days {

// Writes into the directory, over what an earlier day left there:
//   native.json        the document that the day begins with
//   changes.jsonl      its change lines, up to the one that went wrong
//   native-after.json  the document behind these
//   told.txt           what differs, and the commands that show it
void writeReproducer(const std::string& directory, const Script& script,
                     const std::vector<Finding>& findings, std::uint32_t otherOrder);

}  // namespace days
