/// @file
/// The most probable location of a sample, its error and the curve around it.

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <new>

#include "optim/golden_section.h"
#include "stat/native_values.h"
#include "stat/number_arrays.h"
#include "stat/sort_numbers.h"
#include "stat/stat.h"
#include "tfunc/tfunc.h"

namespace {

constexpr int kSubsetSize = 1000;
constexpr int kScanPoints = 100;
constexpr int kArgumentCount = 4;

/// Fills the array {values, dispersions, weights, count} that the probability functions read.
void StoreArguments(Variable& args, double* values, double* dispersions, double* weights,
                    int count) {
  args[0].SetCppPointer(values);
  args[1].SetCppPointer(dispersions);
  args[2].SetCppPointer(weights);
  args[3] = count;
}

/// First and last place of the largest number of a scan; numbers that are NaN never count.
class MaximumScan {
 public:
  void Add(int place, double value) {
    if (value > largest_) {
      largest_ = value;
      first_ = last_ = place;
    } else if (value == largest_) {
      last_ = place;
    }
  }
  int Before(int lowest) const { return std::max(first_ - 1, lowest); }
  int Behind(int highest) const { return std::min(last_ + 1, highest); }

 private:
  double largest_ = -std::numeric_limits<double>::infinity();
  int first_ = 0;
  int last_ = 0;
};

struct Bracket {
  double lower;
  double upper;
};

/// A point where `h` changes sign between `a` and `b`. Ends when h is exactly 0, when the interval
/// is narrower than `accuracy` times the magnitude of its ends, or when it no longer shrinks.
template <class Function>
double BisectRelative(Function h, double a, double b, double accuracy) {
  const bool risesAtB = h(b) >= 0.0;
  double m = (a + b) / 2.0;
  while (true) {
    const double hm = h(m);
    if (hm == 0.0) return m;
    double& end = (hm > 0.0) == risesAtB ? b : a;
    if (end == m) return m;
    end = m;
    if (!(std::fabs(a - b) / (std::fabs(a) + std::fabs(b)) > accuracy)) return m;
    m = (a + b) / 2.0;
  }
}

/// Removes equal neighbours of sorted numbers; returns how many remain.
int RemoveEqualNeighbours(double* sorted, int count) {
  return static_cast<int>(std::unique(sorted, sorted + count) - sorted);
}

/// Neighbours of the best of about 100 of the `count` distinct values.
template <class Probability>
Bracket ScanCoarsely(const double* values, int count, Probability g) {
  const int points = std::min(count, kScanPoints);
  const int step = std::max(1, count / points);
  MaximumScan scan;
  for (int i = 0; i < count; i += step) scan.Add(i, g(values[i]));
  return {values[scan.Before(0)], values[scan.Behind(count - 1)]};
}

/// Neighbours of the best of `points` points evenly spaced over a bracket; `x` is a work area.
template <class Probability>
Bracket ScanFinely(Bracket bracket, int points, double* x, Probability g) {
  MaximumScan scan;
  for (int k = 0; k < points; ++k) {
    x[k] = bracket.lower + k * (bracket.upper - bracket.lower) / (points - 1);
    scan.Add(k, g(x[k]));
  }
  return {x[scan.Before(0)], x[scan.Behind(points - 1)]};
}

/// Probability of a location relative to its peak, tabulated at 30 points between two limits and
/// normalised to an integral of 1; an empty function when memory is refused.
TFunc TabulateProbability(Bracket limits, ProbFunc function, Variable& args, double atPeak) {
  constexpr int kPoints = 30;
  double x[kPoints];
  double p[kPoints];
  for (int k = 0; k < kPoints; ++k) {
    x[k] = limits.lower + k * (limits.upper - limits.lower) / (kPoints - 1);
    p[k] = std::exp(atPeak - function(x[k], args));
  }
  TFunc curve(x, p, kPoints);
  if (curve.N == 0) return curve;
  curve /= curve.IntegralSimpson(x[0], x[kPoints - 1]);
  return curve;
}

/// The point between a location and `outer` up to which `area` reaches 34 %, or `outer` when even
/// that is not enough.
template <class Area>
double FindThirtyFourPercent(Area area, double location, double outer, double accuracy) {
  constexpr double kShare = 0.34;
  if (!(area(outer) >= kShare)) return outer;
  return BisectRelative([&](double x) { return area(x) - kShare; }, location, outer, accuracy);
}

}  // namespace

