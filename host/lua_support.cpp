#include "host/lua_support.h"

#include <climits>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "frame/error_numbers.h"
#include "host/error_table.h"
#include "host/script_position.h"

namespace tarn {
namespace {

constexpr char kErrorMetatable = 0;  ///< its address is the key in the registry

/// Says which interpreter thread called into C++.
class RunningThread {
 public:
  RunningThread(HostState& host, lua_State* lua)
      : host_(host), caller_(std::exchange(host.running, lua)) {}
  ~RunningThread() { host_.running = caller_; }
  RunningThread(const RunningThread&) = delete;
  RunningThread& operator=(const RunningThread&) = delete;

 private:
  HostState& host_;
  lua_State* caller_;
};

/// Runs the function and catches what is thrown, except for the interpreter's own exceptions.
/// Returns the number of results; on an error -1, with the error in `error`.
int RunCatching(lua_State* lua, const NativeFunction& function, HostState& host, HostError& error) {
  try {
    return function.run(lua);
  } catch (const ScriptError& thrown) {
    error = host.NewError(thrown.Number(), thrown.what());
  } catch (const RaisedError& thrown) {
    error = thrown.Error();
  } catch (const std::bad_alloc&) {
    error = host.NewError(kErrorMemory, nullptr);
  } catch (const std::exception& thrown) {
    error = host.NewError(kErrorScript, thrown.what());
  }
  return -1;
}

void ForgetFunctions(lua_State* lua, HostState& host) {
  for (const int key : host.forgottenKeys) luaL_unref(lua, LUA_REGISTRYINDEX, key);
  host.forgottenKeys.clear();
}

/// The function is described by the first upvalue.
int CallNativeFunction(lua_State* lua) {
  return RunNativeFunction(lua,
                           *static_cast<NativeFunction*>(lua_touserdata(lua, lua_upvalueindex(1))));
}

/// The function needs no upvalue, so that pushing it needs no memory.
template <const NativeFunction& function>
int CallFixedFunction(lua_State* lua) {
  return RunNativeFunction(lua, function);
}

void SetTextField(lua_State* lua, const char* name, const std::string& text) {
  lua_pushlstring(lua, text.data(), text.size());
  lua_setfield(lua, -2, name);
}

/// The text field of the error value at the top of the stack, where it has one.
std::optional<std::string> TextField(lua_State* lua, const char* name) {
  lua_pushstring(lua, name);
  lua_rawget(lua, -2);
  std::optional<std::string> text;
  if (lua_type(lua, -1) == LUA_TSTRING) {
    std::size_t length = 0;
    const char* characters = lua_tolstring(lua, -1, &length);
    text.emplace(characters, length);
  }
  lua_pop(lua, 1);
  return text;
}

/// The number of the error value at the top of the stack; `kNoError` where it has none.
int NumberField(lua_State* lua) {
  lua_pushliteral(lua, "number");
  lua_rawget(lua, -2);
  const lua_Integer number = lua_type(lua, -1) == LUA_TNUMBER ? lua_tointeger(lua, -1) : kNoError;
  lua_pop(lua, 1);
  const bool isInt = number >= INT_MIN && number <= INT_MAX;
  return isInt ? static_cast<int>(number) : kNoError;
}

bool HasErrorMetatable(lua_State* lua, int index) {
  if (lua_getmetatable(lua, index) == 0) return false;
  lua_rawgetp(lua, LUA_REGISTRYINDEX, &kErrorMetatable);
  const bool same = lua_rawequal(lua, -1, -2) != 0;
  lua_pop(lua, 2);
  return same;
}

/// Whether the value at the top of the stack is an error value: one made here, or a table of the
/// script with an error number in it.
bool IsErrorValue(lua_State* lua) {
  if (!lua_istable(lua, -1)) return false;
  return HasErrorMetatable(lua, -1) || NumberField(lua) > kNoError;
}

/// The error value at the top of the stack.
HostError ReadErrorValue(lua_State* lua) {
  HostError error;
  error.number = NumberField(lua);
  error.name = TextField(lua, "name").value_or(ErrorText(error.number));
  error.message = TextField(lua, "message").value_or(error.name);
  error.function = TextField(lua, "function").value_or("");
  error.where = TextField(lua, "where").value_or("");
  return error;
}

int ErrorToText(lua_State* lua) {
  lua_settop(lua, 1);
  if (!lua_istable(lua, 1)) throw ScriptError(kErrorArgument, "no error value");
  const std::string text = ReadErrorValue(lua).ToString();
  lua_pushlstring(lua, text.data(), text.size());
  return 1;
}

/// The error behind a value that a script raised which is no error value.
HostError ErrorOfValue(lua_State* lua) {
  LocatedMessage located = LocateMessage(lua, luaL_tolstring(lua, 1, nullptr));
  HostError error = HostOf(lua).NewError(kErrorScript, located.message.c_str());
  error.function.clear();
  error.where = std::move(located.where);
  return error;
}

/// Makes an error value of whatever a script raised, while the stack still tells where.
int MakeErrorValue(lua_State* lua) {
  lua_settop(lua, 1);
  const bool isErrorValue = IsErrorValue(lua);
  HostError error = isErrorValue ? ReadErrorValue(lua) : ErrorOfValue(lua);
  if (error.where.empty()) error.where = ScriptPosition(lua);
  PushErrorValue(lua, error);
  return 1;
}

struct BodyCall {
  ProtectedBody body;
  void* context;
};

int RunBody(lua_State* lua) {
  const auto& call = *static_cast<const BodyCall*>(lua_touserdata(lua, 1));
  lua_settop(lua, 0);
  call.body(lua, call.context);
  return 0;
}

/// Stores the error value that is the second argument. What is no error value came from the
/// interpreter itself, which could not run the code that makes one.
int FetchErrorValue(lua_State* lua) {
  auto& error = *static_cast<HostError*>(lua_touserdata(lua, 1));
  if (IsErrorValue(lua)) {
    error = ReadErrorValue(lua);
  } else {
    error = HostOf(lua).NewError(kErrorScript, luaL_tolstring(lua, 2, nullptr));
  }
  return 0;
}

constexpr NativeFunction kErrorToText{nullptr, ErrorToText};
constexpr NativeFunction kMakeErrorValue{nullptr, MakeErrorValue};
constexpr NativeFunction kRunBody{nullptr, RunBody};
constexpr NativeFunction kFetchErrorValue{nullptr, FetchErrorValue};

/// The error that a protected call left at the top of the stack, which is popped.
HostError PopError(lua_State* lua, HostState& host, int status) {
  HostError error;
  if (status == LUA_ERRMEM) {
    lua_pop(lua, 1);
    return host.NewError(kErrorMemory, nullptr);
  }
  lua_pushcfunction(lua, CallFixedFunction<kFetchErrorValue>);
  lua_insert(lua, -2);
  lua_pushlightuserdata(lua, &error);
  lua_insert(lua, -2);
  if (lua_pcall(lua, 2, 0, 0) == LUA_OK) return error;
  lua_pop(lua, 1);
  return host.NewError(kErrorMemory, nullptr);
}

}  // namespace

void FailForMemory() { throw ScriptError(kErrorMemory, "memory exhausted"); }

int RunNativeFunction(lua_State* lua, const NativeFunction& function) {
  HostState& host = HostOf(lua);
  if (!host.forgottenKeys.empty()) ForgetFunctions(lua, host);
  const RunningThread thread(host, lua);
  const RunningFunction name(host, function.name == nullptr ? host.runningFunction : function.name);
  HostError error;
  const int results = RunCatching(lua, function, host, error);
  if (results >= 0) return results;
  PushErrorValue(lua, error);
  return lua_error(lua);
}

void PushNativeFunction(lua_State* lua, const NativeFunction& function, int upvalues) {
  lua_pushlightuserdata(lua, const_cast<NativeFunction*>(&function));
  lua_insert(lua, -1 - upvalues);
  lua_pushcclosure(lua, CallNativeFunction, 1 + upvalues);
}

void PushCopiedNativeFunction(lua_State* lua, const NativeFunction& function, int upvalues) {
  // The copy is the first upvalue, so it lives as long as the function.
  new (lua_newuserdatauv(lua, sizeof(NativeFunction), 0)) NativeFunction(function);
  lua_insert(lua, -1 - upvalues);
  lua_pushcclosure(lua, CallNativeFunction, 1 + upvalues);
}

void PushErrorValue(lua_State* lua, const HostError& error) {
  lua_createtable(lua, 0, 5);
  lua_pushinteger(lua, error.number);
  lua_setfield(lua, -2, "number");
  SetTextField(lua, "name", error.name);
  SetTextField(lua, "message", error.message);
  SetTextField(lua, "function", error.function);
  SetTextField(lua, "where", error.where);
  lua_rawgetp(lua, LUA_REGISTRYINDEX, &kErrorMetatable);
  lua_setmetatable(lua, -2);
}

void OpenErrorValues(lua_State* lua) {
  lua_createtable(lua, 0, 2);
  PushNativeFunction(lua, kErrorToText);
  lua_setfield(lua, -2, "__tostring");
  lua_pushliteral(lua, "error");
  lua_setfield(lua, -2, "__name");
  lua_rawsetp(lua, LUA_REGISTRYINDEX, &kErrorMetatable);
}

std::optional<HostError> RunProtected(HostState& host, ProtectedBody body, void* context) {
  lua_State* lua = host.running != nullptr ? host.running : host.interpreter;
  constexpr int kSlots = 8;
  if (lua_checkstack(lua, kSlots) == 0) return host.NewError(kErrorMemory, nullptr);
  BodyCall call{body, context};
  lua_pushcfunction(lua, CallFixedFunction<kMakeErrorValue>);
  const int handler = lua_gettop(lua);
  lua_pushcfunction(lua, CallFixedFunction<kRunBody>);
  lua_pushlightuserdata(lua, &call);
  const int status = lua_pcall(lua, 1, 0, handler);
  std::optional<HostError> error;
  if (status != LUA_OK) error = PopError(lua, host, status);
  lua_remove(lua, handler);
  return error;
}

}  // namespace tarn
