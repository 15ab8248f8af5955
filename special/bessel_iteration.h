#ifndef TARN_SPECIAL_BESSEL_ITERATION_H
#define TARN_SPECIAL_BESSEL_ITERATION_H

/// @file
/// What the Bessel functions of real order have in common: the numbers that all their stages use,
/// and how their iterations are run.
///
/// An iteration is a struct with a `Step()` that makes one round, the number `i` of the next round
/// and the flag `converged`.

#include <cmath>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "special/bessel_order.h"
#include "special/bessel_real_order.h"
#include "special/iteration_limits.h"

namespace tarn::bessel {

inline constexpr double kPi = 3.141592653589793;

/// Below, Temme's series; from there on the second continued fraction.
inline constexpr double kCrossover = 2.0;

/// Raises error 3 with a text; false.
inline bool Fail(const char* message) {
  TarnError(kErrorArgument, message);
  return false;
}

/// Whether argument and order are in the domain; raises error 3 where they are not.
inline bool CheckDomain(double x, double nu) {
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

/// Start of a first fraction, which must not be 0.
inline double FirstFractionStart(const Problem& problem) {
  const double h = problem.nu / problem.x;
  return h < kLentzTiny ? kLentzTiny : h;
}

/// Whether an iteration shall go on: it has not converged and has rounds left.
template <class Iteration>
inline bool Runs(const Iteration& iteration) {
  return !iteration.converged && iteration.i <= kMaxRounds;
}

template <class Iteration>
void Run(Iteration& iteration) {
  while (Runs(iteration)) iteration.Step();
}

/// Runs two iterations to their ends. They do not depend on each other, but each waits for its own
/// divisions most of the time: taken in turns, one computes while the other waits.
template <class First, class Second>
void RunBoth(First& first, Second& second) {
  while (Runs(first) && Runs(second)) {
    first.Step();
    second.Step();
  }
  Run(second);
  Run(first);
}

}  // namespace tarn::bessel

#endif
