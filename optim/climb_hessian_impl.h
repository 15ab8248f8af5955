#ifndef TARN_OPTIM_CLIMB_HESSIAN_IMPL_H
#define TARN_OPTIM_CLIMB_HESSIAN_IMPL_H

/// @file
/// `T_Climb`: second derivatives, Hessian and covariance.

#include <cmath>
#include <memory>

#include "arrays/sort.h"
#include "arrays/typed_array.h"
#include "optim/climb.h"
#include "optim/difference_points.h"
#include "optim/matrix_copy.h"

namespace tarn {

/// Points of a mixed second difference; a pure one takes one less.
inline constexpr int kMixedDifferencePoints = 4;

}  // namespace tarn

// Second derivatives ------------------------------------------------------------------------------

template <class T>
T T_Climb<T>::GetDerivative2(T_MatVectorCol<T>& s, int i, int j) {
  if (IsFixed(i) || IsFixed(j) || !ReservePool(tarn::kMixedDifferencePoints)) return T(0);
  if (deriv2Func_.TypeWord() == VARTYPE_EMPTY) return _GetDerivative2_Parallel(s, i, j);
  evaluatedPoint_ = ScaleResult(s);
  return CalculateDerivative2(deriv2Func_, evaluatedPoint_, i, j) / (invRange_[i] * invRange_[j]);
}

/// Second difference of three points (i = j) or mixed difference of four, for which the pool has
/// room.
template <class T>
T T_Climb<T>::_GetDerivative2_Parallel(T_MatVectorCol<T>& s, int i, int j) {
  if (IsFixed(i) || IsFixed(j)) return T(0);
  T di = 0;
  T dj = 0;
  const int count = _GetDerivative2_Params(s, i, j, pool_.Points(), di, dj);
  if (di == 0 || dj == 0) return T(0);
  const T* f = pool_.Values();
  _DoParallelCalculation(pool_.Values(), pool_.Points(), count);
  return count == 3 ? (f[2] - 2 * f[1] + f[0]) / (di * dj)
                    : (f[3] - f[2] - f[1] + f[0]) / (di * dj);
}

/// Stores the points of the difference, in the order of evaluation, and the two widths that it is
/// divided by. Returns the number of points.
template <class T>
int T_Climb<T>::_GetDerivative2_Params(T_MatVectorCol<T>& s, int i, int j,
                                       T_MatVectorCol<T>* points, T& di, T& dj) {
  if (i == j) return GetDerivative2_ParamsDiagonal(s, i, points, di, dj);
  return symmetricDerivative_ != 0 ? _GetDerivative2_ParamsSymmetric(s, i, j, points, di, dj)
                                   : _GetDerivative2_ParamsForward(s, i, j, points, di, dj);
}

template <class T>
int T_Climb<T>::GetDerivative2_ParamsDiagonal(T_MatVectorCol<T>& s, int i,
                                              T_MatVectorCol<T>* points, T& hm, T& hp) {
  const tarn::CentralDifference<T> difference(s[i], DifferenceStep(i));
  const T places[3] = {difference.low, difference.middle, difference.high};
  for (int k = 0; k < 3; ++k) {
    points[k] = s;
    points[k][i] = places[k];
  }
  hp = std::fabs(difference.high - difference.middle);
  hm = std::fabs(difference.low - difference.middle);
  return 3;
}

namespace tarn {

/// The four corners of a rectangle in coordinates i and j: i changes first.
template <class T>
void SetCorners(T_MatVectorCol<T>* points, const T_MatVectorCol<T>& s, int i, const T (&atI)[2],
                int j, const T (&atJ)[2]) {
  for (int k = 0; k < 4; ++k) {
    points[k] = s;
    points[k][i] = atI[k % 2];
    points[k][j] = atJ[k / 2];
  }
}

}  // namespace tarn

