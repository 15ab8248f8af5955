// "Matrix" in scripts: systems, determinants, inverses, decompositions.
//
// The Hilbert matrix of order 4, elements 1/(i + j - 1), has the determinant 1/6048000 and an
// inverse of integers (Choi, American Mathematical Monthly 90 (1983) 301).

#include <cmath>
#include <limits>

#include "toolkit/toolkit_fixture.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

class MatrixSolvingTest : public ToolkitTest {
 protected:
  MatrixSolvingTest() {
    Run("hilbert = Matrix{{1, 1/2, 1/3, 1/4}, {1/2, 1/3, 1/4, 1/5}, {1/3, 1/4, 1/5, 1/6},"
        "  {1/4, 1/5, 1/6, 1/7}}");
  }
};

TEST_F(MatrixSolvingTest, SolvesSystems) {
  EXPECT_EQ(Numbers("Matrix{{0, 1}, {1, 0}}:Solve{2, 3}"), (NumberList{3, 2}));
  ExpectNear(Numbers("Matrix{{2, 1}, {1, 3}}:Solve(MVector{3, 5})"), {0.8, 1.4}, 1e-15);
  // One right-hand side per column.
  ExpectNear(Elements("Matrix{{2, 0}, {0, 4}}:Solve(Matrix{{2, 4, 6}, {8, 12, 16}})"),
             {1, 2, 3, 2, 3, 4}, 0.0);
  EXPECT_EQ(Text("Matrix{{2}}:Solve{1}:kind()"), "MVector");
}

TEST_F(MatrixSolvingTest, RefusesSystemsWithoutASolution) {
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {2, 4}}:Solve{1, 2}"),
            "10 Matrix.Solve: the matrix is singular");
  EXPECT_EQ(Refusal("Matrix{{1, 2, 3}}:Solve{1}"),
            "3 Matrix.Solve: the matrix must be square, it is 1x3; SolveLeastSquares takes any "
            "shape");
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {3, 4}}:Solve{1}"),
            "3 Matrix.Solve: the right-hand side has 1 row, the matrix 2");
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {3, 4}}:Solve(Matrix{{1, 2, 3}})"),
            "3 Matrix.Solve: the right-hand side has 1 row, the matrix 2");
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {3, 4}}:Solve{1, 'x'}"),
            "3 Matrix.Solve: the right-hand side[2] must be a number, got text");
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {3, 1/0}}:Solve{1, 2}"),
            "3 Matrix.Solve: the matrix must have finite elements only");
}

TEST_F(MatrixSolvingTest, GivesDeterminants) {
  EXPECT_EQ(Number("return Matrix{{1, 2}, {3, 4}}:Determinant()"), -2.0);
  EXPECT_NEAR(Number("return hilbert:Determinant() * 6048000"), 1.0, 1e-12);
  EXPECT_NEAR(Number("return hilbert:LogAbsDeterminant()"), -std::log(6048000.0), 1e-12);
  EXPECT_EQ(Number("return Matrix{{0, 1}, {1, 0}}:LogAbsDeterminant()"), 0.0);
}

TEST_F(MatrixSolvingTest, HasNoLogarithmForSingularMatrices) {
  EXPECT_EQ(Number("return Matrix{{1, 2}, {2, 4}}:LogAbsDeterminant()"), -kInfinity);
  EXPECT_EQ(Number("return Matrix{{1, 2, 3}, {2, 4, 6}, {1, 0, 1}}:LogAbsDeterminant()"),
            -kInfinity);
  EXPECT_EQ(Number("return Matrix{{0}}:LogAbsDeterminant()"), -kInfinity);
  // The determinant itself underflows here, the logarithm does not.
  EXPECT_NEAR(Number("return Matrix{diagonal = {1e-200, 1e-200, 1}}:LogAbsDeterminant()"),
              -400 * std::log(10.0), 1e-10);
}

TEST_F(MatrixSolvingTest, RefusesDeterminantsOfOtherShapes) {
  EXPECT_EQ(Refusal("Matrix{{1, 2}}:Determinant()"),
            "3 Matrix.Determinant: the matrix must be square, it is 1x2");
  EXPECT_EQ(Refusal("Matrix{{1, 2}}:LogAbsDeterminant()"),
            "3 Matrix.LogAbsDeterminant: the matrix must be square, it is 1x2");
}

