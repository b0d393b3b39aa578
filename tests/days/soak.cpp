// soak [EVENTS]: a device of a fixed size that changes without end. Every line leaves it as a start
// from nothing would make it, whatever came before. At the end the model must be the one that
// fresh roots make of the native objects, and memory what it was after the first hundred thousand.
#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "tests/days/Device.h"

namespace days {
namespace {

constexpr std::size_t interfaceCount = 33;
constexpr std::size_t queueCount = 8;
constexpr std::size_t classifierCount = 8;
constexpr std::size_t termCount = 8;
constexpr std::size_t profileCount = 8;
constexpr std::size_t groupCount = 8;

std::string number(std::size_t n) { return std::to_string(n); }
std::string interfaceName(std::size_t n) { return "Ethernet" + number(n); }
std::string className(std::size_t classifier, const std::string& term) {
  return "__yang_[c" + number(classifier) + "]_[" + term + "]";
}
std::string policyMap(std::size_t classifier) {
  return "__yang_[IPV4__c" + number(classifier) + "]";
}
std::string member(const std::string& key, const std::string& value) {
  return '"' + key + "\":" + value;
}
std::string object(const std::vector<std::string>& members) {
  std::string text;
  for (const std::string& one : members) text += (text.empty() ? "" : ",") + one;
  return '{' + text + '}';
}

// Writes the device's document and its change lines.
class Engineer {
 public:
  std::string document() {
    return object({member("class-maps", object({member("qos", classMaps())})),
                   member("access-lists", object({member("ipv4", acls())})),
                   member("policy-maps", object({member("qos", policyMaps())})),
                   member("service-policies", servicePolicies()),
                   member("interfaces", interfaces()), member("qos-profiles", qosProfiles()),
                   member("comments", comments()), member("tc-to-tx-queue", slots()),
                   member("forwarding-groups", numbered("fg-", groupCount)),
                   member("queue-names", numbered("q", queueCount))});
  }

  // A change line, and how often it makes a handler raise.
  struct Line {
    std::string text;
    std::size_t raises;
  };
  Line line() {
    using Write = void (Engineer::*)();
    static constexpr Write writes[] = {
        &Engineer::term,       &Engineer::rules,    &Engineer::action,    &Engineer::group,
        &Engineer::slot,       &Engineer::settings, &Engineer::block,     &Engineer::port,
        &Engineer::attachment, &Engineer::binding,  &Engineer::profile,   &Engineer::policy,
        &Engineer::queueName,  &Engineer::watchdog, &Engineer::foreign,   &Engineer::refused,
        &Engineer::wholePort,  &Engineer::settings, &Engineer::attachment};
    line_.clear();
    raises_ = 0;
    (this->*writes[below(std::size(writes))])();
    return {'[' + line_ + ']', raises_};
  }

 private:
  std::size_t below(std::size_t n) { return random_() % n; }

  void write(const std::string& kind, const std::string& path, const std::string& value = "") {
    line_ += (line_.empty() ? "" : ",") +
             object({member("op", '"' + kind + '"'), member("path", '"' + path + '"')});
    if (value.empty()) return;
    line_.pop_back();
    line_ += ',' + member("value", value) + '}';
  }

  // ===== Classification

