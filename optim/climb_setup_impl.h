#ifndef TARN_OPTIM_CLIMB_SETUP_IMPL_H
#define TARN_OPTIM_CLIMB_SETUP_IMPL_H

/// @file
/// Life and settings of `T_Climb`.

#include <cmath>
#include <limits>
#include <new>
#include <type_traits>

#include "optim/climb.h"
#include "optim/unit_interval.h"

namespace tarn {

inline constexpr int kDefaultMaxItterationNumber = 3000;

/// Number of variables for which the bounds can still be counted.
inline constexpr int kMaxDimension = std::numeric_limits<int>::max() / 2;

template <class T>
inline constexpr T kDefaultMinStep = std::is_same_v<T, float> ? T(0.001F) : T(5e-6);

template <class T>
inline constexpr T kDefaultMaxRealtiveStepNorm = T(0.1);

}  // namespace tarn

template <class T>
T T_Climb<T>::aMinStep = T(0);

template <class T>
int T_Climb<T>::lineSearchStep_ = 0;

template <class T>
T_Climb<T>::T_Climb(Variable& function, int n, T* boundaries, T* start, T accuracy)
    : accuracy_(accuracy),
      maxItterationNumber_(tarn::kDefaultMaxItterationNumber),
      dimension_(n<0 || n> tarn::kMaxDimension ? 0 : n),
      symmetricDerivative_(0),
      silent_(1),
      function_(function),
      minStepSet_(0),
      maxStepSet_(0),
      directions_(nullptr),
      errorIfMaxItterNumberExceed_(1),
      limitDirectionStep_(0),
      maxRealtiveStepNorm_(tarn::kDefaultMaxRealtiveStepNorm<T>),
      covarianceFlag_(1),
      lineSearchPassLimit_(tarn::kLineSearchPassLimit),
      storageRefused_(false) {
  if (aMinStep == 0) aMinStep = tarn::kDefaultMinStep<T>;
  Build(boundaries, start);
}

template <class T>
T_Climb<T>::T_Climb(const T_Climb& other)
    : TarnAss(other),
      extraParam_(other.extraParam_),
      progressWnd_(other.progressWnd_),
      function_(other.function_),
      derivFunc_(other.derivFunc_),
      deriv2Func_(other.deriv2Func_),
      gradFunc_(other.gradFunc_),
      directions_(nullptr),
      storageRefused_(false) {
  CopySettings(other);
  CopyState(other);
}

template <class T>
T_Climb<T>& T_Climb<T>::operator=(const T_Climb& other) {
  if (this == &other) return *this;
  TarnAss::operator=(other);
  extraParam_ = other.extraParam_;
  // Assigning to a reference would overwrite the window that it refers to.
  progressWnd_.Clear();
  progressWnd_ = other.progressWnd_;
  function_ = other.function_;
  derivFunc_ = other.derivFunc_;
  deriv2Func_ = other.deriv2Func_;
  gradFunc_ = other.gradFunc_;
  CopySettings(other);
  CopyState(other);
  return *this;
}

template <class T>
T_Climb<T>::~T_Climb() {
  delete[] directions_;
}

template <class T>
void T_Climb<T>::CopySettings(const T_Climb& other) {
  accuracy_ = other.accuracy_;
  maxItterationNumber_ = other.maxItterationNumber_;
  symmetricDerivative_ = other.symmetricDerivative_;
  silent_ = other.silent_;
  minStepSet_ = other.minStepSet_;
  maxStepSet_ = other.maxStepSet_;
  errorIfMaxItterNumberExceed_ = other.errorIfMaxItterNumberExceed_;
  limitDirectionStep_ = other.limitDirectionStep_;
  maxRealtiveStepNorm_ = other.maxRealtiveStepNorm_;
  covarianceFlag_ = other.covarianceFlag_;
  lineSearchPassLimit_ = other.lineSearchPassLimit_;
  record_ = other.record_;
}

template <class T>
void T_Climb<T>::CopyState(const T_Climb& other) {
  dimension_ = other.dimension_;
  boundaries_ = other.boundaries_;
  startPoint_ = other.startPoint_;
  scaledStart_ = other.scaledStart_;
  bestPoint_ = other.bestPoint_;
  resultBuffer_ = other.resultBuffer_;
  invRange_ = other.invRange_;
  minStep_ = other.minStep_;
  maxStep_ = other.maxStep_;
  inverseHessian_ = other.inverseHessian_;
  covarianceCache_ = other.covarianceCache_;
  hessianCache_ = other.hessianCache_;
  cachedPoint_ = other.cachedPoint_;
  storageRefused_ = other.storageRefused_;
  if (!AllocateDirections() || !HasStorage()) {
    BecomeEmpty();
    return;
  }
  for (int i = 0; i < dimension_; ++i) directions_[i] = other.directions_[i];
}

template <class T>
void T_Climb<T>::Build(const T* boundaries, const T* start) {
  const int n = dimension_;
  boundaries_.Set(boundaries, 2 * n);
  startPoint_.Set(start, n);
  for (auto* vector : {&scaledStart_, &bestPoint_, &resultBuffer_, &invRange_, &minStep_, &maxStep_,
                       &cachedPoint_}) {
    vector->SetDim(n);
  }
  for (auto* matrix : {&inverseHessian_, &covarianceCache_, &hessianCache_}) matrix->SetDim(n, n);
  if (!AllocateDirections() || !HasStorage()) {
    BecomeEmpty();
    return;
  }
  FindRanges();
  for (int i = 0; i < n; ++i) scaledStart_[i] = tarn::ClampToUnit(ScaledStart(i));
  InitStep();
}

