#ifndef TARN_LINALG_MATRIX_ARITHMETIC_IMPL_H
#define TARN_LINALG_MATRIX_ARITHMETIC_IMPL_H

/// @file
/// Element-wise arithmetic and reductions of `T_Matrix`.

#include <algorithm>
#include <cmath>
#include <new>

#include "linalg/element_storage.h"
#include "linalg/matrix.h"
#include "linalg/vector.h"

// In place ----------------------------------------------------------------------------------------

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator*=(Element s) {
  const std::int64_t count = StoredCount();
  for (std::int64_t k = 0; k < count; ++k) data[k] *= s;
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator+=(Element s) {
  const std::int64_t count = StoredCount();
  for (std::int64_t k = 0; k < count; ++k) data[k] += s;
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator-=(Element s) {
  const std::int64_t count = StoredCount();
  for (std::int64_t k = 0; k < count; ++k) data[k] -= s;
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator+=(const T_Matrix& b) {
  if (!HasShape(b.y, b.x) || b.data == nullptr) return *this;
  const std::int64_t count = StoredCount();
  for (std::int64_t k = 0; k < count; ++k) data[k] += b.data[k];
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator-=(const T_Matrix& b) {
  if (!HasShape(b.y, b.x) || b.data == nullptr) return *this;
  const std::int64_t count = StoredCount();
  for (std::int64_t k = 0; k < count; ++k) data[k] -= b.data[k];
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::MultByDiagonalMatrix(const T_MatVector<Element>& d) {
  if (d.Dim() != x || data == nullptr) return *this;
  const Element* const factors = d;
  for (int i = 0; i < y; ++i) {
    Element* const row = (*this)[i];
    for (int j = 0; j < x; ++j) row[j] *= factors[j];
  }
  return *this;
}

template <class Element>
void T_Matrix<Element>::NormalizeByRow() {
  if (data == nullptr) return;
  for (int i = 0; i < y; ++i) T_MatVector<Element>((*this)[i], x, 1).Normalize();
}

// New results -------------------------------------------------------------------------------------

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::operator*(Element s) const {
  auto* const result = new (std::nothrow) T_Matrix(*this);
  if (result != nullptr) *result *= s;
  return result;
}

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::operator+(Element s) const {
  auto* const result = new (std::nothrow) T_Matrix(*this);
  if (result != nullptr) *result += s;
  return result;
}

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::operator-(Element s) const {
  auto* const result = new (std::nothrow) T_Matrix(*this);
  if (result != nullptr) *result -= s;
  return result;
}

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::operator+(const T_Matrix& b) const {
  if (!HasShape(b.y, b.x)) return nullptr;
  auto* const result = new (std::nothrow) T_Matrix(*this);
  if (result != nullptr) *result += b;
  return result;
}

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::operator-(const T_Matrix& b) const {
  if (!HasShape(b.y, b.x)) return nullptr;
  auto* const result = new (std::nothrow) T_Matrix(*this);
  if (result != nullptr) *result -= b;
  return result;
}

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::T() const {
  auto* const result = new (std::nothrow) T_Matrix(x, y);
  if (result == nullptr || result->data == nullptr || data == nullptr) return result;
  for (int i = 0; i < y; ++i) {
    for (int j = 0; j < x; ++j) (*result)(j, i) = (*this)(i, j);
  }
  return result;
}

// Extremes ----------------------------------------------------------------------------------------

template <class Element>
Element T_Matrix<Element>::Max() const {
  Element best = tarn::kMaximumStart<Element>;
  for (std::int64_t k = 0; k < StoredCount(); ++k) best = data[k] > best ? data[k] : best;
  return best;
}

template <class Element>
Element T_Matrix<Element>::Min() const {
  Element best = -tarn::kMaximumStart<Element>;
  for (std::int64_t k = 0; k < StoredCount(); ++k) best = data[k] < best ? data[k] : best;
  return best;
}

template <class Element>
void T_Matrix<Element>::MaxItemIndex(int& col, int& row) const {
  col = 0;
  row = 0;
  Element best = tarn::kMaximumStart<Element>;
  for (int i = 0; data != nullptr && i < y; ++i) {
    for (int j = 0; j < x; ++j) {
      if ((*this)(i, j) > best) {
        best = (*this)(i, j);
        col = j;
        row = i;
      }
    }
  }
}

template <class Element>
void T_Matrix<Element>::MinItemIndex(int& col, int& row) const {
  col = 0;
  row = 0;
  Element best = -tarn::kMaximumStart<Element>;
  for (int i = 0; data != nullptr && i < y; ++i) {
    for (int j = 0; j < x; ++j) {
      if ((*this)(i, j) < best) {
        best = (*this)(i, j);
        col = j;
        row = i;
      }
    }
  }
}

// Sums --------------------------------------------------------------------------------------------

template <class Element>
Element T_Matrix<Element>::Mean() const {
  if (data == nullptr) return 0;
  const std::int64_t count = StoredCount();
  Element sum = 0;
  for (std::int64_t k = 0; k < count; ++k) sum += data[k];
  return sum / static_cast<Element>(count);
}

template <class Element>
Element T_Matrix<Element>::Tr() const {
  Element sum = 0;
  if (data == nullptr) return sum;
  for (int k = std::min(x, y) - 1; k >= 0; --k) sum += (*this)(k, k);
  return sum;
}

template <class Element>
Element T_Matrix<Element>::GetPower() const {
  return Convolove(*this);
}

template <class Element>
Element T_Matrix<Element>::Convolove(const T_Matrix& b) const {
  Element sum = 0;
  if (!HasShape(b.y, b.x) || b.data == nullptr) return sum;
  for (std::int64_t k = StoredCount() - 1; k >= 0; --k) sum += data[k] * b.data[k];
  return sum;
}

#endif
