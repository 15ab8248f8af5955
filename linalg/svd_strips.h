#ifndef TARN_LINALG_SVD_STRIPS_H
#define TARN_LINALG_SVD_STRIPS_H

/// @file
/// A block in strips: `kStripRows` rows at a time, stored column after column.
///
/// A rotation takes two elements from every row. In strips these elements lie side by side and many
/// rows are rotated by one instruction.

#include <algorithm>
#include <cstdint>

#include "linalg/kernels.h"
#include "linalg/svd_kernels.h"

namespace tarn {

/// A block whose rows can be put into strips and back. A full strip takes the place of its rows;
/// the rows left over live in a buffer of kStripRows*width elements meanwhile.
template <class Element>
class RowStrips {
 public:
  static constexpr int kRows = kStripRows<Element>;

  /// Without a buffer the block stays as it is.
  RowStrips(Block<Element> block, Element* buffer) : block_(block), buffer_(buffer) {}

  bool HasStrips() const { return buffer_ != nullptr; }
  Block<Element> Rows() const { return block_; }

  void Pack() {
    if (!HasStrips()) return;
    for (int i = 0; i < FullRows(); i += kRows) {
      Kernels<Element>().transpose(kRows, block_.width, block_.Row(i), block_.stride, buffer_,
                                   kRows);
      std::copy_n(buffer_, Size(), block_.Row(i));
    }
    if (RowsLeftOver() == 0) return;
    std::fill_n(buffer_, Size(), Element{0});
    Kernels<Element>().transpose(RowsLeftOver(), block_.width, block_.Row(FullRows()),
                                 block_.stride, buffer_, kRows);
  }

  void Unpack() {
    if (!HasStrips()) return;
    Kernels<Element>().transpose(block_.width, RowsLeftOver(), buffer_, kRows,
                                 block_.Row(FullRows()), block_.stride);
    for (int i = 0; i < FullRows(); i += kRows) {
      std::copy_n(block_.Row(i), Size(), buffer_);
      Kernels<Element>().transpose(block_.width, kRows, buffer_, kRows, block_.Row(i),
                                   block_.stride);
    }
  }

  /// Calls work(rows, strip) for every strip.
  template <class Work>
  void ForEachStrip(Work work) {
    for (int i = 0; i < FullRows(); i += kRows) work(kRows, block_.Row(i));
    if (RowsLeftOver() > 0) work(RowsLeftOver(), buffer_);
  }

 private:
  int RowsLeftOver() const { return block_.rows % kRows; }
  int FullRows() const { return block_.rows - RowsLeftOver(); }
  std::int64_t Size() const { return std::int64_t{kRows} * block_.width; }

  Block<Element> block_;
  Element* buffer_;
};

}  // namespace tarn

#endif
