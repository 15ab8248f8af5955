#ifndef TARN_TESTS_LINALG_LINALG_SUPPORT_H
#define TARN_TESTS_LINALG_LINALG_SUPPORT_H

// What the tests of vectors, matrices and kernels share: fixtures, shorthand for contents, and the
// inputs of solve_support.h.

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <vector>

#include "linalg/solve_support.h"

/// A fixture with a host, for each element type.
template <class T>
class ElementTest : public ::testing::Test {
 protected:
  EmbeddedHost host;
};

template <class T>
T_MatVectorCol<T> Col(std::initializer_list<double> values) {
  T_MatVectorCol<T> v(static_cast<int>(values.size()));
  int i = 0;
  for (double value : values) v[i++] = static_cast<T>(value);
  return v;
}

template <class T>
T_MatVectorRow<T> Row(std::initializer_list<double> values) {
  return T_MatVectorRow<T>(Col<T>(values));
}

template <class T>
T_Matrix<T> Mat(int rows, int cols, std::initializer_list<double> values) {
  T_Matrix<T> m(rows, cols);
  std::int64_t k = 0;
  for (double value : values) m.Item(k++) = static_cast<T>(value);
  return m;
}

template <class T>
std::vector<double> Contents(const T_MatVector<T>& v) {
  std::vector<double> contents;
  for (int i = 0; i < v.Dim(); ++i) contents.push_back(static_cast<double>(v[i]));
  return contents;
}

template <class T>
std::vector<double> Contents(const T_Matrix<T>& m) {
  std::vector<double> contents;
  for (int i = 0; i < m.Y(); ++i) {
    for (int j = 0; j < m.X(); ++j) contents.push_back(static_cast<double>(m(i, j)));
  }
  return contents;
}

using Doubles = std::vector<double>;

/// Looks at the protected fields of a vector.
template <class T>
struct VectorFields : T_MatVector<T> {
  using Base = T_MatVector<T>;
  static T* Data(const Base& v) { return v.*&VectorFields::data; }
  static int OwnsData(const Base& v) { return v.*&VectorFields::owns_data; }
  static T* DumpAddress() { return &Base::Dump; }
  static constexpr std::size_t DimOffset() { return offsetof(VectorFields, dim); }
  static constexpr std::size_t DataOffset() { return offsetof(VectorFields, data); }
  static constexpr std::size_t OwnsDataOffset() { return offsetof(VectorFields, owns_data); }
};

/// Looks at the protected members of a matrix.
template <class T>
struct MatrixFields : T_Matrix<T> {
  using Base = T_Matrix<T>;
  static T* Data(const Base& m) { return m.*&MatrixFields::data; }
  static T* Work(const Base& m) { return m.*&MatrixFields::work; }
  static int OwnsData(const Base& m) { return m.*&MatrixFields::owns_data; }
  static constexpr std::size_t XOffset() { return offsetof(MatrixFields, x); }
  static constexpr std::size_t YOffset() { return offsetof(MatrixFields, y); }
  static constexpr std::size_t OwnsDataOffset() { return offsetof(MatrixFields, owns_data); }
  static constexpr std::size_t DataOffset() { return offsetof(MatrixFields, data); }
  static constexpr std::size_t WorkOffset() { return offsetof(MatrixFields, work); }
  static T MinTypeValue() { return Base::GetMinTypeValue(); }
  static void Exchange(Base& m, T* a, T* b) { (m.*&MatrixFields::SwapLines)(a, b); }
};

#endif
