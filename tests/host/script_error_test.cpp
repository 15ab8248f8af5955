/// @file
/// Errors as scripts and programs see them.

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

class ScriptErrorTest : public HostTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
    ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/test_module.so"));
  }

  std::string WriteScript(const std::string& text) {
    const std::string path = TemporaryPath("script.lua");
    std::ofstream(path) << text;
    return path;
  }
};

TEST_F(ScriptErrorTest, RaisedByAModuleHasAllItsParts) {
  const HostError error = Failure("\n\nRaiseError(10, 'the matrix is singular')");
  EXPECT_EQ(error.number, 10);
  EXPECT_EQ(error.name, "Division by zero or singular system.");
  EXPECT_EQ(error.message, "the matrix is singular");
  EXPECT_EQ(error.function, "RaiseError");
  EXPECT_EQ(error.where, "text:3");
  EXPECT_EQ(error.ToString(), "text:3: RaiseError: the matrix is singular");
}

TEST_F(ScriptErrorTest, WithoutMessageSaysItsName) {
  const HostError error = Failure("RaiseNumber(3)");
  EXPECT_EQ(error.message, "Bad argument.");
  EXPECT_EQ(error.ToString(), "text:1: RaiseNumber: Bad argument.");
}

TEST_F(ScriptErrorTest, KeepsAnyNumberAndMessage) {
  for (const int number : {70000, -5, 2147483647}) {
    const HostError error = Failure("RaiseNumber(" + std::to_string(number) + ")");
    EXPECT_EQ(error.number, number);
    EXPECT_EQ(error.function, "RaiseNumber");
    EXPECT_EQ(error.where, "text:1");
  }
  EXPECT_EQ(Failure("RaiseError(3, '')").message, "");
  EXPECT_EQ(Failure("Apply(function() RaiseNumber(70000) end, 1)").number, 70000);
}

TEST_F(ScriptErrorTest, CanBeCaughtByTheScript) {
  Run(R"(
    ok, e = pcall(RaiseError, 10, 'singular')
    assert(not ok)
    assert(e.number == 10)
    assert(e.name == 'Division by zero or singular system.')
    assert(e.message == 'singular')
    assert(e['function'] == 'RaiseError')
    function blame() RaiseError(3, 'bad') end
    ok, e = pcall(blame)
    assert(e.where == 'text:8', e.where)
    assert(tostring(e) == 'text:8: RaiseError: bad', tostring(e))
  )");
  EXPECT_FALSE(host.HasError());
}

TEST_F(ScriptErrorTest, OfAnArgumentHasNumberThree) {
  EXPECT_EQ(Number("local ok, e = pcall(Half, 'x'); return e.number"), 3.0);
  EXPECT_EQ(Number("local ok, e = pcall(Half); return e.number"), 3.0);
}

TEST_F(ScriptErrorTest, RaisedAgainByTheScriptIsTheSame) {
  const HostError error = Failure("local ok, e = pcall(RaiseError, 88, 'weights')\n\n\nerror(e)");
  EXPECT_EQ(error.number, 88);
  EXPECT_EQ(error.message, "weights");
  EXPECT_EQ(host.RaisedErrorCount(), 1);
}

TEST_F(ScriptErrorTest, MadeByTheScriptKeepsItsNumber) {
  const HostError error = Failure("error{number = 10, message = 'my own'}");
  EXPECT_EQ(error.number, 10);
  EXPECT_EQ(error.name, "Division by zero or singular system.");
  EXPECT_EQ(error.message, "my own");
  EXPECT_EQ(Failure("error{number = 10}").message, "Division by zero or singular system.");
  EXPECT_EQ(Failure("\n\nerror{number = 10}").where, "text:3");
}

TEST_F(ScriptErrorTest, OfTheScriptItselfHasNumberAndPlace) {
  HostError error = Failure("\nerror('out of paper')");
  EXPECT_EQ(error.number, 4);
  EXPECT_EQ(error.name, "Script error.");
  EXPECT_EQ(error.message, "out of paper");
  EXPECT_EQ(error.where, "text:2");
  EXPECT_EQ(error.function, "");
  error = Failure("\n\nlocal x = nil + 1");
  EXPECT_EQ(error.where, "text:3");
  EXPECT_EQ(error.message, "attempt to perform arithmetic on a nil value");
  error = Failure("error('ratio 3:4: bad', 0)");
  EXPECT_EQ(error.message, "ratio 3:4: bad");
  EXPECT_EQ(error.where, "text:1");
  error = Failure("local function f() error('yours', 2) end\nf()");
  EXPECT_EQ(error.message, "yours");
  EXPECT_EQ(error.where, "text:2");
}

