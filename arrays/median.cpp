#include "arrays/median_impl.h"

template short QMedian<short>(short*, std::int64_t);
template int QMedian<int>(int*, std::int64_t);
template float QMedian<float>(float*, std::int64_t);
template double QMedian<double>(double*, std::int64_t);

template short QMedian<short>(short*, std::int64_t, short**);
template int QMedian<int>(int*, std::int64_t, int**);
template float QMedian<float>(float*, std::int64_t, float**);
template double QMedian<double>(double*, std::int64_t, double**);