template <class T>
int T_Climb<T>::_GetDerivative2_ParamsForward(T_MatVectorCol<T>& s, int i, int j,
                                              T_MatVectorCol<T>* points, T& di, T& dj) {
  const tarn::ForwardDifference<T> inI(s[i], DifferenceStep(i));
  const tarn::ForwardDifference<T> inJ(s[j], DifferenceStep(j));
  tarn::SetCorners(points, s, i, {inI.near, inI.far}, j, {inJ.near, inJ.far});
  di = std::fabs(inI.Width());
  dj = std::fabs(inJ.Width());
  return 4;
}

template <class T>
int T_Climb<T>::_GetDerivative2_ParamsSymmetric(T_MatVectorCol<T>& s, int i, int j,
                                                T_MatVectorCol<T>* points, T& di, T& dj) {
  const tarn::InnerDifference<T> inI(s[i], DifferenceStep(i));
  const tarn::InnerDifference<T> inJ(s[j], DifferenceStep(j));
  tarn::SetCorners(points, s, i, {inI.low, inI.high}, j, {inJ.low, inJ.high});
  di = std::fabs(inI.Width());
  dj = std::fabs(inJ.Width());
  return 4;
}

// Hessian -----------------------------------------------------------------------------------------

/// Whether a cached matrix belongs to the scaled point s. One whose first element is 0 never does.
template <class T>
bool T_Climb<T>::IsCacheValid(const T_Matrix<T>& cache, const T_MatVectorCol<T>& s) const {
  return dimension_ > 0 && cache.Y() == dimension_ && cache(0, 0) != 0 && (cachedPoint_ == s) != 0;
}

/// Fills the cache by differences, one batch for each pair i <= j.
template <class T>
void T_Climb<T>::_GetHessian_Parallel(T_MatVectorCol<T>& s) {
  for (int i = 0; i < dimension_; ++i) {
    for (int j = i; j < dimension_; ++j) {
      const T value = _GetDerivative2_Parallel(s, i, j);
      hessianCache_(i, j) = value;
      hessianCache_(j, i) = value;
    }
  }
}

/// Fills the cache from the second derivative function.
template <class T>
void T_Climb<T>::FillHessianFromFunction(T_MatVectorCol<T>& s) {
  for (int i = 0; i < dimension_; ++i) {
    for (int j = i; j < dimension_; ++j) {
      const T value = GetDerivative2(s, i, j);
      hessianCache_(i, j) = value;
      hessianCache_(j, i) = value;
    }
  }
}

template <class T>
T_Matrix<T>* T_Climb<T>::_GetHessian(T_MatVectorCol<T>& s) {
  if (!IsCacheValid(hessianCache_, s)) {
    ClearCaches();
    if (!ReservePool(tarn::kMixedDifferencePoints)) return nullptr;
    const int symmetric = symmetricDerivative_;
    symmetricDerivative_ = 1;
    if (deriv2Func_.TypeWord() == VARTYPE_EMPTY) {
      _GetHessian_Parallel(s);
    } else {
      FillHessianFromFunction(s);
    }
    cachedPoint_ = s;
    symmetricDerivative_ = symmetric;
  }
  return tarn::NewCopy(hessianCache_);
}

template <class T>
T_Matrix<T>* T_Climb<T>::GetHessian(T_MatVectorCol<T>& x) {
  return x.Dim() == dimension_ ? GetHessian(static_cast<T*>(x)) : nullptr;
}

template <class T>
T_Matrix<T>* T_Climb<T>::GetHessian(T* x) {
  T_MatVectorCol<T> s;
  if (!ToScaled(s, x)) return nullptr;
  T_Matrix<T>* hessian = _GetHessian(s);
  if (hessian == nullptr) return nullptr;
  for (int j = 0; j < dimension_; ++j) {
    for (int i = 0; i < dimension_; ++i) (*hessian)(j, i) *= invRange_[i] * invRange_[j];
  }
  return hessian;
}

