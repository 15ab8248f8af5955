/// @file
/// Sample statistics beside GSL and plain standard-library code.
///
/// All figures of one of our operations are asked of the peers too: raw moments of GSL come from
/// its central ones about 0 and its scale 1, what it has no function for (intrinsic dispersion,
/// most probable value) is put together from its root finder, minimiser and interpolation. The
/// peers copy the values where we do. Everybody's answers are compared before they are timed. The
/// peer "passes" reads the data as often as the operation is bound to, each time with one sum in
/// index order, and computes nothing; the table has our time over that of reading.

#include <benchmark/benchmark.h>
#include <gsl/gsl_errno.h>
#include <gsl/gsl_histogram.h>
#include <gsl/gsl_interp.h>
#include <gsl/gsl_min.h>
#include <gsl/gsl_roots.h>
#include <gsl/gsl_sort.h>
#include <gsl/gsl_statistics.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "host/embedded_host.h"
#include "ratio_reporter.h"
#include "stat/stat_weighted.h"

namespace {

using Numbers = std::vector<double>;

/// Figures that contenders are compared in.
using Figures = std::vector<double>;

/// Values with dispersions and weights.
struct Sample {
  Sample(int count, bool positive, std::uint64_t seed) : n(count) {
    std::mt19937_64 generator(seed);
    std::normal_distribution<double> normal(3, 2);
    std::uniform_real_distribution<double> unit(0, 1);
    for (int i = 0; i < count; ++i) {
      const double value = normal(generator);
      x.push_back(positive ? std::fabs(value) + 0.01 : value);
      d.push_back(0.2 + unit(generator));
      w.push_back(0.5 + unit(generator));
    }
  }

  std::size_t Size() const { return x.size(); }

  int n;
  Numbers x, d, w;
};

/// A sample that forgets its cumulative distribution and its dispersions.
class ForgetfulStat : public Stat {
 public:
  using Stat::ReleaseCumulativeDistr;
  using Stat::Stat;
  void ForgetDispersions() {
    delete[] estDataDisp;
    estDataDisp = nullptr;
  }
};

class ForgetfulWeighted : public Stat_Weighted {
 public:
  using Stat_Weighted::ReleaseCumulativeDistr;
  using Stat_Weighted::Stat_Weighted;
};

/// A sample with our objects made of it.
struct Subject : Sample {
  Subject(int count, bool positive, std::uint64_t seed)
      : Sample(count, positive, seed),
        stat(x.data(), d.data(), n),
        weighted(x.data(), w.data(), n) {}

