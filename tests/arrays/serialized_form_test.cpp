// The byte forms of T_Array and T_ArrayEx, byte for byte.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "arrays/array_access.h"
#include "host/embedded_host.h"

namespace tarn_test {
namespace {

class SerializedForm : public testing::Test {
 protected:
  /// The bytes that an array writes, in hexadecimal.
  template <class Array>
  static std::string Hex(const Array& array) {
    Variable value;
    array.Serialize(value);
    const char* const bytes = value;
    std::string text;
    for (std::int64_t i = 0; i < value.GetDim(); ++i) {
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(bytes[i]));
      text += digits;
    }
    return text;
  }

  EmbeddedHost host_;
};

TEST_F(SerializedForm, OfThreeDoublesIsTwentyEightBytes) {
  const auto array = MakeArray<double>({1.0, -2.0, 0x1.23456789abcdep+10});
  EXPECT_EQ(array.GetSerializeSize(), 28);
  EXPECT_EQ(Hex(array),
            "03000000"
            "000000000000f03f"
            "00000000000000c0"
            "debc9a7856349240");
}

TEST_F(SerializedForm, OfIntegersAndFloats) {
  EXPECT_EQ(Hex(MakeArray<int>({1, -2, 0x12345678})), "0300000001000000feffffff78563412");
  EXPECT_EQ(Hex(MakeArray<float>({1.0f, -0.0f})), "020000000000803f00000080");
  EXPECT_EQ(MakeArray<float>({1, 2}).GetSerializeSize(), 12);
}

TEST_F(SerializedForm, OfNothingIsTheCountAlone) {
  EXPECT_EQ(Hex(T_Array<double>(0)), "00000000");
  EXPECT_EQ(T_Array<double>(0).GetSerializeSize(), 4);
  T_Array<int> cleared(3);
  cleared.Clear();
  EXPECT_EQ(Hex(cleared), "00000000");
}

TEST_F(SerializedForm, OfRecordsHasNumberAndLength) {
  const auto records = MakeRecords<float>(3, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(records.GetSerializeSize(), 32);
  EXPECT_EQ(Hex(records),
            "0200000003000000"
            "0000803f0000004000004040"
            "000080400000a0400000c040");
  EXPECT_EQ(Hex(MakeRecords<double>(1, {1.0})), "0100000001000000000000000000f03f");
  EXPECT_EQ(Hex(T_ArrayEx<double>(0, 7)), "0000000007000000");
  EXPECT_EQ(T_ArrayEx<double>(0, 7).GetSerializeSize(), 8);
}

TEST_F(SerializedForm, IsAByteBlock) {
  Variable value;
  T_Array<double>(1).Serialize(value);
  EXPECT_EQ(value.TypeWord(), std::uint32_t{VARTYPE_BYTES});
}

TEST_F(SerializedForm, ReplacesWhatTheValueHeld) {
  Variable value(std::int32_t{5});
  MakeArray<int>({7}).Serialize(value);
  EXPECT_EQ(value.GetDim(), 8);
}

TEST_F(SerializedForm, RefusedByTheHostWritesNothing) {
  const auto array = MakeArray<double>({1, 2});
  const auto records = MakeRecords<double>(1, {1, 2});
  Variable value;
  host_.SetHeapFailure([](std::int64_t) { return true; });
  array.Serialize(value);
  EXPECT_EQ(value.GetDim(), 0);
  records.Serialize(value);
  EXPECT_EQ(value.GetDim(), 0);
}

template <class T>
class Rebuilding : public SerializedForm {};
using ElementTypes = testing::Types<int, float, double>;
TYPED_TEST_SUITE(Rebuilding, ElementTypes);

TYPED_TEST(Rebuilding, RestoresTheArray) {
  for (const std::vector<TypeParam>& values :
       {std::vector<TypeParam>{}, std::vector<TypeParam>{5}, std::vector<TypeParam>{1, -2, 3}}) {
    Variable value;
    MakeArray(values).Serialize(value);
    const T_Array<TypeParam> rebuilt(static_cast<char*>(value), value.GetDim());
    EXPECT_EQ(Elements(rebuilt), values);
    EXPECT_NE(rebuilt.GetData(), nullptr);
  }
  EXPECT_FALSE(this->host_.HasError());
}

TYPED_TEST(Rebuilding, ReadsUnalignedBytesAndIgnoresWhatFollows) {
  std::vector<char> bytes(64, 'x');
  bytes[1] = 1;
  bytes[2] = bytes[3] = bytes[4] = 0;
  const TypeParam number = 77;
  std::memcpy(bytes.data() + 5, &number, sizeof number);
  const T_Array<TypeParam> rebuilt(bytes.data() + 1, 60);
  EXPECT_EQ(Elements(rebuilt), std::vector<TypeParam>{77});
  EXPECT_FALSE(this->host_.HasError());
}

TYPED_TEST(Rebuilding, CountBeyondTheBytesGivesOneZeroAndAnError) {
  std::vector<char> bytes(4 + 2 * sizeof(TypeParam), 1);
  bytes[0] = 3;
  bytes[1] = bytes[2] = bytes[3] = 0;
  const T_Array<TypeParam> rebuilt(bytes.data(), static_cast<std::int64_t>(bytes.size()));
  EXPECT_EQ(Elements(rebuilt), std::vector<TypeParam>{0});
  EXPECT_EQ(this->host_.TakeError().number, 3);
}

TYPED_TEST(Rebuilding, LastByteMissingGivesAnError) {
  std::vector<char> bytes(4 + sizeof(TypeParam), 0);
  bytes[0] = 1;
  const auto size = static_cast<std::int64_t>(bytes.size());
  EXPECT_EQ(T_Array<TypeParam>(bytes.data(), size).Len(), 1);
  EXPECT_FALSE(this->host_.HasError());
  EXPECT_EQ(T_Array<TypeParam>(bytes.data(), size - 1).Len(), 1);
  EXPECT_EQ(this->host_.TakeError().number, 3);
}

TYPED_TEST(Rebuilding, CountIsUnsigned) {
  const char bytes[] = "\xff\xff\xff\xff....";
  const T_Array<TypeParam> rebuilt(bytes, 8);
  EXPECT_EQ(Elements(rebuilt), std::vector<TypeParam>{0});
  EXPECT_EQ(this->host_.TakeError().number, 3);
}

TYPED_TEST(Rebuilding, BytesWithoutACountGiveAnError) {
  const char bytes[] = {0, 0, 0};
  for (const std::int64_t count : {3, 1, 0, -1, -5}) {
    const T_Array<TypeParam> rebuilt(bytes, count);
    EXPECT_EQ(Elements(rebuilt), std::vector<TypeParam>{0}) << count;
    EXPECT_EQ(this->host_.TakeError().number, 3) << count;
  }
  const T_Array<TypeParam> nothing(nullptr, 8);
  EXPECT_EQ(nothing.Len(), 1);
  EXPECT_EQ(this->host_.TakeError().number, 3);
}

TYPED_TEST(Rebuilding, RefusedByTheHeapIsEmpty) {
  Variable value;
  MakeArray<TypeParam>({1, 2}).Serialize(value);
  this->host_.SetHeapFailure([](std::int64_t) { return true; });
  const T_Array<TypeParam> rebuilt(static_cast<char*>(value), value.GetDim());
  EXPECT_EQ(rebuilt.Len(), 0);
  EXPECT_EQ(rebuilt.GetData(), nullptr);
  EXPECT_FALSE(this->host_.HasError());
}

TYPED_TEST(Rebuilding, ShortBytesRefusedByTheHeapAreEmptyWithTheError) {
  this->host_.SetHeapFailure([](std::int64_t) { return true; });
  const T_Array<TypeParam> rebuilt("", 0);
  this->host_.SetHeapFailure({});
  EXPECT_EQ(rebuilt.Len(), 0);
  EXPECT_EQ(rebuilt.GetData(), nullptr);
  EXPECT_EQ(this->host_.TakeError().number, 3);
}

}  // namespace
}  // namespace tarn_test
