// Construction, ownership, size and filling of vectors.

#include <climits>

#include "linalg/array_new_failure.h"
#include "linalg/linalg_support.h"

namespace {

template <class T>
using VectorStorage = ElementTest<T>;
TYPED_TEST_SUITE(VectorStorage, ElementTypes);

// Layout ------------------------------------------------------------------------------------------

TYPED_TEST(VectorStorage, FieldsStandInTheirOrder) {
  using Fields = VectorFields<TypeParam>;
  static_assert(Fields::DimOffset() == 0);
  static_assert(Fields::DataOffset() == sizeof(void*));
  static_assert(Fields::OwnsDataOffset() == 2 * sizeof(void*));
  static_assert(sizeof(T_MatVector<TypeParam>) == 3 * sizeof(void*));
  static_assert(sizeof(T_MatVectorCol<TypeParam>) == sizeof(T_MatVector<TypeParam>));
  static_assert(sizeof(T_MatVectorRow<TypeParam>) == sizeof(T_MatVector<TypeParam>));
  static_assert(!std::is_polymorphic_v<T_MatVectorCol<TypeParam>>);
  static_assert(std::is_base_of_v<T_MatVector<TypeParam>, T_MatVectorCol<TypeParam>>);
  static_assert(std::is_base_of_v<T_MatVector<TypeParam>, T_MatVectorRow<TypeParam>>);
}

TYPED_TEST(VectorStorage, DumpIsAZeroStaticOfTheElementType) {
  static_assert(std::is_same_v<decltype(VectorFields<TypeParam>::DumpAddress()), TypeParam*>);
  EXPECT_EQ(*VectorFields<TypeParam>::DumpAddress(), 0);
}

// Construction ------------------------------------------------------------------------------------

TYPED_TEST(VectorStorage, DefaultIsEmpty) {
  const T_MatVector<TypeParam> v;
  EXPECT_EQ(v.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(v), nullptr);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 1);
}

TYPED_TEST(VectorStorage, ZeroElementsAreTheEmptyVector) {
  const T_MatVector<TypeParam> v(0);
  EXPECT_EQ(v.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(v), nullptr);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 1);
}

TYPED_TEST(VectorStorage, NewElementsAreZeros) {
  const T_MatVector<TypeParam> v(5);
  EXPECT_EQ(Contents(v), Doubles(5, 0.0));
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 1);
}

TYPED_TEST(VectorStorage, AllocatesExactlyItsElements) {
  const NewFailure watch([](std::int64_t) { return false; });
  const T_MatVector<TypeParam> v(7);
  EXPECT_EQ(watch.LastSize(), static_cast<std::int64_t>(7 * sizeof(TypeParam)));
}

TYPED_TEST(VectorStorage, NegativeSizesAreRefusedAllocations) {
  const T_MatVector<TypeParam> byNumber(-3);
  EXPECT_EQ(byNumber.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(byNumber), nullptr);
  TypeParam numbers[3] = {1, 2, 3};
  const T_MatVector<TypeParam> byCopy(numbers, INT_MIN);
  EXPECT_EQ(byCopy.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(byCopy), nullptr);
  const T_MatVector<TypeParam> byWrapping(numbers, -1, 1);
  EXPECT_EQ(byWrapping.Dim(), 0);
  int integers[1] = {1};
  EXPECT_EQ(T_MatVector<TypeParam>(integers, -1).Dim(), 0);
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  v.SetDim(-1);
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
  v.Set(numbers, -1);
  EXPECT_EQ(v.Dim(), 0);
}

TYPED_TEST(VectorStorage, CopyOfAWrapperOwns) {
  TypeParam numbers[3] = {1, 2, 3};
  const T_MatVector<TypeParam> wrapper(numbers, 3, 1);
  const T_MatVector<TypeParam> copy(wrapper);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(copy), 1);
  EXPECT_NE(VectorFields<TypeParam>::Data(copy), numbers);
  EXPECT_EQ(Contents(copy), (Doubles{1, 2, 3}));
}

