// T_Array: construction, growth, insertion, removal, and what a refusing heap leaves.

#include <gtest/gtest.h>

#include "arrays/array_access.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(ArrayAccess<int>, data) == sizeof(void*));
static_assert(offsetof(ArrayAccess<int>, len) == 2 * sizeof(void*));
static_assert(offsetof(ArrayAccess<double>, data) == sizeof(void*));
static_assert(offsetof(ArrayAccess<double>, len) == 2 * sizeof(void*));
static_assert(sizeof(T_Array<float>) == 2 * sizeof(void*) + sizeof(std::int64_t));
#pragma GCC diagnostic pop
static_assert(std::is_base_of_v<TarnAss, T_Array<int>>);
static_assert(std::has_virtual_destructor_v<T_Array<int>>);

template <class T>
class TypedArray : public testing::Test {
 protected:
  using Array = ArrayAccess<T>;
  using List = std::vector<T>;

  void Refuse(std::int64_t refusedRequest) {
    host_.SetHeapFailure(
        [refusedRequest](std::int64_t request) { return request == refusedRequest; });
  }

  EmbeddedHost host_;
};

using ElementTypes = testing::Types<int, float, double>;
TYPED_TEST_SUITE(TypedArray, ElementTypes);

TYPED_TEST(TypedArray, StartsWithZeros) {
  const ArrayAccess<TypeParam> array(5);
  EXPECT_EQ(array.Len(), 5);
  EXPECT_EQ(Elements(array), std::vector<TypeParam>(5, TypeParam(0)));
}

TYPED_TEST(TypedArray, OfNoElementsHasABlock) {
  const ArrayAccess<TypeParam> array(0);
  EXPECT_EQ(array.Len(), 0);
  EXPECT_NE(array.GetData(), nullptr);
}

TYPED_TEST(TypedArray, OfNegativeOrAbsurdLengthIsEmptyWithoutABlock) {
  for (const std::int64_t n :
       {std::int64_t{-1}, std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::max() / 2}) {
    const ArrayAccess<TypeParam> array(n);
    EXPECT_EQ(array.Len(), 0);
    EXPECT_EQ(array.GetData(), nullptr);
  }
}

TYPED_TEST(TypedArray, ElementsAreReadAndWrittenByIndex) {
  ArrayAccess<TypeParam> array(3);
  array[1] = 7;
  const T_Array<TypeParam>& constant = array;
  EXPECT_EQ(constant[1], 7);
  EXPECT_EQ(array.GetData()[1], 7);
  static_assert(std::is_same_v<decltype(constant[1]), TypeParam>);
}

TYPED_TEST(TypedArray, CopyIsDeep) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  const ArrayAccess<TypeParam> copy(array);
  array[0] = 9;
  EXPECT_EQ(Elements(copy), (std::vector<TypeParam>{1, 2, 3}));
}

TYPED_TEST(TypedArray, AssignmentOfTheSameLengthReusesTheBlock) {
  auto target = MakeArray<TypeParam>({1, 2, 3});
  const auto source = MakeArray<TypeParam>({4, 5, 6});
  const TypeParam* const block = target.GetData();
  this->host_.SetHeapFailure({});
  target = source;
  EXPECT_EQ(this->host_.HeapRequestCount(), 0);
  EXPECT_EQ(target.GetData(), block);
  EXPECT_EQ(Elements(target), (std::vector<TypeParam>{4, 5, 6}));
}

TYPED_TEST(TypedArray, AssignmentOfAnotherLengthTakesANewBlock) {
  auto target = MakeArray<TypeParam>({1, 2, 3});
  const auto source = MakeArray<TypeParam>({4, 5});
  target = source;
  EXPECT_EQ(Elements(target), (std::vector<TypeParam>{4, 5}));
  EXPECT_NE(target.GetData(), source.GetData());
}

TYPED_TEST(TypedArray, AssignmentToItselfChangesNothing) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  const auto& same = array;
  array = same;
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 2, 3}));
}

TYPED_TEST(TypedArray, ClearReleasesTheBlock) {
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  auto array = MakeArray<TypeParam>({1, 2, 3});
  array.Clear();
  EXPECT_EQ(array.Len(), 0);
  EXPECT_EQ(array.GetData(), nullptr);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
  array.Clear();
}

TYPED_TEST(TypedArray, DestructorReleasesTheBlock) {
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  {
    const ArrayAccess<TypeParam> array(4);
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks + 1);
  }
  TarnAss* const object = new T_Array<TypeParam>(4);
  delete object;
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
}

TYPED_TEST(TypedArray, SetLenKeepsTheElementsThatRemain) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  EXPECT_EQ(array.SetLen(5), 5);
  EXPECT_EQ(array.Len(), 5);
  array[3] = array[4] = 0;  // not initialised
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 2, 3, 0, 0}));
  EXPECT_EQ(array.SetLen(2), 2);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 2}));
}

TYPED_TEST(TypedArray, SetLenToTheLengthLeavesTheHeapAlone) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  this->host_.SetHeapFailure([](std::int64_t) { return true; });
  EXPECT_EQ(array.SetLen(3), 3);
  EXPECT_EQ(this->host_.HeapRequestCount(), 0);
}

TYPED_TEST(TypedArray, SetLenToZeroKeepsABlockThatCanGrow) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  EXPECT_EQ(array.SetLen(0), 0);
  EXPECT_NE(array.GetData(), nullptr);
  array.InsertItem(0, 4);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{4}));
}

