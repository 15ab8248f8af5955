/// Ends of the number line and of the searches: scales, ties, NaN, a million values, odd curves.

#include <algorithm>
#include <cmath>
#include <memory>
#include <type_traits>

#include "tests/stat/stat_support.h"

namespace {

using namespace stat_test;

using Vector = std::unique_ptr<T_MatVectorCol<double>>;

// What the world sees -----------------------------------------------------------------------------

template <class Sample>
concept ShowsLikelihoods = requires(Sample& s) {
  s.GetLogLikelihoodOfGauss(nullptr, 0);
};
template <class Sample>
concept ShowsDistributionType = requires(Sample& s) {
  s.CheckDistrType(nullptr, 0);
};
template <class Sample>
concept ShowsEstimators = requires(Sample& s) {
  s.FindMeanDisp0();
};
template <class Sample>
concept ShowsFields = requires(Sample& s) {
  s.Data = nullptr;
};
template <class Sample>
concept ShowsErrorOfLocation = requires(Sample& s, Variable& args) {
  s.GetSEM2OfMostProbableValue(0.0, nullptr, args, 0);
};
static_assert(ShowsLikelihoods<StatAccess> && ShowsDistributionType<StatAccess> &&
              ShowsFields<StatAccess> && ShowsErrorOfLocation<StatAccess>);
static_assert(!ShowsLikelihoods<Stat> && !ShowsDistributionType<Stat> && !ShowsEstimators<Stat> &&
              !ShowsFields<Stat> && !ShowsErrorOfLocation<Stat>);
static_assert(std::is_base_of_v<TarnAss, Stat> && std::is_base_of_v<Stat, Stat_Weighted>);

TEST(StatEdges, NullArraysHoldNothing) {
  EmbeddedHost host;
  double numbers[] = {1, 2, 3};
  double* const none = nullptr;
  EXPECT_EQ(Stat(none, 3).Len(), 0);
  EXPECT_EQ(Stat(static_cast<float*>(nullptr), 3).Len(), 0);
  EXPECT_EQ(Stat(none, numbers, 3).Len(), 0);
  EXPECT_EQ(Stat_Weighted(numbers, none, 3).Len(), 0);
  EXPECT_EQ(Stat_Weighted(none, numbers, 3).Len(), 0);
}

// Scales ------------------------------------------------------------------------------------------

/// Scaling by a power of two is exact, so every result scales with it to the bit.
TEST(StatScales, ResultsScaleExactly) {
  EmbeddedHost host;
  Samples samples(501);
  const auto x = samples.Normals(30, 5, 2);
  const auto d = samples.Uniform(30, 0.1, 1);
  const StatAccess plain(x);
  const StatAccess measured(x, d, 3);
  for (const int exponent : {-250, -40, 40, 250}) {
    const double a = std::ldexp(1.0, exponent);
    auto xs = x, ds = d;
    for (double& v : xs) v *= a;
    for (double& v : ds) v *= a * a;
    StatAccess s(xs);
    EXPECT_EQ(s.Mean, plain.Mean * a);
    EXPECT_EQ(s.Disp, plain.Disp * a * a);
    EXPECT_EQ(s.SEM2, plain.SEM2 * a * a);
    EXPECT_EQ(s.E3, plain.E3 * a * a * a);
    EXPECT_EQ(s.E4, plain.E4 * (a * a) * (a * a));
    const StatAccess m(xs, ds, 3);
    EXPECT_EQ(m.Mean, measured.Mean * a);
    EXPECT_EQ(m.SEM2, measured.SEM2 * a * a);
    const StatAccess estimated(xs, ds, 2);
    EXPECT_NEAR(estimated.Disp0 / (a * a), StatAccess(x, d, 2).Disp0, 1e-5);
    double median = 0, sd = 0, expected = 0;
    s.GetMedian_SD(median, sd);
    StatAccess(x).GetMedian_SD(expected, sd);
    EXPECT_EQ(median, expected * a);
  }
}

TEST(StatScales, SquaresThatUnderflowLeaveNoSpread) {
  EmbeddedHost host;
  const std::vector<double> x = {1e-300, 2e-300, 4e-300};
  const StatAccess s(x);
  EXPECT_NEAR(s.Mean * 1e300, 7.0 / 3, 1e-14);
  EXPECT_EQ(s.Disp, 0);
  EXPECT_EQ(s.E2, 0);
  for (int meanType = 0; meanType < 4; ++meanType) {
    const StatAccess m(x, {1e-300, 1e-300, 1e-300}, meanType);
    EXPECT_EQ(m.Disp0, 0);
    EXPECT_NEAR(m.Mean * 1e300, 7.0 / 3, 1e-14);
  }
}

TEST(StatScales, SquaresThatOverflowAreInfinite) {
  EmbeddedHost host;
  const StatAccess s(std::vector<double>{1e300, -3e300, 4e300});
  EXPECT_NEAR(s.Mean * 1e-300, 2.0 / 3, 1e-14);
  EXPECT_EQ(s.Disp, kInfinity);
  EXPECT_EQ(s.E2, kInfinity);
  EXPECT_EQ(s.Min, -3e300);
  EXPECT_EQ(s.Max, 4e300);
}

/// Beyond the seeds of the scan for extremes nothing counts.
TEST(StatScales, ExtremesLieBetweenTheSeeds) {
  EmbeddedHost host;
  const StatAccess high(std::vector<double>{2e300, 3e300});
  EXPECT_EQ(high.Min, 1e300);
  EXPECT_EQ(high.Max, 3e300);
  const StatAccess infinite(std::vector<double>{-kInfinity, 1, kInfinity});
  EXPECT_EQ(infinite.Min, -kInfinity);
  EXPECT_EQ(infinite.Max, kInfinity);
}

TEST(StatScales, NaNAmongTheValues) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{3, kNaN, 1, 2});
  EXPECT_TRUE(std::isnan(s.Mean));
  EXPECT_EQ(s.Min, 1);
  EXPECT_EQ(s.Max, 3);
  EXPECT_EQ(s.DistrType, DISTR_GAUSS);
  double *x = nullptr, *p = nullptr;
  int n = 0;
  s.GetCumulativeDistr(x, p, n);
  ASSERT_EQ(n, 5);
  EXPECT_EQ(std::vector<double>(x, x + 4), (std::vector<double>{0, 1, 2, 3})) << "NaN stands last";
  EXPECT_TRUE(std::isnan(x[4]));
}