TEST_F(MatrixSolvingTest, Inverts) {
  ExpectNear(Elements("Matrix{{4, 7}, {2, 6}}:Inverse()"), {0.6, -0.7, -0.2, 0.4}, 1e-15);
  ExpectNear(Elements("hilbert:Inverse()"),
             {16, -120, 240, -140, -120, 1200, -2700, 1680, 240, -2700, 6480, -4200, -140, 1680,
              -4200, 2800},
             1e-9);
}

TEST_F(MatrixSolvingTest, InvertsMatricesThatNeedRowExchanges) {
  // A permutation is inverted by its transpose.
  EXPECT_EQ(Elements("Matrix{{0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}, {1, 0, 0, 0}}:Inverse()"),
            (NumberList{0, 0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0}));
  // A leading element that is almost 0 must not cost the digits.
  ExpectNear(
      Elements("Matrix{{1e-18, 1, 0, 0}, {1, 0, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 4}}:Inverse()"),
      {0, 1, 0, 0, 1, -1e-18, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.25}, 1e-15);
}

TEST_F(MatrixSolvingTest, RefusesToInvertSingularMatrices) {
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {2, 4}}:Inverse()"),
            "10 Matrix.Inverse: the matrix is singular");
  EXPECT_EQ(Refusal("Matrix{rows = 5, columns = 5}:Inverse()"),
            "10 Matrix.Inverse: the matrix is singular");
  EXPECT_EQ(Refusal("Matrix{{1, 1 + 1e-16}, {1, 1}}:Inverse()"),
            "10 Matrix.Inverse: the matrix is singular");
  EXPECT_EQ(Refusal("Matrix{{1, 2, 3}}:Inverse()"),
            "3 Matrix.Inverse: the matrix must be square, it is 1x3");
}

TEST_F(MatrixSolvingTest, RefusesToInvertWhatRoundingHidesToBeSingular) {
  // Rank 2; elimination leaves pivots of some 1e-16.
  EXPECT_EQ(Refusal("Matrix{{0.1, 0.2, 0.3, 0.4}, {0.5, 0.6, 0.7, 0.8}, {0.9, 1.0, 1.1, 1.2},"
                    "  {1.3, 1.4, 1.5, 1.6}}:Inverse()")
                .substr(0, 40),
            "10 Matrix.Inverse: the matrix is singula");
}

TEST_F(MatrixSolvingTest, GivesCholeskyFactors) {
  ExpectNear(Elements("Matrix{{4, 2}, {2, 3}}:Cholesky()"), {2, 0, 1, std::sqrt(2.0)}, 1e-15);
  Run("l = hilbert:Cholesky(); d = l * l:Transpose() - hilbert");
  EXPECT_LT(Number("return d:Norm()"), 1e-15);
}

TEST_F(MatrixSolvingTest, RefusesCholeskyFactorsThatAreNone) {
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {2, 1}}:Cholesky()"),
            "3 Matrix.Cholesky: the matrix is not positive definite");
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {3, 9}}:Cholesky()"),
            "3 Matrix.Cholesky: the matrix must be symmetric, element (2, 1) is 3 and (1, 2) is 2");
  EXPECT_EQ(Refusal("Matrix{{1, 2}}:Cholesky()"),
            "3 Matrix.Cholesky: the matrix must be square, it is 1x2");
}

TEST_F(MatrixSolvingTest, GivesSingularValues) {
  // {{3, 0}, {4, 5}}: transpose(A) A has the eigenvalues 45 and 5.
  ExpectNear(Numbers("Matrix{{3, 0}, {4, 5}}:SingularValues()"), {std::sqrt(45.0), std::sqrt(5.0)},
             1e-14);
  EXPECT_NEAR(Number("return Matrix{{3, 0}, {4, 5}}:Condition()"), 3.0, 1e-14);
  EXPECT_EQ(Number("return Matrix{{1, 0}, {0, 0}}:Condition()"), kInfinity);
  EXPECT_NEAR(Number("return Matrix{{3, 4}}:Condition()"), 1.0, 1e-14);
}

