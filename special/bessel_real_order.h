#ifndef TARN_SPECIAL_BESSEL_REAL_ORDER_H
#define TARN_SPECIAL_BESSEL_REAL_ORDER_H

/// @file
/// Bessel functions of real order nu >= 0 with their derivatives: Steed's method, with Temme's
/// series for small arguments.
///
/// Sources:
///  - A. R. Barnett, D. H. Feng, J. W. Steed, L. J. B. Goldfarb, Comput. Phys. Commun. 8 (1974)
///    377: the two continued fractions and the Wronskian (Steed's method).
///  - N. M. Temme, J. Comput. Phys. 19 (1975) 324 (K) and 21 (1976) 343 (Y): the series near 0, and
///    the normalising sum of the second continued fraction of K.
///  - I. J. Thompson, A. R. Barnett, J. Comput. Phys. 64 (1986) 490: modified Lentz method.
///  - W. H. Press et al., Numerical Recipes, section 6.7: the arrangement of all this as used here.

namespace tarn {

// Texts of error 3, one for each iteration that can run out of its 1000 rounds.
inline constexpr const char* kFirstFractionFailed = "x too large; try asymptotic expansion";
inline constexpr const char* kSeriesOfYFailed = "bessy series failed to converge";
inline constexpr const char* kSecondFractionOfJYFailed = "cf2 failed in bessjy";
inline constexpr const char* kSeriesOfKFailed = "series failed to converge";
inline constexpr const char* kSecondFractionOfKFailed = "failure to converge in cf2";

/// J, Y and their derivatives with respect to x at one argument and order.
struct BesselJYValues {
  double j;
  double y;
  double jDerivative;
  double yDerivative;
};

/// I, K and their derivatives with respect to x at one argument and order.
struct BesselIKValues {
  double i;
  double k;
  double iDerivative;
  double kDerivative;
};

/// J_nu(x), Y_nu(x), J'_nu(x), Y'_nu(x).
///
/// Domain: x > 0, nu >= 0.
/// Returns whether there are values; after an error `values` is untouched.
///
/// Error 3
///  - without a text: x <= 0, nu < 0, nu NaN or infinite, or more than 10,000,000 steps of the
///    recurrence over the order;
///  - "x too large; try asymptotic expansion": the first continued fraction, whose length grows
///    like x, has not converged in 1000 rounds (also for a NaN or infinite x);
///  - "bessy series failed to converge", "cf2 failed in bessjy": the same of Temme's series (x < 2)
///    and of the second continued fraction (x >= 2). The series converges for every argument known.
///
/// Method: with nl = floor(nu + 1/2) for x < 2 and max(floor(nu - x + 3/2), 0) otherwise, mu = nu -
/// nl: the fraction J'/J at nu, downward recurrence to mu, there Y from Temme's series or the
/// fraction p + iq, scaling by the Wronskian W = 2/(pi x), upward recurrence of Y to nu.
/// Where the downward recurrence leaves the range of a double (orders far above x) the values are
/// NaN or infinite.
bool BesselJY(double x, double nu, BesselJYValues& values);

/// I_nu(x), K_nu(x), I'_nu(x), K'_nu(x).
///
/// Domain, result and method as for `BesselJY`, but nl = floor(nu + 1/2) for every x, and the
/// Wronskian is -1/x. The texts are "x too large; try asymptotic expansion", "series failed to
/// converge" and "failure to converge in cf2"; the last two are there for no argument known.
/// From about x = 714 on I overflows, from 742 on K underflows, and no error is raised.
bool BesselIK(double x, double nu, BesselIKValues& values);

/// K_nu(x) and K'_nu(x) only: the same bits, errors and guards as `BesselIK`, which leaves `i` and
/// `iDerivative` as they are where it can save the work.
bool BesselKAlone(double x, double nu, BesselIKValues& values);

/// The Chebyshev sum c[0]/2 + sum over j = 1 ... m-1 of c[j] T_j(z), z = (2y - a - b)/(b - a), by
/// Clenshaw's recurrence. Raises error 3 and gives 0 when y is outside [a, b]; NaN gives NaN.
double ChebyshevEval(double a, double b, const double* c, int m, double y);

/// What Temme's series need of the gamma function.
struct TemmeGamma {
  double gam1;   ///< (1/Gamma(1-mu) - 1/Gamma(1+mu))/(2 mu)
  double gam2;   ///< (1/Gamma(1-mu) + 1/Gamma(1+mu))/2
  double gampl;  ///< 1/Gamma(1+mu)
  double gammi;  ///< 1/Gamma(1-mu)
};

/// These coefficients for |mu| <= 1/2, as Chebyshev sums in 8 mu^2 - 1.
TemmeGamma GammaCoefficients(double mu);

}  // namespace tarn

#endif
