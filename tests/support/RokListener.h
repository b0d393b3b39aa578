// A notifier, and observers whose reactions a test writes.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Rok/Rok.h"

namespace RokTest {

// The names of the observers that were called, in order.
using Calls = std::vector<std::string>;

// A notifier with two scalars and a collection.
class Bell final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> tone{130};
    static constexpr Rok::Attribute<> volume{131};
    static constexpr Rok::Attribute<Rok::String> chime{132};
  };
  using Chimes = Rok::HashMap2018<Rok::Hm2018NEI<0x71, Rok::String, int>>;

  Bell() = default;
  explicit Bell(bool& gone) : gone_(&gone) {}
  ~Bell() override {
    if (gone_ != nullptr) *gone_ = true;
  }

  int tone() const { return tone_; }
  void toneIs(int v) { attributeIs(tone_, v, Attr::tone); }
  void volumeIs(int v) { attributeIs(volume_, v, Attr::volume); }
  const Chimes& chime() const { return chime_; }
  void chimeIs(const Rok::String& key, int v) { memberIs(chime_, key, v, Attr::chime); }
  void chimeDel(const Rok::String& key) { memberDel(chime_, key, Attr::chime); }
  // Notifies of a chime, whatever its value.
  void strike(const Rok::String& key) { chimeIs(key, ++strokes_); }

 private:
  bool* gone_ = nullptr;
  int tone_ = 0;
  int volume_ = 0;
  int strokes_ = 0;
  Chimes chime_;
};

// An observer that records its name and runs the reaction that a test gave it. It watches
// everything, or one chime.
class Listener final : public Rok::PtrInterface::NotifieeConst {
 public:
  using Reaction = std::function<void(Rok::AttributeId, const void* key)>;

  Listener(std::string name, Calls& calls, std::uint64_t interest = 0)
      : NotifieeConst(interest), name_(std::move(name)), calls_(calls) {}

  const std::string& name() const { return name_; }
  void reactionIs(Reaction reaction) { reaction_ = std::move(reaction); }
  void reactionIs(std::function<void()> reaction) {
    reaction_ = [act = std::move(reaction)](Rok::AttributeId, const void*) { act(); };
  }
  // What happens at the first call only.
  void onceIs(std::function<void()> reaction) {
    reactionIs([this, act = std::move(reaction)] {
      const std::function<void()> once = act;
      reaction_ = nullptr;
      once();
    });
  }

  void onAttribute(Rok::AttributeId id, const void* key) override {
    calls_.push_back(name_);
    if (const Reaction reaction = reaction_) reaction(id, key);
  }

 private:
  std::string name_;
  Calls& calls_;
  Reaction reaction_;
};

inline std::uint64_t interestInChime(const Rok::String& key) {
  return Rok::NotifieeList::interestIn(Bell::Attr::chime.id, key);
}

// Makes an observer that is bound, registered and switched on.
inline Rok::Ptr<Listener> listen(const Rok::Ptr<Bell>& bell, const std::string& name, Calls& calls,
                                 std::uint64_t interest = 0) {
  Rok::Ptr<Listener> listener = Rok::make<Listener>(name, calls, interest);
  listener->notifierIs(bell.get());
  listener->isRegisteredNotifieeIs(true);
  listener->hasNotificationActiveIs(true);
  return listener;
}

// What an observer watches.
enum class Wish { all, attribute, key };

inline std::uint64_t interestOf(Wish wish, const Rok::String& chime) {
  if (wish == Wish::all) return 0;
  if (wish == Wish::attribute) return Rok::NotifieeList::interestIn(Bell::Attr::chime.id);
  return interestInChime(chime);
}

// As many observers as it takes for others to be found by their interest. They are switched off.
inline std::vector<Rok::Ptr<Listener>> crowd(const Rok::Ptr<Bell>& bell, Calls& calls) {
  std::vector<Rok::Ptr<Listener>> all;
  for (int i = 0; i < 16; ++i) {
    all.push_back(listen(bell, "one of the crowd", calls));
    all.back()->hasNotificationActiveIs(false);
  }
  return all;
}

}  // namespace RokTest
