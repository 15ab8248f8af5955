#include <gsl/gsl_errno.h>
#include <gsl/gsl_multimin.h>
#include <nlopt.h>

#include <algorithm>

#include "optim_solvers.h"

namespace bench {
namespace {

/// Forward differences as `T_Climb` takes them: 5e-6 of the width of the box, backwards at its
/// upper face. `x` is restored.
void Gradient(Objective& objective, double* x, double f, double* gradient) {
  const Problem& problem = objective.GetProblem();
  for (std::size_t i = 0; i < problem.start.size(); ++i) {
    const double hi = problem.bounds[2 * i + 1];
    const double at = x[i];
    const double h = 5e-6 * (hi - problem.bounds[2 * i]);
    x[i] = at + h <= hi ? at + h : at - h;
    const double step = x[i] - at;
    gradient[i] = (objective(x) - f) / step;
    x[i] = at;
  }
}

double NloptObjective(unsigned n, const double* x, double* gradient, void* data) {
  Objective& objective = *static_cast<Objective*>(data);
  const double f = objective(x);
  if (gradient != nullptr) {
    std::vector<double> point(x, x + n);
    Gradient(objective, point.data(), f, gradient);
  }
  return f;
}

Solver Nlopt(const char* name, nlopt_algorithm algorithm) {
  return {name, [algorithm](Objective& objective, int limit) {
            const Problem& problem = objective.GetProblem();
            const auto n = static_cast<unsigned>(problem.start.size());
            std::vector<double> lower;
            std::vector<double> upper;
            for (unsigned i = 0; i < n; ++i) {
              lower.push_back(problem.bounds[2 * i]);
              upper.push_back(problem.bounds[2 * i + 1]);
            }
            nlopt_opt solver = nlopt_create(algorithm, n);
            nlopt_set_lower_bounds(solver, lower.data());
            nlopt_set_upper_bounds(solver, upper.data());
            nlopt_set_min_objective(solver, NloptObjective, &objective);
            nlopt_set_stopval(solver, objective.Target());
            nlopt_set_ftol_rel(solver, 1e-14);
            nlopt_set_xtol_rel(solver, 1e-12);
            const bool hasGradient = algorithm == NLOPT_LD_LBFGS;
            nlopt_set_maxeval(solver, hasGradient ? limit / static_cast<int>(n + 1) : limit);
            nlopt_srand(1);
            std::vector<double> x = problem.start;
            double f = 0;
            nlopt_optimize(solver, x.data(), &f);
            nlopt_destroy(solver);
          }};
}

double GslValue(const gsl_vector* x, void* data) {
  return (*static_cast<Objective*>(data))(x->data);
}

void GslValueAndGradient(const gsl_vector* x, void* data, double* f, gsl_vector* gradient) {
  *f = GslValue(x, data);
  std::vector<double> point(x->data, x->data + x->size);
  Gradient(*static_cast<Objective*>(data), point.data(), *f, gradient->data);
}

void GslGradient(const gsl_vector* x, void* data, gsl_vector* gradient) {
  double f = 0;
  GslValueAndGradient(x, data, &f, gradient);
}

std::vector<double> Widths(const Problem& problem) {
  std::vector<double> widths;
  for (std::size_t i = 0; i < problem.start.size(); ++i) {
    widths.push_back(problem.bounds[2 * i + 1] - problem.bounds[2 * i]);
  }
  return widths;
}

void RunGslSimplex(Objective& objective, int limit) {
  const Problem& problem = objective.GetProblem();
  const std::size_t n = problem.start.size();
  gsl_multimin_function function = {GslValue, n, &objective};
  gsl_vector_const_view start = gsl_vector_const_view_array(problem.start.data(), n);
  std::vector<double> steps = Widths(problem);
  for (double& step : steps) step *= 0.05;
  gsl_vector_view step = gsl_vector_view_array(steps.data(), n);
  gsl_multimin_fminimizer* s = gsl_multimin_fminimizer_alloc(gsl_multimin_fminimizer_nmsimplex2, n);
  gsl_multimin_fminimizer_set(s, &function, &start.vector, &step.vector);
  while (objective.Evaluations() < limit && !objective.IsReached() &&
         gsl_multimin_fminimizer_iterate(s) == GSL_SUCCESS &&
         gsl_multimin_fminimizer_size(s) > 1e-13) {
  }
  gsl_multimin_fminimizer_free(s);
}

void RunGslBfgs(Objective& objective, int limit) {
  const Problem& problem = objective.GetProblem();
  const std::size_t n = problem.start.size();
  gsl_multimin_function_fdf function = {GslValue, GslGradient, GslValueAndGradient, n, &objective};
  gsl_vector_const_view start = gsl_vector_const_view_array(problem.start.data(), n);
  const std::vector<double> widths = Widths(problem);
  gsl_multimin_fdfminimizer* s =
      gsl_multimin_fdfminimizer_alloc(gsl_multimin_fdfminimizer_vector_bfgs2, n);
  gsl_multimin_fdfminimizer_set(s, &function, &start.vector,
                                0.01 * *std::min_element(widths.begin(), widths.end()), 0.1);
  while (objective.Evaluations() < limit && !objective.IsReached() &&
         gsl_multimin_fdfminimizer_iterate(s) == GSL_SUCCESS) {
  }
  gsl_multimin_fdfminimizer_free(s);
}

}  // namespace

const std::vector<Solver>& PeerSolvers() {
  gsl_set_error_handler_off();
  static const std::vector<Solver> solvers = {Nlopt("nlopt LBFGS", NLOPT_LD_LBFGS),
                                              Nlopt("nlopt PRAXIS", NLOPT_LN_PRAXIS),
                                              Nlopt("nlopt SBPLX", NLOPT_LN_SBPLX),
                                              Nlopt("nlopt BOBYQA", NLOPT_LN_BOBYQA),
                                              {"gsl bfgs2", RunGslBfgs},
                                              {"gsl nmsimplex2", RunGslSimplex}};
  return solvers;
}

}  // namespace bench
