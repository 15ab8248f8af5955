#ifndef TARN_ARRAYS_MEDIAN_IMPL_H
#define TARN_ARRAYS_MEDIAN_IMPL_H

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "arrays/host_block.h"
#include "arrays/median.h"

namespace tarn {

/// Mean of two floating-point numbers.
template <class T>
requires std::is_floating_point_v<T> T Mean(T a, T b) {
  const T sum = a + b;
  const bool overflows = std::isinf(sum) && std::isfinite(a) && std::isfinite(b);
  return overflows ? a + (b - a) / 2 : sum / 2;
}

/// Mean of two integers, truncated towards zero.
template <class T>
requires std::is_integral_v<T> T Mean(T a, T b) {
  const std::int64_t sum = std::int64_t{a} + b;
  const bool overflows =
      sum > std::numeric_limits<int>::max() || sum < std::numeric_limits<int>::min();
  return static_cast<T>(overflows ? a + (b - a) / 2 : static_cast<double>(sum) * 0.5);
}

/// A list of values in one of the work buffers.
template <class T>
struct ValueList {
  const T* values;
  std::int64_t count;
};

/// The lists that a partition makes.
template <class T>
struct SplitLists {
  ValueList<T> lower;
  ValueList<T> upper;
};

/// Distributes `list` about `split`, keeping the order of values. Values equal to it (and NaN) go
/// to either side in turn, the first to the upper one when `firstTieGoesUp`.
template <class T>
SplitLists<T> PartitionAbout(const ValueList<T>& list, T split, bool firstTieGoesUp, T* lower,
                             T* upper) {
  std::int64_t lowerCount = 0;
  std::int64_t upperCount = 0;
  bool tieGoesUp = firstTieGoesUp;
  for (std::int64_t i = 0; i < list.count; ++i) {
    const T value = list.values[i];
    const bool isTie = !(value < split) && !(value > split);
    if (isTie ? tieGoesUp : value > split) {
      upper[upperCount++] = value;
    } else {
      lower[lowerCount++] = value;
    }
    if (isTie) tieGoesUp = !tieGoesUp;
  }
  return {{lower, lowerCount}, {upper, upperCount}};
}

/// Whether every value of a list, which is not empty, equals its first.
template <class T>
bool IsConstant(const ValueList<T>& list) {
  for (std::int64_t i = 0; i < list.count; ++i) {
    if (!(list.values[i] == list.values[0])) return false;
  }
  return true;
}

/// Where the bisection stands: the median is among the values of `list` or between them.
template <class T>
struct MedianSearch {
  ValueList<T> list;
  std::int64_t knownBelow;  ///< how many values of the whole array lie below the list
  std::int64_t knownAbove;  ///< how many lie above it
  T lo;                     ///< the median is not below
  T hi;                     ///< the median is not above
  T split;                  ///< next value to partition about
};

/// Step 1's choice between two lists of different length.
template <class T>
MedianSearch<T> BeginSearch(const SplitLists<T>& lists, T pivot, T smallest, T largest) {
  if (lists.upper.count > lists.lower.count) {
    return {lists.upper, lists.lower.count, 0, pivot, largest, Mean(largest, pivot)};
  }
  return {lists.lower, 0, lists.upper.count, smallest, pivot, Mean(smallest, pivot)};
}

/// Step 2's choice: goes on in the list on the heavier side of the split.
template <class T>
void Narrow(MedianSearch<T>& search, const SplitLists<T>& lists, std::int64_t below,
            std::int64_t above) {
  if (below < above) {
    search.list = lists.upper;
    search.knownBelow = below;
    search.lo = search.split;
    search.split = Mean(search.split, search.hi);
  } else {
    search.list = lists.lower;
    search.knownAbove = above;
    search.hi = search.split;
    search.split = Mean(search.split, search.lo);
  }
}

/// Whether two splits are the same number, or both NaN.
template <class T>
bool IsSameSplit(T a, T b) {
  return a == b || (a != a && b != b);
}

/// Steps 2 and 3. The list never runs empty: the heavier side of a split has at least one value.
template <class T>
T RefineMedian(MedianSearch<T>& search, T** work) {
  int idleRounds = 0;
  for (int k = 1; search.list.count != 2; ++k) {
    if (IsConstant(search.list)) return search.list.values[0];
    const int parity = k % 2;
    const SplitLists<T> lists =
        PartitionAbout(search.list, search.split, parity == 0, work[parity], work[2 + parity]);
    const std::int64_t below = lists.lower.count + search.knownBelow;
    const std::int64_t above = lists.upper.count + search.knownAbove;
    if (below == above) return search.split;
    const std::int64_t oldCount = search.list.count;
    const T oldSplit = search.split;
    Narrow(search, lists, below, above);
    const bool isIdle = search.list.count == oldCount && IsSameSplit(search.split, oldSplit);
    idleRounds = isIdle ? idleRounds + 1 : 0;
    if (idleRounds == 2) return search.split;
  }
  return Mean(search.list.values[0], search.list.values[1]);
}

}  // namespace tarn

template <class T>
T QMedian(T* a, std::int64_t n, T** work) {
  if (n < 1) return 0;
  if (n == 1) return a[0];
  if (n == 2) return tarn::Mean(a[0], a[1]);
  const T pivot = a[n / 2];
  T smallest = a[0];
  T largest = a[0];
  for (std::int64_t i = 1; i < n; ++i) {
    if (a[i] < smallest) smallest = a[i];
    if (a[i] > largest) largest = a[i];
  }
  const tarn::SplitLists<T> lists =
      tarn::PartitionAbout(tarn::ValueList<T>{a, n}, pivot, true, work[0], work[2]);
  if (lists.lower.count == lists.upper.count) return pivot;
  tarn::MedianSearch<T> search = tarn::BeginSearch(lists, pivot, smallest, largest);
  return tarn::RefineMedian(search, work);
}

template <class T>
T QMedian(T* a, std::int64_t n) {
  if (n < 3) return QMedian(a, n, static_cast<T**>(nullptr));
  const tarn::ScopedBlock<T> block(
      tarn::IsAllocatable(n, 4 * sizeof(T)) ? tarn::AllocateBlock<T>(4 * n) : nullptr);
  if (!block.Get()) return 0;
  T* work[4] = {block.Get(), block.Get() + n, block.Get() + 2 * n, block.Get() + 3 * n};
  return QMedian(a, n, work);
}

#endif
