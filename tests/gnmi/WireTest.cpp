// Answers as bytes, held against those that protobuf's objects make.
#include "gnmi/Wire.h"

#include <gnmi.pb.h>
#include <gtest/gtest.h>

#include "gnmi/Protobuf.h"
#include "host/openconfig/Leaves.h"
#include "tests/support/GnmiPath.h"
#include "tests/support/HostModel.h"
#include "tests/support/RandomModel.h"

namespace server::wireTest {
namespace {

using Encoding = Wire::Encoding;
using host::LeafType;
using host::LeafValue;

// ===== By protobuf's objects

void setTyped(gnmi::TypedValue& to, LeafType type, const LeafValue& value) {
  if (const auto* boolean = std::get_if<bool>(&value)) {
    to.set_bool_val(*boolean);
  } else if (const auto* number = std::get_if<std::uint64_t>(&value)) {
    to.set_uint_val(*number);
  } else if (const auto text = host::textOf(value)) {
    std::string copy(*text);
    if (type == LeafType::decimal64) {
      to.set_double_val(std::stod(copy));
    } else if (type == LeafType::identityref) {
      to.set_string_val(copy.substr(copy.find(':') + 1));
    } else {
      to.set_string_val(copy);
    }
  } else {
    gnmi::ScalarArray& array = *to.mutable_leaflist_val();
    for (const unsigned element : std::get<std::vector<unsigned>>(value)) {
      array.add_element()->set_uint_val(element);
    }
  }
}

void set(gnmi::TypedValue& to, Encoding encoding, LeafType type, const LeafValue& value) {
  if (encoding == Encoding::proto) return setTyped(to, type, value);
  if (encoding == Encoding::jsonIetf) return to.set_json_ietf_val(host::leafText(type, value));
  const bool isNumber = type == LeafType::uint64 || type == LeafType::decimal64;
  std::string text = host::leafText(type, value);
  if (isNumber) text = text.substr(1, text.size() - 2);
  if (type == LeafType::identityref) text = '"' + text.substr(text.find(':') + 1);
  to.set_json_val(text);
}

gnmi::Notification expected(const host::Model& model, const host::View& view, Encoding encoding) {
  gnmi::Notification all;
  host::eachLeaf(model, view, [&](const std::string& path, LeafType type, const LeafValue& value) {
    gnmi::Update& update = *all.add_update();
    *update.mutable_path() = support::gnmiPath(path);
    set(*update.mutable_val(), encoding, type, value);
  });
  return all;
}

std::string bodyOf(const host::Model& model, const host::View& view, Encoding encoding) {
  Wire wire(view, encoding);
  std::string body;
  std::size_t count = 0;
  host::eachRecord(model, view, [&](const host::RecordAt& at) {
    count += wire.updates(body, at, host::allRows);
  });
  gnmi::Notification parsed;
  EXPECT_TRUE(parsed.ParseFromString(body));
  EXPECT_EQ(static_cast<std::size_t>(parsed.update_size()), count);
  return body;
}

// The document's walk and that of the records differ in their order alone.
std::vector<std::string> sortedUpdates(const gnmi::Notification& notification) {
  std::vector<std::string> updates;
  for (const gnmi::Update& update : notification.update()) {
    updates.push_back(update.SerializeAsString());
  }
  std::sort(updates.begin(), updates.end());
  return updates;
}

void expectSame(const host::Model& model, const host::View& view) {
  for (const Encoding encoding : {Encoding::json, Encoding::jsonIetf, Encoding::proto}) {
    const std::string body = bodyOf(model, view, encoding);
    gnmi::Notification parsed;
    ASSERT_TRUE(parsed.ParseFromString(body));
    EXPECT_EQ(parsed.SerializeAsString(), body);  // byte by byte what protobuf writes
    EXPECT_EQ(sortedUpdates(parsed), sortedUpdates(expected(model, view, encoding)));
  }
}

TEST(Wires, HaveTheBytesOfProtobufForAllLeaves) {
  for (const host::ViewOptions& options : support::hostAllViews()) {
    expectSame(support::hostFullModel().model, host::View(options));
  }
}

TEST(Wires, HaveTheBytesOfProtobufForRandomModels) {
  const host::View view({.augments = true, .state = true, .interfaceRef = true});
  std::size_t leaves = 0;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    const support::RandomModel random(seed);
    SCOPED_TRACE(seed);
    expectSame(random.model, view);
    leaves += host::leavesOf(random.model, view).size();
  }
  EXPECT_GT(leaves, 3000u);
}

// ===== Single answers

const host::View& view() {
  static const host::View view;
  return view;
}

gnmi::Notification parsed(const std::string& body) {
  gnmi::Notification notification;
  EXPECT_TRUE(notification.ParseFromString(body));
  return notification;
}

TEST(Wires, HaveTheRowsThatAreWanted) {
  support::HostModel built;
  built.forwardingGroupIs("f", "q");
  Wire wire(view(), Encoding::proto);
  std::string body;
  host::eachRecord(built.model, view(), [&](const host::RecordAt& at) {
    EXPECT_EQ(wire.updates(body, at, 2), 1u);
    EXPECT_EQ(wire.updates(body, at, 0), 0u);
  });
  const gnmi::Notification one = parsed(body);
  ASSERT_EQ(one.update_size(), 1);
  EXPECT_EQ(one.update(0).val().string_val(), "q");
  EXPECT_EQ(one.update(0).path().elem(3).name() + '/' + one.update(0).path().elem(4).name(),
            "config/output-queue");
}

TEST(Wires, DeleteNodesOfAnyKind) {
  Wire wire(view(), Encoding::proto);
  std::string body;
  wire.deletion(body, &host::kinds::term, {"c", "t]"});
  wire.deletion(body, &host::kinds::term, {"c", "t"}, "conditions/ipv4/config/dscp");
  wire.deletion(body, &host::kinds::schedulerInput, {"s", "1", "i"});
  wire.deletion(body, &host::kinds::outputPfc, {"e"});
  wire.deletion(body, nullptr, {}, "qos/queues");
  const gnmi::Notification deletions = parsed(body);
  const char* const inputPath =
      "/qos/scheduler-policies/scheduler-policy[name=s]/schedulers/scheduler[sequence=1]/"
      "inputs/input[id=i]";
  const char* const paths[] = {
      "/qos/classifiers/classifier[name=c]/terms/term[id=t\\]]",
      "/qos/classifiers/classifier[name=c]/terms/term[id=t]/conditions/ipv4/config/dscp", inputPath,
      "/qos/interfaces/interface[interface-id=e]/output/qosoc-augments:pfc", "/qos/queues"};
  ASSERT_EQ(deletions.delete__size(), 5);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(deletions.delete_(i).SerializeAsString(),
              support::gnmiPath(paths[i]).SerializeAsString());
  }
}

