#ifndef TARN_TFUNC_TFUNC_H
#define TARN_TFUNC_TFUNC_H

/// @file
/// Tabulated functions.
///
/// A `TFunc` is a function of one real variable given by points (X[i], Y[i]) with ascending X. It
/// is evaluated by linear interpolation and continued by its end values to both sides.
///
/// Sources:
///  1. D. E. Knuth, The Art of Computer Programming, vol. 3, section 6.2.1 (bisection).
///  2. M. Abramowitz, I. A. Stegun, Handbook of Mathematical Functions, 25.4.1 and 25.4.2
///     (trapezoidal rule), 25.4.5 and 25.4.6 (Simpson's rule).
///  3. P. J. Davis, P. Rabinowitz, Methods of Numerical Integration, 2nd ed., chapter 2 (rules from
///     the parabola through three points, equally spaced or not).
///  4. P. Blanchard, D. J. Higham, N. J. Higham, Accurately computing the log-sum-exp and softmax
///     functions, IMA J. Numer. Anal. 41 (2021) 2311-2330 (the shift by the largest term).
///
/// For all members:
///  - X must ascend, strictly or weakly; nothing sorts or checks it. On any other table, and with
///    NaN among points or arguments, every member still ends, reads its N points only and answers
///    with what its formula gives.
///  - A function without points (N below 1) answers with the constants stated at each member.
///  - Sums run from the first point to the last, formulae from left to right as written.
///  - No two threads may use the same object at the same time. This includes evaluation, which
///    remembers where it found the last argument.

#include <cstdint>

#include "frame/export.h"
#include "linalg/vector.h"
#include "tfunc/interval_search.h"
#include "tfunc/owner_ring.h"

/// A function of one variable tabulated at ascending abscissae, linear between them: values,
/// arithmetic, integrals, zeros and extremes.
class TARN_API TFunc {
 public:
  // The data. Callers may read and write the points; whoever replaces an array answers for the old
  // one.
  std::int32_t Borrowed;  ///< non-zero: the arrays belong to the caller and are never released here
  double* X;              ///< abscissae
  double* Y;              ///< ordinates
  std::int32_t N;         ///< number of points

  // Construction ----------------------------------------------------------------------------------
  //
  // Without memory, for a negative `n` and for null arrays the function is empty (N is 0).

  /// `n` points (i, 0), i = 0, 1, ..., n - 1.
  explicit TFunc(int n);
  /// A copy of the `n` points (x[i], y[i]).
  TFunc(const double* x, const double* y, int n);
  /// With a non-zero `borrow` a function that uses the caller's two arrays of `n` elements as they
  /// are; they must outlive it. With `borrow` 0 a copy of the points.
  TFunc(double* x, double* y, int n, int borrow);
  /// A copy of the points; it owns its arrays also where `f` borrows.
  TFunc(const TFunc& f);
  /// Releases the arrays unless they are borrowed or still in use by another function to or from
  /// which they were assigned.
  ~TFunc();
  /// Takes over the four fields of `f`: both objects then use the same arrays, and what one writes
  /// the other reads. Owned arrays are released by the last object that uses them. The arrays held
  /// before are released, except where `f` borrows just these: then they belong to the caller, as
  /// the field taken over says.
  TFunc& operator=(const TFunc& f);

  // Evaluation and search -------------------------------------------------------------------------

  /// The linear interpolant at `x`: Y[0] for x <= X[0], Y[N-1] for x >= X[N-1], otherwise
  /// y_l + (y_h - y_l) (x - x_l) / (x_h - x_l) with the interval [x_l, x_h] that bisection finds
  /// (among equal abscissae the last is x_l, so a knot inside the table gives its own y). Empty: 0.
  double operator()(double x) const;
  /// Index of the knot nearest to `x`, the lower one for an exact middle. Empty: 0.
  int pos(double x);
  /// Index of the last knot at or below `x`; 0 for x = X[0], -1 for x below it. Empty: 0.
  int Index(double x);

  double minX();    ///< X[0]. Empty: 0.
  double maxX();    ///< X[N-1]. Empty: 1e-7.
  double minY();    ///< Smallest ordinate; 1e300 where none is below that. Empty: 0.
  double maxY();    ///< Largest ordinate; -1e300 where none is above that. Empty: 1e-7.
  int minYindex();  ///< Index of the first smallest ordinate. Empty: 0.
  int maxYindex();  ///< Index of the first largest ordinate. Empty: 0.
  /// Stores the largest ordinate in `y` and the abscissa of its first occurrence in `x`; where no
  /// ordinate is above -1e300, y = -1e300 and x = 0. Empty: both 0.
  void Max(double& x, double& y);
  /// Stores the smallest ordinate in `y` and the abscissa of its first occurrence in `x`; where no
  /// ordinate is below 1e300, y = 1e300 and x = 0. Empty: both 0.
  void Min(double& x, double& y);

  /// The zero crossings in order of the intervals: for each pair of neighbours with y_i != y_{i+1}
  /// and y_i y_{i+1} <= 0 the root x_i - (x_{i+1} - x_i) y_i / (y_{i+1} - y_i). A knot with y = 0
  /// between two that differ from 0 counts for both of its intervals and appears twice; an interval
  /// with y = 0 at both ends gives none. The vector is new and belongs to the caller; null, or
  /// empty though there are crossings, when memory runs out.
  T_MatVector<double>* Zero();

  // Point-wise arithmetic -------------------------------------------------------------------------
  //
  // All act on the ordinates in place, in order of the index, and return the object. The other
  // function is interpolated at the abscissae of this one, just before the ordinate there changes:
  // that also defines what happens when a function is combined with itself.

