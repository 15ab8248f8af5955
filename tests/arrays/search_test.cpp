// BFind and BFindInsertIndex: ascending and descending, plain and with a stride.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "host/embedded_host.h"
#include "tarn_base_math.h"

namespace tarn_test {
namespace {

template <class T>
std::int64_t Size(const std::vector<T>& a) {
  return static_cast<std::int64_t>(a.size());
}

/// The array as one column of a table whose other columns hold other numbers.
template <class T>
std::vector<T> Column(const std::vector<T>& a, std::size_t stride) {
  std::vector<T> table(a.size() * stride, T(-99));
  for (std::size_t i = 0; i < a.size(); ++i) table[i * stride] = a[i];
  return table;
}

template <class T>
class Search : public testing::Test {
 protected:
  static std::int64_t Find(std::vector<T> a, double value) {
    const std::int64_t index = BFind(a.data(), value, Size(a));
    for (const std::size_t stride : {std::size_t{1}, std::size_t{3}}) {
      std::vector<T> table = Column(a, stride);
      EXPECT_EQ(BFind(table.data(), value, Size(a), static_cast<std::int64_t>(stride)), index);
    }
    return index;
  }
  static std::int64_t InsertIndex(std::vector<T> a, double value) {
    return BFindInsertIndex(a.data(), value, Size(a));
  }
  static std::int64_t StridedInsertIndex(const std::vector<T>& a, double value) {
    std::vector<T> table = Column(a, 3);
    return BFindInsertIndex(table.data(), value, Size(a), std::int64_t{3});
  }

  /// Sorted numbers with gaps and runs of equal ones.
  static std::vector<T> Ascending(std::size_t n) {
    std::mt19937_64 generator(n);
    std::vector<T> a(n);
    for (T& value : a) value = static_cast<T>(generator() % (2 * n + 1)) * 2;
    std::sort(a.begin(), a.end());
    return a;
  }
  static std::vector<T> Descending(std::size_t n) {
    std::vector<T> a = Ascending(n);
    std::reverse(a.begin(), a.end());
    return a;
  }
};

using SearchTypes = testing::Types<int, float, double>;
TYPED_TEST_SUITE(Search, SearchTypes);

TYPED_TEST(Search, NothingIsFoundInAnEmptyArray) {
  EXPECT_EQ(this->Find({}, 1), -1);
  TypeParam value = 1;
  EXPECT_EQ(BFind(&value, 1.0, std::int64_t{-1}), -1);
  EXPECT_EQ(BFind(&value, 1.0, std::int64_t{-1}, std::int64_t{2}), -1);
}

TYPED_TEST(Search, InsertIndexOfAnEmptyArrayIsZero) {
  EXPECT_EQ(this->InsertIndex({}, 1), 0);
  EXPECT_EQ(this->StridedInsertIndex({}, 1), 0);
  TypeParam value = 1;
  EXPECT_EQ(BFindInsertIndex(&value, 1.0, std::int64_t{-1}), 0);
}

TYPED_TEST(Search, EveryElementOfAnAscendingArrayIsFound) {
  for (std::size_t n = 1; n < 70; ++n) {
    const std::vector<TypeParam> a = this->Ascending(n);
    for (const TypeParam value : a) {
      const std::int64_t index = this->Find(a, static_cast<double>(value));
      ASSERT_GE(index, 0);
      EXPECT_EQ(a[static_cast<std::size_t>(index)], value);
    }
  }
}

TYPED_TEST(Search, EveryElementOfADescendingArrayIsFound) {
  for (std::size_t n = 1; n < 70; ++n) {
    const std::vector<TypeParam> a = this->Descending(n);
    for (const TypeParam value : a) {
      const std::int64_t index = this->Find(a, static_cast<double>(value));
      ASSERT_GE(index, 0);
      EXPECT_EQ(a[static_cast<std::size_t>(index)], value);
    }
  }
}

TYPED_TEST(Search, WhatIsNotThereIsNotFound) {
  for (std::size_t n = 1; n < 70; ++n) {
    for (const auto& a : {this->Ascending(n), this->Descending(n)}) {
      for (const TypeParam value : a) {
        EXPECT_EQ(this->Find(a, static_cast<double>(value) + 1), -1);
        EXPECT_EQ(this->Find(a, static_cast<double>(value) - 0.25), -1);
      }
      EXPECT_EQ(this->Find(a, 1e9), -1);
      EXPECT_EQ(this->Find(a, -1e9), -1);
    }
  }
}

TYPED_TEST(Search, NanIsNotFound) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(this->Find({1, 2, 3}, nan), -1);
  EXPECT_EQ(this->Find({3, 2, 1}, nan), -1);
}

TYPED_TEST(Search, AscendingInsertIndexIsBehindEqualElements) {
  for (std::size_t n = 1; n < 70; ++n) {
    const std::vector<TypeParam> a = this->Ascending(n);
    for (double value = -1; value <= 4.0 * static_cast<double>(n) + 3; value += 0.5) {
      const auto expected =
          std::upper_bound(a.begin(), a.end(), value,
                           [](double x, TypeParam y) { return x < static_cast<double>(y); }) -
          a.begin();
      EXPECT_EQ(this->InsertIndex(a, value), expected) << value;
    }
  }
}

TYPED_TEST(Search, DescendingInsertIndexIsBehindEqualElements) {
  for (std::size_t n = 2; n < 70; ++n) {
    const std::vector<TypeParam> a = this->Descending(n);
    if (a.front() == a.back()) continue;  // counts as ascending
    for (double value = -1; value <= 4.0 * static_cast<double>(n) + 3; value += 0.5) {
      const auto expected =
          std::upper_bound(a.begin(), a.end(), value,
                           [](double x, TypeParam y) { return x > static_cast<double>(y); }) -
          a.begin();
      EXPECT_EQ(this->InsertIndex(a, value), expected) << value;
    }
  }
}

TYPED_TEST(Search, PlainInsertIndexOfAValueEqualToTheLastIsTheCount) {
  EXPECT_EQ(this->InsertIndex({1, 2, 3}, 3), 3);
  EXPECT_EQ(this->InsertIndex({3, 2, 1}, 1), 3);
  EXPECT_EQ(this->InsertIndex({5}, 5), 1);
  EXPECT_EQ(this->InsertIndex({5, 5, 5}, 5), 3);
}

TYPED_TEST(Search, StridedInsertIndexOfAValueEqualToTheLastIsBeforeIt) {
  EXPECT_EQ(this->StridedInsertIndex({1, 2, 3}, 3), 2);
  EXPECT_EQ(this->StridedInsertIndex({3, 2, 1}, 1), 2);
  EXPECT_EQ(this->StridedInsertIndex({5}, 5), 0);
  EXPECT_EQ(this->StridedInsertIndex({5, 5, 5}, 5), 2);
}

TYPED_TEST(Search, StridedInsertIndexIsThePlainOneElsewhere) {
  for (std::size_t n = 1; n < 70; ++n) {
    for (const auto& a : {this->Ascending(n), this->Descending(n)}) {
      for (double value = -1; value <= 4.0 * static_cast<double>(n) + 3; value += 0.5) {
        if (value == static_cast<double>(a.back())) continue;
        EXPECT_EQ(this->StridedInsertIndex(a, value), this->InsertIndex(a, value)) << value;
      }
    }
  }
}

TYPED_TEST(Search, InsertIndexBeforeTheFirstIsZero) {
  EXPECT_EQ(this->InsertIndex({1, 2, 3}, 0.5), 0);
  EXPECT_EQ(this->InsertIndex({3, 2, 1}, 3.5), 0);
  EXPECT_EQ(this->StridedInsertIndex({1, 2, 3}, 0.5), 0);
  EXPECT_EQ(this->StridedInsertIndex({3, 2, 1}, 3.5), 0);
}

TYPED_TEST(Search, InsertIndexOfNanIsInRange) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(this->InsertIndex({1, 2, 3}, nan), 3);  // not below the last element
  const std::int64_t strided = this->StridedInsertIndex({1, 2, 3}, nan);
  EXPECT_GE(strided, 0);
  EXPECT_LE(strided, 3);
}

