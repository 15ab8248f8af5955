/// @file
/// "Matrix": making one, its elements and what is computed of it alone.

#include <cmath>
#include <cstdio>

#include "families.h"
#include "handler.h"
#include "linear.h"
#include "linear_operators.h"
#include "matrix_solving.h"
#include "matrix_text.h"

namespace tarn::toolkit {
namespace {

const DenseMatrix& ThisMatrix(const Call& call) { return MatrixOf(call.Argument(0)); }

// Making ------------------------------------------------------------------------------------------

/// Rows or columns that the class library can count.
void RequireCountable(double rows, double columns) {
  if (rows * columns <= std::numeric_limits<int>::max()) return;
  Refuse(NumberText(rows) + " rows of " + NumberText(columns) + " columns are too many elements");
}

/// Matrix{{1, 2}, {3, 4}}
std::unique_ptr<DenseMatrix> FromRows(const Input& rows) {
  const int count = rows.Length(1);
  const Numbers first = rows.Element(0).Array(1);
  RequireCountable(count, static_cast<double>(first.size()));
  auto matrix = MakeMatrix(count, static_cast<int>(first.size()));
  matrix->SetRow(first.data(), 0);
  for (int i = 1; i < count; ++i) {
    const Numbers row = rows.Element(i).ArrayOfLength(first.size(), rows.Name() + "[1]");
    matrix->SetRow(row.data(), i);
  }
  return matrix;
}

/// Matrix{diagonal = {1, 2}}
std::unique_ptr<DenseMatrix> FromDiagonal(const Options& options) {
  if (options.Has("rows") || options.Has("columns") || options.Has("values")) {
    Refuse("diagonal excludes rows, columns and values");
  }
  const Column diagonal = ColumnOf(options.Required("diagonal"));
  const int order = options.Required("diagonal").Length(1);
  RequireCountable(order, order);
  auto matrix = MakeMatrix(order, order);
  matrix->SetDiagonal(diagonal);
  return matrix;
}

/// Matrix{rows = 2, columns = 3, values = {...}}
std::unique_ptr<DenseMatrix> FromOptions(Variable& value) {
  const Options options(value, {"rows", "columns", "values", "diagonal"});
  if (options.Has("diagonal")) return FromDiagonal(options);
  const int rows = options.Required("rows").Integer(1);
  const int columns = options.Required("columns").Integer(1);
  RequireCountable(rows, columns);
  auto matrix = MakeMatrix(rows, columns);
  if (!options.Has("values")) return matrix;
  const Input values = options.Required("values");
  const int count = rows * columns;
  if (values.Length() != count) {
    values.Refuse("has " + CountText(values.Length(), "element") + ", but a " + ShapeText(*matrix) +
                  " matrix has " + std::to_string(count));
  }
  const Numbers numbers = values.Array();
  for (int i = 0; i < rows; ++i) {
    matrix->SetRow(numbers.data() + std::ptrdiff_t{i} * columns, i);
  }
  return matrix;
}

void Make(const Call& call) {
  Variable& argument = call.Argument(0);
  const Input rows(argument, "row");
  SetMatrix(call.Result(), rows.IsArray() ? FromRows(rows) : FromOptions(argument));
}

// Elements ----------------------------------------------------------------------------------------

int RowIndex(const Call& call, int place) {
  return Input(call.Argument(place), "row").Integer(1, ThisMatrix(call).Y()) - 1;
}

int ColumnIndex(const Call& call, int place) {
  return Input(call.Argument(place), "column").Integer(1, ThisMatrix(call).X()) - 1;
}

void CountRows(const Call& call) { call.Result() = ThisMatrix(call).Y(); }
void CountColumns(const Call& call) { call.Result() = ThisMatrix(call).X(); }

void ElementAt(const Call& call) {
  const int row = RowIndex(call, 1);
  call.Result() = ThisMatrix(call)(row, ColumnIndex(call, 2));
}

void SetNumbersOf(const Call& call, const T_MatVector<double>& numbers, int count) {
  RequireSuccess(numbers.Dim() == count);
  SetVector(call.Result(), {static_cast<const double*>(numbers), static_cast<std::size_t>(count)});
}

void RowAt(const Call& call) {
  T_MatVector<double> row;
  ThisMatrix(call).GetRow(row, RowIndex(call, 1));
  SetNumbersOf(call, row, ThisMatrix(call).X());
}

void ColumnAt(const Call& call) {
  T_MatVector<double> column;
  ThisMatrix(call).GetColumn(column, ColumnIndex(call, 1));
  SetNumbersOf(call, column, ThisMatrix(call).Y());
}

void Diagonal(const Call& call) {
  const DenseMatrix& matrix = ThisMatrix(call);
  Numbers diagonal;
  for (int k = 0; k < matrix.X() && k < matrix.Y(); ++k) diagonal.push_back(matrix(k, k));
  SetVector(call.Result(), diagonal);
}

/// An array of arrays.
void Rows(const Call& call) {
  const DenseMatrix& matrix = ThisMatrix(call);
  Variable& result = call.Result();
  result.Init(VARTYPE_ARRAY, matrix.Y());
  RequireSuccess(result.GetDim() == matrix.Y());
  for (int i = 0; i < matrix.Y(); ++i) {
    SetArray(result[i], {matrix[i], static_cast<std::size_t>(matrix.X())});
  }
}

void Text(const Call& call) { SetText(call.Result(), MatrixText(ThisMatrix(call))); }

// Of the matrix alone -----------------------------------------------------------------------------

void RequireSquare(const DenseMatrix& matrix) {
  if (matrix.X() == matrix.Y()) return;
  Refuse("the matrix must be square, it is " + ShapeText(matrix));
}

void Transpose(const Call& call) { SetMatrix(call.Result(), OwnMatrix(ThisMatrix(call).T())); }
void Trace(const Call& call) { call.Result() = ThisMatrix(call).Tr(); }
void Norm(const Call& call) { call.Result() = LengthOf(NumbersOf(ThisMatrix(call))); }

void Determinant(const Call& call) {
  RequireSquare(ThisMatrix(call));
  call.Result() = ThisMatrix(call).Det();
}

/// The class library answers 0 for a singular matrix, which is also the logarithm for
/// determinants of 1 and -1.
void LogAbsDeterminant(const Call& call) {
  const DenseMatrix& matrix = ThisMatrix(call);
  RequireSquare(matrix);
  const double logarithm = matrix.LogAbsDet();
  const bool isSingular = logarithm == 0.0 && matrix.Det() == 0.0;
  call.Result() = isSingular ? -std::numeric_limits<double>::infinity() : logarithm;
}

void Inverse(const Call& call) {
  RequireSquare(ThisMatrix(call));
  SetMatrix(call.Result(), InverseOf(ThisMatrix(call)));
}

/// "(2, 1) is 3"
std::string PlaceText(const DenseMatrix& matrix, int i, int j) {
  char text[64];
  std::snprintf(text, sizeof(text), "(%d, %d) is %.15g", i + 1, j + 1, matrix(i, j));
  return text;
}

void RequireSymmetric(const DenseMatrix& matrix) {
  RequireSquare(matrix);
  for (int i = 0; i < matrix.Y(); ++i) {
    for (int j = 0; j < i; ++j) {
      // Products and inverses are symmetric but for rounding.
      const double scale = std::fabs(matrix(i, i)) + std::fabs(matrix(j, j));
      if (std::fabs(matrix(i, j) - matrix(j, i)) <= 1e-10 * scale) continue;
      Refuse("the matrix must be symmetric, element " + PlaceText(matrix, i, j) + " and " +
             PlaceText(matrix, j, i));
    }
  }
}

void Cholesky(const Call& call) {
  RequireSymmetric(ThisMatrix(call));
  auto factor = FindCholesky(ThisMatrix(call));
  if (factor == nullptr) Refuse("the matrix is not positive definite");
  SetMatrix(call.Result(), std::move(factor));
}

// Singular values ---------------------------------------------------------------------------------

void SingularValues(const Call& call) {
  SetVector(call.Result(), NumbersOf(Factorise(ThisMatrix(call)).values));
}

/// Record of U, w and V.
void Factors(const Call& call) {
  Factorisation factors = Factorise(ThisMatrix(call));
  SetRecord(call.Result());
  SetMatrix(Member(call.Result(), "U"), std::move(factors.left));
  SetVector(Member(call.Result(), "w"), NumbersOf(factors.values));
  SetMatrix(Member(call.Result(), "V"), std::move(factors.right));
}

/// Largest over smallest singular value; infinite also where both are 0.
void Condition(const Call& call) {
  const DenseMatrix& matrix = ThisMatrix(call);
  const Factorisation factors = Factorise(matrix);
  const double smallest = factors.values[std::min(matrix.X(), matrix.Y()) - 1];
  call.Result() =
      smallest == 0.0 ? std::numeric_limits<double>::infinity() : factors.values[0] / smallest;
}

void PseudoInverse(const Call& call) {
  SetMatrix(call.Result(), OwnMatrix(ThisMatrix(call).PseudoInverse()));
}

constexpr ScriptFunction kRows[] = {
    {Handler<Make>, "Matrix(options)"},
    {Handler<AddOperands>, "Matrix.__add(any, any)"},
    {Handler<SubtractOperands>, "Matrix.__sub(any, any)"},
    {Handler<MultiplyOperands>, "Matrix.__mul(any, any)"},
    {Handler<DivideOperands>, "Matrix.__div(any, any)"},
    {Handler<NegateOperand>, "Matrix.__unm(any)"},
    {Handler<ElementAt>, "Matrix.__call(refer object Matrix, any, any)"},
    {Handler<Text>, "Matrix.__tostring(any)"},
    {Handler<CountRows>, "Matrix.Rows(refer object Matrix)"},
    {Handler<CountColumns>, "Matrix.Columns(refer object Matrix)"},
    {Handler<ElementAt>, "Matrix.At(refer object Matrix, any, any)"},
    {Handler<RowAt>, "Matrix.Row(refer object Matrix, any)"},
    {Handler<ColumnAt>, "Matrix.Column(refer object Matrix, any)"},
    {Handler<Diagonal>, "Matrix.Diagonal(refer object Matrix)"},
    {Handler<Rows>, "Matrix.Array(refer object Matrix)"},
    {Handler<Transpose>, "Matrix.Transpose(refer object Matrix)"},
    {Handler<Trace>, "Matrix.Trace(refer object Matrix)"},
    {Handler<Norm>, "Matrix.Norm(refer object Matrix)"},
    {Handler<Determinant>, "Matrix.Determinant(refer object Matrix)"},
    {Handler<LogAbsDeterminant>, "Matrix.LogAbsDeterminant(refer object Matrix)"},
    {Handler<Inverse>, "Matrix.Inverse(refer object Matrix)"},
    {Handler<Cholesky>, "Matrix.Cholesky(refer object Matrix)"},
    {Handler<SingularValues>, "Matrix.SingularValues(refer object Matrix)"},
    {Handler<Factors>, "Matrix.SVD(refer object Matrix)"},
    {Handler<Condition>, "Matrix.Condition(refer object Matrix)"},
    {Handler<PseudoInverse>, "Matrix.PseudoInverse(refer object Matrix)"},
    {Handler<Solve>, "Matrix.Solve(refer object Matrix, any)"},
    {Handler<SolveLeastSquares>, "Matrix.SolveLeastSquares(refer object Matrix, any)"},
    {Handler<SolveRegularised>, "Matrix.SolveRegularised(refer object Matrix, any, any)"},
};

}  // namespace

std::span<const ScriptFunction> MatrixRows() { return kRows; }

}  // namespace tarn::toolkit
