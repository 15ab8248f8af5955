#include "tfunc/interval_search.h"

#include <bit>

namespace tarn {

namespace {

bool Ascends(const double* x, int n) {
  for (int i = 1; i < n; ++i) {
    if (!(x[i - 1] <= x[i])) return false;
  }
  return true;
}

}  // namespace

/// The number of steps is that of the longest of all searches in `n` abscissae, and a step is a
/// choice between values, so no jump depends on the data. Steps in excess change nothing: with
/// hi - lo = 1, mid is lo, and x[lo] > value is false, as lo either came from a comparison with
/// that outcome or is 0.
int BisectInterval(const double* x, int n, double value) {
  if (n < 3) return 0;
  int lo = 0;
  int hi = n - 1;
  for (unsigned steps = std::bit_width(static_cast<unsigned>(n - 2)); steps > 0; --steps) {
    const int mid = static_cast<int>((static_cast<unsigned>(lo) + static_cast<unsigned>(hi)) / 2);
    const bool above = x[mid] > value;
    const int newLo = above ? lo : mid;
    hi = above ? mid : hi;
    lo = newLo;
  }
  return lo;
}

int IntervalSearch::FindAnew(const double* x, int n, double value) {
  if (order_ == Order::kUnknown) order_ = Ascends(x, n) ? Order::kAscending : Order::kOther;
  last_ = BisectInterval(x, n, value);
  return last_;
}

}  // namespace tarn
