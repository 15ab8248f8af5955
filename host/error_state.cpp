/// @file
/// Raising errors, and handlers that end with one.

#include <new>
#include <utility>

#include "frame/error_numbers.h"
#include "host/error_table.h"
#include "host/host_state.h"

namespace tarn {

void HostState::Raise(HostError error) {
  lastError = std::move(error);
  processor.pendingError = 1;
  ++raisedErrors;
}

void HostState::Raise(int number, const char* message) try {
  HostError error;
  error.number = number;
  error.name = ErrorText(number);
  error.message = message == nullptr ? error.name : message;
  if (runningFunction != nullptr) error.function = runningFunction->signature.name;
  Raise(std::move(error));
} catch (const std::bad_alloc&) {
  // Number and pending flag are what the module relies on; they need no memory.
  HostError bare;
  bare.number = number;
  Raise(std::move(bare));
}

namespace {

/// What is pending before a handler runs is put aside, so that the handler's own errors can be told
/// from it.
class PendingErrorAside {
 public:
  explicit PendingErrorAside(HostState& host)
      : host_(host), pending_(std::exchange(host.processor.pendingError, 0)) {
    if (pending_ != 0) error_ = host.lastError;
  }
  void Restore() {
    if (pending_ == 0) return;
    host_.processor.pendingError = pending_;
    host_.lastError = std::move(error_);
  }

 private:
  HostState& host_;
  std::int32_t pending_;
  HostError error_;
};

}  // namespace

bool RunHandler(HostState& host, const RegisteredFunction& function, VarRegister& result,
                VarRegister* arguments) {
  PendingErrorAside aside(host);
  const RegisteredFunction* const caller = std::exchange(host.runningFunction, &function);
  function.handler(result, arguments);
  host.runningFunction = caller;
  if (host.processor.pendingError != 0) return false;
  aside.Restore();
  return true;
}

}  // namespace tarn

std::uint16_t Owner::GetLastError() const {
  const tarn::HostState* host = tarn::CurrentHost();
  return host == nullptr ? std::uint16_t{0} : static_cast<std::uint16_t>(host->lastError.number);
}

void TarnError(int number) { TarnError(number, nullptr); }

void TarnError(int number, const char* message) {
  if (tarn::HostState* host = tarn::CurrentHost()) host->Raise(number, message);
}

std::string HostError::ToString() const {
  std::string text;
  for (const std::string* part : {&where, &function}) {
    if (!part->empty()) text += *part + ": ";
  }
  if (!message.empty()) return text + message;
  return number == 0 ? "no error" : text + "error " + std::to_string(number);
}
