#ifndef TARN_LINALG_SVD_ORDER_H
#define TARN_LINALG_SVD_ORDER_H

/// @file
/// Order and signs of singular values and vectors.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "arrays/sort.h"
#include "linalg/solve_work_area.h"
#include "linalg/svd_reflection.h"

namespace tarn {

/// Whether the values descend from record to record; a NaN hides nothing but itself.
template <class Element>
bool AreDescending(const svd_index<Element>* records, int n) {
  for (int i = 1; i < n; ++i) {
    if (records[i - 1].value < records[i].value) return false;
  }
  return true;
}

template <class Element>
bool HaveNaN(const svd_index<Element>* records, int n) {
  for (int i = 0; i < n; ++i) {
    if (std::isnan(records[i].value)) return true;
  }
  return false;
}

/// Turns sorted records, whose indices say where a value comes from, into exchanges to be made for
/// i = n - 1, ..., 0: columns i and index i. A column that an exchange moved is found under its new
/// index by the later ones.
template <class Element>
void TurnIntoExchanges(svd_index<Element>* records, int n) {
  for (int i = n - 1; i >= 0; --i) {
    for (int k = i - 1; k >= 0; --k) {
      if (records[k].index == i) {
        records[k].index = records[i].index;
        break;
      }
    }
  }
}

/// Makes the exchanges in every row of a block.
template <class Element>
void ExchangeColumns(Block<Element> block, const svd_index<Element>* records) {
  for (int k = 0; k < block.rows; ++k) {
    Element* const row = block.Row(k);
    for (int i = block.width - 1; i >= 0; --i) std::swap(row[i], row[records[i].index]);
  }
}

/// Sorts the singular values, the largest first, and the columns of U and V with them. Returns
/// false when a work area was refused.
template <class Element>
bool SortSingularValues(SvdProblem<Element>& p) {
  WorkVectors<svd_index<Element>, 1> work(p.n);
  svd_index<Element>* const records = work.Get();
  if (records == nullptr) return false;
  for (int i = 0; i < p.n; ++i) records[i] = {p.diagonal[i], i};
  QSort(records, p.n);
  if (!AreDescending(records, p.n) && !HaveNaN(records, p.n)) return false;
  for (int i = 0; i < p.n; ++i) p.diagonal[i] = records[i].value;
  TurnIntoExchanges(records, p.n);
  ExchangeColumns(p.U(), records);
  ExchangeColumns(p.V(), records);
  return true;
}

/// Changes the sign of column j of U and of V where the sum of the column of V and `mean` have
/// opposite signs.
template <class Element>
void NormalizeSigns(SvdProblem<Element>& p, Element mean) {
  Element signs[kSvdChunk];
  const Element one = 1;
  for (int j = 0; j < p.n; j += kSvdChunk) {
    const int count = std::min(kSvdChunk, p.n - j);
    SumColumns(p.V().Columns(j, count), &one, 0, signs);
    for (int k = 0; k < count; ++k) signs[k] = signs[k] * mean < 0 ? -1 : 1;
    ScaleColumns(p.U().Columns(j, count), signs);
    ScaleColumns(p.V().Columns(j, count), signs);
  }
}

}  // namespace tarn

#endif
