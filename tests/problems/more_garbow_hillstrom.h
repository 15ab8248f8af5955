#ifndef TARN_TESTS_PROBLEMS_MORE_GARBOW_HILLSTROM_H
#define TARN_TESTS_PROBLEMS_MORE_GARBOW_HILLSTROM_H

/// @file
/// The standard collection of small problems: J. J. Moré, B. S. Garbow, K. E. Hillstrom, Testing
/// unconstrained optimization software, ACM Transactions on Mathematical Software 7 (1981) 17-41.
/// Every objective is a sum of squares; starts and minima are those published there, under the
/// number in the name. The boxes are this collection's own: wide, and not centred on the minimum.

#include <array>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

#include "problems/problem.h"

namespace problems {

template <class T>
class MoreGarbowHillstrom {
 public:
  static std::vector<Problem<T>> All() {
    std::vector<Problem<T>> all;
    AddTwoVariables(all);
    AddThreeVariables(all);
    AddFourVariables(all);
    AddSixVariables(all);
    AddVariable(all);
    return all;
  }

 private:
  using X = const T*;
  using List = std::vector<Problem<T>>;

  static void Add(List& list, const char* name, const std::vector<double>& start,
                  std::vector<T> bounds, double minimum, std::function<T(X)> f) {
    Add(list, name, start, std::move(bounds), minimum, minimum, std::move(f));
  }

  static void Add(List& list, const char* name, const std::vector<double>& start,
                  std::vector<T> bounds, double minimum, double localMinimum,
                  std::function<T(X)> f) {
    std::vector<T> typed;
    for (const double x : start) typed.push_back(static_cast<T>(x));
    list.push_back(
        {name, std::move(typed), std::move(bounds), minimum, localMinimum, std::move(f)});
  }

  static std::vector<T> Bounds(const std::vector<double>& values) {
    std::vector<T> typed;
    for (const double x : values) typed.push_back(static_cast<T>(x));
    return typed;
  }

  static void AddTwoVariables(List& list) {
    Add(list, "1 Rosenbrock", {-1.2, 1}, Box<T>(2, -5, 10), 0,
        [](X x) { return Square(10 * (x[1] - x[0] * x[0])) + Square(1 - x[0]); });
    Add(list, "2 Freudenstein-Roth", {0.5, -2}, Box<T>(2, -20, 30), 0, 48.9842, [](X x) {
      return Square(-13 + x[0] + ((5 - x[1]) * x[1] - 2) * x[1]) +
             Square(-29 + x[0] + ((x[1] + 1) * x[1] - 14) * x[1]);
    });
    Add(list, "5 Beale", {1, 1}, Box<T>(2, -4, 5), 0, [](X x) {
      return Square(T(1.5) - x[0] * (1 - x[1])) + Square(T(2.25) - x[0] * (1 - Square(x[1]))) +
             Square(T(2.625) - x[0] * (1 - x[1] * x[1] * x[1]));
    });
    Add(list, "6 Jennrich-Sampson", {0.3, 0.4}, Box<T>(2, -1, 1.5), 124.362, [](X x) {
      T sum = 0;
      for (int i = 1; i <= 10; ++i) {
        const T t = static_cast<T>(i);
        sum += Square(2 + 2 * t - (std::exp(t * x[0]) + std::exp(t * x[1])));
      }
      return sum;
    });
  }

