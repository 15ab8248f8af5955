#ifndef TARN_OPTIM_LINE_LSQM2_IMPL_H
#define TARN_OPTIM_LINE_LSQM2_IMPL_H

/// @file
/// `T_Line_LSQM2`: accumulation, plain fit, refinement.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "linalg/matrix.h"
#include "linalg/vector.h"
#include "optim/climb.h"
#include "optim/line_lsqm2.h"
#include "optim/matrix_copy.h"
#include "optim/search_host.h"
#include "special/error_function.h"

namespace tarn {

/// Positions in the extra parameter of the refinement's objectives.
enum FitArgument {
  kFitAbscissae,
  kFitValues,
  kFitErrors,
  kFitPointCount,
  kFitBasis,
  kFitBasisCount,
  kFitExtra,
  kFitArgumentCount
};

/// The sums over the points that a fit is computed from.
template <class T>
class NormalEquations {
 public:
  explicit NormalEquations(int m) : aw(m, m), a(m, m), bw(m), b(m) {}

  bool HasStorage(int m) const {
    return bw.Dim() == m && b.Dim() == m && (m == 0 || (aw[0] != nullptr && a[0] != nullptr));
  }

  /// Copies the lower triangles to the upper ones.
  void Mirror() {
    for (int k = 0; k < bw.Dim(); ++k) {
      for (int j = 0; j < k; ++j) {
        aw(j, k) = aw(k, j);
        a(j, k) = a(k, j);
      }
    }
  }

  /// Makes a badly scaled weighted matrix solvable.
  void Regularise() {
    const T determinant = aw.Det();
    if (determinant >= T(1e-16) && determinant <= T(1e16)) return;
    T smallest = T(1e37);
    for (int k = 0; k < bw.Dim(); ++k) smallest = std::min(smallest, aw(k, k));
    const T shift = T(0.001) * smallest;
    for (int k = 0; k < bw.Dim(); ++k) aw(k, k) += shift;
  }

  T s1 = 0;  ///< sum of y^2/var
  T s0 = 0;  ///< sum of y^2
  T_Matrix<T> aw;
  T_Matrix<T> a;
  T_MatVectorCol<T> bw;
  T_MatVectorCol<T> b;
};

/// The data of a fit as the objectives read them from their extra parameter.
template <class T>
class FitData {
 public:
  explicit FitData(Variable& arguments)
      : x_(Pointer<const T>(arguments, kFitAbscissae)),
        y_(Pointer<const T>(arguments, kFitValues)),
        errors_(Pointer<const T>(arguments, kFitErrors)),
        basis_(Pointer<const typename T_Line_LSQM2<T>::Basis>(arguments, kFitBasis)),
        extra_(arguments[kFitExtra].GetCppPointer()),
        pointCount_(arguments[kFitPointCount].GetInt32Numb()),
        basisCount_(arguments[kFitBasisCount].GetInt32Numb()) {}

  int PointCount() const { return pointCount_; }
  T Error(int i) const { return errors_[i]; }

  /// sum over k of a_k*f_k(x_i) - y_i
  T Deviation(const T* a, int i) const {
    T model = 0;
    for (int k = 0; k < basisCount_; ++k) model += a[k] * basis_[k](x_[i], extra_);
    return model - y_[i];
  }

 private:
  template <class Target>
  static Target* Pointer(Variable& arguments, FitArgument position) {
    return static_cast<Target*>(arguments[position].GetCppPointer());
  }

