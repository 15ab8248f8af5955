/// @file
/// Requests to stop a running script.

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>

#include "tests/support/host_fixture.h"

namespace {

class StopTest : public HostTest {
 protected:
  /// Runs a script that would never end, with a request to stop made from another thread.
  HostError Stopped(const std::string& text) {
    started = false;
    std::thread other([this] {
      while (!started) std::this_thread::yield();
      host.RequestStop();
    });
    host.SetOutput([this](std::string_view) { started = true; });
    const HostError error = Failure("print('started') " + text);
    other.join();
    EXPECT_EQ(error.name, "Progress window got cancel");
    return error;
  }

  std::atomic<bool> started = false;
};

TEST_F(StopTest, EndsALoopThatCallsNothing) {
  EXPECT_EQ(Stopped("\nwhile true do end").where, "text:2");
}

TEST_F(StopTest, EndsAScriptThatCatchesErrors) {
  Stopped("while true do pcall(function() while true do end end) end");
}

TEST_F(StopTest, EndsCoroutines) {
  Stopped("coroutine.wrap(function() while true do end end)()");
  Stopped("while true do coroutine.resume(coroutine.create(function() while true do end end)) end");
}

TEST_F(StopTest, EndsCallbacks) {
  ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/test_module.so"));
  Stopped("Apply(function() while true do end end, 1)");
  Stopped("while true do ApplyForgiving(function() while true do end end, 1) end");
}

TEST_F(StopTest, CannotBeSwitchedOffByTheScript) { EXPECT_EQ(Text("debug.sethook"), "nil"); }

TEST_F(StopTest, IsOverWithTheScript) {
  Stopped("while true do end");
  EXPECT_EQ(host.GetProcessor().stopRequested, 0);
  Run("for i = 1, 100000 do end");
}

TEST_F(StopTest, RequestedBeforehandEndsTheNextScript) {
  host.RequestStop();
  EXPECT_EQ(Failure("local x = 1; local y = 2; local z = 3").name, "Progress window got cancel");
  Run("x = 1");
}

// Requests to cancel
// -------------------------------------------------------------------------------

class CancelTest : public StopTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/extension_module.so"));
    host.SetOutput([this](std::string_view text) {
      output += text;
      if (text == "cancel\n") host.RequestCancel();
    });
  }
};

TEST_F(CancelTest, RaisesAnErrorThatScriptsCanCatch) {
  EXPECT_EQ(Text("(function() local ok, e = pcall(function() print('cancel')\n while true do end "
                 "end); return tostring(ok) .. ' ' .. tostring(e) .. ' ' .. e.number end)()"),
            "false text:2: Progress window got cancel 1000");
}

TEST_F(CancelTest, IsOverWithTheError) {
  Run("pcall(function() print('cancel') while true do end end) for i = 1, 1000000 do end");
  EXPECT_EQ(host.GetProcessor().stopRequested, 0);
}

TEST_F(CancelTest, EndsAScriptThatDoesNotCatchIt) {
  EXPECT_EQ(Failure("print('cancel')\nwhile true do end").ToString(),
            "text:2: Progress window got cancel");
  Run("for i = 1, 1000000 do end");
}

TEST_F(CancelTest, MayBeMadeAgain) {
  EXPECT_EQ(Number("local n = 0; for i = 1, 3 do if not pcall(function() print('cancel') "
                   "while true do end end) then n = n + 1 end end return n"),
            3.0);
}

TEST_F(CancelTest, WorksInCoroutines) {
  EXPECT_EQ(Text("select(2, coroutine.resume(coroutine.create(function() print('cancel') "
                 "while true do end end)))"),
            "text:1: Progress window got cancel");
}

TEST_F(CancelTest, IsSeenByProgressWindowsOnce) {
  EXPECT_EQ(Number("local w = ProgressWnd(); print('cancel') return CheckMany(w, 5)"), 1.0);
  EXPECT_EQ(Number("local w = ProgressWnd(); print('cancel') pcall(w.CheckCancel, w) "
                   "return w.Cancelled"),
            0.0)
      << "the window itself is not cancelled for good";
}

TEST_F(CancelTest, OfAComputationGivesItNoMoreValues) {
  const HostError error = Failure(
      "n = 0; CallMany(function() n = n + 1; if n == 3 then print('cancel') while true do end end "
      "end, 1000)");
  EXPECT_EQ(error.name, "Progress window got cancel");
  EXPECT_EQ(Number("return n"), 3.0);
  Run("CallMany(function() n = n + 1 end, 10)");
  EXPECT_EQ(Number("return n"), 13.0) << "the next computation runs";
}

// A computation may take longer than many steps of the script do.
TEST_F(CancelTest, IsSeenWhenAComputationReturns) {
  EXPECT_EQ(
      Failure("n = 0 while true do CallMany(function() print('cancel') end, 1) n = n + 1 end").name,
      "Progress window got cancel");
  EXPECT_EQ(Number("return n"), 0.0);
  Run("for i = 1, 1000000 do end");
}

TEST_F(CancelTest, OtherErrorsDoNotKeepValuesFromAComputation) {
  EXPECT_EQ(Failure("n = 0; CallMany(function() n = n + 1; error('x') end, 10)").message, "x");
  EXPECT_EQ(Number("return n"), 10.0);
}

TEST_F(CancelTest, RequestedBeforehandEndsTheNextScript) {
  host.RequestCancel();
  EXPECT_EQ(Failure("local x = 1; local y = 2; local z = 3").name, "Progress window got cancel");
  Run("x = 1");
}

TEST_F(CancelTest, IsOverWithTheOutermostCall) {
  Run("print('cancel')");
  Run("for i = 1, 1000000 do end");
}

TEST_F(CancelTest, MayBeFollowedByARequestToStop) {
  std::thread other([this] {
    while (!started) std::this_thread::yield();
    host.RequestStop();
  });
  host.SetOutput([this](std::string_view text) {
    if (text == "cancel\n") host.RequestCancel();
    if (text == "caught\n") started = true;
  });
  EXPECT_EQ(Failure("while true do pcall(function() print('cancel') while true do end end) "
                    "print('caught') end")
                .name,
            "Progress window got cancel");
  other.join();
}

EmbeddedHost* hostOfSignal = nullptr;

TEST_F(StopTest, MayComeFromASignalHandler) {
  hostOfSignal = &host;
  struct sigaction action = {};
  action.sa_handler = [](int) { hostOfSignal->RequestStop(); };
  ASSERT_EQ(sigaction(SIGALRM, &action, nullptr), 0);
  ualarm(20000, 0);
  EXPECT_EQ(Failure("while true do end").name, "Progress window got cancel");
  action.sa_handler = [](int) { hostOfSignal->RequestCancel(); };
  ASSERT_EQ(sigaction(SIGALRM, &action, nullptr), 0);
  ualarm(20000, 0);
  EXPECT_EQ(Text("pcall(function() while true do end end)"), "false");
}

}  // namespace
