#include "nearest_name.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace tarn::toolkit {
namespace {

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) {
    letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return lower;
}

/// Letters to insert, leave out, replace or exchange with their neighbour to make `b` of `a`
/// (Damerau 1964, no letter touched twice); one row of the table per letter of `a`.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> beforeLast(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
      const bool exchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (exchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
    beforeLast.swap(last);
    last.swap(row);
  }
  return last[b.size()];
}

}  // namespace

std::optional<std::string> NearestName(std::string_view word, Names names) {
  const std::string lower = LowerCase(word);
  std::optional<std::string> nearest;
  std::size_t least = 0;
  for (const std::string_view name : names) {
    const std::size_t distance = EditDistance(lower, LowerCase(name));
    if (3 * distance > std::max(word.size(), name.size())) continue;
    if (nearest && distance >= least) continue;
    nearest = name;
    least = distance;
  }
  return nearest;
}

}  // namespace tarn::toolkit
