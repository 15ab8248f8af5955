#ifndef TARN_FRAME_HOST_BLOCK_H
#define TARN_FRAME_HOST_BLOCK_H

/// @file
/// Blocks of numbers in the host heap, sized by 64-bit element counts.
///
/// A count that is negative or whose byte size does not fit the address space ends like a refusal
/// of the heap: with null.

#include <cstddef>
#include <cstdint>

#include "frame/host.h"

namespace tarn {

/// Whether `count` elements of `elementSize` bytes have a byte size that can be asked for.
inline bool IsAllocatable(std::int64_t count, std::size_t elementSize) {
  return count >= 0 && count <= PTRDIFF_MAX / static_cast<std::int64_t>(elementSize);
}

/// Byte size of `count` elements of T; the count is known to be allocatable.
template <class T>
std::size_t ByteSize(std::int64_t count) {
  return static_cast<std::size_t>(count) * sizeof(T);
}

/// An uninitialised block of `count` elements, or null.
template <class T>
T* AllocateBlock(std::int64_t count) {
  return IsAllocatable(count, sizeof(T)) ? static_cast<T*>(HMALLOC(ByteSize<T>(count))) : nullptr;
}

/// A zero-filled block of `count` elements, or null.
template <class T>
T* AllocateZeroedBlock(std::int64_t count) {
  return IsAllocatable(count, sizeof(T)) ? static_cast<T*>(HMALLOCZ(ByteSize<T>(count))) : nullptr;
}

/// The block resized to `count` elements (null: a new one), or null when it stays as it is.
template <class T>
T* ResizeBlock(T* block, std::int64_t count) {
  return IsAllocatable(count, sizeof(T)) ? static_cast<T*>(HREALLOC(block, ByteSize<T>(count)))
                                         : nullptr;
}

/// Owns a host heap block for the length of a scope.
template <class T>
class ScopedBlock {
 public:
  /// Takes over `block`, which may be null.
  explicit ScopedBlock(T* block) : block_(block) {}
  ~ScopedBlock() { HFREE(block_); }
  ScopedBlock(const ScopedBlock&) = delete;
  ScopedBlock& operator=(const ScopedBlock&) = delete;

  T* Get() const { return block_; }

 private:
  T* block_;
};

}  // namespace tarn

#endif
