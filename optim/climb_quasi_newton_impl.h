#ifndef TARN_OPTIM_CLIMB_QUASI_NEWTON_IMPL_H
#define TARN_OPTIM_CLIMB_QUASI_NEWTON_IMPL_H

/// @file
/// Quasi-Newton methods of `T_Climb`.

#include <algorithm>
#include <cmath>

#include "frame/module_state.h"
#include "optim/climb.h"
#include "optim/climb_quasi_newton.h"

/// Limit of quasi-Newton iterations where the caller gives none.
template <class T>
int T_Climb<T>::DefaultIterations() const {
  return std::max(10 * dimension_, 1000);
}

template <class T>
void T_Climb<T>::SolveBFGS(int maxIter) {
  SolveQuasiNewton(0, maxIter);
}

template <class T>
void T_Climb<T>::SolveBFGS() {
  SolveBFGS(DefaultIterations());
}

template <class T>
void T_Climb<T>::SolveDFP(int maxIter) {
  SolveQuasiNewton(1, maxIter);
}

template <class T>
void T_Climb<T>::SolveDFP() {
  SolveDFP(DefaultIterations());
}

template <class T>
void T_Climb<T>::SolveQuasiNewton(int type, int maxIter) {
  BeginSolve();
  if (!StartProgress(30)) return;
  const T f0 = StartFromScaledStart();
  TraceResult(f0);
  const T f = MakeQuasiNewtonItteration(type, f0, maxIter);
  EndSolve(record_.reason, f);
  if (Processor* processor = GetOwner()) {
    if (f0 < f) TarnError(tarn::GetSolutionNotFoundError());
    EndProgress(*processor, f);
  }
}

template <class T>
void T_Climb<T>::BeginRecord() {
  record_ = tarn::SolveRecord();
  record_.outOfMemory = storageRefused_;
  if (storageRefused_) record_.reason = tarn::StopReason::kMemoryExhausted;
}

/// What every solve that keeps no matrix of an earlier one begins with.
template <class T>
void T_Climb<T>::BeginSolve() {
  BeginRecord();
  ClearCaches();
}

/// Moves the best point to the start and returns its value.
template <class T>
T T_Climb<T>::StartFromScaledStart() {
  bestPoint_ = scaledStart_;
  return FuncAtScaled(bestPoint_);
}

template <class T>
T T_Climb<T>::MakeItterationBFGS(T f0, int maxIter) {
  return MakeQuasiNewtonItteration(0, f0, maxIter);
}

template <class T>
T T_Climb<T>::MakeItterationDFP(T f0, int maxIter) {
  return MakeQuasiNewtonItteration(1, f0, maxIter);
}

template <class T>
T T_Climb<T>::MakeQuasiNewtonItteration(int type, T f0, int maxIter) {
  return tarn::QuasiNewtonRun<T>(*this, type == 0, f0).Minimise(maxIter);
}

