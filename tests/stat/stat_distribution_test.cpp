/// Distribution type, likelihoods, probability functions and the cumulative fit.

#include <algorithm>
#include <memory>
#include <numbers>
#include <sstream>
#include <string>

#include "special/gamma.h"
#include "tests/stat/stat_support.h"

namespace {

using namespace stat_test;

using Vector = std::unique_ptr<T_MatVectorCol<double>>;

int TypeOf(std::vector<double> x) { return StatAccess::CheckDistrType(x.data(), SizeOf(x)); }

// Type
// ---------------------------------------------------------------------------------------------

TEST(StatDistribution, SamplesThatCannotBeLogNormal) {
  EmbeddedHost host;
  EXPECT_EQ(TypeOf({}), DISTR_GAUSS);
  EXPECT_EQ(TypeOf({3}), DISTR_GAUSS);
  EXPECT_EQ(TypeOf({3, 3}), DISTR_GAUSS);
  std::vector<double> x = {1, 2, 40, 300, 9000, 1e6, 1e7, 1e8};
  EXPECT_EQ(TypeOf(x), DISTR_LOGNORMAL);
  for (const double value : {0.0, -1.0, kNaN, -kInfinity}) {
    for (std::size_t place = 0; place < x.size(); ++place) {
      auto spoilt = x;
      spoilt[place] = value;
      EXPECT_EQ(TypeOf(spoilt), DISTR_GAUSS) << value << " at " << place;
    }
  }
}

TEST(StatDistribution, LogNormalNeedsAMarginOfOne) {
  EmbeddedHost host;
  Samples samples(71);
  int counts[2] = {0, 0};
  for (int k = 0; k < 400; ++k) {
    auto x = samples.LogNormals(20, 0, 0.05 + 0.002 * k);
    const double gauss = StatAccess::GetLogLikelihoodOfGauss(x.data(), 20);
    const double logNormal = StatAccess::GetLogLikelihoodOfLogNormal(x.data(), 20);
    const int type = TypeOf(x);
    EXPECT_EQ(type, logNormal >= gauss + 1.0 ? 1 : 0);
    EXPECT_EQ(StatAccess(x).GetDistrType(), type);
    ++counts[type];
  }
  EXPECT_GT(counts[0], 20);
  EXPECT_GT(counts[1], 20);
}

// Likelihoods
// --------------------------------------------------------------------------------------

double TranscribeLikelihood(const std::vector<double>& x, bool logarithmic) {
  const auto n = static_cast<double>(x.size());
  std::vector<double> y = x;
  if (logarithmic) std::transform(x.begin(), x.end(), y.begin(), [](double v) { return log(v); });
  double M = 0, V = 0;
  for (const double v : y) M += v;
  M /= n;
  for (const double v : y) V += std::pow(v - M, 2);
  if (V == 0) V = 1 / n;
  if (logarithmic) {
    return LnGamma((n + 1) / 2) + std::log(2.) / 2 - (n / 2) * std::log(std::numbers::pi) -
           ((n - 1) / 2) * std::log(n) - (n / 2) * std::log(V / n) - n * M - 2 * std::log(10000.);
  }
  V = V / n;
  return LnGamma((n + 1) / 2) + std::log(2.) / 2 - (n / 2) * std::log(std::numbers::pi) -
         ((n - 1) / 2) * std::log(n) - (n / 2) * std::log(V) - std::log(20 * std::sqrt(V)) -
         std::log(10000.);
}

TEST(StatDistribution, LikelihoodsHaveTheBitsOfASecondTranscription) {
  EmbeddedHost host;
  Samples samples(72);
  for (const int n : {1, 2, 3, 99, 100, 101, 1000}) {
    for (auto x : {samples.LogNormals(n, 1, 0.5),
                   std::vector<double>(static_cast<std::size_t>(n), std::exp(1.0))}) {
      EXPECT_SAME_BITS(StatAccess::GetLogLikelihoodOfGauss(x.data(), n),
                       TranscribeLikelihood(x, false));
      EXPECT_SAME_BITS(StatAccess::GetLogLikelihoodOfLogNormal(x.data(), n),
                       TranscribeLikelihood(x, true));
    }
  }
}

TEST(StatDistribution, LikelihoodsAgreeWithFiftyDigits) {
  EmbeddedHost host;
  const auto rows = ReadRows("likelihood.txt");
  ASSERT_EQ(rows.size(), 18U);
  for (const std::string& text : rows) {
    std::istringstream row(text);
    int n = 0;
    row >> n;
    auto x = Take(row, n);
    const auto truth = Take(row, 2);
    ASSERT_TRUE(row);
    EXPECT_NEAR(StatAccess::GetLogLikelihoodOfGauss(x.data(), n), truth[0], 2e-11 * n);
    EXPECT_NEAR(StatAccess::GetLogLikelihoodOfLogNormal(x.data(), n), truth[1], 2e-11 * n);
  }
}

TEST(StatDistribution, NoSpreadInTheLogarithmsCountsAsOneOverN) {
  EmbeddedHost host;
  double x[] = {1, 1, 1, 1};
  const double shared = LnGamma(2.5) + std::log(2.0) / 2 - 2 * std::log(std::numbers::pi) -
                        1.5 * std::log(4.0) + 2 * std::log(16.0);
  EXPECT_NEAR(StatAccess::GetLogLikelihoodOfGauss(x, 4), shared - std::log(5.0) - std::log(10000.0),
              1e-12);
  EXPECT_NEAR(StatAccess::GetLogLikelihoodOfLogNormal(x, 4), shared - 2 * std::log(10000.0), 1e-12);
}

TEST(StatDistribution, LikelihoodsOfValuesThatAreNotPositive) {
  EmbeddedHost host;
  for (const double value : {0.0, -4.0}) {
    double x[] = {2, value, 3};
    EXPECT_EQ(StatAccess::GetLogLikelihoodOfGauss(x, 3), 0.0);
    EXPECT_EQ(StatAccess::GetLogLikelihoodOfLogNormal(x, 3), -1e300);
  }
}

// Probability functions
// ----------------------------------------------------------------------------

Variable ScriptArguments(double* x, double* d, double* w, int n) {
  Variable args(VARTYPE_ARRAY, 4);
  args[0].SetCppPointer(x);
  args[1].SetCppPointer(d);
  args[2].SetCppPointer(w);
  args[3] = n;
  return args;
}

double TranscribeTerm(int prior, bool logarithmic, double xi, double si, double wi, double x) {
  double r = xi - x;
  double s = si;
  if (logarithmic) {
    const double g = 1 + si / (xi * xi);
    const double m = xi / std::sqrt(g);
    s = std::log(g);
    r = std::log(m / x);
    if (prior == 0) {
      const double r2 = r * r < 1e-10 ? 1e-10 : r * r;
      return wi * std::log(std::erf(std::sqrt(r2 / (2 * s))) / std::sqrt(r2));
    }
  }
  if (si == 0) return 0;
  if (prior == 0) {
    r = std::fabs(r);
    if (r / std::sqrt(2 * s) < 1e-5) return 0.120782237635245 - 0.5 * std::log(2 * s) * wi;
    return wi * std::log(std::erf(r / std::sqrt(2 * s)) / r);
  }
  if (prior == 1) {
    const double q = r * r / s;
    const double c = 1 - std::exp(-q / 2);
    return wi * (c == 0 ? std::log(0.5) : std::log(c / q));
  }
  if (prior == 2) return wi * -std::log(1 + r * r / (2 * s));
  return wi * (-(r * r) / (2 * s));
}

TEST(StatProbability, BothFormsHaveTheBitsOfASecondTranscription) {
  EmbeddedHost host;
  Samples samples(73);
  for (int round = 0; round < 200; ++round) {
    const int n = 1 + round % 30;
    auto x = samples.LogNormals(n, 0, 1);
    auto d = samples.Make(n, [&] { return samples.Unit() < 0.1 ? 0.0 : samples.Unit(); });
    auto w = samples.Uniform(n, 0.1, 3);
    Variable args = ScriptArguments(x.data(), d.data(), w.data(), n);
    for (int prior = -2; prior <= 7; ++prior) {
      for (int axis = 0; axis <= 2; ++axis) {
        const double at = round % 3 == 0 ? x[0] : 0.01 + 5 * samples.Unit();
        double sum = 0;
        for (std::size_t i = 0; i < x.size(); ++i) {
          sum += TranscribeTerm(prior < 0 ? 3 : prior, axis != 0, x[i], d[i], w[i], at);
        }
        const double value =
            Stat::GetCProbFuncPtr(prior, axis)(at, x.data(), d.data(), w.data(), n);
        EXPECT_SAME_BITS(value, -sum) << prior << ' ' << axis << ' ' << n;
        EXPECT_SAME_BITS(Stat::GetProbFuncPtr(prior, axis)(at, args), value);
      }
    }
  }
}

TEST(StatProbability, AgreesWithFiftyDigits) {
  EmbeddedHost host;
  const auto rows = ReadRows("probability.txt");
  ASSERT_EQ(rows.size(), 192U);
  for (const std::string& text : rows) {
    std::istringstream row(text);
    int prior = 0, axis = 0;
    row >> prior >> axis;
    const auto head = Take(row, 2);
    const int n = static_cast<int>(head[1]);
    auto x = Take(row, n), d = Take(row, n), w = Take(row, n);
    const double truth = Take(row, 1)[0];
    ASSERT_TRUE(row);
    const double value =
        Stat::GetCProbFuncPtr(prior, axis)(head[0], x.data(), d.data(), w.data(), n);
    EXPECT_NEAR(value, truth, 1e-13 * (n + std::fabs(truth))) << prior << ' ' << axis;
  }
}

TEST(StatProbability, PriorsFromThreeOnAreOneFunction) {
  for (const int prior : {3, 4, 7, -1}) {
    for (const int axis : {0, 1}) {
      EXPECT_EQ(Stat::GetProbFuncPtr(prior, axis), Stat::GetProbFuncPtr(3, axis));
      EXPECT_EQ(Stat::GetCProbFuncPtr(prior, axis), Stat::GetCProbFuncPtr(3, axis));
    }
  }
  EXPECT_NE(Stat::GetProbFuncPtr(2, 0), Stat::GetProbFuncPtr(3, 0));
  EXPECT_NE(Stat::GetProbFuncPtr(3, 1), Stat::GetProbFuncPtr(3, 0));
  EXPECT_EQ(Stat::GetProbFuncPtr(1, 5), Stat::GetProbFuncPtr(1, 1));
}

TEST(StatProbability, SamplesOfZeroDispersion) {
  double x[] = {2, 3}, d[] = {0, 0.5}, w[] = {1, 1};
  for (int prior = 0; prior < 4; ++prior) {
    for (const int axis : {0, 1}) {
      const CProbFunc f = Stat::GetCProbFuncPtr(prior, axis);
      const double both = f(2.5, x, d, w, 2);
      const double second = f(2.5, x + 1, d + 1, w + 1, 1);
      if (prior == 0 && axis == 1) {
        EXPECT_NEAR(both - second, std::log(std::log(2.5 / 2)), 1e-14) << "not skipped here";
      } else {
        EXPECT_EQ(both, second);
      }
    }
  }
}

// Cumulative fit
// -----------------------------------------------------------------------------------

double Distance(const std::vector<double>& x, const std::vector<double>& p, double location,
                double sigma) {
  double sum = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double d = p[i] - (std::erf((x[i] - location) / (sigma * std::sqrt(2.0))) + 1) / 2;
    sum += d * d;
  }
  return sum;
}

