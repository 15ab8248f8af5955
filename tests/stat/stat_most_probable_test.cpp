/// The most probable value, its error and the curve around it.

#include <algorithm>
#include <memory>

#include "optim/golden_section.h"
#include "tests/stat/stat_support.h"
#include "tfunc/tfunc.h"

namespace {

using namespace stat_test;

using Vector = std::unique_ptr<T_MatVectorCol<double>>;

TEST(StatMostProbable, OneTwoAndNearlyEqualValuesNeedNoSearch) {
  EmbeddedHost host;
  StatAccess one(std::vector<double>{4});
  Vector r(one.GetMostProbableValue(0, 0));
  ASSERT_EQ(r->Dim(), 3);
  EXPECT_EQ((*r)[0], 4);
  EXPECT_EQ((*r)[1], one.Disp);
  StatAccess measured({4}, {0.5}, 0);
  EXPECT_EQ((*Vector(measured.GetMostProbableValue(0, 0)))[1], 0.5);
  for (const auto& x : {std::vector<double>{1, 5}, {3, 3, 3}, {1, 1 + 1e-8, 1 - 1e-8}}) {
    StatAccess s(x);
    r.reset(s.GetMostProbableValue(1, 0));
    EXPECT_SAME_BITS((*r)[0], s.Mean);
    EXPECT_SAME_BITS((*r)[1], s.SEM2);
  }
}

TEST(StatMostProbable, DispersionThatIsNotPositiveReturnsTheMean) {
  EmbeddedHost host;
  StatAccess s({1, 2, 6}, {1, 1, 1}, 0);
  s.GetEstimationDisp();
  for (const double dispersion : {0.0, -1.0}) {
    s.estDataDisp[1] = dispersion;
    const Vector r(s.GetMostProbableValue(0, 0));
    EXPECT_SAME_BITS((*r)[0], s.Mean);
    EXPECT_SAME_BITS((*r)[1], s.SEM2);
  }
}

TEST(StatMostProbable, LongSamplesAreReduced) {
  EmbeddedHost host;
  Samples samples(101);
  const auto x = samples.Normals(1500, 5, 2);
  StatAccess s(x);
  const std::unique_ptr<Stat> subset(s.SampleSubset(1000));
  ASSERT_EQ(subset->Len(), 1000);
  const Vector ofSubset(subset->GetMostProbableValue(2, 0));
  const Vector r(s.GetMostProbableValue(2, 0));
  EXPECT_SAME_BITS((*r)[0], (*ofSubset)[0]);
  EXPECT_SAME_BITS((*r)[1], (*ofSubset)[1] * 1000 / 1500);
  const double h = std::sqrt(1500 * (*r)[1]);
  int count = 0;
  for (const double v : x) count += (*r)[0] - h <= v && v <= (*r)[0] + h;
  EXPECT_EQ((*r)[2], count);
}

/// The whole search, transcribed; the golden section and the integrals are the module's.
struct Transcription {
  std::vector<double> x, d, w;
  int prior, axis;
  double accuracy = 1e-7;

  double F(double location) {
    return Stat::GetCProbFuncPtr(prior, axis)(location, x.data(), d.data(), w.data(), SizeOf(x));
  }
  static double Callback(double location, void* extra) {
    return static_cast<Transcription*>(static_cast<Variable*>(extra)->GetCppPointer())->F(location);
  }

