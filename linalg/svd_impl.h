#ifndef TARN_LINALG_SVD_IMPL_H
#define TARN_LINALG_SVD_IMPL_H

#include <new>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "linalg/element_storage.h"
#include "linalg/matrix.h"
#include "linalg/svd_decomposition.h"
#include "linalg/svd_solve.h"
#include "linalg/vector.h"

namespace tarn {

/// 1, or 0 after raising the error if there is one.
inline int Report(int error) {
  if (error != 0) TarnError(error);
  return error == 0 ? 1 : 0;
}

/// Makes the factors that the caller did not pass. Returns false when one of them was refused.
template <class Element>
bool ProvideFactors(int n, T_MatVectorCol<Element>*& w, T_Matrix<Element>*& v) {
  if (w == nullptr) w = new (std::nothrow) T_MatVectorCol<Element>(n);
  if (v == nullptr) v = new (std::nothrow) T_Matrix<Element>(n);
  return w != nullptr && v != nullptr;
}

}  // namespace tarn

template <class Element>
Element T_Matrix<Element>::Pythag(Element a, Element b) {
  return tarn::Hypotenuse(a, b);
}

template <class Element>
int T_Matrix<Element>::SVD(T_MatVectorCol<Element>& w, T_Matrix& v) {
  return tarn::Report(tarn::DecomposeSingular(*this, GetMinTypeValue(), w, v));
}

template <class Element>
int T_Matrix<Element>::SVD(T_MatVectorCol<Element>*& w, T_Matrix*& v) {
  return tarn::ProvideFactors(x, w, v) ? SVD(*w, *v) : tarn::Report(tarn::kErrorMemory);
}

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::PseudoInverse() const {
  T_Matrix* const inverse = tarn::NewPseudoInverse(*this, GetMinTypeValue());
  if (inverse == nullptr) TarnError(tarn::kErrorMemory);
  return inverse;
}

template <class Element>
int T_Matrix<Element>::SolveSystemBySVD(const Element* b, Element* solution) const {
  return tarn::Report(tarn::SolveBySvd(*this, GetMinTypeValue(), b, solution));
}

template <class Element>
Element* T_Matrix<Element>::SolveSystemBySVD(const Element* b) const {
  int error = tarn::kErrorArgument;
  Element* solution = nullptr;
  if (x == y) {
    solution = tarn::NewElements<Element>(y);
    error = solution == nullptr ? tarn::kErrorMemory
                                : tarn::SolveBySvd(*this, GetMinTypeValue(), b, solution);
  }
  if (error == 0) return solution;
  delete[] solution;
  TarnError(error);
  return nullptr;
}

template <class Element>
int T_Matrix<Element>::SolveSystemBySVD_Reg_ex(T_Matrix*& v, T_MatVectorCol<Element>*& w,
                                               const Element* b, Element* solution,
                                               Element lambda) {
  int error = tarn::kErrorMemory;
  if (tarn::ProvideFactors(x, w, v)) {
    error = tarn::DecomposeSingular(*this, GetMinTypeValue(), *w, *v);
  }
  if (error == 0) error = tarn::SolveRegularized(*this, *w, *v, b, solution, lambda);
  return tarn::Report(error);
}

template <class Element>
int T_Matrix<Element>::SolveSystemBySVD_Reg(const Element* b, Element* solution,
                                            Element lambda) const {
  return tarn::Report(tarn::SolveCopyRegularized(*this, GetMinTypeValue(), b, solution, lambda));
}

#endif
