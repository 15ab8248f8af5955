#include "host/lua_library.h"

#include <random>
#include <string_view>

#include "frame/error_numbers.h"
#include "host/container.h"
#include "host/lua_complex.h"
#include "host/lua_values.h"
#include "host/module_registry.h"
#include "host/script_class.h"

using Access = VariableAccess;

namespace tarn {
namespace {

[[noreturn]] void RefuseArgument(lua_State* lua, int index, const std::string& wanted) {
  throw ScriptError(kErrorArgument, "argument " + std::to_string(index) + " must be " + wanted +
                                        ", got " + DescribeValue(lua, index));
}

/// print(...), to the host's text output.
int Print(lua_State* lua) {
  std::string line;
  const int count = lua_gettop(lua);
  for (int index = 1; index <= count; ++index) {
    std::size_t length = 0;
    const char* text = luaL_tolstring(lua, index, &length);
    if (index > 1) line += '\t';
    line.append(text, length);
    lua_pop(lua, 1);
  }
  HostOf(lua).Write(line + '\n');
  return 0;
}

// Values ------------------------------------------------------------------------------------------

/// The constructor of the class that the upvalue tells.
int Construct(lua_State* lua) {
  const auto& scriptClass = *static_cast<const ScriptClass*>(lua_touserdata(lua, NativeUpvalue(1)));
  const int count = lua_gettop(lua);
  ArgumentRegisters registers(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    VarRegister& target = registers[static_cast<std::size_t>(i)];
    if (Variable* boxed = BoxedValue(lua, i + 1)) {
      target.PointTo(boxed);
    } else {
      ReadValue(lua, i + 1, target.GetVar());
    }
  }
  HostState& host = HostOf(lua);
  Variable& made = PushBox(lua);
  const PendingErrorAside aside(host);
  scriptClass.Construct(made, registers.Get(), count);
  if (std::optional<HostError> error = aside.Raised()) throw RaisedError(*std::move(error));
  return 1;
}

/// array(elements or length): a plain array; elements of a length are empty.
int MakeArray(lua_State* lua) {
  lua_settop(lua, 1);
  Variable& made = PushBox(lua);
  if (lua_istable(lua, 1)) {
    ReadValue(lua, 1, made);
  } else if (const Variable* boxed = BoxedValue(lua, 1)) {
    if (!HasElements(*boxed)) RefuseArgument(lua, 1, "elements or a length");
    if (!CopyElements(made, *boxed)) throw std::bad_alloc();
  } else if (lua_isinteger(lua, 1) != 0 && lua_tointeger(lua, 1) >= 0) {
    made.Init(VARTYPE_ARRAY, lua_tointeger(lua, 1));
    if (made.GetDim() != lua_tointeger(lua, 1)) throw std::bad_alloc();
  } else {
    RefuseArgument(lua, 1, "elements or a length");
  }
  return 1;
}

/// totable(value): the elements of a host value as a table.
int ToTable(lua_State* lua) {
  const Variable* boxed = BoxedValue(lua, 1);
  if (boxed == nullptr || !HasElements(*boxed)) RefuseArgument(lua, 1, "an array or a vector");
  PushTable(lua, *boxed);
  return 1;
}

// Modules and uniform source ----------------------------------------------------------------------

/// Load(path)
int LoadFromScript(lua_State* lua) {
  if (lua_type(lua, 1) != LUA_TSTRING) RefuseArgument(lua, 1, "a path");
  if (std::optional<HostError> error = LoadModule(HostOf(lua), lua_tostring(lua, 1))) {
    throw RaisedError(*std::move(error));
  }
  return 0;
}

/// Rand([limit]): a uniform deviate in [0, limit), the limit being 1 where none is given.
int RandFromScript(lua_State* lua) {
  double limit = 1.0;
  if (!lua_isnoneornil(lua, 1)) {
    if (lua_type(lua, 1) != LUA_TNUMBER) RefuseArgument(lua, 1, "a number");
    limit = lua_tonumber(lua, 1);
  }
  lua_pushnumber(lua, Rand(limit));
  return 1;
}

std::uint64_t UnpredictableSeed() {
  std::random_device device;
  return (std::uint64_t{device()} << 32) | device();
}

/// Seed([n]): restarts the built-in source from n, or from a seed that nobody can foretell.
int SeedFromScript(lua_State* lua) {
  if (lua_isnoneornil(lua, 1)) {
    HostOf(lua).builtinSource.Seed(UnpredictableSeed());
  } else if (lua_isinteger(lua, 1) != 0) {
    HostOf(lua).builtinSource.Seed(static_cast<std::uint64_t>(lua_tointeger(lua, 1)));
  } else {
    RefuseArgument(lua, 1, "a whole number");
  }
  return 0;
}

constexpr NativeFunction kFunctions[] = {
    {"print", Print},         {"array", MakeArray},
    {"complex", MakeComplex}, {"totable", ToTable},
    {"Load", LoadFromScript}, {"Rand", RandFromScript},
    {"Seed", SeedFromScript}, {"ReadColumns", ReadColumnsFromScript},
};

/// Makes the constructor of a class a global.
void PublishConstructor(lua_State* lua, const ScriptClass& scriptClass, const char* name) {
  lua_pushlightuserdata(lua, const_cast<ScriptClass*>(&scriptClass));
  PushCopiedNativeFunction(lua, {name, Construct}, 1);
  lua_setglobal(lua, name);
}

/// The request to stop a script uses the interpreter's hook, so scripts cannot have it.
void TakeHookFromScripts(lua_State* lua) {
  lua_getglobal(lua, "debug");
  lua_pushnil(lua);
  lua_setfield(lua, -2, "sethook");
  lua_pop(lua, 1);
}

}  // namespace

void OpenLibrary(lua_State* lua) {
  for (const NativeFunction& function : kFunctions) {
    PushNativeFunction(lua, function);
    lua_setglobal(lua, function.name);
  }
  for (const ScriptClass* scriptClass : ScriptClasses()) {
    PublishConstructor(lua, *scriptClass, scriptClass->Name());
    // Besides, in lower case like `array`, the vector that scripts use most.
    if (std::string_view(scriptClass->Name()) == "Vector") {
      PublishConstructor(lua, *scriptClass, "vector");
    }
  }
  TakeHookFromScripts(lua);
}

}  // namespace tarn
