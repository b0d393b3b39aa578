// The CLI comment store.
#pragma once

#include "Rok/Rok.h"

namespace Cli {

// All comments of the device.
class Config final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<Rok::String> comment{130};
  };
  using Comments = Rok::HashMap2018<Rok::Hm2018NEI<0x12835b01u, Rok::String, Rok::String>>;

  // Texts by comment key; a missing one reads as empty. Notifies: comment, with the key.
  const Comments& comment() const { return comment_; }
  Rok::String comment(const Rok::String& key) const { return comment_.get(key); }
  void commentIs(const Rok::String& key, const Rok::String& text) {
    memberIs(comment_, key, text, Attr::comment);
  }
  void commentDel(const Rok::String& key) { memberDel(comment_, key, Attr::comment); }

 private:
  Comments comment_;
};

}  // namespace Cli
