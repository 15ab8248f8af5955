#ifndef TARN_SPECIAL_F_TEST_H
#define TARN_SPECIAL_F_TEST_H

/// @file
/// The F test: do two samples have the same variance?
///
/// Source: W. H. Press et al., Numerical Recipes, section 14.2; M. Abramowitz, I. A. Stegun,
/// Handbook of Mathematical Functions, 26.6.2.

#include "frame/export.h"

/// Two-sided significance of the ratio of two sample variances: the probability that samples of one
/// and the same normal variance differ as much. Small values mean different variances.
///
/// @param data1, n1  first sample and its number of values; read only
/// @param data2, n2  second sample
/// @param[out] f     the larger variance over the smaller one
///
/// The variances are (sum of x^2 - n mean^2)/(n - 1), both sums in index order. With nu1, nu2 the
/// degrees of freedom of numerator and denominator the result is p = 2 I_y(nu2/2, nu1/2), y =
/// nu2/(nu2 + nu1 f), or 2 - p where p is above 1.
///
/// Edges: fewer than two values in a sample: 0, `f` stays as it was. Equal variances: f = 1,
/// result 1. A variance of 0 (or one that rounding took below): f = 1e6, whatever the other one is,
/// with the degrees of the second sample in the numerator. NaN in a sample gives NaN. Raises what
/// `Beta_I` raises: error 3 with a text where its fraction does not converge (NaN).
TARN_API double FTest(double* data1, int n1, double* data2, int n2, double& f);

#endif
