// Pseudo-inverse and solvers by singular value decomposition: named cases and failures.

#include "linalg/solve_support.h"

namespace {

template <class T>
Dense<T> Filled(int m, int n, std::vector<T> elements) {
  Dense<T> d(m, n);
  d.elements = std::move(elements);
  return d;
}

template <class T>
std::vector<T> Solve(const Dense<T>& a, const std::vector<T>& b) {
  std::vector<T> x(static_cast<std::size_t>(a.cols), T{7});
  EXPECT_EQ(ToMatrix(a).SolveSystemBySVD(b.data(), x.data()), 1);
  return x;
}

template <class T>
std::vector<T> SolveRegularized(const Dense<T>& a, const std::vector<T>& b, T lambda) {
  std::vector<T> x(static_cast<std::size_t>(a.cols), T{7});
  EXPECT_EQ(ToMatrix(a).SolveSystemBySVD_Reg(b.data(), x.data(), lambda), 1);
  return x;
}

template <class T>
void ExpectNear(const std::vector<T>& actual, const std::vector<T>& expected, double tolerance) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    EXPECT_NEAR(static_cast<double>(actual[i]), static_cast<double>(expected[i]),
                tolerance * Epsilon<T>())
        << i;
  }
}

template <class T>
class SvdSolveTest : public SolverTest<T> {};
TYPED_TEST_SUITE(SvdSolveTest, ElementTypes);

// Pseudo-inverse ----------------------------------------------------------------------------------

TYPED_TEST(SvdSolveTest, PseudoInverseOfAProjection) {
  using T = TypeParam;
  const Dense<T> a = Filled<T>(2, 2, {1, 0, 0, 0});
  T_Matrix<T>* const inverse = ToMatrix(a).PseudoInverse();
  ASSERT_NE(inverse, nullptr);
  for (int k = 0; k < 4; ++k) EXPECT_EQ(inverse->Item(k), a.elements[static_cast<std::size_t>(k)]);
  delete inverse;
}

TYPED_TEST(SvdSolveTest, PseudoInverseOfZero) {
  using T = TypeParam;
  T_Matrix<T>* const inverse = T_Matrix<T>(3, 4).PseudoInverse();
  ASSERT_NE(inverse, nullptr);
  EXPECT_EQ(inverse->Y(), 4);
  EXPECT_EQ(inverse->X(), 3);
  for (int k = 0; k < 12; ++k) EXPECT_EQ(inverse->Item(k), 0);
  delete inverse;
}

/// Largest difference of two products of three factors from the first factor.
template <class T>
double ProjectionError(T_Matrix<T>& a, T_Matrix<T>& b) {
  T_Matrix<T>* const ab = a * b;
  T_Matrix<T>* const aba = *ab * a;
  double error = 0;
  for (int i = 0; i < a.Y(); ++i) {
    for (int j = 0; j < a.X(); ++j) {
      error = std::fmax(error, std::abs(double{(*aba)(i, j)} - double{a(i, j)}));
    }
  }
  delete ab;
  delete aba;
  return error;
}

// The first two of Penrose's conditions; the shape is that of the transpose.
TYPED_TEST(SvdSolveTest, PseudoInverseOfRectangles) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{3, 2}, {2, 3}, {1, 4}, {20, 7}, {7, 20}, {40, 40}}) {
    T_Matrix<T> a = ToMatrix(MakeMatrix<T>(m, n, Kind::kRandom, static_cast<unsigned>(m)));
    T_Matrix<T>* const inverse = a.PseudoInverse();
    ASSERT_NE(inverse, nullptr);
    EXPECT_EQ(inverse->Y(), n);
    EXPECT_EQ(inverse->X(), m);
    const double size = static_cast<double>(std::sqrt(a.GetPower() * inverse->GetPower()));
    EXPECT_LE(ProjectionError(a, *inverse), 20 * size * size * Epsilon<T>()) << m << " x " << n;
    EXPECT_LE(ProjectionError(*inverse, a),
              20 * size * size * Epsilon<T>() * static_cast<double>(inverse->Max()));
    delete inverse;
  }
}

