/// @file
/// The script function table: one handler per row, in the order in which hosts list them.

#include <cmath>
#include <memory>
#include <new>

#include "frame/host.h"
#include "frame/module_entry.h"
#include "frame/script_dispatch.h"
#include "special/bessel_first_second.h"
#include "special/bessel_modified.h"
#include "special/beta.h"
#include "special/error_function.h"
#include "special/f_test.h"
#include "special/gamma.h"
#include "special/platform_bessel.h"
#include "special/random.h"

namespace tarn {
namespace {

using ScalarFunction = double (*)(double x);
using OrderedFunction = double (*)(double x, double order);
using NumberFunction2 = double (*)(double first, double second);
using NumberFunction3 = double (*)(double first, double second, double third);

// Handlers of one shape are instances of one template; the scalar routine is its parameter.

/// "(any)": f of every element.
template <ScalarFunction f>
void MapHandler(VarRegister& result, VarRegister* arguments) {
  ApplyElementWise(result, arguments[0], [](double x) { return f(x); });
}

/// "(number, any)": f(x, order) of every element x, the order converted once.
template <OrderedFunction f>
void MapOrderedHandler(VarRegister& result, VarRegister* arguments) {
  const double order = arguments[0];
  ApplyElementWise(result, arguments[1], [order](double x) { return f(x, order); });
}

/// "(number, number)".
template <NumberFunction2 f>
void NumbersHandler2(VarRegister& result, VarRegister* arguments) {
  const double first = arguments[0];
  const double second = arguments[1];
  result = f(first, second);
}

/// "(number, number, number)".
template <NumberFunction3 f>
void NumbersHandler3(VarRegister& result, VarRegister* arguments) {
  const double first = arguments[0];
  const double second = arguments[1];
  const double third = arguments[2];
  result = f(first, second, third);
}

void ConjugateHandler(VarRegister& result, VarRegister* arguments) {
  result.GetVar() = arguments[0].GetVar().Conjugate();
}

/// Probability that chi-square of `degrees` degrees of freedom does not exceed `value`.
double ProbChi2(double degrees, double value) { return Gamma_P(degrees * 0.5, value * 0.5); }

/// erf(x) = sign(x) P(1/2, x^2).
double Errf(double x) {
  const double p = Gamma_P(0.5, x * x);
  return x < 0.0 ? -p : p;
}

double Sinc(double x) { return x == 0.0 ? 1.0 : std::sin(x) / x; }

/// Where the ratio of normal density to upper tail has become its asymptote x.
constexpr double kNormalTailAsymptote = 30.0;
constexpr double kSqrt2 = 1.414213562373095;
constexpr double kSqrt2OverPi = 0.797884560802865;
constexpr double kLnSqrt2OverPi = -0.225791352644727;

/// Standard normal density over its upper tail.
double Psi(double x) {
  if (x < kNormalTailAsymptote) return std::exp(-x * x / 2.0) * kSqrt2OverPi / CErf(x / kSqrt2);
  return x;
}

/// Logarithm of `Psi`.
double LnPsi(double x) {
  if (x < kNormalTailAsymptote) return kLnSqrt2OverPi - x * x / 2.0 - std::log(CErf(x / kSqrt2));
  return std::log(x);
}

/// The elements of a vector-like argument as doubles; null when the memory cannot be had.
std::unique_ptr<double[]> CopyNumbers(Variable& values, std::int64_t count) {
  std::unique_ptr<double[]> numbers(new (std::nothrow) double[static_cast<std::size_t>(count)]);
  if (!numbers) return numbers;
  for (std::int64_t i = 0; i < count; ++i)
    numbers[static_cast<std::size_t>(i)] = values[i].GetDoubleNumb();
  return numbers;
}

void FTestHandler(VarRegister& result, VarRegister* arguments) {
  Variable& first = arguments[0].GetVar();
  Variable& second = arguments[1].GetVar();
  const std::int64_t firstCount = first.GetDim();
  const std::int64_t secondCount = second.GetDim();
  const auto firstNumbers = CopyNumbers(first, firstCount);
  const auto secondNumbers = CopyNumbers(second, secondCount);
  if (!firstNumbers || !secondNumbers) return;
  double ratio = 0.0;
  result = FTest(firstNumbers.get(), static_cast<int>(firstCount), secondNumbers.get(),
                 static_cast<int>(secondCount), ratio);
}

void RandPoissonHandler(VarRegister& result, VarRegister* arguments) {
  const double mean = arguments[0];
  result = RandPoisson(mean);
}

void RandBinominalHandler(VarRegister& result, VarRegister* arguments) {
  const double probability = arguments[0];
  const int trials = arguments[1];
  result = RandBinominal(probability, trials);
}

const ScriptFunction kScriptFunctions[] = {
    {ConjugateHandler, "Conjugate(any)"},
    {MapHandler<PlatformJ0>, "BesselJ0(any)"},
    {MapHandler<PlatformJ1>, "BesselJ1(any)"},
    {MapOrderedHandler<BesselJ>, "BesselJn(number, any)"},
    {MapOrderedHandler<BesselJDerivative>, "BesselJpn(number, any)"},
    {MapHandler<PlatformY0>, "BesselY0(any)"},
    {MapHandler<PlatformY1>, "BesselY1(any)"},
    {MapOrderedHandler<BesselY>, "BesselYn(number, any)"},
    {MapOrderedHandler<BesselYDerivative>, "BesselYpn(number, any)"},
    {MapHandler<BesselI0>, "BesselI0(any)"},
    {MapHandler<BesselI1>, "BesselI1(any)"},
    {MapOrderedHandler<BesselIn>, "BesselIn(number, any)"},
    {MapOrderedHandler<LnBesselIn>, "LnBesselIn(number, any)"},
    {MapOrderedHandler<BesselIpn>, "BesselIpn(number, any)"},
    {MapOrderedHandler<LnBesselIpn>, "LnBesselIpn(number, any)"},
    {MapHandler<BesselK0>, "BesselK0(any)"},
    {MapHandler<BesselK1>, "BesselK1(any)"},
    {MapOrderedHandler<BesselKn>, "BesselKn(number, any)"},
    {MapOrderedHandler<BesselKpn>, "BesselKpn(number, any)"},
    {MapHandler<LnGamma>, "LnGamma(any)"},
    {NumbersHandler2<Gamma_P>, "Gamma_P(number, number)"},
    {NumbersHandler2<LnGamma_P>, "LnGamma_P(number, number)"},
    {NumbersHandler2<Gamma_Q>, "Gamma_Q(number, number)"},
    {NumbersHandler2<LnGamma_Q>, "LnGamma_Q(number, number)"},
    {NumbersHandler3<Beta_I>, "Beta_I(number, number, number)"},
    {NumbersHandler3<LnBeta_I>, "LnBeta_I(number, number, number)"},
    {NumbersHandler2<Beta>, "Beta(number, number)"},
    {NumbersHandler2<LnBeta>, "LnBeta(number, number)"},
    {NumbersHandler2<ProbChi2>, "ProbChi2(number, number)"},
    {FTestHandler, "FTest(refer object Vector, refer object Vector)"},
    {MapHandler<Errf>, "Errf(any)"},
    {MapHandler<Erf>, "Errf1(any)"},
    {MapHandler<CErf>, "CErrf(any)"},
    {MapHandler<LogCErf>, "LnCErrf(any)"},
    {MapHandler<Sinc>, "Sinc(any)"},
    {NumbersHandler2<RandGauss>, "RandGauss(number, number)"},
    {NumbersHandler2<RandGauss>, "RandGaus(number, number)"},
    {RandPoissonHandler, "RandPoisson(number)"},
    {RandBinominalHandler, "RandBinominal(number, int)"},
    {MapHandler<Psi>, "Psi(any)"},
    {MapHandler<LnPsi>, "LnPsi(any)"},
    {nullptr, ""},
};

}  // namespace

const ScriptFunction* GetScriptFunctions() { return kScriptFunctions; }

}  // namespace tarn