// Ties --------------------------------------------------------------------------------------------

TEST(StatTies, EqualValuesKeepTheOrderOfTheirDispersions) {
  EmbeddedHost host;
  // Sorted by value: 1 with 0.5, then 2 with 0.9, 0.1, 0.6, 0.2. Every other one is taken.
  StatAccess s({2, 2, 1, 2, 2}, {0.9, 0.1, 0.5, 0.6, 0.2}, 3);
  const std::unique_ptr<Stat> subset(s.SampleSubset(2));
  const auto& taken = static_cast<const StatAccess&>(*subset);
  ASSERT_EQ(taken.len, 2);
  EXPECT_EQ(taken.DataDisp[0], 0.5);
  EXPECT_EQ(taken.DataDisp[1], 0.6) << "rank 3, that nearest to 2.5";
}

TEST(StatTies, ZerosOfBothSignsAreOneValue) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{0.0, -0.0, 1, 0.0, -0.0});
  double *x = nullptr, *p = nullptr;
  int n = 0;
  s.GetCumulativeDistr(x, p, n);
  ASSERT_EQ(n, 3);
  EXPECT_EQ(x[0], -1);
  EXPECT_EQ(x[1], 0);
  EXPECT_EQ(p[1], 0.8);
}

// A million values --------------------------------------------------------------------------------

constexpr int kMillion = 1000000;

