#ifndef TARN_STAT_SAMPLE_PAIR_H
#define TARN_STAT_SAMPLE_PAIR_H

/// @file
/// Values that are sorted together with a number that belongs to each.

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace tarn {

/// A value and its companion, a dispersion or a weight.
struct SamplePair {
  double value;
  double companion;
};

/// New pairs of the values and companions, sorted by value; equal values keep their order and NaN
/// stands last. Null when memory is refused.
inline std::unique_ptr<SamplePair[]> NewSortedPairs(const double* values, const double* companions,
                                                    int count) {
  const auto size = static_cast<std::size_t>(count);
  std::unique_ptr<SamplePair[]> pairs(new (std::nothrow) SamplePair[size]);
  if (!pairs) return pairs;
  for (std::size_t i = 0; i < size; ++i) pairs[i] = {values[i], companions[i]};
  SamplePair* const numbersEnd =
      std::stable_partition(pairs.get(), pairs.get() + size,
                            [](const SamplePair& pair) { return !std::isnan(pair.value); });
  std::stable_sort(pairs.get(), numbersEnd,
                   [](const SamplePair& a, const SamplePair& b) { return a.value < b.value; });
  return pairs;
}

}  // namespace tarn

#endif
