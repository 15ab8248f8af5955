// Vector registers of one instruction set; see kernels_body.h.

#ifndef TARN_LINALG_KERNELS_VECTOR_BODY_H
#define TARN_LINALG_KERNELS_VECTOR_BODY_H

#include <cstddef>
#include <cstdint>

#include "linalg/kernel_table.h"

#if defined(__clang__)
#define TARN_UNROLL _Pragma("clang loop unroll(full)")
#else
#define TARN_UNROLL _Pragma("GCC unroll 16")
#endif
#define TARN_INLINE inline __attribute__((always_inline))

namespace tarn {
namespace {

using Index = std::ptrdiff_t;

template <class Element>
struct LaneMask;
template <>
struct LaneMask<float> {
  using Type = std::int32_t;
};
template <>
struct LaneMask<double> {
  using Type = std::int64_t;
};

template <class Element>
struct Lanes {
  typedef Element Vector __attribute__((vector_size(TARN_KERNEL_BYTES)));
  typedef typename LaneMask<Element>::Type Mask __attribute__((vector_size(TARN_KERNEL_BYTES)));
  static constexpr Index kCount = static_cast<Index>(TARN_KERNEL_BYTES / sizeof(Element));
};

template <class Element>
using Vector = typename Lanes<Element>::Vector;
template <class Element>
using Mask = typename Lanes<Element>::Mask;
template <class Element>
constexpr Index kLanes = Lanes<Element>::kCount;

/// n values on the stack.
template <class Value, Index n>
using Block = Value[static_cast<std::size_t>(n)];

template <class Element>
TARN_INLINE Vector<Element> Load(const Element* p) {
  Vector<Element> v;
  __builtin_memcpy(&v, p, sizeof v);
  return v;
}

template <class Element>
TARN_INLINE void Store(Element* p, Vector<Element> v) {
  __builtin_memcpy(p, &v, sizeof v);
}

/// Every lane holds s: taking away +0 changes no number, not even the sign of a zero.
template <class Element>
TARN_INLINE Vector<Element> Broadcast(Element s) {
  return s - Vector<Element>{};
}

/// Lane by lane a where `mask` is set, otherwise b.
template <class Element>
TARN_INLINE Vector<Element> Select(Vector<Element> a, Vector<Element> b, Mask<Element> mask) {
  return reinterpret_cast<Vector<Element>>((reinterpret_cast<Mask<Element>>(a) & mask) |
                                           (reinterpret_cast<Mask<Element>>(b) & ~mask));
}

/// Lanes first ... n-1.
template <class Element>
TARN_INLINE Mask<Element> LanesFrom(Index first) {
  Mask<Element> mask;
  for (Index q = 0; q < kLanes<Element>; ++q) mask[q] = q < first ? 0 : -1;
  return mask;
}

TARN_INLINE Index Least(Index a, Index b) { return a < b ? a : b; }

// Transposes of square blocks of lanes ------------------------------------------------------------

/// A list of lane numbers, 0 ... n-1.
template <Index... p>
struct LaneList {};
template <Index n, Index... p>
struct MakeLaneList : MakeLaneList<n - 1, n - 1, p...> {};
template <Index... p>
struct MakeLaneList<0, p...> {
  using Type = LaneList<p...>;
};

/// Exchanges the off-diagonal quarters of every 2 step x 2 step block of two rows: lanes with the
/// bit `step` of a against lanes without it of b.
template <class Element, Index step, Index... p>
TARN_INLINE void ExchangeQuarters(Vector<Element>& a, Vector<Element>& b, LaneList<p...>) {
  constexpr Index n = kLanes<Element>;
  const Vector<Element> upper =
      __builtin_shufflevector(a, b, ((p & step) == 0 ? p : n + p - step)...);
  b = __builtin_shufflevector(a, b, ((p & step) == 0 ? p + step : n + p)...);
  a = upper;
}

/// Transposes the n x n block of rows[0] ... rows[n-1], n the number of lanes, by exchanging
/// quarters of ever larger blocks.
template <class Element, Index step = 1>
TARN_INLINE void TransposeLanes(Vector<Element>* rows) {
  constexpr Index n = kLanes<Element>;
  TARN_UNROLL
  for (Index r = 0; r < n; ++r) {
    if ((r & step) == 0) {
      ExchangeQuarters<Element, step>(rows[r], rows[r + step], typename MakeLaneList<n>::Type{});
    }
  }
  if constexpr (2 * step < n) TransposeLanes<Element, 2 * step>(rows);
}

}  // namespace
}  // namespace tarn

#endif
