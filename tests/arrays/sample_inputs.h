#ifndef TARN_TESTS_ARRAYS_SAMPLE_INPUTS_H
#define TARN_TESTS_ARRAYS_SAMPLE_INPUTS_H

// Arrays that sorting and selection find easy, hard or odd.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "arrays/literal_quicksort.h"

namespace tarn_test {

/// Sizes around every change of method: all small ones, the run, radix and stack limits, and
/// blocks.
inline std::vector<std::int64_t> SampleSizes() {
  std::vector<std::int64_t> sizes(41);
  std::iota(sizes.begin(), sizes.end(), 0);
  for (const int size :
       {63, 64, 65, 99, 100, 101, 127, 128, 129, 255, 257, 298, 299, 300, 301, 302, 500, 1000}) {
    sizes.push_back(size);
  }
  return sizes;
}

/// A named way of filling an array of n elements.
template <class T>
struct SampleInput {
  std::string name;
  std::function<std::vector<T>(std::int64_t n)> make;
};

/// An input on which the procedure takes quadratic time: values chosen while it runs, so that every
/// pivot turns out to be small (M. D. McIlroy, A killer adversary for quicksort, Software: Practice
/// and Experience 29 (1999) 341-344).
template <class T>
std::vector<T> MakeKillerSequence(std::int64_t n) {
  const std::int64_t undecided = n;  // greater than every decided value
  std::vector<std::int64_t> values(static_cast<std::size_t>(n), undecided);
  std::vector<std::size_t> items(values.size());
  std::iota(items.begin(), items.end(), 0);
  std::int64_t decided = 0;
  std::size_t candidate = 0;
  LiteralQuicksort(
      0, n - 1,
      [&](std::int64_t i, std::int64_t j) {
        const std::size_t x = items[static_cast<std::size_t>(i)];
        const std::size_t y = items[static_cast<std::size_t>(j)];
        if (x != y && values[x] == undecided && values[y] == undecided) {
          values[x == candidate ? x : y] = decided++;
        }
        if (values[x] == undecided) candidate = x;
        if (values[y] == undecided) candidate = y;
        return x == y ? 0 : Compare(values[x], values[y]);
      },
      [&](std::int64_t i, std::int64_t j) {
        std::swap(items[static_cast<std::size_t>(i)], items[static_cast<std::size_t>(j)]);
      });
  return {values.begin(), values.end()};
}

/// One of the given values for each element, at random.
template <class T>
SampleInput<T> Choice(const std::string& name, std::vector<T> choices) {
  return {name, [choices](std::int64_t n) {
            std::mt19937_64 generator(static_cast<std::uint64_t>(n) + 17);
            std::vector<T> a(static_cast<std::size_t>(n));
            for (T& value : a) value = choices[generator() % choices.size()];
            return a;
          }};
}

/// Element i is f(i, n).
template <class T, class Function>
SampleInput<T> Formula(const std::string& name, Function f) {
  return {name, [f](std::int64_t n) {
            std::vector<T> a(static_cast<std::size_t>(n));
            for (std::int64_t i = 0; i < n; ++i) a[static_cast<std::size_t>(i)] = T(f(i, n));
            return a;
          }};
}

/// Random numbers over the whole range of T: every exponent, or every integer.
template <class T>
std::vector<T> MakeWide(std::int64_t n) {
  std::mt19937_64 generator(static_cast<std::uint64_t>(n) + 3);
  std::vector<T> a(static_cast<std::size_t>(n));
  for (T& value : a) {
    if constexpr (std::is_floating_point_v<T>) {
      const int exponent = static_cast<int>(generator() % 240) - 120;
      const double mantissa = static_cast<double>(generator() % 2000001) / 1e6 - 1;
      value = static_cast<T>(std::ldexp(mantissa + 0x1p-30, exponent));
    } else {
      value = static_cast<T>(generator());
    }
  }
  return a;
}

/// Inputs whose sorted order is unique.
template <class T>
std::vector<SampleInput<T>> PlainInputs() {
  const T greatest = std::numeric_limits<T>::max();
  const T least = std::numeric_limits<T>::lowest();
  return {
      {"wide", MakeWide<T>},
      {"killer", MakeKillerSequence<T>},
      Choice<T>("few values", {T(3), T(1), T(4), T(5), T(9), T(-2)}),
      Choice<T>("two values", {T(-1), T(1)}),
      Choice<T>("extremes", {greatest, least, T(0), T(1), T(greatest / 2), T(least / 2)}),
      Formula<T>("all equal", [](auto, auto) { return 7; }),
      Formula<T>("ascending", [](auto i, auto) { return i; }),
      Formula<T>("descending", [](auto i, auto n) { return n - i; }),
      Formula<T>("organ pipe", [](auto i, auto n) { return std::min(i, n - i); }),
      Formula<T>("ascending but the last", [](auto i, auto n) { return i + 1 == n ? -1 : i; }),
      Formula<T>("saw tooth", [](auto i, auto) { return i % 5; }),
      Formula<T>("greatest in the middle", [](auto i, auto n) { return i == (n - 1) / 2 ? n : 0; }),
  };
}

/// Floating-point inputs with elements that compare equal but differ, or do not compare.
template <class T>
std::vector<SampleInput<T>> AmbiguousInputs() {
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const T infinity = std::numeric_limits<T>::infinity();
  const T tiny = std::numeric_limits<T>::denorm_min();
  return {
      Choice<T>("signed zeros", {T(0), T(-0.0)}),
      Choice<T>("zeros among others", {T(0), T(-0.0), T(1), T(-1), tiny, -tiny}),
      Choice<T>("some NaN", {nan, T(1), T(2), T(3), T(-4), T(5)}),
      Choice<T>("mostly NaN", {nan, nan, nan, T(1), T(0)}),
      Choice<T>("all NaN", {nan}),
      Choice<T>("everything odd", {nan, infinity, -infinity, T(0), T(-0.0), tiny, T(1)}),
  };
}

template <class T>
bool SameBits(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() &&
         (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

}  // namespace tarn_test

#endif
