#ifndef TARN_HOST_LUA_METHODS_H
#define TARN_HOST_LUA_METHODS_H

/// @file
/// Methods and operators that modules give to script classes, as scripts reach them.

#include "host/lua_support.h"

namespace tarn {

class ScriptClass;

/// Makes a registered method known to scripts, which find it in objects of its class.
void PublishMethod(lua_State* lua, const RegisteredFunction& method);

/// Pushes the method or operator that modules gave to the class. False, and nothing pushed, when
/// there is none of that name.
bool PushClassMethod(lua_State* lua, const ScriptClass& scriptClass, const char* name);

/// Calls an operator with all values on the stack as its operands: that of the first object among
/// the first `operands` of them whose class has it. Leaves the one result on the stack. False, and
/// the stack as it was, when no class has it.
bool CallOperator(lua_State* lua, const char* name, int operands);

}  // namespace tarn

#endif