namespace tarn {

/// Iterations after which a direction that fails twice in a row ends the run.
inline constexpr int kRestartIterations = 3;

template <class T>
QuasiNewtonRun<T>::QuasiNewtonRun(T_Climb<T>& climb, bool bfgs, T f0)
    : climb_(climb),
      h_(climb.inverseHessian_),
      bfgs_(bfgs),
      f0_(f0),
      f_(f0),
      saved_(climb.bestPoint_),
      previous_(climb.bestPoint_),
      newStart_(climb.dimension_),
      g_(climb.dimension_),
      gPrevious_(climb.dimension_),
      dx_(climb.dimension_),
      dg_(climb.dimension_),
      hdg_(climb.dimension_),
      d_(climb.dimension_),
      u_(climb.dimension_) {}

template <class T>
bool QuasiNewtonRun<T>::HasStorage() const {
  for (const auto* vector :
       {&saved_, &previous_, &newStart_, &g_, &gPrevious_, &dx_, &dg_, &hdg_, &d_, &u_}) {
    if (vector->Dim() != climb_.dimension_) return false;
  }
  return true;
}

template <class T>
T QuasiNewtonRun<T>::Minimise(int maxIter) {
  if (!climb_.RecordMemory(HasStorage())) return f0_;
  T result = f0_;
  if (FirstMove()) {
    if (FirstMoveSuffices() || !Iterate(maxIter)) {
      result = EarlyEnd();
    } else {
      StoreCovariance();
      result = f_;
    }
  }
  climb_.record_.reason = reason_;
  climb_.record_.iterations += iterations_;
  return result;
}

/// Steepest descent from the start. False when the run ends there.
template <class T>
bool QuasiNewtonRun<T>::FirstMove() {
  h_.Set(T(0));
  h_.SetDiagonal(T(1));
  climb_.GetGradient(g_, climb_.bestPoint_);
  gPrevious_ = g_;
  if (climb_.CheckDeltaSize(g_)) {
    End(StopReason::kConvergedGradient);
    return false;
  }
  for (int i = 0; i < d_.Dim(); ++i) d_[i] = -g_[i];
  f_ = climb_.FindMiniumByDirection(f0_, d_, 0);
  End(StopReason::kNoImprovement);
  return !(f_ >= f0_);
}

/// Whether the first move already leads to the accuracy asked for.
template <class T>
bool QuasiNewtonRun<T>::FirstMoveSuffices() {
  previous_.Sub(dx_, climb_.bestPoint_);
  if (climb_.CheckDeltaSize(dx_)) {
    End(StopReason::kConvergedStep);
    return true;
  }
  climb_.GetGradient(g_, climb_.bestPoint_);
  if (climb_.CheckDeltaSize(g_)) {
    End(StopReason::kConvergedGradient);
    return true;
  }
  return false;
}

/// The iterations. False when they break off before the value of the last move can be used.
template <class T>
bool QuasiNewtonRun<T>::Iterate(int maxIter) {
  while (iterations_ < maxIter) {
    if (ProgressCancels()) return false;
    if (!MeasureCurvature()) return false;
    UpdateInverseHessian();
    if (bfgs_) AddBfgsTerm();
    if (!SetDirection()) return false;
    T fn = climb_.FindMiniumByDirection(f_, d_, 1);
    if (!Move(fn)) return true;
    if (HasConverged(fn)) return true;
  }
  End(StopReason::kIterationLimit);
  return true;
}

/// Progress calls on every tenth iteration, a look at the two flags on every one.
template <class T>
bool QuasiNewtonRun<T>::ProgressCancels() {
  Processor* processor = GetOwner();
  if (processor == nullptr || !climb_.HasProgressWnd()) return false;
  ++progressCounter_;
  if (progressCounter_ % 10 == 0) climb_.ReportProgress(*processor, progressCounter_, f_);
  if (processor->pendingError == 0 && processor->stopRequested == 0) return false;
  End(processor->pendingError != 0 ? PendingErrorReason(*processor) : StopReason::kCancelled);
  return true;
}

/// dx, dg, H*dg and their products. False when nothing can be learnt from the last move: a or b is
/// 0 or not a number.
template <class T>
bool QuasiNewtonRun<T>::MeasureCurvature() {
  climb_.bestPoint_.Sub(dx_, previous_);
  g_.Sub(dg_, gPrevious_);
  h_.RightMultiply(hdg_, dg_);
  a_ = dx_.ScalarProduct(dg_);
  b_ = dg_.ScalarProduct(hdg_);
  End(std::isnan(b_) ? StopReason::kNotANumber : StopReason::kNoImprovement);
  return a_ != 0 && b_ != 0 && !std::isnan(b_);
}

/// H += dx*dx'/a - Hdg*Hdg'/b, each of the two terms added by itself.
template <class T>
void QuasiNewtonRun<T>::UpdateInverseHessian() {
  // Copies, which no element of H can overlap: compilers then work on several at a time.
  const int n = climb_.dimension_;
  const T* dx = dx_;
  const T* hdg = hdg_;
  const T a = a_;
  const T b = b_;
  for (int i = 0; i < n; ++i) {
    T* row = h_[i];
    const T dxi = dx[i];
    const T hdgi = hdg[i];
    for (int j = 0; j < n; ++j) row[j] = row[j] + dxi * dx[j] / a - hdgi * hdg[j] / b;
  }
}

/// H += b*u*u' with u = dx/a - H*dx/b.
template <class T>
void QuasiNewtonRun<T>::AddBfgsTerm() {
  const int n = climb_.dimension_;
  h_.RightMultiply(u_, dx_);
  for (int i = 0; i < n; ++i) u_[i] = dx_[i] / a_ - u_[i] / b_;
  const T* u = u_;
  for (int i = 0; i < n; ++i) {
    T* row = h_[i];
    const T factor = b_ * u[i];
    for (int j = 0; j < n; ++j) row[j] += factor * u[j];
  }
}

/// d = -H*g, cut to the length that stays in the box. False when it has no length.
template <class T>
bool QuasiNewtonRun<T>::SetDirection() {
  h_.RightMultiply(d_, g_);
  for (int i = 0; i < d_.Dim(); ++i) d_[i] = -d_[i];
  T tmin = 0;
  T tmax = 0;
  climb_.GetOrtBoundaries(climb_.bestPoint_, d_, tmin, tmax);
  const T norm = d_.Norm();
  End(StopReason::kNoImprovement);
  if (norm == 0) return false;
  const T length = std::min(norm, tmax);
  for (int i = 0; i < d_.Dim(); ++i) d_[i] = d_[i] * length / norm;
  newStart_ = climb_.bestPoint_;
  return true;
}

/// Judges the move to the value `fn`; without progress it starts anew along the gradient, unless
/// that happened on the iteration before. False when the run is over.
template <class T>
bool QuasiNewtonRun<T>::Move(T& fn) {
  if (!(fn >= f_)) {
    lastOk_ = true;
    return true;
  }
  End(StopReason::kNoImprovement);
  if (!lastOk_ && iterations_ > kRestartIterations) return false;
  return Restart(fn);
}

template <class T>
bool QuasiNewtonRun<T>::Restart(T& fn) {
  h_.Set(T(0));
  h_.SetDiagonal(T(1));
  lastOk_ = false;
  for (int i = 0; i < d_.Dim(); ++i) d_[i] = -g_[i];
  fn = climb_.FindMiniumByDirection(f_, d_, 0);
  return !(fn >= f_);
}

/// Takes the move over and tests whether value, step or gradient are below the accuracy.
template <class T>
bool QuasiNewtonRun<T>::HasConverged(T fn) {
  previous_ = newStart_;
  gPrevious_ = g_;
  climb_.GetGradient(g_, climb_.bestPoint_);
  const T change = std::fabs(f_ - fn) / std::max(T(1), std::fabs(fn) + std::fabs(f_));
  f_ = fn;
  ++iterations_;
  if (change < climb_.accuracy_) {
    End(StopReason::kConvergedValue);
    return true;
  }
  previous_.Sub(dx_, climb_.bestPoint_);
  if (climb_.CheckDeltaSize(dx_)) {
    End(StopReason::kConvergedStep);
    return true;
  }
  if (climb_.CheckDeltaSize(g_)) {
    End(StopReason::kConvergedGradient);
    return true;
  }
  return false;
}

/// After more than N iterations H is good enough to serve as the covariance at the point reached.
template <class T>
void QuasiNewtonRun<T>::StoreCovariance() {
  if (!(f_ <= f0_) || iterations_ <= climb_.dimension_) return;
  climb_.covarianceCache_ = h_;
  climb_.cachedPoint_ = climb_.bestPoint_;
}

/// The value to return from a run that broke off; one that went up is undone.
template <class T>
T QuasiNewtonRun<T>::EarlyEnd() {
  if (f_ <= f0_) return f_;
  climb_.bestPoint_ = saved_;
  return f0_;
}

}  // namespace tarn

#endif
