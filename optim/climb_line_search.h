#ifndef TARN_OPTIM_CLIMB_LINE_SEARCH_H
#define TARN_OPTIM_CLIMB_LINE_SEARCH_H

/// @file
/// The line search of `T_Climb`: its state and its steps.
///
/// The search works on t, the signed distance from the best point along a unit vector, within the
/// range that stays in the box. It keeps a table of all points evaluated, sorted by t. Each pass
/// fits a parabola through the lowest point and its neighbours and tries its minimum; where that
/// does not lead down, or the neighbours lie at very different distances, it halves the wider gap
/// or steps outwards. (Brent, Algorithms for Minimization without Derivatives, 1973, chapter 5, for
/// parabolic steps with a safeguard. Departure: the table keeps every point, and a cubic through
/// four of them vetoes the parabola where it has stationary points of its own.)

#include <cstdint>

#include "optim/climb.h"
#include "optim/line_table.h"

namespace tarn {

template <class T>
class LineSearch {
 public:
  LineSearch(T_Climb<T>& climb, T f0);

  /// Minimises along `direction`; see `T_Climb::FindMiniumByDirection`.
  T Minimise(T_MatVectorCol<T>& direction, bool useLength);

 private:
  /// Columns of the table.
  enum Column { kDistance, kValue, kUsed, kColumnCount };

  /// Numbers of records: the lowest one and those next to it. `fourth` is -1 where there is none.
  struct Neighbours {
    std::int64_t k = 0;
    std::int64_t p = 0;
    std::int64_t q = 0;
    std::int64_t fourth = -1;
  };

  /// Differences of three records from the lowest: distances u and values v.
  struct Differences {
    T u[3] = {0, 0, 0};
    T v[3] = {0, 0, 0};
  };

  // Start
  void AttendHostAtStart();
  bool SetDirection(T_MatVectorCol<T>& direction, bool useLength);
  T FirstStep() const;
  void FirstTrial(bool useLength);
  void SecondTrial();

  // The loop
  void RunPasses();
  bool AttendHost();
  void BeginPass();
  void TryFittedPoint();
  bool Interpolate();
  bool MarkUsed();
  void KeepCubicDifferences();
  bool CubicHasStationaryPoints() const;
  bool FitParabola();
  void LimitStep();
  bool NeedsFallBack() const;
  void TryFallBackPoint();
  T FallBackDistance() const;
  void ChooseNeighbours();
  bool HasStalled();
  bool GoesOn() const;
  T ValueScale() const;

  // Records
  T Distance(std::int64_t i) const { return table_(i, kDistance); }
  T Value(std::int64_t i) const { return table_(i, kValue); }
  std::int64_t Last() const { return table_.Len() - 1; }
  std::int64_t Lowest() const { return table_.Lowest(); }
  T Evaluate(T t);
  void Insert(T t, T f);
  void TryAt(T t);

  T Finish();
  void SetTrial(T t);

  T_Climb<T>& climb_;
  T_MatVectorCol<T> direction_;  ///< unit vector
  T_MatVectorCol<T> trial_;      ///< scaled point that is evaluated
  T tmin_ = 0;
  T tmax_ = 0;
  T length_ = 0;  ///< length of the first steps
  T f0_;

  LineTable<T> table_;
  bool tableFull_ = false;  ///< a record was refused
  T bestDistance_ = 0;
  T bestValue_;

  Neighbours near_;
  T bestBefore_ = 0;  ///< best value at the start of the pass
  T gapP_ = 0;        ///< distances from the lowest record to its neighbours at that time
  T gapQ_ = 0;
  T step_ = 0;            ///< fitted step from the lowest record
  T reach_ = 0;           ///< larger distance of the points that the step was fitted to
  T stepCap_ = 0;         ///< limit of a fitted step so far
  Differences cubic_;     ///< of the last four points fitted
  bool changed_ = false;  ///< whether the pass changed anything that the next one looks at
  int stallCount_ = 0;
  StopReason reason_ = StopReason::kNotRun;
};

}  // namespace tarn

#endif
