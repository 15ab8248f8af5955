/// @file
/// Completion of names at a prompt.

#include <algorithm>
#include <iterator>

#include "host/interpreter.h"
#include "host/lua_values.h"
#include "host/names.h"
#include "host/object.h"
#include "host/script_class.h"

namespace tarn {
namespace {

using Names = std::vector<std::string>;

/// The string keys of the table at the top of the stack.
void CollectKeys(lua_State* lua, Names& names) {
  const int table = lua_gettop(lua);
  for (lua_pushnil(lua); lua_next(lua, table) != 0; lua_pop(lua, 1)) {
    if (lua_type(lua, -2) == LUA_TSTRING) names.emplace_back(lua_tostring(lua, -2));
  }
}

void CollectMembers(const HostState& host, const Variable& value, Names& names) {
  const Object* object = value.GetObject();
  if (object == nullptr) return;
  for (const Member* member = VisibleMember(object->FirstMember()); member != nullptr;
       member = VisibleMember(member->next)) {
    names.push_back(NameOf(member->nameId));
  }
  for (const ScriptMethod& method : object->Class().Methods()) names.emplace_back(method.name);
  for (const RegisteredFunction* function : host.functions.All()) {
    const Signature& signature = function->signature;
    if (signature.className == object->Class().Name() && !signature.MethodName().starts_with("__"))
      names.emplace_back(signature.MethodName());
  }
}

/// What can follow the value at the top of the stack and a dot or colon.
void CollectFields(lua_State* lua, Names& names) {
  if (lua_istable(lua, -1)) {
    CollectKeys(lua, names);
  } else if (const Variable* boxed = BoxedValue(lua, -1)) {
    CollectMembers(HostOf(lua), *boxed, names);
  }
}

/// Replaces the table at the top of the stack by its field; nil where there is none.
void EnterField(lua_State* lua, const std::string& name) {
  if (lua_istable(lua, -1)) {
    lua_pushlstring(lua, name.data(), name.size());
    lua_rawget(lua, -2);
  } else {
    lua_pushnil(lua);
  }
  lua_remove(lua, -2);
}

/// Completes the last name of "name.name:na"; `path` is what stands before it.
Names CompleteIn(lua_State* lua, const std::string& prefix) {
  lua_pushglobaltable(lua);
  std::size_t begin = 0;
  for (std::size_t end = prefix.find_first_of(".:"); end != std::string::npos;
       end = prefix.find_first_of(".:", begin)) {
    EnterField(lua, prefix.substr(begin, end - begin));
    begin = end + 1;
  }
  Names fields;
  CollectFields(lua, fields);
  Names completed;
  for (const std::string& field : fields) {
    if (field.starts_with(prefix.substr(begin)))
      completed.push_back(prefix.substr(0, begin) + field);
  }
  return completed;
}

}  // namespace

Names CompleteName(HostState& host, const std::string& prefix) {
  Names names;
  RunProtected(host, [&](lua_State* lua) { names = CompleteIn(lua, prefix); });
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

}  // namespace tarn
