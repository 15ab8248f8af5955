// Eigen as a peer. Included by one source file per instruction set, which first defines
//   Eigen             as another name, because both builds of its templates are linked together
//   TARN_EIGEN_PEER   the peer to define
//   TARN_EIGEN_NAME   and its name
//   TARN_EIGEN_JACOBI its other decomposition

#ifndef TARN_BENCH_EIGEN_PEER_BODY_H
#define TARN_BENCH_EIGEN_PEER_BODY_H

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>

#include "linalg_peers.h"

namespace bench {
namespace {

using RowMajor = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
using ConstMatrix = Eigen::Map<const RowMajor>;
using Matrix = Eigen::Map<RowMajor>;
using ConstVector = Eigen::Map<const Eigen::VectorXd>;
using Vector = Eigen::Map<Eigen::VectorXd>;

void Multiply(int n, const double* a, const double* b, double* out) {
  Matrix(out, n, n).noalias() = ConstMatrix(a, n, n) * ConstMatrix(b, n, n);
}
void MultiplyTransposed(int n, const double* a, const double* b, double* out) {
  Matrix(out, n, n).noalias() = ConstMatrix(a, n, n) * ConstMatrix(b, n, n).transpose();
}
void MultiplyVector(int n, const double* a, const double* b, double* out) {
  Vector(out, n).noalias() = ConstMatrix(a, n, n) * ConstVector(b, n);
}
void DotProduct(int n, const double* a, const double* b, double* out) {
  out[0] = ConstVector(a, n).dot(ConstVector(b, n));
}
void Sum(int n, const double* a, const double*, double* out) { out[0] = ConstVector(a, n).sum(); }
void Largest(int n, const double* a, const double*, double* out) {
  out[0] = ConstVector(a, n).maxCoeff();
}
void AddScaled(int n, const double* a, const double* b, double* out) {
  Vector(out, n) = ConstVector(a, n) + 0.5 * ConstVector(b, n);
}
void Solve(int n, const double* a, const double* b, double* out) {
  Vector(out, n) = ConstMatrix(a, n, n).partialPivLu().solve(ConstVector(b, n));
}
void Determinant(int n, const double* a, const double*, double* out) {
  out[0] = ConstMatrix(a, n, n).determinant();
}
void LogDeterminant(int n, const double* a, const double*, double* out) {
  out[0] = ConstMatrix(a, n, n).partialPivLu().matrixLU().diagonal().array().abs().log().sum();
}
void Inverse(int n, const double* a, const double*, double* out) {
  Matrix(out, n, n) = ConstMatrix(a, n, n).inverse();
}
void Cholesky(int n, const double* a, const double*, double* out) {
  Matrix(out, n, n) = ConstMatrix(a, n, n).llt().matrixL();
}
template <class Decomposition>
void Svd(int rows, int cols, const double* a, double* u, double* w, double* v) {
  const Decomposition svd(ConstMatrix(a, rows, cols), Eigen::ComputeThinU | Eigen::ComputeThinV);
  Matrix(u, rows, cols) = svd.matrixU();
  Vector(w, cols) = svd.singularValues();
  Matrix(v, cols, cols) = svd.matrixV();
}
constexpr SvdJob kDivideAndConquer = Svd<Eigen::BDCSVD<Eigen::MatrixXd>>;

}  // namespace

extern const LinalgPeer TARN_EIGEN_PEER = {TARN_EIGEN_NAME, Multiply,         MultiplyTransposed,
                                           MultiplyVector,  DotProduct,       Sum,
                                           Largest,         AddScaled,        Solve,
                                           Determinant,     LogDeterminant,   Inverse,
                                           Cholesky,        kDivideAndConquer};

extern const SvdJob TARN_EIGEN_JACOBI = Svd<Eigen::JacobiSVD<Eigen::MatrixXd>>;

}  // namespace bench

#endif