  ForgetfulStat stat;
  ForgetfulWeighted weighted;
};

/// Samples of one size, about 100,000 values altogether, so that no branch predictor learns them.
using Subjects = std::vector<std::unique_ptr<Subject>>;
using SharedSubjects = std::shared_ptr<Subjects>;

SharedSubjects MakeSubjects(int n, bool positive) {
  const auto subjects = std::make_shared<Subjects>();
  for (int k = 0; k < std::max(1, 100000 / n); ++k) {
    subjects->push_back(std::make_unique<Subject>(n, positive, static_cast<std::uint64_t>(n + k)));
  }
  return subjects;
}

/// A way to compute something; the first is ours. The figures of "passes" are not compared.
struct Contender {
  std::string peer;
  std::function<Figures(Subject&)> work;
};

constexpr const char* kPasses = "passes";

void RequireClose(const std::string& what, const Figures& ours, const Figures& theirs,
                  double tolerance) {
  for (std::size_t i = 0; i < ours.size(); ++i) {
    const double difference = std::fabs(ours[i] - theirs[i]);
    if (difference <= tolerance * std::max(1.0, std::fabs(ours[i]))) continue;
    std::fprintf(stderr, "%s, figure %zu: %.17g and %.17g\n", what.c_str(), i, ours[i], theirs[i]);
    std::exit(1);
  }
}

void RegisterAll(const std::string& subject, const SharedSubjects& subjects,
                 const std::string& kind, double tolerance,
                 const std::vector<Contender>& contenders) {
  const int n = subjects->front()->n;
  const std::string rest = kind + std::to_string(n);
  for (const Contender& contender : contenders) {
    for (const auto& s : *subjects) {
      if (contender.peer == kPasses) break;
      RequireClose(subject + "/" + contender.peer + "/" + rest, contenders.front().work(*s),
                   contender.work(*s), tolerance);
    }
    benchmark::RegisterBenchmark(
        (subject + "/" + contender.peer + "/" + rest).c_str(),
        [=, work = contender.work](benchmark::State& state) {
          for (auto _ : state) {
            for (const auto& s : *subjects) benchmark::DoNotOptimize(work(*s).data());
          }
          state.SetItemsProcessed(state.iterations() * n *
                                  static_cast<std::int64_t>(subjects->size()));
        });
  }
}

/// Copies as many arrays as a constructor does and reads one of them as often as stated.
Figures ReadPasses(const Numbers& x, int copies, int times) {
  Numbers copy = x;
  for (int k = 1; k < copies; ++k) benchmark::DoNotOptimize(Numbers(x).data());
  double sum = 0;
  for (int k = 0; k < times; ++k) {
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
    double pass = 0;
    for (const double value : copy) pass += value;
    sum += pass;
  }
  return {sum};
}

// Plain figures -----------------------------------------------------------------------------------

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

/// One algorithm of the library after the other, as one would write it down.
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

Figures FiguresOf(const Stat& s) {
  return {s.GetMean(), s.GetDisp(), s.GetSEM2(), s.GetE2(),
          s.GetE3(),   s.GetE4(),   s.GetMin(),  s.GetMax()};
}

void RegisterPlain(const SharedSubjects& subjects) {
  RegisterAll("Stat(x)", subjects, "", 1e-10,
              {{"tarn", [](Subject& s) { return FiguresOf(Stat(s.x.data(), s.n)); }},
               {"gsl", [](Subject& s) { return GslFigures(s.x); }},
               {"std", [](Subject& s) { return StandardFigures(s.x); }},
               // The two of the figures; the scan for log-normal values ends at a negative one.
               {kPasses, [](Subject& s) { return ReadPasses(s.x, 1, 2); }}});
}

/// ln of the marginal likelihoods of both models, without what they share; GSL for the moments.
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

// Dispersions -------------------------------------------------------------------------------------

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

// Order statistics --------------------------------------------------------------------------------

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

// Most probable value -----------------------------------------------------------------------------

/// The negative log-probability of a location under the uniform prior.
double Misfit(double location, void* data) {
  const Sample& s = *static_cast<const Sample*>(data);
  double sum = 0;
  for (std::size_t i = 0; i < s.Size(); ++i) {
    const double r = s.x[i] - location;
    sum += std::log(1 + r * r / (2 * s.d[i]));
  }
  return sum;
}

/// The best of about 100 of the values and of 100 points around it, with its neighbours.
struct ScannedBracket {
  explicit ScannedBracket(Sample& s) {
    Numbers sorted = s.x;
    std::sort(sorted.begin(), sorted.end());
    const std::size_t step = std::max<std::size_t>(1, sorted.size() / 100);
    Numbers grid;
    for (std::size_t i = 0; i < sorted.size(); i += step) grid.push_back(sorted[i]);
    Take(grid, s);
    const double from = lower;
    const double to = upper;
    grid.clear();
    for (int k = 0; k < 100; ++k) grid.push_back(from + k * (to - from) / 99);
    Take(grid, s);
  }

  void Take(const Numbers& grid, Sample& s) {
    std::size_t best = 0;
    double least = Misfit(grid[0], &s);
    for (std::size_t i = 1; i < grid.size(); ++i) {
      const double value = Misfit(grid[i], &s);
      if (value < least) {
        least = value;
        best = i;
      }
    }
    lower = grid[best == 0 ? 0 : best - 1];
    middle = grid[best];
    upper = grid[std::min(best + 1, grid.size() - 1)];
  }

  double lower, middle, upper;
};

/// Half the width of the interval with 34 % on each side: 30 points between where the probability
/// is 1e-4 of the peak, then the quantiles of their running integral.
template <class Integral>
double ErrorOfLocation(Sample& s, double location, Integral integral) {
  const double peak = Misfit(location, &s);
  const auto edge = [&](double outer) {
    double inner = location;
    while (std::fabs(outer - inner) > 1e-7 * (std::fabs(outer) + std::fabs(inner))) {
      const double m = (inner + outer) / 2;
      (Misfit(m, &s) - peak < -std::log(1e-4) ? inner : outer) = m;
    }
    return inner;
  };
  const double from = edge(location - 10);
  const double to = edge(location + 10);
  Numbers x, p;
  for (int k = 0; k < 30; ++k) {
    x.push_back(from + k * (to - from) / 29);
    p.push_back(std::exp(peak - Misfit(x.back(), &s)));
  }
  const double whole = integral(x, p, from, to);
  const auto quantile = [&](double outer) {
    double inner = location;
    const double end = outer;
    double far = end;
    while (std::fabs(far - inner) > 1e-7 * (std::fabs(far) + std::fabs(inner))) {
      const double m = (inner + far) / 2;
      const double area = m < location ? integral(x, p, m, location) : integral(x, p, location, m);
      (area < 0.34 * whole ? inner : far) = m;
    }
    return inner;
  };
  const double half = (quantile(to) - quantile(from)) / 2;
  return half * half;
}

double StandardIntegral(const Numbers& x, const Numbers& p, double a, double b) {
  const auto at = [&](double where) {
    const auto upper = std::upper_bound(x.begin() + 1, x.end() - 1, where);
    const auto i = static_cast<std::size_t>(upper - x.begin());
    return p[i - 1] + (p[i] - p[i - 1]) * (where - x[i - 1]) / (x[i] - x[i - 1]);
  };
  double sum = 0;
  double last = a;
  double lastValue = at(a);
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (x[i] <= a || x[i] >= b) continue;
    sum += (p[i] + lastValue) / 2 * (x[i] - last);
    last = x[i];
    lastValue = p[i];
  }
  return sum + (at(b) + lastValue) / 2 * (b - last);
}

