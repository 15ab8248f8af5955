#ifndef TARN_TESTS_LINALG_SVD_REFERENCE_H
#define TARN_TESTS_LINALG_SVD_REFERENCE_H

// A second transcription of the Golub-Reinsch decomposition: every loop runs over single elements,
// and rotations are applied at once.

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "linalg/solve_support.h"

template <class T>
T ReferencePythag(T a, T b) {
  const T A = std::fabs(a), B = std::fabs(b);
  if (A > B) return A * std::sqrt(1 + (B / A) * (B / A));
  return B == 0 ? T{0} : B * std::sqrt(1 + (A / B) * (A / B));
}

template <class T>
T ReferenceSign(T a, T b) {
  return b >= 0 ? std::fabs(a) : -std::fabs(a);
}

/// Decomposes `a` in place.
template <class T>
class ReferenceSvd {
 public:
  ReferenceSvd(Dense<T>& matrix, std::vector<T>& values, Dense<T>& vectors)
      : a(matrix), w(values), v(vectors), m(matrix.rows), n(matrix.cols) {}

  void Run() {
    T mean = 0;
    for (std::size_t k = a.elements.size(); k > 0; k--) mean += a.elements[k - 1];
    mean /= static_cast<T>(m * n);
    w.assign(static_cast<std::size_t>(n), T{0});
    rv1 = w;
    Bidiagonal();
    RightVectors();
    LeftVectors();
    if (m < n) ClearBeyondRows();
    for (int k = n - 1; k >= 0; k--) Converge(k);
    Sort();
    for (int j = 0; j < n; j++) {
      T sum = 0;
      for (int i = 0; i < n; i++) sum += v[i][j];
      if (sum * mean < 0) {
        for (int i = 0; i < m; i++) a[i][j] = -a[i][j];
        for (int i = 0; i < n; i++) v[i][j] = -v[i][j];
      }
    }
  }

 private:
  static constexpr T kLimit = std::is_same_v<T, float> ? static_cast<T>(1e-15L) : T(1e-80L);

  T& W(int i) { return w[static_cast<std::size_t>(i)]; }
  T& E(int i) { return rv1[static_cast<std::size_t>(i)]; }

  T Flush(T& element) {
    if (std::fabs(element) > kLimit) return std::fabs(element);
    element = 0;
    return 0;
  }

  void Bidiagonal() {
    T g = 0, scale = 0;
    anorm = 0;
    for (int i = 0; i < n; i++) {
      const int l = i + 1;
      E(i) = scale * g;
      T s = g = scale = 0;
      if (i < m) {
        for (int k = i; k < m; k++) scale += Flush(a[k][i]);
        if (scale != 0) {
          for (int k = i; k < m; k++) {
            a[k][i] /= scale;
            s += a[k][i] * a[k][i];
          }
          T f = a[i][i];
          g = -ReferenceSign(std::sqrt(s), f);
          const T h = f * g - s;
          a[i][i] = f - g;
          for (int j = l; j < n; j++) {
            s = 0;
            for (int k = i; k < m; k++) s += a[k][i] * a[k][j];
            f = s / h;
            for (int k = i; k < m; k++) a[k][j] += f * a[k][i];
          }
          for (int k = i; k < m; k++) a[k][i] *= scale;
        }
      }
      W(i) = scale * g;
      s = g = scale = 0;
      if (i < m && i != n - 1) {
        for (int k = l; k < n; k++) scale += Flush(a[i][k]);
        if (scale != 0) {
          for (int k = l; k < n; k++) {
            a[i][k] /= scale;
            s += a[i][k] * a[i][k];
          }
          const T f = a[i][l];
          g = -ReferenceSign(std::sqrt(s), f);
          const T h = f * g - s;
          a[i][l] = f - g;
          for (int k = l; k < n; k++) E(k) = a[i][k] / h;
          for (int j = l; j < m; j++) {
            s = 0;
            for (int k = l; k < n; k++) s += a[j][k] * a[i][k];
            for (int k = l; k < n; k++) a[j][k] += s * E(k);
          }
          for (int k = l; k < n; k++) a[i][k] *= scale;
        }
      }
      const T sum = std::fabs(W(i)) + std::fabs(E(i));
      if (sum > anorm) anorm = sum;
    }
  }

  void RightVectors() {
    T g = 0;
    for (int i = n - 1; i >= 0; i--) {
      const int l = i + 1;
      if (l < n) {
        if (g != 0) {
          for (int j = l; j < n; j++) v[j][i] = (a[i][j] / a[i][l]) / g;
          for (int j = l; j < n; j++) {
            T s = 0;
            for (int k = l; k < n; k++) s += a[i][k] * v[k][j];
            for (int k = l; k < n; k++) v[k][j] += s * v[k][i];
          }
        }
        for (int j = l; j < n; j++) v[i][j] = v[j][i] = 0;
      }
      v[i][i] = 1;
      g = E(i);
    }
  }

