#ifndef TARN_ARRAYS_SORT_H
#define TARN_ARRAYS_SORT_H

/// @file
/// Sorting of plain arrays in place: values, records of a value and its column, and indices.
///
/// All three sort with Hoare's quicksort on an explicit stack, with the middle element as pivot:
///
/// 1. Take the pending range (l, h) pushed last. A range of two elements is compared and, when out
///    of order, exchanged; that settles it.
/// 2. The pivot is the element at p = (l + h) / 2. Walk i up from l to r (at first h). Elements not
///    above the pivot stay. For one above it, look down from r for the last element that is not:
///    exchange the two and let r end below it, following the pivot when it is the one exchanged.
///    Where there is none, r ends below i.
/// 3. A range whose elements all equal its pivot is settled. Otherwise the pivot is exchanged with
///    the element at r when that is below it, the range shrinks to (l, r - 1), and (r + 1, h) is
///    pushed on top.
///
/// The procedure decides where elements end that compare equal but differ: indices and records with
/// equal values, zeros of both signs; and what becomes of NaN. NaN among numbers compares below
/// everything on either side, a record with NaN above everything; the array is then permuted
/// somehow. Every visit to a range settles at least one element, so sorting ends on any input, but
/// it takes quadratic time on some. Plain numbers without NaN and without zeros of both signs have
/// only one sorted order; they are sorted by merging or by radix instead, in the two blocks meant
/// for the stacks (see unique_sort.h).
///
/// The two stacks hold hi - lo + 2 entries each: on the call stack below 300 entries, from the host
/// heap otherwise. When the heap refuses them, the array silently stays as it is.
///
/// Source: C. A. R. Hoare, Quicksort, The Computer Journal 5 (1962) 10-16.

#include <cstdint>

#include "frame/export.h"

/// A value and the column it comes from, the unit in which singular values are sorted. Records
/// order by value alone, the largest first; the index moves along.
template <class T>
struct svd_index {
  T value;             ///< sorting key
  std::int32_t index;  ///< column before sorting
};

/// Sorts the n elements of `a`: numbers in ascending, `svd_index` records in descending order.
/// Fewer than two elements (also a negative n) are left alone.
/// Instantiated for int, float, double, `svd_index<float>` and `svd_index<double>`.
template <class T>
TARN_API void QSort(T* a, std::int64_t n);

/// Sorts the elements a[lo] ... a[hi], both included; does nothing when hi <= lo.
template <class T>
TARN_API void QSort(T* a, std::int64_t lo, std::int64_t hi);

/// Permutes the n indices in `idx` so that keys[idx[0]], keys[idx[1]], ... ascend. The keys stay
/// where they are; their order among equal ones is the procedure's, not that of their positions.
/// Instantiated for keys of type double.
template <class T>
TARN_API void QSortIndex(int* idx, T* keys, std::int64_t n);

/// The same for the indices idx[lo] ... idx[hi], both included.
template <class T>
TARN_API void QSortIndex(int* idx, T* keys, std::int64_t lo, std::int64_t hi);

/// Three-way comparison of the two numbers pointed to, in the form that `qsort` takes: 1 when
/// *p > *q, 0 when *p == *q and -1 otherwise, so also when either is NaN.
/// Instantiated for short, int, float and double.
template <class T>
TARN_API int T_compare(const void* p, const void* q);

/// @cond INSTANTIATIONS
extern template TARN_API void QSort<int>(int*, std::int64_t);
extern template TARN_API void QSort<float>(float*, std::int64_t);
extern template TARN_API void QSort<double>(double*, std::int64_t);
extern template TARN_API void QSort<svd_index<float>>(svd_index<float>*, std::int64_t);
extern template TARN_API void QSort<svd_index<double>>(svd_index<double>*, std::int64_t);

extern template TARN_API void QSort<int>(int*, std::int64_t, std::int64_t);
extern template TARN_API void QSort<float>(float*, std::int64_t, std::int64_t);
extern template TARN_API void QSort<double>(double*, std::int64_t, std::int64_t);
extern template TARN_API void QSort<svd_index<float>>(svd_index<float>*, std::int64_t,
                                                      std::int64_t);
extern template TARN_API void QSort<svd_index<double>>(svd_index<double>*, std::int64_t,
                                                       std::int64_t);

extern template TARN_API void QSortIndex<double>(int*, double*, std::int64_t);
extern template TARN_API void QSortIndex<double>(int*, double*, std::int64_t, std::int64_t);

extern template TARN_API int T_compare<short>(const void*, const void*);
extern template TARN_API int T_compare<int>(const void*, const void*);
extern template TARN_API int T_compare<float>(const void*, const void*);
extern template TARN_API int T_compare<double>(const void*, const void*);
/// @endcond

#endif
