#include "special/f_test.h"

#include "special/beta.h"

namespace tarn {
namespace {

/// The ratio reported when a sample has no scatter at all.
constexpr double kRatioWithoutScatter = 1e6;

/// (sum of squares - n mean^2)/(n - 1), both sums in index order.
double Variance(const double* data, int n) {
  double sum = 0.0;
  double sumOfSquares = 0.0;
  for (int i = 0; i < n; ++i) {
    sum += data[i];
    sumOfSquares += data[i] * data[i];
  }
  const double mean = sum / n;
  return (sumOfSquares - n * (mean * mean)) / (n - 1);
}

/// A variance ratio and the degrees of freedom of its numerator and denominator.
struct VarianceRatio {
  double f;
  double numerator;
  double denominator;
};

/// The larger variance over the smaller one. A variance that rounding left at or below zero has no
/// ratio; the degrees are then those of the second sample over the first.
VarianceRatio LargerOverSmaller(double variance1, int n1, double variance2, int n2) {
  const double degrees1 = n1 - 1;
  const double degrees2 = n2 - 1;
  if (variance1 <= 0.0 || variance2 <= 0.0) return {kRatioWithoutScatter, degrees2, degrees1};
  if (variance1 > variance2) return {variance1 / variance2, degrees1, degrees2};
  return {variance2 / variance1, degrees2, degrees1};
}

/// Probability that the ratio of equal variances is as far from 1 as `ratio`, to either side.
double TwoSidedSignificance(const VarianceRatio& ratio) {
  const double x = ratio.denominator / (ratio.denominator + ratio.numerator * ratio.f);
  const double p = 2.0 * Beta_I(ratio.denominator / 2.0, ratio.numerator / 2.0, x);
  return p > 1.0 ? 2.0 - p : p;
}

}  // namespace
}  // namespace tarn

double FTest(double* data1, int n1, double* data2, int n2, double& f) {
  if (n1 < 2 || n2 < 2) return 0.0;
  const double variance1 = tarn::Variance(data1, n1);
  const double variance2 = tarn::Variance(data2, n2);
  if (variance1 == variance2) {
    f = 1.0;
    return 1.0;
  }
  const tarn::VarianceRatio ratio = tarn::LargerOverSmaller(variance1, n1, variance2, n2);
  f = ratio.f;
  return tarn::TwoSidedSignificance(ratio);
}
