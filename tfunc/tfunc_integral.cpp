/// Integrals of tabulated functions.

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

#include "frame/host_block.h"
#include "tfunc/tfunc.h"

namespace {

/// Work areas of up to this many numbers (64 KiB) live on the stack.
constexpr int kStackNumbers = 8192;

/// Spans of fewer intervals are integrated by trapezoids.
constexpr int kFewestIntervalsForParabolas = 6;

/// A trapezoid between two points.
double Trapezoid(double x0, double y0, double x1, double y1) { return (y0 + y1) / 2 * (x1 - x0); }

/// The parabola a t^2 + b t + y1, t = x - x1, through three points at distances d1 and d2.
struct Parabola {
  /// Through the knots `middle` - 1, `middle` and `middle` + 1.
  Parabola(const double* x, const double* y, int middle)
      : d1(x[middle] - x[middle - 1]),
        d2(x[middle + 1] - x[middle]),
        square1(d1 * d1),
        square2(d2 * d2),
        cube1(square1 * d1),
        cube2(square2 * d2),
        y1(y[middle]) {
    const double y0 = y[middle - 1];
    const double y2 = y[middle + 1];
    const double determinant = square1 * d2 + d1 * square2;
    a = (y2 * d1 + y0 * d2 - (d1 + d2) * y1) / determinant;
    b = (y2 * square1 - y0 * square2 + (square2 - square1) * y1) / determinant;
  }

  /// Its integral over the first interval, [-d1, 0].
  double OverFirst() const { return a * cube1 / 3 - b * square1 / 2 + y1 * d1; }
  /// Over the second one, [0, d2].
  double OverSecond() const { return a * cube2 / 3 + b * square2 / 2 + y1 * d2; }
  /// Over both.
  double OverBoth() const {
    return a * (cube1 + cube2) / 3 + b * (square2 - square1) / 2 + y1 * (d1 + d2);
  }

  double d1, d2, square1, square2, cube1, cube2, y1;
  double a, b;
};

bool HasEqualSteps(const double* x, int n) {
  const double h = x[1] - x[0];
  for (int i = 2; i < n; ++i) {
    if (x[i] - x[i - 1] != h) return false;
  }
  return true;
}

// The running integrals of n points go from (x, y) to `integral`. The sums start with the integral
// so far and take up one term after the other.

void RunTrapezoids(const double* x, const double* y, int n, double* integral) {
  integral[0] = 0;
  for (int i = 1; i < n; ++i) {
    integral[i] = integral[i - 1] + (x[i] - x[i - 1]) * (y[i - 1] + y[i]) / 2;
  }
}

/// The weights h / 3 and h / 12 are divided first: only so the integral of x^2 over 0, 1, ..., 4 is
/// the double next to 64 / 3.
void RunSimpsonOnEqualSteps(double h, const double* y, int n, double* integral) {
  const double third = h / 3;
  const double twelfth = h / 12;
  integral[0] = 0;
  integral[1] = (5 * y[0] + 8 * y[1] - y[2]) * twelfth;
  double whole = 0;  // up to the last even knot
  for (int i = 2; i < n; i += 2) {
    whole += (y[i - 2] + 4 * y[i - 1] + y[i]) * third;
    integral[i] = whole;
    if (i + 1 < n) integral[i + 1] = whole + (8 * y[i] + 5 * y[i + 1] - y[i - 1]) * twelfth;
  }
}

void RunSimpsonOnUnequalSteps(const double* x, const double* y, int n, double* integral) {
  integral[0] = 0;
  integral[1] = Parabola(x, y, 1).OverFirst();
  for (int i = 2; i < n; ++i) {
    const Parabola p(x, y, i - 1);
    if (i % 2 == 0) {
      // d1 d2, not d1^2, is what callers rely on; see the header.
      integral[i] = integral[i - 2] + p.a * (p.cube1 + p.cube2) / 3 +
                    p.b * (p.square2 - p.d1 * p.d2) / 2 + p.y1 * (p.d1 + p.d2);
    } else {
      integral[i] = integral[i - 1] + p.a * p.cube2 / 3 + p.b * p.square2 / 2 + p.y1 * p.d2;
    }
  }
}

// Integrals between limits.

/// First of the `n` >= 2 knots at or above `value`, the last one of several in the same place
/// except at the start of the table; n: none.
int FirstKnotFrom(const double* x, int n, tarn::IntervalSearch& search, double value) {
  if (value <= x[0]) return 0;
  if (value > x[n - 1]) return n;
  const int lower = search.Find(x, n, value);
  return x[lower] == value ? lower : lower + 1;
}

/// Last knot at or below `value`; -1: none.
int LastKnotUpTo(const double* x, int n, tarn::IntervalSearch& search, double value) {
  if (value < x[0]) return -1;
  if (value >= x[n - 1]) return n - 1;
  return search.Find(x, n, value);
}

/// The integral of the interpolant from lo up to hi >= lo.
double IntegralInOrder(const TFunc& f, tarn::IntervalSearch& search, double lo, double hi) {
  const double* const x = f.X;
  const double* const y = f.Y;
  const int first = FirstKnotFrom(x, f.N, search, lo);
  const double yLo = f(lo);  // while the search remembers lo
  const int last = LastKnotUpTo(x, f.N, search, hi);
  const double yHi = f(hi);
  if (first > last) return Trapezoid(lo, yLo, hi, yHi);

  double sum = x[first] == lo ? 0 : Trapezoid(lo, yLo, x[first], y[first]);
  for (int i = first; i < last; ++i) sum += Trapezoid(x[i], y[i], x[i + 1], y[i + 1]);
  return sum + Trapezoid(x[last], y[last], hi, yHi);
}

// ln of the integral of exp over a table.

/// ln of the integral of exp of the interpolant between the knots i and i + 1; -infinity, which
/// contributes nothing, for an interval without width.
double LogTerm(const double* x, const double* y, int i) {
  const double dx = x[i + 1] - x[i];
  if (dx == 0) return -std::numeric_limits<double>::infinity();
  const double dy = y[i + 1] - y[i];
  const double ofConstant = y[i] + std::log(dx);
  if (std::fabs(dy) < 1e-14) return ofConstant;
  if (dy > 20) return ofConstant + dy - std::log(dy);
  return ofConstant + std::log((std::exp(dy) - 1) / dy);
}

/// ln of the sum of exp(term(i)), i = 0 ... count - 1.
template <typename Term>
double LogSumExp(int count, Term term) {
  double largest = -1e300;
  for (int i = 0; i < count; ++i) {
    const double t = term(i);
    if (t > largest) largest = t;
  }
  double sum = 0;
  for (int i = 0; i < count; ++i) sum += std::exp(term(i) - largest);
  return largest + std::log(sum);
}

double LogSumExpOfTable(const double* x, const double* y, int count, double* terms) {
  for (int i = 0; i < count; ++i) terms[i] = LogTerm(x, y, i);
  return LogSumExp(count, [&](int i) { return terms[i]; });
}

}  // namespace

