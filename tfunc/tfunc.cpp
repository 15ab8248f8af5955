/// Storage of tabulated functions, point-wise arithmetic and transformations of the abscissae.

#include "tfunc/tfunc.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "frame/error_numbers.h"
#include "frame/host.h"

namespace {

/// Makes the empty `f` a function of `n` points; false, and still empty, without memory or points.
bool AllocatePoints(TFunc& f, int n) {
  if (n <= 0) return false;
  const auto count = static_cast<std::size_t>(n);
  f.X = new (std::nothrow) double[count];
  f.Y = new (std::nothrow) double[count];
  if (f.X != nullptr && f.Y != nullptr) {
    f.N = n;
    return true;
  }
  delete[] f.X;
  delete[] f.Y;
  f.X = nullptr;
  f.Y = nullptr;
  return false;
}

void CopyPoints(TFunc& f, const double* x, const double* y, int n) {
  if (x == nullptr || y == nullptr || !AllocatePoints(f, n)) return;
  std::copy_n(x, n, f.X);
  std::copy_n(y, n, f.Y);
}

}  // namespace

// Storage -----------------------------------------------------------------------------------------

TFunc::TFunc(int n) : Borrowed(0), X(nullptr), Y(nullptr), N(0) {
  if (!AllocatePoints(*this, n)) return;
  for (int i = 0; i < N; ++i) {
    X[i] = i;
    Y[i] = 0;
  }
}

TFunc::TFunc(const double* x, const double* y, int n) : Borrowed(0), X(nullptr), Y(nullptr), N(0) {
  CopyPoints(*this, x, y, n);
}

TFunc::TFunc(double* x, double* y, int n, int borrow)
    : Borrowed(borrow), X(nullptr), Y(nullptr), N(0) {
  if (borrow == 0) {
    CopyPoints(*this, x, y, n);
    return;
  }
  X = x;
  Y = y;
  if (x != nullptr && y != nullptr) N = std::max(n, 0);
}

TFunc::TFunc(const TFunc& f) : Borrowed(0), X(nullptr), Y(nullptr), N(0) {
  CopyPoints(*this, f.X, f.Y, f.N);
}

TFunc::~TFunc() {
  if (!owners_.Leave() || Borrowed != 0) return;
  delete[] X;
  delete[] Y;
}

TFunc& TFunc::operator=(const TFunc& f) {
  if (this == &f) return *this;
  if (owners_.Leave() && Borrowed == 0) {
    if (X != f.X) delete[] X;
    if (Y != f.Y) delete[] Y;
  }
  Borrowed = f.Borrowed;
  X = f.X;
  Y = f.Y;
  N = f.N;
  if (Borrowed == 0) owners_.Join(f.owners_);
  search_.Forget();
  return *this;
}

// Point-wise arithmetic ---------------------------------------------------------------------------

TFunc& TFunc::operator+=(double a) {
  for (int i = 0; i < N; ++i) Y[i] += a;
  return *this;
}

TFunc& TFunc::operator-=(double a) {
  for (int i = 0; i < N; ++i) Y[i] -= a;
  return *this;
}

TFunc& TFunc::operator*=(double a) {
  for (int i = 0; i < N; ++i) Y[i] *= a;
  return *this;
}

TFunc& TFunc::operator/=(double a) {
  if (a == 0) {
    TarnError(tarn::kErrorSingular);
    return *this;
  }
  for (int i = 0; i < N; ++i) Y[i] /= a;
  return *this;
}

TFunc& TFunc::operator+=(TFunc& g) {
  for (int i = 0; i < N; ++i) Y[i] += g(X[i]);
  return *this;
}

TFunc& TFunc::operator-=(TFunc& g) {
  for (int i = 0; i < N; ++i) Y[i] -= g(X[i]);
  return *this;
}

TFunc& TFunc::operator*=(TFunc& g) {
  for (int i = 0; i < N; ++i) Y[i] *= g(X[i]);
  return *this;
}

TFunc& TFunc::operator/=(TFunc& g) {
  for (int i = 0; i < N; ++i) {
    const double divisor = g(X[i]);
    if (divisor != 0) {
      Y[i] /= divisor;
      continue;
    }
    // A zero over a zero counts as zero; anything else is an error, but one that spoils one point
    // only, so the others are still divided.
    if (Y[i] != 0) TarnError(tarn::kErrorSingular);
    Y[i] = 0;
  }
  return *this;
}

TFunc& TFunc::pow(double p) {
  for (int i = 0; i < N; ++i) Y[i] = std::pow(Y[i], p);
  return *this;
}

// Transformation of the abscissae -----------------------------------------------------------------

TFunc& TFunc::Shift(double a) {
  for (int i = 0; i < N; ++i) X[i] += a;
  search_.Forget();
  return *this;
}

TFunc& TFunc::ScaleX(double a) {
  for (int i = 0; i < N; ++i) X[i] *= a;
  search_.Forget();
  return *this;
}

TFunc& TFunc::LnX() {
  for (int i = 0; i < N; ++i) X[i] = std::log(X[i]);
  search_.Forget();
  return *this;
}

TFunc& TFunc::ExpX() {
  for (int i = 0; i < N; ++i) X[i] = std::exp(X[i]);
  search_.Forget();
  return *this;
}
