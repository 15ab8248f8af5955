/// @file
/// "Minimise": the minimum of a script function of several variables inside a box.

#include <optim/climb.h>

#include <algorithm>
#include <cmath>

#include "callback.h"
#include "families.h"
#include "handler.h"
#include "linear.h"
#include "matrix_solving.h"
#include "results.h"

namespace tarn::toolkit {
namespace {

using Climb = T_Climb<double>;

const Names kMethods = {"Solve", "BFGS", "DFP", "Powell", "Coord"};
enum Method { kSolve, kBFGS, kDFP, kPowell, kCoord };

constexpr double kDefaultAccuracy = 1e-7;
constexpr int kDefaultIterations = 3000;
/// First step of the coordinate search as a share of the range.
constexpr double kDefaultFirstStep = 0.1;

/// Moves a point between its bounds, which the minimiser's rounding may have missed.
void MoveInside(T_MatVector<double>& x, const Numbers& bounds) {
  for (int i = 0; i < x.Dim(); ++i) {
    const double* ends = bounds.data() + std::ptrdiff_t{2} * i;
    x[i] = std::clamp(x[i], ends[0], ends[1]);
  }
}

/// The script functions and the box that they are called in; the minimiser's extra parameter leads
/// to them.
struct Functions {
  Numbers bounds;
  Callback objective;
  std::optional<Callback> derivative;
  std::optional<Callback> secondDerivative;

  void RequireSuccess() const {
    objective.RequireSuccess();
    if (derivative) derivative->RequireSuccess();
    if (secondDerivative) secondDerivative->RequireSuccess();
  }
};

Functions& FunctionsOf(Variable* extra) { return *static_cast<Functions*>(extra->GetCppPointer()); }

double Objective(T_MatVector<double>& x, Variable* extra) {
  Functions& functions = FunctionsOf(extra);
  MoveInside(x, functions.bounds);
  return functions.objective.At(x);
}

double Derivative(T_MatVector<double>& x, int i, Variable* extra) {
  Functions& functions = FunctionsOf(extra);
  MoveInside(x, functions.bounds);
  return functions.derivative->At(x, i);
}

double SecondDerivative(T_MatVector<double>& x, int i, int j, Variable* extra) {
  Functions& functions = FunctionsOf(extra);
  MoveInside(x, functions.bounds);
  return functions.secondDerivative->At(x, i, j);
}

/// A native function as the class library takes it.
template <class Native>
Variable NativeFunction(Native* function) {
  Variable value;
  value.SetCppPointer(reinterpret_cast<void*>(function));
  return value;
}

/// What the script asked for.
struct Request {
  Functions functions;
  Numbers start;
  Numbers minStep;
  Numbers maxStep;
  Numbers firstStep;
  double accuracy;
  int method;
  int iterations;
  bool isErrorAtLimit;

