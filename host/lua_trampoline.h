#ifndef TARN_HOST_LUA_TRAMPOLINE_H
#define TARN_HOST_LUA_TRAMPOLINE_H

/// @file
/// Registered functions as scripts call them.

#include "host/lua_support.h"

namespace tarn {

/// Pushes a registered function, which must outlive the interpreter. The script's arguments are
/// checked against the signature before the handler runs; an error that is pending after it becomes
/// a script error.
void PushRegisteredFunction(lua_State* lua, const RegisteredFunction& function);

}  // namespace tarn

#endif
