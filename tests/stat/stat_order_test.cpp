/// Medians, cumulative distribution, histograms, subsets, dispersions to use, float tables, export.

#include <algorithm>
#include <memory>
#include <numbers>
#include <string>

#include "arrays/median.h"
#include "arrays/search.h"
#include "optim/golden_section.h"
#include "special/error_function.h"
#include "stat/float_tables.h"
#include "tests/stat/stat_support.h"

namespace {

using namespace stat_test;

constexpr double kFactor = 1.2533141373155;
constexpr double kUntouched = -77;

double Median(std::vector<double> x) {
  std::vector<double> work(4 * x.size());
  double* buffers[4];
  for (std::size_t i = 0; i < 4; ++i) buffers[i] = work.data() + i * x.size();
  return QMedian(x.data(), SizeOf(x), buffers);
}

struct Pair {
  double median = kUntouched, spread = kUntouched;
};

Pair Sd(Stat& s) {
  Pair pair;
  s.GetMedian_SD(pair.median, pair.spread);
  return pair;
}
Pair Mad(Stat& s) {
  Pair pair;
  s.GetMedian_MAD(pair.median, pair.spread);
  return pair;
}

// Medians
// ------------------------------------------------------------------------------------------

TEST(StatMedian, SmallSamples) {
  EmbeddedHost host;
  StatAccess none(std::vector<double>{});
  EXPECT_EQ(Sd(none).median, kUntouched);
  EXPECT_EQ(Sd(none).spread, kUntouched);
  EXPECT_EQ(Mad(none).median, kUntouched);
  EXPECT_EQ(Mad(none).spread, kUntouched);
  StatAccess one(std::vector<double>{4});
  EXPECT_EQ(Sd(one).median, 4);
  EXPECT_EQ(Sd(one).spread, 0);
  EXPECT_EQ(Mad(one).median, 4);
  EXPECT_EQ(Mad(one).spread, 0);
  StatAccess two(std::vector<double>{9, 4});
  EXPECT_EQ(Sd(two).median, 6.5);
  EXPECT_SAME_BITS(Sd(two).spread, std::sqrt(two.SEM2) * kFactor);
  EXPECT_EQ(Mad(two).median, 6.5);
  EXPECT_EQ(Mad(two).spread, 5);
  StatAccess three(std::vector<double>{9, -1, 4});
  EXPECT_EQ(Sd(three).median, 4);
  EXPECT_SAME_BITS(Sd(three).spread, std::sqrt(three.SEM2) * kFactor);
  // QMedian need not give the middle element.
  const double median = Median({9, -1, 4});
  EXPECT_EQ(Mad(three).median, median);
  EXPECT_EQ(Mad(three).spread, Median({9 - median, median + 1, 4 - median}));
}

TEST(StatMedian, FourValuesDivideTheMadByTwo) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{1, 2, 10, 4});
  EXPECT_SAME_BITS(Sd(s).spread, Mad(s).spread / 2);
  EXPECT_SAME_BITS(Sd(s).median, Mad(s).median);
}

TEST(StatMedian, FromFourToNineAndFromTen) {
  EmbeddedHost host;
  Samples samples(81);
  for (const int n : {4, 9, 10, 11, 500}) {
    const auto x = samples.Normals(n, 3, 2);
    StatAccess s(x);
    const double median = Median(x);
    std::vector<double> deviations;
    for (const double v : x) deviations.push_back(std::fabs(v - median));
    const double mad = Median(deviations);
    EXPECT_SAME_BITS(Mad(s).median, median);
    EXPECT_SAME_BITS(Mad(s).spread, mad);
    EXPECT_SAME_BITS(Sd(s).median, median);
    EXPECT_SAME_BITS(Sd(s).spread,
                     n < 10 ? mad / std::sqrt(double(n)) : std::sqrt(s.SEM2) * kFactor);
  }
}

TEST(StatMedian, SdCallsTheVirtualMad) {
  class Fixed : public StatAccess {
   public:
    using StatAccess::StatAccess;
    void GetMedian_MAD(double& median, double& mad) override {
      median = 42;
      mad = 8;
    }
  };
  EmbeddedHost host;
  Fixed s(std::vector<double>{1, 2, 3, 4});
  EXPECT_EQ(Sd(s).median, 42);
  EXPECT_EQ(Sd(s).spread, 4);
}

