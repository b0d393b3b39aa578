// OVERVIEW: images in the order of their names, in blocks of some dozens. A copy of the index is a
// copy of the list of its blocks, and stays as it is: a block that a copy holds, too, isn't written
// but replaced.
//
// RULES
// - One thread writes an index. Copies of it may be read by any thread.
// - While no copy is held, a change costs a search and a move within a block.
#pragma once

#include <string_view>
#include <vector>

#include "host/publish/Image.h"

namespace host {

class ImageIndex {
 public:
  // What stands side by side. A block is never empty.
  class Block final : public Counted<Block> {
   public:
    static constexpr std::size_t most = 64;

    std::vector<Ref<Image>> images;
    void destroy() const { delete this; }
  };
  struct Place {
    std::size_t block = 0;
    std::size_t image = 0;
    bool operator==(const Place&) const = default;
  };

  // Null when there is none of that name.
  const Image* find(std::string_view name) const;
  // The first that has this name or one behind it.
  Place atOrBehind(std::string_view name) const;
  bool isEnd(const Place& place) const { return place.block == blocks_.size(); }
  const Image& at(const Place& place) const { return *blocks_[place.block]->images[place.image]; }
  const Ref<Block>& block(const Place& place) const { return blocks_[place.block]; }
  Place next(Place place) const;

  // Puts an image in the place of the one of its name, or where none is.
  void put(Ref<Image> image);
  // Takes away. The place is then that of what stood behind it.
  void erase(Place& place);

  // What it takes itself.
  std::size_t bytes() const;

 private:
  Block& writable(std::size_t block);
  void split(std::size_t block);

  std::vector<Ref<Block>> blocks_;
};

}  // namespace host
