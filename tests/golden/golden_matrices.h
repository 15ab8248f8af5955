#ifndef TARN_TESTS_GOLDEN_GOLDEN_MATRICES_H
#define TARN_TESTS_GOLDEN_GOLDEN_MATRICES_H

// Inputs and results of linear algebra.

#include <limits>

#include "golden_bits.h"
#include "tarn_base_math.h"

namespace tarn_golden {

enum class Kind { kUnit, kWide, kTied, kSignedZeros, kWithNonFinite, kCount };

/// How far the elements of the kinds go.
struct Ranges {
  int exponent;  ///< wide elements have exponents from -exponent to exponent
  int tie;       ///< tied ones are the integers from -tie to tie
  int rarity;    ///< one in that many is infinite, another one not a number
};
constexpr Ranges kRangesOfProducts{60, 2, 60};
/// Elimination multiplies elements with each other again and again, and carries what is not finite
/// into all rows.
constexpr Ranges kRangesOfSolvers{20, 3, 200};

template <class T>
T MakeElement(Inputs& inputs, Kind kind, const Ranges& ranges = kRangesOfProducts) {
  switch (kind) {
    case Kind::kWide:
      return static_cast<T>(inputs.Wide(-ranges.exponent, ranges.exponent));
    case Kind::kTied:
      return static_cast<T>(inputs.Integer(-ranges.tie, ranges.tie));
    case Kind::kSignedZeros:
      return static_cast<T>(static_cast<double>(inputs.Integer(-1, 1)) * 0.0);
    case Kind::kWithNonFinite:
      if (inputs.Integer(0, ranges.rarity) == 0) return std::numeric_limits<T>::infinity();
      if (inputs.Integer(0, ranges.rarity) == 0) return std::numeric_limits<T>::quiet_NaN();
      break;
    case Kind::kUnit:
    case Kind::kCount:
      break;
  }
  return static_cast<T>(inputs.Unit() - 0.5);
}

template <class T>
T_Matrix<T> MakeMatrix(Inputs& inputs, Kind kind, int rows, int cols,
                       const Ranges& ranges = kRangesOfProducts) {
  T_Matrix<T> m(rows, cols);
  for (std::int64_t k = 0; k < std::int64_t{rows} * cols; ++k) {
    m.Item(k) = MakeElement<T>(inputs, kind, ranges);
  }
  return m;
}

template <class T>
T_MatVectorCol<T> MakeVector(Inputs& inputs, Kind kind, int n) {
  T_MatVectorCol<T> v(n);
  for (int i = 0; i < n; ++i) v[i] = MakeElement<T>(inputs, kind);
  return v;
}

/// Calls `compute(kind, n)` for every kind and small order, and for some around block edges.
template <class Compute>
void ForAllSizes(Compute compute) {
  for (int kind = 0; kind < static_cast<int>(Kind::kCount); ++kind) {
    for (const int n : {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 15,  16,
                        17, 23, 24, 25, 28, 29, 31, 32, 33, 40, 63, 64, 65, 99, 100, 101}) {
      compute(static_cast<Kind>(kind), n);
    }
  }
  for (const int n : {127, 128, 129, 255, 257}) compute(Kind::kUnit, n);
}

template <class T>
void AddMatrix(Hash& hash, T_Matrix<T>& m) {
  for (std::int64_t k = 0; k < std::int64_t{m.X()} * m.Y(); ++k) hash.Add(m.Item(k));
}

template <class T>
void AddVector(Hash& hash, const T_MatVector<T>& v) {
  for (int i = 0; i < v.Dim(); ++i) hash.Add(v[i]);
}

}  // namespace tarn_golden

#endif
