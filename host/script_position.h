#ifndef TARN_HOST_SCRIPT_POSITION_H
#define TARN_HOST_SCRIPT_POSITION_H

/// @file
/// Where in which script file something happens.

#include <string>
#include <string_view>

struct lua_State;

namespace tarn {

/// "file:line" of the innermost script function that is running; empty when there is none.
std::string ScriptPosition(lua_State* thread);

/// A message of the interpreter, split into the position that it starts with and the rest.
struct LocatedMessage {
  std::string where;
  std::string message;
};

/// Splits a message by comparing its beginning with the positions of all functions that are
/// running. A message without position is located at the innermost of them.
LocatedMessage LocateMessage(lua_State* thread, std::string_view message);

/// Splits the message of a text that does not compile, which starts with "file:line: ".
LocatedMessage SplitSyntaxMessage(std::string_view message);

}  // namespace tarn

#endif