  double Location() {
    std::vector<double> U = x;
    std::sort(U.begin(), U.end());
    U.erase(std::unique(U.begin(), U.end()), U.end());
    const int u = SizeOf(U), m = std::min(u, 100), step = std::max(1, u / m);
    double best = -kInfinity;
    int first = 0, last = 0;
    const auto see = [&](int i, double at) {
      const double g = -F(at);
      if (g > best) {
        best = g;
        first = last = i;
      } else if (g == best) {
        last = i;
      }
    };
    for (int i = 0; i < u; i += step) see(i, U[static_cast<std::size_t>(i)]);
    double lower = U[static_cast<std::size_t>(std::max(first - 1, 0))];
    double upper = U[static_cast<std::size_t>(std::min(last + 1, u - 1))];
    best = -kInfinity;
    std::vector<double> grid;
    for (int k = 0; k < m; ++k) grid.push_back(lower + k * (upper - lower) / (m - 1));
    for (int k = 0; k < m; ++k) see(k, grid[static_cast<std::size_t>(k)]);
    lower = grid[static_cast<std::size_t>(std::max(first - 1, 0))];
    upper = grid[static_cast<std::size_t>(std::min(last + 1, m - 1))];
    const double width = 10 * std::max((U.back() - U.front()) * accuracy, accuracy);
    if (upper - lower < width) {
      lower -= width;
      upper += width;
    }
    Variable function, extra;
    function.SetCppPointer(reinterpret_cast<void*>(&Callback));
    extra.SetCppPointer(this);
    double bracket[2] = {lower, upper};
    GoldSection_Double search(function, bracket, accuracy);
    search.SetExtraParam(extra);
    return search.Solve();
  }

  template <class H>
  double Bisect(H h, double a, double b) {
    const double fa = h(a);
    for (;;) {
      const double m = (a + b) / 2, fm = h(m);
      if (fm == 0) return m;
      (fm < 0) == (fa < 0) ? a = m : b = m;
      if (!(std::fabs(a - b) / (std::fabs(a) + std::fabs(b)) > accuracy)) return m;
    }
  }

