#ifndef TARN_ARRAYS_LITTLE_ENDIAN_H
#define TARN_ARRAYS_LITTLE_ENDIAN_H

/// @file
/// Numbers as little-endian bytes, whatever the byte order of the machine.

#include <bit>
#include <cstddef>
#include <cstdint>

#include "arrays/ordered_bits.h"

namespace tarn {

/// Writes the bytes of an unsigned integer, the lowest first.
template <class Bits>
void StoreBits(char* bytes, Bits bits) {
  for (std::size_t i = 0; i < sizeof(Bits); ++i) {
    bytes[i] = static_cast<char>(static_cast<unsigned char>(bits >> (8 * i)));
  }
}

/// Reads what `StoreBits` wrote.
template <class Bits>
Bits LoadBits(const char* bytes) {
  Bits bits = 0;
  for (std::size_t i = 0; i < sizeof(Bits); ++i) {
    bits |= static_cast<Bits>(static_cast<unsigned char>(bytes[i])) << (8 * i);
  }
  return bits;
}

/// Writes a count in 4 bytes, of larger ones the low 32 bits.
inline void StoreCount(char* bytes, std::int64_t count) {
  StoreBits(bytes, static_cast<std::uint32_t>(count));
}

/// Reads what `StoreCount` wrote, as an unsigned number.
inline std::int64_t LoadCount(const char* bytes) { return LoadBits<std::uint32_t>(bytes); }

/// Writes `count` elements one after the other.
template <class T>
void StoreElements(char* bytes, const T* elements, std::int64_t count) {
  for (std::int64_t i = 0; i < count; ++i) {
    StoreBits(bytes + static_cast<std::size_t>(i) * sizeof(T),
              std::bit_cast<BitsOf<T>>(elements[i]));
  }
}

/// Reads `count` elements one after the other.
template <class T>
void LoadElements(const char* bytes, T* elements, std::int64_t count) {
  for (std::int64_t i = 0; i < count; ++i) {
    elements[i] =
        std::bit_cast<T>(LoadBits<BitsOf<T>>(bytes + static_cast<std::size_t>(i) * sizeof(T)));
  }
}

}  // namespace tarn

#endif
