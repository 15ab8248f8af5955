/// @file
/// J and Y of real order; the method and its sources stand in bessel_real_order.h.

#include <cmath>

#include "special/bessel_iteration.h"
#include "special/bessel_order.h"
#include "special/bessel_real_order.h"
#include "special/lentz_guard.h"
#include "special/temme_series.h"

namespace tarn {
namespace bessel {
namespace {

/// J and Y at mu, Y at mu + 1.
struct BaseValues {
  double firstAtMu;
  double secondAtMu;
  double secondAbove;
};

/// Steps of the recurrence of J, as a double that may exceed every integer.
double StepsJY(double x, double nu) {
  if (x < kCrossover) return std::floor(nu + 0.5);
  const double steps = std::floor(nu - x + 1.5);
  return steps > 0.0 ? steps : 0.0;
}

/// The first fraction h = J'/J at nu by the modified Lentz method. The number of negative
/// denominators gives the sign of J.
struct FirstFractionJ {
  explicit FirstFractionJ(const Problem& problem)
      : step(problem.twoOverX),
        b(problem.twoOverX * problem.nu),
        c(FirstFractionStart(problem)),
        d(0.0),
        h(c) {}

  void Step() {
    b += step;
    d = b - d;
    c = b - 1.0 / c;
    GuardTiny(c, d);
    d = 1.0 / d;
    const double del = c * d;
    h = del * h;
    negativeCount += d < 0.0 ? 1 : 0;
    converged = std::fabs(del - 1.0) < kTolerance;
    ++i;
  }

  /// J with its sign and a tiny size.
  ValueAndDerivative AtNu() const {
    const double j = negativeCount % 2 == 0 ? kLentzTiny : -kLentzTiny;
    return {j, h * j};
  }

  double step;
  double b;
  double c;
  double d;
  double h;
  int negativeCount = 0;
  int i = 1;
  bool converged = false;
};

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

/// Temme's series of Y for x < 2; J follows by the Wronskian.
struct SeriesY {
  explicit SeriesY(const Problem& p) : SeriesY(p, TemmeStart(p)) {}

  SeriesY(const Problem& p, const TemmeStart& start)
      : problem(p),
        term{2.0 / kPi * InverseSineRatio(start.angle) * start.bracket,
             start.power / (start.gamma.gampl * kPi),
             1.0 / (start.power * kPi * start.gamma.gammi)},
        d(-(0.5 * p.x) * (0.5 * p.x)) {
    const double halfAngle = 0.5 * start.angle;
    const double sineRatio = SineRatio(halfAngle);
    r = kPi * halfAngle * sineRatio * sineRatio;
    sum = term.f + r * term.q;
    sumAbove = term.p;
  }

  void Step() {
    term.Advance(i, problem);
    c *= d / i;
    const double del = c * (term.f + r * term.q);
    sum += del;
    sumAbove += c * term.p - i * del;
    converged = std::fabs(del) < (1.0 + std::fabs(sum)) * kTolerance;
    ++i;
  }

  /// `j` is J at mu in some scale.
  BaseValues Base(const ValueAndDerivative& j) const {
    const double y = -sum;
    const double above = -sumAbove * problem.twoOverX;
    const double derivative = problem.mu * problem.oneOverX * y - above;
    const double ratio = j.derivative / j.value;
    return {problem.twoOverX / kPi / (derivative - ratio * y), y, above};
  }

  const Problem& problem;
  TemmeTerm term;
  double d;
  double r;
  double c = 1.0;
  double sum;
  double sumAbove;
  int i = 1;
  bool converged = false;
};

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

/// Lentz guards of complex numerators and denominators.
bool IsTiny(const Complex& u) { return std::fabs(u.re) + std::fabs(u.im) < kLentzTiny; }

/// The second fraction p + iq = (J' + iY')/(J + iY) at mu for x >= 2 by the modified Lentz method.
struct SecondFractionJY {
  explicit SecondFractionJY(const Problem& p)
      : problem(p), a(0.25 - p.muSquared), b{2.0 * p.x, 2.0}, d(Inverse(b)) {
    const Complex start = {-0.5 * p.oneOverX, 1.0};
    const double factor = a * p.oneOverX / (start.re * start.re + start.im * start.im);
    c = {b.re + start.im * factor, b.im + start.re * factor};
    pq = Product(start, Product(c, d));
  }

  void Step() {
    a += 2 * (i - 1);
    b.im += 2.0;
    d = {a * d.re + b.re, a * d.im + b.im};
    const double factor = a / (c.re * c.re + c.im * c.im);
    c = {b.re + c.re * factor, b.im - c.im * factor};
    if (IsTiny(d) || IsTiny(c)) [[unlikely]]
      Guard();
    d = Inverse(d);
    const Complex del = Product(c, d);
    pq = Product(pq, del);
    converged = std::fabs(del.re - 1.0) + std::fabs(del.im) < kTolerance;
    ++i;
  }

  void Guard() {
    if (IsTiny(d)) d.re = kLentzTiny;
    if (IsTiny(c)) c.re = kLentzTiny;
  }

  /// `j` is J at mu in some scale; J takes its sign.
  BaseValues Base(const ValueAndDerivative& j) const {
    const auto [p, q] = pq;
    const double ratio = j.derivative / j.value;
    const double gamma = (p - ratio) / q;
    const double magnitude = std::sqrt(problem.twoOverX / kPi / ((p - ratio) * gamma + q));
    const double jMu = std::copysign(magnitude, j.value);
    const double y = jMu * gamma;
    const double derivative = y * (p + q / gamma);
    return {jMu, y, problem.mu * problem.oneOverX * y - derivative};
  }

  const Problem& problem;
  double a;
  Complex b;
  Complex c;
  Complex d;
  Complex pq;
  int i = 2;
  bool converged = false;
};

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

/// J, Y and derivatives at nu, `Second` being the iteration that gives Y at mu.
template <class Second>
bool SolveJY(const Problem& problem, const char* secondFailed, BesselJYValues& values) {
  FirstFractionJ first(problem);
  Second second(problem);
  RunBoth(first, second);
  if (!first.converged) return Fail(kFirstFractionFailed);
  if (!second.converged) return Fail(secondFailed);
  const ValueAndDerivative atNu = first.AtNu();
  const ValueAndDerivative atMu = RecurDownJ(problem, atNu);
  const BaseValues base = second.Base(atMu);
  const double scale = base.firstAtMu / atMu.value;
  const ValueAndDerivative y = RecurUpY(problem, base);
  values = {atNu.value * scale, y.value, atNu.derivative * scale, y.derivative};
  return true;
}

}  // namespace
}  // namespace bessel

bool BesselJY(double x, double nu, BesselJYValues& values) {
  using namespace bessel;
  if (!CheckDomain(x, nu)) return false;
  const double steps = StepsJY(x, nu);
  if (!CheckRecurrenceSteps(steps)) return false;
  const Problem problem(x, nu, static_cast<int>(steps));
  if (x < kCrossover) return SolveJY<SeriesY>(problem, kSeriesOfYFailed, values);
  return SolveJY<SecondFractionJY>(problem, kSecondFractionOfJYFailed, values);
}

}  // namespace tarn
