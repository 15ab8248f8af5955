/// @file
/// Texts, functions, options and optional arguments of registered functions.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/host_fixture.h"

namespace {

class ParameterKindTest : public HostTest {
 protected:
  void SetUp() override { ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/extension_module.so")); }

  std::string Options(const std::string& table) { return Text("DescribeOptions(" + table + ")"); }

  std::string Refusal(const std::string& call) {
    const HostError error = Failure(call);
    EXPECT_EQ(error.number, 3) << call;
    return error.message;
  }
};

TEST_F(ParameterKindTest, TextTakesStringsOnly) {
  EXPECT_EQ(Text("Join('a', 'b')"), "a|b");
  EXPECT_EQ(Refusal("Join(5)"), "argument 1 must be a text, got 5");
  EXPECT_EQ(Refusal("Join('a', {})"), "argument 2 must be a text, got a table");
  EXPECT_EQ(Refusal("Join(array{1})"), "argument 1 must be a text, got an array");
  EXPECT_EQ(Refusal("Join(nil)"), "argument 1 must be a text, got nil");
}

TEST_F(ParameterKindTest, FunctionTakesScriptFunctionsOnly) {
  EXPECT_EQ(Number("return CallWith(function(x) return x + 1 end, 41)"), 42.0);
  EXPECT_EQ(Number("return CallWith(math.sqrt, 9)"), 3.0);
  EXPECT_EQ(Refusal("CallWith('print', 1)"), "argument 1 must be a function, got a string");
  EXPECT_EQ(Refusal("CallWith(nil, 1)"), "argument 1 must be a function, got nil");
}

TEST_F(ParameterKindTest, OptionalArgumentsMayBeMissingOrNil) {
  EXPECT_EQ(Number("return CountGiven()"), 0.0);
  EXPECT_EQ(Number("return CountGiven(nil, nil, nil)"), 0.0);
  EXPECT_EQ(Number("return CountGiven(nil, 2)"), 1.0);
  EXPECT_EQ(Number("return CountGiven(1, 2, {x = 3})"), 3.0);
  EXPECT_EQ(Text("Join('a')"), "a|nothing");
  EXPECT_EQ(Text("Describe()"), "nothing");
}

TEST_F(ParameterKindTest, OptionalArgumentsAreCheckedWhereTheyAreGiven) {
  EXPECT_EQ(Refusal("CountGiven(1, 'x')"), "argument 2 must be a number, got a string");
  EXPECT_EQ(Refusal("CountGiven(true)"), "argument 1 must be a value, got a boolean");
  EXPECT_EQ(Refusal("CountGiven(1, 2, {}, 4)"), "expected 0 to 3 arguments, got 4");
  EXPECT_EQ(Refusal("Join()"), "expected 1 to 2 arguments, got 0");
}

TEST_F(ParameterKindTest, ProgramsMayLeaveOptionalArgumentsOut) {
  Variable result;
  ASSERT_TRUE(host.Call("CountGiven", {}, &result)) << host.TakeError().ToString();
  EXPECT_EQ(result.GetInt32Numb(), 0);
  Variable arguments[2];
  arguments[1] = 5.0;
  ASSERT_TRUE(host.Call("CountGiven", arguments, &result)) << host.TakeError().ToString();
  EXPECT_EQ(result.GetInt32Numb(), 1);
  arguments[1] = Value("return 'x'");
  EXPECT_FALSE(host.Call("CountGiven", arguments, &result));
  EXPECT_EQ(host.TakeError().message, "argument 2 must be a number, got a text");
  Variable text = Value("return 'a'");
  ASSERT_TRUE(host.Call("Join", {&text, 1}, &result)) << host.TakeError().ToString();
  EXPECT_STREQ(result, "a|nothing");
  Variable number(3);
  EXPECT_FALSE(host.Call("DescribeOptions", {&number, 1}, nullptr));
  EXPECT_EQ(host.TakeError().message, "argument 1 must be a table, got 3");
  EXPECT_FALSE(host.Call("CallWith", arguments, nullptr));
  EXPECT_EQ(host.TakeError().message, "argument 1 must be a function, got nothing");
}

// Options -----------------------------------------------------------------------------------------

TEST_F(ParameterKindTest, NamedValuesBecomeMembersInTheOrderOfTheirNames) {
  EXPECT_EQ(Options("{start = {1, 2}, f = print, accuracy = 1e-6, method = 'BFGS', Name = 1}"),
            "Options(Name = number, accuracy = number, f = function, method = text, "
            "start = array[number, number])");
}

TEST_F(ParameterKindTest, BooleansInOptionsAreOneAndZero) {
  EXPECT_EQ(Number("return CallWith(function(o) return o.a * 10 + o.b end, "
                   "(function() local o = Options(); o.a = true; o.b = false; return o end)())"),
            10.0);
  EXPECT_EQ(Options("{silent = true, fixed = {true, false}}"),
            "Options(fixed = array[number, number], silent = number)");
}

TEST_F(ParameterKindTest, TablesWithNamesMayBeNested) {
  EXPECT_EQ(Options("{series = {{x = {1}, label = 'a'}, {x = {2}}}, axis = {log = true}}"),
            "Options(axis = Options(log = number), series = array[Options(label = text, x = "
            "array[number]), Options(x = array[number])])");
}

TEST_F(ParameterKindTest, ATableOfElementsAloneIsAnArray) {
  EXPECT_EQ(Options("{1, 2.5}"), "array[number, number]");
  EXPECT_EQ(Options("{{1, 2}, {3, 4}}"), "array[array[number, number], array[number, number]]");
  EXPECT_EQ(Options("{values = {}}"), "Options(values = array)");
}

TEST_F(ParameterKindTest, AnEmptyTableIsOptionsWithoutMembers) {
  EXPECT_EQ(Options("{}"), "Options");
}

TEST_F(ParameterKindTest, ElementsBesideNamesAreTheElementsOfTheObject) {
  EXPECT_EQ(Options("{7, 'x', method = 'BFGS'}"), "Options(method = text)[number, text]");
}

TEST_F(ParameterKindTest, HostValuesMayStandForTheTable) {
  EXPECT_EQ(Options("array{1, 2}"), "array[number, number]");
  EXPECT_EQ(Options("MVector{1, 2}"), "MVector[number, number]");
  EXPECT_EQ(Options("MakeRecord()"), "Record(point = array[number, number], evaluations = number)");
  EXPECT_EQ(Options("(function() local o = Options(); o.x = 1; return o end)()"),
            "Options(x = number)");
}

TEST_F(ParameterKindTest, OptionsTakeNothingElse) {
  EXPECT_EQ(Refusal("DescribeOptions(5)"), "argument 1 must be a table, got 5");
  EXPECT_EQ(Refusal("DescribeOptions('x')"), "argument 1 must be a table, got a string");
  EXPECT_EQ(Refusal("DescribeOptions(nil)"), "argument 1 must be a table, got nil");
  EXPECT_EQ(Refusal("DescribeOptions(print)"), "argument 1 must be a table, got a function");
  EXPECT_EQ(Refusal("DescribeOptions(complex(1, 2))"),
            "argument 1 must be a table, got a complex number");
  EXPECT_EQ(Refusal("DescribeOptions(TFunc())"),
            "argument 1 must be a table, got an object of class TFunc");
}

TEST_F(ParameterKindTest, WhatNoHostValueCanBeMadeOfIsNamedByItsPlace) {
  EXPECT_EQ(Refusal("DescribeOptions{bounds = {{0, 1}, {0, coroutine.create(print)}}}"),
            "argument 1, element bounds[2][2], is a coroutine, of which no host value can be made");
  EXPECT_EQ(Refusal("DescribeOptions{axis = {log = io.stdout}}"),
            "argument 1, element axis.log, is a foreign userdata");
  EXPECT_EQ(Refusal("DescribeOptions{values = {1, nil, 3}}").substr(0, 46),
            "argument 1, element values, is no sequence, el");
  EXPECT_EQ(Refusal("DescribeOptions{[1.5] = 2}"), "argument 1 is no sequence, it has the key 1.5");
  EXPECT_EQ(Refusal("DescribeOptions{[true] = 2, x = 1}"),
            "argument 1 is no sequence, it has the key true");
}

TEST_F(ParameterKindTest, OptionsThatContainThemselvesAreRefused) {
  EXPECT_EQ(Refusal("local t = {}; t.t = t; DescribeOptions(t)").substr(0, 21),
            "argument 1, element t");
}

TEST_F(ParameterKindTest, HostValuesInOptionsAreSeenNotCopied) {
  EXPECT_EQ(Text("(function() local v = array{1, 2}; SetFirst{values = v}; return v end)()"),
            "{42, 2}");
  EXPECT_EQ(Text("(function() local v = {1, 2}; SetFirst{values = v}; return v[1] end)()"), "1")
      << "a table is copied";
}

TEST_F(ParameterKindTest, OtherKindsStillWantSequencesWithoutBooleans) {
  EXPECT_EQ(Refusal("Describe{x = 1}"), "argument 1 is no sequence, it has the key x");
  EXPECT_EQ(Refusal("Describe{true}"),
            "argument 1, element [1], is a boolean, of which no host value can be made");
}

TEST_F(ParameterKindTest, RefusedMemoryIsAnErrorAndLeavesNothingBehind) {
  const std::string script =
      "DescribeOptions{start = {1, 2}, 3, f = print, axis = {label = 'x', log = true}}";
  Run(script);
  Run("collectgarbage()");
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  int failures = 0;
  bool finished = false;
  for (std::int64_t refused = 1; refused < 60 && !finished; ++refused) {
    host.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
    finished = host.Evaluate(script) && host.HeapRequestCount() < refused;
    host.SetHeapFailure({});
    if (host.HasError()) {
      EXPECT_EQ(host.TakeError().number, 1);
      ++failures;
    }
    Run("collectgarbage()");
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks) << "request " << refused;
  }
  EXPECT_TRUE(finished);
  EXPECT_GT(failures, 5);
}

TEST_F(ParameterKindTest, MillionsOfElementsAreFine) {
  EXPECT_EQ(Text("(function() local t = {}; for i = 1, 1000000 do t[i] = i end; "
                 "return #DescribeOptions{values = t} end)()"),
            std::to_string(std::string("Options(values = array[])").size() + 8 * 1000000 - 2));
}

}  // namespace
