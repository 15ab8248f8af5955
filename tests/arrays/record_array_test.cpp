// T_ArrayEx: a table of records of fixed length.

#include <gtest/gtest.h>

#include "arrays/array_access.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(RecordAccess<float>, data) == sizeof(void*));
static_assert(offsetof(RecordAccess<float>, itemLen) == 2 * sizeof(void*));
static_assert(offsetof(RecordAccess<float>, len) == 2 * sizeof(void*) + sizeof(std::int64_t));
static_assert(offsetof(RecordAccess<double>, len) == 2 * sizeof(void*) + sizeof(std::int64_t));
static_assert(sizeof(T_ArrayEx<double>) == 2 * sizeof(void*) + 2 * sizeof(std::int64_t));
#pragma GCC diagnostic pop
static_assert(std::is_base_of_v<TarnAss, T_ArrayEx<float>>);

template <class T>
class RecordArray : public testing::Test {
 protected:
  void Refuse(std::int64_t refusedRequest) {
    host_.SetHeapFailure(
        [refusedRequest](std::int64_t request) { return request == refusedRequest; });
  }

  EmbeddedHost host_;
};

using ElementTypes = testing::Types<float, double>;
TYPED_TEST_SUITE(RecordArray, ElementTypes);

TYPED_TEST(RecordArray, StartsWithZeros) {
  const RecordAccess<TypeParam> records(3, 2);
  EXPECT_EQ(records.Len(), 3);
  EXPECT_EQ(records.itemLen, 2);
  EXPECT_EQ(Elements(records), std::vector<TypeParam>(6, TypeParam(0)));
}

TYPED_TEST(RecordArray, OfNegativeOrAbsurdShapeIsEmptyWithoutABlock) {
  constexpr std::int64_t kHuge = std::int64_t{1} << 40;
  for (const auto& [count, itemLen] : {std::pair<std::int64_t, std::int64_t>{-1, 2},
                                       {2, -1},
                                       {-2, -3},
                                       {kHuge, kHuge},
                                       {std::numeric_limits<std::int64_t>::max(), 1}}) {
    const RecordAccess<TypeParam> records(count, itemLen);
    EXPECT_EQ(records.Len(), 0);
    EXPECT_EQ(records.data, nullptr);
    EXPECT_EQ(records.itemLen, itemLen);
  }
}

TYPED_TEST(RecordArray, RecordsAndElementsAreReachedByIndex) {
  auto records = MakeRecords<TypeParam>(3, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(records[1], records.data + 3);
  EXPECT_EQ(records[1][2], 6);
  records(0, 1) = 9;
  const T_ArrayEx<TypeParam>& constant = records;
  EXPECT_EQ(constant(0, 1), 9);
  EXPECT_EQ(constant[1][0], 4);
}

TYPED_TEST(RecordArray, CopyIsDeep) {
  auto records = MakeRecords<TypeParam>(2, {1, 2, 3, 4});
  const RecordAccess<TypeParam> copy(records);
  records(0, 0) = 9;
  EXPECT_EQ(Elements(copy), (std::vector<TypeParam>{1, 2, 3, 4}));
  EXPECT_EQ(copy.itemLen, 2);
}

TYPED_TEST(RecordArray, AssignmentOfTheSameShapeReusesTheBlock) {
  auto target = MakeRecords<TypeParam>(2, {1, 2, 3, 4});
  const auto source = MakeRecords<TypeParam>(2, {5, 6, 7, 8});
  const TypeParam* const block = target.data;
  this->host_.SetHeapFailure({});
  target = source;
  EXPECT_EQ(this->host_.HeapRequestCount(), 0);
  EXPECT_EQ(target.data, block);
  EXPECT_EQ(Elements(target), (std::vector<TypeParam>{5, 6, 7, 8}));
}

TYPED_TEST(RecordArray, AssignmentOfAnotherShapeTakesItOver) {
  auto target = MakeRecords<TypeParam>(2, {1, 2, 3, 4});
  target = MakeRecords<TypeParam>(1, {5, 6, 7, 8});
  EXPECT_EQ(target.Len(), 4);
  EXPECT_EQ(target.itemLen, 1);
  EXPECT_EQ(Elements(target), (std::vector<TypeParam>{5, 6, 7, 8}));
  target = MakeRecords<TypeParam>(1, {5});
  EXPECT_EQ(Elements(target), (std::vector<TypeParam>{5}));
  const auto& same = target;
  target = same;
  EXPECT_EQ(Elements(target), (std::vector<TypeParam>{5}));
}

TYPED_TEST(RecordArray, ClearReleasesTheBlockAndKeepsTheRecordLength) {
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  auto records = MakeRecords<TypeParam>(2, {1, 2});
  records.Clear();
  EXPECT_EQ(records.Len(), 0);
  EXPECT_EQ(records.data, nullptr);
  EXPECT_EQ(records.itemLen, 2);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
}

TYPED_TEST(RecordArray, SetLenKeepsTheRecordsThatRemain) {
  auto records = MakeRecords<TypeParam>(2, {1, 2, 3, 4});
  EXPECT_EQ(records.SetLen(3), 3);
  records(2, 0) = 5;
  records(2, 1) = 6;
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(records.SetLen(1), 1);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2}));
}

