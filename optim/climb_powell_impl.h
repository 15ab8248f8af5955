#ifndef TARN_OPTIM_CLIMB_POWELL_IMPL_H
#define TARN_OPTIM_CLIMB_POWELL_IMPL_H

/// @file
/// `T_Climb`: passes along a set of directions, and the methods made of them.

#include <algorithm>
#include <cmath>

#include "frame/module_state.h"
#include "optim/climb.h"

namespace tarn {

/// Whether replacing a direction by the way of the whole pass pays: f0 before the pass, f after it,
/// fe at the extrapolated point, `maxDrop` the largest drop along one direction.
template <class T>
bool ExtrapolationPays(T f0, T f, T fe, T maxDrop) {
  const T rest = f0 - f - maxDrop;
  const T gain = f0 - fe;
  return fe < f && 2 * (f0 - 2 * f + fe) * (rest * rest) < gain * gain * maxDrop;
}

}  // namespace tarn

template <class T>
T T_Climb<T>::MakeItterationPowell(T f0, T_MatVectorCol<T>* dirs, int& replaced) {
  T_MatVectorCol<T> before(bestPoint_);
  T f = f0;
  T maxDrop = T(0);
  for (int i = 0; i < dimension_; ++i) {
    const T fi = FindMiniumByDirection(f, dirs[i], 1);
    maxDrop = std::max(maxDrop, f - fi);
    f = fi;
  }
  if (f < f0 && dimension_ > 1) f = Extrapolate(f0, f, maxDrop, before, dirs, replaced);
  return f;
}

/// Tries the point that lies as far again (or at the end of the range) in the direction of the
/// whole pass. Where that pays, the point is taken as it is, the first direction goes and the new
/// one becomes the last. Returns the value of the best point. `before`: best point before the pass.
template <class T>
T T_Climb<T>::Extrapolate(T f0, T f, T maxDrop, T_MatVectorCol<T>& before, T_MatVectorCol<T>* dirs,
                          int& replaced) {
  T_MatVectorCol<T> way(dimension_);
  T_MatVectorCol<T> far(dimension_);
  const int n = dimension_;
  if (!RecordMemory(before.Dim() == n && way.Dim() == n && far.Dim() == n)) return f;
  bestPoint_.Sub(way, before);
  T tmin = 0;
  T tmax = 0;
  GetOrtBoundaries(bestPoint_, way, tmin, tmax);
  // The cap is in units of the way's length although t counts multiples of the way: kept so.
  tmax = std::min(tmax, 2 * way.Norm());
  for (int i = 0; i < dimension_; ++i) {
    far[i] = bestPoint_[i] + tmax * way[i];
  }
  const T fe = FuncAtScaled(far);
  // The value 0 of a cancelled line search is not that of the best point: nothing to compare with.
  const bool cancelled = record_.lineSearchReason == tarn::StopReason::kCancelled;
  if (cancelled || !tarn::ExtrapolationPays(f0, f, fe, maxDrop)) return f;
  for (int k = 1; k < dimension_; ++k) dirs[k - 1] = dirs[k];
  dirs[dimension_ - 1] = way;
  bestPoint_ = far;
  replaced = 0;
  return fe;
}

template <class T>
void T_Climb<T>::SolvePowell() {
  BeginSolve();
  if (!StartProgress(1)) return;
  const T f = StartFromScaledStart();
  InitStep();
  TraceResult(f);
  RunPasses(f, [this](T value, int& replaced) {
    return MakeItterationPowell(value, directions_, replaced);
  });
}

template <class T>
void T_Climb<T>::SolvePowell(int n) {
  if (n != 0) {
    SolvePowell();
    return;
  }
  InitStep();
  SolvePowell(directions_);
}

template <class T>
void T_Climb<T>::SolvePowell(T_MatVectorCol<T>* directions) {
  BeginSolve();
  if (directions == nullptr) return;
  const T f0 = StartFromScaledStart();
  int replaced = 1;
  const T f = MakeItterationPowell(f0, directions, replaced);
  record_.iterations = 1;
  EndSolve(f < f0 ? tarn::StopReason::kIterationLimit : tarn::StopReason::kNoImprovement, f);
}

template <class T>
void T_Climb<T>::Solve(int innerIter) {
  BeginSolve();
  if (!StartProgress(1)) return;
  T f = StartFromScaledStart();
  TraceResult(f);
  f = CoarsePowellPass(f);
  RunPasses(f, [this, innerIter](T value, int& replaced) {
    return MakeItterationPowell(MakeItterationDFP(value, innerIter), directions_, replaced);
  });
}

template <class T>
void T_Climb<T>::Solve() {
  Solve(DefaultIterations());
}

/// One pass along the axes at a coarser accuracy.
template <class T>
T T_Climb<T>::CoarsePowellPass(T f) {
  const T accuracy = accuracy_;
  accuracy_ = std::min(std::sqrt(accuracy), 100 * accuracy);
  InitStep();
  int replaced = 1;
  f = MakeItterationPowell(f, directions_, replaced);
  accuracy_ = accuracy;
  InitStep();
  return f;
}

/// Repeats `pass`, a function of the value so far and the flag that a direction was replaced, until
/// it changes the value by less than the accuracy. Once a direction was replaced, that has to
/// happen twice in a row, the second time from the axes.
template <class T>
template <class Pass>
void T_Climb<T>::RunPasses(T f, Pass pass) {
  int replaced = 1;
  bool restartPending = false;
  int it = 0;
  for (; it < maxItterationNumber_; ++it) {
    if (PassCancelled(it, f)) {
      record_.iterations = it;
      EndSolve(tarn::StopReason::kCancelled, f);
      return;
    }
    const T fn = pass(f, replaced);
    TraceResult(fn);
    const bool converged = (f - fn) / std::max(T(1), std::fabs(f) + std::fabs(fn)) < accuracy_;
    f = fn;
    if (converged && (restartPending || replaced == 1)) break;
    if (converged) InitStep();
    restartPending = converged;
  }
  EndPasses(it, f);
}

/// The end of a solve that made its passes: the record, the error of an exhausted limit, the
/// progress window.
template <class T>
void T_Climb<T>::EndPasses(int passes, T f) {
  const bool exhausted = passes == maxItterationNumber_;
  record_.iterations = exhausted ? passes : passes + 1;
  EndSolve(exhausted ? tarn::StopReason::kIterationLimit : tarn::StopReason::kConvergedValue, f);
  Processor* processor = GetOwner();
  if (processor == nullptr) return;
  if (exhausted && errorIfMaxItterNumberExceed_ != 0) {
    TarnError(tarn::GetSolutionNotFoundError());
  }
  EndProgress(*processor, f);
}

#endif