  double SquaredError(const StatAccess& s, double L) {
    const double f0 = F(L), t = std::log(1e-4);
    double lower = std::min(s.Min, s.Mean - 3 * std::sqrt(s.Disp));
    const double upper = std::max(-f0, s.Mean + 3 * std::sqrt(s.Disp));
    if (axis == 1 && lower <= 0) lower = s.Min / 100;
    const auto h = [&](double at) { return (f0 - F(at)) - t; };
    const double xL = h(lower) < 0 ? Bisect(h, lower, L) : lower;
    const double xR = h(upper) < 0 ? (upper < L ? L : Bisect(h, L, upper)) : upper;
    double X[30], P[30];
    for (int k = 0; k < 30; ++k) X[k] = xL + k * (xR - xL) / 29;
    for (int k = 0; k < 30; ++k) P[k] = std::exp(f0 - F(X[k]));
    TFunc curve(X, P, 30);
    curve /= curve.IntegralSimpson(X[0], X[29]);
    const auto below = [&](double at) { return curve.IntegralSimpson(at, L) - 0.34; };
    const auto above = [&](double at) { return curve.IntegralSimpson(L, at) - 0.34; };
    const double x1 = below(xL) < 0 ? xL : Bisect(below, xL, L);
    const double x2 = above(xR) < 0 ? xR : Bisect(above, L, xR);
    return ((x2 - x1) * 0.5) * ((x2 - x1) * 0.5);
  }
};

TEST(StatMostProbable, SameBitsAsASecondTranscription) {
  EmbeddedHost host;
  Samples samples(102);
  for (const int n : {3, 10, 99, 100, 250}) {
    for (int prior = 0; prior < 4; ++prior) {
      for (const int axis : {0, 1}) {
        const auto x = samples.LogNormals(n, 1, 0.3);
        StatAccess s(x, samples.Uniform(n, 0.05, 0.2), 0);
        const double* const d = s.GetEstimationDisp();
        Transcription t = {x, std::vector<double>(d, d + n), std::vector<double>(x.size(), 1.0),
                           prior, axis};
        const Vector r(s.GetMostProbableValue(prior, axis));
        const double location = t.Location();
        const double squaredError = t.SquaredError(s, location);
        EXPECT_SAME_BITS((*r)[0], location) << n << ' ' << prior << ' ' << axis;
        EXPECT_SAME_BITS((*r)[1], squaredError) << n << ' ' << prior << ' ' << axis;
        const double h = std::sqrt(n * squaredError);
        const auto count = std::count_if(
            x.begin(), x.end(), [&](double v) { return location - h <= v && v <= location + h; });
        EXPECT_EQ((*r)[2], static_cast<double>(count));
      }
    }
  }
}

TEST(StatMostProbable, WithoutPriorItIsTheWeightedMean) {
  EmbeddedHost host;
  Samples samples(103);
  const auto x = samples.Normals(40, 5, 1);
  const auto w = samples.Uniform(40, 0.5, 2);
  const std::vector<double> d(40, 0.8);
  StatAccess s(x, d, 3);
  EXPECT_NEAR((*Vector(s.GetMostProbableValue(3, 0)))[0], s.Mean, 1e-6);
  EXPECT_NEAR(std::sqrt((*Vector(s.GetMostProbableValue(3, 0)))[1]), std::sqrt(0.8 / 40), 0.01);
  auto xs = x, ds = d, ws = w;
  Stat_Weighted weighted(xs.data(), ds.data(), ws.data(), 40);
  EXPECT_NEAR((*Vector(weighted.GetMostProbableValue(3, 0)))[0], weighted.GetWeightedMean(), 1e-6);
}

TEST(StatMostProbable, LocatesNormalLogNormalContaminatedAndTiedSamples) {
  EmbeddedHost host;
  Samples samples(104);
  const auto normal = samples.Normals(400, 10, 2);
  auto contaminated = normal;
  for (std::size_t i = 0; i < 20; ++i) contaminated[i * 20] = 1e3;
  auto tied = normal;
  for (double& x : tied) x = std::round(x);
  for (const auto& x : {normal, contaminated, tied}) {
    for (int prior = 0; prior < 3; ++prior) {
      StatAccess s(x);
      const Vector r(s.GetMostProbableValue(prior, 0));
      EXPECT_NEAR((*r)[0], 10, 1) << prior;
      EXPECT_GT((*r)[1], 0);
    }
  }
  // Not without prior: a common dispersion weighs large values more on the logarithmic axis.
  StatAccess s(samples.LogNormals(400, 1, 0.4));
  for (int prior = 0; prior < 3; ++prior) {
    EXPECT_NEAR((*Vector(s.GetMostProbableValue(prior, 1)))[0], std::exp(1.0), 0.5) << prior;
  }
}

TEST(StatProbabilityCurve, GridAndValues) {
  EmbeddedHost host;
  Samples samples(105);
  for (const bool logNormal : {false, true}) {
    StatAccess s(logNormal ? samples.LogNormals(50, 1, 1.2) : samples.Normals(50, -3, 1));
    ASSERT_EQ(s.GetDistrType(), logNormal ? 1 : 0);
    const double r = logNormal ? std::log(s.Max / s.Min) : s.Max - s.Min;
    const double a = (logNormal ? std::log(s.Min) : s.Min) - r / 4;
    const double b = (logNormal ? std::log(s.Max) : s.Max) + r / 4;
    for (const int m : {1, 2, 30}) {
      double *x = nullptr, *lp = nullptr;
      s.GetLogProbabilityDistribution(1, logNormal, m, x, lp);
      std::vector<double> ones(50, 1.0), expected;
      for (int k = 0; k < m; ++k) {
        const double t = k == 0 ? a : a + k * (b - a) / (m - 1);
        EXPECT_SAME_BITS(x[k], logNormal ? std::exp(t) : t);
        expected.push_back(
            -Stat::GetCProbFuncPtr(1, logNormal)(x[k], s.Data, s.estDataDisp, ones.data(), 50));
      }
      const double top = *std::max_element(expected.begin(), expected.end());
      for (int k = 0; k < m; ++k) EXPECT_SAME_BITS(lp[k], expected[std::size_t(k)] - top);
      delete[] x;
      delete[] lp;
    }
  }
}

// Hostile samples
// ----------------------------------------------------------------------------------

/// Everything that a sample can be asked; the test is that it ends and reads nothing foreign.
void AskEverything(Stat& s) {
  double a = 0, b = 0, *x = nullptr, *p = nullptr, h[8], err[8];
  int n = 0;
  s.GetMedian_SD(a, b);
  s.GetMedian_MAD(a, b);
  s.GetCumulativeDistr(x, p, n);
  for (int i = 0; i < n; ++i) a += x[i] + p[i];
  s.GetHistogram(h, err, n, s.GetMin(), s.GetMax(), 8);
  const Vector fit(s.FitCumulativeDistribution());
  s.GetEstimationDisp();
  const std::unique_ptr<Stat> subset(s.SampleSubset(2));
  for (int prior = 0; prior < 4; ++prior) {
    for (const int axis : {0, 1}) {
      const Vector r(s.GetMostProbableValue(prior, axis));
      EXPECT_EQ(r->Dim(), 3);
      s.GetLogProbabilityDistribution(prior, axis, 5, x, p);
      delete[] x;
      delete[] p;
    }
  }
  Variable object;
  s.UpdateTarnObject(object);
  s *= -2;
}

std::vector<std::vector<double>> HostileValues() {
  std::vector<std::vector<double>> all = {{}, {1}, {1, 2}, {0, 0, 0}, {1, 2, 4}, {2, 1, 1, 2, 2}};
  Samples samples(106);
  for (const double scale : {1.0, 1e-300, 1e300, 1e-320, 1e150}) {
    auto x = samples.Normals(12, 0.3 * scale, scale);
    all.push_back(x);
    for (double& v : x) v = std::fabs(v);
    all.push_back(x);
    for (const double odd : {kNaN, kInfinity, -kInfinity, 0.0}) {
      auto spoilt = x;
      spoilt[5] = odd;
      all.push_back(spoilt);
      spoilt[0] = spoilt[11] = odd;
      all.push_back(spoilt);
    }
  }
  all.push_back(std::vector<double>(12, kNaN));
  all.push_back(std::vector<double>(12, kInfinity));
  all.push_back(std::vector<double>(1200, 3.0));
  return all;
}

TEST(StatHostile, PlainSamplesEnd) {
  EmbeddedHost host;
  for (const auto& x : HostileValues()) {
    StatAccess s(x);
    AskEverything(s);
  }
}

TEST(StatHostile, MeasuredSamplesEnd) {
  EmbeddedHost host;
  for (const auto& x : HostileValues()) {
    for (const double typical : {1.0, 0.0, 1e-300, 1e300, kNaN, kInfinity}) {
      std::vector<double> d(x.size(), 0.5);
      for (std::size_t i = 0; i < d.size(); i += 2) d[i] = typical;
      for (int meanType = 0; meanType < 4; ++meanType) {
        StatAccess s(x, d, meanType);
        if (meanType == 0) AskEverything(s);
      }
    }
  }
}

TEST(StatHostile, WeightedSamplesEnd) {
  EmbeddedHost host;
  for (auto x : HostileValues()) {
    for (const double typical : {1.0, 0.0, -1.0, 1e-300, 1e300, kNaN, kInfinity}) {
      std::vector<double> w(x.size(), 0.5), d(x.size(), 0.25);
      for (std::size_t i = 0; i < w.size(); i += 2) w[i] = typical;
      Stat_Weighted plain(x.data(), w.data(), SizeOf(x));
      AskEverything(plain);
      plain.GetCorrToWeight(1, 1);
      Stat_Weighted measured(x.data(), d.data(), w.data(), SizeOf(x));
      AskEverything(measured);
    }
  }
}

TEST(StatHostile, OddAccuraciesEnd) {
  EmbeddedHost host;
  Samples samples(107);
  for (const double accuracy : {0.0, 1e-300, 1.0, 1e300, kInfinity}) {
    StatAccess s(samples.Normals(20, 0, 1));
    s.SetAccuracy(accuracy);
    AskEverything(s);
  }
}

TEST(StatHostile, AMillionValuesEnd) {
  EmbeddedHost host;
  Samples samples(108);
  auto x = samples.Normals(1000000, 3, 1);
  std::vector<double> d(x.size(), 0.5);
  StatAccess s(x, d, 0);
  EXPECT_NEAR(s.Disp0, 0.5, 0.01);
  double median = 0, sd = 0;
  s.GetMedian_SD(median, sd);
  EXPECT_NEAR(median, 3, 0.01);
  EXPECT_NEAR((*Vector(s.GetMostProbableValue(0, 0)))[0], 3, 0.3);
  StatAccess plain(x);
  EXPECT_NEAR(plain.GetEstimationDisp()[0], 1, 0.05);
}

}  // namespace
