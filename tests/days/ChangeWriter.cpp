#include "tests/days/ChangeWriter.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "host/JsonWriter.h"
#include "host/Pointer.h"
#include "host/Sections.h"

namespace days {
namespace {

using host::Tokens;
using Texts = std::vector<std::string>;

// ===== The stock

const Texts classifiers{"edge-in", "core", "a[b", "a/b~c", "\u00fc \"q\""};
const Texts oddClassNames{"__yang_[]_[]",      "__yang_[a]b]_[c]",
                          "plain-class",       "__yang_[edge-in]",
                          "__yang_[e\nf]_[v]", "__YANG_[edge-in]_[voice]",
                          "__yang_[]_[voice]", "__yang_[edge-in]_[voice] "};
const Texts policyParts{"[IPV4__edge-in]",
                        "[IPV6__edge-in]",
                        "[IPV4__edge-in][IPV6__core]",
                        "[IPV4__core]",
                        "[IPV6__core]",
                        "[IPV4__edge-in][IPV6__edge-in]",
                        "[IPV4__e\nf]",
                        ""};
const Texts oddPolicyNames{"plain-policy", "__yang_[IPV6__core][IPV4__edge-in]",
                           "__yang_[IPV4__core]_[IPV6__edge-in]", "__yang_[IPV4__]"};
// Ethernet1 and Etna1 share the short name Et1, and so the keys of their comments.
const Texts interfaces{"Ethernet1", "Ethernet2", "p7", "Etna1"};
const Texts shortNames{"Et1", "Et2", "p7", "Et1"};
const Texts txQueues{"uc-1", "uc-3", "mc-3", "uc-0", "mc-0", "uc-16", "mc-255"};
const Texts profiles{"__YANG_QMP_[gold]", "__YANG_SP_[sp-a]", "__YANG_QMP_[a]b]",
                     "__YANG_SP_[sp-b]",  "__YANG_QMP_[]",    "__YANG_SP_[x\ny]",
                     "plain-profile",     "__YANG_SP_[a]b]",  "__YANG_QMP_[gold",
                     "__YANG_SP_[sp-a] ", "__yang_sp_[sp-a]", "__YANG_SP_[]"};
const Texts groups{"fg-a", "fg-b", "fg-c", ""};
const Texts queueNames{"q1", "q3", "q-voice", "q0", "Ethernet1-unicast-1"};

const Texts foreignComments{
    "",  // what an emptied comment holds
    "hello",
    "[1]",
    R"({"other":1})",
    R"({"MetaData-OpenConfig":{}})",
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-a"}})",
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-a"},"queue-management-profile":{}}})",
    "{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"sp-a\"}}}\nnote",
    std::string("{}\0", 3),
    R"({"MetaData-OpenConfig":{"scheduler-policy":{},"queue-management-profile":{"name":"gold"}}})",
};
const Texts attachments{
    R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"gold"}}})",
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-a"}}})",
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-a"},"queue-management-profile":{"name":"gold"}}})",
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-b"}}})",
    R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"a]b"},"x":1},"y":[2]} )",
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":""},"queue-management-profile":{"name":""}}})",
};
const Texts profileComments{
    R"({"MetaData-OpenConfig":{"1":{"inputs":{}}}})",
    R"({"MetaData-OpenConfig":{"1":{"priority":"STRICT","one-rate-two-color":{"cir":1000000000,"cir-pct":40},"inputs":{"in-a":{"queue":"q1","weight":30},"in-b":{"queue":"q3"}}},"2":{"inputs":{}}}})",
    R"({"MetaData-OpenConfig":{"1":{"inputs":{"in-a":{"weight":7}}},"2":{"one-rate-two-color":{"cir":1},"inputs":{"in-c":{}}}}})",
    R"({"MetaData-OpenConfig":{"2":{"priority":"NONE","one-rate-two-color":{"cir-pct":100},"inputs":{}},"x":{}}})",
    R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":{"cir-pct":300},"inputs":{"":{"queue":""}}}}})",
    R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":{"cir":18446744073709551615,"cir-pct":4294967295},"inputs":{"in-a":{"weight":18446744073709551615}}}}})",
    R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":{"cir-pct":101}},"4294967296":{"inputs":{}}}})",
    R"({"MetaData-OpenConfig":{"3":{"inputs":{"in-a":{}}},"4":{"one-rate-two-color":{"cir-pct":101},"inputs":{"in-a":{}}}}})",
};