TYPED_TEST(VectorStorage, CopiesAnArray) {
  TypeParam numbers[3] = {1, 2, 3};
  const T_MatVector<TypeParam> v(numbers, 3);
  numbers[0] = 9;
  EXPECT_EQ(Contents(v), (Doubles{1, 2, 3}));
}

TYPED_TEST(VectorStorage, WrapsAnArray) {
  TypeParam numbers[3] = {1, 2, 3};
  T_MatVector<TypeParam> v(numbers, 3, 1);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 0);
  v[1] = 7;
  EXPECT_EQ(numbers[1], 7);
}

TYPED_TEST(VectorStorage, WrapFlagZeroCopies) {
  TypeParam numbers[2] = {1, 2};
  const T_MatVector<TypeParam> v(numbers, 2, 0);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 1);
  EXPECT_NE(VectorFields<TypeParam>::Data(v), numbers);
}

TYPED_TEST(VectorStorage, ConvertsIntegers) {
  int integers[3] = {-1, 0, 2147483647};
  const T_MatVector<TypeParam> v(integers, 3);
  EXPECT_EQ(v[0], -1);
  EXPECT_EQ(v[2], static_cast<TypeParam>(2147483647));
}

TEST(VectorConversion, WidensSinglePrecision) {
  float numbers[2] = {0.1F, 3};
  const T_MatVector<double> v(numbers, 2);
  EXPECT_EQ(v[0], static_cast<double>(0.1F));
}

TEST(VectorConversion, NarrowsDoublePrecision) {
  double numbers[2] = {0.1, 3};
  const T_MatVector<float> v(numbers, 2);
  EXPECT_EQ(v[0], 0.1F);
}

TYPED_TEST(VectorStorage, NullArrayStandsForZeros) {
  const TypeParam* const nothing = nullptr;
  EXPECT_EQ(Contents(T_MatVector<TypeParam>(nothing, 2)), (Doubles{0, 0}));
}

// Assignment --------------------------------------------------------------------------------------

TYPED_TEST(VectorStorage, AssignmentOfEqualSizeFillsTheWrappedArray) {
  TypeParam numbers[3] = {0, 0, 0};
  T_MatVector<TypeParam> wrapper(numbers, 3, 1);
  wrapper = Col<TypeParam>({1, 2, 3});
  EXPECT_EQ(numbers[0], 1);
  EXPECT_EQ(numbers[2], 3);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(wrapper), 0);
}

TYPED_TEST(VectorStorage, AssignmentOfAnotherSizeLeavesTheWrappedArray) {
  TypeParam numbers[3] = {7, 8, 9};
  T_MatVector<TypeParam> wrapper(numbers, 3, 1);
  wrapper = Col<TypeParam>({1, 2, 3, 4});
  EXPECT_EQ(numbers[0], 7);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(wrapper), 1);
  EXPECT_EQ(Contents(wrapper), (Doubles{1, 2, 3, 4}));
}

TYPED_TEST(VectorStorage, AssignmentOfEqualSizeKeepsTheStorage) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  const TypeParam* const storage = VectorFields<TypeParam>::Data(v);
  v = Col<TypeParam>({3, 4});
  EXPECT_EQ(VectorFields<TypeParam>::Data(v), storage);
  EXPECT_EQ(Contents(v), (Doubles{3, 4}));
}

TYPED_TEST(VectorStorage, AssignmentFromAPartOfItself) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3, 4});
  const T_MatVector<TypeParam> part(VectorFields<TypeParam>::Data(v) + 1, 2, 1);
  v = part;
  EXPECT_EQ(Contents(v), (Doubles{2, 3}));
}

TYPED_TEST(VectorStorage, AssignmentOfItselfChangesNothing) {
  T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 2});
  const T_MatVectorCol<TypeParam>& self = v;
  v = self;
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
}

TYPED_TEST(VectorStorage, AssignmentOfAnEmptyVectorEmpties) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  v = T_MatVector<TypeParam>();
  EXPECT_EQ(v.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(v), nullptr);
}

