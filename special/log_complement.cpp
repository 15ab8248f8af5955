#include "special/log_complement.h"

#include "special/iteration_limits.h"

namespace tarn {

double LogComplementSeries(double y) {
  double sum = y;
  double term = y;
  double divisor = 1.0;
  for (int k = 1; k < kMaxRounds; ++k) {
    divisor *= divisor + 1.0;
    term = term * y / divisor;
    sum += term;
    if (term < kTolerance) break;
  }
  return sum;
}

}  // namespace tarn
