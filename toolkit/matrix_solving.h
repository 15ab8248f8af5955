#ifndef TARN_TOOLKIT_MATRIX_SOLVING_H
#define TARN_TOOLKIT_MATRIX_SOLVING_H

/// @file
/// Linear systems, inverse and singular values of a script's matrix.

#include "handler.h"
#include "linear.h"

namespace tarn::toolkit {

/// matrix = left diag(values) transpose(right), values in descending order.
struct Factorisation {
  std::unique_ptr<DenseMatrix> left;
  Column values;
  std::unique_ptr<DenseMatrix> right;
};

Factorisation Factorise(const DenseMatrix& matrix);

/// Lower triangular L with L L^T = matrix; null where the matrix is not positive definite.
std::unique_ptr<DenseMatrix> FindCholesky(const DenseMatrix& matrix);
/// The inverse of a symmetric matrix; null where the matrix is not positive definite. Rows and
/// columns may be of different units.
std::unique_ptr<DenseMatrix> FindPositiveInverse(const DenseMatrix& matrix);

/// The inverse of a square matrix; error 10 when it is singular.
///
/// `T_Matrix::Inverse` exchanges no rows, so it fails for some matrices that have an inverse and
/// loses digits of others. Its result is accepted when the product with the matrix is the identity
/// to 1e-9; otherwise every column is solved for with exchanges.
std::unique_ptr<DenseMatrix> InverseOf(const DenseMatrix& matrix);

// Methods of "Matrix". The right-hand side is an array or vector, which gives a vector, or a
// matrix, which gives a matrix of the solutions for its columns.
void Solve(const Call& call);
void SolveLeastSquares(const Call& call);
/// Minimises |A x - b|^2 + (lambda w_1)^2 |x|^2, w_1 the largest singular value, where the smallest
/// one is below lambda w_1 (Tikhonov 1963); solves without regularisation otherwise.
///
/// `T_Matrix::SolveSystemBySVD_Reg` leaves b out of its regularised branch, so that branch is
/// computed here from the factors.
void SolveRegularised(const Call& call);

}  // namespace tarn::toolkit

#endif
