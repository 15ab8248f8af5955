#include "likelihood.h"

#include <cmath>
#include <numbers>

namespace tarn::toolkit {
namespace {

// Near 0 the closed forms are differences of numbers as large as 1/u^2; series take their place
// where the first term left out is below 1e-11.

double InverseSquareCurvature(double u) {
  const double t = u * u / 2.0;
  if (t < 0.02) return 0.5 - t / 4.0 + 7.0 * t * t * t / 720.0;
  constexpr double kFar = 700.0;  // there the exponential is 0 beside 1
  if (t > kFar) return -1.0 / t;
  const double q = 1.0 / std::expm1(t);
  return u * u * q * (1.0 + q) - q - 1.0 / t;
}

double JeffreysCurvature(double u) {
  const double square = u * u;
  if (square < 0.0025) return 1.0 / 3.0 - 2.0 * square / 15.0 + 2.0 * square * square / 189.0;
  const double density = std::numbers::sqrt2 * std::numbers::inv_sqrtpi * std::exp(-square / 2.0);
  const double ratio = density / std::erf(u / std::numbers::sqrt2);
  return ratio * (u + ratio) - 1.0 / square;
}

}  // namespace

double LikelihoodCurvature(double u, int prior) {
  const double size = std::fabs(u);
  return prior == kJeffreys ? JeffreysCurvature(size) : InverseSquareCurvature(size);
}

std::unique_ptr<DenseMatrix> LikelihoodHessian(const BasisTable& table, const Numbers& residuals,
                                               const Numbers& variances, int prior) {
  const int terms = static_cast<int>(table.Terms());
  auto hessian = MakeMatrix(terms, terms);
  for (std::size_t i = 0; i < residuals.size(); ++i) {
    const double u = residuals[i] / std::sqrt(variances[i]);
    const double curvature = LikelihoodCurvature(u, prior) / variances[i];
    for (int k = 0; k < terms; ++k) {
      const double weighted = curvature * table.At(static_cast<std::size_t>(k), i);
      for (int j = 0; j < terms; ++j) {
        (*hessian)(k, j) += weighted * table.At(static_cast<std::size_t>(j), i);
      }
    }
  }
  return hessian;
}

}  // namespace tarn::toolkit
