#include "tests/days/check/Grammar.h"

#include <string>

namespace days {
namespace {

using host::Tokens;
using std::string;

string quote(const string& text) {
  host::rapidjson::StringBuffer buffer;
  host::rapidjson::Writer<host::rapidjson::StringBuffer> writer(buffer);
  writer.String(text.data(), static_cast<host::rapidjson::SizeType>(text.size()));
  return {buffer.GetString(), buffer.GetSize()};
}

constexpr const char* classifiers[] = {"a", "b"};
constexpr const char* terms[] = {"s", "t"};
constexpr const char* longNames[] = {"Ethernet1", "Ethernet7/1", "Ether1"};
constexpr const char* shortNames[] = {"Et1", "Et7/1", "Et1"};
constexpr const char* policies[] = {"core", "edge"};
constexpr const char* profiles[] = {"ecn", "red"};
constexpr const char* queueNames[] = {"V", "W", "V", "W", "V", "n\x01"};
constexpr const char* groups[] = {"g", "h"};
constexpr unsigned queueIds[] = {3, 4, 0, 16};
constexpr unsigned trafficClasses[] = {5, 3, 0, 16};

string className(const string& classifier, const string& term) {
  return "__yang_[" + classifier + "]_[" + term + ']';
}

// Adds one thing to a document.
class Writer {
 public:
  Writer(Document& document, const Step& step, bool hasBadValues)
      : document_(document), choices_(step), hasBadValues_(hasBadValues) {}

  void step(Topic topic) {
    using Act = void (Writer::*)();
    const auto any = [&](std::initializer_list<Act> acts) {
      (this->*(acts.begin()[below(acts.size())]))();
    };
    switch (topic) {
      case Topic::classification:
        return any({&Writer::wholeTerm, &Writer::classMap, &Writer::acl, &Writer::policyMap,
                    &Writer::acl, &Writer::policyMap, &Writer::group});
      case Topic::bindings:
        return any({&Writer::servicePolicy, &Writer::wholeTerm, &Writer::servicePolicy,
                    &Writer::policyMap, &Writer::queue});
      case Topic::queues:
        return any({&Writer::queue, &Writer::attachment, &Writer::group, &Writer::attachment,
                    &Writer::profile, &Writer::policy, &Writer::wholeInterface});
      case Topic::profiles:
        return any({&Writer::profile, &Writer::policy, &Writer::group, &Writer::comment,
                    &Writer::attachment, &Writer::queue});
      case Topic::names:
        return any({&Writer::comment, &Writer::name, &Writer::queue, &Writer::profile,
                    &Writer::policy, &Writer::group, &Writer::wholeTerm});
      case Topic::everything:
        return any({&Writer::wholeTerm, &Writer::wholeInterface, &Writer::servicePolicy,
                    &Writer::group, &Writer::queue, &Writer::attachment, &Writer::profile,
                    &Writer::policy, &Writer::classMap, &Writer::acl, &Writer::policyMap,
                    &Writer::comment, &Writer::name, &Writer::port});
    }
  }

 private:
  std::size_t below(std::size_t n) { return choices_.below(n); }
  bool oneIn(std::size_t n) { return choices_.oneIn(n); }
  template <class List>
  const auto& of(const List& list) {
    return choices_.of(list);
  }
  void put(const Tokens& place, const string& json) { document_.put(place, json); }
  string number(std::initializer_list<unsigned> numbers) {
    return std::to_string(numbers.begin()[below(numbers.size())]);
  }

  // ===== Classification

  void classMap() {
    const string term = oneIn(2) ? "" : of(terms);
    const Tokens place{"class-maps", "qos", className(of(classifiers), term)};
    put(place, "{}");
    constexpr const char* options[] = {"\"ip-access-group\"", "\"ip-access-group\"",
                                       "\"ipv6-access-group\"", "7"};
    const Tokens match{"class-maps", "qos", place[2], "match"};
    if (!oneIn(4)) document_.include(match, of(options));
    if (oneIn(6)) document_.include(match, of(options));
  }

  void acl() {
    const bool isIpv6 = oneIn(3);
    const Tokens place{"access-lists", isIpv6 ? "ipv6" : "ipv4",
                       className(of(classifiers), oneIn(10) ? "" : of(terms))};
    put(place, "{}");
    const std::size_t rules = below(5);
    if (rules == 4) return;
    put({place[0], place[1], place[2], "rules"}, "{}");
    constexpr const char* sequences[] = {"10", "20", "30"};
    for (std::size_t i = 0; i < rules; ++i) {
      put({place[0], place[1], place[2], "rules", of(sequences)}, isIpv6 ? ip6Rule() : rule());
    }
  }
  string rule() {
    if (oneIn(6)) return "{}";
    return R"({"dscp":)" + number({46, 10, 46, 0, 63, 64, 255}) + '}';
  }
  string ip6Rule() {
    if (oneIn(6)) return "{}";
    return R"({"tc":)" + number({184, 40, 184, 0, 185, 252}) + R"(,"tc-mask":)" +
           number({252, 252, 255, 0, 4}) + '}';
  }

