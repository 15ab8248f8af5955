// QMedian: stated values, work areas and ends.

#include <gtest/gtest.h>

#include "arrays/sample_inputs.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

template <class T>
T Median(std::vector<T> a) {
  return QMedian(a.data(), static_cast<std::int64_t>(a.size()));
}

template <class T>
class MedianOf : public testing::Test {
 protected:
  EmbeddedHost host_;
};

using MedianTypes = testing::Types<short, int, float, double>;
TYPED_TEST_SUITE(MedianOf, MedianTypes);

TYPED_TEST(MedianOf, NothingIsZero) {
  EXPECT_EQ(Median<TypeParam>({}), 0);
  TypeParam value = 5;
  EXPECT_EQ(QMedian(&value, std::int64_t{-4}), 0);
}

TYPED_TEST(MedianOf, OneValueIsItself) { EXPECT_EQ(Median<TypeParam>({-7}), -7); }

TYPED_TEST(MedianOf, TwoValuesHaveTheirMean) {
  const TypeParam expected = std::is_integral_v<TypeParam> ? TypeParam(1) : TypeParam(1.5);
  EXPECT_EQ(Median<TypeParam>({1, 2}), expected);
  EXPECT_EQ(Median<TypeParam>({2, 1}), expected);
  EXPECT_EQ(Median<TypeParam>({-1, -2}), -expected);  // integers are truncated towards zero
}

TYPED_TEST(MedianOf, EqualValuesHaveThatValue) {
  for (std::size_t n = 1; n < 30; ++n) {
    EXPECT_EQ(Median(std::vector<TypeParam>(n, TypeParam(6))), 6) << n;
  }
}

TYPED_TEST(MedianOf, ThreeValuesHaveTheMeanOfTheUpperTwo) {
  // The middle value is the first pivot and goes to the upper list, which then has two elements.
  const TypeParam expected = std::is_integral_v<TypeParam> ? TypeParam(2) : TypeParam(2.5);
  EXPECT_EQ(Median<TypeParam>({1, 2, 3}), expected);
  EXPECT_EQ(Median<TypeParam>({10, 20, 31}), TypeParam(25.5));
}

TYPED_TEST(MedianOf, PivotWithListsOfEqualLengthIsTheResult) {
  // About 8 lie 1 and 2 below, 9 and the pivot itself above.
  EXPECT_EQ(Median<TypeParam>({1, 2, 8, 9}), 8);
}

TYPED_TEST(MedianOf, SplitThatBalancesIsTheResult) {
  // About 2 the lists are {1} and {9, 2, 8}; the next split (9 + 2) / 2 has two values on each
  // side.
  EXPECT_EQ(Median<TypeParam>({9, 1, 2, 8}), TypeParam(5.5));
}

TYPED_TEST(MedianOf, FinalPairHasItsMean) {
  // About 4 the lists are {1} and {9, 4, 5}; the next split (9 + 4) / 2 leaves 4 and 5 below.
  EXPECT_EQ(Median<TypeParam>({1, 9, 4, 5}), TypeParam(4.5));
}

TYPED_TEST(MedianOf, RoundWithoutEffectIsFollowedByOneOfTheOtherParity) {
  // The halved integer split 1 stays, and the single 1 goes up in even rounds but down in odd ones.
  EXPECT_EQ(Median<TypeParam>({1, 2, 1, 2, 1, 2, 2}), 2);
}

TYPED_TEST(MedianOf, InputIsNeitherMovedNorChanged) {
  std::vector<TypeParam> a = MakeWide<TypeParam>(777);
  const std::vector<TypeParam> before = a;
  QMedian(a.data(), std::int64_t{777});
  EXPECT_TRUE(SameBits(a, before));
}

