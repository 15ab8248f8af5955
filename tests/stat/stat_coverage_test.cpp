/// How often stated errors cover the truth, over thousands of simulated samples.

#include <functional>
#include <memory>
#include <numbers>

#include "tests/stat/stat_support.h"

namespace {

using namespace stat_test;

struct Estimate {
  double location;
  double error;
};

/// Share of 2000 samples whose estimate is off by less than its error. Its own error is 0.011.
double Coverage(double truth, const std::function<Estimate(Samples&)>& estimate) {
  constexpr int kSamples = 2000;
  Samples samples(401);
  int covered = 0;
  for (int k = 0; k < kSamples; ++k) {
    const Estimate e = estimate(samples);
    if (std::fabs(e.location - truth) < e.error) ++covered;
  }
  return static_cast<double>(covered) / kSamples;
}

/// Far below 0, where the upper limit of the probability's table, which looks at the probability
/// itself instead of the largest value, lies behind all values.
constexpr double kPlace = -1000;

/// The most probable value under a prior, of 20 values with errors that follow a law of their own:
/// `noise(samples)` times the root of each dispersion.
template <class Noise>
Estimate MostProbable(Samples& samples, int prior, Noise noise) {
  const auto d = samples.Uniform(20, 0.2, 1.2);
  std::vector<double> x;
  for (const double di : d) x.push_back(kPlace + std::sqrt(di) * noise(samples));
  StatAccess s(x, d, 3);
  s.GetEstimationDisp();
  for (std::size_t i = 0; i < d.size(); ++i) s.estDataDisp[i] = d[i];  // no floor
  const std::unique_ptr<T_MatVectorCol<double>> r(s.GetMostProbableValue(prior, 0));
  return {(*r)[0], std::sqrt((*r)[1])};
}

/// Each prior turns the errors of a sample into another law: without one they are normal, under the
/// uniform prior Cauchy's of scale sqrt(2 s), under Jeffreys' those of the slash distribution, a
/// normal deviate over a uniform one. Where the errors follow that very law, an interval that holds
/// 68 % of the probability covers the truth in 68 % of all samples, as the location has a flat
/// prior.
TEST(StatCoverage, MostProbableValuesOfSamplesThatFollowThePrior) {
  EmbeddedHost host;
  const auto normal = [](Samples& samples) { return samples.Normal(0, 1); };
  const auto cauchy = [](Samples& samples) {
    return std::numbers::sqrt2 * std::tan(std::numbers::pi * (samples.Unit() - 0.5));
  };
  const auto slash = [](Samples& samples) { return samples.Normal(0, 1) / (1 - samples.Unit()); };
  EXPECT_NEAR(Coverage(kPlace, [&](Samples& s) { return MostProbable(s, 3, normal); }), 0.68,
              0.042);
  EXPECT_NEAR(Coverage(kPlace, [&](Samples& s) { return MostProbable(s, 2, cauchy); }), 0.68,
              0.042);
  EXPECT_NEAR(Coverage(kPlace, [&](Samples& s) { return MostProbable(s, 1, slash); }), 0.68, 0.042);
  // The limited Jeffreys prior belongs to no law that could be drawn from; it is a cautious one.
  const auto wide = [](Samples& samples) { return samples.Normal(0, 2); };
  EXPECT_GT(Coverage(kPlace, [&](Samples& s) { return MostProbable(s, 0, wide); }), 0.68);
}

constexpr int kValues = 100;

/// The weights do not belong to the spread, so they make the mean less certain by sqrt(1 + variance
/// of the weights), which its error does not know: 1 / sqrt(13 / 12) standard deviations.
TEST(StatCoverage, WeightedMean) {
  EmbeddedHost host;
  const double expected = std::erf(1 / std::sqrt(13.0 / 12.0) / std::numbers::sqrt2);
  const double coverage = Coverage(7, [](Samples& samples) {
    auto x = samples.Normals(kValues, 7, 2);
    auto w = samples.Uniform(kValues, 0.5, 1.5);
    const Stat_Weighted s(x.data(), w.data(), kValues);
    return Estimate{s.GetWeightedMean(), std::sqrt(s.GetWeightedSEM2())};
  });
  EXPECT_NEAR(coverage, expected, 0.042);
}

/// The fitted location is no worse than a median and no better than a mean, so that an error of
/// sqrt(pi/2) times that of the mean covers it in between 68.3 % and 79.0 % of all samples.
TEST(StatCoverage, FittedLocationAndWeightedMedian) {
  EmbeddedHost host;
  const double fitted = Coverage(7, [](Samples& samples) {
    StatAccess s(samples.Normals(kValues, 7, 2));
    const std::unique_ptr<T_MatVectorCol<double>> r(s.Stat::FitCumulativeDistribution());
    return Estimate{(*r)[0], (*r)[1] * 1.2533141373155};
  });
  const double weighted = Coverage(7, [](Samples& samples) {
    auto x = samples.Normals(kValues, 7, 2);
    std::vector<double> w(x.size(), 3.0);
    Stat_Weighted s(x.data(), w.data(), kValues);
    Estimate e = {};
    s.GetMedian_SD(e.location, e.error);
    return e;
  });
  for (const double coverage : {fitted, weighted}) {
    EXPECT_GT(coverage, 0.683 - 0.03);
    EXPECT_LT(coverage, 0.790 + 0.03);
  }
}

}  // namespace
