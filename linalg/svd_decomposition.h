#ifndef TARN_LINALG_SVD_DECOMPOSITION_H
#define TARN_LINALG_SVD_DECOMPOSITION_H

/// @file
/// The singular value decomposition A = U*diag(w)*transpose(V) from end to end, without raising.

#include "frame/error_numbers.h"
#include "linalg/matrix.h"
#include "linalg/solve_work_area.h"
#include "linalg/svd_iteration.h"
#include "linalg/svd_order.h"
#include "linalg/svd_reflection.h"
#include "linalg/vector.h"

namespace tarn {

/// Mean of the elements, summed from the last to the first.
template <class Element>
Element MeanFromTheEnd(const Element* a, std::int64_t count) {
  Element sum = 0;
  for (std::int64_t k = count - 1; k >= 0; --k) sum += a[k];
  return sum / static_cast<Element>(count);
}

/// Fewer columns are not worth being put into strips.
inline constexpr int kLeastStripColumns = 4;

/// Diagonalises what the reduction left. Where the buffers of the strips are refused, the rotations
/// take more time and the result is the same.
template <class Element>
void DiagonalizeBidiagonal(SvdProblem<Element>& p) {
  constexpr int kRows = kStripRows<Element>;
  WorkVectors<Element, 2 * kRows> buffers(p.n);
  Element* const ofU = p.n < kLeastStripColumns ? nullptr : buffers.Get();
  Element* const ofV = ofU == nullptr ? nullptr : ofU + std::int64_t{kRows} * p.n;
  RotationLog<Element> rotationsOfU(p.U(), ofU);
  RotationLog<Element> rotationsOfV(p.V(), ofV);
  SvdIteration<Element>(p, rotationsOfU, rotationsOfV).Run();
}

/// Reduces and diagonalises. Returns false when a work area was refused.
template <class Element>
bool Diagonalize(SvdProblem<Element>& p) {
  WorkVectors<Element, 1> work(p.n);
  p.superdiagonal = work.Get();
  if (p.superdiagonal == nullptr) return false;
  ReduceToBidiagonal(p);
  AccumulateRight(p);
  AccumulateLeft(p);
  DiagonalizeBidiagonal(p);
  return true;
}

/// Decomposes `a`, which becomes U, into `w` and `v`, which take their dimensions. Returns the
/// number of the error to raise or 0.
template <class Element>
int DecomposeSingular(T_Matrix<Element>& a, Element flushLimit, T_MatVectorCol<Element>& w,
                      T_Matrix<Element>& v) {
  if (&a == &v) return kErrorArgument;
  const bool isEmpty = a.X() == 0 || a.Y() == 0;
  const int n = isEmpty ? 0 : a.X();
  if (!isEmpty && a[0] == nullptr) return kErrorMemory;
  w.SetDim(n);
  v.SetDim(n, n);
  if (w.Dim() != n || (n > 0 && v[0] == nullptr)) return kErrorMemory;
  if (isEmpty) return 0;
  w.Set(0);
  v.Set(0);
  SvdProblem<Element> problem{a[0], a.Y(), n, w, nullptr, v[0], flushLimit};
  const Element mean = MeanFromTheEnd(a[0], static_cast<std::int64_t>(a.Y()) * n);
  if (!Diagonalize(problem) || !SortSingularValues(problem)) return kErrorMemory;
  NormalizeSigns(problem, mean);
  return 0;
}

/// A matrix copied and decomposed.
template <class Element>
struct SvdFactors {
  T_Matrix<Element> u;
  T_MatVectorCol<Element> w;
  T_Matrix<Element> v;

  SvdFactors(const T_Matrix<Element>& matrix, Element flushLimit)
      : u(matrix), error(DecomposeSingular(u, flushLimit, w, v)) {}

  int error;  ///< number of the error to raise; 0: none
};

}  // namespace tarn

#endif