TYPED_TEST(VectorStorage, ColumnTakesAnyVector) {
  T_MatVectorCol<TypeParam> v;
  const T_MatVector<TypeParam>& row = Row<TypeParam>({1, 2, 3});
  v = row;
  EXPECT_EQ(Contents(v), (Doubles{1, 2, 3}));
  EXPECT_EQ(Contents(T_MatVectorCol<TypeParam>(row)), (Doubles{1, 2, 3}));
}

TYPED_TEST(VectorStorage, RowTakesAnyVector) {
  T_MatVectorRow<TypeParam> v;
  const T_MatVector<TypeParam>& column = Col<TypeParam>({1, 2, 3});
  v = column;
  EXPECT_EQ(Contents(v), (Doubles{1, 2, 3}));
  T_MatVectorRow<TypeParam> other;
  other = v;
  EXPECT_EQ(Contents(other), (Doubles{1, 2, 3}));
}

// Every constructor that columns and rows forward.
template <class Vector, class T>
void ExpectForwardedConstructors() {
  T numbers[2] = {1, 2};
  int integers[2] = {3, 4};
  typename T_MatVector<T>::OtherElement others[2] = {5, 6};
  EXPECT_EQ(Vector().Dim(), 0);
  EXPECT_EQ(Contents(Vector(2)), (Doubles{0, 0}));
  EXPECT_EQ(Contents(Vector(numbers, 2)), (Doubles{1, 2}));
  EXPECT_EQ(VectorFields<T>::OwnsData(Vector(numbers, 2, 1)), 0);
  EXPECT_EQ(Contents(Vector(integers, 2)), (Doubles{3, 4}));
  EXPECT_EQ(Contents(Vector(others, 2)), (Doubles{5, 6}));
  EXPECT_EQ(Contents(Vector(Vector(numbers, 2))), (Doubles{1, 2}));
}

TYPED_TEST(VectorStorage, ColumnForwardsTheConstructors) {
  ExpectForwardedConstructors<T_MatVectorCol<TypeParam>, TypeParam>();
}

TYPED_TEST(VectorStorage, RowForwardsTheConstructors) {
  ExpectForwardedConstructors<T_MatVectorRow<TypeParam>, TypeParam>();
}

// Size --------------------------------------------------------------------------------------------

TYPED_TEST(VectorStorage, SetDimGrowsWithZeros) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  v.SetDim(5);
  EXPECT_EQ(Contents(v), (Doubles{1, 2, 3, 0, 0}));
}

TYPED_TEST(VectorStorage, SetDimShrinks) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  v.SetDim(2);
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
}

TYPED_TEST(VectorStorage, SetDimOfTheSameSizeDoesNothing) {
  TypeParam numbers[3] = {1, 2, 3};
  T_MatVector<TypeParam> wrapper(numbers, 3, 1);
  wrapper.SetDim(3);
  EXPECT_EQ(VectorFields<TypeParam>::Data(wrapper), numbers);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(wrapper), 0);
}

TYPED_TEST(VectorStorage, SetDimZeroEmptiesAndOwns) {
  TypeParam numbers[3] = {1, 2, 3};
  T_MatVector<TypeParam> wrapper(numbers, 3, 1);
  wrapper.SetDim(0);
  EXPECT_EQ(wrapper.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(wrapper), nullptr);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(wrapper), 1);
}

TYPED_TEST(VectorStorage, SetDimOfAWrapperCopiesItsElements) {
  TypeParam numbers[3] = {1, 2, 3};
  T_MatVector<TypeParam> v(numbers, 3, 1);
  v.SetDim(4);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 1);
  EXPECT_EQ(Contents(v), (Doubles{1, 2, 3, 0}));
  EXPECT_EQ(numbers[2], 3);
}

TYPED_TEST(VectorStorage, SetDimWithAnArrayCopiesThereAndWraps) {
  TypeParam numbers[4] = {9, 9, 9, 9};
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  v.SetDim(4, numbers);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 0);
  EXPECT_EQ(Contents(v), (Doubles{1, 2, 3, 9}));
  EXPECT_EQ(numbers[0], 1);
}

