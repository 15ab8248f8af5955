/// @file
/// Progress windows, methods of objects, idle work.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/host_fixture.h"

namespace {

class ProgressTest : public HostTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/test_module.so"));
    ASSERT_NE(host.GetProcessor().MakeInstance(window, "ProgressWnd", nullptr, 0), 0);
  }

  int RunMethod(const char* name, VarRegister* arguments, int count) {
    VarRegister result;
    return host.GetProcessor().RunMethod(result, name, arguments, count, &window);
  }

  Variable window;
};

TEST_F(ProgressTest, ShowsProgressAndCaption) {
  Run("w = ProgressWnd(); Progress(w, 30)");
  EXPECT_EQ(Number("return w.Progress"), 30.0);
  EXPECT_EQ(Text("w.Caption"), "Residue = 0.5");
}

TEST_F(ProgressTest, CanBeWatched) {
  std::vector<std::string> seen;
  host.SetProgressWatcher([&seen](std::int32_t progress, std::string_view caption) {
    seen.push_back(std::to_string(progress) + " " + std::string(caption));
  });
  Run("Progress(ProgressWnd(), 30)");
  EXPECT_EQ(seen, (std::vector<std::string>{"30 ", "30 Residue = 0.5"}));
}

TEST_F(ProgressTest, ConvertsArgumentsToTheDeclaredTypes) {
  VarRegister argument;
  argument = 12.75;
  EXPECT_NE(RunMethod("SetProgress", &argument, 1), 0);
  EXPECT_EQ(window("Progress").GetDoubleNumb(), 12.0);
  EXPECT_NE(RunMethod("SetCaption", &argument, 1), 0);
  EXPECT_STREQ(static_cast<char*>(window("Caption")), "12.75");
  VarRegister result;
  EXPECT_NE(host.GetProcessor().RunMethodAsIs(result, "SetProgress", &argument, 1, &window), 0);
  EXPECT_EQ(window("Progress").GetDoubleNumb(), 12.75) << "as it is";
}

TEST_F(ProgressTest, MethodsRunThroughBothFormsOfTheCall) {
  VarRegister object;
  object.PointTo(&window);
  VarRegister argument;
  argument = 5;
  Variable result;
  EXPECT_NE(host.GetProcessor().RunMethod(object, "SetProgress", &argument, 1, result), 0);
  EXPECT_EQ(window("Progress").GetInt32Numb(), 5);
  EXPECT_NE(host.GetProcessor().RunMethodAsIs(object, "CheckCancel", nullptr, 0, result), 0);
  EXPECT_EQ(result.GetInt32Numb(), 0);
  EXPECT_FALSE(host.HasError());
}

TEST_F(ProgressTest, WorksThroughAReference) {
  Variable reference;
  reference = &window;
  VarRegister argument;
  argument = 6;
  VarRegister result;
  EXPECT_NE(host.GetProcessor().RunMethod(result, "SetProgress", &argument, 1, &reference), 0);
  EXPECT_EQ(window("Progress").GetInt32Numb(), 6);
}

TEST_F(ProgressTest, RaisesTheCancelErrorOnceCancelled) {
  EXPECT_NE(RunMethod("Cancel", nullptr, 0), 0);
  EXPECT_FALSE(host.HasError());
  EXPECT_EQ(RunMethod("CheckCancel", nullptr, 0), 0);
  EXPECT_NE(host.GetProcessor().pendingError, 0);
  EXPECT_STREQ(host.GetProcessor().GetErrorName(host.GetProcessor().GetLastError()),
               "Progress window got cancel");
  EXPECT_EQ(host.TakeError().message, "Progress window got cancel");
}

TEST_F(ProgressTest, IsCancelledByTheScript) {
  const HostError error = Failure("w = ProgressWnd(); w:Cancel(); Progress(w, 1)");
  EXPECT_EQ(error.name, "Progress window got cancel");
  EXPECT_EQ(error.function, "Progress");
  EXPECT_EQ(Failure("w:CheckCancel()").name, "Progress window got cancel");
}

TEST_F(ProgressTest, IsCancelledByARequestToStop) {
  host.RequestStop();
  EXPECT_NE(host.GetProcessor().stopRequested, 0);
  EXPECT_EQ(RunMethod("CheckCancel", nullptr, 0), 0);
  EXPECT_EQ(host.TakeError().name, "Progress window got cancel");
}

TEST_F(ProgressTest, MethodsMayBeWrittenByTheScript) {
  Run(R"(
    w = ProgressWnd()
    steps = {}
    function w:SetProgress(n) steps[#steps + 1] = n; self.Progress = n end
    function w:CheckCancel() if self.Progress > 50 then error('far enough') end end
    w.SetProgress = function(self, n) steps[#steps + 1] = n; self.Progress = n end
    Progress(w, 30)
    assert(#steps == 1 and steps[1] == 30.0 and w.Progress == 30.0)
  )");
  EXPECT_EQ(Failure("Progress(w, 60)").message, "far enough");
}

TEST_F(ProgressTest, MethodsThatDoNotExistAreErrors) {
  EXPECT_EQ(RunMethod("NoSuchMethod", nullptr, 0), 0);
  EXPECT_EQ(host.TakeError().message, "class ProgressWnd has no method NoSuchMethod");
  EXPECT_EQ(RunMethod("SetProgress", nullptr, 0), 0);
  EXPECT_EQ(host.TakeError().message, "method SetProgress expected 1 argument, got 0");
  EXPECT_EQ(RunMethod(nullptr, nullptr, 0), 0);
  EXPECT_EQ(host.TakeError().number, 3);
  Variable number(5);
  VarRegister result;
  EXPECT_EQ(host.GetProcessor().RunMethodAsIs(result, "CheckCancel", nullptr, 0, &number), 0);
  EXPECT_EQ(host.TakeError().message, "a number has no methods");
  Variable* const noObject = nullptr;
  EXPECT_EQ(host.GetProcessor().RunMethodAsIs(result, "CheckCancel", nullptr, 0, noObject), 0);
  EXPECT_EQ(host.TakeError().message, "nothing has no methods");
  EXPECT_EQ(Failure("ProgressWnd():NoSuchMethod()").number, 4);
}

TEST_F(ProgressTest, IdleWorkIsDoneWhenAModuleAsks) {
  Run("Progress(ProgressWnd(), 1)");
  int calls = 0;
  host.SetIdleWork([&calls] { ++calls; });
  Run("Progress(ProgressWnd(), 1)");
  EXPECT_EQ(calls, 1);
  host.GetProcessor().FlushIdle();
  EXPECT_EQ(calls, 2);
}

}  // namespace
