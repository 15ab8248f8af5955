// Cholesky factor: named cases and failures.

#include "linalg/solve_support.h"

namespace {

template <class T>
class CholeskyTest : public SolverTest<T> {
 protected:
  /// Text of the one error raised; empty for none.
  std::string RaisedText() { return this->host.TakeError().message; }
};
TYPED_TEST_SUITE(CholeskyTest, ElementTypes);

constexpr char kNotPositive[] = "Matrix, with rounding errors, is is not positive defined";

TYPED_TEST(CholeskyTest, Order2) {
  using T = TypeParam;
  const T elements[] = {4, 2, 2, 3};
  T_Matrix<T>* const factor = T_Matrix<T>(2, 2, elements).CholeskyDecompse();
  ASSERT_NE(factor, nullptr);
  Dense<T> expected(2, 2);
  expected.elements = {2, 0, 1, std::sqrt(T{2})};
  EXPECT_TRUE(SameElements(*factor, expected));
  delete factor;
}

TYPED_TEST(CholeskyTest, IndefiniteRaises3WithItsText) {
  using T = TypeParam;
  const T elements[] = {1, 2, 2, 1};
  EXPECT_EQ((T_Matrix<T>(2, 2, elements).CholeskyDecompse()), nullptr);
  EXPECT_EQ(this->host.LastError().number, 3);
  EXPECT_EQ(this->RaisedText(), kNotPositive);
}

TYPED_TEST(CholeskyTest, ZeroIsNotPositive) {
  using T = TypeParam;
  for (int n : {1, 2, 30, 70}) {
    const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
    Dense<T> a = MakePositive<T>(n, 1);
    for (int i = 0; i < n; ++i) a[i][n - 1] = a[n - 1][i] = 0;
    const T_Matrix<T> matrix = ToMatrix(a);
    EXPECT_EQ(matrix.CholeskyDecompse(), nullptr);
    EXPECT_EQ(this->RaisedText(), kNotPositive);
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks + 1) << "the partial factor is freed";
  }
}

TYPED_TEST(CholeskyTest, NotSquareRaises3WithItsText) {
  EXPECT_EQ(T_Matrix<TypeParam>(2, 3).CholeskyDecompse(), nullptr);
  EXPECT_EQ(this->host.LastError().number, 3);
  EXPECT_EQ(this->RaisedText(), "Matrix is not symmetric");
}

TYPED_TEST(CholeskyTest, OnlyTheUpperTriangleIsRead) {
  using T = TypeParam;
  for (int n : {2, 9, 40, 80}) {
    const Dense<T> symmetric = MakePositive<T>(n, 2);
    Dense<T> spoiled = symmetric;
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < i; ++j) spoiled[i][j] = std::numeric_limits<T>::quiet_NaN();
    }
    T_Matrix<T>* const expected = ToMatrix(symmetric).CholeskyDecompse();
    T_Matrix<T>* const factor = ToMatrix(spoiled).CholeskyDecompse();
    ASSERT_NE(factor, nullptr);
    const auto bytes = sizeof(T) * symmetric.elements.size();
    EXPECT_EQ(std::memcmp(&factor->Item(0), &expected->Item(0), bytes), 0);
    delete factor;
    delete expected;
  }
}

TYPED_TEST(CholeskyTest, NaNPasses) {
  using T = TypeParam;
  const T elements[] = {std::numeric_limits<T>::quiet_NaN(), 0, 0, 1};
  T_Matrix<T>* const factor = T_Matrix<T>(2, 2, elements).CholeskyDecompse();
  ASSERT_NE(factor, nullptr);
  EXPECT_TRUE(std::isnan((*factor)(0, 0)) && std::isnan((*factor)(1, 1)));
  delete factor;
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(CholeskyTest, Order0) {
  T_Matrix<TypeParam>* const factor = T_Matrix<TypeParam>().CholeskyDecompse();
  ASSERT_NE(factor, nullptr);
  EXPECT_EQ(factor->X(), 0);
  delete factor;
}

TYPED_TEST(CholeskyTest, ProductWithItsTransposeIsTheMatrix) {
  using T = TypeParam;
  for (int n : {1, 3, 8, 33, 100, 150}) {
    const Dense<T> a = MakePositive<T>(n, static_cast<unsigned>(n));
    T_Matrix<T> matrix = ToMatrix(a), product;
    T_Matrix<T>* const factor = matrix.CholeskyDecompse();
    ASSERT_NE(factor, nullptr);
    EXPECT_TRUE(SameElements(matrix, a));
    ASSERT_EQ(factor->MulT(*factor, product), 1);
    const double size = static_cast<double>(matrix.Max());
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        EXPECT_NEAR(static_cast<double>(product(i, j)), static_cast<double>(a[i][j]),
                    4 * n * Epsilon<T>() * size);
        if (j > i) {
          EXPECT_TRUE(SameBits((*factor)(i, j), T{0}));
        }
      }
    }
    delete factor;
  }
}

}  // namespace
