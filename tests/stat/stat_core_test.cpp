/// Construction, estimators, scaling and assignment of samples.

#include <algorithm>
#include <cstring>

#include "tests/stat/stat_support.h"

namespace {

using namespace stat_test;

// Layout
// -------------------------------------------------------------------------------------------

/// Slot in the table of virtual functions, as the Itanium C++ ABI encodes it.
template <class Method>
std::ptrdiff_t SlotOf(Method method) {
  std::ptrdiff_t words[2];
  static_assert(sizeof(words) == sizeof(method));
  std::memcpy(words, &method, sizeof(words));
  return (words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(StatLayout, VirtualSlots) {
  // PlaceHolder takes slot 0, the destructor 1 and 2.
  EXPECT_EQ(SlotOf(&Stat::isTooLong), 3);
  EXPECT_EQ(SlotOf(&Stat::GetMedian_SD), 4);
  EXPECT_EQ(SlotOf(&Stat::GetMedian_MAD), 5);
  EXPECT_EQ(SlotOf(&Stat::GetCumulativeDistr), 6);
  EXPECT_EQ(SlotOf(&Stat::GetWeights), 7);
  EXPECT_EQ(SlotOf(&Stat::FreeWeights), 8);
  EXPECT_EQ(SlotOf(&Stat::UpdateTarnObject), 9);
}

TEST(StatLayout, FieldsInOrder) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{1, 2});
  const void* const fields[] = {&s.Data,  &s.DataDisp,  &s.estDataDisp, &s.AuxArray,    &s.len,
                                &s.Mean,  &s.Disp,      &s.DispSimple,  &s.SEM2,        &s.Sum,
                                &s.Disp0, &s.DistrType, &s.LogNormMean, &s.LogNormDisp, &s.MeanType,
                                &s.E2,    &s.E3,        &s.E4,          &s.Min,         &s.Max,
                                &s.CumX,  &s.CumP,      &s.CumLen,      &s.Accuracy};
  const auto* const start = reinterpret_cast<const char*>(static_cast<Stat*>(&s));
  std::ptrdiff_t last = 0;
  for (const void* field : fields) {
    const std::ptrdiff_t offset = static_cast<const char*>(field) - start;
    EXPECT_GT(offset, last);
    last = offset;
  }
  EXPECT_EQ(static_cast<const char*>(fields[0]) - start, 8);
  EXPECT_EQ(static_cast<std::size_t>(last) + sizeof(double), sizeof(Stat));
  static_assert(sizeof(s.len) == 4 && sizeof(s.MeanType) == 4 && sizeof(s.DistrType) == 4 &&
                sizeof(s.CumLen) == 4);
}

// Edges
// --------------------------------------------------------------------------------------------

TEST(StatCore, EmptySample) {
  EmbeddedHost host;
  double none = 0;
  for (const int n : {0, -3}) {
    StatAccess s(&none, n);
    EXPECT_EQ(s.Len(), 0);
    for (const double value : {s.GetMean(), s.GetE2(), s.GetE3(), s.GetE4(), s.GetSEM2()}) {
      EXPECT_TRUE(std::isnan(value));
    }
    EXPECT_EQ(s.GetDisp(), 0);
    EXPECT_EQ(s.DispSimple, 0);
    EXPECT_EQ(s.GetMin(), 1e300);
    EXPECT_EQ(s.GetMax(), -1e300);
    EXPECT_EQ(s.GetDistrType(), 0);
    EXPECT_EQ(s.LogNormMean, 0);
    EXPECT_EQ(s.LogNormDisp, 0);
  }
}

TEST(StatCore, SingleValue) {
  EmbeddedHost host;
  const StatAccess s(std::vector<double>{3.5});
  EXPECT_EQ(s.GetMean(), 3.5);
  EXPECT_EQ(s.GetDisp(), 0);
  EXPECT_EQ(s.GetSEM2(), 0);
  EXPECT_EQ(s.GetMin(), 3.5);
  EXPECT_EQ(s.GetMax(), 3.5);
}

TEST(StatCore, EqualValuesWithDispersions) {
  EmbeddedHost host;
  for (int meanType = 0; meanType < 4; ++meanType) {
    const StatAccess s({2, 2, 2}, {0.5, 0.25, 1}, meanType);
    EXPECT_EQ(s.GetMean(), 2);
    EXPECT_EQ(s.GetDisp(), 1);
    EXPECT_EQ(s.GetSEM2(), 1 / (2.0 + 4.0 + 1.0));
    EXPECT_EQ(s.GetDisp0(), 0) << "no spread, no intrinsic dispersion";
  }
}

TEST(StatCore, DispersionsThatAreNotPositiveBecomeThePopulationVariance) {
  EmbeddedHost host;
  const StatAccess s({1, 2, 3, 6}, {0, 0.5, -1, kNaN}, 3);
  EXPECT_EQ(s.DataDisp[0], 3.5);
  EXPECT_EQ(s.DataDisp[1], 0.5);
  EXPECT_EQ(s.DataDisp[2], 3.5);
  EXPECT_EQ(s.DataDisp[3], 3.5);
  const StatAccess constant({4, 4}, {0, 1}, 3);
  EXPECT_EQ(constant.DataDisp[0], 0);
}

TEST(StatCore, UnknownMeanTypeIsJeffreysButKept) {
  EmbeddedHost host;
  const std::vector<double> x = {1, 4, 2, 8, 5};
  const std::vector<double> d = {0.1, 0.2, 0.1, 0.3, 0.2};
  const StatAccess jeffreys(x, d, 1);
  for (const int meanType : {7, -1, 5}) {
    const StatAccess s(x, d, meanType);
    EXPECT_EQ(s.MeanType, meanType);
    EXPECT_SAME_BITS(s.Mean, jeffreys.Mean);
    EXPECT_SAME_BITS(s.Disp0, jeffreys.Disp0);
    EXPECT_SAME_BITS(s.SEM2, jeffreys.SEM2);
  }
  EXPECT_GT(jeffreys.Disp0, 0);
}

TEST(StatCore, MeanTypesOfTheConstructors) {
  EmbeddedHost host;
  double x[] = {1, 2, 4};
  float xf[] = {1.1F, 2.2F, 4.4F};
  double d[] = {1, 1, 1};
  EXPECT_EQ(StatAccess(x, 3).MeanType, 4);
  EXPECT_EQ(StatAccess(xf, 3).MeanType, 4);
  EXPECT_EQ(StatAccess(xf, 3).Data[0], static_cast<double>(1.1F));
  EXPECT_EQ(StatAccess(x, d, 3).MeanType, 0);
  EXPECT_EQ(StatAccess(x, d, 3, 2).MeanType, 2);
  EXPECT_EQ(StatAccess(x, static_cast<double*>(nullptr), 3, 2).MeanType, 4) << "no dispersions";
  EXPECT_EQ(StatAccess(x, 3).GetAccuracy(), 1e-7);
}

TEST(StatCore, MultiplicationByMinusOneLeavesMinAboveMax) {
  EmbeddedHost host;
  StatAccess s({1, 2, 4}, {0.5, 0.5, 0.25}, 0);
  double* x = nullptr;
  double* p = nullptr;
  int n = 0;
  s.GetCumulativeDistr(x, p, n);
  s.GetEstimationDisp();
  const double before[] = {s.Mean, s.Disp, s.SEM2, s.Disp0, s.E2, s.E3, s.E4};
  const double lnMean = s.LogNormMean;
  s *= -1;
  EXPECT_EQ(s.GetMin(), -1);
  EXPECT_EQ(s.GetMax(), -4);
  EXPECT_EQ(s.Mean, -before[0]);
  EXPECT_EQ(s.Disp, before[1]);
  EXPECT_EQ(s.E3, -before[5]);
  EXPECT_EQ(s.CumX[1], -1);
  EXPECT_EQ(s.LogNormMean, lnMean);
}

TEST(StatCore, MultiplicationScalesWhatItNames) {
  EmbeddedHost host;
  StatAccess s({1, 2, 4, 7}, {0.5, 0.5, 0.25, 0.5}, 2);
  double* x = nullptr;
  double* p = nullptr;
  int n = 0;
  s.GetCumulativeDistr(x, p, n);
  s.GetEstimationDisp();
  StatAccess before({0}, {1}, 0);
  before = s;
  s *= 4;
  EXPECT_EQ(s.Mean, before.Mean * 4);
  EXPECT_EQ(s.Disp, before.Disp * 16);
  EXPECT_EQ(s.Disp0, before.Disp0 * 16);
  EXPECT_EQ(s.SEM2, before.SEM2 * 16);
  EXPECT_EQ(s.E2, before.E2 * 16);
  EXPECT_EQ(s.E3, before.E3 * 64);
  EXPECT_EQ(s.E4, before.E4 * 256);
  EXPECT_EQ(s.Min, 4);
  EXPECT_EQ(s.Max, 28);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(s.Data[i], before.Data[i] * 4);
    EXPECT_EQ(s.DataDisp[i], before.DataDisp[i] * 16);
    EXPECT_EQ(s.estDataDisp[i], before.estDataDisp[i] * 16);
  }
  ASSERT_EQ(s.CumLen, 5);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(s.CumX[i], before.CumX[i] * 4);
    EXPECT_EQ(s.CumP[i], before.CumP[i]);
  }
  EXPECT_EQ(s.DispSimple, before.DispSimple);
  EXPECT_EQ(s.Sum, before.Sum);
  EXPECT_EQ(s.LogNormDisp, before.LogNormDisp);
  EXPECT_EQ(s.LogNormMean, before.LogNormMean);
  EXPECT_EQ(s.DistrType, before.DistrType);
}