Figures StandardMostProbable(Sample& s) {
  ScannedBracket bracket(s);
  constexpr double kGolden = 0.381966011250105;
  double a = bracket.lower;
  double b = bracket.upper;
  const double width = b - a;
  double u = a + kGolden * (b - a);
  double v = b - kGolden * (b - a);
  double fu = Misfit(u, &s);
  double fv = Misfit(v, &s);
  while (b - a > 1e-7 * width) {
    if (fu < fv) {
      b = v;
      v = u;
      fv = fu;
      u = a + kGolden * (b - a);
      fu = Misfit(u, &s);
    } else {
      a = u;
      u = v;
      fu = fv;
      v = b - kGolden * (b - a);
      fv = Misfit(v, &s);
    }
  }
  const double location = (a + b) / 2;
  return {location, ErrorOfLocation(s, location, StandardIntegral)};
}

Figures GslMostProbable(Sample& s) {
  ScannedBracket bracket(s);
  gsl_function f = {Misfit, &s};
  const std::unique_ptr<gsl_min_fminimizer, decltype(&gsl_min_fminimizer_free)> search(
      gsl_min_fminimizer_alloc(gsl_min_fminimizer_goldensection), gsl_min_fminimizer_free);
  gsl_min_fminimizer_set(search.get(), &f, bracket.middle, bracket.lower, bracket.upper);
  const double width = bracket.upper - bracket.lower;
  do {
    if (gsl_min_fminimizer_iterate(search.get()) != GSL_SUCCESS) break;
  } while (gsl_min_fminimizer_x_upper(search.get()) - gsl_min_fminimizer_x_lower(search.get()) >
           1e-7 * width);
  const double location = gsl_min_fminimizer_x_minimum(search.get());
  const auto integral = [](const Numbers& x, const Numbers& p, double a, double b) {
    const std::unique_ptr<gsl_interp, decltype(&gsl_interp_free)> linear(
        gsl_interp_alloc(gsl_interp_linear, x.size()), gsl_interp_free);
    gsl_interp_init(linear.get(), x.data(), p.data(), x.size());
    return gsl_interp_eval_integ(linear.get(), x.data(), p.data(), a, b, nullptr);
  };
  return {location, ErrorOfLocation(s, location, integral)};
}

void RegisterMostProbable(const SharedSubjects& subjects) {
  // The peers are given the dispersions that our search takes.
  for (const auto& s : *subjects) {
    const double* const used = s->stat.GetEstimationDisp();
    std::copy(used, used + s->n, s->d.begin());
  }
  RegisterAll(
      "GetMostProbableValue", subjects, "uniform prior, ", 0.02,
      {{"tarn",
        [](Subject& s) {
          const std::unique_ptr<T_MatVectorCol<double>> r(s.stat.GetMostProbableValue(2, 0));
          return Figures{(*r)[0], (*r)[1]};
        }},
       {"gsl", [](Subject& s) { return GslMostProbable(s); }},
       {"std", [](Subject& s) { return StandardMostProbable(s); }}});
}

// Weights -----------------------------------------------------------------------------------------

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

}  // namespace

int main(int count, char** words) {
  EmbeddedHost host;
  for (const int n : {1000, 1000000}) {
    const SharedSubjects subjects = MakeSubjects(n, false);
    RegisterPlain(subjects);
    RegisterPositive(MakeSubjects(n, true));
    RegisterDispersions(subjects);
    RegisterOrder(subjects);
    RegisterWeighted(subjects);
  }
  RegisterMostProbable(MakeSubjects(1000, false));
  bench::RatioReporter reporter;
  return bench::RunAndPrintRatios(count, words, reporter);
}
