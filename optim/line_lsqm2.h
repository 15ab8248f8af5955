#ifndef TARN_OPTIM_LINE_LSQM2_H
#define TARN_OPTIM_LINE_LSQM2_H

/// @file
/// Linear least-squares fit with optional outlier-tolerant refinement: `T_Line_LSQM2`.

#include "frame/export.h"

template <class T>
class T_Climb;
template <class Element>
class T_Matrix;

namespace tarn {
template <class T>
class NormalEquations;
}

/// Fits y = sum over k of a_k*f_k(x) with M given basis functions to N points (x_i, y_i) whose
/// errors have the variances var_i.
///
/// **Plain fit** (`DoIt(0)`): the weighted normal equations Aw*a = bw with Aw[k][j] = sum of
/// f_k*f_j/var and bw[k] = sum of f_k*y/var. Where det(Aw) lies outside [1e-16, 1e16], a thousandth
/// of its smallest diagonal element is added to every diagonal element first; a matrix that is
/// singular even so raises host error 10 and ends the fit.
///
/// **Refined fit** (`DoIt` of anything else): from the plain solution the minimiser `T_Climb`
/// maximises a likelihood with tails so long that outliers hardly count. Both take the stated
/// errors for lower limits and integrate over larger ones (Sivia and Skilling, Data Analysis: A
/// Bayesian Tutorial, 2006, section 8.3). With r_i = y_i - sum of a_k*f_k(x_i):
///  - `SetPrior(0)`, at first: product of (1 - exp(-R_i/2))/R_i, R_i = r_i^2/var_i;
///  - `SetPrior` of anything else: product of erf(|r_i|/sqrt(2*var_i))/|r_i|.
/// Coefficient k is searched within ten times sqrt(S1/Aw[k][k]) of 0, S1 being the sum of y^2/var
/// (within ten times its plain value where Aw[k][k] is not positive, within 1000 where that is 0).
///
/// Sums run over the points in their order, in the element type. Every basis function is called for
/// each point, and once more for each product with itself and those after it.
///
/// The arrays of basis functions, values, abscissae and variances stay the caller's and must
/// outlive the object. Instantiated for `float` and `double`.
template <class T>
class TARN_API T_Line_LSQM2 {
 public:
  /// Value of a basis function at `x`; `extra` is the pointer given with the functions.
  using Basis = T (*)(T x, void* extra);

  /// `m` basis functions, `n` points; `accuracy` is that of the minimiser. Counts below 0 are 0.
  T_Line_LSQM2(T (**basis)(T, void*), int m, T* y, T* x, T* var, int n, T accuracy);
  T_Line_LSQM2(const T_Line_LSQM2& other);             ///< A deep copy; the arrays are shared.
  T_Line_LSQM2& operator=(const T_Line_LSQM2& other);  ///< A deep copy; the arrays are shared.
  ~T_Line_LSQM2();

  /// The argument `extra` of the basis functions; null at first.
  void SetExtraParam(void* extra);
  /// The likelihood of a refined fit.
  void SetPrior(int prior);

  /// Fits. `mode` 0: the plain fit; anything else: refined. Raises 10 (singular), 1 (memory) and
  /// what the minimiser raises.
  void DoIt(int mode);

  /// Coefficient k; 0 before the first fit, and where there is no such coefficient.
  T GetA(int k) const;
  /// The M coefficients, inside the object; null when they could not be allocated.
  T* GetResult();
  /// Sum of r_i^2/var_i. The plain fit computes it as |S1 - bw.a|.
  T GetChi2() const;
  /// Sum of r_i^2. The plain fit computes it as |S0 - b.a| with S0 the sum of y^2 and b[k] that of
  /// f_k*y.
  T GetResidue() const;
  /// Logarithm of the probability (evidence) of the model. Plain fit: ln(2*pi)*M/2 - L - ln
  /// det(A)/2 - ln(residue)*(N - 2)/2 with A[k][j] the sum of f_k*f_j, L the sum of
  /// ln(S0/A[k][k])/2 over positive A[k][k], and 1e-8 for a residue that is not positive. Refined
  /// fit: ln(4*pi)*M/2 - residue/2 + ln det(covariance)/2 - L with L the sum of ln(S1/Aw[k][k])/2
  /// over positive Aw[k][k]. Determinants count by their absolute values (`T_Matrix::LnDet`).
  T GetLogProb() const;
  /// Covariance of the coefficients, inside the object: the pseudo-inverse of Aw after a plain fit,
  /// that of the minimiser after a refined one; null before the first.
  const T_Matrix<T>* GetCovariance() const;

 private:
  void Accumulate(tarn::NormalEquations<T>& sums) const;
  void PlainResult(const tarn::NormalEquations<T>& sums);
  // Names that begin with an underscore and a capital are reserved to compilers; these are fixed.
  // NOLINTBEGIN(bugprone-reserved-identifier)
  void _DoIt(T s1, const T_Matrix<T>& aw);
  void _DoIt_1(T s1, const T_Matrix<T>& aw);
  // NOLINTEND(bugprone-reserved-identifier)
  void Refine(T s1, const T_Matrix<T>& aw, void* objective, T* errors);
  bool WasRefusedMemory(const T_Climb<T>& climb) const;
  void SumResiduals();
  T Model(T x) const;
  void ReplaceCovariance(T_Matrix<T>* covariance);
  void CopyFrom(const T_Line_LSQM2& other);

  T* coeff_;
  T_Matrix<T>* covariance_;
  Basis* basis_;
  int m_;
  T chi2_;
  T residue_;
  T logProb_;
  T* y_;
  T* x_;
  T* var_;
  int n_;
  T accuracy_;
  int prior_;
  void* extra_;
};

extern template class T_Line_LSQM2<float>;
extern template class T_Line_LSQM2<double>;

#endif
