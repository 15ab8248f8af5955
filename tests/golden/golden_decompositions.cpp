// The singular value decomposition and what is built on it.

#include <vector>

#include "golden_bits.h"
#include "golden_matrices.h"

namespace tarn_golden {
namespace {

constexpr int kOrders[] = {1, 2, 3, 4, 5, 7, 8, 9, 16, 17, 31, 33, 40, 65, 100};

constexpr Kind kFiniteKinds[] = {Kind::kUnit, Kind::kWide, Kind::kTied, Kind::kSignedZeros};

/// Calls `compute(kind, n)` for the orders and every kind of finite input.
template <class Compute>
void ForAllOrders(Compute compute) {
  for (const Kind kind : kFiniteKinds) {
    for (const int n : kOrders) compute(kind, n);
  }
}

template <class T>
void AddArray(Hash& hash, const std::vector<T>& a) {
  for (const T element : a) hash.Add(element);
}

/// Adds and deletes what a member made; null counts as one word.
template <class T>
void AddNew(Hash& hash, T_Matrix<T>* m) {
  if (m == nullptr) {
    hash.Add(0);
    return;
  }
  AddMatrix(hash, *m);
  delete m;
}

/// Rows that make a square, a tall or a wide matrix of n columns in turn.
int RowsFor(int n) { return n % 3 == 0 ? n : n % 3 == 1 ? n + 3 : n - 1; }

template <class T>
void Decompositions(Report& report, const std::string& type) {
  report.Function("T_Matrix<" + type + ">::SVD", [](Hash& hash) {
    Inputs inputs(53);
    ForAllOrders([&](Kind kind, int n) {
      T_Matrix<T> u = MakeMatrix<T>(inputs, kind, RowsFor(n), n);
      T_MatVectorCol<T> w;
      T_Matrix<T> v;
      hash.Add(u.SVD(w, v));
      AddMatrix(hash, u);
      AddVector(hash, w);
      AddMatrix(hash, v);
    });
  });
}

template <class T>
void LeastSquares(Report& report, const std::string& type) {
  report.Function("T_Matrix<" + type + ">::PseudoInverse,SolveSystemBySVD", [](Hash& hash) {
    Inputs inputs(54);
    ForAllOrders([&](Kind kind, int n) {
      const int m = RowsFor(n);
      const T_Matrix<T> a = MakeMatrix<T>(inputs, kind, m, n);
      const T_MatVectorCol<T> b = MakeVector<T>(inputs, kind, m);
      std::vector<T> x(static_cast<std::size_t>(n));
      AddNew(hash, a.PseudoInverse());
      hash.Add(a.SolveSystemBySVD(b, x.data()));
      AddArray(hash, x);
      for (const T lambda : {T{0}, T{1} / 16}) {
        hash.Add(a.SolveSystemBySVD_Reg(b, x.data(), lambda));
        AddArray(hash, x);
      }
    });
  });
}

template <class T>
void AllOf(Report& report, const std::string& type) {
  Decompositions<T>(report, type);
  LeastSquares<T>(report, type);
}

}  // namespace

void RunGoldenDecompositions(Report& report) {
  AllOf<float>(report, "float");
  AllOf<double>(report, "double");
}

}  // namespace tarn_golden
