/// @file
/// Copies are deep, of any depth, and cost what they must.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

/// An array in an array in an array ..., `depth` of them, each the only element of the next.
void MakeNested(Variable& value, std::int64_t depth) {
  Variable* level = &value;
  for (std::int64_t i = 0; i < depth; ++i) {
    level->Init(VARTYPE_ARRAY, 1);
    level = level->GetArray();
  }
  *level = 42.0;
}

const Variable& Innermost(const Variable& value) {
  const Variable* level = &value;
  while (level->TypeWord() == VARTYPE_ARRAY) level = level->GetArray();
  return *level;
}

Variable Text(const char* text) {
  VarRegister value;
  value = text;
  return value.GetVar();
}

TEST(Copy, OfAnArrayIsItsOwn) {
  Variable original(VARTYPE_ARRAY, 3);
  original[0] = 1.0;
  original[1] = Text("text");
  original[2].Init(VARTYPE_ARRAY, 2);
  original[2][1] = 5.0;
  Variable copy(original);
  copy[0] = 9.0;
  copy[2][1] = 9.0;
  static_cast<char*>(copy[1])[0] = 'n';
  EXPECT_EQ(original[0].GetDoubleNumb(), 1.0);
  EXPECT_EQ(original[2][1].GetDoubleNumb(), 5.0);
  EXPECT_STREQ(static_cast<char*>(original[1]), "text");
  EXPECT_STREQ(static_cast<char*>(copy[1]), "next");
}

TEST(Copy, OfBytesIsItsOwn) {
  Variable original(VARTYPE_BYTES, 2);
  static_cast<char*>(original)[1] = 'a';
  Variable copy;
  copy = original;
  static_cast<char*>(original)[1] = 'b';
  ASSERT_EQ(copy.GetDim(), 2);
  EXPECT_EQ(static_cast<char*>(copy)[1], 'a');
}

TEST(Copy, OfEmptyArraysAndBytesKeepsTheType) {
  for (const PVARTYPE type : {VARTYPE_ARRAY, VARTYPE_BYTES}) {
    const Variable original(type, 0);
    const Variable copy(original);
    EXPECT_EQ(copy.TypeWord(), type);
    EXPECT_EQ(copy.GetDim(), 0);
  }
}

TEST(Copy, OfAnElementIntoItsArray) {
  Variable value(VARTYPE_ARRAY, 2);
  value[0].Init(VARTYPE_ARRAY, 1);
  value[0][0] = 3.0;
  value = value[0];
  ASSERT_EQ(value.GetDim(), 1);
  EXPECT_EQ(value[0].GetDoubleNumb(), 3.0);
}

TEST(Copy, OfAnArrayIntoItsElement) {
  Variable value(VARTYPE_ARRAY, 2);
  value[1] = 3.0;
  value[0] = value;
  ASSERT_EQ(value.GetDim(), 2);
  ASSERT_EQ(value[0].GetDim(), 2);
  EXPECT_EQ(value[0][1].GetDoubleNumb(), 3.0);
  EXPECT_EQ(value[0][0].TypeWord(), VARTYPE_EMPTY);
}

TEST(Copy, OfItselfChangesNothing) {
  Variable value(VARTYPE_ARRAY, 1);
  value[0] = 3.0;
  const Variable* elements = value.GetArray();
  const Variable& same = value;
  value = same;
  EXPECT_EQ(value.GetArray(), elements);
  Variable reference;
  reference = &value;
  value = reference;
  EXPECT_EQ(value.GetArray(), elements);
}

TEST(Copy, OfAReferenceIsACopyOfTheValue) {
  Variable target(VARTYPE_ARRAY, 1);
  target[0] = 1.0;
  Variable reference;
  reference = &target;
  Variable copy(reference);
  target[0] = 2.0;
  EXPECT_EQ(copy[0].GetDoubleNumb(), 1.0);
}

