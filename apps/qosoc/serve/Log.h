// What a server says to who runs it, on standard error: a line each, with time and level.
#pragma once

#include <string>

namespace qosoc {

class Log {
 public:
  explicit Log(bool isQuiet) : isQuiet_(isQuiet) {}

  // Not said where the log is quiet.
  void info(const std::string& text) const;
  void warning(const std::string& text) const { write("warning", text); }
  void error(const std::string& text) const { write("error", text); }

 private:
  static void write(const char* level, const std::string& text);

  bool isQuiet_;
};

}  // namespace qosoc
