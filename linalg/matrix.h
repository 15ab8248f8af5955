#ifndef TARN_LINALG_MATRIX_H
#define TARN_LINALG_MATRIX_H

/// @file
/// Dense row-major matrix `T_Matrix`.
///
/// What holds for every member:
///  - A shape is given as rows, columns; `X()` is the number of columns, `Y()` that of rows.
///    Indices are 0-based; element access does not check them.
///  - Operands whose shapes do not fit leave the target as it is or give 0 or null.
///  - Sums run in the order stated, in the element type, every product rounded before it is added;
///    where nothing is stated, in increasing index order.
///  - Members that return a pointer return a new object that the caller deletes; null also when the
///    object itself cannot be had.
///  - When storage is refused, a matrix keeps the shape asked for with no elements; every member
///    but element access then does nothing. A negative dimension counts as refused and leaves
///    0 x 0.
///  - Nothing is virtual: delete an object through a pointer of its own type.
///  - A result may be one of the operands.
///
/// An owning matrix holds its elements (array new) and, from the host heap, a scratch vector for
/// the decompositions; it has both or neither. A wrapping matrix uses a caller's buffer for both.

#include <cstdint>

#include "arrays/typed_array.h"
#include "frame/export.h"
#include "frame/host_value.h"
#include "linalg/forward.h"

/// Dense matrix of `float` or `double`.
template <class Element>
class T_Matrix {
 public:
  // Construction and shape ----------------------------------------------------------------------

  /// The empty matrix: 0 x 0 without storage.
  T_Matrix();
  /// n x n zeros.
  explicit T_Matrix(int n);
  /// rows x cols zeros.
  T_Matrix(int rows, int cols);
  /// A copy of rows*cols elements from `p`, row after row.
  T_Matrix(int rows, int cols, const Element* p);
  /// A copy that owns its storage, also when `other` wraps.
  T_Matrix(const T_Matrix& other);
  /// The numbers of a host array of rows. Raises host error 3 when there are no rows, the first row
  /// is empty or a row differs from it in length (elements from that row on are then 0).
  explicit T_Matrix(Variable& v);
  /// `Reset()`.
  ~T_Matrix();

  /// A deep copy. Storage that holds as many elements is kept, also when it is wrapped.
  T_Matrix& operator=(const T_Matrix& other);

  /// Frees owned storage; the shape stays as it is. A wrapping matrix is left untouched.
  void Reset();
  /// Changes the shape. The same number of elements is reinterpreted in place as long as the
  /// scratch vector is long enough; otherwise new, owned, zero-filled storage is taken.
  void SetDim(int rows, int cols);
  /// Wraps `buf`, which holds rows*cols elements and behind them max(rows, cols) + 1 elements of
  /// scratch. `clear`: sets the elements to 0. Given (a part of) the matrix's own storage it is
  /// `SetDim(rows, cols)`, because that storage would not outlive the call.
  void SetDim(int rows, int cols, Element* buf, bool clear);
  /// Exchanges shape and storage but not the ownership flags: each object keeps its own. After a
  /// swap of an owner with a wrapper the owner frees what the wrapper had and the wrapper frees
  /// nothing, so swap them back before either is destroyed.
  void Swap(T_Matrix& other);

  int X() const { return x; }  ///< Number of columns.
  int Y() const { return y; }  ///< Number of rows.

  // Elements ------------------------------------------------------------------------------------

  Element* operator[](int i) { return data + Offset(i, 0); }              ///< Row i.
  const Element* operator[](int i) const { return data + Offset(i, 0); }  ///< Row i.
  Element& operator()(int i, int j) { return data[Offset(i, j)]; }        ///< Row i, column j.
  Element operator()(int i, int j) const { return data[Offset(i, j)]; }   ///< Row i, column j.
  Element& Item(std::int64_t k) { return data[k]; }                       ///< k = i*X() + j.

