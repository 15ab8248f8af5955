/// Interpolation and search of tabulated functions.

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

TEST(TFuncEvaluation, EndValuesOutsideOfTheTable) {
  double x[] = {1, 2, 4};
  double y[] = {10, 20, 60};
  const TFunc f(x, y, 3);
  EXPECT_EQ(f(0.999), 10);
  EXPECT_EQ(f(-1e300), 10);
  EXPECT_EQ(f(-kInfinity), 10);
  EXPECT_EQ(f(1), 10);
  EXPECT_EQ(f(4), 60);
  EXPECT_EQ(f(4.001), 60);
  EXPECT_EQ(f(kInfinity), 60);
}

TEST(TFuncEvaluation, StraightLinesBetweenKnots) {
  double x[] = {1, 2, 4};
  double y[] = {10, 20, 60};
  const TFunc f(x, y, 3);
  EXPECT_EQ(f(1.5), 15);
  EXPECT_EQ(f(2), 20);
  EXPECT_EQ(f(2.5), 30);
  EXPECT_EQ(f(3), 40);
}

TEST(TFuncEvaluation, OneAndTwoPointsAndNone) {
  double x[] = {1, 3};
  double y[] = {10, 20};
  EXPECT_EQ(TFunc(0)(1.0), 0);
  const TFunc one(x, y, 1);
  EXPECT_EQ(one(0), 10);
  EXPECT_EQ(one(1), 10);
  EXPECT_EQ(one(2), 10);
  EXPECT_TRUE(std::isnan(one(kNaN)));
  const TFunc two(x, y, 2);
  EXPECT_EQ(two(0), 10);
  EXPECT_EQ(two(1.5), 12.5);
  EXPECT_EQ(two(9), 20);
  EXPECT_TRUE(std::isnan(two(kNaN)));
}

TEST(TFuncEvaluation, AKnotGivesItsOwnOrdinate) {
  // Without the knot as lower end the ordinate next to it would have to be reached by rounding.
  double x[] = {0, 0.1, 0.3, 0.7, 1.5};
  double y[] = {0.1, 1e17, -0.3, 1e-17, 7};
  const TFunc f(x, y, 5);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(SameBits(f(x[i]), y[i])) << i;
}

TEST(TFuncEvaluation, ADoubledKnotGivesTheLastOrdinate) {
  double x[] = {0, 1, 1, 2};
  double y[] = {0, 5, 7, 9};
  const TFunc f(x, y, 4);
  EXPECT_EQ(f(1), 7);
  EXPECT_EQ(f(std::nextafter(1.0, 0.0)), 5 * std::nextafter(1.0, 0.0));
}

TEST(TFuncEvaluation, SameBitsAsStepByStepInEveryTable) {
  for (const Table& table : MakeTables(false)) {
    const TFunc f = MakeFunction(table);
    for (const double x : MakeArguments(table, 11)) {
      const double expected = tfunc_reference::Evaluate(table.x, table.y, x);
      EXPECT_TRUE(SameBits(f(x), expected)) << table.name << " at " << x;
    }
  }
}

TEST(TFuncEvaluation, SameBitsForSortedArguments) {
  for (const Table& table : MakeTables(false)) {
    const TFunc f = MakeFunction(table);
    std::vector<double> arguments = MakeArguments(table, 12);
    std::erase_if(arguments, [](double x) { return std::isnan(x); });
    std::sort(arguments.begin(), arguments.end());
    for (const double x : arguments) {
      EXPECT_TRUE(SameBits(f(x), tfunc_reference::Evaluate(table.x, table.y, x))) << table.name;
    }
    std::reverse(arguments.begin(), arguments.end());
    for (const double x : arguments) {
      EXPECT_TRUE(SameBits(f(x), tfunc_reference::Evaluate(table.x, table.y, x))) << table.name;
    }
  }
}

TEST(TFuncEvaluation, SeesWhatTheCallerWritesIntoTheArrays) {
  TFunc f(10);
  EXPECT_EQ(f(4.5), 0);
  f.Y[5] = 8;
  EXPECT_EQ(f(4.5), 4);
  for (int i = 0; i < 10; ++i) f.X[i] = 100 + 2 * i;
  EXPECT_EQ(f(109), 4);
  EXPECT_EQ(f(4.5), 0);
  f.N = 5;
  EXPECT_EQ(f(109), 0);
}

