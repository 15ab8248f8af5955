#ifndef TARN_OPTIM_CLIMB_COORD_IMPL_H
#define TARN_OPTIM_CLIMB_COORD_IMPL_H

/// @file
/// `T_Climb`: search along the coordinates with doubling and halving steps (direct search after
/// Hooke and Jeeves, Journal of the ACM 8 (1961) 212, without their pattern moves).

#include <algorithm>
#include <cmath>

#include "frame/module_state.h"
#include "optim/climb.h"
#include "optim/unit_interval.h"

namespace tarn {

/// The search along one axis: the step grows while it succeeds and is halved when it fails on both
/// sides.
template <class T>
class CoordinateSearch {
 public:
  CoordinateSearch(T_Climb<T>& climb, T step, int axis)
      : climb_(climb), trial_(climb.bestPoint_), step_(step), axis_(axis) {
    if (climb.minStepSet_ != 0) minStep_ = climb.minStep_[axis];
    if (climb.maxStepSet_ != 0) maxStep_ = climb.maxStep_[axis];
  }

  /// Searches from the best point, whose value is f; returns the value of the best point then.
  T Minimise(T f) {
    if (!climb_.RecordMemory(trial_.Dim() == climb_.dimension_) || std::isnan(step_)) return f;
    do {
      if (Move(f)) {
        Grow();
      } else {
        Halve();
      }
      climb_.TraceResult(f);
    } while (!IsDone() && !stuck_);
    return f;
  }

 private:
  /// Failures after which an axis is left.
  static constexpr int kFailureLimit = 7;

  /// Tries the step and, unless the move before succeeded, its reverse. True when one led down.
  bool Move(T& f) {
    if (TryStep(step_, f)) {
      tryReverse_ = false;
      return true;
    }
    if (tryReverse_ && TryStep(-step_, f)) {
      step_ = -step_;
      tryReverse_ = false;
      return true;
    }
    tryReverse_ = true;
    return false;
  }

  bool TryStep(T step, T& f) {
    trial_[axis_] = ClampToUnit(climb_.bestPoint_[axis_] + step);
    const T value = climb_.FuncAtScaled(trial_);
    if (!(value < f)) return false;
    stuck_ = trial_[axis_] == climb_.bestPoint_[axis_];
    climb_.bestPoint_ = trial_;
    f = value;
    return true;
  }

  void Grow() {
    if (!grow_) return;
    step_ = 2 * step_;
    if (maxStep_ != 0 && std::fabs(step_) > maxStep_) step_ = std::copysign(maxStep_, step_);
  }

  void Halve() {
    ++failures_;
    step_ = step_ / 2;
    grow_ = false;
    if (minStep_ != 0 && std::fabs(step_) < minStep_) step_ = std::copysign(minStep_, step_);
  }

  bool IsDone() const {
    const T size = std::fabs(step_);
    return size < climb_.accuracy_ || failures_ > kFailureLimit ||
           (minStep_ != 0 && size <= minStep_ && failures_ > 1);
  }

  T_Climb<T>& climb_;
  T_MatVectorCol<T> trial_;
  T step_;
  int axis_;
  T minStep_ = 0;  ///< 0: none
  T maxStep_ = 0;  ///< 0: none
  bool grow_ = true;
  bool tryReverse_ = true;
  int failures_ = 0;
  bool stuck_ = false;  ///< the value fell without a move, as it may go on to do for ever
};

}  // namespace tarn

template <class T>
T T_Climb<T>::MakeIterationsByCoord(T f0, T step, int i) {
  return tarn::CoordinateSearch<T>(*this, step, i).Minimise(f0);
}

template <class T>
void T_Climb<T>::SolveByCoord(T_MatVectorCol<T>& steps) {
  BeginRecord();
  if (steps.Dim() != dimension_) return;
  T f = StartFromScaledStart();
  T_MatVectorCol<T> before(dimension_);
  RecordMemory(before.Dim() == dimension_);
  for (int it = 0; it < maxItterationNumber_; ++it) {
    const T fBefore = f;
    before = bestPoint_;
    for (int i = 0; i < dimension_; ++i) f = MakeIterationsByCoord(f, steps[i], i);
    record_.iterations = it + 1;
    if (before.Distance(bestPoint_) < accuracy_) {
      EndSolve(tarn::StopReason::kConvergedStep, f);
      return;
    }
    // The new value comes first: a sweep that does not raise the value is the last one.
    if ((f - fBefore) / std::max(T(1), std::fabs(fBefore) + std::fabs(f)) < accuracy_) {
      EndSolve(tarn::StopReason::kConvergedValue, f);
      return;
    }
  }
  EndSolve(tarn::StopReason::kIterationLimit, f);
  if (errorIfMaxItterNumberExceed_ != 0) TarnError(tarn::GetSolutionNotFoundError());
}

#endif
