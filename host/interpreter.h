#ifndef TARN_HOST_INTERPRETER_H
#define TARN_HOST_INTERPRETER_H

/// @file
/// The interpreter of a host: its life, and running chunks in it.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/host_state.h"

namespace tarn {

/// Starts the interpreter with all libraries. Throws `std::runtime_error` when it cannot be had.
void OpenInterpreter(HostState& host);
/// Ends it; every value that only scripts held is freed.
void CloseInterpreter(HostState& host);

/// Lets the script see a request to stop or to cancel, where there is one, at its next step.
void CheckRequests(lua_State* lua);

/// A call from the embedding program: the outermost one takes back requests to stop and to
/// cancel at its end.
class ProgramCall {
 public:
  explicit ProgramCall(HostState& host);
  ~ProgramCall();
  ProgramCall(const ProgramCall&) = delete;
  ProgramCall& operator=(const ProgramCall&) = delete;

 private:
  HostState& host_;
};

/// Compiles and runs text; stores the chunk's first value in `*value` unless that is null.
std::optional<HostError> RunText(HostState& host, std::string_view text, const std::string& name,
                                 Variable* value);
/// Runs a file with arguments.
std::optional<HostError> RunScriptFile(HostState& host, const std::string& path,
                                       std::span<const std::string> arguments);
/// Whether text stops compiling only because it ends.
bool IsIncompleteText(HostState& host, std::string_view text);

/// Makes a registered function a global, a registered method one of its class.
std::optional<HostError> PublishFunction(HostState& host, const RegisteredFunction& function);

/// Names that a script can write after `prefix`.
std::vector<std::string> CompleteName(HostState& host, const std::string& prefix);

}  // namespace tarn

#endif