  /// Stores `value` in every element; a zero of either sign stores +0.
  void Set(Element value);
  /// Stores `value` in every element (k, k).
  void SetDiagonal(Element value);
  /// Stores d[k] in every element (k, k); d holds at least min(X(), Y()) elements.
  void SetDiagonal(const T_MatVector<Element>& d);
  /// Copies X() elements into row i; nothing outside the matrix.
  void SetRow(const Element* p, int i);
  /// Copies Y() elements into column j; nothing outside the matrix.
  void SetColumn(const Element* p, int j);
  /// Copies row i to `v`, which takes the dimension; nothing outside the matrix.
  void GetRow(T_MatVector<Element>& v, int i) const;
  /// Copies column j to `v`, which takes the dimension; nothing outside the matrix.
  void GetColumn(T_MatVector<Element>& v, int j) const;
  /// New matrix without the listed rows and columns. Both lists are sorted in place; each index
  /// stands in its list once and lies inside the matrix.
  T_Matrix* GetMinor(T_Array<int>& rows, T_Array<int>& cols) const;
  /// Exchanges columns a and b; nothing when one lies outside.
  void SwapColumns(int a, int b);
  /// Transposes in place, a matrix that is not square through a block of the host heap. Refused
  /// that block, it exchanges the dimensions and leaves the elements where they are.
  void Transpose();

  // Arithmetic in place -------------------------------------------------------------------------

  T_Matrix& operator*=(Element s);          ///< every element times s
  T_Matrix& operator+=(Element s);          ///< every element plus s
  T_Matrix& operator-=(Element s);          ///< every element minus s
  T_Matrix& operator+=(const T_Matrix& b);  ///< element by element; needs equal shapes
  T_Matrix& operator-=(const T_Matrix& b);  ///< element by element; needs equal shapes
  /// Forms this*b and copies it back as far as both hold elements; the shape stays, so the result
  /// is the product only for a square b. Nothing when X() is not b.Y().
  T_Matrix& operator*=(const T_Matrix& b);
  /// this*diag(d): column j times d[j]; nothing when d's dimension is not X().
  T_Matrix& MultByDiagonalMatrix(const T_MatVector<Element>& d);

  // New results ---------------------------------------------------------------------------------

  /// this*b, every element a sum in increasing inner index from 0; null when X() is not b.Y().
  T_Matrix* operator*(const T_Matrix& b) const;
  /// this*v; null when X() is not v's dimension.
  T_MatVectorCol<Element>* operator*(const T_MatVectorCol<Element>& v) const;
  T_Matrix* operator*(Element s) const;          ///< every element times s
  T_Matrix* operator+(const T_Matrix& b) const;  ///< sum; null when the shapes differ
  T_Matrix* operator-(const T_Matrix& b) const;  ///< difference; null when the shapes differ
  T_Matrix* operator+(Element s) const;          ///< every element plus s
  T_Matrix* operator-(Element s) const;          ///< every element minus s
  T_Matrix* T() const;                           ///< transpose

  // Products into a result ----------------------------------------------------------------------

  /// c = this*b, summed as by `operator*`. Returns 1; 0 with c untouched when X() is not b.Y() or
  /// an operand lacks its elements, 0 also when c's storage is refused.
  int Mul(const T_Matrix& b, T_Matrix& c) const;
  /// c = this*transpose(b): c(i, j) = sum over k of (i, k)*b(j, k). Returns as `Mul`; needs equal
  /// X().
  int MulT(const T_Matrix& b, T_Matrix& c) const;
  /// out = this*v; nothing when X() is not v's dimension.
  void Mul(T_MatVector<Element>& out, const T_MatVectorCol<Element>& v) const;
  /// The same into a column vector.
  void RightMultiply(T_MatVectorCol<Element>& out, const T_MatVectorCol<Element>& v) const;
  /// The same from X() to Y() elements, which must not overlap.
  void RightMultiply(Element* out, const Element* v) const;

  // Reductions ----------------------------------------------------------------------------------

