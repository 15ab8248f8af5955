#ifndef TARN_LINALG_CHOLESKY_IMPL_H
#define TARN_LINALG_CHOLESKY_IMPL_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "linalg/element_storage.h"
#include "linalg/kernels.h"
#include "linalg/matrix.h"
#include "linalg/solve_work_area.h"

namespace tarn {

// Row i of the upper triangle gives column i of the factor: x = a(i, j), less L(i, k)*L(j, k) for
// k = i - 1, ..., 0; L(i, i) = sqrt(x), L(j, i) = x/L(i, i).
//
// Source: G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., section 4.2.

/// The factor element by element.
template <class Element>
bool FactorizeElementByElement(const Element* a, int n, Element* l) {
  const auto row = [n](auto* elements, int i) {
    return elements + static_cast<std::int64_t>(i) * n;
  };
  for (int i = 0; i < n; ++i) {
    const Element* const li = row(l, i);
    for (int j = i; j < n; ++j) {
      Element* const lj = row(l, j);
      Element term = row(a, i)[j];
      for (int k = i - 1; k >= 0; --k) term -= li[k] * lj[k];
      if (j == i && term <= 0) return false;
      lj[i] = j == i ? std::sqrt(term) : term / li[i];
    }
  }
  return true;
}

/// The same by blocks of rows.
template <class Element>
bool FactorizeByRows(const Element* a, int n, Element* l, Element* work) {
  const KernelTable<Element>& kernels = Kernels<Element>();
  for (std::ptrdiff_t first = 0; first < n; first += kernels.choleskyRows) {
    const std::ptrdiff_t count = std::min(kernels.choleskyRows, n - first);
    if (!kernels.factorizeCholeskyRows(n, first, count, a, l, work)) return false;
  }
  return true;
}

/// Fills the zeroed n x n matrix `l` with the factor of the matrix whose upper triangle is that of
/// `a`. Returns false at a diagonal term that is not positive (a NaN passes).
template <class Element>
bool FactorizeCholesky(const Element* a, int n, Element* l) {
  constexpr int kUnblockedOrder = 20;
  if (n <= kUnblockedOrder) return FactorizeElementByElement(a, n, l);
  Element* const work = NewElements<Element>(n * Kernels<Element>().choleskyRows);
  if (work == nullptr) return FactorizeElementByElement(a, n, l);
  const bool isDone = FactorizeByRows(a, n, l, work);
  delete[] work;
  return isDone;
}

}  // namespace tarn

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::CholeskyDecompse() const {
  if (x != y) {
    TarnError(tarn::kErrorArgument, "Matrix is not symmetric");
    return nullptr;
  }
  T_Matrix* const factor = data != nullptr || x == 0 ? tarn::NewMatrix<Element>(x, x) : nullptr;
  if (factor == nullptr) {
    TarnError(tarn::kErrorMemory);
    return nullptr;
  }
  if (tarn::FactorizeCholesky(data, x, factor->data)) return factor;
  delete factor;
  TarnError(tarn::kErrorArgument, "Matrix, with rounding errors, is is not positive defined");
  return nullptr;
}

#endif