  string policyMapName() {
    const string a = of(classifiers);
    switch (below(6)) {
      case 0:
      case 1:
        return "__yang_[IPV4__" + a + ']';
      case 2:
        return "__yang_[IPV6__" + a + ']';
      case 3:
        return "__yang_[IPV4__" + a + "][IPV6__" + a + ']';
      default:
        return "__yang_[IPV4__" + a + "][IPV6__" + (a == "a" ? "b" : "a") + ']';
    }
  }
  void policyMap() {
    const string name = policyMapName();
    put({"policy-maps", "qos", name}, "{}");
    for (std::size_t i = below(4); i > 0; --i) {
      const string term = oneIn(10) ? "" : of(terms);
      classOf(name, oneIn(16) ? "class-default" : className(of(classifiers), term));
    }
  }
  void classOf(const string& policyMap, const string& name) {
    const Tokens place{"policy-maps", "qos", policyMap, "classes", name};
    put(place, "{}");
    if (!oneIn(4)) {
      put({place[0], place[1], policyMap, "classes", name, "actions", "set-traffic-class"},
          number({5, 3, 0, 17}));
    }
    if (oneIn(10)) put({place[0], place[1], policyMap, "classes", name, "actions", "7"}, "1");
  }

  // A term with all that belongs to it.
  void wholeTerm() {
    const string classifier = of(classifiers);
    const string name = className(classifier, of(terms));
    const string match = "\"ip-access-group\"";
    document_.include({"class-maps", "qos", className(classifier, ""), "match"}, match);
    document_.include({"class-maps", "qos", name, "match"}, match);
    put({"access-lists", "ipv4", name, "rules", "10", "dscp"}, number({46, 10}));
    const string policyMap = "__yang_[IPV4__" + classifier + ']';
    put({"policy-maps", "qos", policyMap, "classes", name, "actions", "set-traffic-class"}, "5");
    wholeGroup();
  }

  // ===== Groups

  void wholeGroup() {
    put({"forwarding-groups", "g"}, "5");
    put({"tc-to-tx-queue", "5"}, "3");
    put({"queue-names", "V"}, "3");
  }
  void group() {
    if (oneIn(3)) return wholeGroup();
    if (oneIn(2)) put({"queue-names", of(queueNames)}, std::to_string(of(queueIds)));
    if (oneIn(2)) {
      const bool isBad = hasBadValues_ && oneIn(3);
      put({"forwarding-groups", of(groups)}, isBad ? "17" : std::to_string(of(trafficClasses)));
    }
    if (oneIn(2)) {
      put({"tc-to-tx-queue", std::to_string(of(trafficClasses))}, std::to_string(of(queueIds)));
    }
  }

  // ===== Interfaces

  void servicePolicy() {
    const string key = number({0, 1}) + ':' + policyMapName();
    put({"service-policies", key}, "{}");
    put({"service-policies", key, "interfaces", of(longNames)}, oneIn(8) ? "false" : "true");
    if (oneIn(4)) put({"service-policies", key, "interfaces", of(longNames)}, "true");
    if (oneIn(2)) put({"policy-maps", "qos", key.substr(2)}, "{}");
    if (oneIn(2)) put({"interfaces", of(longNames)}, "{}");
  }

  struct QueueKey {
    std::size_t interface;
    string queue;  // uc-3
    string comment() const {
      return string("if-") + shortNames[interface] + '-' + queue.substr(0, 2) + "-txq-" +
             queue.substr(3);
    }
    Tokens place() const { return {"interfaces", longNames[interface], "tx-queues", queue}; }
  };
  QueueKey queueKey() {
    const std::size_t interface = below(3);
    const string type = oneIn(4) ? "mc-" : "uc-";
    return {interface, type + number({3, 4, 3, 3, 4, 3, 16, 0})};
  }
  void queue() { queue(queueKey()); }
  void queue(const QueueKey& key) {
    put(key.place(), "{}");
    settings(key.place());
  }
  void settings(Tokens place) {
    const auto at = [&](const char* member) {
      Tokens below = place;
      below.emplace_back(member);
      return below;
    };
    if (oneIn(4)) put(at("priority"), oneIn(3) ? "7" : "\"strict\"");
    if (oneIn(3)) put(at("bandwidth"), bandwidth());
    if (oneIn(8)) put(at("shape"), number({1000, 0}));
    if (oneIn(3)) put(at("ecn"), ecn());
    if (oneIn(5)) put(at("wred"), ecn());
  }
  string bandwidth() {
    return hasBadValues_ && oneIn(3) ? number({102, 255, 150}) : number({40, 0, 100, 101});
  }
  string ecn() {
    string text = R"({"min-threshold":)" + number({100, 0, 200}) + R"(,"max-threshold":)" +
                  number({200, 200, 100});
    if (hasBadValues_ && oneIn(6)) text = R"({"min-threshold":4294967295)";
    if (hasBadValues_ && oneIn(6)) text = R"({"max-threshold":4294967295)";
    if (oneIn(5)) text += R"(,"threshold-unit":1)";
    if (oneIn(5)) text += R"(,"weight":5)";
    const bool isBad = hasBadValues_ && oneIn(3);
    if (isBad && oneIn(3)) return text + '}';
    return text + R"(,"max-drop-percent":)" +
           (isBad ? number({102, 255, 101}) : number({30, 0, 100})) + '}';
  }

