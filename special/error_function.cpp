// Source: the rational-exponential fit of erfc for x >= 0 in t = 1/(1 + x/2), Chebyshev-fitted with
// a fractional error below 1.2e-7 everywhere (W. H. Press et al., Numerical Recipes, section 6.2);
// for large x the first term of the asymptotic series, M. Abramowitz, I. A. Stegun, Handbook of
// Mathematical Functions, 7.1.23.

#include "special/error_function.h"

#include <cmath>

namespace tarn {
namespace {

constexpr double kAsymptoticFrom = 10.0;
constexpr double kLnSqrtPi = 0.5723649429247;

/// erfc(|x|) by the fit.
double ComplementOfAbs(double x) {
  const double z = std::fabs(x);
  const double t = 1.0 / (1.0 + z / 2.0);
  const double inner = t * (-1.13520398 + t * (1.48851587 + t * (-0.82215223 + t * 0.17087277)));
  const double outer =
      t * (1.00002368 +
           t * (0.37409196 + t * (0.09678418 + t * (-0.18628806 + t * (0.27886807 + inner)))));
  return t * std::exp(-z * z - 1.26551223 + outer);
}

/// ln erfc(x) for large x.
double LnComplementAsymptotic(double x) { return -x * x - std::log(x) - kLnSqrtPi; }

}  // namespace
}  // namespace tarn

double Erf(double x) {
  const double complement = tarn::ComplementOfAbs(x);
  return x >= 0.0 ? 1.0 - complement : complement - 1.0;
}

double CErf(double x) {
  if (x >= tarn::kAsymptoticFrom) return std::exp(tarn::LnComplementAsymptotic(x));
  const double complement = tarn::ComplementOfAbs(x);
  return x >= 0.0 ? complement : 2.0 - complement;
}

double LogCErf(double x) {
  if (x >= tarn::kAsymptoticFrom) return tarn::LnComplementAsymptotic(x);
  return std::log(CErf(x));
}
