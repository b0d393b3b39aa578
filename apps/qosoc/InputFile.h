// A document that is read from a file or from standard input, and how far that has come.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace qosoc {

class InputFile {
 public:
  // Standard input as "-". Throws: InputError for a file that cannot be opened.
  explicit InputFile(const std::string& path);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  // Reading it moves the line of progress on. A regular file can be read again from any place.
  std::FILE* stream() const { return stream_.get(); }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  static ssize_t read(void* self, char* block, std::size_t size);
  static int seek(void* self, off64_t* offset, int whence);
  std::string progressLine() const;

  int descriptor_;
  bool isRegular_ = false;
  std::uint64_t size_ = 0;  // 0: not known
  std::uint64_t read_ = 0;
  std::unique_ptr<std::FILE, Close> stream_;
};

}  // namespace qosoc
