// The steps of elimination and substitution and the rows of a Cholesky factor, for every set of
// kernels, against the literal loops to the bit. solve_bits_test.cpp tests the whole methods.

#include <algorithm>
#include <cmath>

#include "linalg/kernel_support.h"

namespace {

template <class T>
using KernelSolve = ElementTest<T>;
TYPED_TEST_SUITE(KernelSolve, ElementTypes);

using Index = std::ptrdiff_t;

constexpr int kColumns = static_cast<int>(tarn::kEliminationColumns);

/// Eliminates the columns of `panel`, whose rows are stored as columns, element by element; returns
/// the number of columns done.
template <class T>
Index EliminateLiterally(Dense<T>& panel, std::vector<Index>* pivots) {
  const int rows = panel.cols;
  for (int k = 0; k < panel.rows; ++k) {
    if (pivots != nullptr) {
      int pivot = k;
      for (int r = k + 1; r < rows; ++r) {
        if (std::fabs(panel[k][r]) > std::fabs(panel[k][pivot])) pivot = r;
      }
      pivots->push_back(pivot);
      for (int j = 0; j < panel.rows; ++j) std::swap(panel[j][k], panel[j][pivot]);
    }
    if (panel[k][k] == 0 && (pivots != nullptr || k + 1 < rows)) return k;
    for (int r = k + 1; r < rows; ++r) {
      panel[k][r] = panel[k][r] / panel[k][k];
      for (int j = k + 1; j < panel.rows; ++j) {
        panel[j][r] = panel[j][r] - panel[k][r] * panel[j][k];
      }
    }
  }
  return panel.rows;
}

/// Compares the columns that were eliminated.
template <class T>
void ExpectElimination(const Dense<T>& panel, bool hasPivots) {
  Dense<T> expected = panel;
  std::vector<Index> expectedPivots;
  const Index done = EliminateLiterally(expected, hasPivots ? &expectedPivots : nullptr);
  expectedPivots.resize(static_cast<std::size_t>(done));
  WithEveryKernelSet([&] {
    Dense<T> actual = panel;
    std::vector<Index> pivots(static_cast<std::size_t>(panel.rows));
    ASSERT_EQ(tarn::Kernels<T>().eliminatePanel(panel.cols, panel.rows, actual[0], panel.cols,
                                                hasPivots ? pivots.data() : nullptr),
              done);
    if (hasPivots) {
      pivots.resize(static_cast<std::size_t>(done));
      EXPECT_EQ(pivots, expectedPivots);
    }
    if (done < panel.rows) return;
    EXPECT_TRUE(SameElements(actual[0], expected[0], expected.elements.size()));
  });
}

TYPED_TEST(KernelSolve, EliminatesPanels) {
  using T = TypeParam;
  for (Kind kind : kAllKinds) {
    for (int rows : Sizes()) {
      for (int cols : {1, 2, 5, kColumns}) {
        if (rows < cols) continue;
        SCOPED_TRACE(Name(kind) + std::to_string(rows) + " x " + std::to_string(cols));
        const auto seed = static_cast<unsigned>(rows);
        ExpectElimination(MakeMatrix<T>(cols, rows, kind, seed), true);
        ExpectElimination(MakeMatrix<T>(cols, rows, kind, seed), false);
      }
    }
    ExpectElimination(MakeMatrix<T>(kColumns, kLargestSize, kind, 1), true);
  }
}

TYPED_TEST(KernelSolve, OfEqualPivotsTheFirstCounts) {
  using T = TypeParam;
  for (int rows : {9, 40, 129}) {
    for (int first = 0; first < rows; ++first) {
      Dense<T> panel(1, rows);
      std::fill(panel[0], panel[0] + rows, T{1});
      for (int r = first; r < rows; ++r) panel[0][r] = r % 2 == 0 ? T{2} : T{-2};
      WithEveryKernelSet([&] {
        Dense<T> copy = panel;
        Index pivot = -1;
        tarn::Kernels<T>().eliminatePanel(rows, 1, copy[0], rows, &pivot);
        EXPECT_EQ(pivot, first);
      });
    }
  }
}

TYPED_TEST(KernelSolve, ANanIsAPivotOnlyWhereItStands) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  WithEveryKernelSet([&] {
    for (const bool isFirst : {true, false}) {
      std::vector<T> column(33, T{1});
      column[isFirst ? 0 : 20] = nan;
      column[30] = -3;
      Index pivot = -1;
      EXPECT_EQ(tarn::Kernels<T>().eliminatePanel(33, 1, column.data(), 33, &pivot), 1);
      EXPECT_EQ(pivot, isFirst ? 0 : 30);
    }
  });
}

