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

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "linalg/svd_kernels.h"

namespace tarn {

/// `count` elements, `stride` apart.
template <class Element>
struct Segment {
  Element* first;
  std::int64_t stride;
  int count;

  Element& operator[](int k) const { return first[k * stride]; }
};

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
  /// Column i of A from the diagonal on.
  Segment<Element> ColumnOfA(int i) { return {RowOfA(i) + i, n, m - i}; }
  /// Row i of A from beyond the diagonal on.
  Segment<Element> RowSegment(int i) { return {RowOfA(i) + i + 1, 1, n - i - 1}; }
  Element* RowOfV(int i) { return v + static_cast<std::int64_t>(i) * n; }
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

/// Makes the reflection that clears column i below the diagonal. What it adds to row k right of
/// column i is element k of the reflected column times `factors`.
template <class Element>
Reflection<Element> ReflectColumn(SvdProblem<Element>& p, int i, Element* factors) {
  p.diagonal[i] = 0;
  if (i >= p.m) return {};
  const Segment<Element> column = p.ColumnOfA(i);
  const Reflection<Element> reflection = MakeReflection(column, p.flushLimit);
  if (reflection.scale == 0) return reflection;
  const Block<Element> right{column.first + 1, p.n, column.count, p.n - i - 1};
  SumColumns(right, column.first, column.stride, factors);
  for (int j = 0; j < right.width; ++j) factors[j] /= reflection.h;
  AddProducts(right.Rows(0, 1), column.first, column.stride, factors);
  p.diagonal[i] = reflection.scale * reflection.image;
  return reflection;
}

/// Makes the reflection that clears row i beyond the superdiagonal. What it adds to a row below is
/// the sum of its products with row i times the superdiagonal.
template <class Element>
Reflection<Element> ReflectRow(SvdProblem<Element>& p, int i) {
  if (i == p.n - 1) return {};
  Element* const direction = p.superdiagonal + i + 1;
  *direction = 0;
  if (i >= p.m) return {};
  const Segment<Element> row = p.RowSegment(i);
  const Reflection<Element> reflection = MakeReflection(row, p.flushLimit);
  if (reflection.scale == 0) return reflection;
  for (int k = 0; k < row.count; ++k) direction[k] = row.first[k] / reflection.h;
  return reflection;
}

/// How many rows of `width` elements share the first-level cache.
template <class Element>
int RowsPerGroup(int width) {
  constexpr int kBytes = 32768;
  constexpr int kStep = 16;
  const int rows = kBytes / static_cast<int>(sizeof(Element)) / width / kStep * kStep;
  return std::clamp(rows, kStep, kSvdChunk);
}

/// Applies both reflections of step i to the rows below, a group of rows after the other.
template <class Element>
void ReflectRowsBelow(SvdProblem<Element>& p, int i, const Element* factors, bool hasColumn,
                      bool hasRow) {
  const Segment<Element> row = p.RowSegment(i);
  const Segment<Element> column = p.ColumnOfA(i);
  const Block<Element> below{row.first + p.n, p.n, column.count - 1, row.count};
  const int step = RowsPerGroup<Element>(row.count);
  for (int k = 0; k < below.rows; k += step) {
    const Block<Element> group = below.Rows(k, std::min(step, below.rows - k));
    if (hasColumn) AddProducts(group, &column[k + 1], column.stride, factors);
    if (hasRow) CombineRows(group, row.first, p.superdiagonal + i + 1);
  }
}

/// Step i of the reduction. V is filled later only; its first row serves as a work area here.
template <class Element>
void ReduceColumnAndRow(SvdProblem<Element>& p, int i) {
  Element* const factors = p.v;
  const Reflection<Element> ofColumn = ReflectColumn(p, i, factors);
  const Element sum = std::abs(p.diagonal[i]) + std::abs(p.superdiagonal[i]);
  if (sum > p.norm) p.norm = sum;
  const Reflection<Element> ofRow = ReflectRow(p, i);
  const bool hasColumn = ofColumn.scale != 0;
  const bool hasRow = ofRow.scale != 0;
  if (i < p.m && i < p.n - 1) ReflectRowsBelow(p, i, factors, hasColumn, hasRow);
  if (hasColumn) Rescale(p.ColumnOfA(i), ofColumn.scale);
  if (!hasRow) return;
  Rescale(p.RowSegment(i), ofRow.scale);
  p.superdiagonal[i + 1] = ofRow.scale * ofRow.image;
}

template <class Element>
void ReduceToBidiagonal(SvdProblem<Element>& p) {
  p.superdiagonal[0] = 0;
  for (int i = 0; i < p.n; ++i) ReduceColumnAndRow(p, i);
}

/// The vector by which the reflection stored in row i acts on V, in column i of V. It is divided by
/// its first element and the superdiagonal in turn, which avoids an underflow of their product.
template <class Element>
void StoreVectorOfV(SvdProblem<Element>& p, int i) {
  const Segment<Element> row = p.RowSegment(i);
  const Element first = row.first[0];
  const Element superdiagonal = p.superdiagonal[i + 1];
  for (int k = 0; k < row.count; ++k) {
    p.RowOfV(i + 1 + k)[i] = (row.first[k] / first) / superdiagonal;
  }
}

/// How many columns of U or V are formed at a time: four registers of the widest kernels.
template <class Element>
inline constexpr int kPanelColumns = static_cast<int>(256 / sizeof(Element));

/// Forms the columns [begin, end) of V. Those before it still hold their reflections.
template <class Element>
void FormColumnsOfV(SvdProblem<Element>& p, int begin, int end) {
  for (int i = end - 1; i >= 0; --i) {
    const int first = std::max(i + 1, begin);
    const int count = p.n - i - 1;
    if (first < end && p.superdiagonal[i + 1] != 0) {
      const Block<Element> block{p.RowOfV(i + 1) + first, p.n, count, end - first};
      CombineColumns(block, block, p.RowSegment(i).first, 1, p.RowOfV(i + 1) + i, p.n,
                     [](Element dot) { return dot; });
    }
    std::fill(p.RowOfV(i) + first, p.RowOfV(i) + end, Element{0});
    if (i < begin) continue;
    for (int k = i + 1; k < p.n; ++k) p.RowOfV(k)[i] = 0;
    p.RowOfV(i)[i] = 1;
  }
}

/// Forms V from the reflections stored in the rows, the last one first. A reflection changes every
/// column by itself, so a panel of columns goes through all of them before the next one.
template <class Element>
void AccumulateRight(SvdProblem<Element>& p) {
  for (int i = 0; i < p.n - 1; ++i) {
    if (p.superdiagonal[i + 1] != 0) StoreVectorOfV(p, i);
  }
  for (int end = p.n; end > 0; end -= kPanelColumns<Element>) {
    FormColumnsOfV(p, std::max(0, end - kPanelColumns<Element>), end);
  }
}

/// Replaces the columns [first, end) beyond column i of U by their images under the reflection
/// stored there.
template <class Element>
void ReflectColumnsOfU(SvdProblem<Element>& p, int i, int first, int end) {
  const Segment<Element> column = p.ColumnOfA(i);
  const Element inverse = 1 / p.diagonal[i];
  const Block<Element> updated{p.RowOfA(i) + first, p.n, column.count, end - first};
  CombineColumns(updated.Rows(1, column.count - 1), updated, column.first + p.n, column.stride,
                 column.first, column.stride, [divisor = column.first[0], inverse](Element dot) {
                   return (dot / divisor) * inverse;
                 });
}

/// Replaces the reflection stored in column i of U by its image of unit vector i.
template <class Element>
void FinishColumnOfU(SvdProblem<Element>& p, int i) {
  const Segment<Element> column = p.ColumnOfA(i);
  if (p.diagonal[i] != 0) {
    Rescale(column, 1 / p.diagonal[i]);
  } else {
    for (int k = 0; k < column.count; ++k) column[k] = 0;
  }
  column[0] += 1;
}

/// Forms the columns [begin, end) of U. Those before it still hold their reflections.
template <class Element>
void FormColumnsOfU(SvdProblem<Element>& p, int begin, int end) {
  for (int i = std::min(p.m, end) - 1; i >= 0; --i) {
    const int first = std::max(i + 1, begin);
    std::fill(p.RowOfA(i) + first, p.RowOfA(i) + end, Element{0});
    if (first < end && p.diagonal[i] != 0) ReflectColumnsOfU(p, i, first, end);
    if (i >= begin) FinishColumnOfU(p, i);
  }
}

/// Forms U in place of A from the reflections stored in the columns, in panels like V.
template <class Element>
void AccumulateLeft(SvdProblem<Element>& p) {
  for (int end = p.n; end > 0; end -= kPanelColumns<Element>) {
    FormColumnsOfU(p, std::max(0, end - kPanelColumns<Element>), end);
  }
}

}  // namespace tarn

#endif
