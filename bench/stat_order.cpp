/// @file
/// Medians, cumulative distributions, histograms.

#include <gsl/gsl_histogram.h>
#include <gsl/gsl_sort.h>
#include <gsl/gsl_statistics.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "stat_subjects.h"

namespace stat_bench {
namespace {

constexpr double kMedianErrorFactor = 1.2533141373155;

/// The first of each bucket of n/1000 sorted values at most, a point below, probabilities.
Figures DistributionOf(const Numbers& sorted) {
  const std::size_t n = sorted.size();
  const std::size_t points = std::min<std::size_t>(n, 1000);
  Numbers x(points + 1);
  Numbers p(points + 1);
  for (std::size_t j = 0; j < points; ++j) {
    x[j + 1] = sorted[(j * n + points - 1) / points];
    p[j + 1] = static_cast<double>(j + 1) / static_cast<double>(points);
  }
  x[0] = 2 * x[1] - x[2];
  return {x[0], x[points / 2], x[points], p[points / 2]};
}

}  // namespace

void RegisterOrder(const SharedSubjects& subjects) {
  RegisterAll("GetMedian_SD", subjects, "", 0.05,
              {{"tarn",
                [](Subject& s) {
                  Figures figures(2);
                  s.stat.GetMedian_SD(figures[0], figures[1]);
                  return figures;
                }},
               {"gsl",
                [](Subject& s) {
                  Numbers copy = s.x;
                  const double median = gsl_stats_median(copy.data(), 1, copy.size());
                  return Figures{median, std::sqrt(s.stat.GetSEM2()) * kMedianErrorFactor};
                }},
               {"std", [](Subject& s) {
                  Numbers copy = s.x;
                  const auto middle = copy.begin() + s.n / 2;
                  std::nth_element(copy.begin(), middle, copy.end());
                  return Figures{*middle, std::sqrt(s.stat.GetSEM2()) * kMedianErrorFactor};
                }}});
  RegisterAll("GetCumulativeDistr", subjects, "", 1e-12,
              {{"tarn",
                [](Subject& s) {
                  s.stat.ReleaseCumulativeDistr();
                  double* x = nullptr;
                  double* p = nullptr;
                  int points = 0;
                  s.stat.GetCumulativeDistr(x, p, points);
                  return Figures{x[0], x[points / 2], x[points - 1], p[points / 2]};
                }},
               {"gsl",
                [](Subject& s) {
                  Numbers copy = s.x;
                  gsl_sort(copy.data(), 1, copy.size());
                  return DistributionOf(copy);
                }},
               {"std", [](Subject& s) {
                  Numbers copy = s.x;
                  std::sort(copy.begin(), copy.end());
                  return DistributionOf(copy);
                }}});
  constexpr int kBins = 50;
  constexpr double kFrom = -2;
  constexpr double kTo = 8.2;
  RegisterAll("GetHistogram", subjects, "50 bins, ", 1e-12,
              {{"tarn",
                [](Subject& s) {
                  double h[kBins];
                  int count = 0;
                  s.stat.GetHistogram(h, count, kFrom, kTo, kBins);
                  return Figures{h[0], h[20], h[kBins - 1]};
                }},
               {"gsl",
                [](Subject& s) {
                  const std::unique_ptr<gsl_histogram, decltype(&gsl_histogram_free)> h(
                      gsl_histogram_calloc_uniform(kBins + 1, kFrom, kTo), gsl_histogram_free);
                  for (const double v : s.x) gsl_histogram_increment(h.get(), v);
                  return Figures{gsl_histogram_get(h.get(), 0), gsl_histogram_get(h.get(), 20),
                                 gsl_histogram_get(h.get(), kBins - 1)};
                }},
               {"std", [](Subject& s) {
                  Numbers h(kBins + 1);
                  const double width = (kTo - kFrom) / (kBins + 1);
                  for (const double v : s.x) {
                    if (v >= kFrom && v < kTo) ++h[static_cast<std::size_t>((v - kFrom) / width)];
                  }
                  return Figures{h[0], h[20], h[kBins - 1]};
                }}});
}

}  // namespace stat_bench
