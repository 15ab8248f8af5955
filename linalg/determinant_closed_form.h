#ifndef TARN_LINALG_DETERMINANT_CLOSED_FORM_H
#define TARN_LINALG_DETERMINANT_CLOSED_FORM_H

/// @file
/// Determinants of order 2 and 3 in closed form, of n x n elements stored row after row.

namespace tarn {

template <class Element>
Element Determinant2(const Element* a) {
  return a[3] * a[0] - a[2] * a[1];
}

/// Expansion along the first row.
template <class Element>
Element Determinant3(const Element* a) {
  return a[0] * (a[4] * a[8] - a[5] * a[7]) - a[1] * (a[3] * a[8] - a[5] * a[6]) +
         a[2] * (a[3] * a[7] - a[6] * a[4]);
}

}  // namespace tarn

#endif