TEST(StatCore, LogNormalParametersNeedAPositiveMean) {
  EmbeddedHost host;
  StatAccess positive(std::vector<double>{1, 2, 4, 8});
  EXPECT_SAME_BITS(positive.GetLogNormalDisp(),
                   std::log(positive.GetDisp() / (positive.GetMean() * positive.GetMean()) + 1.0));
  EXPECT_SAME_BITS(positive.GetLogNormalMu0(),
                   positive.GetMean() * std::exp(-0.5 * positive.GetLogNormalDisp()));
  EXPECT_FALSE(host.HasError());
  for (const double value : {0.0, -2.0, kNaN}) {
    StatAccess s(std::vector<double>{value, value});
    EXPECT_EQ(s.GetLogNormalDisp(), 1.0);
    EXPECT_EQ(host.TakeError().number, 10);
  }
}

TEST(StatCore, WeightsAreOnes) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{1, 2, 3});
  double* const weights = s.GetWeights();
  for (int i = 0; i < 3; ++i) EXPECT_EQ(weights[i], 1.0);
  s.FreeWeights(weights);
}

TEST(StatCore, LongFrom1001ValuesOn) {
  EmbeddedHost host;
  EXPECT_FALSE(StatAccess(std::vector<double>(1000)).isTooLong());
  EXPECT_TRUE(StatAccess(std::vector<double>(1001)).isTooLong());
}

