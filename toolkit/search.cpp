/// @file
/// Searches along one variable: "FindRoot", "FindMinimum".

#include <optim/bisection.h>
#include <optim/golden_section.h>

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
};

Interval ReadInterval(const Options& options, double accuracy) {
  Interval interval{
      Callback(options.Required("f")),
      {options.Required("from").FiniteNumber(), options.Required("to").FiniteNumber()},
      options.PositiveNumber("accuracy", accuracy)};
  if (interval.ends[0] == interval.ends[1]) Refuse("from and to must differ");
  return interval;
}

double CallAt(double x, void* extra) {
  return static_cast<Callback*>(static_cast<Variable*>(extra)->GetCppPointer())->At(x);
}

/// The native function that calls back, and the parameter that takes it there.
struct NativeForm {
  Variable function;
  Variable extra;

  explicit NativeForm(Callback& callback) {
    function.SetCppPointer(reinterpret_cast<void*>(&CallAt));
    extra.SetCppPointer(&callback);
  }
};

template <class Search>
double Run(Search& search, NativeForm& native, const Callback& callback) {
  search.SetExtraParam(native.extra);
  const double x = search.Solve();
  callback.RequireSuccess();
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

/// The value at an end of the interval, which the search is about to need.
double ValueAt(Callback& callback, double x) {
  const double value = callback.At(x);
  callback.RequireSuccess();
  return value;
}

void RequireSignChange(Interval& interval) {
  const double first = ValueAt(interval.function, interval.ends[0]);
  const double last = ValueAt(interval.function, interval.ends[1]);
  if ((first <= 0.0 && last >= 0.0) || (first >= 0.0 && last <= 0.0)) return;
  Refuse("f does not change its sign: f(" + NumberText(interval.ends[0]) + ") = " +
         NumberText(first) + ", f(" + NumberText(interval.ends[1]) + ") = " + NumberText(last));
}

void FindRoot(const Call& call) {
  const Options options(call.Argument(0), {"f", "from", "to", "accuracy"});
  Interval interval = ReadInterval(options, 1e-15);
  RequireSignChange(interval);
  NativeForm native(interval.function);
  BiSection_Double search(native.function, interval.ends, interval.accuracy);
  const double x = Run(search, native, interval.function);
  SetFound(call, search, x, ValueAt(interval.function, x));
}

void FindMinimum(const Call& call) {
  const Options options(call.Argument(0), {"f", "from", "to", "accuracy"});
  // A minimum is flat: closer than the root of the rounding error the values are all alike.
  Interval interval = ReadInterval(options, 1e-8);
  NativeForm native(interval.function);
  GoldSection_Double search(native.function, interval.ends, interval.accuracy);
  const double x = Run(search, native, interval.function);
  SetFound(call, search, x, ValueAt(interval.function, x));
}

constexpr ScriptFunction kRows[] = {
    {Handler<FindRoot>, "FindRoot(options)"},
    {Handler<FindMinimum>, "FindMinimum(options)"},
};

}  // namespace

std::span<const ScriptFunction> SearchRows() { return kRows; }

}  // namespace tarn::toolkit
