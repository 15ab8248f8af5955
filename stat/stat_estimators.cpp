/// @file
/// Mean and dispersions: the plain ones, and those of samples with measurement errors.

#include <cmath>

#include "stat/number_arrays.h"
#include "stat/stat.h"

namespace {

/// Sums over the weights w[i] = 1/(D + s[i]), stored in `work`:
/// S1 - S2/S1 - sum((x[i] - mu) w[i])^2 with S1 = sum(w), S2 = sum(w^2), mu = sum(w x)/S1. It is 0
/// at the maximum of the restricted Gaussian likelihood in D.
double RestrictedLikelihoodSlope(double dispersion, double* data, double* disp, double* work,
                                 int n) {
  double s1 = 0.0;
  double s2 = 0.0;
  double mu = 0.0;
  for (int i = 0; i < n; ++i) {
    work[i] = 1.0 / (dispersion + disp[i]);
    s1 += work[i];
    s2 += work[i] * work[i];
    mu += work[i] * data[i];
  }
  if (s1 > 0.0) {
    mu /= s1;
    s2 /= s1;
  }
  double q = 0.0;
  for (int i = 0; i < n; ++i) {
    const double deviation = (data[i] - mu) * work[i];
    q += deviation * deviation;
  }
  return s1 - s2 - q;
}

double UniformPriorRoot(double t, double* data, double* disp, double* work, int n) {
  if (n == 0) return 0.0;
  return RestrictedLikelihoodSlope(std::exp(t), data, disp, work, n);
}

double JeffreysPriorRoot(double t, double* data, double* disp, double* work, int n) {
  if (n == 0) return 0.0;
  const double dispersion = std::exp(t);
  return RestrictedLikelihoodSlope(dispersion, data, disp, work, n) + 1.0 / dispersion;
}

double LimitedJeffreysPriorRoot(double t, double* data, double* disp, double* work, int n) {
  if (n == 0) return 0.0;
  const double dispersion = std::exp(t);
  double weights = 0.0;
  for (int i = 0; i < n; ++i) weights += 1.0 / disp[i];
  const double dispersionOfWeightedMean = 1.0 / weights;
  return RestrictedLikelihoodSlope(dispersion, data, disp, work, n) +
         1.0 / (dispersionOfWeightedMean + dispersion);
}

/// sum((x - mean)^2)/n with the plain mean.
double PopulationVariance(const double* x, int n) {
  double sum = 0.0;
  for (int i = 0; i < n; ++i) sum += x[i];
  const double mean = sum / n;
  double squares = 0.0;
  for (int i = 0; i < n; ++i) squares += (x[i] - mean) * (x[i] - mean);
  return squares / n;
}

}  // namespace

void Stat::FindMeanDisp() {
  DistrType = CheckDistrType(Data, len);
  CheckDisp();
  if (DataDisp == nullptr) MeanType = 4;
  switch (MeanType) {
    case 0:
      FindMeanDisp_LimitedJefferysPrior();
      break;
    case 2:
      FindMeanDisp_UniformPrior();
      break;
    case 3:
      FindMeanDisp_WeightedByDisp();
      break;
    case 4:
      FindMeanDisp0();
      break;
    default:
      FindMeanDisp_JefferysPrior();
      break;
  }
  LogNormDisp = 0.0;
  LogNormMean = 0.0;
  if (Mean > 0.0) {
    LogNormDisp = std::log(Disp / (Mean * Mean) + 1.0);
    LogNormMean = std::log(Mean) - LogNormDisp / 2.0;
  }
}

void Stat::CheckDisp() {
  if (DataDisp == nullptr) return;
  double variance = 0.0;
  bool isKnown = false;
  for (int i = 0; i < len; ++i) {
    if (DataDisp[i] > 0.0) continue;
    if (!isKnown) variance = PopulationVariance(Data, len);
    isKnown = true;
    DataDisp[i] = variance;
  }
}

