#ifndef TESTS_SPECIAL_LITERAL_BESSEL_MODIFIED_H
#define TESTS_SPECIAL_LITERAL_BESSEL_MODIFIED_H

/// @file
/// The modified Bessel functions of integral order written out a second time, the polynomials as a
/// loop over their coefficients (highest power first), for comparison bit by bit.

#include <cmath>
#include <initializer_list>

namespace literal {

inline double Horner(std::initializer_list<double> highestFirst, double t) {
  double value = 0.0;
  bool first = true;
  for (const double coefficient : highestFirst) {
    value = first ? coefficient : coefficient + t * value;
    first = false;
  }
  return value;
}

inline double BesselI0(double x) {
  const double ax = std::abs(x);
  if (ax < 3.75) {
    const double t = (x / 3.75) * (x / 3.75);
    return Horner({0.0045813, 0.0360768, 0.2659732, 1.2067492, 3.0899424, 3.5156229, 1.0}, t);
  }
  const double y = 3.75 / ax;
  return (std::exp(ax) / std::sqrt(ax)) *
         Horner({0.00392377, -0.01647633, 0.02635537, -0.02057706, 0.00916281, -0.00157565,
                 0.00225319, 0.01328592, 0.39894228},
                y);
}

inline double BesselI1(double x) {
  const double ax = std::abs(x);
  double value = 0.0;
  if (ax < 3.75) {
    const double t = (x / 3.75) * (x / 3.75);
    value =
        ax *
        Horner({0.00032411, 0.00301532, 0.02658733, 0.15084934, 0.51498869, 0.87890594, 0.5}, t);
  } else {
    const double y = 3.75 / ax;
    value = (std::exp(ax) / std::sqrt(ax)) *
            Horner({-0.00420059, 0.01787654, -0.02895312, 0.02282967, -0.01031555, 0.00163801,
                    -0.00362018, -0.03988024, 0.39894228},
                   y);
  }
  if (x < 0.0) value = -value;
  return value;
}

inline double BesselK0(double x) {
  if (x <= 2.0) {
    const double t = x * x / 4.0;
    return -std::log(x / 2.0) * BesselI0(x) +
           Horner({7.4e-6, 0.0001075, 0.00262698, 0.0348859, 0.23069756, 0.4227842, -0.57721566},
                  t);
  }
  const double y = 2.0 / x;
  return (std::exp(-x) / std::sqrt(x)) * Horner({0.00053208, -0.0025154, 0.00587872, -0.01062446,
                                                 0.02189568, -0.07832358, 1.25331414},
                                                y);
}

inline double BesselK1(double x) {
  if (x <= 2.0) {
    const double t = x * x / 4.0;
    return std::log(x / 2.0) * BesselI1(x) +
           (1.0 / x) * Horner({-4.686e-5, -0.00110404, -0.01919402, -0.18156897, -0.67278579,
                               0.15443144, 1.0},
                              t);
  }
  const double y = 2.0 / x;
  return (std::exp(-x) / std::sqrt(x)) * Horner({-0.00068245, 0.00325614, -0.00780353, 0.01504268,
                                                 -0.0365562, 0.23498619, 1.25331414},
                                                y);
}

/// Downward recurrence with one scaling a step.
inline double BesselIInt(int n, double x) {
  if (n < 2) return n == 1 ? BesselI1(x) : BesselI0(x);
  if (x == 0.0) return 0.0;
  const double tox = 2.0 / std::abs(x);
  const int m = 2 * (n + static_cast<int>(std::floor(std::sqrt(40.0 * n))));
  double bip = 0.0;
  double bi = 1.0;
  double ans = 0.0;
  for (int j = m; j > 0; j = j - 1) {
    const double bim = bip + static_cast<double>(j) * tox * bi;
    bip = bi;
    bi = bim;
    if (std::abs(bi) > 1e10) {
      ans = ans * 1e-10;
      bi = bi * 1e-10;
      bip = bip * 1e-10;
    }
    if (j == n) ans = bip;
  }
  ans = ans * BesselI0(x) / bi;
  if (x < 0.0 && n % 2 != 0) ans = -ans;
  return ans;
}

inline double BesselKInt(int n, double x) {
  if (n < 2) return n == 1 ? BesselK1(x) : BesselK0(x);
  const double tox = 2.0 / x;
  double bkm = BesselK0(x);
  double bk = BesselK1(x);
  for (int j = 1; j <= n - 1; j = j + 1) {
    const double bkp = bkm + static_cast<double>(j) * tox * bk;
    bkm = bk;
    bk = bkp;
  }
  return bk;
}

}  // namespace literal

#endif
