#ifndef TARN_LINALG_SVD_ITERATION_H
#define TARN_LINALG_SVD_ITERATION_H

/// @file
/// Diagonalisation of an upper bidiagonal matrix by implicitly shifted QR sweeps, the second half
/// of the Golub-Reinsch method (sources in svd_reflection.h).
///
/// For k = n - 1, ..., 0, in at most 30 rounds:
///  1. Split: the largest l <= k whose superdiagonal element is negligible against the norm: adding
///     it to the norm changes nothing. Element 0 always ends the search. Where the diagonal element
///     above is negligible first, rotations of U clear superdiagonal element l.
///  2. l = k: the singular value has converged; if negative, it and column k of V change sign.
///  3. Otherwise a sweep from l to k, with the shift from the bottom 2 x 2 minor.
/// A value that has not converged after 30 sweeps stays as it is; nothing is reported.
///
/// A matrix with fewer rows than columns leaves one superdiagonal element in a column whose
/// diagonal is 0. It is cleared first, by rotations of V, so that the values beyond the rows are
/// exactly 0 (G. H. Golub, C. F. Van Loan, Matrix Computations, 4th ed., section 8.6.2).

#include <cmath>

#include "linalg/svd_reflection.h"
#include "linalg/svd_rotation.h"

namespace tarn {

/// sqrt(a^2 + b^2) without overflow or destructive underflow.
template <class Element>
Element Hypotenuse(Element a, Element b) {
  // Chosen without a jump, because none could be foreseen. A NaN never counts as the larger one.
  const Element magnitudeA = std::abs(a);
  const Element magnitudeB = std::abs(b);
  const Element larger = magnitudeA > magnitudeB ? magnitudeA : magnitudeB;
  const Element smaller = magnitudeA > magnitudeB ? magnitudeB : magnitudeA;
  if (larger == 0) return 0;
  const Element ratio = smaller / larger;
  return larger * std::sqrt(1 + ratio * ratio);
}

/// The iteration on the diagonals of a problem. A superdiagonal element is not looked at any more
/// once the value next to it has converged; its place keeps the sign that column of V takes, 1 or
/// -1.
template <class Element>
class SvdIteration {
 public:
  SvdIteration(SvdProblem<Element>& problem, RotationLog<Element>& rotationsOfU,
               RotationLog<Element>& rotationsOfV)
      : p_(problem), u_(rotationsOfU), v_(rotationsOfV) {}

  void Run() {
    if (p_.m < p_.n) ClearColumnBeyondRows();
    for (int k = p_.n - 1; k >= 0; --k) Converge(k);
    u_.Finish();
    v_.Finish();
    ScaleColumns(p_.V(), p_.superdiagonal);
  }

 private:
  static constexpr int kMaxSweeps = 30;

  bool IsNegligible(Element value) const { return std::abs(value) + p_.norm == p_.norm; }

  /// Rotates column m of V with columns m - 1, m - 2, ... until nothing is left of superdiagonal
  /// element m; the rest of it climbs from row to row.
  void ClearColumnBeyondRows() {
    v_.BeginFan(p_.m, p_.m - 1, -1);
    Element f = p_.superdiagonal[p_.m];
    p_.superdiagonal[p_.m] = 0;
    for (int i = p_.m - 1; i >= 0 && !IsNegligible(f); --i) {
      const Element g = p_.diagonal[i];
      const Element hypotenuse = Hypotenuse(f, g);
      p_.diagonal[i] = hypotenuse;
      const Element c = g / hypotenuse;
      const Element s = f / hypotenuse;
      f = -s * p_.superdiagonal[i];
      p_.superdiagonal[i] = c * p_.superdiagonal[i];
      v_.Add(c, -s);
    }
  }

  void Converge(int k) {
    for (int sweep = 1; sweep <= kMaxSweeps; ++sweep) {
      const int l = Split(k);
      if (l == k) {
        MakeNonNegative(k);
        return;
      }
      Sweep(l, k);
    }
    p_.superdiagonal[k] = 1;
  }

  int Split(int k) {
    int l = k;
    for (; l > 0 && !IsNegligible(p_.superdiagonal[l]); --l) {
      if (IsNegligible(p_.diagonal[l - 1])) {
        ClearSuperdiagonal(l, k);
        break;
      }
    }
    return l;
  }

  /// Rotates column l - 1 of U with columns l, l + 1, ... until nothing is left of superdiagonal
  /// element l.
  void ClearSuperdiagonal(int l, int k) {
    u_.BeginFan(l - 1, l, 1);
    Element c = 0;
    Element s = 1;
    for (int i = l; i <= k; ++i) {
      const Element f = s * p_.superdiagonal[i];
      p_.superdiagonal[i] = c * p_.superdiagonal[i];
      if (IsNegligible(f)) return;
      const Element g = p_.diagonal[i];
      const Element hypotenuse = Hypotenuse(f, g);
      p_.diagonal[i] = hypotenuse;
      const Element inverse = 1 / hypotenuse;
      c = g * inverse;
      s = -f * inverse;
      u_.Add(c, s);
    }
  }

  void MakeNonNegative(int k) {
    const bool isNegative = p_.diagonal[k] < 0;
    if (isNegative) p_.diagonal[k] = -p_.diagonal[k];
    p_.superdiagonal[k] = isNegative ? -1 : 1;
  }

  /// First element of the shifted vector that the sweep from l to k starts from.
  Element ShiftedStart(int l, int k) const {
    const Element x = p_.diagonal[l];
    const Element y = p_.diagonal[k - 1];
    const Element z = p_.diagonal[k];
    const Element g = p_.superdiagonal[k - 1];
    const Element h = p_.superdiagonal[k];
    const Element f = ((y - z) * (y + z) + (g - h) * (g + h)) / (2 * h * y);
    const Element root = WithSignOf(Hypotenuse<Element>(f, 1), f);
    return ((x - z) * (x + z) + h * (y / (f + root) - h)) / x;
  }

  void Sweep(int l, int k) {
    Element f = ShiftedStart(l, k);
    Element x = p_.diagonal[l];
    Element c = 1;
    Element s = 1;
    u_.BeginChain(l);
    v_.BeginChain(l);
    for (int j = l; j < k; ++j) {
      Element g = p_.superdiagonal[j + 1];
      Element y = p_.diagonal[j + 1];
      Element h = s * g;
      g = c * g;
      Element z = Hypotenuse(f, h);
      p_.superdiagonal[j] = z;
      c = f / z;
      s = h / z;
      f = x * c + g * s;
      g = g * c - x * s;
      h = y * s;
      y *= c;
      v_.Add(c, s);
      z = Hypotenuse(f, h);
      p_.diagonal[j] = z;
      if (z != 0) {
        z = 1 / z;
        c = f * z;
        s = h * z;
      }
      f = c * g + s * y;
      x = c * y - s * g;
      u_.Add(c, s);
    }
    p_.superdiagonal[l] = 0;
    p_.superdiagonal[k] = f;
    p_.diagonal[k] = x;
  }

  SvdProblem<Element>& p_;
  RotationLog<Element>& u_;
  RotationLog<Element>& v_;
};

}  // namespace tarn

#endif
