#ifndef TARN_TESTS_ARRAYS_LITERAL_QUICKSORT_H
#define TARN_TESTS_ARRAYS_LITERAL_QUICKSORT_H

// A second, literal writing of the sorting procedure: the measure for where it puts elements.

#include <cstdint>
#include <utility>
#include <vector>

#include "tarn_base_math.h"

namespace tarn_test {

/// Sorts positions lo ... hi; `compare` and `swap` take two positions.
template <class Compare, class Swap>
void LiteralQuicksort(std::int64_t lo, std::int64_t hi, Compare compare, Swap swap) {
  if (hi <= lo) return;
  std::vector<std::pair<std::int64_t, std::int64_t>> stack{{lo, hi}};
  while (!stack.empty()) {
    const auto [l, h] = stack.back();
    stack.pop_back();
    if (h - l == 1) {
      if (compare(l, h) > 0) swap(l, h);
      continue;
    }
    std::int64_t p = (l + h) / 2;
    std::int64_t i = l;
    std::int64_t r = h;
    bool allEqual = true;
    while (i <= r) {
      const int c = compare(i, p);
      if (allEqual && c == 0) {
        ++i;
        continue;
      }
      allEqual = false;
      if (c < 1) {
        ++i;
        continue;
      }
      std::int64_t j = r;
      while (j >= i + 1 && !(compare(j, p) < 1)) --j;
      if (j >= i + 1) {
        swap(i, j);
        r = j - 1;
        if (p == j) p = i;
      } else {
        r = i - 1;
      }
      ++i;
    }
    if (allEqual) continue;
    if (p != r && compare(p, r) > 0) swap(p, r);
    if (l < r - 1) stack.emplace_back(l, r - 1);
    if (r + 1 < h) stack.emplace_back(r + 1, h);
  }
}

template <class T>
int Compare(T a, T b) {
  if (a == b) return 0;
  return a > b ? 1 : -1;
}

template <class T>
int Compare(const svd_index<T>& a, const svd_index<T>& b) {
  if (a.value == b.value) return 0;
  return a.value > b.value ? -1 : 1;
}

/// Sorts elements lo ... hi of an array.
template <class T>
void LiteralSort(T* a, std::int64_t lo, std::int64_t hi) {
  LiteralQuicksort(
      lo, hi, [a](std::int64_t i, std::int64_t j) { return Compare(a[i], a[j]); },
      [a](std::int64_t i, std::int64_t j) { std::swap(a[i], a[j]); });
}

/// Sorts indices lo ... hi by the keys that they point to.
inline void LiteralSortIndex(int* idx, const double* keys, std::int64_t lo, std::int64_t hi) {
  LiteralQuicksort(
      lo, hi, [&](std::int64_t i, std::int64_t j) { return Compare(keys[idx[i]], keys[idx[j]]); },
      [idx](std::int64_t i, std::int64_t j) { std::swap(idx[i], idx[j]); });
}

}  // namespace tarn_test

#endif
