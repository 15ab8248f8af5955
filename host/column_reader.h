#ifndef TARN_HOST_COLUMN_READER_H
#define TARN_HOST_COLUMN_READER_H

/// @file
/// Reader of data files with columns of numbers.
///
/// Fields are separated by commas where a line holds one, by white space otherwise. `#` begins a
/// comment; lines without fields are skipped. Every line has as many fields as the first.

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarn {

struct ColumnOptions {
  bool header = false;           ///< the first line with fields holds the names of the columns
  std::size_t skippedLines = 0;  ///< lines at the beginning of the file that are not looked at
  std::string separator;         ///< instead of comma or white space; one character
};

struct Columns {
  std::vector<std::string> names;            ///< empty without a header line
  std::vector<std::vector<double>> columns;  ///< all of the same length
};

/// What is wrong with a file; the text begins with "file:line: " or, for the whole file, "file: ".
class ColumnError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the file. Throws `ColumnError`.
Columns ReadColumnFile(const std::string& path, const ColumnOptions& options);

}  // namespace tarn

#endif
