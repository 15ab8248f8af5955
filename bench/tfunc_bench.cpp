/// @file
/// Tabulated functions beside GSL's interpolation and integration and plain standard-library code.
///
/// The abscissae have random steps. Arguments come in so many sequences that no branch predictor
/// learns them: evaluation is timed per argument, all else per knot. Everybody's answers are
/// compared before they are timed. GSL interpolates linearly and with its accelerator; where it has
/// no counterpart (parabolas), its cubic spline stands for "something smoother than trapezoids",
/// including the time to set it up, as ours needs none.

#include <benchmark/benchmark.h>
#include <gsl/gsl_integration.h>
#include <gsl/gsl_interp.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "host/embedded_host.h"
#include "ratio_reporter.h"
#include "tfunc/tfunc.h"

namespace {

using Numbers = std::vector<double>;

/// A table, its tabulated function and its GSL interpolant.
class Subject {
 public:
  explicit Subject(int knots, bool equalSteps = false) : f(knots) {
    std::mt19937_64 generator(static_cast<std::uint64_t>(knots));
    std::uniform_real_distribution<double> unit(0, 1);
    double position = 0;
    for (int i = 0; i < knots; ++i) {
      x.push_back(position);
      y.push_back(unit(generator));
      position += equalSteps ? 0.5 : 0.1 + unit(generator);
    }
    std::copy(x.begin(), x.end(), f.X);
    std::copy(y.begin(), y.end(), f.Y);
    linear.reset(gsl_interp_alloc(gsl_interp_linear, x.size()));
    gsl_interp_init(linear.get(), x.data(), y.data(), x.size());
    spline.reset(gsl_interp_alloc(gsl_interp_cspline, x.size()));
    gsl_interp_init(spline.get(), x.data(), y.data(), x.size());
  }

  std::int64_t Knots() const { return f.N; }
  double From() const { return x.front() + 0.05; }
  double To() const { return x.back() - 0.05; }

  double GslValue(double at) const {
    return gsl_interp_eval(linear.get(), x.data(), y.data(), at, accelerator.get());
  }
  double GslIntegral(double a, double b) const {
    return gsl_interp_eval_integ(linear.get(), x.data(), y.data(), a, b, accelerator.get());
  }
  double GslSplineIntegral(double a, double b) const {
    gsl_interp_init(spline.get(), x.data(), y.data(), x.size());
    return gsl_interp_eval_integ(spline.get(), x.data(), y.data(), a, b, accelerator.get());
  }

  Numbers x, y;
  TFunc f;

 private:
  using Interpolant = std::unique_ptr<gsl_interp, decltype(&gsl_interp_free)>;
  using Accelerator = std::unique_ptr<gsl_interp_accel, decltype(&gsl_interp_accel_free)>;

