/// @file
/// The minimiser beside NLopt and GSL, the linear fit beside GSL.
///
/// First a table: evaluations until each solver reaches the minimum of each problem of the standard
/// collection, 1e-5 of the way from the start left to go at most, with the time of that. Gradients
/// are forward differences with the step of `T_Climb` and count as evaluations. NLopt and GSL's
/// programs are told to stop at the target. GSL knows no box.
///
/// Then the times of single evaluations and of the fit.

#include <benchmark/benchmark.h>
#include <gsl/gsl_multifit.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>

#include "host/embedded_host.h"
#include "optim_solvers.h"
#include "problems/more_garbow_hillstrom.h"
#include "ratio_reporter.h"
#include "tarn_base_math.h"

namespace {

using bench::Objective;
using bench::Problem;
using bench::Solver;

constexpr int kEvaluationLimit = 30000;

// The collection ----------------------------------------------------------------------------------

/// Evaluations to the target, 0 if it is not reached, and the least time of some runs.
struct Run {
  std::int64_t evaluations = 0;
  double seconds = 0;
};

Run RunToTarget(const Solver& solver, const Problem& problem) {
  const double start = problem.f(problem.start.data());
  const double target = problem.minimum + 1e-5 * (start - problem.minimum) + 5e-6 * problem.minimum;
  Run best;
  for (int repetition = 0; repetition < 5; ++repetition) {
    Objective objective(problem, target);
    solver.run(objective, kEvaluationLimit);
    if (!objective.IsReached()) return {};
    const double seconds = objective.SecondsToTarget();
    best = {objective.ReachedAt(), repetition == 0 ? seconds : std::min(best.seconds, seconds)};
  }
  return best;
}

void PrintCollection(const std::vector<Solver>& solvers) {
  std::printf("Evaluations to the minimum, and microseconds.\n\n| problem | N |");
  for (const Solver& solver : solvers) std::printf(" %s |", solver.name.c_str());
  std::printf("\n|---|---|");
  for (std::size_t k = 0; k < solvers.size(); ++k) std::printf("---|");
  std::vector<int> reached(solvers.size(), 0);
  const auto all = problems::MoreGarbowHillstrom<double>::All();
  for (const Problem& problem : all) {
    std::printf("\n| %s | %d |", problem.name.c_str(), problem.Dimension());
    for (std::size_t k = 0; k < solvers.size(); ++k) {
      const Run run = RunToTarget(solvers[k], problem);
      if (run.evaluations == 0) {
        std::printf(" - |");
        continue;
      }
      ++reached[k];
      std::printf(" %lld, %.0f |", static_cast<long long>(run.evaluations), 1e6 * run.seconds);
    }
  }
  std::printf("\n| reached | of %zu |", all.size());
  for (const int count : reached) std::printf(" %d |", count);
  std::printf("\n\n");
}

// Time per evaluation -----------------------------------------------------------------------------

/// A valley in the first two of n variables that costs next to nothing to compute.
Problem CheapProblem(int n) {
  Problem problem;
  problem.name = std::to_string(n);
  for (int i = 0; i < n; ++i) problem.start.push_back(i % 2 == 0 ? -1.2 : 1);
  problem.bounds = problems::Box<double>(n, -5, 10);
  problem.f = [](const double* x) {
    const double bend = x[1] - x[0] * x[0];
    return 100 * bend * bend + (1 - x[0]) * (1 - x[0]);
  };
  return problem;
}

void RegisterOverhead(const std::string& subject, const std::string& peer, const Solver& solver,
                      int n) {
  const std::string name = subject + "/" + peer + "/" + std::to_string(n) + " variables";
  benchmark::RegisterBenchmark(name.c_str(), [solver, n](benchmark::State& state) {
    const Problem problem = CheapProblem(n);
    std::int64_t evaluations = 0;
    for (auto _ : state) {
      Objective objective(problem, -1);
      solver.run(objective, 2000);
      evaluations += objective.Evaluations();
    }
    state.SetItemsProcessed(evaluations);
  });
}

void RegisterOverheads() {
  for (const Solver& ours : bench::OurSolvers()) {
    for (const int n : {2, 10, 50}) {
      RegisterOverhead(ours.name + ", evaluation", bench::kOurs, ours, n);
      for (const Solver& peer : bench::PeerSolvers()) {
        RegisterOverhead(ours.name + ", evaluation", peer.name, peer, n);
      }
    }
  }
}

/// Evaluations of a script function by way of the minimiser.
void RegisterScript(EmbeddedHost& host) {
  for (const int n : {2, 10}) {
    const std::string name = "script, evaluation/tarn/" + std::to_string(n) + " variables";
    benchmark::RegisterBenchmark(name.c_str(), [&host, n](benchmark::State& state) {
      Variable function;
      host.Evaluate("return function(x) local b = x[2] - x[1]^2 return 100*b*b + (1 - x[1])^2 end",
                    &function);
      Problem problem = CheapProblem(n);
      std::int64_t evaluations = 0;
      for (auto _ : state) {
        T_Climb<double> climb(function, n, problem.bounds.data(), problem.start.data(), 1e-10);
        climb.SolveDFP();
        evaluations += climb.GetEvaluationCount();
      }
      state.SetItemsProcessed(evaluations);
    });
  }
}

/// Requests for memory, host heap and array new, per evaluation of each of our methods.
void PrintHeapRequests(EmbeddedHost& host) {
  std::printf("Requests to the host heap per evaluation, 10 variables:");
  const Problem problem = CheapProblem(10);
  for (const Solver& ours : bench::OurSolvers()) {
    Objective objective(problem, -1);
    host.SetHeapFailure({});
    ours.run(objective, kEvaluationLimit);
    std::printf("  %s %.2f", ours.name.c_str(),
                static_cast<double>(host.HeapRequestCount()) /
                    static_cast<double>(objective.Evaluations()));
  }
  std::printf("\n\n");
}

// The fit -----------------------------------------------------------------------------------------

constexpr int kFunctions = 5;
using Basis = double (*)(double, void*);

const Basis kBasis[kFunctions] = {
    [](double, void*) { return 1.0; }, [](double x, void*) { return x; },
    [](double x, void*) { return x * x; }, [](double x, void*) { return x * x * x; },
    [](double x, void*) { return x * x * x * x; }};

/// Points of a noisy polynomial on [-1, 1] with different errors.
struct Points {
  explicit Points(int n) : x(static_cast<std::size_t>(n)), y(x), var(x), weight(x) {
    std::mt19937_64 random(42);
    std::normal_distribution<double> normal;
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] = -1 + 2 * static_cast<double>(i) / static_cast<double>(n);
      const double error = 10 + static_cast<double>(i % 7);
      var[i] = error * error;
      weight[i] = 1 / var[i];
      y[i] = 1 - x[i] + 2 * x[i] * x[i] + error * normal(random);
    }
  }

  std::vector<double> x, y, var, weight;
};

