// T_Line_LSQM2: plain fits, regularisation, refinement under both likelihoods, copies, failures.

#include <numbers>
#include <random>

#include "climb_support.h"
#include "optim/line_lsqm2_impl.h"

namespace {

template <class T>
T One(T, void*) {
  return T(1);
}
template <class T>
T Linear(T x, void*) {
  return x;
}
template <class T>
T Square(T x, void*) {
  return x * x;
}
template <class T>
T Nothing(T, void*) {
  return T(0);
}
template <class T>
T Scaled(T x, void* extra) {
  return x * *static_cast<const T*>(extra);
}

/// Points of a fit, owned by the test.
template <class T>
struct Points {
  std::vector<T> x, y, var;

  int Count() const { return static_cast<int>(x.size()); }
  void Add(T px, T py, T pvar) {
    x.push_back(px);
    y.push_back(py);
    var.push_back(pvar);
  }
};

template <class T>
using Basis = std::vector<T (*)(T, void*)>;

template <class T>
T_Line_LSQM2<T> MakeFit(Basis<T>& basis, Points<T>& points, T accuracy = T(1e-6)) {
  return T_Line_LSQM2<T>(basis.data(), static_cast<int>(basis.size()), points.y.data(),
                         points.x.data(), points.var.data(), points.Count(), accuracy);
}

/// A noisy parabola 1 - 2x + 0.5x^2 on [-2, 3].
template <class T>
Points<T> Parabola(int count, double noise) {
  std::mt19937 random(5);
  std::normal_distribution<double> normal(0, 1);
  Points<T> points;
  for (int i = 0; i < count; ++i) {
    const double x = -2 + 5.0 * i / (count - 1);
    const double sigma = noise * (1 + 0.5 * (i % 3));
    points.Add(static_cast<T>(x), static_cast<T>(1 - 2 * x + 0.5 * x * x + sigma * normal(random)),
               static_cast<T>(sigma * sigma));
  }
  return points;
}

/// Moves every tenth point far up.
template <class T>
void AddOutliers(Points<T>& points) {
  for (int i = 4; i < points.Count(); i += 10) points.y[static_cast<std::size_t>(i)] += T(8);
}

/// The fit a second time: sums and results as plain loops.
template <class T>
struct PlainReference {
  T s1 = 0, s0 = 0, chi2 = 0, residue = 0, logProb = 0;
  std::vector<T> bw, b, coeff;
  T_Matrix<T> aw, a;

