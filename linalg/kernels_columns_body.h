// Sums down columns and outer products; see kernels_body.h.
//
// Neighbouring columns lie side by side in a register. Columns that do not fill one are taken
// together with those before them.

#ifndef TARN_LINALG_KERNELS_COLUMNS_BODY_H
#define TARN_LINALG_KERNELS_COLUMNS_BODY_H

#include "linalg/kernels_vector_body.h"

namespace tarn {
namespace {

/// Columns of kVectors registers.
template <class Element, Index kVectors>
void SumColumnGroup(Index rows, const Element* a, Index stride, const Element* weights,
                    Index weightStride, Element* sums) {
  constexpr Index n = kLanes<Element>;
  Block<Vector<Element>, kVectors> chains = {};
  for (Index i = 0; i < rows; ++i) {
    const Vector<Element> weight = Broadcast(weights[i * weightStride]);
    TARN_UNROLL
    for (Index v = 0; v < kVectors; ++v) chains[v] += weight * Load(a + i * stride + v * n);
  }
  TARN_UNROLL
  for (Index v = 0; v < kVectors; ++v) Store(sums + v * n, chains[v]);
}

/// Fewer columns than a register holds.
template <class Element>
void SumFewColumns(Index rows, Index cols, const Element* a, Index stride, const Element* weights,
                   Index weightStride, Element* sums) {
  for (Index j = 0; j < cols; ++j) {
    Element sum = 0;
    for (Index i = 0; i < rows; ++i) sum += weights[i * weightStride] * a[i * stride + j];
    sums[j] = sum;
  }
}

template <class Element>
void SumColumnProducts(Index rows, Index cols, const Element* a, Index stride,
                       const Element* weights, Index weightStride, Element* sums) {
  constexpr Index n = kLanes<Element>;
  if (cols < n) return SumFewColumns(rows, cols, a, stride, weights, weightStride, sums);
  Index j = 0;
  for (; j + 8 * n <= cols; j += 8 * n) {
    SumColumnGroup<Element, 8>(rows, a + j, stride, weights, weightStride, sums + j);
  }
  for (; j + 4 * n <= cols; j += 4 * n) {
    SumColumnGroup<Element, 4>(rows, a + j, stride, weights, weightStride, sums + j);
  }
  for (; j + 2 * n <= cols; j += 2 * n) {
    SumColumnGroup<Element, 2>(rows, a + j, stride, weights, weightStride, sums + j);
  }
  for (; j < cols; j += n) {
    const Index first = Least(j, cols - n);
    SumColumnGroup<Element, 1>(rows, a + first, stride, weights, weightStride, sums + first);
  }
}

// Outer products ----------------------------------------------------------------------------------

/// Columns of kVectors registers; lanes of the last one that `keep` rules out stay as they are.
template <class Element, Index kVectors, bool kKeepsAll>
void AddOuterGroup(Index rows, Element* a, Index stride, const Element* column, Index columnStride,
                   const Element* row, Mask<Element> keep) {
  constexpr Index n = kLanes<Element>;
  Block<Vector<Element>, kVectors> factors;
  TARN_UNROLL
  for (Index v = 0; v < kVectors; ++v) factors[v] = Load(row + v * n);
  for (Index i = 0; i < rows; ++i) {
    const Vector<Element> factor = Broadcast(column[i * columnStride]);
    TARN_UNROLL
    for (Index v = 0; v < kVectors; ++v) {
      Element* const target = a + i * stride + v * n;
      const Vector<Element> before = Load(target);
      const Vector<Element> after = before + factor * factors[v];
      Store(target, kKeepsAll ? after : Select<Element>(after, before, keep));
    }
  }
}

template <class Element>
void AddFewColumns(Index rows, Index cols, Element* a, Index stride, const Element* column,
                   Index columnStride, const Element* row) {
  for (Index i = 0; i < rows; ++i) {
    for (Index j = 0; j < cols; ++j) a[i * stride + j] += column[i * columnStride] * row[j];
  }
}

template <class Element>
void AddOuterProduct(Index rows, Index cols, Element* a, Index stride, const Element* column,
                     Index columnStride, const Element* row) {
  constexpr Index n = kLanes<Element>;
  if (cols < n) return AddFewColumns(rows, cols, a, stride, column, columnStride, row);
  const Mask<Element> all = ~Mask<Element>{};
  Index j = 0;
  for (; j + 4 * n <= cols; j += 4 * n) {
    AddOuterGroup<Element, 4, true>(rows, a + j, stride, column, columnStride, row + j, all);
  }
  for (; j + n <= cols; j += n) {
    AddOuterGroup<Element, 1, true>(rows, a + j, stride, column, columnStride, row + j, all);
  }
  if (j == cols) return;
  const Index first = cols - n;
  AddOuterGroup<Element, 1, false>(rows, a + first, stride, column, columnStride, row + first,
                                   LanesFrom<Element>(j - first));
}

}  // namespace
}  // namespace tarn

#endif
