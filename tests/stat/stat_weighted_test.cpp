/// Samples with weights.

#include <algorithm>
#include <cstring>
#include <memory>
#include <numbers>

#include "tests/stat/stat_support.h"

namespace {

using namespace stat_test;

constexpr double kUntouched = -77;

Stat_Weighted Make(std::vector<double> x, std::vector<double> w) {
  return Stat_Weighted(x.data(), w.data(), SizeOf(x));
}
Stat_Weighted Make(std::vector<double> x, std::vector<double> d, std::vector<double> w) {
  return Stat_Weighted(x.data(), d.data(), w.data(), SizeOf(x));
}

TEST(StatWeighted, FieldsFollowTheBaseInOrder) {
  EmbeddedHost host;
  Stat_Weighted s = Make({1, 2, 4}, {0.5, 1, 3});
  const char* const own = reinterpret_cast<const char*>(&s) + sizeof(Stat);
  double* weights = nullptr;
  std::int32_t type = -1;
  double rest[4];
  std::memcpy(&weights, own, 8);
  std::memcpy(&type, own + 8, 4);
  std::memcpy(rest, own + 16, sizeof(rest));
  EXPECT_EQ(weights, s.GetWeights());
  EXPECT_EQ(type, s.GetWeightsDistrType());
  EXPECT_EQ(rest[0], s.GetDispOfWeights());
  EXPECT_EQ(rest[1], s.GetWeightsCorr());
  EXPECT_EQ(rest[2], s.GetWeightedMean());
  EXPECT_EQ(rest[3], s.GetWeightedSEM2());
  EXPECT_EQ(sizeof(Stat_Weighted), sizeof(Stat) + 48);
}

TEST(StatWeighted, WeightsThatAreNotPositive) {
  EmbeddedHost host;
  Stat_Weighted s = Make({1, 2, 3}, {0, 2, 2});
  EXPECT_NEAR(s.GetWeights()[0], 3.0 / 7, 1e-15);
  EXPECT_NEAR(s.GetWeights()[1], 9.0 / 7, 1e-15);
  EXPECT_NEAR(s.GetWeights()[2], 9.0 / 7, 1e-15);
  EXPECT_EQ(s.GetWeightsDistrType(), DISTR_GAUSS);
  Stat_Weighted none = Make({1, 2}, {0, -1});
  EXPECT_EQ(none.GetWeights()[0], 1);
  EXPECT_EQ(none.GetWeights()[1], 1);
}

TEST(StatWeighted, EqualWeights) {
  EmbeddedHost host;
  Stat_Weighted cases[] = {Make({1, 2, 5}, {4, 4, 4}), Make({1, 2, 5}, {1, 1, 2}, {4, 4, 4})};
  for (Stat_Weighted& s : cases) {
    EXPECT_EQ(s.GetDispOfWeights(), 0);
    EXPECT_EQ(s.GetWeightsCorr(), 0);
  }
}

TEST(StatWeighted, OneValueExportsNoDispersionOfWeights) {
  EmbeddedHost host;
  Stat_Weighted s = Make({3}, {5});
  Variable object;
  ASSERT_TRUE(host.GetProcessor().MakeInstance(object, "TFunc", nullptr, 0));
  s.UpdateTarnObject(object);
  EXPECT_EQ(object("DispOfWeights").GetDoubleNumb(), 0);
  EXPECT_EQ(object("Weights").GetDim(), 1);
  EXPECT_EQ(object("Weights")[0].GetDoubleNumb(), 1);
}

TEST(StatWeighted, NeverTooLong) {
  EmbeddedHost host;
  const std::vector<double> million(1000000, 1.0);
  Stat_Weighted s = Make(million, million);
  EXPECT_FALSE(s.isTooLong());
  EXPECT_FALSE(static_cast<Stat&>(s).isTooLong());
}

TEST(StatWeighted, ExportAddsItsMembersInOrder) {
  EmbeddedHost host;
  Stat_Weighted s = Make({1, 2, 4}, {0.5, 1, 3});
  Variable object;
  ASSERT_TRUE(host.GetProcessor().MakeInstance(object, "TFunc", nullptr, 0));
  s.UpdateTarnObject(object);
  EXPECT_EQ(object("Mean").GetDoubleNumb(), s.GetMean());
  int last = Token::GetNameID("MeanType");
  for (const char* key : {"WeightsDistrType", "DispOfWeights", "WeightsCorr", "WeightedMean",
                          "WeightedSEM2", "Weights"}) {
    const int number = Token::GetNameID(key);
    EXPECT_GT(number, last) << key;
    last = number;
  }
  EXPECT_EQ(object("WeightsDistrType").TypeWord(), Variable(std::int32_t{1}).TypeWord());
  EXPECT_SAME_BITS(object("DispOfWeights").GetDoubleNumb(), s.GetDispOfWeights());
  EXPECT_SAME_BITS(object("WeightsCorr").GetDoubleNumb(), s.GetWeightsCorr());
  EXPECT_SAME_BITS(object("WeightedMean").GetDoubleNumb(), s.GetWeightedMean());
  EXPECT_SAME_BITS(object("WeightedSEM2").GetDoubleNumb(), s.GetWeightedSEM2());
  EXPECT_EQ(object("Weights").TypeWord(), 1024U);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(object("Weights")[i].GetDoubleNumb(), s.GetWeights()[i]);
  }
}

