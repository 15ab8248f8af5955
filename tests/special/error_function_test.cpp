#include "special/error_function.h"

#include <gtest/gtest.h>

#include <cmath>

#include "special/host_errors.h"
#include "special/literal_error_function.h"
#include "special/same_bits.h"

namespace {

using host_errors::HostTest;
using host_errors::kInfinity;
using host_errors::kNaN;
using same_bits::Arguments;

constexpr double kFitError = 1.2e-7;

class ErrorFunctions : public HostTest {};

TEST_F(ErrorFunctions, HaveTheBitsOfTheirFormulas) {
  Arguments draw(1);
  for (int i = 0; i < 20000; ++i) {
    const double x =
        (i % 2 == 0 ? draw.Uniform(0.0, 12.0) : draw.LogUniform(1e-300, 1e300)) * draw.Sign();
    EXPECT_SAME_BITS(Erf(x), literal::Erf(x));
    EXPECT_SAME_BITS(CErf(x), literal::CErf(x));
    EXPECT_SAME_BITS(LogCErf(x), literal::LogCErf(x));
  }
}

TEST_F(ErrorFunctions, ErfOfZeroIsOneMinusTheFit) {
  for (const double zero : {0.0, -0.0}) {
    EXPECT_SAME_BITS(Erf(zero), 1.0 - CErf(0.0));
    EXPECT_NE(Erf(zero), 0.0);
    EXPECT_LT(std::fabs(Erf(zero)), kFitError);
  }
}

TEST_F(ErrorFunctions, ErfIsOddBitByBit) {
  for (double x = 0.001; x < 8.0; x += 0.037) EXPECT_SAME_BITS(Erf(-x), -Erf(x));
}

TEST_F(ErrorFunctions, CErfAtTenUsesTheAsymptoticForm) {
  EXPECT_SAME_BITS(CErf(10.0), std::exp(-100.0 - std::log(10.0) - 0.5723649429247));
  EXPECT_SAME_BITS(LogCErf(10.0), -100.0 - std::log(10.0) - 0.5723649429247);
  const double below = std::nextafter(10.0, 0.0);
  EXPECT_SAME_BITS(CErf(below), literal::ErrorFit(below));
  EXPECT_SAME_BITS(LogCErf(below), std::log(literal::ErrorFit(below)));
  EXPECT_GT(std::fabs(CErf(10.0) / literal::ErrorFit(10.0) - 1.0), 1e-3);
}

TEST_F(ErrorFunctions, CErfOfNegativeXIsTwoMinusTheFit) {
  EXPECT_SAME_BITS(CErf(-1.0), 2.0 - CErf(1.0));
  for (double x = 0.01; x < 9.9; x += 0.07) EXPECT_SAME_BITS(CErf(-x), 2.0 - CErf(x));
}

TEST_F(ErrorFunctions, AtTheEnds) {
  EXPECT_SAME_BITS(Erf(kInfinity), 1.0);
  EXPECT_SAME_BITS(Erf(-kInfinity), -1.0);
  EXPECT_SAME_BITS(CErf(kInfinity), 0.0);
  EXPECT_SAME_BITS(CErf(-kInfinity), 2.0);
  EXPECT_EQ(LogCErf(kInfinity), -kInfinity);
  EXPECT_SAME_BITS(LogCErf(-kInfinity), std::log(2.0));
  EXPECT_SAME_BITS(CErf(1e300), 0.0);
  EXPECT_EQ(LogCErf(1e300), -kInfinity);
  EXPECT_TRUE(std::isfinite(LogCErf(1e150)));
}

TEST_F(ErrorFunctions, NaNGivesNaN) {
  EXPECT_TRUE(std::isnan(Erf(kNaN)));
  EXPECT_TRUE(std::isnan(CErf(kNaN)));
  EXPECT_TRUE(std::isnan(LogCErf(kNaN)));
}

TEST_F(ErrorFunctions, AgreeWithTheCLibraryToTheErrorOfTheFit) {
  for (double x = -9.99; x < 10.0; x += 0.01) {
    EXPECT_NEAR(Erf(x), std::erf(x), kFitError);
    EXPECT_NEAR(CErf(x) / std::erfc(x), 1.0, kFitError);
    EXPECT_NEAR(LogCErf(x), std::log(std::erfc(x)), kFitError);
  }
}

TEST_F(ErrorFunctions, ErfAndCErfAddUpToOne) {
  for (double x = -9.9; x < 9.9; x += 0.03) EXPECT_NEAR(Erf(x) + CErf(x), 1.0, 2.3e-16);
}

}  // namespace
