#include "host/lua_trampoline.h"

#include "frame/error_numbers.h"
#include "host/function_call.h"
#include "host/interpreter.h"
#include "host/lua_values.h"

namespace tarn {
namespace {

void ReadArguments(lua_State* lua, const Signature& signature, VarRegister* registers) {
  const std::size_t count = signature.parameters.size();
  // The interpreter gives some operators with one operand the operand twice.
  if (signature.IsOperator()) lua_settop(lua, static_cast<int>(count));
  const std::string problem = CountProblem(signature, static_cast<std::size_t>(lua_gettop(lua)));
  if (!problem.empty()) throw ScriptError(kErrorArgument, problem);
  const std::size_t objects = signature.ObjectCount();
  for (std::size_t i = 0; i < count; ++i) {
    ReadArgument(lua, static_cast<int>(i) + 1, signature.parameters[i], registers[i],
                 i + 1 - objects);
  }
}

/// Pushes the result of a handler. Where the handler made the result register refer to some other
/// value, that one stays where it is.
void PushResult(lua_State* lua, VarRegister& result) {
  if (IsOwnValue(result)) {
    PushMoved(lua, result.GetVar());
  } else {
    PushShared(lua, result.GetVar());
  }
}

/// The one native function behind all registered ones; the upvalue says which it is.
int CallRegisteredFunction(lua_State* lua) {
  const auto& function =
      *static_cast<const RegisteredFunction*>(lua_touserdata(lua, NativeUpvalue(1)));
  HostState& host = HostOf(lua);
  ArgumentRegisters arguments(function.signature.parameters.size());
  VarRegister result;
  ReadArguments(lua, function.signature, arguments.Get());
  std::optional<HostError> error = RunHandler(host, function, result, arguments.Get());
  CheckRequests(lua);
  if (error) throw RaisedError(*std::move(error));
  PushResult(lua, result);
  return 1;
}

}  // namespace

void PushRegisteredFunction(lua_State* lua, const RegisteredFunction& function) {
  lua_pushlightuserdata(lua, const_cast<RegisteredFunction*>(&function));
  PushCopiedNativeFunction(lua, {function.signature.name.c_str(), CallRegisteredFunction}, 1);
}

}  // namespace tarn
