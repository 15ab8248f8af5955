/// @file
/// The dispersions to use for the values: the given ones with a floor, or one estimated from the
/// values by trimming.

#include <cmath>
#include <numbers>

#include "arrays/search.h"
#include "optim/golden_section.h"
#include "special/error_function.h"
#include "stat/native_values.h"
#include "stat/number_arrays.h"
#include "stat/sort_numbers.h"
#include "stat/stat.h"

namespace {

/// Inverse of the error function on [0, 1], read linearly from a table of 100 points up to 5.
class InverseErrorFunction {
 public:
  InverseErrorFunction() {
    for (int j = 0; j < kCount; ++j) {
      t_[j] = j * 5.0 / 99.0;
      erf_[j] = Erf(t_[j]);
    }
  }

  /// 0 below the first point, the last point at and above its probability.
  double operator()(double p) {
    const std::int64_t above = BFindInsertIndex(erf_, p, kCount);
    if (above <= 0) return 0.0;
    if (above >= kCount) return t_[kCount - 1];
    const std::int64_t below = above - 1;
    return t_[below] + (p - erf_[below]) * (t_[above] - t_[below]) / (erf_[above] - erf_[below]);
  }

 private:
  static constexpr int kCount = 100;
  double t_[kCount];
  double erf_[kCount];
};

/// A sorted sample that loses, value by value, the extreme farther from the mean of the rest.
class TrimmedSample {
 public:
  TrimmedSample(const double* sorted, int n) : sorted_(sorted), last_(n - 1), remaining_(n) {
    for (int i = 0; i < n; ++i) {
      sum_ += sorted[i];
      squares_ += sorted[i] * sorted[i];
    }
    mean_ = sum_ / n;
  }

  int Remaining() const { return remaining_; }
  double Mean() const { return mean_; }
  double Variance() const { return squares_ / remaining_ - mean_ * mean_; }

  void DropFartherExtreme() {
    const bool dropSmallest = sorted_[last_] - mean_ <= mean_ - sorted_[first_];
    const double dropped = dropSmallest ? sorted_[first_++] : sorted_[last_--];
    sum_ -= dropped;
    squares_ -= dropped * dropped;
    --remaining_;
    mean_ = sum_ / remaining_;
  }

 private:
  const double* sorted_;
  int first_ = 0;
  int last_;
  int remaining_;
  double sum_ = 0.0;
  double squares_ = 0.0;
  double mean_;
};

constexpr int kMisfitEntries = 3;

/// Sum over the last quarter of the entries of (V - c^2 v(T))^2, v(t) the variance of a unit normal
/// cut at +-t sqrt(2); `extra` leads to an array {T, V, count}.
double TrimmingMisfit(double c, void* extra) {
  Variable& entries = tarn::ValueAt(extra);
  const auto* t = static_cast<const double*>(entries[0].GetCppPointer());
  const auto* v = static_cast<const double*>(entries[1].GetCppPointer());
  const int count = entries[2].GetInt32Numb();
  double sum = 0.0;
  for (int i = static_cast<int>(std::int64_t{3} * count / 4); i < count; ++i) {
    const double cutVariance =
        1.0 - 2.0 * t[i] / std::sqrt(std::numbers::pi) * std::exp(-t[i] * t[i]) / std::erf(t[i]);
    const double misfit = v[i] - c * c * cutVariance;
    sum += misfit * misfit;
  }
  return sum;
}

/// `entries` has room for the three arguments of the misfit.
double FitScale(Variable& entries, double* t, double* v, int count, double lo, double hi) {
  constexpr double kTolerance = 1e-7;
  Variable misfit = tarn::NativeFunction(TrimmingMisfit);
  entries[0].SetCppPointer(t);
  entries[1].SetCppPointer(v);
  entries[2] = count;
  double bracket[2] = {lo, hi};
  GoldSection_Double search(misfit, bracket, kTolerance);
  Variable extra = tarn::AddressOf(entries);
  search.SetExtraParam(extra);
  return search.Solve();
}

int CountWithin(const double* x, int n, double centre, double halfWidth) {
  int count = 0;
  for (int i = 0; i < n; ++i) {
    if (std::fabs(x[i] - centre) < halfWidth) ++count;
  }
  return count;
}

/// The scale of a normal law from how the variance shrinks under trimming; `t` and `v` are work
/// areas of `rounds` numbers, `entries` one of three values; `sorted` holds the n values in
/// ascending order.
double ScaleByTrimming(const double* sorted, int n, double* t, double* v, int rounds,
                       Variable& entries) {
  InverseErrorFunction inverseErf;
  TrimmedSample sample(sorted, n);
  const double upper = 2.0 * std::sqrt(sample.Variance());
  for (int i = 0; i < rounds; ++i) {
    t[i] = inverseErf(static_cast<double>(sample.Remaining()) / n);
    v[i] = sample.Variance();
    sample.DropFartherExtreme();
  }
  const double lower = v[rounds - 1] / 4.0;
  const double scale = FitScale(entries, t, v, rounds, lower, upper);

  // Once more, with what lies within three scales for the whole population.
  const double population = CountWithin(sorted, n, sample.Mean(), 3.0 * scale);
  int first = 0;
  for (int i = 0; i < rounds; ++i) {
    const double p = (n - i) / population;
    if (p < 1.0) {
      t[i] = inverseErf(p);
    } else {
      first = i;
    }
  }
  return FitScale(entries, t + first, v + first, rounds - first, lower, upper);
}

}  // namespace

