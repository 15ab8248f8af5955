// Steps of elimination and substitution; see kernels_body.h.

#ifndef TARN_LINALG_KERNELS_SOLVE_BODY_H
#define TARN_LINALG_KERNELS_SOLVE_BODY_H

#include "linalg/kernels_elementwise_body.h"
#include "linalg/kernels_vector_body.h"

namespace tarn {
namespace {

// Elimination of a panel --------------------------------------------------------------------------

template <class Element>
TARN_INLINE Element Magnitude(Element x) {
  return x < 0 ? -x : x;
}

/// The first element of largest magnitude; a NaN counts only where it comes first, and then wins.
template <class Element>
Index FindPivot(Index rows, const Element* column) {
  if (column[0] != column[0]) return 0;
  const Element largest = FindExtreme<LargerMagnitude>(rows, column, Element(0));
  Index pivot = 0;
  while (Magnitude(column[pivot]) != largest) ++pivot;
  return pivot;
}

template <class Element>
void ExchangeRows(Index cols, Element* panel, Index stride, Index a, Index b) {
  for (Index j = 0; j < cols; ++j) {
    const Element element = panel[j * stride + a];
    panel[j * stride + a] = panel[j * stride + b];
    panel[j * stride + b] = element;
  }
}

template <class Element>
TARN_INLINE void DivideColumn(Index rows, Element* column, Element pivot) {
  constexpr Index n = kLanes<Element>;
  const Vector<Element> pivots = Broadcast(pivot);
  Index r = 0;
  for (; r + n <= rows; r += n) Store(column + r, Load(column + r) / pivots);
  for (; r < rows; ++r) column[r] /= pivot;
}

/// target -= factor*source
template <class Element>
TARN_INLINE void SubtractMultiple(Index rows, Element* target, const Element* source,
                                  Element factor) {
  constexpr Index n = kLanes<Element>;
  const Vector<Element> factors = Broadcast(factor);
  Index r = 0;
  for (; r + n <= rows; r += n) Store(target + r, Load(target + r) - Load(source + r) * factors);
  for (; r < rows; ++r) target[r] -= source[r] * factor;
}

template <class Element>
Index EliminatePanel(Index rows, Index cols, Element* panel, Index stride, Index* pivots) {
  for (Index k = 0; k < cols; ++k) {
    Element* const column = panel + k * stride;
    if (pivots != nullptr) {
      pivots[k] = k + FindPivot(rows - k, column + k);
      if (pivots[k] != k) ExchangeRows(cols, panel, stride, k, pivots[k]);
    }
    if (column[k] == 0 && (pivots != nullptr || k + 1 < rows)) return k;
    const Index below = rows - k - 1;
    DivideColumn(below, column + k + 1, column[k]);
    for (Index j = k + 1; j < cols; ++j) {
      Element* const target = panel + j * stride + k;
      SubtractMultiple(below, target + 1, column + k + 1, target[0]);
    }
  }
  return cols;
}

// Triangular systems of a few rows ----------------------------------------------------------------

// The order in which unknowns are found: from the first row with a diagonal of ones, or from the
// last row with a division by the diagonal.
struct FromFirstRow {
  static constexpr bool kDivides = false;
  TARN_INLINE static Index Row(Index rows, Index step) { return static_cast<void>(rows), step; }
};
struct FromLastRow {
  static constexpr bool kDivides = true;
  TARN_INLINE static Index Row(Index rows, Index step) { return rows - 1 - step; }
};

/// One vector of right-hand sides, which stays in registers.
template <class Way, Index kRows, class Element>
TARN_INLINE void SolveVector(const Element* t, Index tStride, Element* r, Index rStride) {
  Block<Vector<Element>, kRows> x;
  TARN_UNROLL
  for (Index i = 0; i < kRows; ++i) x[i] = Load(r + i * rStride);
  TARN_UNROLL
  for (Index p = 0; p < kRows; ++p) {
    const Index i = Way::Row(kRows, p);
    TARN_UNROLL
    for (Index q = 0; q < p; ++q) {
      const Index k = Way::Row(kRows, q);
      x[i] -= x[k] * Broadcast(t[i * tStride + k]);
    }
    if (Way::kDivides) x[i] /= Broadcast(t[i * tStride + i]);
    Store(r + i * rStride, x[i]);
  }
}

/// A single right-hand side.
template <class Way, class Element>
void SolveOne(Index rows, const Element* t, Index tStride, Element* r, Index rStride) {
  for (Index p = 0; p < rows; ++p) {
    const Index i = Way::Row(rows, p);
    Element x = r[i * rStride];
    for (Index q = 0; q < p; ++q) {
      const Index k = Way::Row(rows, q);
      x -= r[k * rStride] * t[i * tStride + k];
    }
    r[i * rStride] = Way::kDivides ? x / t[i * tStride + i] : x;
  }
}

template <class Way, Index kRows, class Element>
void SolveRows(Index rows, Index cols, const Element* t, Index tStride, Element* r, Index rStride) {
  if constexpr (kRows > 1) {
    if (rows < kRows) return SolveRows<Way, kRows - 1>(rows, cols, t, tStride, r, rStride);
  }
  constexpr Index n = kLanes<Element>;
  Index j = 0;
  for (; j + n <= cols; j += n) SolveVector<Way, kRows>(t, tStride, r + j, rStride);
  for (; j < cols; ++j) SolveOne<Way>(kRows, t, tStride, r + j, rStride);
}

template <class Element>
void SolveUnitLower(Index rows, Index cols, const Element* l, Index lStride, Element* r,
                    Index rStride) {
  SolveRows<FromFirstRow, kEliminationColumns>(rows, cols, l, lStride, r, rStride);
}

template <class Element>
void SolveUpper(Index rows, Index cols, const Element* u, Index uStride, Element* r,
                Index rStride) {
  SolveRows<FromLastRow, kEliminationColumns>(rows, cols, u, uStride, r, rStride);
}

}  // namespace
}  // namespace tarn

#endif
