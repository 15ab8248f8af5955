// Linear systems: named cases and failures.

#include "linalg/solve_support.h"

namespace {

template <class T>
class SolveTest : public SolverTest<T> {};
TYPED_TEST_SUITE(SolveTest, ElementTypes);

template <class T>
struct Solved {
  int status;
  std::vector<T> solution;
};

template <class T>
Solved<T> Solve(const Dense<T>& a, const std::vector<T>& b, int quiet = 0) {
  Solved<T> result{0, std::vector<T>(b.size(), T{7})};
  result.status = ToMatrix(a).SolveSystem(b.data(), result.solution.data(), quiet);
  return result;
}

template <class T>
Dense<T> Filled(int m, int n, std::vector<T> elements) {
  Dense<T> d(m, n);
  d.elements = std::move(elements);
  return d;
}

TYPED_TEST(SolveTest, OneRowExchange) {
  using T = TypeParam;
  const auto result = Solve<T>(Filled<T>(2, 2, {0, 1, 1, 0}), {2, 3});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.solution, (std::vector<T>{3, 2}));
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(SolveTest, QuietSingularRaisesNothing) {
  using T = TypeParam;
  const auto result = Solve<T>(Filled<T>(2, 2, {1, 2, 2, 4}), {1, 1}, 1);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.solution, (std::vector<T>{0, 0}));
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(SolveTest, SingularRaises10) {
  using T = TypeParam;
  const Dense<T> a = Filled<T>(2, 2, {1, 2, 2, 4});
  const std::vector<T> b{1, 1};
  EXPECT_EQ(Solve<T>(a, b).status, 0);
  EXPECT_EQ(this->RaisedError(), 10);
  std::vector<T> solution(2);
  EXPECT_EQ(ToMatrix(a).SolveSystem(b.data(), solution.data()), 0);
  EXPECT_EQ(this->RaisedError(), 10);
  EXPECT_EQ(ToMatrix(a).SolveSystem(b.data()), nullptr);
  EXPECT_EQ(this->RaisedError(), 10);
}

TYPED_TEST(SolveTest, ZeroLastPivotIsSingular) {
  using T = TypeParam;
  EXPECT_EQ(Solve<T>(Filled<T>(1, 1, {0}), {0}).status, 0);
  EXPECT_EQ(this->RaisedError(), 10);
}

TYPED_TEST(SolveTest, NotSquareRaises3) {
  using T = TypeParam;
  const Dense<T> a = Filled<T>(1, 2, {1, 2});
  const auto loud = Solve<T>(a, {1, 1});
  EXPECT_EQ(loud.status, 0);
  EXPECT_EQ(loud.solution, (std::vector<T>{7, 7}));
  EXPECT_EQ(this->RaisedError(), 3);
  EXPECT_EQ(Solve<T>(a, {1, 1}, 1).status, 0);
  EXPECT_EQ(this->RaisedError(), 0);
  const std::vector<T> b{1, 1};
  EXPECT_EQ(ToMatrix(a).SolveSystem(b.data()), nullptr);
  EXPECT_EQ(this->RaisedError(), 3);
}

TYPED_TEST(SolveTest, NewArrayHoldsTheSolution) {
  using T = TypeParam;
  const std::vector<T> b{2, 3};
  T* const solution = ToMatrix(Filled<T>(2, 2, {0, 1, 1, 0})).SolveSystem(b.data());
  ASSERT_NE(solution, nullptr);
  EXPECT_EQ(solution[0], 3);
  EXPECT_EQ(solution[1], 2);
  delete[] solution;
}

TYPED_TEST(SolveTest, Order0IsSolved) {
  const T_Matrix<TypeParam> empty;
  EXPECT_EQ(empty.SolveSystem(nullptr, nullptr, 0), 1);
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(SolveTest, SolutionMayReplaceTheRightHandSide) {
  using T = TypeParam;
  for (int n : {2, 5, 40, 120}) {
    const Dense<T> a = MakeDominant<T>(n, Kind::kRandom, 1);
    const std::vector<T> b = MakeVector<T>(n, Kind::kRandom, 2);
    std::vector<T> shared = b;
    ASSERT_EQ(ToMatrix(a).SolveSystem(shared.data(), shared.data()), 1);
    EXPECT_EQ(shared, Solve(a, b).solution) << n;
  }
}

TYPED_TEST(SolveTest, OperandStaysAsItIs) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(30, 30, Kind::kRandom, 3);
  T_Matrix<T> matrix = ToMatrix(a);
  const std::vector<T> b = MakeVector<T>(30, Kind::kRandom, 4);
  std::vector<T> x(30);
  ASSERT_EQ(matrix.SolveSystem(b.data(), x.data()), 1);
  EXPECT_TRUE(SameElements(matrix, a));
}

// A residual of exactly 0 is the result as it stands: of either sign, and over a NaN pivot.
TYPED_TEST(SolveTest, ZeroResidualIsNotDivided) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  EXPECT_EQ(Solve<T>(Filled<T>(1, 1, {nan}), {0}).solution[0], 0);
  EXPECT_TRUE(std::signbit(Solve<T>(Filled<T>(1, 1, {-2}), {-T{0}}).solution[0]));
  EXPECT_FALSE(std::signbit(Solve<T>(Filled<T>(1, 1, {-2}), {0}).solution[0]));
}

