#ifndef TARN_HOST_UNIFORM_SOURCE_H
#define TARN_HOST_UNIFORM_SOURCE_H

/// @file
/// The uniform generator behind `Rand`.
///
/// Sources:
///  [1] D. Blackman, S. Vigna, Scrambled linear pseudorandom number generators,
///      ACM Trans. Math. Software 47 (2021) 36: the generator xoshiro256++.
///  [2] G. L. Steele, D. Lea, C. H. Flood, Fast splittable pseudorandom number generators,
///      OOPSLA 2014: SplitMix64, which fills the state from a seed as [1] advises.

#include <array>
#include <cstdint>

namespace tarn {

class UniformSource {
 public:
  explicit UniformSource(std::uint64_t seed) { Seed(seed); }

  void Seed(std::uint64_t seed);
  /// The next 64 random bits.
  std::uint64_t NextBits();
  /// A multiple of 2^-53 in [0, 1): the upper 53 bits.
  double Next() { return static_cast<double>(NextBits() >> 11) * 0x1.0p-53; }

 private:
  std::array<std::uint64_t, 4> state_;
};

}  // namespace tarn

#endif
