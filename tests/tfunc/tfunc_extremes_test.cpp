/// Ends and extremes of tabulated functions.

#include <gtest/gtest.h>

#include "tfunc_test_support.h"

namespace {

using tfunc_test::kInfinity;
using tfunc_test::kNaN;

struct Extremes {
  explicit Extremes(TFunc& f) {
    f.Max(maxX, maxY);
    f.Min(minX, minY);
  }
  double maxX = 77, maxY = 77, minX = 77, minY = 77;
};

TEST(TFuncExtremes, ConstantsOfTheEmptyFunction) {
  TFunc f(0);
  EXPECT_EQ(f.minX(), 0);
  EXPECT_EQ(f.maxX(), 1e-7);
  EXPECT_EQ(f.minY(), 0);
  EXPECT_EQ(f.maxY(), 1e-7);
  EXPECT_EQ(f.minYindex(), 0);
  EXPECT_EQ(f.maxYindex(), 0);
  const Extremes found(f);
  EXPECT_EQ(found.maxX, 0);
  EXPECT_EQ(found.maxY, 0);
  EXPECT_EQ(found.minX, 0);
  EXPECT_EQ(found.minY, 0);
}

TEST(TFuncExtremes, EndsOfTheTable) {
  double x[] = {-3, 0, 8};
  double y[] = {1, 5, -2};
  TFunc f(x, y, 3);
  EXPECT_EQ(f.minX(), -3);
  EXPECT_EQ(f.maxX(), 8);
}

TEST(TFuncExtremes, TheFirstOfEqualOrdinatesWins) {
  double x[] = {10, 11, 12, 13, 14, 15, 16};
  double y[] = {1, 5, -2, 3, 5, -2, 0};
  TFunc f(x, y, 7);
  EXPECT_EQ(f.minY(), -2);
  EXPECT_EQ(f.maxY(), 5);
  EXPECT_EQ(f.minYindex(), 2);
  EXPECT_EQ(f.maxYindex(), 1);
  const Extremes found(f);
  EXPECT_EQ(found.maxX, 11);
  EXPECT_EQ(found.maxY, 5);
  EXPECT_EQ(found.minX, 12);
  EXPECT_EQ(found.minY, -2);
}

TEST(TFuncExtremes, AtTheFirstAndTheLastPoint) {
  double x[] = {1, 2, 3};
  double up[] = {1, 2, 3};
  TFunc f(x, up, 3);
  const Extremes found(f);
  EXPECT_EQ(found.minX, 1);
  EXPECT_EQ(found.maxX, 3);
  EXPECT_EQ(f.minYindex(), 0);
  EXPECT_EQ(f.maxYindex(), 2);
}

TEST(TFuncExtremes, FarBelowAndFarAboveZero) {
  double x[] = {1, 2, 3};
  double low[] = {-3e299, -2e299, -5e299};
  TFunc f(x, low, 3);
  EXPECT_EQ(f.maxY(), -2e299);
  EXPECT_EQ(Extremes(f).maxX, 2);
  f *= -1.0;
  EXPECT_EQ(f.minY(), 2e299);
  EXPECT_EQ(Extremes(f).minX, 2);
}

TEST(TFuncExtremes, NothingBeatsTheSeed) {
  double x[] = {7, 8};
  double huge[] = {1e300, kInfinity};
  TFunc f(x, huge, 2);
  EXPECT_EQ(f.minY(), 1e300);
  const Extremes ofHuge(f);
  EXPECT_EQ(ofHuge.minX, 0);
  EXPECT_EQ(ofHuge.minY, 1e300);
  EXPECT_EQ(ofHuge.maxX, 8);
  EXPECT_EQ(ofHuge.maxY, kInfinity);
  f *= -1.0;
  EXPECT_EQ(f.maxY(), -1e300);
  const Extremes ofMinusHuge(f);
  EXPECT_EQ(ofMinusHuge.maxX, 0);
  EXPECT_EQ(ofMinusHuge.maxY, -1e300);
  EXPECT_EQ(ofMinusHuge.minX, 8);
}

TEST(TFuncExtremes, IndicesKnowNoSeed) {
  double x[] = {7, 8, 9};
  double huge[] = {kInfinity, 1e305, 1e304};
  TFunc f(x, huge, 3);
  EXPECT_EQ(f.minYindex(), 2);
  EXPECT_EQ(f.maxYindex(), 0);
  f *= -1.0;
  EXPECT_EQ(f.maxYindex(), 2);
  EXPECT_EQ(f.minYindex(), 0);
}

TEST(TFuncExtremes, NaNIsNoExtreme) {
  double x[] = {7, 8, 9};
  double y[] = {kNaN, 3, kNaN};
  TFunc f(x, y, 3);
  EXPECT_EQ(f.minY(), 3);
  EXPECT_EQ(f.maxY(), 3);
  EXPECT_EQ(f.minYindex(), 1);
  EXPECT_EQ(f.maxYindex(), 1);
  double none[] = {kNaN, kNaN, kNaN};
  TFunc g(x, none, 3);
  EXPECT_EQ(g.minY(), 1e300);
  EXPECT_EQ(g.maxY(), -1e300);
  EXPECT_EQ(g.minYindex(), 0);
  EXPECT_EQ(g.maxYindex(), 0);
  EXPECT_EQ(Extremes(g).maxX, 0);
}

}  // namespace
