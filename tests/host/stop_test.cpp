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

EmbeddedHost* hostOfSignal = nullptr;

TEST_F(StopTest, MayComeFromASignalHandler) {
  hostOfSignal = &host;
  struct sigaction action = {};
  action.sa_handler = [](int) { hostOfSignal->RequestStop(); };
  ASSERT_EQ(sigaction(SIGALRM, &action, nullptr), 0);
  ualarm(20000, 0);
  EXPECT_EQ(Failure("while true do end").name, "Progress window got cancel");
}

}  // namespace
