#ifndef TARN_TESTS_PROBLEMS_BOUNDED_H
#define TARN_TESTS_PROBLEMS_BOUNDED_H

/// @file
/// Problems in which the box, flat or fixed variables, kinks or scales matter; made for this
/// collection, with minima that follow from their formulas.

#include <cmath>
#include <utility>
#include <vector>

#include "problems/problem.h"

namespace problems {

template <class T>
std::vector<Problem<T>> Bounded() {
  using X = const T*;
  std::vector<Problem<T>> list;
  const auto add = [&list](const char* name, std::vector<T> start, std::vector<T> bounds,
                           double minimum, std::function<T(X)> f) {
    list.push_back({name, std::move(start), std::move(bounds), minimum, minimum, std::move(f)});
  };
  add("bowl in one variable", {T(0.9)}, {-1, 2}, 0.25,
      [](X x) { return Square(x[0] - T(0.3)) + T(0.25); });
  add("minimum on a face", {T(0.5), T(0.5)}, {0, 1, 0, 2}, 1,
      [](X x) { return Square(x[0] + 1) + Square(x[1] - T(0.7)); });
  add("minimum in a corner", {T(0.5), T(0.5), T(0.1)}, {0, 1, 0, 1, 0, 1}, 3,
      [](X x) { return Square(x[0] + 1) + Square(x[1] - 2) + x[2] + Square(x[2] + 1); });
  add("start on a face", {0, 1}, {0, 4, -3, 1}, 0,
      [](X x) { return Square(x[0] - 1) + Square(x[1]); });
  add("fixed variable", {T(0.2), 5, T(0.2)}, {-1, 1, 5, 5, -2, 2}, 0,
      [](X x) { return Square(x[0] + x[2]) + Square(x[0] - x[2] - 1) + Square(x[1] - 5); });
  add("first variable fixed", {1, 1}, {1, 1, -3, 3}, 4,
      [](X x) { return 4 * x[0] + Square(x[1] - 2 * x[0]); });
  add("flat variable", {T(0.2), T(0.2)}, {-1, 1, -1, 1}, 0, [](X x) { return Square(x[0]); });
  add("kink", {T(0.9), T(-0.8)}, {-1, 2, -1, 2}, 0,
      [](X x) { return std::fabs(x[0]) + 3 * std::fabs(x[1] - x[0]); });
  add("scales apart", {3, 300}, {-10, 10, -1000, 1000}, 0,
      [](X x) { return Square(x[0] - 1) + Square(x[1] / 100 + x[0]); });
  add("reversed bounds", {T(0.8), T(0.3)}, {1, -1, 2, -2}, 0,
      [](X x) { return Square(x[0] - T(0.25)) + Square(x[1] + x[0]); });
  add("bounds that round", {T(0.13), T(0.21)}, {T(0.1), T(0.37), T(-0.3), T(0.7)}, 0.09,
      [](X x) { return Square(x[0] - T(0.4) - T(0.27)) + Square(x[1] - x[0]); });
  add("constant", {T(0.3), T(0.6)}, {0, 1, 0, 1}, 7, [](X) { return T(7); });
  return list;
}

}  // namespace problems

#endif
