#include "arrays/search_impl.h"

template std::int64_t BFind<int>(int*, double, std::int64_t);
template std::int64_t BFind<float>(float*, double, std::int64_t);
template std::int64_t BFind<double>(double*, double, std::int64_t);
template std::int64_t BFind<int>(int*, double, std::int64_t, std::int64_t);
template std::int64_t BFind<float>(float*, double, std::int64_t, std::int64_t);
template std::int64_t BFind<double>(double*, double, std::int64_t, std::int64_t);

template std::int64_t BFindInsertIndex<int>(int*, double, std::int64_t);
template std::int64_t BFindInsertIndex<float>(float*, double, std::int64_t);
template std::int64_t BFindInsertIndex<double>(double*, double, std::int64_t);
template std::int64_t BFindInsertIndex<int>(int*, double, std::int64_t, std::int64_t);
template std::int64_t BFindInsertIndex<float>(float*, double, std::int64_t, std::int64_t);
template std::int64_t BFindInsertIndex<double>(double*, double, std::int64_t, std::int64_t);
