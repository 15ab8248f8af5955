#include "matrix_solving.h"

#include <algorithm>
#include <cmath>

namespace tarn::toolkit {
namespace {

[[noreturn]] void RefuseSingular() { throw Fault(kErrorSingular, "the matrix is singular"); }

bool IsFinite(const DenseMatrix& matrix) {
  const std::span<const double> numbers = NumbersOf(matrix);
  return std::all_of(numbers.begin(), numbers.end(), [](double x) { return std::isfinite(x); });
}

void RequireFinite(const DenseMatrix& matrix) {
  if (!IsFinite(matrix)) Refuse("the matrix must have finite elements only");
}

bool IsNearIdentity(const DenseMatrix& matrix, double tolerance) {
  for (int i = 0; i < matrix.Y(); ++i) {
    for (int j = 0; j < matrix.X(); ++j) {
      const double expected = i == j ? 1.0 : 0.0;
      if (!(std::fabs(matrix(i, j) - expected) <= tolerance)) return false;
    }
  }
  return true;
}

// How far the product of matrix and inverse may be from the identity.
constexpr double kAccepted = 1e-9;  ///< a good inverse
constexpr double kRough = 0.1;      ///< at least an approximate one

bool IsInverse(const DenseMatrix& matrix, const DenseMatrix& inverse, double tolerance) {
  return IsNearIdentity(*OwnMatrix(matrix * inverse), tolerance);
}

/// Solves for one right-hand side; false with a pending error.
using ColumnSolver = bool (*)(const DenseMatrix& matrix, const double* right, double* solution);

/// Columns of right-hand sides to columns of solutions.
std::unique_ptr<DenseMatrix> SolveColumns(const DenseMatrix& matrix, const DenseMatrix& right,
                                          ColumnSolver solve) {
  auto solutions = MakeMatrix(matrix.X(), right.X());
  T_MatVector<double> column;
  Numbers solution(static_cast<std::size_t>(matrix.X()));
  for (int j = 0; j < right.X(); ++j) {
    right.GetColumn(column, j);
    RequireSuccess(solve(matrix, column, solution.data()));
    solutions->SetColumn(solution.data(), j);
  }
  return solutions;
}

bool SolveExactly(const DenseMatrix& matrix, const double* right, double* solution) {
  constexpr int kQuiet = 1;
  if (matrix.SolveSystem(right, solution, kQuiet) != 0) return true;
  RequireSuccess();
  RefuseSingular();
}

bool SolveBySingularValues(const DenseMatrix& matrix, const double* right, double* solution) {
  return matrix.SolveSystemBySVD(right, solution) != 0;
}

std::unique_ptr<DenseMatrix> SolveForIdentity(const DenseMatrix& matrix) {
  auto identity = MakeMatrix(matrix.Y(), matrix.Y());
  identity->SetDiagonal(1.0);
  return SolveColumns(matrix, *identity, SolveExactly);
}

void RequireRightSide(int length, const DenseMatrix& matrix) {
  if (length == matrix.Y()) return;
  Refuse("the right-hand side has " + CountText(length, "row") + ", the matrix " +
         std::to_string(matrix.Y()));
}

/// Solves for the right-hand side at place 1, of whatever kind it is.
void SolveWith(const Call& call, ColumnSolver solve) {
  const DenseMatrix& matrix = MatrixOf(call.Argument(0));
  RequireFinite(matrix);
  if (IsMatrix(call.Argument(1))) {
    const DenseMatrix& right = MatrixOf(call.Argument(1));
    RequireRightSide(right.Y(), matrix);
    SetMatrix(call.Result(), SolveColumns(matrix, right, solve));
    return;
  }
  const Numbers right = Input(call.Argument(1), "the right-hand side").Array();
  RequireRightSide(static_cast<int>(right.size()), matrix);
  Numbers solution(static_cast<std::size_t>(matrix.X()));
  RequireSuccess(solve(matrix, right.data(), solution.data()));
  SetVector(call.Result(), solution);
}

/// Projections of the right-hand side on the left factors, each times w/(w^2 + h).
Column FilteredCoefficients(const Factorisation& factors, const Column& right, double h) {
  const int count = factors.left->X();
  Column coefficients(count);
  RequireSuccess(coefficients.Dim() == count);
  T_MatVector<double> factor;
  for (int i = 0; i < count; ++i) {
    factors.left->GetColumn(factor, i);
    RequireSuccess(factor.Dim() == right.Dim());
    const double w = factors.values[i];
    const double filter = w == 0.0 && h == 0.0 ? 0.0 : w / (w * w + h);
    coefficients[i] = factor.ScalarMultiply(right) * filter;
  }
  return coefficients;
}

}  // namespace

Factorisation Factorise(const DenseMatrix& matrix) {
  RequireFinite(matrix);
  Factorisation factors;
  factors.left = OwnMatrix(new DenseMatrix(matrix));
  factors.right = std::make_unique<DenseMatrix>();
  RequireSuccess(factors.left->SVD(factors.values, *factors.right) != 0);
  return factors;
}

std::unique_ptr<DenseMatrix> FindCholesky(const DenseMatrix& matrix) {
  std::unique_ptr<DenseMatrix> factor(matrix.CholeskyDecompse());
  if (factor == nullptr && GetOwner()->GetLastError() == kErrorArgument) {
    ForgetError();
    return nullptr;
  }
  return OwnMatrix(factor.release());
}

std::unique_ptr<DenseMatrix> FindPositiveInverse(const DenseMatrix& matrix) {
  const int order = matrix.X();
  Numbers scales;  // make the diagonal 1
  for (int i = 0; i < order; ++i) {
    if (!(matrix(i, i) > 0.0 && std::isfinite(matrix(i, i)))) return nullptr;
    scales.push_back(1.0 / std::sqrt(matrix(i, i)));
  }
  const auto multiply = [&](DenseMatrix& target, const DenseMatrix& source) {
    for (int i = 0; i < order; ++i) {
      const double scale = scales[static_cast<std::size_t>(i)];
      for (int j = 0; j < order; ++j) {
        target(i, j) = source(i, j) * scale * scales[static_cast<std::size_t>(j)];
      }
    }
  };
  auto scaled = MakeMatrix(order, order);
  multiply(*scaled, matrix);
  if (FindCholesky(*scaled) == nullptr) return nullptr;
  auto inverse = MakeMatrix(order, order);
  scaled->Inverse(*inverse);
  if (GetOwner()->pendingError != 0 && GetOwner()->GetLastError() == kErrorSingular) {
    ForgetError();
    return nullptr;
  }
  RequireSuccess();
  if (!IsFinite(*inverse)) return nullptr;
  multiply(*inverse, *inverse);
  return inverse;
}

std::unique_ptr<DenseMatrix> InverseOf(const DenseMatrix& matrix) {
  RequireFinite(matrix);
  auto inverse = MakeMatrix(matrix.Y(), matrix.X());
  matrix.Inverse(*inverse);
  ForgetError();
  if (IsFinite(*inverse) && IsInverse(matrix, *inverse, kAccepted)) return inverse;
  auto solved = SolveForIdentity(matrix);
  if (!IsInverse(matrix, *solved, kRough)) {
    throw Fault(kErrorSingular, "the matrix is singular to working precision");
  }
  return solved;
}

void Solve(const Call& call) {
  const DenseMatrix& matrix = MatrixOf(call.Argument(0));
  if (matrix.X() != matrix.Y()) {
    Refuse("the matrix must be square, it is " + ShapeText(matrix) +
           "; SolveLeastSquares takes any shape");
  }
  SolveWith(call, SolveExactly);
}

void SolveLeastSquares(const Call& call) { SolveWith(call, SolveBySingularValues); }

void SolveRegularised(const Call& call) {
  const DenseMatrix& matrix = MatrixOf(call.Argument(0));
  const Column right = ColumnOf(Input(call.Argument(1), "the right-hand side"));
  RequireRightSide(right.Dim(), matrix);
  const double lambda = Input(call.Argument(2), "lambda").FiniteNumber();
  if (lambda < 0.0) Input(call.Argument(2), "lambda").RefuseKind("0 or more");

  const Factorisation factors = Factorise(matrix);
  const double largest = factors.values[0];
  const double smallest = factors.values[matrix.X() - 1];
  const double cut = lambda * largest;
  const double h = smallest < cut ? cut * cut : 0.0;
  Column solution;
  factors.right->RightMultiply(solution, FilteredCoefficients(factors, right, h));
  RequireSuccess(solution.Dim() == matrix.X());
  SetVector(call.Result(), NumbersOf(solution));
}

}  // namespace tarn::toolkit
