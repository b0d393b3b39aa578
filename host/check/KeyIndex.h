// Finds the keys of a native collection by a text that is made of each key.
#pragma once

#include <set>
#include <string>
#include <unordered_map>

#include "Rok/Rok.h"

namespace host {

// Follows the collection from its construction on: `map` reads it from `Owner`, `attribute` is what
// that notifies, and `textOf` makes the text of a key.
template <class Owner, auto map, auto attribute, auto textOf>
class KeyIndex final : public Rok::PtrInterface::NotifieeConst {
 public:
  using Key = typename decltype(attribute)::Key;
  using Keys = std::set<Key>;

  explicit KeyIndex(const Owner& owner) : owner_(owner) {
    for (auto i = (owner.*map)().unsafeIterator(); i; ++i) keys_[textOf(i->key())].insert(i->key());
    notifierIs(&owner);
    hasNotificationActiveIs(true);
    isRegisteredNotifieeIs(true);
  }

  // The keys of that text.
  const Keys& keys(const std::string& text) const {
    static const Keys none;
    const auto found = keys_.find(text);
    return found != keys_.end() ? found->second : none;
  }

  void onAttribute(Rok::AttributeId id, const void* changed) override {
    if (id != attribute.id) return;
    const Key key = *static_cast<const Key*>(changed);
    const std::string text = textOf(key);
    if ((owner_.*map)().find(key) != nullptr) {
      keys_[text].insert(key);
      return;
    }
    const auto found = keys_.find(text);
    if (found == keys_.end()) return;
    found->second.erase(key);
    if (found->second.empty()) keys_.erase(found);
  }

 private:
  const Owner& owner_;
  std::unordered_map<std::string, Keys> keys_;
};

}  // namespace host
