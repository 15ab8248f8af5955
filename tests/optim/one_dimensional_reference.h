#ifndef TARN_TESTS_OPTIM_ONE_DIMENSIONAL_REFERENCE_H
#define TARN_TESTS_OPTIM_ONE_DIMENSIONAL_REFERENCE_H

/// @file
/// The one-dimensional searches a second time, as plain procedures that log where they evaluate.

#include <cmath>
#include <functional>
#include <vector>

namespace reference {

template <class T>
struct Log {
  std::vector<T> evaluated;             ///< abscissae in order of evaluation
  std::vector<std::pair<T, T>> traced;  ///< abscissa and value of every trace line
};

/// Halving of a bracketing interval; b first, then a, then midpoints.
inline double Bisect(const std::function<double(double)>& f, double a, double b, double accuracy,
                     Log<double>& log) {
  auto at = [&](double x) {
    log.evaluated.push_back(x);
    return f(x);
  };
  const double w0 = b - a;
  if (std::fabs(w0) == 0) return b;
  double fb = at(b);
  if (fb == 0) return b;
  log.traced.emplace_back(b, fb);
  double fa = at(a);
  if (fa == 0) return a;
  log.traced.emplace_back(a, fa);
  if (fa * fb > 0) {
    if (fb <= 0) return fa < fb ? b : a;
    return fb <= fa ? b : a;
  }
  double m = (a + b) * 0.5;
  double fm = at(m);
  if (fm == 0) return m;
  log.traced.emplace_back(m, fm);
  while (std::fabs(b - a) / std::fabs(w0) > accuracy) {
    if (fm * fb > 0) {
      b = m;
      fb = fm;
    } else {
      a = m;
    }
    m = (a + b) * 0.5;
    fm = at(m);
    if (fm == 0) return m;
    log.traced.emplace_back(m, fm);
  }
  return (a + b) * 0.5;
}

/// The steps that the class and the free functions have in common, from the first inner point on.
template <class T, class At>
T ShrinkGolden(T a, T b, T x, T fa, T fb, T fx, T g, T denominator, T accuracy, At at) {
  while (std::fabs(b - a) / denominator > accuracy) {
    const bool right = std::fabs(b - x) > std::fabs(a - x);
    const T u = right ? x + g * (b - x) : a + g * (x - a);
    const T fu = at(u);
    int action = 0;  // 1: u becomes the inner point, 2: u becomes an end
    if (fu < fx) action = 1;
    if (fu == fx && fx <= fa && fx <= fb) action = 1;
    if (fu > fx) action = 2;
    if (fu == fx && (fx > fa || fx > fb)) {
      if (fa <= fb) action = right ? 2 : 1;
      if (fa > fb) action = right ? 1 : 2;
    }
    if (action == 1 && right) {
      a = x;
      fa = fx;
      x = u;
      fx = fu;
    } else if (action == 1) {
      b = x;
      fb = fx;
      x = u;
      fx = fu;
    } else if (action == 2 && right) {
      b = u;
      fb = fu;
    } else if (action == 2) {
      a = u;
      fa = fu;
    }
  }
  if (fx > fa) return a;
  if (fb < fx) return b;
  return x;
}

/// Golden section with the split of an interval whose inner point lies above both ends.
inline double Golden(const std::function<double(double)>& f, double a, double b, double accuracy,
                     Log<double>& log) {
  const double g = 0.381966011250105;
  auto at = [&](double x) {
    log.evaluated.push_back(x);
    return f(x);
  };
  auto traced = [&](double x) {
    const double value = at(x);
    log.traced.emplace_back(x, value);
    return value;
  };
  const double fb = traced(b);
  const double fa = traced(a);
  const double x = a + g * (b - a);
  const double fx = at(x);
  if (fx > fb && fx > fa) {
    const double r1 = Golden(f, a, x, accuracy, log);
    const double f1 = at(r1);
    const double r2 = Golden(f, x, b, accuracy, log);
    const double f2 = at(r2);
    return f2 <= f1 ? r2 : r1;
  }
  log.traced.emplace_back(x, fx);
  return ShrinkGolden(a, b, x, fa, fb, fx, g, std::fabs(b - a), accuracy, traced);
}

/// Golden section without a split, measured by d = max(b - a, (|a| + |b|)/2).
template <class T>
T GoldenFree(const std::function<T(T)>& f, T a, T b, T accuracy, T g, Log<T>& log) {
  auto at = [&](T x) {
    log.evaluated.push_back(x);
    return f(x);
  };
  const T half = (std::fabs(a) + std::fabs(b)) * T(0.5);
  const T d = b - a > half ? b - a : half;
  const T fb = at(b);
  const T fa = at(a);
  const T x = a + g * (b - a);
  const T fx = at(x);
  return ShrinkGolden(a, b, x, fa, fb, fx, g, d, accuracy, at);
}

}  // namespace reference

#endif
