// The EXAMPLE block of a header, to be held against the test that runs it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace support {

// A file of the sources.
inline std::string sourceText(const std::string& path) {
  std::ifstream in(std::string(QOS_SOURCE_DIR) + "/" + path);
  EXPECT_TRUE(in) << path;
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// The text without white space and comment signs, which is how a block and its copy are compared.
inline std::string squeezed(const std::string& text) {
  std::string result;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    const std::size_t from = line.find_first_not_of(" /");
    if (from != std::string::npos) result += line.substr(from);
  }
  std::erase_if(result, [](unsigned char c) { return std::isspace(c) != 0; });
  return result;
}

inline std::string headerExample(const std::string& header) {
  std::istringstream in(sourceText(header));
  std::string block;
  bool inside = false;
  for (std::string line; std::getline(in, line) && line.starts_with("//");) {
    if (inside) block += line + "\n";
    inside = inside || line == "// EXAMPLE";
  }
  return squeezed(block);
}

// The test has the header's block as its code.
inline void expectExample(const std::string& header, const std::string& test) {
  const std::string example = headerExample(header);
  ASSERT_GT(example.size(), 50u);
  EXPECT_NE(squeezed(sourceText(test)).find(example), std::string::npos) << example;
}

// The blocks of code in one language on a page.
inline std::vector<std::string> codeBlocks(const std::string& page, const std::string& language) {
  const std::string text = sourceText(page);
  const std::string opening = "\n```" + language + "\n";
  std::vector<std::string> found;
  for (std::size_t at = 0; (at = text.find(opening, at)) != text.npos;) {
    at += opening.size();
    const std::size_t end = text.find("\n```", at);
    found.push_back(text.substr(at, end - at + 1));
    at = end;
  }
  return found;
}

}  // namespace support
