// T_ArraySet: items with parameters, shared by shallow copies.

#include <gtest/gtest.h>

#include <memory>

#include "arrays/array_access.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(SetAccess<float>, params) == sizeof(void*));
static_assert(offsetof(SetAccess<float>, items) == 2 * sizeof(void*));
static_assert(offsetof(SetAccess<float>, len) == 3 * sizeof(void*));
static_assert(offsetof(SetAccess<float>, itemLen) == 3 * sizeof(void*) + 8);
static_assert(offsetof(SetAccess<double>, ok) == 3 * sizeof(void*) + 16);
#pragma GCC diagnostic pop
static_assert(std::is_base_of_v<TarnAss, T_ArraySet<float>>);

template <class T>
class ArraySet : public testing::Test {
 protected:
  EmbeddedHost host_;
  const std::int64_t blocksBefore_ = EmbeddedHost::LiveBlockCount();
};

using ElementTypes = testing::Types<float, double>;
TYPED_TEST_SUITE(ArraySet, ElementTypes);

TYPED_TEST(ArraySet, StartsWithZeros) {
  const SetAccess<TypeParam> set(3, 4);
  EXPECT_EQ(set.ok, 1);
  EXPECT_TRUE(set.IsComplete());
  EXPECT_EQ(set.Len(), 3);
  EXPECT_EQ(set.ItemLen(), 4);
  for (std::int64_t i = 0; i < 3; ++i) {
    for (std::int64_t j = 0; j < 4; ++j) EXPECT_EQ(set[i][j], 0);
    for (std::int64_t j = 0; j < 10; ++j) EXPECT_EQ(set.Param(i)[j], 0);
  }
}

TYPED_TEST(ArraySet, EveryItemHasItsOwnBlocks) {
  const SetAccess<TypeParam> set(2, 1);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), this->blocksBefore_ + 4);
  set[0][0] = 1;
  set.Param(0)[9] = 2;
  EXPECT_EQ(set[1][0], 0);
  EXPECT_EQ(set.Param(1)[9], 0);
}

TYPED_TEST(ArraySet, ParametersOutsideTheSetAreThoseOfItemZero) {
  const SetAccess<TypeParam> set(3, 1);
  EXPECT_EQ(set.Param(-1), set.params[0]);
  EXPECT_EQ(set.Param(3), set.params[0]);
  EXPECT_EQ(set.Param(2), set.params[2]);
}

TYPED_TEST(ArraySet, ParametersOfAnEmptySetAreNull) {
  const SetAccess<TypeParam> set(0, 4);
  EXPECT_EQ(set.ok, 1);
  EXPECT_EQ(set.Len(), 0);
  EXPECT_EQ(set.Param(0), nullptr);
  EXPECT_EQ(set.Param(-1), nullptr);
}

TYPED_TEST(ArraySet, OfNegativeOrAbsurdCountIsEmptyAndIncomplete) {
  for (const std::int64_t count : {std::int64_t{-1}, std::numeric_limits<std::int64_t>::max()}) {
    const SetAccess<TypeParam> set(count, 4);
    EXPECT_EQ(set.ok, 0);
    EXPECT_EQ(set.Len(), 0);
    EXPECT_EQ(set.Param(0), nullptr);
  }
}

TYPED_TEST(ArraySet, OfNegativeItemLengthHasNoItems) {
  const SetAccess<TypeParam> set(2, -1);
  EXPECT_EQ(set.ok, 0);
  EXPECT_EQ(set.Len(), 2);
  EXPECT_EQ(set[0], nullptr);
  EXPECT_NE(set.Param(0), nullptr);
}

TYPED_TEST(ArraySet, DestructorReleasesEverything) {
  { const SetAccess<TypeParam> set(3, 4); }
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), this->blocksBefore_);
}

TYPED_TEST(ArraySet, CopySharesItemsAndParameters) {
  const SetAccess<TypeParam> set(2, 3);
  const SetAccess<TypeParam> copy(set);
  EXPECT_EQ(copy.items, set.items);
  EXPECT_EQ(copy.params, set.params);
  EXPECT_EQ(copy.Len(), 2);
  EXPECT_EQ(copy.ItemLen(), 3);
  EXPECT_EQ(copy.ok, 1);
  copy[1][2] = 5;
  EXPECT_EQ(set[1][2], 5);
}

TYPED_TEST(ArraySet, BlocksLiveUntilTheLastSharerIsGone) {
  auto first = std::make_unique<SetAccess<TypeParam>>(2, 3);
  auto second = std::make_unique<SetAccess<TypeParam>>(*first);
  auto third = std::make_unique<SetAccess<TypeParam>>(*first);
  (*first)[0][0] = 4;
  first.reset();
  EXPECT_EQ((*second)[0][0], 4);
  third.reset();
  EXPECT_EQ((*second)[0][0], 4);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), this->blocksBefore_ + 4);
  second.reset();
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), this->blocksBefore_);
}

TYPED_TEST(ArraySet, AssignmentSharesAndReleasesItsOwn) {
  SetAccess<TypeParam> target(5, 1);
  {
    const SetAccess<TypeParam> source(2, 3);
    source[1][1] = 6;
    target = source;
    EXPECT_EQ(target.items, source.items);
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), this->blocksBefore_ + 4);
  }
  EXPECT_EQ(target.Len(), 2);
  EXPECT_EQ(target.ItemLen(), 3);
  EXPECT_EQ(target[1][1], 6);
}

TYPED_TEST(ArraySet, AssignmentBetweenSharersAndToItselfChangesNothing) {
  SetAccess<TypeParam> set(2, 3);
  SetAccess<TypeParam> copy(set);
  copy = set;
  set = copy;
  const auto& same = set;
  set = same;
  EXPECT_EQ(set.items, copy.items);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), this->blocksBefore_ + 4);
}

TYPED_TEST(ArraySet, RefusedBlocksAreNullAndTheOthersThere) {
  for (std::int64_t refused = 1; refused <= 4; ++refused) {
    this->host_.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
    {
      const SetAccess<TypeParam> set(2, 3);
      this->host_.SetHeapFailure({});
      EXPECT_EQ(set.ok, 0);
      EXPECT_FALSE(set.IsComplete());
      EXPECT_EQ(set.Len(), 2);
      const TypeParam* const blocks[] = {set[0], set.Param(0), set[1], set.Param(1)};
      for (std::int64_t i = 1; i <= 4; ++i) EXPECT_EQ(blocks[i - 1] == nullptr, i == refused) << i;
    }
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), this->blocksBefore_);
  }
  EXPECT_FALSE(this->host_.HasError());
}

}  // namespace
}  // namespace tarn_test
