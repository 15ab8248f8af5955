#ifndef TARN_ARRAYS_ORDERED_BITS_H
#define TARN_ARRAYS_ORDERED_BITS_H

/// @file
/// Numbers as unsigned integers in the same order.
///
/// IEEE 754 arranges the bits of non-negative numbers in the order of their values and marks
/// negative ones by the top bit alone, so flipping that bit of the former and all bits of the
/// latter makes the unsigned order that of the values: -infinity ... -0 < +0 ... infinity. NaN lies
/// beyond the infinities. Two's complement integers need their top bit flipped.

#include <bit>
#include <concepts>
#include <cstdint>
#include <type_traits>

namespace tarn {

/// The unsigned integer type of the size of T.
template <class T>
using BitsOf = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;

/// The top bit of an unsigned integer type.
template <class Bits>
inline constexpr Bits kTopBit = Bits{1} << (8 * sizeof(Bits) - 1);

/// Image of a number in the unsigned order.
template <class T>
BitsOf<T> ToOrderedBits(T value) {
  using Bits = BitsOf<T>;
  const auto bits = std::bit_cast<Bits>(value);
  if constexpr (std::integral<T>) return bits ^ kTopBit<Bits>;
  const Bits allIfNegative = Bits{0} - bits / kTopBit<Bits>;
  return bits ^ (allIfNegative | kTopBit<Bits>);
}

}  // namespace tarn

#endif
