/// @file
/// Least-squares fit of a normal cumulative distribution.

#include <cmath>
#include <limits>
#include <memory>
#include <new>

#include "linalg/matrix.h"
#include "optim/climb.h"
#include "stat/native_values.h"
#include "stat/stat.h"

namespace {

/// The points i0 ... i1 (inclusive) that enter the fit.
struct Stretch {
  int first;
  int last;
};

/// The stretch between the probabilities 0.2 and 0.8, for fewer than 11 points everything but the
/// ends.
Stretch ChooseStretch(const double* p, int n) {
  Stretch stretch = {1, n - 2};
  if (n >= 11) {
    for (int i = 0; i < n / 2; ++i) {
      if (!(p[i] > 0.2)) continue;
      stretch.first = i;
      break;
    }
    for (int i = n - 1; i > n / 2; --i) {
      if (!(p[i] < 0.8)) continue;
      stretch.last = i;
      break;
    }
  } else if (n - 2 <= 1) {
    stretch = {0, n - 1};
  }
  return stretch;
}

/// A first guess of the scale from the halves of the stretch.
double GuessSpread(const double* x, int n, Stretch stretch) {
  const double below = x[n / 2] - x[stretch.first];
  const double above = x[stretch.last] - x[n / 2];
  double spread = below > above ? below : above;
  if (spread == 0.0) spread = x[n - 1] - x[0];
  return spread == 0.0 ? 1.0 : spread;
}

/// A first guess of the location: the middle of the step that reaches probability 1/2.
double GuessLocation(const double* x, const double* p, Stretch stretch) {
  for (int k = stretch.first; k <= stretch.last; ++k) {
    if (p[k] >= 0.5) return k == 0 ? x[0] : (x[k - 1] + x[k]) / 2.0;
  }
  return x[stretch.first];
}

/// Sum of squared distances between the points and the normal cumulative distribution; parameters
/// location and ln sigma, `points` an array {x, p, count}.
double SquaredDistances(T_MatVector<double>& parameters, Variable& points) {
  const auto* x = static_cast<const double*>(points[0].GetCppPointer());
  const auto* p = static_cast<const double*>(points[1].GetCppPointer());
  const int count = points[2].GetInt32Numb();
  const double location = parameters[0];
  const double scale = std::exp(parameters[1]) * std::sqrt(2.0);
  double sum = 0.0;
  for (int i = 0; i < count; ++i) {
    const double difference = p[i] - (std::erf((x[i] - location) / scale) + 1.0) / 2.0;
    sum += difference * difference;
  }
  return sum;
}

constexpr int kObjectiveArguments = 3;
constexpr int kParameters = 2;

/// The same for the minimiser, whose extra parameter leads to the array. A point whose memory was
/// refused has no value.
double Objective(T_MatVector<double>& parameters, Variable* extra) {
  if (parameters.Dim() != kParameters) return std::numeric_limits<double>::quiet_NaN();
  return SquaredDistances(parameters, tarn::ValueAt(extra));
}

T_MatVectorCol<double>* NewResult(double location, double scale, double locationError,
                                  double scaleError) {
  std::unique_ptr<T_MatVectorCol<double>> result(new (std::nothrow) T_MatVectorCol<double>(4));
  if (!result || result->Dim() != 4) return nullptr;
  double* const elements = *result;
  elements[0] = location;
  elements[1] = scale;
  elements[2] = locationError;
  elements[3] = scaleError;
  return result.release();
}

constexpr int kMiddleSlot = 50;
constexpr int kSlotCount = 2 * kMiddleSlot + 1;

/// At most 101 of the points (x, p), every m/100-th to both sides of the median.
class ThinnedDistribution {
 public:
  ThinnedDistribution(const double* x, const double* p, int m) : source_{x, p} {
    int median = 0;
    while (median < m - 1 && !(p[median] > 0.5)) ++median;
    Take(kMiddleSlot, median);
    const double step = m / 100.0;
    double position = median - 1;
    for (int slot = kMiddleSlot - 1; slot >= 0 && position >= 0.0; --slot, position -= step) {
      Take(slot, static_cast<int>(position));
      first_ = slot;
    }
    position = median + 1;
    for (int slot = kMiddleSlot + 1; slot < kSlotCount && position < m; ++slot, position += step) {
      Take(slot, static_cast<int>(position));
      last_ = slot;
    }
  }

