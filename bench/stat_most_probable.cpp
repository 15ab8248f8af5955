/// @file
/// The most probable value with its error.

#include <gsl/gsl_errno.h>
#include <gsl/gsl_interp.h>
#include <gsl/gsl_min.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "stat_subjects.h"

namespace stat_bench {
namespace {

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

}  // namespace

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

}  // namespace stat_bench
