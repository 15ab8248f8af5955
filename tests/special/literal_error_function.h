#ifndef TESTS_SPECIAL_LITERAL_ERROR_FUNCTION_H
#define TESTS_SPECIAL_LITERAL_ERROR_FUNCTION_H

/// @file
/// The error functions written out a second time, the fit as a loop over its coefficients, for
/// comparison bit by bit.

#include <cmath>

namespace literal {

inline double ErrorFit(double x) {
  const double coefficients[] = {0.17087277,  -0.82215223, 1.48851587, -1.13520398, 0.27886807,
                                 -0.18628806, 0.09678418,  0.37409196, 1.00002368};
  const double z = std::abs(x);
  const double t = 1.0 / (1.0 + z / 2.0);
  double value = coefficients[0];
  for (int i = 1; i < 9; ++i) value = coefficients[i] + t * value;
  return t * std::exp(-(z * z) - 1.26551223 + t * value);
}

inline double Erf(double x) {
  if (x >= 0.0) return 1.0 - ErrorFit(x);
  return ErrorFit(x) - 1.0;
}

inline double CErf(double x) {
  if (x >= 10.0) return std::exp(-(x * x) - std::log(x) - 0.5723649429247);
  if (x >= 0.0) return ErrorFit(x);
  return 2.0 - ErrorFit(x);
}

inline double LogCErf(double x) {
  if (x >= 10.0) return -(x * x) - std::log(x) - 0.5723649429247;
  return std::log(CErf(x));
}

}  // namespace literal

#endif
