#ifndef TARN_BENCH_LINALG_PEERS_H
#define TARN_BENCH_LINALG_PEERS_H

/// @file
/// The libraries beside which our linear algebra is timed, each through the same functions.
///
/// Matrices are n x n and stored row after row. A peer may read a matrix as its transpose and turn
/// the job around where that saves it work. What a peer needs beyond operands and result it keeps
/// between calls, so that its allocations are not timed when it can do without them.

namespace bench {

/// One job on operands of order n; what `a`, `b` and `out` are is said where the job is named.
using LinalgJob = void (*)(int n, const double* a, const double* b, double* out);

/// The singular value decomposition a = u*diag(w)*transpose(v) of rows x cols elements, rows >=
/// cols: u is rows x cols, v cols x cols, w in descending order.
using SvdJob = void (*)(int rows, int cols, const double* a, double* u, double* w, double* v);

struct LinalgPeer {
  const char* name;
  LinalgJob multiply;            ///< out = a*b
  LinalgJob multiplyTransposed;  ///< out = a*transpose(b)
  LinalgJob multiplyVector;      ///< out = a*b for a vector b
  LinalgJob dotProduct;          ///< out[0] = the dot product of n elements a and b
  LinalgJob sum;                 ///< out[0] = the sum of n elements a
  LinalgJob largest;             ///< out[0] = the largest of n elements a; null: not offered
  LinalgJob addScaled;           ///< out = a + b/2 for vectors
  LinalgJob solve;               ///< a*out = b for a vector b
  LinalgJob determinant;         ///< out[0]
  LinalgJob logDeterminant;      ///< out[0] = ln |determinant|
  LinalgJob inverse;             ///< out = 1/a
  LinalgJob cholesky;            ///< out = the lower triangular factor of a, zeros above it
  SvdJob svd;
};

/// Compiled for the machine's base instruction set.
extern const LinalgPeer kEigenPlain;
/// Compiled for this machine (-march=native).
extern const LinalgPeer kEigenNative;
extern const LinalgPeer kGsl;
/// OpenBLAS and its LAPACK on one thread.
extern const LinalgPeer kOpenBlas;

inline constexpr const LinalgPeer* kLinalgPeers[] = {&kEigenPlain, &kEigenNative, &kGsl,
                                                     &kOpenBlas};

/// Other ways to the singular values, for information: LAPACK's divide and conquer, and Eigen's
/// one-sided Jacobi rotations.
void DecomposeByDivideAndConquer(int rows, int cols, const double* a, double* u, double* w,
                                 double* v);
extern const SvdJob kEigenPlainJacobi;
extern const SvdJob kEigenNativeJacobi;

/// Keeps OpenBLAS on one thread and lets it use what the machine has: a processor that its version
/// does not know gets its oldest kernels, so the program then starts itself again, with the command
/// line `words`, after naming the kernels in the environment. To be called before anything else.
void PrepareOpenBlas(char** words);

}  // namespace bench

#endif