TYPED_TEST(SolveTest, NaNInThePivotRowStaysThePivot) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const auto result = Solve<T>(Filled<T>(2, 2, {nan, 0, 5, 1}), {0, 1});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(std::isnan(result.solution[1]));
}

// Order 100 takes the work copy of b from the host heap, order 99 does not; the results agree.
TYPED_TEST(SolveTest, HeapFromOrder100On) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(99, 99, Kind::kRandom, 5);
  const std::vector<T> b = MakeVector<T>(99, Kind::kRandom, 6);
  Dense<T> extended(100, 100);
  for (int i = 0; i < 99; ++i) std::copy(a[i], a[i] + 99, extended[i]);
  extended[99][99] = 1;
  std::vector<T> extendedB = b;
  extendedB.push_back(1);

  const T_Matrix<T> small = ToMatrix(a), large = ToMatrix(extended);
  std::vector<T> x(99), y(100);
  this->host.SetHeapFailure({});
  ASSERT_EQ(small.SolveSystem(b.data(), x.data()), 1);
  EXPECT_EQ(this->host.HeapRequestCount(), 0);
  ASSERT_EQ(large.SolveSystem(extendedB.data(), y.data()), 1);
  EXPECT_EQ(this->host.HeapRequestCount(), 1);
  EXPECT_TRUE(SameElements(y.data(), x.data(), 99));
}

TYPED_TEST(SolveTest, RefusedWorkCopyRaises1) {
  using T = TypeParam;
  const T_Matrix<T> matrix = ToMatrix(MakeDominant<T>(100, Kind::kRandom, 7));
  const std::vector<T> b(100, T{1});
  std::vector<T> x(100, T{7});
  this->host.SetHeapFailure([](std::int64_t) { return true; });
  EXPECT_EQ(matrix.SolveSystem(b.data(), x.data(), 1), 0);
  EXPECT_EQ(this->RaisedError(), 0);
  EXPECT_EQ(matrix.SolveSystem(b.data(), x.data()), 0);
  EXPECT_EQ(this->RaisedError(), 1);
  EXPECT_EQ(matrix.SolveSystem(b.data()), nullptr);
  EXPECT_EQ(this->RaisedError(), 1);
  this->host.SetHeapFailure({});
  EXPECT_EQ(x, std::vector<T>(100, T{0}));
}

// The residual of a random system is of the size of rounding errors.
TYPED_TEST(SolveTest, ResidualIsSmall) {
  using T = TypeParam;
  for (int n : {3, 10, 60, 150}) {
    const Dense<T> a = MakeMatrix<T>(n, n, Kind::kRandom, static_cast<unsigned>(n));
    const std::vector<T> b = MakeVector<T>(n, Kind::kRandom, static_cast<unsigned>(n) + 1);
    const auto result = Solve(a, b);
    ASSERT_EQ(result.status, 1);
    double solutionSize = 0;
    for (T x : result.solution) solutionSize = std::fmax(solutionSize, std::abs(double{x}));
    for (int i = 0; i < n; ++i) {
      double residual = static_cast<double>(b[static_cast<std::size_t>(i)]);
      for (int j = 0; j < n; ++j) {
        residual -= double{a[i][j]} * double{result.solution[static_cast<std::size_t>(j)]};
      }
      EXPECT_LE(std::abs(residual), 4 * n * Epsilon<T>() * (1 + solutionSize)) << n << ' ' << i;
    }
  }
}

}  // namespace