TEST(Wires, HaveSubtreesAsJson) {
  Wire wire(view(), Encoding::jsonIetf);
  std::string body;
  wire.jsonUpdate(body, &host::kinds::queue, {"q"}, "config", R"({"a":1})");
  wire.jsonUpdate(body, nullptr, {}, "", "{}");
  const gnmi::Notification updates = parsed(body);
  ASSERT_EQ(updates.update_size(), 2);
  EXPECT_EQ(updates.update(0).val().json_ietf_val(), R"({"a":1})");
  EXPECT_EQ(updates.update(0).path().SerializeAsString(),
            support::gnmiPath("/qos/queues/queue[name=q]/config").SerializeAsString());
  EXPECT_EQ(updates.update(1).val().json_ietf_val(), "{}");
  EXPECT_EQ(updates.update(1).path().elem_size(), 0);
  body.clear();
  Wire(view(), Encoding::json).jsonUpdate(body, nullptr, {}, "qos", "{}");
  EXPECT_EQ(parsed(body).update(0).val().json_val(), "{}");
}

// ===== Messages

TEST(Wires, WrapANotificationForGetAndForSubscribe) {
  Wire wire(view(), Encoding::proto);
  std::string body;
  wire.deletion(body, nullptr, {}, std::string(300, 'x'));
  const std::string head = notificationHead(-5, {.origin = "openconfig", .target = "device"});
  const std::string message = messageHead(head.size() + body.size()) + head + body;

  gnmi::Notification notification;
  notification.set_timestamp(-5);
  notification.mutable_prefix()->set_origin("openconfig");
  notification.mutable_prefix()->set_target("device");
  notification.add_delete_()->add_elem()->set_name(std::string(300, 'x'));
  gnmi::SubscribeResponse event;
  *event.mutable_update() = notification;
  EXPECT_EQ(message, event.SerializeAsString());
  gnmi::GetResponse answer;
  *answer.add_notification() = notification;
  *answer.add_notification() = notification;
  EXPECT_EQ(message + message, answer.SerializeAsString());
}

TEST(Wires, LeaveOutWhatIsEmptyInAHead) {
  EXPECT_EQ(notificationHead(0, {}), "");
  gnmi::Notification notification;
  notification.set_timestamp(1'700'000'000'000'000'000);
  EXPECT_EQ(notificationHead(1'700'000'000'000'000'000, {}), notification.SerializeAsString());
  notification.mutable_prefix()->set_target("d");
  EXPECT_EQ(notificationHead(1'700'000'000'000'000'000, {.target = "d"}),
            notification.SerializeAsString());
}

TEST(Wires, SayThatAllWasSent) {
  gnmi::SubscribeResponse sync;
  sync.set_sync_response(true);
  EXPECT_EQ(syncResponse(), sync.SerializeAsString());
}

TEST(Wires, HaveVarintsOfAllSizes) {
  for (unsigned bits = 0; bits <= 64; ++bits) {
    for (const std::uint64_t less : {0, 1}) {
      const std::uint64_t v = (bits == 64 ? 0 : std::uint64_t{1} << bits) - less;
      std::string field;
      protobuf::appendNumber(field, 3, v);
      gnmi::TypedValue value;
      value.set_uint_val(v);
      EXPECT_EQ(field, value.SerializeAsString());
      EXPECT_EQ(protobuf::varintSize(v) + 1, field.size());
    }
  }
}

}  // namespace
}  // namespace server::wireTest
