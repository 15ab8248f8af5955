// The direct methods against transcriptions of their stated order of operations, to the last bit.

#include "linalg/solve_reference.h"

namespace {

class SolveBitsTest : public KernelSetTest {
 protected:
  template <class T>
  void CompareSolutions(const Dense<T>& a, const std::vector<T>& b) {
    const auto n = static_cast<std::size_t>(a.rows);
    std::vector<T> expected, actual(n, T{7});
    const int solved = ReferenceSolve(a, b, expected);
    const T_Matrix<T> matrix = ToMatrix(a);
    ASSERT_EQ(matrix.SolveSystem(b.data(), actual.data(), 1), solved);
    ASSERT_TRUE(SameElements(actual.data(), expected.data(), n));
  }

  template <class T>
  void CompareDeterminants(const Dense<T>& a) {
    const T_Matrix<T> matrix = ToMatrix(a);
    const T determinant = matrix.Det(), expected = ReferenceDeterminant(a);
    ASSERT_TRUE(SameBits(determinant, expected)) << determinant << ' ' << expected;
    const T logarithm = matrix.LogAbsDet(), expectedLogarithm = ReferenceLogDeterminant(a);
    ASSERT_TRUE(SameBits(logarithm, expectedLogarithm)) << logarithm << ' ' << expectedLogarithm;
  }

  template <class T>
  void CompareInverses(const Dense<T>& a) {
    if (a.rows < 4) return;
    Dense<T> expected(a.rows, a.rows);
    T_Matrix<T> actual(a.rows);
    const std::int64_t errors = host.RaisedErrorCount();
    ToMatrix(a).Inverse(actual);
    const bool inverted = ReferenceInverse(a, expected);
    ASSERT_EQ(host.RaisedErrorCount() - errors, inverted ? 0 : 1);
    ASSERT_TRUE(SameElements(actual, expected));
  }

  template <class T>
  void CompareFactors(const Dense<T>& a) {
    Dense<T> expected(a.rows, a.rows);
    T_Matrix<T>* const actual = ToMatrix(a).CholeskyDecompse();
    ASSERT_EQ(actual != nullptr, ReferenceCholesky(a, expected));
    if (actual != nullptr) {
      EXPECT_TRUE(SameElements(*actual, expected));
    }
    delete actual;
  }

  template <class T>
  void CompareAll() {
    for (int n : ManyOrders()) {
      for (Kind kind : kAllKinds) {
        SCOPED_TRACE("order " + std::to_string(n) + ", " + Name(kind));
        const auto seed = static_cast<unsigned>(n * 8) + static_cast<unsigned>(kind);
        const Dense<T> a = MakeMatrix<T>(n, n, kind, seed);
        ASSERT_NO_FATAL_FAILURE(CompareSolutions(a, MakeVector<T>(n, kind, seed + 1)));
        ASSERT_NO_FATAL_FAILURE(CompareDeterminants(a));
        ASSERT_NO_FATAL_FAILURE(CompareInverses(a));
        ASSERT_NO_FATAL_FAILURE(CompareInverses(MakeDominant<T>(n, kind, seed)));
        ASSERT_NO_FATAL_FAILURE(CompareFactors(MakeDominant<T>(n, kind, seed)));
      }
      ASSERT_NO_FATAL_FAILURE(CompareFactors(MakePositive<T>(n, static_cast<unsigned>(n))));
    }
  }

  template <class T>
  void CompareLargest(Kind kind) {
    SCOPED_TRACE(Name(kind));
    const Dense<T> a = MakeMatrix<T>(500, 500, kind, 3);
    CompareSolutions(a, MakeVector<T>(500, kind, 4));
    CompareDeterminants(a);
    CompareInverses(MakeDominant<T>(500, kind, 3));
    CompareFactors(kind == Kind::kRandom ? MakePositive<T>(500, 5) : MakeDominant<T>(500, kind, 3));
  }
};

TEST_P(SolveBitsTest, Double) { CompareAll<double>(); }
TEST_P(SolveBitsTest, Float) { CompareAll<float>(); }

// An order at which every level of blocking is in use.
TEST_P(SolveBitsTest, Order500) {
  CompareLargest<double>(Kind::kRandom);
  CompareLargest<float>(Kind::kTied);
  CompareLargest<double>(Kind::kNonFinite);
}

// A row exchange moves the elements to the left of the pivot as well.
TEST_P(SolveBitsTest, ManyExchanges) {
  for (int n : {17, 64, 130}) {
    Dense<double> a = MakeMatrix<double>(n, n, Kind::kRandom, 9);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) a[i][j] *= std::ldexp(1.0, (i * 7) % n);
    }
    CompareSolutions(a, MakeVector<double>(n, Kind::kRandom, 10));
    CompareDeterminants(a);
  }
}

// A pivot that vanishes late, in every column about the edges of blocks.
TEST_P(SolveBitsTest, SingularAtEveryColumn) {
  constexpr int n = 70;
  for (int column = 0; column < n; ++column) {
    Dense<double> a = MakeDominant<double>(n, Kind::kTied, 11);
    for (int i = 0; i < n; ++i) a[i][column] = 0;
    CompareSolutions(a, MakeVector<double>(n, Kind::kRandom, 12));
    CompareDeterminants(a);
    CompareInverses(a);
    CompareFactors(a);
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, SolveBitsTest, ::testing::ValuesIn(tarn::kKernelSets),
                         KernelName);

}  // namespace
