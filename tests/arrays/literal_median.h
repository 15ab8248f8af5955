#ifndef TARN_TESTS_ARRAYS_LITERAL_MEDIAN_H
#define TARN_TESTS_ARRAYS_LITERAL_MEDIAN_H

// A second, literal writing of the median by bisection, with both lists of every round.

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <vector>

namespace tarn_test {

template <class T>
T LiteralMean(T a, T b) {
  if constexpr (std::is_integral_v<T>) {
    const std::int64_t sum = std::int64_t{a} + b;
    if (sum != static_cast<std::int32_t>(sum)) return static_cast<T>(a + (b - a) / 2);
    return static_cast<T>(static_cast<double>(sum) * 0.5);
  } else {
    const T sum = a + b;
    if (std::isinf(sum) && std::isfinite(a) && std::isfinite(b)) return a + (b - a) / 2;
    return sum / 2;
  }
}

template <class T>
T LiteralMedian(const std::vector<T>& a) {
  if (a.empty()) return 0;
  if (a.size() == 1) return a[0];
  if (a.size() == 2) return LiteralMean(a[0], a[1]);
  const T v = a[a.size() / 2];
  T minimum = a[0];
  T maximum = a[0];
  std::vector<T> lists[4];
  int equal = 0;
  for (const T x : a) {
    if (x < minimum) minimum = x;
    if (x > maximum) maximum = x;
    if (x < v) {
      lists[0].push_back(x);
    } else if (x > v) {
      lists[2].push_back(x);
    } else {
      lists[++equal % 2 == 1 ? 2 : 0].push_back(x);
    }
  }
  if (lists[0].size() == lists[2].size()) return v;
  const bool startsUp = lists[2].size() > lists[0].size();
  std::vector<T> current = startsUp ? lists[2] : lists[0];
  std::size_t knownBelow = startsUp ? lists[0].size() : 0;
  std::size_t knownAbove = startsUp ? 0 : lists[2].size();
  T lo = startsUp ? v : minimum;
  T hi = startsUp ? maximum : v;
  T s = startsUp ? LiteralMean(maximum, v) : LiteralMean(minimum, v);
  int unchanged = 0;
  for (int k = 1; current.size() != 2; ++k) {
    std::vector<T>& lower = lists[k % 2];
    std::vector<T>& upper = lists[2 + k % 2];
    if (current.empty()) return lower[0];
    lower.clear();
    upper.clear();
    int counter = k % 2;
    bool allEqual = true;
    for (const T x : current) {
      if (!(x == current[0])) allEqual = false;
      if (x < s) {
        lower.push_back(x);
      } else if (x > s) {
        upper.push_back(x);
      } else if (++counter % 2 == 0) {
        lower.push_back(x);
      } else {
        upper.push_back(x);
      }
    }
    if (allEqual) return current[0];
    const std::size_t below = lower.size() + knownBelow;
    const std::size_t above = upper.size() + knownAbove;
    if (below == above) return s;
    const std::size_t countBefore = current.size();
    const T splitBefore = s;
    if (below < above) {
      knownBelow = below;
      lo = s;
      s = LiteralMean(s, hi);
      current = upper;
    } else {
      knownAbove = above;
      hi = s;
      s = LiteralMean(s, lo);
      current = lower;
    }
    const bool sameSplit = s == splitBefore || (s != s && splitBefore != splitBefore);
    unchanged = sameSplit && current.size() == countBefore ? unchanged + 1 : 0;
    if (unchanged == 2) return s;  // nothing would ever change again
  }
  return LiteralMean(current[0], current[1]);
}

}  // namespace tarn_test

#endif
