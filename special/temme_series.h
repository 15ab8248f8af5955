#ifndef TARN_SPECIAL_TEMME_SERIES_H
#define TARN_SPECIAL_TEMME_SERIES_H

/// @file
/// What Temme's series of Y and K for small arguments have in common.

#include <cmath>

#include "special/bessel_iteration.h"
#include "special/bessel_real_order.h"

namespace tarn::bessel {

inline double SineRatio(double angle) {
  return std::fabs(angle) < kTolerance ? 1.0 : std::sin(angle) / angle;
}

inline double InverseSineRatio(double angle) {
  return std::fabs(angle) < kTolerance ? 1.0 : angle / std::sin(angle);
}

inline double HyperbolicSineRatio(double e) {
  return std::fabs(e) < kTolerance ? 1.0 : std::sinh(e) / e;
}

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

}  // namespace tarn::bessel

#endif
