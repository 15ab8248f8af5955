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

#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/error_numbers.h"
#include "linalg/block_elimination.h"
#include "linalg/element_storage.h"
#include "linalg/solve_elimination.h"

namespace tarn {

/// Step 2 for U; the multipliers f take the places below its diagonal. Returns false at a zero
/// pivot.
template <class Element>
bool EliminateWithoutExchanges(EliminationCopy<Element>& u) {
  constexpr int kUnblockedOrder = 12;
  const int n = u.Order();
  if (n > kUnblockedOrder) {
    PanelStorage<Element> panel(n);
    if (panel.Get() != nullptr) {
      return BlockElimination<Element>(u.Row(0), n, panel.Get()).RunWithoutPivots();
    }
  }
  for (int k = 0; k + 1 < n; ++k) {
    if (u(k, k) == 0) return false;
    EliminateBelow(u, k);
  }
  return true;
}

/// Whether all multipliers are finite.
template <class Element>
bool AreMultipliersFinite(EliminationCopy<Element>& u) {
  constexpr Element kLargest = std::numeric_limits<Element>::max();
  bool areFinite = true;
  for (int i = 1; i < u.Order(); ++i) {
    const Element* const row = u.Row(i);
    for (int k = 0; k < i; ++k) areFinite &= std::abs(row[k]) <= kLargest;
  }
  return areFinite;
}

/// Step 2 for R. What lies right of its diagonal stays +0 as long as finite multiples of +0 are
/// taken away, and need not be touched then.
template <class Element>
void CarryOver(EliminationCopy<Element>& u, EliminationCopy<Element>& r) {
  const std::ptrdiff_t n = u.Order();
  const bool staysTriangular = AreMultipliersFinite(u);
  SolveLowerRows<Element>({u.Row(0), r.Row(0), n, n}, 0, n,
                          [=](std::ptrdiff_t i) { return staysTriangular ? i : n; });
}

/// Inverts n x n elements into `result`, which may be `a`. Returns the number of the error to raise
/// or 0; `result` is untouched after an error.
template <class Element>
int InvertByElimination(const Element* a, int n, Element* result) {
  EliminationCopy<Element> u(a, n);
  EliminationCopy<Element> r(n);
  if (!u || !r) return kErrorMemory;
  r.SetIdentity();
  if (!EliminateWithoutExchanges(u)) return kErrorSingular;
  CarryOver(u, r);
  SolveUpperRows<Element>({u.Row(0), r.Row(0), n, n}, 0, n);  // step 3
  CopyElements(result, r.Row(0), static_cast<std::int64_t>(n) * n);
  return 0;
}

}  // namespace tarn

#endif
