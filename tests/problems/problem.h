#ifndef TARN_TESTS_PROBLEMS_PROBLEM_H
#define TARN_TESTS_PROBLEMS_PROBLEM_H

/// @file
/// A minimisation problem as tests, tables and benchmarks use it.

#include <cmath>
#include <functional>
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
