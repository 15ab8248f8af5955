// Products of matrices, for every set of kernels, against the literal loops to the bit.

#include "linalg/kernel_support.h"

namespace {

template <class T>
using KernelProduct = ElementTest<T>;
TYPED_TEST_SUITE(KernelProduct, ElementTypes);

// The literal loops: every element of a result is one sum, the inner index increasing.

template <class T>
Dense<T> Product(const Dense<T>& a, const Dense<T>& b) {
  Dense<T> c(a.rows, b.cols);
  for (int i = 0; i < a.rows; ++i) {
    for (int k = 0; k < a.cols; ++k) {
      for (int j = 0; j < b.cols; ++j) c[i][j] += a[i][k] * b[k][j];
    }
  }
  return c;
}

template <class T>
Dense<T> Transposed(const Dense<T>& a) {
  Dense<T> t(a.cols, a.rows);
  for (int i = 0; i < a.rows; ++i) {
    for (int j = 0; j < a.cols; ++j) t[j][i] = a[i][j];
  }
  return t;
}

/// What an element is continued with.
template <class T>
Dense<T> Continued(Dense<T> c, const Dense<T>& a, const Dense<T>& b, bool subtract) {
  for (int i = 0; i < a.rows; ++i) {
    for (int k = 0; k < a.cols; ++k) {
      for (int j = 0; j < b.cols; ++j) {
        if (subtract) {
          c[i][j] -= a[i][k] * b[k][j];
        } else {
          c[i][j] += a[i][k] * b[k][j];
        }
      }
    }
  }
  return c;
}

template <class T>
void ExpectProducts(int rows, int depth, int cols, Kind kind) {
  const Dense<T> a = MakeMatrix<T>(rows, depth, kind, 1);
  const Dense<T> b = MakeMatrix<T>(depth, cols, kind, 2);
  const Dense<T> expected = Product(a, b);
  const T_Matrix<T> left = ToMatrix(a);
  const T_Matrix<T> right = ToMatrix(b);
  const T_Matrix<T> rightTransposed = ToMatrix(Transposed(b));
  WithEveryKernelSet([&] {
    T_Matrix<T> c;
    ASSERT_EQ(left.Mul(right, c), 1);
    EXPECT_TRUE(SameElements(c, expected)) << Name(kind) << rows << " " << depth << " " << cols;
    c.Set(7);
    ASSERT_EQ(left.MulT(rightTransposed, c), 1);
    EXPECT_TRUE(SameElements(c, expected)) << Name(kind) << rows << " " << depth << " " << cols;
    const std::unique_ptr<T_Matrix<T>> made(left * right);
    EXPECT_TRUE(SameElements(*made, expected)) << Name(kind) << rows << " " << depth << " " << cols;
  });
}

template <class T>
void ExpectSquareProducts(Kind kind) {
  for (int n : Sizes()) ExpectProducts<T>(n, n, n, kind);
}

TYPED_TEST(KernelProduct, OfRandomElements) { ExpectSquareProducts<TypeParam>(Kind::kRandom); }
TYPED_TEST(KernelProduct, OfTiedElements) { ExpectSquareProducts<TypeParam>(Kind::kTied); }
TYPED_TEST(KernelProduct, OfTinyElements) { ExpectSquareProducts<TypeParam>(Kind::kTiny); }
TYPED_TEST(KernelProduct, OfHugeElements) { ExpectSquareProducts<TypeParam>(Kind::kHuge); }
TYPED_TEST(KernelProduct, OfSignedZeros) { ExpectSquareProducts<TypeParam>(Kind::kSignedZero); }
TYPED_TEST(KernelProduct, OfNonFiniteElements) {
  ExpectSquareProducts<TypeParam>(Kind::kNonFinite);
}
TYPED_TEST(KernelProduct, OfTheLargestSize) {
  ExpectProducts<TypeParam>(kLargestSize, kLargestSize, kLargestSize, Kind::kRandom);
  ExpectProducts<TypeParam>(kLargestSize, kLargestSize, kLargestSize, Kind::kNonFinite);
}

TYPED_TEST(KernelProduct, OfUnequalSizesAboutTheBlockEdges) {
  const std::vector<int> edges = {1, 3, 8, 9, 24, 25, 48, 65, 129, 257};
  for (int rows : edges) {
    for (int depth : edges) {
      for (int cols : edges) ExpectProducts<TypeParam>(rows, depth, cols, Kind::kRandom);
    }
  }
}

TYPED_TEST(KernelProduct, OfManyRowsFewColumnsAndTheReverse) {
  ExpectProducts<TypeParam>(600, 3, 2, Kind::kRandom);
  ExpectProducts<TypeParam>(2, 3, 600, Kind::kSignedZero);
  ExpectProducts<TypeParam>(1, 600, 1, Kind::kHuge);
  ExpectProducts<TypeParam>(3, 600, 5, Kind::kTiny);
}

// The kernels themselves --------------------------------------------------------------------------

/// Rows of c start further apart than they are long; what lies between them must stay.
template <class T>
struct PaddedResult {
  int rows;
  int cols;
  int stride;
  std::vector<T> elements;

  PaddedResult(const Dense<T>& c, int padding)
      : rows(c.rows),
        cols(c.cols),
        stride(c.cols + padding),
        elements(static_cast<std::size_t>(c.rows) * static_cast<std::size_t>(stride), T{77}) {
    for (int i = 0; i < rows; ++i) std::copy_n(c[i], cols, Row(i));
  }
  T* Row(int i) { return elements.data() + static_cast<std::ptrdiff_t>(i) * stride; }

