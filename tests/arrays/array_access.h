#ifndef TARN_TESTS_ARRAYS_ARRAY_ACCESS_H
#define TARN_TESTS_ARRAYS_ARRAY_ACCESS_H

// Classes derived from the arrays that let a test see where their fields lie.

#include <cstddef>
#include <vector>

#include "tarn_base_math.h"

namespace tarn_test {

template <class T>
struct ArrayAccess : T_Array<T> {
  using T_Array<T>::T_Array;
  using T_Array<T>::data;
  using T_Array<T>::len;
};

template <class T>
struct RecordAccess : T_ArrayEx<T> {
  using T_ArrayEx<T>::T_ArrayEx;
  using T_ArrayEx<T>::data;
  using T_ArrayEx<T>::itemLen;
  using T_ArrayEx<T>::len;
};

template <class T>
struct SetAccess : T_ArraySet<T> {
  using T_ArraySet<T>::T_ArraySet;
  using T_ArraySet<T>::params;
  using T_ArraySet<T>::items;
  using T_ArraySet<T>::len;
  using T_ArraySet<T>::itemLen;
  using T_ArraySet<T>::ok;
};

/// A list of numbers as a typed array.
template <class T>
ArrayAccess<T> MakeArray(const std::vector<T>& values) {
  ArrayAccess<T> array(static_cast<std::int64_t>(values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) array[static_cast<std::int64_t>(i)] = values[i];
  return array;
}

/// The elements of a typed array as a list.
template <class T>
std::vector<T> Elements(const T_Array<T>& array) {
  return {array.GetData(), array.GetData() + array.Len()};
}

/// A table of records, row after row.
template <class T>
RecordAccess<T> MakeRecords(std::int64_t itemLen, const std::vector<T>& values) {
  RecordAccess<T> records(static_cast<std::int64_t>(values.size()) / itemLen, itemLen);
  for (std::size_t i = 0; i < values.size(); ++i) records.data[i] = values[i];
  return records;
}

template <class T>
std::vector<T> Elements(const RecordAccess<T>& records) {
  return {records.data, records.data + records.len * records.itemLen};
}

}  // namespace tarn_test

#endif
