#ifndef TARN_LINALG_SVD_REFLECTION_H
#define TARN_LINALG_SVD_REFLECTION_H

/// @file
/// Householder reduction to upper bidiagonal form and accumulation of its transformations, the
/// first half of the Golub-Reinsch method.
///
/// For i = 0, 1, ...: a reflection from the left clears column i below the diagonal, one from the
/// right clears row i beyond the superdiagonal. Both store their vector where they clear.
///
/// A segment (the part of a row or column that a reflection acts on) is scaled by the sum of its
/// absolute values. Elements whose magnitude is not above a limit (1e-80, for `float` 1e-15) are
/// set to 0 while that sum is formed, NaN included.
///
/// Source: G. H. Golub, C. Reinsch, Singular value decomposition and least squares solutions,
/// Numer. Math. 14 (1970) 403-420, with the scaling of J. H. Wilkinson and C. Reinsch, Handbook for
/// Automatic Computation II (1971), contribution I/10.

#include <cmath>
#include <cstdint>

#include "linalg/svd_kernels.h"

namespace tarn {

/// A decomposition under way: m x n elements `a` stored row after row, their n singular values
/// `diagonal`, the n x n elements `v`, and the superdiagonal, whose element 0 is 0.
template <class Element>
struct SvdProblem {
  Element* a;
  int m;
  int n;
  Element* diagonal;
  Element* superdiagonal;
  Element* v;
  Element flushLimit;
  Element norm = 0;  ///< largest |diagonal[i]| + |superdiagonal[i]|

  Block<Element> U() { return {a, n, m, n}; }
  Block<Element> V() { return {v, n, n, n}; }
  Element* RowOfA(int i) { return a + static_cast<std::int64_t>(i) * n; }
  Element* RowOfV(int i) { return v + static_cast<std::int64_t>(i) * n; }
};

/// `count` elements, `stride` apart.
template <class Element>
struct Segment {
  Element* first;
  std::int64_t stride;
  int count;

