// Indices and records: where equal keys end is the procedure's, to the last element.

#include <gtest/gtest.h>

#include "arrays/sample_inputs.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

std::vector<int> Identity(std::int64_t n) {
  std::vector<int> idx(static_cast<std::size_t>(n));
  std::iota(idx.begin(), idx.end(), 0);
  return idx;
}

std::vector<SampleInput<double>> AllInputs() {
  std::vector<SampleInput<double>> inputs = PlainInputs<double>();
  for (auto& input : AmbiguousInputs<double>()) inputs.push_back(std::move(input));
  return inputs;
}

class SortIndex : public testing::Test {
 protected:
  static void ExpectLiteralPermutation(std::vector<double> keys, const std::string& name) {
    const std::vector<double> keysBefore = keys;
    const auto n = static_cast<std::int64_t>(keys.size());
    std::vector<int> idx = Identity(n);
    std::vector<int> expected = idx;
    QSortIndex(idx.data(), keys.data(), n);
    LiteralSortIndex(expected.data(), keys.data(), 0, n - 1);
    EXPECT_EQ(idx, expected) << name << ", n = " << n;
    EXPECT_TRUE(SameBits(keys, keysBefore)) << "keys moved: " << name;
  }

  EmbeddedHost host_;
};

TEST_F(SortIndex, PermutationIsTheProceduresForEveryInputAndSampleSize) {
  for (const auto& input : AllInputs()) {
    for (const std::int64_t n : SampleSizes()) ExpectLiteralPermutation(input.make(n), input.name);
  }
}

TEST_F(SortIndex, PermutationOfManyKeysIsTheProcedures) {
  for (const auto& input : PlainInputs<double>()) {
    if (input.name != "wide" && input.name != "ascending" && input.name != "descending") continue;
    ExpectLiteralPermutation(input.make(100000), input.name);
  }
  std::mt19937_64 generator(5);
  std::vector<double> tied(100000);
  for (double& key : tied) key = static_cast<double>(generator() % 20000);
  ExpectLiteralPermutation(tied, "tied");
}

TEST_F(SortIndex, KeysAscendAlongTheIndices) {
  std::vector<double> keys = MakeWide<double>(1000);
  std::vector<int> idx = Identity(1000);
  QSortIndex(idx.data(), keys.data(), 1000);
  for (std::size_t i = 1; i < idx.size(); ++i) {
    EXPECT_LE(keys[static_cast<std::size_t>(idx[i - 1])], keys[static_cast<std::size_t>(idx[i])]);
  }
}

TEST_F(SortIndex, EqualKeysLeaveTheIndicesAlone) {
  std::vector<double> keys(500, 2.5);
  std::vector<int> idx = Identity(500);
  std::reverse(idx.begin(), idx.end());
  const std::vector<int> before = idx;
  QSortIndex(idx.data(), keys.data(), 500);
  EXPECT_EQ(idx, before);
}

TEST_F(SortIndex, BoundsAreIncludedAndIndicesMayRepeat) {
  std::vector<double> keys{5, 3, 4};
  std::vector<int> idx{0, 0, 2, 1, 2, 0, 1};
  QSortIndex(idx.data(), keys.data(), 1, 5);
  EXPECT_EQ(idx, (std::vector<int>{0, 1, 2, 2, 0, 0, 1}));
}

TEST_F(SortIndex, NothingHappensBelowTwoIndices) {
  double key = 1;
  int index = 0;
  QSortIndex(&index, &key, std::int64_t{1});
  QSortIndex(&index, &key, std::int64_t{-1});
  QSortIndex(&index, &key, std::int64_t{4}, std::int64_t{3});
  EXPECT_EQ(index, 0);
}

