#include <lapacke.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "linalg_peers.h"

// The Fortran interface of BLAS, because GSL brings its own functions under the names of the C
// interface; declared here, because the headers of OpenBLAS and LAPACKE do not go together.
extern "C" {
void dgemm_(const char* shapeA, const char* shapeB, const int* m, const int* n, const int* k,
            const double* alpha, const double* a, const int* aStride, const double* b,
            const int* bStride, const double* beta, double* c, const int* cStride);
void dgemv_(const char* shape, const int* m, const int* n, const double* alpha, const double* a,
            const int* aStride, const double* x, const int* xStep, const double* beta, double* y,
            const int* yStep);
double ddot_(const int* n, const double* x, const int* xStep, const double* y, const int* yStep);
double dsum_(const int* n, const double* x, const int* xStep);
void daxpy_(const int* n, const double* alpha, const double* x, const int* xStep, double* y,
            const int* yStep);
void openblas_set_num_threads(int threads);
char* openblas_get_corename();
}

namespace bench {
namespace {

constexpr int kStep = 1;
constexpr double kZero = 0, kHalf = 0.5, kOne = 1;

std::size_t Size(int n) { return static_cast<std::size_t>(n); }

// Fortran stores columns and so sees our matrices transposed.

/// The transpose of a*shape(b) is transpose(shape(b))*transpose(a).
void MultiplyBy(const char* shape, int n, const double* a, const double* b, double* out) {
  dgemm_(shape, "N", &n, &n, &n, &kOne, b, &n, a, &n, &kZero, out, &n);
}
void Multiply(int n, const double* a, const double* b, double* out) {
  MultiplyBy("N", n, a, b, out);
}
void MultiplyTransposed(int n, const double* a, const double* b, double* out) {
  MultiplyBy("T", n, a, b, out);
}
void MultiplyVector(int n, const double* a, const double* b, double* out) {
  dgemv_("T", &n, &n, &kOne, a, &n, b, &kStep, &kZero, out, &kStep);
}
void DotProduct(int n, const double* a, const double* b, double* out) {
  out[0] = ddot_(&n, a, &kStep, b, &kStep);
}
void Sum(int n, const double* a, const double*, double* out) { out[0] = dsum_(&n, a, &kStep); }
void AddScaled(int n, const double* a, const double* b, double* out) {
  std::copy(a, a + n, out);
  daxpy_(&n, &kHalf, b, &kStep, out, &kStep);
}

std::vector<double> lu;
std::vector<lapack_int> pivots;

void Decompose(int n, const double* a, double* target) {
  pivots.resize(Size(n));
  std::copy(a, a + Size(n) * Size(n), target);
  LAPACKE_dgetrf_work(LAPACK_COL_MAJOR, n, n, target, n, pivots.data());
}
void Decompose(int n, const double* a) {
  lu.resize(Size(n) * Size(n));
  Decompose(n, a, lu.data());
}

void Solve(int n, const double* a, const double* b, double* out) {
  Decompose(n, a);
  std::copy(b, b + n, out);
  LAPACKE_dgetrs_work(LAPACK_COL_MAJOR, 'T', n, 1, lu.data(), n, pivots.data(), out, n);
}
void Determinant(int n, const double* a, const double*, double* out) {
  Decompose(n, a);
  out[0] = 1;
  for (std::size_t k = 0; k < Size(n); ++k) {
    const bool isExchanged = pivots[k] != static_cast<lapack_int>(k + 1);
    out[0] *= isExchanged ? -lu[k * (Size(n) + 1)] : lu[k * (Size(n) + 1)];
  }
}
void LogDeterminant(int n, const double* a, const double*, double* out) {
  Decompose(n, a);
  out[0] = 0;
  for (std::size_t k = 0; k < Size(n); ++k) out[0] += std::log(std::abs(lu[k * (Size(n) + 1)]));
}
void Inverse(int n, const double* a, const double*, double* out) {
  constexpr std::size_t kBlock = 64;
  static std::vector<double> work;
  work.resize(kBlock * Size(n));
  Decompose(n, a, out);
  LAPACKE_dgetri_work(LAPACK_COL_MAJOR, n, out, n, pivots.data(), work.data(),
                      static_cast<lapack_int>(work.size()));
}
void Cholesky(int n, const double* a, const double*, double* out) {
  std::copy(a, a + Size(n) * Size(n), out);
  LAPACKE_dpotrf_work(LAPACK_COL_MAJOR, 'U', n, out, n);
  for (int i = 0; i < n; ++i) std::fill(out + i * n + i + 1, out + (i + 1) * n, 0.0);
}

void TransposeSquare(int n, double* v) {
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < i; ++j) std::swap(v[i * n + j], v[j * n + i]);
  }
}

/// The transpose's decomposition: its left vectors are our right ones.
void Svd(int rows, int cols, const double* a, double* u, double* w, double* v) {
  static std::vector<double> copy, work;
  copy.assign(a, a + Size(rows) * Size(cols));
  double needed = 0;
  LAPACKE_dgesvd_work(LAPACK_COL_MAJOR, 'S', 'S', cols, rows, copy.data(), cols, w, v, cols, u,
                      cols, &needed, -1);
  work.resize(static_cast<std::size_t>(needed));
  LAPACKE_dgesvd_work(LAPACK_COL_MAJOR, 'S', 'S', cols, rows, copy.data(), cols, w, v, cols, u,
                      cols, work.data(), static_cast<lapack_int>(work.size()));
  TransposeSquare(cols, v);
}

}  // namespace

extern const LinalgPeer kOpenBlas = {
    "openblas", Multiply, MultiplyTransposed, MultiplyVector, DotProduct, Sum,      nullptr,
    AddScaled,  Solve,    Determinant,        LogDeterminant, Inverse,    Cholesky, Svd};

void DecomposeByDivideAndConquer(int rows, int cols, const double* a, double* u, double* w,
                                 double* v) {
  static std::vector<double> copy, work;
  static std::vector<lapack_int> indices;
  copy.assign(a, a + Size(rows) * Size(cols));
  indices.resize(8 * Size(cols));
  double needed = 0;
  LAPACKE_dgesdd_work(LAPACK_COL_MAJOR, 'S', cols, rows, copy.data(), cols, w, v, cols, u, cols,
                      &needed, -1, indices.data());
  work.resize(static_cast<std::size_t>(needed));
  LAPACKE_dgesdd_work(LAPACK_COL_MAJOR, 'S', cols, rows, copy.data(), cols, w, v, cols, u, cols,
                      work.data(), static_cast<lapack_int>(work.size()), indices.data());
  TransposeSquare(cols, v);
}

void PrepareOpenBlas(char** words) {
  openblas_set_num_threads(1);
  const bool isUnaware = std::string_view(openblas_get_corename()) == "Prescott";
  if (!isUnaware || std::getenv("OPENBLAS_CORETYPE") != nullptr) return;
#if defined(__x86_64__)
  const char* type = nullptr;
  if (__builtin_cpu_supports("avx512bw")) {
    type = "SKYLAKEX";
  } else if (__builtin_cpu_supports("avx2")) {
    type = "HASWELL";
  }
  if (type == nullptr) return;
  setenv("OPENBLAS_CORETYPE", type, 1);
  execv("/proc/self/exe", words);
#endif
}

}  // namespace bench
