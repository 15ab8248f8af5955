// Sums along rows and transposes; see kernels_body.h.
//
// The sum of a row is one chain of additions, so many rows are summed side by side, one per lane.
// The products of a square block of lanes are formed along the rows, transposed in registers and
// then added column after column.

#ifndef TARN_LINALG_KERNELS_ROWS_BODY_H
#define TARN_LINALG_KERNELS_ROWS_BODY_H

#include "linalg/kernels_vector_body.h"

namespace tarn {
namespace {

// What is summed: the products of a row with a vector, or the squares of a row.
template <class Element>
struct ProductTerms {
  const Element* v;
  TARN_INLINE Vector<Element> At(Index j, Vector<Element> row) const { return row * Load(v + j); }
  TARN_INLINE Element At(Index j, Element element) const { return element * v[j]; }
};
template <class Element>
struct SquareTerms {
  TARN_INLINE Vector<Element> At(Index, Vector<Element> row) const { return row * row; }
  TARN_INLINE Element At(Index, Element element) const { return element * element; }
};

/// Adds the terms of one block of columns to the sums of a group of rows. Lanes that `keep` rules
/// out count as -0, which changes no sum, not even one that is a zero of either sign.
template <class Element, class Terms>
TARN_INLINE void AddBlock(Vector<Element>& sums, const Element* const* rows, Index j,
                          const Terms& terms, Mask<Element> keep) {
  constexpr Index n = kLanes<Element>;
  Block<Vector<Element>, n> block;
  TARN_UNROLL
  for (Index r = 0; r < n; ++r) {
    const Vector<Element> products = terms.At(j, Load(rows[r] + j));
    block[r] = Select<Element>(products, Broadcast(Element(-0.0)), keep);
  }
  TransposeLanes<Element>(block);
  TARN_UNROLL
  for (Index q = 0; q < n; ++q) sums += block[q];
}

/// Up to kGroups*n rows of at least n columns. Groups beyond the last row repeat it.
template <class Element, Index kGroups, class Terms>
void SumRowGroups(Index rows, Index cols, const Element* a, Index stride, const Terms& terms,
                  Element* sums) {
  constexpr Index n = kLanes<Element>;
  Block<Element, kGroups* n> results = {};
  for (Index r = 0; r < rows; ++r) results[r] = sums[r];
  Block<const Element*, kGroups * n> starts;
  for (Index r = 0; r < kGroups * n; ++r) starts[r] = a + Least(r, rows - 1) * stride;
  Block<Vector<Element>, kGroups> chains;
  TARN_UNROLL
  for (Index g = 0; g < kGroups; ++g) chains[g] = Load(results + g * n);
  Index j = 0;
  for (; j + n <= cols; j += n) {
    TARN_UNROLL
    for (Index g = 0; g < kGroups; ++g) {
      AddBlock<Element>(chains[g], starts + g * n, j, terms, ~Mask<Element>{});
    }
  }
  if (j < cols) {
    // The last columns are read as a full vector that ends with them.
    const Mask<Element> keep = LanesFrom<Element>(n - (cols - j));
    TARN_UNROLL
    for (Index g = 0; g < kGroups; ++g) {
      AddBlock<Element>(chains[g], starts + g * n, cols - n, terms, keep);
    }
  }
  TARN_UNROLL
  for (Index g = 0; g < kGroups; ++g) Store(results + g * n, chains[g]);
  for (Index r = 0; r < rows; ++r) sums[r] = results[r];
}

template <class Element, class Terms>
void SumShortRows(Index rows, Index cols, const Element* a, Index stride, const Terms& terms,
                  Element* sums) {
  for (Index i = 0; i < rows; ++i) {
    Element sum = sums[i];
    for (Index j = 0; j < cols; ++j) sum += terms.At(j, a[i * stride + j]);
    sums[i] = sum;
  }
}

/// Rows in blocks of kGroups groups, the last few by single groups.
template <class Element, Index kGroups, class Terms>
void SumRowBlocks(Index rows, Index cols, const Element* a, Index stride, const Terms& terms,
                  Element* sums) {
  constexpr Index n = kLanes<Element>;
  Index i = 0;
  for (; rows - i > n * (kGroups - 1); i += n * kGroups) {
    SumRowGroups<Element, kGroups>(Least(n * kGroups, rows - i), cols, a + i * stride, stride,
                                   terms, sums + i);
  }
  for (; i < rows; i += n) {
    SumRowGroups<Element, 1>(Least(n, rows - i), cols, a + i * stride, stride, terms, sums + i);
  }
}

/// Rows that start a multiple of a large power of two apart share a few sets of the first-level
/// cache; half as many of them at a time leave each other in place.
template <class Element, class Terms>
void SumRows(Index rows, Index cols, const Element* a, Index stride, const Terms& terms,
             Element* sums) {
  constexpr Index kCrowdedStride = static_cast<Index>(1024 / sizeof(Element));
  if (cols < kLanes<Element>) {
    SumShortRows(rows, cols, a, stride, terms, sums);
  } else if (stride % kCrowdedStride == 0) {
    SumRowBlocks<Element, TARN_KERNEL_GROUPS / 2>(rows, cols, a, stride, terms, sums);
  } else {
    SumRowBlocks<Element, TARN_KERNEL_GROUPS>(rows, cols, a, stride, terms, sums);
  }
}

template <class Element>
void AddRowProducts(Index rows, Index cols, const Element* a, Index stride, const Element* v,
                    Element* sums) {
  SumRows(rows, cols, a, stride, ProductTerms<Element>{v}, sums);
}

template <class Element>
void AddRowSquares(Index rows, Index cols, const Element* a, Index stride, Element* sums) {
  SumRows(rows, cols, a, stride, SquareTerms<Element>{}, sums);
}

// Transpose ---------------------------------------------------------------------------------------

template <class Element>
TARN_INLINE void TransposeBlock(const Element* source, Index sourceStride, Element* target,
                                Index targetStride) {
  constexpr Index n = kLanes<Element>;
  Block<Vector<Element>, n> block;
  TARN_UNROLL
  for (Index r = 0; r < n; ++r) block[r] = Load(source + r * sourceStride);
  TransposeLanes<Element>(block);
  TARN_UNROLL
  for (Index r = 0; r < n; ++r) Store(target + r * targetStride, block[r]);
}

template <class Element>
void TransposeEdge(Index rows, Index cols, const Element* source, Index sourceStride,
                   Element* target, Index targetStride) {
  for (Index i = 0; i < rows; ++i) {
    for (Index j = 0; j < cols; ++j) target[j * targetStride + i] = source[i * sourceStride + j];
  }
}

/// Rows and columns that are multiples of the number of lanes, in tiles of two cache lines: where
/// rows start a large power of two apart, more lines than that push each other out.
template <class Element>
void TransposeWhole(Index rows, Index cols, const Element* source, Index sourceStride,
                    Element* target, Index targetStride) {
  constexpr Index n = kLanes<Element>;
  constexpr Index kTile = static_cast<Index>(128 / sizeof(Element));
  for (Index jTile = 0; jTile < cols; jTile += kTile) {
    for (Index iTile = 0; iTile < rows; iTile += kTile) {
      for (Index j = jTile; j < Least(jTile + kTile, cols); j += n) {
        for (Index i = iTile; i < Least(iTile + kTile, rows); i += n) {
          TransposeBlock(source + i * sourceStride + j, sourceStride, target + j * targetStride + i,
                         targetStride);
        }
      }
    }
  }
}

template <class Element>
void Transpose(Index rows, Index cols, const Element* source, Index sourceStride, Element* target,
               Index targetStride) {
  const Index wholeRows = rows - rows % kLanes<Element>;
  const Index wholeCols = cols - cols % kLanes<Element>;
  TransposeWhole(wholeRows, wholeCols, source, sourceStride, target, targetStride);
  TransposeEdge(wholeRows, cols - wholeCols, source + wholeCols, sourceStride,
                target + wholeCols * targetStride, targetStride);
  TransposeEdge(rows - wholeRows, cols, source + wholeRows * sourceStride, sourceStride,
                target + wholeRows, targetStride);
}

}  // namespace
}  // namespace tarn

#endif
