// Sums along rows and what is built on them, for every set of kernels, against the literal loops to
// the bit.

#include "linalg/kernel_support.h"

namespace {

template <class T>
using KernelRows = ElementTest<T>;
TYPED_TEST_SUITE(KernelRows, ElementTypes);

/// Element i = sum over j of m(i, j)*v[j], j increasing.
template <class T>
std::vector<T> RowProducts(const Dense<T>& m, const std::vector<T>& v) {
  std::vector<T> products;
  for (int i = 0; i < m.rows; ++i) {
    T sum = 0;
    for (int j = 0; j < m.cols; ++j) sum += m[i][j] * v[static_cast<std::size_t>(j)];
    products.push_back(sum);
  }
  return products;
}

template <class T>
void ExpectMatrixByVector(int rows, int cols, Kind kind) {
  const Dense<T> m = MakeMatrix<T>(rows, cols, kind, 1);
  const std::vector<T> v = MakeVector<T>(cols, kind, 2);
  const std::vector<T> expected = RowProducts(m, v);
  const T_Matrix<T> matrix = ToMatrix(m);
  const T_MatVectorCol<T> column(v.data(), cols);
  WithEveryKernelSet([&] {
    T_MatVectorCol<T> out;
    matrix.RightMultiply(out, column);
    ASSERT_EQ(out.Dim(), rows);
    EXPECT_TRUE(SameElements<T>(out, expected.data(), expected.size()))
        << Name(kind) << rows << " x " << cols;
  });
}

TYPED_TEST(KernelRows, MatrixByVector) {
  for (Kind kind : kAllKinds) {
    for (int n : Sizes()) ExpectMatrixByVector<TypeParam>(n, n, kind);
    ExpectMatrixByVector<TypeParam>(kLargestSize, kLargestSize, kind);
  }
}

TYPED_TEST(KernelRows, MatrixByVectorOfUnequalSizes) {
  const std::vector<int> sizes = {1, 2, 3, 4, 7, 8, 9, 15, 16, 17, 31, 33, 64, 65, 128, 256, 300};
  for (int rows : sizes) {
    for (int cols : sizes) ExpectMatrixByVector<TypeParam>(rows, cols, Kind::kRandom);
  }
}

TYPED_TEST(KernelRows, ContinueWhatTheSumsHold) {
  using T = TypeParam;
  for (Kind kind : kAllKinds) {
    for (int n : {1, 2, 7, 8, 9, 17, 40, 65, 129}) {
      const Dense<T> m = MakeMatrix<T>(n, n + 2, kind, 1);
      const std::vector<T> v = MakeVector<T>(n + 2, kind, 2);
      std::vector<T> start = MakeVector<T>(n, kind, 3);
      start[0] = T{-0.0};
      std::vector<T> products = start;
      std::vector<T> squares = start;
      for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n + 2; ++j) {
          products[static_cast<std::size_t>(i)] += m[i][j] * v[static_cast<std::size_t>(j)];
          squares[static_cast<std::size_t>(i)] += m[i][j] * m[i][j];
        }
      }
      WithEveryKernelSet([&] {
        std::vector<T> sums = start;
        tarn::Kernels<T>().addRowProducts(n, n + 2, m[0], n + 2, v.data(), sums.data());
        EXPECT_TRUE(SameElements(sums.data(), products.data(), products.size())) << Name(kind) << n;
        sums = start;
        tarn::Kernels<T>().addRowSquares(n, n + 2, m[0], n + 2, sums.data());
        EXPECT_TRUE(SameElements(sums.data(), squares.data(), squares.size())) << Name(kind) << n;
      });
    }
  }
}

TYPED_TEST(KernelRows, NegativeZeroSumsSurviveColumnsThatAddNothing) {
  using T = TypeParam;
  // A column of -0 added to -0 stays -0; the columns that fill up a vector must not change that.
  const int cols = 17;
  const std::vector<T> row(static_cast<std::size_t>(cols), T{-0.0});
  const std::vector<T> ones(static_cast<std::size_t>(cols), T{1});
  WithEveryKernelSet([&] {
    T sum = T{-0.0};
    tarn::Kernels<T>().addRowProducts(1, cols, row.data(), cols, ones.data(), &sum);
    EXPECT_TRUE(std::signbit(sum));
  });
}

// Quadratic forms ---------------------------------------------------------------------------------

template <class T>
struct Forms {
  T form = 0;      // a.m.a
  T mixed = 0;     // a.m.b
  T other = 0;     // b.m.b
  T distance = 0;  // (a - b).m.(a - b)
};

template <class T>
Forms<T> LiteralForms(const Dense<T>& m, const std::vector<T>& a, const std::vector<T>& b) {
  Forms<T> f;
  for (int i = 0; i < m.rows; ++i) {
    T sumA = 0;
    T sumB = 0;
    T sumD = 0;
    for (int j = 0; j < m.cols; ++j) {
      const auto k = static_cast<std::size_t>(j);
      sumA += m[i][j] * a[k];
      sumB += m[i][j] * b[k];
      sumD += m[i][j] * (a[k] - b[k]);
    }
    const auto k = static_cast<std::size_t>(i);
    f.form += a[k] * sumA;
    f.mixed += a[k] * sumB;
    f.other += b[k] * sumB;
    f.distance += (a[k] - b[k]) * sumD;
  }
  return f;
}

