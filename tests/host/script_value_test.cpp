/// @file
/// Host values in scripts, and script values in the host.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

using ScriptValueTest = HostTest;

// From scripts ------------------------------------------------------------------------------------

TEST_F(ScriptValueTest, ValuesOfChunks) {
  EXPECT_EQ(Value("return").TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(Value("return nil").TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(Number("return true"), 1.0);
  EXPECT_EQ(Number("return false"), 0.0);
  EXPECT_EQ(Number("return 1, 2, 3"), 1.0);
  EXPECT_EQ(Value("return {1, {2, 3}}").GetArray()[1].GetArray()[1].GetDoubleNumb(), 3.0);
  EXPECT_EQ(Value("return array{5}").TypeWord(), VARTYPE_ARRAY);
  EXPECT_STREQ(static_cast<char*>(Value("return 'text'")), "text");
}

TEST_F(ScriptValueTest, AValueThatCannotBeHeldIsAnErrorOnlyWhereItIsWanted) {
  Variable value(5);
  EXPECT_FALSE(host.Evaluate("return {x = 1}", &value));
  EXPECT_EQ(host.TakeError().message, "the value is no sequence, it has the key x");
  EXPECT_EQ(value.GetInt32Numb(), 5) << "kept";
  EXPECT_TRUE(host.Evaluate("return {x = 1}"));
}

TEST_F(ScriptValueTest, ValuesOfChunksAreCopies) {
  Run("a = array{1, 2}");
  Variable value = Value("return a");
  value[0] = 9.0;
  EXPECT_EQ(Text("a"), "{1, 2}");
  Run("a[2] = 7");
  EXPECT_EQ(value[1].GetDoubleNumb(), 2.0);
}

TEST_F(ScriptValueTest, AValueIsStoredThroughAReference) {
  Variable target;
  Variable reference;
  reference = &target;
  ASSERT_TRUE(host.Evaluate("return 5", &reference));
  EXPECT_EQ(target.GetInt32Numb(), 5);
}

// Arrays ------------------------------------------------------------------------------------------

TEST_F(ScriptValueTest, ArraysAreIndexedFromOne) {
  Run("a = array{10, 20, 30}");
  EXPECT_EQ(Number("return a[1]"), 10.0);
  EXPECT_EQ(Number("return a[3]"), 30.0);
  EXPECT_EQ(Number("return a[3.0]"), 30.0);
  EXPECT_EQ(Number("return #a"), 3.0);
  for (const char* index : {"0", "4", "-1", "1.5", "1 << 62", "nil", "true", "'x'", "{}"}) {
    EXPECT_EQ(Text(std::string("a[") + index + "]"), "nil") << index;
  }
}

TEST_F(ScriptValueTest, ArraysCanBeWritten) {
  Run("a = array(3); a[1] = 1; a[2] = 'two'; a[3] = {3, 4}");
  EXPECT_EQ(Text("a"), "{1, \"two\", {3, 4}}");
  Run("a[3][2] = 5");
  EXPECT_EQ(Text("a"), "{1, \"two\", {3, 5}}");
  Run("a[1] = nil");
  EXPECT_EQ(Text("a"), "{nil, \"two\", {3, 5}}");
  for (const char* index : {"0", "4", "1.5", "'x'"}) {
    EXPECT_EQ(Failure(std::string("a[") + index + "] = 1").number, 3) << index;
  }
  EXPECT_EQ(Failure("a[4] = 1").message, "index 4 is not one of the 3 elements");
}

TEST_F(ScriptValueTest, AnElementMayBeTheArrayItself) {
  Run("a = array{1, 2}; a[1] = a");
  EXPECT_EQ(Text("a"), "{{1, 2}, 2}");
}

TEST_F(ScriptValueTest, AFailedWriteChangesNothing) {
  Run("a = array{1, 2}; pcall(function() a[1] = {1, {x = 1}} end)");
  EXPECT_EQ(Text("a"), "{1, 2}");
}

TEST_F(ScriptValueTest, NestedArraysAreSeenNotCopied) {
  Run("a = array{{1, 2}, {3, 4}}; row = a[2]; row[1] = 9");
  EXPECT_EQ(Text("a"), "{{1, 2}, {9, 4}}");
}

TEST_F(ScriptValueTest, ANestedArrayOutlivesItsHolder) {
  Run("a = array{{1, 2}}; row = a[1]; a[1] = 0; a = nil; collectgarbage()");
  EXPECT_EQ(Text("row"), "{1, 2}");
}

TEST_F(ScriptValueTest, ArraysWorkWithTheLoopsOfTheLanguage) {
  EXPECT_EQ(Number("local s = 0; for i, x in ipairs(array{1, 2, 3}) do s = s + i * x end return s"),
            14.0);
}

TEST_F(ScriptValueTest, ArraysBecomeTables) {
  EXPECT_EQ(Number("local t = array{1, {2, 3}}:table(); return type(t[2]) == 'table' and t[2][2]"),
            3.0);
  EXPECT_EQ(Number("return #totable(MVector{1, 2, 3})"), 3.0);
  EXPECT_EQ(Text("type(totable(array(0)))"), "table");
  EXPECT_EQ(Failure("totable(5)").message, "argument 1 must be an array or a vector, got 5");
  EXPECT_EQ(Failure("TFunc():table()").message, "an object of class TFunc has no elements");
  EXPECT_EQ(Failure("array(TFunc())").number, 3);
  EXPECT_EQ(Failure("complex(1, 2):table()").message, "a complex number has no elements");
}

TEST_F(ScriptValueTest, ArraysAreMadeOfLengthsTablesAndHostValues) {
  EXPECT_EQ(Text("array(2)"), "{nil, nil}");
  EXPECT_EQ(Text("array{}"), "{}");
  EXPECT_EQ(Text("array(MVector{1, 2})"), "{1, 2}");
  EXPECT_EQ(Text("array(array{1, {2}})"), "{1, {2}}");
  EXPECT_EQ(Failure("array(-1)").message, "argument 1 must be elements or a length, got -1");
  EXPECT_EQ(Failure("array('x')").message, "argument 1 must be elements or a length, got a string");
  EXPECT_EQ(Failure("array()").number, 3);
}

TEST_F(ScriptValueTest, CopiesAreTheirOwn) {
  EXPECT_EQ(Text("(function() local a = array{1, {2}}; local b = a:copy(); b[2][1] = 9; "
                 "return tostring(a) .. tostring(b) end)()"),
            "{1, {2}}{1, {9}}");
}

// Text form ---------------------------------------------------------------------------------------

TEST_F(ScriptValueTest, ReadAsTextForPeople) {
  EXPECT_EQ(Text("array{1, 2.5, 'x', print}"), "{1, 2.5, \"x\", function}");
  EXPECT_EQ(Text("array{0.1, 1e300, 1/3}"), "{0.1, 1e+300, 0.3333333333333333}");
  EXPECT_EQ(Text("Vector{1, 2}"), "Vector{1, 2}");
  EXPECT_EQ(Text("TFunc({1}, {2})"), "TFunc(X = {1}, Y = {2})");
  EXPECT_EQ(Text("array{{{{{1}}}}}"), "{{{{{...}}}}}");
  EXPECT_EQ(Text("array{('y'):rep(100)}"), "{\"" + std::string(60, 'y') + "...\"}");
  EXPECT_EQ(Text("array(1000000)").substr(0, 10), "{nil, nil,");
  EXPECT_LT(Text("array(1000000)").size(), 100U);
}

TEST_F(ScriptValueTest, KindsHaveNames) {
  EXPECT_EQ(Text("array{}:kind()"), "array");
  EXPECT_EQ(Text("MVector(1):kind()"), "MVector");
  EXPECT_EQ(Text("complex(1):kind()"), "complex");
  EXPECT_EQ(Text("TFunc():kind()"), "TFunc");
}

// Objects -----------------------------------------------------------------------------------------

TEST_F(ScriptValueTest, MembersAreReadAndWrittenByName) {
  Run("f = TFunc({1, 2}, {3, 4})");
  EXPECT_EQ(Number("return f.Y[2]"), 4.0);
  Run("f.Y[2] = 9; f.Title = 'counts'");
  EXPECT_EQ(Text("f"), "TFunc(X = {1, 2}, Y = {3, 9}, Title = \"counts\")");
  Run("y = f.Y; f.Y = {5, 6}");
  EXPECT_EQ(Text("y"), "{3, 9}") << "what was taken out before stays what it was";
  EXPECT_EQ(Text("f.Y"), "{5, 6}");
  EXPECT_EQ(Text("f.NoSuchMember"), "nil");
  EXPECT_EQ(Text("f[1]"), "nil");
  EXPECT_EQ(Failure("f[1] = 2").number, 3);
  EXPECT_EQ(Failure("local a = array{1}; a.x = 2").message,
            "an array has no field to be set by a string");
}

TEST_F(ScriptValueTest, AssigningAnObjectToAMemberCopiesIt) {
  Run("f = TFunc({1}, {2}); f.Inner = f");
  EXPECT_EQ(Text("f"), "TFunc(X = {1}, Y = {2}, Inner = TFunc(X = {1}, Y = {2}))");
}

TEST_F(ScriptValueTest, VectorsAreIndexedLikeArrays) {
  EXPECT_EQ(Text("(function() local v = MVector(3); v[2] = 5; return v end)()"),
            "MVector{0, 5, 0}");
  EXPECT_EQ(Number("return #vector{1, 2}"), 2.0);
  EXPECT_EQ(Text("vector(2)"), "Vector{0, 0}");
}

TEST_F(ScriptValueTest, BytesAreIndexedAsNumbers) {
  ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/test_module.so"));
  Run("b = Bytes()");
  EXPECT_EQ(Text("b"), "3 bytes");
  EXPECT_EQ(Text("b:kind()"), "bytes");
  EXPECT_EQ(Number("return #b"), 3.0);
  EXPECT_EQ(Number("return b[2]"), 254.0);
  Run("b[2] = 65");
  EXPECT_EQ(Text("b:text():sub(2, 2)"), "A");
  EXPECT_EQ(Text("Echo(b):text():sub(2, 2)"), "A");
  EXPECT_EQ(Failure("b[1] = 256").message, "a byte is a whole number from 0 to 255, got 256");
  EXPECT_EQ(Failure("b[1] = 1.5").number, 3);
  EXPECT_EQ(Failure("b[4] = 1").number, 3);
  EXPECT_EQ(Failure("array{}:text()").message, "an array holds no bytes");
}

// Complex numbers ---------------------------------------------------------------------------------

TEST_F(ScriptValueTest, ComplexNumbersCalculate) {
  Run("z = complex(3, 4)");
  EXPECT_EQ(Number("return z.real"), 3.0);
  EXPECT_EQ(Number("return z.imag"), 4.0);
  EXPECT_EQ(Number("return z:abs()"), 5.0);
  EXPECT_EQ(Number("return complex(0, 1):arg()"), std::acos(0.0));
  EXPECT_EQ(Text("z:conj()"), "3-4i");
  EXPECT_EQ(Text("z + 1"), "4+4i");
  EXPECT_EQ(Text("1 - z"), "-2-4i");
  EXPECT_EQ(Text("z * complex(0, 1)"), "-4+3i");
  EXPECT_EQ(Text("z / complex(0, 2)"), "2-1.5i");
  EXPECT_EQ(Text("-z"), "-3-4i");
  EXPECT_EQ(Text("z == complex(3, 4)"), "true");
  EXPECT_EQ(Text("z == complex(3, 5)"), "false");
  EXPECT_EQ(Text("complex(2)"), "2+0i");
  EXPECT_EQ(Text("z.other"), "nil");
  EXPECT_EQ(Failure("return z + 'x'").message,
            "arithmetic needs numbers or complex numbers, got a string");
  EXPECT_EQ(Failure("return array{1} + 1").message,
            "arithmetic needs numbers or complex numbers, got an array");
  EXPECT_EQ(Failure("complex('x')").message, "argument 1 must be a number, got a string");
  EXPECT_EQ(Failure("complex(1, 'x')").message, "argument 2 must be a number, got a string");
}

TEST_F(ScriptValueTest, ArraysAreEqualWhenTheyAreTheSame) {
  EXPECT_EQ(Text("array{1} == array{1}"), "false");
  EXPECT_EQ(Text("(function() local a = array{{1}}; return a[1] == a[1] end)()"), "true");
  EXPECT_EQ(Text("array{1} == complex(1)"), "false");
}

// Misuse ------------------------------------------------------------------------------------------

TEST_F(ScriptValueTest, BoxesAreClosed) {
  EXPECT_EQ(Text("getmetatable(array{1})"), "false");
  EXPECT_EQ(Failure("setmetatable(array{1}, {})").number, 4);
  EXPECT_EQ(Failure("array{}.table(5)").message, "argument 1 must be a host value, got a number");
  EXPECT_EQ(Failure("array{}.table()").message, "argument 1 must be a host value, got nothing");
  EXPECT_EQ(Failure("array{}.table(io.stdout)").number, 3);
}

TEST_F(ScriptValueTest, ACollectedBoxIsAnEmptyValue) {
  Run(R"(
    local holder = setmetatable({value = array{1, 2}}, {__gc = function(t)
      seen = tostring(t.value) .. #t.value
    end})
    holder = nil
    collectgarbage()
    collectgarbage()
  )");
  EXPECT_NE(Text("seen"), "nil");
}

TEST_F(ScriptValueTest, DebugMetatablesDoNotHelpToForgeOne) {
  EXPECT_NE(Failure("local m = debug.getmetatable(array{1}); m.__index(5, 1)").number, 0);
  EXPECT_NE(Failure("local m = debug.getmetatable(array{1}); m.__len(io.stdout)").number, 0);
  Run("local a = array{1, 2}; local m = debug.getmetatable(a); m.__gc(a); assert(#a == 0)");
}

}  // namespace
