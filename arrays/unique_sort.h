#ifndef TARN_ARRAYS_UNIQUE_SORT_H
#define TARN_ARRAYS_UNIQUE_SORT_H

/// @file
/// Sorting of plain numbers whose sorted order is unique, so that the method cannot be seen in the
/// result: integers, and floating-point numbers without NaN and without zeros of both signs.
///
/// Short arrays: runs of 16 put in place by counting the smaller elements, then merged pairwise
/// without branches on the data. Long arrays: radix sort on the ordered bits of the numbers (see
/// ordered_bits.h) from the lowest byte up, leaving out bytes in which all elements agree. Neither
/// takes longer on one order of the input than on another. What ascends or descends already is left
/// or reversed.
///
/// Source: D. E. Knuth, The Art of Computer Programming, vol. 3, 2nd ed., 5.2 (comparison
/// counting), 5.2.4 (merging), 5.2.5 (radix sorting).

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <functional>
#include <utility>

#include "arrays/ordered_bits.h"

namespace tarn {

inline constexpr std::int64_t kRunLength = 16;  ///< Elements put in place by counting.
/// Elements from which on radix sort is faster: the work on its tables grows with the digits.
template <class T>
inline constexpr std::int64_t kRadixMinimum = 16 * sizeof(T);
inline constexpr int kDigitBits = 8;
inline constexpr unsigned kDigitValues = 1 << kDigitBits;

/// Whether an array has but one sorted order: no NaN, and zeros of one sign only.
template <class T>
bool HasUniqueOrder(const T* a, std::int64_t n) {
  if constexpr (std::integral<T>) return true;
  bool hasNan = false;
  bool hasPositiveZero = false;
  bool hasNegativeZero = false;
  for (std::int64_t i = 0; i < n; ++i) {
    const auto bits = std::bit_cast<BitsOf<T>>(a[i]);
    hasNan |= std::isnan(a[i]);
    hasPositiveZero |= bits == 0;
    hasNegativeZero |= bits == kTopBit<BitsOf<T>>;
  }
  return !hasNan && !(hasPositiveZero && hasNegativeZero);
}

/// Sorts up to 16 elements into `target`: each goes to the place that has as many before it as are
/// smaller, or equal and earlier.
template <class T>
void SortRun(const T* source, std::int64_t n, T* target) {
  for (std::int64_t i = 0; i < n; ++i) {
    const T value = source[i];
    std::int64_t place = 0;
    for (std::int64_t j = 0; j < i; ++j) place += source[j] <= value;
    for (std::int64_t j = i + 1; j < n; ++j) place += source[j] < value;
    target[place] = value;
  }
}

/// Merges two sorted runs into `target`.
template <class T>
void MergeRuns(const T* left, const T* leftEnd, const T* right, const T* rightEnd, T* target) {
  while (left != leftEnd && right != rightEnd) {
    const bool takeRight = *right < *left;
    *target++ = takeRight ? *right : *left;
    right += takeRight;
    left += !takeRight;
  }
  target = std::copy(left, leftEnd, target);
  std::copy(right, rightEnd, target);
}

/// Merge sort of n elements; returns which of the two blocks holds the result.
template <class T>
T* SortByMerging(T* a, T* scratch, std::int64_t n) {
  for (std::int64_t i = 0; i < n; i += kRunLength) {
    SortRun(a + i, std::min(kRunLength, n - i), scratch + i);
  }
  std::swap(a, scratch);
  for (std::int64_t width = kRunLength; width < n; width *= 2) {
    for (std::int64_t i = 0; i < n; i += 2 * width) {
      const std::int64_t middle = std::min(i + width, n);
      const std::int64_t end = std::min(middle + width, n);
      MergeRuns(a + i, a + middle, a + middle, a + end, scratch + i);
    }
    std::swap(a, scratch);
  }
  return a;
}

/// How often each value of each digit occurs, or where the next element with it goes.
template <class T>
class DigitTable {
 public:
  static constexpr int kDigits = static_cast<int>(sizeof(T));

  /// Counts the digits of n elements.
  void Count(const T* a, std::int64_t n) {
    for (std::int64_t i = 0; i < n; ++i) {
      const BitsOf<T> bits = ToOrderedBits(a[i]);
      for (int digit = 0; digit < kDigits; ++digit) ++Entry(bits, digit);
    }
  }
  /// Turns the counts of a digit into the places of the first element with each value.
  void MakePlaces(int digit) {
    std::int64_t place = 0;
    for (std::int64_t& entry : entries_[digit]) place += std::exchange(entry, place);
  }
  /// The entry of the value that an element's digit has.
  std::int64_t& Entry(BitsOf<T> bits, int digit) {
    return entries_[digit][(bits >> (kDigitBits * digit)) % kDigitValues];
  }

 private:
  std::int64_t entries_[sizeof(T)][kDigitValues] = {};
};

/// Radix sort of n elements; returns which of the two blocks holds the result.
template <class T>
T* SortByRadix(T* a, T* scratch, std::int64_t n) {
  DigitTable<T> table;
  table.Count(a, n);
  for (int digit = 0; digit < DigitTable<T>::kDigits; ++digit) {
    if (table.Entry(ToOrderedBits(a[0]), digit) == n) continue;
    table.MakePlaces(digit);
    for (std::int64_t i = 0; i < n; ++i) {
      scratch[table.Entry(ToOrderedBits(a[i]), digit)++] = a[i];
    }
    std::swap(a, scratch);
  }
  return a;
}

/// Sorts an array whose sorted order is unique, with a block of n elements as work area.
template <class T>
void SortUnique(T* a, std::int64_t n, T* scratch) {
  if (std::is_sorted(a, a + n)) return;
  if (std::is_sorted(a, a + n, std::greater<T>())) return std::reverse(a, a + n);
  const T* const sorted =
      n < kRadixMinimum<T> ? SortByMerging(a, scratch, n) : SortByRadix(a, scratch, n);
  if (sorted != a) std::copy_n(sorted, n, a);
}

}  // namespace tarn

#endif
