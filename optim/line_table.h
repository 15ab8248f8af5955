#ifndef TARN_OPTIM_LINE_TABLE_H
#define TARN_OPTIM_LINE_TABLE_H

/// @file
/// The table of a line search: an array of records that takes more of them without a request to the
/// host heap for each.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "arrays/typed_array.h"
#include "frame/host_block.h"

namespace tarn {

template <class T>
class LineTable : public T_ArrayEx<T> {
 public:
  /// One record of `recordLength` zeros; none when it cannot be had. `valueColumn` is the one that
  /// `Lowest` looks at. After the first record was filled in, records are inserted only.
  LineTable(std::int64_t recordLength, std::int64_t valueColumn)
      : T_ArrayEx<T>(1, recordLength), capacity_(this->len), valueColumn_(valueColumn) {}
  LineTable(const LineTable&) = delete;
  LineTable& operator=(const LineTable&) = delete;

  /// Inserts a copy of `record`, which lies elsewhere, before record i. False when there is no room
  /// for it.
  bool Insert(std::int64_t i, const T* record) {
    if (this->len == capacity_ && !Grow()) return false;
    T* const place = (*this)[i];
    std::copy_backward(place, (*this)[this->len], (*this)[this->len + 1]);
    std::copy(record, record + this->itemLen, place);
    ++this->len;
    NoteInserted(i);
    return true;
  }

  /// `FindMinIndex` of the value column, known without a search. As there, a NaN is never the
  /// smallest value, but one in the first record hides all others.
  std::int64_t Lowest() const { return std::isnan(Value(0)) ? 0 : lowest_; }

 private:
  /// Room for this many records at first; few searches need more.
  static constexpr std::int64_t kFirstCapacity = 32;

  bool Grow() {
    const std::int64_t capacity = std::max(kFirstCapacity, 2 * capacity_);
    T* const grown = ResizeBlock(this->data, capacity * this->itemLen);
    if (grown == nullptr) return false;
    this->data = grown;
    capacity_ = capacity;
    return true;
  }

  T Value(std::int64_t i) const { return (*this)(i, valueColumn_); }

  /// Keeps lowest_ the first record of the smallest value; of NaNs only, it is the first record.
  void NoteInserted(std::int64_t i) {
    if (i <= lowest_) ++lowest_;
    const T value = Value(i);
    const T lowest = Value(lowest_);
    const bool isFirstOfEqual = value == lowest && i < lowest_;
    const bool isFirstNumber = std::isnan(lowest) && !std::isnan(value);
    if (value < lowest || isFirstOfEqual || isFirstNumber) lowest_ = i;
  }

  std::int64_t capacity_;
  std::int64_t valueColumn_;
  std::int64_t lowest_ = 0;
};

}  // namespace tarn

#endif