TYPED_TEST(VectorStorage, SetDimWithASmallerArrayCopiesWhatFits) {
  TypeParam numbers[3] = {9, 9, 9};
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  v.SetDim(2, numbers);
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
  EXPECT_EQ(numbers[2], 9);
}

TYPED_TEST(VectorStorage, SetDimWithAnArrayOfNoElementsCopiesNothing) {
  TypeParam numbers[1] = {9};
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  v.SetDim(0, numbers);
  EXPECT_EQ(v.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(v), numbers);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 0);
  EXPECT_EQ(numbers[0], 9);
}

TYPED_TEST(VectorStorage, SetDimWithItsOwnStorageStaysAnOwner) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  v.SetDim(2, VectorFields<TypeParam>::Data(v));
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 1);
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
}

TYPED_TEST(VectorStorage, SetDimWithAPartOfItsOwnStorageStaysAnOwner) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  v.SetDim(2, VectorFields<TypeParam>::Data(v) + 1);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 1);
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
}

TYPED_TEST(VectorStorage, SetDimOfAWrapperWithAPartOfItsArrayCopiesThereAndWraps) {
  TypeParam numbers[4] = {1, 2, 3, 4};
  T_MatVector<TypeParam> v(numbers, 3, 1);
  v.SetDim(2, numbers + 1);
  EXPECT_EQ(VectorFields<TypeParam>::Data(v), numbers + 1);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 0);
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
}

TYPED_TEST(VectorStorage, SetDimWithNullIsEmpty) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2, 3});
  v.SetDim(3, nullptr);
  EXPECT_EQ(v.Dim(), 0);
}

// Filling -----------------------------------------------------------------------------------------

TYPED_TEST(VectorStorage, SetFillsEveryElement) {
  T_MatVector<TypeParam> v(3);
  v.Set(TypeParam{2.5});
  EXPECT_EQ(Contents(v), Doubles(3, 2.5));
}

TYPED_TEST(VectorStorage, SetOfNegativeZeroStoresPositiveZero) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  v.Set(TypeParam{-0.0});
  EXPECT_EQ(v[0], 0);
  EXPECT_FALSE(std::signbit(v[0]));
  EXPECT_FALSE(std::signbit(v[1]));
}

TYPED_TEST(VectorStorage, SetOfNanFillsWithNan) {
  T_MatVector<TypeParam> v(2);
  v.Set(std::numeric_limits<TypeParam>::quiet_NaN());
  EXPECT_TRUE(std::isnan(v[0]) && std::isnan(v[1]));
}

TYPED_TEST(VectorStorage, FillingAnEmptyVectorDoesNothing) {
  T_MatVector<TypeParam> v;
  v.Set(TypeParam{1});
  v.Clear();
  EXPECT_EQ(v.Dim(), 0);
}

TYPED_TEST(VectorStorage, SetOfAnArrayOfEqualSizeKeepsTheStorage) {
  TypeParam numbers[2] = {0, 0};
  T_MatVector<TypeParam> v(numbers, 2, 1);
  TypeParam source[2] = {1, 2};
  v.Set(source, 2);
  EXPECT_EQ(numbers[1], 2);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 0);
}

TYPED_TEST(VectorStorage, SetOfAnArrayOfAnotherSizeOwns) {
  TypeParam numbers[2] = {0, 0};
  T_MatVector<TypeParam> v(numbers, 2, 1);
  TypeParam source[3] = {1, 2, 3};
  v.Set(source, 3);
  EXPECT_EQ(Contents(v), (Doubles{1, 2, 3}));
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 1);
  EXPECT_EQ(numbers[0], 0);
}

TYPED_TEST(VectorStorage, ClearSetsEveryElementToZero) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  v.Clear();
  EXPECT_EQ(Contents(v), (Doubles{0, 0}));
}

TYPED_TEST(VectorStorage, ResetKeepsTheOwnershipFlag) {
  TypeParam numbers[2] = {1, 2};
  T_MatVector<TypeParam> wrapper(numbers, 2, 1);
  wrapper.Reset();
  EXPECT_EQ(wrapper.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(wrapper), nullptr);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(wrapper), 0);
  T_MatVector<TypeParam> owner(2);
  owner.Reset();
  EXPECT_EQ(owner.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(owner), 1);
}