TEST(StatWeighted, SameBitsAsASecondTranscription) {
  EmbeddedHost host;
  Samples samples(91);
  for (const int n : {1, 2, 3, 10, 200}) {
    for (const bool measured : {false, true}) {
      const auto x = samples.Normals(n, 3, 2);
      const auto d = samples.Uniform(n, 0.1, 2);
      auto w = samples.Uniform(n, -0.2, 2);
      w[0] = 1;
      Stat_Weighted s = measured ? Make(x, d, w) : Make(x, w);
      double least = 1e300, sum = 0;
      for (const double v : w) least = v > 0 && v < least ? v : least;
      for (double& v : w) v = v <= 0 ? least / n : v;
      for (const double v : w) sum += v;
      const double mean = sum / n;
      for (double& v : w) v /= mean;
      double disp = 0, C = 0, wm = 0, sem2 = 0;
      for (const double v : w) disp += (v - 1) * (v - 1);
      if (n >= 2) disp /= n - 1;
      for (std::size_t i = 0; i < x.size(); ++i) {
        const double u = x[i] - s.GetMean();
        C += (measured ? u / std::sqrt(s.GetDisp0() + d[i]) : u) * (w[i] - 1);
        wm += x[i] * w[i];
      }
      wm /= n;
      C /= n;
      double corr = 0;
      if (disp * s.GetDisp() > 0) {
        corr = C / (measured ? std::sqrt(disp) : std::sqrt(disp * s.GetDisp()));
      }
      for (std::size_t i = 0; i < x.size(); ++i) sem2 += w[i] * std::pow(x[i] - wm, 2);
      if (n > 1) sem2 /= (n - 1.0) * n;
      if (sem2 == 0) sem2 = s.GetSEM2();
      EXPECT_SAME_BITS(s.GetDispOfWeights(), disp) << n;
      EXPECT_SAME_BITS(s.GetWeightedMean(), wm);
      EXPECT_SAME_BITS(s.GetWeightsCorr(), corr);
      EXPECT_SAME_BITS(s.GetWeightedSEM2(), sem2);
      for (std::size_t i = 0; i < x.size(); ++i) EXPECT_SAME_BITS(s.GetWeights()[i], w[i]);
    }
  }
}

// Cumulative distribution and medians
// --------------------------------------------------------------

