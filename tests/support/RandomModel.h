// Output models of random content: every kind of record, names of all sorts, numbers of all sizes,
// and what the document leaves out.
#pragma once

#include <random>
#include <string>
#include <string_view>

#include "host/JsonWriter.h"
#include "host/Model.h"
#include "host/ModelReader.h"

namespace support {

class RandomModel {
 public:
  explicit RandomModel(unsigned seed) : random_(seed) {
    out_.beginObject();
    directory("classifiers", [&] { classifier(); });
    directory("forwarding-groups", [&] { texts({"name", "output-queue"}); });
    directory("interfaces", [&] { interface(); });
    member("pfc", [&] { member("watchdog", [&] { watchdog(); }); });
    directory("queue-management-profiles", [&] { profile(); });
    directory("queues", [&] { queue(); });
    directory("scheduler-policies", [&] {
      directory(
          "schedulers", [&] { scheduler(); }, true);
    });
    out_.endObject();
    host::readModelText(out_.take(), model);
  }

  host::Model model;

 private:
  bool flag() { return random_() % 2 == 0; }
  std::uint64_t below(std::uint64_t end) { return random_() % end; }
  // Of as many bits as any.
  std::uint64_t number(unsigned bits) {
    const std::uint64_t most = bits == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
    return std::uniform_int_distribution<std::uint64_t>(0, most)(random_) >> below(bits);
  }
  std::string name() {
    static const std::string all[] = {
        "q",      "edge-in", "a]b\\", "a/b[c=d]", "\xc3\xa4\xe2\x82\xac",
        "x\"y\n", "\x01",    "",      "*",        std::string(200, 'n')};
    return flag() ? all[below(std::size(all))] : std::to_string(below(1000));
  }

  template <class Act>
  void member(std::string_view key, const Act& act) {
    out_.key(key);
    out_.beginObject();
    act();
    out_.endObject();
  }
  // Entries under different keys, which the reader demands.
  template <class Act>
  void directory(std::string_view key, const Act& entry, bool isNumbered = false) {
    member(key, [&] {
      for (std::uint64_t i = below(4); i > 0; --i) {
        const std::string unique = std::to_string(i);
        member(isNumbered ? std::to_string(1 + number(28)) + unique : name() + unique, entry);
      }
    });
  }
  void texts(std::initializer_list<std::string_view> keys) {
    for (const std::string_view key : keys) {
      if (!flag()) continue;
      out_.key(key);
      out_.text(name());
    }
  }
  void numbers(std::initializer_list<std::string_view> keys, unsigned bits) {
    for (const std::string_view key : keys) {
      if (!flag()) continue;
      out_.key(key);
      out_.number(number(bits));
    }
  }
  void percents(std::initializer_list<std::string_view> keys) {
    for (const std::string_view key : keys) {
      if (!flag()) continue;
      out_.key(key);
      out_.number(below(101));
    }
  }
  void flags(std::initializer_list<std::string_view> keys) {
    for (const std::string_view key : keys) {
      out_.key(key);
      out_.boolean(flag());
    }
  }

  void classifier() {
    member("config", [&] { texts({"name"}), out_.key("type"), out_.number(below(3)); });
    directory("terms", [&] {
      member("actions", [&] { texts({"target-group"}); });
      member("conditions", [&] {
        member("ipv4", [&] { dscps(); });
        member("ipv6", [&] { dscps(); });
      });
    });
  }
  void dscps() {
    if (flag()) out_.key("dscp"), out_.number(below(70));
    out_.key("dscp-set");
    out_.beginArray();
    for (std::uint64_t i = below(4); i > 0; --i) out_.number(below(70));
    out_.endArray();
  }
  void interface() {
    member("output", [&] {
      member("scheduler-policy", [&] { member("config", [&] { texts({"name"}); }); });
      directory("queues", [&] {
        member("config", [&] { texts({"name", "queue-management-profile"}); });
      });
    });
  }
  void watchdog() {
    out_.key("time-a");
    out_.real(static_cast<double>(below(100'000)) / 1000);
    numbers({"action"}, 8);
  }
  void profile() {
    member("wred-uniform", [&] {
      flags({"drop", "enable-ecn"});
      numbers({"min-threshold", "max-threshold"}, 64);
      numbers({"weight"}, 32);
    });
  }
  void queue() {
    member("config", [&] { flags({"strict-priority"}), percents({"bandwidth"}); });
    member("ecn-config", [&] {
      numbers({"min-threshold", "max-threshold"}, 31);
      percents({"max-drop-probability-percent"});
    });
  }
  void scheduler() {
    member("config", [&] { numbers({"priority"}, 1); });
    directory("inputs",
              [&] { member("config", [&] { texts({"queue"}), numbers({"weight"}, 64); }); });
    member("one-rate-two-color", [&] { numbers({"cir"}, 64), percents({"cir-pct"}); });
  }

  std::mt19937_64 random_;
  host::JsonWriter out_{host::Layout::compact};
};

}  // namespace support
