#include "optim/golden_section.h"

#include <algorithm>
#include <cmath>

#include "optim/golden_bracket.h"
#include "optim/search_host.h"

namespace tarn {
namespace {

constexpr int kDefaultMaxIterations = 1000;

/// Splits of one run. A function that is higher inside than at both ends of every part would
/// otherwise be split until the parts hold no numbers, doubling their count each time.
constexpr int kSplitLimit = 10000;

/// Why a search that has left its loop ended.
StopReason ReasonForEnd(const GoldenBracket<double>& bracket, double lastValue, bool shrinks) {
  if (std::isnan(bracket.fx) || std::isnan(lastValue)) return StopReason::kNotANumber;
  return shrinks ? StopReason::kConvergedStep : StopReason::kNothingToShrink;
}

template <class T>
T SearchByGoldenSection(const T* boundaries, T (*f)(T, void*), void* extra, T accuracy) {
  GoldenBracket<T> bracket{boundaries[0], boundaries[1], T(0), T(0), T(0), T(0)};
  const T scale =
      std::max(bracket.b - bracket.a, (std::fabs(bracket.a) + std::fabs(bracket.b)) * T(0.5));
  bracket.fb = f(bracket.b, extra);
  bracket.fa = f(bracket.a, extra);
  bracket.x = bracket.FirstPoint();
  bracket.fx = f(bracket.x, extra);
  bool shrinks = true;
  while (shrinks && std::fabs(bracket.b - bracket.a) / scale > accuracy) {
    const bool right = bracket.GoesRight();
    const T u = bracket.NextPoint(right);
    shrinks = bracket.Take(u, f(u, extra), right);
  }
  return bracket.Answer();
}

}  // namespace
}  // namespace tarn

GoldSection_Double::GoldSection_Double(Variable& function, double* boundaries, double accuracy)
    : accuracy_(accuracy),
      maxIterations_(tarn::kDefaultMaxIterations),
      silent_(1),
      function_(function),
      boundaries_{boundaries[0], boundaries[1]},
      result_((boundaries[0] + boundaries[1]) * 0.5),
      stopReason_(tarn::StopReason::kNotRun),
      evaluationCount_(0),
      iterationCount_(0),
      splitsLeft_(0) {}

GoldSection_Double::GoldSection_Double(const GoldSection_Double& other) = default;
GoldSection_Double::GoldSection_Double(GoldSection_Double&& other) noexcept = default;
GoldSection_Double& GoldSection_Double::operator=(const GoldSection_Double& other) = default;
GoldSection_Double& GoldSection_Double::operator=(GoldSection_Double&& other) noexcept = default;
GoldSection_Double::~GoldSection_Double() = default;

double GoldSection_Double::Solve() {
  evaluationCount_ = 0;
  iterationCount_ = 0;
  splitsLeft_ = tarn::kSplitLimit;
  const tarn::ObjectiveErrorWatch watch;
  const double answer = SearchInterval();
  stopReason_ = watch.Reason(stopReason_);
  return answer;
}

/// Searches the interval that the boundaries hold at present.
double GoldSection_Double::SearchInterval() {
  tarn::GoldenBracket<double> bracket{boundaries_[0], boundaries_[1], 0, 0, 0, 0};
  bracket.fb = Func(bracket.b);
  TraceResult(bracket.b, bracket.fb);
  bracket.fa = Func(bracket.a);
  TraceResult(bracket.a, bracket.fa);
  bracket.x = bracket.FirstPoint();
  bracket.fx = Func(bracket.x);
  if (bracket.fx > bracket.fb && bracket.fx > bracket.fa && splitsLeft_ > 0) {
    return SearchBothParts(bracket.x);
  }
  TraceResult(bracket.x, bracket.fx);
  Shrink(bracket);
  result_ = bracket.Answer();
  return result_;
}

void GoldSection_Double::Shrink(tarn::GoldenBracket<double>& bracket) {
  const double width = std::fabs(bracket.b - bracket.a);
  double lastValue = bracket.fx;
  bool shrinks = width != 0;
  while (shrinks && std::fabs(bracket.b - bracket.a) / width > accuracy_) {
    const bool right = bracket.GoesRight();
    const double u = bracket.NextPoint(right);
    lastValue = Func(u);
    TraceResult(u, lastValue);
    ++iterationCount_;
    shrinks = bracket.Take(u, lastValue, right);
  }
  stopReason_ = tarn::ReasonForEnd(bracket, lastValue, shrinks);
}

double GoldSection_Double::SearchBothParts(double split) {
  --splitsLeft_;
  const double a = boundaries_[0];
  const double b = boundaries_[1];
  boundaries_[1] = split;
  const double r1 = SearchInterval();
  const tarn::StopReason reason1 = stopReason_;
  const double f1 = Func(r1);
  boundaries_[0] = split;
  boundaries_[1] = b;
  const double r2 = SearchInterval();
  const double f2 = Func(r2);
  boundaries_[0] = a;
  boundaries_[1] = b;
  if (f2 <= f1) return r2;
  stopReason_ = reason1;
  return r1;
}

double GoldSection_Double::Func(double x) {
  ++evaluationCount_;
  using Function = double (*)(double, void*);
  if (auto* native = tarn::NativeFunction<Function>(function_)) return native(x, &extraParam_);
  return tarn::CallScriptFunction(function_, x, extraParam_);
}

void GoldSection_Double::TraceResult(double x, double f) const {
  if (silent_ == 0) tarn::TraceArgument(x, f);
}

double* GoldSection_Double::GetBoundaries() { return boundaries_; }

void GoldSection_Double::SetExtraParam(Variable& extra) { extraParam_ = extra; }

void GoldSection_Double::SetSilent(int silent) { silent_ = silent; }

tarn::StopReason GoldSection_Double::GetStopReason() const { return stopReason_; }
std::int64_t GoldSection_Double::GetEvaluationCount() const { return evaluationCount_; }
std::int64_t GoldSection_Double::GetItterationCount() const { return iterationCount_; }

double GoldSection(double* const boundaries, double (*f)(double, void*), void* extra,
                   double accuracy) {
  return tarn::SearchByGoldenSection(boundaries, f, extra, accuracy);
}

float GoldSection_f(float* const boundaries, float (*f)(float, void*), void* extra,
                    float accuracy) {
  return tarn::SearchByGoldenSection(boundaries, f, extra, accuracy);
}
