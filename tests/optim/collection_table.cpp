#include "collection_table.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <sstream>

#include "problems/more_garbow_hillstrom.h"

namespace collection {
namespace {

/// The problem that the native objective below computes; solves run one at a time.
template <class T>
struct Current {
  static inline const problems::Problem<T>* problem = nullptr;
  static inline std::int64_t outside = 0;

  static T Evaluate(T_MatVector<T>& x, Variable* /*extra*/) {
    bool inside = true;
    for (int i = 0; i < x.Dim(); ++i) {
      inside = inside && problem->Contains(static_cast<std::size_t>(i), x[i]);
    }
    if (!inside) ++outside;
    return problem->f(x);
  }
};

/// Minima are published to six digits.
constexpr double kPublishedDigits = 5e-6;

/// Whether all but a small part of the way from `start` down to `minimum` is done.
bool IsReached(double start, double value, double minimum, double tolerance) {
  return value - minimum <= tolerance * (start - minimum) + kPublishedDigits * minimum;
}

template <class T>
Outcome Judge(const problems::Problem<T>& problem, double start, double value) {
  const double tolerance = Tolerance<T>();
  if (IsReached(start, value, problem.minimum, tolerance)) return Outcome::kMinimum;
  // From above, so that a way past the local minimum does not count as one to it.
  const bool isLocal = IsReached(start, value, problem.localMinimum, tolerance) &&
                       value > problem.localMinimum * (1 - 1e-4);
  return isLocal ? Outcome::kLocalMinimum : Outcome::kElsewhere;
}

void PrintCell(std::ostream& table, const Result& result) {
  const bool reached = result.outcome != Outcome::kElsewhere;
  table << (reached ? " " : " (") << result.evaluations << (reached ? "" : ")")
        << (result.outcome == Outcome::kLocalMinimum ? " * |" : " |");
}

template <class T>
void PrintTable(std::ostream& table, const char* title) {
  const auto& methods = Methods<T>();
  const auto all = problems::MoreGarbowHillstrom<T>::All();
  table << "| " << title << " | N |";
  for (const auto& method : methods) table << ' ' << method.name << " |";
  table << "\n|---|---|";
  for (std::size_t k = 0; k < methods.size(); ++k) table << "---|";
  std::vector<int> reached(methods.size(), 0);
  for (const auto& problem : all) {
    table << "\n| " << problem.name << " | " << problem.Dimension() << " |";
    for (std::size_t k = 0; k < methods.size(); ++k) {
      const Result result = Solve(problem, methods[k]);
      if (result.outcome != Outcome::kElsewhere) ++reached[k];
      PrintCell(table, result);
    }
  }
  table << "\n| reached | of " << all.size() << " |";
  for (const int count : reached) table << ' ' << count << " |";
  table << '\n';
}

}  // namespace

template <class T>
const std::vector<Method<T>>& Methods() {
  using Climb = T_Climb<T>;
  static const std::vector<Method<T>> methods = {
      {"`Solve`", [](Climb& c) { c.Solve(); }},
      {"`SolveBFGS`", [](Climb& c) { c.SolveBFGS(); }},
      {"`SolveDFP`", [](Climb& c) { c.SolveDFP(); }},
      {"`SolvePowell`", [](Climb& c) { c.SolvePowell(); }},
      {"`SolveByCoord`", [](Climb& c) {
         T_MatVectorCol<T> steps(c.GetDimension());
         steps += T(0.1);
         c.SolveByCoord(steps);
       }}};
  return methods;
}

template <class T>
Result Solve(const problems::Problem<T>& problem, const Method<T>& method) {
  Current<T>::problem = &problem;
  Current<T>::outside = 0;
  Variable function;
  function.SetCppPointer(reinterpret_cast<void*>(&Current<T>::Evaluate));
  std::vector<T> bounds = problem.bounds;
  std::vector<T> start = problem.start;
  T_Climb<T> climb(function, problem.Dimension(), bounds.data(), start.data(), Accuracy<T>());
  climb.SetErrorIfMaxItterNumberExceed(0);
  climb.SetMaxItterationNumber(200);
  method.run(climb);
  const double startValue = static_cast<double>(problem.f(problem.start.data()));
  const double value = static_cast<double>(problem.f(climb.GetResult()));
  return {Judge(problem, startValue, value),
          climb.GetEvaluationCount(),
          startValue,
          value,
          Current<T>::outside,
          climb.GetStopReason()};
}

std::string Tables() {
  std::ostringstream tables;
  PrintTable<double>(tables, "`double`");
  tables << '\n';
  PrintTable<float>(tables, "`float`");
  return tables.str();
}

std::uint64_t LibraryFingerprint() {
  std::uint64_t hash = 0;
  const auto add = [&hash](double value) {
    hash = (hash ^ std::bit_cast<std::uint64_t>(value)) * 0xff51afd7ed558ccdU;
    hash ^= hash >> 32;
  };
  for (int i = -2000; i <= 2000; ++i) {
    const double x = 0.00731 * i;
    const auto y = static_cast<float>(x);
    for (const double value : {std::exp(x), std::sin(x), std::cos(x), std::atan(x)}) add(value);
    for (const float value : {std::exp(y), std::sin(y), std::cos(y), std::atan(y)}) {
      add(static_cast<double>(value));
    }
  }
  return hash;
}

template const std::vector<Method<float>>& Methods<float>();
template const std::vector<Method<double>>& Methods<double>();
template Result Solve(const problems::Problem<float>&, const Method<float>&);
template Result Solve(const problems::Problem<double>&, const Method<double>&);

}  // namespace collection
