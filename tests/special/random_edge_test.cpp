// Branches, counts of draws, arguments out of every range, degenerate uniform sources.

#include <climits>

#include "random_reference.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class RandomEdgeTest : public RandomTest {
 protected:
  /// Number of uniforms that `draw` takes from a source that always answers `value`.
  template <class Draw>
  std::int64_t DrawsFrom(double value, Draw draw) {
    host.SetUniformSource([value] { return value; });
    const std::int64_t before = host.DrawCount();
    draw();
    return host.DrawCount() - before;
  }
};

TEST_F(RandomEdgeTest, GaussTakesTwoUniformsAndThenTheSpare) {
  Feed({0.75, 0.625});  // s = 0.5, t = 0.25
  const double r = 0.3125;
  const double factor = std::sqrt(-2.0 * std::log(r) / r);
  EXPECT_EQ(RandGauss(0.0, 1.0), factor * 0.25);
  EXPECT_EQ(host.DrawCount(), 2);
  EXPECT_EQ(RandGauss(0.0, 1.0), factor * 0.5);
  EXPECT_EQ(host.DrawCount(), 2);
}

TEST_F(RandomEdgeTest, GaussTakesFourUniformsWhenTheFirstPointIsOutsideAndThenNone) {
  Feed({0.0, 0.9, 0.75, 0.625});
  const double r = 0.3125;
  EXPECT_EQ(RandGauss(0.0, 1.0), std::sqrt(-2.0 * std::log(r) / r) * 0.25);
  EXPECT_EQ(host.DrawCount(), 4);
  RandGauss(0.0, 1.0);
  EXPECT_EQ(host.DrawCount(), 4);
}

TEST_F(RandomEdgeTest, GaussRejectsTheCentreAndTheCircleItself) {
  Feed({0.5, 0.5, 0.0, 0.5, 0.75, 0.625});  // r = 0, r = 1, r = 0.3125
  RandGauss(0.0, 1.0);
  EXPECT_EQ(host.DrawCount(), 6);
}

TEST_F(RandomEdgeTest, GaussScalesTheSpareByTheSecondCallsParameters) {
  Feed({0.75, 0.625});
  const double r = 0.3125;
  const double factor = std::sqrt(-2.0 * std::log(r) / r);
  EXPECT_EQ(RandGauss(10.0, 2.0), factor * 0.25 * 2.0 + 10.0);
  EXPECT_EQ(RandGauss(-1.0, -3.0), factor * 0.5 * -3.0 + -1.0);
}

TEST_F(RandomEdgeTest, GaussOfUnusualParametersFollowsTheFormula) {
  host.Seed(1);
  EXPECT_EQ(RandGauss(5.0, 0.0), 5.0);
  EXPECT_EQ(RandGauss(kInfinity, 1.0), kInfinity);
  EXPECT_EQ(RandGauss(-kInfinity, 1.0), -kInfinity);
  EXPECT_TRUE(std::isnan(RandGauss(kNaN, 1.0)));
  EXPECT_TRUE(std::isnan(RandGauss(0.0, kNaN)));
  EXPECT_TRUE(std::isinf(RandGauss(0.0, kInfinity)));
  EXPECT_TRUE(std::isfinite(RandGauss(0.0, 1.0)));
}

TEST_F(RandomEdgeTest, PoissonBelowTwelveMultiplies) {
  Feed({0.9, 1e-5, 0.5});  // exp(-11.99) is about 6.2e-6
  EXPECT_EQ(RandPoisson(11.99), 2.0);
  EXPECT_EQ(host.DrawCount(), 3);
}

TEST_F(RandomEdgeTest, PoissonFromTwelveOnRejects) {
  Feed({0.0, 0.95, 0.0, 0.85});  // the trial value is 12 both times, and 0.9 of them is accepted
  EXPECT_EQ(RandPoisson(12.0), 12.0);
  EXPECT_EQ(host.DrawCount(), 4);
}

TEST_F(RandomEdgeTest, PoissonDrawsAgainWithoutAnAcceptanceTestWhenTheTrialIsNegative) {
  Feed({0.55, 0.0, 0.5});  // tan(0.55 pi) is about -6.3
  EXPECT_EQ(RandPoisson(12.0), 12.0);
  EXPECT_EQ(host.DrawCount(), 3);
}

TEST_F(RandomEdgeTest, PoissonOfMeanZeroIsZero) {
  Feed({0.999, 0.5});
  EXPECT_EQ(RandPoisson(0.0), 0.0);
  EXPECT_EQ(RandPoisson(-0.0), 0.0);
  EXPECT_EQ(host.DrawCount(), 2);
}

