/// @file
/// Life, assignment and structure of `Variable` and `VarRegister`.

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>

#include "host/embedded_host.h"

namespace {

Variable Text(const char* text) {
  VarRegister value;
  value = text;
  return value.GetVar();
}

std::string TextOf(const Variable& value) {
  const char* text = value;
  return text == nullptr ? "(null)" : text;
}

// Kinds of value ----------------------------------------------------------------------------------

TEST(Value, IsEmptyAtFirst) {
  const Variable value;
  EXPECT_EQ(value.TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(value.IsNumber(), 0);
  EXPECT_EQ(value.GetDim(), 0);
  EXPECT_EQ(value.GetArray(), nullptr);
  EXPECT_EQ(value.GetClass(), nullptr);
  EXPECT_EQ(value.GetObject(), nullptr);
  EXPECT_EQ(value.GetCppPointer(), nullptr);
  EXPECT_EQ(static_cast<char*>(value), nullptr);
}

TEST(Value, HoldsNumbersOfEveryType) {
  EXPECT_EQ(Variable(std::int32_t{-7}).GetInt32Numb(), -7);
  EXPECT_EQ(Variable(std::int64_t{1} << 40).GetDoubleNumb(), 1099511627776.0);
  Variable value;
  value = std::int32_t{5};
  EXPECT_EQ(value.GetDoubleNumb(), 5.0);
  value = std::int64_t{6};
  EXPECT_EQ(value.GetDoubleNumb(), 6.0);
  value = 0.1F;
  EXPECT_EQ(value.GetDoubleNumb(), static_cast<double>(0.1F));
  value = 0.1;
  EXPECT_EQ(value.GetDoubleNumb(), 0.1);
  EXPECT_NE(value.IsNumber(), 0);
}

TEST(Value, TypeWordsThatModulesTest) {
  EXPECT_EQ(Variable(VARTYPE_ARRAY, 3).TypeWord(), 1024U);
  EXPECT_EQ(Variable(VARTYPE_BYTES, 3).TypeWord(), 512U);
  Variable pointer;
  pointer.SetCppPointer(&pointer);
  EXPECT_EQ(pointer.TypeWord(), 2U);
  for (const Variable& value : {Variable(1), Text("x"), Variable(VARTYPE_ARRAY, 1), pointer}) {
    EXPECT_FALSE(value.IsObject());
  }
}

TEST(Value, GivesBackANativePointer) {
  int target = 0;
  Variable value;
  value.SetCppPointer(&target);
  EXPECT_EQ(value.GetCppPointer(), &target);
  EXPECT_EQ(Variable(value).GetCppPointer(), &target);
  EXPECT_EQ(value.IsNumber(), 0);
  EXPECT_EQ(value.GetDoubleNumb(), 0.0);
}

TEST(Value, BytesAreZeroAndWritable) {
  Variable value(VARTYPE_BYTES, 4);
  ASSERT_EQ(value.GetDim(), 4);
  char* bytes = value;
  EXPECT_EQ(std::memcmp(bytes, "\0\0\0\0", 4), 0);
  bytes[3] = 'x';
  EXPECT_EQ(static_cast<char*>(value)[3], 'x');
  EXPECT_EQ(static_cast<char*>(Variable(VARTYPE_BYTES, 0)), nullptr);
}

TEST(Value, ClearLeavesItEmpty) {
  Variable value(VARTYPE_ARRAY, 3);
  value.Clear();
  EXPECT_EQ(value.TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(value.GetDim(), 0);
}

// Init --------------------------------------------------------------------------------------------

TEST(Init, MakesAnArrayOfEmptyElements) {
  Variable value(7);
  value.Init(VARTYPE_ARRAY, 3);
  ASSERT_EQ(value.GetDim(), 3);
  for (std::int64_t i = 0; i < 3; ++i) EXPECT_EQ(value[i].TypeWord(), VARTYPE_EMPTY);
}

TEST(Init, MakesAnEmptyArrayOfNoElements) {
  for (const std::int64_t count : {std::int64_t{0}, std::int64_t{-1}}) {
    Variable value(VARTYPE_ARRAY, count);
    EXPECT_EQ(value.TypeWord(), VARTYPE_ARRAY);
    EXPECT_EQ(value.GetDim(), 0);
    EXPECT_EQ(value.GetArray(), nullptr);
  }
}

TEST(Init, AnArrayTooLargeForAnyMemoryHasNoElements) {
  Variable value(VARTYPE_ARRAY, std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(value.TypeWord(), VARTYPE_ARRAY);
  EXPECT_EQ(value.GetDim(), 0);
  value.Init(VARTYPE_BYTES, std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(value.TypeWord(), VARTYPE_BYTES);
  EXPECT_EQ(value.GetDim(), 0);
}

TEST(Init, FreesWhatTheValueHeld) {
  const std::int64_t before = EmbeddedHost::LiveBlockCount();
  {
    Variable value(VARTYPE_ARRAY, 3);
    value[0] = Text("text");
    value.Init(VARTYPE_ARRAY, 2);
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before + 1);
  }
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before);
}

TEST(Init, OfATypeWithoutElementsMakesAZeroOrNothing) {
  Variable value(VARTYPE_ARRAY, 3);
  value.Init(VARTYPE_CPP_POINTER, 1);
  EXPECT_EQ(value.TypeWord(), VARTYPE_CPP_POINTER);
  EXPECT_EQ(value.GetCppPointer(), nullptr);
  value.Init(VARTYPE_OBJECT_BITS, 1);
  EXPECT_EQ(value.TypeWord(), VARTYPE_EMPTY);
}

// Elements ----------------------------------------------------------------------------------------

TEST(Elements, AreContiguousAndZeroBased) {
  Variable value(VARTYPE_ARRAY, 3);
  for (int i = 0; i < 3; ++i) value[i] = i + 0.5;
  const Variable* elements = value.GetArray();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(&value[i], elements + i);
    EXPECT_EQ(elements[i].GetDoubleNumb(), i + 0.5);
  }
}

TEST(Elements, OutOfRangeAreEmptyAndHarmless) {
  Variable value(VARTYPE_ARRAY, 2);
  value[0] = 1.0;
  value[1] = 2.0;
  for (const std::int64_t index :
       {std::int64_t{-1}, std::int64_t{2}, std::numeric_limits<std::int64_t>::max(),
        std::numeric_limits<std::int64_t>::min()}) {
    value[index] = 9.0;
    EXPECT_EQ(value[index].TypeWord(), VARTYPE_EMPTY) << index;
  }
  EXPECT_EQ(value[0].GetDoubleNumb(), 1.0);
  EXPECT_EQ(value[1].GetDoubleNumb(), 2.0);
  EXPECT_EQ(Variable(3)[0].TypeWord(), VARTYPE_EMPTY);
}

TEST(Elements, OutOfRangeStayTheirOwnForAWhile) {
  Variable value(VARTYPE_ARRAY, 1);
  Variable& first = value[5];
  Variable& second = value[6];
  first.Init(VARTYPE_ARRAY, 2);
  second.Init(VARTYPE_ARRAY, 3);
  EXPECT_EQ(first.GetDim(), 2);
  EXPECT_EQ(second.GetDim(), 3);
}

TEST(Elements, OutOfRangeHoldNoBlocksThatAreCounted) {
  const std::int64_t before = EmbeddedHost::LiveBlockCount();
  Variable value;
  value[3].Init(VARTYPE_ARRAY, 10);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before);
}

TEST(Members, OfAValueWithoutClassAreEmptyAndHarmless) {
  Variable value(1);
  value("X") = 5.0;
  EXPECT_EQ(value("X").TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(value.GetInt32Numb(), 1);
}

// References --------------------------------------------------------------------------------------

TEST(References, ReadAndWriteTheValueReferredTo) {
  Variable target(VARTYPE_ARRAY, 2);
  Variable reference;
  reference = &target;
  EXPECT_EQ(reference.GetDim(), 2);
  reference[1] = 2.5;
  EXPECT_EQ(target[1].GetDoubleNumb(), 2.5);
  EXPECT_EQ(reference.GetArray(), target.GetArray());
  reference = 7.0;
  EXPECT_EQ(target.GetDoubleNumb(), 7.0);
  reference.Init(VARTYPE_BYTES, 5);
  EXPECT_EQ(target.TypeWord(), VARTYPE_BYTES);
  reference.SetCppPointer(&target);
  EXPECT_EQ(target.GetCppPointer(), &target);
  EXPECT_NE(reference.TypeWord(), VARTYPE_CPP_POINTER) << "the type word is the reference's own";
}

TEST(References, TypeWordIsNoneThatModulesTest) {
  Variable target(VARTYPE_ARRAY, 2);
  Variable reference;
  reference = &target;
  EXPECT_NE(reference.TypeWord(), VARTYPE_EMPTY);
  EXPECT_NE(reference.TypeWord(), VARTYPE_CPP_POINTER);
  EXPECT_NE(reference.TypeWord(), VARTYPE_BYTES);
  EXPECT_NE(reference.TypeWord(), VARTYPE_ARRAY);
  EXPECT_FALSE(reference.IsObject());
}

TEST(References, EndWithClearAndDestruction) {
  Variable target(5);
  {
    Variable reference;
    reference = &target;
    Variable another;
    another = &target;
    another.Clear();
    EXPECT_EQ(another.TypeWord(), VARTYPE_EMPTY);
  }
  EXPECT_EQ(target.GetInt32Numb(), 5);
}

TEST(References, AssigningAnotherPointerMovesThem) {
  Variable first(1);
  Variable second(2);
  Variable reference;
  reference = &first;
  reference = &second;
  EXPECT_EQ(reference.GetInt32Numb(), 2);
  EXPECT_EQ(first.GetInt32Numb(), 1);
  reference = static_cast<Variable*>(nullptr);
  EXPECT_EQ(reference.TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(second.GetInt32Numb(), 2);
}

TEST(References, ToReferencesLeadToTheEnd) {
  Variable target(1);
  Variable first;
  Variable second;
  Variable third;
  first = &target;
  second = &first;
  third = &second;
  third = 8.0;
  EXPECT_EQ(target.GetDoubleNumb(), 8.0);
  second.Clear();
  EXPECT_EQ(third.GetDoubleNumb(), 8.0) << "the chain was shortened when it was made";
}

TEST(References, NeverFormCircles) {
  Variable self;
  self = &self;
  EXPECT_EQ(self.GetDoubleNumb(), 0.0);
  Variable a;
  Variable b;
  Variable c;
  a = &b;
  b = &c;
  c = &a;
  for (Variable* value : {&a, &b, &c}) *value = 3.0;
  for (const Variable* value : {&a, &b, &c}) EXPECT_EQ(value->GetDoubleNumb(), 3.0);
}

TEST(References, ReplaceWhatTheValueHeld) {
  const std::int64_t before = EmbeddedHost::LiveBlockCount();
  Variable target(1);
  Variable value(VARTYPE_ARRAY, 10);
  value = &target;
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before);
}

// Registers ---------------------------------------------------------------------------------------

TEST(Register, HoldsAValueOfItsOwn) {
  VarRegister value;
  EXPECT_EQ(value.GetVar().TypeWord(), VARTYPE_EMPTY);
  value = 2.5;
  EXPECT_EQ(static_cast<double>(value), 2.5);
  EXPECT_EQ(static_cast<float>(value), 2.5F);
  EXPECT_EQ(static_cast<int>(value), 2);
  value = 3;
  EXPECT_EQ(static_cast<Variable&>(value).GetInt32Numb(), 3);
  value = "text";
  EXPECT_EQ(TextOf(value.GetVar()), "text");
  value = static_cast<const char*>(nullptr);
  EXPECT_EQ(value.GetVar().TypeWord(), VARTYPE_EMPTY);
}

TEST(Register, CanReferToAnExistingValue) {
  Variable target(1);
  VarRegister value;
  value.PointTo(&target);
  EXPECT_EQ(&value.GetVar(), &target);
  value = 4.5;
  EXPECT_EQ(target.GetDoubleNumb(), 4.5);
  value.PointTo(nullptr);
  EXPECT_NE(&value.GetVar(), &target);
}

TEST(Register, FollowsReferences) {
  Variable target(1);
  Variable reference;
  reference = &target;
  VarRegister value;
  value.PointTo(&reference);
  EXPECT_EQ(&value.GetVar(), &target);
  VarRegister own;
  own.GetVar() = &target;
  EXPECT_EQ(&own.GetVar(), &target);
}

TEST(Register, IsByReferenceAfterSetRef) {
  VarRegister value;
  EXPECT_FALSE(value.IsRef());
  value.SetRef();
  EXPECT_TRUE(value.IsRef());
}

}  // namespace