TYPED_TEST(RecordArray, SetLenToTheLengthAsksTheHeapAllTheSame) {
  auto records = MakeRecords<TypeParam>(2, {1, 2});
  this->host_.SetHeapFailure({});
  EXPECT_EQ(records.SetLen(1), 1);
  EXPECT_EQ(this->host_.HeapRequestCount(), 1);
}

TYPED_TEST(RecordArray, SetLenWithoutABlockGivesZeros) {
  auto records = MakeRecords<TypeParam>(2, {1, 2});
  records.Clear();
  EXPECT_EQ(records.SetLen(2), 2);
  EXPECT_EQ(Elements(records), std::vector<TypeParam>(4, TypeParam(0)));
}

TYPED_TEST(RecordArray, SetLenToZeroKeepsABlockThatCanGrow) {
  auto records = MakeRecords<TypeParam>(2, {1, 2});
  EXPECT_EQ(records.SetLen(0), 0);
  ASSERT_NE(records.data, nullptr);
  const TypeParam record[] = {3, 4};
  records.InsertItem(0, record);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{3, 4}));
}

TYPED_TEST(RecordArray, SetLenToANegativeOrAbsurdNumberReturnsTheOldOne) {
  auto records = MakeRecords<TypeParam>(2, {1, 2});
  EXPECT_EQ(records.SetLen(-1), 1);
  EXPECT_EQ(records.SetLen(std::numeric_limits<std::int64_t>::max()), 1);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2}));
}

TYPED_TEST(RecordArray, InsertItemCopiesARecordInFrontInBetweenAndBehind) {
  auto records = MakeRecords<TypeParam>(2, {1, 2, 3, 4});
  const TypeParam record[] = {8, 9};
  records.InsertItem(1, record);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2, 8, 9, 3, 4}));
  records.InsertItem(3, record);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2, 8, 9, 3, 4, 8, 9}));
  records.InsertItem(0, record);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{8, 9, 1, 2, 8, 9, 3, 4, 8, 9}));
}

TYPED_TEST(RecordArray, InsertItemOfAnOwnRecordInsertsWhatItHeld) {
  for (std::int64_t source = 0; source < 3; ++source) {
    for (std::int64_t i = 0; i <= 3; ++i) {
      auto records = MakeRecords<TypeParam>(2, {1, 2, 3, 4, 5, 6});
      std::vector<TypeParam> expected = Elements(records);
      const std::vector<TypeParam> record(records[source], records[source] + 2);
      expected.insert(expected.begin() + 2 * i, record.begin(), record.end());
      records.InsertItem(i, records[source]);
      EXPECT_EQ(Elements(records), expected) << "record " << source << " before " << i;
    }
  }
}

TYPED_TEST(RecordArray, InsertItemOfOwnElementsAcrossRecordsInsertsWhatTheyHeld) {
  auto records = MakeRecords<TypeParam>(2, {1, 2, 3, 4});
  records.InsertItem(1, records[0] + 1);  // begins before the gap, ends behind it
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2, 2, 3, 3, 4}));
}

TYPED_TEST(RecordArray, InsertItemElsewhereOrWithoutABlockDoesNothing) {
  auto records = MakeRecords<TypeParam>(2, {1, 2});
  const TypeParam record[] = {8, 9};
  records.InsertItem(2, record);
  records.InsertItem(-1, record);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2}));
  records.Clear();
  records.InsertItem(0, record);
  EXPECT_EQ(records.Len(), 0);
  EXPECT_EQ(records.data, nullptr);
}

