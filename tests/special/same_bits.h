#ifndef TESTS_SPECIAL_SAME_BITS_H
#define TESTS_SPECIAL_SAME_BITS_H

/// @file
/// Comparison of results bit by bit, and the arguments to compare them at.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <random>

namespace same_bits {

/// Whether two doubles have the same bits; all NaNs count as the same.
inline bool Same(double a, double b) {
  if (std::isnan(a) && std::isnan(b)) return true;
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// For EXPECT_PRED_FORMAT2: prints both values to the last digit.
inline testing::AssertionResult AssertSame(const char* first, const char* second, double a,
                                           double b) {
  if (Same(a, b)) return testing::AssertionSuccess();
  char text[64];
  std::snprintf(text, sizeof text, "%.17g and %.17g", a, b);
  return testing::AssertionFailure() << first << " and " << second << " are " << text;
}

#define EXPECT_SAME_BITS(a, b) EXPECT_PRED_FORMAT2(same_bits::AssertSame, a, b)

/// Reproducible random arguments.
class Arguments {
 public:
  explicit Arguments(unsigned seed) : engine_(seed) {}

  double Uniform(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine_);
  }
  double LogUniform(double low, double high) {
    return std::exp(Uniform(std::log(low), std::log(high)));
  }
  int Integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
  double Sign() { return Integer(0, 1) == 0 ? -1.0 : 1.0; }

 private:
  std::mt19937_64 engine_;
};

}  // namespace same_bits

#endif
