#ifndef TARN_OPTIM_MATRIX_COPY_H
#define TARN_OPTIM_MATRIX_COPY_H

/// @file
/// Copies of matrices that are handed out whole or not at all.

#include <memory>
#include <new>

#include "linalg/matrix.h"

namespace tarn {

/// Whether a matrix has the storage of its shape; one that memory was refused has not.
template <class T>
bool HasElements(const T_Matrix<T>* matrix) {
  return matrix != nullptr && (matrix->Y() == 0 || (*matrix)[0] != nullptr);
}

/// A new copy; null when it cannot be had.
template <class T>
T_Matrix<T>* NewCopy(const T_Matrix<T>& matrix) {
  std::unique_ptr<T_Matrix<T>> copy(new (std::nothrow) T_Matrix<T>(matrix));
  return HasElements(copy.get()) ? copy.release() : nullptr;
}

}  // namespace tarn

#endif
