// Plain numbers: the ascending order, and the procedure's own where that is not unique.

#include <gtest/gtest.h>

#include "arrays/sample_inputs.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

template <class T>
class SortValues : public testing::Test {
 protected:
  /// Sorts a copy that has guards on both sides and checks that those are left alone.
  std::vector<T> Sorted(const std::vector<T>& a) {
    constexpr std::size_t kGuards = 3;
    const T guard = T(12345);
    std::vector<T> guarded(a.size() + 2 * kGuards, guard);
    const auto begin = guarded.begin() + kGuards;
    std::copy(a.begin(), a.end(), begin);
    QSort(guarded.data() + kGuards, static_cast<std::int64_t>(a.size()));
    for (std::size_t i = 0; i < kGuards; ++i) {
      EXPECT_EQ(guarded[i], guard);
      EXPECT_EQ(guarded[guarded.size() - 1 - i], guard);
    }
    return {begin, begin + static_cast<std::ptrdiff_t>(a.size())};
  }

  void ExpectLiteralOrder(const SampleInput<T>& input, std::int64_t n) {
    std::vector<T> expected = input.make(n);
    const std::vector<T> sorted = Sorted(expected);
    LiteralSort(expected.data(), 0, n - 1);
    EXPECT_TRUE(SameBits(sorted, expected)) << input.name << ", n = " << n;
  }

  EmbeddedHost host_;
};

using ValueTypes = testing::Types<int, float, double>;
TYPED_TEST_SUITE(SortValues, ValueTypes);

TYPED_TEST(SortValues, PlainInputsOfEverySampleSizeEndInTheLiteralOrder) {
  for (const auto& input : PlainInputs<TypeParam>()) {
    for (const std::int64_t n : SampleSizes()) this->ExpectLiteralOrder(input, n);
  }
}

TYPED_TEST(SortValues, LongPlainInputsAscend) {
  constexpr std::int64_t kLong = 100000;
  for (const auto& input : PlainInputs<TypeParam>()) {
    if (input.name == "killer") continue;  // takes quadratic time to make
    std::vector<TypeParam> expected = input.make(kLong);
    const std::vector<TypeParam> sorted = this->Sorted(expected);
    std::sort(expected.begin(), expected.end());
    EXPECT_TRUE(SameBits(sorted, expected)) << input.name;
  }
}

TYPED_TEST(SortValues, ALongKillerSequenceIsSortedInPassing) {
  const std::vector<TypeParam> killer = MakeKillerSequence<TypeParam>(4000);
  const std::vector<TypeParam> sorted = this->Sorted(killer);
  EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
  EXPECT_TRUE(std::is_permutation(sorted.begin(), sorted.end(), killer.begin()));
}

TYPED_TEST(SortValues, TwoElementsAreExchangedOnlyWhenTheFirstIsGreater) {
  EXPECT_EQ(this->Sorted({2, 1}), (std::vector<TypeParam>{1, 2}));
  EXPECT_EQ(this->Sorted({1, 2}), (std::vector<TypeParam>{1, 2}));
  EXPECT_EQ(this->Sorted({2, 2}), (std::vector<TypeParam>{2, 2}));
}

TYPED_TEST(SortValues, NothingHappensBelowTwoElements) {
  TypeParam value = 5;
  QSort(&value, std::int64_t{1});
  QSort(&value, std::int64_t{0});
  QSort(&value, std::int64_t{-3});
  QSort(&value, std::int64_t{0}, std::int64_t{0});
  QSort(&value, std::int64_t{1}, std::int64_t{0});
  QSort(static_cast<TypeParam*>(nullptr), std::int64_t{0});
  EXPECT_EQ(value, 5);
}

TYPED_TEST(SortValues, BoundsAreIncludedAndNothingBeyondThemMoves) {
  for (const std::int64_t n : SampleSizes()) {
    std::vector<TypeParam> a = MakeWide<TypeParam>(n + 7);
    std::vector<TypeParam> expected = a;
    QSort(a.data(), std::int64_t{3}, n + 2);
    std::sort(expected.begin() + 3, expected.begin() + 3 + n);
    EXPECT_TRUE(SameBits(a, expected)) << n;
  }
}

template <class T>
class SortFloatingPoint : public SortValues<T> {};
using FloatingTypes = testing::Types<float, double>;
TYPED_TEST_SUITE(SortFloatingPoint, FloatingTypes);

TYPED_TEST(SortFloatingPoint, SignedZerosAndNanEndWhereTheProcedurePutsThem) {
  for (const auto& input : AmbiguousInputs<TypeParam>()) {
    for (const std::int64_t n : SampleSizes()) this->ExpectLiteralOrder(input, n);
  }
}

TYPED_TEST(SortFloatingPoint, SignedZerosNeedNotBeNeighbours) {
  // One zero of either sign among many distinct numbers decides about the method.
  std::vector<TypeParam> a = MakeWide<TypeParam>(1000);
  a[10] = TypeParam(-0.0);
  a[990] = TypeParam(0.0);
  this->ExpectLiteralOrder({"zeros far apart", [&](std::int64_t) { return a; }}, 1000);
}

TYPED_TEST(SortFloatingPoint, ZerosOfOneSignKeepIt) {
  for (const TypeParam zero : {TypeParam(0.0), TypeParam(-0.0)}) {
    std::vector<TypeParam> a = MakeWide<TypeParam>(500);
    for (std::size_t i = 0; i < a.size(); i += 9) a[i] = zero;
    std::vector<TypeParam> expected = a;
    std::sort(expected.begin(), expected.end());
    EXPECT_TRUE(SameBits(this->Sorted(a), expected));
  }
}

TYPED_TEST(SortFloatingPoint, InfinitiesTakeTheEnds) {
  const TypeParam infinity = std::numeric_limits<TypeParam>::infinity();
  std::vector<TypeParam> a = MakeWide<TypeParam>(300);
  a[0] = infinity;
  a[299] = -infinity;
  const std::vector<TypeParam> sorted = this->Sorted(a);
  EXPECT_EQ(sorted.front(), -infinity);
  EXPECT_EQ(sorted.back(), infinity);
  EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
}

TEST(Compare, IsThreeWayAndMinusOneForNan) {
  const auto compare = [](auto a, auto b) { return T_compare<decltype(a)>(&a, &b); };
  EXPECT_EQ(compare(short{2}, short{1}), 1);
  EXPECT_EQ(compare(short{-2}, short{1}), -1);
  EXPECT_EQ(compare(short{1}, short{1}), 0);
  EXPECT_EQ(compare(std::numeric_limits<int>::max(), std::numeric_limits<int>::min()), 1);
  EXPECT_EQ(compare(std::numeric_limits<int>::min(), std::numeric_limits<int>::max()), -1);
  EXPECT_EQ(compare(3, 3), 0);
  EXPECT_EQ(compare(1.5f, 1.25f), 1);
  EXPECT_EQ(compare(-0.0f, 0.0f), 0);
  EXPECT_EQ(compare(1.0, 1.0 + 0x1p-52), -1);
  EXPECT_EQ(compare(-0.0, 0.0), 0);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(compare(nan, 1.0), -1);
  EXPECT_EQ(compare(1.0, nan), -1);
  EXPECT_EQ(compare(nan, nan), -1);
  EXPECT_EQ(compare(std::numeric_limits<float>::quiet_NaN(), 1.0f), -1);
}

}  // namespace
}  // namespace tarn_test
