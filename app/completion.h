#ifndef TARN_APP_COMPLETION_H
#define TARN_APP_COMPLETION_H

/// @file
/// Texts of name completion at the prompt.

#include <string>
#include <string_view>
#include <vector>

namespace tarn {

/// The beginning that all of these have in common.
std::string CommonPrefix(const std::vector<std::string>& names);

/// The part of a line that completion replaces: letters, digits, `_`, `.` and `:` at its end.
std::string_view LastWord(std::string_view line);

/// Names in columns, as many as fit into `width`, with a newline at the end of each row.
std::string InColumns(const std::vector<std::string>& names, std::size_t width);

}  // namespace tarn

#endif