TEST(StatCumulativeFit, ConstantSample) {
  EmbeddedHost host;
  for (const auto& [x, d] : {std::pair<double, double>{5, 0.5}, {0, 2}}) {
    StatAccess s({x, x, x, x, x}, {d, d, d, d, d}, 0);
    const Vector fit(s.Stat::FitCumulativeDistribution());
    ASSERT_EQ(fit->Dim(), 4);
    EXPECT_EQ((*fit)[0], s.Mean);
    EXPECT_EQ((*fit)[1], std::sqrt(s.SEM2));
    EXPECT_EQ((*fit)[2], std::sqrt(s.SEM2));
    EXPECT_EQ((*fit)[3], 2.0 * std::sqrt(s.SEM2));
  }
}

TEST(StatCumulativeFit, EmptySampleGivesNull) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{});
  EXPECT_EQ(s.Stat::FitCumulativeDistribution(), nullptr);
}

TEST(StatCumulativeFit, RecoversAnExactNormalDistribution) {
  EmbeddedHost host;
  std::vector<double> x, p;
  for (int i = 0; i < 60; ++i) {
    x.push_back(4 + 0.1 * i);
    p.push_back((std::erf((x.back() - 7.03) / (0.9 * std::sqrt(2.0))) + 1) / 2);
  }
  StatAccess s(x);
  const Vector fit(s.FitCumulativeDistribution(x.data(), p.data(), 60));
  EXPECT_NEAR((*fit)[0], 7.03, 1e-5);
  EXPECT_NEAR((*fit)[1] * std::sqrt(60.0), 0.9, 1e-5);
  EXPECT_NEAR((*fit)[2], 0, 1e-5);
}

