// "comments": {"<comment key>": "<text>"}
#include "host/Sections.h"
#include "host/sections/Parts.h"

namespace host {
namespace {

class CommentsPlace final : public Place {
 public:
  explicit CommentsPlace(Rok::Ptr<Cli::Config> config) : config_(std::move(config)) {}

  std::vector<Rok::String> keys() const override { return sortedKeys(config_->comment(), textOf); }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const Rok::String* text = config_->comment().find(key);
    return text != nullptr ? std::make_unique<LeafPlace>(Value(textOf(*text))) : nullptr;
  }
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    writes([&] { config_->commentIs(key, value.text()); });
  }
  void erase(const Rok::String& key, Writes& writes) override {
    writes([&] { config_->commentDel(key); });
  }

 private:
  Rok::Ptr<Cli::Config> config_;
};

std::unique_ptr<Place> commentsPlace(const Native& native) {
  return std::make_unique<CommentsPlace>(native.cliConfig);
}

}  // namespace

Section commentsSection() {
  return {"comments", Schema::keyed(Key::name(), Schema::text()), commentsPlace};
}

}  // namespace host
