/// Integrals of tabulated functions between two limits.

#include <gtest/gtest.h>

#include "tfunc_reference.h"
#include "tfunc_test_support.h"

namespace {

using tfunc_test::GuardedArray;
using tfunc_test::kInfinity;
using tfunc_test::kNaN;
using tfunc_test::MakeArguments;
using tfunc_test::MakeFunction;
using tfunc_test::MakeTables;
using tfunc_test::SameBits;
using tfunc_test::Table;

TFunc Square(int n) {
  TFunc f(n);
  for (int i = 0; i < n; ++i) f.Y[i] = f.X[i] * f.X[i];
  return f;
}

/// (0, 1), (1, 3), (3, 1), (4, 5)
class TFuncIntegralBetween : public testing::Test {
 protected:
  double x[4] = {0, 1, 3, 4};
  double y[4] = {1, 3, 1, 5};
  TFunc f{x, y, 4};
};

TEST_F(TFuncIntegralBetween, KnotsAreWholeTrapezoids) {
  EXPECT_EQ(f.Integral(0, 4), 9);
  EXPECT_EQ(f.Integral(1, 3), 4);
  EXPECT_EQ(f.Integral(0, 1), 2);
  EXPECT_EQ(f.Integral(3, 4), 3);
}

TEST_F(TFuncIntegralBetween, PiecesAtBothEnds) {
  EXPECT_EQ(f.Integral(0.5, 1), 1.25);
  EXPECT_EQ(f.Integral(1, 2), 2.5);
  EXPECT_EQ(f.Integral(0.5, 3.5), 1.25 + 4 + 1);
}

TEST_F(TFuncIntegralBetween, WithoutAKnotBetweenTheLimits) {
  EXPECT_EQ(f.Integral(1.5, 2.5), 2);
  EXPECT_EQ(f.Integral(1.5, 1.5), 0);
}

TEST_F(TFuncIntegralBetween, TheFunctionIsConstantOutside) {
  EXPECT_EQ(f.Integral(-2, 0), 2);
  EXPECT_EQ(f.Integral(-3, -1), 2);
  EXPECT_EQ(f.Integral(4, 6), 10);
  EXPECT_EQ(f.Integral(5, 6), 5);
  EXPECT_EQ(f.Integral(-2, 6), 2 + 9 + 10);
}

TEST_F(TFuncIntegralBetween, SwappedLimitsChangeTheSign) {
  EXPECT_EQ(f.Integral(3.5, 0.5), -6.25);
  for (const Table& table : MakeTables(true)) {
    const TFunc g = MakeFunction(table);
    const std::vector<double> limits = MakeArguments(table, 21);
    for (std::size_t i = 1; i < limits.size(); ++i) {
      const double a = limits[i - 1];
      const double b = limits[i];
      if (a == b || std::isnan(a + b) || std::isinf(a - b)) continue;
      EXPECT_EQ(g.Integral(b, a), -g.Integral(a, b)) << table.name;
    }
  }
}

TEST_F(TFuncIntegralBetween, FewerThanTwoPointsGiveZero) {
  EXPECT_EQ(TFunc(0).Integral(0, 1), 0);
  EXPECT_EQ(TFunc(0).IntegralSimpson(0, 1), 0);
  const TFunc one(x, y, 1);
  EXPECT_EQ(one.Integral(0, 1), 0);
  EXPECT_EQ(one.IntegralSimpson(0, 1), 0);
}

TEST_F(TFuncIntegralBetween, ADoubledKnotCountsWithItsOwnOrdinateOnEachSide) {
  double sx[] = {0, 1, 1, 2};
  double sy[] = {2, 2, 6, 6};
  const TFunc step(sx, sy, 4);
  EXPECT_EQ(step.Integral(0, 1), 2);
  EXPECT_EQ(step.Integral(1, 2), 6);
  EXPECT_EQ(step.Integral(0.5, 1.5), 4);
  EXPECT_EQ(step.Integral(1, 1), 0);
}

TEST_F(TFuncIntegralBetween, SameBitsAsStepByStepInAscendingTables) {
  for (const Table& table : MakeTables(true)) {
    const TFunc g = MakeFunction(table);
    const std::vector<double> limits = MakeArguments(table, 22);
    for (std::size_t i = 1; i < limits.size(); ++i) {
      const double a = limits[i - 1];
      const double b = limits[i];
      EXPECT_TRUE(
          SameBits(g.Integral(a, b), tfunc_reference::TrapezoidsBetween(table.x, table.y, a, b)))
          << table.name << " from " << a << " to " << b;
    }
  }
}

TEST(TFuncSimpsonBetween, SpansOfFewerThanSixIntervalsAreTrapezoids) {
  const TFunc f = Square(20);
  // From 3 to 7.5: knots 3 to 8, five intervals.
  EXPECT_EQ(f.IntegralSimpson(3, 7.5), f.Integral(3, 7.5));
  EXPECT_NE(f.IntegralSimpson(3, 8.5), f.Integral(3, 8.5));
  EXPECT_EQ(f.IntegralSimpson(3.25, 3.75), f.Integral(3.25, 3.75));
}

TEST(TFuncSimpsonBetween, ShortSpansKnowNoSign) {
  const TFunc f = Square(20);
  ASSERT_GT(f.IntegralSimpson(3, 7.5), 0);
  EXPECT_EQ(f.IntegralSimpson(7.5, 3), f.IntegralSimpson(3, 7.5));
}

TEST(TFuncSimpsonBetween, LongSpansChangeTheSign) {
  const TFunc f = Square(20);
  ASSERT_GT(f.IntegralSimpson(3, 8.5), 0);
  EXPECT_EQ(f.IntegralSimpson(8.5, 3), -f.IntegralSimpson(3, 8.5));
}

TEST(TFuncSimpsonBetween, AnUpperLimitOnAKnotTakesOneKnotMore) {
  const TFunc f = Square(20);
  // From 3 to 8: knots 3 to 9, six intervals, so parabolas; the trapezoid from 8 to 9 is removed.
  EXPECT_DOUBLE_EQ(f.IntegralSimpson(3, 8), (9 * 9 * 9 - 27) / 3.0 - (81 + 64) / 2.0);
  // From 3 to 7: five intervals.
  EXPECT_EQ(f.IntegralSimpson(3, 7), f.Integral(3, 7));
  // The last knot has none behind it.
  EXPECT_DOUBLE_EQ(f.IntegralSimpson(13, 19), (19 * 19 * 19 - 13 * 13 * 13) / 3.0);
}

TEST(TFuncSimpsonBetween, ParabolasAreExactOnUnequalSteps) {
  double x[] = {0, 1, 3, 4, 7, 8, 8.5, 10, 12};
  double y[9];
  for (int i = 0; i < 9; ++i) y[i] = 3 * x[i] * x[i] - 2 * x[i] + 1;
  const auto primitive = [](double t) { return t * t * t - t * t + t; };
  const TFunc even(x, y, 9);
  EXPECT_DOUBLE_EQ(even.IntegralSimpson(0, 12), primitive(12));
  EXPECT_DOUBLE_EQ(even.IntegralSimpson(1, 12), primitive(12) - primitive(1));
  const TFunc odd(x, y, 8);
  EXPECT_DOUBLE_EQ(odd.IntegralSimpson(0, 10), primitive(10));
  EXPECT_DOUBLE_EQ(odd.IntegralSimpson(1, 10), primitive(10) - primitive(1));
}

TEST(TFuncSimpsonBetween, CorrectionsAreTrapezoidsToTheKnotsOutside) {
  const TFunc f = Square(20);
  const double whole = (14 * 14 * 14 - 2 * 2 * 2) / 3.0;
  const double below = (f(2.5) + 4) / 2 * (2 - 2.5);
  const double above = (f(13.25) + 196) / 2 * (13.25 - 14);
  EXPECT_DOUBLE_EQ(f.IntegralSimpson(2.5, 13.25), whole + below + above);
}

TEST(TFuncSimpsonBetween, CorrectionsBeyondTheTableContinueItsEndValues) {
  TFunc f = Square(11);
  f += 3.0;
  const double whole = 1000 / 3.0 + 30;
  EXPECT_DOUBLE_EQ(f.IntegralSimpson(-2, 10), whole + 2 * 3);
  EXPECT_DOUBLE_EQ(f.IntegralSimpson(0, 12), whole + 2 * 103);
  EXPECT_DOUBLE_EQ(f.IntegralSimpson(-2, 12), whole + 2 * 3 + 2 * 103);
  EXPECT_DOUBLE_EQ(f.IntegralSimpson(12, -2), -(whole + 2 * 3 + 2 * 103));
}

TEST(TFuncSimpsonBetween, LimitsOnOneSideOfTheTable) {
  const TFunc f = Square(11);
  EXPECT_EQ(f.IntegralSimpson(-5, -1), 0);
  EXPECT_EQ(f.IntegralSimpson(11, 13), 200);
  EXPECT_EQ(f.IntegralSimpson(13, 11), 200);
}

TEST(TFuncSimpsonBetween, SameBitsAsStepByStepInAscendingTables) {
  for (const Table& table : MakeTables(true)) {
    const TFunc g = MakeFunction(table);
    const std::vector<double> limits = MakeArguments(table, 23);
    for (std::size_t i = 1; i < limits.size(); ++i) {
      const double a = limits[i - 1];
      const double b = limits[i];
      EXPECT_TRUE(SameBits(g.IntegralSimpson(a, b),
                           tfunc_reference::SimpsonBetween(table.x, table.y, a, b)))
          << table.name << " from " << a << " to " << b;
    }
  }
}

TEST(TFuncLimits, NaNAnswersNaN) {
  const TFunc f = Square(20);
  EXPECT_TRUE(std::isnan(f.Integral(kNaN, 3)));
  EXPECT_TRUE(std::isnan(f.Integral(3, kNaN)));
  EXPECT_TRUE(std::isnan(f.IntegralSimpson(kNaN, 3)));
  EXPECT_TRUE(std::isnan(f.IntegralSimpson(3, kNaN)));
  EXPECT_TRUE(std::isnan(f.IntegralSimpson(kNaN, kNaN)));
}

TEST(TFuncLimits, InfiniteLimitsFollowTheEndValues) {
  TFunc f = Square(20);
  f += 1.0;
  EXPECT_EQ(f.Integral(0, kInfinity), kInfinity);
  EXPECT_EQ(f.Integral(kInfinity, 0), -kInfinity);
  EXPECT_EQ(f.Integral(-kInfinity, kInfinity), kInfinity);
  EXPECT_EQ(f.IntegralSimpson(0, kInfinity), kInfinity);
}

TEST(TFuncLimits, EveryTableAndEveryPairOfLimitsEndsInsideTheArrays) {
  for (const Table& table : MakeTables(false)) {
    const std::vector<double> limits = MakeArguments(table, 24);
    for (const bool atEnd : {false, true}) {
      GuardedArray x(table.x, atEnd);
      GuardedArray y(table.y, atEnd);
      const TFunc f(x.Data(), y.Data(), table.Size(), 1);
      double sum = 0;
      for (std::size_t i = 0; i < limits.size(); ++i) {
        for (std::size_t k = 0; k < 10; ++k) {
          const double other = limits[(i + k) % limits.size()];
          sum += f.Integral(limits[i], other) + f.IntegralSimpson(limits[i], other);
        }
      }
      // Among the limits is NaN, so the sum over all of them is too, unless there was no table.
      EXPECT_TRUE(table.Size() == 1 || std::isnan(sum)) << table.name;
    }
  }
}

}  // namespace
