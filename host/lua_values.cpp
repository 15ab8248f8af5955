/// @file
/// Host values on their way to scripts.

#include "host/lua_values.h"

#include <algorithm>

#include "frame/error_numbers.h"
#include "host/container.h"
#include "host/function_call.h"
#include "host/script_function.h"

using Access = VariableAccess;

namespace tarn {
namespace {

void PushFunction(lua_State* lua, const Variable& value) {
  const auto* handle = static_cast<const ScriptFunctionHandle*>(Access::Data(value).block);
  if (handle->host == HostOf(lua).serial) {
    lua_rawgeti(lua, LUA_REGISTRYINDEX, handle->registryKey);
  } else {
    throw ScriptError(kErrorArgument, "the function belongs to an interpreter that has ended");
  }
}

/// Pushes a value that needs no box. False when it needs one.
bool PushUnboxed(lua_State* lua, const Variable& value) {
  switch (Access::Type(value)) {
    case kEmpty:
      lua_pushnil(lua);
      return true;
    case kReal:
      lua_pushnumber(lua, Access::Data(value).real);
      return true;
    case kInteger:
      lua_pushinteger(lua, Access::Data(value).integer);
      return true;
    case kText: {
      const std::string_view text = Access::Text(value);
      lua_pushlstring(lua, text.data(), text.size());
      return true;
    }
    case kFunction:
      PushFunction(lua, value);
      return true;
    default:
      return false;
  }
}

void PushTableAt(lua_State* lua, const Variable& value, int depth);

void PushTableElement(lua_State* lua, const Variable& element, int depth) {
  const Variable& value = Access::Resolve(element);
  if (HasElements(value)) {
    PushTableAt(lua, value, depth);
  } else {
    PushShared(lua, value);
  }
}

void PushTableAt(lua_State* lua, const Variable& value, int depth) {
  if (depth > kDeepestNesting) throw ScriptError(kErrorArgument, "arrays nested too deeply");
  ReserveStackForNesting(lua);
  const std::int64_t count = value.GetDim();
  const Variable* elements = value.GetArray();
  lua_createtable(lua, static_cast<int>(std::min<std::int64_t>(count, 1 << 30)), 0);
  for (std::int64_t i = 0; i < count; ++i) {
    PushTableElement(lua, elements[i], depth + 1);
    lua_rawseti(lua, -2, i + 1);
  }
}

}  // namespace

void PushShared(lua_State* lua, const Variable& value) {
  const Variable& resolved = Access::Resolve(value);
  if (PushUnboxed(lua, resolved)) return;
  if (!Access::Share(PushBox(lua), resolved)) FailForMemory();
}

void PushMoved(lua_State* lua, Variable& value) {
  if (PushUnboxed(lua, value)) return;
  Access::Move(PushBox(lua), value);
}

void PushTable(lua_State* lua, const Variable& value) { PushTableAt(lua, value, 0); }

}  // namespace tarn
