/// @file
/// Raising errors, and handlers that end with one.

#include <new>
#include <utility>

#include "frame/error_numbers.h"
#include "host/error_table.h"
#include "host/host_state.h"
#include "host/script_position.h"

namespace tarn {

void HostState::MakePending(HostError error) {
  lastError = std::move(error);
  processor.pendingError = 1;
}

HostError HostState::NewError(int number, const char* message) {
  ++raisedErrors;
  HostError error;
  // Number and pending flag are what a module relies on; they need no memory, the texts do.
  error.number = number;
  try {
    error.name = ErrorText(number);
    error.message = message == nullptr ? error.name : message;
    if (runningFunction != nullptr) error.function = runningFunction;
    if (running != nullptr) error.where = ScriptPosition(running);
  } catch (const std::bad_alloc&) {
  }
  return error;
}

void HostState::Raise(int number, const char* message) { MakePending(NewError(number, message)); }

PendingErrorAside::PendingErrorAside(HostState& host)
    : host_(host), pending_(std::exchange(host.processor.pendingError, 0)) {
  if (pending_ != 0) error_ = host.lastError;
}

PendingErrorAside::~PendingErrorAside() {
  host_.processor.pendingError = pending_;
  if (pending_ != 0) host_.lastError = std::move(error_);
}

std::optional<HostError> PendingErrorAside::Raised() const {
  if (host_.processor.pendingError == 0) return std::nullopt;
  return host_.lastError;
}

namespace {

/// Handlers let no exception out, but one of somebody else's module might.
void RunCatching(HostState& host, ScriptHandler handler, VarRegister& result,
                 VarRegister* arguments) {
  try {
    handler(result, arguments);
  } catch (const std::bad_alloc&) {
    host.Raise(kErrorMemory, nullptr);
  } catch (const std::exception& thrown) {
    host.Raise(kErrorModule, thrown.what());
  }
}

}  // namespace

std::optional<HostError> RunHandler(HostState& host, const RegisteredFunction& function,
                                    VarRegister& result, VarRegister* arguments) {
  const PendingErrorAside aside(host);
  const RunningFunction scope(host, function.signature.name.c_str());
  RunCatching(host, function.handler, result, arguments);
  return aside.Raised();
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
