/// @file
/// What a prompt needs: completion of names, detection of unfinished text, output.

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "tests/support/host_fixture.h"

namespace {

using PromptTest = HostTest;
using Names = std::vector<std::string>;

TEST_F(PromptTest, CompletesGlobalNames) {
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
  EXPECT_EQ(host.Complete("BesselY"), (Names{"BesselY0", "BesselY1", "BesselYn", "BesselYpn"}));
  EXPECT_EQ(host.Complete("NoSuch"), Names{});
  EXPECT_GT(host.Complete("").size(), 41U);
  EXPECT_EQ(host.Complete("ERR_SOL"), Names{"ERR_SOLUTION_NOT_FOUND"});
}

TEST_F(PromptTest, CompletesFieldsOfTables) {
  EXPECT_EQ(host.Complete("math.max"), (Names{"math.max", "math.maxinteger"}));
  Run("a = {b = {charlie = 1, coda = 2}}");
  EXPECT_EQ(host.Complete("a.b.c"), (Names{"a.b.charlie", "a.b.coda"}));
  EXPECT_EQ(host.Complete("a.x.c"), Names{});
  EXPECT_EQ(host.Complete("nothing.x"), Names{});
}

TEST_F(PromptTest, CompletesMembersAndMethodsOfObjects) {
  Run("w = ProgressWnd()");
  EXPECT_EQ(host.Complete("w:Set"), (Names{"w:SetCaption", "w:SetProgress"}));
  EXPECT_EQ(host.Complete("w.C"), (Names{"w.Cancel", "w.Cancelled", "w.Caption", "w.CheckCancel"}));
}

TEST_F(PromptTest, KnowsTextThatMoreLinesCouldComplete) {
  for (const char* text : {"for i = 1, 3 do", "function f(", "x = ", "if a then b()", "t = {1,",
                           "s = [[long", "return"}) {
    const bool incomplete = std::string(text) != "return";
    EXPECT_EQ(host.IsIncomplete(text), incomplete) << text;
  }
  for (const char* text : {"", "x = 1", "x = = 1", "end", "for for", "s = 'open"}) {
    EXPECT_FALSE(host.IsIncomplete(text)) << text;
  }
  EXPECT_FALSE(host.HasError());
}

TEST_F(PromptTest, PrintsToTheHostsOutput) {
  Run("print(1, 'two', nil, 3.5, array{1}); print()");
  EXPECT_EQ(output, "1\ttwo\tnil\t3.5\t{1}\n\n");
  output.clear();
  host.GetProcessor().PrintText("Residue = 1\r\n");
  host.GetProcessor().PrintText(nullptr);
  EXPECT_EQ(output, "Residue = 1\r\n");
}

TEST_F(PromptTest, PrintsToStandardOutputWithoutASink) {
  host.SetOutput({});
  ::testing::internal::CaptureStdout();
  Run("print('hello')");
  host.GetProcessor().PrintText("there");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "hello\nthere");
}

TEST_F(PromptTest, RunsFilesWithArguments) {
  const std::string path = TemporaryPath("script.lua");
  std::ofstream(path) << "#!/usr/bin/env tarn\nprint(select('#', ...), ..., arg[0], arg[2])\n";
  const std::vector<std::string> arguments = {"one", "two"};
  ASSERT_TRUE(host.RunFile(path, arguments)) << host.TakeError().ToString();
  EXPECT_EQ(output, "2\tone\t" + path + "\ttwo\n");
}

}  // namespace
