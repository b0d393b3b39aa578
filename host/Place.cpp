#include "host/Place.h"

#include <stdexcept>

namespace host {

std::string raised(const Rok::Exception& exception) {
  using Rok::MutatorArgNullPointerException;
  using Rok::MutatorReinstantiatingException;
  if (const auto* twice = dynamic_cast<const MutatorReinstantiatingException*>(&exception)) {
    return "reinstantiating: " + twice->attribute();
  }
  if (const auto* null = dynamic_cast<const MutatorArgNullPointerException*>(&exception)) {
    return "null argument: " + null->attribute();
  }
  return std::string("range: ") + exception.what();
}

Value Place::value() const {
  Value::Object members;
  for (Rok::String& key : keys()) {
    Value below = at(key)->value();
    members.push_back({std::move(key), std::move(below)});
  }
  return Value(std::move(members));
}

void Place::put(const Rok::String& key, const Value& /*value*/, Writes& /*writes*/) {
  throw std::logic_error("nothing can be written at " + std::string(key));
}

void Place::erase(const Rok::String& key, Writes& /*writes*/) {
  throw std::logic_error("nothing can be removed at " + std::string(key));
}

}  // namespace host
