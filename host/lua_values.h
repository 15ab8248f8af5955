#ifndef TARN_HOST_LUA_VALUES_H
#define TARN_HOST_LUA_VALUES_H

/// @file
/// Values on their way between scripts and the host.
///
/// | host value | in a script |
/// |---|---|
/// | empty | nil |
/// | integer, real number | number |
/// | text | string |
/// | script function | the function |
/// | array, object, complex number, byte block, native pointer | a boxed host value |
///
/// A box holds a `Variable`. Arrays and objects are boxed without being copied.

#include <cstdint>
#include <string>

#include "host/function_call.h"
#include "host/lua_support.h"
#include "host/variable_access.h"

namespace tarn {

// Boxes -------------------------------------------------------------------------------------------

/// Makes the metatable of boxes; called once per interpreter.
void OpenBoxes(lua_State* lua);
/// Pushes a box and returns the empty value in it.
Variable& PushBox(lua_State* lua);
/// The value in the box at `index`; null when no box is there.
Variable* BoxedValue(lua_State* lua, int index);

// Host to script ----------------------------------------------------------------------------------

/// Pushes a value. Of arrays and objects the box shares the storage, so that the script sees and
/// makes changes; everything else is copied.
void PushShared(lua_State* lua, const Variable& value);
/// Pushes a value that nobody needs any more; its storage moves into the box.
void PushMoved(lua_State* lua, Variable& value);
/// Pushes an array, a vector or an array object as a table, its elements converted likewise.
void PushTable(lua_State* lua, const Variable& value);

// Script to host ----------------------------------------------------------------------------------

/// Stores a copy of the script value at `index` in `target`; nil as an empty value, booleans as the
/// integers 1 and 0, a table as an array. Throws `ScriptError` for what no host value can be made
/// of; the text says which element.
void ReadValue(lua_State* lua, int index, Variable& target);

/// What a script value is, as an error says it: "a table", "nil".
std::string DescribeKind(lua_State* lua, int index);
/// The same, with the number itself for numbers.
std::string DescribeValue(lua_State* lua, int index);

/// Sets the register of a parameter to the argument at `index`, which errors call by its number.
/// Boxes are not copied; the register of an optional argument that is missing or nil stays empty.
/// Throws `ScriptError` when the argument does not fit.
void ReadArgument(lua_State* lua, int index, const Parameter& parameter, VarRegister& target,
                  std::size_t number);

// Nesting -----------------------------------------------------------------------------------------

/// Arrays in arrays are followed this far. A table may contain itself.
inline constexpr int kDeepestNesting = 100;

/// Room on the stack for the next level of nested values.
inline void ReserveStackForNesting(lua_State* lua) {
  luaL_checkstack(lua, 8, "values nested too deeply");
}

}  // namespace tarn

#endif
