// Sources:
// [1] M. Abramowitz, I. A. Stegun, Handbook of Mathematical Functions, 9.8.1 to 9.8.8: polynomial
//     approximations of I0, I1, K0, K1.
// [2] J. C. P. Miller, British Association Mathematical Tables X (1952): downward recurrence.
// [3] Abramowitz, Stegun, 9.6.26 (recurrences), 9.6.7 (small argument), 9.7.1 (large argument).

#include "special/bessel_modified.h"

#include <cmath>

#include "special/bessel_order.h"
#include "special/bessel_real_order.h"
#include "special/gamma.h"
#include "special/iteration_limits.h"

namespace tarn {
namespace {

constexpr double kPi = 3.141592653589793;

// Where the two polynomials of each function of [1] meet.
constexpr double kSwitchI = 3.75;
constexpr double kSwitchK = 2.0;

// Miller's recurrence of order n starts at 2 (n + sqrt(40 n)); the 40 sets its accuracy.
constexpr double kMillerAccuracy = 40.0;
constexpr double kMillerLarge = 1e10;
constexpr double kMillerScale = 1e-10;
// Below, (x/2)^2/2 is less than half the least positive double, and so is I_n(x) for n >= 2.
constexpr double kMillerUnderflow = 1e-163;

/// Values of the recurrence I_{j-1} = I_{j+1} + (2j/x) I_j, in one common scale [2].
struct MillerRecurrence {
  double tox;            ///< 2/x
  double above = 0.0;    ///< order j, once step j is done
  double current = 1.0;  ///< order j - 1
  double atOrder = 0.0;  ///< the order wanted, once passed

  /// Steps j = from ... to. Whenever a value passes 1e10 all are scaled down: once a step, or, with
  /// `untilSmall`, as often as it takes.
  template <bool untilSmall>
  void Run(int from, int to) {
    for (int j = from; j >= to; --j) {
      const double below = above + j * tox * current;
      above = current;
      current = below;
      while (std::fabs(current) > kMillerLarge) {
        atOrder *= kMillerScale;
        current *= kMillerScale;
        above *= kMillerScale;
        if (!untilSmall) break;
      }
    }
  }

  /// All steps from arbitrary values at order `start`, keeping the one at order n.
  template <bool untilSmall>
  void RunAll(int start, int n) {
    Run<untilSmall>(start, n);
    atOrder = above;
    Run<untilSmall>(n - 1, 1);
  }
};

/// The recurrence as usual. For tiny x one step can grow by more than one scaling takes back, and
/// the values leave the range of a double; the careful form then keeps them in it.
MillerRecurrence MillerInRange(int n, double x, int start) {
  MillerRecurrence plain{2.0 / std::fabs(x)};
  plain.RunAll<false>(start, n);
  if (std::isfinite(plain.current) || !std::isfinite(x)) return plain;
  if (std::fabs(x) < kMillerUnderflow) return {plain.tox};
  MillerRecurrence careful{plain.tox};
  careful.RunAll<true>(start, n);
  return careful;
}

}  // namespace

std::optional<double> BesselIInt(int n, double x) {
  if (n < 2) return n == 1 ? BesselI1(x) : BesselI0(x);
  if (x == 0.0) return 0.0;
  const double start = 2.0 * (n + std::floor(std::sqrt(kMillerAccuracy * n)));
  if (!CheckRecurrenceSteps(start)) return std::nullopt;
  const MillerRecurrence values = MillerInRange(n, x, static_cast<int>(start));
  const double result = values.atOrder * BesselI0(x) / values.current;
  return x < 0.0 && n % 2 == 1 ? -result : result;
}

std::optional<double> BesselKInt(int n, double x) {
  if (n < 2) return n == 1 ? BesselK1(x) : BesselK0(x);
  if (!CheckRecurrenceSteps(n - 1)) return std::nullopt;
  const double tox = 2.0 / x;
  double below = BesselK0(x);
  double current = BesselK1(x);
  for (int j = 1; j < n; ++j) {
    const double above = below + j * tox * current;
    below = current;
    current = above;
  }
  return current;
}

namespace {

/// One of the values that `compute` gives for a real order; nothing after an error.
template <bool (*compute)(double x, double nu, BesselIKValues& values),
          double BesselIKValues::*value>
std::optional<double> OfRealOrder(double x, double order) {
  BesselIKValues values = {};
  if (!compute(x, order, values)) return std::nullopt;
  return values.*value;
}

constexpr auto BesselIOfRealOrder = OfRealOrder<BesselIK, &BesselIKValues::i>;
constexpr auto BesselIDerivative = OfRealOrder<BesselIK, &BesselIKValues::iDerivative>;
constexpr auto BesselKOfRealOrder = OfRealOrder<BesselKAlone, &BesselIKValues::k>;
constexpr auto BesselKDerivative = OfRealOrder<BesselKAlone, &BesselIKValues::kDerivative>;

std::optional<double> BesselIOfAnyOrder(double x, double order) {
  if (const auto n = IntegralOrder(order)) return BesselIInt(*n, x);
  return BesselIOfRealOrder(x, order);
}

/// The logarithm, or 0 after an error.
double LogOrZero(std::optional<double> value) { return value ? std::log(*value) : 0.0; }

}  // namespace
}  // namespace tarn