TEST_F(RandomEdgeTest, PoissonOfNegativeMeanIsZeroAfterOneDraw) {
  for (double mean : {-1e-3, -2.0, -50.0, -1e300, -kInfinity}) {
    Feed({0.999});
    EXPECT_EQ(RandPoisson(mean), 0.0) << mean;
  }
  EXPECT_EQ(host.DrawCount(), 5);
}

TEST_F(RandomEdgeTest, PoissonOfMeanWithoutEndIsNaNWithoutADraw) {
  for (double mean : {kNaN, kInfinity, 1e306, std::numeric_limits<double>::max()}) {
    EXPECT_TRUE(std::isnan(RandPoisson(mean))) << mean;
  }
  EXPECT_EQ(host.DrawCount(), 0);
}

TEST_F(RandomEdgeTest, PoissonOfTheLargestMeansEndsNearThem) {
  host.Seed(7);
  for (double mean : {1e12, 1e14, 1e15, 9e15, 1e16, 1e25, 1e100, 2e305}) {
    for (int i = 0; i < 200; ++i) {
      const double deviate = RandPoisson(mean);
      ASSERT_NEAR(deviate, mean, 1e-4 * mean);
      ASSERT_EQ(deviate, std::floor(deviate));
    }
  }
}

TEST_F(RandomEdgeTest, PoissonOfTheLargestMeansIsTheRejectionProcedure) {
  ReferenceGenerators reference(AwkwardUniforms(4));
  host.SetUniformSource(AwkwardUniforms(4));
  for (double mean : {9007199254740994.0, 1e25, 2e305, 20.0}) {
    for (int i = 0; i < 100; ++i) ASSERT_EQ(RandPoisson(mean), reference.Poisson(mean)) << mean;
  }
}

TEST_F(RandomEdgeTest, PoissonRemembersNothingOfARefusedMean) {
  ReferenceGenerators reference(AwkwardUniforms(3));
  host.SetUniformSource(AwkwardUniforms(3));
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(RandPoisson(20.0), reference.Poisson(20.0));
    ASSERT_TRUE(std::isnan(RandPoisson(kNaN)));
  }
}

TEST_F(RandomEdgeTest, BinominalOfLargeProbabilityCountsFailures) {
  // Four of the ten uniforms are below 0.3 (which 1 - 0.7 is, but for the last bit).
  Feed({0.1, 0.9, 0.2, 0.8, 0.05, 0.7, 0.29, 0.6, 0.31, 0.99});
  EXPECT_EQ(RandBinominal(0.7, 10), 6.0);
  EXPECT_EQ(host.DrawCount(), 10);
}

TEST_F(RandomEdgeTest, BinominalOfNoTrialsIsZeroWithoutADraw) {
  for (double p : {0.0, 0.3, 0.5, 0.51, 1.0}) EXPECT_EQ(RandBinominal(p, 0), 0.0) << p;
  EXPECT_EQ(host.DrawCount(), 0);
}

TEST_F(RandomEdgeTest, BinominalOfNegativeTrialsIsZeroOrTheirNumber) {
  EXPECT_EQ(RandBinominal(0.3, -5), 0.0);
  EXPECT_EQ(RandBinominal(0.5, -5), 0.0);
  EXPECT_EQ(RandBinominal(0.7, -5), -5.0);
  EXPECT_EQ(RandBinominal(0.7, INT_MIN), static_cast<double>(INT_MIN));
  EXPECT_EQ(host.DrawCount(), 0);
}

TEST_F(RandomEdgeTest, BinominalOfTwentyFourTrialsMakesThemAll) {
  EXPECT_EQ(DrawsFrom(0.01, [] { EXPECT_EQ(RandBinominal(0.02, 24), 24.0); }), 24);
}

TEST_F(RandomEdgeTest, BinominalOfRareSuccessesWaits) {
  Feed({0.9, 0.8, 0.5});  // exp(-0.5) is about 0.607; the products are 0.9, 0.72, 0.36
  EXPECT_EQ(RandBinominal(0.01, 50), 2.0);
  EXPECT_EQ(host.DrawCount(), 3);
}

TEST_F(RandomEdgeTest, BinominalWaitingEndsAfterTheLastTrial) {
  const auto draws = DrawsFrom(1.0, [] { EXPECT_EQ(RandBinominal(0.01, 50), 50.0); });
  EXPECT_EQ(draws, 51);
}

