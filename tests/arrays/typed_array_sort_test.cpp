// T_Array::QSort: units of 8 bytes in every instantiation.

#include <gtest/gtest.h>

#include "arrays/array_access.h"
#include "arrays/sample_inputs.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

class ArraySort : public testing::Test {
 protected:
  EmbeddedHost host_;
};

template <class T>
std::vector<T> SortedByMember(const std::vector<T>& values) {
  auto array = MakeArray<T>(values);
  array.QSort();
  return Elements(array);
}

/// The whole pairs in the order of their first elements, then the element that is left over.
template <class T>
std::vector<T> SortedAsPairs(const std::vector<T>& values) {
  std::vector<std::pair<T, T>> units(values.size() / 2);
  for (std::size_t i = 0; i < units.size(); ++i) units[i] = {values[2 * i], values[2 * i + 1]};
  std::stable_sort(units.begin(), units.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<T> sorted;
  for (const auto& unit : units) {
    sorted.push_back(unit.first);
    sorted.push_back(unit.second);
  }
  if (values.size() % 2 == 1) sorted.push_back(values.back());
  return sorted;
}

TEST_F(ArraySort, DoublesAscend) {
  EXPECT_EQ(SortedByMember<double>({3, 1, 2}), (std::vector<double>{1, 2, 3}));
  for (const auto& input : PlainInputs<double>()) {
    for (const std::int64_t n : SampleSizes()) {
      std::vector<double> expected = input.make(n);
      const std::vector<double> sorted = SortedByMember(expected);
      std::sort(expected.begin(), expected.end());
      EXPECT_TRUE(SameBits(sorted, expected)) << input.name << ", n = " << n;
    }
  }
}

TEST_F(ArraySort, IntegersMoveInPairsByTheFirstOfEach) {
  EXPECT_EQ(SortedByMember<int>({5, 50, 3, 30, 4, 40}), (std::vector<int>{3, 30, 4, 40, 5, 50}));
  EXPECT_EQ(SortedByMember<int>({2, 1}), (std::vector<int>{2, 1}));
}

TEST_F(ArraySort, FloatsMoveInPairsByTheFirstOfEach) {
  EXPECT_EQ(SortedByMember<float>({5, 50, 3, 30}), (std::vector<float>{3, 30, 5, 50}));
}

TEST_F(ArraySort, TheLastOfAnOddNumberStaysWhereItIs) {
  EXPECT_EQ(SortedByMember<int>({5, 50, 3}), (std::vector<int>{5, 50, 3}));
  EXPECT_EQ(SortedByMember<float>({5, 50, 3, 30, 1}), (std::vector<float>{3, 30, 5, 50, 1}));
}

template <class T>
class PairSort : public ArraySort {};
using PairTypes = testing::Types<int, float>;
TYPED_TEST_SUITE(PairSort, PairTypes);

TYPED_TEST(PairSort, PairsOfEveryInputAndSampleSizeAscend) {
  for (const auto& input : PlainInputs<TypeParam>()) {
    for (const std::int64_t n : SampleSizes()) {
      const std::vector<TypeParam> values = input.make(n);
      const std::vector<TypeParam> sorted = SortedByMember(values);
      const std::vector<TypeParam> expected = SortedAsPairs(values);
      for (std::size_t i = 0; i < sorted.size(); i += 2) {
        ASSERT_EQ(sorted[i], expected[i]) << input.name << ", n = " << n << " at " << i;
      }
    }
  }
}

TYPED_TEST(PairSort, PairsStayTogether) {
  const auto pairs = [](const std::vector<TypeParam>& values) {
    std::vector<std::pair<TypeParam, TypeParam>> list;
    for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
      list.emplace_back(values[i], values[i + 1]);
    }
    std::sort(list.begin(), list.end());
    return list;
  };
  for (const auto& input : PlainInputs<TypeParam>()) {
    for (const std::int64_t n : SampleSizes()) {
      const std::vector<TypeParam> values = input.make(n - n % 2);
      ASSERT_EQ(pairs(SortedByMember(values)), pairs(values)) << input.name << ", n = " << n;
    }
  }
}

TYPED_TEST(PairSort, NothingBeyondTheArrayIsTouched) {
  // A longer block shortened in place: what lies behind the length belongs to nobody.
  auto array = MakeArray<TypeParam>({7, 1, 5, 2, 3, 9});
  ArrayAccess<TypeParam> shorter(0);
  shorter.SetLen(6);
  std::copy_n(array.GetData(), 6, shorter.GetData());
  shorter.len = 3;
  shorter.QSort();
  EXPECT_EQ(shorter.GetData()[3], 2);
  EXPECT_EQ(shorter.GetData()[4], 3);
  EXPECT_EQ(shorter.GetData()[5], 9);
  shorter.len = 6;
}