TEST(StatCumulativeFit, ErrorsComeFromTheCurvatureAtTheOptimum) {
  EmbeddedHost host;
  Samples samples(74);
  const auto values = samples.Normals(50, 3, 2);
  StatAccess s(values);
  double *X = nullptr, *P = nullptr;
  int n = 0;
  s.GetCumulativeDistr(X, P, n);
  const Vector fit(s.FitCumulativeDistribution(X, P, n));
  const double mu = (*fit)[0], sigma = (*fit)[1] * std::sqrt(50.0);
  // The stretch between 0.2 and 0.8.
  int i0 = 1, i1 = n - 2;
  for (int i = n / 2 - 1; i >= 0; --i) i0 = P[i] > 0.2 ? i : i0;
  for (int i = n / 2 + 1; i < n; ++i) i1 = P[i] < 0.8 ? i : i1;
  const std::vector<double> x(X + i0, X + i1 + 1), p(P + i0, P + i1 + 1);
  const auto S = [&](double m, double l) { return Distance(x, p, m, std::exp(l)); };
  const double l = std::log(sigma), h = 1e-4;
  const double best = S(mu, l);
  for (const double step : {-0.01, 0.01}) {
    EXPECT_GT(S(mu + step, l), best);
    EXPECT_GT(S(mu, l + step), best);
  }
  const double a = (S(mu + h, l) - 2 * best + S(mu - h, l)) / (h * h);
  const double b = (S(mu, l + h) - 2 * best + S(mu, l - h)) / (h * h);
  const double c =
      (S(mu + h, l + h) - S(mu + h, l - h) - S(mu - h, l + h) + S(mu - h, l - h)) / (4 * h * h);
  const double determinant = a * b - c * c;
  EXPECT_NEAR((*fit)[2], std::sqrt(2 * std::fabs(best * b / determinant) / n), 1e-4);
  EXPECT_NEAR((*fit)[3], std::sqrt(2 * std::fabs(best * a / determinant) / n) * std::exp(l / 50),
              1e-4);
}

