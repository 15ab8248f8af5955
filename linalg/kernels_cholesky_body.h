// Rows of a Cholesky factor; see kernels_body.h.
//
// The sum behind an element begins with the column computed last, so that no part of it can be
// formed ahead. But the elements of a column do not depend on each other: a few vectors of rows are
// computed column after column, each from the columns before it, which lie packed in the cache.

#ifndef TARN_LINALG_KERNELS_CHOLESKY_BODY_H
#define TARN_LINALG_KERNELS_CHOLESKY_BODY_H

#include "linalg/kernels_rows_body.h"
#include "linalg/kernels_vector_body.h"

namespace tarn {
namespace {

template <class Element>
constexpr Index kCholeskyRows = TARN_KERNEL_CHOLESKY_VECTORS* kLanes<Element>;

TARN_INLINE float SquareRoot(float x) { return __builtin_sqrtf(x); }
TARN_INLINE double SquareRoot(double x) { return __builtin_sqrt(x); }

/// x[j] -= coefficients[k*step]*columns(k, j) for k = i-1, ..., 0, where the columns hold kVectors
/// vectors each.
template <class Element, Index kVectors>
__attribute__((noinline)) void ReduceColumn(Index i, const Element* coefficients, Index step,
                                            const Element* columns, Element* x) {
  constexpr Index n = kLanes<Element>;
  Block<Vector<Element>, kVectors> sums;
  TARN_UNROLL
  for (Index v = 0; v < kVectors; ++v) sums[v] = Load(x + v * n);
  for (Index k = i - 1; k >= 0; --k) {
    const Vector<Element> coefficient = Broadcast(coefficients[k * step]);
    TARN_UNROLL
    for (Index v = 0; v < kVectors; ++v) {
      sums[v] -= coefficient * Load(columns + (k * kVectors + v) * n);
    }
  }
  TARN_UNROLL
  for (Index v = 0; v < kVectors; ++v) Store(x + v * n, sums[v]);
}

/// `FactorizeCholeskyRows` for up to kVectors vectors of rows. Column k of these rows is kept from
/// columns + k*kWidth on, with zeros above the diagonal.
template <class Element, Index kVectors>
bool FactorizeVectors(Index n, Index first, Index count, const Element* a, Element* l,
                      Element* columns) {
  constexpr Index kWidth = kVectors * kLanes<Element>;
  for (Index i = 0; i < first + count; ++i) {
    const bool isBefore = i < first;
    const Index diagonal = isBefore ? 0 : i - first;
    Element* const column = columns + i * kWidth;
    for (Index j = 0; j < kWidth; ++j) column[j] = 0;
    for (Index j = diagonal; j < count; ++j) column[j] = a[i * n + first + j];
    if (isBefore) {
      ReduceColumn<Element, kVectors>(i, l + i * n, 1, columns, column);
    } else {
      ReduceColumn<Element, kVectors>(i, columns + diagonal, kWidth, columns, column);
      if (column[diagonal] <= 0) return false;
    }
    const Element pivot = isBefore ? l[i * n + i] : SquareRoot(column[diagonal]);
    for (Index j = 0; j < kWidth; ++j) column[j] /= pivot;
    if (isBefore) continue;
    for (Index j = 0; j < diagonal; ++j) column[j] = 0;
    column[diagonal] = pivot;
  }
  Transpose(first + count, count, columns, kWidth, l + first * n, n);
  return true;
}

/// Chooses the number of vectors.
template <class Element, Index kVectors>
bool FactorizeRows(Index n, Index first, Index count, const Element* a, Element* l, Element* work) {
  if constexpr (kVectors > 1) {
    if (count <= (kVectors - 1) * kLanes<Element>) {
      return FactorizeRows<Element, kVectors - 1>(n, first, count, a, l, work);
    }
  }
  return FactorizeVectors<Element, kVectors>(n, first, count, a, l, work);
}

template <class Element>
bool FactorizeCholeskyRows(Index n, Index first, Index count, const Element* a, Element* l,
                           Element* work) {
  return FactorizeRows<Element, TARN_KERNEL_CHOLESKY_VECTORS>(n, first, count, a, l, work);
}

}  // namespace
}  // namespace tarn

#endif
