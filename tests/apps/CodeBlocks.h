// The code blocks of a document, for tests that hold it against the program.
#pragma once

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace vblur::cli {

inline std::string TextOfDocument(const char* file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// Those in this language; "": those without one.
inline std::vector<std::string> CodeBlocks(const std::string& document, const std::string& language) {
  const std::string text = "\n" + document;
  const std::string begin = "\n```" + language + "\n";
  const std::string end = "\n```\n";
  std::vector<std::string> blocks;
  for (std::size_t at = text.find("\n```"); at != std::string::npos; at = text.find("\n```", at)) {
    const std::size_t body = text.find('\n', at + 1) + 1;
    const std::size_t last = text.find(end, body - 1);
    if (text.compare(at, begin.size(), begin) == 0) blocks.push_back(text.substr(body, last + 1 - body));
    at = last + end.size() - 1;
  }
  return blocks;
}

}  // namespace vblur::cli