/// Everything whose time grows with the number of values.
void AskWhatTakesLong(Stat& s) {
  double a = 0, b = 0, *x = nullptr, *p = nullptr;
  int n = 0;
  s.GetMedian_SD(a, b);
  s.GetMedian_MAD(a, b);
  s.GetCumulativeDistr(x, p, n);
  EXPECT_LE(n, 1001);
  s.GetEstimationDisp();
  EXPECT_NE(std::unique_ptr<Stat>(s.SampleSubset(1000)), nullptr);
}

TEST(StatMillion, ConstantValues) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>(kMillion, 7.0));
  AskWhatTakesLong(s);
  EXPECT_EQ(s.Mean, 7);
  EXPECT_EQ(s.Disp, 0);
}

TEST(StatMillion, NothingButNaN) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>(kMillion, kNaN));
  AskWhatTakesLong(s);
}

TEST(StatMillion, ZerosOfBothSignsAndOnes) {
  EmbeddedHost host;
  std::vector<double> x(kMillion, 1.0);
  for (std::size_t i = 0; i < x.size(); i += 3) x[i] = i % 2 == 0 ? 0.0 : -0.0;
  StatAccess s(x);
  AskWhatTakesLong(s);
  Stat_Weighted weighted(x.data(), x.data(), kMillion);
  AskWhatTakesLong(weighted);
}

// The stretch of a cumulative fit -----------------------------------------------------------------

double NormalProbability(double x) { return (std::erf((x - 7) / (2 * std::sqrt(2.0))) + 1) / 2; }

/// Points of a normal distribution, those outside of the stretch anywhere: the fit must not see
/// them. Up to 3 points all enter, up to 10 all but the ends, then those between 0.2 and 0.8.
TEST(StatCumulativeStretch, PointsOutsideDoNotCount) {
  EmbeddedHost host;
  for (const int n : {2, 3, 4, 5, 9, 10, 11, 12, 40}) {
    std::vector<double> x, p;
    for (int i = 0; i < n; ++i) {
      x.push_back(7 + 6.0 * i / (n - 1) - 3 + 0.01);
      p.push_back(NormalProbability(x.back()));
    }
    StatAccess s(x);
    if (n > 3 && n < 11) {
      p.front() = 0.9;
      p.back() = 0.1;
    }
    for (double& pi : p) {
      if (n >= 11 && pi <= 0.2) pi = -3;
      if (n >= 11 && pi >= 0.8) pi = 5;
    }
    const Vector fit(s.FitCumulativeDistribution(x.data(), p.data(), n));
    EXPECT_NEAR((*fit)[0], 7, 1e-3) << n;
    EXPECT_NEAR((*fit)[1] * std::sqrt(static_cast<double>(n)), 2, 1e-3) << n;
  }
}

// The error of a most probable value --------------------------------------------------------------

double leastArgument = 0;  ///< least argument that the curves below were asked for

/// -ln of a normal probability, `args` an array {location, sigma}.
double Gaussian(double x, Variable& args) {
  leastArgument = std::min(leastArgument, x);
  const double z = (x - args[0].GetDoubleNumb()) / args[1].GetDoubleNumb();
  return z * z / 2;
}
double Flat(double /*x*/, Variable& /*args*/) { return 0; }

double SquaredError(StatAccess& s, double location, double sigma, ProbFunc f, int logNormal = 0) {
  Variable args(VARTYPE_ARRAY, 2);
  args[0] = location;
  args[1] = sigma;
  leastArgument = 1e300;
  return s.GetSEM2OfMostProbableValue(location, f, args, logNormal);
}

/// 34 % of a normal probability on each side of its peak lie within 0.9945 sigma.
constexpr double kHalfWidth = 0.99445788;

TEST(StatLocationError, OfANormalCurve) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{-90, 100, -60, 80, 10});
  for (const double location : {3.0, -20.0, 0.0}) {
    for (const double sigma : {0.5, 4.0, 15.0}) {
      EXPECT_NEAR(std::sqrt(SquaredError(s, location, sigma, Gaussian)), kHalfWidth * sigma,
                  0.02 * sigma)
          << location;
    }
  }
}

