#ifndef TARN_LINALG_VECTOR_SHAPES_IMPL_H
#define TARN_LINALG_VECTOR_SHAPES_IMPL_H

/// @file
/// `T_MatVectorCol` and `T_MatVectorRow`: what they forward to `T_MatVector`, and the products
/// whose shape matters.

#include <algorithm>
#include <new>

#include "linalg/element_operations.h"
#include "linalg/matrix.h"
#include "linalg/vector.h"

// Forwarded to T_MatVector ------------------------------------------------------------------------

template <class Element>
T_MatVectorCol<Element>::T_MatVectorCol() = default;
template <class Element>
T_MatVectorCol<Element>::T_MatVectorCol(int n) : T_MatVector<Element>(n) {}
template <class Element>
T_MatVectorCol<Element>::T_MatVectorCol(const T_MatVectorCol& other)
    : T_MatVector<Element>(other) {}
template <class Element>
T_MatVectorCol<Element>::T_MatVectorCol(const T_MatVector<Element>& other)
    : T_MatVector<Element>(other) {}
template <class Element>
T_MatVectorCol<Element>::T_MatVectorCol(const Element* p, int n) : T_MatVector<Element>(p, n) {}
template <class Element>
T_MatVectorCol<Element>::T_MatVectorCol(Element* p, int n, int wrap)
    : T_MatVector<Element>(p, n, wrap) {}
template <class Element>
T_MatVectorCol<Element>::T_MatVectorCol(const int* p, int n) : T_MatVector<Element>(p, n) {}
template <class Element>
T_MatVectorCol<Element>::T_MatVectorCol(const OtherElement* p, int n)
    : T_MatVector<Element>(p, n) {}
template <class Element>
T_MatVectorCol<Element>::T_MatVectorCol(Variable& v) : T_MatVector<Element>(v) {}

template <class Element>
T_MatVectorCol<Element>& T_MatVectorCol<Element>::operator=(const T_MatVectorCol& other) {
  T_MatVector<Element>::operator=(other);
  return *this;
}

template <class Element>
T_MatVectorCol<Element>& T_MatVectorCol<Element>::operator=(const T_MatVector<Element>& other) {
  T_MatVector<Element>::operator=(other);
  return *this;
}

template <class Element>
T_MatVectorCol<Element>& T_MatVectorCol<Element>::operator=(Variable& v) {
  T_MatVector<Element>::operator=(v);
  return *this;
}

template <class Element>
T_MatVectorCol<Element>& T_MatVectorCol<Element>::operator*=(Element s) {
  T_MatVector<Element>::operator*=(s);
  return *this;
}

template <class Element>
T_MatVectorCol<Element>& T_MatVectorCol<Element>::operator+=(Element s) {
  T_MatVector<Element>::operator+=(s);
  return *this;
}

template <class Element>
T_MatVectorCol<Element>& T_MatVectorCol<Element>::operator-=(Element s) {
  T_MatVector<Element>::operator-=(s);
  return *this;
}

template <class Element>
T_MatVectorCol<Element>& T_MatVectorCol<Element>::operator+=(const T_MatVector<Element>& b) {
  T_MatVector<Element>::operator+=(b);
  return *this;
}

template <class Element>
T_MatVectorCol<Element>& T_MatVectorCol<Element>::operator-=(const T_MatVector<Element>& b) {
  T_MatVector<Element>::operator-=(b);
  return *this;
}

template <class Element>
T_MatVectorRow<Element>::T_MatVectorRow() = default;
template <class Element>
T_MatVectorRow<Element>::T_MatVectorRow(int n) : T_MatVector<Element>(n) {}
template <class Element>
T_MatVectorRow<Element>::T_MatVectorRow(const T_MatVectorRow& other)
    : T_MatVector<Element>(other) {}
template <class Element>
T_MatVectorRow<Element>::T_MatVectorRow(const T_MatVector<Element>& other)
    : T_MatVector<Element>(other) {}
template <class Element>
T_MatVectorRow<Element>::T_MatVectorRow(const Element* p, int n) : T_MatVector<Element>(p, n) {}
template <class Element>
T_MatVectorRow<Element>::T_MatVectorRow(Element* p, int n, int wrap)
    : T_MatVector<Element>(p, n, wrap) {}
template <class Element>
T_MatVectorRow<Element>::T_MatVectorRow(const int* p, int n) : T_MatVector<Element>(p, n) {}
template <class Element>
T_MatVectorRow<Element>::T_MatVectorRow(const OtherElement* p, int n)
    : T_MatVector<Element>(p, n) {}
template <class Element>
T_MatVectorRow<Element>::T_MatVectorRow(Variable& v) : T_MatVector<Element>(v) {}