TEST(StatWeighted, CumulativeDistributionAddsWeights) {
  EmbeddedHost host;
  Stat_Weighted s = Make({3, 1, 2, 1}, {4, 1, 2, 1});
  double *x = nullptr, *p = nullptr;
  int n = 0;
  s.GetCumulativeDistr(x, p, n);
  EXPECT_EQ(std::vector<double>(x, x + n), (std::vector<double>{0, 1, 2, 3}));
  EXPECT_EQ(std::vector<double>(p, p + n), (std::vector<double>{0, 0.25, 0.5, 1}));
  double* again = nullptr;
  s.GetCumulativeDistr(again, p, n);
  EXPECT_EQ(again, x);
}

TEST(StatWeighted, BucketsTakeTheWeightUpToTheirFirstValue) {
  EmbeddedHost host;
  std::vector<double> x(2500), w(2500);
  for (std::size_t i = 0; i < 2500; ++i) {
    x[i] = static_cast<double>(2499 - i);
    w[i] = 1 + static_cast<double>(i % 3);
  }
  Stat_Weighted s = Make(x, w);
  const double* const normalised = s.GetWeights();
  double *X = nullptr, *P = nullptr;
  int n = 0;
  s.GetCumulativeDistr(X, P, n);
  ASSERT_EQ(n, 1001);
  double running = 0;
  std::vector<double> sums;
  for (std::size_t i = 0; i < 2500; ++i) sums.push_back(running += normalised[2499 - i]);
  for (int j = 0; j < 1000; ++j) {
    const int i = (5 * j + 1) / 2;  // the first i with floor(i / 2.5) = j
    EXPECT_EQ(X[j + 1], i);
    EXPECT_SAME_BITS(P[j + 1], sums[static_cast<std::size_t>(i)] / sums[2498]);
  }
}

TEST(StatWeighted, EmptySampleLeavesOutputs) {
  EmbeddedHost host;
  Stat_Weighted s = Make({}, std::vector<double>{});
  double a = kUntouched, b = kUntouched;
  s.GetMedian_MAD(a, b);
  s.GetMedian_SD(a, b);
  EXPECT_EQ(a, kUntouched);
  EXPECT_EQ(b, kUntouched);
  EXPECT_EQ(s.GetCorrToWeight(0, 0), 0);
  EXPECT_EQ(s.GetCorrToWeight(1, 1), 0);
  EXPECT_FALSE(host.HasError());
}

TEST(StatWeighted, MedianAndMad) {
  EmbeddedHost host;
  double median = 0, mad = 0;
  Make({5}, std::vector<double>{2}).GetMedian_MAD(median, mad);
  EXPECT_EQ(median, 5);
  EXPECT_EQ(mad, 0);
  Stat_Weighted two = Make({1, 4}, {1, 3});
  two.GetMedian_MAD(median, mad);
  EXPECT_EQ(median, two.GetWeightedMean());
  EXPECT_EQ(mad, 3);
  // P = 0, 1/4, 1/2, 1: exactly 1/2 at 2.
  Make({3, 1, 2, 1}, {4, 1, 2, 1}).GetMedian_MAD(median, mad);
  EXPECT_EQ(median, 2);
  // Deviations 1, 1, 0, 1 of weights 4, 1, 2, 1: P = 0, 1/4, 1 at -1, 0, 1.
  EXPECT_EQ(mad, 0.5);
  // P = 0, 1/8, 1 at 0, 1, 2: across 1/2 between 1 and 2.
  Make({2, 1, 2}, {4, 1, 3}).GetMedian_MAD(median, mad);
  EXPECT_EQ(median, 1.5);
}