// A triangle in a matrix with further columns, and right-hand sides in another.
TYPED_TEST(KernelSolve, SolvesTriangularSystems) {
  using T = TypeParam;
  for (Kind kind : kAllKinds) {
    for (int rows = 1; rows <= kColumns; ++rows) {
      for (int cols : Sizes()) {
        const Dense<T> t = MakeMatrix<T>(rows, kColumns + 3, kind, 1);
        const Dense<T> r = MakeMatrix<T>(rows, cols + 2, kind, 2);
        Dense<T> lower = r, upper = r;
        for (int j = 0; j < cols; ++j) {
          for (int i = 0; i < rows; ++i) {
            for (int k = 0; k < i; ++k) lower[i][j] = lower[i][j] - t[i][k] * lower[k][j];
          }
          for (int i = rows - 1; i >= 0; --i) {
            for (int k = rows - 1; k > i; --k) upper[i][j] = upper[i][j] - t[i][k] * upper[k][j];
            upper[i][j] = upper[i][j] / t[i][i];
          }
        }
        WithEveryKernelSet([&] {
          Dense<T> actual = r;
          tarn::Kernels<T>().solveUnitLower(rows, cols, t[0], t.cols, actual[0], r.cols);
          EXPECT_TRUE(SameElements(actual[0], lower[0], lower.elements.size())) << Name(kind);
          actual = r;
          tarn::Kernels<T>().solveUpper(rows, cols, t[0], t.cols, actual[0], r.cols);
          EXPECT_TRUE(SameElements(actual[0], upper[0], upper.elements.size())) << Name(kind);
        });
      }
    }
  }
}

// Every count of rows at a time gives the same factor.
TYPED_TEST(KernelSolve, FactorizesAnyNumberOfRows) {
  using T = TypeParam;
  constexpr int n = 75;
  const Dense<T> a = MakePositive<T>(n, 1);
  Dense<T> expected(n, n);
  for (int i = 0; i < n; ++i) {
    for (int j = i; j < n; ++j) {
      T x = a[i][j];
      for (int k = i - 1; k >= 0; --k) x = x - expected[i][k] * expected[j][k];
      expected[j][i] = i == j ? std::sqrt(x) : x / expected[i][i];
    }
  }
  WithEveryKernelSet([&] {
    const auto& kernels = tarn::Kernels<T>();
    std::vector<T> work(static_cast<std::size_t>(kernels.choleskyRows * n));
    for (Index step = 1; step <= kernels.choleskyRows; ++step) {
      Dense<T> l(n, n);
      for (Index first = 0; first < n; first += step) {
        ASSERT_TRUE(kernels.factorizeCholeskyRows(n, first, std::min(step, n - first), a[0], l[0],
                                                  work.data()));
      }
      EXPECT_TRUE(SameElements(l[0], expected[0], l.elements.size())) << step;
    }
  });
}

TYPED_TEST(KernelSolve, RefusesADiagonalThatIsNotPositive) {
  using T = TypeParam;
  constexpr int n = 20;
  for (const T value : {T{0}, T{-0.0}, T{-1}}) {
    for (int bad = 0; bad < n; ++bad) {
      Dense<T> a(n, n);
      for (int i = 0; i < n; ++i) a[i][i] = i == bad ? value : T{1};
      WithEveryKernelSet([&] {
        const auto& kernels = tarn::Kernels<T>();
        std::vector<T> work(static_cast<std::size_t>(kernels.choleskyRows * n));
        Dense<T> l(n, n);
        bool isDone = true;
        for (Index first = 0; first < n && isDone; first += 2) {
          isDone = kernels.factorizeCholeskyRows(n, first, Index{2}, a[0], l[0], work.data());
          EXPECT_EQ(isDone, bad < first || bad > first + 1);
        }
      });
    }
  }
}

}  // namespace
