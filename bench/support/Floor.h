// The floor under every event: what no program can leave out. A hash table of records by name is
// there already; an event looks one up and writes it. No objects, no notification, no second table.
//
// The table is std::unordered_map, so that the floor can be measured anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace Bench {

class Floor {
 public:
  using Change = std::string;  // the name of a class map

  explicit Floor(std::size_t classMaps) : Floor(names(classMaps)) {}
  explicit Floor(const std::vector<std::string>& names);

  // The names of all class maps, in a fixed random order.
  static std::vector<std::string> names(std::size_t classMaps);

  void start() {}
  // It has none.
  template <class Visitor>
  void eachOutput(const Visitor& /*visit*/) const {}

  static Change change(std::size_t number);
  void write(const Change& name);

  std::size_t records() const { return records_.size(); }
  // Ends the process unless what was written is right.
  void check() const;

 private:
  // One term: its name, its kind and whether it is there, in one cache line.
  struct Record {
    char id[16];
    std::uint32_t type;
    std::uint32_t writes;
  };
  std::unordered_map<std::string, Record> records_;
};

}  // namespace Bench
