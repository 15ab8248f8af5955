/// @file
/// The uniform source: its generator against a transcription of the published one, its seeds, its
/// replacement and its count.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "tests/support/host_fixture.h"

namespace {

/// xoshiro256++ and SplitMix64 as their authors print them.
std::uint64_t RotateLeft(std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }

std::uint64_t NextXoshiro(std::array<std::uint64_t, 4>& s) {
  const std::uint64_t result = RotateLeft(s[0] + s[3], 23) + s[0];
  const std::uint64_t t = s[1] << 17;
  s[2] ^= s[0];
  s[3] ^= s[1];
  s[1] ^= s[2];
  s[0] ^= s[3];
  s[2] ^= t;
  s[3] = RotateLeft(s[3], 45);
  return result;
}

std::uint64_t NextSplitMix(std::uint64_t& x) {
  std::uint64_t z = (x += 0x9e3779b97f4a7c15);
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
  z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
  return z ^ (z >> 31);
}

TEST(UniformReference, GivesThePublishedNumbers) {
  // First outputs of xoshiro256++ from the state 1, 2, 3, 4, and of SplitMix64 from the seed 0.
  std::array<std::uint64_t, 4> state = {1, 2, 3, 4};
  constexpr std::uint64_t kXoshiro[] = {41943041U, 58720359U, 3588806011781223U, 3591011842654386U};
  for (const std::uint64_t expected : kXoshiro) {
    EXPECT_EQ(NextXoshiro(state), expected);
  }
  std::uint64_t seed = 0;
  for (const std::uint64_t expected :
       {0xe220a8397b1dcdafU, 0x6e789e6aa1b965f4U, 0x06c45d188009454fU, 0xf88bb8a8724c81ecU}) {
    EXPECT_EQ(NextSplitMix(seed), expected);
  }
}

using UniformSourceTest = HostTest;

TEST_F(UniformSourceTest, IsXoshiroSeededBySplitMix) {
  for (const std::uint64_t seed : {std::uint64_t{0}, std::uint64_t{1}, ~std::uint64_t{0}}) {
    host.Seed(seed);
    std::uint64_t splitMix = seed;
    std::array<std::uint64_t, 4> state;
    for (std::uint64_t& word : state) word = NextSplitMix(splitMix);
    for (int i = 0; i < 1000; ++i) {
      const double expected = static_cast<double>(NextXoshiro(state) >> 11) / 9007199254740992.0;
      ASSERT_EQ(Rand(1.0), expected) << "seed " << seed << ", draw " << i;
    }
  }
}

TEST_F(UniformSourceTest, StaysBelowTheLimit) {
  for (const double limit : {1.0, 2.0, 3.0, 0.1, 1e300, 5e-324}) {
    host.SetUniformSource([] { return 1.0 - 0x1.0p-53; });
    EXPECT_LE(Rand(limit), limit);
    if (limit > 1e-300) {
      EXPECT_LT(Rand(limit), limit) << limit;
    }
  }
}

TEST_F(UniformSourceTest, IsUniform) {
  host.Seed(7);
  constexpr int kCells = 100;
  constexpr int kDraws = 1000000;
  std::vector<int> counts(kCells);
  double sum = 0.0;
  for (int i = 0; i < kDraws; ++i) {
    const double draw = Rand(1.0);
    ASSERT_GE(draw, 0.0);
    ASSERT_LT(draw, 1.0);
    ++counts[static_cast<std::size_t>(draw * kCells)];
    sum += draw;
  }
  double chiSquare = 0.0;
  for (const int count : counts) {
    const double deviation = count - static_cast<double>(kDraws) / kCells;
    chiSquare += deviation * deviation * kCells / kDraws;
  }
  // 99 degrees of freedom: six standard deviations around the mean.
  EXPECT_NEAR(chiSquare, 99.0, 6.0 * std::sqrt(2.0 * 99.0));
  EXPECT_NEAR(sum / kDraws, 0.5, 6.0 / std::sqrt(12.0 * kDraws));
}

TEST_F(UniformSourceTest, RepeatsFromASeed) {
  host.Seed(5);
  const double first = Rand(1.0);
  Rand(1.0);
  host.Seed(5);
  EXPECT_EQ(Rand(1.0), first);
  host.Seed(6);
  EXPECT_NE(Rand(1.0), first);
}

TEST(UniformSource, RepeatsFromHostToHost) {
  double first = 0.0;
  {
    const EmbeddedHost host;
    first = Rand(1.0);
  }
  const EmbeddedHost host;
  EXPECT_EQ(Rand(1.0), first);
}

TEST_F(UniformSourceTest, CanBeReplacedAndBroughtBack) {
  host.Seed(1);
  const double builtin = Rand(1.0);
  host.Seed(1);
  int calls = 0;
  host.SetUniformSource([&calls] { return ++calls * 0.25; });
  EXPECT_EQ(Rand(2.0), 0.5);
  EXPECT_EQ(Rand(2.0), 1.0);
  host.SetUniformSource({});
  EXPECT_EQ(Rand(1.0), builtin) << "the built-in source did not move meanwhile";
  EXPECT_EQ(calls, 2);
}

TEST_F(UniformSourceTest, CountsItsDraws) {
  EXPECT_EQ(host.DrawCount(), 0);
  for (int i = 0; i < 3; ++i) Rand(1.0);
  host.SetUniformSource([] { return 0.5; });
  Rand(1.0);
  EXPECT_EQ(host.DrawCount(), 4);
  host.Seed(1);
  EXPECT_EQ(host.DrawCount(), 4);
}

TEST_F(UniformSourceTest, ServesScripts) {
  EXPECT_EQ(Number("Seed(3); local a = Rand(); Seed(3); return Rand(2) / a"), 2.0);
  EXPECT_NE(Number("Seed(); return Rand()"), Number("Seed(); return Rand()"));
  EXPECT_EQ(Failure("Rand('x')").message, "argument 1 must be a number, got a string");
  EXPECT_EQ(Failure("Seed(1.5)").message, "argument 1 must be a whole number, got 1.5");
}

TEST(UniformSource, WithoutHostIsUniformAllTheSame) {
  const double first = Rand(1.0);
  const double second = Rand(1.0);
  EXPECT_NE(first, second);
  EXPECT_LT(first, 1.0);
}

}  // namespace
