/// @file
/// Thinning of a long sample by equal steps of rank.

#include <cmath>
#include <memory>
#include <new>

#include "stat/number_arrays.h"
#include "stat/sample_pair.h"
#include "stat/sort_numbers.h"
#include "stat/stat.h"

namespace {

/// Calls `take(rank)` for rank 0 and then the rank nearest to every multiple of `step` below n, the
/// multiples formed by addition.
template <class Take>
void ForEveryStep(int n, double step, Take take) {
  take(0);
  for (double position = step; std::floor(position + 0.5) < n; position += step) {
    take(static_cast<int>(std::floor(position + 0.5)));
  }
}

Stat* ThinValues(const double* values, int n, int k) {
  const tarn::NumberArray sorted = tarn::CopyNumbers(values, n);
  const tarn::NumberArray taken = tarn::NewNumbers(n);
  if (!sorted || !taken) return nullptr;
  tarn::SortNumbers(sorted.get(), n);
  int count = 0;
  ForEveryStep(n, static_cast<double>(n) / k, [&](int rank) {
    taken[static_cast<std::size_t>(count++)] = sorted[static_cast<std::size_t>(rank)];
  });
  return new (std::nothrow) Stat(taken.get(), count);
}

Stat* ThinPairs(const double* values, const double* dispersions, int n, int k) {
  const auto sorted = tarn::NewSortedPairs(values, dispersions, n);
  const tarn::NumberArray takenValues = tarn::NewNumbers(n);
  const tarn::NumberArray takenDispersions = tarn::NewNumbers(n);
  if (!sorted || !takenValues || !takenDispersions) return nullptr;
  int count = 0;
  ForEveryStep(n, static_cast<double>(n) / k, [&](int rank) {
    const tarn::SamplePair& pair = sorted[static_cast<std::size_t>(rank)];
    takenValues[static_cast<std::size_t>(count)] = pair.value;
    takenDispersions[static_cast<std::size_t>(count)] = pair.companion;
    ++count;
  });
  return new (std::nothrow) Stat(takenValues.get(), takenDispersions.get(), count);
}

}  // namespace

Stat* Stat::SampleSubset(int k) {
  if (k < 1) return nullptr;
  std::unique_ptr<Stat> subset(len <= k              ? new (std::nothrow) Stat(*this)
                               : DataDisp == nullptr ? ThinValues(Data, len, k)
                                                     : ThinPairs(Data, DataDisp, len, k));
  // A sample that lost its values or dispersions for lack of memory is none of this one.
  const bool isWhole = subset && (subset->len == 0) == (len == 0) &&
                       (subset->DataDisp == nullptr) == (DataDisp == nullptr);
  return isWhole ? subset.release() : nullptr;
}
