#include "linalg/matrix.h"

#include "linalg/matrix_arithmetic_impl.h"
#include "linalg/matrix_impl.h"
#include "linalg/matrix_product_impl.h"

template class T_Matrix<float>;
template class T_Matrix<double>;