TEST(Copy, FollowsReferencesInsideAnArray) {
  Variable target(VARTYPE_ARRAY, 1);
  target[0] = 1.0;
  Variable holder(VARTYPE_ARRAY, 1);
  holder[0] = &target;
  Variable copy(holder);
  target[0] = 2.0;
  EXPECT_EQ(copy[0][0].GetDoubleNumb(), 1.0);
}

TEST(Copy, OfAnArrayThatRefersToItselfEnds) {
  Variable value(VARTYPE_ARRAY, 2);
  value[0] = &value;
  value[1] = 4.0;
  const Variable copy(value);
  ASSERT_EQ(copy.GetDim(), 2);
  EXPECT_EQ(copy.GetArray()[0].TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(copy.GetArray()[1].GetDoubleNumb(), 4.0);
}

TEST(Copy, OfTwoArraysThatReferToEachOtherEnds) {
  Variable first(VARTYPE_ARRAY, 1);
  Variable second(VARTYPE_ARRAY, 1);
  first[0] = &second;
  second[0] = &first;
  const Variable copy(first);
  ASSERT_EQ(copy.GetArray()[0].GetDim(), 1);
  EXPECT_EQ(copy.GetArray()[0].GetArray()[0].TypeWord(), VARTYPE_EMPTY);
}

TEST(Copy, OfAMillionLevelsNeedsNoStack) {
  const std::int64_t before = EmbeddedHost::LiveBlockCount();
  {
    Variable original;
    MakeNested(original, 1000000);
    const Variable copy(original);
    original.Clear();
    EXPECT_EQ(Innermost(copy).GetDoubleNumb(), 42.0);
  }
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before);
}

TEST(Copy, OfAMillionElements) {
  constexpr std::int64_t kCount = 1000000;
  Variable original(VARTYPE_ARRAY, kCount);
  for (std::int64_t i = 0; i < kCount; ++i) original[i] = static_cast<double>(i);
  Variable copy;
  copy = original;
  ASSERT_EQ(copy.GetDim(), kCount);
  for (std::int64_t i = 0; i < kCount; ++i) {
    ASSERT_EQ(copy.GetArray()[i].GetDoubleNumb(), static_cast<double>(i));
  }
}

using CopyOfObjects = HostTest;

TEST_F(CopyOfObjects, KeepsClassMembersAndElements) {
  Variable original = Value("f = TFunc({1, 2}, {5, 6}); f.Note = 'n'; return f");
  Variable copy(original);
  copy("Y")[0] = 9.0;
  EXPECT_EQ(copy.GetClass(), original.GetClass());
  EXPECT_EQ(original("Y")[0].GetDoubleNumb(), 5.0);
  EXPECT_EQ(copy("X")[1].GetDoubleNumb(), 2.0);
  EXPECT_STREQ(static_cast<char*>(copy("Note")), "n");
  Variable vector = Value("return MVector{3, 4}");
  Variable vectorCopy;
  vectorCopy = vector;
  vectorCopy[0] = 0.0;
  EXPECT_EQ(vector.GetDoubleNumb(), 5.0);
  EXPECT_EQ(vectorCopy.GetDoubleNumb(), 4.0);
}

TEST_F(CopyOfObjects, ThatReferToThemselvesEnds) {
  Variable object = Value("return TFunc()");
  object("Self") = &object;
  Variable copy(object);
  EXPECT_EQ(copy("Self").TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(copy.GetClass(), object.GetClass());
}

TEST_F(CopyOfObjects, ComplexNumbersAndFunctions) {
  const Variable original = Value("return array{complex(1, 2), function() return 5 end}");
  const Variable copy(original);
  EXPECT_EQ(copy.GetArray()[0].GetDoubleNumb(), 1.0);
  VarRegister result;
  ASSERT_NE(host.GetProcessor().RunFunctionAsIs(result, copy.GetArray()[1], nullptr, 0), 0);
  EXPECT_EQ(static_cast<int>(result), 5);
}

}  // namespace
