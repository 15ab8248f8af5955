#ifndef TARN_ARRAYS_TYPED_ARRAY_IMPL_H
#define TARN_ARRAYS_TYPED_ARRAY_IMPL_H

#include <algorithm>
#include <functional>
#include <limits>
#include <new>

#include "arrays/little_endian.h"
#include "arrays/platform_sort.h"
#include "arrays/typed_array.h"
#include "arrays/unique_sort.h"
#include "frame/error_numbers.h"
#include "frame/host_block.h"

namespace tarn {

inline constexpr std::int64_t kCountBytes = 4;  ///< Size of a serialised count.

/// Number of elements that the serialised form of an array holds, or -1 when it is too short for
/// its count or for the elements that the count claims.
template <class T>
std::int64_t SerializedCount(const char* bytes, std::int64_t byteCount) {
  if (!bytes || byteCount < kCountBytes) return -1;
  const std::int64_t count = LoadCount(bytes);
  const std::int64_t needed = count * static_cast<std::int64_t>(sizeof(T));
  return needed > byteCount - kCountBytes ? -1 : count;
}

/// Makes room for an element of `size` numbers before position `at` of a block of `used` numbers.
template <class T>
void OpenGap(T* block, std::int64_t at, std::int64_t used, std::int64_t size) {
  std::copy_backward(block + at, block + used, block + used + size);
}

/// Takes the `size` numbers at position `at` out of a block of `used` numbers.
template <class T>
void CloseGap(T* block, std::int64_t at, std::int64_t used, std::int64_t size) {
  std::copy(block + at + size, block + used, block + at);
}

/// Shrinks a block after a removal. A refusal leaves no block: the old one is released.
template <class T>
T* ShrinkBlock(T* block, std::int64_t count) {
  T* const shrunk = ResizeBlock(block, count);
  if (!shrunk) HFREE(block);
  return shrunk;
}

/// Number of elements in `count` records, or -1 (not allocatable) when either number is negative or
/// the product does not fit.
inline std::int64_t RecordElements(std::int64_t count, std::int64_t itemLength) {
  if (count < 0 || itemLength < 0) return -1;
  if (itemLength > 0 && count > std::numeric_limits<std::int64_t>::max() / itemLength) return -1;
  return count * itemLength;
}

/// Position of `record` in a block of `used` numbers, or -1 when it lies elsewhere.
template <class T>
std::int64_t OffsetInBlock(const T* block, std::int64_t used, const T* record) {
  const std::less<const T*> isBefore;
  return isBefore(record, block) || !isBefore(record, block + used) ? -1 : record - block;
}

/// Fills the gap opened at `gap` with the `size` numbers that began at `source` before it opened.
template <class T>
void FillGapFromBlock(T* block, std::int64_t gap, std::int64_t size, std::int64_t source) {
  for (std::int64_t i = 0; i < size; ++i) {
    const std::int64_t from = source + i;
    block[gap + i] = block[from < gap ? from : from + size];
  }
}

/// An array of `count` pointers to be filled, or null.
template <class T>
T** NewPointers(std::int64_t count) {
  return IsAllocatable(count, sizeof(T*)) ? new (std::nothrow) T*[static_cast<std::size_t>(count)]
                                          : nullptr;
}

/// Sorts an array as units of 8 bytes, pairs of its elements. A last element without a partner is
/// no whole unit and stays where it is.
template <class T>
void SortAsUnits(T* elements, std::int64_t count) {
  SortUnits(reinterpret_cast<ElementPair<T>*>(elements), count / 2);
}

/// A double is a unit by itself. Where the sorted order is unique, the method does not show.
inline void SortAsUnits(double* elements, std::int64_t count) {
  if (HasUniqueOrder(elements, count)) {
    const ScopedBlock<double> scratch(AllocateBlock<double>(count));
    if (scratch.Get()) return SortUnique(elements, count, scratch.Get());
  }
  SortUnits(elements, count);
}

}  // namespace tarn

// T_Array -----------------------------------------------------------------------------------------

template <class T>
T T_Array<T>::Dump = 0;

template <class T>
T_Array<T>::T_Array(std::int64_t n) : data(tarn::AllocateZeroedBlock<T>(n)), len(data ? n : 0) {}

template <class T>
T_Array<T>::T_Array(const T_Array& other)
    : TarnAss(other), data(tarn::AllocateBlock<T>(other.len)), len(data ? other.len : 0) {
  std::copy_n(other.data, len, data);
}