TEST(StatCore, AssignmentCopiesArrays) {
  EmbeddedHost host;
  StatAccess source({1, 2, 4, 7}, {0.5, 0.5, 0.25, 0.5}, 2);
  source.SetAccuracy(1e-3);
  double* x = nullptr;
  double* p = nullptr;
  int n = 0;
  source.GetCumulativeDistr(x, p, n);
  source.GetEstimationDisp();
  StatAccess target({9}, {1}, 1);
  target = source;
  StatAccess& self = target;
  target = self;
  EXPECT_EQ(target.Len(), 4);
  EXPECT_EQ(target.MeanType, 2);
  EXPECT_EQ(target.Accuracy, 1e-3);
  EXPECT_SAME_BITS(target.Disp0, source.Disp0);
  EXPECT_NE(target.Data, source.Data);
  EXPECT_NE(target.CumX, source.CumX);
  source *= 10;
  EXPECT_EQ(target.Data[3], 7);
  EXPECT_EQ(target.DataDisp[2], 0.25);
  EXPECT_EQ(target.CumX[4], 7);
  EXPECT_EQ(target.CumLen, 5);
}

TEST(StatCore, CopyIsComputedAnew) {
  EmbeddedHost host;
  StatAccess source({1, 2, 4, 7}, {0.5, 0.5, 0.25, 0.5}, 2);
  source.SetAccuracy(1e-3);
  source.GetEstimationDisp();
  StatAccess copy(source);
  EXPECT_EQ(copy.Accuracy, 1e-7);
  EXPECT_EQ(copy.estDataDisp, nullptr);
  EXPECT_EQ(copy.CumX, nullptr);
  EXPECT_EQ(copy.MeanType, 2);
  EXPECT_SAME_BITS(copy.SEM2, source.SEM2);
  EXPECT_NE(copy.Data, source.Data);
}

