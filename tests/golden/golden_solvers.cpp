// Linear systems, determinants, inverses and Cholesky factors.

#include <limits>
#include <memory>

#include "golden_bits.h"
#include "tarn_base_math.h"

namespace tarn_golden {
namespace {

constexpr int kSizes[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 15,  16,
                          17, 23, 24, 25, 28, 29, 31, 32, 33, 40, 63, 64, 65, 99, 100, 101};
constexpr int kLargeSizes[] = {127, 128, 129, 255, 257};

enum class Kind { kUnit, kWide, kTied, kWithNonFinite, kCount };

template <class T>
T MakeElement(Inputs& inputs, Kind kind) {
  switch (kind) {
    case Kind::kWide:
      return static_cast<T>(inputs.Wide(-20, 20));
    case Kind::kTied:
      return static_cast<T>(inputs.Integer(-3, 3));
    case Kind::kWithNonFinite:
      if (inputs.Integer(0, 200) == 0) return std::numeric_limits<T>::infinity();
      if (inputs.Integer(0, 200) == 0) return std::numeric_limits<T>::quiet_NaN();
      break;
    case Kind::kUnit:
    case Kind::kCount:
      break;
  }
  return static_cast<T>(inputs.Unit() - 0.5);
}

template <class T>
T_Matrix<T> MakeMatrix(Inputs& inputs, Kind kind, int n) {
  T_Matrix<T> m(n);
  for (std::int64_t k = 0; k < std::int64_t{n} * n; ++k) {
    m.Item(k) = MakeElement<T>(inputs, kind);
  }
  return m;
}

/// A matrix with a diagonal that keeps the pivots from vanishing.
template <class T>
T_Matrix<T> MakeDominant(Inputs& inputs, Kind kind, int n) {
  T_Matrix<T> m = MakeMatrix<T>(inputs, kind, n);
  for (int i = 0; i < n; ++i) {
    m(i, i) += static_cast<T>(kind == Kind::kWide ? std::ldexp(n + 1.0, 21) : 4.0 * n);
  }
  return m;
}

template <class T>
void AddMatrix(Hash& hash, T_Matrix<T>& m) {
  for (std::int64_t k = 0; k < std::int64_t{m.X()} * m.Y(); ++k) hash.Add(m.Item(k));
}

/// Calls `compute(kind, n)` for inputs of every kind and size.
template <class Compute>
void ForAllSizes(Compute compute) {
  for (int kind = 0; kind < static_cast<int>(Kind::kCount); ++kind) {
    for (const int n : kSizes) compute(static_cast<Kind>(kind), n);
  }
  for (const int n : kLargeSizes) compute(Kind::kUnit, n);
}

template <class T>
void Systems(Report& report, const std::string& type) {
  report.Function("T_Matrix<" + type + ">::SolveSystem", [](Hash& hash) {
    Inputs inputs(51);
    ForAllSizes([&](Kind kind, int n) {
      const T_Matrix<T> a = MakeMatrix<T>(inputs, kind, n);
      std::vector<T> b;
      for (int i = 0; i < n; ++i) b.push_back(MakeElement<T>(inputs, kind));
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
      const T_Matrix<T> a = MakeMatrix<T>(inputs, kind, n);
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
