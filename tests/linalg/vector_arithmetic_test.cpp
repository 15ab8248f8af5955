// Element-wise arithmetic of vectors.

#include "linalg/linalg_support.h"

namespace {

template <class T>
using VectorArithmetic = ElementTest<T>;
TYPED_TEST_SUITE(VectorArithmetic, ElementTypes);

TYPED_TEST(VectorArithmetic, ScalesAndShiftsInPlace) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  EXPECT_EQ(&(v *= 2), &v);
  EXPECT_EQ(&(v += 1), &v);
  EXPECT_EQ(&(v -= TypeParam{0.5}), &v);
  EXPECT_EQ(Contents(v), (Doubles{2.5, 4.5, 6.5}));
}

TYPED_TEST(VectorArithmetic, AddsAndSubtractsVectorsInPlace) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  v += Row<TypeParam>({10, 20});
  EXPECT_EQ(Contents(v), (Doubles{11, 22}));
  v -= Col<TypeParam>({1, 2});
  EXPECT_EQ(Contents(v), (Doubles{10, 20}));
}

TYPED_TEST(VectorArithmetic, InPlaceSumOfAnotherDimensionDoesNothing) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  EXPECT_EQ(&(v += Col<TypeParam>({1, 2, 3})), &v);
  EXPECT_EQ(&(v -= Col<TypeParam>({1})), &v);
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
}

TYPED_TEST(VectorArithmetic, AddsItselfToItself) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  v += v;
  EXPECT_EQ(Contents(v), (Doubles{2, 4}));
}

TYPED_TEST(VectorArithmetic, SubtractingKeepsTheSignOfZero) {
  T_MatVector<TypeParam> v = Col<TypeParam>({0.0, -0.0, 1});
  v -= TypeParam{0.0};
  EXPECT_FALSE(std::signbit(v[0]));
  EXPECT_TRUE(std::signbit(v[1]));
  v -= TypeParam{1};
  EXPECT_FALSE(std::signbit(v[2]));
}

TYPED_TEST(VectorArithmetic, DividesItemByItem) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 6, -1});
  EXPECT_EQ(&v.DivByItem(Col<TypeParam>({2, 3, 0, 9})), &v);
  EXPECT_EQ(Contents(v), (Doubles{0.5, 2, -std::numeric_limits<double>::infinity()}));
}

TYPED_TEST(VectorArithmetic, MultipliesItemByItem) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 6, -1});
  const TypeParam factors[3] = {2, 3, 4};
  TypeParam products[3] = {};
  EXPECT_EQ(&v.MulByItem(products, factors), &v);
  EXPECT_EQ(products[1], 18);
  EXPECT_EQ(Contents(v), (Doubles{1, 6, -1}));
  EXPECT_EQ(&v.MulByItem(factors), &v);
  EXPECT_EQ(Contents(v), (Doubles{2, 18, -4}));
}

TYPED_TEST(VectorArithmetic, ColumnForwardsTheInPlaceOperators) {
  T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 2});
  static_assert(std::is_same_v<decltype(v *= TypeParam{1}), T_MatVectorCol<TypeParam>&>);
  v *= 2;
  v += 1;
  v -= 2;
  v += Col<TypeParam>({1, 1});
  v -= Col<TypeParam>({0, 1});
  EXPECT_EQ(Contents(v), (Doubles{2, 3}));
}

// Into a result -----------------------------------------------------------------------------------

TYPED_TEST(VectorArithmetic, AddsAndSubtractsIntoAResult) {
  const T_MatVector<TypeParam> a = Col<TypeParam>({1, 2});
  const T_MatVector<TypeParam> b = Col<TypeParam>({10, 20});
  T_MatVector<TypeParam> r(2);
  EXPECT_EQ(a.Add(r, b), 1);
  EXPECT_EQ(Contents(r), (Doubles{11, 22}));
  EXPECT_EQ(a.Add(r, b, 3), 1);
  EXPECT_EQ(Contents(r), (Doubles{31, 62}));
  EXPECT_EQ(a.Sub(r, b), 1);
  EXPECT_EQ(Contents(r), (Doubles{-9, -18}));
  EXPECT_EQ(a.Sub(r, b, 3), 1);
  EXPECT_EQ(Contents(r), (Doubles{-29, -58}));
}

TYPED_TEST(VectorArithmetic, ResultOfAnotherDimensionIsLeftAlone) {
  const T_MatVector<TypeParam> a = Col<TypeParam>({1, 2});
  T_MatVector<TypeParam> shortResult = Col<TypeParam>({7});
  T_MatVector<TypeParam> r = Col<TypeParam>({7, 7});
  const T_MatVector<TypeParam> longOperand(3);
  EXPECT_EQ(a.Add(shortResult, a), 0);
  EXPECT_EQ(a.Add(shortResult, a, 2), 0);
  EXPECT_EQ(a.Sub(shortResult, a), 0);
  EXPECT_EQ(a.Sub(shortResult, a, 2), 0);
  EXPECT_EQ(a.Add(r, longOperand), 0);
  EXPECT_EQ(a.Add(r, longOperand, 2), 0);
  EXPECT_EQ(a.Sub(r, longOperand), 0);
  EXPECT_EQ(a.Sub(r, longOperand, 2), 0);
  EXPECT_EQ(Contents(shortResult), (Doubles{7}));
  EXPECT_EQ(Contents(r), (Doubles{7, 7}));
}

