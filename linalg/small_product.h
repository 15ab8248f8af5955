#ifndef TARN_LINALG_SMALL_PRODUCT_H
#define TARN_LINALG_SMALL_PRODUCT_H

/// @file
/// Products of matrices of order up to eight, compiled for every number of columns: the work is
/// less than what it costs to choose and enter a kernel.

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tarn {

/// Largest number of rows, columns and inner indices of a product computed here.
inline constexpr int kSmallProductOrder = 8;

/// c = a*b for row-major matrices without gaps, c of kCols columns. Every element is a sum from 0
/// in increasing inner index; the elements of a row are summed side by side.
template <std::size_t kCols, class Element>
void MultiplyFixed(int rows, int depth, const Element* a, const Element* b, Element* c) {
  typedef Element Vector __attribute__((vector_size(16)));
  constexpr std::size_t kLanes = 16 / sizeof(Element);
  constexpr std::size_t kVectors = kCols / kLanes;
  constexpr std::size_t kRest = kCols % kLanes;
  for (int i = 0; i < rows; ++i) {
    Vector sums[kVectors + 1] = {};
    Element rest[kRest + 1] = {};
    const Element* row = b;
    for (int k = 0; k < depth; ++k) {
      const Element factor = a[k];
      for (std::size_t v = 0; v < kVectors; ++v) {
        Vector elements;
        std::memcpy(&elements, row + v * kLanes, sizeof elements);
        sums[v] += factor * elements;
      }
      for (std::size_t j = 0; j < kRest; ++j) rest[j] += factor * row[kVectors * kLanes + j];
      row += kCols;
    }
    std::memcpy(c, sums, kVectors * sizeof(Vector));
    for (std::size_t j = 0; j < kRest; ++j) c[kVectors * kLanes + j] = rest[j];
    a += depth;
    c += kCols;
  }
}

/// c = a*b for up to kSmallProductOrder columns.
template <class Element>
void MultiplySmall(int rows, int cols, int depth, const Element* a, const Element* b, Element* c) {
  switch (cols) {
    case 0:
      return;
    case 1:
      return MultiplyFixed<1>(rows, depth, a, b, c);
    case 2:
      return MultiplyFixed<2>(rows, depth, a, b, c);
    case 3:
      return MultiplyFixed<3>(rows, depth, a, b, c);
    case 4:
      return MultiplyFixed<4>(rows, depth, a, b, c);
    case 5:
      return MultiplyFixed<5>(rows, depth, a, b, c);
    case 6:
      return MultiplyFixed<6>(rows, depth, a, b, c);
    case 7:
      return MultiplyFixed<7>(rows, depth, a, b, c);
    default:
      return MultiplyFixed<8>(rows, depth, a, b, c);
  }
}

/// The sum of kCount products in increasing index.
template <int kCount, class Element>
Element DotProductFixed(const Element* a, const Element* b) {
  Element sum = 0;
  for (int k = 0; k < kCount; ++k) sum += a[k] * b[k];
  return sum;
}

/// out[i] = the product of row i of kCols elements, `stride` apart, with v.
template <int kCols, class Element>
void MultiplyRowsFixed(std::int64_t rows, const Element* a, std::int64_t stride, const Element* v,
                       Element* out) {
  for (std::int64_t i = 0; i < rows; ++i) out[i] = DotProductFixed<kCols>(a + i * stride, v);
}

/// The same for up to kSmallProductOrder columns. `v` and `out` do not overlap.
template <class Element>
void MultiplySmallRows(std::int64_t rows, std::int64_t cols, const Element* a, std::int64_t stride,
                       const Element* v, Element* out) {
  switch (cols) {
    case 0:
      return MultiplyRowsFixed<0>(rows, a, stride, v, out);
    case 1:
      return MultiplyRowsFixed<1>(rows, a, stride, v, out);
    case 2:
      return MultiplyRowsFixed<2>(rows, a, stride, v, out);
    case 3:
      return MultiplyRowsFixed<3>(rows, a, stride, v, out);
    case 4:
      return MultiplyRowsFixed<4>(rows, a, stride, v, out);
    case 5:
      return MultiplyRowsFixed<5>(rows, a, stride, v, out);
    case 6:
      return MultiplyRowsFixed<6>(rows, a, stride, v, out);
    case 7:
      return MultiplyRowsFixed<7>(rows, a, stride, v, out);
    default:
      return MultiplyRowsFixed<8>(rows, a, stride, v, out);
  }
}

/// c = a*transpose(b) for a b of kCols rows, which is transposed first: sums side by side make up
/// for that.
template <std::size_t kCols, class Element>
void MultiplyTransposedFixed(int rows, int depth, const Element* a, const Element* b, Element* c) {
  Element transposed[kSmallProductOrder * kCols];
  const auto length = static_cast<std::size_t>(depth);
  for (std::size_t k = 0; k < length; ++k) {
    for (std::size_t j = 0; j < kCols; ++j) transposed[k * kCols + j] = b[j * length + k];
  }
  MultiplyFixed<kCols>(rows, depth, a, transposed, c);
}

/// c = a*transpose(b) for up to kSmallProductOrder rows of b.
template <class Element>
void MultiplySmallTransposed(int rows, int cols, int depth, const Element* a, const Element* b,
                             Element* c) {
  switch (cols) {
    case 0:
      return;
    case 1:
      return MultiplyFixed<1>(rows, depth, a, b, c);
    case 2:
      return MultiplyTransposedFixed<2>(rows, depth, a, b, c);
    case 3:
      if (depth != 3) return MultiplyTransposedFixed<3>(rows, depth, a, b, c);
      // Too few sums for a register: one by one they are done sooner.
      for (int i = 0; i < rows; ++i) MultiplyRowsFixed<3>(3, b, 3, a + 3 * i, c + 3 * i);
      return;
    case 4:
      return MultiplyTransposedFixed<4>(rows, depth, a, b, c);
    case 5:
      return MultiplyTransposedFixed<5>(rows, depth, a, b, c);
    case 6:
      return MultiplyTransposedFixed<6>(rows, depth, a, b, c);
    case 7:
      return MultiplyTransposedFixed<7>(rows, depth, a, b, c);
    default:
      return MultiplyTransposedFixed<8>(rows, depth, a, b, c);
  }
}

}  // namespace tarn

#endif
