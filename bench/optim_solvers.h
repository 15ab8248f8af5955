#ifndef TARN_BENCH_OPTIM_SOLVERS_H
#define TARN_BENCH_OPTIM_SOLVERS_H

/// @file
/// One way to call all minimisers: a problem, a limit of evaluations, an objective that counts.

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "problems/problem.h"

namespace bench {

using Problem = problems::Problem<double>;

/// The objective of one run. It notes when its value first reaches the target.
class Objective {
 public:
  Objective(const Problem& problem, double target)
      : problem_(problem), target_(target), begin_(Clock::now()) {}

  double operator()(const double* x) {
    const double value = problem_.f(x);
    ++evaluations_;
    if (value <= target_ && !reachedAt_) {
      reachedAt_ = evaluations_;
      seconds_ = std::chrono::duration<double>(Clock::now() - begin_).count();
    }
    return value;
  }

  const Problem& GetProblem() const { return problem_; }
  double Target() const { return target_; }
  std::int64_t Evaluations() const { return evaluations_; }
  bool IsReached() const { return reachedAt_ != 0; }
  /// Evaluations and time until the target was reached.
  std::int64_t ReachedAt() const { return reachedAt_; }
  double SecondsToTarget() const { return seconds_; }

 private:
  using Clock = std::chrono::steady_clock;

  const Problem& problem_;
  double target_;
  Clock::time_point begin_;
  std::int64_t evaluations_ = 0;
  std::int64_t reachedAt_ = 0;
  double seconds_ = 0;
};

/// A minimiser. It ends by itself, after about `limit` evaluations, or, where it can be told to, at
/// the target.
struct Solver {
  std::string name;
  std::function<void(Objective&, int limit)> run;
};

/// `T_Climb`: the method to start with, and the others.
const std::vector<Solver>& OurSolvers();
/// NLopt and GSL.
const std::vector<Solver>& PeerSolvers();

}  // namespace bench

#endif