  void LeftVectors() {
    for (int i = std::min(m, n) - 1; i >= 0; i--) {
      const int l = i + 1;
      T g = W(i);
      for (int j = l; j < n; j++) a[i][j] = 0;
      if (g != 0) {
        g = 1 / g;
        for (int j = l; j < n; j++) {
          T s = 0;
          for (int k = l; k < m; k++) s += a[k][i] * a[k][j];
          const T f = (s / a[i][i]) * g;
          for (int k = i; k < m; k++) a[k][j] += f * a[k][i];
        }
        for (int j = i; j < m; j++) a[j][i] *= g;
      } else {
        for (int j = i; j < m; j++) a[j][i] = 0;
      }
      a[i][i] += 1;
    }
  }

  static void Rotate(Dense<T>& d, int p, int q, T c, T s) {
    for (int i = 0; i < d.rows; i++) {
      const T x = d[i][p], z = d[i][q];
      d[i][p] = x * c + z * s;
      d[i][q] = z * c - x * s;
    }
  }

  void ClearBeyondRows() {
    T f = E(m);
    E(m) = 0;
    for (int i = m - 1; i >= 0; i--) {
      if (std::fabs(f) + anorm == anorm) break;
      const T g = W(i);
      const T h = ReferencePythag(f, g);
      W(i) = h;
      const T c = g / h, s = f / h;
      f = -s * E(i);
      E(i) = c * E(i);
      Rotate(v, i, m, c, s);
    }
  }

  void Cancel(int l, int k) {
    T c = 0, s = 1;
    for (int i = l; i <= k; i++) {
      const T f = s * E(i);
      E(i) = c * E(i);
      if (std::fabs(f) + anorm == anorm) break;
      const T g = W(i);
      T h = ReferencePythag(f, g);
      W(i) = h;
      h = 1 / h;
      c = g * h;
      s = -f * h;
      Rotate(a, l - 1, i, c, s);
    }
  }

  void Converge(int k) {
    for (int sweeps = 1; sweeps <= 30; sweeps++) {
      int l = k;
      for (;; l--) {
        if (l == 0 || std::fabs(E(l)) + anorm == anorm) break;
        if (std::fabs(W(l - 1)) + anorm == anorm) {
          Cancel(l, k);
          break;
        }
      }
      if (l == k) {
        if (W(k) < 0) {
          W(k) = -W(k);
          for (int j = 0; j < n; j++) v[j][k] = -v[j][k];
        }
        return;
      }
      Sweep(l, k);
    }
  }

  void Sweep(int l, int k) {
    T x = W(l), y = W(k - 1), z = W(k), g = E(k - 1), h = E(k);
    T f = ((y - z) * (y + z) + (g - h) * (g + h)) / (2 * h * y);
    g = ReferencePythag(f, T{1});
    f = ((x - z) * (x + z) + h * ((y / (f + ReferenceSign(g, f))) - h)) / x;
    T c = 1, s = 1;
    for (int j = l; j < k; j++) {
      const int i = j + 1;
      g = E(i);
      y = W(i);
      h = s * g;
      g = c * g;
      z = ReferencePythag(f, h);
      E(j) = z;
      c = f / z;
      s = h / z;
      f = x * c + g * s;
      g = g * c - x * s;
      h = y * s;
      y = y * c;
      Rotate(v, j, i, c, s);
      z = ReferencePythag(f, h);
      W(j) = z;
      if (z != 0) {
        z = 1 / z;
        c = f * z;
        s = h * z;
      }
      f = c * g + s * y;
      x = c * y - s * g;
      Rotate(a, j, i, c, s);
    }
    E(l) = 0;
    E(k) = f;
    W(k) = x;
  }

  static void Exchange(Dense<T>& d, int p, int q) {
    for (int i = 0; i < d.rows; i++) std::swap(d[i][p], d[i][q]);
  }

  void Sort() {
    std::vector<svd_index<T>> records;
    for (int i = 0; i < n; i++) records.push_back({W(i), i});
    QSort(records.data(), n);
    for (int i = n - 1; i >= 0; i--) {
      const auto& record = records[static_cast<std::size_t>(i)];
      Exchange(a, i, record.index);
      Exchange(v, i, record.index);
      W(i) = record.value;
      for (int k = i - 1; k >= 0; k--) {
        if (records[static_cast<std::size_t>(k)].index == i) {
          records[static_cast<std::size_t>(k)].index = record.index;
          break;
        }
      }
    }
  }

  Dense<T>& a;
  std::vector<T>& w;
  Dense<T>& v;
  std::vector<T> rv1;
  int m;
  int n;
  T anorm = 0;
};

#endif
