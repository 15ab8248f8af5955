#include "optim/line_lsqm2.h"

#include "optim/line_lsqm2_impl.h"

template class T_Line_LSQM2<float>;
template class T_Line_LSQM2<double>;
