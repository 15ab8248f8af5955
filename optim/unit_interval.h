#ifndef TARN_OPTIM_UNIT_INTERVAL_H
#define TARN_OPTIM_UNIT_INTERVAL_H

/// @file
/// Keeping scaled coordinates inside the unit interval.

namespace tarn {

/// `value` moved into [low, high]; the lower end is tested first. A NaN stays.
template <class T>
T Clamp(T value, T low, T high) {
  if (value < low) return low;
  return value > high ? high : value;
}

template <class T>
T ClampToUnit(T value) {
  return Clamp(value, T(0), T(1));
}

/// Without a jump, for loops over coordinates.
template <class T>
bool IsInUnit(T value) {
  return (value >= 0) & (value <= 1);
}

/// The coordinate `moved` that a step from `base` leads to. From inside the unit interval no step
/// leads out of it, not by a rounding error either; a base outside is its owner's decision, and
/// steps from there are left as they are.
template <class T>
T KeepInside(T moved, T base) {
  return IsInUnit(base) ? ClampToUnit(moved) : moved;
}

}  // namespace tarn

#endif
