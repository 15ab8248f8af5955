#ifndef TARN_SPECIAL_GAMMA_H
#define TARN_SPECIAL_GAMMA_H

/// @file
/// The logarithm of the gamma function and the regularised incomplete gamma functions
///
///     P(a, x) = 1/Gamma(a) * integral of t^(a-1) exp(-t) dt from 0 to x,    Q(a, x) = 1 - P(a, x),
///
/// with their logarithms. Everything is real, in double precision.
///
/// Common to P, Q, ln P and ln Q:
///  - Domain a > 0, x >= 0. Outside (x < 0 or a <= 0) error 3 is raised and the result is 0.
///  - A NaN argument gives NaN and raises nothing. So do a or x infinite: the factor
///    exp(a ln x - x - ln Gamma(a)) is then the difference of infinities. From about a = 1e305 on
///    the parts of that difference overflow.
///  - Method: for x < a + 1 the power series, from x = a + 1 on the continued fraction, both ended
///    by the first term or factor that changes nothing (relative 1e-16) or after 1000 rounds.
///    Running out of rounds is no error, the last value is used: for x near a that happens to the
///    series from a = 1.5e4 on and to the fraction from a = 1e6 on, and fewer and fewer digits are
///    right.
///  - Accuracy: set by `LnGamma` and by the cancellation in a ln x - x - ln Gamma(a); figures in
///    docs/accuracy.md.
///
/// Sources: C. Lanczos, SIAM J. Numer. Anal. B 1 (1964) 86; M. Abramowitz, I. A. Stegun, Handbook
/// of Mathematical Functions, 6.5.29 and 6.5.31; I. J. Thompson, A. R. Barnett, J. Comput. Phys. 64
/// (1986) 490 for the modified Lentz method.

#include "frame/export.h"

/// ln Gamma(x) for x > 0, by Lanczos' approximation with six coefficients c[j]:
///
///     ln(sqrt(2 pi) (c0 + sum of c[j]/(x + j) over j = 1 ... 6)/x) - (t - (x + 0.5) ln t),  t = x
///     + 5.5
///
/// The sum runs in order of j. Relative error of Gamma below 2e-10 for x > 0.
/// 0 <= x < 5.8e-307 gives infinity, a quotient overflows there; x < 0 gives what the formula
/// gives, NaN or a number that is ln |Gamma(x)| only by luck; overflow gives infinity, x infinite
/// or NaN gives NaN. Raises nothing.
TARN_API double LnGamma(double x);

/// P(a, x). Increasing in x from P(a, 0) = 0 to 1.
/// For x >= a + 1 it is 1 - Q: the absolute error stays small, the relative one as well.
TARN_API double Gamma_P(double a, double x);

/// Q(a, x). Decreasing in x from Q(a, 0) = 1 to 0.
/// For x < a + 1 it is 1 - P: small values have a small absolute error only (they can only occur
/// for a well below 1; `LnGamma_Q` does the same). For x >= a + 1 the relative error is small.
TARN_API double Gamma_Q(double a, double x);

/// ln P(a, x), without forming P where it would underflow.
/// For x < a + 1 the logarithm of the series. From there on, with y = ln Q: ln(1 - exp(y)) for
/// y < -0.01, else ln of `LogComplementSeries`(y).
///
/// x >= a + 1 means Q below about 1/2, so the last form is left to NaN. x = 0 gives 0, not minus
/// infinity.
TARN_API double LnGamma_P(double a, double x);

/// ln Q(a, x), without forming Q where it would underflow.
/// For x >= a + 1 the logarithm of the continued fraction. Below, with y = ln P: ln(1 - exp(y)) for
/// y < -0.01, else ln(1 - `LogComplementSeries`(y)).
///
/// That second form, used where P is above 0.99, is close to 0 and not ln Q. P is above 0.99 at
/// x < a + 1 only for a below 0.047: there take ln of `Gamma_Q` instead. x = 0 gives 0.
TARN_API double LnGamma_Q(double a, double x);

namespace tarn {

/// P(a, x) by its power series
///
///     x^a exp(-x)/Gamma(a) * sum of x^n/(a (a+1) ... (a+n)) over n = 0, 1, ...
///
/// in order of n; at most 1000 terms after the first. x = 0 gives 0, x < 0 raises error 3 and gives
/// 0.
double GammaSeries(double a, double x);

/// ln of `GammaSeries` as ln(sum) - x + a ln x - ln Gamma(a); 0 where that gives 0.
double LnGammaSeries(double a, double x);

/// Q(a, x) by the continued fraction
///
///     x^a exp(-x)/Gamma(a) * 1/(x+1-a- 1(1-a)/(x+3-a- 2(2-a)/(x+5-a- ...)))
///
/// with the modified Lentz method; at most 1000 rounds. Raises nothing.
double GammaContFrac(double a, double x);

/// ln of `GammaContFrac` as ln(fraction) + (a ln x - x - ln Gamma(a)).
double LnGammaContFrac(double a, double x);

}  // namespace tarn

#endif