TEST(StatLocationError, LimitsThatCoincideAreWidened) {
  EmbeddedHost host;
  StatAccess far(std::vector<double>{1e9, 1e9 + 1, 1e9 + 2});
  far.SetAccuracy(1e-12);  // relative to the location
  EXPECT_NEAR(std::sqrt(SquaredError(far, 1e9, 100, Gaussian)), kHalfWidth * 100, 3)
      << "by the root of the location, 31623";
  StatAccess zero(std::vector<double>{0, 0, 0});
  EXPECT_NEAR(std::sqrt(SquaredError(zero, 0, 0.05, Gaussian)), kHalfWidth * 0.05, 0.002)
      << "by 1 at 0";
}

TEST(StatLocationError, LogNormalCurvesAreTakenAtPositivePlacesOnly) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{1, 2, 30});
  ASSERT_LT(s.Mean - 3 * std::sqrt(s.Disp), 0);
  SquaredError(s, 3, 100, Gaussian, 1);
  EXPECT_EQ(leastArgument, 1 / 100.0);
  SquaredError(s, 3, 100, Gaussian, 2);
  EXPECT_LT(leastArgument, 0);
}

TEST(StatLocationError, ASideWithTooLittleAreaAnswersWithItsEnd) {
  EmbeddedHost host;
  std::vector<double> x;
  for (int i = 0; i <= 10; ++i) x.push_back(i);
  StatAccess s(x);
  const double lower = 5 - 3 * std::sqrt(11.0);
  const double upper = 5 + 3 * std::sqrt(11.0);
  const auto squared = [](double v) { return v * v; };
  double left = 13 - 0.34 * (upper - lower);
  EXPECT_NEAR(SquaredError(s, 13, 1, Flat), squared((upper - left) / 2), 1e-5);
  // An upper limit below the location is an end like any other: the curve stays constant beyond.
  left = 20 - 0.34 * (upper - lower);
  EXPECT_NEAR(SquaredError(s, 20, 1, Flat), squared((upper - left) / 2), 1e-5);
}

TEST(StatLocationError, AnImprobableLimitBelowTheLocationCutsTheUpperHalfOff) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{0, 1, 2});
  // 34 % of the lower half lie within 0.43991 sigma: Phi(0.43991) = 0.67.
  EXPECT_NEAR(std::sqrt(SquaredError(s, 20, 1, Gaussian)), 0.43991 / 2, 2e-3);
}

TEST(StatLocationError, ASymmetricSampleAroundZeroEnds) {
  EmbeddedHost host;
  const std::vector<double> x = {-3, -1, -0.5, 0, 0.5, 1, 3};
  for (int prior = 0; prior < 4; ++prior) {
    StatAccess s(x, std::vector<double>(7, 0.25), 0);
    const Vector r(s.GetMostProbableValue(prior, 0));
    EXPECT_NEAR((*r)[0], 0, 1e-4) << "no sharper than the root of the curve's rounding";
    EXPECT_GT((*r)[1], 0);
  }
}

TEST(StatLocationError, TheThirdEntryOfAnEarlyAnswerIsZero) {
  EmbeddedHost host;
  for (const auto& x : {std::vector<double>{4}, {1, 5}, {3, 3, 3}}) {
    StatAccess s(x);
    EXPECT_EQ((*Vector(s.GetMostProbableValue(0, 0)))[2], 0);
  }
}

// Weighted samples --------------------------------------------------------------------------------

TEST(StatWeightedEdges, AFitOutsideOfTheDataIsReplacedByTheMedian) {
  EmbeddedHost host;
  // Three points of the distribution, one of them below the data, which the first value outweighs.
  double x[] = {1, 1, 1, 1, 2};
  double w[] = {10, 10, 10, 10, 0.5};
  Stat_Weighted s(x, w, 5);
  const Vector fit(s.FitCumulativeDistribution());
  ASSERT_LT((*fit)[0], 1);
  double median = 0, sd = 0, expectedMedian = 0, mad = 0;
  s.GetMedian_SD(median, sd);
  s.GetMedian_MAD(expectedMedian, mad);
  EXPECT_EQ(median, expectedMedian);
  EXPECT_EQ(sd, mad);
}

}  // namespace
