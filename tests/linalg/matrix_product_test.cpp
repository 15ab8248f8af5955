// Products of matrices with matrices and vectors.

#include "linalg/linalg_support.h"

namespace {

template <class T>
using MatrixProduct = ElementTest<T>;
TYPED_TEST_SUITE(MatrixProduct, ElementTypes);

template <class T>
using Owned = std::unique_ptr<T>;

template <class T>
T_Matrix<T> A() {
  return Mat<T>(2, 3, {1, 2, 3, 4, 5, 6});
}
template <class T>
T_Matrix<T> B() {
  return Mat<T>(3, 2, {1, 10, 2, 20, 3, 30});
}
const Doubles kAB = {14, 140, 32, 320};

TYPED_TEST(MatrixProduct, OfTwoMatrices) {
  const Owned<T_Matrix<TypeParam>> product(A<TypeParam>() * B<TypeParam>());
  EXPECT_EQ(product->Y(), 2);
  EXPECT_EQ(product->X(), 2);
  EXPECT_EQ(Contents(*product), kAB);
  T_Matrix<TypeParam> c(5);
  EXPECT_EQ(A<TypeParam>().Mul(B<TypeParam>(), c), 1);
  EXPECT_EQ(Contents(c), kAB);
}

TYPED_TEST(MatrixProduct, OfUnfitMatricesIsNullOrZero) {
  const T_Matrix<TypeParam> a = A<TypeParam>();
  EXPECT_EQ(a * a, nullptr);
  T_Matrix<TypeParam> c = Mat<TypeParam>(1, 1, {7});
  EXPECT_EQ(a.Mul(a, c), 0);
  EXPECT_EQ(a.MulT(B<TypeParam>(), c), 0);
  EXPECT_EQ(Contents(c), (Doubles{7}));
}

TYPED_TEST(MatrixProduct, WithATransposedMatrix) {
  T_Matrix<TypeParam> c;
  EXPECT_EQ(A<TypeParam>().MulT(Mat<TypeParam>(2, 3, {1, 2, 3, 10, 20, 30}), c), 1);
  EXPECT_EQ(Contents(c), kAB);
}

TYPED_TEST(MatrixProduct, MayBeAnOperand) {
  T_Matrix<TypeParam> a = A<TypeParam>();
  T_Matrix<TypeParam> b = B<TypeParam>();
  EXPECT_EQ(a.Mul(b, a), 1);
  EXPECT_EQ(Contents(a), kAB);
  EXPECT_EQ(A<TypeParam>().Mul(b, b), 1);
  EXPECT_EQ(Contents(b), kAB);
  T_Matrix<TypeParam> t = A<TypeParam>();
  EXPECT_EQ(t.MulT(t, t), 1);
  EXPECT_EQ(Contents(t), (Doubles{14, 32, 32, 77}));
}

TYPED_TEST(MatrixProduct, WithoutInnerIndicesIsZero) {
  T_Matrix<TypeParam> c = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  EXPECT_EQ(T_Matrix<TypeParam>(2, 0).Mul(T_Matrix<TypeParam>(0, 2), c), 1);
  EXPECT_EQ(Contents(c), Doubles(4, 0.0));
  T_Matrix<TypeParam> large = Mat<TypeParam>(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  EXPECT_EQ(T_Matrix<TypeParam>(9, 0).Mul(T_Matrix<TypeParam>(0, 9), large), 1);
  EXPECT_EQ(Contents(large), Doubles(81, 0.0));
}

TYPED_TEST(MatrixProduct, InPlaceWithASquareMatrix) {
  T_Matrix<TypeParam> m = A<TypeParam>();
  EXPECT_EQ(&(m *= Mat<TypeParam>(3, 3, {1, 0, 0, 0, 2, 0, 0, 0, 3})), &m);
  EXPECT_EQ(Contents(m), (Doubles{1, 4, 9, 4, 10, 18}));
}

TYPED_TEST(MatrixProduct, InPlaceKeepsTheShapeAndTheFirstElements) {
  T_Matrix<TypeParam> narrow = A<TypeParam>();
  narrow *= B<TypeParam>();  // 2 x 2 products into 2 x 3 elements
  EXPECT_EQ(narrow.X(), 3);
  EXPECT_EQ(Contents(narrow), (Doubles{14, 140, 32, 320, 5, 6}));
  T_Matrix<TypeParam> wide = B<TypeParam>();
  wide *= A<TypeParam>();  // 3 x 3 products into 3 x 2 elements
  EXPECT_EQ(wide.X(), 2);
  EXPECT_EQ(Contents(wide), (Doubles{41, 52, 63, 82, 104, 126}));
}

TYPED_TEST(MatrixProduct, InPlaceOfUnfitMatricesDoesNothing) {
  T_Matrix<TypeParam> m = A<TypeParam>();
  m *= A<TypeParam>();
  EXPECT_EQ(Contents(m), Contents(A<TypeParam>()));
}

TYPED_TEST(MatrixProduct, WithAVector) {
  const T_Matrix<TypeParam> a = A<TypeParam>();
  const T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 10, 100});
  const Doubles expected = {321, 654};
  const Owned<T_MatVectorCol<TypeParam>> product(a * v);
  EXPECT_EQ(Contents(*product), expected);
  T_MatVector<TypeParam> out(7);
  a.Mul(out, v);
  EXPECT_EQ(Contents(out), expected);
  T_MatVectorCol<TypeParam> column;
  a.RightMultiply(column, v);
  EXPECT_EQ(Contents(column), expected);
  TypeParam raw[3] = {0, 0, 7};
  const TypeParam factors[3] = {1, 10, 100};
  a.RightMultiply(raw, factors);
  EXPECT_EQ(raw[0], 321);
  EXPECT_EQ(raw[1], 654);
  EXPECT_EQ(raw[2], 7);
}

