#ifndef TARN_ARRAYS_TYPED_ARRAY_H
#define TARN_ARRAYS_TYPED_ARRAY_H

/// @file
/// Growable arrays of numbers in the host heap, which script code can hold as native objects.
///
/// Nothing here raises an error when the heap refuses: constructors and assignment end with an
/// empty array, operations that resize leave it as it was. A negative or absurdly large count ends
/// the same way. Indices are not checked unless said otherwise.

#include <cstdint>

#include "frame/export.h"
#include "frame/host.h"

/// A growable array of T. Either it has a block of at least `Len()` elements, or no block and
/// length 0. Instantiated for int, float and double.
template <class T>
class TARN_API T_Array : public TarnAss {
 public:
  /// n zeros; empty and without a block when they cannot be had.
  explicit T_Array(std::int64_t n);
  /// A copy with a block of its own; empty and without a block when that cannot be had.
  T_Array(const T_Array& other);
  /// Rebuilds an array from the bytes that `Serialize` writes. When the count in the bytes claims
  /// more elements than `byteCount` bytes hold, or not even the count is there, the array has a
  /// single zero element and host error 3 is raised.
  T_Array(const char* bytes, std::int64_t byteCount);
  ~T_Array() override;

  /// Copies the elements of `other`. A block of the same length is reused; otherwise it is released
  /// first, and the array is left empty without a block when the new one cannot be had.
  T_Array& operator=(const T_Array& other);

  T& operator[](std::int64_t i) { return data[i]; }       ///< Element i, 0 <= i < Len().
  T operator[](std::int64_t i) const { return data[i]; }  ///< Value of element i.

  T* GetData() const { return data; }       ///< The elements; null without a block.
  std::int64_t Len() const { return len; }  ///< Number of elements.

  /// Releases the block.
  void Clear();
  /// Resizes to n elements and returns the length then in force: n, or the old length when the heap
  /// refuses. Elements gained are not initialised. An array without a block gets one. The heap is
  /// left alone when the length is n already.
  std::int64_t SetLen(std::int64_t n);

  /// Inserts `value` before element i, 0 <= i <= Len(), one more element. Does nothing for another
  /// i, for an array without a block or when the heap refuses.
  void InsertItem(std::int64_t i, T value);
  /// Removes element i, for i >= Len() the last one, and shrinks the block; the last remaining
  /// element goes without the block. Does nothing for an empty array or a negative i. An array
  /// whose shrinking is refused is left empty without a block.
  void RemoveItem(std::int64_t i);

  /// Sorts with the C library's `qsort` and `T_compare`, in units of 8 bytes whatever T is.
  ///
  /// For double that is the ascending order. For int and float a unit is a pair of elements, which
  /// are ordered by the first of each and stay together; the last element of an odd number stays
  /// where it is. Callers that want numbers of 4 bytes in ascending order use
  /// `QSort(array.GetData(), array.Len())`. An array with NaN stays as it is when the host heap
  /// refuses a scratch block.
  void QSort();

  /// Number of bytes that `Serialize` writes: Len() * sizeof(T) + 4.
  std::int64_t GetSerializeSize() const;
  /// Makes `value` a byte block with the elements: their count in 4 bytes, then element by element,
  /// all little-endian. When the host refuses the bytes nothing is written.
  void Serialize(Variable& value) const;

 protected:
  T* data;           ///< the elements, in an own block of the host heap; null: no block
  std::int64_t len;  ///< their number

 private:
  static T Dump;
};

/// A growable array of records of T, all of the same length, one after the other (a row-major
/// table). Instantiated for float and double.
template <class T>
class TARN_API T_ArrayEx : public TarnAss {
 public:
  /// `count` records of `itemLength` zeros; no record and no block when they cannot be had.
  T_ArrayEx(std::int64_t count, std::int64_t itemLength);
  /// A copy with a block of its own; no record and no block when that cannot be had.
  T_ArrayEx(const T_ArrayEx& other);
  ~T_ArrayEx() override;

  /// Copies the records of `other` and takes over their length. The block is reused when number and
  /// length of the records are the same; otherwise it is released first, and the array is left
  /// empty without a block when the new one cannot be had.
  T_ArrayEx& operator=(const T_ArrayEx& other);

