// Comments decoded into values, beside RapidJSON's document as it comes, with allocators of its
// own, and beside a floor that looks at each byte once and makes the value. And their keys.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

// Its assertions are on, as those of the codec are: a value of the wrong type must end the process.
#define RAPIDJSON_ASSERT(x) ((x) ? static_cast<void>(0) : std::abort())
#include <rapidjson/document.h>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "support/Check.h"
#include "support/Comparisons.h"
#include "support/Heap.h"

namespace Bench {
namespace {

using Json = rapidjson::Value;
using QosOc::CommentInfo;
using QosOc::SchedulerCommentInfo;
using QosOc::SchedulerInputCommentInfo;
using Profile = QosOc::SchedulerPolicyProfileCommentInfo;

// ===== The documents: an attachment with both parts; eight schedulers with eight inputs each

const CommentInfo& attachment() {
  static const CommentInfo info(QosOc::SchedulerPolicyCommentInfo("sp-gold-edge"),
                                QosOc::QueueManagementProfileCommentInfo("qmp-wred-edge"));
  return info;
}

SchedulerCommentInfo scheduler(std::uint32_t sequence) {
  SchedulerCommentInfo result(sequence);
  if (sequence % 2 == 1) result.priorityIs(QosOc::STRICT);
  result.oneRateTwoColorIs({1000000000u + sequence, 40});
  for (int n = 0; n < 8; ++n) {
    SchedulerInputCommentInfo input("input-" + std::to_string(n));
    input.qIs("queue-of-class-" + std::to_string(n));
    input.weightIs(30);
    result.inputsIs(input);
  }
  return result;
}

const Profile& profile() {
  static const Profile info = [] {
    Profile all("");
    for (std::uint32_t sequence = 1; sequence <= 8; ++sequence) {
      all.schedulersIs(scheduler(sequence));
    }
    return all;
  }();
  return info;
}

// ===== RapidJSON's document as it comes

std::string_view textOf(const Json& value) { return {value.GetString(), value.GetStringLength()}; }

Velmo::String nameIn(const Json& metaData, const char* part) {
  const auto found = metaData.FindMember(part);
  if (found == metaData.MemberEnd()) return {};
  return textOf(found->value["name"]);
}

CommentInfo attachmentByDefaultDocument(const Velmo::String& comment) {
  rapidjson::Document document;
  rapidjson::StringStream stream(comment.data());
  document.ParseStream(stream);
  const Json& metaData = document["MetaData-OpenConfig"];
  return {QosOc::SchedulerPolicyCommentInfo(nameIn(metaData, "scheduler-policy")),
          QosOc::QueueManagementProfileCommentInfo(nameIn(metaData, "queue-management-profile"))};
}

SchedulerInputCommentInfo inputFrom(const Json& name, const Json& value) {
  SchedulerInputCommentInfo input{Velmo::String(textOf(name))};
  for (const auto& member : value.GetObject()) {
    if (textOf(member.name) == "queue") input.qIs(textOf(member.value));
    if (textOf(member.name) == "weight") input.weightIs(member.value.GetUint64());
  }
  return input;
}

SchedulerCommentInfo schedulerFrom(const Json& name, const Json& value) {
  SchedulerCommentInfo result(
      static_cast<std::uint32_t>(std::strtoul(name.GetString(), nullptr, 10)));
  for (const auto& member : value.GetObject()) {
    if (textOf(member.name) == "priority") result.priorityIs(QosOc::STRICT);
    if (textOf(member.name) == "one-rate-two-color") {
      result.oneRateTwoColorIs({member.value["cir"].GetUint64(),
                                static_cast<std::uint8_t>(member.value["cir-pct"].GetUint())});
    }
    if (textOf(member.name) != "inputs") continue;
    for (const auto& input : member.value.GetObject()) {
      result.inputsIs(inputFrom(input.name, input.value));
    }
  }
  return result;
}

Profile profileByDefaultDocument(const Velmo::String& comment) {
  rapidjson::Document document;
  rapidjson::StringStream stream(comment.data());
  document.ParseStream(stream);
  Profile info("");
  for (const auto& member : document["MetaData-OpenConfig"].GetObject()) {
    info.schedulersIs(schedulerFrom(member.name, member.value));
  }
  return info;
}

// ===== The floor: the values without the parsing

void lookAt(const Velmo::String& comment) {
  unsigned depth = 0;
  for (const char c : std::string_view(comment)) depth += c == '{' ? 1u : c == '}' ? ~0u : 0u;
  benchmark::DoNotOptimize(depth);
}

// A text with a buffer of its own, as one that was just read.
Velmo::String fresh(const Velmo::String& text) { return std::string_view(text); }

CommentInfo attachmentByFloor(const Velmo::String& comment) {
  lookAt(comment);
  return {QosOc::SchedulerPolicyCommentInfo(fresh(attachment().sPInfo().schedulerPolicy())),
          QosOc::QueueManagementProfileCommentInfo(
              fresh(attachment().qMPInfo().queueManagementProfile()))};
}

Profile profileByFloor(const Velmo::String& comment) {
  lookAt(comment);
  Profile info("");
  for (auto i = profile().schedulers().unsafeIterator(); i; ++i) {
    SchedulerCommentInfo copy(i->value().sequence());
    copy.priorityIs(i->value().priority());
    copy.oneRateTwoColorIs(i->value().oneRateTwoColor());
    for (auto j = i->value().inputs().unsafeIterator(); j; ++j) {
      SchedulerInputCommentInfo input(fresh(j->value().inputId()));
      input.qIs(fresh(j->value().q()));
      input.weightIs(j->value().weight());
      copy.inputsIs(input);
    }
    info.schedulersIs(copy);
  }
  return info;
}

// ===== Keys

Velmo::String ownKey(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue) {
  return QosOc::CommentHelper::commentKey(intfId, txQueue);
}

Velmo::String keyByPrintf(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue) {
  const char* word = txQueue.type == Qos::unicast ? "uc-txq" : "mc-txq";
  char text[128];
  const int size = std::snprintf(text, sizeof(text), "if-%s-%s-%d", intfId.shortName().data(), word,
                                 static_cast<int>(txQueue.id.value));
  return std::string_view(text, static_cast<std::size_t>(size));
}

// ===== Registration

// Decodes one document over and over. The counter is the allocations of one decoding.
template <auto decode>
void decoding(benchmark::State& state, const Velmo::String& comment, const auto& expected) {
  require(decode(comment) == expected, "decoded " + std::string(comment));
  const std::uint64_t before = heapAllocations();
  static_cast<void>(decode(comment));
  const std::uint64_t taken = heapAllocations() - before;
  for (auto _ : state) benchmark::DoNotOptimize(decode(comment));
  state.counters["allocations"] = static_cast<double>(taken);
}

template <auto own, auto byDefaultDocument, auto byFloor>
void subject(Comparisons& comparisons, const std::string& what, const Velmo::String& comment,
             const auto& expected) {
  const auto add = [&](const std::string& how, auto function) {
    benchmark::RegisterBenchmark(
        (what + how).c_str(), [=](benchmark::State& state) { function(state, comment, expected); });
  };
  using Expected = std::remove_cvref_t<decltype(expected)>;
  add(", own", decoding<own, Expected>);
  add(", default document", decoding<byDefaultDocument, Expected>);
  add(", floor", decoding<byFloor, Expected>);
  comparisons.add(what + ", own", what + ", default document");
  comparisons.add(what + ", own", what + ", floor");
  for (const char* how : {", default document", ", own", ", floor"}) {
    comparisons.add(what + how + " allocations");
  }
}

template <auto make>
void key(benchmark::State& state) {
  const Nerit::IntfId intfId("Ethernet7/1");
  unsigned char id = 0;
  require(make(intfId, {3, Qos::unicast}) == "if-Et7/1-uc-txq-3", "a comment key");
  for (auto _ : state) {
    benchmark::DoNotOptimize(make(intfId, {id, Qos::unicast}));
    id = (id + 1) % 16;
  }
}

}  // namespace

void comments(Comparisons& comparisons) {
  comparisons.subject("Comments");
  subject<&deserializeJsonComment, &attachmentByDefaultDocument, &attachmentByFloor>(
      comparisons, "decode attachment", serializeJsonComment(attachment()), attachment());
  subject<&deserializeJsonProfileComment, &profileByDefaultDocument, &profileByFloor>(
      comparisons, "decode profile", serializeJsonProfileComment(profile()), profile());
  benchmark::RegisterBenchmark("comment key, own", key<&ownKey>);
  benchmark::RegisterBenchmark("comment key, snprintf", key<&keyByPrintf>);
  comparisons.add("comment key, snprintf", "comment key, own");
}

}  // namespace Bench