double BesselI0(double x) {
  const double ax = std::fabs(x);
  if (ax < tarn::kSwitchI) {
    const double r = x / tarn::kSwitchI;
    const double t = r * r;
    return 1.0 + t * (3.5156229 +
                      t * (3.0899424 +
                           t * (1.2067492 + t * (0.2659732 + t * (0.0360768 + t * 0.0045813)))));
  }
  const double y = tarn::kSwitchI / ax;
  const double inner =
      y * (0.00916281 + y * (-0.02057706 + y * (0.02635537 + y * (-0.01647633 + y * 0.00392377))));
  return std::exp(ax) / std::sqrt(ax) *
         (0.39894228 + y * (0.01328592 + y * (0.00225319 + y * (-0.00157565 + inner))));
}

double BesselI1(double x) {
  const double ax = std::fabs(x);
  if (ax < tarn::kSwitchI) {
    const double r = x / tarn::kSwitchI;
    const double t = r * r;
    const double result =
        ax *
        (0.5 + t * (0.87890594 +
                    t * (0.51498869 +
                         t * (0.15084934 + t * (0.02658733 + t * (0.00301532 + t * 0.00032411))))));
    return x < 0.0 ? -result : result;
  }
  const double y = tarn::kSwitchI / ax;
  const double inner =
      y * (-0.01031555 + y * (0.02282967 + y * (-0.02895312 + y * (0.01787654 - y * 0.00420059))));
  const double result =
      std::exp(ax) / std::sqrt(ax) *
      (0.39894228 + y * (-0.03988024 + y * (-0.00362018 + y * (0.00163801 + inner))));
  return x < 0.0 ? -result : result;
}

double BesselK0(double x) {
  if (x <= tarn::kSwitchK) {
    const double t = x * x / 4.0;
    return -std::log(x / 2.0) * BesselI0(x) +
           (-0.57721566 +
            t * (0.4227842 +
                 t * (0.23069756 +
                      t * (0.0348859 + t * (0.00262698 + t * (0.0001075 + t * 7.4e-6))))));
  }
  const double y = tarn::kSwitchK / x;
  return std::exp(-x) / std::sqrt(x) *
         (1.25331414 +
          y * (-0.07832358 +
               y * (0.02189568 +
                    y * (-0.01062446 + y * (0.00587872 + y * (-0.0025154 + y * 0.00053208))))));
}

double BesselK1(double x) {
  if (x <= tarn::kSwitchK) {
    const double t = x * x / 4.0;
    return std::log(x / 2.0) * BesselI1(x) +
           1.0 / x *
               (1.0 + t * (0.15443144 +
                           t * (-0.67278579 +
                                t * (-0.18156897 +
                                     t * (-0.01919402 + t * (-0.00110404 - t * 4.686e-5))))));
  }
  const double y = tarn::kSwitchK / x;
  return std::exp(-x) / std::sqrt(x) *
         (1.25331414 +
          y * (0.23498619 +
               y * (-0.0365562 +
                    y * (0.01504268 + y * (-0.00780353 + y * (0.00325614 - y * 0.00068245))))));
}

double BesselIn(double x, double n) { return tarn::BesselIOfAnyOrder(x, n).value_or(0.0); }

double BesselIpn(double x, double n) { return tarn::BesselIDerivative(x, n).value_or(0.0); }

double BesselKn(double x, double n) {
  if (const auto integral = tarn::IntegralOrder(n)) {
    return tarn::BesselKInt(*integral, x).value_or(0.0);
  }
  return tarn::BesselKOfRealOrder(x, n).value_or(0.0);
}

double BesselKpn(double x, double n) { return tarn::BesselKDerivative(x, n).value_or(0.0); }

double LnBesselIn(double x, double n) {
  if (n / 30.0 > x) return n * std::log(x / 2.0) - LnGamma(n + 1.0);
  const double mu = 4.0 * n * n - 1.0;
  if (x > mu / 8.0) {
    return std::log(1.0 - mu / (8.0 * x)) + x - 0.5 * std::log(2.0 * tarn::kPi * x);
  }
  return tarn::LogOrZero(tarn::BesselIOfAnyOrder(x, n));
}

double LnBesselIpn(double x, double n) {
  if (x < n / 30.0) {
    return std::log(n / 2.0) + (n - 1.0) * std::log(x / 2.0) - LnGamma(n + 1.0);
  }
  if (x > 10.0 * n) return x - 0.5 * std::log(2.0 * tarn::kPi * x);
  return tarn::LogOrZero(tarn::BesselIDerivative(x, n));
}
