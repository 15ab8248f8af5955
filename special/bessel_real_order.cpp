#include "special/bessel_real_order.h"

#include <cmath>

#include "special/bessel_order.h"
#include "special/iteration_limits.h"

namespace tarn {
namespace {

constexpr double kPi = 3.141592653589793;

/// Below, Temme's series; from there on the second continued fraction.
constexpr double kCrossover = 2.0;

// Chebyshev coefficients of gam1 and gam2 in 8 mu^2 - 1.
constexpr int kGam1Count = 7;
constexpr double kGam1[kGam1Count] = {-1.142022680371168, 0.0065165112670737, 0.0003087090173086,
                                      -3.4706269649e-06,  6.9437664e-09,      3.67795e-11,
                                      -1.356e-13};
constexpr int kGam2Count = 8;
constexpr double kGam2[kGam2Count] = {
    1.843740587300905, -0.0768528408447867, 0.0012719271366546, -4.9717367042e-06,
    -3.31261198e-08,   2.423096e-10,        -1.702e-13,         -1.49e-15};

bool Fail(const char* message) {
  TarnError(kErrorArgument, message);
  return false;
}

/// Whether argument and order are in the domain; raises error 3 where they are not.
bool CheckDomain(double x, double nu) {
  if (!(x <= 0.0) && nu >= 0.0 && std::isfinite(nu)) return true;
  TarnError(kErrorArgument);
  return false;
}

/// The argument with the quotients that all stages use, and the order nu = mu + steps.
struct Problem {
  Problem(double argument, double order, int recurrenceSteps)
      : x(argument),
        nu(order),
        steps(recurrenceSteps),
        mu(order - recurrenceSteps),
        muSquared(mu * mu),
        oneOverX(1.0 / argument),
        twoOverX(2.0 * oneOverX) {}

  double x;
  double nu;
  int steps;
  double mu;
  double muSquared;
  double oneOverX;
  double twoOverX;
};

/// A function and its derivative with respect to x, at some order and in some scale.
struct ValueAndDerivative {
  double value;
  double derivative;
};

/// A second solution at the orders mu and mu + 1, the first solution at mu.
struct BaseValues {
  double firstAtMu;
  double secondAtMu;
  double secondAbove;
};

double FirstFractionStart(const Problem& problem) {
  const double h = problem.nu / problem.x;
  return h < kLentzTiny ? kLentzTiny : h;
}

// Temme's series, common to Y and K ---------------------------------------------------------------

double SineRatio(double angle) {
  return std::fabs(angle) < kTolerance ? 1.0 : std::sin(angle) / angle;
}

double InverseSineRatio(double angle) {
  return std::fabs(angle) < kTolerance ? 1.0 : angle / std::sin(angle);
}

double HyperbolicSineRatio(double e) { return std::fabs(e) < kTolerance ? 1.0 : std::sinh(e) / e; }

/// What the first terms of both series are made of.
struct TemmeStart {
  explicit TemmeStart(const Problem& problem)
      : gamma(GammaCoefficients(problem.mu)), angle(kPi * problem.mu) {
    const double logarithm = -std::log(0.5 * problem.x);
    const double e = problem.mu * logarithm;
    bracket = gamma.gam1 * std::cosh(e) + gamma.gam2 * HyperbolicSineRatio(e) * logarithm;
    power = std::exp(e);
  }

  TemmeGamma gamma;
  double angle;    ///< pi mu
  double bracket;  ///< gam1 cosh(e) + gam2 (sinh(e)/e) ln(2/x), e = mu ln(2/x)
  double power;    ///< (2/x)^mu
};

/// The coefficients f, p, q of both series and their recurrence.
struct TemmeTerm {
  double f;
  double p;
  double q;

