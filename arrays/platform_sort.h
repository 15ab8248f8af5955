#ifndef TARN_ARRAYS_PLATFORM_SORT_H
#define TARN_ARRAYS_PLATFORM_SORT_H

/// @file
/// Sorting of 8-byte units with the C library's `qsort`, each unit a double or a pair of 4-byte
/// numbers compared by the first of the two.
///
/// `qsort` promises nothing when the comparison is inconsistent, as `T_compare` is with NaN, and
/// may then run out of its range. Such arrays are merge-sorted here with the same comparison:
/// halves of n / 2 and n - n / 2 units, the left one first among equals. Common C libraries sort
/// just so.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "arrays/sort.h"
#include "frame/host_block.h"

namespace tarn {

/// Two 4-byte numbers that are sorted as one unit.
template <class T>
struct ElementPair {
  T first;
  T second;
};

/// Type of the number that a unit is compared by.
template <class Unit>
struct UnitKey {
  using Type = Unit;
  static Type Of(const Unit& unit) { return unit; }
};
template <class T>
struct UnitKey<ElementPair<T>> {
  using Type = T;
  static Type Of(const ElementPair<T>& unit) { return unit.first; }
};

/// Merges units[0 .. half) and units[half .. count), each sorted; `scratch` has room for the
/// former.
template <class Unit>
void MergeHalves(Unit* units, std::int64_t half, std::int64_t count, Unit* scratch) {
  std::copy_n(units, half, scratch);
  const Unit* left = scratch;
  const Unit* const leftEnd = scratch + half;
  const Unit* right = units + half;
  const Unit* const rightEnd = units + count;
  Unit* merged = units;
  while (left != leftEnd && right != rightEnd) {
    const bool takeLeft = T_compare<typename UnitKey<Unit>::Type>(left, right) <= 0;
    *merged++ = takeLeft ? *left++ : *right++;
  }
  std::copy(left, leftEnd, merged);
}

/// Merge sort; `scratch` has room for half the units. The recursion is as deep as the logarithm of
/// the count.
template <class Unit>
void MergeSort(Unit* units, std::int64_t count, Unit* scratch) {
  if (count < 2) return;
  const std::int64_t half = count / 2;
  MergeSort(units, half, scratch);
  MergeSort(units + half, count - half, scratch);
  MergeHalves(units, half, count, scratch);
}

/// Sorts units by their keys. Without NaN as `qsort` does; with NaN nothing is moved when the host
/// heap refuses a scratch block.
template <class Unit>
void SortUnits(Unit* units, std::int64_t count) {
  static_assert(sizeof(Unit) == 8);
  const bool hasNan = std::any_of(
      units, units + count, [](const Unit& unit) { return std::isnan(UnitKey<Unit>::Of(unit)); });
  if (!hasNan) {
    using Key = typename UnitKey<Unit>::Type;
    std::qsort(units, static_cast<std::size_t>(count), sizeof(Unit), T_compare<Key>);
    return;
  }
  const ScopedBlock<Unit> scratch(AllocateBlock<Unit>(count / 2));
  if (scratch.Get()) MergeSort(units, count, scratch.Get());
}

}  // namespace tarn

#endif