  static std::string match() { return R"({"match":["ip-access-group"]})"; }
  std::string dscps() {
    return object({member("10", R"({"dscp":)" + number(below(64)) + '}'),
                   member("20", R"({"dscp":)" + number(below(64)) + '}'), member("30", "{}")});
  }
  std::string setTrafficClass() {
    return R"({"actions":{"set-traffic-class":)" + number(below(groupCount)) + "}}";
  }
  std::string classMaps() {
    std::vector<std::string> all;
    for (std::size_t c = 0; c < classifierCount; ++c) {
      all.push_back(member(className(c, ""), match()));
      for (std::size_t t = 0; t < termCount; ++t)
        all.push_back(member(className(c, "t" + number(t)), match()));
    }
    return object(all);
  }
  std::string acls() {
    std::vector<std::string> all;
    for (std::size_t c = 0; c < classifierCount; ++c) {
      for (std::size_t t = 0; t < termCount; ++t) {
        all.push_back(member(className(c, "t" + number(t)), R"({"rules":)" + dscps() + '}'));
      }
    }
    return object(all);
  }
  std::string policyMaps() {
    std::vector<std::string> all;
    for (std::size_t c = 0; c < classifierCount; ++c) {
      std::vector<std::string> classes;
      for (std::size_t t = 0; t < termCount; ++t) {
        classes.push_back(member(className(c, "t" + number(t)), setTrafficClass()));
      }
      all.push_back(member(policyMap(c), R"({"classes":)" + object(classes) + '}'));
    }
    return object(all);
  }
  // A term goes, and comes back with its conditions and actions.
  void term() {
    const std::size_t classifier = below(classifierCount);
    const std::string name = className(classifier, "t" + number(below(termCount)));
    write("replace", "/class-maps/qos/" + name, match());
    write("replace", "/access-lists/ipv4/" + name, R"({"rules":)" + dscps() + '}');
    write("replace", "/policy-maps/qos/" + policyMap(classifier) + "/classes/" + name,
          setTrafficClass());
    // The class's going takes the term along once more.
    write("replace", "/class-maps/qos/" + name + "/match", "[]");
    write("replace", "/class-maps/qos/" + name + "/match", R"(["ip-access-group"])");
    write("replace", "/access-lists/ipv4/" + name + "/rules", dscps());
  }
  void rules() {
    const std::string name = className(below(classifierCount), "t" + number(below(termCount)));
    write("replace", "/access-lists/ipv4/" + name + "/rules", dscps());
  }
  void action() {
    const std::size_t classifier = below(classifierCount);
    write("replace",
          "/policy-maps/qos/" + policyMap(classifier) + "/classes/" +
              className(classifier, "t" + number(below(termCount))) + "/actions/set-traffic-class",
          number(below(groupCount)));
  }
  void group() {
    const std::string n = number(below(groupCount));
    write("remove", "/forwarding-groups/fg-" + n);
    write("add", "/forwarding-groups/fg-" + n, n);
  }
  void slot() {
    write("replace", "/tc-to-tx-queue/" + number(below(groupCount)), number(below(queueCount)));
  }
  std::string slots() { return numbered("", groupCount); }
  static std::string numbered(const std::string& prefix, std::size_t count) {
    std::vector<std::string> all;
    for (std::size_t n = 0; n < count; ++n) all.push_back(member(prefix + number(n), number(n)));
    return object(all);
  }

  // ===== Interfaces

  std::string congestion() {
    return R"({"min-threshold":)" + number(below(1000)) + R"(,"max-threshold":)" +
           number(below(100000)) + R"(,"max-drop-percent":)" + number(below(101)) + '}';
  }
  // Under a policy's comment an ECN block would show whether it came before the comment.
  std::string txQueue(std::size_t interface) {
    if (kindOf(interface) != Kind::policy) return fullQueue();
    return R"({"priority":"strict","bandwidth":)" + number(below(101)) + '}';
  }
  std::string fullQueue() {
    return R"({"priority":"strict","bandwidth":)" + number(below(101)) + R"(,"ecn":)" +
           congestion() + '}';
  }
  // The one queue of every third interface names a scheduler policy, the queues of the next one
  // name profiles, and those of the third have no comments.
  enum class Kind { policy, profiles, plain };
  static Kind kindOf(std::size_t interface) { return static_cast<Kind>(interface % 3); }
  static std::size_t queuesOf(std::size_t interface) {
    return kindOf(interface) == Kind::policy ? 1 : queueCount;
  }
  std::string wholeInterface(std::size_t n) {
    std::vector<std::string> queues;
    for (std::size_t q = 0; q < queuesOf(n); ++q)
      queues.push_back(member("uc-" + number(q), txQueue(n)));
    return R"({"pfc":{"priorities":)" + number(below(256)) + R"(},"tx-queues":)" + object(queues) +
           '}';
  }
  std::string interfaces() {
    std::vector<std::string> all;
    for (std::size_t n = 0; n < interfaceCount; ++n) {
      all.push_back(member(interfaceName(n), wholeInterface(n)));
    }
    return object(all);
  }
  std::string queuePath(std::size_t interface) {
    return "/interfaces/" + interfaceName(interface) + "/tx-queues/uc-" +
           number(below(queuesOf(interface)));
  }
  // An interface of that kind.
  std::size_t any(Kind kind) {
    return 3 * below(interfaceCount / 3) + static_cast<std::size_t>(kind);
  }
  void settings() {
    write("replace", queuePath(below(interfaceCount)) + "/bandwidth", number(below(101)));
  }
  void block() {
    write("replace", queuePath(any(below(2) == 0 ? Kind::profiles : Kind::plain)) + "/ecn",
          congestion());
  }
  void port() {
    write("replace", "/interfaces/" + interfaceName(below(interfaceCount)) + "/pfc/priorities",
          number(below(256)));
  }
  void wholePort() {
    const std::size_t n = below(interfaceCount);
    write("replace", "/interfaces/" + interfaceName(n), wholeInterface(n));
  }

