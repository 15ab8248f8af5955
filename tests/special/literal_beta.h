#ifndef TESTS_SPECIAL_LITERAL_BETA_H
#define TESTS_SPECIAL_LITERAL_BETA_H

/// @file
/// The procedures of the beta functions and of the F test written out a second time, one statement
/// per step, for comparison bit by bit. Arguments are taken to be in the domain.

#include <cmath>

#include "special/literal_gamma.h"

namespace literal {

inline double BetaContFrac(double a, double b, double x) {
  const double qab = a + b;
  const double qap = a + 1.0;
  const double qam = a - 1.0;
  double c = 1.0;
  double d = 1.0 - qab * x / qap;
  if (std::abs(d) < 1e-300) d = 1e-300;
  d = 1.0 / d;
  double h = d;
  double m = 1.0;
  while (m <= 1000.0) {
    const double m2 = 2.0 * m;
    double aa = m * (b - m) * x / ((qam + m2) * (a + m2));
    d = 1.0 + aa * d;
    if (std::abs(d) < 1e-300) d = 1e-300;
    c = 1.0 + aa / c;
    if (std::abs(c) < 1e-300) c = 1e-300;
    d = 1.0 / d;
    h = h * d * c;
    aa = -(a + m) * (qab + m) * x / ((a + m2) * (qap + m2));
    d = 1.0 + aa * d;
    if (std::abs(d) < 1e-300) d = 1e-300;
    c = 1.0 + aa / c;
    if (std::abs(c) < 1e-300) c = 1e-300;
    d = 1.0 / d;
    const double del = d * c;
    h = h * del;
    if (std::abs(del - 1.0) < 1e-16) break;
    m = m + 1.0;
  }
  return h;
}

inline double LnBetaContFrac(double a, double b, double x) {
  const double qab = a + b;
  const double qap = a + 1.0;
  const double qam = a - 1.0;
  double c = 1.0;
  double d = 1.0 - qab * x / qap;
  if (std::abs(d) < 1e-300) d = 1e-300;
  d = 1.0 / d;
  double h = std::log(d);
  double m = 1.0;
  while (m <= 1000.0) {
    const double m2 = 2.0 * m;
    double aa = m * (b - m) * x / ((qam + m2) * (a + m2));
    d = 1.0 + aa * d;
    if (std::abs(d) < 1e-300) d = 1e-300;
    c = 1.0 + aa / c;
    if (std::abs(c) < 1e-300) c = 1e-300;
    d = 1.0 / d;
    h = h + std::log(d * c);
    aa = -(a + m) * (qab + m) * x / ((a + m2) * (qap + m2));
    d = 1.0 + aa * d;
    if (std::abs(d) < 1e-300) d = 1e-300;
    c = 1.0 + aa / c;
    if (std::abs(c) < 1e-300) c = 1e-300;
    d = 1.0 / d;
    h = h + std::log(d * c);
    if (std::abs(d * c - 1.0) < 1e-16) break;
    m = m + 1.0;
  }
  return h;
}

inline double Beta_I(double a, double b, double x) {
  if (x == 0.0) return 0.0;
  if (x == 1.0) return 1.0;
  const double bt =
      std::exp(LnGamma(a + b) - LnGamma(a) - LnGamma(b) + a * std::log(x) + b * std::log(1.0 - x));
  if (x < (a + 1.0) / (a + b + 2.0)) return bt * BetaContFrac(a, b, x) / a;
  return 1.0 - bt * BetaContFrac(b, a, 1.0 - x) / b;
}

inline double LnBeta_I(double a, double b, double x) {
  if (x == 0.0) return -1e300;
  if (x == 1.0) return 0.0;
  const double l =
      LnGamma(a + b) - LnGamma(a) - LnGamma(b) + a * std::log(x) + b * std::log(1.0 - x);
  if (x < (a + 1.0) / (a + b + 2.0)) return LnBetaContFrac(a, b, x) + l - std::log(a);
  const double z = LnBetaContFrac(b, a, 1.0 - x) + l - std::log(b);
  if (z < -0.0001) return std::log(1.0 - std::exp(z));
  return std::log(ComplementSeries(z));
}

inline double LnBeta(double a, double b) { return LnGamma(a) + LnGamma(b) - LnGamma(a + b); }

inline double Beta(double a, double b) {
  return std::exp(LnGamma(a) + LnGamma(b) - LnGamma(a + b));
}

inline double Variance(const double* data, int n) {
  double squares = 0.0;
  for (int i = 0; i < n; ++i) squares = squares + data[i] * data[i];
  double mean = 0.0;
  for (int i = 0; i < n; ++i) mean = mean + data[i];
  mean = mean / n;
  const double meanSquared = mean * mean;
  return (squares - n * meanSquared) / (n - 1);
}

inline double FTest(const double* data1, int n1, const double* data2, int n2, double& f) {
  const double var1 = Variance(data1, n1);
  const double var2 = Variance(data2, n2);
  if (var1 == var2) {
    f = 1.0;
    return 1.0;
  }
  double nu1 = n2 - 1;
  double nu2 = n1 - 1;
  if (var1 <= 0.0 || var2 <= 0.0) {
    f = 1e6;
  } else if (var1 > var2) {
    f = var1 / var2;
    nu1 = n1 - 1;
    nu2 = n2 - 1;
  } else {
    f = var2 / var1;
  }
  double p = 2.0 * Beta_I(nu2 / 2.0, nu1 / 2.0, nu2 / (nu2 + nu1 * f));
  if (p > 1.0) p = 2.0 - p;
  return p;
}

}  // namespace literal

#endif
