// Linear systems, determinants, inverses and Cholesky factors.

#include <cmath>
#include <memory>

#include "golden_bits.h"
#include "golden_matrices.h"

namespace tarn_golden {
namespace {

/// A square matrix.
template <class T>
T_Matrix<T> MakeSquare(Inputs& inputs, Kind kind, int n) {
  return MakeMatrix<T>(inputs, kind, n, n, kRangesOfSolvers);
}

/// A matrix with a diagonal that keeps the pivots from vanishing.
template <class T>
T_Matrix<T> MakeDominant(Inputs& inputs, Kind kind, int n) {
  T_Matrix<T> m = MakeSquare<T>(inputs, kind, n);
  for (int i = 0; i < n; ++i) {
    m(i, i) += static_cast<T>(kind == Kind::kWide ? std::ldexp(n + 1.0, 21) : 4.0 * n);
  }
  return m;
}

template <class T>
void Systems(Report& report, const std::string& type) {
  report.Function("T_Matrix<" + type + ">::SolveSystem", [](Hash& hash) {
    Inputs inputs(51);
    ForAllSizes([&](Kind kind, int n) {
      const T_Matrix<T> a = MakeSquare<T>(inputs, kind, n);
      std::vector<T> b;
      for (int i = 0; i < n; ++i) {
        b.push_back(MakeElement<T>(inputs, kind, kRangesOfSolvers));
      }
      std::vector<T> x(b);
      hash.Add(a.SolveSystem(b.data(), x.data(), 1));
      hash.Add(x);
    });
  });
}

template <class T>
void Determinants(Report& report, const std::string& type) {
  report.Function("T_Matrix<" + type + ">::Det,LogAbsDet", [](Hash& hash) {
    Inputs inputs(52);
    ForAllSizes([&](Kind kind, int n) {
      const T_Matrix<T> a = MakeSquare<T>(inputs, kind, n);
      hash.Add(a.Det());
      hash.Add(a.LogAbsDet());
    });
  });
}

template <class T>
void Inverses(Report& report, const std::string& type) {
  report.Function("T_Matrix<" + type + ">::Inverse", [](Hash& hash) {
    Inputs inputs(53);
    ForAllSizes([&](Kind kind, int n) {
      T_Matrix<T> r(n);
      MakeDominant<T>(inputs, kind, n).Inverse(r);
      AddMatrix(hash, r);
    });
  });
}

template <class T>
void CholeskyFactors(Report& report, const std::string& type) {
  report.Function("T_Matrix<" + type + ">::CholeskyDecompse", [](Hash& hash) {
    Inputs inputs(54);
    ForAllSizes([&](Kind kind, int n) {
      const std::unique_ptr<T_Matrix<T>> l(MakeDominant<T>(inputs, kind, n).CholeskyDecompse());
      hash.Add(l != nullptr ? 1 : 0);
      if (l != nullptr) AddMatrix(hash, *l);
    });
  });
}

template <class T>
void AllOf(Report& report, const std::string& type) {
  Systems<T>(report, type);
  Determinants<T>(report, type);
  Inverses<T>(report, type);
  CholeskyFactors<T>(report, type);
}

}  // namespace

void RunGoldenSolvers(Report& report) {
  AllOf<float>(report, "float");
  AllOf<double>(report, "double");
}

}  // namespace tarn_golden