// A second transcription of the estimators
// ---------------------------------------------------------

struct Expected {
  double mean, disp, dispSimple, sem2, sum, disp0, e2, e3, e4;
};

double RootValue(int meanType, double t, const std::vector<double>& x,
                 const std::vector<double>& s) {
  const std::size_t n = x.size();
  const double D = std::exp(t);
  std::vector<double> w(n);
  double S1 = 0, S2 = 0, mu = 0;
  for (std::size_t i = 0; i < n; ++i) w[i] = 1 / (D + s[i]);
  for (std::size_t i = 0; i < n; ++i) S1 += w[i];
  for (std::size_t i = 0; i < n; ++i) S2 += w[i] * w[i];
  for (std::size_t i = 0; i < n; ++i) mu += w[i] * x[i];
  if (S1 > 0) {
    mu = mu / S1;
    S2 = S2 / S1;
  }
  double Q = 0;
  for (std::size_t i = 0; i < n; ++i) Q += std::pow((x[i] - mu) * w[i], 2);
  const double C = S1 - S2 - Q;
  if (meanType == 2) return C;
  if (meanType != 0) return C + 1 / D;
  double inverse = 0;
  for (std::size_t i = 0; i < n; ++i) inverse += 1 / s[i];
  const double H = 1 / inverse;
  return C + 1 / (H + D);
}

double FindRoot(int meanType, double dispSimple, const std::vector<double>& x,
                const std::vector<double>& s) {
  if (dispSimple == 0) return 0;
  const auto f = [&](double t) { return RootValue(meanType, t, x, s); };
  const double lo = std::log(dispSimple / 100), hi = std::log(dispSimple * 100), range = hi - lo;
  double m = lo, fa = f(lo);
  if (fa * f(hi) < 0) {
    for (double a = lo, b = hi;;) {
      m = (a + b) / 2;
      const double fm = f(m);
      if (fm * fa < 0) {
        b = m;
      } else {
        a = m;
        fa = fm;
      }
      if (fm == 0 || !(std::fabs(a - b) / range > 1e-7)) break;
    }
  }
  return (m - lo) / range > 1e-7 ? std::exp(m) : 0;
}

Expected Transcribe(const std::vector<double>& x, const std::vector<double>& s, int meanType) {
  Expected e = {};
  const auto n = static_cast<double>(x.size());
  for (const double v : x) e.sum += v;
  for (const double v : x) e.e2 += v * v;
  for (const double v : x) e.e3 += v * v * v;
  for (const double v : x) e.e4 += (v * v) * (v * v);
  e.mean = e.sum / n;
  e.e2 /= n;
  e.e3 /= n;
  e.e4 /= n;
  double Q = 0;
  for (const double v : x) Q += std::pow(v - e.mean, 2);
  e.dispSimple = n >= 2 ? Q / (n - 1) : Q;
  e.disp = e.dispSimple;
  e.sem2 = e.disp / n;
  if (meanType == 4) return e;
  if (meanType != 3) e.disp0 = FindRoot(meanType, e.dispSimple, x, s);
  if (meanType < 2 && n > 1) e.disp0 = e.disp0 * n / (n - 1);
  e.sem2 = e.disp = 0;
  double W = 0;
  if (*std::min_element(x.begin(), x.end()) != *std::max_element(x.begin(), x.end())) {
    e.mean = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
      const double t = e.disp0 + s[i];
      if (!(t > 0)) continue;
      W += 1 / t;
      e.disp += t;
      e.mean += x[i] / t;
    }
    e.disp /= n;
    if (W > 0) e.mean /= W;
  } else {
    e.mean = x[0];
    e.disp = *std::max_element(s.begin(), s.end());
    for (const double si : s) W += e.disp0 + si > 0 ? 1 / (e.disp0 + si) : 0;
  }
  if (W > 0) e.sem2 = 1 / W;
  return e;
}

