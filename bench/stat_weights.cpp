/// @file
/// Weighted samples.

#include <benchmark/benchmark.h>
#include <gsl/gsl_sort.h>
#include <gsl/gsl_statistics.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "stat_subjects.h"

namespace stat_bench {

void RegisterWeighted(const SharedSubjects& subjects) {
  RegisterAll(
      "Stat_Weighted(x; w)", subjects, "", 1e-9,
      {{"tarn",
        [](Subject& s) {
          const Stat_Weighted stat(s.x.data(), s.w.data(), s.n);
          return Figures{stat.GetMean(),         stat.GetDisp(),
                         stat.GetWeightedMean(), stat.GetDispOfWeights(),
                         stat.GetWeightsCorr(),  static_cast<double>(stat.GetWeightsDistrType())};
        }},
       {"gsl",
        [](Subject& s) {
          const Figures plain = GslFigures(s.x);
          const double type = GslTypeFigures(s.w).back();
          const Numbers w = s.w;
          const double mean = gsl_stats_wmean(w.data(), 1, s.x.data(), 1, s.Size());
          const double norm = gsl_stats_mean(w.data(), 1, w.size());
          const double error = gsl_stats_wtss_m(w.data(), 1, s.x.data(), 1, s.Size(), mean);
          benchmark::DoNotOptimize(error);
          const double covariance =
              gsl_stats_covariance_m(s.x.data(), 1, w.data(), 1, s.Size(), plain[0], norm);
          const double dispersion =
              gsl_stats_variance_m(w.data(), 1, w.size(), norm) / (norm * norm);
          return Figures{plain[0],
                         plain[1],
                         mean,
                         dispersion,
                         covariance / norm * (s.n - 1) / s.n / std::sqrt(dispersion * plain[1]),
                         type};
        }},
       {"std",
        [](Subject& s) {
          const Figures plain = StandardFigures(s.x);
          const double type = StandardTypeFigures(s.w).back();
          Numbers w = s.w;
          const double norm = std::accumulate(w.begin(), w.end(), 0.0) / s.n;
          for (double& v : w) v /= norm;
          double mean = 0;
          double dispersion = 0;
          double covariance = 0;
          double error = 0;
          for (std::size_t i = 0; i < w.size(); ++i) mean += w[i] * s.x[i];
          mean /= s.n;
          for (const double v : w) dispersion += (v - 1) * (v - 1);
          dispersion /= s.n - 1;
          for (std::size_t i = 0; i < w.size(); ++i) {
            covariance += (s.x[i] - plain[0]) * (w[i] - 1);
          }
          for (std::size_t i = 0; i < w.size(); ++i) {
            error += w[i] * (s.x[i] - mean) * (s.x[i] - mean);
          }
          benchmark::DoNotOptimize(error);
          return Figures{plain[0],
                         plain[1],
                         mean,
                         dispersion,
                         covariance / s.n / std::sqrt(dispersion * plain[1]),
                         type};
        }},
       // Two of the figures; of the weights: eight for their type, three to normalise them,
       // one for their dispersion; two arrays for covariance, mean and error each.
       {kPasses, [](Subject& s) { return ReadPasses(s.x, 2, 2 + 8 + 4 + 6); }}});

  RegisterAll("weighted GetMedian_MAD", subjects, "", 0.05,
              {{"tarn",
                [](Subject& s) {
                  // The deviations go through a sample of their own; the peers' time is for both.
                  s.weighted.ReleaseCumulativeDistr();
                  Figures figures(2);
                  s.weighted.GetMedian_MAD(figures[0], figures[1]);
                  return figures;
                }},
               {"gsl",
                [](Subject& s) {
                  const auto median = [&](const Numbers& x) {
                    std::vector<std::size_t> order(x.size());
                    gsl_sort_index(order.data(), x.data(), 1, x.size());
                    double half = std::accumulate(s.w.begin(), s.w.end(), 0.0) / 2;
                    std::size_t k = 0;
                    while ((half -= s.w[order[k]]) > 0) ++k;
                    return x[order[k]];
                  };
                  const double middle = median(s.x);
                  Numbers deviations = s.x;
                  for (double& v : deviations) v = std::fabs(v - middle);
                  return Figures{middle, median(deviations)};
                }},
               {"std", [](Subject& s) {
                  const auto median = [&](const Numbers& x) {
                    std::vector<std::pair<double, double>> pairs(x.size());
                    for (std::size_t i = 0; i < x.size(); ++i) pairs[i] = {x[i], s.w[i]};
                    std::sort(pairs.begin(), pairs.end());
                    double half = std::accumulate(s.w.begin(), s.w.end(), 0.0) / 2;
                    std::size_t k = 0;
                    while ((half -= pairs[k].second) > 0) ++k;
                    return pairs[k].first;
                  };
                  const double middle = median(s.x);
                  Numbers deviations = s.x;
                  for (double& v : deviations) v = std::fabs(v - middle);
                  return Figures{middle, median(deviations)};
                }}});
}

}  // namespace stat_bench
