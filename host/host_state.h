#ifndef TARN_HOST_HOST_STATE_H
#define TARN_HOST_HOST_STATE_H

/// @file
/// Everything that belongs to one host, as its own sources see it.

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/host.h"
#include "host/embedded_host.h"
#include "host/function_table.h"
#include "host/module_loader.h"
#include "host/uniform_source.h"

struct lua_State;

namespace tarn {

struct HostState;

/// The interpreter that modules see.
class HostProcessor final : public Processor {
 public:
  explicit HostProcessor(HostState& host) : host_(host) {}
  void PrintText(const char* text) override;

 private:
  HostState& host_;
};

/// Seed of the built-in uniform source until somebody sets another: runs can be repeated.
inline constexpr std::uint64_t kDefaultSeed = 20240229;

struct HostState {
  HostState();
  ~HostState();
  HostState(const HostState&) = delete;
  HostState& operator=(const HostState&) = delete;

  /// Text output.
  void Write(std::string_view text);

  /// The next uniform deviate in [0, 1), counted.
  double DrawUniform();

  /// Raises an error: counts it, records it as the last one and makes it pending. A null `message`
  /// stands for the text of the number.
  void Raise(int number, const char* message);
  /// An error raised by whatever runs now, its parts filled in and counted, not yet pending.
  HostError NewError(int number, const char* message);
  /// Records an error that was raised already as the last one and makes it pending.
  void MakePending(HostError error);

  /// Lets the interpreter forget a function that no value holds any more. Done when a script calls
  /// a native function next, because values are freed where the interpreter cannot be used.
  void NoteForgotten(int registryKey);
  /// Makes a constant a global of scripts, or removes it when it exists no more.
  void PublishConstant(std::uint16_t nameId);

  /// Whether somebody asked the running script to stop. The flag is written by signal handlers and
  /// other threads.
  bool StopRequested() const;
  void SetStopRequested(bool requested);
  /// Asks for one cancel error, or takes the request back.
  void SetCancelRequested(bool requested) { cancelRequested_.store(requested); }
  bool CancelRequested() const { return cancelRequested_.load(); }
  /// Whether a cancel error was asked for; the request is over then.
  bool TakeCancelRequest() { return CancelRequested() && cancelRequested_.exchange(false); }

  HostProcessor processor;
  std::uint64_t serial;  ///< tells hosts apart that follow each other in one process

  HostError lastError;
  std::int64_t raisedErrors = 0;
  const char* runningFunction = nullptr;  ///< name of the native function that runs; null: none

  FunctionTable functions;
  std::vector<LoadedModule> modules;
  std::uint16_t moduleErrorOffset = 65535;

  bool ownerHidden = false;
  bool refuseConstants = false;

  UniformSource builtinSource{kDefaultSeed};
  std::function<double()> uniformSource;
  std::int64_t draws = 0;

  std::function<void(std::string_view)> output;
  std::function<void(std::int32_t progress, std::string_view caption)> progressWatcher;
  std::function<void()> idleWork;

  lua_State* interpreter = nullptr;  ///< the main thread of the interpreter
  lua_State* running = nullptr;      ///< the thread of the script that called into C++; null: none
  int runDepth = 0;                  ///< calls from the embedding program that are under way
  bool closing = false;              ///< the interpreter runs its last finalisers
  std::vector<int> forgottenKeys;    ///< registry keys of functions that no value holds any more

 private:
  std::atomic<bool> cancelRequested_ = false;  ///< written by signal handlers and other threads
};

/// The host that exists now, hidden or not; null when there is none.
HostState* CurrentHost();

/// Says which native function runs, for the errors that it raises.
class RunningFunction {
 public:
  RunningFunction(HostState& host, const char* name)
      : host_(host), caller_(std::exchange(host.runningFunction, name)) {}
  ~RunningFunction() { host_.runningFunction = caller_; }
  RunningFunction(const RunningFunction&) = delete;
  RunningFunction& operator=(const RunningFunction&) = delete;

 private:
  HostState& host_;
  const char* caller_;
};

/// Puts what is pending aside while something else runs, so that its errors can be told apart, and
/// makes it pending again at the end.
class PendingErrorAside {
 public:
  explicit PendingErrorAside(HostState& host);
  ~PendingErrorAside();
  PendingErrorAside(const PendingErrorAside&) = delete;
  PendingErrorAside& operator=(const PendingErrorAside&) = delete;

  /// The error that was raised meanwhile and is still pending; nothing where there is none.
  std::optional<HostError> Raised() const;

 private:
  HostState& host_;
  std::int32_t pending_;
  HostError error_;
};

/// Runs the handler of a registered function. Returns the error that is pending at its end; what
/// was pending before is pending again afterwards.
std::optional<HostError> RunHandler(HostState& host, const RegisteredFunction& function,
                                    VarRegister& result, VarRegister* arguments);

}  // namespace tarn

#endif
