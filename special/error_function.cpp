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

// erf and erfc put the fit E together with the sign of x. Both are written as a sum of products
// with numbers looked up by that sign: the same bits as a choice between two forms, and no branch,
// which processors would guess wrong half the time.

/// 1 - E for x >= 0, E - 1 otherwise.
double ErfFromComplement(double x, double complement) {
  constexpr double sign[] = {-1.0, 1.0};
  const double s = sign[x >= 0.0 ? 1 : 0];
  return s - s * complement;
}

/// E for x >= 0, 2 - E otherwise.
double ErfcFromComplement(double x, double complement) {
  constexpr double offset[] = {2.0, 0.0};
  constexpr double sign[] = {-1.0, 1.0};
  const int i = x >= 0.0 ? 1 : 0;
  return offset[i] + sign[i] * complement;
}

/// ln erfc(x) for large x.
double LnComplementAsymptotic(double x) { return -x * x - std::log(x) - kLnSqrtPi; }

}  // namespace
}  // namespace tarn

double Erf(double x) { return tarn::ErfFromComplement(x, tarn::ComplementOfAbs(x)); }

double CErf(double x) {
  if (x >= tarn::kAsymptoticFrom) return std::exp(tarn::LnComplementAsymptotic(x));
  return tarn::ErfcFromComplement(x, tarn::ComplementOfAbs(x));
}

double LogCErf(double x) {
  if (x >= tarn::kAsymptoticFrom) return tarn::LnComplementAsymptotic(x);
  return std::log(CErf(x));
}