TEST(StatMedian, ErrorOfTheMedianCoversIt) {
  EmbeddedHost host;
  Samples samples(82);
  int covered = 0;
  for (int k = 0; k < 2000; ++k) {
    StatAccess s(samples.Normals(50, 3, 2));
    const Pair pair = Sd(s);
    if (std::fabs(pair.median - 3) < pair.spread) ++covered;
  }
  EXPECT_NEAR(covered / 2000.0, 0.68, 0.05);
}

TEST(StatMedian, OutliersAndTies) {
  EmbeddedHost host;
  Samples samples(83);
  auto x = samples.Normals(999, 10, 1);
  for (std::size_t i = 0; i < 100; ++i) x[i] = 1e9;
  StatAccess contaminated(x);
  EXPECT_NEAR(Mad(contaminated).median, 10, 0.4);
  EXPECT_NEAR(Mad(contaminated).spread, 0.6745, 0.2);
  for (double& v : x) v = std::round(v);
  StatAccess tied(x);
  EXPECT_NEAR(Mad(tied).median, 10, 0.51);
  StatAccess logNormal(samples.LogNormals(1001, 2, 1));
  EXPECT_NEAR(std::log(Sd(logNormal).median), 2, 0.15);
}

// Cumulative distribution
// --------------------------------------------------------------------------

struct Distribution {
  std::vector<double> x, p;
};

Distribution Of(Stat& s) {
  double *x = nullptr, *p = nullptr;
  int n = 0;
  s.GetCumulativeDistr(x, p, n);
  return {std::vector<double>(x, x + n), std::vector<double>(p, p + n)};
}

TEST(StatCumulative, TenEqualValues) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>(10, 7.0));
  const Distribution d = Of(s);
  EXPECT_EQ(d.x, (std::vector<double>{7.0 * 0.001, 7}));
  EXPECT_EQ(d.p, (std::vector<double>{0, 1}));
  StatAccess zeros(std::vector<double>(10, 0.0));
  EXPECT_EQ(Of(zeros).x, (std::vector<double>{-0.001, 0}));
}

TEST(StatCumulative, EmptySampleLeavesTheOutputs) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{});
  double dummy = 0;
  double *x = &dummy, *p = &dummy;
  int n = 5;
  s.GetCumulativeDistr(x, p, n);
  EXPECT_EQ(x, &dummy);
  EXPECT_EQ(p, &dummy);
  EXPECT_EQ(n, 5);
  EXPECT_EQ(s.CumX, nullptr);
  EXPECT_EQ(s.CumLen, 0);
}

TEST(StatCumulative, BucketsOfTwoAndAHalf) {
  EmbeddedHost host;
  std::vector<double> x(2500);
  for (std::size_t i = 0; i < x.size(); ++i) x[(i * 7) % 2500] = static_cast<double>(i);
  StatAccess s(x);
  const Distribution d = Of(s);
  ASSERT_EQ(d.x.size(), 1001U);
  EXPECT_EQ(d.x[1], 0);
  EXPECT_EQ(d.x[2], 3);
  EXPECT_EQ(d.x[3], 5);
  EXPECT_EQ(d.x[0], -3);
  EXPECT_EQ(d.p[1], 1 / 1000.0);
  EXPECT_EQ(d.p[1000], 1);
}

Distribution Transcribe(std::vector<double> x) {
  std::sort(x.begin(), x.end());
  const int n = SizeOf(x), m0 = std::min(n, 1000);
  const double step = static_cast<double>(n) / m0;
  Distribution d;
  int previous = -1;
  for (int i = 0; i < n; ++i) {
    const int j = static_cast<int>(std::floor(i / std::max(1.0, step)));
    if (j != previous) d.x.push_back(x[static_cast<std::size_t>(i)]);
    previous = j;
  }
  for (std::size_t j = 0; j < d.x.size(); ++j) d.p.push_back(static_cast<double>(j) + 1);
  for (std::size_t j = d.x.size() - 1; j >= 1; --j) {
    if (d.x[j] != d.x[j - 1]) continue;
    d.p[j - 1] = d.p[j];
    d.x.erase(d.x.begin() + static_cast<std::ptrdiff_t>(j));
    d.p.erase(d.p.begin() + static_cast<std::ptrdiff_t>(j));
  }
  const double below = d.x.size() == 1 ? d.x[0] * 0.001 : 2 * d.x[0] - d.x[1];
  d.x.insert(d.x.begin(), d.x.size() == 1 && below == 0 ? -0.001 : below);
  d.p.insert(d.p.begin(), 0.0);
  const double total = d.p.back();
  for (double& p : d.p) p /= total;
  return d;
}

