// Runs whole programs and returns what they print and their exit codes.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace support {

struct HostRun {
  int exit = -1;  // 128 and more: ended by a signal
  std::string out;
  std::string err;
};

struct HostStreams {
  std::string in;          // what the program reads
  std::string outTo = {};  // a file for its standard output instead of `out`
};

// Runs a program that is found as a shell finds it. Exit 127 when there is none.
HostRun hostRun(const std::vector<std::string>& command, const HostStreams& streams = {});

// A program that is driven line by line through pipes.
class HostDialogue {
 public:
  explicit HostDialogue(const std::vector<std::string>& command);
  ~HostDialogue();
  HostDialogue(const HostDialogue&) = delete;
  HostDialogue& operator=(const HostDialogue&) = delete;

  void write(std::string_view line);
  // The same without an end of line.
  void writeText(std::string_view text);
  // Whether the program takes a further line within that time.
  bool takesInput(int milliseconds) const;
  // Whether it has written anything within that time that was not read.
  bool hasAnswered(int milliseconds) const;
  // The next whole line, without its end. Waits for it; empty once the program has closed its
  // output.
  std::string read();
  // Ends the input and waits. Returns the exit code.
  int end();

 private:
  pid_t child_ = -1;
  int in_ = -1;
  int out_ = -1;
};

// A directory that goes with its contents.
class HostFolder {
 public:
  HostFolder();
  ~HostFolder();
  HostFolder(const HostFolder&) = delete;
  HostFolder& operator=(const HostFolder&) = delete;

  std::string path(const std::string& file) const { return path_ + '/' + file; }
  // Writes a file and returns its path.
  std::string file(const std::string& name, std::string_view text) const;

 private:
  std::string path_;
};

std::string hostText(const std::string& path);

}  // namespace support