TYPED_TEST(MatrixProduct, WithAnUnfitVectorIsNullOrNothing) {
  const T_Matrix<TypeParam> a = A<TypeParam>();
  const T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 10});
  EXPECT_EQ(a * v, nullptr);
  T_MatVectorCol<TypeParam> out = Col<TypeParam>({7});
  a.Mul(out, v);
  a.RightMultiply(out, v);
  EXPECT_EQ(Contents(out), (Doubles{7}));
}

TYPED_TEST(MatrixProduct, WithAVectorMayBeTheVector) {
  T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 10, 100});
  A<TypeParam>().RightMultiply(v, v);
  EXPECT_EQ(Contents(v), (Doubles{321, 654}));
}

TYPED_TEST(MatrixProduct, FillsAWrappedResult) {
  TypeParam numbers[2] = {};
  T_MatVector<TypeParam> out(numbers, 2, 1);
  A<TypeParam>().Mul(out, Col<TypeParam>({1, 10, 100}));
  EXPECT_EQ(numbers[1], 654);
}

TYPED_TEST(MatrixProduct, WithoutStorageLeavesZerosOrNothing) {
  T_Matrix<TypeParam> none(2, 3);
  none.Reset();
  TypeParam raw[2] = {7, 7};
  const TypeParam factors[3] = {1, 1, 1};
  none.RightMultiply(raw, factors);
  EXPECT_EQ(raw[0], 7);
  T_MatVectorCol<TypeParam> out = Col<TypeParam>({7, 8});
  none.Mul(out, Col<TypeParam>({1, 1, 1}));
  none.RightMultiply(out, Col<TypeParam>({1, 1, 1}));
  EXPECT_EQ(Contents(out), (Doubles{7, 8}));
  const Owned<T_Matrix<TypeParam>> made(B<TypeParam>() * none);
  EXPECT_EQ(Contents(*made), Doubles(9, 0.0));
}

TYPED_TEST(MatrixProduct, WithAnOperandWithoutStorageLeavesTheTarget) {
  T_Matrix<TypeParam> none(2, 2);
  none.Reset();
  const T_Matrix<TypeParam> square = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  T_Matrix<TypeParam> target = square;
  EXPECT_EQ(&(target *= none), &target);
  EXPECT_EQ(square.Mul(none, target), 0);
  EXPECT_EQ(none.Mul(square, target), 0);
  EXPECT_EQ(square.MulT(none, target), 0);
  EXPECT_EQ(none.MulT(square, target), 0);
  EXPECT_EQ(Contents(target), Contents(square));
}

TYPED_TEST(MatrixProduct, OfNoElementsNeedsNoStorage) {
  for (int n : {2, 9}) {
    T_Matrix<TypeParam> tall(n, 0);
    T_Matrix<TypeParam> wide(0, n);
    tall.Reset();
    wide.Reset();
    T_Matrix<TypeParam> c(n);
    c.Set(7);
    EXPECT_EQ(tall.Mul(wide, c), 1);
    EXPECT_EQ(c.GetPower(), 0);
    c.Set(7);
    EXPECT_EQ(tall.MulT(tall, c), 1);
    EXPECT_EQ(c.GetPower(), 0);
    T_MatVectorCol<TypeParam> out(n);
    out.Set(7);
    tall.Mul(out, T_MatVectorCol<TypeParam>());
    EXPECT_EQ(Contents(out), Doubles(static_cast<std::size_t>(n), 0.0));
  }
}

TYPED_TEST(MatrixProduct, SumsStartFromPositiveZero) {
  const T_Matrix<TypeParam> a = Mat<TypeParam>(1, 1, {-0.0});
  const T_Matrix<TypeParam> b = Mat<TypeParam>(1, 1, {1});
  T_Matrix<TypeParam> c;
  a.Mul(b, c);
  EXPECT_FALSE(std::signbit(c(0, 0)));
  T_MatVectorCol<TypeParam> out;
  a.RightMultiply(out, Col<TypeParam>({1}));
  EXPECT_FALSE(std::signbit(out[0]));
}

TYPED_TEST(MatrixProduct, ZeroFactorsDoNotHideNanAndInfinity) {
  const T_Matrix<TypeParam> zeros(1, 2);
  const double inf = std::numeric_limits<double>::infinity();
  T_Matrix<TypeParam> c;
  zeros.Mul(Mat<TypeParam>(2, 1, {inf, 0}), c);
  EXPECT_TRUE(std::isnan(c(0, 0)));
}

}  // namespace
