#include "app/completion.h"

#include <algorithm>
#include <cctype>

namespace tarn {
namespace {

bool IsWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.' || c == ':';
}

}  // namespace

std::string CommonPrefix(const std::vector<std::string>& names) {
  std::string common = names.empty() ? "" : names.front();
  for (const std::string& name : names) {
    const auto [end, unused] =
        std::mismatch(common.begin(), common.end(), name.begin(), name.end());
    common.erase(end, common.end());
  }
  return common;
}

std::string_view LastWord(std::string_view line) {
  std::size_t start = line.size();
  while (start > 0 && IsWordCharacter(line[start - 1])) --start;
  return line.substr(start);
}

std::string InColumns(const std::vector<std::string>& names, std::size_t width) {
  std::size_t columnWidth = 0;
  for (const std::string& name : names) columnWidth = std::max(columnWidth, name.size() + 2);
  const std::size_t columns =
      std::max<std::size_t>(1, width / std::max<std::size_t>(1, columnWidth));
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    text += names[i];
    const bool endsRow = (i + 1) % columns == 0 || i + 1 == names.size();
    text.append(endsRow ? 0 : columnWidth - names[i].size(), ' ');
    if (endsRow) text += '\n';
  }
  return text;
}

}  // namespace tarn
