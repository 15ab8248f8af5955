#ifndef TARN_STAT_FLOAT_TABLES_H
#define TARN_STAT_FLOAT_TABLES_H

/// @file
/// Probability tables of float samples in arrays that a caller keeps between calls.

#include "frame/export.h"

/// Empirical cumulative distribution: `xs` the `n` values in ascending order, p[i] = (i + 1)/n.
///
/// `xs` and `p` are host heap blocks of m + 1 floats, or null; when `m` differs from `n` they are
/// released (`HFREE`) and allocated anew, and `m` becomes `n`. The caller releases them. When the
/// heap refuses, both are null and `m` is 0. A negative `n` counts as 0.
TARN_API void BuildCumulativeDistr(float* x, int n, float*& xs, float*& p, int& m);

/// Smoothed histogram as a probability table over `m` points from the smallest to the largest of
/// the `n` values: every point starts with the pseudo-count `a`, every value adds 1 to the point at
/// or below it, and everything is divided by m * a + n, so that the table sums to 1.
///
/// `xs` and `p` are host heap blocks; null ones are allocated with room for m + 1 floats, others
/// reused as they are. With m < 2 every value counts at point 0. A value that is NaN counts
/// nowhere. When the heap refuses, what is missing stays null and nothing is computed.
TARN_API void BuildPdf(float a, float* x, int n, float*& xs, float*& p, int m);

#endif
