/// @file
/// Script values on their way to the host.

#include <algorithm>
#include <string_view>
#include <vector>

#include "frame/error_numbers.h"
#include "host/container.h"
#include "host/lua_values.h"
#include "host/names.h"
#include "host/object.h"
#include "host/script_class.h"
#include "host/script_function.h"

using Access = VariableAccess;

namespace tarn {
namespace {

/// What is wrong with an element, and the way to it: "[2][3]", "bounds[2]".
struct ElementError {
  std::string path;
  std::string problem;
};

/// What may stand in a table.
enum class TableForm {
  kSequence,  ///< elements 1 to n, no booleans; host values are copied
  kOptions    ///< named values besides, booleans as 1 and 0; host values are shared
};

/// Reads values that may be nested. Indices are absolute.
class ValueReader {
 public:
  ValueReader(lua_State* lua, TableForm form) : lua_(lua), form_(form) {}

  /// Nil is no value, and a boolean none of a sequence.
  void Read(int index, Variable& target, int depth) const {
    switch (lua_type(lua_, index)) {
      case LUA_TNUMBER:
        return ReadNumber(index, target);
      case LUA_TSTRING:
        return ReadText(index, target);
      case LUA_TFUNCTION:
        return ReadFunction(index, target);
      case LUA_TTABLE:
        return ReadTable(index, target, depth + 1);
      case LUA_TUSERDATA:
        return ReadBox(index, target);
      case LUA_TBOOLEAN:
        if (form_ == TableForm::kSequence) break;
        target = lua_toboolean(lua_, index);
        return;
      default:
        break;
    }
    throw ElementError{{},
                       "is " + DescribeKind(lua_, index) + ", of which no host value can be made"};
  }

 private:
  void ReadNumber(int index, Variable& target) const {
    if (lua_isinteger(lua_, index) != 0) {
      target = std::int64_t{lua_tointeger(lua_, index)};
    } else {
      target = lua_tonumber(lua_, index);
    }
  }

  void ReadText(int index, Variable& target) const {
    std::size_t length = 0;
    const char* text = lua_tolstring(lua_, index, &length);
    Access::SetText(target, {text, length});
    if (Access::Type(target) != kText) FailForMemory();
  }

  void ReadFunction(int index, Variable& target) const {
    lua_pushvalue(lua_, index);
    const int key = luaL_ref(lua_, LUA_REGISTRYINDEX);
    ScriptFunctionHandle* handle = MakeScriptFunctionHandle(key, HostOf(lua_).serial);
    if (handle == nullptr) {
      luaL_unref(lua_, LUA_REGISTRYINDEX, key);
      FailForMemory();
    }
    target.Clear();
    Access::OverwriteBlock(target, kFunction, handle);
  }

  void ReadBox(int index, Variable& target) const {
    const Variable* boxed = BoxedValue(lua_, index);
    if (boxed == nullptr) throw ElementError{{}, "is a foreign userdata"};
    Variable value;
    const bool made = form_ == TableForm::kOptions ? Access::Share(value, *boxed)
                                                   : Access::DeepCopy(value, *boxed);
    if (!made) FailForMemory();
    Access::Move(target, value);
  }

  /// A table with names becomes an object, every other one an array. All elements are read in one
  /// pass, in whatever order the table lists them, and the names after them.
  void ReadTable(int index, Variable& target, int depth) const {
    if (depth > kDeepestNesting) throw ElementError{{}, "is nested too deeply"};
    ReserveStackForNesting(lua_);
    const auto count = static_cast<std::int64_t>(lua_rawlen(lua_, index));
    target.Init(VARTYPE_ARRAY, count);
    if (target.GetDim() != count) FailForMemory();
    std::vector<std::string> names;
    if (ReadElements(index, target, depth, names) != count) RequireNoHoles(index, count);
    if (!names.empty()) ReadNamed(index, target, depth, std::move(names));
  }

  /// Returns how many elements there were.
  std::int64_t ReadElements(int index, Variable& target, int depth,
                            std::vector<std::string>& names) const {
    const std::int64_t count = target.GetDim();
    Variable* elements = target.GetArray();
    std::int64_t found = 0;
    for (lua_pushnil(lua_); lua_next(lua_, index) != 0; lua_pop(lua_, 1)) {
      if (form_ == TableForm::kOptions && lua_type(lua_, -2) == LUA_TSTRING) {
        names.emplace_back(lua_tostring(lua_, -2));
        continue;
      }
      const std::int64_t position = ElementPosition(-2, count);
      try {
        Read(lua_gettop(lua_), elements[position], depth);
      } catch (ElementError& error) {
        error.path.insert(0, "[" + std::to_string(position + 1) + "]");
        throw;
      }
      ++found;
    }
    return found;
  }

  /// Position, counted from 0, of the element whose key is at `index`.
  std::int64_t ElementPosition(int index, std::int64_t count) const {
    const std::int64_t key = lua_isinteger(lua_, index) != 0 ? lua_tointeger(lua_, index) : 0;
    if (key >= 1 && key <= count) return key - 1;
    lua_pushvalue(lua_, index);
    const std::string name = luaL_tolstring(lua_, -1, nullptr);
    lua_pop(lua_, 2);
    throw ElementError{{}, "is no sequence, it has the key " + name};
  }

  void RequireNoHoles(int index, std::int64_t count) const {
    for (std::int64_t i = 1; i <= count; ++i) {
      const bool isHole = lua_rawgeti(lua_, index, i) == LUA_TNIL;
      lua_pop(lua_, 1);
      if (isHole)
        throw ElementError{{}, "is no sequence, element " + std::to_string(i) + " is nil"};
    }
  }

