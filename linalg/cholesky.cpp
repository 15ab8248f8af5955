#include "linalg/cholesky_impl.h"

template T_Matrix<float>* T_Matrix<float>::CholeskyDecompse() const;
template T_Matrix<double>* T_Matrix<double>::CholeskyDecompse() const;
