#include "linalg/vector.h"

#include "linalg/vector_arithmetic_impl.h"
#include "linalg/vector_impl.h"
#include "linalg/vector_metric_impl.h"
#include "linalg/vector_shapes_impl.h"

template class T_MatVector<float>;
template class T_MatVector<double>;
template class T_MatVectorCol<float>;
template class T_MatVectorCol<double>;
template class T_MatVectorRow<float>;
template class T_MatVectorRow<double>;
