#include "app/interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace tarn {
namespace {

/// What the host calls the error of a script that was asked to stop.
constexpr char kCancelText[] = "Progress window got cancel";

std::atomic<EmbeddedHost*> runningHost = nullptr;  // lock-free, as handlers need it
volatile std::sig_atomic_t interrupted = 0;
volatile std::sig_atomic_t signalsInRun = 0;  // while the present script runs
volatile std::sig_atomic_t maySignalsKill = 0;

void SetHandler(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
}

extern "C" void HandleInterrupt(int) {
  interrupted = 1;
  EmbeddedHost* host = runningHost;
  if (host == nullptr) return;
  if (signalsInRun == 0) {
    signalsInRun = 1;
    host->RequestCancel();
    return;
  }
  host->RequestStop();
  if (maySignalsKill != 0) SetHandler(SIG_DFL);
}

}  // namespace

InterruptScope::InterruptScope(InterruptMode mode) {
  interrupted = 0;
  maySignalsKill = mode == InterruptMode::kScript ? 1 : 0;
  SetHandler(HandleInterrupt);
}

InterruptScope::~InterruptScope() { SetHandler(SIG_DFL); }

RunningScript::RunningScript(EmbeddedHost& host) {
  signalsInRun = 0;
  runningHost = &host;
}

RunningScript::~RunningScript() { runningHost = nullptr; }

bool IsInterrupted() { return interrupted != 0; }

bool TakeInterrupt() {
  const bool came = IsInterrupted();
  interrupted = 0;
  return came;
}

bool IsEndedByInterrupt(const EmbeddedHost& host) {
  return IsInterrupted() && host.HasError() && host.LastError().name == kCancelText;
}

std::string TakeErrorText(EmbeddedHost& host) {
  const bool byInterrupt = IsEndedByInterrupt(host);
  HostError error = host.TakeError();
  if (byInterrupt) error.message = "interrupted";
  return error.ToString();
}

void DieOfInterrupt() {
  SetHandler(SIG_DFL);
  std::raise(SIGINT);
  std::abort();
}

}  // namespace tarn
