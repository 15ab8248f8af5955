// Determinants and their logarithms: named cases and failures.

#include "linalg/solve_support.h"

namespace {

template <class T>
class DeterminantTest : public SolverTest<T> {};
TYPED_TEST_SUITE(DeterminantTest, ElementTypes);

template <class T>
T_Matrix<T> Square(int n, const std::vector<T>& elements) {
  return T_Matrix<T>(n, n, elements.data());
}

template <class T>
T_Matrix<T> Diagonal(int n, T value) {
  T_Matrix<T> m(n);
  m.SetDiagonal(value);
  return m;
}

/// Sylvester's matrix of signs of order 64 times `factor`: |det| = 64^32 * factor^64.
template <class T>
T_Matrix<T> Signs64(T factor) {
  T_Matrix<T> m(64);
  for (unsigned i = 0; i < 64; ++i) {
    for (unsigned j = 0; j < 64; ++j) {
      m(static_cast<int>(i), static_cast<int>(j)) =
          std::popcount(i & j) % 2 == 0 ? factor : -factor;
    }
  }
  return m;
}

TYPED_TEST(DeterminantTest, ClosedForms) {
  using T = TypeParam;
  EXPECT_EQ(Square<T>(1, {-3}).Det(), -3);
  EXPECT_EQ(Square<T>(2, {1, 2, 3, 4}).Det(), -2);
  EXPECT_EQ(Square<T>(3, {2, -1, 0, 1, 3, 5, -2, 4, 1}).Det(), -23);
}

TYPED_TEST(DeterminantTest, RowExchangeChangesTheSign) {
  using T = TypeParam;
  EXPECT_EQ(Square<T>(4, {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}).Det(), -1);
  EXPECT_EQ(Square<T>(4, {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0}).Det(), 1);
}

TYPED_TEST(DeterminantTest, ZeroColumnGivesExactlyZero) {
  using T = TypeParam;
  Dense<T> a = MakeMatrix<T>(4, 4, Kind::kRandom, 1);
  for (int i = 0; i < 4; ++i) a[i][2] = 0;
  const T determinant = ToMatrix(a).Det();
  EXPECT_TRUE(SameBits(determinant, T{0}));
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(DeterminantTest, Order0) {
  const T_Matrix<TypeParam> empty;
  EXPECT_EQ(empty.Det(), 1);
  EXPECT_EQ(empty.LogAbsDet(), 0);
  EXPECT_EQ(empty.LnDet(), 0);
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(DeterminantTest, NotSquareRaises3) {
  const T_Matrix<TypeParam> matrix(2, 3);
  EXPECT_EQ(matrix.Det(), 0);
  EXPECT_EQ(this->RaisedError(), 3);
  EXPECT_EQ(matrix.LogAbsDet(), 0);
  EXPECT_EQ(this->RaisedError(), 3);
}

TYPED_TEST(DeterminantTest, LogarithmOfADiagonal) {
  using T = TypeParam;
  const double expected = 4 * std::log(1000.0);
  EXPECT_NEAR(static_cast<double>(Diagonal<T>(4, 1000).LogAbsDet()), expected,
              8 * expected * Epsilon<T>());
  EXPECT_NEAR(static_cast<double>(Diagonal<T>(1, -1000).LogAbsDet()), expected / 4,
              8 * expected * Epsilon<T>());
}

TYPED_TEST(DeterminantTest, LogarithmOfASingularMatrixIsZero) {
  using T = TypeParam;
  for (int n : {1, 3, 4, 30}) {
    EXPECT_TRUE(SameBits(T_Matrix<T>(n).LogAbsDet(), T{0})) << "zero matrix " << n;
  }
  T_Matrix<T> ones(4);
  ones.Set(1);
  EXPECT_TRUE(SameBits(ones.LogAbsDet(), T{0}));
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(DeterminantTest, LogarithmOfOrder2IsTheFormula) {
  using T = TypeParam;
  EXPECT_EQ(Square<T>(2, {0, 1, 1, 0}).LogAbsDet(), 0);
  EXPECT_EQ(Square<T>(2, {1, 2, 2, 4}).LogAbsDet(), -std::numeric_limits<T>::infinity());
  EXPECT_EQ(T_Matrix<T>(2).LogAbsDet(), -std::numeric_limits<T>::infinity());
}

// The determinant overflows, its logarithm does not.
TYPED_TEST(DeterminantTest, LogarithmBeyondTheRange) {
  using T = TypeParam;
  const T factor = static_cast<T>(1e30);
  const T_Matrix<T> matrix = Signs64<T>(factor);
  const double expected = 32 * std::log(64.0) + 64 * std::log(static_cast<double>(factor));
  EXPECT_TRUE(std::isinf(matrix.Det()));
  EXPECT_NEAR(static_cast<double>(matrix.LogAbsDet()), expected, 64 * expected * Epsilon<T>());
}

TYPED_TEST(DeterminantTest, LogarithmBySingularValues) {
  using T = TypeParam;
  const double expected = 32 * std::log(64.0);
  EXPECT_NEAR(static_cast<double>(Signs64<T>(1).LnDet()), expected, 64 * expected * Epsilon<T>());
  const Dense<T> a = MakeDominant<T>(20, Kind::kRandom, 2);
  const double direct = static_cast<double>(ToMatrix(a).LogAbsDet());
  EXPECT_NEAR(static_cast<double>(ToMatrix(a).LnDet()), direct, 100 * direct * Epsilon<T>());
}

// The logarithms are added from the smallest singular value to the largest.
TYPED_TEST(DeterminantTest, LogarithmBySingularValuesAddsFromTheLast) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(30, 30, Kind::kRandom, 3);
  T_Matrix<T> u = ToMatrix(a), v;
  T_MatVectorCol<T> w;
  ASSERT_EQ(u.SVD(w, v), 1);
  T sum = 0;
  for (int i = 29; i >= 0; --i) sum += std::log(w[i]);
  EXPECT_TRUE(SameBits(ToMatrix(a).LnDet(), sum));
}

TYPED_TEST(DeterminantTest, ZeroSingularValueGivesTheNegativeNaN) {
  using T = TypeParam;
  const T singular = Square<T>(2, {1, 0, 0, 0}).LnDet();
  EXPECT_TRUE(std::isnan(singular) && std::signbit(singular));
  const T wide = T_Matrix<T>(2, 3, std::vector<T>{1, 0, 0, 0, 1, 0}.data()).LnDet();
  EXPECT_TRUE(std::isnan(wide) && std::signbit(wide));
  EXPECT_EQ(this->RaisedError(), 0);
}

// A matrix with more rows than columns has the singular values that its determinant would need.
TYPED_TEST(DeterminantTest, SingularValuesOfATallMatrix) {
  using T = TypeParam;
  EXPECT_NEAR(static_cast<double>(T_Matrix<T>(2, 1, std::vector<T>{3, 4}.data()).LnDet()),
              std::log(5.0), 4 * Epsilon<T>());
}

TYPED_TEST(DeterminantTest, OperandStaysAsItIs) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(20, 20, Kind::kRandom, 4);
  T_Matrix<T> matrix = ToMatrix(a);
  static_cast<void>(matrix.Det());
  static_cast<void>(matrix.LogAbsDet());
  static_cast<void>(matrix.LnDet());
  EXPECT_TRUE(SameElements(matrix, a));
}

}  // namespace
