#ifndef TARN_OPTIM_CLIMB_LINE_SEARCH_IMPL_H
#define TARN_OPTIM_CLIMB_LINE_SEARCH_IMPL_H

/// @file
/// Steps of the line search of `T_Climb`, and the range of a direction inside the box.

#include <algorithm>
#include <cmath>

#include "arrays/search.h"
#include "optim/climb.h"
#include "optim/climb_line_search.h"
#include "optim/search_host.h"
#include "optim/unit_interval.h"

template <class T>
void T_Climb<T>::GetOrtBoundaries(T_MatVector<T>& s, T_MatVector<T>& d, T& tmin, T& tmax) {
  tmin = tmax = T(0);
  if (s.Dim() != dimension_ || d.Dim() != dimension_) return;
  tmax = std::sqrt(static_cast<T>(dimension_));
  tmin = -tmax;
  bool moves = false;
  for (int i = 0; i < dimension_; ++i) {
    if (IsFixed(i)) continue;
    const T lower = s[i] / std::fabs(d[i]);
    const T upper = (1 - s[i]) / std::fabs(d[i]);
    if (d[i] > 0) {
      tmax = std::min(tmax, upper);
      tmin = std::max(tmin, -lower);
    } else if (d[i] < 0) {
      tmax = std::min(tmax, lower);
      tmin = std::max(tmin, -upper);
    }
    moves = moves || d[i] > 0 || d[i] < 0;
  }
  if (!moves) tmin = tmax = T(0);
}

template <class T>
T T_Climb<T>::FindMiniumByDirection(T f0, T_MatVectorCol<T>& d, int useLength) {
  if (d.Dim() != dimension_) return f0;
  return tarn::LineSearch<T>(*this, f0).Minimise(d, useLength != 0);
}

