/// Point-wise arithmetic of tabulated functions and transformations of their abscissae.

#include <gtest/gtest.h>

#include "host/embedded_host.h"
#include "tfunc_reference.h"
#include "tfunc_test_support.h"

namespace {

using tfunc_test::kNaN;
using tfunc_test::MakeFunction;
using tfunc_test::MakeTables;
using tfunc_test::SameBits;
using tfunc_test::Table;

using List = std::vector<double>;

List OrdinatesOf(const TFunc& f) { return {f.Y, f.Y + f.N}; }
List AbscissaeOf(const TFunc& f) { return {f.X, f.X + f.N}; }

/// Three points (1, 2), (2, -4), (4, 8).
class TFuncArithmetic : public testing::Test {
 protected:
  EmbeddedHost host;
  double x[3] = {1, 2, 4};
  double y[3] = {2, -4, 8};
  TFunc f{x, y, 3};
};

TEST_F(TFuncArithmetic, ScalarsActOnTheOrdinates) {
  EXPECT_EQ(&(f += 1.0), &f);
  EXPECT_EQ(OrdinatesOf(f), (List{3, -3, 9}));
  EXPECT_EQ(&(f -= 3.0), &f);
  EXPECT_EQ(OrdinatesOf(f), (List{0, -6, 6}));
  EXPECT_EQ(&(f *= 0.5), &f);
  EXPECT_EQ(OrdinatesOf(f), (List{0, -3, 3}));
  EXPECT_EQ(&(f /= 3.0), &f);
  EXPECT_EQ(OrdinatesOf(f), (List{0, -1, 1}));
  EXPECT_EQ(AbscissaeOf(f), (List{1, 2, 4}));
  EXPECT_FALSE(host.HasError());
}

TEST_F(TFuncArithmetic, DivisionRoundsOnce) {
  const List before = OrdinatesOf(f);
  f /= 3.0;
  for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(SameBits(f.Y[i], before[i] / 3.0));
}

TEST_F(TFuncArithmetic, DivisionByZeroIsAnErrorAndChangesNothing) {
  EXPECT_EQ(&(f /= 0.0), &f);
  EXPECT_EQ(OrdinatesOf(f), (List{2, -4, 8}));
  EXPECT_EQ(host.TakeError().number, 10);
  f /= -0.0;
  EXPECT_EQ(OrdinatesOf(f), (List{2, -4, 8}));
  EXPECT_EQ(host.TakeError().number, 10);
  EXPECT_EQ(host.RaisedErrorCount(), 2);
}

TEST_F(TFuncArithmetic, DivisionOfTheEmptyFunctionByZeroIsAnErrorToo) {
  TFunc empty(0);
  empty /= 0.0;
  EXPECT_EQ(host.TakeError().number, 10);
}

TEST_F(TFuncArithmetic, FunctionsAreTakenAtTheAbscissaeOfTheTarget) {
  double gx[] = {0, 2, 3};
  double gy[] = {10, 30, 50};
  TFunc g(gx, gy, 3);  // 20, 30, 50 at 1, 2, 4
  TFunc sum(f);
  EXPECT_EQ(&(sum += g), &sum);
  EXPECT_EQ(OrdinatesOf(sum), (List{22, 26, 58}));
  TFunc difference(f);
  EXPECT_EQ(&(difference -= g), &difference);
  EXPECT_EQ(OrdinatesOf(difference), (List{-18, -34, -42}));
  TFunc product(f);
  EXPECT_EQ(&(product *= g), &product);
  EXPECT_EQ(OrdinatesOf(product), (List{40, -120, 400}));
  TFunc quotient(f);
  EXPECT_EQ(&(quotient /= g), &quotient);
  EXPECT_EQ(OrdinatesOf(quotient), (List{2.0 / 20, -4.0 / 30, 8.0 / 50}));
  EXPECT_EQ(OrdinatesOf(g), (List{10, 30, 50}));
  EXPECT_FALSE(host.HasError());
}

TEST_F(TFuncArithmetic, AnEmptyOperandCountsAsZero) {
  TFunc empty(0);
  f += empty;
  f -= empty;
  EXPECT_EQ(OrdinatesOf(f), (List{2, -4, 8}));
  f *= empty;
  EXPECT_EQ(f.maxY(), 0);
  EXPECT_EQ(f.minY(), 0);
  empty += f;
  EXPECT_EQ(empty.N, 0);
}

TEST_F(TFuncArithmetic, DivisionByZerosOfAFunctionGoesOn) {
  double gx[] = {1, 2, 4};
  double gy[] = {0, 2, 0};
  TFunc g(gx, gy, 3);
  f.Y[0] = 0;
  f /= g;
  EXPECT_EQ(OrdinatesOf(f), (List{0, -2, 0}));
  // Zero over zero is no error; eight over zero is one.
  EXPECT_EQ(host.TakeError().number, 10);
  EXPECT_EQ(host.RaisedErrorCount(), 1);
}

TEST_F(TFuncArithmetic, DivisionByZerosRaisesOncePerPoint) {
  TFunc zero(3);
  f.Y[1] = kNaN;
  f /= zero;
  for (const double value : OrdinatesOf(f)) EXPECT_TRUE(SameBits(value, 0.0));
  EXPECT_EQ(host.RaisedErrorCount(), 3);
}

TEST_F(TFuncArithmetic, DivisionByZerosReplacesANegativeZero) {
  TFunc zero(3);
  for (int i = 0; i < 3; ++i) f.Y[i] = -0.0;
  f /= zero;
  for (const double value : OrdinatesOf(f)) EXPECT_TRUE(SameBits(value, 0.0));
  EXPECT_FALSE(host.HasError());
}

TEST_F(TFuncArithmetic, CombiningWithItselfGoesInOrderOfTheIndex) {
  f += f;
  EXPECT_EQ(OrdinatesOf(f), (List{4, -8, 16}));
  f -= f;
  EXPECT_EQ(OrdinatesOf(f), (List{0, 0, 0}));
  f += 3.0;
  f *= f;
  EXPECT_EQ(OrdinatesOf(f), (List{9, 9, 9}));
  f /= f;
  EXPECT_EQ(OrdinatesOf(f), (List{1, 1, 1}));
}

TEST_F(TFuncArithmetic, CombiningWithItselfAtDoubledKnotsSeesWhatIsAlreadyDone) {
  // The value at a doubled knot is that of its last point: the first of the pair takes the value
  // before the change, and after it the second doubles itself.
  double tx[] = {0, 1, 1, 2};
  double ty[] = {1, 10, 100, 1000};
  TFunc g(tx, ty, 4);
  g += g;
  EXPECT_EQ(OrdinatesOf(g), (List{2, 110, 200, 2000}));
}

TEST_F(TFuncArithmetic, CombiningWithASharedTableSeesWhatIsAlreadyDone) {
  // At the start of the table the value is that of the first point, which has changed by then.
  double tx[] = {1, 1, 2};
  double ty[] = {1, 10, 100};
  TFunc g(tx, ty, 3);
  TFunc sharing(0);
  sharing = g;
  g += sharing;
  EXPECT_EQ(OrdinatesOf(sharing), (List{2, 12, 200}));
}

TEST_F(TFuncArithmetic, SameBitsAsPointByPointInEveryTable) {
  const std::vector<Table> tables = MakeTables(false);
  for (std::size_t t = 0; t + 1 < tables.size(); ++t) {
    const Table& table = tables[t];
    const Table& other = tables[t + 1];
    TFunc sum = MakeFunction(table);
    TFunc product = MakeFunction(table);
    TFunc g = MakeFunction(other);
    sum += g;
    product *= g;
    for (std::size_t i = 0; i < table.x.size(); ++i) {
      const double value = tfunc_reference::Evaluate(other.x, other.y, table.x[i]);
      EXPECT_TRUE(SameBits(sum.Y[i], table.y[i] + value)) << table.name;
      EXPECT_TRUE(SameBits(product.Y[i], table.y[i] * value)) << table.name;
    }
  }
}

TEST_F(TFuncArithmetic, PowersAreThoseOfTheLibrary) {
  EXPECT_EQ(&f.pow(2), &f);
  EXPECT_EQ(OrdinatesOf(f), (List{4, 16, 64}));
  f.pow(0.5);
  EXPECT_EQ(OrdinatesOf(f), (List{2, 4, 8}));
  f.Y[1] = -4;
  f.pow(0.5);
  EXPECT_TRUE(std::isnan(f.Y[1]));
  f.pow(0);
  EXPECT_EQ(OrdinatesOf(f), (List{1, 1, 1}));
  EXPECT_FALSE(host.HasError());
}

TEST_F(TFuncArithmetic, TransformationsActOnTheAbscissae) {
  EXPECT_EQ(&f.Shift(2), &f);
  EXPECT_EQ(AbscissaeOf(f), (List{3, 4, 6}));
  EXPECT_EQ(&f.ScaleX(0.5), &f);
  EXPECT_EQ(AbscissaeOf(f), (List{1.5, 2, 3}));
  EXPECT_EQ(&f.LnX(), &f);
  EXPECT_EQ(AbscissaeOf(f), (List{std::log(1.5), std::log(2.0), std::log(3.0)}));
  EXPECT_EQ(&f.ExpX(), &f);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(f.X[i], std::exp(std::log(i == 0 ? 1.5 : i + 1.0)));
  }
  EXPECT_EQ(OrdinatesOf(f), (List{2, -4, 8}));
}