template <class Element>
T_MatVectorRow<Element>& T_MatVectorRow<Element>::operator=(const T_MatVectorRow& other) {
  T_MatVector<Element>::operator=(other);
  return *this;
}

template <class Element>
T_MatVectorRow<Element>& T_MatVectorRow<Element>::operator=(const T_MatVector<Element>& other) {
  T_MatVector<Element>::operator=(other);
  return *this;
}

template <class Element>
T_MatVectorRow<Element>& T_MatVectorRow<Element>::operator=(Variable& v) {
  T_MatVector<Element>::operator=(v);
  return *this;
}

// New column vectors ------------------------------------------------------------------------------

template <class Element>
T_MatVectorCol<Element>* T_MatVectorCol<Element>::operator*(Element s) const {
  auto* const result = new (std::nothrow) T_MatVectorCol(*this);
  if (result != nullptr) *result *= s;
  return result;
}

template <class Element>
T_MatVectorCol<Element>* T_MatVectorCol<Element>::operator+(Element s) const {
  auto* const result = new (std::nothrow) T_MatVectorCol(*this);
  if (result != nullptr) *result += s;
  return result;
}

template <class Element>
T_MatVectorCol<Element>* T_MatVectorCol<Element>::operator-(Element s) const {
  auto* const result = new (std::nothrow) T_MatVectorCol(*this);
  if (result != nullptr) *result -= s;
  return result;
}

template <class Element>
T_MatVectorCol<Element>* T_MatVectorCol<Element>::operator+(const T_MatVectorCol& b) const {
  auto* const result = new (std::nothrow) T_MatVectorCol(*this);
  if (result != nullptr) *result += b;
  return result;
}

template <class Element>
T_MatVectorCol<Element>* T_MatVectorCol<Element>::operator-(const T_MatVectorCol& b) const {
  auto* const result = new (std::nothrow) T_MatVectorCol(*this);
  if (result != nullptr) *result -= b;
  return result;
}

template <class Element>
T_MatVectorRow<Element>* T_MatVectorCol<Element>::T() const {
  return new (std::nothrow) T_MatVectorRow<Element>(*this);
}

// Products of a column ----------------------------------------------------------------------------

template <class Element>
T_Matrix<Element>* T_MatVectorCol<Element>::operator*(const T_MatVectorRow<Element>& r) const {
  auto* const result = new (std::nothrow) T_Matrix<Element>;
  if (result != nullptr) RightMultiply(*result, r);
  return result;
}

template <class Element>
Element T_MatVectorCol<Element>::ScalarProduct(const T_MatVector<Element>& b) const {
  return this->ScalarMultiply(b);
}

template <class Element>
void T_MatVectorCol<Element>::RightMultiply(T_Matrix<Element>& m,
                                            const T_MatVectorRow<Element>& r) const {
  m.SetDim(this->dim, r.Dim());
  if (m[0] == nullptr) return;
  for (int i = 0; i < this->dim; ++i) {
    Element* const row = m[i];
    for (int j = 0; j < r.Dim(); ++j) row[j] = this->data[i] * r[j];
  }
}

// Products of a row -------------------------------------------------------------------------------

template <class Element>
Element T_MatVectorRow<Element>::operator*(const T_MatVectorCol<Element>& c) const {
  return this->ScalarMultiply(c);
}

template <class Element>
T_MatVectorRow<Element>* T_MatVectorRow<Element>::operator*(const T_Matrix<Element>& m) const {
  if (this->dim != m.Y()) return nullptr;
  auto* const result = new (std::nothrow) T_MatVectorRow;
  if (result != nullptr) RightMultiply(*result, m);
  return result;
}

template <class Element>
void T_MatVectorRow<Element>::RightMultiply(T_MatVectorRow& out, const T_Matrix<Element>& m) const {
  if (this->dim != m.Y()) return;
  if (&out == this) return T_MatVectorRow(*this).RightMultiply(out, m);
  out.SetDim(m.X());
  if (out.dim != m.X()) return;
  out.Set(0);
  const Element* const elements = m[0];
  if (elements == nullptr) return;
  // Row i runs over the elements i*stride ... i*stride + dim - 1 as far as the matrix goes.
  const std::int64_t stride = m.X();
  const std::int64_t count = stride * m.Y();
  const std::int64_t whole =
      stride > 0 && count >= this->dim ? std::min(stride, (count - this->dim) / stride + 1) : 0;
  tarn::MultiplyRows<Element>(whole, this->dim, elements, stride, this->data, out.data);
  for (std::int64_t i = whole; i < out.dim; ++i) {
    const std::int64_t first = std::min(i * stride, count);
    out.data[i] = tarn::DotProduct(count - first, elements + first, this->data);
  }
}

#endif