  /// Makes the array in `target` the elements of an object and the named values its members, in the
  /// order of their names.
  void ReadNamed(int index, Variable& target, int depth, std::vector<std::string> names) const {
    std::sort(names.begin(), names.end());
    Variable made;
    if (!MakeObject(made, OptionsClass())) FailForMemory();
    Object& object = *made.GetObject();
    Access::Move(object.Elements(), target);
    for (const std::string& name : names) {
      const std::uint16_t nameId = MakeNameId(name);
      Variable* member = nameId == kNoName ? nullptr : object.FindOrCreateMember(nameId);
      if (member == nullptr) FailForMemory();
      ReadMember(index, name, *member, depth);
    }
    Access::Move(target, made);
  }

  void ReadMember(int index, const std::string& name, Variable& member, int depth) const {
    lua_pushlstring(lua_, name.data(), name.size());
    lua_rawget(lua_, index);
    try {
      Read(lua_gettop(lua_), member, depth);
    } catch (ElementError& error) {
      error.path.insert(0, "." + name);
      throw;
    }
    lua_pop(lua_, 1);
  }

  lua_State* lua_;
  TableForm form_;
};

/// The way to an element as a script writes it, not too long.
std::string ShownPath(std::string_view path) {
  constexpr std::size_t kLongest = 40;
  if (path.starts_with('.')) path.remove_prefix(1);
  if (path.size() <= kLongest) return std::string(path);
  return std::string(path.substr(0, kLongest)) + "...";
}

/// Reads a value whose errors are told as those of `subject`.
void ReadAs(lua_State* lua, int index, Variable& target, TableForm form,
            const std::string& subject) {
  try {
    ValueReader(lua, form).Read(lua_absindex(lua, index), target, 0);
  } catch (const ElementError& error) {
    const std::string element =
        error.path.empty() ? "" : ", element " + ShownPath(error.path) + ",";
    throw ScriptError(kErrorArgument, subject + element + " " + error.problem);
  }
}

/// Makes the register refer to the argument: to the boxed value itself, or to a copy of its own.
Variable& ReferToArgument(lua_State* lua, int index, VarRegister& target, TableForm form,
                          std::size_t number) {
  if (Variable* boxed = BoxedValue(lua, index)) {
    target.PointTo(boxed);
  } else {
    ReadAs(lua, index, target.GetVar(), form, ArgumentSubject(number));
  }
  return target.GetVar();
}

[[noreturn]] void RefuseArgument(lua_State* lua, int index, const Parameter& parameter,
                                 std::size_t number) {
  throw ScriptError(kErrorArgument, ArgumentProblem(number, DescribeParameter(parameter),
                                                    DescribeValue(lua, index)));
}

void ReadNumberArgument(lua_State* lua, int index, const Parameter& parameter, VarRegister& target,
                        std::size_t number) {
  if (lua_type(lua, index) != LUA_TNUMBER) RefuseArgument(lua, index, parameter, number);
  const double value = lua_tonumber(lua, index);
  if (parameter.kind == ParameterKind::kNumber) {
    target = value;
  } else if (IsWholeInt32(value)) {
    target = static_cast<int>(value);
  } else {
    RefuseArgument(lua, index, parameter, number);
  }
}

/// A table without names and elements is one of options all the same.
void RequireOptionsObject(Variable& value) {
  if (Access::Type(value) != kArray || value.GetDim() != 0) return;
  value.Clear();
  if (!MakeObject(value, OptionsClass())) FailForMemory();
}

void ReadOptions(lua_State* lua, int index, const Parameter& parameter, VarRegister& target,
                 std::size_t number) {
  Variable& value = ReferToArgument(lua, index, target, TableForm::kOptions, number);
  if (lua_istable(lua, index)) {
    RequireOptionsObject(value);
    return;
  }
  const std::string problem = SetArgument(target, parameter, value, number);
  if (!problem.empty()) throw ScriptError(kErrorArgument, problem);
}

/// Whether the kind of parameter takes script values of this kind at all.
bool CanTake(lua_State* lua, int index, ParameterKind kind) {
  const int type = lua_type(lua, index);
  switch (kind) {
    case ParameterKind::kText:
      return type == LUA_TSTRING;
    case ParameterKind::kFunction:
      return type == LUA_TFUNCTION;
    case ParameterKind::kOptions:
    case ParameterKind::kReferObject:
      return type == LUA_TTABLE || BoxedValue(lua, index) != nullptr;
    default:
      return type != LUA_TNIL && type != LUA_TBOOLEAN;
  }
}

}  // namespace

void ReadValue(lua_State* lua, int index, Variable& target) {
  if (lua_isnoneornil(lua, index)) {
    target.Clear();
  } else if (lua_isboolean(lua, index)) {
    target = lua_toboolean(lua, index);
  } else {
    ReadAs(lua, index, target, TableForm::kSequence, "the value");
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

void ReadArgument(lua_State* lua, int index, const Parameter& parameter, VarRegister& target,
                  std::size_t number) {
  if (parameter.optional && lua_isnoneornil(lua, index)) return;
  if (!CanTake(lua, index, parameter.kind)) RefuseArgument(lua, index, parameter, number);
  switch (parameter.kind) {
    case ParameterKind::kNumber:
    case ParameterKind::kInteger:
      return ReadNumberArgument(lua, index, parameter, target, number);
    case ParameterKind::kOptions:
      return ReadOptions(lua, index, parameter, target, number);
    case ParameterKind::kReferObject: {
      Variable& value = ReferToArgument(lua, index, target, TableForm::kSequence, number);
      const std::string problem = SetArgument(target, parameter, value, number);
      if (!problem.empty()) throw ScriptError(kErrorArgument, problem);
      return;
    }
    default:
      ReferToArgument(lua, index, target, TableForm::kSequence, number);
  }
}

}  // namespace tarn