  // ===== Comments

  std::string attachmentText(std::size_t interface) {
    return R"("{\"MetaData-OpenConfig\":{\")" +
           std::string(kindOf(interface) == Kind::policy ? "scheduler-policy"
                                                         : "queue-management-profile") +
           R"(\":{\"name\":\")" + (kindOf(interface) == Kind::policy ? "sp" : "qmp") +
           number(below(profileCount)) + R"(\"}}}")";
  }
  static std::string key(std::size_t interface, std::size_t queue) {
    return "if-Et" + number(interface) + "-uc-txq-" + number(queue);
  }
  std::string policyText(std::size_t n) {
    return R"("{\"MetaData-OpenConfig\":{\"1\":{\"inputs\":{\"in-a\":{\"queue\":\"q1\",\"weight\":)" +
           number(n + 1) + R"(}}}}}")";
  }
  std::string comments() {
    std::vector<std::string> all;
    for (std::size_t n = 0; n < interfaceCount; ++n) {
      if (kindOf(n) == Kind::plain) continue;
      for (std::size_t q = 0; q < queuesOf(n); ++q) {
        all.push_back(member(key(n, q), attachmentText(n)));
      }
    }
    for (std::size_t p = 0; p < profileCount; ++p) {
      all.push_back(member("qos-profile-__YANG_SP_[sp" + number(p) + ']', policyText(p)));
    }
    return object(all);
  }
  void attachment() {
    const std::size_t n = any(below(2) == 0 ? Kind::policy : Kind::profiles);
    write("replace", "/comments/" + key(n, below(queuesOf(n))), attachmentText(n));
  }
  void foreign() {
    write("add", "/comments/note", R"("rack 7")");
    write("remove", "/comments/note");
    write("add", "/class-maps/qos/plain", match());
    write("remove", "/class-maps/qos/plain");
  }

  // ===== Profiles, bindings and the rest

