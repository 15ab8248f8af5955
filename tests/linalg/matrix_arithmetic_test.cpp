// Element-wise arithmetic and reductions of matrices.

#include "linalg/linalg_support.h"

namespace {

template <class T>
using MatrixArithmetic = ElementTest<T>;
TYPED_TEST_SUITE(MatrixArithmetic, ElementTypes);

template <class T>
using Owned = std::unique_ptr<T>;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

template <class T>
T Bound() {
  return std::is_same_v<T, float> ? static_cast<T>(kInf) : static_cast<T>(1e300L);
}

TYPED_TEST(MatrixArithmetic, ScalesAndShiftsInPlace) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  EXPECT_EQ(&(m *= 2), &m);
  EXPECT_EQ(&(m += 1), &m);
  EXPECT_EQ(&(m -= TypeParam{0.5}), &m);
  EXPECT_EQ(Contents(m), (Doubles{2.5, 4.5, 6.5, 8.5}));
}

TYPED_TEST(MatrixArithmetic, AddsAndSubtractsMatricesInPlace) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(1, 2, {1, 2});
  m += Mat<TypeParam>(1, 2, {10, 20});
  EXPECT_EQ(Contents(m), (Doubles{11, 22}));
  m -= Mat<TypeParam>(1, 2, {1, 2});
  EXPECT_EQ(Contents(m), (Doubles{10, 20}));
}

TYPED_TEST(MatrixArithmetic, InPlaceSumOfAnotherShapeDoesNothing) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(1, 2, {1, 2});
  m += Mat<TypeParam>(2, 1, {10, 20});
  m -= Mat<TypeParam>(2, 2, {10, 20, 30, 40});
  EXPECT_EQ(Contents(m), (Doubles{1, 2}));
}

TYPED_TEST(MatrixArithmetic, MultByDiagonalMatrixScalesColumns) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  EXPECT_EQ(&m.MultByDiagonalMatrix(Col<TypeParam>({10, 100})), &m);
  EXPECT_EQ(Contents(m), (Doubles{10, 200, 30, 400}));
  m.MultByDiagonalMatrix(Col<TypeParam>({7}));
  EXPECT_EQ(Contents(m), (Doubles{10, 200, 30, 400}));
}

// New results -------------------------------------------------------------------------------------

TYPED_TEST(MatrixArithmetic, NewScaledAndShiftedMatrices) {
  const T_Matrix<TypeParam> m = Mat<TypeParam>(1, 2, {1, 2});
  EXPECT_EQ(Contents(*Owned<T_Matrix<TypeParam>>(m * 3)), (Doubles{3, 6}));
  EXPECT_EQ(Contents(*Owned<T_Matrix<TypeParam>>(m + 3)), (Doubles{4, 5}));
  EXPECT_EQ(Contents(*Owned<T_Matrix<TypeParam>>(m - 3)), (Doubles{-2, -1}));
}

TYPED_TEST(MatrixArithmetic, NewSumAndDifference) {
  const T_Matrix<TypeParam> a = Mat<TypeParam>(1, 2, {1, 2});
  const T_Matrix<TypeParam> b = Mat<TypeParam>(1, 2, {10, 30});
  EXPECT_EQ(Contents(*Owned<T_Matrix<TypeParam>>(a + b)), (Doubles{11, 32}));
  EXPECT_EQ(Contents(*Owned<T_Matrix<TypeParam>>(a - b)), (Doubles{-9, -28}));
}

TYPED_TEST(MatrixArithmetic, NewSumOfUnequalShapesIsNull) {
  const T_Matrix<TypeParam> a(1, 2);
  EXPECT_EQ(a + T_Matrix<TypeParam>(2, 1), nullptr);
  EXPECT_EQ(a - T_Matrix<TypeParam>(1, 3), nullptr);
}

// Reductions --------------------------------------------------------------------------------------

TYPED_TEST(MatrixArithmetic, ReductionsWithoutStorage) {
  const T_Matrix<TypeParam> m;
  int col = 7;
  int row = 7;
  EXPECT_EQ(m.Max(), -Bound<TypeParam>());
  EXPECT_EQ(m.Min(), Bound<TypeParam>());
  m.MaxItemIndex(col, row);
  EXPECT_EQ(col, 0);
  EXPECT_EQ(row, 0);
  EXPECT_EQ(m.Mean(), 0);
  EXPECT_EQ(m.Tr(), 0);
  EXPECT_EQ(m.GetPower(), 0);
  EXPECT_EQ(m.Convolove(m), 0);
  EXPECT_EQ(m.QuadraticForm(T_MatVector<TypeParam>(), T_MatVector<TypeParam>()), 0);
}

