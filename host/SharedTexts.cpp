#include "host/SharedTexts.h"

#include <utility>

#include "Velmo/Hash.h"

namespace host {
namespace {

constexpr std::size_t leastSlots = 64;

}  // namespace

Rok::String SharedTexts::of(std::string_view text) {
  if (text.empty()) return {};
  if (2 * taken_ >= slots_.size()) grow();
  Rok::String& slot = slotOf(Velmo::hashBytes(text), text);
  if (slot.empty()) {
    slot = text;
    ++taken_;
  }
  return slot;
}

// The slot that holds the text, or the free one where it belongs.
Rok::String& SharedTexts::slotOf(std::size_t hash, std::string_view text) {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = hash & mask;
  while (!slots_[at].empty() && slots_[at] != text) at = (at + 1) & mask;
  return slots_[at];
}

void SharedTexts::grow() {
  std::vector<Rok::String> old = std::exchange(
      slots_, std::vector<Rok::String>(slots_.empty() ? leastSlots : 2 * slots_.size()));
  for (Rok::String& text : old) {
    if (!text.empty()) slotOf(text.hash(), text) = std::move(text);
  }
}

}  // namespace host
