#ifndef TARN_ARRAYS_SEARCH_H
#define TARN_ARRAYS_SEARCH_H

/// @file
/// Search in sorted arrays by bisection.
///
/// An array descends when its first element is greater than its last one, otherwise it ascends.
/// Elements are compared with the value in double precision. The forms with a stride search the n
/// elements a[0], a[stride], a[2 stride], ..., for example one column of a table of records; the
/// results count elements, not positions in memory. For arrays that are not sorted, or hold NaN,
/// the result is some index in the stated range.
///
/// Instantiated for int, float and double.

#include <cstdint>

#include "frame/export.h"

/// Index of an element equal to `value`, or -1 when there is none or n < 1. Of several equal
/// elements it is the last one.
template <class T>
TARN_API std::int64_t BFind(T* a, double value, std::int64_t n);

/// The same for the elements a[i * stride].
template <class T>
TARN_API std::int64_t BFind(T* a, double value, std::int64_t n, std::int64_t stride);

/// Index in 0 ... n of the element before which `value` is to be inserted, behind elements equal to
/// it. Ascending: n when the value is not below the last element, 0 when it is below the first,
/// otherwise the i with a[i-1] <= value < a[i]. Descending: the same with the order reversed.
/// An n below 1 gives 0.
template <class T>
TARN_API std::int64_t BFindInsertIndex(T* a, double value, std::int64_t n);

/// The same for the elements a[i * stride], except that only a value beyond the last element gives
/// n: one equal to it belongs before the last element.
template <class T>
TARN_API std::int64_t BFindInsertIndex(T* a, double value, std::int64_t n, std::int64_t stride);

/// @cond INSTANTIATIONS
extern template TARN_API std::int64_t BFind<int>(int*, double, std::int64_t);
extern template TARN_API std::int64_t BFind<float>(float*, double, std::int64_t);
extern template TARN_API std::int64_t BFind<double>(double*, double, std::int64_t);
extern template TARN_API std::int64_t BFind<int>(int*, double, std::int64_t, std::int64_t);
extern template TARN_API std::int64_t BFind<float>(float*, double, std::int64_t, std::int64_t);
extern template TARN_API std::int64_t BFind<double>(double*, double, std::int64_t, std::int64_t);

extern template TARN_API std::int64_t BFindInsertIndex<int>(int*, double, std::int64_t);
extern template TARN_API std::int64_t BFindInsertIndex<float>(float*, double, std::int64_t);
extern template TARN_API std::int64_t BFindInsertIndex<double>(double*, double, std::int64_t);
extern template TARN_API std::int64_t BFindInsertIndex<int>(int*, double, std::int64_t,
                                                            std::int64_t);
extern template TARN_API std::int64_t BFindInsertIndex<float>(float*, double, std::int64_t,
                                                              std::int64_t);
extern template TARN_API std::int64_t BFindInsertIndex<double>(double*, double, std::int64_t,
                                                               std::int64_t);
/// @endcond

#endif