const Texts badComments{
    R"({"MetaData-OpenConfig":7})",
    R"({"MetaData-OpenConfig":{"scheduler-policy":[]}})",
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-a"},"queue-management-profile":{"name":7}}})",
    R"({"MetaData-OpenConfig":{"1":{"inputs":7}}})",
    R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":{"cir-pct":"40"}}}})",
};

// ===== The writer

std::string text(std::string_view plain) {
  host::JsonWriter writer(host::Layout::compact);
  writer.text(plain);
  return writer.take();
}

class ChangeWriter {
 public:
  ChangeWriter(const Step& step, Focus focus, const host::Native& native, Values values)
      : choose_(step), focus_(focus), native_(native), isSpoiled_(values == Values::spoiled) {}

  std::string line() {
    const std::size_t operations = 1 + (choose_.oneIn(8) ? 1 + choose_.below(2) : 0);
    for (std::size_t i = 0; i < operations; ++i) operation();
    return '[' + line_ + ']';
  }

 private:
  // ===== Operations

  void put(const Tokens& place, const std::string& value) {
    write(choose_.oneIn(4) && has(place) ? "replace" : "add", place, value);
  }
  void remove(const Tokens& place) { write("remove", place, ""); }
  void write(std::string_view kind, const Tokens& place, const std::string& value) {
    if (!line_.empty()) line_ += ',';
    line_ += R"({"op":")";
    line_ += kind;
    line_ += R"(","path":)" + text(host::pointerText(place));
    if (!value.empty()) line_ += R"(,"value":)" + value;
    line_ += '}';
  }

  // Whether a value is written that a root raises over: one in so many times, or often.
  bool isBad(std::size_t n) { return choose_.oneIn(isSpoiled_ ? 5 : n); }

  // ===== What is there

  std::unique_ptr<host::Place> at(const Tokens& place) const {
    std::unique_ptr<host::Place> found = host::nativePlace(native_);
    const host::Schema* schema = &host::nativeSchema();
    for (const std::string& token : place) {
      if (found == nullptr) return nullptr;
      const bool isKeyed = schema->kind() == host::Schema::Kind::keyed;
      const Rok::String key = isKeyed ? *schema->key().canonical(token) : Rok::String(token);
      found = found->at(key);
      schema = &schema->below(key);
    }
    return found;
  }
  bool has(const Tokens& place) const { return at(place) != nullptr; }
  static Tokens below(Tokens place, const std::string& key) {
    place.push_back(key);
    return place;
  }
  // One of the entries that are there, or `other` when there is none.
  std::string existing(const Tokens& place, const std::string& other) {
    const auto found = at(place);
    const auto keys = found != nullptr ? found->keys() : std::vector<Rok::String>();
    return keys.empty() ? other : std::string(choose_.of(keys));
  }
  // Mostly an entry that is there, when there is one; else any.
  std::string entry(const Tokens& place, const std::string& any) {
    return choose_.oneIn(3) ? any : existing(place, any);
  }

  // ===== Sections

  using Write = void (ChangeWriter::*)();
  // The more a section is watched, the more often it changes.
  static std::span<const Write> sectionsOf(Focus focus) {
    using W = ChangeWriter;
    static constexpr Write classification[] = {&W::classMap,  &W::acl,       &W::policyMap,
                                               &W::policyMap, &W::classMap,  &W::forwardingGroup,
                                               &W::acl,       &W::policyMap, &W::wholeSection};
    static constexpr Write queues[] = {
        &W::interface, &W::comment, &W::interface, &W::queueName,    &W::comment,
        &W::interface, &W::comment, &W::interface, &W::wholeSection, &W::servicePolicy};
    static constexpr Write profiles[] = {&W::qosProfile, &W::comment, &W::qosProfile,
                                         &W::qosProfile, &W::comment, &W::wholeSection};
    static constexpr Write ports[] = {&W::servicePolicy, &W::interface,     &W::servicePolicy,
                                      &W::servicePolicy, &W::servicePolicy, &W::watchdog};
    static constexpr Write groups[] = {&W::forwardingGroup, &W::tcToTxQueue, &W::queueName,
                                       &W::tcToTxQueue,     &W::interface,   &W::comment};
    static constexpr Write everything[] = {&W::classMap,        &W::acl,         &W::policyMap,
                                           &W::interface,       &W::comment,     &W::qosProfile,
                                           &W::forwardingGroup, &W::queueName,   &W::servicePolicy,
                                           &W::tcToTxQueue,     &W::classMap,    &W::acl,
                                           &W::policyMap,       &W::interface,   &W::comment,
                                           &W::watchdog,        &W::wholeSection};
    switch (focus) {
      case Focus::classification:
        return classification;
      case Focus::queues:
        return queues;
      case Focus::profiles:
        return profiles;
      case Focus::ports:
        return ports;
      case Focus::groups:
        return groups;
      default:
        return everything;
    }
  }
  // The operations of a line are in sections of their own: what stands between two of them shows in
  // no document.
  void operation() {
    const Write section = choose_.of(sectionsOf(focus_));
    const auto isChanged = [&](Write other) {
      return std::find(changed_.begin(), changed_.end(), other) != changed_.end();
    };
    if (isChanged(section) || isChanged(&ChangeWriter::wholeSection)) return;
    if (section == &ChangeWriter::wholeSection && !changed_.empty()) return;
    changed_.push_back(section);
    (this->*section)();
  }

  // ===== Class maps

  std::string className() {
    if (choose_.oneIn(10)) return choose_.of(oddClassNames);
    static const Texts terms{"", "voice", "video", "voice", ""};
    // Braces: the choices are made in this order.
    const Texts parts{choose_.oneIn(3) ? choose_.of(classifiers) : classifiers[0],
                      choose_.of(terms)};
    return "__yang_[" + parts[0] + "]_[" + parts[1] + "]";
  }
  std::string options() {
    static const Texts all{R"(["ip-access-group"])",
                           R"(["ip-access-group"])",
                           R"(["ipv6-access-group"])",
                           R"(["ip-access-group","ipv6-access-group"])",
                           R"([])",
                           R"(["7"])"};
    return choose_.of(all);
  }
  void classMap() {
    const Tokens all{"class-maps", "qos"};
    switch (choose_.below(6)) {
      case 3:
        return remove(below(all, existing(all, className())));
      case 4: {
        const std::string name = existing(all, className());
        return put(below(below(all, name), "match"), options());
      }
      default: {
        const std::string name = className();
        return put(below(all, name), R"({"match":)" + options() + "}");
      }
    }
  }

  // ===== ACLs

  static bool isIpv6(const Tokens& place) { return place[1] == "ipv6"; }
  std::string rule(bool ipv6) {
    static const Texts dscps{"46", "34", "0", "46", "63", "64", "255"};
    if (choose_.oneIn(4)) return "{}";
    if (!ipv6) return R"({"dscp":)" + choose_.of(dscps) + "}";
    static const Texts ipv6Rules{R"({"tc":184,"tc-mask":252})", R"({"tc":136,"tc-mask":255})",
                                 R"({"tc":184,"tc-mask":240})", R"({"tc":255,"tc-mask":252})"};
    return choose_.of(ipv6Rules);
  }
  std::string rules(bool ipv6) {
    static const Texts sequences{"10", "20", "4294967295"};
    std::string all;
    for (std::size_t i = 0, n = choose_.below(4); i < n && i < sequences.size(); ++i) {
      all += (i > 0 ? ",\"" : "\"") + sequences[i] + "\":" + rule(ipv6);
    }
    return '{' + all + '}';
  }
  void acl() {
    const Tokens family{"access-lists", choose_.oneIn(3) ? "ipv6" : "ipv4"};
    const Tokens list = below(family, entry(family, className()));
    const Tokens allRules = below(list, "rules");
    static const Texts sequences{"10", "20", "5", "30"};
    if (!has(list) || choose_.oneIn(9)) {
      return put(list, choose_.oneIn(5) ? "{}" : R"({"rules":)" + rules(isIpv6(family)) + "}");
    }
    if (!has(allRules)) return put(allRules, rules(isIpv6(family)));
    switch (choose_.below(8)) {
      case 0:
        return remove(list);
      case 1:
        return put(allRules, rules(isIpv6(family)));
      case 2:
        return remove(allRules);
      case 3:
        return remove(below(allRules, existing(allRules, sequences[0])));
      default: {
        const std::string sequence = choose_.of(sequences);
        return put(below(allRules, sequence), rule(isIpv6(family)));
      }
    }
  }

  // ===== Policy maps

  std::string policyName() {
    if (choose_.oneIn(10)) return choose_.of(oddPolicyNames);
    return "__yang_" + choose_.of(policyParts);
  }
  std::string trafficClass() {
    static const Texts all{"1", "2", "5", "16", "17", "255", "300"};
    return all[choose_.oneIn(4) ? choose_.below(all.size()) : choose_.below(3)];
  }
  std::string actions() {
    if (choose_.oneIn(6)) return "{}";
    const std::string other = choose_.oneIn(8) ? R"(,"7":1)" : "";
    return R"({"set-traffic-class":)" + trafficClass() + other + "}";
  }
  std::string policyClass() { return R"({"actions":)" + actions() + "}"; }
  void policyMap() {
    const Tokens type{"policy-maps", choose_.oneIn(20) ? "7" : "qos"};
    if (!has(type)) write("add", type, "{}");
    const Tokens map = below(type, entry(type, policyName()));
    if (!has(map) || choose_.oneIn(10)) {
      const Texts parts{text(className()), policyClass()};
      return put(map, R"({"classes":{)" + parts[0] + ":" + parts[1] + "}}");
    }
    const Tokens classes = below(map, "classes");
    const std::string name = entry(classes, className());
    const Tokens action{"policy-maps",      type[1], map[2], "classes", name, "actions",
                        "set-traffic-class"};
    switch (choose_.below(7)) {
      case 0:
        return remove(map);
      case 1:
        return remove(below(classes, existing(classes, name)));
      case 2:
        return has(action) ? remove(action) : put(below(classes, name), policyClass());
      case 3:
        return put(below(classes, name), policyClass());
      default:
        return has(below(classes, name)) ? put(action, trafficClass())
                                         : put(below(classes, name), policyClass());
    }
  }

  // ===== Service policies

  void servicePolicy() {
    const Tokens all{"service-policies"};
    const std::string tag = isBad(24) ? "2:" : "1:";
    const Tokens policy = below(all, entry(all, tag + policyName()));
    const Tokens bound = below(policy, "interfaces");
    const std::string interface = text(choose_.of(interfaces));
    const std::string isBound = choose_.oneIn(6) ? "false" : "true";
    switch (has(policy) ? choose_.below(5) : 4) {
      case 0:
        return remove(policy);
      case 1:
        return remove(below(bound, existing(bound, interfaces[0])));
      case 2:
      case 3:
        return put(below(bound, choose_.of(interfaces)), isBound);
      default:
        return put(policy, R"({"interfaces":{)" + interface + ":" + isBound + "}}");
    }
  }

  // ===== Tx queues

  std::string bandwidth() {
    static const Texts all{"40", "0", "100", "101"};
    static const Texts beyond{"102", "255"};
    return isBad(40) ? choose_.of(beyond) : choose_.of(all);
  }
  std::string priority() {
    static const Texts all{R"("strict")", R"("unset")", "1"};
    return choose_.of(all);
  }
  std::string dropPercent() {
    static const Texts all{"30", "100", "0"};
    static const Texts beyond{"101", "255"};
    return isBad(40) ? choose_.of(beyond) : choose_.of(all);
  }
  std::string threshold() {
    static const Texts all{"10", "4294967294", "0"};
    return isBad(40) ? "4294967295" : choose_.of(all);
  }
  std::string congestion() {
    const Texts parts{threshold(), threshold(), dropPercent()};
    return R"({"min-threshold":)" + parts[0] + R"(,"max-threshold":)" + parts[1] +
           R"(,"threshold-unit":2,"max-drop-percent":)" + parts[2] + R"(,"weight":3})";
  }
  std::string txQueue() {
    std::string members;
    const auto add = [&](const std::string& member) {
      members += (members.empty() ? "" : ",") + member;
    };
    if (choose_.oneIn(3)) add(R"("priority":)" + priority());
    if (choose_.oneIn(3)) add(R"("bandwidth":)" + bandwidth());
    if (choose_.oneIn(3)) add(R"("ecn":)" + congestion());
    if (choose_.oneIn(4)) add(R"("wred":)" + congestion());
    return '{' + members + '}';
  }
  // In the queues at `all`, which are there.
  void changeTxQueue(const Tokens& all, const std::string& name) {
    const Tokens queue = below(all, name);
    if (!has(queue)) return put(queue, txQueue());
    const std::string block = choose_.oneIn(3) ? "wred" : "ecn";
    switch (choose_.below(9)) {
      case 0:
        return remove(queue);
      case 1:
        return put(queue, txQueue());
      case 2:
        return put(below(queue, "priority"), priority());
      case 3:
        return put(below(queue, "bandwidth"), bandwidth());
      case 4:
        return put(below(queue, "shape"), std::to_string(choose_.below(3)));
      case 5:
        return has(below(queue, block)) ? remove(below(queue, block))
                                        : put(below(queue, block), congestion());
      case 6:
        if (!has(below(queue, block))) return put(below(queue, block), congestion());
        return put(below(below(queue, block), "max-drop-percent"), dropPercent());
      default:
        return put(below(queue, block), congestion());
    }
  }

  // ===== Interfaces

  std::string interfaceName() {
    return choose_.oneIn(3) ? choose_.of(interfaces) : interfaces[choose_.below(2)];
  }
  std::string queueOf() {
    return choose_.oneIn(3) ? choose_.of(txQueues) : txQueues[choose_.below(3)];
  }
  std::string pfc() {
    static const Texts all{"8", "0", "255"};
    return R"({"priorities":)" + choose_.of(all) + "}";
  }
  // With one queue or two, which may be of one id.
  std::string wholeInterface() {
    const Texts parts{text(queueOf()), txQueue()};
    std::string queues = parts[0] + ":" + parts[1];
    if (choose_.oneIn(3)) {
      const Texts others{text(queueOf()), txQueue()};
      if (others[0] != parts[0]) queues += "," + others[0] + ":" + others[1];
    }
    const std::string port = choose_.oneIn(4) ? R"(,"pfc":)" + pfc() : "";
    return R"({"tx-queues":{)" + queues + "}" + port + "}";
  }
  void interface() {
    const Tokens all{"interfaces"};
    const Tokens interface = below(all, interfaceName());
    if (!has(interface)) return put(interface, wholeInterface());
    const Tokens port = below(interface, "pfc");
    switch (choose_.below(14)) {
      case 0:
        return remove(interface);
      case 1:
        return has(port) ? remove(port) : put(port, pfc());
      case 2:
        return has(port) ? put(below(port, "priorities"), "3") : put(port, pfc());
      case 3:
        return put(port, pfc());
      case 4:
        return put(interface, wholeInterface());
      default:
        return changeTxQueue(below(interface, "tx-queues"), queueOf());
    }
  }

  // ===== QoS profiles

  void qosProfile() {
    const Tokens all{"qos-profiles"};
    const Tokens profile = below(all, entry(all, choose_.of(profiles)));
    const Tokens queues = below(profile, "tx-queues");
    if (!has(profile) || choose_.oneIn(12)) {
      if (choose_.oneIn(4)) return put(profile, "{}");
      return put(profile, R"({"tx-queues":{"uc-0":)" + txQueue() + "}}");
    }
    if (choose_.oneIn(8)) return remove(profile);
    if (!has(queues)) return put(queues, R"({"uc-0":)" + txQueue() + "}");
    if (choose_.oneIn(8)) return remove(queues);
    static const Texts used{"uc-0", "uc-0", "uc-0", "mc-0", "uc-3"};
    changeTxQueue(queues, choose_.of(used));
  }

  // ===== Comments

  void comment() {
    const Tokens all{"comments"};
    switch (choose_.below(7)) {
      case 2:
        return remove(below(all, existing(all, "nothing")));
      case 3:
      case 4: {
        const std::string key = "qos-profile-" + choose_.of(profiles);
        if (isSpoiled_ && choose_.oneIn(4))
          return put(below(all, key), text(choose_.of(badComments)));
        return put(below(all, key), text(choose_.oneIn(5) ? choose_.of(foreignComments)
                                                          : choose_.of(profileComments)));
      }
      default: {
        const std::string name =
            shortNames[choose_.oneIn(3) ? choose_.below(shortNames.size()) : choose_.below(2)];
        const std::string queue = queueOf();
        const std::string key = "if-" + name + '-' + queue.substr(0, 2) + "-txq-" + queue.substr(3);
        if (isSpoiled_ && choose_.oneIn(4))
          return put(below(all, key), text(choose_.of(badComments)));
        return put(below(all, key),
                   text(choose_.oneIn(4) ? choose_.of(foreignComments) : choose_.of(attachments)));
      }
    }
  }

  // ===== Maps and settings of the device

  void queueName() {
    static const Texts ids{"1", "3", "0", "16", "255"};
    const Tokens all{"queue-names"};
    if (choose_.oneIn(20)) return put(all, R"({"q1":)" + choose_.of(ids) + "}");
    if (choose_.oneIn(5)) return remove(below(all, existing(all, queueNames[0])));
    const std::string name = choose_.of(queueNames);
    put(below(all, name), choose_.of(ids));
  }
  void forwardingGroup() {
    const Tokens all{"forwarding-groups"};
    if (choose_.oneIn(20)) return put(all, R"({"fg-b":1,"fg-z":2})");
    if (choose_.oneIn(5)) return remove(below(all, existing(all, groups[0])));
    static const Texts classes{"1", "2", "5", "16"};
    const Texts parts{choose_.oneIn(4) ? choose_.of(groups) : groups[choose_.below(3)],
                      isBad(60) ? "17" : choose_.of(classes)};
    put(below(all, parts[0]), parts[1]);
  }
  void tcToTxQueue() {
    static const Texts classes{"1", "2", "5", "16", "0"};
    static const Texts ids{"1", "3", "0", "16", "255"};
    const Tokens slot{"tc-to-tx-queue", choose_.of(classes)};
    if (choose_.oneIn(5)) return remove(slot);
    put(slot, choose_.of(ids));
  }
  void watchdog() {
    const Tokens all{"pfc-watchdog"};
    switch (choose_.below(3)) {
      case 0:
        return put(below(all, "action"), std::to_string(choose_.below(7)));
      case 1:
        return put(below(all, "priorities"), std::to_string(choose_.below(256)));
      default:
        static const Texts times{"time-a", "time-b", "time-c"};
        return put(below(all, choose_.of(times)), "0.5");
    }
  }

  // Everything of a section goes at once, or a whole family does.
  void wholeSection() {
    static const std::vector<Tokens> all{
        {"class-maps"},        {"access-lists", "ipv4"}, {"policy-maps"},
        {"service-policies"},  {"interfaces"},           {"qos-profiles"},
        {"comments"},          {"tc-to-tx-queue"},       {"queue-names"},
        {"forwarding-groups"}, {"access-lists"},         {"interfaces", interfaces[0], "tx-queues"},
        {"pfc-watchdog"}};
    remove(choose_.of(all));
  }

  Choices choose_;
  const Focus focus_;
  const host::Native& native_;
  const bool isSpoiled_;
  std::string line_;
  std::vector<Write> changed_;  // the sections
};

}  // namespace

std::vector<std::string> closingLines(const Step& step) {
  std::vector<std::string> lines;
  for (const host::Schema::Member& section : host::nativeSchema().members()) {
    lines.push_back(R"([{"op":"remove","path":"/)" + std::string(section.name) + R"("}])");
  }
  Choices choose(step);
  for (std::size_t left = lines.size(); left > 1; --left) {
    std::swap(lines[left - 1], lines[choose.below(left)]);
  }
  return lines;
}

std::string changeLine(const Step& step, Focus focus, const host::Native& native, Values values) {
  return ChangeWriter(step, focus, native, values).line();
}

}  // namespace days
