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

extern "C" void HandleInterrupt(int) {
  interrupted = 1;
  if (EmbeddedHost* host = runningHost) host->RequestStop();
}

void SetHandler(void (*handler)(int), int flags) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
}

}  // namespace

InterruptScope::InterruptScope(InterruptMode mode) {
  interrupted = 0;
  SetHandler(HandleInterrupt, mode == InterruptMode::kScript ? static_cast<int>(SA_RESETHAND) : 0);
}

InterruptScope::~InterruptScope() { SetHandler(SIG_DFL, 0); }

RunningScript::RunningScript(EmbeddedHost& host) { runningHost = &host; }

RunningScript::~RunningScript() { runningHost = nullptr; }

bool IsInterrupted() { return interrupted != 0; }

bool TakeInterrupt() {
  const bool came = IsInterrupted();
  interrupted = 0;
  return came;
}

std::string TakeErrorText(EmbeddedHost& host) {
  HostError error = host.TakeError();
  if (IsInterrupted() && error.name == kCancelText) error.message = "interrupted";
  return error.ToString();
}

void DieOfInterrupt() {
  SetHandler(SIG_DFL, 0);
  std::raise(SIGINT);
  std::abort();
}

}  // namespace tarn
