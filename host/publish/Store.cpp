#include "host/publish/Store.h"

#include <algorithm>

#include "host/publish/EntryName.h"

namespace host {
namespace {

// Beside a share of what is there: what a small model, too, may lose without a reader's loss.
constexpr std::size_t goneAtLeast = 1024;

struct NameOf {
  explicit NameOf(const RecordKind& kind, const QosOc::Config::RecordKeys& keys)
      : texts(keyTexts(kind, keys)), keys(texts.begin(), texts.end()) {
    name = entryName(kind, this->keys);
  }
  NameOf(const NameOf&) = delete;
  NameOf& operator=(const NameOf&) = delete;

  std::vector<std::string> texts;
  Keys keys;
  std::string name;
};

}  // namespace

bool Store::publish(const RecordChanges& changes, const Model& committed, std::int64_t timestamp) {
  Commitment made = commitmentOf(changes, committed);
  if (made.images.empty()) return false;
  const std::lock_guard lock(mutex_);
  for (Ref<Image>& image : made.images) put(std::move(image));
  head_ = {made.commit, timestamp};
  dropOldest();
  return true;
}

Store::Commitment Store::commitmentOf(const RecordChanges& changes, const Model& committed) const {
  Commitment made{head_.commit + 1};
  made.isWhole = changes.isWhole;
  for (const RecordChange& change : changes.changes) {
    add(made, *change.kind, change, change.after);
    if (change.kind != &kinds::interface) continue;
    // It is an entry of /interfaces, too.
    const RecordKind& referenced = kinds::referencedInterface;
    const void* entry =
        change.after != nullptr ? entryIn(committed, &referenced, change.keys) : nullptr;
    add(made, referenced, change, entry != nullptr ? referenced.record(entry) : nullptr);
  }
  if (made.isWhole) addMissing(made);
  return made;
}

void Store::add(Commitment& made, const RecordKind& kind, const RecordChange& change,
                const void* record) const {
  const NameOf name(kind, change.keys);
  const Image* before = index_.find(name.name);
  if (made.isWhole) made.named.insert(name.name);
  Ref<Image> image;
  if (record != nullptr) {
    image = Image::make({name.name, kind, name.keys, record, before, made.commit});
  } else if (before != nullptr && !before->isGone()) {
    image = Image::gone(*before, made.commit);
  }
  if (image) made.images.push_back(std::move(image));
}

// What is here and not among all that there is, went: the highest of it.
void Store::addMissing(Commitment& made) const {
  std::string_view last;
  for (ImageIndex::Place place; !index_.isEnd(place); place = index_.next(place)) {
    const Image& image = index_.at(place);
    if (image.isGone() || made.named.contains(std::string(image.name()))) continue;
    if (!last.empty() && image.name().starts_with(last)) continue;
    last = image.name();
    made.images.push_back(Image::gone(image, made.commit));
  }
}

// What an entry held goes with it: the image that says that it went speaks for all.
void Store::put(Ref<Image> image) {
  const std::string_view name = image->name();
  ImageIndex::Place place = index_.atOrBehind(name);
  const auto isIt = [&] {
    return !index_.isEnd(place) && index_.at(place).name().starts_with(name);
  };
  if (image->isGone()) {
    while (isIt()) remove(place);
  } else if (isIt() && index_.at(place).name() == name) {
    takeFromLog(index_.at(place));
  }
  logOf(*image).add(*image);
  index_.put(std::move(image));
}

void Store::remove(ImageIndex::Place& place) {
  takeFromLog(index_.at(place));
  index_.erase(place);
}

// The images are the store's: readers alone see them as const.
void Store::takeFromLog(const Image& image) { logOf(image).remove(const_cast<Image&>(image)); }

void Store::dropOldest() {
  while (gone_.size() > goneAtLeast + there_.size() / 4) {
    const Image& oldest = *gone_.oldest();
    forgotten_ = oldest.changed();
    ImageIndex::Place place = index_.atOrBehind(oldest.name());
    remove(place);
  }
}

// ===== Readers

Store::Head Store::head() const {
  const std::lock_guard lock(mutex_);
  return head_;
}

Store::Snapshot Store::snapshot() const {
  const std::lock_guard lock(mutex_);
  return {head_, index_};
}

Store::Window Store::since(Commit commit) const {
  Window window;
  {
    const std::lock_guard lock(mutex_);
    window.head = head_;
    window.isLost = commit < forgotten_;
    bool hasLost = false;
    const auto take = [&](Image& image) {
      window.images.emplace_back(&image);
      hasLost = hasLost || image.hasLostSince(commit);
    };
    there_.eachSince(commit, take);
    gone_.eachSince(commit, take);
    if (hasLost) window.all = index_;
  }
  std::sort(window.images.begin(), window.images.end(),
            [](const Ref<Image>& a, const Ref<Image>& b) { return a->name() < b->name(); });
  return window;
}

Store::Piece Store::piece(std::string_view name) const {
  const std::lock_guard lock(mutex_);
  const ImageIndex::Place place = index_.atOrBehind(name);
  return index_.isEnd(place) ? Piece{head_} : Piece{head_, index_.block(place)};
}

std::size_t Store::bytes() const {
  const std::lock_guard lock(mutex_);
  std::size_t bytes = index_.bytes();
  for (ImageIndex::Place place; !index_.isEnd(place); place = index_.next(place)) {
    bytes += index_.at(place).bytes();
  }
  return bytes;
}

}  // namespace host
