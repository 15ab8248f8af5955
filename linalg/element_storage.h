#ifndef TARN_LINALG_ELEMENT_STORAGE_H
#define TARN_LINALG_ELEMENT_STORAGE_H

/// @file
/// Allocating, filling and copying blocks of elements, shared by vectors and matrices.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <type_traits>

#include "frame/host.h"

namespace tarn {

/// `count` elements from array new, not initialised. Null when `count` is negative, when so many
/// bytes cannot be addressed and when memory is exhausted.
template <class Element>
Element* NewElements(std::int64_t count) {
  constexpr std::int64_t kLimit =
      std::numeric_limits<std::ptrdiff_t>::max() / static_cast<std::ptrdiff_t>(sizeof(Element));
  if (count < 0 || count > kLimit) return nullptr;
  return new (std::nothrow) Element[static_cast<std::size_t>(count)];
}

/// Sets `count` elements to +0.
template <class Element>
void ClearElements(Element* target, std::int64_t count) {
  if (target != nullptr && count > 0) {
    std::memset(target, 0, static_cast<std::size_t>(count) * sizeof(Element));
  }
}

/// Copies `count` elements between blocks that may overlap; a null source stands for zeros.
template <class Element>
void CopyElements(Element* target, const Element* source, std::int64_t count) {
  if (source == nullptr) return ClearElements(target, count);
  if (target == nullptr || count <= 0) return;
  std::memmove(target, source, static_cast<std::size_t>(count) * sizeof(Element));
}

/// Whether `p` points to one of the `count` elements of a block, or to its begin.
template <class Element>
bool PointsInto(const Element* block, std::int64_t count, const Element* p) {
  const std::less<const Element*> isBefore;
  return p != nullptr && (p == block || (!isBefore(p, block) && isBefore(p, block + count)));
}

/// `NewElements`, zero-filled.
template <class Element>
Element* NewZeroElements(std::int64_t count) {
  Element* const elements = NewElements<Element>(count);
  ClearElements(elements, count);
  return elements;
}

/// `NewElements`, filled from `source`; null stands for zeros.
template <class Element>
Element* NewElementCopy(const Element* source, std::int64_t count) {
  Element* const elements = NewElements<Element>(count);
  CopyElements(elements, source, count);
  return elements;
}

/// Fills `count` elements with `value`; a zero of either sign gives +0.
template <class Element>
void FillElements(Element* target, Element value, std::int64_t count) {
  if (target == nullptr) return;
  if (value == 0) return ClearElements(target, count);
  for (std::int64_t i = 0; i < count; ++i) target[i] = value;
}

/// The number that the host makes of a value, by the conversion that belongs to the element type.
template <class Element>
Element HostNumber(const Variable& value) {
  if constexpr (std::is_same_v<Element, float>) {
    return value.GetFloatNumb();
  } else {
    return value.GetDoubleNumb();
  }
}

/// Whether a size given by the host fits the 32-bit dimensions of vectors and matrices.
inline bool FitsDimension(std::int64_t size) {
  return size <= std::numeric_limits<std::int32_t>::max();
}

/// Where searches for a largest element start; a smallest element starts at the negative. 1e300
/// rounds to infinity in single precision.
template <class Element>
constexpr Element kMaximumStart = std::is_same_v<Element, float>
                                      ? -std::numeric_limits<Element>::infinity()
                                      : static_cast<Element>(-1e300L);

}  // namespace tarn

#endif