/// Whether all values are equal, or so close that there is nothing to search.
bool Stat::IsTooNarrowToSearch() const {
  const double range = Max - Min;
  return range == 0.0 || range / (std::fabs(Min) + std::fabs(Max)) < 1e-7;
}

/// Number of values within location +- sqrt(n * squared error).
double Stat::CountWithin(double location, double squaredError) const {
  const double h = std::sqrt(len * squaredError);
  int count = 0;
  for (int i = 0; i < len; ++i) {
    if (location - h <= Data[i] && Data[i] <= location + h) ++count;
  }
  return count;
}

T_MatVectorCol<double>* Stat::GetMostProbableValue(int prior, int logNormal) {
  std::unique_ptr<T_MatVectorCol<double>> result(new (std::nothrow) T_MatVectorCol<double>(3));
  if (!result || result->Dim() != 3) return nullptr;
  (*result)[0] = Mean;
  (*result)[1] = len == 1 ? Disp : SEM2;
  if (len <= 2 || IsTooNarrowToSearch()) return result.release();
  if (isTooLong()) {
    TakeMostProbableValueOfSubset(*result, prior, logNormal);
  } else {
    SearchMostProbableValue(*result, prior, logNormal);
  }
  return result.release();
}

/// Overwrites `result` unless memory is missing.
void Stat::TakeMostProbableValueOfSubset(T_MatVectorCol<double>& result, int prior, int logNormal) {
  const std::unique_ptr<Stat> subset(SampleSubset(kSubsetSize));
  if (!subset) return;
  const std::unique_ptr<T_MatVectorCol<double>> ofSubset(
      subset->GetMostProbableValue(prior, logNormal));
  if (!ofSubset) return;
  result[0] = (*ofSubset)[0];
  result[1] = (*ofSubset)[1] * kSubsetSize / len;
  result[2] = CountWithin(result[0], result[1]);
}

/// Overwrites `result` unless dispersions, weights or memory are missing.
void Stat::SearchMostProbableValue(T_MatVectorCol<double>& result, int prior, int logNormal) {
  double* const dispersions = GetEstimationDisp();
  if (dispersions == nullptr) return;
  if (std::any_of(dispersions, dispersions + len, [](double d) { return d <= 0.0; })) return;

  double* const weights = GetWeights();
  if (weights == nullptr) return;
  const auto freeWeights = [this](double* w) { FreeWeights(w); };
  const std::unique_ptr<double, decltype(freeWeights)> weightsGuard(weights, freeWeights);

  const tarn::NumberArray distinct = tarn::CopyNumbers(Data, len);
  if (!distinct) return;
  tarn::SortNumbers(distinct.get(), len);
  const int count = RemoveEqualNeighbours(distinct.get(), len);
  const int points = std::min(count, kScanPoints);
  tarn::SmallWorkArea grid(points);
  Variable args(VARTYPE_ARRAY, kArgumentCount);
  if (!grid || args.GetDim() != kArgumentCount) return;
  StoreArguments(args, Data, dispersions, weights, len);

  const tarn::ProbabilityFunction& f = tarn::FindProbabilityFunction(prior, logNormal);
  const auto g = [&](double x) { return -f.overArrays(x, Data, dispersions, weights, len); };
  Bracket bracket = ScanCoarsely(distinct.get(), count, g);
  bracket = ScanFinely(bracket, points, grid.Get(), g);
  const double minimumWidth = 10.0 * std::max((Max - Min) * Accuracy, Accuracy);
  if (bracket.upper - bracket.lower < minimumWidth) {
    bracket = {bracket.lower - minimumWidth, bracket.upper + minimumWidth};
  }

  Variable callback = tarn::NativeFunction(f.asCallback);
  double boundaries[2] = {bracket.lower, bracket.upper};
  GoldSection_Double search(callback, boundaries, Accuracy);
  Variable extra = tarn::AddressOf(args);
  search.SetExtraParam(extra);
  const double location = search.Solve();
  const double squaredError =
      GetSEM2OfMostProbableValue(location, f.overScriptArray, args, logNormal);
  result[0] = location;
  result[1] = squaredError;
  result[2] = CountWithin(location, squaredError);
}

