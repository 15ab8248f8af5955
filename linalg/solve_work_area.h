#ifndef TARN_LINALG_SOLVE_WORK_AREA_H
#define TARN_LINALG_SOLVE_WORK_AREA_H

/// @file
/// Work areas of the solvers and decompositions.
///
/// They are released when they leave scope, always before an error is raised, because the host need
/// not return from raising one.

#include <cstddef>
#include <new>

#include "frame/host.h"
#include "linalg/matrix.h"

namespace tarn {

/// From this order on, work vectors come from the host heap.
inline constexpr int kHeapOrder = 100;

/// `Vectors` work vectors of `order` elements in one block, not initialised: on the call stack
/// below order 100, so that small problems in inner loops cause no heap traffic, from the host heap
/// otherwise.
template <class Element, int Vectors>
class WorkVectors {
 public:
  explicit WorkVectors(int order)
      : heap_(order < kHeapOrder ? nullptr : Request(order)),
        elements_(order < kHeapOrder ? stack_ : heap_) {}
  ~WorkVectors() { HFREE(heap_); }
  WorkVectors(const WorkVectors&) = delete;
  WorkVectors& operator=(const WorkVectors&) = delete;

  /// The block; null when the host heap refused it.
  Element* Get() { return elements_; }

 private:
  static Element* Request(int order) {
    return static_cast<Element*>(
        HMALLOC(static_cast<std::size_t>(order) * Vectors * sizeof(Element)));
  }

  Element stack_[static_cast<std::size_t>(kHeapOrder) * Vectors];
  Element* heap_;
  Element* elements_;
};

/// A new matrix of zeros, or null when the object or its storage was refused.
template <class Element>
T_Matrix<Element>* NewMatrix(int rows, int cols) {
  auto* const matrix = new (std::nothrow) T_Matrix<Element>(rows, cols);
  if (matrix != nullptr && (*matrix)[0] != nullptr) return matrix;
  delete matrix;
  return nullptr;
}

}  // namespace tarn

#endif
