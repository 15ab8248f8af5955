#include "linalg/solve_impl.h"

template int T_Matrix<float>::SolveSystem(const float*, float*, int) const;
template int T_Matrix<double>::SolveSystem(const double*, double*, int) const;
template int T_Matrix<float>::SolveSystem(const float*, float*) const;
template int T_Matrix<double>::SolveSystem(const double*, double*) const;
template float* T_Matrix<float>::SolveSystem(const float*) const;
template double* T_Matrix<double>::SolveSystem(const double*) const;
