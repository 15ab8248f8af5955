/// Constructors, fields and assignment of tabulated functions.

#include <gtest/gtest.h>

#include <cstddef>

#include "tarn_base_math.h"
#include "tfunc_test_support.h"

namespace {

using tfunc_test::kNaN;

// The class has private members too, for which the offsets are supported all the same.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#endif
static_assert(offsetof(TFunc, Borrowed) == 0);
static_assert(offsetof(TFunc, X) == 8);
static_assert(offsetof(TFunc, Y) == 8 + sizeof(double*));
static_assert(offsetof(TFunc, N) == 8 + 2 * sizeof(double*));
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
static_assert(std::is_same_v<decltype(TFunc::Borrowed), std::int32_t>);
static_assert(std::is_same_v<decltype(TFunc::X), double*>);
static_assert(std::is_same_v<decltype(TFunc::Y), double*>);
static_assert(std::is_same_v<decltype(TFunc::N), std::int32_t>);

TEST(TFuncConstruction, CountingAbscissaeAndZeroOrdinates) {
  const TFunc f(4);
  EXPECT_EQ(f.Borrowed, 0);
  ASSERT_EQ(f.N, 4);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(f.X[i], i);
    EXPECT_TRUE(tfunc_test::SameBits(f.Y[i], 0.0));
  }
}

TEST(TFuncConstruction, CopiesThePoints) {
  double x[] = {1, 2, 5};
  double y[] = {-1, kNaN, 3};
  const TFunc three(x, y, 3);
  const TFunc four(x, y, 3, 0);
  for (const TFunc* f : {&three, &four}) {
    EXPECT_EQ(f->Borrowed, 0);
    ASSERT_EQ(f->N, 3);
    EXPECT_NE(f->X, x);
    EXPECT_NE(f->Y, y);
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(f->X[i], x[i]);
      EXPECT_TRUE(tfunc_test::SameBits(f->Y[i], y[i]));
    }
  }
}

TEST(TFuncConstruction, AdoptsTheArraysOfTheCaller) {
  double x[] = {1, 2, 5};
  double y[] = {-1, 0, 3};
  {
    TFunc f(x, y, 3, 1);
    EXPECT_NE(f.Borrowed, 0);
    EXPECT_EQ(f.N, 3);
    EXPECT_EQ(f.X, x);
    EXPECT_EQ(f.Y, y);
    f *= 2.0;
    y[1] = 10;
    EXPECT_EQ(f(2.0), 10);
  }
  EXPECT_EQ(y[0], -2);
  EXPECT_EQ(y[2], 6);
}

TEST(TFuncConstruction, CopyOfABorrowerOwns) {
  double x[] = {1, 2, 5};
  double y[] = {-1, 0, 3};
  const TFunc borrower(x, y, 3, 1);
  TFunc copy(borrower);
  EXPECT_EQ(copy.Borrowed, 0);
  ASSERT_EQ(copy.N, 3);
  EXPECT_NE(copy.X, x);
  EXPECT_NE(copy.Y, y);
  copy += 1.0;
  EXPECT_EQ(y[0], -1);
  EXPECT_EQ(copy.Y[0], 0);
}

TEST(TFuncConstruction, NoPointsForZeroAndNegativeCounts) {
  double x[] = {1};
  double y[] = {2};
  for (const int n : {0, -1, -1000, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(TFunc(n).N, 0);
    EXPECT_EQ(TFunc(x, y, n).N, 0);
    EXPECT_EQ(TFunc(x, y, n, 0).N, 0);
    const TFunc borrower(x, y, n, 1);
    EXPECT_EQ(borrower.N, 0);
    EXPECT_EQ(borrower.X, x);
    EXPECT_EQ(TFunc(borrower).N, 0);
  }
}

TEST(TFuncConstruction, NoPointsWithoutArrays) {
  double values[] = {1, 2};
  EXPECT_EQ(TFunc(nullptr, values, 2).N, 0);
  EXPECT_EQ(TFunc(values, nullptr, 2).N, 0);
  EXPECT_EQ(TFunc(nullptr, values, 2, 1).N, 0);
  EXPECT_EQ(TFunc(values, nullptr, 2, 1).N, 0);
}

TEST(TFuncAssignment, TakesOverTheFourFields) {
  double x[] = {1, 2, 5};
  double y[] = {-1, 0, 3};
  TFunc owner(x, y, 3);
  TFunc borrower(x, y, 2, 1);
  TFunc target(7);
  EXPECT_EQ(&(target = owner), &target);
  EXPECT_EQ(target.Borrowed, 0);
  EXPECT_EQ(target.X, owner.X);
  EXPECT_EQ(target.Y, owner.Y);
  EXPECT_EQ(target.N, 3);
  target = borrower;
  EXPECT_EQ(target.Borrowed, borrower.Borrowed);
  EXPECT_EQ(target.X, x);
  EXPECT_EQ(target.Y, y);
  EXPECT_EQ(target.N, 2);
  EXPECT_EQ(owner(5.0), 3);
}

TEST(TFuncAssignment, BothUseTheSameArrays) {
  TFunc a(3);
  TFunc b(5);
  b = a;
  a += 2.0;
  EXPECT_EQ(b(1.0), 2);
  b.Shift(10);
  EXPECT_EQ(a.minX(), 10);
}

TEST(TFuncAssignment, ArraysOutliveTheFirstOwner) {
  TFunc b(1);
  {
    TFunc a(3);
    a += 4.0;
    b = a;
  }
  ASSERT_EQ(b.N, 3);
  EXPECT_EQ(b(1.0), 4);
}

TEST(TFuncAssignment, OfItselfChangesNothing) {
  TFunc a(3);
  a += 4.0;
  TFunc& self = a;
  a = self;
  ASSERT_EQ(a.N, 3);
  EXPECT_EQ(a(1.0), 4);
}

TEST(TFuncAssignment, SearchesTheNewTableAfresh) {
  // What holds of an ascending table, and where its last argument was found, must not be taken over
  // to one out of order, where bisection for 4.5 goes left at 5 and ends between 3 and 5.
  double ascending[] = {0, 1, 2, 3, 4, 5};
  double other[] = {0, 3, 5, 4, 6, 7};
  double y[] = {0, 1, 2, 3, 4, 5};
  TFunc f(ascending, y, 6);
  ASSERT_EQ(f.Index(0.5), 0);
  const TFunc g(other, y, 6);
  f = g;
  EXPECT_EQ(f.Index(4.5), 1);
}

}  // namespace