  PlainReference(const Basis<T>& basis, const Points<T>& points, void* extra = nullptr)
      : aw(static_cast<int>(basis.size())), a(static_cast<int>(basis.size())) {
    const int m = static_cast<int>(basis.size());
    bw.assign(basis.size(), 0);
    b = coeff = bw;
    for (std::size_t i = 0; i < points.x.size(); ++i) {
      const T y = points.y[i];
      const T var = points.var[i];
      s1 = s1 + y * y / var;
      s0 = s0 + y * y;
      for (int k = 0; k < m; ++k) {
        const auto uk = static_cast<std::size_t>(k);
        const T fk = basis[uk](points.x[i], extra);
        bw[uk] = bw[uk] + fk * y / var;
        b[uk] = b[uk] + fk * y;
        for (int j = 0; j <= k; ++j) {
          const T fj = basis[static_cast<std::size_t>(j)](points.x[i], extra);
          aw(k, j) = aw(k, j) + fk * fj / var;
          a(k, j) = a(k, j) + fk * fj;
          aw(j, k) = aw(k, j);
          a(j, k) = a(k, j);
        }
      }
    }
    const T det = aw.Det();
    if (!(det >= T(1e-16) && det <= T(1e16))) {
      T least = T(1e37);
      for (int k = 0; k < m; ++k) least = aw(k, k) < least ? aw(k, k) : least;
      for (int k = 0; k < m; ++k) aw(k, k) = aw(k, k) + T(0.001) * least;
    }
    aw.SolveSystem(bw.data(), coeff.data());
    T bwa = 0, ba = 0, logs = 0;
    for (int k = 0; k < m; ++k) {
      const auto uk = static_cast<std::size_t>(k);
      bwa = bwa + bw[uk] * coeff[uk];
      ba = ba + b[uk] * coeff[uk];
      if (a(k, k) > 0) logs = logs + T(0.5) * std::log(s0 / a(k, k));
    }
    chi2 = std::fabs(s1 - bwa);
    residue = std::fabs(s0 - ba);
    const T positive = residue <= 0 ? T(1e-8) : residue;
    logProb = std::log(2 * std::numbers::pi_v<T>) * static_cast<T>(m) / 2 - logs -
              T(0.5) * a.LnDet() - std::log(positive) * static_cast<T>(points.Count() - 2) / 2;
  }
};

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

// Refinement --------------------------------------------------------------------------------------

/// The objectives as plain sums from the last point to the first.
template <class T>
T Likelihood(const Basis<T>& basis, const Points<T>& points, int prior, const T* a) {
  T sum = 0;
  for (std::size_t i = points.x.size(); i-- > 0;) {
    T model = 0;
    for (std::size_t k = 0; k < basis.size(); ++k) model += a[k] * basis[k](points.x[i], nullptr);
    if (prior == 0) {
      const T r = (model - points.y[i]) * (model - points.y[i]) / points.var[i];
      const T c = 1 - std::exp(-r / 2);
      sum += std::log(c == 0 ? T(0.5) : c / r);
    } else {
      const T s = std::sqrt(points.var[i]);
      const T root = std::sqrt(T(2));
      T d = std::fabs(model - points.y[i]);
      T u = d / (s * root);
      if (u < T(1e-5)) {
        u = T(1e-5);
        d = s * root * T(1e-5);
      }
      sum += std::log(static_cast<T>(Erf(static_cast<double>(u))) / d);
    }
  }
  return -sum;
}

TYPED_TEST(LineFitTest, RefinementIsASolveFromThePlainFit) {
  using T = TypeParam;
  Points<T> points = Parabola<T>(60, 0.1);
  AddOutliers(points);
  Basis<T> basis = {One<T>, Linear<T>, Square<T>};
  const PlainReference<T> plain(basis, points);
  for (const int prior : {0, 1}) {
    const T accuracy = sizeof(T) == 4 ? T(1e-4) : T(1e-6);
    reference::Point<T> bounds;
    T logs = 0;
    for (int k = 0; k < 3; ++k) {
      const T sigma = std::sqrt(plain.s1 / plain.aw(k, k));
      bounds.push_back(-10 * sigma);
      bounds.push_back(10 * sigma);
      logs += T(0.5) * std::log(plain.s1 / plain.aw(k, k));
    }
    reference::Climb<T> expected(
        [&](const reference::Point<T>& a) { return Likelihood(basis, points, prior, a.data()); },
        bounds, reference::Point<T>(plain.coeff.begin(), plain.coeff.end()));
    expected.accuracy = accuracy;
    expected.Solve(1000);
    const reference::Point<T> coefficients = expected.Real(expected.best);

    T_Line_LSQM2<T> fit = MakeFit(basis, points, accuracy);
    fit.SetPrior(prior);
    fit.DoIt(1);
    T chi2 = 0;
    T residue = 0;
    for (std::size_t i = points.x.size(); i-- > 0;) {
      T model = 0;
      for (int k = 2; k >= 0; --k) {
        model += coefficients[k] * basis[static_cast<std::size_t>(k)](points.x[i], nullptr);
      }
      const T r = points.y[i] - model;
      chi2 += r * r / points.var[i];
      residue += r * r;
    }
    for (int k = 0; k < 3; ++k) EXPECT_EQ(Bits(fit.GetA(k)), Bits(coefficients[k])) << prior;
    EXPECT_EQ(Bits(fit.GetChi2()), Bits(chi2));
    EXPECT_EQ(Bits(fit.GetResidue()), Bits(residue));
    const T lnDet = fit.GetCovariance()->LnDet();
    EXPECT_EQ(Bits(fit.GetLogProb()), Bits(std::log(4 * std::numbers::pi_v<T>) * 3 / 2 -
                                           residue / 2 + T(0.5) * lnDet - logs));
  }
}

TYPED_TEST(LineFitTest, RefinementIgnoresOutliers) {
  using T = TypeParam;
  Points<T> points = Parabola<T>(100, 0.05);
  AddOutliers(points);
  Basis<T> basis = {One<T>, Linear<T>, Square<T>};
  T_Line_LSQM2<T> fit = MakeFit(basis, points, sizeof(T) == 4 ? T(1e-5) : T(1e-7));
  fit.DoIt(0);
  const double expected[3] = {1, -2, 0.5};
  double plainError = 0;
  for (int k = 0; k < 3; ++k) {
    plainError += std::fabs(static_cast<double>(fit.GetA(k)) - expected[k]);
  }
  EXPECT_GT(plainError, 0.5);
  for (const int prior : {0, 1}) {
    fit.SetPrior(prior);
    fit.DoIt(1);
    EXPECT_FALSE(this->host.HasError());
    for (int k = 0; k < 3; ++k) {
      EXPECT_NEAR(fit.GetA(k), expected[k], 0.1) << prior;
      EXPECT_GT((*fit.GetCovariance())(k, k), 0);
    }
  }
}

TYPED_TEST(LineFitTest, NegativeNormalMatrixGetsABoxOfTenTimesTheCoefficient) {
  using T = TypeParam;
  // Negative variances: nothing that a caller should do, but the boxes are defined.
  for (const T y : {T(3), T(-3), T(0)}) {
    Points<T> points;
    for (int i = 0; i < 4; ++i) points.Add(1, y, -1);
    Basis<T> basis = {Linear<T>};
    const T_Matrix<T> aw = PlainReference<T>(basis, points).aw;
    const T coefficient = y;
    const T_MatVectorCol<T> bounds = tarn::CoefficientBounds(T(-1), aw, &coefficient);
    EXPECT_EQ(bounds[0], y == 0 ? T(-1000) : -10 * y);  // reversed for a negative coefficient
    EXPECT_EQ(bounds[1], y == 0 ? T(1000) : 10 * y);
    T_Line_LSQM2<T> fit = MakeFit(basis, points, T(1e-3));
    fit.DoIt(1);
    EXPECT_LE(std::fabs(fit.GetA(0)), 1000);
    this->host.TakeError();
  }
}

TYPED_TEST(LineFitTest, ObjectivesAtAPerfectModelAreFinite) {
  using T = TypeParam;
  Points<T> points;
  points.Add(1, 2, T(0.25));
  Basis<T> basis = {Linear<T>};
  Variable arguments(VARTYPE_ARRAY, tarn::kFitArgumentCount);
  tarn::FillFitArguments(arguments, points.x.data(), points.y.data(), points.var.data(), 1,
                         basis.data(), 1, nullptr);
  T_MatVectorCol<T> a = Vector<T>({2});
  EXPECT_EQ(tarn::SquaredTailObjective<T>(a, &arguments), -std::log(T(0.5)));
  const T small = T(1e-5);
  const T d = T(0.25) * std::numbers::sqrt2_v<T> * small;
  EXPECT_EQ(Bits(tarn::ErrorFunctionObjective<T>(a, &arguments)),
            Bits(-std::log(static_cast<T>(Erf(static_cast<double>(small))) / d)));
}

TYPED_TEST(LineFitTest, LnDetOfAMatrixThatIsNotPositiveIsNotANumber) {
  using T = TypeParam;
  const T negative[4] = {1, 2, 2, 1};
  EXPECT_TRUE(std::isnan(tarn::LnOfPositiveDet(T_Matrix<T>(2, 2, negative))));
  EXPECT_TRUE(std::isnan(tarn::LnOfPositiveDet(T_Matrix<T>(2, 2))));
  const T positive[4] = {2, 0, 0, 3};
  EXPECT_NEAR(tarn::LnOfPositiveDet(T_Matrix<T>(2, 2, positive)), std::log(6.0), 1e-6);
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
