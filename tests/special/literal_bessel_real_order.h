#ifndef TESTS_SPECIAL_LITERAL_BESSEL_REAL_ORDER_H
#define TESTS_SPECIAL_LITERAL_BESSEL_REAL_ORDER_H

/// @file
/// The Bessel functions of real order written out a second time, each as one procedure from top to
/// bottom, for comparison bit by bit. The names are those of the published method: fractions with
/// numerators a, denominators b and Lentz values c, d; CF1 gives f = J'/J (I'/I) at mu, CF2 p + iq
/// (or h and s). Arguments are taken to be in the domain; what cannot converge returns false.

#include <cmath>

namespace literal {

inline constexpr double kPi = 3.141592653589793;

inline double Chebyshev(const double* c, int m, double y) {
  double d = 0.0;
  double dd = 0.0;
  const double z = (2.0 * y - -1.0 - 1.0) / (1.0 - -1.0);
  for (int j = m - 1; j >= 1; --j) {
    const double sv = d;
    d = 2.0 * z * d - dd + c[j];
    dd = sv;
  }
  return z * d - dd + c[0] / 2.0;
}

inline void Gammas(double mu, double& gam1, double& gam2, double& gampl, double& gammi) {
  static const double c1[] = {-1.142022680371168, 0.0065165112670737, 0.0003087090173086,
                              -3.4706269649e-06,  6.9437664e-09,      3.67795e-11,
                              -1.356e-13};
  static const double c2[] = {
      1.843740587300905, -0.0768528408447867, 0.0012719271366546, -4.9717367042e-06,
      -3.31261198e-08,   2.423096e-10,        -1.702e-13,         -1.49e-15};
  const double y = 8.0 * (mu * mu) - 1.0;
  gam1 = Chebyshev(c1, 7, y);
  gam2 = Chebyshev(c2, 8, y);
  gampl = gam2 - mu * gam1;
  gammi = gam2 + mu * gam1;
}

inline bool BesselJY(double x, double nu, double& j, double& y, double& jp, double& yp) {
  int nl = 0;
  if (x < 2.0) {
    nl = static_cast<int>(std::floor(nu + 0.5));
  } else if (nu - x + 1.5 > 0.0) {
    nl = static_cast<int>(std::floor(nu - x + 1.5));
  }
  const double mu = nu - nl;
  const double mu2 = mu * mu;
  const double xi = 1.0 / x;
  const double xi2 = 2.0 * xi;
  const double w = xi2 / kPi;

  int sign = 1;
  double h = nu / x;
  if (h < 1e-300) h = 1e-300;
  double b = xi2 * nu;
  double d = 0.0;
  double c = h;
  int i = 1;
  for (; i <= 1000; ++i) {
    b = b + xi2;
    d = b - d;
    if (std::abs(d) < 1e-300) d = 1e-300;
    c = b - 1.0 / c;
    if (std::abs(c) < 1e-300) c = 1e-300;
    d = 1.0 / d;
    const double del = c * d;
    h = del * h;
    if (d < 0.0) sign = -sign;
    if (std::abs(del - 1.0) < 1e-16) break;
  }
  if (i > 1000) return false;

  double jl = sign * 1e-300;
  double jpl = h * jl;
  const double jl1 = jl;
  const double jp1 = jpl;
  double fact = nu * xi;
  for (int l = nl; l >= 1; --l) {
    const double temp = fact * jl + jpl;
    fact = fact - xi;
    jpl = fact * temp - jl;
    jl = temp;
  }
  if (jl == 0.0) jl = 1e-16;
  const double f = jpl / jl;

  double jmu = 0.0;
  double ymu = 0.0;
  double y1 = 0.0;
  if (x < 2.0) {
    const double x2 = 0.5 * x;
    const double pimu = kPi * mu;
    const double fact1 = std::abs(pimu) < 1e-16 ? 1.0 : pimu / std::sin(pimu);
    const double lg = -std::log(x2);
    double e = mu * lg;
    const double fact2 = std::abs(e) < 1e-16 ? 1.0 : std::sinh(e) / e;
    double gam1 = 0.0;
    double gam2 = 0.0;
    double gampl = 0.0;
    double gammi = 0.0;
    Gammas(mu, gam1, gam2, gampl, gammi);
    double ff = 2.0 / kPi * fact1 * (gam1 * std::cosh(e) + gam2 * fact2 * lg);
    e = std::exp(e);
    double p = e / (gampl * kPi);
    double q = 1.0 / (e * kPi * gammi);
    const double pimu2 = 0.5 * pimu;
    const double fact3 = std::abs(pimu2) < 1e-16 ? 1.0 : std::sin(pimu2) / pimu2;
    const double r = kPi * pimu2 * fact3 * fact3;
    double cc = 1.0;
    const double dd = -x2 * x2;
    double sum = ff + r * q;
    double sum1 = p;
    for (i = 1; i <= 1000; ++i) {
      ff = (i * ff + p + q) / (i * i - mu2);
      cc = cc * (dd / i);
      p = p / (i - mu);
      q = q / (i + mu);
      const double del = cc * (ff + r * q);
      sum = sum + del;
      const double del1 = cc * p - i * del;
      sum1 = sum1 + del1;
      if (std::abs(del) < (1.0 + std::abs(sum)) * 1e-16) break;
    }
    if (i > 1000) return false;
    ymu = -sum;
    y1 = -sum1 * xi2;
    const double ymup = mu * xi * ymu - y1;
    jmu = w / (ymup - f * ymu);
  } else {
    double a = 0.25 - mu2;
    double p = -0.5 * xi;
    double q = 1.0;
    const double br = 2.0 * x;
    double bi = 2.0;
    double fc = a * xi / (p * p + q * q);
    double cr = br + q * fc;
    double ci = bi + p * fc;
    double den = br * br + bi * bi;
    double dr = br / den;
    double di = -bi / den;
    double dlr = cr * dr - ci * di;
    double dli = cr * di + ci * dr;
    double temp = p * dlr - q * dli;
    q = p * dli + q * dlr;
    p = temp;
    for (i = 2; i <= 1000; ++i) {
      a = a + 2 * (i - 1);
      bi = bi + 2.0;
      dr = a * dr + br;
      di = a * di + bi;
      if (std::abs(dr) + std::abs(di) < 1e-300) dr = 1e-300;
      fc = a / (cr * cr + ci * ci);
      cr = br + cr * fc;
      ci = bi - ci * fc;
      if (std::abs(cr) + std::abs(ci) < 1e-300) cr = 1e-300;
      den = dr * dr + di * di;
      dr = dr / den;
      di = -di / den;
      dlr = cr * dr - ci * di;
      dli = cr * di + ci * dr;
      temp = p * dlr - q * dli;
      q = p * dli + q * dlr;
      p = temp;
      if (std::abs(dlr - 1.0) + std::abs(dli) < 1e-16) break;
    }
    if (i > 1000) return false;
    const double gam = (p - f) / q;
    jmu = std::sqrt(w / ((p - f) * gam + q));
    if (jl < 0.0) jmu = -jmu;
    ymu = jmu * gam;
    const double ymup = ymu * (p + q / gam);
    y1 = mu * xi * ymu - ymup;
  }
  fact = jmu / jl;
  j = jl1 * fact;
  jp = jp1 * fact;
  for (i = 1; i <= nl; ++i) {
    const double temp = (mu + i) * xi2 * y1 - ymu;
    ymu = y1;
    y1 = temp;
  }
  y = ymu;
  yp = nu * xi * ymu - y1;
  return true;
}

inline bool BesselIK(double x, double nu, double& iNu, double& k, double& ip, double& kp) {
  const int nl = static_cast<int>(std::floor(nu + 0.5));
  const double mu = nu - nl;
  const double mu2 = mu * mu;
  const double xi = 1.0 / x;
  const double xi2 = 2.0 * xi;

  double h = nu / x;
  if (h < 1e-300) h = 1e-300;
  double b = xi2 * nu;
  double d = 0.0;
  double c = h;
  int i = 1;
  for (; i <= 1000; ++i) {
    b = b + xi2;
    d = 1.0 / (b + d);
    c = b + 1.0 / c;
    const double del = c * d;
    h = del * h;
    if (std::abs(del - 1.0) < 1e-16) break;
  }
  if (i > 1000) return false;

  double il = 1e-300;
  double ipl = h * il;
  const double il1 = il;
  const double ip1 = ipl;
  double fact = nu * xi;
  for (int l = nl; l >= 1; --l) {
    const double temp = fact * il + ipl;
    fact = fact - xi;
    ipl = fact * temp + il;
    il = temp;
  }
  const double f = ipl / il;

  double kmu = 0.0;
  double k1 = 0.0;
  if (x < 2.0) {
    const double x2 = 0.5 * x;
    const double pimu = kPi * mu;
    const double fact1 = std::abs(pimu) < 1e-16 ? 1.0 : pimu / std::sin(pimu);
    const double lg = -std::log(x2);
    double e = mu * lg;
    const double fact2 = std::abs(e) < 1e-16 ? 1.0 : std::sinh(e) / e;
    double gam1 = 0.0;
    double gam2 = 0.0;
    double gampl = 0.0;
    double gammi = 0.0;
    Gammas(mu, gam1, gam2, gampl, gammi);
    double ff = fact1 * (gam1 * std::cosh(e) + gam2 * fact2 * lg);
    double sum = ff;
    e = std::exp(e);
    double p = 0.5 * e / gampl;
    double q = 0.5 / (e * gammi);
    double cc = 1.0;
    const double dd = x2 * x2;
    double sum1 = p;
    for (i = 1; i <= 1000; ++i) {
      ff = (i * ff + p + q) / (i * i - mu2);
      cc = cc * (dd / i);
      p = p / (i - mu);
      q = q / (i + mu);
      const double del = cc * ff;
      sum = sum + del;
      const double del1 = cc * (p - i * ff);
      sum1 = sum1 + del1;
      if (std::abs(del) < std::abs(sum) * 1e-16) break;
    }
    if (i > 1000) return false;
    kmu = sum;
    k1 = sum1 * xi2;
  } else {
    b = 2.0 * (1.0 + x);
    d = 1.0 / b;
    double delh = d;
    h = d;
    double q1 = 0.0;
    double q2 = 1.0;
    const double a1 = 0.25 - mu2;
    c = a1;
    double q = a1;
    double a = -a1;
    double s = 1.0 + q * delh;
    for (i = 2; i <= 1000; ++i) {
      a = a - 2 * (i - 1);
      c = -a * c / i;
      const double qnew = (q1 - b * q2) / a;
      q1 = q2;
      q2 = qnew;
      q = q + c * qnew;
      b = b + 2.0;
      d = 1.0 / (b + a * d);
      delh = (b * d - 1.0) * delh;
      h = h + delh;
      const double dels = q * delh;
      s = s + dels;
      if (std::abs(dels / s) < 1e-16) break;
    }
    if (i > 1000) return false;
    h = a1 * h;
    kmu = std::sqrt(kPi / (2.0 * x)) * std::exp(-x) / s;
    k1 = kmu * (mu + x + 0.5 - h) * xi;
  }
  const double kmup = mu * xi * kmu - k1;
  const double imu = xi / (f * kmu - kmup);
  iNu = imu * il1 / il;
  ip = imu * ip1 / il;
  for (i = 1; i <= nl; ++i) {
    const double temp = (mu + i) * xi2 * k1 + kmu;
    kmu = k1;
    k1 = temp;
  }
  k = kmu;
  kp = nu * xi * kmu - k1;
  return true;
}

}  // namespace literal

#endif
