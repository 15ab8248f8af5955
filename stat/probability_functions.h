#ifndef TARN_STAT_PROBABILITY_FUNCTIONS_H
#define TARN_STAT_PROBABILITY_FUNCTIONS_H

/// @file
/// Probability of a location, once the unknown intrinsic dispersion of the samples has been
/// integrated out.
///
/// Each function returns
///
///     -sum over i of w[i] * l(r[i], s[i]),    i increasing,
///
/// with r[i] the distance of sample i from the location, s[i] its dispersion and w[i] its weight.
/// The term l depends on the prior of the intrinsic dispersion:
///
/// | prior | l(r, s) |
/// |---|---|
/// | 0, limited Jeffreys | ln(erf(\|r\| / sqrt(2 s)) / \|r\|) |
/// | 1, Jeffreys | ln((1 - exp(-q/2)) / q), q = r^2 / s |
/// | 2, uniform | -ln(1 + r^2 / (2 s)) |
/// | 3 and any other, none | -r^2 / (2 s) |
///
/// On the plain axis r = x[i] - location, and samples of dispersion 0 contribute nothing. On the
/// logarithmic axis, with g = 1 + s[i]/x[i]^2, the dispersion is ln g and r = ln(x[i] / sqrt(g) /
/// location); prior 0 there floors r^2 at 1e-10 and skips no sample, the others skip those of
/// dispersion 0.
///
/// Source of the marginal forms: D. S. Sivia, J. Skilling, Data Analysis: A Bayesian Tutorial,
/// 2nd ed., 2006, section 8.3.

#include "frame/host.h"

/// A probability function over arrays of `n` values, dispersions and weights.
using CProbFunc = double (*)(double location, double* data, double* disp, double* weight, int n);

/// The same over a script array: elements 0, 1 and 2 hold the three arrays as native pointers,
/// element 3 the count. The result has the same bits as the array form. An array of fewer elements,
/// such as one that the host heap refused, gives 0.
using ProbFunc = double (*)(double location, Variable& args);

namespace tarn {

/// One probability function in the forms in which callers need it.
struct ProbabilityFunction {
  CProbFunc overArrays;
  ProbFunc overScriptArray;
  /// The script form as the searches call it: the extra parameter, itself handed over by address,
  /// holds the address of the array.
  double (*asCallback)(double location, void* args);
};

/// The function for a prior and an axis (plain when `logNormal` is 0).
const ProbabilityFunction& FindProbabilityFunction(int prior, int logNormal);

}  // namespace tarn

#endif
