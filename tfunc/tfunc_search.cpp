/// Evaluation, search and extremes of tabulated functions.

#include <algorithm>
#include <functional>
#include <limits>
#include <new>

#include "tfunc/tfunc.h"

namespace {

/// Ordinates beyond these do not count as extremes.
constexpr double kExtremeSeed = 1e300;
/// What `maxX` and `maxY` say about a function without points.
constexpr double kEmptyMaximum = 1e-7;

/// Index of the first of the best ordinates, -1 when none is better than the seed. NaN is not
/// better than anything.
template <typename Better>
int FirstBest(const double* y, int n, double seed, Better better) {
  int best = -1;
  for (int i = 0; i < n; ++i) {
    if (better(y[i], seed)) {
      seed = y[i];
      best = i;
    }
  }
  return best;
}

bool CrossesZero(double y0, double y1) { return y0 != y1 && y0 * y1 <= 0; }

}  // namespace

// Evaluation and search ---------------------------------------------------------------------------

double TFunc::operator()(double x) const {
  if (N < 1) return 0;
  if (x <= X[0]) return Y[0];
  if (x >= X[N - 1]) return Y[N - 1];
  const int lower = search_.Find(X, N, x);
  const int upper = std::min(lower + 1, N - 1);
  return Y[lower] + (Y[upper] - Y[lower]) * (x - X[lower]) / (X[upper] - X[lower]);
}

int TFunc::pos(double x) {
  if (N < 1 || x <= X[0]) return 0;
  if (x >= X[N - 1]) return N - 1;
  const int lower = search_.Find(X, N, x);
  const int upper = std::min(lower + 1, N - 1);
  return x - X[lower] > X[upper] - x ? upper : lower;
}

int TFunc::Index(double x) {
  if (N < 1 || x == X[0]) return 0;
  if (x < X[0]) return -1;
  if (x >= X[N - 1]) return N - 1;
  // Never the upper end: it is above x, as every knot that becomes upper end is.
  return search_.Find(X, N, x);
}

// Extremes ----------------------------------------------------------------------------------------

double TFunc::minX() { return N < 1 ? 0 : X[0]; }

double TFunc::maxX() { return N < 1 ? kEmptyMaximum : X[N - 1]; }

double TFunc::minY() {
  double x = 0;
  double y = 0;
  Min(x, y);
  return y;
}

double TFunc::maxY() {
  double x = 0;
  double y = 0;
  Max(x, y);
  return N < 1 ? kEmptyMaximum : y;
}

int TFunc::minYindex() {
  return std::max(FirstBest(Y, N, std::numeric_limits<double>::infinity(), std::less<>()), 0);
}

int TFunc::maxYindex() {
  return std::max(FirstBest(Y, N, -std::numeric_limits<double>::infinity(), std::greater<>()), 0);
}

void TFunc::Max(double& x, double& y) {
  const int best = FirstBest(Y, N, -kExtremeSeed, std::greater<>());
  x = best < 0 ? 0 : X[best];
  y = N < 1 ? 0 : best < 0 ? -kExtremeSeed : Y[best];
}

void TFunc::Min(double& x, double& y) {
  const int best = FirstBest(Y, N, kExtremeSeed, std::less<>());
  x = best < 0 ? 0 : X[best];
  y = N < 1 ? 0 : best < 0 ? kExtremeSeed : Y[best];
}

// Zero crossings ----------------------------------------------------------------------------------

T_MatVector<double>* TFunc::Zero() {
  int count = 0;
  for (int i = 0; i + 1 < N; ++i) count += CrossesZero(Y[i], Y[i + 1]) ? 1 : 0;

  auto* roots = new (std::nothrow) T_MatVector<double>(count);
  if (roots == nullptr || roots->Dim() != count) return roots;
  int root = 0;
  for (int i = 0; i + 1 < N; ++i) {
    if (!CrossesZero(Y[i], Y[i + 1])) continue;
    (*roots)[root] = X[i] - (X[i + 1] - X[i]) * Y[i] / (Y[i + 1] - Y[i]);
    ++root;
  }
  return roots;
}
