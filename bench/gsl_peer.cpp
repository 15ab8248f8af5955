#include <gsl/gsl_blas.h>
#include <gsl/gsl_linalg.h>
#include <gsl/gsl_vector.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "linalg_peers.h"

namespace bench {
namespace {

std::size_t Size(int n) { return static_cast<std::size_t>(n); }
gsl_matrix_const_view Operand(int rows, int cols, const double* a) {
  return gsl_matrix_const_view_array(a, Size(rows), Size(cols));
}
gsl_matrix_const_view Operand(int n, const double* a) { return Operand(n, n, a); }
gsl_matrix_view Result(int n, double* a) { return gsl_matrix_view_array(a, Size(n), Size(n)); }
gsl_vector_const_view Elements(int n, const double* v) {
  return gsl_vector_const_view_array(v, Size(n));
}
gsl_vector_view Elements(int n, double* v) { return gsl_vector_view_array(v, Size(n)); }

void Multiply(int n, const double* a, const double* b, double* out) {
  const auto left = Operand(n, a), right = Operand(n, b);
  auto c = Result(n, out);
  gsl_blas_dgemm(CblasNoTrans, CblasNoTrans, 1, &left.matrix, &right.matrix, 0, &c.matrix);
}
void MultiplyTransposed(int n, const double* a, const double* b, double* out) {
  const auto left = Operand(n, a), right = Operand(n, b);
  auto c = Result(n, out);
  gsl_blas_dgemm(CblasNoTrans, CblasTrans, 1, &left.matrix, &right.matrix, 0, &c.matrix);
}
void MultiplyVector(int n, const double* a, const double* b, double* out) {
  const auto matrix = Operand(n, a);
  const auto vector = Elements(n, b);
  auto result = Elements(n, out);
  gsl_blas_dgemv(CblasNoTrans, 1, &matrix.matrix, &vector.vector, 0, &result.vector);
}
void DotProduct(int n, const double* a, const double* b, double* out) {
  const auto left = Elements(n, a), right = Elements(n, b);
  gsl_blas_ddot(&left.vector, &right.vector, out);
}
void Sum(int n, const double* a, const double*, double* out) {
  const auto vector = Elements(n, a);
  out[0] = gsl_vector_sum(&vector.vector);
}
void Largest(int n, const double* a, const double*, double* out) {
  const auto vector = Elements(n, a);
  out[0] = gsl_vector_max(&vector.vector);
}
void AddScaled(int n, const double* a, const double* b, double* out) {
  const auto right = Elements(n, b);
  auto result = Elements(n, out);
  std::copy(a, a + n, out);
  gsl_blas_daxpy(0.5, &right.vector, &result.vector);
}

/// An LU decomposition that keeps its storage as long as the order stays.
class Decomposition {
 public:
  void Decompose(int n, const double* a) {
    if (Size(n) * Size(n) != lu_.size()) {
      lu_.resize(Size(n) * Size(n));
      permutation_.reset(gsl_permutation_alloc(Size(n)));
    }
    std::copy(a, a + lu_.size(), lu_.begin());
    view_ = Result(n, lu_.data());
    gsl_linalg_LU_decomp(&view_.matrix, permutation_.get(), &sign_);
  }
  gsl_matrix* Lu() { return &view_.matrix; }
  const gsl_permutation* Permutation() const { return permutation_.get(); }
  int Sign() const { return sign_; }

 private:
  struct Free {
    void operator()(gsl_permutation* p) const { gsl_permutation_free(p); }
  };

  std::vector<double> lu_;
  std::unique_ptr<gsl_permutation, Free> permutation_;
  gsl_matrix_view view_ = {};
  int sign_ = 0;
};

Decomposition decomposition;

void Solve(int n, const double* a, const double* b, double* out) {
  decomposition.Decompose(n, a);
  const auto right = Elements(n, b);
  auto result = Elements(n, out);
  gsl_linalg_LU_solve(decomposition.Lu(), decomposition.Permutation(), &right.vector,
                      &result.vector);
}
void Determinant(int n, const double* a, const double*, double* out) {
  decomposition.Decompose(n, a);
  out[0] = gsl_linalg_LU_det(decomposition.Lu(), decomposition.Sign());
}
void LogDeterminant(int n, const double* a, const double*, double* out) {
  decomposition.Decompose(n, a);
  out[0] = gsl_linalg_LU_lndet(decomposition.Lu());
}
void Inverse(int n, const double* a, const double*, double* out) {
  decomposition.Decompose(n, a);
  auto result = Result(n, out);
  gsl_linalg_LU_invert(decomposition.Lu(), decomposition.Permutation(), &result.matrix);
}
void Cholesky(int n, const double* a, const double*, double* out) {
  std::copy(a, a + Size(n) * Size(n), out);
  auto factor = Result(n, out);
  gsl_linalg_cholesky_decomp1(&factor.matrix);
  for (int i = 0; i < n; ++i) std::fill(out + i * n + i + 1, out + (i + 1) * n, 0.0);
}

void Svd(int rows, int cols, const double* a, double* u, double* w, double* v) {
  static std::vector<double> work;
  work.resize(Size(cols));
  std::copy(a, a + Size(rows) * Size(cols), u);
  auto left = gsl_matrix_view_array(u, Size(rows), Size(cols));
  auto right = Result(cols, v);
  auto values = Elements(cols, w);
  auto scratch = Elements(cols, work.data());
  gsl_linalg_SV_decomp(&left.matrix, &right.matrix, &values.vector, &scratch.vector);
}

}  // namespace

extern const LinalgPeer kGsl = {
    "gsl",     Multiply, MultiplyTransposed, MultiplyVector, DotProduct, Sum,      Largest,
    AddScaled, Solve,    Determinant,        LogDeterminant, Inverse,    Cholesky, Svd};

}  // namespace bench
