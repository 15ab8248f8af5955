#ifndef TARN_TESTS_PROBLEMS_PROBLEM_H
#define TARN_TESTS_PROBLEMS_PROBLEM_H

/// @file
/// A minimisation problem as tests, tables and benchmarks use it.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace problems {

/// f(x) with its published start and minimum, inside a box that holds both.
template <class T>
struct Problem {
  std::string name;
  std::vector<T> start;
  std::vector<T> bounds;  ///< lo_0, hi_0, lo_1, hi_1, ...
  double minimum;         ///< lowest published value in the box
  double localMinimum;    ///< value of another published local minimum, or `minimum`
  std::function<T(const T*)> f;

  int Dimension() const { return static_cast<int>(start.size()); }

  /// Whether coordinate i of a point lies between its bounds, but for the rounding errors of the
  /// scaled coordinate s and of s/(1/(hi - lo)) + lo: each is at most half a unit of what it
  /// rounds.
  bool Contains(std::size_t i, T x) const {
    const T lo = std::min(bounds[2 * i], bounds[2 * i + 1]);
    const T hi = std::max(bounds[2 * i], bounds[2 * i + 1]);
    const T rounding =
        4 * std::numeric_limits<T>::epsilon() * std::max({std::fabs(lo), std::fabs(hi), hi - lo});
    return x >= lo - rounding && x <= hi + rounding;
  }
};

/// The same interval for each of n variables.
template <class T>
std::vector<T> Box(int n, double lo, double hi) {
  std::vector<T> bounds;
  for (int i = 0; i < n; ++i) {
    bounds.push_back(static_cast<T>(lo));
    bounds.push_back(static_cast<T>(hi));
  }
  return bounds;
}

template <class T>
T Square(T x) {
  return x * x;
}

}  // namespace problems

#endif