  TFunc& operator+=(double a);  ///< y_i + a
  TFunc& operator-=(double a);  ///< y_i - a
  TFunc& operator*=(double a);  ///< y_i a
  /// y_i / a. For a = 0 raises host error 10 and changes nothing.
  TFunc& operator/=(double a);
  TFunc& operator+=(TFunc& g);  ///< y_i + g(x_i)
  TFunc& operator-=(TFunc& g);  ///< y_i - g(x_i)
  TFunc& operator*=(TFunc& g);  ///< y_i g(x_i)
  /// y_i / g(x_i). Where g(x_i) is 0 the ordinate becomes 0, and host error 10 is raised if it was
  /// not 0 before; the remaining points are divided all the same.
  TFunc& operator/=(TFunc& g);
  TFunc& pow(double p);  ///< y_i to the power p, as the C library's `pow` has it

  // Transformation of the abscissae ---------------------------------------------------------------
  //
  // All return the object. Whether the abscissae ascend afterwards is up to the caller.

  TFunc& Shift(double a);   ///< x_i + a
  TFunc& ScaleX(double a);  ///< x_i a
  TFunc& LnX();             ///< ln x_i
  TFunc& ExpX();            ///< exp x_i

  // Integration -----------------------------------------------------------------------------------

  /// The running integral by trapezoids: a new function on the same abscissae with
  /// I_0 = 0, I_i = I_{i-1} + (x_i - x_{i-1}) (y_{i-1} + y_i) / 2. With fewer than two points a
  /// mere copy of this function. It belongs to the caller; null or empty when memory runs out.
  TFunc* Integral() const;

  /// The running integral by rules of three points, exact for parabolas on equidistant knots: a new
  /// function on the same abscissae. Up to two points as `Integral()`. Where all steps are exactly
  /// equal to h = x_1 - x_0:
  ///
  ///     I_0 = 0
  ///     I_1 = (5 y_0 + 8 y_1 - y_2) (h / 12)
  ///     I_i = I_{i-2} + (y_{i-2} + 4 y_{i-1} + y_i) (h / 3)       even i
  ///     I_i = I_{i-1} + (8 y_{i-1} + 5 y_i - y_{i-2}) (h / 12)    odd i
  ///
  /// Otherwise, with the parabola a t^2 + b t + y_{i-1}, t = x - x_{i-1}, through three neighbours
  /// at distances d_1 and d_2:
  ///
  ///     I_1 = a d_1^3 / 3 - b d_1^2 / 2 + y_1 d_1               parabola around x_1
  ///     I_i = I_{i-1} + a d_2^3 / 3 + b d_2^2 / 2 + y_{i-1} d_2                        odd i
  ///     I_i = I_{i-2} + a (d_1^3 + d_2^3) / 3 + b (d_2^2 - d_1 d_2) / 2
  ///                   + y_{i-1} (d_1 + d_2)                                            even i
  ///
  /// The linear term of the even step is what callers rely on, although the exact one would have
  /// d_1^2 in place of d_1 d_2: on unequal steps the even values of a parabola differ from its
  /// integral by b d_1 (d_1 - d_2) / 2 for each step. `IntegralSimpson(a, b)` has the exact term.
  /// It belongs to the caller; null or empty when memory runs out.
  TFunc* IntegralSimpson() const;

  /// The integral from `a` to `b` of the interpolant, by trapezoids between `a`, the knots between
  /// the two and `b`; `Integral(b, a)` is its negative. Outside of the table the interpolant is
  /// constant. Fewer than two points: 0.
  double Integral(double a, double b) const;

  /// The integral from `a` to `b` by parabolas through three neighbouring knots each.
  ///
  /// Let lo <= hi be the two limits in order, i_lo the knot at or below lo and i_hi the knot above
  /// hi (also when hi is itself a knot inside the table; the last knot where hi lies beyond).
  /// With fewer than six intervals between them the result is `Integral(lo, hi)`, whose sign does
  /// not depend on the order of the arguments. Otherwise: the parabolas around i_lo + 1, i_lo + 3,
  /// ..., each over its two intervals, for an odd number of intervals the last parabola over the
  /// one left over, and corrections by trapezoids for the pieces between limit and knot,
  /// (f(lo) + y) / 2 (x - lo) at i_lo and (f(hi) + y) / 2 (hi - x) at i_hi, which remove what lies
  /// outside of the limits and add the constant continuation where a limit lies beyond the table.
  /// This result has the opposite sign for a > b. Fewer than two points: 0.
  double IntegralSimpson(double a, double b) const;

  /// ln of the integral of exp(y) over the table, y being the linear interpolant: ln of the sum of
  /// exp(t) over the intervals with dx = x_i - x_{i-1} != 0, where, with dy = y_i - y_{i-1},
  ///
  ///     t = y_{i-1} + ln dx                              |dy| < 1e-14
  ///     t = y_{i-1} + ln dx + dy - ln dy                 dy > 20
  ///     t = y_{i-1} + ln dx + ln((exp(dy) - 1) / dy)     otherwise
  ///
  /// The largest t is taken out of the sum, so neither large nor small ordinates overflow. Without
  /// an interval that counts: -infinity. For small |dy| the last form loses about
  /// -log10 |dy| digits to cancellation; docs/tabulated-functions.md gives the bound.
  double LogIntegralExp() const;

 private:
  mutable tarn::OwnerRing owners_;       // the functions that own these arrays
  mutable tarn::IntervalSearch search_;  // where the last argument was found
};

#endif
