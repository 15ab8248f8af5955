#include "linalg/inverse_impl.h"

template void T_Matrix<float>::Inverse(T_Matrix<float>&) const;
template void T_Matrix<double>::Inverse(T_Matrix<double>&) const;
template T_Matrix<float>* T_Matrix<float>::Inverse() const;
template T_Matrix<double>* T_Matrix<double>::Inverse() const;
