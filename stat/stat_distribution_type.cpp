/// @file
/// Normal or log-normal: the marginal likelihoods that decide it.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "special/gamma.h"
#include "stat/number_arrays.h"
#include "stat/stat.h"

namespace {

/// ln of the range that the prior allows each parameter.
const double kLnPriorRange = std::log(10000.0);

/// What both models share: ln Gamma((n+1)/2) + ln(2)/2 - (n/2) ln pi - ((n-1)/2) ln n
/// - (n/2) ln variance, added from left to right.
double LnMarginalOfVariance(double n, double variance) {
  return LnGamma((n + 1.0) / 2.0) + std::log(2.0) / 2.0 - n / 2.0 * std::log(std::numbers::pi) -
         (n - 1.0) / 2.0 * std::log(n) - n / 2.0 * std::log(variance);
}

/// Whether no value is 0 or below. NaN is neither.
bool HasNoneUpToZero(const double* x, int n) {
  return std::none_of(x, x + n, [](double value) { return value <= 0.0; });
}

struct Moments {
  double mean;
  double variance;  ///< population variance; 1/n for the sum of squares where that is 0
};

Moments MomentsOf(const double* x, int n) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) sum += x[i];
  const double mean = sum / n;
  double squares = 0.0;
  for (int i = 0; i < n; ++i) squares += (x[i] - mean) * (x[i] - mean);
  if (squares == 0.0) squares = 1.0 / n;
  return {mean, squares / n};
}

}  // namespace

DISTR_TYPE Stat::CheckDistrType(double* x, int n) {
  if (n < 2) return DISTR_GAUSS;
  bool isConstant = true;
  for (int i = n - 1; i >= 0; --i) {
    if (!(x[i] > 0.0)) return DISTR_GAUSS;
    isConstant &= x[i] == x[0];
  }
  if (isConstant) return DISTR_GAUSS;
  const double gauss = GetLogLikelihoodOfGauss(x, n);
  const double logNormal = GetLogLikelihoodOfLogNormal(x, n);
  return logNormal >= gauss + 1.0 ? DISTR_LOGNORMAL : DISTR_GAUSS;
}

double Stat::GetLogLikelihoodOfGauss(double* x, int n) {
  if (!HasNoneUpToZero(x, n)) return 0.0;
  const double variance = MomentsOf(x, n).variance;
  return LnMarginalOfVariance(n, variance) - std::log(20.0 * std::sqrt(variance)) - kLnPriorRange;
}

double Stat::GetLogLikelihoodOfLogNormal(double* x, int n) {
  constexpr double kImpossible = -1e300;
  if (!HasNoneUpToZero(x, n)) return kImpossible;
  tarn::SmallWorkArea work(n);
  if (!work) return kImpossible;
  double* const logarithms = work.Get();
  for (int i = 0; i < n; ++i) logarithms[i] = std::log(x[i]);
  const Moments moments = MomentsOf(logarithms, n);
  return LnMarginalOfVariance(n, moments.variance) - n * moments.mean - 2.0 * kLnPriorRange;
}
