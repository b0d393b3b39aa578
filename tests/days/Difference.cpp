#include "tests/days/Difference.h"

#include <deque>
#include <map>

#include "host/Json.h"
#include "host/ModelReader.h"
#include "host/ModelWriter.h"

namespace days {
namespace {

namespace json = host::rapidjson;
using Members = std::map<std::string, const json::Value*>;

std::string textOf(const json::Value* value) {
  if (value == nullptr) return "";
  json::StringBuffer buffer;
  json::Writer<json::StringBuffer> writer(buffer);
  value->Accept(writer);
  return {buffer.GetString(), buffer.GetSize()};
}

Members membersOf(const json::Value& object) {
  Members members;
  for (const auto& member : object.GetObject()) {
    members[{member.name.GetString(), member.name.GetStringLength()}] = &member.value;
  }
  return members;
}

const json::Value* find(const Members& members, const std::string& key) {
  const auto found = members.find(key);
  return found != members.end() ? found->second : nullptr;
}

class Comparison {
 public:
  std::vector<Difference> of(const json::Value& left, const json::Value& right) {
    compare(&left, &right);
    return std::move(found_);
  }

 private:
  void compare(const json::Value* left, const json::Value* right) {
    if (left != nullptr && right != nullptr) {
      if (*left == *right) return;
      const std::size_t before = found_.size();
      const json::Value* lefts = object(left);
      const json::Value* rights = object(right);
      if (lefts != nullptr && rights != nullptr) compareMembers(*lefts, *rights);
      if (found_.size() > before) return;
    }
    found_.push_back({place_, textOf(left), textOf(right)});
  }

  void compareMembers(const json::Value& left, const json::Value& right) {
    const Members lefts = membersOf(left);
    const Members rights = membersOf(right);
    Members all = lefts;
    all.insert(rights.begin(), rights.end());
    for (const auto& [key, value] : all) {
      place_.push_back(key);
      compare(find(lefts, key), find(rights, key));
      place_.pop_back();
    }
  }

  // The object to compare by. What an object that is null would hold when it was just made stands
  // for it, so that the entries of the other one count one by one.
  const json::Value* object(const json::Value* value) {
    if (value->IsObject()) return value;
    static const std::map<std::string, std::string> fresh{
        {"terms", "{}"},
        {"schedulers", "{}"},
        {"inputs", "{}"},
        {"queues", "{}"},
        {"classifiers", "{}"},
        {"input", R"({"classifiers":null})"},
        {"output", R"({"pfc":{"priorities":""},"queues":null,"scheduler-policy":null})"}};
    const auto known = value->IsNull() ? fresh.find(place_.back()) : fresh.end();
    if (known == fresh.end()) return nullptr;
    made_.emplace_back().Parse(known->second.data(), known->second.size());
    return &made_.back();
  }

  host::Tokens place_;
  std::vector<Difference> found_;
  std::deque<json::Document> made_;
};

}  // namespace

std::string Difference::told() const {
  const auto side = [](const std::string& text) { return text.empty() ? "nothing" : text; };
  return host::shownPointer(place) + ": " + side(left) + " and " + side(right);
}

Snapshot::Snapshot(const host::Model& model)
    : json_(host::modelJson(model, host::Layout::compact)) {}

host::Model Snapshot::model() const {
  host::Model copy;
  host::readModelText(json_, copy);
  return copy;
}

std::vector<Difference> Snapshot::differences(const Snapshot& right) const {
  if (*this == right) return {};
  json::Document documents[2];
  documents[0].Parse(json_.data(), json_.size());
  documents[1].Parse(right.json_.data(), right.json_.size());
  return Comparison().of(documents[0], documents[1]);
}

}  // namespace days
