/// @file
/// Script classes that modules bring along: methods, operators, objects.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

class ClassMethodTest : public HostTest {
 protected:
  void SetUp() override { ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/extension_module.so")); }

  HostError Refusal(const std::string& text) {
    const HostError error = Failure(text);
    EXPECT_EQ(error.number, 3) << text;
    return error;
  }
};

// Objects -----------------------------------------------------------------------------------------

TEST_F(ClassMethodTest, AModulesClassCanBeInstantiated) {
  Variable box;
  ASSERT_NE(host.GetProcessor().MakeInstance(box, "Box", nullptr, 0), 0);
  EXPECT_STREQ(box.KindName(), "Box");
  EXPECT_EQ(box.GetMemberName(0), nullptr);
  EXPECT_EQ(box.IsInheritFrom(Token::GetNameID("Box")), 1);
  EXPECT_EQ(box.IsInheritFrom(VARCLASS_VECTOR), 0);
}

TEST_F(ClassMethodTest, ItsObjectsTakeNoArguments) {
  VarRegister argument;
  Variable box(5);
  EXPECT_EQ(host.GetProcessor().MakeInstance(box, "Box", &argument, 1), 0);
  EXPECT_EQ(host.TakeError().message, "Box takes no arguments");
  EXPECT_EQ(box.TypeWord(), VARTYPE_EMPTY);
}

TEST_F(ClassMethodTest, ObjectsKeepWhatTheyOwnUntilTheyAreCollected) {
  EXPECT_EQ(Number("box = Box(3); return LiveContents()"), 1.0);
  EXPECT_EQ(Number("copy = box:copy(); box = nil; collectgarbage(); return LiveContents()"), 1.0);
  EXPECT_EQ(Number("return copy:Get()"), 3.0);
  EXPECT_EQ(Number("copy = nil; collectgarbage(); return LiveContents()"), 0.0);
}

TEST_F(ClassMethodTest, CopiesOfObjectsShareTheirNativeObject) {
  EXPECT_EQ(Number("local a = Box(3); local b = a:copy(); b:Set(4); return a:Get()"), 4.0);
}

TEST_F(ClassMethodTest, RefusedMemoryForAnOwnedObjectLeavesNoneBehind) {
  Run("Box(1); collectgarbage()");
  for (std::int64_t refused = 1; refused <= 6; ++refused) {
    host.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
    host.Evaluate("Box(1)");
    host.SetHeapFailure({});
    host.TakeError();
    // Where a member cannot be created, its stand-in takes the object; counting blocks empties it.
    EmbeddedHost::LiveBlockCount();
    EXPECT_EQ(Number("collectgarbage(); return LiveContents()"), 0.0) << refused;
  }
}

// Methods -----------------------------------------------------------------------------------------

TEST_F(ClassMethodTest, MethodsAreCalledOnObjects) {
  EXPECT_EQ(Number("return Box(3):Get()"), 3.0);
  EXPECT_EQ(Number("local b = Box(3); b:Set(8); return b:Get()"), 8.0);
  EXPECT_EQ(Number("return Box(3):Plus(1) + Box(3):Plus(1, 10)"), 18.0);
  EXPECT_EQ(Text("_G['Box.Get']"), "nil") << "they are no globals";
}

TEST_F(ClassMethodTest, ClassesOfTheHostCanBeGivenMethods) {
  EXPECT_EQ(Text("MVector{1, 2}.First ~= nil"), "true");
  EXPECT_EQ(Text("Vector{1, 2}.First"), "nil");
}

TEST_F(ClassMethodTest, ArgumentsAreCountedWithoutTheObject) {
  EXPECT_EQ(Refusal("Box(1):Get(2)").message, "expected 0 arguments, got 1");
  EXPECT_EQ(Refusal("Box(1):Plus()").message, "expected 1 to 2 arguments, got 0");
  EXPECT_EQ(Refusal("Box(1):Plus('x')").message, "argument 1 must be a number, got a string");
  EXPECT_EQ(Refusal("Box(1):Plus(1, {})").message, "argument 2 must be a number, got a table");
}

TEST_F(ClassMethodTest, TheObjectMustBeOne) {
  EXPECT_EQ(Refusal("Box(1).Get()").message, "must be called on an object, as object:Get(...)");
  EXPECT_EQ(Refusal("Box(1).Get(5)").message,
            "the object of the method must be an object of class Box, got 5");
  EXPECT_EQ(Refusal("Box(1).Get(MVector(2))").message,
            "the object of the method must be an object of class Box, got a vector value");
  EXPECT_EQ(Refusal("Box(1).Get({1})").message,
            "the object of the method must be an object of class Box, got an array");
}

TEST_F(ClassMethodTest, ErrorsNameTheMethodAndThePlace) {
  const HostError error = Failure("\nBox(1):Break()");
  EXPECT_EQ(error.ToString(), "text:2: Box.Break: it broke");
  EXPECT_EQ(error.number, 10);
  EXPECT_EQ(Text("select(2, pcall(function() Box(1):Plus() end))"),
            "text:1: Box.Plus: expected 1 to 2 arguments, got 0");
}

TEST_F(ClassMethodTest, FunctionsInMembersComeBeforeMethods) {
  EXPECT_EQ(Number("local b = Box(3); function b:Get() return 7 end; return b:Get()"), 7.0);
}

TEST_F(ClassMethodTest, ModulesCallThemToo) {
  Variable box = Value("return Box(3)");
  VarRegister argument;
  argument = 2.0;
  VarRegister result;
  Processor& processor = host.GetProcessor();
  EXPECT_NE(processor.RunMethod(result, "Plus", &argument, 1, &box), 0);
  EXPECT_EQ(static_cast<double>(result), 5.0);
  EXPECT_NE(processor.RunMethodAsIs(result, "Get", nullptr, 0, &box), 0);
  EXPECT_EQ(static_cast<double>(result), 3.0);
  EXPECT_EQ(processor.RunMethod(result, "Plus", nullptr, 0, &box), 0);
  EXPECT_EQ(host.TakeError().ToString(), "Box.Plus: expected 1 to 2 arguments, got 0");
  EXPECT_EQ(static_cast<double>(result), 3.0) << "the result is left alone";
  EXPECT_EQ(processor.RunMethod(result, "Break", nullptr, 0, &box), 0);
  EXPECT_EQ(host.TakeError().number, 10);
  EXPECT_EQ(processor.RunMethod(result, "Missing", nullptr, 0, &box), 0);
  EXPECT_EQ(host.TakeError().message, "class Box has no method Missing");
}

TEST_F(ClassMethodTest, AreListedAndCalledByTheirFullNames) {
  const std::vector<std::string> signatures = host.Signatures();
  EXPECT_EQ(std::count(signatures.begin(), signatures.end(), "Box.Get(refer object Box)"), 1);
  EXPECT_NE(host.FindHandler("Box.Get"), nullptr);
  Variable box = Value("return Box(3)");
  Variable result;
  ASSERT_TRUE(host.Call("Box.Get", {&box, 1}, &result)) << host.TakeError().ToString();
  EXPECT_EQ(result.GetDoubleNumb(), 3.0);
}

TEST_F(ClassMethodTest, CompletionKnowsTheMethodsButNotTheOperators) {
  Run("b = Box(3)");
  EXPECT_EQ(host.Complete("b:"), (std::vector<std::string>{"b:Break", "b:Get", "b:Plus", "b:Set"}));
  EXPECT_EQ(host.Complete("b:P"), std::vector<std::string>{"b:Plus"});
}

// Records and options -----------------------------------------------------------------------------

TEST_F(ClassMethodTest, RecordsHoldNamedResults) {
  EXPECT_EQ(Text("MakeRecord()"), "Record(point = {1, 2.5}, evaluations = 12)");
  EXPECT_EQ(Number("local r = MakeRecord(); return r.point[2] + r.evaluations"), 14.5);
  EXPECT_EQ(Text("MakeRecord().missing"), "nil");
  EXPECT_EQ(Text("MakeRecord():kind()"), "Record");
}

TEST_F(ClassMethodTest, ScriptsMakeRecordsAndOptions) {
  EXPECT_EQ(Text("(function() local r = Record(); r.b = 1; r.a = 'x'; return r end)()"),
            "Record(b = 1, a = \"x\")");
  EXPECT_EQ(Refusal("Options{x = 1}").message, "the value is no sequence, it has the key x");
  EXPECT_EQ(Refusal("Record(1)").message, "Record takes no arguments");
}

/// What pairs goes through: "key=value;".
std::string Pairs(const std::string& value) {
  return "(function() local s = ''; for k, v in pairs(" + value +
         ") do s = s .. tostring(k) .. '=' .. tostring(v) .. ';' end; return s end)()";
}

TEST_F(ClassMethodTest, PairsGoesThroughElementsAndThenMembers) {
  EXPECT_EQ(Text(Pairs("MakeRecord()")), "point={1, 2.5};evaluations=12;");
  EXPECT_EQ(Text(Pairs("Record()")), "");
  EXPECT_EQ(Text(Pairs("array{5, 'x'}")), "1=5;2=x;");
  EXPECT_EQ(Text(Pairs("array(2)")), "1=nil;2=nil;") << "empty elements are elements";
  EXPECT_EQ(Text(Pairs("TFunc({0, 1}, {5, 6})")), "X={0, 1};Y={5, 6};");
  EXPECT_EQ(
      Text("(function() local v = MVector{3}; v.Name = 'n'; return " + Pairs("v") + " end)()"),
      "1=3;Name=n;");
  EXPECT_EQ(Text(Pairs("complex(1, 2)")), "");
}

TEST_F(ClassMethodTest, PairsOnlyTakesWhatItCanGoThrough) {
  EXPECT_EQ(Refusal("local step = pairs(Record()); step(5)").message,
            "argument 1 must be a host value, got a number");
  EXPECT_EQ(Text("select(1, pairs(MakeRecord()))(MakeRecord(), 'missing')"), "nil");
}

// Operators ---------------------------------------------------------------------------------------

TEST_F(ClassMethodTest, BinaryOperatorsGetTheOperandsAsTheyStood) {
  EXPECT_EQ(Text("Box(1) + 2"), "Box+number");
  EXPECT_EQ(Text("2 + Box(1)"), "number+Box");
  EXPECT_EQ(Text("Box(1) + Box(2)"), "Box+Box");
  EXPECT_EQ(Text("Box(1) * {1, 2}"), "Box*array");
  EXPECT_EQ(Text("{1, 2} / Box(1)"), "array/Box");
  EXPECT_EQ(Text("complex(1, 2) + Box(1)"), "complex+Box");
  EXPECT_EQ(Text("MVector(2) * Box(1)"), "MVector*Box");
  EXPECT_EQ(Text("Box(2) ^ 3"), "Box^number");
  EXPECT_EQ(Number("return (Box(5) - 3):Get() + (3 - Box(5)):Get()"), 0.0);
}

TEST_F(ClassMethodTest, OperandsAreCheckedBySignature) {
  EXPECT_EQ(Refusal("return 2 ^ Box(3)").message,
            "argument 1 must be an object of class Box, got 2");
  EXPECT_EQ(Refusal("return Box(3) ^ 'x'").message, "argument 2 must be a number, got a string");
  EXPECT_EQ(Refusal("return Box(3) + true").message, "argument 2 must be a value, got a boolean");
  EXPECT_EQ(Refusal("return Box(3) + nil").function, "Box.__add");
}

TEST_F(ClassMethodTest, UnaryOperators) {
  EXPECT_EQ(Number("return (-Box(4)):Get()"), -4.0);
  EXPECT_EQ(Number("return #Box(4)"), 4.0);
  EXPECT_EQ(Text("Box(4)"), "a box");
  EXPECT_EQ(Text("Box(0)"), "an empty box");
  Run("print(Box(0))");
  EXPECT_EQ(output, "an empty box\n");
}

TEST_F(ClassMethodTest, EqualityIsABoolean) {
  EXPECT_EQ(Text("Box(4) == Box(4)"), "true");
  EXPECT_EQ(Text("Box(4) == Box(5)"), "false");
  EXPECT_EQ(Text("Box(4) ~= Box(5)"), "true");
  EXPECT_EQ(Text("Box(4) == 4"), "false") << "the interpreter compares values of one type only";
}

TEST_F(ClassMethodTest, ObjectsMayBeCalled) {
  EXPECT_EQ(Number("return Box(4)(1)"), 5.0);
  EXPECT_EQ(Number("return Box(4)(1, 2)"), 7.0);
  EXPECT_EQ(Refusal("Box(4)()").message, "expected 1 to 2 arguments, got 0");
  EXPECT_EQ(Refusal("array{1}()").message, "an array cannot be called");
}

TEST_F(ClassMethodTest, TextMustBeText) {
  EXPECT_EQ(Failure("return tostring(Box(-1))").message, "the operator __tostring gave a number");
}

TEST_F(ClassMethodTest, WithoutOperatorEverythingIsAsBefore) {
  EXPECT_EQ(Text("complex(1, 2) + 1"), "2+2i");
  EXPECT_EQ(Text("-complex(1, 2)"), "-1-2i");
  EXPECT_EQ(Refusal("return MVector(2) + 1").message,
            "arithmetic needs numbers or complex numbers, got a vector value");
  EXPECT_EQ(Refusal("return MVector(2) ^ 2").message, "a vector value has no powers");
  EXPECT_EQ(Refusal("return 2 ^ complex(0, 1)").message, "a complex number has no powers");
}

}  // namespace