  const T* x_;
  const T* y_;
  const T* errors_;
  const typename T_Line_LSQM2<T>::Basis* basis_;
  void* extra_;
  int pointCount_;
  int basisCount_;
};

/// -sum of ln((1 - exp(-R/2))/R) with R = deviation^2/variance; the points from the last to the
/// first.
template <class T>
T SquaredTailObjective(T_MatVector<T>& a, Variable* extra) {
  const FitData<T> data(*extra);
  T sum = 0;
  for (int i = data.PointCount() - 1; i >= 0; --i) {
    const T deviation = data.Deviation(a, i);
    const T ratio = deviation * deviation / data.Error(i);
    const T complement = 1 - std::exp(-ratio / 2);
    sum += std::log(complement == 0 ? T(0.5) : complement / ratio);
  }
  return -sum;
}

/// -sum of ln(erf(u)/d) with d = |deviation| and u = d/(s*sqrt(2)) for the standard deviation s;
/// the points from the last to the first. Below u = 1e-5 the quotient is taken at 1e-5.
template <class T>
T ErrorFunctionObjective(T_MatVector<T>& a, Variable* extra) {
  constexpr T kSmallest = T(1e-5);
  const FitData<T> data(*extra);
  T sum = 0;
  for (int i = data.PointCount() - 1; i >= 0; --i) {
    const T scale = data.Error(i) * std::numbers::sqrt2_v<T>;
    T d = std::fabs(data.Deviation(a, i));
    T u = d / scale;
    if (u < kSmallest) {
      u = kSmallest;
      d = scale * kSmallest;
    }
    sum += std::log(static_cast<T>(Erf(static_cast<double>(u))) / d);
  }
  return -sum;
}

/// ln(s/d)/2 summed over the positive diagonal elements d.
template <class T>
T HalfLogsOfDiagonal(T s, const T_Matrix<T>& matrix) {
  T sum = 0;
  for (int k = 0; k < matrix.Y(); ++k) {
    if (matrix(k, k) > 0) sum += T(0.5) * std::log(s / matrix(k, k));
  }
  return sum;
}

}  // namespace tarn

// Life and access ---------------------------------------------------------------------------------

template <class T>
T_Line_LSQM2<T>::T_Line_LSQM2(T (**basis)(T, void*), int m, T* y, T* x, T* var, int n, T accuracy)
    : coeff_(nullptr),
      covariance_(nullptr),
      basis_(basis),
      m_(std::max(m, 0)),
      chi2_(0),
      residue_(0),
      logProb_(0),
      y_(y),
      x_(x),
      var_(var),
      n_(std::max(n, 0)),
      accuracy_(accuracy),
      prior_(0),
      extra_(nullptr) {
  coeff_ = static_cast<T*>(HMALLOCZ(static_cast<std::size_t>(m_) * sizeof(T)));
}

template <class T>
T_Line_LSQM2<T>::T_Line_LSQM2(const T_Line_LSQM2& other) : coeff_(nullptr), covariance_(nullptr) {
  CopyFrom(other);
}

template <class T>
T_Line_LSQM2<T>& T_Line_LSQM2<T>::operator=(const T_Line_LSQM2& other) {
  if (this != &other) CopyFrom(other);
  return *this;
}

template <class T>
T_Line_LSQM2<T>::~T_Line_LSQM2() {
  HFREE(coeff_);
  delete covariance_;
}

template <class T>
void T_Line_LSQM2<T>::CopyFrom(const T_Line_LSQM2& other) {
  HFREE(coeff_);
  coeff_ = static_cast<T*>(HMALLOCZ(static_cast<std::size_t>(other.m_) * sizeof(T)));
  if (coeff_ != nullptr && other.coeff_ != nullptr) {
    std::copy(other.coeff_, other.coeff_ + other.m_, coeff_);
  }
  ReplaceCovariance(other.covariance_ == nullptr ? nullptr : tarn::NewCopy(*other.covariance_));
  basis_ = other.basis_;
  m_ = other.m_;
  chi2_ = other.chi2_;
  residue_ = other.residue_;
  logProb_ = other.logProb_;
  y_ = other.y_;
  x_ = other.x_;
  var_ = other.var_;
  n_ = other.n_;
  accuracy_ = other.accuracy_;
  prior_ = other.prior_;
  extra_ = other.extra_;
}

template <class T>
void T_Line_LSQM2<T>::ReplaceCovariance(T_Matrix<T>* covariance) {
  delete covariance_;
  covariance_ = covariance;
}

template <class T>
void T_Line_LSQM2<T>::SetExtraParam(void* extra) {
  extra_ = extra;
}

template <class T>
void T_Line_LSQM2<T>::SetPrior(int prior) {
  prior_ = prior;
}

template <class T>
T T_Line_LSQM2<T>::GetA(int k) const {
  return coeff_ == nullptr || k < 0 || k >= m_ ? T(0) : coeff_[k];
}