  /// Largest element above -1e300 (minus infinity for `float`), which is the value when there is
  /// none. Of zeros of both signs the first counts.
  Element Max() const;
  /// Smallest element below 1e300 (infinity for `float`), which is the value when there is none.
  Element Min() const;
  /// Column and row of the first of the largest elements in row order; 0, 0 when there is none.
  void MaxItemIndex(int& col, int& row) const;
  /// Column and row of the first of the smallest elements in row order; 0, 0 when there is none.
  void MinItemIndex(int& col, int& row) const;
  /// Sum of the elements divided by their number: 0 without storage, NaN for storage of no
  /// elements.
  Element Mean() const;
  /// Trace, summed from the last diagonal element to the first.
  Element Tr() const;
  /// Sum of the squares, from the last element to the first.
  Element GetPower() const;
  /// Sum of (i, j)*b(i, j), from the last element to the first; 0 when the shapes differ. The name
  /// stands for the convolution of two matrices.
  Element Convolove(const T_Matrix& b) const;
  /// transpose(a)*this*b = sum over i of a[i]*(sum over j of (i, j)*b[j]); 0 when the dimensions do
  /// not fit.
  Element QuadraticForm(const T_MatVector<Element>& a, const T_MatVector<Element>& b) const;
  /// Multiplies every row whose sum of squares is positive by 1/(its Euclidean norm).
  void NormalizeByRow();

  // Linear systems, determinants and inverses ---------------------------------------------------
  // Direct methods for square matrices, on a private copy: the matrix itself is never changed. A
  // pivot counts as singular only when it is exactly 0. NaN and infinite elements run through the
  // arithmetic. Every element sees the operations of the textbook loops in their order, so results
  // are the same bits for every kernel choice. Storage that is refused raises host error 1, in
  // members that do not say otherwise too, and gives 0, null or an untouched result.

  /// Solves this*solution = b by Gaussian elimination with partial pivoting (solve_elimination.h).
  /// `b` and `solution` hold X() elements and may be the same array. The work copy of b is on the
  /// stack below order 100, in the host heap otherwise. Returns 1, or 0 with zeros in `solution`
  /// after a failure, which unless `quiet` raises host error 3 (not square, `solution` untouched),
  /// 1 (memory) or 10 (singular). Order 0 is solved.
  int SolveSystem(const Element* b, Element* solution, int quiet) const;
  /// `SolveSystem(b, solution, 0)`.
  int SolveSystem(const Element* b, Element* solution) const;
  /// The solution in a new array, which the caller frees with array delete; null after a failure,
  /// raised as above.
  Element* SolveSystem(const Element* b) const;
  /// Determinant: closed formulas up to order 3, from 4 on the product of the pivots of Gaussian
  /// elimination, 0 at a zero pivot. Order 0 gives 1. Not square: host error 3 and 0.
  Element Det() const;
  /// ln |Det()| without overflow: the matrix is divided by the mean absolute value of its elements
  /// and eliminated, the logarithms of its pivots are summed. Order 2 takes the logarithm of the
  /// closed formula, minus infinity for a singular matrix; at all other orders a singular matrix
  /// gives 0, and so does order 0. Not square: host error 3 and 0.
  Element LogAbsDet() const;
  /// The sum of the logarithms of the singular values, from the smallest to the largest: ln |Det()|
  /// of a square matrix. NaN (with its sign bit set) when a singular value is not positive, so for
  /// every matrix with more columns than rows.
  Element LnDet() const;
  /// Writes the inverse into `r`, which has this shape and may be this matrix. Closed formulas up
  /// to order 3, without a test: a singular matrix gives infinities and NaN. From order 4 on
  /// elimination without row exchanges (inverse_elimination.h), made for Hessians and covariances,
  /// whose leading pivots do not vanish: a zero pivot before the last raises host error 10, also
  /// when the matrix has an inverse. Not square or `r` of another shape: host error 3. `r` is
  /// untouched after an error.
  void Inverse(T_Matrix& r) const;
  /// The inverse in a new matrix; zeros after host error 10, null after 1 and 3.
  T_Matrix* Inverse() const;
  /// New lower triangular Cholesky factor L, this = L*transpose(L), zeros above the diagonal. Only
  /// the upper triangle is read; symmetry is not tested. Null after a failure, raised as host error
  /// 3 with "Matrix is not symmetric" (not square) or "Matrix, with rounding errors, is is not
  /// positive defined" (a diagonal term is not positive; a NaN passes), or as 1.
  T_Matrix* CholeskyDecompse() const;

  // Singular value decomposition ----------------------------------------------------------------
  // this = U*diag(w)*transpose(V) for Y() rows and X() columns of any ratio, by the Golub-Reinsch
  // method (svd_reflection.h, svd_iteration.h). Refused storage raises host error 1 and gives 0 or
  // null.

