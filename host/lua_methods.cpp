#include "host/lua_methods.h"

#include <new>

#include "host/lua_trampoline.h"
#include "host/lua_values.h"
#include "host/object.h"
#include "host/script_class.h"

namespace tarn {
namespace {

/// Pushes the table of methods of a class, whose address is the key in the registry, or nil.
int PushMethodTable(lua_State* lua, const ScriptClass& scriptClass) {
  return lua_rawgetp(lua, LUA_REGISTRYINDEX, &scriptClass);
}

}  // namespace

void PublishMethod(lua_State* lua, const RegisteredFunction& method) {
  const ScriptClass* scriptClass = FindOrMakeScriptClass(method.signature.className);
  if (scriptClass == nullptr) FailForMemory();
  if (PushMethodTable(lua, *scriptClass) != LUA_TTABLE) {
    lua_pop(lua, 1);
    lua_newtable(lua);
    lua_pushvalue(lua, -1);
    lua_rawsetp(lua, LUA_REGISTRYINDEX, scriptClass);
  }
  const std::string_view name = method.signature.MethodName();
  lua_pushlstring(lua, name.data(), name.size());
  PushRegisteredFunction(lua, method);
  lua_rawset(lua, -3);
  lua_pop(lua, 1);
}

bool PushClassMethod(lua_State* lua, const ScriptClass& scriptClass, const char* name) {
  if (PushMethodTable(lua, scriptClass) == LUA_TTABLE) {
    lua_pushstring(lua, name);
    if (lua_rawget(lua, -2) != LUA_TNIL) {
      lua_remove(lua, -2);
      return true;
    }
    lua_pop(lua, 1);
  }
  lua_pop(lua, 1);
  return false;
}

bool CallOperator(lua_State* lua, const char* name, int operands) {
  const int count = lua_gettop(lua);
  for (int index = 1; index <= operands && index <= count; ++index) {
    const Variable* boxed = BoxedValue(lua, index);
    const Object* object = boxed == nullptr ? nullptr : boxed->GetObject();
    if (object == nullptr || !PushClassMethod(lua, object->Class(), name)) continue;
    lua_insert(lua, 1);
    lua_call(lua, count, 1);
    return true;
  }
  return false;
}

}  // namespace tarn
