#include "host/TextWindow.h"

#include <cstring>

namespace host {

TextWindow::TextWindow(std::FILE* file, std::size_t block)
    : file_(file), bytes_(block + margin), at_(bytes_.data()), end_(at_) {}

TextWindow::TextWindow(std::string_view text, std::size_t block)
    : text_(text), bytes_(block + margin), at_(bytes_.data()), end_(at_) {}

bool TextWindow::more() {
  const std::size_t held = rest().size();
  std::memmove(bytes_.data(), at_, held);
  // One that is full with what it holds grows twofold: a long string is moved a few times only.
  if (held == room()) bytes_.resize(2 * held + margin);
  const std::size_t size = read(bytes_.data() + held, room() - held);
  at_ = bytes_.data();
  end_ = at_ + held + size;
  bytes_[held + size] = '\0';
  return size > 0;
}

std::size_t TextWindow::read(char* to, std::size_t size) {
  if (file_ != nullptr) return std::fread(to, 1, size, file_);
  const std::size_t copied = text_.copy(to, size);
  text_.remove_prefix(copied);
  return copied;
}

}  // namespace host