TYPED_TEST(SvdSolveTest, PseudoInverseWithoutElements) {
  T_Matrix<TypeParam>* const inverse = T_Matrix<TypeParam>(0, 3).PseudoInverse();
  ASSERT_NE(inverse, nullptr);
  EXPECT_EQ(inverse->Y(), 3);
  EXPECT_EQ(inverse->X(), 0);
  delete inverse;
}

/// Opens the protected threshold.
template <class T>
struct MatrixHelpers : T_Matrix<T> {
  using T_Matrix<T>::GetMinTypeValue;
};

// The cut-off of the pseudo-inverse is relative to the sum of the singular values, that of the
// solver to the largest. A value between the two shows it.
TYPED_TEST(SvdSolveTest, CutOffs) {
  using T = TypeParam;
  const T limit = MatrixHelpers<T>::GetMinTypeValue();
  const T large = static_cast<T>(1000), small = limit * large * static_cast<T>(1.5);
  const Dense<T> a = Filled<T>(3, 3, {large, 0, 0, 0, large, 0, 0, 0, small});
  T_Matrix<T>* const inverse = ToMatrix(a).PseudoInverse();
  EXPECT_EQ((*inverse)(2, 2), 0);
  delete inverse;
  EXPECT_NE(Solve<T>(a, {0, 0, 1})[2], 0);
  const Dense<T> below =
      Filled<T>(3, 3, {large, 0, 0, 0, large, 0, 0, 0, limit * large * static_cast<T>(0.9)});
  EXPECT_EQ(Solve<T>(below, {0, 0, 1})[2], 0);
}

// Least squares -----------------------------------------------------------------------------------

TYPED_TEST(SvdSolveTest, SingularSystemGivesTheShortestSolution) {
  using T = TypeParam;
  const Dense<T> a = Filled<T>(2, 2, {1, 1, 1, 1});
  ExpectNear<T>(Solve<T>(a, {2, 2}), {1, 1}, 8);
  ExpectNear<T>(Solve<T>(a, {1, 3}), {1, 1}, 8);
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(SvdSolveTest, RegularSystem) {
  using T = TypeParam;
  ExpectNear<T>(Solve<T>(Filled<T>(2, 2, {0, 1, 1, 0}), {2, 3}), {3, 2}, 8);
}

// A straight line through three points: the normal equations give 1/2 and 1/2.
TYPED_TEST(SvdSolveTest, OverdeterminedSystemIsFitted) {
  using T = TypeParam;
  ExpectNear<T>(Solve<T>(Filled<T>(3, 2, {1, 0, 1, 1, 1, 2}), {T{1} / 2, 1, T{3} / 2}),
                {T{1} / 2, T{1} / 2}, 8);
}

// x + 2y + 2z = 9: the shortest solution is (1, 2, 2).
TYPED_TEST(SvdSolveTest, UnderdeterminedSystemGivesTheShortestSolution) {
  using T = TypeParam;
  ExpectNear<T>(Solve<T>(Filled<T>(1, 3, {1, 2, 2}), {9}), {1, 2, 2}, 16);
}

TYPED_TEST(SvdSolveTest, NewArrayHoldsTheSolution) {
  using T = TypeParam;
  const std::vector<T> b{2, 3};
  T* const x = ToMatrix(Filled<T>(2, 2, {0, 1, 1, 0})).SolveSystemBySVD(b.data());
  ASSERT_NE(x, nullptr);
  EXPECT_NEAR(static_cast<double>(x[0]), 3, 8 * Epsilon<T>());
  delete[] x;
}

TYPED_TEST(SvdSolveTest, NewArrayOfARectangleRaises3) {
  const TypeParam b[] = {1, 2, 3};
  EXPECT_EQ(T_Matrix<TypeParam>(3, 2).SolveSystemBySVD(b), nullptr);
  EXPECT_EQ(this->RaisedError(), 3);
}

TYPED_TEST(SvdSolveTest, WithoutElementsTheSolutionIsZero) {
  using T = TypeParam;
  EXPECT_EQ(Solve<T>(Dense<T>(0, 3), {}), std::vector<T>(3, T{0}));
  EXPECT_EQ(SolveRegularized<T>(Dense<T>(0, 3), {}, 0), std::vector<T>(3, T{0}));
}

TYPED_TEST(SvdSolveTest, SolutionMayReplaceTheRightHandSide) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(6, 6, Kind::kRandom, 1);
  const std::vector<T> b = MakeVector<T>(6, Kind::kRandom, 2);
  std::vector<T> shared = b;
  ASSERT_EQ(ToMatrix(a).SolveSystemBySVD(shared.data(), shared.data()), 1);
  EXPECT_EQ(shared, Solve(a, b));
}

