#ifndef TARN_STAT_NUMBER_ARRAYS_H
#define TARN_STAT_NUMBER_ARRAYS_H

/// @file
/// Arrays of doubles as the statistics own them.

#include <cstddef>
#include <memory>
#include <new>

#include "frame/host.h"

namespace tarn {

using NumberArray = std::unique_ptr<double[]>;

/// A new array of `count` numbers, not initialised; null when memory is refused.
inline NumberArray NewNumbers(std::int64_t count) {
  return NumberArray(new (std::nothrow) double[static_cast<std::size_t>(count)]);
}

/// A new array with a converted copy of `count` numbers; null when memory is refused and when there
/// is nothing to copy from.
template <class Element>
NumberArray CopyNumbers(const Element* numbers, std::int64_t count) {
  if (numbers == nullptr && count > 0) return nullptr;
  NumberArray copy = NewNumbers(count);
  if (!copy) return copy;
  for (std::int64_t i = 0; i < count; ++i) copy[static_cast<std::size_t>(i)] = numbers[i];
  return copy;
}

/// A work area of doubles on the host heap, released at the end of the scope.
class HostWorkArea {
 public:
  explicit HostWorkArea(std::int64_t count)
      : numbers_(static_cast<double*>(HMALLOC(static_cast<std::size_t>(count) * sizeof(double)))) {}
  ~HostWorkArea() { HFREE(numbers_); }
  HostWorkArea(const HostWorkArea&) = delete;
  HostWorkArea& operator=(const HostWorkArea&) = delete;

  double* Get() { return numbers_; }
  explicit operator bool() const { return numbers_ != nullptr; }

 private:
  double* numbers_;
};

/// A work area that lives on the stack below 100 numbers and on the host heap from there.
class SmallWorkArea {
 public:
  explicit SmallWorkArea(std::int64_t count) {
    if (count < kStackCount) return;
    heap_ = static_cast<double*>(HMALLOC(static_cast<std::size_t>(count) * sizeof(double)));
    numbers_ = heap_;
  }
  ~SmallWorkArea() { HFREE(heap_); }
  SmallWorkArea(const SmallWorkArea&) = delete;
  SmallWorkArea& operator=(const SmallWorkArea&) = delete;

  double* Get() { return numbers_; }
  explicit operator bool() const { return numbers_ != nullptr; }

 private:
  static constexpr int kStackCount = 100;
  double stack_[kStackCount];
  double* heap_ = nullptr;
  double* numbers_ = stack_;
};

}  // namespace tarn

#endif
