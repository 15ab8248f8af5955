#ifndef TESTS_SPECIAL_LITERAL_GAMMA_H
#define TESTS_SPECIAL_LITERAL_GAMMA_H

/// @file
/// The procedures of the gamma functions written out a second time, one statement per step, for
/// comparison bit by bit. Arguments are taken to be in the domain.

#include <cmath>

namespace literal {

inline double LnGamma(double x) {
  double t = x + 5.5;
  t = t - (x + 0.5) * std::log(t);
  double s = 1.000000000190015;
  s = s + 76.18009172947146 / (x + 1.0);
  s = s + -86.50532032941678 / (x + 2.0);
  s = s + 24.01409824083091 / (x + 3.0);
  s = s + -1.231739572450155 / (x + 4.0);
  s = s + 0.001208650973866179 / (x + 5.0);
  s = s + -5.395239384953e-06 / (x + 6.0);
  return std::log(2.5066282746310007 * s / x) - t;
}

/// The sum of the series of P. Ends when n + 1 exceeds 1000.
inline double SeriesSum(double a, double x) {
  double ap = a;
  double del = 1.0 / a;
  double sum = 1.0 / a;
  int n = 1;
  while (true) {
    ap = ap + 1.0;
    del = del * x;
    del = del / ap;
    sum = sum + del;
    if (std::abs(del) < std::abs(sum) * 1e-16 || n + 1 > 1000) return sum;
    n = n + 1;
  }
}

inline double GammaSeries(double a, double x) {
  if (x <= 0.0) return 0.0;
  return SeriesSum(a, x) * std::exp(a * std::log(x) - x - LnGamma(a));
}

inline double LnGammaSeries(double a, double x) {
  if (x <= 0.0) return 0.0;
  return std::log(SeriesSum(a, x)) - x + a * std::log(x) - LnGamma(a);
}

/// The continued fraction of Q. Ends when i + 1 exceeds 1000.
inline double Fraction(double a, double x) {
  double b = x + 1.0 - a;
  double c = 9.999999999999999e299;
  double d = 1.0 / b;
  double h = d;
  double i = 1.0;
  while (true) {
    const double an = -i * (i - a);
    b = b + 2.0;
    d = an * d + b;
    c = b + an / c;
    if (std::abs(c) < 1e-300) c = 1e-300;
    if (std::abs(d) < 1e-300) d = 1e-300;
    d = 1.0 / d;
    const double del = d * c;
    h = h * del;
    if (std::abs(del - 1.0) < 1e-16 || i + 1.0 > 1000.0) return h;
    i = i + 1.0;
  }
}

inline double GammaContFrac(double a, double x) {
  const double h = Fraction(a, x);
  return std::exp(a * std::log(x) - x - LnGamma(a)) * h;
}

inline double LnGammaContFrac(double a, double x) {
  const double h = Fraction(a, x);
  return std::log(h) + (a * std::log(x) - x - LnGamma(a));
}

/// s of y + y*y/2 + ... with divisors 2, 6, 42, ..., at most 999 rounds.
inline double ComplementSeries(double y) {
  double s = y;
  double term = y;
  double d = 1.0;
  int rounds = 0;
  do {
    d = d * (d + 1.0);
    term = term * y;
    term = term / d;
    s = s + term;
    rounds = rounds + 1;
  } while (!(term < 1e-16) && rounds < 999);
  return s;
}

inline double Gamma_P(double a, double x) {
  if (x < a + 1.0) return GammaSeries(a, x);
  return 1.0 - GammaContFrac(a, x);
}

inline double Gamma_Q(double a, double x) {
  if (x < a + 1.0) return 1.0 - GammaSeries(a, x);
  return GammaContFrac(a, x);
}

inline double LnGamma_P(double a, double x) {
  if (x < a + 1.0) return LnGammaSeries(a, x);
  const double y = LnGammaContFrac(a, x);
  if (y < -0.01) return std::log(1.0 - std::exp(y));
  return std::log(ComplementSeries(y));
}

inline double LnGamma_Q(double a, double x) {
  if (x >= a + 1.0) return LnGammaContFrac(a, x);
  const double y = LnGammaSeries(a, x);
  if (y < -0.01) return std::log(1.0 - std::exp(y));
  return std::log(1.0 - ComplementSeries(y));
}

}  // namespace literal

#endif
