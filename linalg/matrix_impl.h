#ifndef TARN_LINALG_MATRIX_IMPL_H
#define TARN_LINALG_MATRIX_IMPL_H

/// @file
/// Construction, shape, filling and rearranging of `T_Matrix`.

#include <algorithm>
#include <new>
#include <utility>

#include "arrays/sort.h"
#include "arrays/typed_array.h"
#include "frame/error_numbers.h"
#include "frame/host.h"
#include "linalg/element_operations.h"
#include "linalg/matrix.h"
#include "linalg/vector.h"

// Storage -----------------------------------------------------------------------------------------

template <class Element>
void T_Matrix<Element>::SetShape(int rows, int cols) {
  const bool valid = rows >= 0 && cols >= 0;
  x = valid ? cols : 0;
  y = valid ? rows : 0;
}

/// Takes zero-filled elements and scratch for a shape; neither when one of them is refused.
template <class Element>
void T_Matrix<Element>::Allocate(int rows, int cols) {
  SetShape(rows, cols);
  owns_data = 1;
  data = rows < 0 || cols < 0 ? nullptr : tarn::NewZeroElements<Element>(Count());
  work = nullptr;
  if (data == nullptr) return;
  const std::size_t scratch = static_cast<std::size_t>(std::max(x, y)) + 1;
  work = static_cast<Element*>(HMALLOC(scratch * sizeof(Element)));
  if (work != nullptr) return;
  delete[] data;
  data = nullptr;
}

template <class Element>
void T_Matrix<Element>::Reset() {
  if (owns_data == 0) return;
  delete[] data;
  HFREE(work);
  data = nullptr;
  work = nullptr;
}

template <class Element>
T_Matrix<Element>::T_Matrix() : x(0), y(0), owns_data(0), data(nullptr), work(nullptr) {}

template <class Element>
T_Matrix<Element>::T_Matrix(int n) : T_Matrix(n, n) {}

template <class Element>
T_Matrix<Element>::T_Matrix(int rows, int cols) : T_Matrix() {
  Allocate(rows, cols);
}

template <class Element>
T_Matrix<Element>::T_Matrix(int rows, int cols, const Element* p) : T_Matrix(rows, cols) {
  tarn::CopyElements(data, p, StoredCount());
}

template <class Element>
T_Matrix<Element>::T_Matrix(const T_Matrix& other) : T_Matrix() {
  CopyToNewStorage(other);
}

template <class Element>
T_Matrix<Element>::~T_Matrix() {
  Reset();
}

/// The copy of a matrix without storage has none either.
template <class Element>
void T_Matrix<Element>::CopyToNewStorage(const T_Matrix& other) {
  if (other.data != nullptr) {
    Allocate(other.y, other.x);
    tarn::CopyElements(data, other.data, StoredCount());
  } else {
    SetShape(other.y, other.x);
    owns_data = 1;
  }
}

template <class Element>
T_Matrix<Element>& T_Matrix<Element>::operator=(const T_Matrix& other) {
  if (data != nullptr && other.data != nullptr && FitsInPlace(other.y, other.x)) {
    SetShape(other.y, other.x);
    tarn::CopyElements(data, other.data, StoredCount());
  } else if (&other != this) {
    T_Matrix copy(other);
    Swap(copy);
    std::swap(owns_data, copy.owns_data);
  }
  return *this;
}

/// Whether the present storage serves a shape, elements and scratch.
template <class Element>
bool T_Matrix<Element>::FitsInPlace(int rows, int cols) const {
  if (rows < 0 || cols < 0) return false;
  return static_cast<std::int64_t>(rows) * cols == Count() &&
         std::max(x, y) >= std::max(rows, cols);
}

template <class Element>
void T_Matrix<Element>::SetDim(int rows, int cols) {
  if (HasShape(rows, cols)) return;
  if (FitsInPlace(rows, cols)) {
    SetShape(rows, cols);
  } else {
    Reset();
    Allocate(rows, cols);
  }
}

