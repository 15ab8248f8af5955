#include "stat/stat.h"

#include <cmath>
#include <utility>

#include "frame/error_numbers.h"
#include "stat/number_arrays.h"

namespace {

constexpr double kDefaultAccuracy = 1e-7;
constexpr int kLongSample = 1000;

/// A copy of an array that may be null.
double* CopyOrNull(const double* numbers, int count) {
  return numbers == nullptr ? nullptr : tarn::CopyNumbers(numbers, count).release();
}

void Replace(double*& array, double* replacement) {
  delete[] array;
  array = replacement;
}

}  // namespace

Stat::Stat(double* x, int n) : Stat(x, nullptr, n, 4) {}

Stat::Stat(float* x, int n) {
  ClearResults();
  MeanType = 4;
  CopyData(x, n);
  FindMeanDisp();
}

Stat::Stat(double* x, double* d, int n) : Stat(x, d, n, 0) {}

Stat::Stat(double* x, double* d, int n, int meanType) {
  ClearResults();
  MeanType = meanType;
  CopyData(x, n);
  DataDisp = CopyOrNull(d, len);
  FindMeanDisp();
}

Stat::Stat(Stat& other) : TarnAss(other) {
  ClearResults();
  MeanType = other.MeanType;
  CopyData(other.Data, other.len);
  DataDisp = CopyOrNull(other.DataDisp, len);
  FindMeanDisp();
}

Stat& Stat::operator=(const Stat& other) {
  if (this == &other) return *this;
  TarnAss::operator=(other);
  double* const data = CopyOrNull(other.Data, other.len);
  Replace(Data, data);
  Replace(DataDisp, CopyOrNull(other.DataDisp, other.len));
  Replace(estDataDisp, CopyOrNull(other.estDataDisp, other.len));
  Replace(CumX, CopyOrNull(other.CumX, other.CumLen));
  Replace(CumP, CopyOrNull(other.CumP, other.CumLen));
  CopyResults(other);
  if (Data == nullptr) len = 0;
  if (CumX == nullptr || CumP == nullptr) ReleaseCumulativeDistr();
  return *this;
}

Stat::~Stat() {
  delete[] Data;
  delete[] DataDisp;
  delete[] estDataDisp;
  delete[] AuxArray;
  ReleaseCumulativeDistr();
}

void Stat::ClearResults() {
  Data = DataDisp = estDataDisp = AuxArray = nullptr;
  len = 0;
  Mean = Disp = DispSimple = SEM2 = Sum = Disp0 = 0.0;
  DistrType = DISTR_GAUSS;
  LogNormMean = LogNormDisp = 0.0;
  MeanType = 0;
  E2 = E3 = E4 = 0.0;
  Min = Max = 0.0;
  CumX = CumP = nullptr;
  CumLen = 0;
  Accuracy = kDefaultAccuracy;
}

/// Every field but the arrays.
void Stat::CopyResults(const Stat& other) {
  len = other.len;
  Mean = other.Mean;
  Disp = other.Disp;
  DispSimple = other.DispSimple;
  SEM2 = other.SEM2;
  Sum = other.Sum;
  Disp0 = other.Disp0;
  DistrType = other.DistrType;
  LogNormMean = other.LogNormMean;
  LogNormDisp = other.LogNormDisp;
  MeanType = other.MeanType;
  E2 = other.E2;
  E3 = other.E3;
  E4 = other.E4;
  Min = other.Min;
  Max = other.Max;
  CumLen = other.CumLen;
  Accuracy = other.Accuracy;
}

template <class Element>
void Stat::CopyData(const Element* x, int n) {
  len = n > 0 ? n : 0;
  Data = tarn::CopyNumbers(x, len).release();
  if (Data == nullptr) len = 0;
}

bool Stat::isTooLong() { return len > kLongSample; }

double* Stat::GetWeights() {
  tarn::NumberArray weights = tarn::NewNumbers(len);
  for (int i = 0; weights && i < len; ++i) weights[static_cast<std::size_t>(i)] = 1.0;
  return weights.release();
}

void Stat::FreeWeights(double* weights) { delete[] weights; }

double Stat::GetLogNormalDisp() {
  if (!(Mean > 0.0)) {
    TarnError(tarn::kErrorSingular);
    return 1.0;
  }
  return std::log(Disp / (Mean * Mean) + 1.0);
}

double Stat::GetLogNormalMu0() { return Mean * std::exp(-0.5 * GetLogNormalDisp()); }

Stat& Stat::operator*=(double a) {
  const double a2 = a * a;
  for (int i = 0; i < len; ++i) Data[i] *= a;
  for (double* dispersions : {DataDisp, estDataDisp}) {
    for (int i = 0; dispersions != nullptr && i < len; ++i) dispersions[i] *= a2;
  }
  Mean *= a;
  Disp *= a2;
  Disp0 *= a2;
  SEM2 *= a2;
  E2 *= a2;
  E3 *= a2 * a;
  E4 *= a2 * a2;
  Min *= a;
  Max *= a;
  for (int i = 0; i < CumLen; ++i) CumX[i] *= a;
  return *this;
}

ProbFunc Stat::GetProbFuncPtr(int prior, int logNormal) {
  return tarn::FindProbabilityFunction(prior, logNormal).overScriptArray;
}

CProbFunc Stat::GetCProbFuncPtr(int prior, int logNormal) {
  return tarn::FindProbabilityFunction(prior, logNormal).overArrays;
}