  ::testing::AssertionResult Holds(const Dense<T>& expected) {
    for (int i = 0; i < rows; ++i) {
      const auto same = SameElements<T>(Row(i), expected[i], static_cast<std::size_t>(cols));
      if (!same) return same;
      for (int j = cols; j < stride; ++j) {
        if (Row(i)[j] != 77) return ::testing::AssertionFailure() << "wrote beyond row " << i;
      }
    }
    return ::testing::AssertionSuccess();
  }
};

template <class T>
using Operand = tarn::StridedOperand<T>;

TYPED_TEST(KernelProduct, ContinuesWhatTheResultHolds) {
  using T = TypeParam;
  for (Kind kind : kAllKinds) {
    for (int n : {1, 2, 5, 8, 13, 16, 24, 31, 50, 100, 129, 257}) {
      const Dense<T> a = MakeMatrix<T>(n, n + 3, kind, 1);
      const Dense<T> b = MakeMatrix<T>(n + 3, n + 1, kind, 2);
      const Dense<T> start = MakeMatrix<T>(n, n + 1, kind, 3);
      const Dense<T> sum = Continued(start, a, b, false);
      const Dense<T> difference = Continued(start, a, b, true);
      WithEveryKernelSet([&] {
        PaddedResult<T> c(start, 3);
        tarn::Kernels<T>().addProduct(n, n + 1, n + 3, {a[0], n + 3, 1}, {b[0], n + 1, 1}, c.Row(0),
                                      c.stride);
        EXPECT_TRUE(c.Holds(sum)) << Name(kind) << n;
        c = PaddedResult<T>(start, 3);
        tarn::Kernels<T>().subtractProduct(n, n + 1, n + 3, {a[0], n + 3, 1}, {b[0], n + 1, 1},
                                           c.Row(0), c.stride);
        EXPECT_TRUE(c.Holds(difference)) << Name(kind) << n;
      });
    }
  }
}

TYPED_TEST(KernelProduct, TakesOperandsWithAnyDistances) {
  using T = TypeParam;
  for (int n : {3, 8, 17, 40, 131}) {
    const Dense<T> a = MakeMatrix<T>(n, n, Kind::kRandom, 1);
    const Dense<T> b = MakeMatrix<T>(n, n, Kind::kRandom, 2);
    const Dense<T> expected = Product(a, b);
    const Dense<T> aTransposed = Transposed(a);
    const Dense<T> bTransposed = Transposed(b);
    // Every second element of rows twice as long.
    Dense<T> aSpread(n, 2 * n);
    Dense<T> bSpread(n, 2 * n);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) aSpread[i][2 * j] = a[i][j], bSpread[i][2 * j] = b[i][j];
    }
    const Operand<T> lefts[] = {{a[0], n, 1}, {aTransposed[0], 1, n}, {aSpread[0], 2 * n, 2}};
    const Operand<T> rights[] = {{b[0], n, 1}, {bTransposed[0], 1, n}, {bSpread[0], 2 * n, 2}};
    WithEveryKernelSet([&] {
      for (const auto& left : lefts) {
        for (const auto& right : rights) {
          PaddedResult<T> c(Dense<T>(n, n), 1);
          tarn::Kernels<T>().setProduct(n, n, n, left, right, c.Row(0), c.stride);
          EXPECT_TRUE(c.Holds(expected)) << n;
        }
      }
    });
  }
}

TYPED_TEST(KernelProduct, NegativeDistancesTurnTheSumsAround) {
  using T = TypeParam;
  for (int n : {2, 9, 33, 300}) {
    const Dense<T> a = MakeMatrix<T>(n, n, Kind::kRandom, 1);
    const Dense<T> b = MakeMatrix<T>(n, n, Kind::kRandom, 2);
    Dense<T> expected(n, n);
    for (int i = 0; i < n; ++i) {
      for (int k = n - 1; k >= 0; --k) {
        for (int j = 0; j < n; ++j) expected[i][j] += a[i][k] * b[k][j];
      }
    }
    WithEveryKernelSet([&] {
      PaddedResult<T> c(Dense<T>(n, n), 0);
      tarn::Kernels<T>().setProduct(n, n, n, {a[0] + (n - 1), n, -1}, {b[n - 1], -n, 1}, c.Row(0),
                                    c.stride);
      EXPECT_TRUE(c.Holds(expected)) << n;
    });
  }
}

TYPED_TEST(KernelProduct, OfEmptyMatrices) {
  using T = TypeParam;
  WithEveryKernelSet([&] {
    T c[4] = {1, 2, 3, 4};
    const T a[4] = {};
    tarn::Kernels<T>().addProduct(2, 2, 0, {a, 2, 1}, {a, 2, 1}, c, 2);
    tarn::Kernels<T>().setProduct(0, 2, 2, {a, 2, 1}, {a, 2, 1}, c, 2);
    tarn::Kernels<T>().setProduct(2, 0, 2, {a, 2, 1}, {a, 2, 1}, c, 2);
    EXPECT_EQ(c[3], 4);
    tarn::Kernels<T>().setProduct(2, 2, 0, {a, 2, 1}, {a, 2, 1}, c, 2);
    EXPECT_EQ(c[0] + c[3], 0);
  });
}

}  // namespace