TEST(StatWeighted, MedianWithError) {
  EmbeddedHost host;
  double median = 0, sd = 0;
  Make({5}, std::vector<double>{2}).GetMedian_SD(median, sd);
  EXPECT_EQ(median, 5);
  EXPECT_EQ(sd, 0);
  Stat_Weighted cases[] = {Make({1, 4}, {1, 3}), Make({1, 4, 9, 2}, {1, 3, 1, 1})};
  for (Stat_Weighted& s : cases) {
    s.GetMedian_SD(median, sd);
    EXPECT_EQ(median, s.GetWeightedMean());
    EXPECT_SAME_BITS(sd, std::sqrt(s.GetWeightedSEM2() * 1.5707963267948966));
  }
  Samples samples(92);
  Stat_Weighted s = Make(samples.Normals(300, 10, 2), samples.Uniform(300, 0.5, 1.5));
  s.GetMedian_SD(median, sd);
  const std::unique_ptr<T_MatVectorCol<double>> fit(s.FitCumulativeDistribution());
  EXPECT_SAME_BITS(median, (*fit)[0]);
  EXPECT_SAME_BITS(sd, (*fit)[1] * 1.2533141373155);
  EXPECT_NEAR(median, 10, 0.5);
  EXPECT_NEAR(sd, 2 * 1.2533 / std::sqrt(300.0), 0.04);
}

// Correlation
// --------------------------------------------------------------------------------------

TEST(StatWeighted, CorrelationToWeight) {
  EmbeddedHost host;
  const std::vector<double> x = {1, 2, 4, 3, 7};
  Stat_Weighted s = Make(x, {1, 3, 2, 5, 4});
  for (const int logValues : {0, 1, 2}) {
    for (const int logWeights : {0, 1, 2}) {
      double uv = 0, uu = 0, vv = 0;
      for (std::size_t i = x.size(); i-- > 0;) {
        const double w = s.GetWeights()[i];
        const double u =
            logValues == 1 ? std::log(x[i]) - std::log(s.GetMean()) : x[i] - s.GetMean();
        const double v = logWeights == 1 ? std::log(w) : w - 1;
        uv += u * v;
        uu += u * u;
        vv += v * v;
      }
      EXPECT_SAME_BITS(s.GetCorrToWeight(logValues, logWeights), uv / std::sqrt(uu * vv));
    }
  }
  Stat_Weighted equal = Make(x, {2, 2, 2, 2, 2});
  EXPECT_EQ(equal.GetCorrToWeight(0, 0), 0) << "not normalised";
  EXPECT_FALSE(host.HasError());
}

TEST(StatWeighted, LogarithmicCorrelationOfWhatHasNoLogarithm) {
  EmbeddedHost host;
  Stat_Weighted cases[] = {Make({1, 0, 2}, {1, 2, 3}), Make({-5, 1, 2}, {1, 2, 3})};
  for (Stat_Weighted& s : cases) {
    for (const int logWeights : {0, 1}) {
      EXPECT_EQ(s.GetCorrToWeight(1, logWeights), 0);
      EXPECT_EQ(host.TakeError().number, 88);
    }
    s.GetCorrToWeight(0, 1);
    EXPECT_FALSE(host.HasError());
    s.GetWeights()[1] = 0;
    EXPECT_EQ(s.GetCorrToWeight(0, 1), 0);
    EXPECT_EQ(host.TakeError().number, 88);
    s.GetCorrToWeight(0, 0);
    EXPECT_FALSE(host.HasError());
  }
}

// Copies
// -------------------------------------------------------------------------------------------

TEST(StatWeighted, AssignmentAndCopyOwnTheirWeights) {
  EmbeddedHost host;
  Stat_Weighted source = Make({1, 2, 4}, {0.5, 1, 3});
  Stat_Weighted target = Make({9}, std::vector<double>{1});
  target = source;
  Stat_Weighted& self = target;
  target = self;
  Stat_Weighted copy(source);
  EXPECT_NE(target.GetWeights(), source.GetWeights());
  for (Stat_Weighted* other : {&target, &copy}) {
    EXPECT_EQ(other->Len(), 3);
    EXPECT_NEAR(other->GetWeights()[2], source.GetWeights()[2], 1e-15);
    EXPECT_NEAR(other->GetWeightedMean(), source.GetWeightedMean(), 1e-15);
  }
  EXPECT_SAME_BITS(target.GetWeightedSEM2(), source.GetWeightedSEM2());
}

}  // namespace
