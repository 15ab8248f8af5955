#ifndef TARN_LINALG_VECTOR_SET_H
#define TARN_LINALG_VECTOR_SET_H

/// @file
/// Fixed-length sets of column vectors, `MatVectorColSet`.

#include <cstdint>

#include "frame/export.h"
#include "linalg/vector.h"

/// An array of `double` column vectors, such as a set of points or of search directions. Copies are
/// deep. No member raises a host error. A set that is refused its array holds no vectors although
/// `Len()` may say otherwise: it then gives the number asked for at construction (0 for the
/// constructor from a number), or the number before an assignment.
class TARN_API MatVectorColSet {
 public:
  /// `n` empty vectors; a negative `n` counts as a refused allocation.
  explicit MatVectorColSet(int n);
  /// The rows of a host array of arrays: at least one vector, each of the length of the first row
  /// but at least 1. What a shorter row or a value without an array leaves open is 0.
  explicit MatVectorColSet(Variable& v);
  /// Copies vector by vector.
  MatVectorColSet(const MatVectorColSet& other);
  ~MatVectorColSet();

  /// Copies vector by vector; the array is replaced only when the lengths differ.
  MatVectorColSet& operator=(const MatVectorColSet& other);

  T_MatVectorCol<double>& operator[](int i) { return items[i]; }              ///< Vector i.
  const T_MatVectorCol<double>& operator[](int i) const { return items[i]; }  ///< Vector i.
  int Len() const { return count; }  ///< Number of vectors.

 protected:
  T_MatVectorCol<double>* items;  ///< the vectors; null: none
  std::int32_t count;             ///< their number

 private:
  void CopyVectors(const MatVectorColSet& other);
};

#endif