TYPED_TEST(PairSort, PairsAreSortedWithoutTheHostHeapToo) {
  auto array = MakeArray<TypeParam>({7, 1, 5, 2});
  this->host_.SetHeapFailure([](std::int64_t) { return true; });
  array.QSort();
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{5, 2, 7, 1}));
}

TEST_F(ArraySort, RefusedScratchBlockLeavesAnArrayWithNaN) {
  constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
  auto array = MakeArray<float>({kNaN, 1, 5, 2});
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  host_.SetHeapFailure([](std::int64_t) { return true; });
  array.QSort();
  EXPECT_TRUE(SameBits(Elements(array), {kNaN, 1, 5, 2}));
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
}

TEST_F(ArraySort, EmptyArraysAndOnesWithoutABlockAreLeftAlone) {
  T_Array<double> empty(0);
  empty.QSort();
  EXPECT_EQ(empty.Len(), 0);
  T_Array<int> cleared(3);
  cleared.Clear();
  cleared.QSort();
  EXPECT_EQ(cleared.GetData(), nullptr);
}

TEST_F(ArraySort, DoublesAreSortedWithoutTheHostHeapToo) {
  std::vector<double> expected = MakeWide<double>(1000);
  auto array = MakeArray<double>(expected);
  host_.SetHeapFailure([](std::int64_t) { return true; });
  array.QSort();
  host_.SetHeapFailure({});
  std::sort(expected.begin(), expected.end());
  EXPECT_TRUE(SameBits(Elements(array), expected));
}

TEST_F(ArraySort, ZerosOfBothSignsEndWhereQsortPutsThem) {
  for (const std::int64_t n : SampleSizes()) {
    std::vector<double> expected = Choice<double>("", {0.0, -0.0, 1, -1}).make(n);
    if (expected.empty()) continue;  // qsort wants an array
    const std::vector<double> sorted = SortedByMember(expected);
    std::qsort(expected.data(), expected.size(), sizeof(double), T_compare<double>);
    EXPECT_TRUE(SameBits(sorted, expected)) << n;
  }
}

/// The merge sort that C libraries run, with T_compare: what becomes of NaN.
void LiteralMergeSort(std::vector<double>& a) {
  if (a.size() < 2) return;
  const auto half = a.begin() + static_cast<std::ptrdiff_t>(a.size() / 2);
  std::vector<double> left(a.begin(), half);
  std::vector<double> right(half, a.end());
  LiteralMergeSort(left);
  LiteralMergeSort(right);
  std::size_t l = 0;
  std::size_t r = 0;
  for (double& x : a) {
    const bool takeLeft =
        r == right.size() || (l < left.size() && T_compare<double>(&left[l], &right[r]) <= 0);
    x = takeLeft ? left[l++] : right[r++];
  }
}

TEST_F(ArraySort, NanIsMergedAsItCompares) {
  for (const auto& input : AmbiguousInputs<double>()) {
    for (const std::int64_t n : SampleSizes()) {
      std::vector<double> expected = input.make(n);
      if (std::none_of(expected.begin(), expected.end(), [](double x) { return x != x; })) continue;
      const std::vector<double> sorted = SortedByMember(expected);
      LiteralMergeSort(expected);
      EXPECT_TRUE(SameBits(sorted, expected)) << input.name << ", n = " << n;
    }
  }
}

TEST_F(ArraySort, NanWithoutScratchLeavesTheArray) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::vector<double> values{3, nan, 1};
  auto array = MakeArray<double>(values);
  host_.SetHeapFailure([](std::int64_t) { return true; });
  array.QSort();
  host_.SetHeapFailure({});
  EXPECT_TRUE(SameBits(Elements(array), values));
}

TEST_F(ArraySort, FloatPairsWithNanStayPairs) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (const std::int64_t n : {4, 10, 100}) {
    std::vector<float> values;
    for (std::int64_t i = 0; i < n; ++i) {
      values.push_back(i % 3 == 0 ? nan : static_cast<float>(n - i));
      values.push_back(static_cast<float>(i));
    }
    const std::vector<float> sorted = SortedByMember(values);
    std::vector<bool> seen(static_cast<std::size_t>(n));
    for (std::size_t k = 0; k < sorted.size(); k += 2) {
      const auto i = static_cast<std::size_t>(sorted[k + 1]);
      EXPECT_FALSE(seen[i]);
      seen[i] = true;
      EXPECT_EQ(std::memcmp(&sorted[k], &values[2 * i], sizeof(float)), 0);
    }
  }
}

}  // namespace
}  // namespace tarn_test
