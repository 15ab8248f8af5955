// QMedian against a literal writing of the bisection, bit for bit, and against what a median is.

#include <gtest/gtest.h>

#include "arrays/literal_median.h"
#include "arrays/sample_inputs.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

template <class T>
class Bisection : public testing::Test {
 protected:
  static bool Same(T a, T b) { return std::memcmp(&a, &b, sizeof(T)) == 0 || (a != a && b != b); }
  static void ExpectLiteral(std::vector<T> a, const std::string& name) {
    const T expected = LiteralMedian(a);
    const T median = QMedian(a.data(), static_cast<std::int64_t>(a.size()));
    EXPECT_TRUE(Same(median, expected))
        << name << ", n = " << a.size() << ": " << median << " instead of " << expected;
  }

  EmbeddedHost host_;
};

using MedianTypes = testing::Types<short, int, float, double>;
TYPED_TEST_SUITE(Bisection, MedianTypes);

TYPED_TEST(Bisection, EveryInputOfEverySampleSizeGivesTheLiteralMedian) {
  for (const auto& input : PlainInputs<TypeParam>()) {
    for (const std::int64_t n : SampleSizes()) this->ExpectLiteral(input.make(n), input.name);
  }
}

TYPED_TEST(Bisection, SmallArraysOfFewValuesGiveTheLiteralMedian) {
  // All arrays of up to 7 elements out of {0, 1, 2}: ties in every position and round.
  for (int n = 0; n <= 7; ++n) {
    for (int code = 0; code < static_cast<int>(std::pow(3, n)); ++code) {
      std::vector<TypeParam> a;
      for (int i = 0, rest = code; i < n; ++i, rest /= 3) a.push_back(TypeParam(rest % 3));
      this->ExpectLiteral(a, "code " + std::to_string(code));
    }
  }
}

TYPED_TEST(Bisection, RandomTiesGiveTheLiteralMedian) {
  std::mt19937_64 generator(99);
  for (int repetition = 0; repetition < 3000; ++repetition) {
    std::vector<TypeParam> a(generator() % 60);
    const std::uint64_t values = 1 + generator() % 12;
    for (TypeParam& x : a) x = static_cast<TypeParam>(static_cast<int>(generator() % values) - 4);
    this->ExpectLiteral(a, "ties");
  }
}

TYPED_TEST(Bisection, OutlierThatTheSplitsCreepAwayFromGivesTheLiteralMedian) {
  for (const TypeParam outlier :
       {std::numeric_limits<TypeParam>::max(), std::numeric_limits<TypeParam>::lowest()}) {
    std::mt19937_64 generator(7);
    std::vector<TypeParam> a(2001);
    for (TypeParam& x : a) x = static_cast<TypeParam>(static_cast<int>(generator() % 2000) - 1000);
    for (std::size_t i = 0; i < a.size(); i += 400) a[i] = outlier;
    this->ExpectLiteral(a, "outlier");
  }
}

/// Small numbers and outliers of one sign, some of them powers of two. With 0 as first pivot and a
/// power of two as extreme the splits are powers of two: many rule out little, and some meet
/// values.
template <class T>
std::vector<T> WithOutliers(std::mt19937_64& generator) {
  constexpr int kGreatestExponent = std::is_same_v<T, short> ? 14 : 30;
  const double sign = generator() % 2 == 0 ? 1 : -1;
  const std::uint64_t smallNumbers = 1 + generator() % 40;
  std::vector<T> a(105 + generator() % 60);
  for (T& x : a) x = static_cast<T>(sign * static_cast<double>(1 + generator() % smallNumbers));
  for (std::uint64_t i = generator() % 30; i > 0; --i) {
    const double mantissa =
        generator() % 3 == 0 ? 1 : 1 + static_cast<double>(generator() % 100) / 128;
    const int exponent = 4 + static_cast<int>(generator() % (kGreatestExponent - 4));
    a[generator() % a.size()] = static_cast<T>(sign * std::floor(std::ldexp(mantissa, exponent)));
  }
  a[0] = static_cast<T>(sign * std::ldexp(1.0, kGreatestExponent));
  a[a.size() / 2] = 0;
  return a;
}

