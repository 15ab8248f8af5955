#ifndef TARN_TOOLKIT_LINEAR_H
#define TARN_TOOLKIT_LINEAR_H

/// @file
/// Vectors and matrices between scripts and the class library.
///
/// A script's "MVector" has its numbers as elements, which a script can change; a "Matrix" holds a
/// `T_Matrix`, which never changes once it is made: every operation gives a new one. Copies of a
/// matrix therefore share it.

#include <linalg/matrix.h>
#include <linalg/vector.h>

#include "arguments.h"
#include "results.h"

namespace tarn::toolkit {

using DenseMatrix = T_Matrix<double>;
using Column = T_MatVectorCol<double>;

/// The class library's matrix as a native object.
class NativeMatrix final : public TarnAss {
 public:
  explicit NativeMatrix(std::unique_ptr<DenseMatrix> matrix) : matrix_(std::move(matrix)) {}
  const DenseMatrix& Get() const { return *matrix_; }

 private:
  std::unique_ptr<DenseMatrix> matrix_;
};

/// rows x columns zeros.
std::unique_ptr<DenseMatrix> MakeMatrix(int rows, int columns);
/// Takes over a matrix that the class library made; one without its elements, for lack of memory,
/// ends the function as null does.
std::unique_ptr<DenseMatrix> OwnMatrix(DenseMatrix* made);
/// Makes `target` a "Matrix".
void SetMatrix(Variable& target, std::unique_ptr<DenseMatrix> matrix);
bool IsMatrix(const Variable& value);
/// The matrix of a value of class "Matrix".
const DenseMatrix& MatrixOf(Variable& value);
/// "2x3".
std::string ShapeText(const DenseMatrix& matrix);

/// The numbers of an array or vector.
Column ColumnOf(const Input& input);
/// The numbers of a column vector.
std::span<const double> NumbersOf(const Column& column);
/// The elements, row after row.
std::span<const double> NumbersOf(const DenseMatrix& matrix);

/// The power of two below the largest of the absolute values, 1 where they have none that is
/// finite.
double ScaleOf(std::span<const double> numbers);
/// Square root of the sum of squares, which overflows or underflows only where it has to.
double LengthOf(std::span<const double> numbers);

}  // namespace tarn::toolkit

#endif
