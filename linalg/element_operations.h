#ifndef TARN_LINALG_ELEMENT_OPERATIONS_H
#define TARN_LINALG_ELEMENT_OPERATIONS_H

/// @file
/// Operations on arrays of elements, for vectors and matrices alike. Few elements are worked on in
/// place, many by the kernels of the machine; the results are the same bits.
///
/// Sums have one chain of additions and hence no kernel; only rows can be summed side by side.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "linalg/element_storage.h"
#include "linalg/kernels.h"
#include "linalg/small_product.h"

namespace tarn {

/// Up to so many elements a plain loop is over before a kernel is entered.
inline constexpr std::int64_t kFewElements = 16;
/// Up to so many columns the sum of a row is shorter than a kernel's set-up.
inline constexpr std::int64_t kFewColumns = 8;
/// Longest piece of a vector that `ForEachRowProduct` asks for.
inline constexpr std::int64_t kPieceLength = 256;

/// x[i] *= s
template <class Element>
void ScaleElements(std::int64_t n, Element* x, Element s) {
  if (n > kFewElements) return Kernels<Element>().scale(n, x, s);
  for (std::int64_t i = 0; i < n; ++i) x[i] *= s;
}

/// x[i] += s
template <class Element>
void ShiftElements(std::int64_t n, Element* x, Element s) {
  if (n > kFewElements) return Kernels<Element>().shift(n, x, s);
  for (std::int64_t i = 0; i < n; ++i) x[i] += s;
}

/// r[i] = a[i] + b[i]
template <class Element>
void AddElements(std::int64_t n, Element* r, const Element* a, const Element* b) {
  if (n > kFewElements) return Kernels<Element>().add(n, r, a, b);
  for (std::int64_t i = 0; i < n; ++i) r[i] = a[i] + b[i];
}

/// r[i] = a[i] - b[i]
template <class Element>
void SubtractElements(std::int64_t n, Element* r, const Element* a, const Element* b) {
  if (n > kFewElements) return Kernels<Element>().subtract(n, r, a, b);
  for (std::int64_t i = 0; i < n; ++i) r[i] = a[i] - b[i];
}

/// r[i] = a[i]*b[i]
template <class Element>
void MultiplyElements(std::int64_t n, Element* r, const Element* a, const Element* b) {
  if (n > kFewElements) return Kernels<Element>().multiply(n, r, a, b);
  for (std::int64_t i = 0; i < n; ++i) r[i] = a[i] * b[i];
}

/// r[i] = a[i]/b[i]
template <class Element>
void DivideElements(std::int64_t n, Element* r, const Element* a, const Element* b) {
  if (n > kFewElements) return Kernels<Element>().divide(n, r, a, b);
  for (std::int64_t i = 0; i < n; ++i) r[i] = a[i] / b[i];
}

/// r[i] = a[i] + k*b[i]; a - k*b is this with -k, to the bit.
template <class Element>
void AddScaledElements(std::int64_t n, Element* r, const Element* a, const Element* b, Element k) {
  if (n > kFewElements) return Kernels<Element>().addScaled(n, r, a, b, k);
  for (std::int64_t i = 0; i < n; ++i) r[i] = a[i] + k * b[i];
}

// Sums --------------------------------------------------------------------------------------------

/// ((0 + a[0]*b[0]) + a[1]*b[1]) + ...
template <class Element>
Element DotProduct(std::int64_t n, const Element* a, const Element* b) {
  Element sum = 0;
  for (std::int64_t i = 0; i < n; ++i) sum += a[i] * b[i];
  return sum;
}

/// The same from the last element to the first.
template <class Element>
Element ReverseDotProduct(std::int64_t n, const Element* a, const Element* b) {
  Element sum = 0;
  for (std::int64_t i = n - 1; i >= 0; --i) sum += a[i] * b[i];
  return sum;
}

/// (0 + x[0]) + x[1] + ...
template <class Element>
Element SumElements(std::int64_t n, const Element* x) {
  Element sum = 0;
  for (std::int64_t i = 0; i < n; ++i) sum += x[i];
  return sum;
}

/// out[i] = dot product of row i with v, for rows that start `stride` elements apart; `out` does
/// not overlap the operands.
template <class Element>
void MultiplyRows(std::int64_t rows, std::int64_t cols, const Element* a, std::int64_t stride,
                  const Element* v, Element* out) {
  if (rows <= kSmallProductOrder && cols <= kSmallProductOrder) {
    MultiplySmallRows(rows, cols, a, stride, v, out);
  } else {
    ClearElements(out, rows);
    Kernels<Element>().addRowProducts(rows, cols, a, stride, v, out);
  }
}

/// Hands `use(i, s)` the dot product s of every row i with a vector, in order of the rows. The
/// vector comes in pieces: `piece(j, n)` points to its elements j ... j+n-1 until the next call.
template <class Element, class Piece, class Use>
void ForEachRowProduct(std::int64_t rows, std::int64_t cols, const Element* a, std::int64_t stride,
                       Piece piece, Use use) {
  if (cols <= kFewColumns) {
    const Element* const v = piece(0, cols);
    for (std::int64_t i = 0; i < rows; ++i) use(i, DotProduct(cols, a + i * stride, v));
    return;
  }
  constexpr std::int64_t kRows = 64;
  Element sums[kRows];
  for (std::int64_t i = 0; i < rows; i += kRows) {
    const std::int64_t count = std::min(kRows, rows - i);
    ClearElements(sums, count);
    for (std::int64_t j = 0; j < cols; j += kPieceLength) {
      const std::int64_t length = std::min(kPieceLength, cols - j);
      Kernels<Element>().addRowProducts(count, length, a + i * stride + j, stride, piece(j, length),
                                        sums);
    }
    for (std::int64_t r = 0; r < count; ++r) use(i + r, sums[r]);
  }
}

// Extremes ----------------------------------------------------------------------------------------

// A search starts from a bound that only a better element replaces, so of equal elements the first
// counts and a NaN never does. Kernels leave open which of two zeros they find.

/// The first element equal to a value that the kernels found; the value itself when there is none.
template <class Element>
Element FirstEqual(std::int64_t n, const Element* x, Element value) {
  if (value != 0) return value;
  const Element* const found = std::find(x, x + n, value);
  return found != x + n ? *found : value;
}

/// The largest element above `kMaximumStart`, or that start.
template <class Element>
Element LargestElement(std::int64_t n, const Element* x) {
  Element best = kMaximumStart<Element>;
  if (n > kFewElements) return FirstEqual(n, x, Kernels<Element>().largest(n, x, best));
  for (std::int64_t i = 0; i < n; ++i) best = x[i] > best ? x[i] : best;
  return best;
}

/// The smallest element below -`kMaximumStart`, or that start.
template <class Element>
Element SmallestElement(std::int64_t n, const Element* x) {
  Element best = -kMaximumStart<Element>;
  if (n > kFewElements) return FirstEqual(n, x, Kernels<Element>().smallest(n, x, best));
  for (std::int64_t i = 0; i < n; ++i) best = x[i] < best ? x[i] : best;
  return best;
}

/// The largest magnitude, or 0.
template <class Element>
Element LargestMagnitude(std::int64_t n, const Element* x) {
  if (n > kFewElements) return Kernels<Element>().largestMagnitude(n, x);
  Element best = 0;
  for (std::int64_t i = 0; i < n; ++i) best = std::fabs(x[i]) > best ? std::fabs(x[i]) : best;
  return best;
}

/// Index of the element that `LargestElement` finds; 0 when it finds none.
template <class Element>
std::int64_t LargestElementIndex(std::int64_t n, const Element* x) {
  const Element largest = LargestElement(n, x);
  return largest > kMaximumStart<Element> ? std::find(x, x + n, largest) - x : 0;
}

/// Index of the element that `SmallestElement` finds; 0 when it finds none.
template <class Element>
std::int64_t SmallestElementIndex(std::int64_t n, const Element* x) {
  const Element smallest = SmallestElement(n, x);
  return smallest < -kMaximumStart<Element> ? std::find(x, x + n, smallest) - x : 0;
}

}  // namespace tarn

#endif
