#include "arrays/sort_impl.h"

template void QSort<int>(int*, std::int64_t);
template void QSort<float>(float*, std::int64_t);
template void QSort<double>(double*, std::int64_t);
template void QSort<svd_index<float>>(svd_index<float>*, std::int64_t);
template void QSort<svd_index<double>>(svd_index<double>*, std::int64_t);

template void QSort<int>(int*, std::int64_t, std::int64_t);
template void QSort<float>(float*, std::int64_t, std::int64_t);
template void QSort<double>(double*, std::int64_t, std::int64_t);
template void QSort<svd_index<float>>(svd_index<float>*, std::int64_t, std::int64_t);
template void QSort<svd_index<double>>(svd_index<double>*, std::int64_t, std::int64_t);

template void QSortIndex<double>(int*, double*, std::int64_t);
template void QSortIndex<double>(int*, double*, std::int64_t, std::int64_t);

template int T_compare<short>(const void*, const void*);
template int T_compare<int>(const void*, const void*);
template int T_compare<float>(const void*, const void*);
template int T_compare<double>(const void*, const void*);
