#ifndef TARN_LINALG_VECTOR_H
#define TARN_LINALG_VECTOR_H

/// @file
/// Dense vectors: `T_MatVector` and its two shapes, `T_MatVectorCol` and `T_MatVectorRow`.
///
/// What holds for every member:
///  - Indices are 0-based and not checked.
///  - Operands whose dimensions do not fit leave the target as it is or give 0 or null. No member
///    raises a host error.
///  - Sums run in increasing index order in the element type, every product rounded before it is
///    added, so a result is the same bits on every machine and for every kernel choice.
///  - Comparisons are ordered: a NaN element is never a maximum or minimum and is never clamped.
///  - Members that return a pointer return a new object that the caller deletes; they return null
///    when it cannot be had. When memory runs out inside such an object it has dimension 0.
///  - A negative dimension counts as a refused allocation.
///  - A null array argument with a positive count stands for zeros.
///
/// Storage is either owned (allocated with array new, freed by the vector) or wrapped (it belongs
/// to somebody else, who keeps it alive). Assigning a vector of the same dimension copies into the
/// storage at hand, also when it is wrapped: that is how a caller's array is filled in place.

#include <cstdint>
#include <type_traits>

#include "frame/export.h"
#include "frame/host_value.h"
#include "linalg/forward.h"

/// Dense vector of `float` or `double`.
///
/// `T_MatVectorCol` and `T_MatVectorRow` add no fields, so a function that takes a `T_MatVector`
/// takes either. Nothing is virtual: delete an object through a pointer of its own type.
template <class Element>
class T_MatVector {
 public:
  /// The other floating-point type, from which a vector can be converted.
  using OtherElement = std::conditional_t<std::is_same_v<Element, double>, float, double>;

  // Construction and assignment -----------------------------------------------------------------

  /// The empty vector: dimension 0, no storage.
  T_MatVector();
  /// `n` zeros; empty when `n` is 0 or the storage is refused.
  explicit T_MatVector(int n);
  /// A copy that owns its storage, also when `other` wraps.
  T_MatVector(const T_MatVector& other);
  /// A copy of `n` elements from `p`.
  T_MatVector(const Element* p, int n);
  /// `wrap` non-zero: wraps the `n` elements at `p` without copying; 0: the copy of the form above.
  T_MatVector(Element* p, int n, int wrap);
  /// `n` integers converted to the element type.
  T_MatVector(const int* p, int n);
  /// `n` numbers of the other floating-point type, widened or rounded.
  T_MatVector(const OtherElement* p, int n);
  /// The numbers of a host array, converted by the host. The storage has one spare element beyond
  /// the dimension; a value without elements gives dimension 0, one without an array zeros.
  explicit T_MatVector(Variable& v);
  /// Frees owned storage.
  ~T_MatVector();

  /// Copies the elements; storage is replaced (by owned storage) only when the dimensions differ.
  /// Dimension 0 when the new storage is refused.
  T_MatVector& operator=(const T_MatVector& other);
  /// The same from a host array; new storage has one spare element.
  T_MatVector& operator=(Variable& v);

  // Size, filling and access --------------------------------------------------------------------

  /// Number of elements.
  int Dim() const { return dim; }
  /// Changes the dimension; the first elements stay, new ones are 0. Owned afterwards unless the
  /// dimension stays as it is. Nothing changes when the storage is refused.
  void SetDim(int n);
  /// Makes the vector wrap the `n` elements at `p` after copying as many of its present elements
  /// there as fit. Given (a part of) the vector's own storage, which would not outlive the call, it
  /// is `SetDim(n)`.
  void SetDim(int n, Element* p);
  /// Stores `value` in every element; a zero of either sign stores +0.
  void Set(Element value);
  /// Becomes a copy of the `n` elements at `p`; storage is replaced only when the dimension
  /// differs.
  void Set(const Element* p, int n);
  /// Sets every element to 0.
  void Clear();
  /// Frees owned storage and leaves the empty vector; the ownership flag keeps its value.
  void Reset();

  Element& operator[](int i) { return data[i]; }       ///< Element i.
  Element operator[](int i) const { return data[i]; }  ///< Element i.
  operator Element*() { return data; }                 ///< The elements. NOLINT
  operator const Element*() const { return data; }     ///< The elements. NOLINT

  /// 1 when the dimensions and the bytes of all elements are equal, else 0: 0.0 and -0.0 differ,
  /// NaNs of the same bits are equal.
  int operator==(const T_MatVector& b) const;

  // Arithmetic in place -------------------------------------------------------------------------

  T_MatVector& operator*=(Element s);             ///< x[i] *= s
  T_MatVector& operator+=(Element s);             ///< x[i] += s
  T_MatVector& operator-=(Element s);             ///< x[i] -= s
  T_MatVector& operator+=(const T_MatVector& b);  ///< x[i] += b[i]; needs equal dimensions
  T_MatVector& operator-=(const T_MatVector& b);  ///< x[i] -= b[i]; needs equal dimensions
  /// x[i] /= b[i] over this dimension, which b must have.
  T_MatVector& DivByItem(const T_MatVector& b);
  T_MatVector& MulByItem(const Element* b);  ///< x[i] *= b[i] over this dimension
  /// out[i] = x[i]*b[i] over this dimension; the vector itself stays.
  T_MatVector& MulByItem(Element* out, const Element* b);

