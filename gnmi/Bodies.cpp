#include "gnmi/Bodies.h"

#include <algorithm>

namespace server {

using host::Image;
using host::ImageIndex;
using host::Keys;

namespace {

// Keys of what is kept; nothing in them needs to be read again.
template <class Number>
void appendBytes(std::string& key, Number number) {
  key.append(reinterpret_cast<const char*>(&number), sizeof number);
}

template <class Value>
void dropExpired(std::unordered_map<std::string, std::weak_ptr<Value>>& kept) {
  constexpr std::size_t most = 1024;
  if (kept.size() < most) return;
  std::erase_if(kept, [](const auto& entry) { return entry.second.expired(); });
}

}  // namespace

// The block stays with what was made of it: so no other block gets its address.
struct Bodies::Piece {
  host::Ref<ImageIndex::Block> block;
  std::string bytes;
};

class Bodies::Writer {
 public:
  Writer(Bodies& bodies, Wire::Encoding encoding)
      : bodies_(bodies), free_(bodies.writers_[static_cast<std::size_t>(encoding)]) {
    {
      const std::lock_guard lock(bodies_.mutex_);
      if (!free_.empty()) {
        wire_ = std::move(free_.back());
        free_.pop_back();
      }
    }
    if (!wire_) wire_ = std::make_unique<Wire>(bodies_.view_, encoding);
  }
  ~Writer() {
    const std::lock_guard lock(bodies_.mutex_);
    free_.push_back(std::move(wire_));
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  Wire& operator*() const { return *wire_; }

 private:
  Bodies& bodies_;
  std::vector<std::unique_ptr<Wire>>& free_;
  std::unique_ptr<Wire> wire_;
};

// ===== All that there is

std::optional<Message> Bodies::Walk::next() {
  const auto ranges = wish_.filter->ranges();
  Message message;
  std::size_t size = 0;
  while (range_ < ranges.size() && size < messageSize) {
    const std::string& range = ranges[range_];
    name_ = std::max(name_, range);
    const host::Store::Piece piece = bodies_->store_.piece(name_);
    if (!piece.block) break;
    const auto& images = piece.block->images;
    const auto first = std::lower_bound(
        images.begin(), images.end(), name_,
        [](const auto& image, const std::string& name) { return image->name() < name; });
    if (!(*first)->name().starts_with(range)) {
      ++range_;
      continue;
    }
    const auto behind = std::find_if(
        first, images.end(), [&](const auto& image) { return !image->name().starts_with(range); });
    name_ = std::string(behind[-1]->name()) + '\0';
    const auto number = static_cast<std::size_t>(first - images.begin());
    Body body = bodies_->piece(piece.block, number, range, wish_);
    if (body->empty()) continue;
    if (message.bodies.empty()) message.timestamp = piece.head.timestamp;
    size += body->size();
    message.bodies.push_back(std::move(body));
  }
  if (message.bodies.empty()) return std::nullopt;
  return message;
}

Body Bodies::piece(const host::Ref<ImageIndex::Block>& block, std::size_t first,
                   std::string_view range, const Wish& wish) {
  std::string key = wish.filter->id();
  appendBytes(key, wish.encoding);
  appendBytes(key, block.get());
  appendBytes(key, first);
  key += range;
  if (Body body = kept(key)) return body;
  const auto made = std::make_shared<Piece>(Piece{block, {}});
  const Writer writer(*this, wish.encoding);
  Keys keys;
  for (std::size_t i = first; i < block->images.size(); ++i) {
    const Image& image = *block->images[i];
    if (!image.name().starts_with(range)) break;
    if (image.isGone()) continue;
    image.keys(keys);
    const RowSet rows = wish.filter->rows(image.kind(), keys);
    if (rows != 0) (*writer).updates(made->bytes, image.at(keys), rows);
  }
  keep(key, made);
  return {made, &made->bytes};
}

Body Bodies::kept(const std::string& key) {
  const std::lock_guard lock(mutex_);
  const auto found = pieces_.find(key);
  const auto piece = found != pieces_.end() ? found->second.lock() : nullptr;
  return piece ? Body(piece, &piece->bytes) : nullptr;
}

void Bodies::keep(const std::string& key, const std::shared_ptr<const Piece>& piece) {
  const std::lock_guard lock(mutex_);
  dropExpired(pieces_);
  pieces_[key] = piece;
  latest_[next_] = piece;
  next_ = (next_ + 1) % latest_.size();
}

// ===== What changed

std::shared_ptr<Bodies::Window> Bodies::window(host::Commit since, const Wish& wish) {
  std::string key = wish.filter->id();
  appendBytes(key, wish.encoding);
  appendBytes(key, since);
  const host::Commit head = store_.head().commit;
  {
    const std::lock_guard lock(mutex_);
    const auto found = windows_.find(key);
    auto window = found != windows_.end() ? found->second.lock() : nullptr;
    if (window && window->head().commit == head) return window;
  }
  auto made = std::make_shared<Window>(*this, since, wish);
  const std::lock_guard lock(mutex_);
  dropExpired(windows_);
  windows_[key] = made;
  return made;
}

Bodies::Window::Window(Bodies& bodies, host::Commit since, const Wish& wish)
    : bodies_(bodies),
      wish_(wish),
      window_(bodies.store_.since(since)),
      walk_(bodies.view_, window_, since) {}

std::optional<Message> Bodies::Window::message(std::size_t number) {
  const std::lock_guard lock(mutex_);
  while (number >= messages_.size()) {
    Body body = encoded();
    if (body->empty()) return std::nullopt;
    messages_.push_back(std::move(body));
  }
  return Message{window_.head.timestamp, {messages_[number]}};
}

Body Bodies::Window::encoded() {
  const auto body = std::make_shared<std::string>();
  const Writer writer(bodies_, wish_.encoding);
  const host::WindowWalk::Wanted wanted = wish_.filter->wanted();
  const host::WindowWalk::Visit visit{
      [&](const host::GoneNode& node) {
        (*writer).deletion(*body, node.kind, node.keys, node.below);
      },
      [&](const host::RecordAt& at, RowSet rows) { (*writer).updates(*body, at, rows); }};
  while (nextImage_ < window_.images.size() && body->size() < messageSize) {
    walk_.image(*window_.images[nextImage_++], wanted, visit);
  }
  return body;
}

}  // namespace server