TEST_F(RandomEdgeTest, BinominalExpectingOneSuccessRejects) {
  Feed({0.0, 0.1});  // 25 * 0.04 is 1: the trial value is 1
  EXPECT_EQ(RandBinominal(0.04, 25), 1.0);
  EXPECT_EQ(host.DrawCount(), 2);
}

TEST_F(RandomEdgeTest, BinominalDrawsAgainWithoutAnAcceptanceTestOutsideTheRange) {
  Feed({0.51, 0.49, 0.0, 0.1});  // far below 0, far above 100, then the mean
  EXPECT_EQ(RandBinominal(0.25, 100), 25.0);
  EXPECT_EQ(host.DrawCount(), 4);
}

TEST_F(RandomEdgeTest, BinominalOfNaNIsNaNWithoutADrawForManyTrials) {
  for (int n : {25, 1000, INT_MAX}) EXPECT_TRUE(std::isnan(RandBinominal(kNaN, n))) << n;
  EXPECT_EQ(host.DrawCount(), 0);
}

TEST_F(RandomEdgeTest, BinominalOfNaNTakesEveryOfAFewTrialsForASuccess) {
  // No uniform is below NaN: no failure is counted, and NaN is not its own complement.
  host.Seed(5);
  for (int n : {-3, 0, 1, 10, 24}) {
    const std::int64_t before = host.DrawCount();
    EXPECT_EQ(RandBinominal(kNaN, n), n);
    EXPECT_EQ(host.DrawCount() - before, n > 0 ? n : 0);
  }
}

TEST_F(RandomEdgeTest, BinominalClampsWhatIsNoProbability) {
  for (int n : {10, 25, 1000, INT_MAX}) {
    for (double p : {-kInfinity, -1e300, -1.0, -1e-300}) EXPECT_EQ(RandBinominal(p, n), 0.0);
    for (double p : {1.5, 2.0, 1e300, kInfinity}) EXPECT_EQ(RandBinominal(p, n), n);
  }
}

TEST_F(RandomEdgeTest, BinominalOfCertainEventsIsCertain) {
  for (int n : {1, 24, 25, 1000, INT_MAX}) {
    EXPECT_EQ(RandBinominal(0.0, n), 0.0) << n;
    EXPECT_EQ(RandBinominal(1.0, n), n) << n;
  }
}

TEST_F(RandomEdgeTest, BinominalOfTheMostTrialsEnds) {
  host.Seed(11);
  for (double p : {1e-12, 1e-9, 1e-6, 0.5, 1.0 - 1e-6, 1.0 - 1e-9, 1.0 - 0x1p-53}) {
    const double expected = INT_MAX * p;
    for (int i = 0; i < 100; ++i) {
      ASSERT_NEAR(RandBinominal(p, INT_MAX), expected, 12.0 + 8.0 * std::sqrt(expected * (1 - p)))
          << p;
    }
  }
}

TEST_F(RandomEdgeTest, GaussOfAStuckSourceIsNaN) {
  for (double value : {0.0, 0.5, kNaN}) {
    host.SetUniformSource([value] { return value; });
    EXPECT_TRUE(std::isnan(RandGauss(0.0, 1.0))) << value;
  }
  host.Seed(1);
  host.SetUniformSource({});
  EXPECT_TRUE(std::isfinite(RandGauss(0.0, 1.0)));
}

TEST_F(RandomEdgeTest, PoissonOfAStuckSourceIsNaN) {
  host.SetUniformSource([] { return 1.0; });
  EXPECT_TRUE(std::isnan(RandPoisson(5.0)));
  host.SetUniformSource([] { return 0.6; });  // the trial value is negative for ever
  EXPECT_TRUE(std::isnan(RandPoisson(12.0)));
  host.SetUniformSource([] { return kNaN; });
  EXPECT_TRUE(std::isnan(RandPoisson(12.0)));
}

TEST_F(RandomEdgeTest, BinominalOfAStuckSourceIsNaN) {
  host.SetUniformSource([] { return 0.51; });
  EXPECT_TRUE(std::isnan(RandBinominal(0.25, 100)));
  host.SetUniformSource([] { return kNaN; });
  EXPECT_TRUE(std::isnan(RandBinominal(0.25, 100)));
}

TEST_F(RandomEdgeTest, NothingRaisesAnError) {
  host.Seed(1);
  RandGauss(kNaN, kNaN);
  RandPoisson(kNaN);
  RandPoisson(-3.0);
  RandBinominal(kNaN, 30);
  RandBinominal(7.0, -30);
  EXPECT_FALSE(host.HasError());
  EXPECT_EQ(host.RaisedErrorCount(), 0);
}

}  // namespace
