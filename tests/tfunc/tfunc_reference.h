#ifndef TARN_TESTS_TFUNC_TFUNC_REFERENCE_H
#define TARN_TESTS_TFUNC_TFUNC_REFERENCE_H

/// A second version of every search and integral of tabulated functions, step by step and without
/// any thought of speed, to compare bits with.

#include <cmath>
#include <utility>
#include <vector>

#include "tfunc_test_support.h"

namespace tfunc_reference {

using Points = std::vector<double>;

struct Bracket {
  int lo, hi;
};

inline double At(const Points& v, int i) { return v.at(static_cast<std::size_t>(i)); }
inline int Size(const Points& v) { return static_cast<int>(v.size()); }

inline Bracket Bisect(const Points& x, double value) {
  int lo = 0;
  int hi = Size(x) - 1;
  while (hi - lo > 1) {
    const int mid = (lo + hi) / 2;
    if (At(x, mid) > value) {
      hi = mid;
    } else {
      lo = mid;
    }
  }
  return {lo, hi};
}

inline double Evaluate(const Points& x, const Points& y, double value) {
  const int n = Size(x);
  if (n == 0) return 0;
  if (value <= x.front()) return y.front();
  if (value >= x.back()) return y.back();
  if (n == 2) return y[0] + (y[1] - y[0]) * (value - x[0]) / (x[1] - x[0]);
  const Bracket b = Bisect(x, value);
  return At(y, b.lo) +
         (At(y, b.hi) - At(y, b.lo)) * (value - At(x, b.lo)) / (At(x, b.hi) - At(x, b.lo));
}

inline int Nearest(const Points& x, double value) {
  const int n = Size(x);
  if (n == 0) return 0;
  if (value <= x.front()) return 0;
  if (value >= x.back()) return n - 1;
  if (n == 2) return value - x[0] > x[1] - value ? 1 : 0;
  const Bracket b = Bisect(x, value);
  return value - At(x, b.lo) > At(x, b.hi) - value ? b.hi : b.lo;
}

inline int AtOrBelow(const Points& x, double value) {
  const int n = Size(x);
  if (n == 0) return 0;
  if (value == x.front()) return 0;
  if (value < x.front()) return -1;
  if (value >= x.back()) return n - 1;
  if (n == 2) return 0;
  const Bracket b = Bisect(x, value);
  return value >= At(x, b.hi) ? b.hi : b.lo;
}

inline Points Trapezoids(const Points& x, const Points& y) {
  if (x.size() <= 1) return y;
  Points sum(x.size(), 0.0);
  for (std::size_t i = 1; i < x.size(); ++i) {
    sum[i] = sum[i - 1] + (x[i] - x[i - 1]) * (y[i - 1] + y[i]) / 2;
  }
  return sum;
}

struct Coefficients {
  double a, b;
};

inline Coefficients Parabola(double d1, double d2, double y0, double y1, double y2) {
  const double D = (d1 * d1) * d2 + d1 * (d2 * d2);
  return {(y2 * d1 + y0 * d2 - (d1 + d2) * y1) / D,
          (y2 * (d1 * d1) - y0 * (d2 * d2) + (d2 * d2 - d1 * d1) * y1) / D};
}

inline Points Simpson(const Points& x, const Points& y) {
  const std::size_t n = x.size();
  if (n <= 2) return Trapezoids(x, y);
  const double h = x[1] - x[0];
  bool uniform = true;
  for (std::size_t i = 1; i < n; ++i) uniform = uniform && x[i] - x[i - 1] == h;

  Points sum(n, 0.0);
  if (uniform) {
    sum[1] = (5 * y[0] + 8 * y[1] - y[2]) * (h / 12);
    for (std::size_t i = 2; i < n; i += 2) {
      sum[i] = sum[i - 2] + (y[i - 2] + 4 * y[i - 1] + y[i]) * (h / 3);
      if (i + 1 < n) sum[i + 1] = sum[i] + (8 * y[i] + 5 * y[i + 1] - y[i - 1]) * (h / 12);
    }
    return sum;
  }
  for (std::size_t i = 2; i < n; ++i) {
    const double d1 = x[i - 1] - x[i - 2];
    const double d2 = x[i] - x[i - 1];
    const double cube1 = d1 * d1 * d1;
    const double cube2 = d2 * d2 * d2;
    const auto [a, b] = Parabola(d1, d2, y[i - 2], y[i - 1], y[i]);
    if (i == 2) sum[1] = a * cube1 / 3 - b * (d1 * d1) / 2 + y[1] * d1;
    if (i % 2 == 1) {
      sum[i] = sum[i - 1] + a * cube2 / 3 + b * (d2 * d2) / 2 + y[i - 1] * d2;
    } else {
      sum[i] =
          sum[i - 2] + a * (cube1 + cube2) / 3 + b * (d2 * d2 - d1 * d2) / 2 + y[i - 1] * (d1 + d2);
    }
  }
  return sum;
}

/// The trapezoids between ordered limits. The knots inside are found by looking at all of them.
inline double TrapezoidsInOrder(const Points& x, const Points& y, double lo, double hi) {
  const auto f = [&](double value) { return Evaluate(x, y, value); };
  std::vector<int> inside;
  for (int i = 0; i < Size(x); ++i) {
    if (lo <= At(x, i) && At(x, i) <= hi) inside.push_back(i);
  }
  if (inside.empty()) return (f(lo) + f(hi)) / 2 * (hi - lo);
  const int first = inside.front();
  const int last = inside.back();
  double sum = 0;
  if (At(x, first) != lo) sum += (f(lo) + At(y, first)) / 2 * (At(x, first) - lo);
  for (int i = first + 1; i <= last; ++i) {
    sum += (At(y, i - 1) + At(y, i)) / 2 * (At(x, i) - At(x, i - 1));
  }
  sum += (At(y, last) + f(hi)) / 2 * (hi - At(x, last));
  return sum;
}

inline double TrapezoidsBetween(const Points& x, const Points& y, double a, double b) {
  if (x.size() <= 1) return 0;
  return a > b ? -1 * TrapezoidsInOrder(x, y, b, a) : TrapezoidsInOrder(x, y, a, b);
}

inline double SimpsonBetween(const Points& x, const Points& y, double a, double b) {
  const int n = Size(x);
  if (n <= 1) return 0;
  double lo = a;
  double hi = b;
  double s = 1;
  if (a > b) {
    std::swap(lo, hi);
    s = -1;
  }
  int iLo;
  if (lo <= x.front()) {
    iLo = 0;
  } else if (lo >= x.back()) {
    iLo = n - 1;
  } else {
    iLo = Bisect(x, lo).lo;
  }
  int iHi;
  if (hi <= x.front()) {
    iHi = 0;
  } else if (lo >= x.back() || n < 3) {
    iHi = n - 1;
  } else {
    iHi = Bisect(x, hi).hi;
  }
  if (iHi - iLo < 6) return TrapezoidsInOrder(x, y, lo, hi);

  double sum = 0;
  if (At(x, iLo) != lo) sum = (Evaluate(x, y, lo) + At(y, iLo)) / 2 * (At(x, iLo) - lo);
  const auto parabolaAround = [&](int k, bool bothIntervals) {
    const double d1 = At(x, k) - At(x, k - 1);
    const double d2 = At(x, k + 1) - At(x, k);
    const auto [a2, b2] = Parabola(d1, d2, At(y, k - 1), At(y, k), At(y, k + 1));
    if (!bothIntervals) {
      return a2 * (d2 * d2 * d2) / 3 + b2 * (d2 * d2) / 2 + At(y, k) * d2;
    }
    return a2 * (d1 * d1 * d1 + d2 * d2 * d2) / 3 + b2 * (d2 * d2 - d1 * d1) / 2 +
           At(y, k) * (d1 + d2);
  };
  int k = iLo;
  while (k + 2 <= iHi) {
    sum += parabolaAround(k + 1, true);
    k += 2;
  }
  if ((iHi - iLo) % 2 == 1) sum += parabolaAround(iHi - 1, false);
  if (At(x, iHi) != hi) sum += (Evaluate(x, y, hi) + At(y, iHi)) / 2 * (hi - At(x, iHi));
  return sum * s;
}

inline double LogIntegralExp(const Points& x, const Points& y) {
  Points terms;
  for (std::size_t i = 1; i < x.size(); ++i) {
    const double dx = x[i] - x[i - 1];
    if (dx == 0) continue;
    const double dy = y[i] - y[i - 1];
    if (std::fabs(dy) < 1e-14) {
      terms.push_back(y[i - 1] + std::log(dx));
    } else if (dy > 20) {
      terms.push_back(y[i - 1] + std::log(dx) + dy - std::log(dy));
    } else {
      terms.push_back(y[i - 1] + std::log(dx) + std::log((std::exp(dy) - 1) / dy));
    }
  }
  double largest = -1e300;
  for (const double t : terms) {
    if (t > largest) largest = t;
  }
  double sum = 0;
  for (const double t : terms) sum += std::exp(t - largest);
  return largest + std::log(sum);
}

}  // namespace tfunc_reference

#endif