TYPED_TEST(MedianOf, WorkAreaOfFourBuffersGivesTheSame) {
  for (const std::int64_t n : SampleSizes()) {
    std::vector<TypeParam> a = MakeWide<TypeParam>(n);
    const TypeParam guard = 77;
    std::vector<std::vector<TypeParam>> buffers(
        4, std::vector<TypeParam>(static_cast<std::size_t>(n) + 1, guard));
    TypeParam* work[4] = {buffers[0].data(), buffers[1].data(), buffers[2].data(),
                          buffers[3].data()};
    this->host_.SetHeapFailure({});
    const TypeParam median = QMedian(a.data(), n, work);
    EXPECT_EQ(this->host_.HeapRequestCount(), 0);
    EXPECT_EQ(median, Median(a)) << n;
    for (const auto& buffer : buffers) EXPECT_EQ(buffer.back(), guard) << n;
  }
}

TYPED_TEST(MedianOf, OneBlockIsTakenFromThreeValuesOnAndGivenBack) {
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  for (std::size_t n = 0; n < 6; ++n) {
    this->host_.SetHeapFailure({});
    Median(std::vector<TypeParam>(n, TypeParam(1)));
    EXPECT_EQ(this->host_.HeapRequestCount(), n < 3 ? 0 : 1) << n;
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
  }
}

TYPED_TEST(MedianOf, RefusedWorkBlockGivesZeroAndNoError) {
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  this->host_.SetHeapFailure([](std::int64_t) { return true; });
  EXPECT_EQ(Median<TypeParam>({4, 5, 6}), 0);
  EXPECT_EQ(Median<TypeParam>({4, 6}), 5);  // needs none
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
  EXPECT_FALSE(this->host_.HasError());
}

class MedianAtTheLimits : public testing::Test {
 protected:
  EmbeddedHost host_;
};

TEST_F(MedianAtTheLimits, SumsOfShortAreFormedInInt) {
  EXPECT_EQ(Median<short>({32767, 32765}), 32766);
  EXPECT_EQ(Median<short>({-32768, -32768}), -32768);
}

TEST_F(MedianAtTheLimits, SumsThatOverflowIntAreAvoided) {
  constexpr int kMax = std::numeric_limits<int>::max();
  constexpr int kMin = std::numeric_limits<int>::min();
  EXPECT_EQ(Median<int>({kMax, kMax}), kMax);
  EXPECT_EQ(Median<int>({kMax - 4, kMax}), kMax - 2);
  EXPECT_EQ(Median<int>({kMin, kMin + 6}), kMin + 3);
  EXPECT_EQ(Median<int>({kMin, kMax}), 0);  // truncated from -0.5
  EXPECT_EQ(Median<int>({kMax, kMax - 2, kMax - 4, kMax - 6}), kMax - 3);
}

TEST_F(MedianAtTheLimits, DoubleSumsThatOverflowAreAvoided) {
  constexpr double kMax = std::numeric_limits<double>::max();
  EXPECT_EQ(Median<double>({kMax, kMax}), kMax);
  EXPECT_EQ(Median<double>({-kMax, -kMax}), -kMax);
  EXPECT_EQ(Median<double>({kMax, kMax / 2}), 0.75 * kMax);
  EXPECT_EQ(Median<double>({kMax, -kMax}), 0);
}

TEST_F(MedianAtTheLimits, FloatSumsThatOverflowAreAvoided) {
  constexpr float kMax = std::numeric_limits<float>::max();
  EXPECT_EQ(Median<float>({kMax, kMax}), kMax);
  EXPECT_EQ(Median<float>({kMax, kMax / 2}), 0.75f * kMax);
}

TEST_F(MedianAtTheLimits, InfiniteValuesMayEndAtAnInfiniteSplit) {
  // Half-way to infinity is infinity again, where bisection alone would go on for ever.
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Median<double>({1, 2, 3, 4, 5, -kInfinity, 6, 7, 8}), -kInfinity);
  EXPECT_EQ(Median<double>({kInfinity, 1, 2, 0, 3, 4, 5, 6}), kInfinity);
  EXPECT_EQ(Median<double>({kInfinity, kInfinity, kInfinity}), kInfinity);
}

}  // namespace
}  // namespace tarn_test