TEST(StatEstimators, SameBitsAsASecondTranscription) {
  EmbeddedHost host;
  Samples samples(61);
  int positive = 0;
  for (const int n : {1, 2, 3, 4, 10, 100, 1001}) {
    for (const double scale : {1.0, 1e-9, 3e7}) {
      for (const double error : {0.1, 1.0, 10.0}) {
        const auto x = samples.Normals(n, 2 * scale, scale);
        const auto s =
            samples.Make(n, [&] { return std::pow(error * scale * (0.1 + samples.Unit()), 2); });
        for (int meanType = 0; meanType <= 4; ++meanType) {
          const StatAccess stat(x, s, meanType);
          const Expected e = Transcribe(x, s, meanType);
          EXPECT_SAME_BITS(stat.Mean, e.mean) << n << ' ' << scale << ' ' << meanType;
          EXPECT_SAME_BITS(stat.Disp, e.disp);
          EXPECT_SAME_BITS(stat.DispSimple, e.dispSimple);
          EXPECT_SAME_BITS(stat.SEM2, e.sem2);
          EXPECT_SAME_BITS(stat.Sum, e.sum);
          EXPECT_SAME_BITS(stat.Disp0, e.disp0);
          EXPECT_SAME_BITS(stat.E2, e.e2);
          EXPECT_SAME_BITS(stat.E3, e.e3);
          EXPECT_SAME_BITS(stat.E4, e.e4);
          if (stat.Disp0 > 0) ++positive;
        }
      }
    }
  }
  EXPECT_GT(positive, 60);
}

TEST(StatEstimators, IntrinsicDispersionIsARootOfTheLikelihoodSlope) {
  EmbeddedHost host;
  Samples samples(62);
  const auto x = samples.Normals(200, 5, 2);
  const auto s = samples.Make(200, [&] { return 0.5 + samples.Unit(); });
  const double d = StatAccess(x, s, 2).Disp0;
  ASSERT_GT(d, 0);
  const double step = 9.3e-7;
  EXPECT_LT(RootValue(2, std::log(d) - step, x, s) * RootValue(2, std::log(d) + step, x, s), 0);
}

/// Samples of known intrinsic dispersion, measured with known errors: how often the true mean lies
/// within one stated error.
double CoverageOfOneError(int meanType, double intrinsic, double& meanDisp0) {
  constexpr int kSamples = 3000;
  constexpr int kValues = 40;
  Samples samples(63);
  int covered = 0;
  meanDisp0 = 0;
  for (int k = 0; k < kSamples; ++k) {
    const auto s = samples.Make(kValues, [&] { return 0.2 + samples.Unit(); });
    std::vector<double> x;
    for (const double si : s) x.push_back(samples.Normal(7, std::sqrt(intrinsic + si)));
    const StatAccess stat(x, s, meanType);
    if (std::fabs(stat.Mean - 7) < std::sqrt(stat.SEM2)) ++covered;
    meanDisp0 += stat.Disp0 / kSamples;
  }
  return static_cast<double>(covered) / kSamples;
}

TEST(StatEstimators, StatedErrorsCoverTheTrueMean) {
  EmbeddedHost host;
  for (const int meanType : {0, 1, 2}) {
    double disp0 = 0;
    // 0.683 for a normal deviate; 0.675 for Student's t of 39 degrees; four sigma are 0.034.
    EXPECT_NEAR(CoverageOfOneError(meanType, 2.0, disp0), 0.68, 0.035) << meanType;
    EXPECT_NEAR(disp0, 2.0, 0.3) << meanType;
  }
  double disp0 = 0;
  EXPECT_NEAR(CoverageOfOneError(3, 0.0, disp0), 0.683, 0.034) << "errors explain everything";
  EXPECT_LT(CoverageOfOneError(3, 2.0, disp0), 0.55) << "and here they do not";
  EXPECT_NEAR(CoverageOfOneError(4, 2.0, disp0), 0.68, 0.035);
}

}  // namespace
