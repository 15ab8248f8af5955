#ifndef TARN_LINALG_VECTOR_ARITHMETIC_IMPL_H
#define TARN_LINALG_VECTOR_ARITHMETIC_IMPL_H

/// @file
/// Element-wise arithmetic of `T_MatVector`.

#include <cmath>
#include <cstdint>

#include "linalg/element_operations.h"
#include "linalg/vector.h"

// In place ----------------------------------------------------------------------------------------

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::operator*=(Element s) {
  tarn::ScaleElements<Element>(dim, data, s);
  return *this;
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::operator+=(Element s) {
  tarn::ShiftElements<Element>(dim, data, s);
  return *this;
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::operator-=(Element s) {
  tarn::ShiftElements<Element>(dim, data, -s);
  return *this;
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::operator+=(const T_MatVector& b) {
  Add(*this, b);
  return *this;
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::operator-=(const T_MatVector& b) {
  Sub(*this, b);
  return *this;
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::DivByItem(const T_MatVector& b) {
  tarn::DivideElements(dim, data, data, b.data);
  return *this;
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::MulByItem(const Element* b) {
  return MulByItem(data, b);
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::MulByItem(Element* out, const Element* b) {
  tarn::MultiplyElements(dim, out, data, b);
  return *this;
}

template <class Element>
void T_MatVector<Element>::Normalize() {
  const Element squares = Norm2();
  if (squares > 0) *this *= 1 / std::sqrt(squares);
}

template <class Element>
int T_MatVector<Element>::Bind(const T_MatVector& bounds) {
  int changed = 0;
  for (int i = 0; i < dim; ++i) {
    const Element lower = bounds.data[2 * static_cast<std::int64_t>(i)];
    const Element upper = bounds.data[2 * static_cast<std::int64_t>(i) + 1];
    if (lower > data[i]) {
      data[i] = lower;
      changed = 1;
    } else if (data[i] > upper) {
      data[i] = upper;
      changed = 1;
    }
  }
  return changed;
}

// Into a result -----------------------------------------------------------------------------------

template <class Element>
int T_MatVector<Element>::Add(T_MatVector& r, const T_MatVector& b) const {
  if (r.dim != dim || b.dim != dim) return 0;
  Add(r.data, b.data);
  return 1;
}

template <class Element>
int T_MatVector<Element>::Add(T_MatVector& r, const T_MatVector& b, Element k) const {
  if (r.dim != dim || b.dim != dim) return 0;
  Add(r.data, b.data, k);
  return 1;
}

template <class Element>
int T_MatVector<Element>::Sub(T_MatVector& r, const T_MatVector& b) const {
  if (r.dim != dim || b.dim != dim) return 0;
  Sub(r.data, b.data);
  return 1;
}

template <class Element>
int T_MatVector<Element>::Sub(T_MatVector& r, const T_MatVector& b, Element k) const {
  if (r.dim != dim || b.dim != dim) return 0;
  Sub(r.data, b.data, k);
  return 1;
}

template <class Element>
void T_MatVector<Element>::Add(Element* r, const Element* b) const {
  tarn::AddElements(dim, r, data, b);
}

template <class Element>
void T_MatVector<Element>::Add(Element* r, const Element* b, Element k) const {
  tarn::AddScaledElements<Element>(dim, r, data, b, k);
}

template <class Element>
void T_MatVector<Element>::Sub(Element* r, const Element* b) const {
  tarn::SubtractElements(dim, r, data, b);
}

template <class Element>
void T_MatVector<Element>::Sub(Element* r, const Element* b, Element k) const {
  tarn::AddScaledElements<Element>(dim, r, data, b, -k);
}

template <class Element>
T_MatVector<Element>& T_MatVector<Element>::WeightedSum(const T_MatVector& a, Element wa,
                                                        const T_MatVector& b, Element wb) {
  if (a.dim != b.dim) return *this;
  const int count = a.dim;
  SetDim(count);
  if (dim != count) return *this;
  const Element weight = wa + wb;
  for (int i = 0; i < dim; ++i) data[i] = (wa * a.data[i] + wb * b.data[i]) / weight;
  return *this;
}

#endif
