/// @file
/// ReadColumns(path [, options]): one host array per column and, where the file has a header line,
/// a table of the same arrays by name.

#include "frame/error_numbers.h"
#include "host/column_reader.h"
#include "host/error_table.h"
#include "host/lua_library.h"
#include "host/lua_values.h"

namespace tarn {
namespace {

[[noreturn]] void FailOption(const std::string& problem) {
  throw ScriptError(kErrorArgument, "argument 2: " + problem);
}

/// The option whose value is at the top of the stack, its name below it.
void ReadOption(lua_State* lua, ColumnOptions& options) {
  const std::string name = lua_type(lua, -2) == LUA_TSTRING ? lua_tostring(lua, -2) : "";
  if (name == "header") {
    options.header = lua_toboolean(lua, -1) != 0;
  } else if (name == "skip") {
    const lua_Integer lines = lua_isinteger(lua, -1) != 0 ? lua_tointeger(lua, -1) : -1;
    if (lines < 0) FailOption("skip must be a number of lines, got " + DescribeValue(lua, -1));
    options.skippedLines = static_cast<std::size_t>(lines);
  } else if (name == "separator") {
    if (lua_type(lua, -1) != LUA_TSTRING || lua_rawlen(lua, -1) != 1) {
      FailOption("separator must be one character, got " + DescribeValue(lua, -1));
    }
    options.separator = lua_tostring(lua, -1);
  } else {
    FailOption("there is no option \"" + name + "\", only header, skip and separator");
  }
}

ColumnOptions ReadOptions(lua_State* lua) {
  ColumnOptions options;
  if (lua_isnoneornil(lua, 2)) return options;
  if (!lua_istable(lua, 2)) FailOption("must be a table, got " + DescribeKind(lua, 2));
  for (lua_pushnil(lua); lua_next(lua, 2) != 0; lua_pop(lua, 1)) ReadOption(lua, options);
  return options;
}

void PushColumn(lua_State* lua, const std::vector<double>& numbers) {
  Variable& column = PushBox(lua);
  const auto count = static_cast<std::int64_t>(numbers.size());
  column.Init(VARTYPE_ARRAY, count);
  if (column.GetDim() != count) throw ScriptError(kErrorMemory, "memory exhausted");
  Variable* element = column.GetArray();
  for (const double number : numbers) *element++ = number;
}

/// Pushes a table of the columns, which are the topmost values of the stack, by name.
void PushColumnsByName(lua_State* lua, const std::vector<std::string>& names) {
  const int first = lua_gettop(lua) - static_cast<int>(names.size()) + 1;
  lua_createtable(lua, 0, static_cast<int>(names.size()));
  int column = first;
  for (const std::string& name : names) {
    lua_pushlstring(lua, name.data(), name.size());
    lua_pushvalue(lua, column++);
    lua_rawset(lua, -3);
  }
}

}  // namespace

int ReadColumnsFromScript(lua_State* lua) {
  if (lua_type(lua, 1) != LUA_TSTRING) {
    throw ScriptError(kErrorArgument, "argument 1 must be a path, got " + DescribeKind(lua, 1));
  }
  const ColumnOptions options = ReadOptions(lua);
  Columns columns;
  try {
    columns = ReadColumnFile(lua_tostring(lua, 1), options);
  } catch (const ColumnError& error) {
    throw ScriptError(kErrorFile, error.what());
  }
  const auto count = static_cast<int>(columns.columns.size());
  luaL_checkstack(lua, count + 8, "too many columns");
  for (const std::vector<double>& column : columns.columns) PushColumn(lua, column);
  if (columns.names.empty()) return count;
  PushColumnsByName(lua, columns.names);
  return count + 1;
}

}  // namespace tarn
