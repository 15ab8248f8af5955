#ifndef TARN_TESTS_GOLDEN_GOLDEN_MATRICES_H
#define TARN_TESTS_GOLDEN_GOLDEN_MATRICES_H

// Inputs and results of linear algebra.

#include <limits>

#include "golden_bits.h"
#include "tarn_base_math.h"

namespace tarn_golden {

enum class Kind { kUnit, kWide, kTied, kSignedZeros, kWithNonFinite, kCount };

template <class T>
T MakeElement(Inputs& inputs, Kind kind) {
  switch (kind) {
    case Kind::kWide:
      return static_cast<T>(inputs.Wide(-60, 60));
    case Kind::kTied:
      return static_cast<T>(inputs.Integer(-2, 2));
    case Kind::kSignedZeros:
      return static_cast<T>(static_cast<double>(inputs.Integer(-1, 1)) * 0.0);
    case Kind::kWithNonFinite:
      if (inputs.Integer(0, 60) == 0) return std::numeric_limits<T>::infinity();
      if (inputs.Integer(0, 60) == 0) return std::numeric_limits<T>::quiet_NaN();
      break;
    case Kind::kUnit:
    case Kind::kCount:
      break;
  }
  return static_cast<T>(inputs.Unit() - 0.5);
}

template <class T>
T_Matrix<T> MakeMatrix(Inputs& inputs, Kind kind, int rows, int cols) {
  T_Matrix<T> m(rows, cols);
  for (std::int64_t k = 0; k < std::int64_t{rows} * cols; ++k) {
    m.Item(k) = MakeElement<T>(inputs, kind);
  }
  return m;
}

template <class T>
T_MatVectorCol<T> MakeVector(Inputs& inputs, Kind kind, int n) {
  T_MatVectorCol<T> v(n);
  for (int i = 0; i < n; ++i) v[i] = MakeElement<T>(inputs, kind);
  return v;
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
