/// @file
/// Samples with dispersions: the intrinsic dispersion and the weighted mean.

#include <benchmark/benchmark.h>
#include <gsl/gsl_roots.h>
#include <gsl/gsl_statistics.h>

#include <cmath>
#include <memory>
#include <numeric>

#include "stat_subjects.h"

namespace stat_bench {
namespace {

/// Weighted mean with its squared error for an intrinsic dispersion.
Figures WeightedMean(const Sample& s, double disp0) {
  double norm = 0;
  double sum = 0;
  for (std::size_t i = 0; i < s.Size(); ++i) {
    norm += 1 / (disp0 + s.d[i]);
    sum += s.x[i] / (disp0 + s.d[i]);
  }
  return {disp0, sum / norm, 1 / norm};
}

struct Slope {
  const Sample* sample;
  Numbers weights;
};

double SlopeAt(double t, void* data) {
  auto& slope = *static_cast<Slope*>(data);
  const Sample& s = *slope.sample;
  const double disp0 = std::exp(t);
  double s1 = 0;
  double s2 = 0;
  double mean = 0;
  double h = 0;
  for (std::size_t i = 0; i < s.Size(); ++i) {
    const double w = slope.weights[i] = 1 / (disp0 + s.d[i]);
    s1 += w;
    s2 += w * w;
    mean += w * s.x[i];
    h += 1 / s.d[i];
  }
  mean /= s1;
  double q = 0;
  for (std::size_t i = 0; i < s.Size(); ++i) {
    q += (s.x[i] - mean) * slope.weights[i] * ((s.x[i] - mean) * slope.weights[i]);
  }
  return s1 - s2 / s1 - q + 1 / (1 / h + disp0);
}

double Corrected(double disp0, const Sample& s) { return disp0 * s.n / (s.n - 1); }

Figures StandardIntrinsic(const Sample& original) {
  const Sample s = original;
  const double variance = StandardFigures(s.x)[1];
  Slope slope = {&s, Numbers(s.Size())};
  double a = std::log(variance / 100);
  double b = std::log(variance * 100);
  const double atA = SlopeAt(a, &slope);
  while (b - a > 1e-7 * std::log(1e4)) {
    const double m = (a + b) / 2;
    (SlopeAt(m, &slope) * atA < 0 ? b : a) = m;
  }
  return WeightedMean(s, Corrected(std::exp((a + b) / 2), s));
}

Figures GslIntrinsic(const Sample& original) {
  const Sample s = original;
  const double variance = GslFigures(s.x)[1];
  Slope slope = {&s, Numbers(s.Size())};
  gsl_function f = {SlopeAt, &slope};
  const std::unique_ptr<gsl_root_fsolver, decltype(&gsl_root_fsolver_free)> solver(
      gsl_root_fsolver_alloc(gsl_root_fsolver_bisection), gsl_root_fsolver_free);
  gsl_root_fsolver_set(solver.get(), &f, std::log(variance / 100), std::log(variance * 100));
  do {
    gsl_root_fsolver_iterate(solver.get());
  } while (gsl_root_fsolver_x_upper(solver.get()) - gsl_root_fsolver_x_lower(solver.get()) >
           1e-7 * std::log(1e4));
  return WeightedMean(s, Corrected(std::exp(gsl_root_fsolver_root(solver.get())), s));
}

Figures IntrinsicFigures(const Stat& s) { return {s.GetDisp0(), s.GetMean(), s.GetSEM2()}; }

}  // namespace

void RegisterDispersions(const SharedSubjects& subjects) {
  RegisterAll(
      "Stat(x; d)", subjects, "limited Jeffreys, ", 1e-5,
      {{"tarn", [](Subject& s) { return IntrinsicFigures(Stat(s.x.data(), s.d.data(), s.n)); }},
       {"gsl", [](Subject& s) { return GslIntrinsic(s); }},
       {"std", [](Subject& s) { return StandardIntrinsic(s); }},
       // Two of the figures, four of each of the 26 slopes (values twice, dispersions,
       // weights), three of the weighted mean.
       {kPasses, [](Subject& s) { return ReadPasses(s.x, 2, 2 + 4 * 26 + 3); }}});
  RegisterAll(
      "Stat(x; d)", subjects, "by dispersions, ", 1e-10,
      {{"tarn", [](Subject& s) { return IntrinsicFigures(Stat(s.x.data(), s.d.data(), s.n, 3)); }},
       {"gsl",
        [](Subject& s) {
          const Figures plain = GslFigures(s.x);
          benchmark::DoNotOptimize(plain.data());
          Numbers w = s.d;
          for (double& v : w) v = 1 / v;
          const double mean = gsl_stats_wmean(w.data(), 1, s.x.data(), 1, s.Size());
          return Figures{0, mean, 1 / std::accumulate(w.begin(), w.end(), 0.0)};
        }},
       {"std",
        [](Subject& s) {
          const Figures plain = StandardFigures(s.x);
          benchmark::DoNotOptimize(plain.data());
          return WeightedMean(Sample(s), 0);
        }},
       {kPasses, [](Subject& s) { return ReadPasses(s.x, 2, 5); }}});
}

}  // namespace stat_bench
