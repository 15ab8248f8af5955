#ifndef TARN_SPECIAL_ITERATION_LIMITS_H
#define TARN_SPECIAL_ITERATION_LIMITS_H

/// @file
/// When the series, continued fractions and recurrences of this folder end.

namespace tarn {

/// Replaces a numerator or denominator of a continued fraction whose absolute value falls below it
/// (modified Lentz method), so that no quotient divides by zero.
inline constexpr double kLentzTiny = 1e-300;

/// Relative change at which an iteration has converged. Below half the spacing of doubles next to
/// 1, so |factor - 1| < kTolerance holds exactly when the factor has become 1.
inline constexpr double kTolerance = 1e-16;

/// Most rounds of any series or continued fraction.
inline constexpr int kMaxRounds = 1000;

/// Most steps of a recurrence over the order of a function. Longer ones raise error 3: they would
/// run for up to minutes, for every element of an array.
inline constexpr double kMaxRecurrenceSteps = 1e7;

}  // namespace tarn

#endif
