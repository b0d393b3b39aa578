// The names, numbers and types of the protocol, as its other implementations have them.
#include <gnmi.grpc.pb.h>
#include <gnmi_ext.pb.h>
#include <google/protobuf/descriptor.h>
#include <gtest/gtest.h>

#include <map>

namespace server::protocolTest {
namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::FileDescriptor;

// "repeated Path 2 delete"
std::string described(const FieldDescriptor& field) {
  std::string text = field.is_map() ? "map " : field.is_repeated() ? "repeated " : "";
  if (const Descriptor* message = field.message_type()) {
    text += message->name();
  } else if (const auto* enumeration = field.enum_type()) {
    text += enumeration->name();
  } else {
    text += field.type_name();
  }
  return text + ' ' + std::to_string(field.number()) + ' ' + field.name();
}

// The fields by their messages, in the order of their numbers; those of a map's entries apart.
using Fields = std::map<std::string, std::vector<std::string>>;
Fields fieldsOf(const FileDescriptor& file) {
  Fields fields;
  for (int i = 0; i < file.message_type_count(); ++i) {
    const Descriptor& message = *file.message_type(i);
    std::map<int, std::string> byNumber;
    for (int k = 0; k < message.field_count(); ++k) {
      byNumber[message.field(k)->number()] = described(*message.field(k));
    }
    auto& of = fields[message.name()];
    for (const auto& [number, text] : byNumber) of.push_back(text);
  }
  return fields;
}

using Numbers = std::map<std::string, int>;
Numbers numbersOf(const google::protobuf::EnumDescriptor& enumeration) {
  Numbers numbers;
  for (int i = 0; i < enumeration.value_count(); ++i) {
    numbers[enumeration.value(i)->name()] = enumeration.value(i)->number();
  }
  return numbers;
}

TEST(Protocol, HasTheMessagesOfGnmi) {
  const Fields fields{
      {"CapabilityRequest", {"repeated Extension 1 extension"}},
      {"CapabilityResponse",
       {"repeated ModelData 1 supported_models", "repeated Encoding 2 supported_encodings",
        "string 3 gNMI_version", "repeated Extension 4 extension"}},
      {"Decimal64", {"int64 1 digits", "uint32 2 precision"}},
      {"Error", {"uint32 1 code", "string 2 message", "Any 3 data"}},
      {"GetRequest",
       {"Path 1 prefix", "repeated Path 2 path", "DataType 3 type", "Encoding 5 encoding",
        "repeated ModelData 6 use_models", "repeated Extension 7 extension"}},
      {"GetResponse",
       {"repeated Notification 1 notification", "Error 2 error", "repeated Extension 3 extension"}},
      {"ModelData", {"string 1 name", "string 2 organization", "string 3 version"}},
      {"Notification",
       {"int64 1 timestamp", "Path 2 prefix", "repeated Update 4 update", "repeated Path 5 delete",
        "bool 6 atomic"}},
      {"Path",
       {"repeated string 1 element", "string 2 origin", "repeated PathElem 3 elem",
        "string 4 target"}},
      {"PathElem", {"string 1 name", "map KeyEntry 2 key"}},
      {"Poll", {}},
      {"QOSMarking", {"uint32 1 marking"}},
      {"ScalarArray", {"repeated TypedValue 1 element"}},
      {"SetRequest",
       {"Path 1 prefix", "repeated Path 2 delete", "repeated Update 3 replace",
        "repeated Update 4 update", "repeated Extension 5 extension",
        "repeated Update 6 union_replace"}},
      {"SetResponse",
       {"Path 1 prefix", "repeated UpdateResult 2 response", "Error 3 message", "int64 4 timestamp",
        "repeated Extension 5 extension"}},
      {"SubscribeRequest",
       {"SubscriptionList 1 subscribe", "Poll 3 poll", "repeated Extension 5 extension"}},
      {"SubscribeResponse",
       {"Notification 1 update", "bool 3 sync_response", "Error 4 error",
        "repeated Extension 5 extension"}},
      {"Subscription",
       {"Path 1 path", "SubscriptionMode 2 mode", "uint64 3 sample_interval",
        "bool 4 suppress_redundant", "uint64 5 heartbeat_interval"}},
      {"SubscriptionList",
       {"Path 1 prefix", "repeated Subscription 2 subscription", "QOSMarking 4 qos", "Mode 5 mode",
        "bool 6 allow_aggregation", "repeated ModelData 7 use_models", "Encoding 8 encoding",
        "bool 9 updates_only"}},
      {"TypedValue",
       {"string 1 string_val", "int64 2 int_val", "uint64 3 uint_val", "bool 4 bool_val",
        "bytes 5 bytes_val", "float 6 float_val", "Decimal64 7 decimal_val",
        "ScalarArray 8 leaflist_val", "Any 9 any_val", "bytes 10 json_val",
        "bytes 11 json_ietf_val", "string 12 ascii_val", "bytes 13 proto_bytes",
        "double 14 double_val"}},
      {"Update", {"Path 1 path", "Value 2 value", "TypedValue 3 val", "uint32 4 duplicates"}},
      {"UpdateResult", {"int64 1 timestamp", "Path 2 path", "Error 3 message", "Operation 4 op"}},
      {"Value", {"bytes 1 value", "Encoding 2 type"}},
  };
  EXPECT_EQ(fieldsOf(*gnmi::Path::descriptor()->file()), fields);
}

TEST(Protocol, HasTheExtensionsOfGnmi) {
  const Fields fields{
      {"Commit",
       {"string 1 id", "CommitRequest 2 commit", "CommitConfirm 3 confirm", "CommitCancel 4 cancel",
        "CommitSetRollbackDuration 5 set_rollback_duration"}},
      {"CommitCancel", {}},
      {"CommitConfirm", {}},
      {"CommitRequest", {"Duration 1 rollback_duration"}},
      {"CommitSetRollbackDuration", {"Duration 1 rollback_duration"}},
      {"ConfigSubscription",
       {"ConfigSubscriptionStart 1 start", "ConfigSubscriptionSyncDone 2 sync_done"}},
      {"ConfigSubscriptionStart", {}},
      {"ConfigSubscriptionSyncDone",
       {"string 1 commit_confirm_id", "string 2 server_commit_id", "bool 3 done"}},
      {"Depth", {"uint32 1 level"}},
      {"Extension",
       {"RegisteredExtension 1 registered_ext", "MasterArbitration 2 master_arbitration",
        "History 3 history", "Commit 4 commit", "Depth 5 depth",
        "ConfigSubscription 6 config_subscription"}},
      {"History", {"int64 1 snapshot_time", "TimeRange 2 range"}},
      {"MasterArbitration", {"Role 1 role", "Uint128 2 election_id"}},
      {"RegisteredExtension", {"ExtensionID 1 id", "bytes 2 msg"}},
      {"Role", {"string 1 id"}},
      {"TimeRange", {"int64 1 start", "int64 2 end"}},
      {"Uint128", {"uint64 1 high", "uint64 2 low"}},
  };
  EXPECT_EQ(fieldsOf(*gnmi_ext::Extension::descriptor()->file()), fields);
}

TEST(Protocol, HasTheNumbersOfGnmi) {
  EXPECT_EQ(numbersOf(*gnmi::Encoding_descriptor()),
            (Numbers{{"JSON", 0}, {"BYTES", 1}, {"PROTO", 2}, {"ASCII", 3}, {"JSON_IETF", 4}}));
  EXPECT_EQ(numbersOf(*gnmi::SubscriptionMode_descriptor()),
            (Numbers{{"TARGET_DEFINED", 0}, {"ON_CHANGE", 1}, {"SAMPLE", 2}}));
  EXPECT_EQ(numbersOf(*gnmi::SubscriptionList::Mode_descriptor()),
            (Numbers{{"STREAM", 0}, {"ONCE", 1}, {"POLL", 2}}));
  EXPECT_EQ(numbersOf(*gnmi::GetRequest::DataType_descriptor()),
            (Numbers{{"ALL", 0}, {"CONFIG", 1}, {"STATE", 2}, {"OPERATIONAL", 3}}));
  EXPECT_EQ(
      numbersOf(*gnmi::UpdateResult::Operation_descriptor()),
      (Numbers{
          {"INVALID", 0}, {"DELETE", 1}, {"REPLACE", 2}, {"UPDATE", 3}, {"UNION_REPLACE", 4}}));
  EXPECT_EQ(numbersOf(*gnmi_ext::ExtensionID_descriptor()),
            (Numbers{{"EID_UNSET", 0}, {"EID_EXPERIMENTAL", 999}}));
}

// Old clients fill fields that the protocol took back: they mean nothing any more.
TEST(Protocol, KeepsTheNumbersThatWereTakenBack) {
  EXPECT_TRUE(gnmi::Notification::descriptor()->IsReservedNumber(3));
  EXPECT_TRUE(gnmi::SubscribeRequest::descriptor()->IsReservedNumber(4));
  EXPECT_TRUE(gnmi::SubscriptionList::descriptor()->IsReservedNumber(3));
  EXPECT_TRUE(gnmi::GetRequest::descriptor()->IsReservedNumber(4));
}

TEST(Protocol, NamesItsServiceAndItsVersion) {
  EXPECT_EQ(std::string(gnmi::gNMI::service_full_name()), "gnmi.gNMI");
  const FileDescriptor& file = *gnmi::Path::descriptor()->file();
  EXPECT_EQ(file.options().GetExtension(gnmi::gnmi_service), "0.10.0");
  EXPECT_EQ(gnmi::gnmi_service.number(), 1001);
  const auto& service = *file.service(0);
  std::vector<std::string> methods;
  for (int i = 0; i < service.method_count(); ++i) {
    const auto& method = *service.method(i);
    methods.push_back((method.client_streaming() ? "stream " : "") + method.name() +
                      (method.server_streaming() ? " stream" : ""));
  }
  EXPECT_EQ(methods,
            (std::vector<std::string>{"Capabilities", "Get", "Set", "stream Subscribe stream"}));
}

}  // namespace
}  // namespace server::protocolTest
