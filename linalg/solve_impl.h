#ifndef TARN_LINALG_SOLVE_IMPL_H
#define TARN_LINALG_SOLVE_IMPL_H

#include <algorithm>
#include <cstddef>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "linalg/element_storage.h"
#include "linalg/matrix.h"
#include "linalg/solve_elimination.h"
#include "linalg/solve_work_area.h"

namespace tarn {

/// residuals[r] = rhs[first + r] - a(first + r, j)*solution[j] - ... for j = n - 1, ..., first +
/// kRows and so many rows, whose sums run side by side.
template <std::size_t kRows, class Element>
void SubtractKnown(EliminationCopy<Element>& a, int first, const Element* rhs,
                   const Element* solution, Element* residuals) {
  Element sums[kRows];
  const Element* rows[kRows];
  for (std::size_t r = 0; r < kRows; ++r) {
    sums[r] = rhs[first + static_cast<int>(r)];
    rows[r] = a.Row(first + static_cast<int>(r));
  }
  for (int j = a.Order() - 1; j >= first + static_cast<int>(kRows); --j) {
    for (std::size_t r = 0; r < kRows; ++r) sums[r] -= rows[r][j] * solution[j];
  }
  std::copy_n(sums, kRows, residuals);
}

/// Solves the triangular system that elimination left. Its diagonal holds the pivots, so it is free
/// of zeros. An exactly zero residual is the solution without a division.
template <class Element>
void SubstituteBack(EliminationCopy<Element>& a, const Element* rhs, Element* solution) {
  constexpr int kRows = 8;
  Element residuals[kRows];
  int end = a.Order();
  while (end > 0) {
    const int count = end >= kRows ? kRows : 1;
    const int begin = end - count;
    if (count == kRows) {
      SubtractKnown<kRows>(a, begin, rhs, solution, residuals);
    } else {
      SubtractKnown<1>(a, begin, rhs, solution, residuals);
    }
    for (int i = end - 1; i >= begin; --i) {
      Element residual = residuals[i - begin];
      for (int j = end - 1; j > i; --j) residual -= a(i, j) * solution[j];
      solution[i] = residual != 0 ? residual / a(i, i) : residual;
    }
    end = begin;
  }
}

/// Solves a*solution = b for a matrix of order n. Returns the number of the error to raise, 0 when
/// there is none; the solution is zeros then. `b` and `solution` may be the same array.
template <class Element>
int SolveLinearSystem(const Element* a, int n, const Element* b, Element* solution) {
  WorkVectors<Element, 1> work(n);
  Element* const rhs = work.Get();
  if (rhs != nullptr) CopyElements(rhs, b, n);
  ClearElements(solution, n);
  if (rhs == nullptr || (a == nullptr && n > 0)) return kErrorMemory;
  EliminationCopy<Element> copy(a, n);
  if (!copy) return kErrorMemory;
  bool oddExchanges = false;
  if (!Eliminate(copy, rhs, &oddExchanges)) return kErrorSingular;
  SubstituteBack(copy, rhs, solution);
  return 0;
}

}  // namespace tarn

template <class Element>
int T_Matrix<Element>::SolveSystem(const Element* b, Element* solution, int quiet) const {
  int error = tarn::kErrorArgument;
  if (x == y) error = tarn::SolveLinearSystem(data, x, b, solution);
  if (error != 0 && quiet == 0) TarnError(error);
  return error == 0 ? 1 : 0;
}

template <class Element>
int T_Matrix<Element>::SolveSystem(const Element* b, Element* solution) const {
  return SolveSystem(b, solution, 0);
}

template <class Element>
Element* T_Matrix<Element>::SolveSystem(const Element* b) const {
  int error = tarn::kErrorArgument;
  Element* solution = nullptr;
  if (x == y) {
    solution = tarn::NewElements<Element>(y);
    error =
        solution == nullptr ? tarn::kErrorMemory : tarn::SolveLinearSystem(data, x, b, solution);
  }
  if (error == 0) return solution;
  delete[] solution;
  TarnError(error);
  return nullptr;
}

#endif
