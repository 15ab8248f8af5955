#include "optim_solvers.h"
#include "tarn_base_math.h"

namespace bench {
namespace {

double Evaluate(T_MatVector<double>& x, Variable* extra) {
  return (*static_cast<Objective*>(extra->GetCppPointer()))(x);
}

Solver Make(const char* name, void (*solve)(T_Climb<double>&)) {
  return {name, [solve](Objective& objective, int /*limit*/) {
            const Problem& problem = objective.GetProblem();
            std::vector<double> bounds = problem.bounds;
            std::vector<double> start = problem.start;
            Variable function;
            function.SetCppPointer(reinterpret_cast<void*>(&Evaluate));
            Variable extra;
            extra.SetCppPointer(&objective);
            T_Climb<double> climb(function, problem.Dimension(), bounds.data(), start.data(),
                                  1e-10);
            climb.SetExtraParam(extra);
            climb.SetErrorIfMaxItterNumberExceed(0);
            climb.SetMaxItterationNumber(200);
            solve(climb);
          }};
}

}  // namespace

const std::vector<Solver>& OurSolvers() {
  using Climb = T_Climb<double>;
  static const std::vector<Solver> solvers = {
      Make("tarn", [](Climb& c) { c.Solve(); }), Make("tarn BFGS", [](Climb& c) { c.SolveBFGS(); }),
      Make("tarn DFP", [](Climb& c) { c.SolveDFP(); }),
      Make("tarn Powell", [](Climb& c) { c.SolvePowell(); })};
  return solvers;
}

}  // namespace bench