  T* operator[](std::int64_t i) { return data + i * itemLen; }              ///< Record i.
  const T* operator[](std::int64_t i) const { return data + i * itemLen; }  ///< Record i.
  /// Element j of record i.
  T& operator()(std::int64_t i, std::int64_t j) { return data[i * itemLen + j]; }
  /// Value of element j of record i.
  T operator()(std::int64_t i, std::int64_t j) const { return data[i * itemLen + j]; }

  std::int64_t Len() const { return len; }  ///< Number of records.

  /// Releases the block; the record length stays.
  void Clear();
  /// Resizes to n records and returns the number then in force: n, or the old one when the heap
  /// refuses. Records gained are zero where there was no block, otherwise not initialised.
  std::int64_t SetLen(std::int64_t n);

  /// Inserts a copy of `record` (its `itemLen` elements, which may lie in this array) before record
  /// i, 0 <= i <= Len(). Does nothing for another i, for an array without a block or when the heap
  /// refuses.
  void InsertItem(std::int64_t i, const T* record);
  /// Removes record i; see `T_Array::RemoveItem`.
  void RemoveItem(std::int64_t i);

  /// Index of the record with the greatest element in a column, the first of several; 0 when there
  /// is no record.
  std::int64_t FindMaxIndex(std::int64_t column) const;
  /// Index of the record with the smallest element in a column, the first of several; 0 when there
  /// is no record.
  std::int64_t FindMinIndex(std::int64_t column) const;

  /// Number of bytes that `Serialize` writes: Len() * record length * sizeof(T) + 8.
  std::int64_t GetSerializeSize() const;
  /// Makes `value` a byte block with the table: number and length of the records in 4 bytes each,
  /// then record by record, all little-endian. When the host refuses the bytes nothing is written.
  void Serialize(Variable& value) const;

 protected:
  T* data;               ///< the records one after the other, in an own block; null: no block
  std::int64_t itemLen;  ///< elements of a record
  std::int64_t len;      ///< number of records

 private:
  std::int64_t ElementCount() const { return len * itemLen; }
  template <class Better>
  std::int64_t FindExtreme(std::int64_t column, Better isBetter) const;

  static T Dump;
};

/// A set of items of T, vectors of one length, each with a block of ten parameters.
///
/// Copies are shallow: they share items and parameters, which live until the last of them is gone.
/// Sharers are linked in a ring, so that copying takes no memory and cannot fail; like the items
/// themselves they belong to one thread at a time. Instantiated for float and double.
template <class T>
class TARN_API T_ArraySet : public TarnAss {
 public:
  /// Elements in the parameter block of an item.
  static constexpr std::int64_t kParamCount = 10;

  /// `count` items of `itemLength` zeros with ten zero parameters each. Where the heap refuses a
  /// block, `IsComplete()` is false and that block null; without the arrays of blocks the set is
  /// empty.
  T_ArraySet(std::int64_t count, std::int64_t itemLength);
  /// Shares items and parameters with `other`.
  T_ArraySet(const T_ArraySet& other);
  ~T_ArraySet() override;

  /// Gives up its own items and shares those of `other`.
  T_ArraySet& operator=(const T_ArraySet& other);

  T* operator[](std::int64_t i) const { return items[i]; }  ///< Item i, 0 <= i < Len().
  /// The ten parameters of item i, or of item 0 when there is no item i; null for an empty set.
  T* Param(std::int64_t i) const;

  std::int64_t Len() const { return len; }          ///< Number of items.
  std::int64_t ItemLen() const { return itemLen; }  ///< Length of each item.
  bool IsComplete() const { return ok != 0; }       ///< Whether every allocation succeeded.

 protected:
  T** params;            ///< one parameter block per item
  T** items;             ///< the items
  std::int64_t len;      ///< their number
  std::int64_t itemLen;  ///< elements of an item
  std::int32_t ok;       ///< 1: every allocation succeeded

 private:
  void AllocateItems();
  void ShareWith(const T_ArraySet& other);
  void Release();

  mutable const T_ArraySet* nextSharer;
};

extern template class TARN_API T_Array<int>;
extern template class TARN_API T_Array<float>;
extern template class TARN_API T_Array<double>;
extern template class TARN_API T_ArrayEx<float>;
extern template class TARN_API T_ArrayEx<double>;
extern template class TARN_API T_ArraySet<float>;
extern template class TARN_API T_ArraySet<double>;

#endif