  static void AddThreeVariables(List& list) {
    Add(list, "7 helical valley", {-1, 0, 0}, Box<T>(3, -7, 10), 0, [](X x) {
      const T pi = static_cast<T>(3.14159265358979323846L);
      const T r = std::sqrt(x[0] * x[0] + x[1] * x[1]);
      T theta = std::atan(x[1] / x[0]) / (2 * pi);
      if (x[0] < 0) theta += T(0.5);
      if (x[0] == 0) theta = x[1] > 0 ? T(0.25) : x[1] < 0 ? T(-0.25) : T(0);
      return Square(10 * (x[2] - 10 * theta)) + Square(10 * (r - 1)) + Square(x[2]);
    });
    Add(list, "8 Bard", {1, 1, 1}, Box<T>(3, 0.01, 10), 8.21487e-3, [](X x) {
      static const double y[15] = {0.14, 0.18, 0.22, 0.25, 0.29, 0.32, 0.35, 0.39,
                                   0.37, 0.58, 0.73, 0.96, 1.34, 2.10, 4.39};
      T sum = 0;
      for (int i = 1; i <= 15; ++i) {
        const T u = static_cast<T>(i);
        const T v = static_cast<T>(16 - i);
        const T w = u < v ? u : v;
        sum += Square(static_cast<T>(y[i - 1]) - (x[0] + u / (v * x[1] + w * x[2])));
      }
      return sum;
    });
    Add(list, "9 Gaussian", {0.4, 1, 0}, Box<T>(3, -2, 3), 1.12793e-8, [](X x) {
      static const double y[15] = {0.0009, 0.0044, 0.0175, 0.0540, 0.1295, 0.2420, 0.3521, 0.3989,
                                   0.3521, 0.2420, 0.1295, 0.0540, 0.0175, 0.0044, 0.0009};
      T sum = 0;
      for (int i = 1; i <= 15; ++i) {
        const T t = static_cast<T>(8 - i) / 2;
        sum += Square(x[0] * std::exp(-x[1] * Square(t - x[2]) / 2) - static_cast<T>(y[i - 1]));
      }
      return sum;
    });
    Add(list, "12 Box three-dimensional", {0, 10, 20}, Box<T>(3, -5, 30), 0, [](X x) {
      T sum = 0;
      for (int i = 1; i <= 10; ++i) {
        const T t = static_cast<T>(0.1 * i);
        sum += Square(std::exp(-t * x[0]) - std::exp(-t * x[1]) -
                      x[2] * (std::exp(-t) - std::exp(-10 * t)));
      }
      return sum;
    });
  }

  static void AddFourVariables(List& list) {
    Add(list, "13 Powell singular", {3, -1, 0, 1}, Box<T>(4, -4, 5), 0, PowellSingular(1));
    Add(list, "14 Wood", {-3, -1, -3, -1}, Box<T>(4, -10, 11), 0, [](X x) {
      const T root90 = std::sqrt(T(90));
      const T root10 = std::sqrt(T(10));
      return Square(10 * (x[1] - x[0] * x[0])) + Square(1 - x[0]) +
             Square(root90 * (x[3] - x[2] * x[2])) + Square(1 - x[2]) +
             Square(root10 * (x[1] + x[3] - 2)) + Square((x[1] - x[3]) / root10);
    });
    Add(list, "15 Kowalik-Osborne", {0.25, 0.39, 0.415, 0.39}, Box<T>(4, 0, 1), 3.07505e-4,
        [](X x) {
          static const double y[11] = {0.1957, 0.1947, 0.1735, 0.1600, 0.0844, 0.0627,
                                       0.0456, 0.0342, 0.0323, 0.0235, 0.0246};
          static const double us[11] = {4,     2,   1,      0.5,    0.25,  0.167,
                                        0.125, 0.1, 0.0833, 0.0714, 0.0625};
          T sum = 0;
          for (int i = 0; i < 11; ++i) {
            const T u = static_cast<T>(us[i]);
            sum += Square(static_cast<T>(y[i]) -
                          x[0] * (u * u + u * x[1]) / (u * u + u * x[2] + x[3]));
          }
          return sum;
        });
    Add(list, "16 Brown-Dennis", {25, 5, -5, -1}, Box<T>(4, -40, 50), 85822.2, [](X x) {
      T sum = 0;
      for (int i = 1; i <= 20; ++i) {
        const T t = static_cast<T>(i) / 5;
        sum += Square(Square(x[0] + t * x[1] - std::exp(t)) +
                      Square(x[2] + x[3] * std::sin(t) - std::cos(t)));
      }
      return sum;
    });
  }

