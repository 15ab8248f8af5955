/// @file
/// Script functions called by modules and programs.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

class CallbackTest : public HostTest {
 protected:
  void SetUp() override { ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/test_module.so")); }
};

TEST_F(CallbackTest, GiveTheirValue) {
  EXPECT_EQ(Number("return Apply(function(x) return x * 2 end, 21)"), 42.0);
  EXPECT_EQ(Text("Apply(function(x) return {x, 'y'} end, 1)"), "{1, \"y\"}");
  EXPECT_EQ(Text("Apply(function() end, 1)"), "nil");
  EXPECT_EQ(Text("Apply(function() return true end, 1)"), "1");
  EXPECT_EQ(Text("Apply(math.sqrt, 9)"), "3.0");
  EXPECT_EQ(Number("return Apply(Half, 3)"), 1.5);
}

TEST_F(CallbackTest, AreCalledByProgramsToo) {
  Variable function = Value("return function(a, b) return a - b end");
  VarRegister arguments[2];
  arguments[0] = 5;
  arguments[1] = 3;
  VarRegister result;
  EXPECT_NE(host.GetProcessor().RunFunctionAsIs(result, function, arguments, 2), 0);
  EXPECT_EQ(static_cast<int>(result), 2);
  Variable reference;
  reference = &function;
  EXPECT_NE(host.GetProcessor().RunFunctionAsIs(result, reference, arguments, 2), 0);
}

TEST_F(CallbackTest, SeeArraysAndObjectsWithoutCopy) {
  EXPECT_EQ(Text("(function() local a = array{1, 2}; Apply(function(x) x[1] = 9 end, a); "
                 "return a end)()"),
            "{9, 2}");
}

TEST_F(CallbackTest, MayKeepWhatTheyWereGiven) {
  Run("Apply(function(x) kept = x end, {1, {2, 3}}); collectgarbage()");
  EXPECT_EQ(Text("kept"), "{1, {2, 3}}");
}

TEST_F(CallbackTest, ChangeArraysPassedByReferenceInPlace) {
  EXPECT_EQ(Text("ApplyByReference(function(x, e) e[1] = x end, 5, {1, 2})"), "{5, 2}");
}

TEST_F(CallbackTest, ChangeNumbersPassedByReferenceWithFurtherValues) {
  EXPECT_EQ(Number("return ApplyByReference(function(x, e) return x, e + 1 end, 5, 41)"), 42.0);
  EXPECT_EQ(Number("return ApplyByReference(function(x, e) return x end, 5, 41)"), 41.0);
  EXPECT_EQ(Text("ApplyByReference(function(x, e) return x, 'new' end, 5, 41)"), "new");
}

// Errors in callbacks -----------------------------------------------------------------------------

TEST_F(CallbackTest, ThatFailMakeTheErrorPending) {
  Variable function = Value("return function() error('no luck') end");
  VarRegister result;
  result = 5;
  EXPECT_EQ(host.GetProcessor().RunFunctionAsIs(result, function, nullptr, 0), 0);
  EXPECT_EQ(static_cast<int>(result), 5) << "the result register is left alone";
  ASSERT_TRUE(host.HasError());
  EXPECT_EQ(host.GetProcessor().GetLastError(), 4);
  const HostError error = host.TakeError();
  EXPECT_EQ(error.message, "no luck");
  EXPECT_EQ(error.where, "text:1");
}

TEST_F(CallbackTest, ThatFailEndTheScriptThatCalledTheModule) {
  const HostError error = Failure("\nApply(function(x) error('no luck') end, 1)");
  EXPECT_EQ(error.number, 4);
  EXPECT_EQ(error.message, "no luck");
  EXPECT_EQ(error.where, "text:2");
}

TEST_F(CallbackTest, KeepTheNumberOfTheError) {
  EXPECT_EQ(Failure("Apply(function(x) RaiseError(88, 'inside') end, 1)").number, 88);
  EXPECT_EQ(Failure("Apply(function(x) error{number = 10} end, 1)").number, 10);
  const HostError error = Failure("Apply(function(x) Half('x') end, 1)");
  EXPECT_EQ(error.number, 3);
  EXPECT_EQ(error.function, "Half");
}

TEST_F(CallbackTest, ThatFailCanBeForgivenByTheModule) {
  EXPECT_EQ(Text("ApplyForgiving(function(x) error('no luck') end, 1)"), "nil");
  EXPECT_FALSE(host.HasError());
}

TEST_F(CallbackTest, ThatCatchAnErrorLeaveNothingPending) {
  EXPECT_EQ(Number("return Apply(function(x) pcall(RaiseNumber, 3); return x end, 4)"), 4.0);
  EXPECT_FALSE(host.HasError());
}

TEST_F(CallbackTest, AreNestedAsDeepAsTheInterpreterAllows) {
  Run("function down(n) if n == 0 then return 0 end return Apply(down, n - 1) + 1 end");
  EXPECT_EQ(Number("return down(20)"), 20.0);
  EXPECT_NE(Failure("down(100000)").number, 0);
  EXPECT_EQ(Number("return down(20)"), 20.0);
}

TEST_F(CallbackTest, GiveValuesThatCanBeHeld) {
  EXPECT_EQ(Failure("Apply(function() return {x = 1} end, 1)").message,
            "the value is no sequence, it has the key x");
  EXPECT_EQ(Failure("Apply(function() return coroutine.create(print) end, 1)").number, 3);
}

TEST_F(CallbackTest, OnlyFunctionsCanBeCalled) {
  const HostError error = Failure("Apply(5, 1)");
  EXPECT_EQ(error.number, 3);
  EXPECT_EQ(error.message, "cannot call a number");
  Variable empty;
  VarRegister result;
  EXPECT_EQ(host.GetProcessor().RunFunctionAsIs(result, empty, nullptr, 0), 0);
  EXPECT_EQ(host.TakeError().message, "cannot call nothing");
}

TEST_F(CallbackTest, WorkInCoroutines) {
  EXPECT_EQ(Number("local co = coroutine.wrap(function(x)\n"
                   "  local y = Apply(function(z) return z + 1 end, x)\n"
                   "  coroutine.yield(y)\n"
                   "  error('late')\n"
                   "end)\n"
                   "local first = co(1)\n"
                   "assert(not pcall(co))\n"
                   "return first"),
            2.0);
  EXPECT_EQ(Failure("coroutine.wrap(function() RaiseError(10, 'inside') end)()").number, 10);
}

TEST_F(CallbackTest, CannotBeLeftByAYield) {
  const HostError error = Failure("coroutine.wrap(function() Apply(coroutine.yield, 1) end)()");
  EXPECT_NE(error.message.find("yield"), std::string::npos) << error.message;
}

// Life of functions -------------------------------------------------------------------------------

TEST_F(CallbackTest, StayCallableWhileAValueHoldsThem) {
  Run("Keep(function(x) return x + 1 end); collectgarbage(); collectgarbage()");
  EXPECT_EQ(Number("return Apply(Kept(), 1)"), 2.0);
  Run("Forget()");
}

TEST_F(CallbackTest, AreForgottenWithTheLastValue) {
  Run(R"(
    gone = setmetatable({}, {__mode = 'k'})
    local function f() return gone end
    gone[f] = true
    Keep(f)
    Keep(array{f, f})
    Forget()
  )");
  // The array is collected first, the functions that it held after the next native call.
  Run("collectgarbage(); Half(1); collectgarbage()");
  EXPECT_EQ(Text("next(gone)"), "nil");
}

TEST(FunctionWithoutHost, CannotBeCalledAndHarmsNobody) {
  const std::int64_t before = EmbeddedHost::LiveBlockCount();
  {
    Variable function;
    {
      EmbeddedHost host;
      ASSERT_TRUE(host.Evaluate("return function() return 5 end", &function));
    }
    const Variable copy(function);
    EmbeddedHost next;
    VarRegister result;
    EXPECT_EQ(next.GetProcessor().RunFunctionAsIs(result, function, nullptr, 0), 0);
    EXPECT_EQ(next.TakeError().message, "the function belongs to an interpreter that has ended");
  }
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before);
}

}  // namespace
