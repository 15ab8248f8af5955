#include "special/random.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

#include "frame/host.h"
#include "special/gamma.h"
#include "special/random_lock.h"

namespace tarn {
namespace {

// Cached state, all guarded by the random lock.

std::int32_t haveSpare = 0;  ///< a second normal deviate is waiting
double spare = 0.0;          ///< the waiting deviate, of unit variance

double poissonLastMean = -1.0;  ///< mean of the previous Poisson call
double poissonSqrt2Mean = 0.0;  ///< sqrt(2 mean)
double poissonLogMean = 0.0;    ///< ln mean
double poissonG = 0.0;          ///< exp(-mean) below the switch, mean ln mean - ln mean! above it

std::int32_t binomialLastN = -1;  ///< trial count of the previous rejection
double binomialN = 0.0;           ///< the same as a double
double binomialLnGammaN1 = 0.0;   ///< ln n!
double binomialLastP = -1.0;      ///< probability of the previous rejection
double binomialQ = 0.0;           ///< 1 - p
double binomialLnP = 0.0;         ///< ln p
double binomialLnQ = 0.0;         ///< ln (1 - p)

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

/// Means from which on Poisson deviates are found by rejection.
constexpr double kPoissonRejectionMean = 12.0;
/// Trial counts from which on binomial deviates are no longer found by making the trials.
constexpr int kBinomialManyTrials = 25;

/// Attempts at one deviate after which the uniform source counts as degenerate. The worst of the
/// loops below succeeds with probability 0.38 per attempt, or is over after some 1000 draws.
constexpr int kAttemptLimit = 1'000'000;

/// A pair of independent normal deviates: one is returned, the other becomes the spare.
double DrawNormalPair() {
  for (int attempt = 0; attempt < kAttemptLimit; ++attempt) {
    const double s = Rand(2.0) - 1.0;
    const double t = Rand(2.0) - 1.0;
    const double r = s * s + t * t;
    if (!(r > 0.0 && r < 1.0)) continue;
    const double factor = std::sqrt(-2.0 * std::log(r) / r);
    spare = factor * s;
    haveSpare = 1;
    return factor * t;
  }
  return kNotANumber;
}

double TakeSpare() {
  haveSpare = 0;
  return spare;
}

/// Ordinate of a standard Lorentzian deviate.
double DrawLorentzian() { return std::tan(std::numbers::pi * Rand(1.0)); }

double PoissonByProduct(double mean) {
  if (mean != poissonLastMean) {
    poissonLastMean = mean;
    poissonG = std::exp(-mean);
  }
  double product = 1.0;
  for (int k = 0; k < kAttemptLimit; ++k) {
    product *= Rand(1.0);
    if (!(product > poissonG)) return k;
  }
  return kNotANumber;
}

void PreparePoissonRejection(double mean) {
  if (mean == poissonLastMean) return;
  poissonLastMean = mean;
  poissonSqrt2Mean = std::sqrt(2.0 * mean);
  poissonLogMean = std::log(mean);
  poissonG = mean * poissonLogMean - LnGamma(mean + 1.0);
}

double PoissonByRejection(double mean) {
  PreparePoissonRejection(mean);
  // NaN, or beyond the range of mean ln mean: nothing would ever be accepted.
  if (!std::isfinite(poissonG)) return kNotANumber;
  for (int attempt = 0; attempt < kAttemptLimit; ++attempt) {
    const double y = DrawLorentzian();
    const double e = poissonSqrt2Mean * y + mean;
    if (e < 0.0) continue;
    const double k = std::floor(e);
    // Probability of k over that of the mean, over the Lorentzian; 0.9 keeps it below 1.
    const double t =
        0.9 * (1.0 + y * y) * std::exp(k * poissonLogMean - LnGamma(k + 1.0) - poissonG);
    if (Rand(1.0) <= t) return k;
  }
  return kNotANumber;
}

double BinomialByTrials(double p, int n) {
  int count = 0;
  for (int trial = 0; trial < n; ++trial) {
    if (Rand(1.0) < p) ++count;
  }
  return count;
}

/// Counts waiting times between rare successes; `expected` is n p.
double BinomialByWaiting(double expected, int n) {
  const double g = std::exp(-expected);
  double product = 1.0;
  std::int64_t j = 0;
  for (; j <= n; ++j) {
    product *= Rand(1.0);
    if (product < g) break;
  }
  return static_cast<double>(std::min<std::int64_t>(j, n));
}

void PrepareBinomialRejection(double p, int n) {
  if (n != binomialLastN) {
    binomialLastN = n;
    binomialN = n;
    binomialLnGammaN1 = LnGamma(binomialN + 1.0);
  }
  if (p != binomialLastP) {
    binomialLastP = p;
    binomialQ = 1.0 - p;
    binomialLnP = std::log(p);
    binomialLnQ = std::log(binomialQ);
  }
}

/// `expected` is n p, at least 1.
double BinomialByRejection(double p, int n, double expected) {
  PrepareBinomialRejection(p, n);
  const double scale = std::sqrt(2.0 * expected * binomialQ);
  for (int attempt = 0; attempt < kAttemptLimit; ++attempt) {
    const double y = DrawLorentzian();
    const double e = scale * y + expected;
    if (e < 0.0 || e >= binomialN + 1.0) continue;
    const double k = std::floor(e);
    // Probability of k over the Lorentzian's.
    const double t = 1.2 * scale * (1.0 + y * y) *
                     std::exp(binomialLnGammaN1 - LnGamma(k + 1.0) - LnGamma(binomialN - k + 1.0) +
                              k * binomialLnP + (binomialN - k) * binomialLnQ);
    if (Rand(1.0) <= t) return k;
  }
  return kNotANumber;
}

/// Number of successes of probability p <= 1/2 (or of any p that is no probability).
double CountSuccesses(double p, int n) {
  const double expected = n * p;
  if (n < kBinomialManyTrials) return BinomialByTrials(p, n);
  if (expected < 1.0) return BinomialByWaiting(expected, n);
  return BinomialByRejection(p, n, expected);
}

}  // namespace
}  // namespace tarn

double RandGauss(double mean, double sigma) {
  const tarn::RandomLockGuard lock;
  const double z = tarn::haveSpare != 0 ? tarn::TakeSpare() : tarn::DrawNormalPair();
  return z * sigma + mean;
}

double RandPoisson(double mean) {
  const tarn::RandomLockGuard lock;
  return mean < tarn::kPoissonRejectionMean ? tarn::PoissonByProduct(mean)
                                            : tarn::PoissonByRejection(mean);
}

double RandBinominal(double p, int n) {
  // Rejection would never accept anything.
  if (std::isnan(p) && n >= tarn::kBinomialManyTrials) return tarn::kNotANumber;
  const double rarer = p <= 0.5 ? p : 1.0 - p;
  const tarn::RandomLockGuard lock;
  const double count = tarn::CountSuccesses(rarer, n);
  return rarer == p ? count : n - count;
}