/// A new set of N directions, each of N zeros. False when it cannot be had.
template <class T>
bool T_Climb<T>::AllocateDirections() {
  delete[] directions_;
  directions_ = new (std::nothrow) T_MatVectorCol<T>[static_cast<std::size_t>(dimension_)];
  if (directions_ == nullptr) return false;
  for (int i = 0; i < dimension_; ++i) directions_[i].SetDim(dimension_);
  return true;
}

/// Whether every vector and matrix has the storage that the dimension asks for.
template <class T>
bool T_Climb<T>::HasStorage() const {
  const int n = dimension_;
  if (boundaries_.Dim() != 2 * n) return false;
  for (const auto* vector : {&startPoint_, &scaledStart_, &bestPoint_, &resultBuffer_, &invRange_,
                             &minStep_, &maxStep_, &cachedPoint_}) {
    if (vector->Dim() != n) return false;
  }
  for (const auto* matrix : {&inverseHessian_, &covarianceCache_, &hessianCache_}) {
    if (n > 0 && (matrix->Y() != n || (*matrix)[0] == nullptr)) return false;
  }
  for (int i = 0; i < n; ++i) {
    if (directions_[i].Dim() != n) return false;
  }
  return true;
}

/// What is left when storage is refused: a minimiser of no variables, which every method ends at
/// once.
template <class T>
void T_Climb<T>::BecomeEmpty() {
  storageRefused_ = true;
  dimension_ = 0;
  for (auto* vector : {&boundaries_, &startPoint_, &scaledStart_, &bestPoint_, &resultBuffer_,
                       &invRange_, &minStep_, &maxStep_, &cachedPoint_}) {
    vector->SetDim(0);
  }
  for (auto* matrix : {&inverseHessian_, &covarianceCache_, &hessianCache_}) matrix->SetDim(0, 0);
}

/// invRange_ from the bounds. A width of 0 fixes the variable; so does one whose reciprocal is not
/// a number to scale with (an infinite, unordered or denormal width).
template <class T>
void T_Climb<T>::FindRanges() {
  for (int i = 0; i < dimension_; ++i) {
    const T inverse = T(1) / (boundaries_[2 * i + 1] - boundaries_[2 * i]);
    invRange_[i] = std::isfinite(inverse) ? inverse : T(0);
  }
}

template <class T>
T T_Climb<T>::ScaledStart(int i) const {
  return IsFixed(i) ? T(0) : (startPoint_[i] - LowerBound(i)) * invRange_[i];
}

template <class T>
void T_Climb<T>::SetStartPoint(T_MatVectorCol<T>& start) {
  if (start.Dim() != dimension_) return;
  startPoint_ = start;
  for (int i = 0; i < dimension_; ++i) scaledStart_[i] = ScaledStart(i);
}

template <class T>
void T_Climb<T>::SetMinStep(T_MatVectorCol<T>& step) {
  if (step.Dim() != dimension_) return;
  minStep_ = step;
  minStep_.MulByItem(invRange_);
  minStepSet_ = 1;
}

template <class T>
void T_Climb<T>::SetMaxStep(T_MatVectorCol<T>& step) {
  if (step.Dim() != dimension_) return;
  maxStep_ = step;
  maxStep_.MulByItem(invRange_);
  maxStepSet_ = 1;
}

template <class T>
void T_Climb<T>::SetMaxItterationNumber(int limit) {
  maxItterationNumber_ = limit;
}

template <class T>
void T_Climb<T>::SetSymmetricDerivative(int symmetric) {
  symmetricDerivative_ = symmetric;
}

template <class T>
int T_Climb<T>::GetSymmetricDerivative() const {
  return symmetricDerivative_;
}

template <class T>
void T_Climb<T>::SetSilent(int silent) {
  silent_ = silent;
}

template <class T>
void T_Climb<T>::SetErrorIfMaxItterNumberExceed(int raise) {
  errorIfMaxItterNumberExceed_ = raise;
}

template <class T>
void T_Climb<T>::SetLimitDirectionStep(int limit) {
  limitDirectionStep_ = limit;
}

template <class T>
void T_Climb<T>::SetMaxRealtiveStepNorm(T norm) {
  maxRealtiveStepNorm_ = norm;
}

template <class T>
void T_Climb<T>::SetExtraParam(Variable& extra) {
  extraParam_ = extra;
}

template <class T>
Variable& T_Climb<T>::GetExtraParam() {
  return extraParam_;
}

template <class T>
void T_Climb<T>::SetDerivFunc(Variable& function) {
  derivFunc_ = function;
}

template <class T>
void T_Climb<T>::SetDeriv2Func(Variable& function) {
  deriv2Func_ = function;
}

template <class T>
void T_Climb<T>::SetGradFunc(Variable& function) {
  gradFunc_ = function;
}

template <class T>
void T_Climb<T>::SetProgressWnd(Variable& window) {
  progressWnd_ = &window;
}

template <class T>
int T_Climb<T>::GetDimension() const {
  return dimension_;
}

template <class T>
tarn::StopReason T_Climb<T>::GetStopReason() const {
  return record_.reason;
}

template <class T>
tarn::StopReason T_Climb<T>::GetLineSearchStopReason() const {
  return record_.lineSearchReason;
}

template <class T>
std::int64_t T_Climb<T>::GetEvaluationCount() const {
  return record_.evaluations;
}

template <class T>
std::int64_t T_Climb<T>::GetItterationCount() const {
  return record_.iterations;
}

template <class T>
std::int64_t T_Climb<T>::GetLineSearchPassCount() const {
  return record_.lineSearchPasses;
}

#endif
