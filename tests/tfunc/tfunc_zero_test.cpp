/// Zero crossings of tabulated functions.

#include <gtest/gtest.h>

#include <memory>

#include "tfunc_test_support.h"

namespace {

using tfunc_test::kInfinity;
using tfunc_test::kNaN;
using tfunc_test::MakeFunction;
using tfunc_test::MakeTables;
using tfunc_test::SameBits;
using tfunc_test::Table;

std::vector<double> Roots(TFunc& f) {
  const std::unique_ptr<T_MatVector<double>> roots(f.Zero());
  std::vector<double> list;
  for (int i = 0; i < roots->Dim(); ++i) list.push_back((*roots)[i]);
  return list;
}

std::vector<double> Roots(std::vector<double> x, std::vector<double> y) {
  TFunc f(x.data(), y.data(), static_cast<int>(x.size()));
  return Roots(f);
}

using List = std::vector<double>;

TEST(TFuncZero, OneCrossingPerChangeOfSign) {
  EXPECT_EQ(Roots({0, 1, 3, 4}, {-1, 1, 3, -1}), (List{0.5, 3.75}));
}

TEST(TFuncZero, AZeroBetweenTwoOthersCountsTwice) {
  EXPECT_EQ(Roots({0, 1, 2}, {-1, 0, 1}), (List{1, 1}));
  EXPECT_EQ(Roots({0, 1, 2}, {2, 0, 1}), (List{1, 1}));
}

TEST(TFuncZero, AZeroAtAnEndCountsOnce) {
  EXPECT_EQ(Roots({0, 1, 2}, {0, 1, 1}), (List{0}));
  EXPECT_EQ(Roots({0, 1, 2}, {1, 1, 0}), (List{2}));
}

TEST(TFuncZero, NeighbouringZerosHaveNoRootBetweenThem) {
  EXPECT_EQ(Roots({0, 1, 2, 3}, {-1, 0, 0, 1}), (List{1, 2}));
  EXPECT_EQ(Roots({0, 1, 2}, {0, 0, 0}), List{});
  EXPECT_EQ(Roots({0, 1}, {0, -0.0}), List{});
}

TEST(TFuncZero, NoneAtAll) {
  EXPECT_EQ(Roots({0, 1, 2}, {1, 2, 1}), List{});
  EXPECT_EQ(Roots({1}, {0}), List{});
  EXPECT_EQ(Roots({}, {}), List{});
}

TEST(TFuncZero, AProductThatUnderflowsCountsAsACrossing) {
  EXPECT_EQ(Roots({0, 1}, {1e-200, 2e-200}), (List{-1}));
}

TEST(TFuncZero, NaNHasNoRoots) { EXPECT_EQ(Roots({0, 1, 2}, {-1, kNaN, 1}), List{}); }

TEST(TFuncZero, AnInfiniteOrdinateStillHasItsTerm) {
  // -inf and 1: 0 - 1 * (-inf) / inf.
  const List roots = Roots({0, 1}, {-kInfinity, 1});
  ASSERT_EQ(roots.size(), 1u);
  EXPECT_TRUE(std::isnan(roots[0]));
}

TEST(TFuncZero, SameBitsAsTheFormulaPairByPair) {
  for (const Table& table : MakeTables(true)) {
    TFunc f = MakeFunction(table);
    List expected;
    for (std::size_t i = 0; i + 1 < table.x.size(); ++i) {
      const double y0 = table.y[i];
      const double y1 = table.y[i + 1];
      if (y0 == y1 || !(y0 * y1 <= 0)) continue;
      expected.push_back(table.x[i] - (table.x[i + 1] - table.x[i]) * y0 / (y1 - y0));
    }
    const List roots = Roots(f);
    ASSERT_EQ(roots.size(), expected.size()) << table.name;
    for (std::size_t i = 0; i < roots.size(); ++i) {
      EXPECT_TRUE(SameBits(roots[i], expected[i])) << table.name;
    }
  }
}

TEST(TFuncZero, TheVectorOwnsExactlyItsRoots) {
  TFunc f(5);
  f.Y[2] = 1;
  const std::unique_ptr<T_MatVector<double>> roots(f.Zero());
  ASSERT_EQ(roots->Dim(), 2);
  f *= 5.0;
  f.Shift(10);
  EXPECT_EQ((*roots)[0], 1);
  EXPECT_EQ((*roots)[1], 3);
}

}  // namespace
