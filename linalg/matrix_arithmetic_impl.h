#ifndef TARN_LINALG_MATRIX_ARITHMETIC_IMPL_H
#define TARN_LINALG_MATRIX_ARITHMETIC_IMPL_H

/// @file
/// Element-wise arithmetic and reductions of `T_Matrix`.

#include <algorithm>
#include <cmath>
#include <new>

#include "linalg/element_operations.h"
#include "linalg/matrix.h"
#include "linalg/vector.h"

// In place ----------------------------------------------------------------------------------------

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator*=(Element s) {
  tarn::ScaleElements(StoredCount(), data, s);
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator+=(Element s) {
  tarn::ShiftElements(StoredCount(), data, s);
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator-=(Element s) {
  tarn::ShiftElements(StoredCount(), data, -s);
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator+=(const T_Matrix& b) {
  if (!HasShape(b.y, b.x) || b.data == nullptr) return *this;
  tarn::AddElements(StoredCount(), data, data, b.data);
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator-=(const T_Matrix& b) {
  if (!HasShape(b.y, b.x) || b.data == nullptr) return *this;
  tarn::SubtractElements(StoredCount(), data, data, b.data);
  return *this;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::MultByDiagonalMatrix(const T_MatVector<Element>& d) {
  if (d.Dim() != x || data == nullptr) return *this;
  const Element* const factors = d;
  for (int i = 0; i < y; ++i) tarn::MultiplyElements(x, (*this)[i], (*this)[i], factors);
  return *this;
}

template <class Element>
void T_Matrix<Element>::NormalizeByRow() {
  if (data == nullptr) return;
  constexpr int kRows = 64;
  Element squares[kRows];
  for (int start = 0; start < y; start += kRows) {
    const int count = std::min(kRows, y - start);
    tarn::ClearElements(squares, count);
    tarn::Kernels<Element>().addRowSquares(count, x, (*this)[start], x, squares);
    for (int r = 0; r < count; ++r) {
      if (squares[r] > 0) tarn::ScaleElements(x, (*this)[start + r], 1 / std::sqrt(squares[r]));
    }
  }
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
  tarn::Kernels<Element>().transpose(y, x, data, x, result->data, y);
  return result;
}

// Extremes ----------------------------------------------------------------------------------------

template <class Element>
Element T_Matrix<Element>::Max() const {
  return tarn::LargestElement(StoredCount(), data);
}

template <class Element>
Element T_Matrix<Element>::Min() const {
  return tarn::SmallestElement(StoredCount(), data);
}

template <class Element>
void T_Matrix<Element>::MaxItemIndex(int& col, int& row) const {
  GetPosition(tarn::LargestElementIndex(StoredCount(), data), col, row);
}

template <class Element>
void T_Matrix<Element>::MinItemIndex(int& col, int& row) const {
  GetPosition(tarn::SmallestElementIndex(StoredCount(), data), col, row);
}

template <class Element>
void T_Matrix<Element>::GetPosition(std::int64_t index, int& col, int& row) const {
  col = x > 0 ? static_cast<int>(index % x) : 0;
  row = x > 0 ? static_cast<int>(index / x) : 0;
}

// Sums --------------------------------------------------------------------------------------------

template <class Element>
Element T_Matrix<Element>::Mean() const {
  if (data == nullptr) return 0;
  const std::int64_t count = StoredCount();
  return tarn::SumElements(count, data) / static_cast<Element>(count);
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
  if (!HasShape(b.y, b.x) || b.data == nullptr) return 0;
  return tarn::ReverseDotProduct(StoredCount(), data, b.data);
}

#endif