  bool Spreads() const { return x_[first_] < x_[last_]; }
  double* X() { return x_ + first_; }
  double* P() { return p_ + first_; }
  int Count() const { return last_ - first_ + 1; }

 private:
  void Take(int slot, int index) {
    x_[slot] = source_.x[index];
    p_[slot] = source_.p[index];
  }

  struct {
    const double* x;
    const double* p;
  } source_;
  double x_[kSlotCount];
  double p_[kSlotCount];
  int first_ = kMiddleSlot;
  int last_ = kMiddleSlot;
};

}  // namespace

T_MatVectorCol<double>* Stat::FitCumulativeDistribution(double* x, double* p, int n) {
  const double range = Max - Min;
  if (n < 1 || range == 0.0 || range / (std::fabs(Min) + std::fabs(Max)) < 1e-12) {
    const double error = std::sqrt(SEM2);
    return NewResult(Mean, error, error, 2.0 * error);
  }

  const Stretch stretch = ChooseStretch(p, n);
  const double spread = GuessSpread(x, n, stretch);
  double boundaries[4] = {x[stretch.first], x[stretch.last], std::log(spread / 10000.0),
                          std::log(100.0 * std::sqrt(Disp))};
  double start[2] = {GuessLocation(x, p, stretch), std::log(spread)};

  Variable points(VARTYPE_ARRAY, kObjectiveArguments);
  if (points.GetDim() != kObjectiveArguments) return nullptr;
  points[0].SetCppPointer(x + stretch.first);
  points[1].SetCppPointer(p + stretch.first);
  points[2] = stretch.last - stretch.first + 1;
  Variable objective = tarn::NativeFunction(Objective);
  Variable extra = tarn::AddressOf(points);
  T_Climb<double> minimiser(objective, kParameters, boundaries, start, Accuracy);
  minimiser.SetExtraParam(extra);
  minimiser.SetErrorIfMaxItterNumberExceed(0);
  minimiser.Solve();

  T_MatVectorCol<double> optimum(minimiser.GetResult());
  if (optimum.Dim() != kParameters) return nullptr;
  const std::unique_ptr<T_Matrix<double>> hessian(minimiser.GetHessian(optimum));
  const std::unique_ptr<T_Matrix<double>> covariance(hessian ? hessian->PseudoInverse() : nullptr);
  const double residue = SquaredDistances(optimum, points);
  const auto errorOf = [&](int k) {
    if (!covariance || covariance->X() != kParameters)
      return std::numeric_limits<double>::quiet_NaN();
    return std::sqrt(2.0 * std::fabs(residue * (*covariance)(k, k)) / n);
  };
  return NewResult(optimum[0], std::exp(optimum[1]) / std::sqrt(static_cast<double>(len)),
                   errorOf(0), errorOf(1) * std::exp(optimum[1] / len));
}

T_MatVectorCol<double>* Stat::FitCumulativeDistribution() {
  constexpr int kMaxPointsUnthinned = 200;
  double* x = nullptr;
  double* p = nullptr;
  int m = 0;
  GetCumulativeDistr(x, p, m);
  if (x == nullptr || p == nullptr) return nullptr;
  if (m <= kMaxPointsUnthinned) return FitCumulativeDistribution(x, p, m);
  ThinnedDistribution thinned(x, p, m);
  if (!thinned.Spreads()) return FitCumulativeDistribution(x, p, m);
  return FitCumulativeDistribution(thinned.X(), thinned.P(), thinned.Count());
}
