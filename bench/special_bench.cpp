/// @file
/// The special functions beside GSL, Boost.Math and the C++ standard library, and the path from the
/// script table to them over an array of a million numbers.
///
/// Peers are asked for what we compute, in double precision: Boost without promotion to long
/// double, GSL through its plain functions. Where a peer lacks a function, the usual expression in
/// its own functions stands for it (the logarithm of a probability, a derivative by a recurrence).

#include <benchmark/benchmark.h>
#include <gsl/gsl_cdf.h>
#include <gsl/gsl_errno.h>
#include <gsl/gsl_sf.h>
#include <gsl/gsl_statistics.h>

#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/special_functions.hpp>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "host/embedded_host.h"
#include "ratio_reporter.h"
#include "scalar_subject.h"
#include "special/bessel_first_second.h"
#include "special/bessel_modified.h"
#include "special/beta.h"
#include "special/error_function.h"
#include "special/f_test.h"
#include "special/gamma.h"
#include "special/platform_bessel.h"

namespace {

using bench::Arguments;
using bench::Register;
using bench::Row;

namespace bm = boost::math;
using Plain = bm::policies::policy<bm::policies::promote_double<false>>;
constexpr Plain kPlain;

constexpr int kRowCount = 1000;

// What our functions are good for, and so what rows have to agree to.
constexpr double kTenDigits = 1e-9;
constexpr double kSevenDigits = 1e-6;
constexpr double kTwelveDigits = 1e-11;
constexpr double kAsymptotic = 1e-2;

// Gamma functions ---------------------------------------------------------------------------------

void RegisterLnGamma() {
  Arguments draw(1);
  Register({"LnGamma",
            kTenDigits,
            Arguments::Rows(kRowCount, [&] { return Row{draw.LogUniform(1e-2, 1e4)}; }),
            {{"tarn", [](const Row& r) { return LnGamma(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_lngamma(r.a); }},
             {"boost", [](const Row& r) { return bm::lgamma(r.a, kPlain); }},
             {"std", [](const Row& r) { return std::lgamma(r.a); }}}});
}

/// a and x of one scale. `low` and `high` are those of x/a.
std::vector<Row> GammaRows(std::uint64_t seed, double low, double high) {
  Arguments draw(seed);
  return Arguments::Rows(kRowCount, [&] {
    const double a = draw.LogUniform(0.1, 300.0);
    return Row{a, a * draw.Uniform(low, high)};
  });
}

void RegisterIncompleteGamma() {
  Register({"Gamma_P",
            kTenDigits,
            GammaRows(2, 0.3, 2.0),
            {{"tarn", [](const Row& r) { return Gamma_P(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_gamma_inc_P(r.a, r.b); }},
             {"boost", [](const Row& r) { return bm::gamma_p(r.a, r.b, kPlain); }}}});
  Register({"Gamma_Q",
            kTenDigits,
            GammaRows(3, 0.3, 2.0),
            {{"tarn", [](const Row& r) { return Gamma_Q(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_gamma_inc_Q(r.a, r.b); }},
             {"boost", [](const Row& r) { return bm::gamma_q(r.a, r.b, kPlain); }}}});
  Register({"LnGamma_P",
            kTenDigits,
            GammaRows(4, 0.3, 2.0),
            {{"tarn", [](const Row& r) { return LnGamma_P(r.a, r.b); }},
             {"gsl", [](const Row& r) { return std::log(gsl_sf_gamma_inc_P(r.a, r.b)); }},
             {"boost", [](const Row& r) { return std::log(bm::gamma_p(r.a, r.b, kPlain)); }}}});
  Register({"LnGamma_Q",
            kTenDigits,
            GammaRows(5, 0.3, 2.0),
            {{"tarn", [](const Row& r) { return LnGamma_Q(r.a, r.b); }},
             {"gsl", [](const Row& r) { return std::log(gsl_sf_gamma_inc_Q(r.a, r.b)); }},
             {"boost", [](const Row& r) { return std::log(bm::gamma_q(r.a, r.b, kPlain)); }}}});
}

// Beta functions and the F test -------------------------------------------------------------------

std::vector<Row> BetaRows(std::uint64_t seed) {
  Arguments draw(seed);
  return Arguments::Rows(kRowCount, [&] {
    const double a = draw.LogUniform(0.1, 300.0);
    const double b = draw.LogUniform(0.1, 300.0);
    return Row{a, b, std::fmin(0.999, a / (a + b) * draw.Uniform(0.3, 1.7))};
  });
}

void RegisterBeta() {
  Register({"Beta",
            kTenDigits,
            BetaRows(6),
            {{"tarn", [](const Row& r) { return Beta(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_beta(r.a, r.b); }},
             {"boost", [](const Row& r) { return bm::beta(r.a, r.b, kPlain); }},
             {"std", [](const Row& r) { return std::beta(r.a, r.b); }}}});
  Register({"LnBeta",
            kTenDigits,
            BetaRows(7),
            {{"tarn", [](const Row& r) { return LnBeta(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_lnbeta(r.a, r.b); }},
             {"boost", [](const Row& r) { return std::log(bm::beta(r.a, r.b, kPlain)); }},
             {"std", [](const Row& r) {
                return std::lgamma(r.a) + std::lgamma(r.b) - std::lgamma(r.a + r.b);
              }}}});
  Register({"Beta_I",
            kTenDigits,
            BetaRows(8),
            {{"tarn", [](const Row& r) { return Beta_I(r.a, r.b, r.c); }},
             {"gsl", [](const Row& r) { return gsl_sf_beta_inc(r.a, r.b, r.c); }},
             {"boost", [](const Row& r) { return bm::ibeta(r.a, r.b, r.c, kPlain); }}}});
  Register({"LnBeta_I",
            kTenDigits,
            BetaRows(9),
            {{"tarn", [](const Row& r) { return LnBeta_I(r.a, r.b, r.c); }},
             {"gsl", [](const Row& r) { return std::log(gsl_sf_beta_inc(r.a, r.b, r.c)); }},
             {"boost", [](const Row& r) { return std::log(bm::ibeta(r.a, r.b, r.c, kPlain)); }}}});
}

constexpr int kSampleSize = 200;

/// Two samples that all rows share; a row says where in them the test begins.
const std::vector<double>& Samples() {
  static const std::vector<double> samples = [] {
    Arguments draw(10);
    std::vector<double> values(4 * kSampleSize);
    for (double& value : values) value = draw.Uniform(-1.0, 1.0);
    return values;
  }();
  return samples;
}

const double* SampleOf(double begin) {
  return Samples().data() + static_cast<std::ptrdiff_t>(begin);
}

template <class Variance, class UpperTail>
double TwoSided(const Row& r, Variance variance, UpperTail upperTail) {
  const double v1 = variance(SampleOf(r.a));
  const double v2 = variance(SampleOf(r.b));
  const double p = 2.0 * upperTail(v1 > v2 ? v1 / v2 : v2 / v1, kSampleSize - 1.0);
  return p > 1.0 ? 2.0 - p : p;
}

void RegisterFTest() {
  Arguments draw(11);
  const auto rows = Arguments::Rows(50, [&] {
    return Row{draw.Integer(0, kSampleSize), draw.Integer(2 * kSampleSize, 3 * kSampleSize - 1)};
  });
  Register({"FTest",
            kTenDigits,
            rows,
            {{"tarn",
              [](const Row& r) {
                double ratio = 0.0;
                return FTest(const_cast<double*>(SampleOf(r.a)), kSampleSize,
                             const_cast<double*>(SampleOf(r.b)), kSampleSize, ratio);
              }},
             {"gsl", [](const Row& r) {
                return TwoSided(
                    r, [](const double* x) { return gsl_stats_variance(x, 1, kSampleSize); },
                    [](double f, double n) { return gsl_cdf_fdist_Q(f, n, n); });
              }}}});
}

// Error functions ---------------------------------------------------------------------------------

std::vector<Row> UnaryRows(std::uint64_t seed, double low, double high) {
  Arguments draw(seed);
  return Arguments::Rows(kRowCount, [&] { return Row{draw.Uniform(low, high)}; });
}

void RegisterErrorFunctions() {
  Register({"Erf",
            kSevenDigits,
            UnaryRows(12, -5.0, 5.0),
            {{"tarn", [](const Row& r) { return Erf(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_erf(r.a); }},
             {"boost", [](const Row& r) { return bm::erf(r.a, kPlain); }},
             {"std", [](const Row& r) { return std::erf(r.a); }}}});
  Register({"CErf",
            kSevenDigits,
            UnaryRows(13, -5.0, 9.9),
            {{"tarn", [](const Row& r) { return CErf(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_erfc(r.a); }},
             {"boost", [](const Row& r) { return bm::erfc(r.a, kPlain); }},
             {"std", [](const Row& r) { return std::erfc(r.a); }}}});
  Register({"LogCErf",
            kSevenDigits,
            UnaryRows(14, -5.0, 9.9),
            {{"tarn", [](const Row& r) { return LogCErf(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_log_erfc(r.a); }},
             {"boost", [](const Row& r) { return std::log(bm::erfc(r.a, kPlain)); }},
             {"std", [](const Row& r) { return std::log(std::erfc(r.a)); }}}});
  Register({"LogCErf_tail",
            kAsymptotic,
            UnaryRows(15, 10.0, 26.0),
            {{"tarn", [](const Row& r) { return LogCErf(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_log_erfc(r.a); }},
             {"boost", [](const Row& r) { return std::log(bm::erfc(r.a, kPlain)); }},
             {"std", [](const Row& r) { return std::log(std::erfc(r.a)); }}}});
}

// Bessel functions of the first and second kind ---------------------------------------------------

void RegisterPlatformBessel() {
  Register({"BesselJ0",
            kTwelveDigits,
            UnaryRows(16, 0.01, 60.0),
            {{"tarn", [](const Row& r) { return tarn::PlatformJ0(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_J0(r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_j(0, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_j(0.0, r.a); }}}});
  Register({"BesselY1",
            kTwelveDigits,
            UnaryRows(17, 0.01, 60.0),
            {{"tarn", [](const Row& r) { return tarn::PlatformY1(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_Y1(r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_neumann(1, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_neumann(1.0, r.a); }}}});
}

/// Arguments and integral orders.
std::vector<Row> IntegralRows(std::uint64_t seed, double low, double high, int lowest,
                              int highest) {
  Arguments draw(seed);
  return Arguments::Rows(kRowCount, [&] {
    return Row{draw.Uniform(low, high), draw.Integer(lowest, highest)};
  });
}

/// Arguments and orders that are not integral.
std::vector<Row> RealRows(std::uint64_t seed, double low, double high, double lowest,
                          double highest) {
  Arguments draw(seed);
  return Arguments::Rows(kRowCount, [&] {
    return Row{draw.Uniform(low, high), draw.Uniform(lowest, highest)};
  });
}

int Order(const Row& r) { return static_cast<int>(r.b); }

void RegisterIntegralBessel() {
  Register({"BesselJn_integral",
            kTwelveDigits,
            IntegralRows(18, 0.5, 60.0, 2, 20),
            {{"tarn", [](const Row& r) { return tarn::BesselJ(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_Jn(Order(r), r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_j(Order(r), r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_j(r.b, r.a); }}}});
  Register({"BesselYn_integral",
            kTwelveDigits,
            IntegralRows(19, 0.5, 60.0, 2, 20),
            {{"tarn", [](const Row& r) { return tarn::BesselY(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_Yn(Order(r), r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_neumann(Order(r), r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_neumann(r.b, r.a); }}}});
}

/// The same subject for small and for larger arguments, whose methods differ.
void RegisterRealBessel(const std::string& where, double low, double high) {
  Register({"BesselJn_real_" + where,
            kTwelveDigits,
            RealRows(20, low, high, 0.1, 15.0),
            {{"tarn", [](const Row& r) { return tarn::BesselJ(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_Jnu(r.b, r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_j(r.b, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_j(r.b, r.a); }}}});
  Register({"BesselYn_real_" + where,
            kTwelveDigits,
            RealRows(21, low, high, 0.1, 15.0),
            {{"tarn", [](const Row& r) { return tarn::BesselY(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_Ynu(r.b, r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_neumann(r.b, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_neumann(r.b, r.a); }}}});
  Register({"BesselJpn_" + where,
            kTwelveDigits,
            RealRows(22, low, high, 0.1, 15.0),
            {{"tarn", [](const Row& r) { return tarn::BesselJDerivative(r.a, r.b); }},
             {"gsl",
              [](const Row& r) {
                return r.b / r.a * gsl_sf_bessel_Jnu(r.b, r.a) - gsl_sf_bessel_Jnu(r.b + 1.0, r.a);
              }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_j_prime(r.b, r.a, kPlain); }}}});
}

// Modified Bessel functions -----------------------------------------------------------------------

void RegisterModifiedOfOrderZeroAndOne() {
  Register({"BesselI0",
            kSevenDigits,
            UnaryRows(23, 0.01, 60.0),
            {{"tarn", [](const Row& r) { return BesselI0(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_I0(r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_i(0, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_i(0.0, r.a); }}}});
  Register({"BesselI1",
            kSevenDigits,
            UnaryRows(24, 0.01, 60.0),
            {{"tarn", [](const Row& r) { return BesselI1(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_I1(r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_i(1, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_i(1.0, r.a); }}}});
  Register({"BesselK0",
            kSevenDigits,
            UnaryRows(25, 0.01, 60.0),
            {{"tarn", [](const Row& r) { return BesselK0(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_K0(r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_k(0, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_k(0.0, r.a); }}}});
  Register({"BesselK1",
            kSevenDigits,
            UnaryRows(26, 0.01, 60.0),
            {{"tarn", [](const Row& r) { return BesselK1(r.a); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_K1(r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_k(1, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_k(1.0, r.a); }}}});
}

void RegisterModifiedIntegral() {
  Register({"BesselIn_integral",
            kSevenDigits,
            IntegralRows(27, 0.5, 30.0, 2, 20),
            {{"tarn", [](const Row& r) { return BesselIn(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_In(Order(r), r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_i(Order(r), r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_i(r.b, r.a); }}}});
  Register({"BesselKn_integral",
            kSevenDigits,
            IntegralRows(28, 0.5, 30.0, 2, 20),
            {{"tarn", [](const Row& r) { return BesselKn(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_Kn(Order(r), r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_k(Order(r), r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_k(r.b, r.a); }}}});
}

void RegisterModifiedReal(const std::string& where, double low, double high) {
  Register({"BesselIn_real_" + where,
            kTwelveDigits,
            RealRows(29, low, high, 0.1, 15.0),
            {{"tarn", [](const Row& r) { return BesselIn(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_Inu(r.b, r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_i(r.b, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_i(r.b, r.a); }}}});
  Register({"BesselKn_real_" + where,
            kTwelveDigits,
            RealRows(30, low, high, 0.1, 15.0),
            {{"tarn", [](const Row& r) { return BesselKn(r.a, r.b); }},
             {"gsl", [](const Row& r) { return gsl_sf_bessel_Knu(r.b, r.a); }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_k(r.b, r.a, kPlain); }},
             {"std", [](const Row& r) { return std::cyl_bessel_k(r.b, r.a); }}}});
  Register({"BesselIpn_" + where,
            kTwelveDigits,
            RealRows(31, low, high, 0.1, 15.0),
            {{"tarn", [](const Row& r) { return BesselIpn(r.a, r.b); }},
             {"gsl",
              [](const Row& r) {
                return r.b / r.a * gsl_sf_bessel_Inu(r.b, r.a) + gsl_sf_bessel_Inu(r.b + 1.0, r.a);
              }},
             {"boost", [](const Row& r) { return bm::cyl_bessel_i_prime(r.b, r.a, kPlain); }}}});
  Register({"LnBesselIn_real_" + where,
            kTwelveDigits,
            RealRows(32, low, high, 8.0, 15.0),
            {{"tarn", [](const Row& r) { return LnBesselIn(r.a, r.b); }},
             {"gsl", [](const Row& r) { return std::log(gsl_sf_bessel_Inu(r.b, r.a)); }},
             {"boost", [](const Row& r) { return std::log(bm::cyl_bessel_i(r.b, r.a, kPlain)); }},
             {"std", [](const Row& r) { return std::log(std::cyl_bessel_i(r.b, r.a)); }}}});
}

// Script functions over an array ------------------------------------------------------------------

constexpr std::int64_t kElements = 1'000'000;
constexpr const char* kScriptPrefix = "script_";
constexpr const char* kScalarLoop = "scalar";

struct ScriptSubject {
  const char* name;
  double (*scalar)(double);
  double low;
  double high;
};

constexpr ScriptSubject kScriptSubjects[] = {
    {"BesselJ0", tarn::PlatformJ0, 0.0, 30.0},
    {"BesselY1", tarn::PlatformY1, 0.1, 30.0},
    {"BesselI0", BesselI0, 0.0, 30.0},
    {"BesselI1", BesselI1, 0.0, 30.0},
    {"BesselK0", BesselK0, 0.1, 30.0},
    {"BesselK1", BesselK1, 0.1, 30.0},
    {"LnGamma", LnGamma, 0.1, 100.0},
    {"Errf1", Erf, -5.0, 5.0},
    {"CErrf", CErf, -5.0, 9.0},
    {"LnCErrf", LogCErf, -5.0, 9.0},
};

std::vector<double> Elements(const ScriptSubject& subject) {
  Arguments draw(33);
  std::vector<double> elements(static_cast<std::size_t>(kElements));
  for (double& element : elements) element = draw.Uniform(subject.low, subject.high);
  return elements;
}

/// The handler of the script table, called as a host calls it.
void RunHandler(benchmark::State& state, EmbeddedHost::Handler handler,
                const ScriptSubject& subject) {
  const std::vector<double> elements = Elements(subject);
  Variable array(VARTYPE_ARRAY, kElements);
  for (std::int64_t i = 0; i < kElements; ++i) array[i] = elements[static_cast<std::size_t>(i)];
  VarRegister argument;
  argument.PointTo(&array);
  for (auto _ : state) {
    VarRegister result;
    handler(result, &argument);
    benchmark::DoNotOptimize(result.GetVar().GetArray());
  }
  state.SetItemsProcessed(state.iterations() * kElements);
}

/// The scalar routine over plain memory.
void RunScalarLoop(benchmark::State& state, const ScriptSubject& subject) {
  const std::vector<double> elements = Elements(subject);
  std::vector<double> results(elements.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < elements.size(); ++i) results[i] = subject.scalar(elements[i]);
    benchmark::DoNotOptimize(results.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kElements);
}

void RegisterScriptPath(const EmbeddedHost& host) {
  for (const ScriptSubject& subject : kScriptSubjects) {
    const std::string name = std::string(kScriptPrefix) + subject.name;
    const auto handler = host.FindHandler(subject.name);
    benchmark::RegisterBenchmark(
        (name + "/" + bench::kOurs).c_str(),
        [handler, &subject](benchmark::State& state) { RunHandler(state, handler, subject); });
    benchmark::RegisterBenchmark(
        (name + "/" + kScalarLoop).c_str(),
        [&subject](benchmark::State& state) { RunScalarLoop(state, subject); });
  }
}

void PrintDispatchCost(const bench::RatioReporter& reporter) {
  std::puts(
      "\nWhat the script table adds to the scalar routine, in ns per element of a host array:\n");
  for (const ScriptSubject& subject : kScriptSubjects) {
    const std::string row = std::string(kScriptPrefix) + subject.name;
    const auto handler = reporter.Time(row, bench::kOurs);
    const auto scalar = reporter.Time(row, kScalarLoop);
    if (handler && scalar) std::printf("    %-10s %6.2f\n", subject.name, *handler - *scalar);
  }
}

void RegisterAll(const EmbeddedHost& host) {
  RegisterLnGamma();
  RegisterIncompleteGamma();
  RegisterBeta();
  RegisterFTest();
  RegisterErrorFunctions();
  RegisterPlatformBessel();
  RegisterIntegralBessel();
  RegisterRealBessel("small", 0.1, 2.0);
  RegisterRealBessel("large", 2.0, 60.0);
  RegisterModifiedOfOrderZeroAndOne();
  RegisterModifiedIntegral();
  RegisterModifiedReal("small", 0.1, 2.0);
  RegisterModifiedReal("large", 2.0, 60.0);
  RegisterScriptPath(host);
}

}  // namespace

int main(int count, char** words) {
  gsl_set_error_handler_off();
  EmbeddedHost host;
  if (!host.Load(TARN_MODULE_PATH)) {
    std::cerr << host.TakeError().ToString() << '\n';
    return 1;
  }
  RegisterAll(host);
  bench::RatioReporter reporter;
  const int status = bench::RunAndPrintRatios(count, words, reporter);
  if (status == 0) PrintDispatchCost(reporter);
  return status;
}
