// Reductions and metrics of vectors.

#include "linalg/linalg_support.h"

namespace {

template <class T>
using VectorMetric = ElementTest<T>;
TYPED_TEST_SUITE(VectorMetric, ElementTypes);

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

/// The stated 1e300 in the element type.
template <class T>
T Bound() {
  return std::is_same_v<T, float> ? static_cast<T>(kInf) : static_cast<T>(1e300L);
}

TYPED_TEST(VectorMetric, ReductionsOfTheEmptyVector) {
  const T_MatVector<TypeParam> v(0);
  EXPECT_EQ(v.Max(), -Bound<TypeParam>());
  EXPECT_EQ(v.Min(), Bound<TypeParam>());
  EXPECT_EQ(v.Mean(), 0);
  EXPECT_EQ(v.Norm(), 0);
  EXPECT_EQ(v.Norm2(), 0);
  EXPECT_EQ(v.MaxIndex(), 0);
  EXPECT_EQ(v.MinIndex(), 0);
  EXPECT_EQ(v.AbsMax(), 0);
  EXPECT_EQ(v.Cosine(v), 0);
  EXPECT_EQ(v.Distance(v), 0);
  const T_Matrix<TypeParam> m;
  EXPECT_EQ(v.Norm2(m), 0);
  EXPECT_EQ(v.Norm(m), 0);
  EXPECT_EQ(v.MahalonabisDistance(v, m), 0);
  EXPECT_EQ(v.MahalonabisCosine(v, m), 0);
}

TYPED_TEST(VectorMetric, MeanIsTheSum) { EXPECT_EQ(Col<TypeParam>({1, 2, 3}).Mean(), 6); }

TYPED_TEST(VectorMetric, DotProductsNeedEqualDimensions) {
  const T_MatVectorCol<TypeParam> a = Col<TypeParam>({1, 2});
  const T_MatVectorCol<TypeParam> b = Col<TypeParam>({3, 5});
  const TypeParam numbers[2] = {3, 5};
  EXPECT_EQ(a.ScalarMultiply(b), 13);
  EXPECT_EQ(a.ScalarMultiply(numbers), 13);
  EXPECT_EQ(a.ScalarProduct(b), 13);
  EXPECT_EQ(Row<TypeParam>({1, 2}) * b, 13);
  EXPECT_EQ(a.ScalarMultiply(Col<TypeParam>({1})), 0);
  EXPECT_EQ(a.ScalarProduct(Col<TypeParam>({1})), 0);
  EXPECT_EQ(Row<TypeParam>({1}) * b, 0);
}

TYPED_TEST(VectorMetric, NormsAndDistance) {
  const T_MatVector<TypeParam> v = Col<TypeParam>({3, -4});
  EXPECT_EQ(v.Norm(), 5);
  EXPECT_EQ(v.Norm2(), 25);
  EXPECT_EQ(v.Distance(Col<TypeParam>({0, 0})), 5);
}

TYPED_TEST(VectorMetric, QuadraticForms) {
  const T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  const T_Matrix<TypeParam> m = Mat<TypeParam>(2, 2, {2, 1, 3, 4});
  EXPECT_EQ(v.Norm2(m), 1 * (2 + 2) + 2 * (3 + 8));
  EXPECT_EQ(v.Norm(m), std::sqrt(TypeParam{26}));
  EXPECT_EQ(v.MahalonabisDistance(Col<TypeParam>({2, 0}), m),
            std::sqrt(TypeParam{-1 * (-2 + 2) + 2 * (-3 + 8)}));
}

TYPED_TEST(VectorMetric, QuadraticFormsReadRowsOfTheMatrixByItsOwnWidth) {
  const T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  EXPECT_EQ(v.Norm2(Mat<TypeParam>(2, 3, {2, 1, 100, 3, 4, 100})), 26);
}

TYPED_TEST(VectorMetric, NegativeFormsGiveNan) {
  const T_MatVector<TypeParam> v = Col<TypeParam>({1});
  const T_Matrix<TypeParam> m = Mat<TypeParam>(1, 1, {-1});
  EXPECT_TRUE(std::isnan(v.Norm(m)));
  EXPECT_TRUE(std::isnan(v.MahalonabisDistance(Col<TypeParam>({0}), m)));
}

TYPED_TEST(VectorMetric, Cosine) {
  const T_MatVector<TypeParam> v = Col<TypeParam>({3, 4});
  EXPECT_EQ(v.Cosine(Col<TypeParam>({3, 4})), 1);
  EXPECT_EQ(v.Cosine(Col<TypeParam>({-4, 3})), 0);
  EXPECT_EQ(Col<TypeParam>({1, 0}).Cosine(Col<TypeParam>({-2, 0})), -1);
}

TYPED_TEST(VectorMetric, CosineOfAZeroVectorIsZero) {
  const T_MatVector<TypeParam> zero = Col<TypeParam>({0, 0});
  const T_MatVector<TypeParam> v = Col<TypeParam>({3, 4});
  EXPECT_EQ(zero.Cosine(v), 0);
  EXPECT_EQ(v.Cosine(zero), 0);
  EXPECT_EQ(v.Cosine(Col<TypeParam>({kNan, 0})), 0);
}

TYPED_TEST(VectorMetric, CosineOfAMetric) {
  const T_MatVector<TypeParam> a = Col<TypeParam>({1, 0});
  const T_MatVector<TypeParam> b = Col<TypeParam>({0, 1});
  const T_Matrix<TypeParam> m = Mat<TypeParam>(2, 2, {4, 3, 1, 9});
  EXPECT_EQ(a.MahalonabisCosine(b, m), 3 / std::sqrt(TypeParam{36}));
  EXPECT_EQ(b.MahalonabisCosine(a, m), 1 / std::sqrt(TypeParam{36}));
}

TYPED_TEST(VectorMetric, CosineOfAMetricThatIsNotPositiveIsZero) {
  const T_MatVector<TypeParam> a = Col<TypeParam>({1, 0});
  const T_MatVector<TypeParam> b = Col<TypeParam>({0, 1});
  EXPECT_EQ(a.MahalonabisCosine(b, Mat<TypeParam>(2, 2, {-4, 3, 1, 9})), 0);
  EXPECT_EQ(a.MahalonabisCosine(b, Mat<TypeParam>(2, 2, {4, 3, 1, 0})), 0);
  EXPECT_EQ(a.MahalonabisCosine(b, Mat<TypeParam>(2, 2, {kNan, 3, 1, 9})), 0);
}

// Extremes ----------------------------------------------------------------------------------------

TYPED_TEST(VectorMetric, Extremes) {
  const T_MatVector<TypeParam> v = Col<TypeParam>({2, -7, 5});
  EXPECT_EQ(v.Max(), 5);
  EXPECT_EQ(v.Min(), -7);
  EXPECT_EQ(v.AbsMax(), 7);
  EXPECT_EQ(v.MaxIndex(), 2);
  EXPECT_EQ(v.MinIndex(), 1);
}

TYPED_TEST(VectorMetric, FirstOfEqualMaximaWins) {
  EXPECT_EQ(Col<TypeParam>({5, 7, 7, 1}).MaxIndex(), 1);
}

TYPED_TEST(VectorMetric, FirstOfEqualMinimaWins) {
  EXPECT_EQ(Col<TypeParam>({2, 1, 1}).MinIndex(), 1);
}

TYPED_TEST(VectorMetric, NanIsNeverAnExtreme) {
  const T_MatVector<TypeParam> v = Col<TypeParam>({kNan, 3, kNan, 4, kNan});
  EXPECT_EQ(v.Max(), 4);
  EXPECT_EQ(v.Min(), 3);
  EXPECT_EQ(v.AbsMax(), 4);
  EXPECT_EQ(v.MaxIndex(), 3);
  EXPECT_EQ(v.MinIndex(), 1);
  const T_MatVector<TypeParam> none = Col<TypeParam>({kNan, kNan});
  EXPECT_EQ(none.Max(), -Bound<TypeParam>());
  EXPECT_EQ(none.Min(), Bound<TypeParam>());
  EXPECT_EQ(none.AbsMax(), 0);
  EXPECT_EQ(none.MaxIndex(), 0);
}

TYPED_TEST(VectorMetric, ElementsBeyondTheStartAreNoExtremes) {
  const T_MatVector<TypeParam> low = Col<TypeParam>({-kInf, -kInf});
  EXPECT_EQ(low.Max(), -Bound<TypeParam>());
  EXPECT_EQ(low.MaxIndex(), 0);
  EXPECT_EQ(low.Min(), static_cast<TypeParam>(-kInf));
  EXPECT_EQ(low.MinIndex(), 0);
  EXPECT_EQ(low.AbsMax(), static_cast<TypeParam>(kInf));
}

TYPED_TEST(VectorMetric, ExtremesOfManyElementsAreThoseOfTheLiteralScan) {
  for (Kind kind : kAllKinds) {
    for (int n : {17, 31, 40, 64, 65, 100, 129, 257}) {
      const std::vector<TypeParam> x =
          MakeVector<TypeParam>(n, kind, 11U + static_cast<unsigned>(n));
      TypeParam largest = -Bound<TypeParam>();
      TypeParam smallest = Bound<TypeParam>();
      TypeParam magnitude = 0;
      int largestIndex = 0;
      int smallestIndex = 0;
      for (int i = 0; i < n; ++i) {
        const TypeParam e = x[static_cast<std::size_t>(i)];
        if (e > largest) largest = e, largestIndex = i;
        if (e < smallest) smallest = e, smallestIndex = i;
        if (std::fabs(e) > magnitude) magnitude = std::fabs(e);
      }
      const T_MatVector<TypeParam> v(x.data(), n);
      EXPECT_TRUE(SameBits(v.Max(), largest)) << Name(kind) << n;
      EXPECT_TRUE(SameBits(v.Min(), smallest)) << Name(kind) << n;
      EXPECT_TRUE(SameBits(v.AbsMax(), magnitude)) << Name(kind) << n;
      EXPECT_EQ(v.MaxIndex(), largestIndex) << Name(kind) << n;
      EXPECT_EQ(v.MinIndex(), smallestIndex) << Name(kind) << n;
    }
  }
}

}  // namespace
