#ifndef TARN_TESTS_OPTIM_ONE_DIMENSIONAL_SUPPORT_H
#define TARN_TESTS_OPTIM_ONE_DIMENSIONAL_SUPPORT_H

/// @file
/// What the tests of the one-dimensional searches share: a native function that records its calls,
/// script functions, the trace text.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "host/embedded_host.h"
#include "one_dimensional_reference.h"
#include "tarn_base_math.h"

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A native function of the kind that the searches call; behaviour and record are process-wide
/// because a plain pointer carries nothing. Every test case runs in a process of its own.
struct RecordedFunction {
  static inline std::function<double(double)> f;
  static inline std::vector<double> calls;
  static inline void* lastExtra = nullptr;

  static double Call(double x, void* extra) {
    calls.push_back(x);
    lastExtra = extra;
    return f(x);
  }

  /// A value that holds this function, which is to behave as `behaviour`.
  static Variable Make(std::function<double(double)> behaviour) {
    f = std::move(behaviour);
    calls.clear();
    Variable value;
    value.SetCppPointer(reinterpret_cast<void*>(&Call));
    return value;
  }
};

inline std::uint64_t Bits(double x) { return std::bit_cast<std::uint64_t>(x); }
inline std::uint32_t Bits(float x) { return std::bit_cast<std::uint32_t>(x); }

template <class T>
void ExpectSameBits(const std::vector<T>& actual, const std::vector<T>& expected,
                    const std::string& what) {
  ASSERT_EQ(actual.size(), expected.size()) << what;
  for (std::size_t i = 0; i < actual.size(); ++i) {
    ASSERT_EQ(Bits(actual[i]), Bits(expected[i]))
        << what << ": point " << i << " is " << actual[i] << " instead of " << expected[i];
  }
}

/// The trace of a run as text.
inline std::string TraceText(const std::vector<std::pair<double, double>>& lines) {
  std::string text;
  for (const auto& [x, f] : lines) {
    char line[128];
    std::snprintf(line, sizeof line, "Argument = %g, Function = %g\r\n", x, f);
    text += line;
  }
  return text;
}

/// The host, its text output in `output`.
class SearchTest : public testing::Test {
 protected:
  SearchTest() {
    host.SetOutput([this](std::string_view text) { output += text; });
  }

  Variable Script(const std::string& text) {
    Variable value;
    EXPECT_TRUE(host.Evaluate("return " + text, &value)) << host.TakeError().ToString();
    return value;
  }

  EmbeddedHost host;
  std::string output;
};

/// A function to search, with its interval.
struct SearchCase {
  const char* name;
  std::function<double(double)> f;
  double a;
  double b;
};

#endif