template <class T>
T_Array<T>::T_Array(const char* bytes, std::int64_t byteCount) : data(nullptr), len(0) {
  const std::int64_t stored = tarn::SerializedCount<T>(bytes, byteCount);
  const std::int64_t count = stored < 0 ? 1 : stored;
  data = tarn::AllocateZeroedBlock<T>(count);
  if (data) len = count;
  if (stored < 0) {
    TarnError(tarn::kErrorArgument);
    return;
  }
  tarn::LoadElements(bytes + tarn::kCountBytes, data, len);
}

template <class T>
T_Array<T>::~T_Array() {
  HFREE(data);
}

template <class T>
T_Array<T>& T_Array<T>::operator=(const T_Array& other) {
  if (this == &other) return *this;
  TarnAss::operator=(other);
  if (len != other.len) {
    Clear();
    data = tarn::AllocateBlock<T>(other.len);
    if (data) len = other.len;
  }
  std::copy_n(other.data, len, data);
  return *this;
}

template <class T>
void T_Array<T>::Clear() {
  HFREE(data);
  data = nullptr;
  len = 0;
}

template <class T>
std::int64_t T_Array<T>::SetLen(std::int64_t n) {
  if (n == len) return len;
  T* const resized = tarn::ResizeBlock(data, n);
  if (!resized) return len;
  data = resized;
  len = n;
  return n;
}

template <class T>
void T_Array<T>::InsertItem(std::int64_t i, T value) {
  if (!data || i < 0 || i > len) return;
  T* const grown = tarn::ResizeBlock(data, len + 1);
  if (!grown) return;
  data = grown;
  tarn::OpenGap(data, i, len, 1);
  data[i] = value;
  ++len;
}

template <class T>
void T_Array<T>::RemoveItem(std::int64_t i) {
  if (!data || len <= 0 || i < 0) return;
  if (i < len) tarn::CloseGap(data, i, len, 1);
  --len;
  if (len == 0) return;
  data = tarn::ShrinkBlock(data, len);
  if (!data) len = 0;
}

template <class T>
void T_Array<T>::QSort() {
  if (data && len >= 1) tarn::SortAsUnits(data, len);
}

template <class T>
std::int64_t T_Array<T>::GetSerializeSize() const {
  return len * static_cast<std::int64_t>(sizeof(T)) + tarn::kCountBytes;
}

template <class T>
void T_Array<T>::Serialize(Variable& value) const {
  value.Init(VARTYPE_BYTES, GetSerializeSize());
  char* const bytes = value;
  if (!bytes) return;
  tarn::StoreCount(bytes, len);
  tarn::StoreElements(bytes + tarn::kCountBytes, data, len);
}

// T_ArrayEx ---------------------------------------------------------------------------------------

template <class T>
T T_ArrayEx<T>::Dump = 0;

template <class T>
T_ArrayEx<T>::T_ArrayEx(std::int64_t count, std::int64_t itemLength)
    : data(tarn::AllocateZeroedBlock<T>(tarn::RecordElements(count, itemLength))),
      itemLen(itemLength),
      len(data ? count : 0) {}

template <class T>
T_ArrayEx<T>::T_ArrayEx(const T_ArrayEx& other)
    : TarnAss(other),
      data(tarn::AllocateBlock<T>(other.ElementCount())),
      itemLen(other.itemLen),
      len(data ? other.len : 0) {
  std::copy_n(other.data, ElementCount(), data);
}

template <class T>
T_ArrayEx<T>::~T_ArrayEx() {
  HFREE(data);
}

template <class T>
T_ArrayEx<T>& T_ArrayEx<T>::operator=(const T_ArrayEx& other) {
  if (this == &other) return *this;
  TarnAss::operator=(other);
  if (len != other.len || itemLen != other.itemLen) {
    Clear();
    itemLen = other.itemLen;
    data = tarn::AllocateBlock<T>(other.ElementCount());
    if (data) len = other.len;
  }
  std::copy_n(other.data, ElementCount(), data);
  return *this;
}

template <class T>
void T_ArrayEx<T>::Clear() {
  HFREE(data);
  data = nullptr;
  len = 0;
}

template <class T>
std::int64_t T_ArrayEx<T>::SetLen(std::int64_t n) {
  const std::int64_t elements = tarn::RecordElements(n, itemLen);
  T* const resized =
      data ? tarn::ResizeBlock(data, elements) : tarn::AllocateZeroedBlock<T>(elements);
  if (!resized) return len;
  data = resized;
  len = n;
  return n;
}

