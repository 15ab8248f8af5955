// Linear systems, determinants, inverses and the Cholesky factor.

#include <cmath>

#include "linalg_matrix_job.h"

namespace bench {
namespace {

constexpr double kTolerance = 1e-8;

/// The elements are scaled to let the determinants of large orders stay within the range.
PlainOperands GeneralSystem(int n, std::int64_t resultSize) {
  const int count = PoolSize(n);
  Numbers a = RandomNumbers(std::int64_t{n} * n * count, 4);
  for (double& element : a) element *= std::sqrt(8.0 / n);
  return {n, count, a, RandomNumbers(std::int64_t{n} * count, 5), resultSize};
}

PlainOperands PositiveMatrix(int n) {
  return {n, PoolSize(n), PositiveMatrices(n, PoolSize(n)),
          RandomNumbers(std::int64_t{n} * PoolSize(n), 5), std::int64_t{n} * n};
}

void FactorizeInto(OurOperand o) {
  T_Matrix<double>* const factor = o.a.CholeskyDecompse();
  if (factor != nullptr) o.matrix.Swap(*factor);
  delete factor;
}

void RegisterOrder(int n) {
  const std::string rest = std::to_string(n);
  RegisterMatrixRow(
      {"SolveSystem", rest, kTolerance}, &LinalgPeer::solve, [n] { return GeneralSystem(n, n); },
      [](OurOperand o) { o.a.SolveSystem(o.vector, o.out); });
  RegisterMatrixRow(
      {"Det", rest, kTolerance}, &LinalgPeer::determinant, [n] { return GeneralSystem(n, 1); },
      [](OurOperand o) { *o.out = o.a.Det(); });
  RegisterMatrixRow(
      {"LogAbsDet", rest, kTolerance}, &LinalgPeer::logDeterminant,
      [n] { return GeneralSystem(n, 1); }, [](OurOperand o) { *o.out = o.a.LogAbsDet(); });
  RegisterMatrixRow(
      {"Inverse", rest, kTolerance}, &LinalgPeer::inverse, [n] { return PositiveMatrix(n); },
      [](OurOperand o) { o.a.Inverse(o.matrix); });
  RegisterMatrixRow(
      {"CholeskyDecompse", rest, kTolerance}, &LinalgPeer::cholesky,
      [n] { return PositiveMatrix(n); }, FactorizeInto);
}

}  // namespace

void RegisterSolvers() {
  for (const int n : {2, 3, 4, 5, 6, 7, 8, 16, 32, 64, 100, 200, 500}) RegisterOrder(n);
}

}  // namespace bench
