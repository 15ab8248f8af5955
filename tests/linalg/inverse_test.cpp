// Inverses: named cases and failures.

#include "linalg/solve_support.h"

namespace {

template <class T>
class InverseTest : public SolverTest<T> {};
TYPED_TEST_SUITE(InverseTest, ElementTypes);

template <class T>
std::vector<T> Inverted(int n, const std::vector<T>& elements) {
  T_Matrix<T> result(n);
  T_Matrix<T>(n, n, elements.data()).Inverse(result);
  return std::vector<T>(&result.Item(0), &result.Item(0) + n * n);
}

template <class T>
void ExpectNear(const std::vector<T>& actual, const std::vector<double>& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t k = 0; k < actual.size(); ++k) {
    EXPECT_NEAR(static_cast<double>(actual[k]), expected[k], 4 * Epsilon<T>()) << k;
  }
}

TYPED_TEST(InverseTest, Order1) {
  using T = TypeParam;
  EXPECT_EQ(Inverted<T>(1, {4}), std::vector<T>{T{1} / 4});
}

TYPED_TEST(InverseTest, Order2) {
  ExpectNear(Inverted<TypeParam>(2, {4, 7, 2, 6}), {0.6, -0.7, -0.2, 0.4});
}

// Determinant 1, so the inverse is the adjugate.
TYPED_TEST(InverseTest, Order3) {
  using T = TypeParam;
  EXPECT_EQ(Inverted<T>(3, {1, 2, 3, 0, 1, 4, 5, 6, 0}),
            (std::vector<T>{-24, 18, 5, 20, -15, -4, -5, 4, 1}));
}

TYPED_TEST(InverseTest, DiagonalOfOrder3HasPositiveZeros) {
  using T = TypeParam;
  const std::vector<T> inverse = Inverted<T>(3, {2, 0, 0, 0, 4, 0, 0, 0, 8});
  const std::vector<T> expected{T{1} / 2, 0, 0, 0, T{1} / 4, 0, 0, 0, T{1} / 8};
  EXPECT_TRUE(SameElements(inverse.data(), expected.data(), 9));
}

TYPED_TEST(InverseTest, ClosedFormsDoNotTestForSingularity) {
  using T = TypeParam;
  EXPECT_TRUE(std::isinf(Inverted<T>(1, {0})[0]));
  EXPECT_TRUE(std::isinf(Inverted<T>(2, {1, 2, 2, 4})[0]));
  EXPECT_TRUE(std::isnan(Inverted<T>(2, {0, 0, 0, 0})[0]));
  EXPECT_TRUE(std::isnan(Inverted<T>(3, std::vector<T>(9, T{0}))[4]));
  EXPECT_EQ(this->RaisedError(), 0);
}

// The matrix exchanges the first two coordinates; it is its own inverse.
TYPED_TEST(InverseTest, ZeroLeadingPivotRaises10) {
  using T = TypeParam;
  const T elements[] = {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
  const T_Matrix<T> exchange(4, 4, elements);
  Dense<T> untouched(4, 4);
  untouched.elements.assign(16, T{7});
  T_Matrix<T> result = ToMatrix(untouched);
  exchange.Inverse(result);
  EXPECT_EQ(this->RaisedError(), 10);
  EXPECT_TRUE(SameElements(result, untouched));

  T_Matrix<T>* const made = exchange.Inverse();
  EXPECT_EQ(this->RaisedError(), 10);
  ASSERT_NE(made, nullptr);
  EXPECT_TRUE(SameElements(*made, Dense<T>(4, 4)));
  delete made;
}

TYPED_TEST(InverseTest, LastPivotIsNotTested) {
  using T = TypeParam;
  for (int n : {4, 20, 70}) {
    Dense<T> a(n, n);
    for (int i = 0; i + 1 < n; ++i) a[i][i] = 1;
    T_Matrix<T> result(n);
    ToMatrix(a).Inverse(result);
    EXPECT_EQ(this->RaisedError(), 0);
    EXPECT_TRUE(std::isinf(result(n - 1, n - 1)));
  }
}

TYPED_TEST(InverseTest, NotSquareRaises3) {
  using T = TypeParam;
  const T_Matrix<T> matrix(2, 3);
  Dense<T> untouched(3, 3);
  untouched.elements.assign(9, T{7});
  T_Matrix<T> result = ToMatrix(untouched);
  matrix.Inverse(result);
  EXPECT_EQ(this->RaisedError(), 3);
  EXPECT_TRUE(SameElements(result, untouched));
  EXPECT_EQ(matrix.Inverse(), nullptr);
  EXPECT_EQ(this->RaisedError(), 3);
}

TYPED_TEST(InverseTest, ResultOfAnotherShapeRaises3) {
  using T = TypeParam;
  const T_Matrix<T> matrix = ToMatrix(MakeDominant<T>(5, Kind::kRandom, 1));
  T_Matrix<T> result(4, 5);
  matrix.Inverse(result);
  EXPECT_EQ(this->RaisedError(), 3);
  EXPECT_TRUE(SameElements(result, Dense<T>(4, 5)));
}

TYPED_TEST(InverseTest, Order0) {
  T_Matrix<TypeParam> empty;
  empty.Inverse(empty);
  T_Matrix<TypeParam>* const made = empty.Inverse();
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->X(), 0);
  delete made;
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(InverseTest, ResultMayBeTheMatrixItself) {
  using T = TypeParam;
  for (int n : {1, 2, 3, 4, 9, 40, 110}) {
    const Dense<T> a = MakeDominant<T>(n, Kind::kRandom, static_cast<unsigned>(n));
    T_Matrix<T> shared = ToMatrix(a);
    shared.Inverse(shared);
    T_Matrix<T>* const separate = ToMatrix(a).Inverse();
    ASSERT_NE(separate, nullptr);
    EXPECT_EQ(std::memcmp(&shared.Item(0), &separate->Item(0), sizeof(T) * a.elements.size()), 0);
    delete separate;
  }
}

TYPED_TEST(InverseTest, ProductIsTheIdentity) {
  using T = TypeParam;
  for (int n : {1, 2, 3, 4, 5, 17, 64, 130}) {
    const Dense<T> a = MakePositive<T>(n, static_cast<unsigned>(n));
    T_Matrix<T> matrix = ToMatrix(a);
    T_Matrix<T>* const inverse = matrix.Inverse();
    ASSERT_NE(inverse, nullptr);
    EXPECT_TRUE(SameElements(matrix, a));
    T_Matrix<T>* const product = matrix * *inverse;
    const double tolerance =
        64 * n * Epsilon<T>() * (1 + std::sqrt(static_cast<double>(matrix.GetPower())));
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        EXPECT_NEAR(static_cast<double>((*product)(i, j)), i == j ? 1 : 0, tolerance) << n;
      }
    }
    delete product;
    delete inverse;
  }
}

}  // namespace