TEST(StatCumulative, SameAsASecondTranscription) {
  EmbeddedHost host;
  Samples samples(84);
  for (const int n : {1, 2, 3, 9, 100, 999, 1000, 1001, 1500, 2500, 7777}) {
    auto x = samples.Normals(n, 0, 5);
    auto tied = x;
    for (double& v : tied) v = std::round(v);
    for (const auto& sample : {x, tied}) {
      StatAccess s(sample);
      const Distribution expected = Transcribe(sample), d = Of(s);
      EXPECT_EQ(d.x, expected.x) << n;
      EXPECT_EQ(d.p, expected.p) << n;
      EXPECT_EQ(Of(s).x, d.x) << "from the cache";
    }
  }
}

// Histograms
// ---------------------------------------------------------------------------------------

TEST(StatHistogram, EndsOfTheRangeAreNotCounted) {
  EmbeddedHost host;
  // Width (10 - 0)/(4 + 1) = 2: the bins cover [0, 8).
  StatAccess s(std::vector<double>{0, 1.9, 2, 7.9, 8, 9.5, 10, -0.1, kNaN, kInfinity, 11});
  double h[4] = {9, 9, 9, 9};
  int count = -1;
  s.GetHistogram(h, count, 0, 10, 4);
  EXPECT_EQ(count, 4);
  EXPECT_EQ(std::vector<double>(h, h + 4), (std::vector<double>{2, 1, 0, 1}));
  float hf[4] = {9, 9, 9, 9}, errf[4];
  s.GetHistogram(hf, errf, count, 0, 10, 4);
  double err[4];
  s.GetHistogram(h, err, count, 0, 10, 4);
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(hf[k], static_cast<float>(h[k]));
    EXPECT_SAME_BITS(err[k], (1 - h[k] / 4) * std::max(h[k], 1.0));
    EXPECT_EQ(errf[k], (1 - hf[k] / 4) * std::max(hf[k], 1.0F));
  }
}

TEST(StatHistogram, EmptyRangesCountNothing) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{1, 2, 3});
  double h[2] = {9, 9}, err[2] = {9, 9};
  int count = -1;
  for (const auto& [lo, hi] : {std::pair<double, double>{2, 2}, {3, 1}, {7, 8}, {kNaN, kNaN}}) {
    s.GetHistogram(h, err, count, lo, hi, 2);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(h[0] + h[1] + err[0] + err[1], 0);
  }
  for (const int bins : {0, -1, -5}) {
    s.GetHistogram(h, err, count, 0, 9, bins);
    EXPECT_EQ(count, 0);
  }
}

// Subsets
// ------------------------------------------------------------------------------------------

TEST(StatSubset, TakesEveryStepOfTheSortedValues) {
  EmbeddedHost host;
  Samples samples(85);
  for (const int n : {11, 20, 1500, 1001}) {
    for (const int k : {1, 3, 10}) {
      auto x = samples.Normals(n, 0, 1);
      auto d = samples.Uniform(n, 0.5, 2);
      std::vector<std::pair<double, double>> sorted;
      for (std::size_t i = 0; i < x.size(); ++i) sorted.emplace_back(x[i], d[i]);
      std::sort(sorted.begin(), sorted.end());
      std::vector<double> xs = {sorted[0].first}, ds = {sorted[0].second};
      const double step = static_cast<double>(n) / k;
      for (double t = step; std::floor(t + 0.5) < n; t += step) {
        xs.push_back(sorted[static_cast<std::size_t>(std::floor(t + 0.5))].first);
        ds.push_back(sorted[static_cast<std::size_t>(std::floor(t + 0.5))].second);
      }
      StatAccess plain(x), measured(x, d, 2);
      const std::unique_ptr<Stat> a(plain.SampleSubset(k)), b(measured.SampleSubset(k));
      const StatAccess expectedA(xs), expectedB(xs, ds, 0);
      EXPECT_EQ(a->Len(), SizeOf(xs));
      EXPECT_SAME_BITS(a->GetMean(), expectedA.GetMean());
      EXPECT_SAME_BITS(a->GetDisp(), expectedA.GetDisp());
      EXPECT_SAME_BITS(b->GetMean(), expectedB.GetMean());
      EXPECT_SAME_BITS(b->GetDisp0(), expectedB.GetDisp0());
    }
  }
}