  /// Decomposes in place: this matrix becomes U (its shape stays), `w` the X() singular values in
  /// descending order, none negative, `v` the X() x X() matrix V. The columns of U and V belong to
  /// the values; each pair has the sign that makes the sum of the column of V times the mean of the
  /// matrix not negative. With more columns than rows the values beyond Y() are 0. A value takes at
  /// most 30 sweeps and one that has not converged is not reported, so NaN and infinity end as
  /// well. Returns 1, with empty factors when there are no elements; 0 after an error. `v` is
  /// another matrix than this one (host error 3).
  int SVD(T_MatVectorCol<Element>& w, T_Matrix& v);
  /// The same; a null `w` or `v` is replaced by a new one, which the caller deletes, also after an
  /// error.
  int SVD(T_MatVectorCol<Element>*& w, T_Matrix*& v);
  /// New Moore-Penrose inverse V*diag(1/w)*transpose(U), X() x Y(). Singular values not above
  /// `GetMinTypeValue()` times their sum count as zeros, whose inverse is taken as 0.
  T_Matrix* PseudoInverse() const;
  /// The least-squares solution of least norm of this*solution = b, for Y() elements b and X()
  /// elements `solution`, which may be the same array. Singular values not above
  /// `GetMinTypeValue()` times the largest count as zeros. Returns 1; 0 after an error.
  int SolveSystemBySVD(const Element* b, Element* solution) const;
  /// The solution in a new array, which the caller frees with array delete; null after host error 3
  /// (not square) or 1.
  Element* SolveSystemBySVD(const Element* b) const;
  /// `SolveSystemBySVD_Reg_ex` on a copy.
  int SolveSystemBySVD_Reg(const Element* b, Element* solution, Element lambda) const;
  /// Decomposes in place as `SVD(w, v)` does and solves with a regularisation that depends on the
  /// condition. Smallest over largest singular value not below lambda: the solution
  /// V*diag(1/w)*transpose(U)*b without a cut-off (a zero gives infinity or NaN), and this matrix
  /// is left transposed. Below, also when the ratio or lambda is NaN: V times the filter
  /// coefficients w/(w^2 + (w[0]*lambda)^2), which does not depend on b; with fewer rows than
  /// columns its first Y() elements are stored and the others stay as they are. Returns 1; 0 after
  /// an error.
  int SolveSystemBySVD_Reg_ex(T_Matrix*& v, T_MatVectorCol<Element>*& w, const Element* b,
                              Element* solution, Element lambda);

 protected:
  /// Smallest magnitude that the decompositions take for non-zero: 1e-80, for `float` 1e-15.
  static Element GetMinTypeValue();
  /// sqrt(a^2 + b^2) without overflow; 0 when b is 0 and a is NaN.
  static Element Pythag(Element a, Element b);
  /// Exchanges the X() elements of two rows.
  void SwapLines(Element* a, Element* b);

  std::int32_t x;          ///< columns
  std::int32_t y;          ///< rows
  std::int32_t owns_data;  ///< 1: `data` and `work` were allocated here and are freed here
  Element* data;           ///< the elements, row by row; null: none
  Element* work;  ///< max(x, y) + 1 elements of scratch; contents do not last between calls

 private:
  std::int64_t Offset(int i, int j) const { return static_cast<std::int64_t>(i) * x + j; }
  std::int64_t Count() const { return Offset(y, 0); }
  std::int64_t StoredCount() const { return data != nullptr ? Count() : 0; }
  bool HasItsElements() const { return data != nullptr || Count() == 0; }
  bool HasShape(int rows, int cols) const { return x == cols && y == rows; }
  bool FitsInPlace(int rows, int cols) const;
  void SetShape(int rows, int cols);
  void Allocate(int rows, int cols);
  void CopyToNewStorage(const T_Matrix& other);
  void FillRowFromHost(int i, const Variable& row);
  void CopyRowWithout(const T_Array<int>& cols, const Element* row, int count,
                      Element* target) const;
  void TransposeTiles(int i, int j);
  void TransposeSquare();
  void TransposeThroughCopy();
  void GetPosition(std::int64_t index, int& col, int& row) const;
  void MultiplyInto(const T_Matrix& b, T_Matrix& c) const;
  void MultiplyTransposedInto(const T_Matrix& b, T_Matrix& c) const;
};

extern template class T_Matrix<float>;
extern template class T_Matrix<double>;

#endif
