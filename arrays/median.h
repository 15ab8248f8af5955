#ifndef TARN_ARRAYS_MEDIAN_H
#define TARN_ARRAYS_MEDIAN_H

/// @file
/// Median of plain arrays by bisection on value.
///
/// The values are split into those below and those above a number that moves towards the median:
///
/// 1. One pass about the middle element v = a[n/2]: values below it go to the lower list, values
///    above it to the upper list, values equal to it to either in turn, the first to the upper one.
///    Lists of equal length: v is the median. Otherwise the longer list is searched, and the next
///    split s is half-way from v to the largest (or smallest) value.
/// 2. Rounds k = 1, 2, ... partition the list about s in the same way; a value equal to s goes to
///    either list in turn, in odd rounds the first to the lower one, in even rounds to the upper
///    one. With as many values of the whole array below as above, the result is s. Otherwise s ends
///    the interval that holds the median at one side, the list of the other side is searched next,
///    and s moves half-way to the other end of the interval.
/// 3. A list whose elements are all equal ends with that value, a list of two elements with their
///    mean.
///
/// So the result is a number that as many values lie below as above, not the middle element of the
/// sorted array: it differs from that one for an even count, where the split balances before the
/// middle pair is met, and for an odd count, where the list that holds the middle element has two
/// elements left. {1, 2, 3} gives 2.5.
///
/// A mean or half-way value of floating-point numbers is (a + b) / 2, formed as a + (b - a) / 2
/// where the sum of finite numbers is infinite. For short and int it is the sum in int times 0.5,
/// truncated towards zero; where the int sum would overflow, a + (b - a) / 2 in integers.
///
/// The bisection alone would not end where two rounds in succession, one of either parity, change
/// neither list nor split; there it ends with the split. NaN is on neither side of anything, hence
/// dealt like a value equal to the split; the result is then some number or NaN.

#include <cstdint>

#include "frame/export.h"

/// Median of the n values of `a`, which are neither moved nor changed. 0 for n < 1, the value
/// itself for one, the mean of two. From three values on it takes a block of 4n elements from the
/// host heap and returns 0 when that is refused. Instantiated for short, int, float and double.
template <class T>
TARN_API T QMedian(T* a, std::int64_t n);

/// The same with the caller's work area: `work` points to four buffers of n elements each, which do
/// not overlap `a` or each other. Their contents are lost.
template <class T>
TARN_API T QMedian(T* a, std::int64_t n, T** work);

/// @cond INSTANTIATIONS
extern template TARN_API short QMedian<short>(short*, std::int64_t);
extern template TARN_API int QMedian<int>(int*, std::int64_t);
extern template TARN_API float QMedian<float>(float*, std::int64_t);
extern template TARN_API double QMedian<double>(double*, std::int64_t);

extern template TARN_API short QMedian<short>(short*, std::int64_t, short**);
extern template TARN_API int QMedian<int>(int*, std::int64_t, int**);
extern template TARN_API float QMedian<float>(float*, std::int64_t, float**);
extern template TARN_API double QMedian<double>(double*, std::int64_t, double**);
/// @endcond

#endif
