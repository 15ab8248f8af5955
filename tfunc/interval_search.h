#ifndef TARN_TFUNC_INTERVAL_SEARCH_H
#define TARN_TFUNC_INTERVAL_SEARCH_H

/// @file
/// Finding the interval of a table in which an argument lies.
///
/// Source: D. E. Knuth, The Art of Computer Programming, vol. 3, section 6.2.1.

#include <cstdint>

namespace tarn {

/// Lower end of the interval that bisection of the `n` abscissae ends with: lo = 0, hi = n - 1;
/// while hi - lo > 1, mid = (lo + hi) / 2 replaces hi if x[mid] > value, otherwise lo. 0 for fewer
/// than three abscissae. x[0] > value must be false.
int BisectInterval(const double* x, int n, double value);

/// Bisection with a memory: arguments of consecutive calls tend to be close, so the last interval
/// and its next three are looked at first.
///
/// The result is that of `BisectInterval` all the same. In an ascending table only one interval has
/// x[i] <= value < x[i + 1], however it is found. What bisection makes of any other table depends
/// on the abscissae that it happens to meet, so there it is always carried out; the first search
/// tells the two kinds apart. (A table that is put out of order later is not noticed. The interval
/// found is then still one of the table, but not always that of the bisection.)
class IntervalSearch {
 public:
  /// The interval of `value` among the `n` abscissae, at least one; x[0] > value must be false.
  int Find(const double* x, int n, double value) {
    if (order_ == Order::kAscending) {
      if (last_ < n - 1 && IsWithin(value, x[last_], x[last_ + 1])) return last_;
      if (last_ < n - 4 && IsWithin(value, x[last_], x[last_ + 4])) {
        // A count instead of a search, so that nothing depends on a jump hard to predict.
        last_ += static_cast<int>(x[last_ + 1] <= value) + static_cast<int>(x[last_ + 2] <= value) +
                 static_cast<int>(x[last_ + 3] <= value);
        return last_;
      }
    }
    return FindAnew(x, n, value);
  }

  /// To be called when the table becomes another one.
  void Forget() { *this = IntervalSearch(); }

 private:
  enum class Order : std::int32_t { kUnknown, kAscending, kOther };

  /// One condition instead of two, of which each would be hard to predict.
  static bool IsWithin(double value, double from, double until) {
    return (static_cast<int>(from <= value) & static_cast<int>(value < until)) != 0;
  }

  int FindAnew(const double* x, int n, double value);

  std::int32_t last_ = 0;
  Order order_ = Order::kUnknown;
};

}  // namespace tarn

#endif