TEST_F(TFuncArithmetic, EvaluationFollowsTheAbscissae) {
  EXPECT_EQ(f(3), 2);
  f.ScaleX(2);
  EXPECT_EQ(f(6), 2);
  f.Shift(-2);
  EXPECT_EQ(f(4), 2);
  f.ScaleX(-1);
  EXPECT_EQ(f(0.5), 8);
}

TEST_F(TFuncArithmetic, SearchesAfterATransformationThatLosesTheOrder) {
  double tx[] = {-4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6};
  TFunc g(tx, tx, 11);
  ASSERT_EQ(g.Index(-2.5), 1);
  g.ScaleX(tfunc_test::kInfinity);  // infinities of both signs and NaN between them
  EXPECT_EQ(g.Index(0.5), tfunc_reference::AtOrBelow(AbscissaeOf(g), 0.5));
  g.ExpX();
  EXPECT_EQ(g.Index(0.5), tfunc_reference::AtOrBelow(AbscissaeOf(g), 0.5));
}

TEST_F(TFuncArithmetic, LogarithmsOfNonPositiveAbscissaeEndQuietly) {
  double tx[] = {-1, 0, 1, 2};
  double ty[] = {1, 2, 3, 4};
  TFunc g(tx, ty, 4);
  g.LnX();
  EXPECT_TRUE(std::isnan(g.X[0]));
  EXPECT_EQ(g.X[1], -tfunc_test::kInfinity);
  EXPECT_EQ(g.X[2], 0);
  for (const double value : {-1.0, 0.0, 0.5, 5.0}) {
    EXPECT_TRUE(
        SameBits(g(value), tfunc_reference::Evaluate(AbscissaeOf(g), OrdinatesOf(g), value)));
  }
  EXPECT_FALSE(host.HasError());
}

TEST_F(TFuncArithmetic, TheEmptyFunctionStaysEmpty) {
  TFunc empty(0);
  empty += 1.0;
  empty -= 1.0;
  empty *= 2.0;
  empty /= 2.0;
  empty += f;
  empty -= f;
  empty *= f;
  empty /= f;
  empty.pow(2).Shift(1).ScaleX(2).LnX().ExpX();
  EXPECT_EQ(empty.N, 0);
  EXPECT_FALSE(host.HasError());
}

}  // namespace
