// Where the two stacks of the sorting procedure live, and what happens when they cannot be had.

#include <gtest/gtest.h>

#include "arrays/sample_inputs.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

constexpr std::int64_t kLargestWithoutHeap = 298;  // 299 entries per stack

template <class T>
std::vector<T> Descending(std::int64_t n) {
  std::vector<T> a;
  for (std::int64_t i = 0; i < n; ++i) {
    if constexpr (std::is_arithmetic_v<T>) {
      a.push_back(static_cast<T>(n - i));
    } else {
      a.push_back({decltype(T::value)(i), static_cast<std::int32_t>(i)});
    }
  }
  return a;
}

double KeyOf(double value) { return value; }
template <class T>
double KeyOf(const svd_index<T>& record) {
  return -static_cast<double>(record.value);
}

template <class T>
class SortStacks : public testing::Test {
 protected:
  static bool IsSorted(const std::vector<T>& a) {
    return std::is_sorted(a.begin(), a.end(),
                          [](const T& x, const T& y) { return KeyOf(x) < KeyOf(y); });
  }

  EmbeddedHost host_;
};

using SortedTypes = testing::Types<int, float, double, svd_index<float>, svd_index<double>>;
TYPED_TEST_SUITE(SortStacks, SortedTypes);

TYPED_TEST(SortStacks, BelowThreeHundredEntriesTheHeapIsLeftAlone) {
  auto a = Descending<TypeParam>(kLargestWithoutHeap);
  this->host_.SetHeapFailure([](std::int64_t) { return true; });
  QSort(a.data(), kLargestWithoutHeap);
  EXPECT_EQ(this->host_.HeapRequestCount(), 0);
  EXPECT_TRUE(this->IsSorted(a));
}

TYPED_TEST(SortStacks, FromThreeHundredEntriesOnTwoBlocksAreTakenAndGivenBack) {
  auto a = Descending<TypeParam>(kLargestWithoutHeap + 1);
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  this->host_.SetHeapFailure({});
  QSort(a.data(), kLargestWithoutHeap + 1);
  EXPECT_EQ(this->host_.HeapRequestCount(), 2);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
  EXPECT_TRUE(this->IsSorted(a));
}

TYPED_TEST(SortStacks, TheSizeOfTheRangeCounts) {
  auto a = Descending<TypeParam>(1000);
  this->host_.SetHeapFailure([](std::int64_t) { return true; });
  QSort(a.data(), std::int64_t{500}, std::int64_t{500 + kLargestWithoutHeap - 1});
  EXPECT_EQ(this->host_.HeapRequestCount(), 0);
  EXPECT_TRUE(this->IsSorted({a.begin() + 500, a.begin() + 500 + kLargestWithoutHeap}));
}

TYPED_TEST(SortStacks, RefusalOfEitherStackLeavesTheArrayUntouched) {
  for (const std::int64_t refused : {1, 2}) {
    auto a = Descending<TypeParam>(kLargestWithoutHeap + 1);
    const auto before = a;
    const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
    this->host_.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
    QSort(a.data(), kLargestWithoutHeap + 1);
    EXPECT_EQ(std::memcmp(a.data(), before.data(), a.size() * sizeof(TypeParam)), 0);
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
    EXPECT_FALSE(this->host_.HasError());
  }
}

TEST(SortIndexStacks, RefusalOfEitherStackLeavesTheIndicesUntouched) {
  EmbeddedHost host;
  std::vector<double> keys = Descending<double>(kLargestWithoutHeap + 1);
  for (const std::int64_t refused : {1, 2}) {
    std::vector<int> idx(keys.size());
    std::iota(idx.begin(), idx.end(), 0);
    const std::vector<int> before = idx;
    const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
    host.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
    QSortIndex(idx.data(), keys.data(), kLargestWithoutHeap + 1);
    EXPECT_EQ(idx, before);
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
  }
}

TEST(SortIndexStacks, BelowThreeHundredEntriesTheHeapIsLeftAlone) {
  EmbeddedHost host;
  std::vector<double> keys = Descending<double>(kLargestWithoutHeap);
  std::vector<int> idx(keys.size());
  std::iota(idx.begin(), idx.end(), 0);
  host.SetHeapFailure([](std::int64_t) { return true; });
  QSortIndex(idx.data(), keys.data(), kLargestWithoutHeap);
  EXPECT_EQ(host.HeapRequestCount(), 0);
  EXPECT_EQ(idx.front(), kLargestWithoutHeap - 1);
  EXPECT_EQ(idx.back(), 0);
}

TEST(SortStacksOfZeros, RefusalLeavesZerosOfBothSignsUntouched) {
  EmbeddedHost host;
  std::vector<double> a(400, 0.0);
  for (std::size_t i = 0; i < a.size(); i += 3) a[i] = -0.0;
  a[200] = 1;
  const std::vector<double> before = a;
  host.SetHeapFailure([](std::int64_t) { return true; });
  QSort(a.data(), std::int64_t{400});
  EXPECT_TRUE(SameBits(a, before));
}

}  // namespace
}  // namespace tarn_test
