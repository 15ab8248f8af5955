#ifndef TARN_LINALG_SVD_KERNELS_H
#define TARN_LINALG_SVD_KERNELS_H

/// @file
/// The passes over whole blocks of a matrix that the singular value decomposition consists of.
///
/// Every sum runs over increasing row or column index from 0. Many sums are formed at a time, so a
/// pass reads its block along the rows.

#include <algorithm>
#include <cstdint>

#include "linalg/kernels.h"

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

/// Narrower blocks are not worth a call of a kernel.
inline constexpr int kLeastKernelWidth = 8;

/// sums[j] = sum over k of weights[k] * block(k, j).
template <class Element>
void SumColumns(Block<Element> block, const Element* weights, std::int64_t weightStride,
                Element* sums) {
  if (block.width >= kLeastKernelWidth) {
    return Kernels<Element>().sumColumnProducts(block.rows, block.width, block.first, block.stride,
                                                weights, weightStride, sums);
  }
  for (int j = 0; j < block.width; ++j) {
    Element sum = 0;
    for (int k = 0; k < block.rows; ++k) sum += weights[k * weightStride] * block.Row(k)[j];
    sums[j] = sum;
  }
}

/// sums[k] = sum over j of block(k, j) * weights[j].
template <class Element>
void SumRows(Block<Element> block, const Element* weights, Element* sums) {
  std::fill_n(sums, block.rows, Element{0});
  if (block.width >= kLeastKernelWidth) {
    return Kernels<Element>().addRowProducts(block.rows, block.width, block.first, block.stride,
                                             weights, sums);
  }
  for (int k = 0; k < block.rows; ++k) {
    for (int j = 0; j < block.width; ++j) sums[k] += block.Row(k)[j] * weights[j];
  }
}

/// block(k, j) += column[k] * row[j].
template <class Element>
void AddProducts(Block<Element> block, const Element* column, std::int64_t columnStride,
                 const Element* row) {
  if (block.width >= kLeastKernelWidth) {
    return Kernels<Element>().addOuterProduct(block.rows, block.width, block.first, block.stride,
                                              column, columnStride, row);
  }
  for (int k = 0; k < block.rows; ++k) {
    const Element factor = column[k * columnStride];
    Element* const target = block.Row(k);
    for (int j = 0; j < block.width; ++j) target[j] += factor * row[j];
  }
}

/// block(k, j) *= factors[j].
template <class Element>
void ScaleColumns(Block<Element> block, const Element* factors) {
  for (int k = 0; k < block.rows; ++k) {
    Element* const row = block.Row(k);
    for (int j = 0; j < block.width; ++j) row[j] *= factors[j];
  }
}

/// For every column j: with s the sum over k of weights[k] * summed(k, j), adds finish(s) *
/// column[k] to updated(k, j). At most kSvdChunk columns.
template <class Element, class Finish>
void CombineColumns(Block<Element> summed, Block<Element> updated, const Element* weights,
                    std::int64_t weightStride, const Element* column, std::int64_t columnStride,
                    Finish finish) {
  Element sums[kSvdChunk];
  SumColumns(summed, weights, weightStride, sums);
  std::transform(sums, sums + summed.width, sums, finish);
  AddProducts(updated, column, columnStride, sums);
}

/// For every row k: with s the sum over j of block(k, j) * weights[j], adds s * direction[j] to
/// block(k, j). At most kSvdChunk rows.
template <class Element>
void CombineRows(Block<Element> block, const Element* weights, const Element* direction) {
  Element sums[kSvdChunk];
  SumRows(block, weights, sums);
  AddProducts<Element>(block, sums, 1, direction);
}

}  // namespace tarn

#endif
