#include "host/publish/ImageIndex.h"

#include <algorithm>

namespace host {
namespace {

std::string_view firstName(const Ref<ImageIndex::Block>& block) {
  return block->images.front()->name();
}

Ref<ImageIndex::Block> newBlock() {
  Ref<ImageIndex::Block> block(new ImageIndex::Block);
  block->images.reserve(ImageIndex::Block::most + 1);
  return block;
}

}  // namespace

ImageIndex::Place ImageIndex::atOrBehind(std::string_view name) const {
  // In the last block that begins at the name or before it, or at the beginning of the next one.
  const auto behind = std::upper_bound(
      blocks_.begin(), blocks_.end(), name,
      [](std::string_view wanted, const Ref<Block>& block) { return wanted < firstName(block); });
  if (behind == blocks_.begin()) return {};
  Place place{static_cast<std::size_t>(behind - blocks_.begin()) - 1, 0};
  const auto& images = blocks_[place.block]->images;
  const auto found = std::lower_bound(
      images.begin(), images.end(), name,
      [](const Ref<Image>& image, std::string_view wanted) { return image->name() < wanted; });
  if (found == images.end()) return {place.block + 1, 0};
  place.image = static_cast<std::size_t>(found - images.begin());
  return place;
}

const Image* ImageIndex::find(std::string_view name) const {
  const Place place = atOrBehind(name);
  if (isEnd(place) || at(place).name() != name) return nullptr;
  return &at(place);
}

ImageIndex::Place ImageIndex::next(Place place) const {
  if (++place.image < blocks_[place.block]->images.size()) return place;
  return {place.block + 1, 0};
}

void ImageIndex::put(Ref<Image> image) {
  Place place = atOrBehind(image->name());
  if (!isEnd(place) && at(place).name() == image->name()) {
    writable(place.block).images[place.image] = std::move(image);
    return;
  }
  if (blocks_.empty()) {
    blocks_.push_back(newBlock());
    blocks_.front()->images.push_back(std::move(image));
    return;
  }
  // What begins a block may as well end the one before.
  if (place.image == 0 && place.block > 0) {
    --place.block;
    place.image = blocks_[place.block]->images.size();
  }
  auto& images = writable(place.block).images;
  images.insert(images.begin() + static_cast<std::ptrdiff_t>(place.image), std::move(image));
  if (images.size() > Block::most) split(place.block);
}

void ImageIndex::erase(Place& place) {
  auto& images = writable(place.block).images;
  images.erase(images.begin() + static_cast<std::ptrdiff_t>(place.image));
  if (place.image < images.size()) return;
  place.image = 0;
  if (images.empty()) {
    blocks_.erase(blocks_.begin() + static_cast<std::ptrdiff_t>(place.block));
  } else {
    ++place.block;
  }
}

ImageIndex::Block& ImageIndex::writable(std::size_t block) {
  Ref<Block>& held = blocks_[block];
  if (held->isHeldOnce()) return *held;
  Ref<Block> own = newBlock();
  own->images.assign(held->images.begin(), held->images.end());
  held = std::move(own);
  return *held;
}

// At the end of the index, where a model that is read in order grows, blocks stay full.
std::size_t ImageIndex::bytes() const {
  return blocks_.capacity() * sizeof(Ref<Block>) +
         blocks_.size() * (sizeof(Block) + (Block::most + 1) * sizeof(Ref<Image>));
}

// At the end of the index, where a model that is read in order grows, blocks stay full.
void ImageIndex::split(std::size_t block) {
  auto& images = blocks_[block]->images;
  const bool isLast = block + 1 == blocks_.size();
  const auto middle = images.end() - static_cast<std::ptrdiff_t>(isLast ? 1 : Block::most / 2);
  Ref<Block> second = newBlock();
  second->images.assign(std::make_move_iterator(middle), std::make_move_iterator(images.end()));
  images.erase(middle, images.end());
  blocks_.insert(blocks_.begin() + static_cast<std::ptrdiff_t>(block) + 1, std::move(second));
}

}  // namespace host
