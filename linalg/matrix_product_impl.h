#ifndef TARN_LINALG_MATRIX_PRODUCT_IMPL_H
#define TARN_LINALG_MATRIX_PRODUCT_IMPL_H

/// @file
/// Products of `T_Matrix` with matrices and vectors.

#include <algorithm>
#include <new>

#include "linalg/element_operations.h"
#include "linalg/matrix.h"
#include "linalg/small_product.h"
#include "linalg/vector.h"

// Matrix by matrix --------------------------------------------------------------------------------

namespace tarn {

/// Whether a product is so small that entering a kernel would show.
inline bool IsSmallProduct(int rows, int cols, int depth) {
  return rows <= kSmallProductOrder && cols <= kSmallProductOrder && depth <= kSmallProductOrder;
}

}  // namespace tarn

/// c = this*b for a c of the right shape that shares no storage with the operands. Operands of no
/// elements need no storage: their product is zeros.
template <class Element>
void T_Matrix<Element>::MultiplyInto(const T_Matrix& b, T_Matrix& c) const {
  if (!HasItsElements() || !b.HasItsElements() || c.data == nullptr) return;
  if (tarn::IsSmallProduct(y, b.x, x)) {
    tarn::MultiplySmall(y, b.x, x, data, b.data, c.data);
  } else {
    tarn::Kernels<Element>().setProduct(y, b.x, x, {data, x, 1}, {b.data, b.x, 1}, c.data, b.x);
  }
}

/// c = this*transpose(b), likewise.
template <class Element>
void T_Matrix<Element>::MultiplyTransposedInto(const T_Matrix& b, T_Matrix& c) const {
  if (!HasItsElements() || !b.HasItsElements() || c.data == nullptr) return;
  if (tarn::IsSmallProduct(y, b.y, x)) {
    tarn::MultiplySmallTransposed(y, b.y, x, data, b.data, c.data);
  } else {
    tarn::Kernels<Element>().setProduct(y, b.y, x, {data, x, 1}, {b.data, 1, x}, c.data, b.y);
  }
}

template <class Element>
int T_Matrix<Element>::Mul(const T_Matrix& b, T_Matrix& c) const {
  if (x != b.y || !HasItsElements() || !b.HasItsElements()) return 0;
  if (&c == this || &c == &b) {
    T_Matrix product;
    const int done = Mul(b, product);
    if (done != 0) c = product;
    return done;
  }
  c.SetDim(y, b.x);
  MultiplyInto(b, c);
  return c.HasItsElements() ? 1 : 0;
}

template <class Element>
int T_Matrix<Element>::MulT(const T_Matrix& b, T_Matrix& c) const {
  if (x != b.x || !HasItsElements() || !b.HasItsElements()) return 0;
  if (&c == this || &c == &b) {
    T_Matrix product;
    const int done = MulT(b, product);
    if (done != 0) c = product;
    return done;
  }
  c.SetDim(y, b.y);
  MultiplyTransposedInto(b, c);
  return c.HasItsElements() ? 1 : 0;
}

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::operator*(const T_Matrix& b) const {
  if (x != b.y) return nullptr;
  auto* const product = new (std::nothrow) T_Matrix(y, b.x);
  if (product != nullptr) MultiplyInto(b, *product);
  return product;
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator*=(const T_Matrix& b) {
  if (x != b.y || !b.HasItsElements()) return *this;
  T_Matrix product(y, b.x);
  MultiplyInto(b, product);
  if (product.data != nullptr) {
    tarn::CopyElements(data, product.data, std::min(StoredCount(), product.StoredCount()));
  }
  return *this;
}

// Matrix by vector --------------------------------------------------------------------------------

template <class Element>
void T_Matrix<Element>::RightMultiply(Element* out, const Element* v) const {
  if (!HasItsElements()) return;
  tarn::MultiplyRows<Element>(y, x, data, x, v, out);
}

template <class Element>
void T_Matrix<Element>::Mul(T_MatVector<Element>& out, const T_MatVectorCol<Element>& v) const {
  if (x != v.Dim() || !HasItsElements()) return;
  if (&out == &v) return Mul(out, T_MatVectorCol<Element>(v));
  out.SetDim(y);
  if (out.Dim() != y) return;
  RightMultiply(static_cast<Element*>(out), static_cast<const Element*>(v));
}

template <class Element>
void T_Matrix<Element>::RightMultiply(T_MatVectorCol<Element>& out,
                                      const T_MatVectorCol<Element>& v) const {
  Mul(out, v);
}

template <class Element>
T_MatVectorCol<Element>* T_Matrix<Element>::operator*(const T_MatVectorCol<Element>& v) const {
  if (x != v.Dim()) return nullptr;
  auto* const product = new (std::nothrow) T_MatVectorCol<Element>;
  if (product != nullptr) Mul(*product, v);
  return product;
}

template <class Element>
Element T_Matrix<Element>::QuadraticForm(const T_MatVector<Element>& a,
                                         const T_MatVector<Element>& b) const {
  Element form = 0;
  if (x != b.Dim() || y != a.Dim() || data == nullptr) return form;
  const Element* const factors = b;
  tarn::ForEachRowProduct<Element>(
      y, x, data, x, [=](std::int64_t j, std::int64_t) { return factors + j; },
      [&](std::int64_t i, Element sum) { form += a[static_cast<int>(i)] * sum; });
  return form;
}

#endif
