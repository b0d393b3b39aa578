#include "support/Floor.h"

#include <cstring>

#include "support/Check.h"
#include "support/ClassMapDevice.h"

namespace Bench {

Floor::Floor(const std::vector<std::string>& names) {
  for (const std::string& name : names) records_.emplace(name, Record());
}

std::vector<std::string> Floor::names(std::size_t classMaps) {
  Random random(1);
  std::vector<std::string> result;
  result.reserve(classMaps);
  for (const std::size_t number : shuffledNumbers(classMaps, random)) {
    result.push_back(classMapName(number));
  }
  return result;
}

Floor::Change Floor::change(std::size_t number) { return classMapName(number); }

void Floor::write(const Change& name) {
  Record& record = records_.find(name)->second;
  std::memcpy(record.id, name.data() + name.size() - 9, 8);
  record.type = 1;
  ++record.writes;
}

void Floor::check() const {
  for (const auto& [name, record] : records_) {
    require(record.writes == 0 || name.ends_with(std::string(record.id, 8) + "]"), "floor record");
  }
}

}  // namespace Bench