  Interpolant linear{nullptr, gsl_interp_free};
  Interpolant spline{nullptr, gsl_interp_free};
  Accelerator accelerator{gsl_interp_accel_alloc(), gsl_interp_accel_free};
};

void RequireClose(const std::string& what, double a, double b, double tolerance) {
  if (std::fabs(a - b) <= tolerance * std::max(1.0, std::fabs(b))) return;
  std::fprintf(stderr, "%s: %.17g and %.17g\n", what.c_str(), a, b);
  std::exit(1);
}

/// Times `work`, which handles `items` items and returns a number.
void Register(const std::string& subject, const std::string& peer, const std::string& rest,
              std::int64_t items, std::function<double()> work) {
  benchmark::RegisterBenchmark((subject + "/" + peer + "/" + rest).c_str(),
                               [=](benchmark::State& state) {
                                 for (auto _ : state) benchmark::DoNotOptimize(work());
                                 state.SetItemsProcessed(state.iterations() * items);
                               });
}

/// A way to compute something; the first is ours.
struct Contender {
  std::string peer;
  std::function<double()> work;
};

void RegisterAll(const std::string& subject, const std::string& rest, std::int64_t items,
                 double tolerance, const std::vector<Contender>& contenders) {
  const double ours = contenders.front().work();
  for (const Contender& contender : contenders) {
    RequireClose(subject + "/" + contender.peer, contender.work(), ours, tolerance);
    Register(subject, contender.peer, rest, items, contender.work);
  }
}

// Evaluation --------------------------------------------------------------------------------------

double StandardValue(const Subject& s, double at) {
  const auto upper = std::upper_bound(s.x.begin(), s.x.end(), at);
  if (upper == s.x.begin()) return s.y.front();
  if (upper == s.x.end()) return s.y.back();
  const auto i = static_cast<std::size_t>(upper - s.x.begin());
  return s.y[i - 1] + (s.y[i] - s.y[i - 1]) * (at - s.x[i - 1]) / (s.x[i] - s.x[i - 1]);
}

/// Sequences of arguments between the ends of the table, about half a million altogether, each
/// sequence of `perSequence` sorted where that is above 1.
Numbers MakeArguments(const Subject& s, std::int64_t perSequence) {
  constexpr std::int64_t kAltogether = 1 << 19;
  std::mt19937_64 generator(5);
  std::uniform_real_distribution<double> inside(s.x.front(), s.x.back());
  Numbers arguments;
  do {
    const auto begin = static_cast<std::ptrdiff_t>(arguments.size());
    for (std::int64_t i = 0; i < perSequence; ++i) arguments.push_back(inside(generator));
    std::sort(arguments.begin() + begin, arguments.end());
  } while (static_cast<std::int64_t>(arguments.size()) < kAltogether);
  return arguments;
}

template <class Function>
double SumOver(const Numbers& arguments, Function function) {
  double sum = 0;
  for (const double at : arguments) sum += function(at);
  return sum;
}

void RegisterEvaluation(const std::shared_ptr<Subject>& s, const std::string& order,
                        std::int64_t perSequence) {
  const auto arguments = std::make_shared<Numbers>(MakeArguments(*s, perSequence));
  RegisterAll(
      "f(x)", order + ", " + std::to_string(s->Knots()) + " knots",
      static_cast<std::int64_t>(arguments->size()), 1e-12,
      {{"tarn", [=] { return SumOver(*arguments, [&](double at) { return s->f(at); }); }},
       {"gsl", [=] { return SumOver(*arguments, [&](double at) { return s->GslValue(at); }); }},
       {"std",
        [=] { return SumOver(*arguments, [&](double at) { return StandardValue(*s, at); }); }}});
}

/// g at the knots of f, as the point-wise operators take it.
void RegisterPointwise(const std::shared_ptr<Subject>& s) {
  const auto g = std::make_shared<Subject>(static_cast<int>(s->Knots()) + 7);
  const auto target = std::make_shared<Numbers>(s->y);
  const auto withEach = [=](const std::function<void(std::size_t)>& change) {
    for (std::size_t i = 0; i < target->size(); ++i) change(i);
  };
  const double last = std::min(s->x.back(), g->x.back());
  RegisterAll(
      "f += g", std::to_string(s->Knots()) + " knots", s->Knots(), 1e300,
      {{"tarn",
        [=] {
          s->f += g->f;
          return s->f.Y[0];
        }},
       {"gsl",
        [=] {
          withEach([&](std::size_t i) { (*target)[i] += g->GslValue(std::min(s->x[i], last)); });
          return target->front();
        }},
       {"std", [=] {
          withEach([&](std::size_t i) { (*target)[i] += StandardValue(*g, s->x[i]); });
          return target->front();
        }}});
}

// Integrals ---------------------------------------------------------------------------------------

double StandardTrapezoids(const Subject& s, double a, double b) {
  Numbers x = {a};
  Numbers y = {StandardValue(s, a)};
  for (std::size_t i = 0; i < s.x.size(); ++i) {
    if (s.x[i] <= a || s.x[i] >= b) continue;
    x.push_back(s.x[i]);
    y.push_back(s.y[i]);
  }
  x.push_back(b);
  y.push_back(StandardValue(s, b));
  double sum = 0;
  for (std::size_t i = 1; i < x.size(); ++i) sum += (x[i] - x[i - 1]) * (y[i] + y[i - 1]) / 2;
  return sum;
}

/// A table of the running integral, as ours returns one.
struct RunningIntegral {
  explicit RunningIntegral(const Numbers& abscissae) : x(abscissae), sum(abscissae.size()) {}
  Numbers x, sum;
};

double StandardRunningTrapezoids(const Subject& s) {
  RunningIntegral integral(s.x);
  Numbers& sum = integral.sum;
  for (std::size_t i = 1; i < s.x.size(); ++i) {
    sum[i] = sum[i - 1] + (s.x[i] - s.x[i - 1]) * (s.y[i] + s.y[i - 1]) / 2;
  }
  benchmark::DoNotOptimize(integral.x.data());
  return sum.back();
}

/// Simpson's rule for unequal steps as textbooks give it, over the whole table of odd size.
double StandardSimpson(const Subject& s) {
  double sum = 0;
  for (std::size_t i = 1; i + 1 < s.x.size(); i += 2) {
    const double h0 = s.x[i] - s.x[i - 1];
    const double h1 = s.x[i + 1] - s.x[i];
    sum += (h0 + h1) / 6 *
           ((2 - h1 / h0) * s.y[i - 1] + (h0 + h1) * (h0 + h1) / (h0 * h1) * s.y[i] +
            (2 - h0 / h1) * s.y[i + 1]);
  }
  return sum;
}

double StandardRunningSimpson(const Subject& s) {
  RunningIntegral integral(s.x);
  Numbers& sum = integral.sum;
  const double h = s.x[1] - s.x[0];
  sum[1] = (5 * s.y[0] + 8 * s.y[1] - s.y[2]) * h / 12;
  for (std::size_t i = 2; i < s.x.size(); ++i) {
    if (i % 2 == 0) {
      sum[i] = sum[i - 2] + (s.y[i - 2] + 4 * s.y[i - 1] + s.y[i]) * h / 3;
    } else {
      sum[i] = sum[i - 1] + (8 * s.y[i - 1] + 5 * s.y[i] - s.y[i - 2]) * h / 12;
    }
  }
  benchmark::DoNotOptimize(integral.x.data());
  return sum.back();
}

void RegisterIntegrals(const std::shared_ptr<Subject>& s) {
  const std::string rest = std::to_string(s->Knots()) + " knots";
  const double a = s->From();
  const double b = s->To();
  RegisterAll("Integral(a; b)", rest, s->Knots(), 1e-12,
              {{"tarn", [=] { return s->f.Integral(a, b); }},
               {"gsl", [=] { return s->GslIntegral(a, b); }},
               {"std", [=] { return StandardTrapezoids(*s, a, b); }}});
  const double end = s->x.back();
  RegisterAll("IntegralSimpson(a; b)", rest, s->Knots(), 0.1,
              {{"tarn", [=] { return s->f.IntegralSimpson(0, end); }},
               {"gsl", [=] { return s->GslSplineIntegral(0, end); }},
               {"std", [=] { return StandardSimpson(*s); }}});
  // GSL has no running integral: its integral over each interval is added up.
  RegisterAll("Integral()", rest, s->Knots(), 1e-12,
              {{"tarn",
                [=] {
                  const std::unique_ptr<TFunc> sum(s->f.Integral());
                  return sum->Y[sum->N - 1];
                }},
               {"gsl",
                [=] {
                  RunningIntegral integral(s->x);
                  Numbers& sum = integral.sum;
                  for (std::size_t i = 1; i < sum.size(); ++i) {
                    sum[i] = sum[i - 1] + s->GslIntegral(s->x[i - 1], s->x[i]);
                  }
                  return sum.back();
                }},
               {"std", [=] { return StandardRunningTrapezoids(*s); }}});
}

void RegisterRunningSimpson(int knots) {
  const auto s = std::make_shared<Subject>(knots, true);
  RegisterAll("IntegralSimpson()", "equal steps, " + std::to_string(knots) + " knots", knots, 1e-12,
              {{"tarn",
                [=] {
                  const std::unique_ptr<TFunc> sum(s->f.IntegralSimpson());
                  return sum->Y[sum->N - 1];
                }},
               {"std", [=] { return StandardRunningSimpson(*s); }}});
}

// Logarithm of the integral of the exponential ----------------------------------------------------

double StandardLogIntegralExp(const Subject& s) {
  Numbers terms;
  for (std::size_t i = 1; i < s.x.size(); ++i) {
    const double dx = s.x[i] - s.x[i - 1];
    const double dy = s.y[i] - s.y[i - 1];
    terms.push_back(s.y[i - 1] + std::log(dx) + std::log((std::exp(dy) - 1) / dy));
  }
  const double largest = *std::max_element(terms.begin(), terms.end());
  double sum = 0;
  for (const double t : terms) sum += std::exp(t - largest);
  return largest + std::log(sum);
}

/// Adaptive quadrature of exp of the interpolant over each interval, which is smooth inside.
double GslLogIntegralExp(const Subject& s) {
  gsl_function integrand;
  integrand.function = [](double at, void* data) {
    return std::exp(static_cast<const Subject*>(data)->GslValue(at));
  };
  integrand.params = const_cast<Subject*>(&s);  // GSL knows no const
  double sum = 0;
  for (std::size_t i = 1; i < s.x.size(); ++i) {
    double part = 0;
    double error = 0;
    std::size_t evaluations = 0;
    gsl_integration_qng(&integrand, s.x[i - 1], s.x[i], 0, 1e-10, &part, &error, &evaluations);
    sum += part;
  }
  return std::log(sum);
}

void RegisterLogIntegralExp(const std::shared_ptr<Subject>& s) {
  RegisterAll("LogIntegralExp()", std::to_string(s->Knots()) + " knots", s->Knots(), 1e-10,
              {{"tarn", [=] { return s->f.LogIntegralExp(); }},
               {"gsl", [=] { return GslLogIntegralExp(*s); }},
               {"std", [=] { return StandardLogIntegralExp(*s); }}});
}

}  // namespace

int main(int count, char** words) {
  EmbeddedHost host;
  for (const int knots : {10, 1000, 100000}) {
    const auto s = std::make_shared<Subject>(knots);
    RegisterEvaluation(s, "random", 1);
    RegisterEvaluation(s, "sorted 1 per knot", knots);
    RegisterEvaluation(s, "sorted 10 per knot", 10 * knots);
  }
  for (const int knots : {11, 1001, 100001}) {
    const auto s = std::make_shared<Subject>(knots);
    RegisterIntegrals(s);
    RegisterRunningSimpson(knots);
    if (knots <= 1001) RegisterLogIntegralExp(s);
    RegisterPointwise(std::make_shared<Subject>(knots));
  }
  bench::RatioReporter reporter;
  return bench::RunAndPrintRatios(count, words, reporter);
}
