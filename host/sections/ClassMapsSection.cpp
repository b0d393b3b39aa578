// "class-maps": {"<map type>": {"<name>": {"match": ["<option>", ...]}}}
#include "host/sections/Forms.h"

namespace host {
namespace {

using Qos::ClassMapConfig;
using Qos::ClassMapMatchOption;
using Qos::Input::AclConfig;
using Qos::Input::ClassMapTypeConfig;
using Option = ScalarForm<ClassMapMatchOption>;

Schema matchSchema(const Rok::Ptr<ClassMapConfig>& /*fresh*/) {
  using OptionNames = Names<ClassMapMatchOption>;
  return Schema::set(Schema::named(OptionNames::what, OptionNames::names));
}

Value::List matchOf(const ClassMapConfig& classMap) {
  std::vector<ClassMapMatchOption> options;
  for (auto i = classMap.match().unsafeIterator(); i; ++i) options.push_back(i->key());
  std::sort(options.begin(), options.end());
  Value::List list;
  for (const ClassMapMatchOption option : options) list.push_back(Option::value(option));
  return list;
}

std::unique_ptr<Place> matchAt(const Rok::Ptr<ClassMapConfig>& classMap) {
  return std::make_unique<LeafPlace>(Value(matchOf(*classMap)));
}

bool contains(const Value::List& list, const Value& value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

// Each added option, then each removed one.
void putMatch(const Rok::Ptr<ClassMapConfig>& classMap, const Value& match, Writes& writes) {
  const Value::List old = matchOf(*classMap);
  for (const Value& option : match.list()) {
    if (contains(old, option)) continue;
    writes([&] { classMap->matchIs(Option::native(option), Rok::make<Qos::ClassMapMatch>()); });
  }
  for (const Value& option : old) {
    if (contains(match.list(), option)) continue;
    writes([&] { classMap->matchDel(Option::native(option)); });
  }
}

constexpr Setting<ClassMapConfig> classMapSettings[] = {
    {"match", matchSchema, matchAt, putMatch},
};

using ClassMaps = Objects<all(&ClassMapTypeConfig::cmap), &ClassMapTypeConfig::cmapIs,
                          &ClassMapTypeConfig::cmapDel, Record<classMapSettings>>;

using ClassMapTypes =
    Objects<all(&AclConfig::cmapType), &AclConfig::cmapTypeIs, &AclConfig::cmapTypeDel, ClassMaps>;

}  // namespace

Section classMapsSection() {
  return section(&Native::aclConfig, part<ClassMapTypes>("class-maps"));
}

}  // namespace host