// From 100 columns on the coefficients live in the host heap; the order of sums is the same.
TYPED_TEST(SvdSolveTest, SolutionFromTheFactors) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{99, 99}, {120, 99}, {120, 100}, {100, 120}}) {
    const Dense<T> a = MakeMatrix<T>(m, n, Kind::kRandom, 3);
    const std::vector<T> b = MakeVector<T>(m, Kind::kRandom, 4);
    T_Matrix<T> u = ToMatrix(a), v;
    T_MatVectorCol<T> w;
    ASSERT_EQ(u.SVD(w, v), 1);
    std::vector<T> c(static_cast<std::size_t>(n)), x(c);
    for (int i = 0; i < std::min(m, n); ++i) {
      T sum = 0;
      for (int k = 0; k < m; ++k) sum += u(k, i) * b[static_cast<std::size_t>(k)];
      c[static_cast<std::size_t>(i)] = sum / w[i];
    }
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        x[static_cast<std::size_t>(i)] += v(i, j) * c[static_cast<std::size_t>(j)];
      }
    }
    const std::vector<T> actual = Solve(a, b);
    EXPECT_TRUE(SameElements(actual.data(), x.data(), x.size())) << m << " x " << n;
  }
}

TYPED_TEST(SvdSolveTest, OperandStaysAsItIs) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(6, 6, Kind::kRandom, 5);
  const std::vector<T> b = MakeVector<T>(6, Kind::kRandom, 6);
  std::vector<T> x(6);
  T_Matrix<T> matrix = ToMatrix(a);
  delete matrix.PseudoInverse();
  matrix.SolveSystemBySVD(b.data(), x.data());
  matrix.SolveSystemBySVD_Reg(b.data(), x.data(), 1);
  delete[] matrix.SolveSystemBySVD(b.data());
  EXPECT_TRUE(SameElements(matrix, a));
}

// Regularisation ----------------------------------------------------------------------------------

TYPED_TEST(SvdSolveTest, WellConditionedIsSolvedAsWithoutRegularisation) {
  using T = TypeParam;
  const Dense<T> a = MakeDominant<T>(12, Kind::kRandom, 7);
  const std::vector<T> b = MakeVector<T>(12, Kind::kRandom, 8);
  std::vector<T> x(12);
  ASSERT_EQ(ToMatrix(a).SolveSystem(b.data(), x.data()), 1);
  ExpectNear<T>(SolveRegularized<T>(a, b, static_cast<T>(0.01)), x, 64);
}

TYPED_TEST(SvdSolveTest, LambdaZeroNeverFilters) {
  using T = TypeParam;
  const Dense<T> a = Filled<T>(2, 2, {2, 0, 0, 1});
  ExpectNear<T>(SolveRegularized<T>(a, {2, 3}, 0), {1, 3}, 8);
  const std::vector<T> singular = SolveRegularized<T>(Filled<T>(2, 2, {1, 0, 0, 0}), {1, 1}, 0);
  EXPECT_TRUE(std::isnan(singular[0]) || std::isinf(singular[0]) || std::isinf(singular[1]))
      << "a zero singular value is divided by";
}

