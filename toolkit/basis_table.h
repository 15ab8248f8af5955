#ifndef TARN_TOOLKIT_BASIS_TABLE_H
#define TARN_TOOLKIT_BASIS_TABLE_H

/// @file
/// Basis functions of a fit, tabulated at its points and made orthonormal.
///
/// The class library solves normal equations, which lose twice the digits of the condition of the
/// problem, and adds to their diagonal where their determinant lies outside [1e-16, 1e16].
/// Functions that are orthonormal under the weights of the points make the matrix of these
/// equations the identity. What the fit says of them is then said of the functions that they were
/// made of, f_k = sum over j <= k of r_jk q_j.

#include <memory>

#include "arguments.h"
#include "linear.h"

namespace tarn::toolkit {

/// Values of basis functions at the points of a fit.
class BasisTable {
 public:
  BasisTable(std::size_t terms, std::size_t points)
      : terms_(terms), points_(points), values_(terms * points), factors_(terms * terms, 0.0) {}

  std::size_t Terms() const { return terms_; }
  double& At(std::size_t term, std::size_t point) { return values_[term * points_ + point]; }
  double At(std::size_t term, std::size_t point) const { return values_[term * points_ + point]; }

  /// Makes the functions orthonormal under the weights 1/variance. Ends the function of this module
  /// when one of them is a combination of those before it at these points.
  void Orthonormalise(const Numbers& variances);

  /// Coefficients of the functions as they were, from those of the orthonormal ones.
  Numbers Restored(Numbers coefficients) const;
  /// The covariance of these, from that of those.
  std::unique_ptr<DenseMatrix> Restored(const DenseMatrix& covariance) const;

  /// What the functions as they were have more than the orthonormal ones of the sum of the
  /// logarithms of the norms, less the logarithm of the volume that they span: with norms under the
  /// weights, and without weights.
  double WeightedLogGain() const { return weightedLogGain_; }
  double PlainLogGain() const { return plainLogGain_; }

 private:
  double Product(std::size_t a, std::size_t b, const Numbers& weights) const;
  double Norm(std::size_t term, const Numbers& weights) const;
  double Largest(std::size_t term) const;
  void Divide(std::size_t term, double divisor);
  void Reduce(std::size_t term, const Numbers& weights);
  double& Factor(std::size_t row, std::size_t term) { return factors_[row * terms_ + term]; }
  double Factor(std::size_t row, std::size_t term) const { return factors_[row * terms_ + term]; }

  std::size_t terms_;
  std::size_t points_;
  Numbers values_;   ///< one function after another
  Numbers factors_;  ///< the r, row after row
  double weightedLogGain_ = 0.0;
  double plainLogGain_ = 0.0;
};

}  // namespace tarn::toolkit

#endif
