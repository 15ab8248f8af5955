#include "arrays/typed_array_impl.h"

template class T_Array<int>;
template class T_Array<float>;
template class T_Array<double>;
template class T_ArrayEx<float>;
template class T_ArrayEx<double>;
template class T_ArraySet<float>;
template class T_ArraySet<double>;
