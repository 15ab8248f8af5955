#ifndef TARN_ARRAYS_SEARCH_IMPL_H
#define TARN_ARRAYS_SEARCH_IMPL_H

#include <functional>
#include <type_traits>

#include "arrays/search.h"

namespace tarn {

/// Every stride-th element of an array, as numbers in double precision.
template <class T, class Stride>
struct StridedElements {
  const T* elements;
  Stride stride;

  double operator[](std::int64_t i) const { return static_cast<double>(elements[i * stride]); }
};

/// The stride of a plain array, which costs no multiplication.
using UnitStride = std::integral_constant<std::int64_t, 1>;

/// Whether the array descends, judged by its ends.
template <class Elements>
bool Descends(const Elements& a, std::int64_t n) {
  return a[0] > a[n - 1];
}

/// The hi with a[hi-1] <= value < a[hi], found by bisection of [0, n-1] when the value lies between
/// the elements at its ends; 0 when it lies before the first.
template <class Elements, class Before>
std::int64_t BisectInsertIndex(const Elements& a, double value, std::int64_t n, Before isBefore) {
  if (isBefore(value, a[0])) return 0;
  std::int64_t lo = 0;
  std::int64_t hi = n - 1;
  while (hi - lo > 1) {
    const std::int64_t middle = lo + (hi - lo) / 2;
    if (isBefore(value, a[middle])) {
      hi = middle;
    } else {
      lo = middle;
    }
  }
  return hi;
}

/// Insertion index where the value belongs behind a last element equal to it.
template <class Elements, class Before>
std::int64_t InsertIndexAfterLast(const Elements& a, double value, std::int64_t n,
                                  Before isBefore) {
  if (!isBefore(value, a[n - 1])) return n;
  return BisectInsertIndex(a, value, n, isBefore);
}

/// Index of the element equal to `value` that an insertion would follow, or -1.
template <class Elements>
std::int64_t Find(const Elements& a, double value, std::int64_t n) {
  if (n < 1) return -1;
  const std::int64_t behind = Descends(a, n)
                                  ? InsertIndexAfterLast(a, value, n, std::greater<double>())
                                  : InsertIndexAfterLast(a, value, n, std::less<double>());
  return behind > 0 && a[behind - 1] == value ? behind - 1 : -1;
}

/// Insertion index where the value belongs before a last element equal to it.
template <class Elements, class Before>
std::int64_t InsertIndexBeforeLast(const Elements& a, double value, std::int64_t n,
                                   Before isBefore) {
  if (isBefore(a[n - 1], value)) return n;
  return BisectInsertIndex(a, value, n, isBefore);
}

}  // namespace tarn

template <class T>
std::int64_t BFind(T* a, double value, std::int64_t n) {
  return tarn::Find(tarn::StridedElements<T, tarn::UnitStride>{a, {}}, value, n);
}

template <class T>
std::int64_t BFind(T* a, double value, std::int64_t n, std::int64_t stride) {
  return tarn::Find(tarn::StridedElements<T, std::int64_t>{a, stride}, value, n);
}

template <class T>
std::int64_t BFindInsertIndex(T* a, double value, std::int64_t n) {
  if (n < 1) return 0;
  const tarn::StridedElements<T, tarn::UnitStride> elements{a, {}};
  return tarn::Descends(elements, n)
             ? tarn::InsertIndexAfterLast(elements, value, n, std::greater<double>())
             : tarn::InsertIndexAfterLast(elements, value, n, std::less<double>());
}

template <class T>
std::int64_t BFindInsertIndex(T* a, double value, std::int64_t n, std::int64_t stride) {
  if (n < 1) return 0;
  const tarn::StridedElements<T, std::int64_t> elements{a, stride};
  return tarn::Descends(elements, n)
             ? tarn::InsertIndexBeforeLast(elements, value, n, std::greater<double>())
             : tarn::InsertIndexBeforeLast(elements, value, n, std::less<double>());
}

#endif