  static void AddSixVariables(List& list) {
    Add(list, "18 Biggs EXP6", {1, 2, 1, 1, 1, 1}, Box<T>(6, -2, 12), 0, 5.65565e-3, [](X x) {
      T sum = 0;
      for (int i = 1; i <= 13; ++i) {
        const T t = static_cast<T>(0.1 * i);
        const T y = std::exp(-t) - 5 * std::exp(-10 * t) + 3 * std::exp(-4 * t);
        sum += Square(x[2] * std::exp(-t * x[0]) - x[3] * std::exp(-t * x[1]) +
                      x[5] * std::exp(-t * x[4]) - y);
      }
      return sum;
    });
    Add(list, "20 Watson, 6", std::vector<double>(6, 0), Box<T>(6, -3, 4), 2.28767e-3, Watson(6));
    Add(list, "20 Watson, 9", std::vector<double>(9, 0), Box<T>(9, -9, 9), 1.39976e-6, Watson(9));
  }

  static void AddVariable(List& list) {
    std::vector<double> start;
    for (int i = 0; i < 5; ++i) start.insert(start.end(), {-1.2, 1});
    Add(list, "21 extended Rosenbrock, 10", start, Box<T>(10, -5, 10), 0, [](X x) {
      T sum = 0;
      for (int i = 0; i < 10; i += 2) {
        sum += Square(10 * (x[i + 1] - x[i] * x[i])) + Square(1 - x[i]);
      }
      return sum;
    });
    start.clear();
    for (int i = 0; i < 2; ++i) start.insert(start.end(), {3, -1, 0, 1});
    Add(list, "22 extended Powell singular, 8", start, Box<T>(8, -4, 5), 0, PowellSingular(2));
    Add(list, "23 penalty I, 4", {1, 2, 3, 4}, Box<T>(4, -5, 6), 2.24997e-5, PenaltyI(4));
    Add(list, "24 penalty II, 4", std::vector<double>(4, 0.5), Box<T>(4, -3, 4), 9.37629e-6,
        PenaltyII(4));
    start.clear();
    for (int i = 1; i <= 6; ++i) start.push_back(1 - i / 6.0);
    Add(list, "25 variably dimensioned, 6", start, Box<T>(6, -2, 3), 0, VariablyDimensioned(6));
    Add(list, "26 trigonometric, 5", std::vector<double>(5, 0.2), Box<T>(5, -1, 1.5), 0, 2.79506e-5,
        Trigonometric(5));
    Add(list, "27 Brown almost-linear, 5", std::vector<double>(5, 0.5), Box<T>(5, -2, 7), 0, 1,
        BrownAlmostLinear(5));
    start.clear();
    for (int i = 1; i <= 8; ++i) start.push_back(i / 9.0 * (i / 9.0 - 1));
    Add(list, "28 discrete boundary value, 8", start, Box<T>(8, -1, 1.5), 0,
        DiscreteBoundaryValue(8));
    Add(list, "30 Broyden tridiagonal, 8", std::vector<double>(8, -1), Box<T>(8, -3, 2), 0,
        BroydenTridiagonal(8));
    start.clear();
    for (int i = 1; i <= 6; ++i) start.push_back(i / 7.0);
    Add(list, "35 Chebyquad, 6", start, Box<T>(6, 0, 1), 0, Chebyquad(6));
    start.clear();
    for (int i = 1; i <= 8; ++i) start.push_back(i / 9.0);
    Add(list, "35 Chebyquad, 8", start, Box<T>(8, 0, 1), 3.51687e-3, Chebyquad(8));
  }

  static std::function<T(X)> PowellSingular(int blocks) {
    return [blocks](X x) {
      T sum = 0;
      for (int b = 0; b < blocks; ++b, x += 4) {
        sum += Square(x[0] + 10 * x[1]) + 5 * Square(x[2] - x[3]) +
               Square(Square(x[1] - 2 * x[2])) + 10 * Square(Square(x[0] - x[3]));
      }
      return sum;
    };
  }

  static std::function<T(X)> Watson(int n) {
    return [n](X x) {
      T sum = Square(x[0]) + Square(x[1] - x[0] * x[0] - 1);
      for (int i = 1; i <= 29; ++i) {
        const T t = static_cast<T>(i) / 29;
        T slope = 0;
        T value = 0;
        T power = 1;  // t^(j-1)
        for (int j = 0; j < n; ++j) {
          if (j + 1 < n) slope += static_cast<T>(j + 1) * x[j + 1] * power;
          value += x[j] * power;
          power *= t;
        }
        sum += Square(slope - value * value - 1);
      }
      return sum;
    };
  }

