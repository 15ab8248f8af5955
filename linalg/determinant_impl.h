#ifndef TARN_LINALG_DETERMINANT_IMPL_H
#define TARN_LINALG_DETERMINANT_IMPL_H

#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/error_numbers.h"
#include "frame/host.h"
#include "linalg/determinant_closed_form.h"
#include "linalg/matrix.h"
#include "linalg/solve_elimination.h"
#include "linalg/svd_decomposition.h"
#include "linalg/vector.h"

namespace tarn {

/// A determinant or its logarithm, or the number of the error to raise.
template <class Element>
struct DeterminantResult {
  Element value = 0;
  int error = 0;
};

/// The product of the pivots from the first to the last, with the sign of the row exchanges.
template <class Element>
DeterminantResult<Element> DeterminantByElimination(const Element* a, int n) {
  EliminationCopy<Element> copy(a, n);
  if (!copy) return {0, kErrorMemory};
  bool oddExchanges = false;
  if (!Eliminate<Element>(copy, nullptr, &oddExchanges)) return {0, 0};
  Element product = 1;
  for (int k = 0; k < n; ++k) product *= copy(k, k);
  return {oddExchanges ? -product : product, 0};
}

/// Sum of |a(i, j)| in storage order divided by the number of elements.
template <class Element>
Element MeanMagnitude(const Element* a, int n) {
  const std::int64_t count = static_cast<std::int64_t>(n) * n;
  Element sum = 0;
  for (std::int64_t k = 0; k < count; ++k) sum += std::abs(a[k]);
  return sum / static_cast<Element>(count);
}

/// Sum of ln |pivot| from the first to the last plus n*ln(s), of the matrix divided by its mean
/// magnitude s. The scaling keeps the pivots of large orders representable. Singular gives 0.
template <class Element>
DeterminantResult<Element> LogDeterminantByElimination(const Element* a, int n) {
  EliminationCopy<Element> copy(a, n);
  if (!copy) return {0, kErrorMemory};
  const Element scale = MeanMagnitude(a, n);
  if (scale == 0) return {0, 0};
  copy.Scale(1 / scale);
  bool oddExchanges = false;
  if (!Eliminate<Element>(copy, nullptr, &oddExchanges)) return {0, 0};
  Element sum = 0;
  for (int k = 0; k < n; ++k) sum += std::log(std::abs(copy(k, k)));
  return {sum + static_cast<Element>(n) * std::log(scale), 0};
}

template <class Element>
DeterminantResult<Element> Determinant(const Element* a, int n) {
  switch (n) {
    case 0:
      return {1, 0};
    case 1:
      return {a[0], 0};
    case 2:
      return {Determinant2(a), 0};
    case 3:
      return {Determinant3(a), 0};
    default:
      return DeterminantByElimination(a, n);
  }
}

template <class Element>
DeterminantResult<Element> LogDeterminant(const Element* a, int n) {
  switch (n) {
    case 0:
      return {0, 0};
    case 2:
      return {std::log(std::abs(Determinant2(a))), 0};
    default:
      return LogDeterminantByElimination(a, n);
  }
}

/// Sum of the logarithms from the last to the first; the negative NaN at the first value that is
/// not positive.
template <class Element>
Element SumOfLogarithms(const T_MatVectorCol<Element>& values) {
  Element sum = 0;
  for (int i = values.Dim() - 1; i >= 0; --i) {
    const bool isPositive = values[i] > 0;
    if (!isPositive) return -std::numeric_limits<Element>::quiet_NaN();
    sum += std::log(values[i]);
  }
  return sum;
}

template <class Element>
DeterminantResult<Element> LogDeterminantBySvd(const T_Matrix<Element>& a, Element limit) {
  const SvdFactors<Element> factors(a, limit);
  if (factors.error != 0) return {0, factors.error};
  return {SumOfLogarithms(factors.w), 0};
}

/// The value, after raising the error if there is one.
template <class Element>
Element ValueOrError(const DeterminantResult<Element>& result) {
  if (result.error != 0) TarnError(result.error);
  return result.value;
}

}  // namespace tarn

template <class Element>
Element T_Matrix<Element>::Det() const {
  if (x != y) return tarn::ValueOrError<Element>({0, tarn::kErrorArgument});
  if (data == nullptr && x > 0) return tarn::ValueOrError<Element>({0, tarn::kErrorMemory});
  return tarn::ValueOrError(tarn::Determinant(data, x));
}

template <class Element>
Element T_Matrix<Element>::LogAbsDet() const {
  if (x != y) return tarn::ValueOrError<Element>({0, tarn::kErrorArgument});
  if (data == nullptr && x > 0) return tarn::ValueOrError<Element>({0, tarn::kErrorMemory});
  return tarn::ValueOrError(tarn::LogDeterminant(data, x));
}

template <class Element>
Element T_Matrix<Element>::LnDet() const {
  return tarn::ValueOrError(tarn::LogDeterminantBySvd(*this, GetMinTypeValue()));
}

#endif