TYPED_TEST(Bisection, OutliersOnAndOffTheSplitsGiveTheLiteralMedian) {
  std::mt19937_64 generator(21);
  for (int repetition = 0; repetition < 4000; ++repetition) {
    this->ExpectLiteral(WithOutliers<TypeParam>(generator), "outliers");
  }
}

TYPED_TEST(Bisection, EvenlySpacedValuesThatMisleadGiveTheLiteralMedian) {
  // Whoever looks at every sixteenth part of the array takes the median for 1.
  constexpr std::size_t kSpacing = 50;
  for (const double bulk : {100, -100}) {
    std::vector<TypeParam> a(16 * kSpacing + 1);
    for (std::size_t i = 0; i < a.size(); ++i) {
      const std::size_t distance = std::min(i % kSpacing, kSpacing - i % kSpacing);
      a[i] =
          static_cast<TypeParam>(distance <= 4 ? bulk / 100 : bulk + static_cast<double>(i) / 100);
    }
    for (std::size_t i = 10; i < 14; ++i)
      a[i] = static_cast<TypeParam>(bulk * (400 - 73 * static_cast<double>(i - 10)));
    a[a.size() / 2] = 0;
    this->ExpectLiteral(a, "misleading sample");
  }
}

TYPED_TEST(Bisection, MedianLiesBetweenTheNeighboursOfTheMiddle) {
  for (const std::int64_t n : {3, 4, 10, 11, 100, 101, 1000, 100000}) {
    std::vector<TypeParam> a = MakeWide<TypeParam>(n);
    const TypeParam median = QMedian(a.data(), n);
    std::sort(a.begin(), a.end());
    const auto middle = static_cast<std::size_t>(n / 2);
    EXPECT_GE(median, a[middle - 1]) << n;
    EXPECT_LE(median, a[std::min(middle + 1, a.size() - 1)]) << n;
  }
}

template <class T>
class OddFloatBisection : public Bisection<T> {};
using FloatingTypes = testing::Types<float, double>;
TYPED_TEST_SUITE(OddFloatBisection, FloatingTypes);

TYPED_TEST(OddFloatBisection, NanInfinityAndSignedZerosGiveTheLiteralMedian) {
  for (const auto& input : AmbiguousInputs<TypeParam>()) {
    for (const std::int64_t n : SampleSizes()) this->ExpectLiteral(input.make(n), input.name);
  }
}

TYPED_TEST(OddFloatBisection, NeighbouringNumbersGiveTheLiteralMedian) {
  const TypeParam one = 1;
  const TypeParam next = std::nextafter(one, TypeParam(2));
  const TypeParam huge = std::numeric_limits<TypeParam>::max();
  const TypeParam tiny = std::numeric_limits<TypeParam>::denorm_min();
  for (const auto& choices :
       {std::vector<TypeParam>{one, next}, std::vector<TypeParam>{one, next, next, TypeParam(1.5)},
        std::vector<TypeParam>{huge, std::nextafter(huge, TypeParam(0))},
        std::vector<TypeParam>{0, tiny, 2 * tiny}, std::vector<TypeParam>{-tiny, tiny}}) {
    for (const std::int64_t n : SampleSizes()) {
      this->ExpectLiteral(Choice<TypeParam>("", choices).make(n), "neighbours");
    }
  }
}

TYPED_TEST(OddFloatBisection, ManyNanEnd) {
  std::vector<TypeParam> a = MakeWide<TypeParam>(100000);
  for (std::size_t i = 0; i < a.size(); i += 3) a[i] = std::numeric_limits<TypeParam>::quiet_NaN();
  this->ExpectLiteral(a, "a third NaN");
}

}  // namespace
}  // namespace tarn_test
