#include "linalg/determinant_impl.h"

template float T_Matrix<float>::Det() const;
template double T_Matrix<double>::Det() const;
template float T_Matrix<float>::LogAbsDet() const;
template double T_Matrix<double>::LogAbsDet() const;
template float T_Matrix<float>::LnDet() const;
template double T_Matrix<double>::LnDet() const;
