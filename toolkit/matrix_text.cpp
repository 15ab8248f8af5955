#include "matrix_text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tarn::toolkit {
namespace {

constexpr int kMostShown = 10;

std::string ElementText(double number) {
  char text[32];
  if (std::isnan(number)) return "nan";
  // A negative zero, as products leave them, would only puzzle.
  std::snprintf(text, sizeof(text), "%.6g", number == 0.0 ? 0.0 : number);
  return text;
}

std::size_t WidthOfColumn(const DenseMatrix& matrix, int column, int rows) {
  std::size_t width = 0;
  for (int i = 0; i < rows; ++i) width = std::max(width, ElementText(matrix(i, column)).size());
  return width;
}

std::string Aligned(const std::string& text, std::size_t width) {
  return std::string(width - text.size(), ' ') + text;
}

}  // namespace

std::string MatrixText(const DenseMatrix& matrix) {
  const int rows = std::min(matrix.Y(), kMostShown);
  const int columns = std::min(matrix.X(), kMostShown);
  std::vector<std::string> lines(static_cast<std::size_t>(rows), "[");
  for (int j = 0; j < columns; ++j) {
    const std::size_t width = WidthOfColumn(matrix, j, rows);
    for (int i = 0; i < rows; ++i) {
      lines[static_cast<std::size_t>(i)] += "  " + Aligned(ElementText(matrix(i, j)), width);
    }
  }
  const bool isCut = rows < matrix.Y() || columns < matrix.X();
  std::string text;
  for (const std::string& line : lines) {
    if (!text.empty()) text += '\n';
    text += line + (columns < matrix.X() ? "  ..." : "") + "  ]";
  }
  return isCut ? text + "\n(" + ShapeText(matrix) + " matrix)" : text;
}

}  // namespace tarn::toolkit
