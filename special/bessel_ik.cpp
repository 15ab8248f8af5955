/// @file
/// I and K of real order; the method and its sources stand in bessel_real_order.h.

#include <cmath>

#include "special/bessel_iteration.h"
#include "special/bessel_order.h"
#include "special/bessel_real_order.h"
#include "special/temme_series.h"

namespace tarn {
namespace bessel {
namespace {

/// K at mu and mu + 1.
struct KBase {
  double atMu;
  double above;
};

/// The first fraction h = I'/I at nu; all its terms are positive, so nothing can vanish.
struct FirstFractionI {
  explicit FirstFractionI(const Problem& problem)
      : step(problem.twoOverX),
        b(problem.twoOverX * problem.nu),
        c(FirstFractionStart(problem)),
        d(0.0),
        h(c) {}

  void Step() {
    b += step;
    d = 1.0 / (b + d);
    c = b + 1.0 / c;
    const double del = c * d;
    h = del * h;
    converged = std::fabs(del - 1.0) < kTolerance;
    ++i;
  }

  /// I with a tiny size.
  ValueAndDerivative AtNu() const { return {kLentzTiny, h * kLentzTiny}; }

  double step;
  double b;
  double c;
  double d;
  double h;
  int i = 1;
  bool converged = false;
};

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
struct SeriesK {
  explicit SeriesK(const Problem& p) : SeriesK(p, TemmeStart(p)) {}

  SeriesK(const Problem& p, const TemmeStart& start)
      : problem(p),
        term{InverseSineRatio(start.angle) * start.bracket, 0.5 * start.power / start.gamma.gampl,
             0.5 / (start.power * start.gamma.gammi)},
        d((0.5 * p.x) * (0.5 * p.x)),
        sum(term.f),
        sumAbove(term.p) {}

  void Step() {
    term.Advance(i, problem);
    c *= d / i;
    const double del = c * term.f;
    sum += del;
    sumAbove += c * (term.p - i * term.f);
    converged = std::fabs(del) < std::fabs(sum) * kTolerance;
    ++i;
  }

  KBase Base() const { return {sum, sumAbove * problem.twoOverX}; }

  const Problem& problem;
  TemmeTerm term;
  double d;
  double c = 1.0;
  double sum;
  double sumAbove;
  int i = 1;
  bool converged = false;
};

/// Steed's second fraction h for x >= 2, summed together with Temme's normalising series s.
struct SecondFractionK {
  explicit SecondFractionK(const Problem& p)
      : problem(p),
        a1(0.25 - p.muSquared),
        a(-a1),
        b(2.0 * (1.0 + p.x)),
        d(1.0 / b),
        delh(d),
        h(d),
        c(a1),
        q(a1),
        s(1.0 + q * delh),
        scale(std::sqrt(kPi / (2.0 * p.x)) * std::exp(-p.x)) {}

  void Step() {
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
    converged = std::fabs(dels / s) < kTolerance;
    ++i;
  }

  KBase Base() const {
    const double k = scale / s;
    return {k, k * (problem.mu + problem.x + 0.5 - a1 * h) * problem.oneOverX};
  }

  const Problem& problem;
  double a1;
  double a;
  double b;
  double d;
  double delh;
  double h;
  double q1 = 0.0;
  double q2 = 1.0;
  double c;
  double q;
  double s;
  double scale;
  int i = 2;
  bool converged = false;
};

/// I at mu by the Wronskian of I and K. `i` is I at mu in some scale.
double WronskianI(const Problem& problem, const ValueAndDerivative& i, const KBase& base) {
  const double derivative = problem.mu * problem.oneOverX * base.atMu - base.above;
  const double ratio = i.derivative / i.value;
  return problem.oneOverX / (ratio * base.atMu - derivative);
}

/// K and K' at nu by upward recurrence from mu and mu + 1.
ValueAndDerivative RecurUpK(const Problem& problem, const KBase& base) {
  double k = base.atMu;
  double above = base.above;
  for (int i = 1; i <= problem.steps; ++i) {
    const double next = (problem.mu + i) * problem.twoOverX * above + k;
    k = above;
    above = next;
  }
  return {k, problem.nu * problem.oneOverX * k - above};
}

/// I, K and derivatives at nu, `Second` being the iteration that gives K at mu.
template <class Second>
bool SolveIK(const Problem& problem, const char* secondFailed, BesselIKValues& values) {
  FirstFractionI first(problem);
  Second second(problem);
  RunBoth(first, second);
  if (!first.converged) return Fail(kFirstFractionFailed);
  if (!second.converged) return Fail(secondFailed);
  const ValueAndDerivative atNu = first.AtNu();
  const ValueAndDerivative atMu = RecurDownI(problem, atNu);
  const KBase base = second.Base();
  const double iMu = WronskianI(problem, atMu, base);
  const ValueAndDerivative k = RecurUpK(problem, base);
  values = {iMu * atNu.value / atMu.value, k.value, iMu * atNu.derivative / atMu.value,
            k.derivative};
  return true;
}

/// K and K' alone, where the first fraction is known to converge.
template <class Second>
bool SolveK(const Problem& problem, const char* secondFailed, BesselIKValues& values) {
  Second second(problem);
  Run(second);
  if (!second.converged) return Fail(secondFailed);
  const ValueAndDerivative k = RecurUpK(problem, second.Base());
  values.k = k.value;
  values.kDerivative = k.derivative;
  return true;
}

/// Whether the first fraction of I converges at x, whatever the order: it takes about sqrt(37 x)
/// rounds where 2/x is in the range of a double, far less than the limit up to this x.
bool FirstFractionConverges(double x) { return x > 1e-300 && x < 400.0; }

/// Whether argument, order and length of the recurrence of I and K are good; raises error 3 where
/// one is not.
bool CheckIK(double x, double nu) {
  return CheckDomain(x, nu) && CheckRecurrenceSteps(std::floor(nu + 0.5));
}

Problem ProblemIK(double x, double nu) {
  return Problem(x, nu, static_cast<int>(std::floor(nu + 0.5)));
}

}  // namespace
}  // namespace bessel

bool BesselIK(double x, double nu, BesselIKValues& values) {
  using namespace bessel;
  if (!CheckIK(x, nu)) return false;
  const Problem problem = ProblemIK(x, nu);
  if (x < kCrossover) return SolveIK<SeriesK>(problem, kSeriesOfKFailed, values);
  return SolveIK<SecondFractionK>(problem, kSecondFractionOfKFailed, values);
}

bool BesselKAlone(double x, double nu, BesselIKValues& values) {
  using namespace bessel;
  if (!FirstFractionConverges(x)) return BesselIK(x, nu, values);
  if (!CheckIK(x, nu)) return false;
  const Problem problem = ProblemIK(x, nu);
  if (x < kCrossover) return SolveK<SeriesK>(problem, kSeriesOfKFailed, values);
  return SolveK<SecondFractionK>(problem, kSecondFractionOfKFailed, values);
}

}  // namespace tarn
