/// @file
/// Order statistics: medians and the empirical cumulative distribution.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "arrays/median.h"
#include "arrays/sort.h"
#include "stat/number_arrays.h"
#include "stat/sort_numbers.h"
#include "stat/stat.h"

namespace {

/// sqrt(pi/2): standard error of the median over that of the mean, for a normal sample.
constexpr double kMedianErrorFactor = 1.2533141373155;

/// `QMedian` in a work area of 4 n numbers.
double MedianIn(double* workArea, double* x, std::int64_t n) {
  double* buffers[4] = {workArea, workArea + n, workArea + 2 * n, workArea + 3 * n};
  return QMedian(x, n, buffers);
}

double MiddleOfThree(const double* x) {
  double sorted[3] = {x[0], x[1], x[2]};
  QSort(sorted, 3);
  return sorted[1];
}

/// Fills a cumulative distribution with the first value of each bucket of max(1, step) sorted
/// values; returns the number of buckets.
int FillBuckets(const double* sorted, int n, double step, double* x, double* p) {
  int last = -1;
  for (int i = 0; i < n; ++i) {
    const int bucket = static_cast<int>(i / std::max(1.0, step));
    if (bucket != last) x[bucket] = sorted[i];
    last = bucket;
  }
  for (int j = 0; j <= last; ++j) p[j] = j + 1;
  return last + 1;
}

}  // namespace

void Stat::GetMedian_MAD(double& median, double& mad) {
  if (len == 0) return;
  if (len == 1) {
    median = Data[0];
    mad = 0.0;
    return;
  }
  if (len == 2) {
    median = Mean;
    mad = std::fabs(Data[0] - Data[1]);
    return;
  }
  tarn::HostWorkArea deviations(len);
  tarn::HostWorkArea work(std::int64_t{4} * len);
  if (!deviations || !work) return;
  median = MedianIn(work.Get(), Data, len);
  for (int i = 0; i < len; ++i) deviations.Get()[i] = std::fabs(Data[i] - median);
  mad = MedianIn(work.Get(), deviations.Get(), len);
}

void Stat::GetMedian_SD(double& median, double& sd) {
  constexpr int kSmallSample = 10;
  if (len == 0) return;
  if (len == 1) {
    median = Data[0];
    sd = 0.0;
    return;
  }
  if (len >= 4 && len < kSmallSample) {
    constexpr double kNotWritten = -1.0;
    double mad = kNotWritten;
    GetMedian_MAD(median, mad);
    if (mad != kNotWritten) sd = mad / std::sqrt(static_cast<double>(len));
    return;
  }
  if (len == 2) {
    median = Mean;
  } else if (len == 3) {
    median = MiddleOfThree(Data);
  } else {
    tarn::HostWorkArea work(std::int64_t{4} * len);
    if (!work) return;
    median = MedianIn(work.Get(), Data, len);
  }
  sd = std::sqrt(SEM2) * kMedianErrorFactor;
}

void Stat::GetCumulativeDistr(double*& x, double*& p, int& n) {
  constexpr int kMaxPoints = 1000;
  constexpr int kSpareRoom = 10;
  if (CumX == nullptr || CumP == nullptr) {
    ReleaseCumulativeDistr();
    if (len == 0) return;
    const int points = std::min(static_cast<int>(len), kMaxPoints);
    CumX = tarn::NewNumbers(points + kSpareRoom).release();
    CumP = tarn::NewNumbers(points + kSpareRoom).release();
    const tarn::NumberArray sorted = tarn::CopyNumbers(Data, len);
    if (CumX == nullptr || CumP == nullptr || !sorted) {
      ReleaseCumulativeDistr();
      return;
    }
    tarn::SortNumbers(sorted.get(), len);
    const double step = static_cast<double>(len) / points;
    CumLen = FillBuckets(sorted.get(), len, step, CumX, CumP);
    FinishCumulativeDistr();
  }
  x = CumX;
  p = CumP;
  n = CumLen;
}

void Stat::FinishCumulativeDistr() {
  const auto moveTail = [this](int from, int to) {
    const auto bytes = static_cast<std::size_t>(CumLen - from) * sizeof(double);
    std::memmove(CumX + to, CumX + from, bytes);
    std::memmove(CumP + to, CumP + from, bytes);
  };
  for (int j = CumLen - 1; j >= 1; --j) {
    if (CumX[j] != CumX[j - 1]) continue;
    CumP[j - 1] = CumP[j];
    moveTail(j + 1, j);
    --CumLen;
  }

  moveTail(0, 1);
  ++CumLen;
  if (CumLen == 2) {
    const double below = CumX[1] * 0.001;
    CumX[0] = below == 0.0 ? -0.001 : below;
  } else {
    CumX[0] = 2.0 * CumX[1] - CumX[2];
  }
  CumP[0] = 0.0;

  const double total = CumP[CumLen - 1];
  for (int j = 0; j < CumLen; ++j) CumP[j] /= total;
}

void Stat::ReleaseCumulativeDistr() {
  delete[] CumX;
  delete[] CumP;
  CumX = CumP = nullptr;
  CumLen = 0;
}
