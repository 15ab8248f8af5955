// A million deviates of each kind against their distributions.
//
// Seeds are fixed, so the outcome is too; nothing here can fail by chance from one run to the next.
// The bound is |z| < 3.9 on the normal scale of each statistic, two-sided because too good a fit is
// as suspicious: correct generators exceed it at one seed in 10,000, while a probability of one
// tenth that is off by 3 per cent of itself (ten standard deviations) exceeds it almost surely.

#include <algorithm>

#include "random_reference.h"

namespace {

constexpr int kDraws = 1'000'000;
constexpr double kLargestScore = 3.9;

class RandomFitTest : public RandomTest {
 protected:
  RandomFitTest() {
    host.SetUniformSource([engine = std::mt19937_64(8128)]() mutable {
      return static_cast<double>(engine() >> 11) * 0x1p-53;
    });
  }
};

/// Normal score of a chi-square value (E. B. Wilson and M. M. Hilferty, PNAS 17 (1931) 684).
double NormalScore(double chiSquare, int degrees) {
  const double variance = 2.0 / (9.0 * degrees);
  return (std::cbrt(chiSquare / degrees) - (1.0 - variance)) / std::sqrt(variance);
}

/// Pearson's chi-square of draws in [0, counts.size()) against their probabilities; neighbouring
/// values are pooled until 20 draws are expected.
template <class Probability>
void ExpectFit(const std::vector<int>& counts, Probability probability) {
  double chiSquare = 0.0, expected = 0.0, expectedBefore = 0.0;
  double observed = 0.0;
  int cells = 0;
  const auto close = [&](double cellExpected) {
    chiSquare += (observed - cellExpected) * (observed - cellExpected) / cellExpected;
    ++cells;
    expectedBefore += cellExpected;
    expected = observed = 0.0;
  };
  for (std::size_t k = 0; k < counts.size(); ++k) {
    expected += kDraws * probability(static_cast<double>(k));
    observed += counts[k];
    if (expected >= 20.0 && kDraws - expectedBefore - expected >= 20.0) close(expected);
  }
  close(kDraws - expectedBefore);
  ASSERT_GE(cells, 3);
  EXPECT_LT(std::fabs(NormalScore(chiSquare, cells - 1)), kLargestScore)
      << "chi-square " << chiSquare << " of " << cells - 1 << " degrees";
}

template <class Draw>
std::vector<int> CountDraws(std::size_t limit, Draw draw) {
  std::vector<int> counts(limit, 0);
  for (int i = 0; i < kDraws; ++i) {
    const double deviate = draw();
    EXPECT_TRUE(deviate >= 0.0 && deviate < static_cast<double>(limit)) << deviate;
    const auto cell = static_cast<std::size_t>(deviate);
    if (cell < limit) ++counts[cell];
  }
  return counts;
}

double PoissonProbability(double mean, double k) {
  return std::exp(k * std::log(mean) - mean - std::lgamma(k + 1.0));
}

double BinomialProbability(double p, double n, double k) {
  return std::exp(std::lgamma(n + 1.0) - std::lgamma(k + 1.0) - std::lgamma(n - k + 1.0) +
                  k * std::log(p) + (n - k) * std::log1p(-p));
}

double NormalProbability(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }

TEST_F(RandomFitTest, GaussPassesKolmogorovSmirnov) {
  std::vector<double> draws(kDraws);
  for (double& draw : draws) draw = (RandGauss(3.0, 0.5) - 3.0) / 0.5;
  std::sort(draws.begin(), draws.end());
  double distance = 0.0;
  for (int i = 0; i < kDraws; ++i) {
    const double below = NormalProbability(draws[static_cast<std::size_t>(i)]);
    distance = std::max({distance, below - i / 1e6, (i + 1) / 1e6 - below});
  }
  // 2 exp(-2 lambda^2), the tail of Kolmogorov's distribution, is 1e-4 at lambda = 2.23; its lower
  // one per 10,000 lies at 0.33.
  EXPECT_LT(distance * std::sqrt(kDraws), 2.23);
  EXPECT_GT(distance * std::sqrt(kDraws), 0.33);
}

TEST_F(RandomFitTest, GaussPassesChiSquareInTheTails) {
  // Cells of width 1/4 between -5 and 5; everything beyond falls into the outermost.
  const auto counts =
      CountDraws(40, [] { return std::floor(std::clamp(RandGauss(20.0, 4.0), 0.0, 39.5)); });
  ExpectFit(counts, [](double k) {
    const double lower = k == 0.0 ? 0.0 : NormalProbability((k - 20.0) / 4.0);
    const double upper = k == 39.0 ? 1.0 : NormalProbability((k - 19.0) / 4.0);
    return upper - lower;
  });
}

TEST_F(RandomFitTest, GaussDeviatesOfAPairAreUncorrelated) {
  double sum = 0.0, sumOfSquares = 0.0;
  for (int i = 0; i < kDraws / 2; ++i) {
    const double first = RandGauss(0.0, 1.0), second = RandGauss(0.0, 1.0);
    sum += first * second;
    sumOfSquares += (first * first - 1.0) * (second * second - 1.0);
  }
  // Products of independent deviates have unit variance, those of their centred squares 4.
  EXPECT_LT(std::fabs(sum) / std::sqrt(kDraws / 2), kLargestScore);
  EXPECT_LT(std::fabs(sumOfSquares) / (2.0 * std::sqrt(kDraws / 2)), kLargestScore);
}

TEST_F(RandomFitTest, PoissonOfSmallMeanFits) {
  for (double mean : {0.3, 4.0, 11.9}) {
    SCOPED_TRACE(mean);
    const auto counts = CountDraws(100, [mean] { return RandPoisson(mean); });
    ExpectFit(counts, [mean](double k) { return PoissonProbability(mean, k); });
  }
}

TEST_F(RandomFitTest, PoissonOfLargeMeanFits) {
  for (double mean : {12.0, 30.5, 1000.0, 1e6}) {
    SCOPED_TRACE(mean);
    const double start = std::max(0.0, std::floor(mean - 10.0 * std::sqrt(mean)));
    const auto width = static_cast<std::size_t>(20.0 * std::sqrt(mean)) + 40;
    const auto counts = CountDraws(width, [=] { return RandPoisson(mean) - start; });
    ExpectFit(counts, [=](double k) { return PoissonProbability(mean, start + k); });
  }
}

TEST_F(RandomFitTest, BinominalByTrialsFits) {
  for (double p : {0.1, 0.5, 0.7}) {
    SCOPED_TRACE(p);
    const auto counts = CountDraws(25, [p] { return RandBinominal(p, 24); });
    ExpectFit(counts, [p](double k) { return BinomialProbability(p, 24, k); });
  }
}

// Rare successes are counted as a Poisson process: the deviate is Poisson, capped at n.
TEST_F(RandomFitTest, BinominalByWaitingFitsThePoissonLaw) {
  const auto counts = CountDraws(51, [] { return RandBinominal(0.018, 50); });
  ExpectFit(counts, [](double k) { return PoissonProbability(0.9, k); });
  const auto failures = CountDraws(51, [] { return 50.0 - RandBinominal(1.0 - 0.018, 50); });
  ExpectFit(failures, [](double k) { return PoissonProbability(0.9, k); });
}

TEST_F(RandomFitTest, BinominalByRejectionFits) {
  constexpr struct {
    double p;
    int n;
  } kCases[] = {{0.04, 25}, {0.5, 25}, {0.3, 100}, {0.7, 100}, {0.001, 5000}, {0.95, 5000}};
  for (const auto& [p, n] : kCases) {
    SCOPED_TRACE(testing::Message() << p << ' ' << n);
    const auto counts = CountDraws(static_cast<std::size_t>(n) + 1,
                                   [=, p = p, n = n] { return RandBinominal(p, n); });
    ExpectFit(counts, [p = p, n = n](double k) { return BinomialProbability(p, n, k); });
  }
}

}  // namespace