double* Stat::GetEstimationDisp() {
  if (DataDisp == nullptr) {
    if (estDataDisp == nullptr) estDataDisp = EstimateDisp(Data, len, 0.0);
    return estDataDisp;
  }
  if (len < 3) return DataDisp;
  if (estDataDisp == nullptr) estDataDisp = FloorDispersions();
  return estDataDisp != nullptr ? estDataDisp : DataDisp;
}

/// A copy of the dispersions raised to exp(m - s), m and s median and error of their logarithms.
double* Stat::FloorDispersions() {
  tarn::NumberArray floored = tarn::NewNumbers(len);
  if (!floored) return nullptr;
  for (int i = 0; i < len; ++i) floored[static_cast<std::size_t>(i)] = std::log(DataDisp[i]);
  Stat logarithms(floored.get(), len);
  if (logarithms.len != len) return nullptr;
  constexpr double kNotWritten = -1.0;
  double median = 0.0;
  double sd = kNotWritten;
  logarithms.GetMedian_SD(median, sd);
  if (sd == kNotWritten) return nullptr;
  const double lowest = std::exp(median - sd);
  for (int i = 0; i < len; ++i) {
    floored[static_cast<std::size_t>(i)] = DataDisp[i] < lowest ? lowest : DataDisp[i];
  }
  return floored.release();
}

double* Stat::EstimateDisp(double* x, int n, double /*ignored*/) {
  if (n < 1) return nullptr;
  const int rounds = static_cast<int>(std::int64_t{3} * n / 4);
  const tarn::NumberArray sorted = tarn::CopyNumbers(x, n);
  tarn::NumberArray result = tarn::NewNumbers(n);
  const tarn::NumberArray t = tarn::NewNumbers(rounds);
  const tarn::NumberArray v = tarn::NewNumbers(rounds);
  Variable entries(VARTYPE_ARRAY, kMisfitEntries);
  if (!sorted || !result || !t || !v || entries.GetDim() != kMisfitEntries) return nullptr;
  double dispersion = 0.0;
  if (n > 1) {
    tarn::SortNumbers(sorted.get(), n);
    const double scale = ScaleByTrimming(sorted.get(), n, t.get(), v.get(), rounds, entries);
    dispersion = scale * scale;
  }
  for (int i = 0; i < n; ++i) result[static_cast<std::size_t>(i)] = dispersion;
  return result.release();
}
