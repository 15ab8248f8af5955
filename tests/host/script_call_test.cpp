/// @file
/// Registered functions called by scripts and programs: arguments checked before the handler runs,
/// results given back.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

class ScriptCallTest : public HostTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
    ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/test_module.so"));
  }

  /// The error of a call that is refused before its handler runs.
  std::string Refusal(const std::string& call) {
    const HostError error = Failure("local r = " + call);
    EXPECT_EQ(error.number, 3);
    EXPECT_EQ(error.name, "Bad argument.");
    EXPECT_EQ(error.where, "text:1");
    return error.function + ": " + error.message;
  }
};

// Number of arguments -----------------------------------------------------------------------------

TEST_F(ScriptCallTest, WantsTheDeclaredNumberOfArguments) {
  EXPECT_EQ(Refusal("BesselJn(1)"), "BesselJn: expected 2 arguments, got 1");
  EXPECT_EQ(Refusal("BesselJ0()"), "BesselJ0: expected 1 argument, got 0");
  EXPECT_EQ(Refusal("LnGamma(1, 2)"), "LnGamma: expected 1 argument, got 2");
  EXPECT_EQ(Refusal("Nothing(nil)"), "Nothing: expected 0 arguments, got 1");
  EXPECT_EQ(Number("return SumOfSix(1, 2, 3, 4, 5, 6)"), 21.0);
}

// "number" ----------------------------------------------------------------------------------------

TEST_F(ScriptCallTest, NumberTakesNumbers) {
  EXPECT_EQ(Number("return Half(5)"), 2.5);
  EXPECT_EQ(Number("return Half(5.5)"), 2.75);
  EXPECT_EQ(Number("return Half(math.huge)"), HUGE_VAL);
}

TEST_F(ScriptCallTest, NumberRefusesEverythingElse) {
  EXPECT_EQ(Refusal("BesselJn({}, 1)"), "BesselJn: argument 1 must be a number, got a table");
  EXPECT_EQ(Refusal("Half('2')"), "Half: argument 1 must be a number, got a string");
  EXPECT_EQ(Refusal("Half(nil)"), "Half: argument 1 must be a number, got nil");
  EXPECT_EQ(Refusal("Half(true)"), "Half: argument 1 must be a number, got a boolean");
  EXPECT_EQ(Refusal("Half(print)"), "Half: argument 1 must be a number, got a function");
  EXPECT_EQ(Refusal("Half(array{1})"), "Half: argument 1 must be a number, got an array");
  EXPECT_EQ(Refusal("Half(complex(1, 2))"),
            "Half: argument 1 must be a number, got a complex number");
  EXPECT_EQ(Refusal("Half(MVector(2))"), "Half: argument 1 must be a number, got a vector value");
  EXPECT_EQ(Refusal("Half(TFunc())"),
            "Half: argument 1 must be a number, got an object of class TFunc");
  EXPECT_EQ(Refusal("Half(coroutine.create(print))"),
            "Half: argument 1 must be a number, got a coroutine");
  EXPECT_EQ(Refusal("Half(io.stdout)"), "Half: argument 1 must be a number, got a userdata");
  EXPECT_EQ(Refusal("SumOfSix(1, 2, 3, 4, 5, 'x')"),
            "SumOfSix: argument 6 must be a number, got a string");
}

// "int" -------------------------------------------------------------------------------------------

TEST_F(ScriptCallTest, IntTakesWholeNumbersOf32Bits) {
  EXPECT_EQ(Number("return Whole(7)"), 7.0);
  EXPECT_EQ(Number("return Whole(-7.0)"), -7.0);
  EXPECT_EQ(Number("return Whole(2147483647)"), 2147483647.0);
  EXPECT_EQ(Number("return Whole(-2147483648)"), -2147483648.0);
  EXPECT_EQ(Text("math.type(Whole(7.0))"), "integer");
}

TEST_F(ScriptCallTest, IntRefusesEverythingElse) {
  EXPECT_EQ(Refusal("RandBinominal(0.5, 2.5)"),
            "RandBinominal: argument 2 must be a whole number of 32 bits, got 2.5");
  EXPECT_EQ(Refusal("Whole(2147483648)"),
            "Whole: argument 1 must be a whole number of 32 bits, got 2147483648");
  EXPECT_EQ(Refusal("Whole(-2147483649)"),
            "Whole: argument 1 must be a whole number of 32 bits, got -2147483649");
  EXPECT_EQ(Refusal("Whole(math.huge)"),
            "Whole: argument 1 must be a whole number of 32 bits, got inf");
  EXPECT_EQ(Refusal("Whole(0/0)"), "Whole: argument 1 must be a whole number of 32 bits, got nan");
  EXPECT_EQ(Refusal("Whole('7')"),
            "Whole: argument 1 must be a whole number of 32 bits, got a string");
}

// "any" -------------------------------------------------------------------------------------------

