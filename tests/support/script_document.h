#ifndef TARN_TESTS_SUPPORT_SCRIPT_DOCUMENT_H
#define TARN_TESTS_SUPPORT_SCRIPT_DOCUMENT_H

/// @file
/// The scripts on a page of the documentation, and what the page says that they print.

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

inline std::string FileText(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The blocks of code in one language.
inline std::vector<std::string> Blocks(const std::string& document, const std::string& language) {
  std::vector<std::string> blocks;
  const std::string begin = "```" + language + "\n";
  for (std::size_t at = document.find(begin); at != std::string::npos;
       at = document.find(begin, at + 1)) {
    const std::size_t from = at + begin.size();
    blocks.push_back(document.substr(from, document.find("```", from) - from));
  }
  return blocks;
}

/// What a script says about its output: the rest of every line behind "-->".
inline std::string ExpectedOutput(const std::string& script) {
  std::string expected;
  std::istringstream lines(script);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t mark = line.find("--> ");
    if (mark != std::string::npos) expected += line.substr(mark + 4) + "\n";
  }
  return expected;
}

#endif
