#ifndef TARN_TESTS_LINALG_SOLVE_REFERENCE_H
#define TARN_TESTS_LINALG_SOLVE_REFERENCE_H

// Second transcriptions of the direct methods, element by element in the stated order.

#include <cmath>
#include <utility>
#include <vector>

#include "linalg/solve_support.h"

/// Gaussian elimination with partial pivoting; whole rows are updated. Returns 0 at a zero pivot,
/// otherwise the sign of the row exchanges.
template <class T>
int ReferenceElimination(Dense<T>& a, std::vector<T>& b) {
  const int n = a.rows;
  int sign = 1;
  for (int k = 0; k < n; k++) {
    int p = k;
    for (int r = k + 1; r < n; r++) {
      if (std::fabs(a[r][k]) > std::fabs(a[p][k])) p = r;
    }
    if (p != k) {
      for (int j = 0; j < n; j++) std::swap(a[p][j], a[k][j]);
      std::swap(b[static_cast<std::size_t>(p)], b[static_cast<std::size_t>(k)]);
      sign = -sign;
    }
    if (a[k][k] == 0) return 0;
    for (int r = k + 1; r < n; r++) {
      const T f = a[r][k] / a[k][k];
      for (int j = 0; j < n; j++) a[r][j] = a[r][j] - f * a[k][j];
      b[static_cast<std::size_t>(r)] =
          b[static_cast<std::size_t>(r)] - f * b[static_cast<std::size_t>(k)];
    }
  }
  return sign;
}

template <class T>
int ReferenceSolve(Dense<T> a, std::vector<T> b, std::vector<T>& x) {
  const int n = a.rows;
  x.assign(static_cast<std::size_t>(n), T{0});
  if (ReferenceElimination(a, b) == 0) return 0;
  for (int i = n - 1; i >= 0; i--) {
    T s = b[static_cast<std::size_t>(i)];
    for (int j = n - 1; j >= i + 1; j--) s = s - a[i][j] * x[static_cast<std::size_t>(j)];
    if (s != 0) {
      if (a[i][i] == 0) return 0;
      s = s / a[i][i];
    }
    x[static_cast<std::size_t>(i)] = s;
  }
  return 1;
}

template <class T>
T ReferenceDeterminant(Dense<T> a) {
  const int n = a.rows;
  if (n == 1) return a[0][0];
  if (n == 2) return a[1][1] * a[0][0] - a[1][0] * a[0][1];
  if (n == 3) {
    const T first = a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]);
    const T second = a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]);
    const T third = a[0][2] * (a[1][0] * a[2][1] - a[2][0] * a[1][1]);
    return first - second + third;
  }
  std::vector<T> none(static_cast<std::size_t>(n));
  const int sign = ReferenceElimination(a, none);
  if (sign == 0) return 0;
  T product = 1;
  for (int k = 0; k < n; k++) product = product * a[k][k];
  return sign < 0 ? -product : product;
}

template <class T>
T ReferenceLogDeterminant(Dense<T> a) {
  const int n = a.rows;
  if (n == 0) return 0;
  if (n == 2) return std::log(std::fabs(a[1][1] * a[0][0] - a[1][0] * a[0][1]));
  T s = 0;
  for (int i = 0; i < n; i++) {
    for (int j = 0; j < n; j++) s = s + std::fabs(a[i][j]);
  }
  s = s / static_cast<T>(n * n);
  if (s == 0) return 0;
  const T factor = 1 / s;
  for (int i = 0; i < n; i++) {
    for (int j = 0; j < n; j++) a[i][j] = a[i][j] * factor;
  }
  std::vector<T> none(static_cast<std::size_t>(n));
  if (ReferenceElimination(a, none) == 0) return 0;
  T sum = 0;
  for (int k = 0; k < n; k++) sum = sum + std::log(std::fabs(a[k][k]));
  return sum + static_cast<T>(n) * std::log(s);
}

/// The general inverse, whole rows, no exchanges. Returns false at a zero pivot.
template <class T>
bool ReferenceInverse(Dense<T> u, Dense<T>& result) {
  const int n = u.rows;
  Dense<T> r(n, n);
  for (int i = 0; i < n; i++) r[i][i] = 1;
  for (int k = 0; k < n; k++) {
    for (int i = k + 1; i < n; i++) {
      if (u[k][k] == 0) return false;
      const T f = u[i][k] / u[k][k];
      for (int j = 0; j < n; j++) u[i][j] = u[i][j] - f * u[k][j];
      for (int j = 0; j < n; j++) r[i][j] = r[i][j] - f * r[k][j];
    }
  }
  for (int c = 0; c < n; c++) {
    for (int i = n - 1; i >= 0; i--) {
      T v = r[i][c];
      for (int j = n - 1; j >= i + 1; j--) v = v - result[j][c] * u[i][j];
      result[i][c] = v / u[i][i];
    }
  }
  return true;
}

/// Returns false at a diagonal term that is not positive.
template <class T>
bool ReferenceCholesky(const Dense<T>& a, Dense<T>& l) {
  const int n = a.rows;
  for (int i = 0; i < n; i++) {
    for (int j = i; j < n; j++) {
      T x = a[i][j];
      for (int k = i - 1; k >= 0; k--) x = x - l[i][k] * l[j][k];
      if (j == i) {
        if (x <= 0) return false;
        l[i][i] = std::sqrt(x);
      } else {
        l[j][i] = x / l[i][i];
      }
    }
  }
  return true;
}

#endif