  // Arithmetic into a result --------------------------------------------------------------------

  /// r[i] = x[i] + b[i]. Returns 1, or 0 without writing when a dimension differs from this one.
  int Add(T_MatVector& r, const T_MatVector& b) const;
  /// r[i] = x[i] + k*b[i], checked the same way.
  int Add(T_MatVector& r, const T_MatVector& b, Element k) const;
  /// r[i] = x[i] - b[i], checked the same way.
  int Sub(T_MatVector& r, const T_MatVector& b) const;
  /// r[i] = x[i] - k*b[i], checked the same way.
  int Sub(T_MatVector& r, const T_MatVector& b, Element k) const;
  // The same four over arrays of this dimension.
  void Add(Element* r, const Element* b) const;             ///< r[i] = x[i] + b[i]
  void Add(Element* r, const Element* b, Element k) const;  ///< r[i] = x[i] + k*b[i]
  void Sub(Element* r, const Element* b) const;             ///< r[i] = x[i] - b[i]
  void Sub(Element* r, const Element* b, Element k) const;  ///< r[i] = x[i] - k*b[i]
  /// Becomes (wa*a[i] + wb*b[i])/(wa + wb); nothing when the dimensions of a and b differ. Weights
  /// that add up to 0 are not caught.
  T_MatVector& WeightedSum(const T_MatVector& a, Element wa, const T_MatVector& b, Element wb);

  // Reductions and metrics ----------------------------------------------------------------------
  // The other operands must hold at least this dimension; a matrix at least as many rows, and
  // exactly as many columns for the forms to mean what they say. Only `ScalarMultiply` checks.

  /// Dot product; 0 when the dimensions differ.
  Element ScalarMultiply(const T_MatVector& b) const;
  /// Dot product with an array of this dimension.
  Element ScalarMultiply(const Element* b) const;
  Element Norm() const;   ///< sqrt(sum of squares)
  Element Norm2() const;  ///< sum of squares
  /// Quadratic form: sum over i of x[i]*(sum over j of m(i, j)*x[j]).
  Element Norm2(const T_Matrix<Element>& m) const;
  /// sqrt of the quadratic form; NaN when the form is negative.
  Element Norm(const T_Matrix<Element>& m) const;
  /// sqrt(sum of (x[i] - b[i])^2)
  Element Distance(const T_MatVector& b) const;
  /// sqrt of the quadratic form of d = x - b: m is the metric itself, so the classical distance
  /// (Mahalanobis 1936) needs an inverse covariance. NaN when the form is negative.
  Element MahalonabisDistance(const T_MatVector& b, const T_Matrix<Element>& m) const;
  /// (x.b)/sqrt(|x|^2*|b|^2); 0 when either sum of squares is not positive.
  Element Cosine(const T_MatVector& b) const;
  /// (x.m.b)/sqrt((x.m.x)*(b.m.b)); 0 when the vector is empty or either form is not positive.
  Element MahalonabisCosine(const T_MatVector& b, const T_Matrix<Element>& m) const;
  /// Largest element above -1e300 (minus infinity for `float`), which is the value for an empty
  /// vector. Of zeros of both signs the first counts.
  Element Max() const;
  /// Smallest element below 1e300 (infinity for `float`), which is the value for an empty vector.
  Element Min() const;
  Element AbsMax() const;  ///< largest absolute value; 0 for an empty vector
  int MaxIndex() const;    ///< index of the first of the largest elements; 0 when there is none
  int MinIndex() const;    ///< index of the first of the smallest elements; 0 when there is none
  /// The sum of the elements: the division by the dimension is left to the caller.
  Element Mean() const;
  /// Multiplies every element by 1/`Norm()` when the sum of squares is positive.
  void Normalize();
  /// Clamps element i into [bounds[2i], bounds[2i+1]]; the lower limit is tested first. Returns 1
  /// when an element changed, else 0. `bounds` holds two values per element.
  int Bind(const T_MatVector& bounds);

  // Host conversion -----------------------------------------------------------------------------

  /// Makes `v` a script object "MVector" of this dimension with these elements. Nothing happens
  /// when there is no current processor.
  void ExportToMVector(Variable& v) const;
  /// Makes `v` a plain host array of these elements.
  void ExportToVector(Variable& v) const;

 protected:
  static Element Dump;  ///< Part of the exported interface; the module itself does not use it.

  std::int32_t dim;        ///< number of elements
  Element* data;           ///< the elements; null: none
  std::int32_t owns_data;  ///< 1: `data` was allocated here and is freed here; 0: it is wrapped

