// Element-wise operations and extremes; see kernels_body.h.

#ifndef TARN_LINALG_KERNELS_ELEMENTWISE_BODY_H
#define TARN_LINALG_KERNELS_ELEMENTWISE_BODY_H

#include "linalg/kernels_vector_body.h"

namespace tarn {
namespace {

// Independent elements: the compiler vectorises these loops as they stand.

template <class Element>
void Scale(Index n, Element* x, Element s) {
  for (Index i = 0; i < n; ++i) x[i] *= s;
}

template <class Element>
void Shift(Index n, Element* x, Element s) {
  for (Index i = 0; i < n; ++i) x[i] += s;
}

template <class Element>
void Add(Index n, Element* r, const Element* a, const Element* b) {
  for (Index i = 0; i < n; ++i) r[i] = a[i] + b[i];
}

template <class Element>
void Subtract(Index n, Element* r, const Element* a, const Element* b) {
  for (Index i = 0; i < n; ++i) r[i] = a[i] - b[i];
}

template <class Element>
void Multiply(Index n, Element* r, const Element* a, const Element* b) {
  for (Index i = 0; i < n; ++i) r[i] = a[i] * b[i];
}

template <class Element>
void Divide(Index n, Element* r, const Element* a, const Element* b) {
  for (Index i = 0; i < n; ++i) r[i] = a[i] / b[i];
}

template <class Element>
void AddScaled(Index n, Element* r, const Element* a, const Element* b, Element k) {
  for (Index i = 0; i < n; ++i) r[i] = a[i] + k * b[i];
}

// Extremes ----------------------------------------------------------------------------------------

// What replaces the best so far; an unordered comparison never does. The same expressions serve
// single elements and vectors of them.
struct Larger {
  template <class Value>
  static TARN_INLINE Value Pick(Value candidate, Value best) {
    return candidate > best ? candidate : best;
  }
};
struct Smaller {
  template <class Value>
  static TARN_INLINE Value Pick(Value candidate, Value best) {
    return candidate < best ? candidate : best;
  }
};
struct LargerMagnitude {
  template <class Value>
  static TARN_INLINE Value Pick(Value candidate, Value best) {
    const Value magnitude = candidate < 0 ? -candidate : candidate;
    return magnitude > best ? magnitude : best;
  }
};

template <class Order, class Element>
TARN_INLINE Element FindExtreme(Index count, const Element* x, Element start) {
  constexpr Index n = kLanes<Element>;
  constexpr Index kChains = 4;
  Block<Vector<Element>, kChains> best;
  TARN_UNROLL
  for (Index c = 0; c < kChains; ++c) best[c] = Broadcast(start);
  Index i = 0;
  for (; i + kChains * n <= count; i += kChains * n) {
    TARN_UNROLL
    for (Index c = 0; c < kChains; ++c) best[c] = Order::Pick(Load(x + i + c * n), best[c]);
  }
  Element result = start;
  for (; i < count; ++i) result = Order::Pick(x[i], result);
  TARN_UNROLL
  for (Index c = 0; c < kChains; ++c) {
    for (Index q = 0; q < n; ++q) result = Order::Pick(Element(best[c][q]), result);
  }
  return result;
}

template <class Element>
Element Largest(Index n, const Element* x, Element start) {
  return FindExtreme<Larger>(n, x, start);
}

template <class Element>
Element Smallest(Index n, const Element* x, Element start) {
  return FindExtreme<Smaller>(n, x, start);
}

template <class Element>
Element LargestMagnitude(Index n, const Element* x) {
  return FindExtreme<LargerMagnitude>(n, x, Element(0));
}

}  // namespace
}  // namespace tarn

#endif
