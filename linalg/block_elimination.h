#ifndef TARN_LINALG_BLOCK_ELIMINATION_H
#define TARN_LINALG_BLOCK_ELIMINATION_H

/// @file
/// Elimination and substitution by blocks, with the bits of the plain loops.
///
/// The columns are halved again and again: the left half is eliminated, its operations are carried
/// over to the right half, and that is eliminated. Most of the work is then in products of
/// matrices. Every element still sees the same subtractions one by one in the same order, and a
/// pivot is chosen when its column has seen all of them.
///
/// Source: S. Toledo, Locality of reference in LU decomposition with partial pivoting, SIAM J.
/// Matrix Anal. Appl. 18 (1997).

#include <algorithm>
#include <cstddef>
#include <utility>

#include "linalg/element_storage.h"
#include "linalg/kernels.h"
#include "linalg/solve_work_area.h"

namespace tarn {

/// Where a range of rows or columns is halved: after a whole number of panels.
inline std::ptrdiff_t MiddleOf(std::ptrdiff_t begin, std::ptrdiff_t end) {
  const std::ptrdiff_t panels = (end - begin + kEliminationColumns - 1) / kEliminationColumns;
  return begin + (panels + 1) / 2 * kEliminationColumns;
}

/// A square triangular matrix and right-hand sides that become solutions, both stored row after row
/// with the same distance.
template <class Element>
struct TriangularSystem {
  using Index = std::ptrdiff_t;

  const Element* triangle;
  Element* rhs;
  Index stride;
  Index cols;  ///< right-hand sides

  const Element* Coefficient(Index i, Index j) const { return triangle + i * stride + j; }
  Element* Rhs(Index i) const { return rhs + i * stride; }
};

/// A lower triangular matrix with ones on the diagonal, row `begin` to row `end`, each element in
/// increasing inner index. `width(i)` right-hand sides are looked at of the rows before i.
template <class Element, class Width>
void SolveLowerRows(const TriangularSystem<Element>& system, std::ptrdiff_t begin,
                    std::ptrdiff_t end, Width width) {
  const std::ptrdiff_t stride = system.stride;
  if (end - begin <= kEliminationColumns) {
    return Kernels<Element>().solveUnitLower(end - begin, width(end),
                                             system.Coefficient(begin, begin), stride,
                                             system.Rhs(begin), stride);
  }
  const std::ptrdiff_t middle = MiddleOf(begin, end);
  SolveLowerRows(system, begin, middle, width);
  Kernels<Element>().subtractProduct(end - middle, width(middle), middle - begin,
                                     {system.Coefficient(middle, begin), stride, 1},
                                     {system.Rhs(begin), stride, 1}, system.Rhs(middle), stride);
  SolveLowerRows(system, middle, end, width);
}

/// An upper triangular matrix, row `end` - 1 back to row `begin`, each element in decreasing inner
/// index.
template <class Element>
void SolveUpperRows(const TriangularSystem<Element>& system, std::ptrdiff_t begin,
                    std::ptrdiff_t end) {
  const std::ptrdiff_t stride = system.stride;
  if (end - begin <= kEliminationColumns) {
    return Kernels<Element>().solveUpper(end - begin, system.cols, system.Coefficient(begin, begin),
                                         stride, system.Rhs(begin), stride);
  }
  const std::ptrdiff_t middle = MiddleOf(begin, end);
  SolveUpperRows(system, middle, end);
  Kernels<Element>().subtractProduct(middle - begin, system.cols, end - middle,
                                     {system.Coefficient(begin, end - 1), stride, -1},
                                     {system.Rhs(end - 1), -stride, 1}, system.Rhs(begin), stride);
  SolveUpperRows(system, begin, middle);
}

/// Room for a panel of a matrix of order n: on the call stack for small orders, otherwise in new
/// storage, so that the host heap sees no request on which no result depends.
template <class Element>
class PanelStorage {
 public:
  explicit PanelStorage(std::ptrdiff_t n)
      : heap_(n < kHeapOrder ? nullptr : NewElements<Element>(n * kEliminationColumns)),
        columns_(n < kHeapOrder ? stack_ : heap_) {}
  ~PanelStorage() { delete[] heap_; }
  PanelStorage(const PanelStorage&) = delete;
  PanelStorage& operator=(const PanelStorage&) = delete;

  /// Null when the storage was refused.
  Element* Get() { return columns_; }

 private:
  Element* heap_;
  Element* columns_;
  Element stack_[std::size_t{kHeapOrder} * kEliminationColumns];
};

/// Reduces the n x n elements `a` to the upper triangular factor and leaves the multipliers below
/// its diagonal.
template <class Element>
class BlockElimination {
 public:
  using Index = std::ptrdiff_t;

  /// `panel` has room for n*kEliminationColumns elements.
  BlockElimination(Element* a, Index n, Element* panel) : a_(a), n_(n), panel_(panel) {}

  /// With partial pivoting; `exchange(i, j)` is told of every exchange of two rows. Returns false
  /// at an exactly zero pivot.
  template <class Exchange>
  bool RunWithPivots(Exchange exchange) {
    Index pivots[kEliminationColumns];
    return EliminateColumns(0, n_, pivots, [&](Index begin, Index count) {
      for (Index k = 0; k < count; ++k) {
        if (pivots[k] == k) continue;
        std::swap_ranges(Row(begin + k), Row(begin + k) + n_, Row(begin + pivots[k]));
        exchange(begin + k, begin + pivots[k]);
      }
    });
  }

  /// Without exchanges; the last pivot may be 0.
  bool RunWithoutPivots() {
    return EliminateColumns(0, n_, nullptr, [](Index, Index) {});
  }

 private:
  Element* Row(Index i) { return a_ + i * n_; }

  template <class ExchangeRows>
  bool EliminateColumns(Index begin, Index end, Index* pivots, ExchangeRows exchangeRows) {
    if (end - begin <= kEliminationColumns) return EliminatePanel(begin, end, pivots, exchangeRows);
    const Index middle = MiddleOf(begin, end);
    if (!EliminateColumns(begin, middle, pivots, exchangeRows)) return false;
    const TriangularSystem<Element> system = {Row(begin) + begin, Row(begin) + middle, n_,
                                              end - middle};
    SolveLowerRows(system, 0, middle - begin, [&](Index) { return end - middle; });
    Kernels<Element>().subtractProduct(n_ - middle, end - middle, middle - begin,
                                       {Row(middle) + begin, n_, 1}, {Row(begin) + middle, n_, 1},
                                       Row(middle) + middle, n_);
    return EliminateColumns(middle, end, pivots, exchangeRows);
  }

  template <class ExchangeRows>
  bool EliminatePanel(Index begin, Index end, Index* pivots, ExchangeRows exchangeRows) {
    const KernelTable<Element>& kernels = Kernels<Element>();
    const Index rows = n_ - begin;
    kernels.transpose(rows, end - begin, Row(begin) + begin, n_, panel_, rows);
    const Index count = kernels.eliminatePanel(rows, end - begin, panel_, rows, pivots);
    if (count < end - begin) return false;
    exchangeRows(begin, count);
    kernels.transpose(end - begin, rows, panel_, rows, Row(begin) + begin, n_);
    return true;
  }

  Element* a_;
  Index n_;
  Element* panel_;
};

}  // namespace tarn

#endif
