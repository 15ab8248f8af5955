#ifndef TARN_LINALG_INVERSE_IMPL_H
#define TARN_LINALG_INVERSE_IMPL_H

#include <algorithm>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "linalg/determinant_closed_form.h"
#include "linalg/inverse_elimination.h"
#include "linalg/matrix.h"
#include "linalg/solve_work_area.h"

namespace tarn {

template <class Element>
void Invert2(const Element* a, Element* r) {
  const Element determinant = Determinant2(a);
  const Element inverse[] = {a[3] / determinant, -a[1] / determinant, -a[2] / determinant,
                             a[0] / determinant};
  std::copy_n(inverse, 4, r);
}

/// The adjugate divided by the determinant: element (i, j) is the cofactor of element (j, i),
/// formed with its sign, divided by the determinant.
template <class Element>
void Invert3(const Element* a, Element* r) {
  const Element determinant = Determinant3(a);
  const Element adjugate[] = {
      a[4] * a[8] - a[5] * a[7], a[2] * a[7] - a[1] * a[8], a[1] * a[5] - a[2] * a[4],
      a[5] * a[6] - a[3] * a[8], a[0] * a[8] - a[2] * a[6], a[2] * a[3] - a[0] * a[5],
      a[3] * a[7] - a[4] * a[6], a[1] * a[6] - a[0] * a[7], a[0] * a[4] - a[1] * a[3]};
  for (int k = 0; k < 9; ++k) r[k] = adjugate[k] / determinant;
}

/// Inverts n x n elements; `r` may be `a`. Returns the number of the error to raise or 0; `r` is
/// untouched after an error. Null elements are those that an earlier refusal left behind.
template <class Element>
int Invert(const Element* a, int n, Element* r) {
  if (n > 0 && (a == nullptr || r == nullptr)) return kErrorMemory;
  switch (n) {
    case 0:
      return 0;
    case 1:
      r[0] = 1 / a[0];
      return 0;
    case 2:
      Invert2(a, r);
      return 0;
    case 3:
      Invert3(a, r);
      return 0;
    default:
      return InvertByElimination(a, n, r);
  }
}

}  // namespace tarn

template <class Element>
void T_Matrix<Element>::Inverse(T_Matrix& r) const {
  int error = tarn::kErrorArgument;
  if (x == y && r.HasShape(y, x)) error = tarn::Invert(data, x, r.data);
  if (error != 0) TarnError(error);
}

template <class Element>
T_Matrix<Element>* T_Matrix<Element>::Inverse() const {
  int error = tarn::kErrorArgument;
  T_Matrix* result = nullptr;
  if (x == y) {
    result = tarn::NewMatrix<Element>(x, x);
    error = result == nullptr ? tarn::kErrorMemory : tarn::Invert(data, x, result->data);
  }
  if (error == tarn::kErrorMemory) {
    delete result;
    result = nullptr;
  }
  if (error != 0) TarnError(error);
  return result;
}

#endif