template <class Element>
void T_Matrix<Element>::SetDim(int rows, int cols, Element* buf, bool clear) {
  if (owns_data != 0 && tarn::PointsInto(data, StoredCount(), buf)) {
    SetDim(rows, cols);
  } else {
    Reset();
    SetShape(rows, cols);
    owns_data = 0;
    data = buf;
    work = buf != nullptr ? buf + Count() : nullptr;
  }
  if (clear) Set(0);
}

template <class Element>
void T_Matrix<Element>::Swap(T_Matrix& other) {
  std::swap(data, other.data);
  std::swap(work, other.work);
  std::swap(x, other.x);
  std::swap(y, other.y);
}

// Host conversion ---------------------------------------------------------------------------------

template <class Element>
T_Matrix<Element>::T_Matrix(Variable& v) : T_Matrix() {
  const std::int64_t rows = v.GetDim();
  const std::int64_t cols = rows > 0 ? v[0].GetDim() : 0;
  if (rows < 1 || cols < 1 || !tarn::FitsDimension(rows) || !tarn::FitsDimension(cols)) {
    TarnError(tarn::kErrorArgument);
    return;
  }
  Allocate(static_cast<int>(rows), static_cast<int>(cols));
  for (std::int64_t i = 0; data != nullptr && i < rows; ++i) {
    const Variable& row = v[i];
    if (row.GetDim() != cols) {
      TarnError(tarn::kErrorArgument);
      return;
    }
    FillRowFromHost(static_cast<int>(i), row);
  }
}

template <class Element>
void T_Matrix<Element>::FillRowFromHost(int i, const Variable& row) {
  const Variable* const numbers = row.GetArray();
  if (numbers == nullptr) return;
  Element* const target = (*this)[i];
  for (int j = 0; j < x; ++j) target[j] = tarn::HostNumber<Element>(numbers[j]);
}

// Filling and copying parts -----------------------------------------------------------------------

template <class Element>
void T_Matrix<Element>::Set(Element value) {
  tarn::FillElements(data, value, StoredCount());
}

template <class Element>
void T_Matrix<Element>::SetDiagonal(Element value) {
  if (data == nullptr) return;
  for (int k = 0; k < std::min(x, y); ++k) (*this)(k, k) = value;
}

template <class Element>
void T_Matrix<Element>::SetDiagonal(const T_MatVector<Element>& d) {
  if (data == nullptr) return;
  for (int k = 0; k < std::min(x, y); ++k) (*this)(k, k) = d[k];
}

template <class Element>
void T_Matrix<Element>::SetRow(const Element* p, int i) {
  if (data == nullptr || i < 0 || i >= y) return;
  tarn::CopyElements((*this)[i], p, x);
}

template <class Element>
void T_Matrix<Element>::SetColumn(const Element* p, int j) {
  if (data == nullptr || j < 0 || j >= x) return;
  for (int i = 0; i < y; ++i) (*this)(i, j) = p[i];
}

template <class Element>
void T_Matrix<Element>::GetRow(T_MatVector<Element>& v, int i) const {
  if (data == nullptr || i < 0 || i >= y) return;
  v.SetDim(x);
  if (v.Dim() == x) tarn::CopyElements<Element>(v, (*this)[i], x);
}

template <class Element>
void T_Matrix<Element>::GetColumn(T_MatVector<Element>& v, int j) const {
  if (data == nullptr || j < 0 || j >= x) return;
  v.SetDim(y);
  if (v.Dim() != y) return;
  for (int i = 0; i < y; ++i) v[i] = (*this)(i, j);
}

// Rearranging -------------------------------------------------------------------------------------

namespace tarn {

/// Walks the indices 0, 1, 2, ... against a list of indices to leave out, in ascending order.
class MinorCursor {
 public:
  explicit MinorCursor(const T_Array<int>& listed) : listed_(listed) {}