/// Counts how many points enter the fit, by what the stretch of a thinned distribution allows.
TEST(StatCumulativeFit, MoreThan200PointsAreThinnedTo101) {
  EmbeddedHost host;
  Samples samples(75);
  for (const int n : {199, 200, 500, 3000}) {
    StatAccess s(samples.Normals(n, 3, 2));
    double *X = nullptr, *P = nullptr;
    int m = 0;
    s.GetCumulativeDistr(X, P, m);
    std::vector<double> x(X, X + m), p(P, P + m);
    if (m > 200) {
      int k = 0;
      while (!(P[k] > 0.5)) ++k;
      std::vector<double> xs(101), ps(101);
      int first = 50, last = 50;
      const auto put = [&](int slot, int index) {
        xs[static_cast<std::size_t>(slot)] = X[index];
        ps[static_cast<std::size_t>(slot)] = P[index];
      };
      put(50, k);
      double t = k - 1;
      for (int slot = 49; slot >= 0 && t >= 0; t -= m / 100.0) put(first = slot--, int(t));
      t = k + 1;
      for (int slot = 51; slot <= 100 && t < m; t += m / 100.0) put(last = slot++, int(t));
      x.assign(xs.begin() + first, xs.begin() + last + 1);
      p.assign(ps.begin() + first, ps.begin() + last + 1);
      EXPECT_LE(x.size(), 101U);
      EXPECT_GE(x.size(), 99U);
    }
    const Vector fit(s.Stat::FitCumulativeDistribution());
    const Vector expected(s.FitCumulativeDistribution(x.data(), p.data(), SizeOf(x)));
    for (int i = 0; i < 4; ++i) EXPECT_SAME_BITS((*fit)[i], (*expected)[i]) << n;
  }
}

TEST(StatCumulativeFit, LocatesNormalLogNormalContaminatedAndTiedSamples) {
  EmbeddedHost host;
  Samples samples(76);
  auto normal = samples.Normals(1000, 10, 2);
  auto contaminated = normal;
  for (std::size_t i = 0; i < 50; ++i) contaminated[i * 20] = 1e4;
  auto tied = normal;
  for (double& x : tied) x = std::round(x);
  for (const auto& sample : {normal, contaminated, tied}) {
    StatAccess s(sample);
    const Vector fit(s.Stat::FitCumulativeDistribution());
    EXPECT_NEAR((*fit)[0], 10, 0.6);
    EXPECT_NEAR((*fit)[1] * std::sqrt(1000.0), 2, 0.4);
  }
  StatAccess logNormal(samples.LogNormals(1000, 1, 0.4));
  const Vector fit(logNormal.Stat::FitCumulativeDistribution());
  EXPECT_NEAR((*fit)[0], std::exp(1.0), 0.3);
}

}  // namespace
