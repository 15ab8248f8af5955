/// @file
/// Objects, their classes, members and constructors, as modules see them.

#include <gtest/gtest.h>

#include "tests/support/host_fixture.h"

namespace {

class ObjectTest : public HostTest {
 protected:
  /// Makes an object; on failure the value is empty and the error is returned.
  HostError Make(Variable& value, const char* className, VarRegister* arguments, int count) {
    const int succeeded = host.GetProcessor().MakeInstance(value, className, arguments, count);
    EXPECT_EQ(succeeded != 0, !host.HasError());
    EXPECT_EQ(succeeded != 0, value.TypeWord() != VARTYPE_EMPTY);
    return host.TakeError();
  }
};

TEST_F(ObjectTest, VectorClassesAreVectorValuesAndNoArrays) {
  for (const char* name : {"MVector", "Vector"}) {
    VarRegister dimension;
    dimension = 3;
    Variable value;
    ASSERT_EQ(Make(value, name, &dimension, 1).number, 0);
    EXPECT_TRUE(value.IsObject());
    ASSERT_NE(value.GetClass(), nullptr);
    EXPECT_NE(value.GetClass()->IsInheritFrom(VARCLASS_VECTOR), 0);
    EXPECT_NE(value.GetClass()->IsInheritFrom(Token::GetNameID(name)), 0);
    EXPECT_NE(value.IsInheritFrom(VARCLASS_VECTOR), 0);
    EXPECT_EQ(value.IsInheritFrom(VARCLASS_ARRAY), 0);
    EXPECT_EQ(value.GetDim(), 3);
    ASSERT_NE(value.GetArray(), nullptr);
    for (int i = 0; i < 3; ++i) {
      EXPECT_NE(value[i].IsNumber(), 0);
      EXPECT_EQ(value[i].GetDoubleNumb(), 0.0);
    }
  }
}

TEST_F(ObjectTest, ArrayClassInheritsTheArrayBase) {
  VarRegister length;
  length = 2;
  Variable value;
  ASSERT_EQ(Make(value, "Array", &length, 1).number, 0);
  EXPECT_NE(value.IsInheritFrom(VARCLASS_ARRAY), 0);
  EXPECT_EQ(value.IsInheritFrom(VARCLASS_VECTOR), 0);
  EXPECT_NE(value.TypeWord(), VARTYPE_ARRAY);
  EXPECT_EQ(value.GetDim(), 2);
}

TEST_F(ObjectTest, PlainArraysDeriveFromTheArrayBaseOnly) {
  const Variable array(VARTYPE_ARRAY, 1);
  EXPECT_NE(array.IsInheritFrom(VARCLASS_ARRAY), 0);
  EXPECT_EQ(array.IsInheritFrom(VARCLASS_VECTOR), 0);
  EXPECT_EQ(array.IsInheritFrom(Token::GetNameID("TFunc")), 0);
  EXPECT_EQ(Variable(1).IsInheritFrom(VARCLASS_ARRAY), 0);
}

TEST_F(ObjectTest, TabulatedFunctionHasMembersXAndY) {
  VarRegister arguments[2];
  for (int k = 0; k < 2; ++k) {
    arguments[k].GetVar().Init(VARTYPE_ARRAY, 2);
    arguments[k].GetVar()[0] = 10.0 * k;
    arguments[k].GetVar()[1] = 10.0 * k + 1.0;
  }
  Variable value;
  ASSERT_EQ(Make(value, "TFunc", arguments, 2).number, 0);
  EXPECT_NE(value.GetClass()->IsInheritFrom(Token::GetNameID("TFunc")), 0);
  EXPECT_EQ(value.IsInheritFrom(VARCLASS_ARRAY), 0);
  EXPECT_EQ(value.IsInheritFrom(VARCLASS_VECTOR), 0);
  EXPECT_EQ(value("X")[1].GetDoubleNumb(), 1.0);
  EXPECT_EQ(value("Y")[1].GetDoubleNumb(), 11.0);
  EXPECT_EQ(value.GetDim(), 0);
  ASSERT_EQ(Make(value, "TFunc", nullptr, 0).number, 0);
  EXPECT_EQ(value("Y").GetDim(), 0);
  EXPECT_EQ(value("Y").TypeWord(), VARTYPE_ARRAY);
}

TEST_F(ObjectTest, MembersAreCreatedEmptyAndStayWhereTheyAre) {
  Variable value;
  ASSERT_EQ(Make(value, "TFunc", nullptr, 0).number, 0);
  Variable& first = value("First");
  EXPECT_EQ(first.TypeWord(), VARTYPE_EMPTY);
  first = 1.0;
  for (int i = 0; i < 100; ++i) value(("Member" + std::to_string(i)).c_str()) = i;
  EXPECT_EQ(&value("First"), &first);
  EXPECT_EQ(first.GetDoubleNumb(), 1.0);
  EXPECT_EQ(value("Member99").GetInt32Numb(), 99);
  EXPECT_EQ(value(nullptr).TypeWord(), VARTYPE_EMPTY);
}

TEST_F(ObjectTest, ReferencesToObjectsActOnTheObject) {
  Variable value;
  ASSERT_EQ(Make(value, "TFunc", nullptr, 0).number, 0);
  Variable reference;
  reference = &value;
  EXPECT_EQ(reference.GetObject(), value.GetObject());
  EXPECT_EQ(reference.GetClass(), value.GetClass());
  reference("Z") = 4.0;
  EXPECT_EQ(value("Z").GetDoubleNumb(), 4.0);
}

TEST_F(ObjectTest, UnknownClassesAndBadArgumentsLeaveTheValueEmpty) {
  Variable value(5);
  HostError error = Make(value, "NoSuchClass", nullptr, 0);
  EXPECT_EQ(error.number, 3);
  EXPECT_EQ(error.message, "there is no class NoSuchClass");
  EXPECT_EQ(Make(value, nullptr, nullptr, 0).number, 3);
  for (const double dimension : {-1.0, 1.5, 1e18}) {
    VarRegister argument;
    argument = dimension;
    EXPECT_EQ(Make(value, "MVector", &argument, 1).number, 3) << dimension;
  }
  VarRegister text[2];
  text[0] = "3";
  EXPECT_EQ(Make(value, "MVector", text, 1).number, 3);
  EXPECT_EQ(Make(value, "MVector", text, 2).number, 3);
  EXPECT_EQ(Make(value, "TFunc", text, 2).number, 3);
  EXPECT_EQ(Make(value, "TFunc", text, 1).number, 3);
  EXPECT_EQ(Make(value, "ProgressWnd", text, 1).number, 3);
}

TEST_F(ObjectTest, TabulatedFunctionNeedsAsManyOrdinatesAsAbscissae) {
  EXPECT_EQ(Failure("TFunc({1, 2}, {1})").message,
            "TFunc takes as many ordinates as abscissae, got 1 and 2");
}

TEST_F(ObjectTest, VectorsHoldNumbersOnly) {
  EXPECT_EQ(Failure("MVector{1, 'x'}").message, "MVector takes only numbers as elements");
}

TEST_F(ObjectTest, AnInstanceMayReplaceItsOwnArgument) {
  VarRegister argument;
  argument = 2;
  Variable& value = argument.GetVar();
  ASSERT_EQ(Make(value, "MVector", &argument, 1).number, 0);
  EXPECT_EQ(value.GetDim(), 2);
}

TEST_F(ObjectTest, AVectorTooLargeIsAnErrorOfMemory) {
  VarRegister dimension;
  dimension = 8e15;
  Variable value;
  EXPECT_EQ(Make(value, "MVector", &dimension, 1).number, 1);
}

}  // namespace