template <class T>
class SortRecords : public testing::Test {
 protected:
  static std::vector<svd_index<T>> Records(const std::vector<T>& values) {
    std::vector<svd_index<T>> records;
    for (const T value : values) {
      records.push_back({value, static_cast<std::int32_t>(records.size())});
    }
    return records;
  }
  static void ExpectSame(const std::vector<svd_index<T>>& a, const std::vector<svd_index<T>>& b,
                         const std::string& name) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
      ASSERT_EQ(a[i].index, b[i].index) << name << " of " << a.size() << " at " << i;
      ASSERT_EQ(std::memcmp(&a[i].value, &b[i].value, sizeof(T)), 0) << name;
    }
  }
  static bool HasNan(const std::vector<T>& values) {
    return std::any_of(values.begin(), values.end(), [](T value) { return value != value; });
  }

  EmbeddedHost host_;
};

using RecordTypes = testing::Types<float, double>;
TYPED_TEST_SUITE(SortRecords, RecordTypes);

static_assert(offsetof(svd_index<float>, value) == 0 && offsetof(svd_index<float>, index) == 4);
static_assert(offsetof(svd_index<double>, value) == 0 && offsetof(svd_index<double>, index) == 8);

TYPED_TEST(SortRecords, GreatestValueComesFirstAndIndicesMoveAlong) {
  auto records = this->Records({TypeParam(1), TypeParam(3), TypeParam(2)});
  QSort(records.data(), std::int64_t{3});
  this->ExpectSame(records, {{TypeParam(3), 1}, {TypeParam(2), 2}, {TypeParam(1), 0}}, "three");
}

TYPED_TEST(SortRecords, OrderIsTheProceduresForEveryInputAndSampleSize) {
  auto inputs = PlainInputs<TypeParam>();
  for (auto& input : AmbiguousInputs<TypeParam>()) inputs.push_back(std::move(input));
  for (const auto& input : inputs) {
    for (const std::int64_t n : SampleSizes()) {
      const std::vector<TypeParam> values = input.make(n);
      if (this->HasNan(values)) continue;
      auto records = this->Records(values);
      auto expected = records;
      QSort(records.data(), n);
      LiteralSort(expected.data(), 0, n - 1);
      this->ExpectSame(records, expected, input.name);
    }
  }
}

TYPED_TEST(SortRecords, EqualRecordsStayInPlace) {
  auto records = this->Records(std::vector<TypeParam>(400, TypeParam(2)));
  const auto before = records;
  QSort(records.data(), std::int64_t{400});
  this->ExpectSame(records, before, "equal");
}

TYPED_TEST(SortRecords, NanIsPermutedWithinTheRange) {
  // A record with NaN compares above everything, itself included, so that a careless partition
  // would leave its range at the lower end. The guards would show it.
  for (const auto& input : AmbiguousInputs<TypeParam>()) {
    for (const std::int64_t n : SampleSizes()) {
      const std::vector<TypeParam> values = input.make(n);
      auto records = this->Records(values);
      const svd_index<TypeParam> guard{TypeParam(1e6), -7};
      records.insert(records.begin(), guard);
      records.push_back(guard);
      QSort(records.data(), std::int64_t{1}, n);
      EXPECT_EQ(records.front().index, -7);
      EXPECT_EQ(records.back().index, -7);
      std::vector<bool> seen(values.size());
      for (std::size_t i = 1; i <= values.size(); ++i) {
        const auto column = static_cast<std::size_t>(records[i].index);
        ASSERT_LT(column, values.size());
        ASSERT_FALSE(seen[column]);
        seen[column] = true;
        ASSERT_EQ(std::memcmp(&records[i].value, &values[column], sizeof(TypeParam)), 0);
      }
    }
  }
}

TYPED_TEST(SortRecords, BoundsAreIncluded) {
  auto records = this->Records({9, 1, 2, 3, 0});
  QSort(records.data(), std::int64_t{1}, std::int64_t{3});
  this->ExpectSame(records, {{9, 0}, {3, 3}, {2, 2}, {1, 1}, {0, 4}}, "bounds");
}

}  // namespace
}  // namespace tarn_test
