#ifndef TARN_HOST_LUA_SUPPORT_H
#define TARN_HOST_LUA_SUPPORT_H

/// @file
/// Ground of the Lua binding: native functions that scripts call, and errors in both directions.
///
/// The interpreter is the C++ build of Lua: its errors are C++ exceptions of a private type, so
/// destructors run when one passes. Two rules keep the rest of the program out of this:
///  - native functions reach Lua only as `NativeFunction`s, behind one wrapper that turns C++
///    exceptions into script errors;
///  - C++ code reaches Lua only through `RunProtected`, where every script error ends.

#include <exception>
#include <lua.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "host/host_state.h"

namespace tarn {

/// The host that an interpreter thread belongs to.
inline HostState& HostOf(lua_State* lua) {
  return **static_cast<HostState**>(lua_getextraspace(lua));
}

/// An error that a native function ends with, as a C++ exception.
class ScriptError : public std::runtime_error {
 public:
  ScriptError(int number, const std::string& message)
      : std::runtime_error(message), number_(number) {}
  int Number() const { return number_; }

 private:
  int number_;
};

/// Ends a native function for want of memory.
[[noreturn]] void FailForMemory();

/// An error that was raised before, with all its parts, on its way to the script.
class RaisedError : public std::exception {
 public:
  explicit RaisedError(HostError error) : error_(std::move(error)) {}
  const HostError& Error() const { return error_; }

 private:
  HostError error_;
};

/// A function that scripts call: takes its arguments from the stack of `lua`, returns the number of
/// results that it pushed. May throw `ScriptError` or any other `std::exception`.
struct NativeFunction {
  const char* name;  ///< as errors name it; null: errors belong to whatever called it
  int (*run)(lua_State* lua);
};

/// Pushes a native function with `upvalues` values from the top of the stack as its upvalues 2 ...
/// The description must outlive the interpreter.
void PushNativeFunction(lua_State* lua, const NativeFunction& function, int upvalues = 0);

/// The same for a description that need not outlive this call; only its name must.
void PushCopiedNativeFunction(lua_State* lua, const NativeFunction& function, int upvalues);

/// Runs a native function for a plain function of the interpreter that has done its common case
/// without one: everything said of native functions holds, except that there are no upvalues.
int RunNativeFunction(lua_State* lua, const NativeFunction& function);

/// Index of an upvalue, counted from 1, of the native function that runs.
inline int NativeUpvalue(int number) { return lua_upvalueindex(1 + number); }

/// Pushes an error as scripts see it: a table with the fields `number`, `name`, `message`,
/// `function` and `where`, which reads as "where: function: message".
void PushErrorValue(lua_State* lua, const HostError& error);
/// Makes the metatable of error values; called once per interpreter.
void OpenErrorValues(lua_State* lua);

/// What `RunProtected` runs.
using ProtectedBody = void (*)(lua_State* lua, void* context);

/// Runs a body so that every script error ends here. Returns the error, if any.
std::optional<HostError> RunProtected(HostState& host, ProtectedBody body, void* context);

/// The same for any callable that takes a `lua_State*`.
template <class Body>
std::optional<HostError> RunProtected(HostState& host, Body&& body) {
  using Callable = std::remove_reference_t<Body>;
  return RunProtected(
      host, [](lua_State* lua, void* context) { (*static_cast<Callable*>(context))(lua); }, &body);
}

}  // namespace tarn

#endif