  static std::function<T(X)> PenaltyI(int n) {
    return [n](X x) {
      T sum = 0;
      T squares = 0;
      for (int i = 0; i < n; ++i) {
        sum += static_cast<T>(1e-5) * Square(x[i] - 1);
        squares += x[i] * x[i];
      }
      return sum + Square(squares - T(0.25));
    };
  }

  static std::function<T(X)> PenaltyII(int n) {
    return [n](X x) {
      const T a = static_cast<T>(1e-5);
      T sum = Square(x[0] - T(0.2));
      T weighted = static_cast<T>(n) * x[0] * x[0];
      for (int i = 1; i < n; ++i) {
        const T y = std::exp(static_cast<T>(i + 1) / 10) + std::exp(static_cast<T>(i) / 10);
        sum += a * Square(std::exp(x[i] / 10) + std::exp(x[i - 1] / 10) - y);
        sum += a * Square(std::exp(x[i] / 10) - std::exp(T(-1) / 10));
        weighted += static_cast<T>(n - i) * x[i] * x[i];
      }
      return sum + Square(weighted - 1);
    };
  }

  static std::function<T(X)> VariablyDimensioned(int n) {
    return [n](X x) {
      T sum = 0;
      T weighted = 0;
      for (int i = 0; i < n; ++i) {
        sum += Square(x[i] - 1);
        weighted += static_cast<T>(i + 1) * (x[i] - 1);
      }
      return sum + Square(weighted) + Square(Square(weighted));
    };
  }

  static std::function<T(X)> Trigonometric(int n) {
    return [n](X x) {
      T cosines = 0;
      for (int j = 0; j < n; ++j) cosines += std::cos(x[j]);
      T sum = 0;
      for (int i = 0; i < n; ++i) {
        sum += Square(static_cast<T>(n) - cosines + static_cast<T>(i + 1) * (1 - std::cos(x[i])) -
                      std::sin(x[i]));
      }
      return sum;
    };
  }

  static std::function<T(X)> BrownAlmostLinear(int n) {
    return [n](X x) {
      T total = 0;
      T product = 1;
      for (int j = 0; j < n; ++j) {
        total += x[j];
        product *= x[j];
      }
      T sum = Square(product - 1);
      for (int i = 0; i + 1 < n; ++i) sum += Square(x[i] + total - static_cast<T>(n + 1));
      return sum;
    };
  }

  static std::function<T(X)> DiscreteBoundaryValue(int n) {
    return [n](X x) {
      const T h = T(1) / static_cast<T>(n + 1);
      T sum = 0;
      for (int i = 0; i < n; ++i) {
        const T before = i == 0 ? T(0) : x[i - 1];
        const T after = i + 1 == n ? T(0) : x[i + 1];
        const T bracket = x[i] + static_cast<T>(i + 1) * h + 1;
        sum += Square(2 * x[i] - before - after + h * h * bracket * bracket * bracket / 2);
      }
      return sum;
    };
  }

  static std::function<T(X)> BroydenTridiagonal(int n) {
    return [n](X x) {
      T sum = 0;
      for (int i = 0; i < n; ++i) {
        const T before = i == 0 ? T(0) : x[i - 1];
        const T after = i + 1 == n ? T(0) : x[i + 1];
        sum += Square((3 - 2 * x[i]) * x[i] - before - 2 * after + 1);
      }
      return sum;
    };
  }

  /// The mean of the shifted Chebyshev polynomial T_i over the points, less its integral over [0,
  /// 1].
  static std::function<T(X)> Chebyquad(int n) {
    return [n](X x) {
      T sum = 0;
      for (int i = 1; i <= n; ++i) {
        T mean = 0;
        for (int j = 0; j < n; ++j) {
          T before = 1;
          T value = 2 * x[j] - 1;
          for (int k = 1; k < i; ++k) {
            const T next = 2 * (2 * x[j] - 1) * value - before;
            before = value;
            value = next;
          }
          mean += value;
        }
        mean /= static_cast<T>(n);
        const T integral = i % 2 == 0 ? T(-1) / static_cast<T>(i * i - 1) : T(0);
        sum += Square(mean - integral);
      }
      return sum;
    };
  }
};

}  // namespace problems

#endif