TYPED_TEST(RecordArray, RemoveItemMovesTheFollowingRecordsDown) {
  auto records = MakeRecords<TypeParam>(2, {1, 2, 3, 4, 5, 6});
  records.RemoveItem(1);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2, 5, 6}));
  records.RemoveItem(7);  // beyond the end: the last one
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2}));
  records.RemoveItem(-1);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2}));
}

TYPED_TEST(RecordArray, RemoveItemOfTheLastRecordLeftKeepsTheBlock) {
  auto records = MakeRecords<TypeParam>(2, {1, 2});
  records.RemoveItem(0);
  EXPECT_EQ(records.Len(), 0);
  EXPECT_NE(records.data, nullptr);
  records.RemoveItem(0);
  EXPECT_EQ(records.Len(), 0);
}

TYPED_TEST(RecordArray, ExtremesOfAColumnAreTheEarliestOfEqualOnes) {
  const auto records = MakeRecords<TypeParam>(2, {3, 1, 7, -2, 7, -2, 5, 4});
  EXPECT_EQ(records.FindMaxIndex(0), 1);
  EXPECT_EQ(records.FindMinIndex(0), 0);
  EXPECT_EQ(records.FindMaxIndex(1), 3);
  EXPECT_EQ(records.FindMinIndex(1), 1);
}

TYPED_TEST(RecordArray, ExtremesPassOverNanButNotInTheFirstRecord) {
  const TypeParam nan = std::numeric_limits<TypeParam>::quiet_NaN();
  EXPECT_EQ(MakeRecords<TypeParam>(1, {1, nan, 2}).FindMaxIndex(0), 2);
  EXPECT_EQ(MakeRecords<TypeParam>(1, {nan, 5, 2}).FindMaxIndex(0), 0);
}

TYPED_TEST(RecordArray, ExtremesOfNothingAreZero) {
  auto records = MakeRecords<TypeParam>(1, {4});
  records.RemoveItem(0);
  EXPECT_EQ(records.FindMaxIndex(0), 0);
  EXPECT_EQ(records.FindMinIndex(0), 0);
  records.Clear();
  EXPECT_EQ(records.FindMaxIndex(0), 0);
  EXPECT_EQ(records.FindMinIndex(0), 0);
}

TYPED_TEST(RecordArray, RefusedConstructionAndAssignmentAreEmptyWithoutABlock) {
  const auto source = MakeRecords<TypeParam>(2, {1, 2});
  auto target = MakeRecords<TypeParam>(2, {1, 2, 3, 4});
  this->Refuse(1);
  const RecordAccess<TypeParam> records(3, 2);
  EXPECT_EQ(records.Len(), 0);
  EXPECT_EQ(records.data, nullptr);
  this->Refuse(1);
  const RecordAccess<TypeParam> copy(source);
  EXPECT_EQ(copy.Len(), 0);
  EXPECT_EQ(copy.data, nullptr);
  this->Refuse(1);
  target = source;
  EXPECT_EQ(target.Len(), 0);
  EXPECT_EQ(target.data, nullptr);
  EXPECT_FALSE(this->host_.HasError());
}

TYPED_TEST(RecordArray, RefusedGrowthLeavesTheTable) {
  auto records = MakeRecords<TypeParam>(2, {1, 2});
  const TypeParam record[] = {8, 9};
  this->Refuse(1);
  EXPECT_EQ(records.SetLen(4), 1);
  this->Refuse(1);
  records.InsertItem(0, record);
  EXPECT_EQ(Elements(records), (std::vector<TypeParam>{1, 2}));
  records.Clear();
  this->Refuse(1);
  EXPECT_EQ(records.SetLen(4), 0);
  EXPECT_EQ(records.data, nullptr);
}

TYPED_TEST(RecordArray, RefusedShrinkingAfterRemovalLeavesNoBlock) {
  auto records = MakeRecords<TypeParam>(2, {1, 2, 3, 4});
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  this->Refuse(1);
  records.RemoveItem(0);
  EXPECT_EQ(records.Len(), 0);
  EXPECT_EQ(records.data, nullptr);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks - 1);
}

}  // namespace
}  // namespace tarn_test
