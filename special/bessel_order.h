#ifndef TARN_SPECIAL_BESSEL_ORDER_H
#define TARN_SPECIAL_BESSEL_ORDER_H

/// @file
/// Orders of Bessel functions: which are integral, and how far a recurrence over them may run.

#include <limits>
#include <optional>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "special/iteration_limits.h"

namespace tarn {

/// The order as a 32-bit integer where truncating it changes nothing. An order outside the 32-bit
/// range counts as not integral, so do an infinite one and NaN.
inline std::optional<int> IntegralOrder(double order) {
  constexpr double lowest = std::numeric_limits<int>::min();
  constexpr double highest = std::numeric_limits<int>::max();
  if (!(order >= lowest && order <= highest)) return std::nullopt;
  const int truncated = static_cast<int>(order);
  if (truncated != order) return std::nullopt;
  return truncated;
}

/// Whether a recurrence of that many steps may run; raises error 3 where it may not: more than
/// 10,000,000 steps, or a NaN from an order that is none.
inline bool CheckRecurrenceSteps(double steps) {
  if (steps <= kMaxRecurrenceSteps) return true;
  TarnError(kErrorArgument);
  return false;
}

}  // namespace tarn

#endif
