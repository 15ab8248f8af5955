#include "stat/probability_functions.h"

#include <cmath>
#include <type_traits>

#include "stat/native_values.h"

namespace tarn {
namespace {

/// Distance and dispersion of one sample as a prior's term reads them.
struct Deviation {
  double distance;
  double dispersion;
};

struct PlainAxis {
  static constexpr bool kLogarithmic = false;
  static Deviation Of(double x, double dispersion, double location) {
    return {x - location, dispersion};
  }
};

struct LogarithmicAxis {
  static constexpr bool kLogarithmic = true;
  static Deviation Of(double x, double dispersion, double location) {
    const double g = 1.0 + dispersion / (x * x);
    return {std::log(x / std::sqrt(g) / location), std::log(g)};
  }
};

/// Below this ratio of distance to sqrt(2 dispersion) erf is linear to double precision.
constexpr double kSmallRatio = 1e-5;
constexpr double kLnTwoOverSqrtPi = 0.120782237635245;
constexpr double kSquaredDistanceFloor = 1e-10;

// A prior's Term is w * l(r, s) as it enters the sum.

struct LimitedJeffreysPrior {
  static double Term(const PlainAxis& /*axis*/, const Deviation& d, double weight) {
    const double distance = std::fabs(d.distance);
    const double ratio = distance / std::sqrt(2.0 * d.dispersion);
    // The constant is not weighted: it does not depend on the location.
    if (ratio < kSmallRatio) {
      return kLnTwoOverSqrtPi - 0.5 * std::log(2.0 * d.dispersion) * weight;
    }
    return weight * std::log(std::erf(ratio) / distance);
  }

  static double Term(const LogarithmicAxis& /*axis*/, const Deviation& d, double weight) {
    double squared = d.distance * d.distance;
    if (squared < kSquaredDistanceFloor) squared = kSquaredDistanceFloor;
    return weight *
           std::log(std::erf(std::sqrt(squared / (2.0 * d.dispersion))) / std::sqrt(squared));
  }
};

struct JeffreysPrior {
  template <class Axis>
  static double Term(const Axis& /*axis*/, const Deviation& d, double weight) {
    const double q = d.distance * d.distance / d.dispersion;
    const double complement = 1.0 - std::exp(-q / 2.0);
    return weight * (complement == 0.0 ? std::log(0.5) : std::log(complement / q));
  }
};

struct UniformPrior {
  template <class Axis>
  static double Term(const Axis& /*axis*/, const Deviation& d, double weight) {
    return weight * -std::log(1.0 + d.distance * d.distance / (2.0 * d.dispersion));
  }
};

struct NoPrior {
  template <class Axis>
  static double Term(const Axis& /*axis*/, const Deviation& d, double weight) {
    return weight * -(d.distance * d.distance / (2.0 * d.dispersion));
  }
};

/// Values, dispersions, weights and their count.
constexpr int kArgumentCount = 4;

template <class Prior, class Axis>
constexpr bool kSkipsZeroDispersion =
    !(Axis::kLogarithmic && std::is_same_v<Prior, LimitedJeffreysPrior>);

template <class Prior, class Axis>
double OverArrays(double location, double* data, double* disp, double* weight, int n) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) {
    if (kSkipsZeroDispersion<Prior, Axis> && disp[i] == 0.0) continue;
    sum += Prior::Term(Axis(), Axis::Of(data[i], disp[i], location), weight[i]);
  }
  return -sum;
}

template <class Prior, class Axis>
double OverScriptArray(double location, Variable& args) {
  if (args.GetDim() < kArgumentCount) return 0.0;
  return OverArrays<Prior, Axis>(location, static_cast<double*>(args[0].GetCppPointer()),
                                 static_cast<double*>(args[1].GetCppPointer()),
                                 static_cast<double*>(args[2].GetCppPointer()),
                                 args[3].GetInt32Numb());
}

template <class Prior, class Axis>
double AsCallback(double location, void* args) {
  return OverScriptArray<Prior, Axis>(location, ValueAt(args));
}

template <class Prior, class Axis>
constexpr ProbabilityFunction kFunction = {OverArrays<Prior, Axis>, OverScriptArray<Prior, Axis>,
                                           AsCallback<Prior, Axis>};

constexpr int kPriorCount = 4;

template <class Axis>
constexpr ProbabilityFunction kFunctions[kPriorCount] = {
    kFunction<LimitedJeffreysPrior, Axis>, kFunction<JeffreysPrior, Axis>,
    kFunction<UniformPrior, Axis>, kFunction<NoPrior, Axis>};

}  // namespace

const ProbabilityFunction& FindProbabilityFunction(int prior, int logNormal) {
  const int row = prior >= 0 && prior < kPriorCount ? prior : kPriorCount - 1;
  return logNormal == 0 ? kFunctions<PlainAxis>[row] : kFunctions<LogarithmicAxis>[row];
}

}  // namespace tarn
