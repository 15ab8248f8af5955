#include "host/script_position.h"

#include <lua.hpp>

namespace tarn {
namespace {

/// The full name of a chunk that was loaded from a file or under a name of its own; for nameless
/// text the interpreter's short form of it.
std::string ChunkName(const lua_Debug& function) {
  const bool isNamed = function.source[0] == '@' || function.source[0] == '=';
  return isNamed ? function.source + 1 : function.short_src;
}

/// Finds the function at a level of the call stack. False beyond the last one.
bool FunctionAt(lua_State* thread, int level, lua_Debug& function) {
  if (lua_getstack(thread, level, &function) == 0) return false;
  lua_getinfo(thread, "Sl", &function);
  return true;
}

std::string PositionIn(const std::string& chunk, int line) {
  return chunk + ":" + std::to_string(line);
}

}  // namespace

std::string ScriptPosition(lua_State* thread) {
  lua_Debug function;
  for (int level = 0; FunctionAt(thread, level, function); ++level) {
    if (function.currentline > 0) return PositionIn(ChunkName(function), function.currentline);
  }
  return {};
}

LocatedMessage LocateMessage(lua_State* thread, std::string_view message) {
  lua_Debug function;
  for (int level = 0; FunctionAt(thread, level, function); ++level) {
    if (function.currentline <= 0) continue;
    const std::string prefix = PositionIn(function.short_src, function.currentline) + ": ";
    if (!message.starts_with(prefix)) continue;
    return {PositionIn(ChunkName(function), function.currentline),
            std::string(message.substr(prefix.size()))};
  }
  return {ScriptPosition(thread), std::string(message)};
}

LocatedMessage SplitSyntaxMessage(std::string_view message) {
  for (std::size_t colon = message.find(':'); colon != std::string_view::npos;
       colon = message.find(':', colon + 1)) {
    const std::size_t end = message.find_first_not_of("0123456789", colon + 1);
    if (end == std::string_view::npos || end == colon + 1) continue;
    if (!message.substr(end).starts_with(": ")) continue;
    return {std::string(message.substr(0, end)), std::string(message.substr(end + 2))};
  }
  return {{}, std::string(message)};
}

}  // namespace tarn