// Running integrals -------------------------------------------------------------------------------

TFunc* TFunc::Integral() const {
  auto* integral = new (std::nothrow) TFunc(*this);
  if (integral == nullptr || integral->N <= 1) return integral;
  RunTrapezoids(X, Y, N, integral->Y);
  return integral;
}

TFunc* TFunc::IntegralSimpson() const {
  if (N <= 2) return Integral();
  auto* integral = new (std::nothrow) TFunc(*this);
  if (integral == nullptr || integral->N <= 1) return integral;
  if (HasEqualSteps(X, N)) {
    RunSimpsonOnEqualSteps(X[1] - X[0], Y, N, integral->Y);
  } else {
    RunSimpsonOnUnequalSteps(X, Y, N, integral->Y);
  }
  return integral;
}

// Integrals between limits ------------------------------------------------------------------------

double TFunc::Integral(double a, double b) const {
  if (N <= 1) return 0;
  return a > b ? -IntegralInOrder(*this, search_, b, a) : IntegralInOrder(*this, search_, a, b);
}

double TFunc::IntegralSimpson(double a, double b) const {
  if (N <= 1) return 0;
  double lo = a;
  double hi = b;
  const double sign = a > b ? -1 : 1;
  if (a > b) std::swap(lo, hi);

  const bool loIsBeyond = lo >= X[N - 1];
  const int iLo = lo <= X[0] ? 0 : loIsBeyond ? N - 1 : search_.Find(X, N, lo);
  const int iHi = hi <= X[0] ? 0 : loIsBeyond || N < 3 ? N - 1 : search_.Find(X, N, hi) + 1;
  if (iHi - iLo < kFewestIntervalsForParabolas) return IntegralInOrder(*this, search_, lo, hi);

  double sum = X[iLo] == lo ? 0 : ((*this)(lo) + Y[iLo]) / 2 * (X[iLo] - lo);
  int k = iLo;
  for (; k + 2 <= iHi; k += 2) sum += Parabola(X, Y, k + 1).OverBoth();
  if (k < iHi) sum += Parabola(X, Y, iHi - 1).OverSecond();
  if (X[iHi] != hi) sum += ((*this)(hi) + Y[iHi]) / 2 * (hi - X[iHi]);
  return sum * sign;
}

double TFunc::LogIntegralExp() const {
  const int count = std::max(N, 1) - 1;
  if (count <= kStackNumbers) {
    double terms[kStackNumbers];
    return LogSumExpOfTable(X, Y, count, terms);
  }
  const tarn::ScopedBlock<double> terms(tarn::AllocateBlock<double>(count));
  if (terms.Get() != nullptr) return LogSumExpOfTable(X, Y, count, terms.Get());
  // Without a place to keep the terms they are computed twice, to the same bits.
  return LogSumExp(count, [&](int i) { return LogTerm(X, Y, i); });
}
