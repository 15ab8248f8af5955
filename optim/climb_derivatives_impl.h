#ifndef TARN_OPTIM_CLIMB_DERIVATIVES_IMPL_H
#define TARN_OPTIM_CLIMB_DERIVATIVES_IMPL_H

/// @file
/// `T_Climb`: first derivatives and gradients with respect to scaled coordinates, tests of steps.

#include <algorithm>
#include <cmath>

#include "optim/climb.h"
#include "optim/difference_points.h"

/// Step of a finite difference in variable i, in scaled units.
template <class T>
T T_Climb<T>::DifferenceStep(int i) const {
  return minStepSet_ == 1 && minStep_[i] != 0 ? minStep_[i] : aMinStep;
}

template <class T>
T T_Climb<T>::GetDerivative(T_MatVectorCol<T>& s, int i) {
  if (s.Dim() != dimension_ || i < 0 || i >= dimension_) return T(0);
  if (IsFixed(i) || !ReservePool(2)) return T(0);
  if (derivFunc_.TypeWord() == VARTYPE_EMPTY) return _GetDerivative_Parallel(s, i);
  evaluatedPoint_ = ScaleResult(s);
  return CalculateDerivative(derivFunc_, evaluatedPoint_, i) / invRange_[i];
}

template <class T>
T T_Climb<T>::_GetDerivative_Parallel(T_MatVectorCol<T>& s, int i) {
  return symmetricDerivative_ == 0 ? _GetDerivative_Parallel_Forward(s, i)
                                   : _GetDerivative_Parallel_Symmetric(s, i);
}

/// (f(t + h) - f(t))/h; from the upper face one step inwards. Leaves s_i at the far point.
template <class T>
T T_Climb<T>::_GetDerivative_Parallel_Forward(T_MatVectorCol<T>& s, int i) {
  T_MatVectorCol<T>* points = pool_.Points();
  const tarn::ForwardDifference<T> difference(s[i], DifferenceStep(i));
  s[i] = difference.near;
  points[0] = s;
  s[i] = difference.far;
  points[1] = s;
  if (difference.Width() == 0) return T(0);
  _DoParallelCalculation(pool_.Values(), points, 2);
  return (pool_.Values()[1] - pool_.Values()[0]) / difference.Width();
}

/// (f(t + h) - f(t - h))/(2h), with t moved off a face by h and the ends kept inside. Leaves s as
/// it is.
template <class T>
T T_Climb<T>::_GetDerivative_Parallel_Symmetric(const T_MatVectorCol<T>& s, int i) {
  T_MatVectorCol<T>* points = pool_.Points();
  const tarn::CentralDifference<T> difference(s[i], DifferenceStep(i));
  if (difference.Width() == 0) return T(0);
  for (T_MatVectorCol<T>* point : {&points[0], &points[1]}) *point = s;
  points[0][i] = difference.low;
  points[1][i] = difference.high;
  _DoParallelCalculation(pool_.Values(), points, 2);
  return (pool_.Values()[1] - pool_.Values()[0]) / difference.Width();
}

template <class T>
void T_Climb<T>::GetGradient(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s) {
  if (s.Dim() != dimension_) return;
  grad.SetDim(dimension_);
  if (!RecordMemory(grad.Dim() == dimension_)) return;
  if (derivFunc_.TypeWord() == VARTYPE_EMPTY) {
    _GetGradient_Parallel(grad, s);
  } else {
    AnalyticGradient(grad, s);
  }
}

/// The gradient from the derivative function. Components that point out of the box are cancelled
/// within twice the accuracy of a face; `_GetGradient_Parallel` uses the plain accuracy.
template <class T>
void T_Climb<T>::AnalyticGradient(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s) {
  grad.Clear();
  if (!ReservePool(0)) return;
  evaluatedPoint_ = ScaleResult(s);
  CalculateGradient(grad, derivFunc_, evaluatedPoint_);
  for (int i = 0; i < dimension_; ++i) {
    const bool leavesBelow = s[i] < 2 * accuracy_ && grad[i] > 0;
    const bool leavesAbove = 1 - s[i] < 2 * accuracy_ && grad[i] < 0;
    grad[i] = IsFixed(i) || leavesBelow || leavesAbove ? T(0) : grad[i] / invRange_[i];
  }
}