  void Advance(int i, const Problem& problem) {
    f = (i * f + p + q) / (i * i - problem.muSquared);
    p /= i - problem.mu;
    q /= i + problem.mu;
  }
};

// J and Y -----------------------------------------------------------------------------------------

/// Steps of the recurrence of J, as a double that may exceed every integer.
double StepsJY(double x, double nu) {
  if (x < kCrossover) return std::floor(nu + 0.5);
  const double steps = std::floor(nu - x + 1.5);
  return steps > 0.0 ? steps : 0.0;
}

/// The first fraction h = J'/J at nu by the modified Lentz method; J gets the sign of the
/// denominators' product and a tiny size. False when it does not converge.
bool FirstFractionJ(const Problem& problem, ValueAndDerivative& j) {
  double h = FirstFractionStart(problem);
  double b = problem.twoOverX * problem.nu;
  double c = h;
  double d = 0.0;
  double sign = 1.0;
  for (int i = 1; i <= kMaxRounds; ++i) {
    b += problem.twoOverX;
    d = b - d;
    if (std::fabs(d) < kLentzTiny) d = kLentzTiny;
    c = b - 1.0 / c;
    if (std::fabs(c) < kLentzTiny) c = kLentzTiny;
    d = 1.0 / d;
    const double del = c * d;
    h = del * h;
    if (d < 0.0) sign = -sign;
    if (std::fabs(del - 1.0) < kTolerance) {
      j.value = sign * kLentzTiny;
      j.derivative = h * j.value;
      return true;
    }
  }
  return false;
}

/// J and J' from order nu down to mu.
ValueAndDerivative RecurDownJ(const Problem& problem, ValueAndDerivative j) {
  double factor = problem.nu * problem.oneOverX;
  for (int l = problem.steps; l >= 1; --l) {
    const double below = factor * j.value + j.derivative;
    factor -= problem.oneOverX;
    j.derivative = factor * below - j.value;
    j.value = below;
  }
  if (j.value == 0.0) j.value = kTolerance;
  return j;
}

/// Temme's series of Y for x < 2, J by the Wronskian. `ratio` is J'/J at mu.
bool SeriesJY(const Problem& problem, double ratio, BaseValues& base) {
  const double halfX = 0.5 * problem.x;
  const TemmeStart start(problem);
  TemmeTerm term = {2.0 / kPi * InverseSineRatio(start.angle) * start.bracket,
                    start.power / (start.gamma.gampl * kPi),
                    1.0 / (start.power * kPi * start.gamma.gammi)};
  const double halfAngle = 0.5 * start.angle;
  const double sineRatio = SineRatio(halfAngle);
  const double r = kPi * halfAngle * sineRatio * sineRatio;
  const double d = -halfX * halfX;
  double c = 1.0;
  double sum = term.f + r * term.q;
  double sumAbove = term.p;
  for (int i = 1; i <= kMaxRounds; ++i) {
    term.Advance(i, problem);
    c *= d / i;
    const double del = c * (term.f + r * term.q);
    sum += del;
    sumAbove += c * term.p - i * del;
    if (std::fabs(del) < (1.0 + std::fabs(sum)) * kTolerance) {
      base.secondAtMu = -sum;
      base.secondAbove = -sumAbove * problem.twoOverX;
      const double derivative = problem.mu * problem.oneOverX * base.secondAtMu - base.secondAbove;
      base.firstAtMu = problem.twoOverX / kPi / (derivative - ratio * base.secondAtMu);
      return true;
    }
  }
  return false;
}

struct Complex {
  double re;
  double im;
};

Complex Product(const Complex& u, const Complex& v) {
  return {u.re * v.re - u.im * v.im, u.re * v.im + u.im * v.re};
}

Complex Inverse(const Complex& u) {
  const double norm = u.re * u.re + u.im * u.im;
  return {u.re / norm, u.im / -norm};
}

/// Lentz guard of a complex numerator or denominator.
void GuardTiny(Complex& u) {
  if (std::fabs(u.re) + std::fabs(u.im) < kLentzTiny) u.re = kLentzTiny;
}

/// The second fraction p + iq = (J' + iY')/(J + iY) at mu for x >= 2 by the modified Lentz method.
/// False when it does not converge.
bool SecondFractionJY(const Problem& problem, Complex& pq) {
  double a = 0.25 - problem.muSquared;
  pq = {-0.5 * problem.oneOverX, 1.0};
  Complex b = {2.0 * problem.x, 2.0};
  const double first = a * problem.oneOverX / (pq.re * pq.re + pq.im * pq.im);
  Complex c = {b.re + pq.im * first, b.im + pq.re * first};
  Complex d = Inverse(b);
  pq = Product(pq, Product(c, d));
  for (int i = 2; i <= kMaxRounds; ++i) {
    a += 2 * (i - 1);
    b.im += 2.0;
    d = {a * d.re + b.re, a * d.im + b.im};
    GuardTiny(d);
    const double factor = a / (c.re * c.re + c.im * c.im);
    c = {b.re + c.re * factor, b.im - c.im * factor};
    GuardTiny(c);
    d = Inverse(d);
    const Complex del = Product(c, d);
    pq = Product(pq, del);
    if (std::fabs(del.re - 1.0) + std::fabs(del.im) < kTolerance) return true;
  }
  return false;
}

/// J and Y at mu from the two fractions and the Wronskian, for x >= 2. `j` is J in some scale,
/// whose sign J takes.
bool FractionJY(const Problem& problem, double ratio, double j, BaseValues& base) {
  Complex pq = {};
  if (!SecondFractionJY(problem, pq)) return false;
  const auto [p, q] = pq;
  const double gamma = (p - ratio) / q;
  const double magnitude = std::sqrt(problem.twoOverX / kPi / ((p - ratio) * gamma + q));
  base.firstAtMu = std::copysign(magnitude, j);
  base.secondAtMu = base.firstAtMu * gamma;
  const double derivative = base.secondAtMu * (p + q / gamma);
  base.secondAbove = problem.mu * problem.oneOverX * base.secondAtMu - derivative;
  return true;
}

/// Y and Y' at nu by upward recurrence from mu and mu + 1.
ValueAndDerivative RecurUpY(const Problem& problem, const BaseValues& base) {
  double y = base.secondAtMu;
  double above = base.secondAbove;
  for (int i = 1; i <= problem.steps; ++i) {
    const double next = (problem.mu + i) * problem.twoOverX * above - y;
    y = above;
    above = next;
  }
  return {y, problem.nu * problem.oneOverX * y - above};
}

// I and K -----------------------------------------------------------------------------------------

/// The first fraction h = I'/I at nu; all its terms are positive, so nothing can vanish. I gets a
/// tiny size. False when it does not converge.
bool FirstFractionI(const Problem& problem, ValueAndDerivative& i) {
  double h = FirstFractionStart(problem);
  double b = problem.twoOverX * problem.nu;
  double c = h;
  double d = 0.0;
  for (int round = 1; round <= kMaxRounds; ++round) {
    b += problem.twoOverX;
    d = 1.0 / (b + d);
    c = b + 1.0 / c;
    const double del = c * d;
    h = del * h;
    if (std::fabs(del - 1.0) < kTolerance) {
      i = {kLentzTiny, h * kLentzTiny};
      return true;
    }
  }
  return false;
}

/// I and I' from order nu down to mu.
ValueAndDerivative RecurDownI(const Problem& problem, ValueAndDerivative i) {
  double factor = problem.nu * problem.oneOverX;
  for (int l = problem.steps; l >= 1; --l) {
    const double below = factor * i.value + i.derivative;
    factor -= problem.oneOverX;
    i.derivative = factor * below + i.value;
    i.value = below;
  }
  return i;
}

/// Temme's series of K for x < 2.
bool SeriesK(const Problem& problem, BaseValues& base) {
  const double halfX = 0.5 * problem.x;
  const TemmeStart start(problem);
  TemmeTerm term = {InverseSineRatio(start.angle) * start.bracket,
                    0.5 * start.power / start.gamma.gampl, 0.5 / (start.power * start.gamma.gammi)};
  const double d = halfX * halfX;
  double c = 1.0;
  double sum = term.f;
  double sumAbove = term.p;
  for (int i = 1; i <= kMaxRounds; ++i) {
    term.Advance(i, problem);
    c *= d / i;
    const double del = c * term.f;
    sum += del;
    sumAbove += c * (term.p - i * term.f);
    if (std::fabs(del) < std::fabs(sum) * kTolerance) {
      base.secondAtMu = sum;
      base.secondAbove = sumAbove * problem.twoOverX;
      return true;
    }
  }
  return false;
}

/// Steed's second fraction h for x >= 2, summed together with Temme's normalising series s.
bool FractionK(const Problem& problem, BaseValues& base) {
  const double a1 = 0.25 - problem.muSquared;
  double a = -a1;
  double b = 2.0 * (1.0 + problem.x);
  double d = 1.0 / b;
  double delh = d;
  double h = d;
  double q1 = 0.0;
  double q2 = 1.0;
  double c = a1;
  double q = a1;
  double s = 1.0 + q * delh;
  for (int i = 2; i <= kMaxRounds; ++i) {
    a -= 2 * (i - 1);
    c = -a * c / i;
    const double qNext = (q1 - b * q2) / a;
    q1 = q2;
    q2 = qNext;
    q += c * qNext;
    b += 2.0;
    d = 1.0 / (b + a * d);
    delh = (b * d - 1.0) * delh;
    h += delh;
    const double dels = q * delh;
    s += dels;
    if (std::fabs(dels / s) < kTolerance) {
      base.secondAtMu = std::sqrt(kPi / (2.0 * problem.x)) * std::exp(-problem.x) / s;
      base.secondAbove =
          base.secondAtMu * (problem.mu + problem.x + 0.5 - a1 * h) * problem.oneOverX;
      return true;
    }
  }
  return false;
}

/// I at mu by the Wronskian of I and K. `ratio` is I'/I at mu.
double WronskianI(const Problem& problem, double ratio, const BaseValues& base) {
  const double derivative = problem.mu * problem.oneOverX * base.secondAtMu - base.secondAbove;
  return problem.oneOverX / (ratio * base.secondAtMu - derivative);
}

/// K and K' at nu by upward recurrence from mu and mu + 1.
ValueAndDerivative RecurUpK(const Problem& problem, const BaseValues& base) {
  double k = base.secondAtMu;
  double above = base.secondAbove;
  for (int i = 1; i <= problem.steps; ++i) {
    const double next = (problem.mu + i) * problem.twoOverX * above + k;
    k = above;
    above = next;
  }
  return {k, problem.nu * problem.oneOverX * k - above};
}

}  // namespace

bool BesselJY(double x, double nu, BesselJYValues& values) {
  if (!CheckDomain(x, nu)) return false;
  const double steps = StepsJY(x, nu);
  if (!CheckRecurrenceSteps(steps)) return false;
  const Problem problem(x, nu, static_cast<int>(steps));
  ValueAndDerivative atNu = {};
  if (!FirstFractionJ(problem, atNu)) return Fail(kFirstFractionFailed);
  const ValueAndDerivative atMu = RecurDownJ(problem, atNu);
  const double ratio = atMu.derivative / atMu.value;
  BaseValues base = {};
  if (x < kCrossover) {
    if (!SeriesJY(problem, ratio, base)) return Fail(kSeriesOfYFailed);
  } else {
    if (!FractionJY(problem, ratio, atMu.value, base)) return Fail(kSecondFractionOfJYFailed);
  }
  const double scale = base.firstAtMu / atMu.value;
  const ValueAndDerivative y = RecurUpY(problem, base);
  values = {atNu.value * scale, y.value, atNu.derivative * scale, y.derivative};
  return true;
}

bool BesselIK(double x, double nu, BesselIKValues& values) {
  if (!CheckDomain(x, nu)) return false;
  const double steps = std::floor(nu + 0.5);
  if (!CheckRecurrenceSteps(steps)) return false;
  const Problem problem(x, nu, static_cast<int>(steps));
  ValueAndDerivative atNu = {};
  if (!FirstFractionI(problem, atNu)) return Fail(kFirstFractionFailed);
  const ValueAndDerivative atMu = RecurDownI(problem, atNu);
  BaseValues base = {};
  if (x < kCrossover) {
    if (!SeriesK(problem, base)) return Fail(kSeriesOfKFailed);
  } else {
    if (!FractionK(problem, base)) return Fail(kSecondFractionOfKFailed);
  }
  base.firstAtMu = WronskianI(problem, atMu.derivative / atMu.value, base);
  const ValueAndDerivative k = RecurUpK(problem, base);
  values = {base.firstAtMu * atNu.value / atMu.value, k.value,
            base.firstAtMu * atNu.derivative / atMu.value, k.derivative};
  return true;
}

double ChebyshevEval(double a, double b, const double* c, int m, double y) {
  if ((y - a) * (y - b) > 0.0) {
    TarnError(kErrorArgument);
    return 0.0;
  }
  const double z = (2.0 * y - a - b) / (b - a);
  const double twoZ = 2.0 * z;
  double d = 0.0;
  double dd = 0.0;
  for (int j = m - 1; j >= 1; --j) {
    const double next = twoZ * d - dd + c[j];
    dd = d;
    d = next;
  }
  return z * d - dd + c[0] / 2.0;
}

TemmeGamma GammaCoefficients(double mu) {
  const double y = 8.0 * mu * mu - 1.0;
  const double gam1 = ChebyshevEval(-1.0, 1.0, kGam1, kGam1Count, y);
  const double gam2 = ChebyshevEval(-1.0, 1.0, kGam2, kGam2Count, y);
  return {gam1, gam2, gam2 - mu * gam1, gam2 + mu * gam1};
}

}  // namespace tarn