template <class T>
void ExpectForms(int n, Kind kind) {
  const Dense<T> m = MakeMatrix<T>(n, n, kind, 1);
  const std::vector<T> x = MakeVector<T>(n, kind, 2);
  const std::vector<T> y = MakeVector<T>(n, kind, 3);
  const Forms<T> f = LiteralForms(m, x, y);
  const T_Matrix<T> matrix = ToMatrix(m);
  const T_MatVector<T> a(x.data(), n);
  const T_MatVector<T> b(y.data(), n);
  const bool positive = f.form > 0 && f.other > 0;
  WithEveryKernelSet([&] {
    EXPECT_TRUE(SameBits(a.Norm2(matrix), f.form)) << Name(kind) << n;
    EXPECT_TRUE(SameBits(a.Norm(matrix), std::sqrt(f.form))) << Name(kind) << n;
    EXPECT_TRUE(SameBits(matrix.QuadraticForm(a, b), f.mixed)) << Name(kind) << n;
    EXPECT_TRUE(SameBits(a.MahalonabisDistance(b, matrix), std::sqrt(f.distance)))
        << Name(kind) << n;
    EXPECT_TRUE(SameBits(a.MahalonabisCosine(b, matrix),
                         positive ? f.mixed / std::sqrt(f.form * f.other) : T{0}))
        << Name(kind) << n;
  });
}

TYPED_TEST(KernelRows, QuadraticForms) {
  for (Kind kind : kAllKinds) {
    for (int n : Sizes()) ExpectForms<TypeParam>(n, kind);
    ExpectForms<TypeParam>(kLargestSize, kind);
  }
}

// Sums in one chain -------------------------------------------------------------------------------

template <class T>
void ExpectChains(int n, Kind kind) {
  const std::vector<T> x = MakeVector<T>(n, kind, 1);
  const std::vector<T> y = MakeVector<T>(n, kind, 2);
  T dot = 0;
  T reverseDot = 0;
  T squares = 0;
  T reverseSquares = 0;
  T otherSquares = 0;
  T sum = 0;
  T distance = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    dot += x[i] * y[i];
    squares += x[i] * x[i];
    otherSquares += y[i] * y[i];
    sum += x[i];
    distance += (x[i] - y[i]) * (x[i] - y[i]);
  }
  for (std::size_t i = x.size(); i-- > 0;) {
    reverseDot += x[i] * y[i];
    reverseSquares += x[i] * x[i];
  }
  const T_MatVector<T> a(x.data(), n);
  const T_MatVector<T> b(y.data(), n);
  const T_Matrix<T> rowA(1, n, x.data());
  const T_Matrix<T> rowB(1, n, y.data());
  EXPECT_TRUE(SameBits(a.ScalarMultiply(b), dot)) << Name(kind) << n;
  EXPECT_TRUE(SameBits(a.Norm2(), squares)) << Name(kind) << n;
  EXPECT_TRUE(SameBits(a.Norm(), std::sqrt(squares))) << Name(kind) << n;
  EXPECT_TRUE(SameBits(a.Mean(), sum)) << Name(kind) << n;
  EXPECT_TRUE(SameBits(a.Distance(b), std::sqrt(distance))) << Name(kind) << n;
  EXPECT_TRUE(SameBits(rowA.Convolove(rowB), reverseDot)) << Name(kind) << n;
  EXPECT_TRUE(SameBits(rowA.GetPower(), reverseSquares)) << Name(kind) << n;
  EXPECT_TRUE(SameBits(rowA.Mean(), sum / static_cast<T>(n))) << Name(kind) << n;
  const bool positive = squares > 0 && otherSquares > 0;
  EXPECT_TRUE(SameBits(a.Cosine(b), positive ? dot / std::sqrt(squares * otherSquares) : T{0}))
      << Name(kind) << n;
}

TYPED_TEST(KernelRows, SumsInOneChain) {
  for (Kind kind : kAllKinds) {
    for (int n : Sizes()) ExpectChains<TypeParam>(n, kind);
    ExpectChains<TypeParam>(kLargestSize, kind);
  }
}

// Transposes --------------------------------------------------------------------------------------

TYPED_TEST(KernelRows, TransposeKeepsEveryBitAndWhatLiesBetweenTheRows) {
  using T = TypeParam;
  for (int rows : {0, 1, 2, 3, 4, 7, 8, 9, 15, 16, 17, 31, 32, 33, 65, 130}) {
    for (int cols : {0, 1, 2, 3, 4, 7, 8, 9, 15, 16, 17, 31, 32, 33, 65, 130}) {
      const Dense<T> source = MakeMatrix<T>(rows, cols + 2, Kind::kNonFinite, 4);
      WithEveryKernelSet([&] {
        Dense<T> target(cols, rows + 1);
        std::fill(target.elements.begin(), target.elements.end(), T{77});
        tarn::Kernels<T>().transpose(rows, cols, source[0], cols + 2, target[0], rows + 1);
        for (int j = 0; j < cols; ++j) {
          for (int i = 0; i < rows; ++i) ASSERT_TRUE(SameBits(target[j][i], source[i][j]));
          ASSERT_EQ(target[j][rows], 77);
        }
      });
    }
  }
}

}  // namespace