  /// Whether the next index stays.
  bool Keeps(int index) {
    if (next_ >= listed_.Len() || listed_[next_] != index) return true;
    ++next_;
    return false;
  }

 private:
  const T_Array<int>& listed_;
  std::int64_t next_ = 0;
};

}  // namespace tarn

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::GetMinor(T_Array<int>& rows, T_Array<int>& cols) const {
  QSort(rows.GetData(), rows.Len());
  QSort(cols.GetData(), cols.Len());
  auto* const minor = new (std::nothrow)
      T_Matrix(static_cast<int>(y - rows.Len()), static_cast<int>(x - cols.Len()));
  if (minor == nullptr || minor->data == nullptr || data == nullptr) return minor;
  tarn::MinorCursor rowCursor(rows);
  int target = 0;
  for (int i = 0; i < y && target < minor->y; ++i) {
    if (rowCursor.Keeps(i)) CopyRowWithout(cols, (*this)[i], minor->x, (*minor)[target++]);
  }
  return minor;
}

template <class Element>
void T_Matrix<Element>::CopyRowWithout(const T_Array<int>& cols, const Element* row, int count,
                                       Element* target) const {
  tarn::MinorCursor cursor(cols);
  int written = 0;
  for (int j = 0; j < x && written < count; ++j) {
    if (cursor.Keeps(j)) target[written++] = row[j];
  }
}

template <class Element>
void T_Matrix<Element>::SwapColumns(int a, int b) {
  if (data == nullptr || a < 0 || b < 0 || a >= x || b >= x) return;
  for (int i = 0; i < y; ++i) std::swap((*this)(i, a), (*this)(i, b));
}

template <class Element>
void T_Matrix<Element>::SwapLines(Element* a, Element* b) {
  std::swap_ranges(a, a + x, b);
}

namespace tarn {

/// Rows and columns of the tiles that an in-place transpose exchanges: two of them stay in the
/// first-level cache.
inline constexpr int kTransposeTile = 32;

}  // namespace tarn

/// Exchanges a tile at or above the diagonal with the transpose of its mirror image.
template <class Element>
void T_Matrix<Element>::TransposeTiles(int i, int j) {
  constexpr int kTile = tarn::kTransposeTile;
  const int rows = std::min(kTile, y - i);
  const int cols = std::min(kTile, x - j);
  const auto transpose = tarn::Kernels<Element>().transpose;
  Element upper[kTile * kTile];
  transpose(rows, cols, &(*this)(i, j), x, upper, rows);
  if (i != j) transpose(cols, rows, &(*this)(j, i), x, &(*this)(i, j), x);
  for (int r = 0; r < cols; ++r) tarn::CopyElements(&(*this)(j + r, i), upper + r * rows, rows);
}

template <class Element>
void T_Matrix<Element>::TransposeSquare() {
  for (int i = 0; i < y; i += tarn::kTransposeTile) {
    for (int j = i; j < x; j += tarn::kTransposeTile) TransposeTiles(i, j);
  }
}

template <class Element>
void T_Matrix<Element>::TransposeThroughCopy() {
  const auto bytes = static_cast<std::size_t>(Count()) * sizeof(Element);
  auto* const transposed = static_cast<Element*>(HMALLOC(bytes));
  if (transposed == nullptr) return;
  tarn::Kernels<Element>().transpose(y, x, data, x, transposed, y);
  tarn::CopyElements(data, transposed, Count());
  HFREE(transposed);
}

template <class Element>
void T_Matrix<Element>::Transpose() {
  if (data != nullptr && x == y) return TransposeSquare();
  if (StoredCount() > 0) TransposeThroughCopy();
  std::swap(x, y);
}

template <class Element>
Element T_Matrix<Element>::GetMinTypeValue() {
  return static_cast<Element>(std::is_same_v<Element, float> ? 1e-15 : 1e-80);
}

#endif
