#ifndef TARN_LINALG_SVD_KERNELS_H
#define TARN_LINALG_SVD_KERNELS_H

/// @file
/// The passes over whole blocks of a matrix that the singular value decomposition consists of.
///
/// Every sum runs over increasing row or column index from 0. Many sums are formed at a time, so a
/// pass reads its block along the rows.

#include <algorithm>
#include <cstdint>

namespace tarn {

/// Part of a matrix stored row after row, `stride` elements apart.
template <class Element>
struct Block {
  Element* first;
  std::int64_t stride;
  int rows;
  int width;

  Element* Row(int k) const { return first + k * stride; }
  /// Columns from `begin` on.
  Block Columns(int begin, int count) const { return {first + begin, stride, rows, count}; }
  /// Rows from `begin` on.
  Block Rows(int begin, int count) const { return {Row(begin), stride, count, width}; }
};

/// How many columns or rows a pass takes at a time.
inline constexpr int kSvdChunk = 64;

/// sums[j] = sum over k of weights[k] * block(k, j).
template <class Element>
void SumColumns(Block<Element> block, const Element* weights, std::int64_t weightStride,
                Element* sums) {
  std::fill_n(sums, block.width, Element{0});
  for (int k = 0; k < block.rows; ++k) {
    const Element weight = weights[k * weightStride];
    const Element* const row = block.Row(k);
    for (int j = 0; j < block.width; ++j) sums[j] += weight * row[j];
  }
}

/// sums[k] = sum over j of block(k, j) * weights[j].
template <class Element>
void SumRows(Block<Element> block, const Element* weights, Element* sums) {
  for (int k = 0; k < block.rows; ++k) {
    const Element* const row = block.Row(k);
    Element sum = 0;
    for (int j = 0; j < block.width; ++j) sum += row[j] * weights[j];
    sums[k] = sum;
  }
}

/// block(k, j) += column[k] * row[j].
template <class Element>
void AddProducts(Block<Element> block, const Element* column, std::int64_t columnStride,
                 const Element* row) {
  for (int k = 0; k < block.rows; ++k) {
    const Element factor = column[k * columnStride];
    Element* const target = block.Row(k);
    for (int j = 0; j < block.width; ++j) target[j] += factor * row[j];
  }
}

/// Changes the sign of column j.
template <class Element>
void NegateColumn(Block<Element> block, int j) {
  for (int k = 0; k < block.rows; ++k) block.Row(k)[j] = -block.Row(k)[j];
}

/// For every column j: with s the sum over k of weights[k] * summed(k, j), adds finish(s) *
/// column[k] to updated(k, j).
template <class Element, class Finish>
void CombineColumns(Block<Element> summed, Block<Element> updated, const Element* weights,
                    std::int64_t weightStride, const Element* column, std::int64_t columnStride,
                    Finish finish) {
  Element sums[kSvdChunk];
  for (int j = 0; j < updated.width; j += kSvdChunk) {
    const int count = std::min(kSvdChunk, updated.width - j);
    SumColumns(summed.Columns(j, count), weights, weightStride, sums);
    std::transform(sums, sums + count, sums, finish);
    AddProducts(updated.Columns(j, count), column, columnStride, sums);
  }
}

/// For every row k: with s the sum over j of block(k, j) * weights[j], adds s * direction[j] to
/// block(k, j).
template <class Element>
void CombineRows(Block<Element> block, const Element* weights, const Element* direction) {
  Element sums[kSvdChunk];
  for (int k = 0; k < block.rows; k += kSvdChunk) {
    const Block<Element> rows = block.Rows(k, std::min(kSvdChunk, block.rows - k));
    SumRows(rows, weights, sums);
    AddProducts<Element>(rows, sums, 1, direction);
  }
}

}  // namespace tarn

#endif
