#ifndef TARN_HOST_HOST_STATE_H
#define TARN_HOST_HOST_STATE_H

/// @file
/// Everything that belongs to one host, as its own sources see it.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
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

  /// Records an error as the last one raised and makes it pending. A null `message` stands for the
  /// text of the number.
  void Raise(int number, const char* message);
  /// Makes an error pending whose parts are known already.
  void Raise(HostError error);

  /// Lets the interpreter forget a function that no value holds any more; done when it runs next.
  void NoteForgotten(int registryKey);
  /// Makes a constant a global of scripts, or removes it when it exists no more.
  void PublishConstant(std::uint16_t nameId);

  /// Whether somebody asked the running script to stop. The flag is written by signal handlers and
  /// other threads.
  bool StopRequested() const;
  void SetStopRequested(bool requested);

  HostProcessor processor;
  std::uint64_t serial;  ///< tells hosts apart that follow each other in one process

  HostError lastError;
  std::int64_t raisedErrors = 0;
  const RegisteredFunction* runningFunction = nullptr;

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
  std::vector<int> forgottenKeys;
};

/// The host that exists now, hidden or not; null when there is none.
HostState* CurrentHost();

/// Runs the handler of a registered function. False when it raised an error that is still pending
/// at its end; an error that was pending before does not count and is pending again afterwards
/// where the handler raised none.
bool RunHandler(HostState& host, const RegisteredFunction& function, VarRegister& result,
                VarRegister* arguments);

}  // namespace tarn

#endif
