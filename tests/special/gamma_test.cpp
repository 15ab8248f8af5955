#include "special/gamma.h"

#include <gtest/gtest.h>

#include <cmath>

#include "special/host_errors.h"
#include "special/literal_gamma.h"
#include "special/log_complement.h"
#include "special/same_bits.h"

namespace {

using host_errors::HostTest;
using host_errors::kInfinity;
using host_errors::kNaN;
using same_bits::Arguments;

class Gamma : public HostTest {};

/// a and x on the same scale, so that both sides of x = a + 1 occur.
struct Pair {
  double a;
  double x;
};

Pair DrawPair(Arguments& draw) {
  const double a = draw.LogUniform(1e-4, 5e3);
  return {a, (a + 1.0) * draw.LogUniform(0.01, 10.0)};
}

// Bits --------------------------------------------------------------------------------------------

TEST_F(Gamma, LnGammaHasTheBitsOfItsFormula) {
  Arguments draw(1);
  for (int i = 0; i < 20000; ++i) {
    const double x = i % 2 == 0 ? draw.LogUniform(1e-300, 1e300) : draw.Uniform(-20.0, 200.0);
    EXPECT_SAME_BITS(LnGamma(x), literal::LnGamma(x));
  }
}

TEST_F(Gamma, SeriesHasTheBitsOfItsProcedure) {
  Arguments draw(2);
  for (int i = 0; i < 5000; ++i) {
    const auto [a, x] = DrawPair(draw);
    EXPECT_SAME_BITS(tarn::GammaSeries(a, x), literal::GammaSeries(a, x));
    EXPECT_SAME_BITS(tarn::LnGammaSeries(a, x), literal::LnGammaSeries(a, x));
  }
}

TEST_F(Gamma, FractionHasTheBitsOfItsProcedure) {
  Arguments draw(3);
  for (int i = 0; i < 5000; ++i) {
    const auto [a, x] = DrawPair(draw);
    EXPECT_SAME_BITS(tarn::GammaContFrac(a, x), literal::GammaContFrac(a, x));
    EXPECT_SAME_BITS(tarn::LnGammaContFrac(a, x), literal::LnGammaContFrac(a, x));
  }
}

TEST_F(Gamma, FractionGuardsVanishingDenominators) {
  // The first denominator of the fraction, x + 3 - a + (1 - a)(-1)/(x + 1 - a), is 0 here.
  EXPECT_SAME_BITS(tarn::GammaContFrac(1.0, 1e-301), literal::GammaContFrac(1.0, 1e-301));
  EXPECT_SAME_BITS(tarn::GammaContFrac(2.0, 1.0), literal::GammaContFrac(2.0, 1.0));
  EXPECT_SAME_BITS(tarn::GammaContFrac(3.0, 1.0), literal::GammaContFrac(3.0, 1.0));
}

TEST_F(Gamma, ProbabilitiesHaveTheBitsOfTheirProcedures) {
  Arguments draw(4);
  for (int i = 0; i < 5000; ++i) {
    const auto [a, x] = DrawPair(draw);
    EXPECT_SAME_BITS(Gamma_P(a, x), literal::Gamma_P(a, x));
    EXPECT_SAME_BITS(Gamma_Q(a, x), literal::Gamma_Q(a, x));
    EXPECT_SAME_BITS(LnGamma_P(a, x), literal::LnGamma_P(a, x));
    EXPECT_SAME_BITS(LnGamma_Q(a, x), literal::LnGamma_Q(a, x));
  }
}

TEST_F(Gamma, LogarithmsNearProbabilityOneHaveTheBitsOfTheirSeries) {
  Arguments draw(5);
  int taken = 0;
  for (int i = 0; i < 5000; ++i) {
    const double a = draw.LogUniform(1e-6, 0.047);
    const double x = draw.LogUniform(1e-3, 1.0);
    if (literal::LnGammaSeries(a, x) < -0.01) continue;
    ++taken;
    EXPECT_SAME_BITS(LnGamma_Q(a, x), literal::LnGamma_Q(a, x));
  }
  EXPECT_GT(taken, 1000);
}

TEST_F(Gamma, LentzStartIsTheDoubleBelow1e300) {
  EXPECT_EQ(9.999999999999999e299, std::nextafter(1e300, 0.0));
}

// Places where the method changes -----------------------------------------------------------------

TEST_F(Gamma, SwitchesToTheFractionAtAPlusOne) {
  for (const double a : {0.5, 1.0, 2.0, 10.0, 33.0, 1000.0}) {
    const double at = a + 1.0;
    const double below = std::nextafter(at, 0.0);
    EXPECT_SAME_BITS(Gamma_P(a, at), 1.0 - tarn::GammaContFrac(a, at));
    EXPECT_SAME_BITS(Gamma_P(a, below), tarn::GammaSeries(a, below));
    EXPECT_SAME_BITS(Gamma_Q(a, at), tarn::GammaContFrac(a, at));
    EXPECT_SAME_BITS(Gamma_Q(a, below), 1.0 - tarn::GammaSeries(a, below));
    EXPECT_SAME_BITS(LnGamma_Q(a, at), tarn::LnGammaContFrac(a, at));
    EXPECT_SAME_BITS(LnGamma_P(a, below), tarn::LnGammaSeries(a, below));
  }
  // The two methods can be told from each other.
  EXPECT_FALSE(
      same_bits::Same(1.0 - tarn::GammaContFrac(33.0, 34.0), tarn::GammaSeries(33.0, 34.0)));
}

TEST_F(Gamma, ComplementSeriesDividesBy2And6And42) {
  const double y = 0.5;
  double expected = y + y * y / 2.0;
  expected += y * y / 2.0 * y / 6.0;
  expected += y * y / 2.0 * y / 6.0 * y / 42.0;
  expected += y * y / 2.0 * y / 6.0 * y / 42.0 * y / 1806.0;
  expected += y * y / 2.0 * y / 6.0 * y / 42.0 * y / 1806.0 * y / 3263442.0;
  EXPECT_NEAR(tarn::LogComplementSeries(y), expected, 1e-15);
  EXPECT_SAME_BITS(tarn::LogComplementSeries(y), literal::ComplementSeries(y));
}

TEST_F(Gamma, ComplementSeriesStopsAtItsFirstNegativeTerm) {
  // y*y/2 is positive and goes on; y*y*y/12 is negative and is the last term.
  const double y = -0.25;
  EXPECT_EQ(tarn::LogComplementSeries(y), y + y * y / 2.0 + y * y * y / 12.0);
}

TEST_F(Gamma, ComplementSeriesOfZeroAndNaN) {
  EXPECT_EQ(tarn::LogComplementSeries(0.0), 0.0);
  EXPECT_TRUE(std::isnan(tarn::LogComplementSeries(kNaN)));
}

TEST_F(Gamma, LnGammaQNearProbabilityOneIsTheLogarithmOfOneMinusTheSeries) {
  const double y = tarn::LnGammaSeries(0.01, 0.5);
  ASSERT_GT(y, -0.01);
  EXPECT_SAME_BITS(LnGamma_Q(0.01, 0.5), std::log(1.0 - tarn::LogComplementSeries(y)));
  // Which is not ln Q.
  EXPECT_GT(LnGamma_Q(0.01, 0.5), 0.0);
  EXPECT_LT(std::log(Gamma_Q(0.01, 0.5)), -4.6);
}

TEST_F(Gamma, LnGammaPNeverNeedsTheSeriesForNumbers) {
  Arguments draw(6);
  for (int i = 0; i < 2000; ++i) {
    const double a = draw.LogUniform(1e-6, 1e4);
    EXPECT_LT(tarn::LnGammaContFrac(a, a + 1.0), -0.01);
  }
}

// Edges -------------------------------------------------------------------------------------------

TEST_F(Gamma, AtZeroPIsZeroAndQIsOne) {
  for (const double a : {1e-300, 1e-3, 0.5, 1.0, 30.0, 1e300}) {
    EXPECT_SAME_BITS(Gamma_P(a, 0.0), 0.0);
    EXPECT_SAME_BITS(Gamma_Q(a, 0.0), 1.0);
    EXPECT_SAME_BITS(LnGamma_P(a, 0.0), 0.0);
    EXPECT_SAME_BITS(LnGamma_Q(a, 0.0), 0.0);
  }
}

TEST_F(Gamma, NonPositiveARaisesError3AndGivesZero) {
  for (const auto function : {Gamma_P, Gamma_Q, LnGamma_P, LnGamma_Q}) {
    for (const double a : {0.0, -0.0, -1.0, -1e300, -kInfinity}) {
      EXPECT_SAME_BITS(function(a, 1.0), 0.0);
      ExpectBareError();
    }
  }
}

TEST_F(Gamma, NegativeXRaisesError3AndGivesZero) {
  for (const auto function : {Gamma_P, Gamma_Q, LnGamma_P, LnGamma_Q}) {
    for (const double x : {-5e-324, -1.0, -kInfinity}) {
      EXPECT_SAME_BITS(function(1.0, x), 0.0);
      ExpectBareError();
    }
  }
}

TEST_F(Gamma, SeriesRaisesForNegativeXOnly) {
  EXPECT_SAME_BITS(tarn::GammaSeries(1.0, -1.0), 0.0);
  ExpectBareError();
  EXPECT_SAME_BITS(tarn::LnGammaSeries(1.0, -1.0), 0.0);
  ExpectBareError();
  EXPECT_SAME_BITS(tarn::GammaSeries(1.0, 0.0), 0.0);
  EXPECT_SAME_BITS(tarn::LnGammaSeries(1.0, 0.0), 0.0);
}

TEST_F(Gamma, OutOfRoundsUsesTheLastValueWithoutError) {
  // Neither the series nor the fraction has converged after 1000 rounds here.
  EXPECT_SAME_BITS(Gamma_P(1e6, 1e6 - 1.0), literal::Gamma_P(1e6, 1e6 - 1.0));
  EXPECT_NEAR(Gamma_P(1e6, 1e6 - 1.0), 0.34, 0.01);  // P is 0.4997
  EXPECT_SAME_BITS(Gamma_Q(1e8, 1e8 + 1.0), literal::Gamma_Q(1e8, 1e8 + 1.0));
  EXPECT_SAME_BITS(LnGamma_P(1e6, 1e6), literal::LnGamma_P(1e6, 1e6));
  EXPECT_SAME_BITS(LnGamma_Q(1e8, 1e8 + 1.0), literal::LnGamma_Q(1e8, 1e8 + 1.0));
}

TEST_F(Gamma, NaNGivesNaNWithoutError) {
  for (const auto function : {Gamma_P, Gamma_Q, LnGamma_P, LnGamma_Q}) {
    EXPECT_TRUE(std::isnan(function(kNaN, 1.0)));
    EXPECT_TRUE(std::isnan(function(1.0, kNaN)));
    EXPECT_TRUE(std::isnan(function(kNaN, kNaN)));
  }
  EXPECT_TRUE(std::isnan(LnGamma(kNaN)));
}

TEST_F(Gamma, LnGammaQOfNothingIsZeroForAnOrderThatIsNaN) {
  // NaN is not at or below x, and the logarithm of the series at x = 0 counts as 0.
  EXPECT_EQ(LnGamma_Q(kNaN, 0.0), 0.0);
}

TEST_F(Gamma, InfiniteAndHugeArgumentsEnd) {
  for (const auto function : {Gamma_P, Gamma_Q, LnGamma_P, LnGamma_Q}) {
    EXPECT_TRUE(std::isnan(function(kInfinity, 1.0)));
    EXPECT_TRUE(std::isnan(function(1.0, kInfinity)));
    EXPECT_TRUE(std::isnan(function(kInfinity, kInfinity)));
    EXPECT_TRUE(std::isnan(function(1e308, 1.7e308)));
  }
  EXPECT_EQ(Gamma_P(1.0, 1e300), 1.0);
  EXPECT_EQ(Gamma_Q(1.0, 1e300), 0.0);
  EXPECT_EQ(Gamma_P(1e300, 1.0), 0.0);
  EXPECT_EQ(Gamma_Q(1e300, 1.0), 1.0);
}

TEST_F(Gamma, LnGammaOutsideItsDomainIsTheFormulaWithoutError) {
  EXPECT_EQ(LnGamma(0.0), kInfinity);
  for (const double x : {-0.0, -0.5, -1.0, -1.5, -2.0, -5.5, -6.5, -1e10}) {
    EXPECT_SAME_BITS(LnGamma(x), literal::LnGamma(x));
  }
  EXPECT_TRUE(std::isnan(LnGamma(-0.5)));   // Gamma(-1/2) is negative
  EXPECT_FALSE(std::isnan(LnGamma(-1.5)));  // Gamma(-3/2) is positive
  EXPECT_TRUE(std::isnan(LnGamma(-1e10)));
  EXPECT_EQ(LnGamma(1e307), kInfinity);
  EXPECT_TRUE(std::isnan(LnGamma(kInfinity)));
  EXPECT_TRUE(std::isnan(LnGamma(-kInfinity)));
}

// Identities --------------------------------------------------------------------------------------

TEST_F(Gamma, PPlusQIsOne) {
  Arguments draw(7);
  for (int i = 0; i < 2000; ++i) {
    const auto [a, x] = DrawPair(draw);
    EXPECT_NEAR(Gamma_P(a, x) + Gamma_Q(a, x), 1.0, 2.3e-16);
  }
}

TEST_F(Gamma, PObeysTheRecurrenceInA) {
  // P(a + 1, x) = P(a, x) - x^a exp(-x)/Gamma(a + 1).
  Arguments draw(8);
  for (int i = 0; i < 2000; ++i) {
    const double a = draw.LogUniform(0.1, 100.0);
    const double x = a * draw.Uniform(0.5, 2.0);
    const double step = std::exp(a * std::log(x) - x - std::lgamma(a + 1.0));
    EXPECT_NEAR(Gamma_P(a + 1.0, x), Gamma_P(a, x) - step, 1e-10);
  }
}

TEST_F(Gamma, PIsIncreasingInX) {
  for (const double a : {0.1, 1.0, 7.0, 200.0}) {
    double previous = -1.0;
    for (int i = 0; i <= 300; ++i) {
      const double p = Gamma_P(a, (a + 3.0) * i / 150.0);
      EXPECT_GE(p, previous);
      previous = p;
    }
  }
}

TEST_F(Gamma, POfOneHalfIsTheErrorFunction) {
  for (double x = 0.01; x < 6.0; x += 0.013) {
    EXPECT_NEAR(Gamma_P(0.5, x * x), std::erf(x), 1e-13);
  }
}

TEST_F(Gamma, LogarithmsAreThoseOfTheProbabilities) {
  Arguments draw(9);
  for (int i = 0; i < 2000; ++i) {
    const double a = draw.LogUniform(0.1, 100.0);
    const double x = (a + 1.0) * draw.Uniform(0.3, 3.0);
    EXPECT_NEAR(LnGamma_P(a, x), std::log(Gamma_P(a, x)), 1e-12);
    EXPECT_NEAR(LnGamma_Q(a, x), std::log(Gamma_Q(a, x)), 1e-9);
  }
}

TEST_F(Gamma, LnGammaOfIntegersIsTheLogarithmOfFactorials) {
  double factorial = 1.0;
  for (int n = 1; n <= 20; ++n) {
    EXPECT_NEAR(LnGamma(n), std::log(factorial), 1e-10);
    factorial *= n;
  }
}

TEST_F(Gamma, LnGammaObeysTheDuplicationFormula) {
  // Gamma(x) Gamma(x + 1/2) = 2^(1 - 2x) sqrt(pi) Gamma(2x).
  const double pi = 3.141592653589793;
  for (double x = 0.05; x < 60.0; x += 0.31) {
    const double right = (1.0 - 2.0 * x) * std::log(2.0) + 0.5 * std::log(pi) + LnGamma(2.0 * x);
    EXPECT_NEAR(LnGamma(x) + LnGamma(x + 0.5), right, 1e-9);
  }
}

}  // namespace