void Stat::FindMeanDisp0() {
  Min = 1e300;
  Max = -1e300;
  double sum = 0.0;
  double sum2 = 0.0;
  double sum3 = 0.0;
  double sum4 = 0.0;
  for (int i = 0; i < len; ++i) {
    const double x = Data[i];
    const double x2 = x * x;
    if (x < Min) Min = x;
    if (x > Max) Max = x;
    sum += x;
    sum2 += x2;
    sum3 += x2 * x;
    sum4 += x2 * x2;
  }
  const double n = len;
  Sum = sum;
  Mean = sum / n;
  E2 = sum2 / n;
  E3 = sum3 / n;
  E4 = sum4 / n;

  double squares = 0.0;
  for (int i = 0; i < len; ++i) squares += (Data[i] - Mean) * (Data[i] - Mean);
  DispSimple = len >= 2 ? squares / (n - 1.0) : squares;
  Disp = DispSimple;
  SEM2 = Disp / n;
}

void Stat::FindMeanDisp_UniformPrior() {
  FindMeanDisp0();
  FindDisp0(UniformPriorRoot);
  FindMeanDisp_Ex();
}

void Stat::FindMeanDisp_JefferysPrior() {
  FindMeanDisp0();
  FindDisp0(JeffreysPriorRoot);
  if (len > 1) Disp0 = Disp0 * len / (len - 1);
  FindMeanDisp_Ex();
}

void Stat::FindMeanDisp_LimitedJefferysPrior() {
  FindMeanDisp0();
  FindDisp0(LimitedJeffreysPriorRoot);
  if (len > 1) Disp0 = Disp0 * len / (len - 1);
  FindMeanDisp_Ex();
}

void Stat::FindMeanDisp_WeightedByDisp() {
  FindMeanDisp0();
  Disp0 = 0.0;
  FindMeanDisp_Ex();
}

void Stat::FindDisp0(Disp0RootFunction rootFunction) {
  if (DataDisp == nullptr || DispSimple == 0.0) return;
  Disp0 = 0.0;
  const tarn::NumberArray work = tarn::NewNumbers(len);
  if (!work) return;
  const auto f = [&](double t) { return rootFunction(t, Data, DataDisp, work.get(), len); };

  const double lo = std::log(DispSimple / 100.0);
  const double hi = std::log(DispSimple * 100.0);
  const double range = hi - lo;
  double fa = f(lo);
  const double fb = f(hi);
  double m = lo;
  if (fa * fb < 0.0) {
    double a = lo;
    double b = hi;
    do {
      m = (a + b) / 2.0;
      const double fm = f(m);
      // The middle is an end where the interval holds no number between its ends.
      if (fm == 0.0 || m == a || m == b) break;
      if (fm * fa < 0.0) {
        b = m;
      } else {
        a = m;
        fa = fm;
      }
    } while (std::fabs(a - b) / range > Accuracy);
  }
  Disp0 = (m - lo) / range > Accuracy ? std::exp(m) : 0.0;
}

void Stat::FindMeanDisp_Ex() {
  if (DataDisp == nullptr || len < 1) return;
  SEM2 = 0.0;
  Disp = 0.0;
  double weights = 0.0;
  if (Min == Max) {
    Mean = Min;
    for (int i = 0; i < len; ++i) {
      if (DataDisp[i] > Disp) Disp = DataDisp[i];
      const double total = Disp0 + DataDisp[i];
      if (total > 0.0) weights += 1.0 / total;
    }
  } else {
    Mean = 0.0;
    for (int i = 0; i < len; ++i) {
      const double total = Disp0 + DataDisp[i];
      if (!(total > 0.0)) continue;
      weights += 1.0 / total;
      Disp += total;
      Mean += Data[i] / total;
    }
    Disp /= len;
    if (weights > 0.0) Mean /= weights;
  }
  if (weights > 0.0) SEM2 = 1.0 / weights;
}