double Stat::GetSEM2OfMostProbableValue(double location, ProbFunc function, Variable& args,
                                        int logNormal) {
  const double atPeak = function(location, args);
  double lower = std::min(Min, Mean - 3.0 * std::sqrt(Disp));
  double upper = std::max(-atPeak, Mean + 3.0 * std::sqrt(Disp));
  if (std::fabs(lower - upper) <= std::fabs(upper + lower) * 1e-7) {
    const double widening = location == 0.0 ? 1.0 : std::sqrt(std::fabs(location));
    lower -= widening;
    upper += widening;
  }
  if (logNormal == 1 && lower <= 0.0) lower = Min / 100.0;

  // Where the probability has fallen to 1e-4 of its peak.
  const double lnShare = std::log(1e-4);
  const auto h = [&](double x) { return atPeak - function(x, args) - lnShare; };
  Bracket limits = {lower, upper};
  if (h(lower) < 0.0) limits.lower = BisectRelative(h, lower, location, Accuracy);
  if (h(upper) < 0.0) {
    limits.upper = upper < location ? location : BisectRelative(h, location, upper, Accuracy);
  }

  TFunc curve = TabulateProbability(limits, function, args, atPeak);
  if (curve.N == 0) return SEM2;
  const double below =
      FindThirtyFourPercent([&](double x) { return curve.IntegralSimpson(x, location); }, location,
                            limits.lower, Accuracy);
  const double above =
      FindThirtyFourPercent([&](double x) { return curve.IntegralSimpson(location, x); }, location,
                            limits.upper, Accuracy);
  const double halfWidth = (above - below) * 0.5;
  return halfWidth * halfWidth;
}

void Stat::GetLogProbabilityDistribution(int prior, int logNormal, int m, double*& x, double*& lp) {
  const int points = std::max(m, 0);
  x = tarn::NewNumbers(points).release();
  lp = tarn::NewNumbers(points).release();
  if (x == nullptr || lp == nullptr) return;

  const bool onLogarithms = DistrType == DISTR_LOGNORMAL;
  const double range = onLogarithms ? std::log(Max / Min) : Max - Min;
  const double a = (onLogarithms ? std::log(Min) : Min) - range / 4.0;
  const double b = (onLogarithms ? std::log(Max) : Max) + range / 4.0;
  for (int k = 0; k < points; ++k) {
    const double position = k == 0 ? a : a + k * (b - a) / (points - 1);
    x[k] = onLogarithms ? std::exp(position) : position;
    lp[k] = 0.0;
  }

  double* const dispersions = GetEstimationDisp();
  double* const weights = GetWeights();
  if (dispersions != nullptr && weights != nullptr) {
    const CProbFunc f = GetCProbFuncPtr(prior, logNormal);
    double largest = -1e300;
    for (int k = 0; k < points; ++k) {
      lp[k] = -f(x[k], Data, dispersions, weights, len);
      if (lp[k] > largest) largest = lp[k];
    }
    for (int k = 0; k < points; ++k) lp[k] -= largest;
  }
  FreeWeights(weights);
}
