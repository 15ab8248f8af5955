#ifndef TARN_LINALG_VECTOR_METRIC_IMPL_H
#define TARN_LINALG_VECTOR_METRIC_IMPL_H

/// @file
/// Reductions and metrics of `T_MatVector`.

#include <cmath>

#include "linalg/element_storage.h"
#include "linalg/matrix.h"
#include "linalg/vector.h"

// Sums --------------------------------------------------------------------------------------------

template <class Element>
Element T_MatVector<Element>::ScalarMultiply(const T_MatVector& b) const {
  return dim == b.dim ? ScalarMultiply(b.data) : 0;
}

template <class Element>
Element T_MatVector<Element>::ScalarMultiply(const Element* b) const {
  Element sum = 0;
  for (int i = 0; i < dim; ++i) sum += data[i] * b[i];
  return sum;
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
  Element sum = 0;
  if (data == nullptr) return sum;
  for (int i = 0; i < dim; ++i) sum += data[i];
  return sum;
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
  for (int i = 0; i < dim; ++i) {
    const Element* const row = m[i];
    Element sum = 0;
    for (int j = 0; j < dim; ++j) sum += row[j] * data[j];
    form += data[i] * sum;
  }
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
  for (int i = 0; i < dim; ++i) {
    const Element* const row = m[i];
    Element sum = 0;
    for (int j = 0; j < dim; ++j) sum += row[j] * (data[j] - b.data[j]);
    form += (data[i] - b.data[i]) * sum;
  }
  return std::sqrt(form);
}

template <class Element>
Element T_MatVector<Element>::MahalonabisCosine(const T_MatVector& b,
                                                const T_Matrix<Element>& m) const {
  Element mixedForm = 0;
  Element form = 0;
  Element otherForm = 0;
  for (int i = 0; i < dim; ++i) {
    const Element* const row = m[i];
    Element sum = 0;
    Element otherSum = 0;
    for (int j = 0; j < dim; ++j) {
      sum += row[j] * data[j];
      otherSum += row[j] * b.data[j];
    }
    mixedForm += data[i] * otherSum;
    form += data[i] * sum;
    otherForm += b.data[i] * otherSum;
  }
  if (!(form > 0) || !(otherForm > 0)) return 0;
  return mixedForm / std::sqrt(form * otherForm);
}

// Extremes ----------------------------------------------------------------------------------------

template <class Element>
Element T_MatVector<Element>::Max() const {
  Element best = tarn::kMaximumStart<Element>;
  for (int i = 0; i < dim; ++i) best = data[i] > best ? data[i] : best;
  return best;
}

template <class Element>
Element T_MatVector<Element>::Min() const {
  Element best = -tarn::kMaximumStart<Element>;
  for (int i = 0; i < dim; ++i) best = data[i] < best ? data[i] : best;
  return best;
}

template <class Element>
Element T_MatVector<Element>::AbsMax() const {
  Element best = 0;
  for (int i = 0; i < dim; ++i) {
    const Element magnitude = std::fabs(data[i]);
    best = magnitude > best ? magnitude : best;
  }
  return best;
}

template <class Element>
int T_MatVector<Element>::MaxIndex() const {
  int index = 0;
  Element best = tarn::kMaximumStart<Element>;
  for (int i = 0; i < dim; ++i) {
    if (data[i] > best) {
      best = data[i];
      index = i;
    }
  }
  return index;
}

template <class Element>
int T_MatVector<Element>::MinIndex() const {
  int index = 0;
  Element best = -tarn::kMaximumStart<Element>;
  for (int i = 0; i < dim; ++i) {
    if (data[i] < best) {
      best = data[i];
      index = i;
    }
  }
  return index;
}

#endif