  Element& operator[](int k) { return first[k * stride]; }
};

/// What a reflection of a segment needs besides its vector, which replaces the segment. A scale of
/// 0 stands for no reflection.
template <class Element>
struct Reflection {
  Element scale = 0;
  Element image = 0;  ///< what the first element of the scaled segment turns into
  Element h = 0;      ///< minus half the squared length of the vector
};

/// `magnitude` with the sign of `reference`; that of zero is positive, that of NaN negative.
template <class Element>
Element WithSignOf(Element magnitude, Element reference) {
  return reference >= 0 ? magnitude : -magnitude;
}

/// Sum of the absolute values of a segment after its negligible elements were set to 0.
template <class Element>
Element FlushAndSum(Segment<Element> segment, Element limit) {
  Element sum = 0;
  for (int k = 0; k < segment.count; ++k) {
    const Element magnitude = std::abs(segment[k]);
    if (magnitude > limit) {
      sum += magnitude;
    } else {
      segment[k] = 0;
    }
  }
  return sum;
}

/// Turns a segment into the vector of the reflection that maps it onto its first element.
template <class Element>
Reflection<Element> MakeReflection(Segment<Element> segment, Element limit) {
  Reflection<Element> reflection;
  reflection.scale = FlushAndSum(segment, limit);
  if (reflection.scale == 0) return reflection;
  Element squares = 0;
  for (int k = 0; k < segment.count; ++k) {
    segment[k] /= reflection.scale;
    squares += segment[k] * segment[k];
  }
  const Element first = segment[0];
  reflection.image = -WithSignOf(std::sqrt(squares), first);
  reflection.h = first * reflection.image - squares;
  segment[0] = first - reflection.image;
  return reflection;
}

template <class Element>
void Rescale(Segment<Element> segment, Element factor) {
  for (int k = 0; k < segment.count; ++k) segment[k] *= factor;
}

/// Clears column i below the diagonal.
template <class Element>
void ReduceColumn(SvdProblem<Element>& p, int i) {
  p.diagonal[i] = 0;
  if (i >= p.m) return;
  const Segment<Element> column{p.RowOfA(i) + i, p.n, p.m - i};
  const Reflection<Element> reflection = MakeReflection(column, p.flushLimit);
  if (reflection.scale == 0) return;
  const Block<Element> right{column.first + 1, p.n, column.count, p.n - i - 1};
  CombineColumns(right, right, column.first, column.stride, column.first, column.stride,
                 [h = reflection.h](Element dot) { return dot / h; });
  Rescale(column, reflection.scale);
  p.diagonal[i] = reflection.scale * reflection.image;
}

/// Clears row i beyond the superdiagonal.
template <class Element>
void ReduceRow(SvdProblem<Element>& p, int i) {
  if (i == p.n - 1) return;
  Element& superdiagonal = p.superdiagonal[i + 1];
  superdiagonal = 0;
  if (i >= p.m) return;
  const Segment<Element> row{p.RowOfA(i) + i + 1, 1, p.n - i - 1};
  const Reflection<Element> reflection = MakeReflection(row, p.flushLimit);
  if (reflection.scale == 0) return;
  Element* const direction = p.superdiagonal + i + 1;
  for (int k = 0; k < row.count; ++k) direction[k] = row.first[k] / reflection.h;
  CombineRows(Block<Element>{row.first + p.n, p.n, p.m - i - 1, row.count}, row.first, direction);
  Rescale(row, reflection.scale);
  superdiagonal = reflection.scale * reflection.image;
}

template <class Element>
void ReduceToBidiagonal(SvdProblem<Element>& p) {
  p.superdiagonal[0] = 0;
  for (int i = 0; i < p.n; ++i) {
    ReduceColumn(p, i);
    const Element sum = std::abs(p.diagonal[i]) + std::abs(p.superdiagonal[i]);
    if (sum > p.norm) p.norm = sum;
    ReduceRow(p, i);
  }
}

/// Applies the reflection stored in row i to the columns of V beyond i. The vector is divided by
/// its first element and the superdiagonal in turn, which avoids an underflow of their product.
template <class Element>
void ReflectV(SvdProblem<Element>& p, int i) {
  const Element* const row = p.RowOfA(i) + i + 1;
  Element* const column = p.RowOfV(i + 1) + i;
  const int count = p.n - i - 1;
  for (int k = 0; k < count; ++k) {
    column[static_cast<std::int64_t>(k) * p.n] = (row[k] / row[0]) / p.superdiagonal[i + 1];
  }
  const Block<Element> block{column + 1, p.n, count, count};
  CombineColumns(block, block, row, 1, column, p.n, [](Element dot) { return dot; });
}

/// Forms V from the reflections stored in the rows.
template <class Element>
void AccumulateRight(SvdProblem<Element>& p) {
  for (int i = p.n - 1; i >= 0; --i) {
    if (i < p.n - 1 && p.superdiagonal[i + 1] != 0) ReflectV(p, i);
    for (int j = i + 1; j < p.n; ++j) {
      p.RowOfV(i)[j] = 0;
      p.RowOfV(j)[i] = 0;
    }
    p.RowOfV(i)[i] = 1;
  }
}

/// Replaces column i of U and the columns beyond by their images under the reflection stored in
/// column i.
template <class Element>
void ReflectU(SvdProblem<Element>& p, int i) {
  const Segment<Element> column{p.RowOfA(i) + i, p.n, p.m - i};
  const Element inverse = 1 / p.diagonal[i];
  const Element first = column.first[0];
  const Block<Element> updated{column.first + 1, p.n, column.count, p.n - i - 1};
  const Block<Element> summed{updated.first + p.n, p.n, updated.rows - 1, updated.width};
  CombineColumns(summed, updated, column.first + p.n, column.stride, column.first, column.stride,
                 [first, inverse](Element dot) { return (dot / first) * inverse; });
  Rescale(column, inverse);
}

/// Forms U in place of A from the reflections stored in the columns.
template <class Element>
void AccumulateLeft(SvdProblem<Element>& p) {
  for (int i = (p.m < p.n ? p.m : p.n) - 1; i >= 0; --i) {
    for (int j = i + 1; j < p.n; ++j) p.RowOfA(i)[j] = 0;
    if (p.diagonal[i] != 0) {
      ReflectU(p, i);
    } else {
      for (int k = i; k < p.m; ++k) p.RowOfA(k)[i] = 0;
    }
    p.RowOfA(i)[i] += 1;
  }
}

}  // namespace tarn

#endif
