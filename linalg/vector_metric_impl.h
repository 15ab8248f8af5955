#ifndef TARN_LINALG_VECTOR_METRIC_IMPL_H
#define TARN_LINALG_VECTOR_METRIC_IMPL_H

/// @file
/// Reductions and metrics of `T_MatVector`.

#include <cmath>

#include "linalg/element_operations.h"
#include "linalg/matrix.h"
#include "linalg/vector.h"

// Sums --------------------------------------------------------------------------------------------

template <class Element>
Element T_MatVector<Element>::ScalarMultiply(const T_MatVector& b) const {
  return dim == b.dim ? ScalarMultiply(b.data) : 0;
}

template <class Element>
Element T_MatVector<Element>::ScalarMultiply(const Element* b) const {
  return tarn::DotProduct(dim, data, b);
}

template <class Element>
Element T_MatVector<Element>::Norm2() const {
  return ScalarMultiply(data);
}

template <class Element>
Element T_MatVector<Element>::Norm() const {
  return std::sqrt(Norm2());
}

template <class Element>
Element T_MatVector<Element>::Distance(const T_MatVector& b) const {
  Element sum = 0;
  for (int i = 0; i < dim; ++i) {
    const Element difference = data[i] - b.data[i];
    sum += difference * difference;
  }
  return std::sqrt(sum);
}

template <class Element>
Element T_MatVector<Element>::Mean() const {
  return tarn::SumElements(dim, data);
}

template <class Element>
Element T_MatVector<Element>::Cosine(const T_MatVector& b) const {
  Element product = 0;
  Element squares = 0;
  Element otherSquares = 0;
  for (int i = 0; i < dim; ++i) {
    product += data[i] * b.data[i];
    squares += data[i] * data[i];
    otherSquares += b.data[i] * b.data[i];
  }
  if (!(squares > 0) || !(otherSquares > 0)) return 0;
  return product / std::sqrt(squares * otherSquares);
}

// Quadratic forms ---------------------------------------------------------------------------------

template <class Element>
Element T_MatVector<Element>::Norm2(const T_Matrix<Element>& m) const {
  Element form = 0;
  tarn::ForEachRowProduct<Element>(
      dim, dim, m[0], m.X(), [&](std::int64_t j, std::int64_t) { return data + j; },
      [&](std::int64_t i, Element sum) { form += data[i] * sum; });
  return form;
}

template <class Element>
Element T_MatVector<Element>::Norm(const T_Matrix<Element>& m) const {
  return std::sqrt(Norm2(m));
}

template <class Element>
Element T_MatVector<Element>::MahalonabisDistance(const T_MatVector& b,
                                                  const T_Matrix<Element>& m) const {
  Element form = 0;
  Element difference[tarn::kPieceLength];
  tarn::ForEachRowProduct<Element>(
      dim, dim, m[0], m.X(),
      [&](std::int64_t j, std::int64_t n) {
        tarn::SubtractElements(n, difference, data + j, b.data + j);
        return difference;
      },
      [&](std::int64_t i, Element sum) { form += (data[i] - b.data[i]) * sum; });
  return std::sqrt(form);
}

template <class Element>
Element T_MatVector<Element>::MahalonabisCosine(const T_MatVector& b,
                                                const T_Matrix<Element>& m) const {
  Element mixedForm = 0;
  Element form = 0;
  Element otherForm = 0;
  tarn::ForEachRowProduct<Element>(
      dim, dim, m[0], m.X(), [&](std::int64_t j, std::int64_t) { return data + j; },
      [&](std::int64_t i, Element sum) { form += data[i] * sum; });
  tarn::ForEachRowProduct<Element>(
      dim, dim, m[0], m.X(), [&](std::int64_t j, std::int64_t) { return b.data + j; },
      [&](std::int64_t i, Element otherSum) {
        mixedForm += data[i] * otherSum;
        otherForm += b.data[i] * otherSum;
      });
  if (!(form > 0) || !(otherForm > 0)) return 0;
  return mixedForm / std::sqrt(form * otherForm);
}

// Extremes ----------------------------------------------------------------------------------------

template <class Element>
Element T_MatVector<Element>::Max() const {
  return tarn::LargestElement(dim, data);
}

template <class Element>
Element T_MatVector<Element>::Min() const {
  return tarn::SmallestElement(dim, data);
}

template <class Element>
Element T_MatVector<Element>::AbsMax() const {
  return tarn::LargestMagnitude(dim, data);
}

template <class Element>
int T_MatVector<Element>::MaxIndex() const {
  return static_cast<int>(tarn::LargestElementIndex(dim, data));
}

template <class Element>
int T_MatVector<Element>::MinIndex() const {
  return static_cast<int>(tarn::SmallestElementIndex(dim, data));
}

#endif
