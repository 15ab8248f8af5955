#ifndef TARN_STAT_SORT_NUMBERS_H
#define TARN_STAT_SORT_NUMBERS_H

/// @file
/// Sorting that depends neither on memory nor on luck.

#include <algorithm>
#include <cmath>

#include "arrays/sort.h"
#include "arrays/unique_sort.h"

namespace tarn {

/// Order of numbers with the negative zero before the positive one and NaN behind all others.
inline bool ComesBefore(double a, double b) {
  return a < b || (std::isnan(b) && !std::isnan(a)) ||
         (a == b && std::signbit(a) && !std::signbit(b));
}

/// Sorts numbers in ascending order: the negative zero before the positive one, NaN last.
///
/// `QSort` is the fastest way, but leaves long arrays as they are when the host heap refuses its
/// work areas, and takes quadratic time on some arrays with NaN or zeros of both signs.
inline void SortNumbers(double* numbers, int count) {
  if (HasUniqueOrder(numbers, count)) QSort(numbers, count);
  if (!std::is_sorted(numbers, numbers + count, ComesBefore)) {
    std::sort(numbers, numbers + count, ComesBefore);
  }
}

}  // namespace tarn

#endif
