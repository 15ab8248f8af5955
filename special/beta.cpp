// Sources:
// [1] M. Abramowitz, I. A. Stegun, Handbook of Mathematical Functions, 26.5.8: continued fraction.
// [2] W. J. Lentz, Applied Optics 15 (1976) 668; I. J. Thompson, A. R. Barnett, J. Comput. Phys. 64
//     (1986) 490: the modified Lentz method for continued fractions.

#include "special/beta.h"

#include <cmath>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "special/gamma.h"
#include "special/iteration_limits.h"
#include "special/lentz_guard.h"
#include "special/log_complement.h"

namespace tarn {
namespace {

// Where ln(1 - exp(z)) loses too many digits to cancellation and the series takes over.
constexpr double kLogComplementSwitch = -0.0001;

constexpr double kLnOfZero = -1e300;

// The number in the text is not the limit of rounds; callers know the text by heart.
constexpr const char* kNotConverged = "a or b too big, Beta_P does not converge in 300 itterations";

/// The modified Lentz recurrence of the incomplete beta function's continued fraction [1, 2]: two
/// steps, an even and an odd one, per round. The value accumulates d*c of every step; how is what
/// `Accumulator` decides.
template <class Accumulator>
double IncompleteBetaFraction(double a, double b, double x) {
  const double qab = a + b;
  const double qap = a + 1.0;
  const double qam = a - 1.0;
  double c = 1.0;
  double d = 1.0 - qab * x / qap;
  GuardTiny(c, d);
  d = 1.0 / d;
  Accumulator value(d);
  for (int m = 1; m <= kMaxRounds; ++m) {
    const int m2 = 2 * m;
    const double even = m * (b - m) * x / ((qam + m2) * (a + m2));
    d = 1.0 + even * d;
    c = 1.0 + even / c;
    GuardTiny(c, d);
    d = 1.0 / d;
    value.AddEvenStep(d, c);
    const double odd = -(a + m) * (qab + m) * x / ((a + m2) * (qap + m2));
    d = 1.0 + odd * d;
    c = 1.0 + odd / c;
    GuardTiny(c, d);
    d = 1.0 / d;
    const double del = d * c;
    value.AddOddStep(del);
    if (std::fabs(del - 1.0) < kTolerance) return value.Get();
  }
  TarnError(kErrorArgument, kNotConverged);
  return value.Get();
}

/// h, the product of all steps.
class ProductOfSteps {
 public:
  explicit ProductOfSteps(double first) : h_(first) {}
  void AddEvenStep(double d, double c) { h_ = h_ * d * c; }
  void AddOddStep(double del) { h_ *= del; }
  double Get() const { return h_; }

 private:
  double h_;
};

/// ln h, the sum of the logarithms of all steps.
class LogSumOfSteps {
 public:
  explicit LogSumOfSteps(double first) : lnH_(std::log(first)) {}
  void AddEvenStep(double d, double c) { lnH_ += std::log(d * c); }
  void AddOddStep(double del) { lnH_ += std::log(del); }
  double Get() const { return lnH_; }

 private:
  double lnH_;
};

/// Whether I_x(a, b) exists; raises error 3 where it does not.
bool CheckIncompleteBetaArguments(double a, double b, double x) {
  if (x < 0.0 || x > 1.0 || a <= 0.0 || b <= 0.0) {
    TarnError(kErrorArgument);
    return false;
  }
  return true;
}

/// ln of x^a (1-x)^b / B(a, b).
double LnBetaFactor(double a, double b, double x) {
  return LnGamma(a + b) - LnGamma(a) - LnGamma(b) + a * std::log(x) + b * std::log(1.0 - x);
}

/// Below, the fraction in x converges fast; from there on the one in 1 - x.
bool ConvergesDirectly(double a, double b, double x) { return x < (a + 1.0) / (a + b + 2.0); }

}  // namespace

double BetaContFrac(double a, double b, double x) {
  return IncompleteBetaFraction<ProductOfSteps>(a, b, x);
}

double LnBetaContFrac(double a, double b, double x) {
  return IncompleteBetaFraction<LogSumOfSteps>(a, b, x);
}

}  // namespace tarn

double Beta_I(double a, double b, double x) {
  if (!tarn::CheckIncompleteBetaArguments(a, b, x)) return 0.0;
  if (x == 0.0) return 0.0;
  if (x == 1.0) return 1.0;
  const double factor = std::exp(tarn::LnBetaFactor(a, b, x));
  if (tarn::ConvergesDirectly(a, b, x)) return factor * tarn::BetaContFrac(a, b, x) / a;
  return 1.0 - factor * tarn::BetaContFrac(b, a, 1.0 - x) / b;
}

double LnBeta_I(double a, double b, double x) {
  if (!tarn::CheckIncompleteBetaArguments(a, b, x)) return 0.0;
  if (x == 0.0) return tarn::kLnOfZero;
  if (x == 1.0) return 0.0;
  const double lnFactor = tarn::LnBetaFactor(a, b, x);
  if (tarn::ConvergesDirectly(a, b, x)) {
    return tarn::LnBetaContFrac(a, b, x) + lnFactor - std::log(a);
  }
  const double z = tarn::LnBetaContFrac(b, a, 1.0 - x) + lnFactor - std::log(b);
  if (z < tarn::kLogComplementSwitch) return std::log(1.0 - std::exp(z));
  return std::log(tarn::LogComplementSeries(z));
}

double Beta(double a, double b) { return std::exp(LnBeta(a, b)); }

double LnBeta(double a, double b) { return LnGamma(a) + LnGamma(b) - LnGamma(a + b); }
