#ifndef TARN_SPECIAL_BESSEL_MODIFIED_H
#define TARN_SPECIAL_BESSEL_MODIFIED_H

/// @file
/// The modified Bessel functions I and K, of integral and of real order, with derivatives and
/// logarithms. The argument x comes first, the order n second; both are doubles.
///
/// An order that is integral (within the 32-bit range and equal to its truncation) is treated as
/// such by `BesselIn`, `BesselKn` and `LnBesselIn`: polynomials and recurrences of about seven
/// digits, defined for negative x where the function is. Every other order, and every order of a
/// derivative, goes through `BesselIK` of bessel_real_order.h, which is accurate to about 1e-13 and
/// takes x > 0, n >= 0 only.
///
/// Error 3 is raised, and the result is then 0 (not ln 0 for the logarithms),
///  - for a real order, or a derivative, where `BesselIK` raises it, with its texts;
///  - without a text for an order that would take a recurrence over 10,000,000 steps: n above about
///    4,980,000 for I and above 10,000,000 for K and real orders; also for NaN.
///
/// Sources: M. Abramowitz, I. A. Stegun, Handbook of Mathematical Functions, 9.8.1 to 9.8.8
/// (polynomials), 9.6.26 (recurrences), 9.6.7 and 9.7.1 (small and large arguments); J. C. P.
/// Miller, British Association Mathematical Tables X (1952) for the downward recurrence.

#include <optional>

#include "frame/export.h"

/// I_0(x) by two polynomials, in (x/3.75)^2 for |x| < 3.75 and in 3.75/|x| beyond; relative error
/// below 2e-7. Even. I_0(0) = 1; overflows to infinity from |x| = 709.8 on, although I_0 itself
/// does only at 714.0; infinite and NaN x give NaN. Raises nothing.
TARN_API double BesselI0(double x);

/// I_1(x), in the same way; relative error below 3e-7. Odd. I_1(0) = 0. Raises nothing.
TARN_API double BesselI1(double x);

/// I_n(x).
/// Integral n: Miller's downward recurrence from order 2 (n + floor(sqrt(40 n))), normalised by
/// `BesselI0`; every n < 2 other than 1, also the negative ones, gives I_0. I_n(0) = 0 for n >= 2;
/// odd n are odd in x. The recurrence starts too low for x above about n^2/2: the result is then
/// too small for odd n, a little too large for even n. The order n + 1e-12 takes the route of real
/// orders, which has no such limit. Real n: x > 0 and n >= 0.
TARN_API double BesselIn(double x, double n);

/// ln I_n(x), also where I_n would under- or overflow.
///  1. n/30 > x: the leading term n ln(x/2) - ln Gamma(n + 1);
///  2. otherwise, with mu = 4 n^2 - 1, x > mu/8: ln(1 - mu/(8 x)) + x - ln(2 pi x)/2;
///  3. otherwise the logarithm of `BesselIn`.
/// Only 3. can raise an error. For n = 0 every x > 0 falls under 2., which is good for large x
/// only; for x close to mu/8 that form loses its digits. Negative x gives NaN.
TARN_API double LnBesselIn(double x, double n);

/// dI_n/dx for x > 0, n >= 0, from `BesselIK`.
TARN_API double BesselIpn(double x, double n);

/// ln of dI_n/dx.
///  1. x < n/30: the leading term ln(n/2) + (n - 1) ln(x/2) - ln Gamma(n + 1);
///  2. otherwise, x > 10 n: x - ln(2 pi x)/2, without the correction that `LnBesselIn` has;
///  3. otherwise the logarithm of `BesselIpn`.
/// Only 3. can raise an error. Negative x gives NaN.
TARN_API double LnBesselIpn(double x, double n);

/// K_0(x) for x > 0 by two polynomials, in x^2/4 up to x = 2 and in 2/x beyond; relative error
/// below 2e-7. Infinity at 0, NaN for x < 0 and for NaN, 0 from x = 741.9 on. Raises nothing.
TARN_API double BesselK0(double x);

/// K_1(x), in the same way. NaN at 0 (the formula has 0 times infinity there).
TARN_API double BesselK1(double x);

/// K_n(x).
/// Integral n: upward recurrence from K_0 and K_1; every n < 1, also the negative ones, gives K_0.
/// Defined as these are for x <= 0: infinity or NaN, no error.
/// Real n: x > 0 and n >= 0.
TARN_API double BesselKn(double x, double n);

/// dK_n/dx for x > 0, n >= 0, from `BesselIK`.
TARN_API double BesselKpn(double x, double n);

namespace tarn {

/// `BesselIn` of an integral order; nothing after an error.
///
/// The recurrence I_{j-1} = I_{j+1} + (2j/|x|) I_j starts from 0 and 1 and is scaled by 1e-10, once
/// a step, when it passes 1e10. Where x is so tiny that single steps outgrow that and the values
/// leave the range of a double, it is run again, scaled as often a step as it takes.
std::optional<double> BesselIInt(int n, double x);

/// `BesselKn` of an integral order; nothing after an error.
std::optional<double> BesselKInt(int n, double x);

}  // namespace tarn

#endif