TYPED_TEST(MatrixArithmetic, ReductionsOfStorageWithoutElements) {
  const T_Matrix<TypeParam> m(0);
  EXPECT_EQ(m.Max(), -Bound<TypeParam>());
  EXPECT_TRUE(std::isnan(m.Mean()));
  EXPECT_EQ(m.Tr(), 0);
  EXPECT_EQ(m.GetPower(), 0);
  EXPECT_EQ(m.Convolove(m), 0);
}

TYPED_TEST(MatrixArithmetic, Extremes) {
  const T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, {2, -7, 5, kNan, 5, -7});
  EXPECT_EQ(m.Max(), 5);
  EXPECT_EQ(m.Min(), -7);
}

TYPED_TEST(MatrixArithmetic, FirstMaximumInRowOrderWins) {
  int col = 7;
  int row = 7;
  Mat<TypeParam>(2, 2, {1, 5, 5, 0}).MaxItemIndex(col, row);
  EXPECT_EQ(col, 1);
  EXPECT_EQ(row, 0);
}

TYPED_TEST(MatrixArithmetic, FirstMinimumInRowOrderWins) {
  int col = 7;
  int row = 7;
  Mat<TypeParam>(3, 2, {1, 5, 0, -2, -2, 3}).MinItemIndex(col, row);
  EXPECT_EQ(col, 1);
  EXPECT_EQ(row, 1);
}

TYPED_TEST(MatrixArithmetic, PositionsOfExtremesAmongManyElements) {
  T_Matrix<TypeParam> m(9, 7);
  m(4, 5) = 3;
  m(6, 2) = 3;
  m(7, 1) = -2;
  m(8, 0) = -2;
  int col = 0;
  int row = 0;
  m.MaxItemIndex(col, row);
  EXPECT_EQ(col, 5);
  EXPECT_EQ(row, 4);
  m.MinItemIndex(col, row);
  EXPECT_EQ(col, 1);
  EXPECT_EQ(row, 7);
}

TYPED_TEST(MatrixArithmetic, NanIsNeverAnExtreme) {
  int col = 7;
  int row = 7;
  const T_Matrix<TypeParam> m = Mat<TypeParam>(1, 2, {kNan, kNan});
  m.MinItemIndex(col, row);
  EXPECT_EQ(col, 0);
  EXPECT_EQ(row, 0);
  EXPECT_EQ(m.Max(), -Bound<TypeParam>());
}

TYPED_TEST(MatrixArithmetic, MeanOfOnesIsOne) {
  EXPECT_EQ(Mat<TypeParam>(2, 2, {1, 1, 1, 1}).Mean(), 1);
}

TYPED_TEST(MatrixArithmetic, TraceAddsTheDiagonalOfAnyShape) {
  EXPECT_EQ(Mat<TypeParam>(2, 3, {1, 2, 3, 4, 5, 6}).Tr(), 6);
  EXPECT_EQ(Mat<TypeParam>(3, 2, {1, 2, 3, 4, 5, 6}).Tr(), 5);
}

TYPED_TEST(MatrixArithmetic, PowerAndConvolution) {
  const T_Matrix<TypeParam> m = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  EXPECT_EQ(m.GetPower(), 30);
  EXPECT_EQ(m.Convolove(Mat<TypeParam>(2, 2, {1, 0, 1, 10})), 44);
  EXPECT_EQ(m.Convolove(T_Matrix<TypeParam>(1, 4)), 0);
}

TYPED_TEST(MatrixArithmetic, QuadraticFormOfTwoVectors) {
  const T_Matrix<TypeParam> m = Mat<TypeParam>(2, 3, {1, 2, 3, 4, 5, 6});
  const T_MatVector<TypeParam> a = Col<TypeParam>({1, 10});
  const T_MatVector<TypeParam> b = Col<TypeParam>({1, 1, 2});
  EXPECT_EQ(m.QuadraticForm(a, b), 1 * 9 + 10 * 21);
  EXPECT_EQ(m.QuadraticForm(b, a), 0);
  EXPECT_EQ(m.QuadraticForm(a, a), 0);
}

/// 1 lies so far below this that it is lost when it is added to it, but half of them are not.
template <class T>
T Swallowing() {
  return 2 / std::numeric_limits<T>::epsilon();
}

TYPED_TEST(MatrixArithmetic, TraceIsSummedFromTheLastElement) {
  const TypeParam big = Swallowing<TypeParam>();
  T_Matrix<TypeParam> m(3);
  m.SetDiagonal(1);
  m(0, 0) = big;
  EXPECT_EQ(m.Tr(), big + 2) << "the two ones meet first";
  m(0, 0) = 1;
  m(2, 2) = big;
  EXPECT_EQ(m.Tr(), big) << "the ones are lost one by one";
}

