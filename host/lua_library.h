#ifndef TARN_HOST_LUA_LIBRARY_H
#define TARN_HOST_LUA_LIBRARY_H

/// @file
/// Functions of the host itself that scripts find as globals: print, array, vector, complex,
/// totable, Load, Rand, Seed, ReadColumns, and a constructor for every class.

#include "host/lua_support.h"

namespace tarn {

/// Makes them globals; called once per interpreter.
void OpenLibrary(lua_State* lua);

/// ReadColumns(path [, options]), a native function.
int ReadColumnsFromScript(lua_State* lua);

}  // namespace tarn

#endif
