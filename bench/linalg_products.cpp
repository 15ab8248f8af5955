// Products of square matrices.

#include "linalg_matrix_job.h"

namespace bench {
namespace {

constexpr double kTolerance = 1e-12;

PlainOperands MatrixPair(int n) {
  const int count = PoolSize(n);
  const std::int64_t size = std::int64_t{n} * n;
  return {n, count, RandomNumbers(size * count, 1), RandomNumbers(size * count, 2), size};
}

PlainOperands MatrixAndVector(int n) {
  const int count = PoolSize(n);
  const std::int64_t size = std::int64_t{n} * n;
  return {n, count, RandomNumbers(size * count, 1), RandomNumbers(std::int64_t{n} * count, 2), n};
}

}  // namespace

void RegisterProducts() {
  for (const int n : {2, 3, 4, 5, 6, 7, 8, 16, 64, 200, 512}) {
    const auto operands = [n] { return MatrixPair(n); };
    RegisterMatrixRow({"Mul", std::to_string(n), kTolerance}, &LinalgPeer::multiply, operands,
                      [](OurOperand o) { o.a.Mul(o.b, o.matrix); });
    RegisterMatrixRow({"MulT", std::to_string(n), kTolerance}, &LinalgPeer::multiplyTransposed,
                      operands, [](OurOperand o) { o.a.MulT(o.b, o.matrix); });
  }
  for (const int n : {2, 3, 4, 5, 6, 7, 8, 16, 64, 200, 512, 2000}) {
    RegisterMatrixRow(
        {"RightMultiply", std::to_string(n), kTolerance}, &LinalgPeer::multiplyVector,
        [n] { return MatrixAndVector(n); },
        [](OurOperand o) { o.a.RightMultiply(o.out, o.vector); });
  }
}

}  // namespace bench