namespace tarn {

/// Interval of steps between two visits to the host.
inline constexpr int kHostStepInterval = 10;

/// Stalled passes that a search goes on for.
inline constexpr int kStallLimit = 5;

/// Determinant of the matrix with these columns, expanded along the first row.
template <class T>
T CramerDeterminant(const T (&x)[3], const T (&y)[3], const T (&z)[3]) {
  return x[0] * (y[1] * z[2] - z[1] * y[2]) - y[0] * (x[1] * z[2] - z[1] * x[2]) +
         z[0] * (x[1] * y[2] - y[1] * x[2]);
}

template <class T>
LineSearch<T>::LineSearch(T_Climb<T>& climb, T f0)
    : climb_(climb),
      direction_(climb.dimension_),
      trial_(climb.dimension_),
      f0_(f0),
      table_(kColumnCount, kValue),
      bestValue_(f0) {}

template <class T>
T LineSearch<T>::Minimise(T_MatVectorCol<T>& direction, bool useLength) {
  AttendHostAtStart();
  if (!SetDirection(direction, useLength)) {
    climb_.record_.lineSearchReason = reason_;
    return f0_;
  }
  const T start[kColumnCount] = {T(0), f0_, T(0)};
  std::copy(start, start + kColumnCount, table_[0]);
  FirstTrial(useLength);
  SecondTrial();
  RunPasses();
  climb_.record_.lineSearchReason = reason_;
  return reason_ == StopReason::kCancelled ? T(0) : Finish();
}

// Start -------------------------------------------------------------------------------------------

template <class T>
void LineSearch<T>::AttendHostAtStart() {
  if (Processor* processor = GetOwner()) processor->FlushIdle();
  T_Climb<T>::lineSearchStep_ = 0;
}

/// Unit vector, range and length of the first steps. False when there is nothing to search: no
/// direction, no range or no work space.
template <class T>
bool LineSearch<T>::SetDirection(T_MatVectorCol<T>& direction, bool useLength) {
  const T norm = direction.Norm();
  reason_ = std::isnan(norm) ? StopReason::kNotANumber : StopReason::kNothingToShrink;
  if (!(norm > 0)) return false;
  if (table_.Len() < 1 || direction_.Dim() != direction.Dim() || trial_.Dim() != direction.Dim()) {
    reason_ = StopReason::kMemoryExhausted;
    return false;
  }
  for (int i = 0; i < direction.Dim(); ++i) direction_[i] = direction[i] / norm;
  climb_.GetOrtBoundaries(climb_.bestPoint_, direction_, tmin_, tmax_);
  if (tmin_ == tmax_) return false;
  length_ = useLength ? norm : T(0.05) * (tmax_ - tmin_);
  return true;
}

template <class T>
T LineSearch<T>::FirstStep() const {
  return tmax_ == 0 ? -2 * length_ : std::min(length_, tmax_);
}

/// Forwards, or twice as far backwards from the end of the range. A first length of the caller's
/// that does not lead down is replaced by a twentieth of the range.
template <class T>
void LineSearch<T>::FirstTrial(bool useLength) {
  T t = Clamp(FirstStep(), tmin_, tmax_);
  T f = Evaluate(t);
  if (f >= f0_ && useLength) {
    Insert(t, f);
    length_ = T(0.05) * (tmax_ - tmin_);
    t = FirstStep();
    f = Evaluate(t);
  }
  Insert(t, f);
}

/// Backwards, or twice as far forwards from the beginning of the range.
template <class T>
void LineSearch<T>::SecondTrial() {
  const T step = tmin_ == 0 ? 2 * length_ : std::max(tmin_, -length_);
  const T t = Clamp(step, tmin_, tmax_);
  Insert(t, Evaluate(t));
}

// The loop ----------------------------------------------------------------------------------------

template <class T>
void LineSearch<T>::RunPasses() {
  std::int64_t passes = 0;
  reason_ = StopReason::kMemoryExhausted;
  if (table_.Len() < 3) return;
  reason_ = StopReason::kConvergedStep;
  ChooseNeighbours();
  do {
    if (!AttendHost()) return;
    if (passes == climb_.lineSearchPassLimit_) {
      reason_ = StopReason::kLineSearchLimit;
      return;
    }
    ++passes;
    ++climb_.record_.lineSearchPasses;
    BeginPass();
    TryFittedPoint();
    if (NeedsFallBack()) TryFallBackPoint();
    ChooseNeighbours();
    if (tableFull_) {
      reason_ = StopReason::kMemoryExhausted;
      return;
    }
    if (HasStalled()) return;
    if (!changed_ && stallCount_ == 0 && GoesOn()) {
      reason_ = StopReason::kNothingToShrink;
      return;
    }
  } while (GoesOn());
}

/// Looks for an error and, on every tenth step, lets the host do its work and ask for cancellation.
/// False when the search is to end. A cancellation stays pending; any other error is taken for the
/// end of this search only.
template <class T>
bool LineSearch<T>::AttendHost() {
  Processor* processor = GetOwner();
  if (processor == nullptr) return true;
  if (processor->pendingError != 0) {
    reason_ = PendingErrorReason(*processor);
    if (reason_ != StopReason::kCancelled) processor->pendingError = 0;
    return false;
  }
  const int step = T_Climb<T>::lineSearchStep_++;
  if (step % kHostStepInterval == 0) {
    processor->FlushIdle();
    if (climb_.progressWnd_.GetObject() != nullptr) climb_.CheckCancel(*processor);
  }
  return true;
}

template <class T>
void LineSearch<T>::BeginPass() {
  changed_ = false;
  bestBefore_ = bestValue_;
  gapP_ = std::fabs(Distance(near_.k) - Distance(near_.p));
  gapQ_ = std::fabs(Distance(near_.q) - Distance(near_.k));
}

template <class T>
void LineSearch<T>::TryFittedPoint() {
  if (!Interpolate()) return;
  if (climb_.limitDirectionStep_ != 0) LimitStep();
  TryAt(Clamp(Distance(near_.k) + step_, tmin_, tmax_));
}

/// Whether a parabola gives a step in this pass. Three points are fitted once. Four are fitted once
/// too, but the test of their cubic is repeated with the differences kept, and the parabola is
/// taken again.
template <class T>
bool LineSearch<T>::Interpolate() {
  const bool fresh = MarkUsed();
  if (near_.fourth < 0) return fresh && FitParabola();
  if (fresh) KeepCubicDifferences();
  return !CubicHasStationaryPoints() && FitParabola();
}

/// Marks the lowest record and its neighbours as used. True when one of them was not.
template <class T>
bool LineSearch<T>::MarkUsed() {
  bool fresh = false;
  for (const std::int64_t i : {near_.k, near_.p, near_.q, near_.fourth}) {
    if (i < 0) continue;
    fresh = fresh || table_(i, kUsed) == 0;
    table_(i, kUsed) = T(1);
  }
  changed_ = changed_ || fresh;
  return fresh;
}

template <class T>
void LineSearch<T>::KeepCubicDifferences() {
  const std::int64_t records[3] = {near_.fourth, near_.q, near_.p};
  for (int n = 0; n < 3; ++n) {
    cubic_.u[n] = Distance(records[n]) - Distance(near_.k);
    cubic_.v[n] = Value(records[n]) - Value(near_.k);
  }
}

/// Whether c1*u + c2*u^2 + c3*u^3 through the four points, by Cramer's rule, has a real derivative
/// zero. Where it has, a parabola is a poor picture of the function.
template <class T>
bool LineSearch<T>::CubicHasStationaryPoints() const {
  T square[3];
  T cube[3];
  for (int n = 0; n < 3; ++n) {
    square[n] = cubic_.u[n] * cubic_.u[n];
    cube[n] = cubic_.u[n] * cubic_.u[n] * cubic_.u[n];
  }
  const T determinant = CramerDeterminant(cubic_.u, square, cube);
  if (determinant == 0) return false;
  const T c1 = CramerDeterminant(cubic_.v, square, cube) / determinant;
  const T c2 = CramerDeterminant(cubic_.u, cubic_.v, cube) / determinant;
  const T c3 = CramerDeterminant(cubic_.u, square, cubic_.v) / determinant;
  return c3 != 0 && (2 * c2) * (2 * c2) - 12 * c1 * c3 >= 0;
}

/// Step from the lowest record to the minimum of the parabola through it and its neighbours. False
/// when there is no minimum or no step; a NaN counts as neither positive nor a step.
template <class T>
bool LineSearch<T>::FitParabola() {
  const T a1 = Distance(near_.q) - Distance(near_.k);
  const T a2 = Distance(near_.p) - Distance(near_.k);
  const T b1 = Value(near_.q) - Value(near_.k);
  const T b2 = Value(near_.p) - Value(near_.k);
  const T a1Square = a1 * a1;
  const T a2Square = a2 * a2;
  const T determinant = a2 * a1Square - a2Square * a1;
  const T curvature = (b1 * a2 - b2 * a1) / determinant;
  if (!(curvature > 0)) return false;
  step_ = -((b2 * a1Square - b1 * a2Square) / determinant) / (2 * curvature);
  reach_ = std::max(std::fabs(a1), std::fabs(a2));
  return step_ < 0 || step_ > 0;
}

/// Caps the fitted step at ten times the reach of its points; the cap never shrinks.
template <class T>
void LineSearch<T>::LimitStep() {
  const T cap = std::max(10 * reach_, stepCap_);
  changed_ = changed_ || cap != stepCap_;
  stepCap_ = cap;
  step_ = Clamp(step_, -cap, cap);
}

/// Whether the pass has not led down so far, or its neighbours lay at very different distances.
template <class T>
bool LineSearch<T>::NeedsFallBack() const {
  const bool success = bestValue_ < bestBefore_;
  return !success || std::min(gapP_, gapQ_) < T(0.3) * std::max(gapP_, gapQ_);
}

template <class T>
void LineSearch<T>::TryFallBackPoint() {
  TryAt(FallBackDistance());
}

/// A point about the lowest record as it is now: outwards (or halving at the end of the range) when
/// it is the first or last one, otherwise halving the wider gap.
template <class T>
T LineSearch<T>::FallBackDistance() const {
  const std::int64_t k = Lowest();
  const std::int64_t m = Last();
  if (k == 0) {
    return Distance(0) == tmin_ ? (Distance(0) + Distance(1)) / 2
                                : std::max(tmin_, 3 * Distance(0) - 2 * Distance(1));
  }
  if (k == m) {
    return Distance(m) != tmax_ ? std::min(tmax_, 3 * Distance(m) - 2 * Distance(m - 1))
                                : (Distance(m) + Distance(m - 1)) / 2;
  }
  const bool upperGapWider = Distance(k + 1) - Distance(k) > Distance(k) - Distance(k - 1);
  return (Distance(k) + Distance(upperGapWider ? k + 1 : k - 1)) / 2;
}

/// The lowest record and its neighbours: the two next to it, or the next two when it stands at an
/// end; the fourth is the following one at an end, inside the nearer of the two beyond.
template <class T>
void LineSearch<T>::ChooseNeighbours() {
  const std::int64_t k = Lowest();
  const std::int64_t m = Last();
  if (k == 0) {
    near_ = {k, 1, 2, m >= 3 ? std::int64_t{3} : std::int64_t{-1}};
  } else if (k == m) {
    near_ = {k, m - 1, m - 2, m > 2 ? m - 3 : -1};
  } else {
    near_ = {k, k - 1, k + 1, k - 2};
    const bool upperExists = k >= 2 && k + 1 < m;
    if (upperExists && std::fabs(Distance(k + 2) - Distance(k - 1)) <
                           std::fabs(Distance(k - 1) - Distance(k - 2))) {
      near_.fourth = k + 2;
    }
  }
}

/// Counts the passes in a row that moved neither the best point nor its value by the accuracy; true
/// when there were too many.
template <class T>
bool LineSearch<T>::HasStalled() {
  const T accuracy = climb_.accuracy_;
  const bool bestStays = std::fabs(bestDistance_ - Distance(near_.k)) < accuracy &&
                         std::fabs(bestValue_ - bestBefore_) / ValueScale() < accuracy;
  const bool closed = std::fabs(Distance(near_.q) - Distance(near_.p)) < accuracy;
  stallCount_ = bestStays || closed ? stallCount_ + 1 : 0;
  if (stallCount_ <= kStallLimit) return false;
  reason_ = StopReason::kConvergedValue;
  return true;
}

/// Whether the neighbours are still apart in distance or in value.
template <class T>
bool LineSearch<T>::GoesOn() const {
  const T accuracy = climb_.accuracy_;
  const T upper = Value(near_.q) - Value(near_.k);
  const T lower = Value(near_.k) - Value(near_.p);
  const T smaller = std::fabs(lower) < std::fabs(upper) ? lower : upper;
  return std::fabs(Distance(near_.k) - Distance(near_.p)) > accuracy ||
         std::fabs(Distance(near_.q) - Distance(near_.k)) > accuracy ||
         std::fabs(smaller) / ValueScale() > accuracy;
}

/// What differences of values are measured by: the mean size of the three lowest, at least 1.
template <class T>
T LineSearch<T>::ValueScale() const {
  const T mean =
      (std::fabs(Value(near_.k)) + std::fabs(Value(near_.p)) + std::fabs(Value(near_.q))) / 3;
  return std::max(T(1), mean);
}

// Records -----------------------------------------------------------------------------------------

/// trial_ = best point + t*direction
template <class T>
void LineSearch<T>::SetTrial(T t) {
  const T* base = climb_.bestPoint_;
  const T* direction = direction_;
  T* trial = trial_;
  for (int i = 0; i < climb_.dimension_; ++i) {
    trial[i] = base[i] + t * direction[i];
  }
}

/// The value at distance t; the best point found so far moves there when it is lower.
template <class T>
T LineSearch<T>::Evaluate(T t) {
  SetTrial(t);
  const T f = climb_.FuncAtScaled(trial_);
  if (f < bestValue_) {
    bestValue_ = f;
    bestDistance_ = t;
  }
  return f;
}

template <class T>
void LineSearch<T>::Insert(T t, T f) {
  const T record[kColumnCount] = {t, f, T(0)};
  const std::int64_t place =
      BFindInsertIndex(table_[0], static_cast<double>(t), table_.Len(), kColumnCount);
  tableFull_ = !table_.Insert(place, record);
  changed_ = true;
}

/// Evaluates the point at distance t unless it is in the table.
template <class T>
void LineSearch<T>::TryAt(T t) {
  if (BFind(table_[0], static_cast<double>(t), table_.Len(), kColumnCount) >= 0) return;
  Insert(t, Evaluate(t));
}

// End ---------------------------------------------------------------------------------------------

/// Moves the best point of the minimiser to the best one found; without improvement it stays.
template <class T>
T LineSearch<T>::Finish() {
  if (bestValue_ < f0_) {
    SetTrial(bestDistance_);
    for (int i = 0; i < climb_.dimension_; ++i) climb_.bestPoint_[i] = ClampToUnit(trial_[i]);
  }
  climb_.TraceResult(bestValue_);
  return bestValue_;
}

}  // namespace tarn

#endif
