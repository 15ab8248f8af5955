#include "frame/error_numbers.h"
#include "frame/host.h"
#include "special/bessel_real_order.h"

namespace tarn {
namespace {

// Chebyshev coefficients of gam1 and gam2 in 8 mu^2 - 1.
constexpr int kGam1Count = 7;
constexpr double kGam1[kGam1Count] = {-1.142022680371168, 0.0065165112670737, 0.0003087090173086,
                                      -3.4706269649e-06,  6.9437664e-09,      3.67795e-11,
                                      -1.356e-13};
constexpr int kGam2Count = 8;
constexpr double kGam2[kGam2Count] = {
    1.843740587300905, -0.0768528408447867, 0.0012719271366546, -4.9717367042e-06,
    -3.31261198e-08,   2.423096e-10,        -1.702e-13,         -1.49e-15};

}  // namespace

double ChebyshevEval(double a, double b, const double* c, int m, double y) {
  if ((y - a) * (y - b) > 0.0) {
    TarnError(kErrorArgument);
    return 0.0;
  }
  const double z = (2.0 * y - a - b) / (b - a);
  const double twoZ = 2.0 * z;
  double d = 0.0;
  double dd = 0.0;
  for (int j = m - 1; j >= 1; --j) {
    const double next = twoZ * d - dd + c[j];
    dd = d;
    d = next;
  }
  return z * d - dd + c[0] / 2.0;
}

TemmeGamma GammaCoefficients(double mu) {
  const double y = 8.0 * mu * mu - 1.0;
  const double gam1 = ChebyshevEval(-1.0, 1.0, kGam1, kGam1Count, y);
  const double gam2 = ChebyshevEval(-1.0, 1.0, kGam2, kGam2Count, y);
  return {gam1, gam2, gam2 - mu * gam1, gam2 + mu * gam1};
}

}  // namespace tarn
