/// @file
/// Script functions called from C++.

#include "frame/error_numbers.h"
#include "host/error_table.h"
#include "host/function_call.h"
#include "host/lua_values.h"
#include "host/method_call.h"
#include "host/script_function.h"

using Access = VariableAccess;

namespace tarn {
namespace {

struct ScriptCall {
  const Variable& function;
  VarRegister* arguments;
  int count;
  const Variable* self;
  Variable& result;
};

/// Pushes function and arguments. Returns the number of arguments.
int PushCall(lua_State* lua, const ScriptCall& call) {
  luaL_checkstack(lua, call.count + 8, "too many arguments");
  PushShared(lua, call.function);
  if (call.self != nullptr) PushShared(lua, *call.self);
  for (int i = 0; i < call.count; ++i) PushShared(lua, call.arguments[i].GetVar());
  return call.count + (call.self != nullptr ? 1 : 0);
}

/// The first value is the result; more of them are new values of the arguments passed by reference.
void ReadResults(lua_State* lua, const ScriptCall& call) {
  Variable result;
  ReadValue(lua, 1, result);
  int next = 2;
  for (int i = 0; i < call.count && next <= lua_gettop(lua); ++i) {
    if (!call.arguments[i].IsRef()) continue;
    Variable changed;
    ReadValue(lua, next++, changed);
    Access::Move(call.arguments[i].GetVar(), changed);
  }
  Access::Move(Access::Resolve(call.result), result);
}

void RunCall(lua_State* lua, const ScriptCall& call) {
  const int arguments = PushCall(lua, call);
  lua_call(lua, arguments, LUA_MULTRET);
  ReadResults(lua, call);
}

/// Whether the module that calls was cancelled and has not returned since. It may not look at the
/// error for a while; its further calls must not make the person who cancelled wait.
bool IsCancelled(const HostState& host) {
  return host.processor.pendingError != 0 && host.lastError.number == kErrorCancel;
}

}  // namespace

bool CallScriptFunction(HostState& host, const Variable& function, VarRegister* arguments,
                        int count, const Variable* self, Variable& result) {
  const Variable& called = Access::Resolve(function);
  if (Access::Type(called) != kFunction) {
    host.Raise(kErrorArgument, ("cannot call " + DescribeKind(called)).c_str());
    return false;
  }
  // Methods are called all the same: a progress window shows how the computation ends.
  if (self == nullptr && IsCancelled(host)) return false;
  const ScriptCall call{called, arguments, count, self, result};
  std::optional<HostError> error =
      RunProtected(host, [&call](lua_State* lua) { RunCall(lua, call); });
  if (!error) return true;
  host.MakePending(*std::move(error));
  return false;
}

}  // namespace tarn
