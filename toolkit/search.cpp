/// @file
/// Searches along one variable: "FindRoot", "FindMinimum".

#include <optim/bisection.h>
#include <optim/golden_section.h>

#include <cmath>
#include <optional>

#include "callback.h"
#include "families.h"
#include "handler.h"
#include "results.h"

namespace tarn::toolkit {
namespace {

/// What both searches are asked for.
struct Interval {
  Callback function;
  double ends[2];
  double accuracy;  ///< relative to the width
  std::optional<double> noNumberAt = std::nullopt;

  double ValueAt(double x) {
    const double value = function.At(x);
    if (std::isnan(value) && !noNumberAt) noNumberAt = x;
    return value;
  }
  /// Ends the function when a call failed or gave NaN.
  void RequireSuccess() const {
    function.RequireSuccess();
    if (noNumberAt) Refuse("f(" + NumberText(*noNumberAt) + ") is nan");
  }
};

Interval ReadInterval(const Options& options, double accuracy) {
  Interval interval{
      Callback(options.Required("f")),
      {options.Required("from").FiniteNumber(), options.Required("to").FiniteNumber()},
      options.PositiveNumber("accuracy", accuracy)};
  if (interval.ends[0] == interval.ends[1]) Refuse("from and to must differ");
  if (!std::isfinite(interval.ends[1] - interval.ends[0])) {
    Refuse("from " + NumberText(interval.ends[0]) + " to " + NumberText(interval.ends[1]) +
           " is too wide");
  }
  return interval;
}

double CallAt(double x, void* extra) {
  return static_cast<Interval*>(static_cast<Variable*>(extra)->GetCppPointer())->ValueAt(x);
}

/// The native function that calls back, and the parameter that takes it there.
struct NativeForm {
  Variable function;
  Variable extra;

  explicit NativeForm(Interval& interval) {
    function.SetCppPointer(reinterpret_cast<void*>(&CallAt));
    extra.SetCppPointer(&interval);
  }
};

template <class Search>
double Run(Search& search, NativeForm& native, const Interval& interval) {
  search.SetExtraParam(native.extra);
  const double x = search.Solve();
  interval.RequireSuccess();
  RequireSuccess();
  return x;
}

template <class Search>
void SetFound(const Call& call, const Search& search, double x, double value) {
  SetRecord(call.Result());
  Member(call.Result(), "x") = x;
  Member(call.Result(), "value") = value;
  Member(call.Result(), "evaluations") = search.GetEvaluationCount();
  SetText(Member(call.Result(), "reason"), GetStopReasonText(search.GetStopReason()));
}

/// The value at a place that matters, at an end of the interval or where the search has ended.
double ValueAt(Interval& interval, double x) {
  const double value = interval.ValueAt(x);
  interval.RequireSuccess();
  return value;
}

void RequireSignChange(Interval& interval) {
  const double first = ValueAt(interval, interval.ends[0]);
  const double last = ValueAt(interval, interval.ends[1]);
  if ((first <= 0.0 && last >= 0.0) || (first >= 0.0 && last <= 0.0)) return;
  Refuse("f does not change its sign: f(" + NumberText(interval.ends[0]) + ") = " +
         NumberText(first) + ", f(" + NumberText(interval.ends[1]) + ") = " + NumberText(last));
}

void FindRoot(const Call& call) {
  const Options options(call.Argument(0), {"f", "from", "to", "accuracy"});
  Interval interval = ReadInterval(options, 1e-15);
  RequireSignChange(interval);
  NativeForm native(interval);
  BiSection_Double search(native.function, interval.ends, interval.accuracy);
  const double x = Run(search, native, interval);
  SetFound(call, search, x, ValueAt(interval, x));
}

void FindMinimum(const Call& call) {
  const Options options(call.Argument(0), {"f", "from", "to", "accuracy"});
  // A minimum is flat: closer than the root of the rounding error the values are all alike.
  Interval interval = ReadInterval(options, 1e-8);
  NativeForm native(interval);
  GoldSection_Double search(native.function, interval.ends, interval.accuracy);
  const double x = Run(search, native, interval);
  SetFound(call, search, x, ValueAt(interval, x));
}

constexpr ScriptFunction kRows[] = {
    {Handler<FindRoot>, "FindRoot(options)"},
    {Handler<FindMinimum>, "FindMinimum(options)"},
};

}  // namespace

std::span<const ScriptFunction> SearchRows() { return kRows; }

}  // namespace tarn::toolkit
