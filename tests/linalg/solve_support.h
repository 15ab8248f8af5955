#ifndef TARN_TESTS_LINALG_SOLVE_SUPPORT_H
#define TARN_TESTS_LINALG_SOLVE_SUPPORT_H

// Inputs and comparisons shared by the tests of the solvers and decompositions.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "host/embedded_host.h"
#include "linalg/kernels.h"
#include "tarn_base_math.h"

/// Elements stored row after row.
template <class T>
struct Dense {
  int rows;
  int cols;
  std::vector<T> elements;

  Dense(int m, int n)
      : rows(m), cols(n), elements(static_cast<std::size_t>(m) * static_cast<std::size_t>(n)) {}
  T* operator[](int i) { return elements.data() + static_cast<std::ptrdiff_t>(i) * cols; }
  const T* operator[](int i) const {
    return elements.data() + static_cast<std::ptrdiff_t>(i) * cols;
  }
};

template <class T>
T_Matrix<T> ToMatrix(const Dense<T>& d) {
  return T_Matrix<T>(d.rows, d.cols, d.elements.data());
}

// Inputs ------------------------------------------------------------------------------------------

enum class Kind { kRandom, kTied, kTiny, kHuge, kSignedZero, kNonFinite };

inline constexpr Kind kAllKinds[] = {Kind::kRandom, Kind::kTied,       Kind::kTiny,
                                     Kind::kHuge,   Kind::kSignedZero, Kind::kNonFinite};
inline constexpr Kind kFiniteKinds[] = {Kind::kRandom, Kind::kTied, Kind::kTiny, Kind::kHuge,
                                        Kind::kSignedZero};

inline std::string Name(Kind kind) {
  constexpr const char* kNames[] = {"random", "tied", "tiny", "huge", "signed zero", "non-finite"};
  return kNames[static_cast<int>(kind)];
}

/// Elements of one kind, the same on every run.
template <class T>
class ElementSource {
 public:
  ElementSource(Kind kind, unsigned seed) : kind_(kind), engine_(seed) {}

  T Next() {
    switch (kind_) {
      case Kind::kTied:
        return static_cast<T>(Below(5) - 2);
      case Kind::kTiny:
        return Uniform() * std::numeric_limits<T>::min() * static_cast<T>(Below(4));
      case Kind::kHuge:
        return Uniform() * std::sqrt(std::numeric_limits<T>::max()) * static_cast<T>(Below(4));
      case Kind::kSignedZero:
        return Below(3) == 0 ? Uniform() : std::copysign(T{0}, Uniform());
      case Kind::kNonFinite:
        return Below(40) == 0 ? NonFinite() : Uniform();
      default:
        return Uniform();
    }
  }

 private:
  int Below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }
  T Uniform() { return static_cast<T>(static_cast<double>(engine_()) / 2147483648.0 - 1.0); }
  T NonFinite() {
    const int choice = Below(3);
    if (choice == 0) return std::numeric_limits<T>::quiet_NaN();
    return choice == 1 ? std::numeric_limits<T>::infinity() : -std::numeric_limits<T>::infinity();
  }

  Kind kind_;
  std::mt19937 engine_;
};

template <class T>
std::vector<T> MakeVector(int n, Kind kind, unsigned seed) {
  ElementSource<T> source(kind, seed);
  std::vector<T> v;
  for (int i = 0; i < n; ++i) v.push_back(source.Next());
  return v;
}

template <class T>
Dense<T> MakeMatrix(int m, int n, Kind kind, unsigned seed) {
  Dense<T> d(m, n);
  d.elements = MakeVector<T>(m * n, kind, seed);
  return d;
}

/// A matrix whose leading pivots do not vanish: elements of a kind with a heavy diagonal.
template <class T>
Dense<T> MakeDominant(int n, Kind kind, unsigned seed) {
  Dense<T> d = MakeMatrix<T>(n, n, kind, seed);
  T largest = 0;
  for (T e : d.elements) {
    if (std::isfinite(e) && std::abs(e) > largest) largest = std::abs(e);
  }
  if (largest == 0) largest = 1;
  for (int i = 0; i < n; ++i) d[i][i] = largest * static_cast<T>(2 + i % 3);
  return d;
}

/// A symmetric positive definite matrix, B*transpose(B) plus a diagonal.
template <class T>
Dense<T> MakePositive(int n, unsigned seed) {
  const Dense<T> b = MakeMatrix<T>(n, n, Kind::kRandom, seed);
  Dense<T> d(n, n);
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j <= i; ++j) {
      T sum = i == j ? T{1} : T{0};
      for (int k = 0; k < n; ++k) sum += b[i][k] * b[j][k];
      d[i][j] = d[j][i] = sum;
    }
  }
  return d;
}

/// All orders up to 40 and those about the edges of blocks and work areas.
inline std::vector<int> ManyOrders() {
  std::vector<int> orders;
  for (int n = 0; n <= 40; ++n) orders.push_back(n);
  for (int n : {63, 64, 65, 99, 100, 101, 127, 128, 129, 255, 257}) orders.push_back(n);
  return orders;
}

// Comparisons -------------------------------------------------------------------------------------

/// Equal bits, or both NaN: sign and payload of a NaN depend on the instruction set.
template <class T>
bool SameBits(T a, T b) {
  using Bits = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

template <class T>
::testing::AssertionResult SameElements(const T* actual, const T* expected, std::size_t count) {
  for (std::size_t k = 0; k < count; ++k) {
    if (!SameBits(actual[k], expected[k])) {
      return ::testing::AssertionFailure()
             << "element " << k << " is " << actual[k] << ", expected " << expected[k]
             << ", difference " << actual[k] - expected[k];
    }
  }
  return ::testing::AssertionSuccess();
}

template <class T>
::testing::AssertionResult SameElements(T_Matrix<T>& actual, const Dense<T>& expected) {
  if (actual.Y() != expected.rows || actual.X() != expected.cols) {
    return ::testing::AssertionFailure() << "wrong shape";
  }
  return SameElements(actual[0], expected.elements.data(), expected.elements.size());
}

template <class T>
constexpr double Epsilon() {
  return static_cast<double>(std::numeric_limits<T>::epsilon());
}

// Fixtures ----------------------------------------------------------------------------------------

template <class T>
class SolverTest : public ::testing::Test {
 protected:
  /// Number of the one error raised since the last call; 0 for none, -1 for several.
  int RaisedError() {
    const std::int64_t raised = host.RaisedErrorCount() - seen_;
    seen_ = host.RaisedErrorCount();
    if (raised == 0) return 0;
    const int number = host.TakeError().number;
    return raised == 1 ? number : -1;
  }

  EmbeddedHost host;

 private:
  std::int64_t seen_ = 0;
};

using ElementTypes = ::testing::Types<float, double>;

/// Bit-for-bit tests run once for every set of kernels that the machine has.
class KernelSetTest : public ::testing::TestWithParam<tarn::KernelSet> {
 protected:
  void SetUp() override {
    if (!tarn::SelectKernels(GetParam())) GTEST_SKIP() << "no such instructions here";
  }

  EmbeddedHost host;
};

inline std::string KernelName(const ::testing::TestParamInfo<tarn::KernelSet>& info) {
  return tarn::KernelSetName(info.param);
}

#endif