  void attachment() {
    const QueueKey key = queueKey();
    if (!oneIn(6)) queue(key);
    constexpr const char* odd[] = {"", "c\x01"};
    const char* policy = below(3) < 2 ? of(policies) : oneIn(6) ? of(odd) : nullptr;
    const char* profile = below(3) < 2 ? of(profiles) : oneIn(6) ? of(odd) : nullptr;
    put({"comments", key.comment()}, quote(attachmentText(policy, profile)));
  }
  static string attachmentText(const char* policy, const char* profile) {
    string text;
    if (policy != nullptr) text = R"("scheduler-policy":{"name":)" + quote(policy) + '}';
    if (profile != nullptr) {
      if (!text.empty()) text += ',';
      text += R"("queue-management-profile":{"name":)" + quote(profile) + '}';
    }
    return R"({"MetaData-OpenConfig":{)" + text + "}}";
  }

  // Two tx queues that agree, and what they name.
  void wholeInterface() {
    const std::size_t interface = below(3);
    const char* policy = of(policies);
    for (const char* id : {"uc-3", "uc-4"}) {
      const QueueKey key{interface, id};
      put(key.place(), "{}");
      const char* profile = oneIn(2) ? "ecn" : nullptr;
      put({"comments", key.comment()}, quote(attachmentText(policy, profile)));
    }
    put({"queue-names", "V"}, "3");
    put({"queue-names", "W"}, "4");
    put({"qos-profiles", "__YANG_QMP_[ecn]", "tx-queues", "uc-0", "ecn"},
        R"({"max-drop-percent":30})");
    policyOf(policy, "V");
  }

  void port() {
    if (oneIn(2)) {
      put({"interfaces", of(longNames), "pfc"}, oneIn(2) ? "{}" : R"({"priorities":8})");
    } else {
      put({"pfc-watchdog", oneIn(2) ? "time-a" : "time-b"},
          oneIn(4) ? "0.0123456789012" : number({100, 0}));
      if (oneIn(2)) put({"pfc-watchdog", "action"}, number({1, 2, 3}));
    }
  }

  // ===== Profiles

  void profile() {
    const string name = "__YANG_QMP_[" + string(of(profiles)) + ']';
    put({"qos-profiles", name}, "{}");
    if (oneIn(8)) return;
    const Tokens queues{"qos-profiles", name, "tx-queues"};
    put(queues, "{}");
    constexpr const char* ids[] = {"uc-0", "uc-0", "uc-0", "mc-0", "uc-3"};
    for (std::size_t i = below(3) + 1; i > 1; --i) {
      Tokens queue = queues;
      queue.emplace_back(of(ids));
      put(queue, "{}");
      settings(queue);
    }
  }

  void policy() { policyOf(of(policies), of(queueNames)); }
  void policyOf(const string& name, const string& queue) {
    const string profile = "__YANG_SP_[" + name + ']';
    put({"qos-profiles", profile}, "{}");
    if (oneIn(10)) put({"qos-profiles", profile, "tx-queues", "uc-3", "bandwidth"}, "40");
    if (oneIn(10)) return;
    string inputs = R"("i":{"queue":)" + quote(oneIn(6) ? string("X") : queue) + R"(,"weight":3})";
    if (oneIn(16)) inputs += R"(,"k\u0001":{"queue":"V"})";
    if (oneIn(8)) inputs += R"(,"j":{"queue":"Ethernet1-unicast-3"})";
    string scheduler = R"("inputs":{)" + inputs + '}';
    if (oneIn(3)) scheduler += R"(,"priority":"STRICT")";
    if (oneIn(3)) {
      scheduler += R"(,"one-rate-two-color":{"cir-pct":)" +
                   (hasBadValues_ && oneIn(2) ? number({150, 357}) : number({40, 0, 100})) + '}';
    }
    put({"comments", "qos-profile-" + profile},
        quote(R"({"MetaData-OpenConfig":{"1":{)" + scheduler + "}}}"));
  }

