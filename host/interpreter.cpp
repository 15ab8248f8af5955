#include "host/interpreter.h"

#include <stdexcept>

#include "frame/error_numbers.h"
#include "host/constants.h"
#include "host/error_table.h"
#include "host/lua_library.h"
#include "host/lua_methods.h"
#include "host/lua_trampoline.h"
#include "host/lua_values.h"
#include "host/names.h"
#include "host/script_position.h"

namespace tarn {
namespace {

/// How many steps of a script may pass until it sees a request to stop.
constexpr int kStepsBetweenStopChecks = 1000;

/// Ends the script when it was asked to stop. From then on every step is checked, so that a script
/// that catches the error is stopped again outside of what catches it. A request to cancel raises
/// the same error once.
void CheckStop(lua_State* lua, lua_Debug* /*event*/) {
  HostState& host = HostOf(lua);
  const bool cancelled = host.TakeCancelRequest();
  const bool stopped = host.StopRequested();
  const int steps = stopped ? 1 : kStepsBetweenStopChecks;
  if (lua_gethookcount(lua) != steps) lua_sethook(lua, CheckStop, LUA_MASKCOUNT, steps);
  if (!cancelled && !stopped) return;
  HostError error = host.NewError(kErrorCancel, nullptr);
  error.where = ScriptPosition(lua);
  PushErrorValue(lua, error);
  lua_error(lua);
}

void PublishConstantIn(lua_State* lua, const std::string& name, const Tree* constant) {
  if (constant == nullptr) {
    lua_pushnil(lua);
  } else {
    lua_pushinteger(lua, constant->GetInt32());
  }
  lua_setglobal(lua, name.c_str());
}

void OpenEverything(lua_State* lua) {
  luaL_openlibs(lua);
  OpenErrorValues(lua);
  OpenBoxes(lua);
  OpenLibrary(lua);
  ForEachConstant([lua](std::uint16_t nameId, std::int32_t /*value*/) {
    PublishConstantIn(lua, NameOf(nameId), FindConstant(nameId));
  });
}

/// The error of a chunk that could not be loaded, whose message is at the top of the stack.
[[noreturn]] void FailToLoad(lua_State* lua, int status) {
  if (status == LUA_ERRMEM) throw std::bad_alloc();
  const std::string message = luaL_tolstring(lua, -1, nullptr);
  HostState& host = HostOf(lua);
  if (status == LUA_ERRFILE) throw RaisedError(host.NewError(kErrorFile, message.c_str()));
  LocatedMessage located = SplitSyntaxMessage(message);
  HostError error = host.NewError(kErrorScript, located.message.c_str());
  error.where = std::move(located.where);
  throw RaisedError(std::move(error));
}

int LoadText(lua_State* lua, std::string_view text, const std::string& name) {
  return luaL_loadbufferx(lua, text.data(), text.size(), ("=" + name).c_str(), "t");
}

/// The global table `arg`: the file at index 0, then the arguments.
void SetArgumentTable(lua_State* lua, const std::string& path,
                      std::span<const std::string> arguments) {
  lua_createtable(lua, static_cast<int>(arguments.size()), 1);
  lua_pushlstring(lua, path.data(), path.size());
  lua_rawseti(lua, -2, 0);
  lua_Integer index = 0;
  for (const std::string& argument : arguments) {
    lua_pushlstring(lua, argument.data(), argument.size());
    lua_rawseti(lua, -2, ++index);
  }
  lua_setglobal(lua, "arg");
}

void RunFileBody(lua_State* lua, const std::string& path, std::span<const std::string> arguments) {
  SetArgumentTable(lua, path, arguments);
  const int status = luaL_loadfilex(lua, path.c_str(), "t");
  if (status != LUA_OK) FailToLoad(lua, status);
  luaL_checkstack(lua, static_cast<int>(arguments.size()), "too many arguments");
  for (const std::string& argument : arguments) {
    lua_pushlstring(lua, argument.data(), argument.size());
  }
  lua_call(lua, static_cast<int>(arguments.size()), 0);
}

}  // namespace

void CheckRequests(lua_State* lua) {
  const HostState& host = HostOf(lua);
  if (!host.StopRequested() && !host.CancelRequested()) return;
  lua_sethook(lua, CheckStop, LUA_MASKCOUNT, 1);
}

void OpenInterpreter(HostState& host) {
  host.interpreter = luaL_newstate();
  if (host.interpreter == nullptr) throw std::runtime_error("no memory for the interpreter");
  *static_cast<HostState**>(lua_getextraspace(host.interpreter)) = &host;
  if (std::optional<HostError> error =
          RunProtected(host, [](lua_State* lua) { OpenEverything(lua); })) {
    CloseInterpreter(host);
    throw std::runtime_error(error->ToString());
  }
  lua_sethook(host.interpreter, CheckStop, LUA_MASKCOUNT, kStepsBetweenStopChecks);
}

void CloseInterpreter(HostState& host) {
  host.closing = true;
  lua_close(host.interpreter);
  host.interpreter = nullptr;
}

ProgramCall::ProgramCall(HostState& host) : host_(host) {
  if (host_.runDepth++ > 0) return;
  const bool requested = host_.StopRequested() || host_.CancelRequested();
  const int steps = requested ? 1 : kStepsBetweenStopChecks;
  lua_sethook(host_.interpreter, CheckStop, LUA_MASKCOUNT, steps);
}

ProgramCall::~ProgramCall() {
  if (--host_.runDepth > 0) return;
  host_.SetStopRequested(false);
  host_.SetCancelRequested(false);
}

std::optional<HostError> RunText(HostState& host, std::string_view text, const std::string& name,
                                 Variable* value) {
  const ProgramCall call(host);
  return RunProtected(host, [&](lua_State* lua) {
    const int status = LoadText(lua, text, name);
    if (status != LUA_OK) FailToLoad(lua, status);
    lua_call(lua, 0, value == nullptr ? 0 : 1);
    if (value == nullptr) return;
    Variable result;
    ReadValue(lua, 1, result);
    VariableAccess::Move(VariableAccess::Resolve(*value), result);
  });
}

std::optional<HostError> RunScriptFile(HostState& host, const std::string& path,
                                       std::span<const std::string> arguments) {
  const ProgramCall call(host);
  return RunProtected(host, [&](lua_State* lua) { RunFileBody(lua, path, arguments); });
}

bool IsIncompleteText(HostState& host, std::string_view text) {
  bool incomplete = false;
  RunProtected(host, [&](lua_State* lua) {
    // A string that is not closed in its line cannot be closed in the next.
    if (LoadText(lua, std::string(text) + '\n', "text") != LUA_ERRSYNTAX) return;
    incomplete = std::string_view(lua_tostring(lua, -1)).ends_with("<eof>");
  });
  return incomplete;
}

std::optional<HostError> PublishFunction(HostState& host, const RegisteredFunction& function) {
  return RunProtected(host, [&function](lua_State* lua) {
    if (function.signature.IsMethod()) return PublishMethod(lua, function);
    PushRegisteredFunction(lua, function);
    lua_setglobal(lua, function.signature.name.c_str());
  });
}

void HostState::PublishConstant(std::uint16_t nameId) {
  std::optional<HostError> error = RunProtected(*this, [nameId](lua_State* lua) {
    PublishConstantIn(lua, NameOf(nameId), FindConstant(nameId));
  });
  if (error) MakePending(*std::move(error));
}

}  // namespace tarn