 private:
  void FreeOwned();
  void Adopt(Element* storage, std::int64_t n);
  void ReplaceByCopy(const Element* p, std::int64_t n);
  template <class Source>
  void ReplaceByConversion(const Source* p, int n);
  void AdoptForHost(std::int64_t n);
  void FillFromHost(const Variable& v);
  void FillHostArray(Variable& v) const;
};

/// Column vector.
template <class Element>
class T_MatVectorCol : public T_MatVector<Element> {
 public:
  using typename T_MatVector<Element>::OtherElement;

  /// @name As in T_MatVector: constructors and assignments
  /// @{

  /// As the one of T_MatVector.
  T_MatVectorCol();
  explicit T_MatVectorCol(int n);
  T_MatVectorCol(const T_MatVectorCol& other);
  explicit T_MatVectorCol(const T_MatVector<Element>& other);
  T_MatVectorCol(const Element* p, int n);
  T_MatVectorCol(Element* p, int n, int wrap);
  T_MatVectorCol(const int* p, int n);
  T_MatVectorCol(const OtherElement* p, int n);
  explicit T_MatVectorCol(Variable& v);
  T_MatVectorCol& operator=(const T_MatVectorCol& other);
  T_MatVectorCol& operator=(const T_MatVector<Element>& other);
  T_MatVectorCol& operator=(Variable& v);
  /// @}

  /// @name As in T_MatVector: operators in place
  /// @{

  /// As the one of T_MatVector.
  T_MatVectorCol& operator*=(Element s);
  T_MatVectorCol& operator+=(Element s);
  T_MatVectorCol& operator-=(Element s);
  T_MatVectorCol& operator+=(const T_MatVector<Element>& b);
  T_MatVectorCol& operator-=(const T_MatVector<Element>& b);
  /// @}

  T_MatVectorCol* operator*(Element s) const;  ///< new: x[i]*s
  T_MatVectorCol* operator+(Element s) const;  ///< new: x[i] + s
  T_MatVectorCol* operator-(Element s) const;  ///< new: x[i] - s
  /// New: x[i] + b[i]; a copy of this vector when the dimensions differ.
  T_MatVectorCol* operator+(const T_MatVectorCol& b) const;
  /// New: x[i] - b[i]; a copy of this vector when the dimensions differ.
  T_MatVectorCol* operator-(const T_MatVectorCol& b) const;
  /// New outer product: element (i, j) = x[i]*r[j].
  T_Matrix<Element>* operator*(const T_MatVectorRow<Element>& r) const;
  /// New row vector of the same elements.
  T_MatVectorRow<Element>* T() const;

  /// Dot product; 0 when the dimensions differ.
  Element ScalarProduct(const T_MatVector<Element>& b) const;
  /// Outer product into `m`, which takes the shape: m(i, j) = x[i]*r[j].
  void RightMultiply(T_Matrix<Element>& m, const T_MatVectorRow<Element>& r) const;
};

/// Row vector.
///
/// Its two products with a matrix run along the rows of the storage: with X columns, element i is
/// the sum over j below this dimension of the matrix element at row-major position i*X + j times
/// x[j]. For a square matrix that is m*x, not the product of row and matrix. Positions beyond the
/// end of a matrix that is not square count as 0.
template <class Element>
class T_MatVectorRow : public T_MatVector<Element> {
 public:
  using typename T_MatVector<Element>::OtherElement;

  /// @name As in T_MatVector: constructors and assignments
  /// @{

  /// As the one of T_MatVector.
  T_MatVectorRow();
  explicit T_MatVectorRow(int n);
  T_MatVectorRow(const T_MatVectorRow& other);
  explicit T_MatVectorRow(const T_MatVector<Element>& other);
  T_MatVectorRow(const Element* p, int n);
  T_MatVectorRow(Element* p, int n, int wrap);
  T_MatVectorRow(const int* p, int n);
  T_MatVectorRow(const OtherElement* p, int n);
  explicit T_MatVectorRow(Variable& v);
  T_MatVectorRow& operator=(const T_MatVectorRow& other);
  T_MatVectorRow& operator=(const T_MatVector<Element>& other);
  T_MatVectorRow& operator=(Variable& v);
  /// @}

  /// Dot product; 0 when the dimensions differ.
  Element operator*(const T_MatVectorCol<Element>& c) const;
  /// New vector of `m.X()` elements as described above; null when the dimension is not `m.Y()`.
  T_MatVectorRow* operator*(const T_Matrix<Element>& m) const;
  /// The same into `out`, which takes the dimension; nothing when the dimension is not `m.Y()`.
  void RightMultiply(T_MatVectorRow& out, const T_Matrix<Element>& m) const;
};

extern template class T_MatVector<float>;
extern template class T_MatVector<double>;
extern template class T_MatVectorCol<float>;
extern template class T_MatVectorCol<double>;
extern template class T_MatVectorRow<float>;
extern template class T_MatVectorRow<double>;

#endif