template <class T>
void T_ArrayEx<T>::InsertItem(std::int64_t i, const T* record) {
  if (!data || i < 0 || i > len) return;
  const std::int64_t recordOffset = tarn::OffsetInBlock(data, ElementCount(), record);
  T* const grown = tarn::ResizeBlock(data, tarn::RecordElements(len + 1, itemLen));
  if (!grown) return;
  data = grown;
  const std::int64_t gap = i * itemLen;
  tarn::OpenGap(data, gap, ElementCount(), itemLen);
  if (recordOffset < 0) {
    std::copy_n(record, itemLen, data + gap);
  } else {
    tarn::FillGapFromBlock(data, gap, itemLen, recordOffset);
  }
  ++len;
}

template <class T>
void T_ArrayEx<T>::RemoveItem(std::int64_t i) {
  if (!data || len <= 0 || i < 0) return;
  if (i < len) tarn::CloseGap(data, i * itemLen, ElementCount(), itemLen);
  --len;
  if (len == 0) return;
  data = tarn::ShrinkBlock(data, ElementCount());
  if (!data) len = 0;
}

template <class T>
template <class Better>
std::int64_t T_ArrayEx<T>::FindExtreme(std::int64_t column, Better isBetter) const {
  if (!data || len < 1) return 0;
  std::int64_t best = 0;
  for (std::int64_t i = 1; i < len; ++i) {
    if (isBetter((*this)(i, column), (*this)(best, column))) best = i;
  }
  return best;
}

template <class T>
std::int64_t T_ArrayEx<T>::FindMaxIndex(std::int64_t column) const {
  return FindExtreme(column, std::greater<T>());
}

template <class T>
std::int64_t T_ArrayEx<T>::FindMinIndex(std::int64_t column) const {
  return FindExtreme(column, std::less<T>());
}

template <class T>
std::int64_t T_ArrayEx<T>::GetSerializeSize() const {
  return ElementCount() * static_cast<std::int64_t>(sizeof(T)) + 2 * tarn::kCountBytes;
}

template <class T>
void T_ArrayEx<T>::Serialize(Variable& value) const {
  value.Init(VARTYPE_BYTES, GetSerializeSize());
  char* const bytes = value;
  if (!bytes) return;
  tarn::StoreCount(bytes, len);
  tarn::StoreCount(bytes + tarn::kCountBytes, itemLen);
  tarn::StoreElements(bytes + 2 * tarn::kCountBytes, data, ElementCount());
}

// T_ArraySet --------------------------------------------------------------------------------------

template <class T>
T_ArraySet<T>::T_ArraySet(std::int64_t count, std::int64_t itemLength)
    : params(tarn::NewPointers<T>(count)),
      items(tarn::NewPointers<T>(count)),
      len(count),
      itemLen(itemLength),
      ok(1),
      nextSharer(this) {
  if (params && items) {
    AllocateItems();
  } else {
    ok = 0;
    len = 0;
  }
}

template <class T>
void T_ArraySet<T>::AllocateItems() {
  for (std::int64_t i = 0; i < len; ++i) {
    items[i] = tarn::AllocateZeroedBlock<T>(itemLen);
    params[i] = tarn::AllocateZeroedBlock<T>(kParamCount);
    if (!items[i] || !params[i]) ok = 0;
  }
}

template <class T>
T_ArraySet<T>::T_ArraySet(const T_ArraySet& other) : TarnAss(other) {
  ShareWith(other);
}

template <class T>
T_ArraySet<T>::~T_ArraySet() {
  Release();
}

template <class T>
T_ArraySet<T>& T_ArraySet<T>::operator=(const T_ArraySet& other) {
  if (this == &other) return *this;
  TarnAss::operator=(other);
  Release();
  ShareWith(other);
  return *this;
}

template <class T>
void T_ArraySet<T>::ShareWith(const T_ArraySet& other) {
  params = other.params;
  items = other.items;
  len = other.len;
  itemLen = other.itemLen;
  ok = other.ok;
  nextSharer = other.nextSharer;
  other.nextSharer = this;
}

template <class T>
void T_ArraySet<T>::Release() {
  if (nextSharer != this) {
    const T_ArraySet* previous = nextSharer;
    while (previous->nextSharer != this) previous = previous->nextSharer;
    previous->nextSharer = nextSharer;
    return;
  }
  for (std::int64_t i = 0; i < len; ++i) {
    HFREE(items[i]);
    HFREE(params[i]);
  }
  delete[] items;
  delete[] params;
}

template <class T>
T* T_ArraySet<T>::Param(std::int64_t i) const {
  if (len < 1) return nullptr;
  return params[i < 0 || i >= len ? 0 : i];
}

#endif