TYPED_TEST(Search, UnsortedArraysGiveAnIndexInRange) {
  std::mt19937_64 generator(4);
  for (int repetition = 0; repetition < 2000; ++repetition) {
    std::vector<TypeParam> a(1 + generator() % 20);
    for (TypeParam& x : a) x = static_cast<TypeParam>(generator() % 10);
    const double value = static_cast<double>(generator() % 10);
    const std::int64_t insert = this->InsertIndex(a, value);
    EXPECT_GE(insert, 0);
    EXPECT_LE(insert, Size(a));
    const std::int64_t found = this->Find(a, value);
    EXPECT_TRUE(found == -1 || static_cast<double>(a[static_cast<std::size_t>(found)]) == value);
  }
}

TEST(SearchPrecision, ElementsAreComparedInDoublePrecision) {
  std::vector<float> a{0.1f, 0.2f, 0.3f};
  EXPECT_EQ(BFind(a.data(), 0.2, std::int64_t{3}), -1);
  EXPECT_EQ(BFind(a.data(), static_cast<double>(0.2f), std::int64_t{3}), 1);
  EXPECT_EQ(BFindInsertIndex(a.data(), 0.2, std::int64_t{3}), 1);  // 0.2f is the greater one
  std::vector<int> whole{16777216, 16777217, 16777218};
  EXPECT_EQ(BFind(whole.data(), 16777217.0, std::int64_t{3}), 1);
  EXPECT_EQ(BFindInsertIndex(whole.data(), 16777216.5, std::int64_t{3}), 1);
}

TEST(SearchPrecision, InfiniteElementsAndValuesTakeTheEnds) {
  const double infinity = std::numeric_limits<double>::infinity();
  std::vector<double> a{-infinity, 0, infinity};
  EXPECT_EQ(BFind(a.data(), -infinity, std::int64_t{3}), 0);
  EXPECT_EQ(BFind(a.data(), infinity, std::int64_t{3}), 2);
  EXPECT_EQ(BFindInsertIndex(a.data(), infinity, std::int64_t{3}), 3);
  EXPECT_EQ(BFindInsertIndex(a.data(), -infinity, std::int64_t{3}), 1);
}

}  // namespace
}  // namespace tarn_test
