#ifndef TARN_SPECIAL_RANDOM_H
#define TARN_SPECIAL_RANDOM_H

/// @file
/// Normal, Poisson and binomial random deviates from the host's uniform source `Rand`.
///
/// Each generator keeps values from one call to the next: the second deviate of a normal pair, and
/// what depends on the parameters alone. That cache and the uniform source are shared by all
/// threads, so a call holds the random lock (random_lock.h) from before its first draw until it
/// returns. The lock is re-entrant: a caller may hold it around a sequence of calls. It exists once
/// the module has been initialised; the generators must not be called before that.
///
/// Which uniforms are drawn, and in which order, is part of the contract: a seeded source gives the
/// same deviates everywhere. Drawing ends for every argument, and for every source: a source so
/// degenerate that 1,000,000 attempts at one deviate in a row fail (one that is stuck at a value,
/// or returns NaN) makes the deviate NaN. A source of independent uniforms does that with a
/// probability below 1e-100000.
///
/// No function here raises an error.
///
/// Sources:
///  1. G. E. P. Box and M. E. Muller, Annals of Mathematical Statistics 29 (1958) 610, in the polar
///     form of G. Marsaglia and T. A. Bray, SIAM Review 6 (1964) 260.
///  2. D. E. Knuth, The Art of Computer Programming, volume 2, section 3.4.1: Poisson deviates of
///     small mean as the number of uniforms whose product stays above exp(-mean).
///  3. J. H. Ahrens and U. Dieter, Computing 12 (1974) 223, and L. Devroye, Non-Uniform Random
///     Variate Generation, Springer 1986, chapter X: rejection from a Lorentzian.
///  4. A. D. Barbour and G. K. Eagleson, Advances in Applied Probability 15 (1983) 585: how far a
///     binomial law is from the Poisson law of its mean.

#include "frame/export.h"

/// A normal deviate mean + sigma z, with z of zero mean and unit variance [1].
///
/// Points (s, t) of the square (-1, 1) x (-1, 1), two uniforms each, s first, are drawn until one
/// lies inside the unit circle and off its centre. Its two coordinates give two deviates: this call
/// uses the one from t, the next call the one from s, without drawing.
///
/// @param mean   any value; infinite and NaN means give themselves
/// @param sigma  any value; a negative one mirrors the deviate, NaN gives NaN
/// @return z * sigma + mean, in this order of operations
TARN_API double RandGauss(double mean, double sigma);

/// A Poisson deviate: k with probability mean^k exp(-mean) / k!.
///
/// Below a mean of 12, k is one less than the number of uniforms whose product is first not above
/// exp(-mean) [2]. From 12 on it is found by rejection from a Lorentzian of scale sqrt(2 mean)
/// about the mean [3]: one uniform per trial value, and one more to accept or reject it where it is
/// not negative. Rejection accepts about every second trial, whatever the mean.
///
/// @param mean  Above 2^53 doubles skip integers, and rounding errors of k ln(mean) - ln(k!) have a
///              say in what is accepted. A mean that is NaN, or so large (above 2.5e305) that
///              mean ln(mean) overflows, gives NaN without drawing. For a negative mean the product
///              is never above exp(-mean) and the result is 0 after one draw; with one exception:
///              before any other call, the mean -1 meets the cache in its initial state (mean -1,
///              comparison value 0), and the deviate counts the uniforms until their product
///              underflows to 0.
/// @return a non-negative integer as a double, or NaN
TARN_API double RandPoisson(double mean);

/// A binomial deviate: the number of successes in n trials of probability p.
///
/// Works with pp = p for p <= 1/2, else with pp = 1 - p and the failures. Up to n = 24 it makes the
/// trials, one uniform each; a success is a uniform below pp. From 25 on, with n pp < 1, it counts
/// the uniforms whose product stays at or above exp(-n pp), at most n: a Poisson deviate, whose law
/// is within pp (1 - exp(-n pp)) of the binomial one in total variation [4]. With n pp >= 1 it
/// rejects from a Lorentzian of scale sqrt(2 n pp (1 - pp)) about n pp [3], as `RandPoisson` does.
///
/// @param p  A probability below 0 counts as 0, one above 1 as 1. NaN: below 25 trials every one
///           is made and counts as a success, from 25 on the result is NaN without drawing.
/// @param n  number of trials; with n < 1 no trial succeeds: the result is 0, or n for p > 1/2
/// @return an integer as a double, or NaN
TARN_API double RandBinominal(double p, int n);

#endif