TYPED_TEST(MatrixArithmetic, PowerAndConvolutionAreSummedFromTheLastElement) {
  const TypeParam big = Swallowing<TypeParam>();
  T_Matrix<TypeParam> ones = Mat<TypeParam>(1, 3, {1, 1, 1});
  T_Matrix<TypeParam> first = Mat<TypeParam>(1, 3, {0, 1, 1});
  T_Matrix<TypeParam> last = Mat<TypeParam>(1, 3, {1, 1, 0});
  first(0, 0) = big;
  last(0, 2) = big;
  EXPECT_EQ(first.Convolove(ones), big + 2);
  EXPECT_EQ(last.Convolove(ones), big);
  first(0, 0) = std::sqrt(big);
  last(0, 2) = std::sqrt(big);
  EXPECT_EQ(first.GetPower(), first(0, 0) * first(0, 0) + 2);
  EXPECT_EQ(last.GetPower(), (last(0, 2) * last(0, 2) + 1) + 1);
}

TYPED_TEST(MatrixArithmetic, MeanIsSummedFromTheFirstElement) {
  const TypeParam big = Swallowing<TypeParam>();
  T_Matrix<TypeParam> m = Mat<TypeParam>(1, 4, {1, 1, 0, 0});
  m(0, 3) = big;
  EXPECT_EQ(m.Mean(), (big + 2) / 4);
}

TYPED_TEST(MatrixArithmetic, NormalizeByRowSkipsRowsOfZeros) {
  T_Matrix<TypeParam> m = Mat<TypeParam>(3, 2, {3, 4, 0, 0, kNan, 1});
  m.NormalizeByRow();
  const TypeParam inverse = 1 / std::sqrt(TypeParam{25});
  EXPECT_EQ(m(0, 0), 3 * inverse);
  EXPECT_EQ(m(0, 1), 4 * inverse);
  EXPECT_EQ(m(1, 1), 0);
  EXPECT_EQ(m(2, 1), 1);
}

TYPED_TEST(MatrixArithmetic, NormalizeByRowOfManyRowsIsTheLiteralOne) {
  for (int rows : {5, 63, 64, 65, 130}) {
    for (int cols : {1, 7, 8, 9, 40, 257}) {
      const Dense<TypeParam> source = MakeMatrix<TypeParam>(rows, cols, Kind::kRandom, 3);
      Dense<TypeParam> expected = source;
      for (int i = 0; i < rows; ++i) {
        TypeParam squares = 0;
        for (int j = 0; j < cols; ++j) squares += expected[i][j] * expected[i][j];
        const TypeParam inverse = 1 / std::sqrt(squares);
        for (int j = 0; j < cols; ++j) expected[i][j] *= inverse;
      }
      T_Matrix<TypeParam> m = ToMatrix(source);
      m.NormalizeByRow();
      EXPECT_TRUE(SameElements(m, expected)) << rows << " x " << cols;
    }
  }
}

TYPED_TEST(MatrixArithmetic, MembersOfAMatrixWithoutStorageDoNothing) {
  T_Matrix<TypeParam> m(2, 3);
  m.Reset();
  m *= 2;
  m += 1;
  m += m;
  m -= T_Matrix<TypeParam>(2, 3);
  m.MultByDiagonalMatrix(Col<TypeParam>({1, 2, 3}));
  m.NormalizeByRow();
  m.SetDiagonal(1);
  m.SetDiagonal(Col<TypeParam>({1, 2}));
  const TypeParam numbers[3] = {};
  m.SetRow(numbers, 0);
  m.SetColumn(numbers, 0);
  m.SwapColumns(0, 1);
  T_MatVector<TypeParam> v = Col<TypeParam>({7});
  m.GetRow(v, 0);
  m.GetColumn(v, 0);
  EXPECT_EQ(Contents(v), (Doubles{7}));
  EXPECT_EQ(m.Tr(), 0);
  EXPECT_EQ(m.Convolove(m), 0);
  EXPECT_EQ(m.QuadraticForm(Col<TypeParam>({1, 2}), Col<TypeParam>({1, 2, 3})), 0);
  T_Matrix<TypeParam> target = Mat<TypeParam>(2, 3, {1, 2, 3, 4, 5, 6});
  target += m;
  target -= m;
  EXPECT_EQ(target(1, 2), 6);
  EXPECT_EQ(target.Convolove(m), 0);
}

}  // namespace
