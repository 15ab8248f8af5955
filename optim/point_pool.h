#ifndef TARN_OPTIM_POINT_POOL_H
#define TARN_OPTIM_POINT_POOL_H

/// @file
/// Points and values of one batch of evaluations, in storage that is kept from batch to batch.

#include <new>

#include "linalg/vector.h"

namespace tarn {

/// Work space of one minimiser. It is not copied with it: nothing in it outlives a batch.
template <class T>
class PointPool {
 public:
  PointPool() = default;
  PointPool(const PointPool&) = delete;
  PointPool& operator=(const PointPool&) = delete;
  ~PointPool() { Release(); }

  /// Makes room for `count` values and points of `dimension` coordinates, so that storing a point
  /// allocates nothing. False when it cannot be had.
  bool Reserve(int count, int dimension) {
    return ReserveItems(count) && SetDimensions(count, dimension);
  }

  T_MatVectorCol<T>* Points() { return points_; }
  T* Values() { return values_; }

 private:
  bool ReserveItems(int count) {
    if (count <= capacity_) return true;
    Release();
    points_ = new (std::nothrow) T_MatVectorCol<T>[static_cast<std::size_t>(count)];
    values_ = new (std::nothrow) T[static_cast<std::size_t>(count)];
    if (points_ == nullptr || values_ == nullptr) {
      Release();
      return false;
    }
    capacity_ = count;
    return true;
  }

  bool SetDimensions(int count, int dimension) {
    for (int k = 0; k < count; ++k) {
      points_[k].SetDim(dimension);
      if (points_[k].Dim() != dimension) return false;
    }
    return true;
  }

  void Release() {
    delete[] points_;
    delete[] values_;
    points_ = nullptr;
    values_ = nullptr;
    capacity_ = 0;
  }

  T_MatVectorCol<T>* points_ = nullptr;
  T* values_ = nullptr;
  int capacity_ = 0;
};

}  // namespace tarn

#endif
