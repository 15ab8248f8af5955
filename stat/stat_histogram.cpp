/// @file
/// Histograms with the binomial variance of every count.

#include <algorithm>
#include <cstdint>

#include "stat/stat.h"

namespace {

template <class Number>
void CountIntoBins(const double* data, int len, Number* h, int& count, double lo, double hi,
                   int nBins) {
  std::fill_n(h, std::max(nBins, 0), Number{0});
  count = 0;
  const auto divisor = static_cast<Number>(std::int64_t{nBins} + 1);
  Number width = (static_cast<Number>(hi) - static_cast<Number>(lo)) / divisor;
  if (width == Number{0}) width = Number{1};
  for (int i = 0; i < len; ++i) {
    if (!(lo <= data[i] && data[i] < hi)) continue;
    // Truncation takes everything above -1 to bin 0.
    const double position = (data[i] - lo) / static_cast<double>(width);
    if (!(position > -1.0 && position < nBins)) continue;
    h[static_cast<int>(position)] += Number{1};
    ++count;
  }
}

template <class Number>
void FindVariances(const Number* h, Number* err, int count, int nBins) {
  std::fill_n(err, std::max(nBins, 0), Number{0});
  if (count < 1) return;
  const auto total = static_cast<Number>(count);
  for (int k = nBins - 1; k >= 0; --k) {
    err[k] = (Number{1} - h[k] / total) * std::max(h[k], Number{1});
  }
}

}  // namespace

void Stat::GetHistogram(double* h, int& count, double lo, double hi, int nBins) {
  CountIntoBins(Data, len, h, count, lo, hi, nBins);
}

void Stat::GetHistogram(float* h, int& count, double lo, double hi, int nBins) {
  CountIntoBins(Data, len, h, count, lo, hi, nBins);
}

void Stat::GetHistogram(double* h, double* err, int& count, double lo, double hi, int nBins) {
  GetHistogram(h, count, lo, hi, nBins);
  FindVariances(h, err, count, nBins);
}

void Stat::GetHistogram(float* h, float* err, int& count, double lo, double hi, int nBins) {
  GetHistogram(h, count, lo, hi, nBins);
  FindVariances(h, err, count, nBins);
}