// w = (2, 1), ratio 1/2 below lambda = 3/4: coefficients w/(w^2 + (2*3/4)^2) whatever b is.
TYPED_TEST(SvdSolveTest, IllConditionedIsFilteredAndForgetsB) {
  using T = TypeParam;
  const Dense<T> a = Filled<T>(2, 2, {2, 0, 0, 1});
  const T lambda = T{3} / 4;
  const std::vector<T> expected{static_cast<T>(2 / (4 + 2.25)), static_cast<T>(1 / (1 + 2.25))};
  ExpectNear<T>(SolveRegularized<T>(a, {2, 3}, lambda), expected, 2);
  ExpectNear<T>(SolveRegularized<T>(a, {-50, 1}, lambda), expected, 2);
}

TYPED_TEST(SvdSolveTest, RatioEqualToLambdaIsNotFiltered) {
  using T = TypeParam;
  ExpectNear<T>(SolveRegularized<T>(Filled<T>(2, 2, {2, 0, 0, 1}), {2, 3}, T{1} / 2), {1, 3}, 8);
}

TYPED_TEST(SvdSolveTest, NaNIsFiltered) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const Dense<T> a = Filled<T>(2, 2, {2, 0, 0, 1});
  EXPECT_TRUE(std::isnan(SolveRegularized<T>(a, {2, 3}, nan)[0])) << "NaN lambda";
  EXPECT_TRUE(std::isnan(SolveRegularized<T>(Dense<T>(2, 2), {2, 3}, 0)[0])) << "0/0 ratio";
}

// Rectangles in the filtered branch: as many values as there are singular ones, nothing beyond.
TYPED_TEST(SvdSolveTest, FilteredRectangles) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{2, 3}, {3, 2}}) {
    Dense<T> a(m, n);
    a[0][0] = 2;
    a[1][1] = 1;
    const std::vector<T> b(static_cast<std::size_t>(m), T{1});
    std::vector<T> x(static_cast<std::size_t>(std::max(m, n)) + 1, T{7});
    ASSERT_EQ(ToMatrix(a).SolveSystemBySVD_Reg(b.data(), x.data(), T{3} / 4), 1);
    std::vector<T> expected(x.size(), T{7});
    expected[0] = static_cast<T>(2 / (4 + 2.25));
    expected[1] = static_cast<T>(1 / (1 + 2.25));
    ExpectNear<T>(x, expected, 2);
  }
}

TYPED_TEST(SvdSolveTest, FactorsReachTheCaller) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(5, 3, Kind::kRandom, 9);
  T_Matrix<T> expectedU = ToMatrix(a), expectedV;
  T_MatVectorCol<T> expectedW;
  ASSERT_EQ(expectedU.SVD(expectedW, expectedV), 1);
  const std::vector<T> b(5, T{1});
  for (const T lambda : {T{0}, T{1}}) {
    T_Matrix<T> matrix = ToMatrix(a);
    T_Matrix<T>* v = nullptr;
    T_MatVectorCol<T>* w = nullptr;
    std::vector<T> x(3);
    ASSERT_EQ(matrix.SolveSystemBySVD_Reg_ex(v, w, b.data(), x.data(), lambda), 1);
    EXPECT_TRUE(SameElements<T>(*w, expectedW, 3));
    EXPECT_TRUE(SameElements(&v->Item(0), &expectedV.Item(0), 9));
    delete v;
    delete w;
    // Transposed without a filter, as it stands with one.
    EXPECT_EQ(matrix.Y(), lambda == 0 ? 3 : 5);
    EXPECT_EQ(lambda == 0 ? matrix(2, 4) : matrix(4, 2), expectedU(4, 2));
  }
}

TYPED_TEST(SvdSolveTest, PassedFactorsAreUsed) {
  using T = TypeParam;
  T_Matrix<T> matrix = ToMatrix(MakeMatrix<T>(4, 4, Kind::kRandom, 10)), passedV;
  T_MatVectorCol<T> passedW;
  T_Matrix<T>* v = &passedV;
  T_MatVectorCol<T>* w = &passedW;
  const std::vector<T> b(4, T{1});
  std::vector<T> x(4);
  ASSERT_EQ(matrix.SolveSystemBySVD_Reg_ex(v, w, b.data(), x.data(), 0), 1);
  EXPECT_EQ(v, &passedV);
  EXPECT_EQ(w, &passedW);
  EXPECT_EQ(passedW.Dim(), 4);
}

}  // namespace
