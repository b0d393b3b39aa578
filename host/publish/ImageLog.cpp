#include "host/publish/ImageLog.h"

namespace host {

void ImageLog::add(Image& image) {
  image.older_ = newest_;
  image.newer_ = nullptr;
  (newest_ != nullptr ? newest_->newer_ : oldest_) = &image;
  newest_ = &image;
  ++size_;
}

void ImageLog::remove(Image& image) {
  (image.newer_ != nullptr ? image.newer_->older_ : newest_) = image.older_;
  (image.older_ != nullptr ? image.older_->newer_ : oldest_) = image.newer_;
  --size_;
}

}  // namespace host