std::vector<double> FitByTarn(Points& points) {
  Basis basis[kFunctions];
  std::copy(kBasis, kBasis + kFunctions, basis);
  T_Line_LSQM2<double> fit(basis, kFunctions, points.y.data(), points.x.data(), points.var.data(),
                           static_cast<int>(points.x.size()), 1e-9);
  fit.DoIt(0);
  return {fit.GetResult(), fit.GetResult() + kFunctions};
}

/// With the time to fill the matrix of the basis functions, which GSL's caller has to do.
std::vector<double> FitByGsl(Points& points) {
  const std::size_t n = points.x.size();
  gsl_matrix* const design = gsl_matrix_alloc(n, kFunctions);
  gsl_matrix* const covariance = gsl_matrix_alloc(kFunctions, kFunctions);
  gsl_multifit_linear_workspace* const work = gsl_multifit_linear_alloc(n, kFunctions);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t k = 0; k < kFunctions; ++k) {
      gsl_matrix_set(design, i, k, kBasis[k](points.x[i], nullptr));
    }
  }
  gsl_vector_const_view w = gsl_vector_const_view_array(points.weight.data(), n);
  gsl_vector_const_view y = gsl_vector_const_view_array(points.y.data(), n);
  std::vector<double> result(kFunctions);
  gsl_vector_view c = gsl_vector_view_array(result.data(), kFunctions);
  double chiSquare = 0;
  gsl_multifit_wlinear(design, &w.vector, &y.vector, &c.vector, covariance, &chiSquare, work);
  gsl_multifit_linear_free(work);
  gsl_matrix_free(covariance);
  gsl_matrix_free(design);
  return result;
}

void RequireAgreement(Points& points) {
  const std::vector<double> ours = FitByTarn(points);
  const std::vector<double> theirs = FitByGsl(points);
  for (std::size_t k = 0; k < kFunctions; ++k) {
    if (std::fabs(ours[k] - theirs[k]) < 1e-6 * (1 + std::fabs(theirs[k]))) continue;
    std::fprintf(stderr, "coefficient %zu: %.15g, GSL %.15g\n", k, ours[k], theirs[k]);
    std::exit(1);
  }
}

void RegisterFits() {
  for (const int n : {100, 10000, 1000000}) {
    const auto points = std::make_shared<Points>(n);
    const auto add = [&](const char* peer, std::vector<double> (*fit)(Points&)) {
      const std::string name =
          std::string("fit, point/") + peer + "/" + std::to_string(n) + " points, 5 functions";
      benchmark::RegisterBenchmark(name.c_str(), [points, fit](benchmark::State& state) {
        RequireAgreement(*points);
        for (auto _ : state) benchmark::DoNotOptimize(fit(*points));
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points->x.size()));
      });
    };
    add("tarn", FitByTarn);
    add("gsl", FitByGsl);
  }
}

}  // namespace

int main(int count, char** words) {
  EmbeddedHost host;
  host.SetOutput([](std::string_view) {});
  std::vector<Solver> solvers = bench::OurSolvers();
  const auto& peers = bench::PeerSolvers();
  solvers.insert(solvers.end(), peers.begin(), peers.end());
  PrintCollection(solvers);
  PrintHeapRequests(host);
  std::fflush(stdout);
  RegisterOverheads();
  RegisterScript(host);
  RegisterFits();
  bench::RatioReporter reporter;
  return bench::RunAndPrintRatios(count, words, reporter);
}