TEST(TFuncEvaluation, StepsBackInsideTheArraysWhereverTheyAreReadFrom) {
  for (const Table& table : MakeTables(false)) {
    const std::vector<double> arguments = MakeArguments(table, 13);
    for (const bool atEnd : {false, true}) {
      GuardedArray x(table.x, atEnd);
      GuardedArray y(table.y, atEnd);
      TFunc f(x.Data(), y.Data(), table.Size(), 1);
      for (const double argument : arguments) {
        EXPECT_TRUE(SameBits(f(argument), tfunc_reference::Evaluate(table.x, table.y, argument)));
        EXPECT_EQ(f.pos(argument), tfunc_reference::Nearest(table.x, argument));
        EXPECT_EQ(f.Index(argument), tfunc_reference::AtOrBelow(table.x, argument));
      }
    }
  }
}

TEST(TFuncSearch, BelowTheTable) {
  double x[] = {1, 2, 4};
  double y[] = {10, 20, 60};
  for (const int n : {1, 2, 3}) {
    TFunc f(x, y, n);
    EXPECT_EQ(f.Index(0.5), -1);
    EXPECT_EQ(f.Index(-kInfinity), -1);
    EXPECT_EQ(f.pos(0.5), 0);
    EXPECT_EQ(f.Index(1), 0);
    EXPECT_EQ(f.pos(1), 0);
  }
}

TEST(TFuncSearch, EmptyFunctionAnswersZero) {
  TFunc f(0);
  EXPECT_EQ(f.pos(1), 0);
  EXPECT_EQ(f.Index(1), 0);
  EXPECT_EQ(f.pos(kNaN), 0);
  EXPECT_EQ(f.Index(kNaN), 0);
}

TEST(TFuncSearch, NearestKnot) {
  double x[] = {1, 2, 4};
  double y[] = {0, 0, 0};
  TFunc f(x, y, 3);
  EXPECT_EQ(f.pos(1.49), 0);
  EXPECT_EQ(f.pos(1.51), 1);
  EXPECT_EQ(f.pos(2), 1);
  EXPECT_EQ(f.pos(3.1), 2);
  EXPECT_EQ(f.pos(4), 2);
  EXPECT_EQ(f.pos(5), 2);
}

TEST(TFuncSearch, TheExactMiddleGoesToTheLowerKnot) {
  double x[] = {1, 2, 4};
  double y[] = {0, 0, 0};
  TFunc three(x, y, 3);
  EXPECT_EQ(three.pos(1.5), 0);
  EXPECT_EQ(three.pos(3), 1);
  TFunc two(x, y, 2);
  EXPECT_EQ(two.pos(1.5), 0);
  EXPECT_EQ(two.pos(1.75), 1);
}

TEST(TFuncSearch, KnotAtOrBelow) {
  double x[] = {1, 2, 4};
  double y[] = {0, 0, 0};
  TFunc three(x, y, 3);
  EXPECT_EQ(three.Index(1.999), 0);
  EXPECT_EQ(three.Index(2), 1);
  EXPECT_EQ(three.Index(3.999), 1);
  EXPECT_EQ(three.Index(4), 2);
  EXPECT_EQ(three.Index(kInfinity), 2);
  TFunc two(x, y, 2);
  EXPECT_EQ(two.Index(1.5), 0);
  EXPECT_EQ(two.Index(2), 1);
}

TEST(TFuncSearch, OfEqualKnotsTheLastButTheFirstAtTheStart) {
  double x[] = {0, 0, 1, 1, 1, 2};
  double y[] = {0, 0, 0, 0, 0, 0};
  TFunc f(x, y, 6);
  EXPECT_EQ(f.Index(1), 4);
  EXPECT_EQ(f.Index(0), 0);
  EXPECT_EQ(f.pos(0), 0);
  EXPECT_EQ(f.pos(1), 4);
}

TEST(TFuncSearch, SameIndicesAsStepByStepInEveryTable) {
  for (const Table& table : MakeTables(false)) {
    TFunc f = MakeFunction(table);
    for (const double x : MakeArguments(table, 14)) {
      EXPECT_EQ(f.pos(x), tfunc_reference::Nearest(table.x, x)) << table.name << " at " << x;
      EXPECT_EQ(f.Index(x), tfunc_reference::AtOrBelow(table.x, x)) << table.name << " at " << x;
    }
  }
}

}  // namespace
