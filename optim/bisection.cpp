#include "optim/bisection.h"

#include <cmath>

#include "optim/search_host.h"

namespace tarn {
namespace {

constexpr int kDefaultMaxIterations = 1000;

/// The reason of a search whose last value is `value`.
StopReason ReasonAt(double value, StopReason reason) {
  return std::isnan(value) ? StopReason::kNotANumber : reason;
}

}  // namespace
}  // namespace tarn

BiSection_Double::BiSection_Double(Variable& function, double* boundaries, double accuracy)
    : accuracy_(accuracy),
      maxIterations_(tarn::kDefaultMaxIterations),
      status_(1),
      extraParamPtr_(nullptr),
      extraMode_(0),
      silent_(1),
      function_(function),
      boundaries_{boundaries[0], boundaries[1]},
      result_((boundaries[0] + boundaries[1]) * 0.5),
      stopReason_(tarn::StopReason::kNotRun),
      evaluationCount_(0),
      iterationCount_(0) {}

BiSection_Double::BiSection_Double(const BiSection_Double& other) = default;
BiSection_Double::BiSection_Double(BiSection_Double&& other) noexcept = default;
BiSection_Double& BiSection_Double::operator=(const BiSection_Double& other) = default;
BiSection_Double& BiSection_Double::operator=(BiSection_Double&& other) noexcept = default;
BiSection_Double::~BiSection_Double() = default;

double BiSection_Double::Solve() {
  evaluationCount_ = 0;
  iterationCount_ = 0;
  const tarn::ObjectiveErrorWatch watch;
  result_ = Search();
  stopReason_ = watch.Reason(stopReason_);
  return result_;
}

double BiSection_Double::Search() {
  const double a = boundaries_[0];
  const double b = boundaries_[1];
  status_ = 0;
  if (std::fabs(b - a) == 0) return End(tarn::StopReason::kNothingToShrink, b);
  const double fb = Func(b);
  if (fb == 0) return End(tarn::StopReason::kConvergedValue, b);
  TraceResult(b, fb);
  const double fa = Func(a);
  if (fa == 0) return End(tarn::StopReason::kConvergedValue, a);
  TraceResult(a, fa);
  if (fa * fb > 0) {
    status_ = 1;
    return End(tarn::StopReason::kNoSignChange, NearerEnd(fa, fb));
  }
  return Halve(a, b, fb);
}

double BiSection_Double::Halve(double a, double b, double fb) {
  const double width = std::fabs(b - a);
  double middle = (a + b) * 0.5;
  double fm = Func(middle);
  if (fm == 0) return End(tarn::StopReason::kConvergedValue, middle);
  TraceResult(middle, fm);
  while (std::fabs(b - a) / width > accuracy_) {
    double& end = fm * fb > 0 ? b : a;
    if (end == middle) return End(tarn::ReasonAt(fm, tarn::StopReason::kNothingToShrink), middle);
    if (&end == &b) fb = fm;
    end = middle;
    middle = (a + b) * 0.5;
    ++iterationCount_;
    fm = Func(middle);
    if (fm == 0) return End(tarn::StopReason::kConvergedValue, middle);
    TraceResult(middle, fm);
  }
  return End(tarn::ReasonAt(fm, tarn::StopReason::kConvergedStep), (a + b) * 0.5);
}

/// The end whose value is nearer to zero, of two values of the same sign.
double BiSection_Double::NearerEnd(double fa, double fb) const {
  const bool takeB = fb <= 0 ? fa < fb : fb <= fa;
  return takeB ? boundaries_[1] : boundaries_[0];
}

double BiSection_Double::End(tarn::StopReason reason, double answer) {
  stopReason_ = reason;
  return answer;
}

double BiSection_Double::Func(double x) {
  ++evaluationCount_;
  using Function = double (*)(double, void*);
  if (auto* native = tarn::NativeFunction<Function>(function_)) {
    return extraMode_ == 1 ? native(x, extraParamPtr_) : native(x, &extraParam_);
  }
  return tarn::CallScriptFunction(function_, x, extraParam_);
}

void BiSection_Double::TraceResult(double x, double f) const {
  if (silent_ == 0) tarn::TraceArgument(x, f);
}

double* BiSection_Double::GetBoundaries() { return boundaries_; }

void BiSection_Double::SetExtraParam(Variable& extra) {
  extraParam_ = extra;
  extraMode_ = 0;
}

void BiSection_Double::SetExtraParam(double* extra) {
  extraParamPtr_ = extra;
  extraMode_ = 1;
}

void BiSection_Double::SetSilent(int silent) { silent_ = silent; }

tarn::StopReason BiSection_Double::GetStopReason() const { return stopReason_; }
std::int64_t BiSection_Double::GetEvaluationCount() const { return evaluationCount_; }
std::int64_t BiSection_Double::GetItterationCount() const { return iterationCount_; }
