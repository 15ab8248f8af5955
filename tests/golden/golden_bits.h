#ifndef TARN_TESTS_GOLDEN_GOLDEN_BITS_H
#define TARN_TESTS_GOLDEN_GOLDEN_BITS_H

// Result bits that must not depend on compiler, optimisation level or kernels.
//
// A program of its own (golden_bits.cpp) computes functions over fixed inputs and prints one line
// "name hash words" for each. compare-golden-bits builds and runs it in every way and compares.
//
// To add an area: a file golden_<area>.cpp that defines `void RunGolden<Area>(Report&)`, and its
// line in golden_areas.h.

#include <bit>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace tarn_golden {

/// The same numbers everywhere: the generator splitmix64, and arithmetic that rounds only once.
class Inputs {
 public:
  explicit Inputs(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Bits() {
    state_ += 0x9e3779b97f4a7c15u;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return z ^ (z >> 31);
  }
  /// An integer in [least, greatest].
  std::int64_t Integer(std::int64_t least, std::int64_t greatest) {
    const auto choices = static_cast<std::uint64_t>(greatest - least) + 1;
    return least + static_cast<std::int64_t>(Bits() % choices);
  }
  /// A multiple of 2^-53 in [0, 1).
  double Unit() { return std::ldexp(static_cast<double>(Bits() >> 11), -53); }
  /// A number in [0, scale), for a power of two as scale exact.
  double Below(double scale) { return Unit() * scale; }
  /// A number of either sign with an exponent from `least` to `greatest`.
  double Wide(int least, int greatest) {
    const int exponent = static_cast<int>(Integer(least, greatest));
    const double magnitude = std::ldexp(1 + Unit(), exponent);
    return Integer(0, 1) == 0 ? magnitude : -magnitude;
  }

 private:
  std::uint64_t state_;
};

/// Hash of a sequence of result words.
class Hash {
 public:
  void Add(double value) {
    AddWord(std::isnan(value) ? kNan : std::bit_cast<std::uint64_t>(value));
  }
  void Add(float value) { AddWord(std::isnan(value) ? kNan : std::bit_cast<std::uint32_t>(value)); }
  void Add(std::integral auto value) { AddWord(static_cast<std::uint64_t>(value)); }
  template <class T>
  void Add(const std::vector<T>& values) {
    for (const T& value : values) Add(value);
  }

  std::uint64_t Value() const { return value_; }
  std::int64_t Words() const { return words_; }

 private:
  /// Sign and payload of a NaN are nobody's contract.
  static constexpr std::uint64_t kNan = 0x7ff8dead7ff8deadu;

  void AddWord(std::uint64_t word) {
    value_ = (value_ ^ word) * 0xff51afd7ed558ccdu;
    value_ ^= value_ >> 32;
    ++words_;
  }

  std::uint64_t value_ = 0xcbf29ce484222325u;
  std::int64_t words_ = 0;
};

/// Prints the hashes.
class Report {
 public:
  /// Hashes what `compute(hash)` adds, under a name without blanks.
  template <class Compute>
  void Function(const std::string& name, Compute compute) {
    Hash hash;
    compute(hash);
    std::printf("%s %016llx %lld\n", name.c_str(), static_cast<unsigned long long>(hash.Value()),
                static_cast<long long>(hash.Words()));
    words_ += hash.Words();
  }

  std::int64_t Words() const { return words_; }

 private:
  std::int64_t words_ = 0;
};

#define TARN_GOLDEN_AREA(area) void RunGolden##area(Report& report);
#include "golden_areas.h"
#undef TARN_GOLDEN_AREA

}  // namespace tarn_golden

#endif
