/// @file
/// Weighted order statistics.

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include "stat/number_arrays.h"
#include "stat/sample_pair.h"
#include "stat/stat_weighted.h"

namespace {

constexpr double kMedianErrorFactor = 1.2533141373155;

/// Reads the median off a cumulative distribution: the abscissa where it is exactly 1/2, or the
/// middle of the step across 1/2. Leaves `median` alone where there is neither.
void ReadMedian(const double* x, const double* p, int n, double& median) {
  for (int k = 1; k < n && p[k - 1] < 0.5; ++k) {
    if (p[k] == 0.5) {
      median = x[k];
      return;
    }
    // The loop ends then.
    if (p[k] > 0.5) median = (x[k - 1] + x[k]) / 2.0;
  }
}

/// Fills a cumulative distribution with the first value of each bucket of max(1, step) sorted
/// values and the sum of the weights up to it; returns the number of buckets.
int FillWeightedBuckets(const tarn::SamplePair* sorted, int n, double step, double* x, double* p) {
  int last = -1;
  double weight = 0.0;
  for (int i = 0; i < n; ++i) {
    weight += sorted[i].companion;
    const int bucket = static_cast<int>(i / std::max(1.0, step));
    if (bucket != last) {
      x[bucket] = sorted[i].value;
      p[bucket] = weight;
    }
    last = bucket;
  }
  return last + 1;
}

}  // namespace

void Stat_Weighted::GetCumulativeDistr(double*& x, double*& p, int& n) {
  constexpr int kMaxPoints = 1000;
  constexpr int kSpareRoom = 2;
  if (CumX == nullptr || CumP == nullptr) {
    ReleaseCumulativeDistr();
    if (len == 0) return;
    const int points = std::min(static_cast<int>(len), kMaxPoints);
    CumX = tarn::NewNumbers(points + kSpareRoom).release();
    CumP = tarn::NewNumbers(points + kSpareRoom).release();
    const auto sorted = tarn::NewSortedPairs(Data, Weights, len);
    if (CumX == nullptr || CumP == nullptr || !sorted) {
      ReleaseCumulativeDistr();
      return;
    }
    const double step = static_cast<double>(len) / points;
    CumLen = FillWeightedBuckets(sorted.get(), len, step, CumX, CumP);
    FinishCumulativeDistr();
  }
  x = CumX;
  p = CumP;
  n = CumLen;
}

void Stat_Weighted::GetMedian_MAD(double& median, double& mad) {
  if (len == 0) return;
  if (len == 1) {
    median = Data[0];
    mad = 0.0;
    return;
  }
  if (len == 2) {
    median = WeightedMean;
    mad = std::fabs(Data[0] - Data[1]);
    return;
  }
  double* x = nullptr;
  double* p = nullptr;
  int n = 0;
  GetCumulativeDistr(x, p, n);
  if (x == nullptr) return;
  ReadMedian(x, p, n, median);

  tarn::HostWorkArea deviations(len);
  if (!deviations) return;
  for (int i = 0; i < len; ++i) deviations.Get()[i] = std::fabs(Data[i] - median);
  Stat_Weighted sample(deviations.Get(), Weights, len);
  n = 0;
  sample.GetCumulativeDistr(x, p, n);
  ReadMedian(x, p, n, mad);
}

void Stat_Weighted::GetMedian_SD(double& median, double& sd) {
  constexpr int kSmallestFit = 5;
  if (len == 0) return;
  if (len == 1) {
    median = Data[0];
    sd = 0.0;
    return;
  }
  if (len < kSmallestFit) {
    median = WeightedMean;
    sd = std::sqrt(WeightedSEM2 * (std::numbers::pi / 2.0));
    return;
  }
  const std::unique_ptr<T_MatVectorCol<double>> fit(FitCumulativeDistribution());
  if (!fit) return;
  if ((*fit)[0] < Min || (*fit)[0] > Max) {
    GetMedian_MAD(median, sd);
    return;
  }
  median = (*fit)[0];
  sd = (*fit)[1] * kMedianErrorFactor;
}
