#ifndef TARN_TESTS_OPTIM_LINE_FIT_SUPPORT_H
#define TARN_TESTS_OPTIM_LINE_FIT_SUPPORT_H

/// @file
/// What the tests of the linear fit share: basis functions, points, the plain fit a second time.

#include <numbers>
#include <random>

#include "climb_support.h"

template <class T>
T One(T, void*) {
  return T(1);
}
template <class T>
T Linear(T x, void*) {
  return x;
}
template <class T>
T Square(T x, void*) {
  return x * x;
}
template <class T>
T Nothing(T, void*) {
  return T(0);
}
template <class T>
T Scaled(T x, void* extra) {
  return x * *static_cast<const T*>(extra);
}

/// Points of a fit, owned by the test.
template <class T>
struct Points {
  std::vector<T> x, y, var;

  int Count() const { return static_cast<int>(x.size()); }
  void Add(T px, T py, T pvar) {
    x.push_back(px);
    y.push_back(py);
    var.push_back(pvar);
  }
};

template <class T>
using Basis = std::vector<T (*)(T, void*)>;

template <class T>
T_Line_LSQM2<T> MakeFit(Basis<T>& basis, Points<T>& points, T accuracy = T(1e-6)) {
  return T_Line_LSQM2<T>(basis.data(), static_cast<int>(basis.size()), points.y.data(),
                         points.x.data(), points.var.data(), points.Count(), accuracy);
}

/// A noisy parabola 1 - 2x + 0.5x^2 on [-2, 3].
template <class T>
Points<T> Parabola(int count, double noise) {
  std::mt19937 random(5);
  std::normal_distribution<double> normal(0, 1);
  Points<T> points;
  for (int i = 0; i < count; ++i) {
    const double x = -2 + 5.0 * i / (count - 1);
    const double sigma = noise * (1 + 0.5 * (i % 3));
    points.Add(static_cast<T>(x), static_cast<T>(1 - 2 * x + 0.5 * x * x + sigma * normal(random)),
               static_cast<T>(sigma * sigma));
  }
  return points;
}

/// Moves every tenth point far up.
template <class T>
void AddOutliers(Points<T>& points) {
  for (int i = 4; i < points.Count(); i += 10) points.y[static_cast<std::size_t>(i)] += T(8);
}

/// The fit a second time: sums and results as plain loops.
template <class T>
struct PlainReference {
  T s1 = 0, s0 = 0, chi2 = 0, residue = 0, logProb = 0;
  std::vector<T> bw, b, coeff;
  T_Matrix<T> aw, a;

  PlainReference(const Basis<T>& basis, const Points<T>& points, void* extra = nullptr)
      : aw(static_cast<int>(basis.size())), a(static_cast<int>(basis.size())) {
    const int m = static_cast<int>(basis.size());
    bw.assign(basis.size(), 0);
    b = coeff = bw;
    for (std::size_t i = 0; i < points.x.size(); ++i) {
      const T y = points.y[i];
      const T var = points.var[i];
      s1 = s1 + y * y / var;
      s0 = s0 + y * y;
      for (int k = 0; k < m; ++k) {
        const auto uk = static_cast<std::size_t>(k);
        const T fk = basis[uk](points.x[i], extra);
        bw[uk] = bw[uk] + fk * y / var;
        b[uk] = b[uk] + fk * y;
        for (int j = 0; j <= k; ++j) {
          const T fj = basis[static_cast<std::size_t>(j)](points.x[i], extra);
          aw(k, j) = aw(k, j) + fk * fj / var;
          a(k, j) = a(k, j) + fk * fj;
          aw(j, k) = aw(k, j);
          a(j, k) = a(k, j);
        }
      }
    }
    const T det = aw.Det();
    if (!(det >= T(1e-16) && det <= T(1e16))) {
      T least = T(1e37);
      for (int k = 0; k < m; ++k) least = aw(k, k) < least ? aw(k, k) : least;
      for (int k = 0; k < m; ++k) aw(k, k) = aw(k, k) + T(0.001) * least;
    }
    aw.SolveSystem(bw.data(), coeff.data());
    T bwa = 0, ba = 0, logs = 0;
    for (int k = 0; k < m; ++k) {
      const auto uk = static_cast<std::size_t>(k);
      bwa = bwa + bw[uk] * coeff[uk];
      ba = ba + b[uk] * coeff[uk];
      if (a(k, k) > 0) logs = logs + T(0.5) * std::log(s0 / a(k, k));
    }
    chi2 = std::fabs(s1 - bwa);
    residue = std::fabs(s0 - ba);
    const T positive = residue <= 0 ? T(1e-8) : residue;
    logProb = std::log(2 * std::numbers::pi_v<T>) * static_cast<T>(m) / 2 - logs -
              T(0.5) * a.LnDet() - std::log(positive) * static_cast<T>(points.Count() - 2) / 2;
  }
};

#endif
