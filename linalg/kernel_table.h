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

  /// target(j, i) = source(i, j) for i < rows, j < cols; the two do not overlap.
  void (*transpose)(Index rows, Index cols, const Element* source, Index sourceStride,
                    Element* target, Index targetStride);

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