  // ===== What is odd

  void comment() {
    constexpr const char* texts[] = {
        "a remark",
        R"({"other":1})",
        R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"core"})",
        R"({"metadata-openconfig":{"scheduler-policy":{"name":"core"}}})",
        R"({"MetaData-OpenConfg":{"scheduler-policy":{"name":"core"}}})",
        R"({"MetaData-OpenConfig":{"scheduler-polcy":{"name":"core"}}})",
        R"({"MetaData-OpenConfig":{"scheduler-policy":{"nam":"core"}}})",
        R"({"MetaData-OpenConfig":{"scheduler-policy":{}}})",
        R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"ecn"},"extra":1}})",
        R"({"MetaData-OpenConfig":{"one":{"priority":"NONE"}}})",
        R"({"MetaData-OpenConfig":{"1":{"priority":"STRICT","inputs":{"i":{"queue":"V"}}},"01":{}}})",
        R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":{"cir-pct":300}}}})",
        R"({"MetaData-OpenConfig":{"1":{"prioriti":"STRICT"}}})",
        R"({"MetaData":{"scheduler-policy":{"name":"core"}}})",
        R"({"OpenConfig-MetaData":{"queue-management-profile":{"name":"ecn"}}})",
        R"({"MetaData":{"owner":"core"}})",
        R"({"MetaData-OpenConfg":{"scheduler-policy":{"name":"core"})",
        R"({"MetaData-OpenConfig":{"1":{"inputs":{"i":{"queue":"W"},"i":{"queue":"V","weight":0}}}}})",
        R"({"MetaData-OpenConfig":{"1":{"inputs":{"":{"queue":"V"},"j":{}}}}})",
        R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"core"}},"MetaData-OpenConfig":{"1":{}}})",
        R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":{"cir":0,"cir":7}}}})",
        R"({"MetaData-OpenConfig":{}})",
        R"({"MetaData-OpenConfig":7})",
        ""};
    constexpr const char* keys[] = {"if-Et1-uc-txq-3",
                                    "if-Et1-uc-txq-4",
                                    "if-Ethernet1-uc-txq-3",
                                    "if-Et9-uc-txq-3",
                                    "qos-profile-__YANG_SP_[core]",
                                    "qos-profile-__YANG_QMP_[ecn]",
                                    "qos-profile-core",
                                    "remark"};
    const char* key = of(keys);
    put({"comments", key}, quote(of(texts)));
    if (oneIn(2)) put({"interfaces", "Ethernet1", "tx-queues", "uc-3"}, "{}");
    if (oneIn(3)) put({"qos-profiles", "__YANG_SP_[core]"}, "{}");
  }

  void name() {
    constexpr const char* termNames[] = {
        "__yang_[a]_[c\x01]", "__yang_[c\x01]_[]", "__yang_[a]_t", "__YANG_[a]_[]", "MGMT",
        "__yang_[]_[t]"};
    constexpr const char* policyMapNames[] = {"__yang_[IPV4__a]_[IPV6__b]", "__yang_[ipv4__a]",
                                              "__yang_[IPV4__c\x01]", "default"};
    constexpr const char* profileNames[] = {"__YANG_QMP_[ecn", "__yang_qmp_[ecn]", "gold",
                                            "__YANG_QMP_[c\x01]", "__YANG_SP_[c\x01]"};
    constexpr const char* plainNames[] = {"", "n\x01"};
    switch (below(9)) {
      case 0:
        return document_.include({"class-maps", "qos", of(termNames), "match"},
                                 "\"ip-access-group\"");
      case 1:
        return put({"access-lists", "ipv4", of(termNames), "rules", "10", "dscp"}, "46");
      case 2:
        return put({"policy-maps", "qos", of(policyMapNames), "classes"}, "{}");
      case 3:
        return put(
            {"service-policies", string("0:") + of(policyMapNames), "interfaces", of(longNames)},
            "true");
      case 4:
        return put({"qos-profiles", of(profileNames), "tx-queues", "uc-0", "ecn"},
                   R"({"max-drop-percent":30})");
      case 5:
        return put({"forwarding-groups", of(plainNames)}, "5");
      case 6:
        return put({"queue-names", of(plainNames)}, "3");
      case 7:
        return put({"class-maps", "7", of(termNames)}, "{}");
      default:
        return put({"policy-maps", "7", "__yang_[IPV4__a]", "classes"}, "{}");
    }
  }

  Document& document_;
  Choices choices_;
  const bool hasBadValues_;
};

}  // namespace

Document documentOf(const DocumentPlan& plan) {
  Document document;
  for (const Step& step : plan.steps) Writer(document, step, plan.hasBadValues).step(plan.topic);
  return document;
}

}  // namespace days