template <class T>
T* T_Line_LSQM2<T>::GetResult() {
  return coeff_;
}

template <class T>
T T_Line_LSQM2<T>::GetChi2() const {
  return chi2_;
}

template <class T>
T T_Line_LSQM2<T>::GetResidue() const {
  return residue_;
}

template <class T>
T T_Line_LSQM2<T>::GetLogProb() const {
  return logProb_;
}

template <class T>
const T_Matrix<T>* T_Line_LSQM2<T>::GetCovariance() const {
  return covariance_;
}

// Plain fit ---------------------------------------------------------------------------------------

template <class T>
void T_Line_LSQM2<T>::DoIt(int mode) {
  tarn::NormalEquations<T> sums(m_);
  if (coeff_ == nullptr || !sums.HasStorage(m_)) {
    TarnError(tarn::kErrorMemory);
    return;
  }
  const tarn::ObjectiveErrorWatch watch;
  Accumulate(sums);
  sums.Regularise();
  if (watch.HasRaised()) return;
  if (sums.aw.SolveSystem(sums.bw, coeff_) == 0) return;
  if (mode == 0) {
    PlainResult(sums);
  } else if (prior_ == 0) {
    _DoIt_1(sums.s1, sums.aw);
  } else {
    _DoIt(sums.s1, sums.aw);
  }
}

template <class T>
void T_Line_LSQM2<T>::Accumulate(tarn::NormalEquations<T>& sums) const {
  for (int i = 0; i < n_; ++i) {
    sums.s1 += y_[i] * y_[i] / var_[i];
    sums.s0 += y_[i] * y_[i];
    for (int k = 0; k < m_; ++k) {
      const T fk = basis_[k](x_[i], extra_);
      sums.bw[k] += fk * y_[i] / var_[i];
      sums.b[k] += fk * y_[i];
      T* weighted = sums.aw[k];
      T* plain = sums.a[k];
      for (int j = 0; j <= k; ++j) {
        const T fj = basis_[j](x_[i], extra_);
        weighted[j] += fk * fj / var_[i];
        plain[j] += fk * fj;
      }
    }
  }
  sums.Mirror();
}

template <class T>
void T_Line_LSQM2<T>::PlainResult(const tarn::NormalEquations<T>& sums) {
  ReplaceCovariance(sums.aw.PseudoInverse());
  if (covariance_ == nullptr) return;
  residue_ = std::fabs(sums.s0 - sums.b.ScalarMultiply(coeff_));
  chi2_ = std::fabs(sums.s1 - sums.bw.ScalarMultiply(coeff_));
  const T logs = tarn::HalfLogsOfDiagonal(sums.s0, sums.a);
  const T residue = residue_ <= 0 ? T(1e-8) : residue_;
  const T ln2Pi = std::log(2 * std::numbers::pi_v<T>);
  logProb_ = ln2Pi * static_cast<T>(m_) / 2 - logs - T(0.5) * sums.a.LnDet() -
             std::log(residue) * static_cast<T>(n_ - 2) / 2;
}

// Refinement --------------------------------------------------------------------------------------

/// Refines under the likelihood of the error function, which takes standard deviations.
template <class T>
void T_Line_LSQM2<T>::_DoIt(T s1, const T_Matrix<T>& aw) {
  T* deviations = static_cast<T*>(HMALLOCZ(static_cast<std::size_t>(n_) * sizeof(T)));
  if (deviations == nullptr) {
    TarnError(tarn::kErrorMemory);
    return;
  }
  for (int i = 0; i < n_; ++i) deviations[i] = std::sqrt(var_[i]);
  Refine(s1, aw, reinterpret_cast<void*>(&tarn::ErrorFunctionObjective<T>), deviations);
  HFREE(deviations);
}

/// Refines under the likelihood of squared deviations, which takes variances.
template <class T>
void T_Line_LSQM2<T>::_DoIt_1(T s1, const T_Matrix<T>& aw) {
  Refine(s1, aw, reinterpret_cast<void*>(&tarn::SquaredTailObjective<T>), var_);
}

