// What raises around one place: what a report of a change names, and what a root that was left out
// waits for. It costs what is there, whatever else is configured.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/check/Raises.h"

namespace host {

class NearbyRaises {
 public:
  // Both must outlive this. `model`: as for Raises.
  explicit NearbyRaises(const Native& native, const Model* model = nullptr);
  NearbyRaises(const NearbyRaises&) = delete;
  NearbyRaises& operator=(const NearbyRaises&) = delete;
  ~NearbyRaises();

  // What raises in the objects that a write of a place concerns. `keys` lead to it, canonical. The
  // first call that needs it walks all interfaces, service policies or profiles, once.
  void at(std::span<const Rok::String> keys, const Raises::Found& found);

 private:
  struct Indexes;
  using Keys = std::span<const Rok::String>;

  void atInterface(Keys keys, const Raises::Found& found) const;
  void atQueue(const Nerit::IntfId& interface, const Qos::TxQueueConfig& queue, Keys settings,
               const Raises::Found& found) const;
  void atComment(const Rok::String& key, const Raises::Found& found);
  void atProfile(Keys keys, const Raises::Found& found) const;
  void atGroup(const Rok::String& name, const Raises::Found& found) const;
  void atServicePolicy(std::string_view key, const Raises::Found& found);

  const Native& native_;
  Raises raises_;
  std::unique_ptr<Indexes> indexes_;
};

// The end of a report over what raises at these places: " at /a, /b". Empty without a place. Of many,
// it names the first and says how many more there are.
std::string atPlaces(std::vector<Tokens> places);

// Whether that is what a root or handler raised, which a report has as `what`.
bool explains(const Raise& raise, std::string_view what);

}  // namespace host