  std::string qosProfiles() {
    std::vector<std::string> all;
    for (std::size_t p = 0; p < profileCount; ++p) {
      all.push_back(member("__YANG_QMP_[qmp" + number(p) + ']',
                           R"({"tx-queues":{"uc-0":)" + fullQueue() + "}}"));
      all.push_back(member("__YANG_SP_[sp" + number(p) + ']', "{}"));
    }
    return object(all);
  }
  void profile() {
    const std::string path = "/qos-profiles/__YANG_QMP_[qmp" + number(below(profileCount)) + ']';
    if (below(2) == 0) return write("replace", path + "/tx-queues/uc-0/ecn", congestion());
    write("replace", path, R"({"tx-queues":{"uc-0":)" + fullQueue() + "}}");
  }
  void policy() {
    const std::size_t p = below(profileCount);
    write("replace", "/comments/qos-profile-__YANG_SP_[sp" + number(p) + ']',
          policyText(below(100)));
    write("replace", "/qos-profiles/__YANG_SP_[sp" + number(p) + ']', "{}");
  }
  std::string servicePolicies() {
    std::vector<std::string> all;
    for (std::size_t c = 0; c < classifierCount; ++c) {
      std::vector<std::string> bound;
      for (std::size_t n = c; n < interfaceCount; n += classifierCount) {
        bound.push_back(member(interfaceName(n), "true"));
      }
      all.push_back(member("1:" + policyMap(c), R"({"interfaces":)" + object(bound) + '}'));
    }
    return object(all);
  }
  void binding() {
    const std::size_t n = below(interfaceCount);
    const std::string path =
        "/service-policies/1:" + policyMap(n % classifierCount) + "/interfaces/" + interfaceName(n);
    write("remove", path);
    write("add", path, "true");
  }
  void queueName() {
    const std::string n = number(below(queueCount));
    write("remove", "/queue-names/q" + n);
    write("add", "/queue-names/q" + n, n);
  }
  void watchdog() { write("replace", "/pfc-watchdog/priorities", number(below(256))); }
  // Settings that the model refuses, and their repair.
  void refused() {
    const std::string path = queuePath(any(Kind::plain));
    write("replace", path + "/ecn/max-drop-percent", "101");
    write("replace", path + "/bandwidth", "102");
    write("replace", path + "/bandwidth", number(below(101)));
    write("replace", path + "/ecn/max-drop-percent", number(below(101)));
    raises_ = 2;
  }

  std::mt19937_64 random_{20261121};
  std::string line_;
  std::size_t raises_ = 0;
};

// Bytes that are allocated and not free.
std::size_t allocated() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

class Soak {
 public:
  explicit Soak(std::size_t events) : events_(events) {}

  // Returns the exit code.
  int run() {
    for (std::size_t n = 1; n <= events_; ++n) {
      if (!apply(engineer_.line())) return 1;
      if (n == std::min(warm, events_ / 2)) first_ = allocated();
      if (n % warm == 0) show(n);
    }
    return isFlat() && isRight() ? 0 : 1;
  }

 private:
  static constexpr std::size_t warm = 100'000;

  bool apply(const Engineer::Line& line) {
    const auto outcome = device_.line(line.text);
    const Reports& raised = device_.reports();
    if (outcome == host::Changes::Outcome::applied && raised.size() == line.raises) return true;
    std::fprintf(stderr, "soak: this line was to raise %zu times: %s\n", line.raises,
                 line.text.c_str());
    for (const std::string& report : raised) std::fprintf(stderr, "  %s\n", report.c_str());
    return false;
  }

  void show(std::size_t n) const {
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin_;
    std::fprintf(stderr, "%s%zu of %zu events, %.0f a second, %.1f MB allocated%s",
                 isTerminal_ ? "\r" : "", n, events_, static_cast<double>(n) / took.count(),
                 static_cast<double>(allocated()) / 1e6, isTerminal_ && n < events_ ? "" : "\n");
  }

  bool isFlat() const {
    const std::size_t last = allocated();
    std::fprintf(stderr, "Memory: %zu bytes after the first events, %zu at the end\n", first_,
                 last);
    // Texts and numbers have other lengths, and tables are kept at the size they once needed.
    if (last <= first_ + first_ / 100) return true;
    std::fprintf(stderr, "soak: memory grew\n");
    return false;
  }

  bool isRight() const {
    const host::Model empty;
    const Life life(device_.native(), empty, 0);
    const auto differences = device_.output().differences(Snapshot(empty));
    for (const Difference& difference : differences) {
      std::fprintf(stderr, "soak: the model isn't that of a start from nothing: %s\n",
                   difference.told().c_str());
    }
    if (differences.empty()) std::fprintf(stderr, "The model is that of a start from nothing\n");
    return differences.empty();
  }

  const std::size_t events_;
  const bool isTerminal_ = isatty(STDERR_FILENO) != 0;
  Engineer engineer_;
  Device device_{engineer_.document(), 0};
  std::size_t first_ = 0;
  const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace
}  // namespace days

int main(int argc, char** argv) {
  const std::size_t events = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 10'000'000;
  return days::Soak(events).run();
}