TEST_F(MatrixSolvingTest, FactorsMultiplyToTheMatrix) {
  Run("a = Matrix{{1, 2}, {3, 4}, {5, 6}}; s = a:SVD()"
      "difference = s.U * Matrix{diagonal = s.w} * s.V:Transpose() - a"
      " orthogonal = s.U:Transpose() * s.U - Matrix{diagonal = {1, 1}}");
  EXPECT_LT(Number("return difference:Norm()"), 1e-14);
  EXPECT_LT(Number("return orthogonal:Norm()"), 1e-14);
}

TEST_F(MatrixSolvingTest, GivesPseudoInverses) {
  EXPECT_EQ(Elements("Matrix{{1, 0}, {0, 0}}:PseudoInverse()"), (NumberList{1, 0, 0, 0}));
  // Of full column rank: (transpose(A) A)^-1 transpose(A), worked out by hand.
  ExpectNear(Elements("Matrix{{1, 1}, {1, 2}, {1, 3}}:PseudoInverse()"),
             {4.0 / 3, 1.0 / 3, -2.0 / 3, -0.5, 0, 0.5}, 1e-14);
}

TEST_F(MatrixSolvingTest, SolvesLeastSquares) {
  // The straight line through (1, 1), (2, 3), (3, 4): intercept -1/3, slope 3/2.
  ExpectNear(Numbers("Matrix{{1, 1}, {1, 2}, {1, 3}}:SolveLeastSquares{1, 3, 4}"), {-1.0 / 3, 1.5},
             1e-14);
  // The shortest of all solutions.
  ExpectNear(Numbers("Matrix{{1, 1}, {1, 1}}:SolveLeastSquares{2, 2}"), {1, 1}, 1e-14);
  EXPECT_EQ(Refusal("Matrix{{1, 1}, {1, 2}, {1, 3}}:SolveLeastSquares{1, 3}"),
            "3 Matrix.SolveLeastSquares: the right-hand side has 2 rows, the matrix 3");
}

TEST_F(MatrixSolvingTest, SolvesRegularised) {
  // diag(2, 1e-3), lambda 0.1: the filter is w/(w^2 + 0.04), since w_1 lambda = 0.2.
  ExpectNear(Numbers("Matrix{diagonal = {2, 1e-3}}:SolveRegularised({4, 1}, 0.1)"),
             {4 * 2 / 4.04, 1e-3 / (1e-6 + 0.04)}, 1e-14);
  // Twice the right-hand side gives twice the solution.
  ExpectNear(Numbers("Matrix{diagonal = {2, 1e-3}}:SolveRegularised({8, 2}, 0.1)"),
             {8 * 2 / 4.04, 2e-3 / (1e-6 + 0.04)}, 1e-14);
}

TEST_F(MatrixSolvingTest, SolvesWithoutRegularisationWhereNoneIsNeeded) {
  ExpectNear(Numbers("Matrix{{2, 1}, {1, 3}}:SolveRegularised({3, 5}, 0.01)"), {0.8, 1.4}, 1e-14);
  ExpectNear(Numbers("Matrix{{1, 1}, {1, 2}, {1, 3}}:SolveRegularised({1, 3, 4}, 0)"),
             {-1.0 / 3, 1.5}, 1e-14);
  ExpectNear(Numbers("Matrix{{1, 1}, {1, 1}}:SolveRegularised({2, 2}, 0)"), {1, 1}, 1e-14);
}

TEST_F(MatrixSolvingTest, RefusesARegularisationThatIsNone) {
  EXPECT_EQ(Refusal("Matrix{{1}}:SolveRegularised({1}, -1)"),
            "3 Matrix.SolveRegularised: lambda must be 0 or more, got -1");
  EXPECT_EQ(Refusal("Matrix{{1}}:SolveRegularised({1}, 0/0)"),
            "3 Matrix.SolveRegularised: lambda must be a finite number, got nan");
  EXPECT_EQ(Refusal("Matrix{{1}}:SolveRegularised({1, 2}, 1)"),
            "3 Matrix.SolveRegularised: the right-hand side has 2 rows, the matrix 1");
}

TEST_F(ToolkitTest, ASingularMatrixIsInfinitelyIllConditioned) {
  EXPECT_EQ(Number("return Matrix{{0, 0}, {0, 0}}:Condition()"), INFINITY);
  EXPECT_EQ(Number("return Matrix{{1, 0}, {0, 0}}:Condition()"), INFINITY);
}

}  // namespace
