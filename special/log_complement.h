#ifndef TARN_SPECIAL_LOG_COMPLEMENT_H
#define TARN_SPECIAL_LOG_COMPLEMENT_H

/// @file
/// The series that the logarithms of probabilities use close to probability one.

namespace tarn {

/// s = y + y*y/2 + y*y*y/12 + ..., the terms obeying term <- term*y/d with the divisors
/// d <- d*(d + 1), d = 1 at first (2, 6, 42, 1806, ...).
///
/// Only the first two terms are those of exp(y) - 1, whose divisors would be 2, 3, 4, ...: for
/// negative y the result is above exp(y) - 1 by about |y*y*y|/12. `LnGamma_P`, `LnGamma_Q` and
/// `LnBeta_I` are defined by this series where the logarithm y of the complementary probability is
/// close to 0. docs/accuracy.md says how far that takes them from the true logarithms.
///
/// @param y any number. NaN gives NaN.
/// Terms are added in order of k; the sum ends after the first term below 1e-16, a comparison with
/// sign, so that a negative term is the last one, and after 999 terms at the latest. Raises
/// nothing.
double LogComplementSeries(double y);

}  // namespace tarn

#endif
