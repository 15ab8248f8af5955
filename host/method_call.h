#ifndef TARN_HOST_METHOD_CALL_H
#define TARN_HOST_METHOD_CALL_H

/// @file
/// Calls of script functions and of methods.

#include "host/host_state.h"

namespace tarn {

/// Calls a script function. Registers marked as passing by reference take the function's second
/// and further values, in order, where it returns any. False with a pending error.
bool CallScriptFunction(HostState& host, const Variable& function, VarRegister* arguments,
                        int count, const Variable* self, Variable& result);

/// What happens to the arguments of a class's own method before it runs.
enum class Conversion { kNone, kToDeclaredTypes };

/// Calls a method of an object: a member that holds a script function, which gets the object as its
/// first argument, or else the method that a module gave to the class, or else the class's own.
/// False with a pending error.
bool CallMethod(HostState& host, Variable& object, const char* name, VarRegister* arguments,
                int count, Variable& result, Conversion conversion);

}  // namespace tarn

#endif