TEST(StatSubset, CopiesShortSamplesAndRefusesNone) {
  EmbeddedHost host;
  StatAccess s({1, 2, 5}, {1, 2, 3}, 2);
  const std::unique_ptr<Stat> copy(s.SampleSubset(3));
  EXPECT_EQ(copy->Len(), 3);
  EXPECT_SAME_BITS(copy->GetSEM2(), s.GetSEM2());
  EXPECT_EQ(s.SampleSubset(0), nullptr);
  EXPECT_EQ(s.SampleSubset(-1), nullptr);
}

// Dispersions to use
// -------------------------------------------------------------------------------

TEST(StatEstimationDisp, GivenDispersionsGetAFloor) {
  EmbeddedHost host;
  const std::vector<double> d = {1, 2, 1e-9, 3, 2, 1, 4, 2, 1, 2, 1, 3};
  Samples samples(86);
  StatAccess s(samples.Normals(12, 0, 3), d, 0);
  std::vector<double> logarithms;
  for (const double v : d) logarithms.push_back(std::log(v));
  StatAccess ofLogarithms(logarithms);
  const Pair pair = Sd(ofLogarithms);
  const double floor = std::exp(pair.median - pair.spread);
  const double* const used = s.GetEstimationDisp();
  EXPECT_EQ(used, s.estDataDisp);
  EXPECT_EQ(s.GetEstimationDisp(), used);
  for (std::size_t i = 0; i < d.size(); ++i) EXPECT_SAME_BITS(used[i], std::max(d[i], floor));
  EXPECT_GT(used[2], 1e-9);
  StatAccess two({1, 2}, {3, 4}, 0);
  EXPECT_EQ(two.GetEstimationDisp(), two.DataDisp);
  EXPECT_EQ(two.estDataDisp, nullptr);
}

/// The trimming of values without dispersions, transcribed.
struct Entries {
  std::vector<double> t, v;
  std::size_t first;
};
double Misfit(double c, void* extra) {
  const Entries& e = **static_cast<Entries**>(static_cast<Variable*>(extra)->GetCppPointer());
  const std::size_t m = e.t.size() - e.first;
  double q = 0;
  for (std::size_t i = 3 * m / 4; i < m; ++i) {
    const double t = e.t[e.first + i];
    const double v = 1 - 2 * t / std::sqrt(std::numbers::pi) * std::exp(-t * t) / std::erf(t);
    q += std::pow(e.v[e.first + i] - c * c * v, 2);
  }
  return q;
}
double Fit(Entries& entries, double lo, double hi) {
  Entries* pointer = &entries;
  Variable function, extra;
  function.SetCppPointer(reinterpret_cast<void*>(&Misfit));
  extra.SetCppPointer(&pointer);
  double bracket[2] = {lo, hi};
  GoldSection_Double search(function, bracket, 1e-7);
  search.SetExtraParam(extra);
  return search.Solve();
}
double TranscribeDispersion(std::vector<double> x) {
  const int n = SizeOf(x);
  std::sort(x.begin(), x.end());
  double S1 = 0, S2 = 0;
  for (const double v : x) S1 += v;
  for (const double v : x) S2 += v * v;
  double mu = S1 / n;
  const double s = std::sqrt(S2 / n - mu * mu);
  std::vector<double> ts, es;
  for (int j = 0; j < 100; ++j) ts.push_back(j * 5.0 / 99);
  for (const double t : ts) es.push_back(Erf(t));
  const auto inverse = [&](double p) {
    if (p >= es[99]) return ts[99];
    const auto k = static_cast<std::size_t>(BFindInsertIndex(es.data(), p, 100));
    return ts[k - 1] + (p - es[k - 1]) * (ts[k] - ts[k - 1]) / (es[k] - es[k - 1]);
  };
  Entries e = {{}, {}, 0};
  std::size_t low = 0, high = x.size() - 1;
  int r = n;
  for (int i = 0; i < 3 * n / 4; ++i) {
    e.t.push_back(inverse(static_cast<double>(r) / n));
    e.v.push_back(S2 / r - mu * mu);
    const double dropped = x[high] - mu <= mu - x[low] ? x[low++] : x[high--];
    S1 -= dropped;
    S2 -= dropped * dropped;
    --r;
    mu = S1 / r;
  }
  const double lo = e.v.back() / 4, hi = 2 * s;
  const double c = Fit(e, lo, hi);
  int inside = 0;
  for (const double v : x) inside += std::fabs(v - mu) < 3 * c;
  for (std::size_t i = 0; i < e.t.size(); ++i) {
    const double p = static_cast<double>(n - static_cast<int>(i)) / inside;
    if (p < 1) {
      e.t[i] = inverse(p);
    } else {
      e.first = i;
    }
  }
  const double again = Fit(e, lo, hi);
  return again * again;
}

