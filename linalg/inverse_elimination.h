#ifndef TARN_LINALG_INVERSE_ELIMINATION_H
#define TARN_LINALG_INVERSE_ELIMINATION_H

/// @file
/// General inverse by elimination without row exchanges.
///
/// The matrices inverted here are Hessians and covariances, symmetric and in normal use positive
/// definite, whose leading pivots are not zero; no pivot is searched for.
///
///  1. U = the matrix, R = the identity.
///  2. Column k = 0, 1, ..., n - 1, every row i > k: a U(k, k) of exactly 0 ends the inversion;
///     f = U(i, k)/U(k, k); row i of U -= f * row k of U; row i of R -= f * row k of R. The last
///     pivot is not looked at.
///  3. Every column c of the result, i = n - 1, ..., 0: v = R(i, c), less r(j, c)*U(i, j) for
///     j = n - 1, ..., i + 1; r(i, c) = v/U(i, i).
///
/// Source: G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., section 3.2.

#include <cstdint>

#include "frame/error_numbers.h"
#include "linalg/element_storage.h"
#include "linalg/solve_elimination.h"

namespace tarn {

/// Step 2. Returns false at a zero pivot.
template <class Element>
bool EliminateWithoutExchanges(EliminationCopy<Element>& u, EliminationCopy<Element>& r) {
  const int n = u.Order();
  for (int k = 0; k + 1 < n; ++k) {
    if (u(k, k) == 0) return false;
    for (int i = k + 1; i < n; ++i) {
      const Element factor = u(i, k) / u(k, k);
      SubtractMultiple(u.Row(i), factor, u.Row(k), k + 1, n);
      SubtractMultiple(r.Row(i), factor, r.Row(k), 0, n);
    }
  }
  return true;
}

/// Step 3, all columns at a time: row i of `r` is the right-hand side and becomes the result.
template <class Element>
void SubstituteBackRows(EliminationCopy<Element>& u, EliminationCopy<Element>& r) {
  const int n = u.Order();
  for (int i = n - 1; i >= 0; --i) {
    for (int j = n - 1; j > i; --j) SubtractMultiple(r.Row(i), u(i, j), r.Row(j), 0, n);
    for (int c = 0; c < n; ++c) r(i, c) /= u(i, i);
  }
}

/// Inverts n x n elements into `result`, which may be `a`. Returns the number of the error to raise
/// or 0; `result` is untouched after an error.
template <class Element>
int InvertByElimination(const Element* a, int n, Element* result) {
  EliminationCopy<Element> u(a, n);
  EliminationCopy<Element> r(n);
  if (!u || !r) return kErrorMemory;
  r.SetIdentity();
  if (!EliminateWithoutExchanges(u, r)) return kErrorSingular;
  SubstituteBackRows(u, r);
  CopyElements(result, r.Row(0), static_cast<std::int64_t>(n) * n);
  return 0;
}

}  // namespace tarn

#endif
