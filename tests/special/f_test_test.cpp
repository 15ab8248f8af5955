#include "special/f_test.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "special/beta.h"
#include "special/host_errors.h"
#include "special/literal_beta.h"
#include "special/same_bits.h"

namespace {

using host_errors::HostTest;
using host_errors::kNaN;
using same_bits::Arguments;
using Sample = std::vector<double>;

class FTestOfSamples : public HostTest {
 protected:
  double Run(Sample first, Sample second) {
    const Sample firstBefore = first;
    const Sample secondBefore = second;
    const double significance = FTest(first.data(), static_cast<int>(first.size()), second.data(),
                                      static_cast<int>(second.size()), f);
    for (std::size_t i = 0; i < first.size(); ++i) EXPECT_SAME_BITS(first[i], firstBefore[i]);
    for (std::size_t i = 0; i < second.size(); ++i) EXPECT_SAME_BITS(second[i], secondBefore[i]);
    return significance;
  }

  double f = -7.0;
};

Sample DrawSample(Arguments& draw, double offset, double scale) {
  Sample sample(static_cast<std::size_t>(draw.Integer(2, 40)));
  for (double& value : sample) value = offset + scale * draw.Uniform(-1.0, 1.0);
  return sample;
}

TEST_F(FTestOfSamples, HasTheBitsOfItsProcedure) {
  Arguments draw(1);
  for (int i = 0; i < 5000; ++i) {
    const double offset = i % 2 == 0 ? 0.0 : draw.LogUniform(1.0, 1e6);
    const Sample first = DrawSample(draw, offset, 1.0);
    const Sample second = DrawSample(draw, offset, draw.LogUniform(0.1, 10.0));
    double expectedF = 0.0;
    const double expected =
        literal::FTest(first.data(), static_cast<int>(first.size()), second.data(),
                       static_cast<int>(second.size()), expectedF);
    EXPECT_SAME_BITS(Run(first, second), expected);
    EXPECT_SAME_BITS(f, expectedF);
  }
}

TEST_F(FTestOfSamples, SumsRunInIndexOrder) {
  // Added to 1e16, ones are lost one by one; added up first, they are not.
  const Sample other = {0.0, 1.0, 3.0};
  Run({1e8, 1.0, 1.0, 1.0}, other);
  const double largestFirst = f;
  Run({1.0, 1.0, 1.0, 1e8}, other);
  EXPECT_LT(largestFirst, f);
}

TEST_F(FTestOfSamples, FewerThanTwoValuesGiveZeroAndLeaveTheRatio) {
  EXPECT_SAME_BITS(Run({1.0}, {1.0, 2.0}), 0.0);
  EXPECT_SAME_BITS(Run({1.0, 2.0}, {1.0}), 0.0);
  EXPECT_SAME_BITS(Run({}, {}), 0.0);
  EXPECT_SAME_BITS(FTest(nullptr, -1, nullptr, 5, f), 0.0);
  EXPECT_EQ(f, -7.0);
}

TEST_F(FTestOfSamples, EqualVariancesGiveOneAndRatioOne) {
  EXPECT_SAME_BITS(Run({1.0, 2.0, 3.0}, {3.0, 1.0, 2.0}), 1.0);
  EXPECT_SAME_BITS(f, 1.0);
  f = -7.0;
  EXPECT_SAME_BITS(Run({5.0, 5.0}, {2.0, 2.0, 2.0}), 1.0);  // both without scatter
  EXPECT_SAME_BITS(f, 1.0);
}

TEST_F(FTestOfSamples, SampleWithoutScatterGivesRatioOneMillion) {
  const Sample constant = {4.0, 4.0, 4.0, 4.0};
  const Sample scattered = {1.0, 2.0};
  const double x = 3.0 / (3.0 + 1.0 * 1e6);
  EXPECT_SAME_BITS(Run(constant, scattered), 2.0 * Beta_I(1.5, 0.5, x));
  EXPECT_EQ(f, 1e6);
  // The degrees are those of the second sample over the first, whichever has no scatter.
  const double swapped = 1.0 / (1.0 + 3.0 * 1e6);
  EXPECT_SAME_BITS(Run(scattered, constant), 2.0 * Beta_I(0.5, 1.5, swapped));
  EXPECT_EQ(f, 1e6);
}

TEST_F(FTestOfSamples, TheLargerVarianceIsTheNumerator) {
  const Sample narrow = {1.0, 2.0, 3.0, 4.0, 5.0};
  const Sample wide = {-10.0, 0.0, 10.0};
  const double significance = Run(narrow, wide);
  EXPECT_DOUBLE_EQ(f, 100.0 / 2.5);
  EXPECT_NEAR(significance, 2.0 * Beta_I(2.0, 1.0, 4.0 / (4.0 + 2.0 * f)), 1e-15);
  EXPECT_SAME_BITS(Run(wide, narrow), significance);
  EXPECT_DOUBLE_EQ(f, 100.0 / 2.5);
}

TEST_F(FTestOfSamples, SignificanceAboveOneIsFoldedBack) {
  // A ratio close to 1 with unequal degrees lies below the median of its distribution.
  Arguments draw(2);
  int folded = 0;
  for (int i = 0; i < 500; ++i) {
    const double significance = Run(DrawSample(draw, 0.0, 1.0), DrawSample(draw, 0.0, 1.0));
    EXPECT_GE(significance, 0.0);
    EXPECT_LE(significance, 1.0);
  }
  const Sample two = {0.0, 2.0};
  const Sample many = {0.0, 1.95, 0.0, 1.95, 0.0, 1.95, 0.0, 1.95};
  const double significance = Run(two, many);
  const double unfolded = 2.0 * Beta_I(3.5, 0.5, 7.0 / (7.0 + 1.0 * f));
  if (unfolded > 1.0) ++folded;
  EXPECT_SAME_BITS(significance, unfolded > 1.0 ? 2.0 - unfolded : unfolded);
  const Sample manyWide = {0.0, 2.2, 0.0, 2.2, 0.0, 2.2, 0.0, 2.2};
  const Sample twoNarrow = {0.0, 1.5};
  const double reversed = Run(manyWide, twoNarrow);
  const double reversedUnfolded = 2.0 * Beta_I(0.5, 3.5, 1.0 / (1.0 + 7.0 * f));
  if (reversedUnfolded > 1.0) ++folded;
  EXPECT_SAME_BITS(reversed, reversedUnfolded > 1.0 ? 2.0 - reversedUnfolded : reversedUnfolded);
  EXPECT_GT(folded, 0);
}

TEST_F(FTestOfSamples, NaNInASampleGivesNaN) {
  EXPECT_TRUE(std::isnan(Run({1.0, kNaN, 2.0}, {1.0, 2.0})));
  EXPECT_TRUE(std::isnan(f));
  ExpectError("a or b too big, Beta_P does not converge in 300 itterations");
}

TEST_F(FTestOfSamples, OverflowingSamplesEnd) {
  const double significance = Run({1e200, -1e200}, {1.0, 2.0});
  EXPECT_TRUE(significance == 0.0 || std::isnan(significance));
}

}  // namespace