// Covariance --------------------------------------------------------------------------------------

namespace tarn {

template <class T>
void MakeDiagonalPositive(T_Matrix<T>& matrix) {
  for (int i = 0; i < matrix.Y(); ++i) matrix(i, i) = std::fabs(matrix(i, i));
}

/// `matrix` = zeros with a 1 on the diagonal of every excluded row and the elements of `kept`,
/// which lacks these rows and columns, in between. The indices in `excluded` ascend.
template <class T>
void Spread(T_Matrix<T>& matrix, const T_Matrix<T>& kept, const T_Array<int>& excluded) {
  const int n = matrix.Y();
  matrix.Set(T(0));
  const auto isExcluded = [&excluded](int i, std::int64_t& cursor) {
    const bool found = cursor < excluded.Len() && excluded[cursor] == i;
    if (found) ++cursor;
    return found;
  };
  std::int64_t rowCursor = 0;
  for (int i = 0, row = 0; i < n; ++i) {
    if (isExcluded(i, rowCursor)) {
      matrix(i, i) = T(1);
      continue;
    }
    std::int64_t columnCursor = 0;
    for (int j = 0, column = 0; j < n; ++j) {
      if (!isExcluded(j, columnCursor)) matrix(i, j) = kept(row, column++);
    }
    ++row;
  }
}

}  // namespace tarn

template <class T>
T_Matrix<T>* T_Climb<T>::_GetCovariationMatrix(T_MatVectorCol<T>& s) {
  if (!IsCacheValid(covarianceCache_, s) && !FillCovariance(s)) return nullptr;
  return tarn::NewCopy(covarianceCache_);
}

/// Fills the cache from the Hessian at s. False when work space cannot be had.
template <class T>
bool T_Climb<T>::FillCovariance(T_MatVectorCol<T>& s) {
  std::unique_ptr<T_Matrix<T>> hessian(_GetHessian(s));
  if (hessian == nullptr) return false;
  tarn::MakeDiagonalPositive(*hessian);
  T_Array<int> excluded(0);
  int excludedCount = 0;
  for (int i = 0; i < dimension_; ++i) {
    if (!IsFixed(i) && (*hessian)(i, i) != 0) continue;
    excluded.InsertItem(excluded.Len(), i);
    ++excludedCount;
  }
  if (excluded.Len() != excludedCount) return false;
  covarianceCache_.Set(T(0));
  if (excluded.Len() == dimension_) return true;
  QSort(excluded.GetData(), excluded.Len());
  std::unique_ptr<T_Matrix<T>> kept(hessian->GetMinor(excluded, excluded));
  hessian.reset();
  if (!tarn::HasElements(kept.get())) return false;
  std::unique_ptr<T_Matrix<T>> inverse(kept->Inverse());
  if (!tarn::HasElements(inverse.get())) return false;
  if (covarianceFlag_ != 0) *inverse *= T(2);
  tarn::Spread(covarianceCache_, *inverse, excluded);
  tarn::MakeDiagonalPositive(covarianceCache_);
  return true;
}

template <class T>
T_Matrix<T>* T_Climb<T>::GetCovariationMatrix(T_MatVectorCol<T>& x) {
  return x.Dim() == dimension_ ? GetCovariationMatrix(static_cast<T*>(x)) : nullptr;
}

template <class T>
T_Matrix<T>* T_Climb<T>::GetCovariationMatrix(T* x) {
  T_MatVectorCol<T> s;
  if (!ToScaled(s, x)) return nullptr;
  T_Matrix<T>* covariance = _GetCovariationMatrix(s);
  if (covariance == nullptr) return nullptr;
  for (int j = 0; j < dimension_; ++j) {
    for (int i = 0; i < dimension_; ++i) {
      const T scale = invRange_[i] * invRange_[j];
      if (scale != 0) (*covariance)(j, i) /= scale;
    }
  }
  return covariance;
}

#endif
