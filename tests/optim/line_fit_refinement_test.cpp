// T_Line_LSQM2: refinement under both likelihoods.

#include "line_fit_support.h"
#include "optim/line_lsqm2_impl.h"

namespace {

template <class T>
class LineFitRefinementTest : public ClimbTest {};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(LineFitRefinementTest, Elements);

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

TYPED_TEST(LineFitRefinementTest, RefinementIsASolveFromThePlainFit) {
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

TYPED_TEST(LineFitRefinementTest, RefinementIgnoresOutliers) {
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

TYPED_TEST(LineFitRefinementTest, NegativeNormalMatrixGetsABoxOfTenTimesTheCoefficient) {
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

TYPED_TEST(LineFitRefinementTest, ObjectivesAtAPerfectModelAreFinite) {
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

TYPED_TEST(LineFitRefinementTest, ACovarianceOfNegativeDeterminantCountsByItsAbsoluteValue) {
  using T = TypeParam;
  // 1, x and x^2 about gross outliers: some of these flat optima have such covariances.
  int negative = 0;
  for (int seed = 0; seed < 200; ++seed) {
    std::mt19937 random(static_cast<unsigned>(seed));
    std::normal_distribution<double> normal(0, 1);
    Points<T> points;
    for (int i = 0; i < 8; ++i) {
      points.Add(static_cast<T>(i), static_cast<T>(5 * normal(random)), T(0.01));
    }
    Basis<T> basis = {One<T>, Linear<T>, Square<T>};
    T_Line_LSQM2<T> fit = MakeFit(basis, points, T(1e-3));
    fit.DoIt(1);
    this->host.TakeError();
    const T det = fit.GetCovariance()->Det();
    if (!(det < 0)) continue;
    ++negative;
    EXPECT_TRUE(std::isfinite(fit.GetLogProb())) << seed;
  }
  EXPECT_GT(negative, 0);
}

}  // namespace
