#ifndef TARN_SPECIAL_BETA_H
#define TARN_SPECIAL_BETA_H

/// @file
/// The beta function B(a, b) = Gamma(a) Gamma(b)/Gamma(a + b) and its regularised incomplete form
///
///     I_x(a, b) = 1/B(a, b) * integral of t^(a-1) (1-t)^(b-1) dt from 0 to x,
///
/// with their logarithms. Everything is real, in double precision.
///
/// Sources: M. Abramowitz, I. A. Stegun, Handbook of Mathematical Functions, 6.2.2, 26.5.1
/// and 26.5.8; I. J. Thompson, A. R. Barnett, J. Comput. Phys. 64 (1986) 490 for the modified Lentz
/// method.

#include "frame/export.h"

/// I_x(a, b).
///
/// Domain: a > 0, b > 0, 0 <= x <= 1; outside, error 3 is raised and the result is 0.
/// x = 0 gives 0 and x = 1 gives 1, exactly.
///
/// Method: with bt = x^a (1-x)^b/B(a, b), bt * fraction(a, b, x)/a for x < (a + 1)/(a + b + 2) and
/// 1 - bt * fraction(b, a, 1 - x)/b otherwise; see `BetaContFrac` for the fraction, its limit of
/// rounds and the error raised when it is reached. The result is then computed with the last value
/// all the same.
/// NaN arguments give NaN, infinite ones too; since no fraction converges on them, that error is
/// raised. Small results computed as 1 - ... have a small absolute error only.
TARN_API double Beta_I(double a, double b, double x);

/// ln I_x(a, b), without forming I where it would underflow.
///
/// Domain and errors as for `Beta_I`. x = 0 gives -1e300, x = 1 gives 0.
///
/// For x < (a + 1)/(a + b + 2) the sum of the logarithms. Otherwise, with z = ln(1 - I), ln(1 -
/// exp(z)) for z < -0.0001, else ln of `LogComplementSeries`(z), which for the negative z in
/// question is NaN. That is so where I is below 1e-4 although x is not small, which takes a b of
/// about 1e-4 or less: there take ln of `Beta_I` instead.
TARN_API double LnBeta_I(double a, double b, double x);

/// B(a, b) = exp(`LnBeta`(a, b)).
TARN_API double Beta(double a, double b);

/// ln B(a, b) = `LnGamma`(a) + `LnGamma`(b) - `LnGamma`(a + b), in that order.
/// For a > 0, b > 0. a = 0 or b = 0 gives infinity; negative arguments give what the formula gives,
/// as `LnGamma` does; overflow, infinite and NaN arguments give infinity or NaN. Where one argument
/// is much larger than the other the difference cancels and few digits remain. Raises nothing.
TARN_API double LnBeta(double a, double b);

namespace tarn {

/// The continued fraction 1/(1+ d1/(1+ d2/(1+ ...))) of the incomplete beta function, with
///
///     d(2m)   = m (b - m) x/((a + 2m - 1) (a + 2m))
///     d(2m+1) = -(a + m) (a + b + m) x/((a + 2m) (a + 2m + 1))
///
/// by the modified Lentz method, two steps a round, until the second factor of a round is 1.
/// After 1000 rounds raises error 3, "a or b too big, Beta_P does not converge in 300 itterations",
/// and returns the last value. The 300 in that text is not the limit.
double BetaContFrac(double a, double b, double x);

/// ln of the same fraction: the same recurrence and error, summing the logarithms of the factors.
double LnBetaContFrac(double a, double b, double x);

}  // namespace tarn

#endif
