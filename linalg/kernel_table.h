#ifndef TARN_LINALG_KERNEL_TABLE_H
#define TARN_LINALG_KERNEL_TABLE_H

/// @file
/// The operations that are compiled once per instruction set.
///
/// A kernel is fast because it works on independent results side by side. It never splits, reorders
/// or fuses the sum behind one result: every product is rounded before it is added, and the terms
/// of one element come in the order stated here. All instruction sets therefore give the same bits.

#include <cstddef>

namespace tarn {

/// A matrix given by its first element and the distances between neighbours; the distances may be
/// negative, which turns the order of a sum around, and zero.
template <class Element>
struct StridedOperand {
  const Element* first;
  std::ptrdiff_t rowStride;
  std::ptrdiff_t columnStride;
};

/// A plane rotation by the angle with this cosine and sine: a pair of elements (x, z) turns into
/// (x*c + z*s, z*c - x*s).
template <class Element>
struct Rotation {
  Element c;
  Element s;
};

/// Rows of a strip: a part of a matrix stored column after column, `kStripRows` elements apart.
template <class Element>
inline constexpr int kStripRows = static_cast<int>(256 / sizeof(Element));

/// Columns that are eliminated at a time.
inline constexpr std::ptrdiff_t kEliminationColumns = 8;

template <class Element>
struct KernelTable {
  using Index = std::ptrdiff_t;

  /// Products of matrices a (rows x depth) and b (depth x cols) with a row-major result:
  ///   setProduct       c(i, j) = ((0 + a(i, 0)*b(0, j)) + a(i, 1)*b(1, j)) + ...
  ///   addProduct       c(i, j) = (c(i, j) + a(i, 0)*b(0, j)) + ...
  ///   subtractProduct  c(i, j) = (c(i, j) - a(i, 0)*b(0, j)) - ...
  /// with k increasing. The result shares no storage with the operands.
  using Product = void (*)(Index rows, Index cols, Index depth, StridedOperand<Element> a,
                           StridedOperand<Element> b, Element* c, Index cStride);
  Product setProduct;
  Product addProduct;
  Product subtractProduct;

  /// sums[i] = (sums[i] + a(i, 0)*v[0]) + a(i, 1)*v[1] + ... for rows that start `stride` apart;
  /// the sums do not overlap a or v.
  void (*addRowProducts)(Index rows, Index cols, const Element* a, Index stride, const Element* v,
                         Element* sums);
  /// sums[i] = (sums[i] + a(i, 0)^2) + a(i, 1)^2 + ...
  void (*addRowSquares)(Index rows, Index cols, const Element* a, Index stride, Element* sums);

  /// sums[j] = ((0 + w[0]*a(0, j)) + w[1]*a(1, j)) + ... for rows that start `stride` and weights
  /// that lie `weightStride` apart; the sums do not overlap them.
  void (*sumColumnProducts)(Index rows, Index cols, const Element* a, Index stride,
                            const Element* weights, Index weightStride, Element* sums);
  /// a(i, j) += column[i]*row[j]; a overlaps neither.
  void (*addOuterProduct)(Index rows, Index cols, Element* a, Index stride, const Element* column,
                          Index columnStride, const Element* row);

  /// Rotates the columns (0, 1), (1, 2), ..., (count - 1, count) of a strip one after the other.
  /// The first `rows` rows count; up to the next multiple of 64 bytes, others may be rotated too.
  void (*rotateChain)(Index rows, Element* strip, Index count, const Rotation<Element>* rotations);
  /// Likewise two chains from the same column on, one after the other; the second one is not the
  /// longer one.
  void (*rotateTwoChains)(Index rows, Element* strip, Index count,
                          const Rotation<Element>* rotations, Index secondCount,
                          const Rotation<Element>* secondRotations);

  /// target(j, i) = source(i, j) for i < rows, j < cols; the two do not overlap.
  void (*transpose)(Index rows, Index cols, const Element* source, Index sourceStride,
                    Element* target, Index targetStride);

  /// Gaussian elimination of a panel of `rows` >= `cols` that is stored column after column,
  /// `stride` elements apart. Column k, rows r > k: f = (r, k)/(k, k) takes the place of (r, k),
  /// and (r, j) -= f*(k, j) for j > k. With `pivots`, the first row from k on whose element in
  /// column k is largest in magnitude is exchanged with row k before (a NaN in row k stays, one
  /// below is never chosen), and pivots[k] is its number. Returns the number of columns eliminated:
  /// `cols`, or less where the pivot is exactly 0. Without `pivots` a last row is not a pivot to be
  /// tested.
  Index (*eliminatePanel)(Index rows, Index cols, Element* panel, Index stride, Index* pivots);

  // Triangular systems of 1 <= `rows` <= kEliminationColumns unknowns for `cols` right-hand sides
  // r, which become the solutions:
  //   solveUnitLower  r(i, j) = (r(i, j) - l(i, 0)*r(0, j)) - l(i, 1)*r(1, j) - ...  before row i
  //   solveUpper      r(i, j) = ((r(i, j) - u(i, m)*r(m, j)) - ...)/u(i, i)  for m = rows-1, ...
  void (*solveUnitLower)(Index rows, Index cols, const Element* l, Index lStride, Element* r,
                         Index rStride);
  void (*solveUpper)(Index rows, Index cols, const Element* u, Index uStride, Element* r,
                     Index rStride);

  /// Rows of a Cholesky factor that are computed at a time.
  Index choleskyRows;
  /// Rows first ... first+count-1, count <= choleskyRows, of the Cholesky factor l of order n,
  /// whose rows before `first` are known. Column after column i = 0, 1, ...: x = a(i, j), less l(i,
  /// k)*l(j, k) for k = i-1, ..., 0; l(i, i) = sqrt(x), l(j, i) = x/l(i, i). Only the upper
  /// triangle of a is read; above the diagonal l gets zeros or keeps what it holds. False at a
  /// diagonal x that is not positive (a NaN passes). `work` has room for choleskyRows*n elements.
  bool (*factorizeCholeskyRows)(Index n, Index first, Index count, const Element* a, Element* l,
                                Element* work);

  // Element by element; a result may be one of the operands.
  void (*scale)(Index n, Element* x, Element s);                              ///< x *= s
  void (*shift)(Index n, Element* x, Element s);                              ///< x += s
  void (*add)(Index n, Element* r, const Element* a, const Element* b);       ///< r = a + b
  void (*subtract)(Index n, Element* r, const Element* a, const Element* b);  ///< r = a - b
  void (*multiply)(Index n, Element* r, const Element* a, const Element* b);  ///< r = a*b
  void (*divide)(Index n, Element* r, const Element* a, const Element* b);    ///< r = a/b
  void (*addScaled)(Index n, Element* r, const Element* a, const Element* b, Element k);
  ///< r = a + k*b; with -k it is a - k*b to the bit

  /// The largest of `start` and the elements; a NaN never is. Which of two zeros comes back is not
  /// said.
  Element (*largest)(Index n, const Element* x, Element start);
  Element (*smallest)(Index n, const Element* x, Element start);  ///< Likewise.
  Element (*largestMagnitude)(Index n, const Element* x);         ///< Likewise from 0.
};

}  // namespace tarn

#endif