TEST(StatEstimationDisp, ValuesAloneSameBitsAsASecondTranscription) {
  EmbeddedHost host;
  Samples samples(87);
  for (const int n : {2, 3, 4, 5, 10, 100, 1000}) {
    auto x = samples.Normals(n, 3, 2);
    if (n >= 100) x[7] = 1e3;
    const std::unique_ptr<double[]> d(Stat::EstimateDisp(x.data(), n, 0));
    const double expected = TranscribeDispersion(x);
    for (int i = 0; i < n; ++i) EXPECT_SAME_BITS(d[static_cast<std::size_t>(i)], expected) << n;
    StatAccess s(x);
    EXPECT_SAME_BITS(s.GetEstimationDisp()[0], expected);
    EXPECT_EQ(s.GetEstimationDisp(), s.estDataDisp);
  }
}

TEST(StatEstimationDisp, RobustAgainstOutliers) {
  EmbeddedHost host;
  Samples samples(88);
  auto x = samples.Normals(2000, 3, 2);
  for (std::size_t i = 0; i < 100; ++i) x[i] = samples.Normal(0, 300);
  const std::unique_ptr<double[]> d(Stat::EstimateDisp(x.data(), 2000, 0));
  EXPECT_NEAR(std::sqrt(d[0]), 2, 0.3);
}

TEST(StatEstimationDisp, NoValueAndOneValue) {
  EmbeddedHost host;
  double x = 3;
  EXPECT_EQ(Stat::EstimateDisp(&x, 0, 0), nullptr);
  const std::unique_ptr<double[]> d(Stat::EstimateDisp(&x, 1, 0));
  EXPECT_EQ(d[0], 0);
}

// Float tables
// -------------------------------------------------------------------------------------

TEST(FloatTables, CumulativeDistributionReusesItsArrays) {
  EmbeddedHost host;
  float x[] = {3, 1, 2, 2};
  float *xs = nullptr, *p = nullptr;
  int m = 0;
  BuildCumulativeDistr(x, 4, xs, p, m);
  EXPECT_EQ(m, 4);
  EXPECT_EQ(std::vector<float>(xs, xs + 4), (std::vector<float>{1, 2, 2, 3}));
  EXPECT_EQ(std::vector<float>(p, p + 4), (std::vector<float>{0.25F, 0.5F, 0.75F, 1}));
  float* const before = xs;
  x[0] = 9;
  BuildCumulativeDistr(x, 4, xs, p, m);
  EXPECT_EQ(xs, before);
  EXPECT_EQ(xs[3], 9);
  BuildCumulativeDistr(x, 2, xs, p, m);
  EXPECT_EQ(m, 2);
  EXPECT_EQ(p[0], 0.5F);
  BuildCumulativeDistr(x, 0, xs, p, m);
  EXPECT_EQ(m, 0);
  HFREE(xs);
  HFREE(p);
}

