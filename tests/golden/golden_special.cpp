// Special functions and random deviates.

#include <functional>

#include "golden_bits.h"
#include "special/bessel_first_second.h"
#include "tarn_base_math.h"

namespace tarn_golden {
namespace {

constexpr int kPoints = 20000;
constexpr int kCostlyPoints = 4000;  // where a point takes a long recurrence or fraction

void OneArgument(Report& report, const std::string& name, double (*function)(double), double from,
                 double scale) {
  report.Function(name, [=](Hash& hash) {
    Inputs inputs(1);
    for (int i = 0; i < kPoints; ++i) hash.Add(function(from + inputs.Below(scale)));
    for (int i = 0; i < kPoints; ++i) hash.Add(function(std::fabs(inputs.Wide(-60, 9))));
    for (const double x : {0.0, 1.0, 2.0, 3.75, 10.0, 709.0, 1e300, HUGE_VAL})
      hash.Add(function(x));
  });
}

/// f(x, order) for integral, half-integral and other orders.
void OfOrder(Report& report, const std::string& name, double (*function)(double, double)) {
  report.Function(name, [=](Hash& hash) {
    Inputs inputs(2);
    for (int i = 0; i < kCostlyPoints; ++i) {
      const double x = inputs.Below(64);
      const double order = static_cast<double>(inputs.Integer(0, 40));
      hash.Add(function(x, order));
      hash.Add(function(x, order + 0.5));
      hash.Add(function(x, inputs.Below(32)));
    }
  });
}

void TwoArguments(Report& report, const std::string& name, double (*function)(double, double)) {
  report.Function(name, [=](Hash& hash) {
    Inputs inputs(3);
    for (int i = 0; i < kPoints; ++i) {
      const double a = inputs.Below(i % 2 == 0 ? 4 : 128);
      const double b = inputs.Below(i % 3 == 0 ? 4 : 128);
      hash.Add(function(a, b));
    }
  });
}

void ThreeArguments(Report& report, const std::string& name,
                    double (*function)(double, double, double)) {
  report.Function(name, [=](Hash& hash) {
    Inputs inputs(4);
    for (int i = 0; i < kPoints; ++i) {
      const double a = inputs.Below(i % 2 == 0 ? 2 : 64);
      const double b = inputs.Below(i % 3 == 0 ? 2 : 64);
      hash.Add(function(a, b, inputs.Unit()));
    }
  });
}

void Samples(Report& report) {
  report.Function("FTest", [](Hash& hash) {
    Inputs inputs(5);
    for (int i = 0; i < kCostlyPoints; ++i) {
      std::vector<double> first(static_cast<std::size_t>(inputs.Integer(0, 30)));
      std::vector<double> second(static_cast<std::size_t>(inputs.Integer(2, 30)));
      for (double& x : first) x = inputs.Below(4);
      for (double& x : second) x = inputs.Below(8);
      double ratio = 0;
      hash.Add(FTest(first.data(), static_cast<int>(first.size()), second.data(),
                     static_cast<int>(second.size()), ratio));
      hash.Add(ratio);
    }
  });
}

void Deviates(Report& report) {
  report.Function("RandGauss", [](Hash& hash) {
    for (int i = 0; i < kPoints; ++i) hash.Add(RandGauss(0.25, 3));
  });
  report.Function("RandPoisson", [](Hash& hash) {
    for (const double mean : {0.1, 3.0, 11.9, 12.0, 50.0, 1e4}) {
      for (int i = 0; i < kCostlyPoints; ++i) hash.Add(RandPoisson(mean));
    }
  });
  report.Function("RandBinominal", [](Hash& hash) {
    for (const int n : {5, 24, 25, 100, 10000}) {
      for (const double p : {0.01, 0.3, 0.5, 0.9}) {
        for (int i = 0; i < kCostlyPoints / 4; ++i) hash.Add(RandBinominal(p, n));
      }
    }
  });
}

}  // namespace

void RunGoldenSpecial(Report& report) {
  OneArgument(report, "LnGamma", LnGamma, 0, 128);
  OneArgument(report, "Erf", Erf, -16, 32);
  OneArgument(report, "CErf", CErf, -16, 32);
  OneArgument(report, "LogCErf", LogCErf, -16, 64);
  OneArgument(report, "BesselI0", BesselI0, -32, 64);
  OneArgument(report, "BesselI1", BesselI1, -32, 64);
  OneArgument(report, "BesselK0", BesselK0, 0, 32);
  OneArgument(report, "BesselK1", BesselK1, 0, 32);
  OfOrder(report, "BesselJ", tarn::BesselJ);
  OfOrder(report, "BesselY", tarn::BesselY);
  OfOrder(report, "BesselJDerivative", tarn::BesselJDerivative);
  OfOrder(report, "BesselYDerivative", tarn::BesselYDerivative);
  OfOrder(report, "BesselIn", BesselIn);
  OfOrder(report, "LnBesselIn", LnBesselIn);
  OfOrder(report, "BesselIpn", BesselIpn);
  OfOrder(report, "LnBesselIpn", LnBesselIpn);
  OfOrder(report, "BesselKn", BesselKn);
  OfOrder(report, "BesselKpn", BesselKpn);
  TwoArguments(report, "Gamma_P", Gamma_P);
  TwoArguments(report, "Gamma_Q", Gamma_Q);
  TwoArguments(report, "LnGamma_P", LnGamma_P);
  TwoArguments(report, "LnGamma_Q", LnGamma_Q);
  TwoArguments(report, "Beta", Beta);
  TwoArguments(report, "LnBeta", LnBeta);
  ThreeArguments(report, "Beta_I", Beta_I);
  ThreeArguments(report, "LnBeta_I", LnBeta_I);
  Samples(report);
  Deviates(report);
}

}  // namespace tarn_golden