TYPED_TEST(VectorArithmetic, EmptyVectorsAddToOne) {
  const T_MatVector<TypeParam> a;
  T_MatVector<TypeParam> r;
  EXPECT_EQ(a.Add(r, a), 1);
  EXPECT_EQ(a.Sub(r, a, 2), 1);
}

TYPED_TEST(VectorArithmetic, WorksOverArrays) {
  const T_MatVector<TypeParam> a = Col<TypeParam>({1, 2});
  const TypeParam b[2] = {10, 20};
  TypeParam r[3] = {0, 0, 7};
  a.Add(r, b);
  EXPECT_EQ(r[1], 22);
  a.Add(r, b, 3);
  EXPECT_EQ(r[1], 62);
  a.Sub(r, b);
  EXPECT_EQ(r[1], -18);
  a.Sub(r, b, 3);
  EXPECT_EQ(r[1], -58);
  EXPECT_EQ(r[2], 7);
}

TYPED_TEST(VectorArithmetic, WeightedSumOfEqualWeightsIsTheAverage) {
  T_MatVector<TypeParam> v;
  EXPECT_EQ(&v.WeightedSum(Col<TypeParam>({1, 2}), 1, Col<TypeParam>({3, 5}), 1), &v);
  EXPECT_EQ(Contents(v), (Doubles{2, 3.5}));
}

TYPED_TEST(VectorArithmetic, WeightedSumMayBeOneOfItsOperands) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  v.WeightedSum(v, 3, Col<TypeParam>({5, 6}), 1);
  EXPECT_EQ(Contents(v), (Doubles{2, 3}));
}

TYPED_TEST(VectorArithmetic, WeightedSumOfUnequalDimensionsDoesNothing) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  v.WeightedSum(Col<TypeParam>({1, 2}), 1, Col<TypeParam>({3}), 1);
  EXPECT_EQ(Contents(v), (Doubles{1, 2, 3}));
}

TYPED_TEST(VectorArithmetic, WeightedSumDoesNotCatchOpposedWeights) {
  T_MatVector<TypeParam> v;
  v.WeightedSum(Col<TypeParam>({1, 1}), 1, Col<TypeParam>({1, 0}), -1);
  EXPECT_TRUE(std::isnan(v[0]));
  EXPECT_TRUE(std::isinf(v[1]));
}

TYPED_TEST(VectorArithmetic, NormalizeGivesUnitLength) {
  T_MatVector<TypeParam> v = Col<TypeParam>({3, 4});
  v.Normalize();
  const TypeParam inverse = 1 / std::sqrt(TypeParam{25});
  EXPECT_EQ(v[0], 3 * inverse);
  EXPECT_EQ(v[1], 4 * inverse);
}

TYPED_TEST(VectorArithmetic, NormalizeLeavesZerosAndNan) {
  T_MatVector<TypeParam> zeros = Col<TypeParam>({0, -0.0});
  zeros.Normalize();
  EXPECT_EQ(Contents(zeros), (Doubles{0, 0}));
  T_MatVector<TypeParam> v = Col<TypeParam>({std::numeric_limits<double>::quiet_NaN(), 2});
  v.Normalize();
  EXPECT_EQ(v[1], 2);
}

// Bind --------------------------------------------------------------------------------------------

TYPED_TEST(VectorArithmetic, BindClampsIntoTheInterval) {
  T_MatVector<TypeParam> v = Col<TypeParam>({-2, 0.5});
  EXPECT_EQ(v.Bind(Col<TypeParam>({0, 1, 0, 1})), 1);
  EXPECT_EQ(Contents(v), (Doubles{0, 0.5}));
}

TYPED_TEST(VectorArithmetic, BindLeavesWhatLiesInside) {
  T_MatVector<TypeParam> v = Col<TypeParam>({0.25, 0.5});
  EXPECT_EQ(v.Bind(Col<TypeParam>({0, 1, 0, 1})), 0);
  EXPECT_EQ(Contents(v), (Doubles{0.25, 0.5}));
}

TYPED_TEST(VectorArithmetic, BindClampsFromAbove) {
  T_MatVector<TypeParam> v = Col<TypeParam>({3});
  EXPECT_EQ(v.Bind(Col<TypeParam>({0, 1})), 1);
  EXPECT_EQ(v[0], 1);
}

TYPED_TEST(VectorArithmetic, BindTestsTheLowerLimitFirst) {
  T_MatVector<TypeParam> v = Col<TypeParam>({0});
  EXPECT_EQ(v.Bind(Col<TypeParam>({2, -2})), 1) << "limits the wrong way round";
  EXPECT_EQ(v[0], 2);
}

TYPED_TEST(VectorArithmetic, BindNeverClampsNan) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  T_MatVector<TypeParam> v = Col<TypeParam>({nan, 5});
  EXPECT_EQ(v.Bind(Col<TypeParam>({0, 1, nan, nan})), 0);
  EXPECT_TRUE(std::isnan(v[0]));
  EXPECT_EQ(v[1], 5);
}

TYPED_TEST(VectorArithmetic, BindOfAnEmptyVectorChangesNothing) {
  EXPECT_EQ(T_MatVector<TypeParam>().Bind(T_MatVector<TypeParam>()), 0);
}

}  // namespace