template <class T>
void T_Climb<T>::_GetGradient_Parallel(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s) {
  if (symmetricDerivative_ != 0) {
    _GetGradient_ParallelSymmetric(grad, s);
  } else {
    _GetGradient_ParallelForward(grad, s);
  }
  CancelOutwardComponents(grad, s);
}

/// N + 1 points in one batch: s, then one step per variable. The point of a fixed variable is the
/// corner of the box where all scaled coordinates are 0; its value is not used.
template <class T>
void T_Climb<T>::_GetGradient_ParallelForward(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s) {
  grad.Clear();
  if (!ReservePool(dimension_ + 1)) return;
  T_MatVectorCol<T>* points = pool_.Points();
  const T* values = pool_.Values();
  points[0] = s;
  for (int i = 0; i < dimension_; ++i) {
    if (IsFixed(i)) {
      points[i + 1].Clear();
    } else {
      grad[i] = StepForward(s, points[i + 1], i);
    }
  }
  _DoParallelCalculation(pool_.Values(), points, dimension_ + 1);
  for (int i = 0; i < dimension_; ++i) {
    const T delta = grad[i];
    grad[i] = delta == 0 ? T(0) : (values[i + 1] - values[0]) / delta;
  }
}

/// Moves s_i by one difference step, stores the point reached and returns the step as measured from
/// the best point, whose coordinate is put back. Where s is the best point, that restores s.
template <class T>
T T_Climb<T>::StepForward(T_MatVectorCol<T>& s, T_MatVectorCol<T>& point, int i) {
  const T h = DifferenceStep(i);
  const T t = s[i];
  const T best = bestPoint_[i];
  s[i] = t == 1 ? t - h : std::min(T(1), t + h);
  point = s;
  bestPoint_[i] = best;
  return point[i] - best;
}

/// 2N points in one batch: for each variable one below and one above.
template <class T>
void T_Climb<T>::_GetGradient_ParallelSymmetric(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s) {
  grad.Clear();
  if (!ReservePool(2 * dimension_)) return;
  T_MatVectorCol<T>* point = pool_.Points();
  for (int i = 0; i < dimension_; ++i) {
    const tarn::CentralDifference<T> difference(s[i], DifferenceStep(i));
    for (const T place : {difference.low, difference.high}) {
      *point = s;
      (*point)[i] = place;
      ++point;
    }
    grad[i] = difference.Width();
  }
  _DoParallelCalculation(pool_.Values(), pool_.Points(), 2 * dimension_);
  const T* value = pool_.Values();
  for (int i = 0; i < dimension_; ++i, value += 2) {
    const T delta = grad[i];
    grad[i] = IsFixed(i) || delta == 0 ? T(0) : (value[1] - value[0]) / delta;
  }
}

/// Cancels the components along which descent would leave the box.
template <class T>
void T_Climb<T>::CancelOutwardComponents(T_MatVectorCol<T>& grad,
                                         const T_MatVectorCol<T>& s) const {
  for (int i = 0; i < dimension_; ++i) {
    const bool leavesBelow = s[i] < accuracy_ && grad[i] > 0;
    const bool leavesAbove = s[i] > 1 - accuracy_ && grad[i] < 0;
    if (leavesBelow || leavesAbove) grad[i] = T(0);
  }
}

/// Whether every free component of d is smaller than the accuracy. One that is not a number is not.
template <class T>
bool T_Climb<T>::CheckDeltaSize(const T_MatVectorCol<T>& d) const {
  for (int i = 0; i < dimension_; ++i) {
    if (!IsFixed(i) && !(accuracy_ > std::fabs(d[i]))) return false;
  }
  return accuracy_ > 0;
}

/// `CheckDeltaSize` for each of N vectors.
template <class T>
bool T_Climb<T>::CheckStepSize(const T_MatVectorCol<T>* dirs) const {
  for (int i = 0; i < dimension_; ++i) {
    if (!CheckDeltaSize(dirs[i])) return false;
  }
  return true;
}

/// Directions back to the scaled axes, each as long as the difference step of its variable.
template <class T>
void T_Climb<T>::InitStep() {
  for (int i = 0; i < dimension_; ++i) {
    directions_[i].Clear();
    directions_[i][i] = DifferenceStep(i);
  }
}

#endif
