#include "special/beta.h"

#include <gtest/gtest.h>

#include <cmath>

#include "special/host_errors.h"
#include "special/literal_beta.h"
#include "special/log_complement.h"
#include "special/same_bits.h"

namespace {

using host_errors::HostTest;
using host_errors::kInfinity;
using host_errors::kNaN;
using same_bits::Arguments;

constexpr const char* kNotConverged = "a or b too big, Beta_P does not converge in 300 itterations";

class BetaFunctions : public HostTest {};

// Bits --------------------------------------------------------------------------------------------

TEST_F(BetaFunctions, FractionsHaveTheBitsOfTheirProcedure) {
  Arguments draw(1);
  for (int i = 0; i < 5000; ++i) {
    const double a = draw.LogUniform(1e-3, 1e4);
    const double b = draw.LogUniform(1e-3, 1e4);
    const double x = (a + 1.0) / (a + b + 2.0) * draw.Uniform(0.0, 1.0);
    EXPECT_SAME_BITS(tarn::BetaContFrac(a, b, x), literal::BetaContFrac(a, b, x));
    EXPECT_SAME_BITS(tarn::LnBetaContFrac(a, b, x), literal::LnBetaContFrac(a, b, x));
  }
}

TEST_F(BetaFunctions, FractionsGuardVanishingDenominators) {
  // 1 - (a + b) x/(a + 1) is 0 for a = 1, b = 3, x = 1/2.
  EXPECT_SAME_BITS(tarn::BetaContFrac(1.0, 3.0, 0.5), literal::BetaContFrac(1.0, 3.0, 0.5));
  EXPECT_SAME_BITS(tarn::LnBetaContFrac(1.0, 3.0, 0.5), literal::LnBetaContFrac(1.0, 3.0, 0.5));
  EXPECT_TRUE(std::isfinite(tarn::BetaContFrac(1.0, 3.0, 0.5)));
}

TEST_F(BetaFunctions, IncompleteFormsHaveTheBitsOfTheirProcedures) {
  Arguments draw(2);
  for (int i = 0; i < 5000; ++i) {
    const double a = draw.LogUniform(1e-3, 1e4);
    const double b = draw.LogUniform(1e-3, 1e4);
    const double x =
        i % 2 == 0 ? draw.Uniform(0.0, 1.0) : std::fmin(1.0, a / (a + b) * draw.Uniform(0.5, 2.0));
    EXPECT_SAME_BITS(Beta_I(a, b, x), literal::Beta_I(a, b, x));
    EXPECT_SAME_BITS(LnBeta_I(a, b, x), literal::LnBeta_I(a, b, x));
  }
}

TEST_F(BetaFunctions, CompleteFormsHaveTheBitsOfTheirFormulas) {
  Arguments draw(3);
  for (int i = 0; i < 20000; ++i) {
    const double a = draw.LogUniform(1e-300, 1e10);
    const double b = draw.LogUniform(1e-5, 1e10);
    EXPECT_SAME_BITS(LnBeta(a, b), literal::LnBeta(a, b));
    EXPECT_SAME_BITS(Beta(a, b), literal::Beta(a, b));
  }
}

// Places where the method changes -----------------------------------------------------------------

TEST_F(BetaFunctions, SwitchesAtTheRatioOfAPlusOneToAPlusBPlusTwo) {
  const double a = 3.0;
  const double b = 7.0;
  const double at = (a + 1.0) / (a + b + 2.0);
  const double below = std::nextafter(at, 0.0);
  const auto factor = [&](double x) {
    return std::exp(LnBeta(a, b) * -1.0 + a * std::log(x) + b * std::log(1.0 - x));
  };
  EXPECT_NEAR(Beta_I(a, b, below), factor(below) * tarn::BetaContFrac(a, b, below) / a, 1e-14);
  EXPECT_NEAR(Beta_I(a, b, at), 1.0 - factor(at) * tarn::BetaContFrac(b, a, 1.0 - at) / b, 1e-14);
  EXPECT_SAME_BITS(Beta_I(a, b, below), literal::Beta_I(a, b, below));
  EXPECT_SAME_BITS(Beta_I(a, b, at), literal::Beta_I(a, b, at));
}

TEST_F(BetaFunctions, LnBetaINearProbabilityZeroFromAboveIsNaN) {
  // The complement's logarithm is above -0.0001, and the series in it is negative.
  const double a = 2.0;
  const double b = 1e-6;
  const double x = 0.9;
  const double complement = std::log1p(-Beta_I(a, b, x));
  ASSERT_GT(complement, -0.0001);
  EXPECT_LT(tarn::LogComplementSeries(complement), 0.0);
  EXPECT_TRUE(std::isnan(LnBeta_I(a, b, x)));
  // I_x(2, b) = 1 - (1 - x)^b (1 + b x).
  const double expected = -std::expm1(b * std::log1p(-x)) - std::pow(1.0 - x, b) * b * x;
  EXPECT_NEAR(std::log(Beta_I(a, b, x)), std::log(expected), 1e-8);
}

// Edges -------------------------------------------------------------------------------------------

TEST_F(BetaFunctions, AtTheEndsOfTheUnitInterval) {
  for (const double a : {1e-300, 0.5, 1.0, 1e300}) {
    for (const double b : {1e-300, 0.5, 1.0, 1e300}) {
      EXPECT_SAME_BITS(Beta_I(a, b, 0.0), 0.0);
      EXPECT_SAME_BITS(Beta_I(a, b, -0.0), 0.0);
      EXPECT_SAME_BITS(Beta_I(a, b, 1.0), 1.0);
      EXPECT_SAME_BITS(LnBeta_I(a, b, 0.0), -1e300);
      EXPECT_SAME_BITS(LnBeta_I(a, b, 1.0), 0.0);
    }
  }
}

TEST_F(BetaFunctions, XOutsideTheUnitIntervalRaisesError3AndGivesZero) {
  for (const auto function : {Beta_I, LnBeta_I}) {
    for (const double x : {-5e-324, -1.0, -kInfinity, std::nextafter(1.0, 2.0), 2.0, kInfinity}) {
      EXPECT_SAME_BITS(function(1.0, 1.0, x), 0.0);
      ExpectBareError();
    }
  }
}

TEST_F(BetaFunctions, NonPositiveParametersRaiseError3AndGiveZero) {
  for (const auto function : {Beta_I, LnBeta_I}) {
    for (const double bad : {0.0, -0.0, -1.0, -kInfinity}) {
      for (const double x : {0.0, 0.5, 1.0}) {
        EXPECT_SAME_BITS(function(bad, 1.0, x), 0.0);
        ExpectBareError();
        EXPECT_SAME_BITS(function(1.0, bad, x), 0.0);
        ExpectBareError();
      }
    }
  }
}

TEST_F(BetaFunctions, FractionOutOfRoundsRaisesItsTextAndKeepsTheLastValue) {
  const double big = 1e8;
  EXPECT_SAME_BITS(tarn::BetaContFrac(big, big, 0.5), literal::BetaContFrac(big, big, 0.5));
  ExpectError(kNotConverged);
  EXPECT_SAME_BITS(tarn::LnBetaContFrac(big, big, 0.5), literal::LnBetaContFrac(big, big, 0.5));
  ExpectError(kNotConverged);
  EXPECT_SAME_BITS(Beta_I(big, big, 0.5), literal::Beta_I(big, big, 0.5));
  ExpectError(kNotConverged);
  EXPECT_SAME_BITS(LnBeta_I(big, big, 0.5), literal::LnBeta_I(big, big, 0.5));
  ExpectError(kNotConverged);
  EXPECT_TRUE(std::isfinite(literal::Beta_I(big, big, 0.5)));
}

TEST_F(BetaFunctions, NaNAndInfiniteParametersEndWithNaNAndTheTextOfTheFraction) {
  for (const auto function : {Beta_I, LnBeta_I}) {
    const double cases[][3] = {{kNaN, 1.0, 0.5},      {1.0, kNaN, 0.5},      {1.0, 1.0, kNaN},
                               {kInfinity, 1.0, 0.5}, {1.0, kInfinity, 0.5}, {1e308, 1.0, 0.5}};
    for (const auto& [a, b, x] : cases) {
      EXPECT_TRUE(std::isnan(function(a, b, x)));
      ExpectError(kNotConverged);
    }
  }
}

TEST_F(BetaFunctions, CompleteFormsRaiseNothing) {
  EXPECT_EQ(LnBeta(0.0, 1.0), kInfinity);
  EXPECT_EQ(Beta(1.0, 0.0), kInfinity);
  EXPECT_TRUE(std::isnan(Beta(-1.0, 1.0)));
  EXPECT_TRUE(std::isnan(LnBeta(kNaN, 1.0)));
  EXPECT_TRUE(std::isnan(LnBeta(kInfinity, 1.0)));
  EXPECT_TRUE(std::isnan(LnBeta(1e308, 1e308)));
}

// Identities --------------------------------------------------------------------------------------

TEST_F(BetaFunctions, BetaIsSymmetricBitByBit) {
  Arguments draw(4);
  for (int i = 0; i < 2000; ++i) {
    const double a = draw.LogUniform(1e-5, 1e5);
    const double b = draw.LogUniform(1e-5, 1e5);
    EXPECT_SAME_BITS(Beta(a, b), Beta(b, a));
  }
}

TEST_F(BetaFunctions, BetaOfKnownArguments) {
  EXPECT_NEAR(Beta(1.0, 1.0), 1.0, 1e-13);
  EXPECT_NEAR(Beta(0.5, 0.5), 3.141592653589793, 1e-12);
  EXPECT_NEAR(Beta(3.0, 4.0), 1.0 / 60.0, 1e-13);
}

TEST_F(BetaFunctions, IncompleteFormReflects) {
  Arguments draw(5);
  for (int i = 0; i < 2000; ++i) {
    const double a = draw.LogUniform(0.01, 500.0);
    const double b = draw.LogUniform(0.01, 500.0);
    const double x = draw.Integer(1, 1023) / 1024.0;  // 1 - x is exact
    EXPECT_NEAR(Beta_I(a, b, x) + Beta_I(b, a, 1.0 - x), 1.0, 1e-12);
  }
}

TEST_F(BetaFunctions, IncompleteFormWithUnitParameterIsAPower) {
  for (double x = 0.01; x < 1.0; x += 0.01) {
    for (const double p : {0.3, 1.0, 2.5, 20.0}) {
      EXPECT_NEAR(Beta_I(p, 1.0, x), std::pow(x, p), 1e-11);
      EXPECT_NEAR(Beta_I(1.0, p, x), 1.0 - std::pow(1.0 - x, p), 1e-11);
    }
  }
}

TEST_F(BetaFunctions, LogarithmIsThatOfTheIncompleteForm) {
  Arguments draw(6);
  for (int i = 0; i < 2000; ++i) {
    const double a = draw.LogUniform(0.1, 100.0);
    const double b = draw.LogUniform(0.1, 100.0);
    const double x = a / (a + b) * draw.Uniform(0.5, 1.2);
    if (x >= 1.0) continue;
    EXPECT_NEAR(LnBeta_I(a, b, x), std::log(Beta_I(a, b, x)), 1e-12);
  }
}

}  // namespace
