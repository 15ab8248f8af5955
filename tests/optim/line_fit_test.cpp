// T_Line_LSQM2: plain fits, regularisation, copies, failures.

#include "line_fit_support.h"

namespace {

template <class T>
class LineFitTest : public ClimbTest {};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(LineFitTest, Elements);

// Plain fit ---------------------------------------------------------------------------------------

TYPED_TEST(LineFitTest, PlainFitIsTheStatedSumsBitForBit) {
  using T = TypeParam;
  for (const int count : {3, 10, 101}) {
    for (const int m : {1, 2, 3}) {
      Points<T> points = Parabola<T>(count, 0.3);
      Basis<T> basis = {One<T>, Linear<T>, Square<T>};
      basis.resize(static_cast<std::size_t>(m));
      T_Line_LSQM2<T> fit = MakeFit(basis, points);
      EXPECT_EQ(fit.GetA(0), 0);
      EXPECT_EQ(fit.GetCovariance(), nullptr);
      fit.DoIt(0);
      PlainReference<T> expected(basis, points);
      for (int k = 0; k < m; ++k) {
        EXPECT_EQ(Bits(fit.GetA(k)), Bits(expected.coeff[static_cast<std::size_t>(k)]));
        EXPECT_EQ(fit.GetResult()[k], fit.GetA(k));
      }
      EXPECT_EQ(fit.GetA(-1), 0);
      EXPECT_EQ(fit.GetA(m), 0);
      EXPECT_EQ(Bits(fit.GetChi2()), Bits(expected.chi2));
      EXPECT_EQ(Bits(fit.GetResidue()), Bits(expected.residue));
      EXPECT_EQ(Bits(fit.GetLogProb()), Bits(expected.logProb));
      const std::unique_ptr<T_Matrix<T>> covariance(expected.aw.PseudoInverse());
      for (int i = 0; i < m; ++i) {
        for (int j = 0; j < m; ++j) {
          EXPECT_EQ(Bits((*fit.GetCovariance())(i, j)), Bits((*covariance)(i, j)));
        }
      }
    }
  }
}

TYPED_TEST(LineFitTest, PlainFitFindsTheCoefficients) {
  using T = TypeParam;
  Points<T> points = Parabola<T>(200, 0.1);
  Basis<T> basis = {One<T>, Linear<T>, Square<T>};
  T_Line_LSQM2<T> fit = MakeFit(basis, points);
  fit.DoIt(0);
  const double expected[3] = {1, -2, 0.5};
  for (int k = 0; k < 3; ++k) {
    const double sigma = std::sqrt(static_cast<double>((*fit.GetCovariance())(k, k)));
    EXPECT_NEAR(fit.GetA(k), expected[k], 4 * sigma + (sizeof(T) == 4 ? 2e-3 : 0));
  }
  if (sizeof(T) == 8) {
    EXPECT_NEAR(static_cast<double>(fit.GetChi2()), 197, 80);
  }
}

TYPED_TEST(LineFitTest, PerfectFitHasResidueZeroAndAFiniteProbability) {
  using T = TypeParam;
  Points<T> points;
  for (int i = 0; i < 3; ++i) points.Add(static_cast<T>(i), 2, 1);
  Basis<T> basis = {One<T>};
  T_Line_LSQM2<T> fit = MakeFit(basis, points);
  fit.DoIt(0);
  EXPECT_EQ(fit.GetA(0), 2);
  EXPECT_EQ(fit.GetResidue(), 0);
  EXPECT_EQ(fit.GetChi2(), 0);
  // S0 = 12, A = 3, M = 1, N = 3
  const double expected = 0.5 * std::log(2 * std::numbers::pi) - 0.5 * std::log(4.0) -
                          0.5 * std::log(3.0) - 0.5 * std::log(1e-8);
  EXPECT_NEAR(fit.GetLogProb(), expected, sizeof(T) == 4 ? 1e-5 : 1e-12);
}

TYPED_TEST(LineFitTest, BasisIsCalledOncePerFunctionAndOncePerPair) {
  using T = TypeParam;
  static std::vector<int> calls;
  calls.clear();
  Basis<T> basis = {+[](T, void*) {
                      calls.push_back(0);
                      return T(1);
                    },
                    +[](T x, void*) {
                      calls.push_back(1);
                      return x;
                    }};
  Points<T> points;
  points.Add(1, 2, 1);
  points.Add(2, 3, 1);
  T_Line_LSQM2<T> fit = MakeFit(basis, points);
  fit.DoIt(0);
  EXPECT_EQ(calls, (std::vector<int>{0, 0, 1, 0, 1, 0, 0, 1, 0, 1}));
}

TYPED_TEST(LineFitTest, ExtraParameterReachesTheBasis) {
  using T = TypeParam;
  Points<T> points;
  for (int i = 1; i < 5; ++i) points.Add(static_cast<T>(i), static_cast<T>(6 * i), 1);
  Basis<T> basis = {Scaled<T>};
  T_Line_LSQM2<T> fit = MakeFit(basis, points, T(1e-4));
  T factor = 2;
  fit.SetExtraParam(&factor);
  fit.DoIt(0);
  EXPECT_NEAR(fit.GetA(0), 3, 1e-5);
  fit.DoIt(1);
  EXPECT_NEAR(fit.GetA(0), 3, 0.1);
}

TYPED_TEST(LineFitTest, BadlyScaledMatrixIsShifted) {
  using T = TypeParam;
  // One basis function: det = 4e-20 or 4e20, shifted by a thousandth of itself.
  for (const double scale : {1e-10, 1e10}) {
    Points<T> points;
    const T x = static_cast<T>(scale);
    for (int i = 0; i < 4; ++i) points.Add(x, x, 1);
    Basis<T> basis = {Linear<T>};
    T_Line_LSQM2<T> fit = MakeFit(basis, points);
    fit.DoIt(0);
    EXPECT_NEAR(fit.GetA(0), 1 / 1.001, 1e-6) << scale;
  }
  Points<T> points;
  for (int i = 0; i < 4; ++i) points.Add(2, 2, 1);
  Basis<T> basis = {Linear<T>};
  T_Line_LSQM2<T> fit = MakeFit(basis, points);
  fit.DoIt(0);
  EXPECT_EQ(fit.GetA(0), 1);
}

/// A basis of which each point sees one function.
template <class T>
T AtOne(T x, void*) {
  return x == 1 ? T(1) : T(0);
}
template <class T>
T AtTwo(T x, void*) {
  return x == 2 ? T(1) : T(0);
}

TYPED_TEST(LineFitTest, MatrixIsShiftedOutsideItsRangeOfDeterminants) {
  using T = TypeParam;
  for (const double det : {0.5e-16, 2e-16, 0.5e16, 2e16}) {
    Points<T> points;
    points.Add(1, 1, static_cast<T>(1 / det));
    Basis<T> basis = {AtOne<T>};
    T_Line_LSQM2<T> fit = MakeFit(basis, points);
    fit.DoIt(0);
    const bool shifted = det < 1e-16 || det > 1e16;
    EXPECT_NEAR(fit.GetA(0), shifted ? 1 / 1.001 : 1, 1e-6) << det;
  }
}

TYPED_TEST(LineFitTest, ShiftIsAThousandthOfTheSmallestDiagonalElement) {
  using T = TypeParam;
  // The normal matrix is diagonal: 4e10 and 1e10, in both orders.
  for (const bool smallestFirst : {false, true}) {
    Points<T> points;
    points.Add(1, 1, smallestFirst ? T(1e-10) : T(0.25e-10));
    points.Add(2, 1, smallestFirst ? T(0.25e-10) : T(1e-10));
    Basis<T> basis = {AtOne<T>, AtTwo<T>};
    T_Line_LSQM2<T> fit = MakeFit(basis, points);
    fit.DoIt(0);
    EXPECT_NEAR(fit.GetA(smallestFirst ? 0 : 1), 1 / 1.001, 1e-6);
    EXPECT_NEAR(fit.GetA(smallestFirst ? 1 : 0), 1 / 1.00025, 1e-6);
  }
  if (sizeof(T) == 4) return;
  // The search for the smallest starts at 1e37.
  Points<T> points;
  points.Add(1, 1, static_cast<T>(1e-40));
  Basis<T> basis = {AtOne<T>};
  T_Line_LSQM2<T> fit = MakeFit(basis, points);
  fit.DoIt(0);
  EXPECT_NEAR(fit.GetA(0), 1 / 1.000001, 1e-9);
}

TYPED_TEST(LineFitTest, DependentBasisIsSolvedAfterTheShift) {
  using T = TypeParam;
  Points<T> points = Parabola<T>(20, 0.1);
  Basis<T> basis = {One<T>, One<T>};
  T_Line_LSQM2<T> fit = MakeFit(basis, points);
  fit.DoIt(0);
  EXPECT_FALSE(this->host.HasError());
  EXPECT_NEAR(fit.GetA(0), fit.GetA(1), 1e-2);
}

TYPED_TEST(LineFitTest, SingularEvenSoRaises) {
  using T = TypeParam;
  Points<T> points = Parabola<T>(20, 0.1);
  Basis<T> basis = {One<T>, Nothing<T>};
  T_Line_LSQM2<T> fit = MakeFit(basis, points);
  for (const int mode : {0, 1}) {
    fit.DoIt(mode);
    EXPECT_EQ(this->host.TakeError().number, 10);
    EXPECT_EQ(fit.GetCovariance(), nullptr);
  }
  Points<T> none;
  T_Line_LSQM2<T> empty = MakeFit(basis, none);
  empty.DoIt(0);
  EXPECT_EQ(this->host.TakeError().number, 10);
}

TYPED_TEST(LineFitTest, NoBasisAndNegativeCountsDoNoHarm) {
  using T = TypeParam;
  for (const int m : {0, -2}) {
    T_Line_LSQM2<T> fit(nullptr, m, nullptr, nullptr, nullptr, -5, T(1e-3));
    fit.DoIt(0);
    fit.DoIt(1);
    fit.SetPrior(1);
    fit.DoIt(1);
    this->host.TakeError();
  }
}

// Copies and failures -----------------------------------------------------------------------------

TYPED_TEST(LineFitTest, CopiesShareNothingButTheArrays) {
  using T = TypeParam;
  Points<T> points = Parabola<T>(30, 0.1);
  Basis<T> basis = {One<T>, Linear<T>};
  T_Line_LSQM2<T> fit = MakeFit(basis, points);
  fit.DoIt(0);
  const T a0 = fit.GetA(0);
  T_Line_LSQM2<T> copy(fit);
  Basis<T> other = {Square<T>};
  T_Line_LSQM2<T> assigned = MakeFit(other, points);
  assigned = copy;
  assigned = *&assigned;
  EXPECT_NE(copy.GetResult(), fit.GetResult());
  EXPECT_NE(copy.GetCovariance(), fit.GetCovariance());
  EXPECT_EQ(copy.GetA(0), a0);
  EXPECT_EQ(assigned.GetA(1), fit.GetA(1));
  EXPECT_EQ(assigned.GetLogProb(), fit.GetLogProb());
  points.y[0] += 5;
  copy.DoIt(0);
  EXPECT_NE(copy.GetA(0), a0);
  EXPECT_EQ(fit.GetA(0), a0);
  EXPECT_EQ(assigned.GetA(0), a0);
}

TYPED_TEST(LineFitTest, CopiesTakeEverySetting) {
  using T = TypeParam;
  Points<T> points = Parabola<T>(30, 0.1);
  AddOutliers(points);
  Basis<T> basis = {One<T>, Scaled<T>};
  T factor = 2;
  T_Line_LSQM2<T> fit = MakeFit(basis, points, T(1e-2));
  fit.SetExtraParam(&factor);
  fit.SetPrior(1);
  T_Line_LSQM2<T> copy(fit);
  Basis<T> square = {Square<T>};
  Points<T> few = Parabola<T>(3, 0.1);
  T_Line_LSQM2<T> assigned = MakeFit(square, few);
  assigned = fit;
  fit.DoIt(1);
  for (auto* other : {&copy, &assigned}) {
    other->DoIt(1);
    for (const int k : {0, 1}) EXPECT_EQ(Bits(other->GetA(k)), Bits(fit.GetA(k)));
    EXPECT_EQ(Bits(other->GetChi2()), Bits(fit.GetChi2()));
  }
  // The likelihood and the accuracy show in the result.
  T_Line_LSQM2<T> otherPrior(copy);
  otherPrior.SetPrior(0);
  otherPrior.DoIt(1);
  EXPECT_NE(otherPrior.GetA(0), fit.GetA(0));
  T_Line_LSQM2<T> finer = MakeFit(basis, points, T(1e-5));
  finer.SetExtraParam(&factor);
  finer.SetPrior(1);
  finer.DoIt(1);
  EXPECT_NE(finer.GetA(0), fit.GetA(0));
}

TYPED_TEST(LineFitTest, RefusedMemoryRaisesOrDegrades) {
  using T = TypeParam;
  Points<T> points = Parabola<T>(30, 0.1);
  Basis<T> basis = {One<T>, Linear<T>};
  for (const int mode : {0, 1, 2}) {
    for (std::int64_t granted = 0; granted < 25; ++granted) {
      this->host.SetHeapFailure([granted](std::int64_t request) { return request > granted; });
      {
        T_Line_LSQM2<T> fit = MakeFit(basis, points);
        fit.SetPrior(mode - 1);
        fit.DoIt(mode);
        T_Line_LSQM2<T> copy(fit);
        copy.GetA(1);
      }
      this->host.SetHeapFailure({});
      if (granted < 2) {
        EXPECT_EQ(this->host.TakeError().number, 1) << granted;
      }
      this->host.TakeError();
    }
  }
}

}  // namespace