  int Dimension() const { return static_cast<int>(start.size()); }
  double Lower(std::size_t i) const { return functions.bounds[2 * i]; }
  double Upper(std::size_t i) const { return functions.bounds[2 * i + 1]; }
  double Width(std::size_t i) const { return Upper(i) - Lower(i); }
};

std::optional<Callback> FindCallback(const Options& options, const char* name) {
  const auto found = options.Find(name);
  return found ? std::optional<Callback>(Callback(*found)) : std::nullopt;
}

/// The start point, the middle of the box where none is given.
Numbers ReadStart(const Options& options, const Numbers& bounds) {
  const std::size_t count = bounds.size() / 2;
  Numbers start(count);
  const auto given = options.Find("start");
  if (given) start = given->ArrayOfLength(count, "bounds");
  for (std::size_t i = 0; i < count; ++i) {
    const double lower = bounds[2 * i];
    const double upper = bounds[2 * i + 1];
    if (!given) start[i] = lower + (upper - lower) / 2.0;
    if (start[i] >= lower && start[i] <= upper) continue;
    std::string refusal = "start[" + std::to_string(i + 1);
    refusal += "] = " + NumberText(start[i]) + " lies outside bounds[" + std::to_string(i + 1);
    refusal += "] = {" + NumberText(lower) + ", " + NumberText(upper) + '}';
    Refuse(refusal);
  }
  return start;
}

/// One step of 0 or more per variable, in its units; nothing where none are given.
Numbers ReadSteps(const Options& options, const char* name, std::size_t count) {
  const auto given = options.Find(name);
  if (!given) return {};
  Numbers steps = given->ArrayOfLength(count, "bounds");
  for (std::size_t i = 0; i < count; ++i) {
    if (!(steps[i] >= 0.0 && std::isfinite(steps[i]))) {
      given->Element(static_cast<int>(i)).RefuseKind("finite and not below 0");
    }
  }
  return steps;
}

Request ReadRequest(const Options& options) {
  Callback objective(options.Required("f"));
  auto derivative = FindCallback(options, "derivative");
  auto secondDerivative = FindCallback(options, "second_derivative");
  const Numbers bounds = options.Required("bounds").Bounds();
  const std::size_t count = bounds.size() / 2;
  return {{bounds, std::move(objective), std::move(derivative), std::move(secondDerivative)},
          ReadStart(options, bounds),
          ReadSteps(options, "min_step", count),
          ReadSteps(options, "max_step", count),
          ReadSteps(options, "first_step", count),
          options.PositiveNumber("accuracy", kDefaultAccuracy),
          options.Choice("method", kSolve, kMethods),
          options.Integer("max_iterations", kDefaultIterations, 1, 1000000000),
          options.Flag("error_at_limit", true)};
}

/// A column that refers to the numbers.
Column ColumnOver(Numbers& numbers) {
  return Column(numbers.data(), static_cast<int>(numbers.size()), 1);
}

void Configure(Climb& climb, const Options& options, Request& request) {
  Variable functions;
  functions.SetCppPointer(&request.functions);
  climb.SetExtraParam(functions);
  if (request.functions.derivative) {
    Variable derivative = NativeFunction(&Derivative);
    climb.SetDerivFunc(derivative);
  }
  if (request.functions.secondDerivative) {
    Variable derivative = NativeFunction(&SecondDerivative);
    climb.SetDeriv2Func(derivative);
  }
  if (!request.minStep.empty()) {
    Column steps = ColumnOver(request.minStep);
    climb.SetMinStep(steps);
  }
  if (!request.maxStep.empty()) {
    Column steps = ColumnOver(request.maxStep);
    climb.SetMaxStep(steps);
  }
  climb.SetMaxItterationNumber(request.iterations);
  climb.SetSymmetricDerivative(options.Flag("central", false) ? 1 : 0);
  climb.SetLimitDirectionStep(options.Flag("limit_step", false) ? 1 : 0);
  climb.SetSilent(options.Flag("trace", false) ? 0 : 1);
  // The error would take the place of one that the function raised; see `RequireSolution`.
  climb.SetErrorIfMaxItterNumberExceed(0);
}

void SolveByCoord(Climb& climb, const Request& request) {
  Numbers steps = request.firstStep;
  steps.resize(request.start.size(), 0.0);
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const double width = request.Width(i);
    steps[i] = steps[i] > 0.0 && width > 0.0 ? steps[i] / width : kDefaultFirstStep;
  }
  Column column = ColumnOver(steps);
  climb.SolveByCoord(column);
}

void Solve(Climb& climb, const Request& request) {
  switch (request.method) {
    case kBFGS:
      climb.SolveBFGS(request.iterations);
      break;
    case kDFP:
      climb.SolveDFP(request.iterations);
      break;
    case kPowell:
      climb.SolvePowell();
      break;
    case kCoord:
      SolveByCoord(climb, request);
      break;
    default:
      climb.Solve();
      break;
  }
}

/// Ends the function with the error of a search that has used up its iterations.
[[noreturn]] void RefuseExhaustedLimit() {
  const Tree* number = GetOwner()->GetConstant("ERR_SOLUTION_NOT_FOUND");
  if (number == nullptr) Refuse(GetStopReasonText(StopReason::kIterationLimit));
  TarnError(number->GetInt32());
  throw AlreadyRaised();
}

void RequireSolution(const Climb& climb, const Request& request) {
  request.functions.RequireSuccess();
  const StopReason reason = climb.GetStopReason();
  RequireSuccess(reason != StopReason::kMemoryExhausted);
  if (request.isErrorAtLimit && reason == StopReason::kIterationLimit) RefuseExhaustedLimit();
}

/// Twice the inverse of the second derivatives by the variables that may move, 0 for the others.
/// Null where the function does not bend upwards.
///
/// The class library's covariance gives variables along which the function does not bend, or which
/// are fixed, the square of their range.
std::unique_ptr<DenseMatrix> CovarianceOf(const DenseMatrix& hessian, const Request& request) {
  std::vector<int> free;
  for (int i = 0; i < request.Dimension(); ++i) {
    if (request.Width(static_cast<std::size_t>(i)) > 0.0) free.push_back(i);
  }
  auto covariance = MakeMatrix(request.Dimension(), request.Dimension());
  if (free.empty()) return covariance;
  const auto count = static_cast<int>(free.size());
  auto block = MakeMatrix(count, count);
  for (std::size_t i = 0; i < free.size(); ++i) {
    double* row = (*block)[static_cast<int>(i)];
    for (std::size_t j = 0; j < free.size(); ++j) row[j] = hessian(free[i], free[j]);
  }
  const auto inverse = FindPositiveInverse(*block);
  if (inverse == nullptr) return nullptr;
  for (std::size_t i = 0; i < free.size(); ++i) {
    const double* row = (*inverse)[static_cast<int>(i)];
    for (std::size_t j = 0; j < free.size(); ++j) (*covariance)(free[i], free[j]) = 2.0 * row[j];
  }
  return covariance;
}

/// Where second differences are taken about a point: two steps from every face at least. Nearer,
/// the class library's differences have unequal steps, and the slope enters them. Derivatives of
/// the script's own need no distance.
Column PlaceOfCurvature(const Column& point, const Request& request) {
  Column place(point);
  if (request.functions.secondDerivative) return place;
  for (int i = 0; i < place.Dim(); ++i) {
    const auto k = static_cast<std::size_t>(i);
    const bool isGiven = !request.minStep.empty() && request.minStep[k] > 0.0;
    const double step = isGiven ? request.minStep[k] : Climb::aMinStep * request.Width(k);
    const double distance = std::min(2.0 * step, request.Width(k) / 2.0);
    place[i] = std::max(place[i], request.Lower(k) + distance);
    place[i] = std::min(place[i], request.Upper(k) - distance);
  }
  return place;
}

/// Curvature at the minimum: "hessian", and where that can be inverted "covariance" and "errors".
void SetCurvature(Variable& record, Climb& climb, const Column& point, const Request& request) {
  Column place = PlaceOfCurvature(point, request);
  auto hessian = OwnMatrix(climb.GetHessian(place));
  request.functions.RequireSuccess();
  auto covariance = CovarianceOf(*hessian, request);
  SetMatrix(Member(record, "hessian"), std::move(hessian));
  if (covariance == nullptr) return;
  Numbers errors;
  for (int i = 0; i < point.Dim(); ++i) errors.push_back(std::sqrt((*covariance)(i, i)));
  SetMatrix(Member(record, "covariance"), std::move(covariance));
  SetVector(Member(record, "errors"), errors);
}

void SetSolution(const Call& call, Climb& climb, Request& request, bool withCurvature) {
  Variable& record = call.Result();
  Column point(climb.GetResult());
  MoveInside(point, request.functions.bounds);
  SetRecord(record);
  SetVector(Member(record, "point"), NumbersOf(point));
  Member(record, "value") = request.functions.objective.At(point);
  request.functions.RequireSuccess();
  Member(record, "evaluations") = climb.GetEvaluationCount();
  Member(record, "iterations") = climb.GetItterationCount();
  SetText(Member(record, "reason"), GetStopReasonText(climb.GetStopReason()));
  if (withCurvature) SetCurvature(record, climb, point, request);
}

/// One call at the start: a function that fails or gives no finite number there, from where no
/// method finds a way, is told of before the work.
void TryAtStart(Request& request) {
  const double value = request.functions.objective.At(ColumnOver(request.start));
  request.functions.RequireSuccess();
  if (std::isfinite(value)) return;
  std::string place;
  for (const double x : request.start) place += (place.empty() ? "{" : ", ") + NumberText(x);
  Refuse("f is " + NumberText(value) + " at the start " + place + '}');
}

void Minimise(const Call& call) {
  const Options options(
      call.Argument(0),
      {"f", "bounds", "start", "accuracy", "method", "max_iterations", "derivative",
       "second_derivative", "central", "min_step", "max_step", "first_step", "limit_step", "trace",
       "progress", "error_at_limit", "curvature"});
  Request request = ReadRequest(options);
  const bool withCurvature = options.Flag("curvature", true);
  Variable objective = NativeFunction(&Objective);
  Climb climb(objective, request.Dimension(), request.functions.bounds.data(), request.start.data(),
              request.accuracy);
  RequireSuccess(climb.GetDimension() == request.Dimension());
  Configure(climb, options, request);
  Variable window;
  if (options.Flag("progress", true)) {
    SetObject(window, "ProgressWnd");
    climb.SetProgressWnd(window);
  }
  TryAtStart(request);
  Solve(climb, request);
  RequireSolution(climb, request);
  SetSolution(call, climb, request, withCurvature);
}

constexpr ScriptFunction kRows[] = {{Handler<Minimise>, "Minimise(options)"}};

}  // namespace

std::span<const ScriptFunction> MinimiseRows() { return kRows; }

}  // namespace tarn::toolkit
