#ifndef TARN_LINALG_SOLVE_ELIMINATION_H
#define TARN_LINALG_SOLVE_ELIMINATION_H

/// @file
/// Gaussian elimination with partial pivoting on a private copy of a square matrix.
///
/// Column k = 0, 1, ..., n - 1:
///  1. Pivot row: the first row from k on whose element in column k is largest in absolute value (a
///     NaN in row k stays the pivot, one below is never chosen).
///  2. Exchange it with row k, likewise in the right-hand side.
///  3. A pivot of exactly 0 ends the elimination: the matrix is singular. There is no tolerance.
///  4. Every row r > k: f = a(r, k)/a(k, k); row r -= f * row k, b[r] -= f * b[k].
///
/// The elements below the diagonal are not looked at again; the multipliers f take their places.
/// The right-hand side follows when they are known, and larger orders go by blocks
/// (block_elimination.h): neither changes what is subtracted from an element, nor in which order.
///
/// Source: G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., algorithm 3.4.1.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "linalg/block_elimination.h"
#include "linalg/element_storage.h"
#include "linalg/kernels.h"

namespace tarn {

/// The elements of a square matrix, changed by an elimination. Small orders live on the call stack.
template <class Element>
class EliminationCopy {
 public:
  /// n x n elements, not initialised.
  explicit EliminationCopy(int n)
      : order_(n),
        heap_(n <= kSmallOrder ? nullptr : NewElements<Element>(Count())),
        elements_(n <= kSmallOrder ? small_ : heap_) {}
  /// A copy of n x n elements, row after row.
  EliminationCopy(const Element* source, int n) : EliminationCopy(n) {
    if (elements_ != nullptr) CopyElements(elements_, source, Count());
  }
  ~EliminationCopy() { delete[] heap_; }
  EliminationCopy(const EliminationCopy&) = delete;
  EliminationCopy& operator=(const EliminationCopy&) = delete;

  /// False when the storage was refused.
  explicit operator bool() const { return elements_ != nullptr; }

  int Order() const { return order_; }
  Element* Row(int i) { return elements_ + static_cast<std::int64_t>(i) * order_; }
  Element& operator()(int i, int j) { return Row(i)[j]; }

  void SetIdentity() {
    ClearElements(elements_, Count());
    for (int k = 0; k < order_; ++k) (*this)(k, k) = 1;
  }
  /// Multiplies every element by s.
  void Scale(Element s) {
    for (std::int64_t k = 0; k < Count(); ++k) elements_[k] *= s;
  }

 private:
  static constexpr int kSmallOrder = 8;

  std::int64_t Count() const { return static_cast<std::int64_t>(order_) * order_; }

  int order_;
  Element* heap_;
  Element* elements_;
  Element small_[kSmallOrder * kSmallOrder];
};

/// Step 1: the pivot row of column k.
template <class Element>
int FindPivotRow(EliminationCopy<Element>& a, int k) {
  int pivot = k;
  Element largest = std::abs(a(k, k));
  for (int r = k + 1; r < a.Order(); ++r) {
    const Element magnitude = std::abs(a(r, k));
    if (magnitude > largest) {
      largest = magnitude;
      pivot = r;
    }
  }
  return pivot;
}

/// target[j] -= factor * source[j] for first <= j < last.
template <class Element>
void SubtractMultiple(Element* target, Element factor, const Element* source, int first, int last) {
  for (int j = first; j < last; ++j) target[j] -= factor * source[j];
}

/// Step 4 for column k, without the right-hand side.
template <class Element>
void EliminateBelow(EliminationCopy<Element>& a, int k) {
  const int n = a.Order();
  for (int r = k + 1; r < n; ++r) {
    const Element factor = a(r, k) / a(k, k);
    SubtractMultiple(a.Row(r), factor, a.Row(k), k + 1, n);
    a(r, k) = factor;
  }
}

/// Steps 1 to 4 as they stand, without the right-hand side; `exchange(i, j)` is told of exchanges.
template <class Element, class Exchange>
bool EliminateColumnByColumn(EliminationCopy<Element>& a, Exchange exchange) {
  for (int k = 0; k < a.Order(); ++k) {
    const int pivot = FindPivotRow(a, k);
    if (pivot != k) {
      std::swap_ranges(a.Row(k), a.Row(k) + a.Order(), a.Row(pivot));
      exchange(k, pivot);
    }
    if (a(k, k) == 0) return false;
    EliminateBelow(a, k);
  }
  return true;
}

/// The same by blocks, where that pays and there is room for it.
template <class Element, class Exchange>
bool EliminateColumns(EliminationCopy<Element>& a, Exchange exchange) {
  constexpr int kUnblockedOrder = 28;
  if (a.Order() <= kUnblockedOrder) return EliminateColumnByColumn(a, exchange);
  PanelStorage<Element> panel(a.Order());
  if (panel.Get() == nullptr) return EliminateColumnByColumn(a, exchange);
  return BlockElimination<Element>(a.Row(0), a.Order(), panel.Get()).RunWithPivots(exchange);
}

/// rhs[i] -= f(i, k)*rhs[k] for k = 0, ..., i - 1, the multipliers f standing below the diagonal.
template <class Element>
void SubstituteForward(EliminationCopy<Element>& a, Element* rhs) {
  constexpr int kRows = 16;
  const int n = a.Order();
  for (int begin = 0; begin < n; begin += kRows) {
    const int end = std::min(begin + kRows, n);
    Element negated[kRows];
    for (int i = begin; i < end; ++i) {
      for (int k = begin; k < i; ++k) rhs[i] -= a(i, k) * rhs[k];
      negated[i - begin] = -rhs[i];
    }
    if (end == n) return;
    Kernels<Element>().addRowProducts(n - end, end - begin, a.Row(end) + begin, n, negated,
                                      rhs + end);
  }
}

/// Reduces `a` to upper triangular form and carries the right-hand side along, if there is one.
/// Returns false at an exactly zero pivot. `*oddExchanges` tells whether the number of row
/// exchanges was odd, that is, whether they changed the sign of the determinant.
template <class Element>
bool Eliminate(EliminationCopy<Element>& a, Element* rhs, bool* oddExchanges) {
  *oddExchanges = false;
  const auto exchange = [=](std::ptrdiff_t i, std::ptrdiff_t j) {
    if (rhs != nullptr) std::swap(rhs[i], rhs[j]);
    *oddExchanges = !*oddExchanges;
  };
  if (!EliminateColumns(a, exchange)) return false;
  if (rhs != nullptr) SubstituteForward(a, rhs);
  return true;
}

}  // namespace tarn

#endif
