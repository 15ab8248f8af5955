/// @file
/// Moments, errors and the type of the distribution.

#include <gsl/gsl_statistics.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "stat_subjects.h"

namespace stat_bench {

Figures GslFigures(const Numbers& values) {
  const Numbers x = values;
  const std::size_t n = x.size();
  const double mean = gsl_stats_mean(x.data(), 1, n);
  const double variance = gsl_stats_variance_m(x.data(), 1, n, mean);
  double least = 0;
  double largest = 0;
  gsl_stats_minmax(&least, &largest, x.data(), 1, n);
  return {mean,
          variance,
          variance / static_cast<double>(n),
          gsl_stats_tss_m(x.data(), 1, n, 0) / static_cast<double>(n),
          gsl_stats_skew_m_sd(x.data(), 1, n, 0, 1),
          gsl_stats_kurtosis_m_sd(x.data(), 1, n, 0, 1) + 3,
          least,
          largest};
}

Figures StandardFigures(const Numbers& values) {
  const Numbers x = values;
  const auto n = static_cast<double>(x.size());
  const auto meanOf = [&](auto power) {
    return std::accumulate(x.begin(), x.end(), 0.0,
                           [&](double sum, double v) { return sum + power(v); }) /
           n;
  };
  const double mean = meanOf([](double v) { return v; });
  const double variance = meanOf([=](double v) { return (v - mean) * (v - mean); }) * n / (n - 1);
  const auto [least, largest] = std::minmax_element(x.begin(), x.end());
  return {mean,
          variance,
          variance / n,
          meanOf([](double v) { return v * v; }),
          meanOf([](double v) { return v * v * v; }),
          meanOf([](double v) { return v * v * v * v; }),
          *least,
          *largest};
}

namespace {

Figures FiguresOf(const Stat& s) {
  return {s.GetMean(), s.GetDisp(), s.GetSEM2(), s.GetE2(),
          s.GetE3(),   s.GetE4(),   s.GetMin(),  s.GetMax()};
}

}  // namespace

void RegisterPlain(const SharedSubjects& subjects) {
  RegisterAll("Stat(x)", subjects, "", 1e-10,
              {{"tarn", [](Subject& s) { return FiguresOf(Stat(s.x.data(), s.n)); }},
               {"gsl", [](Subject& s) { return GslFigures(s.x); }},
               {"std", [](Subject& s) { return StandardFigures(s.x); }},
               // The two of the figures; the scan for log-normal values ends at a negative one.
               {kPasses, [](Subject& s) { return ReadPasses(s.x, 1, 2); }}});
}

Figures GslTypeFigures(const Numbers& values) {
  Figures figures = GslFigures(values);
  Numbers logarithms = values;
  for (double& v : logarithms) v = std::log(v);
  const std::size_t n = values.size();
  const double mean = gsl_stats_mean(logarithms.data(), 1, n);
  const double ofLogarithms = gsl_stats_tss_m(logarithms.data(), 1, n, mean);
  const double ofValues = gsl_stats_tss_m(values.data(), 1, n, gsl_stats_mean(values.data(), 1, n));
  const auto count = static_cast<double>(n);
  const double gauss = -count / 2 * std::log(ofValues / count) -
                       std::log(20 * std::sqrt(ofValues / count)) - std::log(10000.0);
  const double logNormal =
      -count / 2 * std::log(ofLogarithms / count) - count * mean - 2 * std::log(10000.0);
  figures.push_back(logNormal >= gauss + 1 ? 1 : 0);
  return figures;
}

Figures StandardTypeFigures(const Numbers& values) {
  Figures figures = StandardFigures(values);
  Numbers logarithms = values;
  for (double& v : logarithms) v = std::log(v);
  const auto n = static_cast<double>(values.size());
  const auto squares = [&](const Numbers& x, double mean) {
    return std::accumulate(x.begin(), x.end(), 0.0,
                           [=](double sum, double v) { return sum + (v - mean) * (v - mean); });
  };
  const double mean = std::accumulate(logarithms.begin(), logarithms.end(), 0.0) / n;
  const double u = squares(logarithms, mean) / n;
  const double v = squares(values, figures[0]) / n;
  const double gauss = -n / 2 * std::log(v) - std::log(20 * std::sqrt(v)) - std::log(10000.0);
  const double logNormal = -n / 2 * std::log(u) - n * mean - 2 * std::log(10000.0);
  figures.push_back(logNormal >= gauss + 1 ? 1 : 0);
  return figures;
}

void RegisterPositive(const SharedSubjects& subjects) {
  RegisterAll("Stat(x), with type", subjects, "positive, ", 1e-10,
              {{"tarn",
                [](Subject& s) {
                  const Stat stat(s.x.data(), s.n);
                  Figures figures = FiguresOf(stat);
                  figures.push_back(stat.GetDistrType());
                  return figures;
                }},
               {"gsl", [](Subject& s) { return GslTypeFigures(s.x); }},
               {"std", [](Subject& s) { return StandardTypeFigures(s.x); }},
               // Scan; minimum, sum and squares of the values, then of their logarithms; figures.
               {kPasses, [](Subject& s) { return ReadPasses(s.x, 1, 10); }}});
}

}  // namespace stat_bench
