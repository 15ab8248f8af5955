#ifndef TARN_SPECIAL_LENTZ_GUARD_H
#define TARN_SPECIAL_LENTZ_GUARD_H

/// @file
/// The guard of the modified Lentz method for continued fractions.

#include <cmath>

#include "special/iteration_limits.h"

namespace tarn {

inline bool IsTiny(double value) { return std::fabs(value) < kLentzTiny; }

/// Replaces a numerator c and a denominator d that have all but vanished. That is so rare that one
/// jump around both is better than two choices, each of which the next division would have to wait
/// for.
inline void GuardTiny(double& c, double& d) {
  if (IsTiny(c) || IsTiny(d)) [[unlikely]] {
    if (IsTiny(c)) c = kLentzTiny;
    if (IsTiny(d)) d = kLentzTiny;
  }
}

}  // namespace tarn

#endif