TEST_F(ScriptCallTest, AnyTakesEveryKindOfValue) {
  EXPECT_EQ(Text("Echo(5)"), "5");
  EXPECT_EQ(Text("Echo(5.0)"), "5.0");
  EXPECT_EQ(Text("math.type(Echo(1 << 60))"), "integer");
  EXPECT_EQ(Text("Echo(1 << 60) == 1 << 60"), "true");
  EXPECT_EQ(Text("Echo('text')"), "text");
  EXPECT_EQ(Text("#Echo('a\\0b')"), "3");
  EXPECT_EQ(Text("Echo('') == ''"), "true");
  EXPECT_EQ(Text("Echo(print) == print"), "true");
  EXPECT_EQ(Text("Echo(complex(1, -2))"), "1-2i");
  EXPECT_EQ(Text("Echo({1, {2, 'x'}})"), "{1, {2, \"x\"}}");
  EXPECT_EQ(Text("Echo({})"), "{}");
  EXPECT_EQ(Text("Echo(MVector{3, 4})"), "MVector{3, 4}");
  EXPECT_EQ(Text("Echo(TFunc({1}, {2}))"), "TFunc(X = {1}, Y = {2})");
}

TEST_F(ScriptCallTest, AnyRefusesNilAndBooleans) {
  EXPECT_EQ(Refusal("LnGamma(nil)"), "LnGamma: argument 1 must be a value, got nil");
  EXPECT_EQ(Refusal("LnGamma(false)"), "LnGamma: argument 1 must be a value, got a boolean");
  EXPECT_EQ(Refusal("Echo(coroutine.create(print))"),
            "Echo: argument 1 is a coroutine, of which no host value can be made");
  EXPECT_EQ(Refusal("Echo(io.stdout)"), "Echo: argument 1 is a foreign userdata");
}

TEST_F(ScriptCallTest, AnySaysWhichElementOfATableIsWrong) {
  EXPECT_EQ(Refusal("LnGamma{1, true}"),
            "LnGamma: argument 1, element [2], is a boolean, of which no host value can be made");
  EXPECT_EQ(Refusal("LnGamma{1, {2, {3, coroutine.create(print)}}}"),
            "LnGamma: argument 1, element [2][2][2], is a coroutine, of which no host value can be "
            "made");
  EXPECT_EQ(Refusal("LnGamma{1, x = 2}"), "LnGamma: argument 1 is no sequence, it has the key x");
  EXPECT_EQ(Refusal("LnGamma{1, {[2.5] = 1}}"),
            "LnGamma: argument 1, element [2], is no sequence, it has the key 2.5");
  EXPECT_EQ(Refusal("LnGamma{1, nil, 3}"), "LnGamma: argument 1 is no sequence, element 2 is nil");
  EXPECT_EQ(Refusal("LnGamma{[0] = 1, 2}"), "LnGamma: argument 1 is no sequence, it has the key 0");
}

TEST_F(ScriptCallTest, ATableThatHoldsItselfIsRefused) {
  const HostError error = Failure("local t = {}; t[1] = t; LnGamma(t)");
  EXPECT_NE(error.message.find("is nested too deeply"), std::string::npos) << error.message;
}

TEST_F(ScriptCallTest, ATableBuiltBackwardsIsASequence) {
  EXPECT_EQ(
      Text("Echo((function() local t = {}; for i = 20, 1, -1 do t[i] = i end; return t end)())"),
      "{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, ... 20 elements}");
}

// "refer object" ----------------------------------------------------------------------------------

TEST_F(ScriptCallTest, VectorParameterTakesWhatHoldsNumbers) {
  for (const char* values : {"{1, 2, 3.5}", "array{1, 2, 3.5}", "MVector{1, 2, 3.5}",
                             "Vector{1, 2, 3.5}", "Array{1, 2, 3.5}"}) {
    EXPECT_EQ(Number(std::string("return Sum(") + values + ")"), 6.5) << values;
  }
  EXPECT_EQ(Number("return Sum{}"), 0.0);
}

TEST_F(ScriptCallTest, VectorParameterRefusesWhatHoldsNone) {
  EXPECT_EQ(Refusal("Sum(5)"), "Sum: argument 1 must be a vector or an array of numbers, got 5");
  EXPECT_EQ(Refusal("Sum('x')"),
            "Sum: argument 1 must be a vector or an array of numbers, got a string");
  EXPECT_EQ(Refusal("Sum(complex(1, 2))"),
            "Sum: argument 1 must be a vector or an array of numbers, got a complex number");
  EXPECT_EQ(
      Refusal("Sum(TFunc())"),
      "Sum: argument 1 must be a vector or an array of numbers, got an object of class TFunc");
  EXPECT_EQ(Refusal("Sum{1, 'x'}"), "Sum: argument 1, element 2 must be a number, got a text");
  EXPECT_EQ(Refusal("Sum{1, {2}}"), "Sum: argument 1, element 2 must be a number, got an array");
  EXPECT_EQ(Refusal("Sum(array(2))"), "Sum: argument 1, element 1 must be a number, got nothing");
}

TEST_F(ScriptCallTest, VectorParameterIsAReference) {
  EXPECT_EQ(Text("(function() local v = MVector{1, 2}; Double(v); return v end)()"),
            "MVector{2, 4}");
}