TYPED_TEST(TypedArray, SetLenOfAnArrayWithoutABlockAllocates) {
  ArrayAccess<TypeParam> array(3);
  array.Clear();
  EXPECT_EQ(array.SetLen(2), 2);
  EXPECT_NE(array.GetData(), nullptr);
}

TYPED_TEST(TypedArray, SetLenToANegativeOrAbsurdLengthReturnsTheOldOne) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  EXPECT_EQ(array.SetLen(-1), 3);
  EXPECT_EQ(array.SetLen(std::numeric_limits<std::int64_t>::max()), 3);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 2, 3}));
}

TYPED_TEST(TypedArray, InsertItemMovesTheFollowingElementsUp) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  array.InsertItem(1, 9);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 9, 2, 3}));
  array.InsertItem(0, 8);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{8, 1, 9, 2, 3}));
}

TYPED_TEST(TypedArray, InsertItemAtTheLengthAppends) {
  auto array = MakeArray<TypeParam>({1, 2});
  array.InsertItem(2, 3);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 2, 3}));
}

TYPED_TEST(TypedArray, InsertItemOfAnOwnElement) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  array.InsertItem(0, array[2]);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{3, 1, 2, 3}));
}

TYPED_TEST(TypedArray, InsertItemElsewhereDoesNothing) {
  auto array = MakeArray<TypeParam>({1, 2});
  array.InsertItem(3, 9);
  array.InsertItem(-1, 9);
  array.InsertItem(std::numeric_limits<std::int64_t>::min(), 9);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 2}));
}

TYPED_TEST(TypedArray, InsertItemWithoutABlockDoesNothing) {
  ArrayAccess<TypeParam> array(2);
  array.Clear();
  array.InsertItem(0, 9);
  EXPECT_EQ(array.Len(), 0);
  EXPECT_EQ(array.GetData(), nullptr);
}

TYPED_TEST(TypedArray, RemoveItemMovesTheFollowingElementsDown) {
  auto array = MakeArray<TypeParam>({1, 2, 3, 4});
  array.RemoveItem(1);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 3, 4}));
  array.RemoveItem(2);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 3}));
  array.RemoveItem(0);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{3}));
}

TYPED_TEST(TypedArray, RemoveItemOfTheLastElementLeftKeepsTheBlock) {
  auto array = MakeArray<TypeParam>({1});
  this->host_.SetHeapFailure({});
  array.RemoveItem(0);
  EXPECT_EQ(array.Len(), 0);
  EXPECT_NE(array.GetData(), nullptr);
  EXPECT_EQ(this->host_.HeapRequestCount(), 0);
  array.InsertItem(0, 5);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{5}));
}

TYPED_TEST(TypedArray, RemoveItemBeyondTheEndDropsTheLastElement) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  array.RemoveItem(3);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 2}));
  array.RemoveItem(std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1}));
}

TYPED_TEST(TypedArray, RemoveItemBelowZeroOrOfNothingDoesNothing) {
  auto array = MakeArray<TypeParam>({1, 2});
  array.RemoveItem(-1);
  array.RemoveItem(std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 2}));
  array.SetLen(0);
  array.RemoveItem(0);
  EXPECT_EQ(array.Len(), 0);
  array.Clear();
  array.RemoveItem(0);
  EXPECT_EQ(array.Len(), 0);
}

TYPED_TEST(TypedArray, RefusedConstructionIsEmptyWithoutABlock) {
  const auto source = MakeArray<TypeParam>({1, 2});
  this->Refuse(1);
  const ArrayAccess<TypeParam> array(3);
  EXPECT_EQ(array.Len(), 0);
  EXPECT_EQ(array.GetData(), nullptr);
  this->Refuse(1);
  const ArrayAccess<TypeParam> copy(source);
  EXPECT_EQ(copy.Len(), 0);
  EXPECT_EQ(copy.GetData(), nullptr);
  EXPECT_FALSE(this->host_.HasError());
}

TYPED_TEST(TypedArray, RefusedAssignmentIsEmptyWithoutABlock) {
  auto target = MakeArray<TypeParam>({1, 2, 3});
  const auto source = MakeArray<TypeParam>({4, 5});
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  this->Refuse(1);
  target = source;
  EXPECT_EQ(target.Len(), 0);
  EXPECT_EQ(target.GetData(), nullptr);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks - 1);
  EXPECT_FALSE(this->host_.HasError());
}

TYPED_TEST(TypedArray, RefusedGrowthLeavesTheArray) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  this->Refuse(1);
  EXPECT_EQ(array.SetLen(9), 3);
  this->Refuse(1);
  array.InsertItem(1, 9);
  EXPECT_EQ(Elements(array), (std::vector<TypeParam>{1, 2, 3}));
  EXPECT_FALSE(this->host_.HasError());
}

TYPED_TEST(TypedArray, RefusedShrinkingAfterRemovalLeavesNoBlock) {
  auto array = MakeArray<TypeParam>({1, 2, 3});
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  this->Refuse(1);
  array.RemoveItem(0);
  EXPECT_EQ(array.Len(), 0);
  EXPECT_EQ(array.GetData(), nullptr);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks - 1);
}

}  // namespace
}  // namespace tarn_test
