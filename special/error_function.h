#ifndef TARN_SPECIAL_ERROR_FUNCTION_H
#define TARN_SPECIAL_ERROR_FUNCTION_H

/// @file
/// The error function erf(x) = 2/sqrt(pi) * integral of exp(-t^2) dt from 0 to x and its complement
/// erfc(x) = 1 - erf(x), fast and to about seven digits. All three functions take every double,
/// give NaN for NaN, and raise nothing.
///
/// With z = |x| and t = 1/(1 + z/2) they share
///
///     E(z) = t exp(-z^2 - 1.26551223 + t (1.00002368 + t (0.37409196 + ... )))  ~  erfc(z),
///
/// a Chebyshev fit of nine coefficients with a relative error below 1.2e-7 for every z >= 0.
///
/// Where more digits are needed, erf(x) = `Gamma_P`(0.5, x^2) with the sign of x.
///
/// Sources: W. H. Press et al., Numerical Recipes, section 6.2, for the fit; M. Abramowitz, I. A.
/// Stegun, Handbook of Mathematical Functions, 7.1.23, for large arguments.

#include "frame/export.h"

/// erf(x) as 1 - E for x >= 0 and E - 1 otherwise. Absolute error below 1.2e-7. erf(0) is not
/// exactly 0 but -3.0e-8, for either zero. Infinite x gives 1 or -1.
TARN_API double Erf(double x);

/// erfc(x): E for 0 <= x < 10, 2 - E for x < 0; from x = 10 on the first term of the asymptotic
/// series, exp(-x^2 - ln x - ln sqrt(pi)), whose relative error is about 1/(2 x^2) (0.5% at 10).
/// Underflows to 0 from x = 27.23 on. Infinite x gives 0 or 2.
TARN_API double CErf(double x);

/// ln erfc(x): ln of `CErf` below x = 10, -x^2 - ln x - ln sqrt(pi) from there on, which does not
/// underflow. Plus infinity gives minus infinity, minus infinity ln 2.
TARN_API double LogCErf(double x);

#endif