namespace tarn {

/// Bounds of the coefficients, lo_0, hi_0, lo_1, ..., as they are computed: those about a negative
/// coefficient are reversed.
template <class T>
T_MatVectorCol<T> CoefficientBounds(T s1, const T_Matrix<T>& aw, const T* coefficients) {
  T_MatVectorCol<T> bounds(2 * aw.Y());
  for (int k = 0; k < aw.Y() && bounds.Dim() > 0; ++k) {
    T reach = 10 * coefficients[k];
    if (reach == 0) reach = T(1000);
    if (!(aw(k, k) <= 0)) reach = 10 * std::sqrt(s1 / aw(k, k));
    bounds[2 * k] = -reach;
    bounds[2 * k + 1] = reach;
  }
  return bounds;
}

/// The extra parameter of the objectives.
template <class T>
void FillFitArguments(Variable& arguments, T* x, T* y, T* errors, int n,
                      typename T_Line_LSQM2<T>::Basis* basis, int m, void* extra) {
  arguments[kFitAbscissae].SetCppPointer(x);
  arguments[kFitValues].SetCppPointer(y);
  arguments[kFitErrors].SetCppPointer(errors);
  arguments[kFitPointCount] = n;
  arguments[kFitBasis].SetCppPointer(basis);
  arguments[kFitBasisCount] = m;
  arguments[kFitExtra].SetCppPointer(extra);
}

}  // namespace tarn

/// Whether a solve and a covariance that raised nothing lacked memory.
template <class T>
bool T_Line_LSQM2<T>::WasRefusedMemory(const T_Climb<T>& climb) const {
  return covariance_ == nullptr || climb.GetStopReason() == tarn::StopReason::kMemoryExhausted;
}

template <class T>
void T_Line_LSQM2<T>::Refine(T s1, const T_Matrix<T>& aw, void* objective, T* errors) {
  T_MatVectorCol<T> bounds = tarn::CoefficientBounds(s1, aw, coeff_);
  Variable arguments(VARTYPE_ARRAY, tarn::kFitArgumentCount);
  if (bounds.Dim() != 2 * m_ || arguments.GetDim() != tarn::kFitArgumentCount) {
    TarnError(tarn::kErrorMemory);
    return;
  }
  tarn::FillFitArguments(arguments, x_, y_, errors, n_, basis_, m_, extra_);
  Variable function;
  function.SetCppPointer(objective);
  T_Climb<T> climb(function, m_, bounds, coeff_, accuracy_);
  climb.SetExtraParam(arguments);
  if (climb.GetDimension() != m_ || climb.GetExtraParam().GetDim() != tarn::kFitArgumentCount) {
    TarnError(tarn::kErrorMemory);
    return;
  }
  climb.Solve();
  const T* best = climb.GetResult();
  std::copy(best, best + m_, coeff_);
  ReplaceCovariance(climb.GetCovariationMatrix(coeff_));
  SumResiduals();
  const T ln4Pi = std::log(4 * std::numbers::pi_v<T>);
  const T lnDet = covariance_ == nullptr ? T(0) : covariance_->LnDet();
  logProb_ = ln4Pi * static_cast<T>(m_) / 2 - residue_ / 2 + T(0.5) * lnDet -
             tarn::HalfLogsOfDiagonal(s1, aw);
  if (!tarn::IsErrorPending(GetOwner()) && WasRefusedMemory(climb)) TarnError(tarn::kErrorMemory);
}

/// chi2 and residue of the coefficients, from the last point to the first.
template <class T>
void T_Line_LSQM2<T>::SumResiduals() {
  chi2_ = T(0);
  residue_ = T(0);
  for (int i = n_ - 1; i >= 0; --i) {
    const T r = y_[i] - Model(x_[i]);
    chi2_ += r * r / var_[i];
    residue_ += r * r;
  }
}

/// sum of a_k*f_k(x), from the last coefficient to the first.
template <class T>
T T_Line_LSQM2<T>::Model(T x) const {
  T sum = 0;
  for (int k = m_ - 1; k >= 0; --k) sum += coeff_[k] * basis_[k](x, extra_);
  return sum;
}

#endif
