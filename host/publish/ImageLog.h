// Images in the order in which they were published, each at one place alone. The log holds nothing:
// an image is in an index for as long as it is here.
#pragma once

#include <cstddef>

#include "host/publish/Image.h"

namespace host {

class ImageLog {
 public:
  void add(Image& image);
  // Requires: it is here.
  void remove(Image& image);
  std::size_t size() const { return size_; }

  Image* oldest() const { return oldest_; }
  // Calls visit for those that were published behind a commit, the newest first.
  template <class Visit>
  void eachSince(Commit commit, const Visit& visit) const {
    for (Image* image = newest_; image != nullptr && image->changed() > commit;
         image = image->older_) {
      visit(*image);
    }
  }

 private:
  Image* oldest_ = nullptr;
  Image* newest_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace host