// Access and comparison ---------------------------------------------------------------------------

TYPED_TEST(VectorStorage, GivesItsElementsAsAnArray) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  TypeParam* const elements = v;
  elements[1] = 5;
  EXPECT_EQ(v[1], 5);
  const T_MatVector<TypeParam>& constant = v;
  const TypeParam* const constantElements = constant;
  EXPECT_EQ(constantElements, elements);
}

TYPED_TEST(VectorStorage, EqualityComparesBytes) {
  const TypeParam nan = std::numeric_limits<TypeParam>::quiet_NaN();
  EXPECT_EQ(Col<TypeParam>({1, 2}) == Col<TypeParam>({1, 2}), 1);
  EXPECT_EQ(Col<TypeParam>({1, 2}) == Col<TypeParam>({1, 3}), 0);
  EXPECT_EQ(Col<TypeParam>({1, 2}) == Col<TypeParam>({1}), 0);
  EXPECT_EQ(Col<TypeParam>({0.0}) == Col<TypeParam>({-0.0}), 0);
  EXPECT_EQ(T_MatVector<TypeParam>(&nan, 1) == T_MatVector<TypeParam>(&nan, 1), 1);
  EXPECT_EQ(T_MatVector<TypeParam>() == T_MatVector<TypeParam>(), 1);
}

// Exhausted memory --------------------------------------------------------------------------------

bool Always(std::int64_t) { return true; }

TYPED_TEST(VectorStorage, RefusedConstructorsLeaveDimensionZero) {
  TypeParam numbers[2] = {1, 2};
  int integers[2] = {1, 2};
  const T_MatVector<TypeParam> source(numbers, 2);
  const NewFailure failure(Always);
  EXPECT_EQ(T_MatVector<TypeParam>(2).Dim(), 0);
  EXPECT_EQ(T_MatVector<TypeParam>(numbers, 2).Dim(), 0);
  EXPECT_EQ(T_MatVector<TypeParam>(integers, 2).Dim(), 0);
  EXPECT_EQ(T_MatVector<TypeParam>(source).Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(T_MatVector<TypeParam>(source)), nullptr);
}

TYPED_TEST(VectorStorage, RefusedAssignmentLeavesDimensionZero) {
  T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 2});
  const T_MatVectorCol<TypeParam> source = Col<TypeParam>({1, 2, 3});
  const std::int64_t before = LiveNewBlocks();
  {
    const NewFailure failure(Always);
    v = source;
  }
  EXPECT_EQ(v.Dim(), 0);
  EXPECT_EQ(VectorFields<TypeParam>::Data(v), nullptr);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(v), 1);
  EXPECT_EQ(LiveNewBlocks(), before - 1) << "the old storage is freed";
}

TYPED_TEST(VectorStorage, RefusedSetOfAnArrayLeavesDimensionZero) {
  TypeParam numbers[3] = {1, 2, 3};
  T_MatVector<TypeParam> v(2);
  const NewFailure failure(Always);
  v.Set(numbers, 3);
  EXPECT_EQ(v.Dim(), 0);
}

TYPED_TEST(VectorStorage, RefusedSetDimChangesNothing) {
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  const NewFailure failure(Always);
  v.SetDim(3);
  EXPECT_EQ(Contents(v), (Doubles{1, 2}));
}

TYPED_TEST(VectorStorage, FreesWhatItOwnsAndNothingElse) {
  TypeParam numbers[3] = {1, 2, 3};
  const std::int64_t before = LiveNewBlocks();
  {
    T_MatVector<TypeParam> v(3);
    v.SetDim(5);
    v = T_MatVector<TypeParam>(numbers, 2);
    v.SetDim(3, numbers);
    v = T_MatVector<TypeParam>(numbers, 2);
    v.Reset();
    v.SetDim(4);
  }
  EXPECT_EQ(LiveNewBlocks(), before);
}

}  // namespace