TEST_F(ScriptCallTest, ParametersOfOtherClassesTakeThatClassOnly) {
  EXPECT_EQ(Text("PointsX(TFunc({1, 2}, {3, 4}))"), "{1, 2}");
  EXPECT_EQ(Refusal("PointsX(MVector(2))"),
            "PointsX: argument 1 must be an object of class TFunc, got a vector value");
  EXPECT_EQ(Refusal("PointsX({1})"),
            "PointsX: argument 1 must be an object of class TFunc, got an array");
}

// Results -----------------------------------------------------------------------------------------

TEST_F(ScriptCallTest, ResultsOfEveryKind) {
  EXPECT_EQ(Text("Nothing()"), "nil");
  EXPECT_EQ(Text("Words()"), "some words");
  EXPECT_EQ(Text("Bytes()"), "3 bytes");
  EXPECT_EQ(Number("return IsPointer(Pointer())"), 1.0);
  EXPECT_EQ(Number("return IsPointer(5)"), 0.0);
  EXPECT_EQ(Text("Sinc{0, 0}"), "{1, 1}");
}

TEST_F(ScriptCallTest, AResultThatIsTheArgumentLeavesTheArgument) {
  EXPECT_EQ(Text("(function() local v = array{1, 2}; local r = EchoByReference(v); "
                 "return tostring(v) .. tostring(r) end)()"),
            "{1, 2}{1, 2}");
}

TEST_F(ScriptCallTest, AMillionElementsGoThroughAsOne) {
  EXPECT_EQ(Number("local t = {}; for i = 1, 1000000 do t[i] = i / 1000 end\n"
                   "local a = Errf1(t)\n"
                   "assert(#a == 1000000)\n"
                   "local b = Sinc(a)\n"
                   "assert(#b == 1000000 and #b:table() == 1000000)\n"
                   "return a[500]"),
            Number("return Errf1(0.5)"));
}

TEST_F(ScriptCallTest, AHostArrayIsNotCopiedAsArgument) {
  Run("a = array{1, 2, 3}");
  host.SetHeapFailure({});
  Run("Sum(a)");
  EXPECT_EQ(host.HeapRequestCount(), 0);
}

TEST_F(ScriptCallTest, AResultIsNotCopiedOnItsWayToTheScript) {
  Run("a = array{1, 2, 3}");
  host.SetHeapFailure({});
  Run("b = LnGamma(a)");
  EXPECT_EQ(host.HeapRequestCount(), 1) << "only the array of results itself";
}

// Calls by the program ----------------------------------------------------------------------------

TEST_F(ScriptCallTest, ProgramsCallByTheSameRules) {
  Variable result;
  std::array<Variable, 2> arguments = {Variable(1), Variable(2)};
  EXPECT_TRUE(host.Call("Half", std::span(arguments).first(1), &result));
  EXPECT_EQ(result.GetDoubleNumb(), 0.5);
  EXPECT_FALSE(host.Call("Half", arguments, &result));
  EXPECT_EQ(host.TakeError().ToString(), "Half: expected 1 argument, got 2");
  arguments[0].Init(VARTYPE_ARRAY, 2);
  EXPECT_FALSE(host.Call("Half", std::span(arguments).first(1), &result));
  EXPECT_EQ(host.TakeError().ToString(), "Half: argument 1 must be a number, got an array");
  arguments[0] = 1e10;
  EXPECT_FALSE(host.Call("Whole", std::span(arguments).first(1), &result));
  EXPECT_EQ(host.TakeError().ToString(),
            "Whole: argument 1 must be a whole number of 32 bits, got 10000000000");
  EXPECT_FALSE(host.Call("NoSuchFunction", {}, &result));
  EXPECT_EQ(host.TakeError().message, "there is no function NoSuchFunction");
}

TEST_F(ScriptCallTest, ProgramsGetWhatTheHandlerLeftAfterAnError) {
  std::array<Variable, 2> arguments = {Variable(10), Variable()};
  VarRegister message;
  message = "left to itself";
  arguments[1] = message.GetVar();
  Variable result;
  EXPECT_FALSE(host.Call("RaiseError", arguments, &result));
  EXPECT_EQ(result.GetInt32Numb(), 7);
  EXPECT_EQ(host.TakeError().ToString(), "RaiseError: left to itself");
  EXPECT_FALSE(host.Call("RaiseError", arguments, nullptr));
}

TEST_F(ScriptCallTest, AnOlderErrorStaysPendingThroughACallThatSucceeds) {
  TarnError(10, "older");
  Variable two(2);
  Variable result;
  EXPECT_TRUE(host.Call("Half", std::span(&two, 1), &result));
  EXPECT_TRUE(host.HasError());
  EXPECT_EQ(host.TakeError().message, "older");
}

TEST_F(ScriptCallTest, TheLaterOfTwoFunctionsOfOneNameCounts) {
  setenv("TARN_TEST_SIGNATURE", "Half(number)", 1);
  ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/shaped_module.so"));
  EXPECT_EQ(Number("return Half(5)"), 1.0);
}

}  // namespace
