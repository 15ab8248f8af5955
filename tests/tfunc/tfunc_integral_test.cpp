/// Running integrals of tabulated functions.

#include <gtest/gtest.h>

#include <memory>

#include "tfunc_reference.h"
#include "tfunc_test_support.h"

namespace {

using tfunc_test::GuardedArray;
using tfunc_test::kNaN;
using tfunc_test::MakeFunction;
using tfunc_test::MakeTables;
using tfunc_test::SameBits;
using tfunc_test::Table;

using List = std::vector<double>;

List OrdinatesOf(const TFunc& f) { return {f.Y, f.Y + f.N}; }

List Trapezoids(List x, List y) {
  const TFunc f(x.data(), y.data(), static_cast<int>(x.size()));
  return OrdinatesOf(*std::unique_ptr<TFunc>(f.Integral()));
}

List Simpson(List x, List y) {
  const TFunc f(x.data(), y.data(), static_cast<int>(x.size()));
  return OrdinatesOf(*std::unique_ptr<TFunc>(f.IntegralSimpson()));
}

TEST(TFuncRunningIntegral, ByTrapezoids) {
  EXPECT_EQ(Trapezoids({0, 1, 3, 4}, {1, 3, 1, 5}), (List{0, 2, 6, 9}));
}

TEST(TFuncRunningIntegral, IsANewFunctionOnTheSameAbscissae) {
  double x[] = {0, 1, 3, 4};
  double y[] = {1, 3, 1, 5};
  const TFunc f(x, y, 4, 1);
  for (TFunc* made : {f.Integral(), f.IntegralSimpson()}) {
    const std::unique_ptr<TFunc> integral(made);
    EXPECT_EQ(integral->Borrowed, 0);
    ASSERT_EQ(integral->N, 4);
    EXPECT_NE(integral->X, x);
    EXPECT_NE(integral->Y, y);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(integral->X[i], x[i]);
  }
  EXPECT_EQ(OrdinatesOf(f), (List{1, 3, 1, 5}));
}

TEST(TFuncRunningIntegral, OfFewerThanTwoPointsIsAMereCopy) {
  EXPECT_EQ(Trapezoids({3}, {7}), List{7});
  EXPECT_EQ(Simpson({3}, {7}), List{7});
  EXPECT_EQ(Trapezoids({}, {}), List{});
  EXPECT_EQ(Simpson({}, {}), List{});
}

TEST(TFuncRunningIntegral, SimpsonOfTwoPointsIsTheTrapezoid) {
  EXPECT_EQ(Simpson({1, 3}, {2, 5}), (List{0, 7}));
}

TEST(TFuncRunningIntegral, SimpsonOfASquareOnEqualStepsIsExact) {
  const List integral = Simpson({0, 1, 2, 3, 4}, {0, 1, 4, 9, 16});
  EXPECT_EQ(integral[0], 0);
  EXPECT_EQ(integral[1], 1.0 / 3);
  EXPECT_EQ(integral[2], 8.0 / 3);
  EXPECT_EQ(integral[3], 9);
  EXPECT_EQ(integral[4], 64.0 / 3);
}

TEST(TFuncRunningIntegral, SimpsonOfACubeOnEqualStepsIsExactAtEvenKnots) {
  const List integral = Simpson({0, 1, 2, 3, 4, 5, 6}, {0, 1, 8, 27, 64, 125, 216});
  EXPECT_EQ(integral[2], 4);
  EXPECT_EQ(integral[4], 64);
  EXPECT_EQ(integral[6], 324);
  // The parabola through the first three points over the first interval: 1/4 - 1/2 + 1/2 ... of
  // 3 x^2 - 2 x, which is 0.
  EXPECT_EQ(integral[1], 0);
}

TEST(TFuncRunningIntegral, SimpsonOfASquareOnUnequalSteps) {
  // x^2 at 0, 1, 3, 4, 7: around each knot a = 1 and b = 2 x. Odd steps are exact. Each even step
  // is b d1 (d1 - d2) / 2 above the integral: -1 at the first, with b = 2, d1 = 1 and d2 = 2, and
  // -8 at the second, with b = 8, d1 = 1 and d2 = 3.
  const List integral = Simpson({0, 1, 3, 4, 7}, {0, 1, 9, 16, 49});
  EXPECT_EQ(integral[0], 0);
  EXPECT_DOUBLE_EQ(integral[1], 1.0 / 3);
  EXPECT_DOUBLE_EQ(integral[2], 9 - 1);
  EXPECT_DOUBLE_EQ(integral[3], 64.0 / 3 - 1);
  EXPECT_DOUBLE_EQ(integral[4], 343.0 / 3 - 1 - 8);
}

TEST(TFuncRunningIntegral, OneStepThatIsNotExactlyEqualMakesAllUnequal) {
  List x = {0, 1, 2, 3, 4};
  const List y = {1, 4, 2, 8, 5};
  for (const std::size_t i : {1u, 2u, 4u}) {
    List moved = x;
    moved[i] = std::nextafter(moved[i], 10);
    const List integral = Simpson(moved, y);
    const List expected = tfunc_reference::Simpson(moved, y);
    for (std::size_t k = 0; k < 5; ++k) EXPECT_TRUE(SameBits(integral[k], expected[k])) << i;
  }
}

TEST(TFuncRunningIntegral, EqualStepsOfZeroGiveZero) {
  EXPECT_EQ(Simpson({2, 2, 2, 2}, {1, 5, 3, 4}), (List{0, 0, 0, 0}));
  EXPECT_EQ(Trapezoids({2, 2, 2, 2}, {1, 5, 3, 4}), (List{0, 0, 0, 0}));
}

TEST(TFuncRunningIntegral, SimpsonAtADoubledKnotIsNotANumber) {
  // The parabola through two points in one place does not exist.
  const List integral = Simpson({0, 1, 1, 2}, {1, 5, 3, 4});
  EXPECT_TRUE(std::isnan(integral[2]));
}

TEST(TFuncRunningIntegral, SameBitsAsStepByStepInEveryTable) {
  for (const Table& table : MakeTables(false)) {
    const TFunc f = MakeFunction(table);
    const List byTrapezoids = OrdinatesOf(*std::unique_ptr<TFunc>(f.Integral()));
    const List bySimpson = OrdinatesOf(*std::unique_ptr<TFunc>(f.IntegralSimpson()));
    const List expectedTrapezoids = tfunc_reference::Trapezoids(table.x, table.y);
    const List expectedSimpson = tfunc_reference::Simpson(table.x, table.y);
    ASSERT_EQ(byTrapezoids.size(), table.x.size());
    ASSERT_EQ(bySimpson.size(), table.x.size());
    for (std::size_t i = 0; i < table.x.size(); ++i) {
      EXPECT_TRUE(SameBits(byTrapezoids[i], expectedTrapezoids[i])) << table.name << " " << i;
      EXPECT_TRUE(SameBits(bySimpson[i], expectedSimpson[i])) << table.name << " " << i;
    }
  }
}

TEST(TFuncRunningIntegral, ReadsItsPointsOnly) {
  for (const Table& table : MakeTables(false)) {
    for (const bool atEnd : {false, true}) {
      GuardedArray x(table.x, atEnd);
      GuardedArray y(table.y, atEnd);
      const TFunc f(x.Data(), y.Data(), table.Size(), 1);
      EXPECT_EQ(std::unique_ptr<TFunc>(f.Integral())->N, table.Size());
      EXPECT_EQ(std::unique_ptr<TFunc>(f.IntegralSimpson())->N, table.Size());
    }
  }
}

}  // namespace
