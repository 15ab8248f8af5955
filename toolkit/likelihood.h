#ifndef TARN_TOOLKIT_LIKELIHOOD_H
#define TARN_TOOLKIT_LIKELIHOOD_H

/// @file
/// Curvature of the likelihoods of a refined fit.
///
/// The class library's refinement gives as covariance what its minimiser has put together on the
/// way, which may say little more than how wide the search was. The second derivatives at the point
/// that was found have closed forms.

#include <memory>

#include "arguments.h"
#include "basis_table.h"

namespace tarn::toolkit {

/// What a refined fit assumes of the true errors above the stated ones: that their density falls as
/// 1/s^2, or as 1/s. The likelihoods of a residual of u stated errors are (1 - exp(-u^2/2))/u^2 and
/// erf(u/sqrt 2)/u (Sivia and Skilling, Data Analysis, 2006, section 8.3).
enum ErrorPrior { kInverseSquare, kJeffreys };

/// Second derivative of minus the logarithm of the likelihood with respect to u.
double LikelihoodCurvature(double u, int prior);

/// Matrix of second derivatives of minus the logarithm of the likelihood of all points with respect
/// to the coefficients of the functions.
std::unique_ptr<DenseMatrix> LikelihoodHessian(const BasisTable& table, const Numbers& residuals,
                                               const Numbers& variances, int prior);

}  // namespace tarn::toolkit

#endif
