#ifndef TARN_TESTS_OPTIM_COLLECTION_TABLE_H
#define TARN_TESTS_OPTIM_COLLECTION_TABLE_H

/// @file
/// What every method makes of the standard collection of small problems, and the table of it that
/// docs/minimiser.md shows.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "problems/problem.h"
#include "tarn_base_math.h"

namespace collection {

/// A method with the settings of the table.
template <class T>
struct Method {
  std::string name;
  std::function<void(T_Climb<T>&)> run;
};

template <class T>
const std::vector<Method<T>>& Methods();

enum class Outcome {
  kMinimum,       ///< the lowest published minimum
  kLocalMinimum,  ///< another published minimum
  kElsewhere
};

/// One solve.
struct Result {
  Outcome outcome;
  std::int64_t evaluations;
  double startValue;
  double value;          ///< at the point that the minimiser gives
  std::int64_t outside;  ///< evaluations outside of the box
  tarn::StopReason reason;
};

/// Accuracy asked of the minimiser.
template <class T>
constexpr T Accuracy() {
  return sizeof(T) == sizeof(float) ? T(1e-5) : T(1e-10);
}

/// A minimum is reached when this part of the way down from the start is left at most. (J. J. Moré,
/// S. M. Wild, Benchmarking derivative-free optimization algorithms, SIAM Journal on Optimization
/// 20 (2009) 172, equation 2.2.)
template <class T>
constexpr double Tolerance() {
  return sizeof(T) == sizeof(float) ? 1e-3 : 1e-5;
}

template <class T>
Result Solve(const problems::Problem<T>& problem, const Method<T>& method);

/// The two tables, `double` and `float`, in the form of the page.
std::string Tables();

/// Hash of values of the C library's functions that the problems use: solves take the same way only
/// where these are the same.
std::uint64_t LibraryFingerprint();

/// The one with which the tables of the page were made (GNU C library 2.36, x86-64 with fused
/// multiply-add).
inline constexpr std::uint64_t kLibraryOfThePage = 0x6c823d229e584de7;

}  // namespace collection

#endif
