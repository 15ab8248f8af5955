#ifndef TARN_TESTS_OPTIM_DOCUMENT_TEXT_H
#define TARN_TESTS_OPTIM_DOCUMENT_TEXT_H

#include <fstream>
#include <sstream>
#include <string>

/// Content of a page of the documentation; empty when there is none.
inline std::string DocumentText(const std::string& page) {
  std::ifstream file(std::string(TARN_SOURCE_DIR) + "/docs/" + page);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

#endif
