// Products of matrices; see kernels_body.h.
//
// Method: Goto & van de Geijn, "Anatomy of High-Performance Matrix Multiplication", ACM TOMS 34
// (2008). A panel of b is packed and met with tiles of rows of a, whose part of c stays in
// registers. The inner index is cut into consecutive panels; every panel continues the sums where
// the one before left them in c, so each element is one sum in increasing inner index.

#ifndef TARN_LINALG_KERNELS_PRODUCT_BODY_H
#define TARN_LINALG_KERNELS_PRODUCT_BODY_H

#include "linalg/kernels_vector_body.h"

namespace tarn {
namespace {

/// Rows of a that stay in the second-level cache while all panels of b pass by.
inline constexpr Index kRowBlock = 256;
inline constexpr Index kDepthBlock = TARN_KERNEL_DEPTH;

template <class Element>
constexpr Index kPanelWidth = TARN_KERNEL_VECTORS* kLanes<Element>;

template <class Element>
struct ProductTask {
  StridedOperand<Element> a;
  StridedOperand<Element> b;
  Element* c;
  Index cStride;
  bool fromZero;  ///< the sums start from 0, otherwise from what c holds
  bool subtract;  ///< the products are taken away: b is packed with its sign changed
};

/// A packed panel of b and the columns of c that it serves.
template <class Element>
struct Panel {
  const Element* elements;
  Index depth;
  Index firstDepth;
  Index firstColumn;
  Index cols;
};

// One tile ----------------------------------------------------------------------------------------

/// c(r, j) += a(r, k)*panel(k, j) for the rows and vectors of a tile and k = 0 ... depth-1.
template <class Element, int kRows, int kVectors>
__attribute__((noinline)) void SumTile(Index depth, StridedOperand<Element> a, const Element* panel,
                                       Element* c, Index cStride, bool fromZero) {
  constexpr Index n = kLanes<Element>;
  Block<Block<Vector<Element>, kVectors>, kRows> sums;
  Block<const Element*, kRows> rows;
  TARN_UNROLL
  for (Index r = 0; r < kRows; ++r) {
    rows[r] = a.first + r * a.rowStride;
    TARN_UNROLL
    for (Index v = 0; v < kVectors; ++v) {
      sums[r][v] = fromZero ? Vector<Element>{} : Load(c + r * cStride + v * n);
    }
  }
  for (Index k = 0; k < depth; ++k) {
    Block<Vector<Element>, kVectors> factors;
    TARN_UNROLL
    for (Index v = 0; v < kVectors; ++v) factors[v] = Load(panel + (k * kVectors + v) * n);
    TARN_UNROLL
    for (Index r = 0; r < kRows; ++r) {
      const Vector<Element> factor = Broadcast(rows[r][k * a.columnStride]);
      TARN_UNROLL
      for (Index v = 0; v < kVectors; ++v) sums[r][v] += factor * factors[v];
    }
  }
  TARN_UNROLL
  for (Index r = 0; r < kRows; ++r) {
    TARN_UNROLL
    for (Index v = 0; v < kVectors; ++v) Store(c + r * cStride + v * n, sums[r][v]);
  }
}

/// Copies `cols` elements; the last whole vector ends with them.
template <class Element>
TARN_INLINE void CopyRow(Element* target, const Element* source, Index cols) {
  constexpr Index n = kLanes<Element>;
  if (cols < n) {
    for (Index j = 0; j < cols; ++j) target[j] = source[j];
    return;
  }
  for (Index j = 0; j + n <= cols; j += n) Store(target + j, Load(source + j));
  Store(target + cols - n, Load(source + cols - n));
}

/// `SumTile` on a copy of a tile that is narrower than its vectors.
template <class Element, int kRows, int kVectors>
__attribute__((noinline)) void SumNarrowTile(Index depth, StridedOperand<Element> a,
                                             const Element* panel, Element* c, Index cStride,
                                             bool fromZero, Index cols) {
  constexpr Index kWidth = kVectors * kLanes<Element>;
  Block<Element, kRows * kWidth> copy;
  for (Index r = 0; r < kRows && !fromZero; ++r) {
    CopyRow(copy + r * kWidth, c + r * cStride, cols);
    for (Index j = cols; j < kWidth; ++j) copy[r * kWidth + j] = 0;
  }
  SumTile<Element, kRows, kVectors>(depth, a, panel, copy, kWidth, fromZero);
  for (Index r = 0; r < kRows; ++r) CopyRow(c + r * cStride, copy + r * kWidth, cols);
}

// One panel ---------------------------------------------------------------------------------------

/// All rows from `row` to `end` against one panel, in tiles of kRows and ever fewer rows.
template <class Element, int kRows, int kVectors>
void SumRowsOfPanel(const ProductTask<Element>& task, const Panel<Element>& panel, Index row,
                    Index end) {
  for (; end - row >= kRows; row += kRows) {
    const StridedOperand<Element> a = {
        task.a.first + row * task.a.rowStride + panel.firstDepth * task.a.columnStride,
        task.a.rowStride, task.a.columnStride};
    Element* const c = task.c + row * task.cStride + panel.firstColumn;
    const bool fromZero = task.fromZero && panel.firstDepth == 0;
    if (panel.cols == kVectors * kLanes<Element>) {
      SumTile<Element, kRows, kVectors>(panel.depth, a, panel.elements, c, task.cStride, fromZero);
    } else {
      SumNarrowTile<Element, kRows, kVectors>(panel.depth, a, panel.elements, c, task.cStride,
                                              fromZero, panel.cols);
    }
  }
  if constexpr (kRows > 1) {
    SumRowsOfPanel<Element, kRows / 2, kVectors>(task, panel, row, end);
  }
}

/// Chooses the number of vectors that a row of the panel takes.
template <class Element, int kVectors>
void SumPanel(const ProductTask<Element>& task, const Panel<Element>& panel, Index row, Index end) {
  if constexpr (kVectors > 1) {
    if (panel.cols <= (kVectors - 1) * kLanes<Element>) {
      return SumPanel<Element, kVectors - 1>(task, panel, row, end);
    }
  }
  SumRowsOfPanel<Element, TARN_KERNEL_ROWS, kVectors>(task, panel, row, end);
}

// Packing -----------------------------------------------------------------------------------------

/// Packs one column of vectors of a panel from rows of b.
template <class Element>
TARN_INLINE void PackRows(const Element* b, Index rowStride, Index depth, Element sign,
                          Element* target, Index width) {
  for (Index k = 0; k < depth; ++k) {
    Store(target + k * width, sign * Load(b + k * rowStride));
  }
}

/// The same where the inner index runs along the storage of b: transposes block by block.
template <class Element>
TARN_INLINE void PackColumns(const Element* b, Index columnStride, Index depth, Element sign,
                             Element* target, Index width) {
  constexpr Index n = kLanes<Element>;
  Index k = 0;
  for (; k + n <= depth; k += n) {
    Block<Vector<Element>, n> block;
    TARN_UNROLL
    for (Index j = 0; j < n; ++j) block[j] = sign * Load(b + j * columnStride + k);
    TransposeLanes<Element>(block);
    TARN_UNROLL
    for (Index j = 0; j < n; ++j) Store(target + (k + j) * width, block[j]);
  }
  for (; k < depth; ++k) {
    for (Index j = 0; j < n; ++j) target[k * width + j] = sign * b[j * columnStride + k];
  }
}

/// The same for any distances and a count of columns that may be less than a vector; the lanes
/// beyond it are 0.
template <class Element>
TARN_INLINE void PackStrided(StridedOperand<Element> b, Index depth, Index cols, Element sign,
                             Element* target, Index width) {
  const Index valid = Least(cols, kLanes<Element>);
  for (Index k = 0; k < depth; ++k) {
    const Element* const row = b.first + k * b.rowStride;
    Store(target + k * width, Vector<Element>{});
    for (Index j = 0; j < valid; ++j) target[k * width + j] = sign * row[j * b.columnStride];
  }
}

template <class Element>
void PackPanel(const ProductTask<Element>& task, const Panel<Element>& panel, Element* target) {
  constexpr Index n = kLanes<Element>;
  const Index width = (panel.cols + n - 1) / n * n;
  const StridedOperand<Element>& b = task.b;
  const Element sign = static_cast<Element>(task.subtract ? -1 : 1);
  for (Index j = 0; j < panel.cols; j += n) {
    const Element* const first =
        b.first + panel.firstDepth * b.rowStride + (panel.firstColumn + j) * b.columnStride;
    if (panel.cols - j >= n && b.columnStride == 1) {
      PackRows(first, b.rowStride, panel.depth, sign, target + j, width);
    } else if (panel.cols - j >= n && b.rowStride == 1) {
      PackColumns(first, b.columnStride, panel.depth, sign, target + j, width);
    } else {
      PackStrided<Element>({first, b.rowStride, b.columnStride}, panel.depth, panel.cols - j, sign,
                           target + j, width);
    }
  }
}

// The whole product -------------------------------------------------------------------------------

template <class Element>
void ClearTarget(Index rows, Index cols, Element* c, Index cStride) {
  for (Index i = 0; i < rows; ++i) {
    for (Index j = 0; j < cols; ++j) c[i * cStride + j] = 0;
  }
}

template <class Element>
void RunProduct(Index rows, Index cols, Index depth, const ProductTask<Element>& task) {
  alignas(64) Block<Element, kDepthBlock * kPanelWidth<Element>> packed;
  if (task.fromZero && depth <= 0) ClearTarget(rows, cols, task.c, task.cStride);
  for (Index k = 0; k < depth; k += kDepthBlock) {
    for (Index i = 0; i < rows; i += kRowBlock) {
      for (Index j = 0; j < cols; j += kPanelWidth<Element>) {
        const Panel<Element> panel = {packed, Least(kDepthBlock, depth - k), k, j,
                                      Least(kPanelWidth<Element>, cols - j)};
        PackPanel(task, panel, packed);
        SumPanel<Element, TARN_KERNEL_VECTORS>(task, panel, i, Least(rows, i + kRowBlock));
      }
    }
  }
}

template <class Element>
void SetProduct(Index rows, Index cols, Index depth, StridedOperand<Element> a,
                StridedOperand<Element> b, Element* c, Index cStride) {
  RunProduct<Element>(rows, cols, depth, {a, b, c, cStride, true, false});
}

template <class Element>
void AddProduct(Index rows, Index cols, Index depth, StridedOperand<Element> a,
                StridedOperand<Element> b, Element* c, Index cStride) {
  RunProduct<Element>(rows, cols, depth, {a, b, c, cStride, false, false});
}

template <class Element>
void SubtractProduct(Index rows, Index cols, Index depth, StridedOperand<Element> a,
                     StridedOperand<Element> b, Element* c, Index cStride) {
  RunProduct<Element>(rows, cols, depth, {a, b, c, cStride, false, true});
}

}  // namespace
}  // namespace tarn

#endif
