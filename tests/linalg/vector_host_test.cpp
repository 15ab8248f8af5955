// Vectors from and to values of the host.

#include "linalg/array_new_failure.h"
#include "linalg/linalg_support.h"

namespace {

template <class T>
using VectorHost = ElementTest<T>;
TYPED_TEST_SUITE(VectorHost, ElementTypes);

Variable HostArray(std::initializer_list<double> values) {
  Variable array(VARTYPE_ARRAY, static_cast<std::int64_t>(values.size()));
  std::int64_t i = 0;
  for (double value : values) array[i++] = value;
  return array;
}

TYPED_TEST(VectorHost, TakesTheNumbersOfAnArray) {
  Variable array = HostArray({1, 2.5, -3});
  EXPECT_EQ(Contents(T_MatVector<TypeParam>(array)), (Doubles{1, 2.5, -3}));
  EXPECT_EQ(Contents(T_MatVectorCol<TypeParam>(array)), (Doubles{1, 2.5, -3}));
  EXPECT_EQ(Contents(T_MatVectorRow<TypeParam>(array)), (Doubles{1, 2.5, -3}));
}

TYPED_TEST(VectorHost, RoundsToTheElementType) {
  Variable array = HostArray({0.1});
  EXPECT_EQ(T_MatVector<TypeParam>(array)[0], static_cast<TypeParam>(0.1));
}

TYPED_TEST(VectorHost, AllocatesOneSpareElement) {
  Variable array = HostArray({1, 2, 3});
  const NewFailure watch([](std::int64_t) { return false; });
  const T_MatVector<TypeParam> v(array);
  EXPECT_EQ(watch.LastSize(), static_cast<std::int64_t>(4 * sizeof(TypeParam)));
}

TYPED_TEST(VectorHost, EmptyArrayAllocatesTheSpareElementAlone) {
  Variable array = HostArray({});
  const NewFailure watch([](std::int64_t) { return false; });
  const T_MatVector<TypeParam> v(array);
  EXPECT_EQ(v.Dim(), 0);
  EXPECT_EQ(watch.LastSize(), static_cast<std::int64_t>(sizeof(TypeParam)));
}

TYPED_TEST(VectorHost, NumbersHaveNoElements) {
  Variable number;
  number = 3.0;
  EXPECT_EQ(T_MatVector<TypeParam>(number).Dim(), 0);
}

TYPED_TEST(VectorHost, ElementsWithoutAnArrayAreZeros) {
  Variable bytes(VARTYPE_BYTES, 3);
  ASSERT_EQ(bytes.GetArray(), nullptr);
  EXPECT_EQ(Contents(T_MatVector<TypeParam>(bytes)), (Doubles{0, 0, 0}));
}

TYPED_TEST(VectorHost, TheHostDecidesWhatOtherElementsGive) {
  Variable array(VARTYPE_ARRAY, 2);
  array[0] = 4;
  EXPECT_EQ(Contents(T_MatVector<TypeParam>(array)), (Doubles{4, 0}));
}

TYPED_TEST(VectorHost, AssignmentOfEqualSizeFillsTheWrappedArray) {
  Variable array = HostArray({1, 2});
  TypeParam numbers[2] = {9, 9};
  T_MatVector<TypeParam> wrapper(numbers, 2, 1);
  EXPECT_EQ(&(wrapper = array), &wrapper);
  EXPECT_EQ(numbers[1], 2);
  EXPECT_EQ(VectorFields<TypeParam>::OwnsData(wrapper), 0);
}

TYPED_TEST(VectorHost, AssignmentOfAnotherSizeAllocatesWithTheSpareElement) {
  Variable array = HostArray({1, 2, 3});
  T_MatVectorCol<TypeParam> column(2);
  T_MatVectorRow<TypeParam> row(2);
  {
    const NewFailure watch([](std::int64_t) { return false; });
    column = array;
    EXPECT_EQ(watch.LastSize(), static_cast<std::int64_t>(4 * sizeof(TypeParam)));
  }
  row = array;
  EXPECT_EQ(Contents(column), (Doubles{1, 2, 3}));
  EXPECT_EQ(Contents(row), (Doubles{1, 2, 3}));
}

TYPED_TEST(VectorHost, AssignmentWithoutAnArrayClears) {
  Variable bytes(VARTYPE_BYTES, 2);
  T_MatVector<TypeParam> v = Col<TypeParam>({1, 2});
  v = bytes;
  EXPECT_EQ(Contents(v), (Doubles{0, 0}));
}

TYPED_TEST(VectorHost, RefusedStorageLeavesDimensionZero) {
  Variable array = HostArray({1, 2, 3});
  T_MatVector<TypeParam> v(2);
  const NewFailure failure([](std::int64_t) { return true; });
  EXPECT_EQ(T_MatVector<TypeParam>(array).Dim(), 0);
  v = array;
  EXPECT_EQ(v.Dim(), 0);
}

// Export ------------------------------------------------------------------------------------------

TYPED_TEST(VectorHost, ExportsAVectorObject) {
  Variable value;
  Col<TypeParam>({1, 2.5}).ExportToMVector(value);
  ASSERT_TRUE(value.IsObject());
  ASSERT_EQ(value.GetDim(), 2);
  EXPECT_EQ(value[0].GetDoubleNumb(), 1);
  EXPECT_EQ(value[1].GetDoubleNumb(), 2.5);
  EXPECT_NE(value.IsInheritFrom(VARCLASS_VECTOR) + value.IsInheritFrom(VARCLASS_ARRAY), 0);
  EXPECT_EQ(Contents(T_MatVector<TypeParam>(value)), (Doubles{1, 2.5}));
}

TYPED_TEST(VectorHost, ExportsAnEmptyVectorObject) {
  Variable value;
  T_MatVector<TypeParam>().ExportToMVector(value);
  EXPECT_TRUE(value.IsObject());
  EXPECT_EQ(value.GetDim(), 0);
}

TYPED_TEST(VectorHost, ExportWithoutAProcessorDoesNothing) {
  Variable value;
  value = 3.0;
  this->host.HideOwner(true);
  Col<TypeParam>({1, 2}).ExportToMVector(value);
  this->host.HideOwner(false);
  EXPECT_EQ(value.GetDoubleNumb(), 3.0);
}

TYPED_TEST(VectorHost, ExportsAPlainArray) {
  Variable value;
  Col<TypeParam>({1, 2.5}).ExportToVector(value);
  EXPECT_EQ(value.TypeWord(), static_cast<std::uint32_t>(VARTYPE_ARRAY));
  ASSERT_EQ(value.GetDim(), 2);
  EXPECT_EQ(value[1].GetDoubleNumb(), 2.5);
}

TYPED_TEST(VectorHost, ExportsAnEmptyPlainArray) {
  Variable value;
  value = 3.0;
  T_MatVector<TypeParam>().ExportToVector(value);
  EXPECT_EQ(value.TypeWord(), static_cast<std::uint32_t>(VARTYPE_ARRAY));
  EXPECT_EQ(value.GetDim(), 0);
}

TYPED_TEST(VectorHost, ExportSurvivesEveryRefusedRequest) {
  const T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 2, 3});
  std::int64_t needed = 0;
  {
    Variable object;
    Variable array;
    this->host.SetHeapFailure({});
    v.ExportToMVector(object);
    v.ExportToVector(array);
    needed = this->host.HeapRequestCount();
  }
  ASSERT_GT(needed, 0);
  for (std::int64_t refused = 1; refused <= needed; ++refused) {
    Variable object;
    Variable array;
    this->host.SetHeapFailure([=](std::int64_t request) { return request == refused; });
    v.ExportToMVector(object);
    v.ExportToVector(array);
    this->host.SetHeapFailure({});
    EXPECT_TRUE(object.GetDim() == 0 || Contents(T_MatVector<TypeParam>(object)) == Contents(v));
    EXPECT_TRUE(array.GetDim() == 0 || Contents(T_MatVector<TypeParam>(array)) == Contents(v));
    this->host.TakeError();
  }
}

}  // namespace
