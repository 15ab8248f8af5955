/// @file
/// The functions that have truth tables.

#include <utility>

#include "special/accuracy.h"
#include "special/bessel_first_second.h"
#include "special/bessel_modified.h"
#include "special/beta.h"
#include "special/error_function.h"
#include "special/f_test.h"
#include "special/gamma.h"
#include "special/platform_bessel.h"

namespace accuracy {
namespace {

using Arguments = std::vector<double>;

Function Unary(const char* name, const char* family, double (*f)(double)) {
  return {name, family, 0, [f](const Arguments& a) { return f(a[0]); }};
}

Function Binary(const char* name, const char* family, std::size_t plotted,
                double (*f)(double, double)) {
  return {name, family, plotted, [f](const Arguments& a) { return f(a[0], a[1]); }};
}

Function Ternary(const char* name, const char* family, double (*f)(double, double, double)) {
  return {name, family, 0, [f](const Arguments& a) { return f(a[0], a[1], a[2]); }};
}

/// A script function of one number.
Function Script(EmbeddedHost& host, const char* name, const char* family) {
  return {name, family, 0, [&host, name](const Arguments& a) {
            Variable argument;
            argument = a[0];
            Variable result;
            host.Call(name, {&argument, 1}, &result);
            return result.GetDoubleNumb();
          }};
}

/// Significance and ratio of the F test of a row n1 n2 value ... .
std::pair<double, double> RunFTest(const Arguments& row) {
  const auto n1 = static_cast<std::size_t>(row[0]);
  Arguments first(row.begin() + 2, row.begin() + 2 + static_cast<std::ptrdiff_t>(n1));
  Arguments second(row.begin() + 2 + static_cast<std::ptrdiff_t>(n1), row.end());
  double ratio = 0.0;
  const double significance = FTest(first.data(), static_cast<int>(first.size()), second.data(),
                                    static_cast<int>(second.size()), ratio);
  return {significance, ratio};
}

}  // namespace

std::vector<Function> Functions(EmbeddedHost& host) {
  return {
      Unary("LnGamma", "gamma", LnGamma),
      Binary("Gamma_P", "gamma", 1, Gamma_P),
      Binary("Gamma_Q", "gamma", 1, Gamma_Q),
      Binary("LnGamma_P", "gamma", 1, LnGamma_P),
      Binary("LnGamma_Q", "gamma", 1, LnGamma_Q),
      Binary("Beta", "beta", 0, Beta),
      Binary("LnBeta", "beta", 0, LnBeta),
      Ternary("Beta_I", "beta", Beta_I),
      Ternary("LnBeta_I", "beta", LnBeta_I),
      {"FTest", "beta", 2, [](const Arguments& row) { return RunFTest(row).first; }},
      {"FTest_ratio", "beta", 2, [](const Arguments& row) { return RunFTest(row).second; }},
      Unary("Erf", "error_functions", Erf),
      Script(host, "Errf", "error_functions"),
      Unary("CErf", "error_functions", CErf),
      Unary("LogCErf", "error_functions", LogCErf),
      Script(host, "Psi", "error_functions"),
      Script(host, "LnPsi", "error_functions"),
      Unary("BesselJ0", "bessel", tarn::PlatformJ0),
      Unary("BesselJ1", "bessel", tarn::PlatformJ1),
      Binary("BesselJn", "bessel", 0, tarn::BesselJ),
      Binary("BesselJ", "bessel", 0, tarn::BesselJ),
      Binary("BesselJDerivative", "bessel", 0, tarn::BesselJDerivative),
      Unary("BesselY0", "bessel", tarn::PlatformY0),
      Unary("BesselY1", "bessel", tarn::PlatformY1),
      Binary("BesselYn", "bessel", 0, tarn::BesselY),
      Binary("BesselY", "bessel", 0, tarn::BesselY),
      Binary("BesselYDerivative", "bessel", 0, tarn::BesselYDerivative),
      Unary("BesselI0", "modified_bessel", BesselI0),
      Unary("BesselI1", "modified_bessel", BesselI1),
      Binary("BesselIn_integral", "modified_bessel", 0, BesselIn),
      Binary("BesselIn", "modified_bessel", 0, BesselIn),
      Binary("BesselIpn", "modified_bessel", 0, BesselIpn),
      Binary("LnBesselIn", "modified_bessel", 0, LnBesselIn),
      Binary("LnBesselIpn", "modified_bessel", 0, LnBesselIpn),
      Unary("BesselK0", "modified_bessel", BesselK0),
      Unary("BesselK1", "modified_bessel", BesselK1),
      Binary("BesselKn_integral", "modified_bessel", 0, BesselKn),
      Binary("BesselKn", "modified_bessel", 0, BesselKn),
      Binary("BesselKpn", "modified_bessel", 0, BesselKpn),
  };
}

}  // namespace accuracy