TEST_F(ScriptErrorTest, OfOddValues) {
  EXPECT_EQ(Failure("error()").message, "nil");
  EXPECT_EQ(Failure("error(nil)").message, "nil");
  EXPECT_EQ(Failure("error(true)").message, "true");
  EXPECT_EQ(Failure("error{number = 'x'}").number, 4);
  EXPECT_EQ(Failure("error{number = -5}").number, 4);
  EXPECT_NE(Failure("error(setmetatable({}, {__tostring = function() error('again') end}))").number,
            0);
  EXPECT_EQ(Failure("error(complex(1, 2))").message, "1+2i");
}

TEST_F(ScriptErrorTest, OfSyntaxHasItsPlace) {
  const HostError error = Failure("x = 1\ny = = 2");
  EXPECT_EQ(error.number, 4);
  EXPECT_EQ(error.where, "text:2");
  EXPECT_EQ(error.message, "unexpected symbol near '='");
  Variable value;
  EXPECT_FALSE(host.Evaluate("x = ", &value, "line 7"));
  EXPECT_EQ(host.TakeError().where, "line 7:1");
}

TEST_F(ScriptErrorTest, InAFileNamesFileAndLine) {
  const std::string path = WriteScript("x = 1\nLnGamma(nil)\n");
  EXPECT_FALSE(host.RunFile(path));
  EXPECT_EQ(host.TakeError().ToString(), path + ":2: LnGamma: argument 1 must be a value, got nil");
  WriteScript("\n\nx = = 1");
  EXPECT_FALSE(host.RunFile(path));
  EXPECT_EQ(host.TakeError().ToString(), path + ":3: unexpected symbol near '='");
}

TEST_F(ScriptErrorTest, InAFileWithALongPathNamesAllOfIt) {
  const std::string path = TemporaryPath(std::string(100, 'x') + ".lua");
  std::ofstream(path) << "\nerror('here')";
  EXPECT_FALSE(host.RunFile(path));
  const HostError error = host.TakeError();
  EXPECT_EQ(error.where, path + ":2");
  EXPECT_EQ(error.message, "here");
}

TEST_F(ScriptErrorTest, OfAFileThatCannotBeRead) {
  EXPECT_FALSE(host.RunFile("/no/such/file.lua"));
  const HostError error = host.TakeError();
  EXPECT_EQ(error.number, 6);
  EXPECT_NE(error.message.find("/no/such/file.lua"), std::string::npos) << error.message;
  EXPECT_FALSE(host.RunFile(::testing::TempDir()));
  EXPECT_EQ(host.TakeError().number, 6);
}

TEST_F(ScriptErrorTest, PrecompiledChunksAreNotRun) {
  EXPECT_FALSE(host.Evaluate("\x1bLua nonsense"));
  EXPECT_EQ(host.TakeError().number, 4);
}

TEST_F(ScriptErrorTest, ExceptionsOfAModuleBecomeErrors) {
  const HostError error = Failure("Throw()");
  EXPECT_EQ(error.message, "thrown by a module");
  EXPECT_EQ(error.function, "Throw");
  EXPECT_FALSE(host.Call("Throw", {}, nullptr));
  EXPECT_EQ(host.TakeError().message, "thrown by a module");
}

TEST_F(ScriptErrorTest, EndlessRecursionIsAnError) {
  EXPECT_NE(Failure("local function f() return 1 + f() end f()").message.find("stack overflow"),
            std::string::npos);
  EXPECT_NE(Failure("local function f(s) return (s:gsub('.', f)) end f('x')").number, 0);
  // Through a module and back, over and over.
  EXPECT_NE(Failure("function g(x) return Apply(g, x) end g(1)").number, 0);
  Run("assert(Half(3) == 1.5)");
}

TEST_F(ScriptErrorTest, EndlessMemoryIsAnError) {
  EXPECT_NE(Failure("local s = ('x'):rep(1 << 60)").number, 0);
  EXPECT_EQ(Failure("array(1 << 50)").number, 1);
  Run("assert(Half(3) == 1.5)");
}

TEST_F(ScriptErrorTest, ElementsThatFailInAnArrayRaiseOneErrorForTheScript) {
  const HostError error = Failure("Beta_I(1, 2, 3)");
  EXPECT_EQ(error.number, 3);
  EXPECT_EQ(error.function, "Beta_I");
  Run("ok, e = pcall(BesselJ0, 'text'); assert(e.number == 3 and e['function'] == 'BesselJ0')");
}

TEST_F(ScriptErrorTest, APendingErrorSurvivesAScriptThatSucceeds) {
  TarnError(10, "older");
  EXPECT_TRUE(host.Evaluate("pcall(RaiseNumber, 3); x = Half(1)"));
  EXPECT_EQ(host.TakeError().message, "older");
}

}  // namespace
