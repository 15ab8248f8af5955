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

}  // namespace tarn

#endif
