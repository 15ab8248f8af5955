#include "linear.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tarn::toolkit {

std::unique_ptr<DenseMatrix> MakeMatrix(int rows, int columns) {
  return OwnMatrix(new DenseMatrix(rows, columns));
}

std::unique_ptr<DenseMatrix> OwnMatrix(DenseMatrix* made) {
  auto matrix = Own(made);
  RequireSuccess((*matrix)[0] != nullptr);
  return matrix;
}

void SetMatrix(Variable& target, std::unique_ptr<DenseMatrix> matrix) {
  SetNativeObject(target, "Matrix", std::make_unique<NativeMatrix>(std::move(matrix)));
}

bool IsMatrix(const Variable& value) { return std::strcmp(value.KindName(), "Matrix") == 0; }

const DenseMatrix& MatrixOf(Variable& value) { return NativeObject<NativeMatrix>(value).Get(); }

std::string ShapeText(const DenseMatrix& matrix) {
  return std::to_string(matrix.Y()) + 'x' + std::to_string(matrix.X());
}

Column ColumnOf(const Input& input) {
  const Numbers numbers = input.Array();
  Column column(numbers.data(), static_cast<int>(numbers.size()));
  RequireSuccess(column.Dim() == static_cast<int>(numbers.size()));
  return column;
}

std::span<const double> NumbersOf(const Column& column) {
  return {static_cast<const double*>(column), static_cast<std::size_t>(column.Dim())};
}

std::span<const double> NumbersOf(const DenseMatrix& matrix) {
  const auto rows = static_cast<std::size_t>(matrix.Y());
  return {matrix[0], rows * static_cast<std::size_t>(matrix.X())};
}

double ScaleOf(std::span<const double> numbers) {
  double largest = 0.0;
  for (const double number : numbers) largest = std::max(largest, std::fabs(number));
  return largest > 0.0 && std::isfinite(largest) ? std::exp2(std::ilogb(largest)) : 1.0;
}

double LengthOf(std::span<const double> numbers) {
  const double scale = ScaleOf(numbers);
  double squares = 0.0;
  for (const double number : numbers) squares += (number / scale) * (number / scale);
  return scale * std::sqrt(squares);
}

}  // namespace tarn::toolkit
