#include "linalg/svd_impl.h"

template float T_Matrix<float>::Pythag(float, float);
template double T_Matrix<double>::Pythag(double, double);
template int T_Matrix<float>::SVD(T_MatVectorCol<float>&, T_Matrix<float>&);
template int T_Matrix<double>::SVD(T_MatVectorCol<double>&, T_Matrix<double>&);
template int T_Matrix<float>::SVD(T_MatVectorCol<float>*&, T_Matrix<float>*&);
template int T_Matrix<double>::SVD(T_MatVectorCol<double>*&, T_Matrix<double>*&);
template T_Matrix<float>* T_Matrix<float>::PseudoInverse() const;
template T_Matrix<double>* T_Matrix<double>::PseudoInverse() const;
template int T_Matrix<float>::SolveSystemBySVD(const float*, float*) const;
template int T_Matrix<double>::SolveSystemBySVD(const double*, double*) const;
template float* T_Matrix<float>::SolveSystemBySVD(const float*) const;
template double* T_Matrix<double>::SolveSystemBySVD(const double*) const;
template int T_Matrix<float>::SolveSystemBySVD_Reg(const float*, float*, float) const;
template int T_Matrix<double>::SolveSystemBySVD_Reg(const double*, double*, double) const;
template int T_Matrix<float>::SolveSystemBySVD_Reg_ex(T_Matrix<float>*&, T_MatVectorCol<float>*&,
                                                      const float*, float*, float);
template int T_Matrix<double>::SolveSystemBySVD_Reg_ex(T_Matrix<double>*&, T_MatVectorCol<double>*&,
                                                       const double*, double*, double);