TEST(FloatTables, PdfSumsToOne) {
  EmbeddedHost host;
  float x[] = {0, 1, 2.5F, 2.7F, 4, 4};
  float *xs = nullptr, *p = nullptr;
  BuildPdf(0.5F, x, 6, xs, p, 5);
  const float total = 5 * 0.5F + 6;
  const float counts[] = {1, 1, 2, 0, 2};
  float sum = 0;
  for (int k = 0; k < 5; ++k) {
    EXPECT_EQ(xs[k], static_cast<float>(k));
    EXPECT_EQ(p[k], (0.5F + counts[k]) / total);
    sum += p[k];
  }
  EXPECT_NEAR(sum, 1, 1e-6);
  float* const before = p;
  BuildPdf(0, x, 6, xs, p, 1);
  EXPECT_EQ(p, before) << "reused as it is";
  EXPECT_EQ(p[0], 1);
  float same[] = {2, 2, 2};
  BuildPdf(0, same, 3, xs, p, 4);
  EXPECT_EQ(p[0], 1);
  float wild[] = {1, std::numeric_limits<float>::infinity(), std::nanf("")};
  BuildPdf(0, wild, 3, xs, p, 5);
  HFREE(xs);
  HFREE(p);
}

// Export
// -------------------------------------------------------------------------------------------

TEST(StatExport, MembersInOrderAndOfTheirTypes) {
  EmbeddedHost host;
  StatAccess s({1, 2, 4, 9}, {0.1, 0.2, 0.1, 0.3}, 7);
  Variable object;
  ASSERT_TRUE(host.GetProcessor().MakeInstance(object, "TFunc", nullptr, 0));
  object("estDataDisp") = 5;
  s.UpdateTarnObject(object);
  EXPECT_EQ(object("estDataDisp").TypeWord(), static_cast<std::uint32_t>(VARTYPE_EMPTY));
  s.GetEstimationDisp();
  s.UpdateTarnObject(object);
  const std::pair<const char*, double> reals[] = {{"Mean", s.Mean},
                                                  {"Disp", s.Disp},
                                                  {"SEM2", s.SEM2},
                                                  {"Disp0", s.Disp0},
                                                  {"DispSimple", s.DispSimple},
                                                  {"E2", s.E2},
                                                  {"E3", s.E3},
                                                  {"E4", s.E4},
                                                  {"Min", s.Min},
                                                  {"Max", s.Max},
                                                  {"Sum", s.Sum},
                                                  {"LogNormDisp", s.LogNormDisp},
                                                  {"LogNormMean", s.LogNormMean}};
  const Variable someReal = [] {
    Variable v;
    v = 1.5;
    return v;
  }();
  for (const auto& [key, value] : reals) {
    EXPECT_EQ(object(key).TypeWord(), someReal.TypeWord()) << key;
    EXPECT_SAME_BITS(object(key).GetDoubleNumb(), value) << key;
  }
  for (const auto& [key, value] :
       {std::pair<const char*, int>{"DistrType", s.DistrType}, {"MeanType", 7}}) {
    EXPECT_EQ(object(key).TypeWord(), Variable(std::int32_t{1}).TypeWord()) << key;
    EXPECT_EQ(object(key).GetInt32Numb(), value) << key;
  }
  EXPECT_EQ(object("estDataDisp").TypeWord(), 1024U);
  ASSERT_EQ(object("estDataDisp").GetDim(), 4);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(object("estDataDisp")[i].GetDoubleNumb(), s.estDataDisp[i]);
  }
}

TEST(StatExport, MembersAreWrittenInOrder) {
  EmbeddedHost host;
  StatAccess s(std::vector<double>{1, 2, 4});
  Variable object;
  ASSERT_TRUE(host.GetProcessor().MakeInstance(object, "Record", nullptr, 0));
  s.UpdateTarnObject(object);
  std::vector<std::string> names;
  for (int i = 0; const char* name = object.GetMemberName(i); ++i) names.emplace_back(name);
  EXPECT_EQ(names,
            (std::vector<std::string>{"Mean", "Disp", "SEM2", "Disp0", "DispSimple", "E2", "E3",
                                      "E4", "DistrType", "Min", "Max", "Sum", "estDataDisp",
                                      "LogNormDisp", "LogNormMean", "MeanType"}));
}

}  // namespace
