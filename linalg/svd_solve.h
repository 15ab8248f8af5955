#ifndef TARN_LINALG_SVD_SOLVE_H
#define TARN_LINALG_SVD_SOLVE_H

/// @file
/// Pseudo-inverse and linear systems by singular value decomposition, without raising.
///
/// With A = U*diag(w)*transpose(V), the least-squares solution of least norm of A*x = b is
/// V*diag(1/w)*transpose(U)*b, where 1/w stands for 0 at negligible w.
///
/// Sources: G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., section 5.5; P. C. Hansen,
/// Rank-Deficient and Discrete Ill-Posed Problems, SIAM 1998, section 5.1, for the filter
/// w/(w^2 + h) of Tikhonov regularisation.

#include <algorithm>
#include <cmath>

#include "frame/error_numbers.h"
#include "linalg/element_storage.h"
#include "linalg/matrix.h"
#include "linalg/solve_work_area.h"
#include "linalg/svd_decomposition.h"
#include "linalg/vector.h"

namespace tarn {

/// c = transpose(U)*b.
template <class Element>
void ProjectOntoLeftVectors(T_Matrix<Element>& u, const Element* b, Element* c) {
  SumColumns(Block<Element>{u[0], u.X(), u.Y(), u.X()}, b, 1, c);
}

/// Divides by the singular values above `threshold`; the other coefficients become 0.
template <class Element>
void DivideAbove(Element threshold, const T_MatVectorCol<Element>& w, Element* c) {
  for (int i = w.Dim() - 1; i >= 0; --i) c[i] = std::abs(w[i]) > threshold ? c[i] / w[i] : 0;
}

/// Least-squares solution with the cut-off limit*w[0]. Returns the number of the error to raise or
/// 0. `b` and `solution` may be the same array.
template <class Element>
int SolveBySvd(const T_Matrix<Element>& a, Element limit, const Element* b, Element* solution) {
  SvdFactors<Element> factors(a, limit);
  if (factors.error != 0) return factors.error;
  WorkVectors<Element, 1> work(a.X());
  Element* const c = work.Get();
  if (c == nullptr) return kErrorMemory;
  if (factors.w.Dim() == 0) {
    ClearElements(solution, a.X());
    return 0;
  }
  ProjectOntoLeftVectors(factors.u, b, c);
  DivideAbove(limit * factors.w[0], factors.w, c);
  std::fill(c + std::min(a.X(), a.Y()), c + a.X(), Element{0});
  factors.v.RightMultiply(solution, c);
  return 0;
}

/// Coefficients of the regularised solution: w/(w^2 + h) with h = (w[0]*lambda)^2. They stand
/// alone; the right-hand side does not enter.
template <class Element>
void SetFilteredCoefficients(const T_MatVectorCol<Element>& w, Element lambda, int rank,
                             Element* c) {
  const Element root = w[0] * lambda;
  const Element h = root * root;
  std::fill(c + rank, c + w.Dim(), Element{0});
  for (int i = rank - 1; i >= 0; --i) c[i] = w[i] / (w[i] * w[i] + h);
}

/// Solves with the factors of a decomposition. Where the ratio of the smallest to the largest
/// singular value reaches lambda, the solution is exact, without a cut-off, and U is left
/// transposed; otherwise it is filtered, and of fewer rows than columns only as many elements are
/// stored. Returns the number of the error to raise or 0.
template <class Element>
int SolveRegularized(T_Matrix<Element>& u, const T_MatVectorCol<Element>& w,
                     const T_Matrix<Element>& v, const Element* b, Element* solution,
                     Element lambda) {
  const int m = u.Y();
  const int n = u.X();
  const int order = std::max(m, n);
  WorkVectors<Element, 2> work(order);
  Element* const c = work.Get();
  if (c == nullptr) return kErrorMemory;
  if (w.Dim() == 0) {
    ClearElements(solution, n);
    return 0;
  }
  int count = n;
  if (w[n - 1] / w[0] >= lambda) {
    ProjectOntoLeftVectors(u, b, c);
    for (int i = n - 1; i >= 0; --i) c[i] /= w[i];
    u.Transpose();
  } else {
    count = std::min(m, n);
    SetFilteredCoefficients(w, lambda, count, c);
  }
  Element* const y = c + order;
  v.RightMultiply(y, c);
  std::copy_n(y, count, solution);
  return 0;
}

/// The same on a decomposed copy.
template <class Element>
int SolveCopyRegularized(const T_Matrix<Element>& a, Element limit, const Element* b,
                         Element* solution, Element lambda) {
  SvdFactors<Element> factors(a, limit);
  if (factors.error != 0) return factors.error;
  return SolveRegularized(factors.u, factors.w, factors.v, b, solution, lambda);
}

/// New pseudo-inverse V*diag(1/w)*transpose(U) with the cut-off limit*(sum of |w|); null when
/// storage was refused.
template <class Element>
T_Matrix<Element>* NewPseudoInverse(const T_Matrix<Element>& a, Element limit) {
  SvdFactors<Element> factors(a, limit);
  T_Matrix<Element>* const inverse =
      factors.error == 0 ? NewMatrix<Element>(a.X(), a.Y()) : nullptr;
  if (inverse == nullptr || factors.w.Dim() == 0) return inverse;
  Element sum = 0;
  for (int i = 0; i < factors.w.Dim(); ++i) sum += std::abs(factors.w[i]);
  const Element threshold = limit * sum;
  for (int i = factors.w.Dim() - 1; i >= 0; --i) {
    factors.w[i] = std::abs(factors.w[i]) > threshold ? 1 / factors.w[i] : 0;
  }
  factors.v.MultByDiagonalMatrix(factors.w);
  factors.v.MulT(factors.u, *inverse);
  return inverse;
}

}  // namespace tarn

#endif
