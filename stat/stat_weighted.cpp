#include "stat/stat_weighted.h"

#include <algorithm>
#include <cmath>

#include "frame/error_numbers.h"
#include "stat/number_arrays.h"
#include "stat/sample_pair.h"
#include "stat/script_members.h"

Stat_Weighted::Stat_Weighted(double* x, double* w, int n) : Stat(x, n) {
  CopyWeights(w);
  Init_Weight();
}

Stat_Weighted::Stat_Weighted(double* x, double* d, double* w, int n) : Stat(x, d, n) {
  CopyWeights(w);
  Init_Weight();
}

Stat_Weighted::Stat_Weighted(Stat_Weighted& other) : Stat(other) {
  CopyWeights(other.Weights);
  Init_Weight();
}

Stat_Weighted& Stat_Weighted::operator=(const Stat_Weighted& other) {
  if (this == &other) return *this;
  Stat::operator=(other);
  delete[] Weights;
  CopyWeights(other.Weights);
  WeightsDistrType = other.WeightsDistrType;
  DispOfWeights = other.DispOfWeights;
  WeightsCorr = other.WeightsCorr;
  WeightedMean = other.WeightedMean;
  WeightedSEM2 = other.WeightedSEM2;
  return *this;
}

Stat_Weighted::~Stat_Weighted() { delete[] Weights; }

void Stat_Weighted::CopyWeights(const double* w) {
  Weights = tarn::CopyNumbers(w, len).release();
  if (Weights == nullptr) len = 0;
}

bool Stat_Weighted::isTooLong() { return false; }

double* Stat_Weighted::GetWeights() { return Weights; }

void Stat_Weighted::FreeWeights(double* /*weights*/) {}

void Stat_Weighted::Init_Weight() {
  WeightsDistrType = CheckDistrType(Weights, len);
  NormaliseWeights();
  DispOfWeights = 0.0;
  for (int i = 0; i < len; ++i) DispOfWeights += (Weights[i] - 1.0) * (Weights[i] - 1.0);
  if (len >= 2) DispOfWeights /= len - 1;
  if (DataDisp != nullptr) {
    FindMeanDisp3();
  } else {
    FindMeanDisp2();
  }
}

void Stat_Weighted::NormaliseWeights() {
  double smallestPositive = 1e300;
  for (int i = 0; i < len; ++i) {
    if (Weights[i] > 0.0 && Weights[i] < smallestPositive) smallestPositive = Weights[i];
  }
  double sum = 0.0;
  for (int i = 0; i < len; ++i) {
    if (Weights[i] <= 0.0) Weights[i] = smallestPositive / len;
    sum += Weights[i];
  }
  double mean = sum / len;
  if (mean == 0.0) mean = 1.0;
  for (int i = 0; i < len; ++i) Weights[i] /= mean;
}

void Stat_Weighted::FindMeanDisp2() {
  double covariance = 0.0;
  for (int i = 0; i < len; ++i) covariance += (Data[i] - Mean) * (Weights[i] - 1.0);
  FindWeightedMean();
  covariance /= len;
  const double dispersions = DispOfWeights * Disp;
  WeightsCorr = dispersions > 0.0 ? covariance / std::sqrt(dispersions) : 0.0;
}

void Stat_Weighted::FindMeanDisp3() {
  double covariance = 0.0;
  for (int i = 0; i < len; ++i) {
    covariance += (Data[i] - Mean) / std::sqrt(Disp0 + DataDisp[i]) * (Weights[i] - 1.0);
  }
  FindWeightedMean();
  covariance /= len;
  // The deviations are standardised already, so only the weights' dispersion is left.
  WeightsCorr = DispOfWeights * Disp > 0.0 ? covariance / std::sqrt(DispOfWeights) : 0.0;
}

/// Weighted mean and its squared error.
void Stat_Weighted::FindWeightedMean() {
  double sum = 0.0;
  for (int i = 0; i < len; ++i) sum += Data[i] * Weights[i];
  WeightedMean = sum / len;
  WeightedSEM2 = 0.0;
  for (int i = 0; i < len; ++i) {
    const double deviation = Data[i] - WeightedMean;
    WeightedSEM2 += Weights[i] * (deviation * deviation);
  }
  if (len > 1) WeightedSEM2 /= (len - 1.0) * len;
  if (WeightedSEM2 == 0.0) WeightedSEM2 = SEM2;
}

double Stat_Weighted::GetCorrToWeight(int logValues, int logWeights) {
  const bool ofLogValues = logValues == 1;
  const bool ofLogWeights = logWeights == 1;
  double products = 0.0;
  double valueSquares = 0.0;
  double weightSquares = 0.0;
  for (int i = len - 1; i >= 0; --i) {
    if ((ofLogValues && (Mean <= 0.0 || Data[i] <= 0.0)) || (ofLogWeights && Weights[i] <= 0.0)) {
      TarnError(tarn::kErrorLogarithm);
      return 0.0;
    }
    const double u = ofLogValues ? std::log(Data[i]) - std::log(Mean) : Data[i] - Mean;
    const double v = ofLogWeights ? std::log(Weights[i]) : Weights[i] - 1.0;
    products += u * v;
    valueSquares += u * u;
    weightSquares += v * v;
  }
  if (valueSquares > 0.0 && weightSquares > 0.0) {
    return products / std::sqrt(valueSquares * weightSquares);
  }
  return products;
}

void Stat_Weighted::UpdateTarnObject(Variable& obj) {
  Stat::UpdateTarnObject(obj);
  obj("WeightsDistrType") = static_cast<std::int32_t>(WeightsDistrType);
  obj("DispOfWeights") = DispOfWeights;
  obj("WeightsCorr") = WeightsCorr;
  obj("WeightedMean") = WeightedMean;
  obj("WeightedSEM2") = WeightedSEM2;
  tarn::StoreNumbers(obj("Weights"), Weights, len);
}
