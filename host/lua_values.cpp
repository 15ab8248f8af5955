#include "host/lua_values.h"

#include <algorithm>

#include "frame/error_numbers.h"
#include "host/container.h"
#include "host/function_call.h"
#include "host/script_function.h"

using Access = VariableAccess;

namespace tarn {
namespace {

/// Arrays in arrays are followed this far. A table may contain itself.
constexpr int kDeepestNesting = 100;

void ReserveStack(lua_State* lua) { luaL_checkstack(lua, 8, "values nested too deeply"); }

[[noreturn]] void FailForMemory() { throw ScriptError(kErrorMemory, "memory exhausted"); }

// Host to script ----------------------------------------------------------------------------------

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
  ReserveStack(lua);
  const std::int64_t count = value.GetDim();
  const Variable* elements = value.GetArray();
  lua_createtable(lua, static_cast<int>(std::min<std::int64_t>(count, 1 << 30)), 0);
  for (std::int64_t i = 0; i < count; ++i) {
    PushTableElement(lua, elements[i], depth + 1);
    lua_rawseti(lua, -2, i + 1);
  }
}

// Script to host ----------------------------------------------------------------------------------

/// What is wrong with an element, and the way to it: "[2][3]".
struct ElementError {
  std::string path;
  std::string problem;
};

void ReadAt(lua_State* lua, int index, Variable& target, int depth);

void ReadFunction(lua_State* lua, int index, Variable& target) {
  lua_pushvalue(lua, index);
  const int key = luaL_ref(lua, LUA_REGISTRYINDEX);
  ScriptFunctionHandle* handle = MakeScriptFunctionHandle(key, HostOf(lua).serial);
  if (handle == nullptr) {
    luaL_unref(lua, LUA_REGISTRYINDEX, key);
    FailForMemory();
  }
  target.Clear();
  Access::OverwriteBlock(target, kFunction, handle);
}

/// Position, counted from 0, of the element whose key is at `index`.
std::int64_t ElementPosition(lua_State* lua, int index, std::int64_t count) {
  const std::int64_t key = lua_isinteger(lua, index) != 0 ? lua_tointeger(lua, index) : 0;
  if (key >= 1 && key <= count) return key - 1;
  lua_pushvalue(lua, index);
  const std::string name = luaL_tolstring(lua, -1, nullptr);
  lua_pop(lua, 2);
  throw ElementError{{}, "is no sequence, it has the key " + name};
}

/// Stores the elements of the table at `index` in the array `target`, in whatever order the table
/// lists them. Returns how many there were.
std::int64_t ReadElements(lua_State* lua, int index, Variable& target, int depth) {
  const std::int64_t count = target.GetDim();
  Variable* elements = target.GetArray();
  std::int64_t found = 0;
  for (lua_pushnil(lua); lua_next(lua, index) != 0; lua_pop(lua, 1)) {
    const std::int64_t position = ElementPosition(lua, -2, count);
    try {
      ReadAt(lua, lua_gettop(lua), elements[position], depth);
    } catch (ElementError& error) {
      error.path.insert(0, "[" + std::to_string(position + 1) + "]");
      throw;
    }
    ++found;
  }
  return found;
}

void RequireNoHoles(lua_State* lua, int index, std::int64_t count) {
  for (std::int64_t i = 1; i <= count; ++i) {
    const bool isHole = lua_rawgeti(lua, index, i) == LUA_TNIL;
    lua_pop(lua, 1);
    if (isHole) throw ElementError{{}, "is no sequence, element " + std::to_string(i) + " is nil"};
  }
}

void ReadTable(lua_State* lua, int index, Variable& target, int depth) {
  if (depth > kDeepestNesting) throw ElementError{{}, "is nested too deeply"};
  ReserveStack(lua);
  const auto count = static_cast<std::int64_t>(lua_rawlen(lua, index));
  target.Init(VARTYPE_ARRAY, count);
  if (target.GetDim() != count) FailForMemory();
  if (ReadElements(lua, index, target, depth) != count) RequireNoHoles(lua, index, count);
}

void ReadText(lua_State* lua, int index, Variable& target) {
  std::size_t length = 0;
  const char* text = lua_tolstring(lua, index, &length);
  Access::SetText(target, {text, length});
  if (Access::Type(target) != kText) FailForMemory();
}

void ReadBox(lua_State* lua, int index, Variable& target) {
  const Variable* boxed = BoxedValue(lua, index);
  if (boxed == nullptr) throw ElementError{{}, "is a foreign userdata"};
  Variable copy;
  if (!Access::DeepCopy(copy, *boxed)) FailForMemory();
  Access::Move(target, copy);
}

/// `index` is absolute. Nil and booleans are no elements.
void ReadAt(lua_State* lua, int index, Variable& target, int depth) {
  switch (lua_type(lua, index)) {
    case LUA_TNUMBER:
      if (lua_isinteger(lua, index) != 0) {
        target = std::int64_t{lua_tointeger(lua, index)};
      } else {
        target = lua_tonumber(lua, index);
      }
      return;
    case LUA_TSTRING:
      return ReadText(lua, index, target);
    case LUA_TFUNCTION:
      return ReadFunction(lua, index, target);
    case LUA_TTABLE:
      return ReadTable(lua, index, target, depth + 1);
    case LUA_TUSERDATA:
      return ReadBox(lua, index, target);
    default:
      throw ElementError{{},
                         "is " + DescribeKind(lua, index) + ", of which no host value can be made"};
  }
}

std::string Shortened(const std::string& path) {
  constexpr std::size_t kLongest = 40;
  return path.size() <= kLongest ? path : path.substr(0, kLongest) + "...";
}

/// Reads a value whose errors are told as those of `subject`.
void ReadAs(lua_State* lua, int index, Variable& target, const std::string& subject) {
  try {
    ReadAt(lua, lua_absindex(lua, index), target, 0);
  } catch (const ElementError& error) {
    const std::string element =
        error.path.empty() ? "" : ", element " + Shortened(error.path) + ",";
    throw ScriptError(kErrorArgument, subject + element + " " + error.problem);
  }
}

/// Makes the register refer to the argument: to the boxed value itself, or to a copy of its own.
Variable& ReferToArgument(lua_State* lua, int index, VarRegister& target) {
  if (Variable* boxed = BoxedValue(lua, index)) {
    target.PointTo(boxed);
  } else {
    ReadAs(lua, index, target.GetVar(), "argument " + std::to_string(index));
  }
  return target.GetVar();
}

[[noreturn]] void RefuseArgument(lua_State* lua, int index, const Parameter& parameter) {
  throw ScriptError(kErrorArgument,
                    ArgumentProblem(static_cast<std::size_t>(index), DescribeParameter(parameter),
                                    DescribeValue(lua, index)));
}

void ReadNumberArgument(lua_State* lua, int index, const Parameter& parameter,
                        VarRegister& target) {
  if (lua_type(lua, index) != LUA_TNUMBER) RefuseArgument(lua, index, parameter);
  const double number = lua_tonumber(lua, index);
  if (parameter.kind == ParameterKind::kNumber) {
    target = number;
  } else if (IsWholeInt32(number)) {
    target = static_cast<int>(number);
  } else {
    RefuseArgument(lua, index, parameter);
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

void ReadValue(lua_State* lua, int index, Variable& target) {
  if (lua_isnoneornil(lua, index)) {
    target.Clear();
  } else if (lua_isboolean(lua, index)) {
    target = lua_toboolean(lua, index);
  } else {
    ReadAs(lua, index, target, "the value");
  }
}

std::string DescribeKind(lua_State* lua, int index) {
  switch (lua_type(lua, index)) {
    case LUA_TNONE:
      return "nothing";
    case LUA_TNIL:
      return "nil";
    case LUA_TBOOLEAN:
      return "a boolean";
    case LUA_TTHREAD:
      return "a coroutine";
    case LUA_TUSERDATA: {
      const Variable* boxed = BoxedValue(lua, index);
      return boxed == nullptr ? "a userdata" : DescribeKind(*boxed);
    }
    default:
      return std::string("a ") + luaL_typename(lua, index);
  }
}

std::string DescribeValue(lua_State* lua, int index) {
  if (lua_type(lua, index) != LUA_TNUMBER) return DescribeKind(lua, index);
  return DescribeNumber(lua_tonumber(lua, index));
}

void ReadArgument(lua_State* lua, int index, const Parameter& parameter, VarRegister& target) {
  switch (parameter.kind) {
    case ParameterKind::kNumber:
    case ParameterKind::kInteger:
      return ReadNumberArgument(lua, index, parameter, target);
    case ParameterKind::kAny:
      if (lua_isnil(lua, index) || lua_isboolean(lua, index)) {
        RefuseArgument(lua, index, parameter);
      }
      ReferToArgument(lua, index, target);
      return;
    case ParameterKind::kReferObject:
      if (!lua_istable(lua, index) && BoxedValue(lua, index) == nullptr) {
        RefuseArgument(lua, index, parameter);
      }
      break;
  }
  Variable& value = ReferToArgument(lua, index, target);
  const std::string problem =
      SetArgument(target, parameter, value, static_cast<std::size_t>(index));
  if (!problem.empty()) throw ScriptError(kErrorArgument, problem);
}

}  // namespace tarn
