/// @file
/// Boxes: host values that stay host values while a script holds them.
///
/// A box can be indexed from 1 on, has a length, and reads as text. Objects show their members and
/// methods by name. Every box has the methods of `kBoxMethods`.

#include <cmath>
#include <new>

#include "frame/error_numbers.h"
#include "host/container.h"
#include "host/error_table.h"
#include "host/lua_complex.h"
#include "host/lua_values.h"
#include "host/method_call.h"
#include "host/names.h"
#include "host/object.h"
#include "host/script_class.h"
#include "host/value_text.h"

using Access = VariableAccess;

namespace tarn {
namespace {

// Their addresses are keys in the registry.
constexpr char kBoxMetatable = 0;
constexpr char kBoxMethodTable = 0;

Variable& RequireBox(lua_State* lua, int index) {
  Variable* boxed = BoxedValue(lua, index);
  if (boxed != nullptr) return *boxed;
  throw ScriptError(kErrorArgument, "argument " + std::to_string(index) +
                                        " must be a host value, got " + DescribeKind(lua, index));
}

/// The element index that is at `index` of the stack, counted from 0; -1 for what is none.
std::int64_t ElementIndex(lua_State* lua, int index) {
  int isInteger = 0;
  const lua_Integer key = lua_tointegerx(lua, index, &isInteger);
  return isInteger != 0 && key >= 1 ? key - 1 : -1;
}

int ReadElement(lua_State* lua, const Variable& value) {
  const std::int64_t index = ElementIndex(lua, 2);
  if (index < 0 || index >= value.GetDim()) {
    lua_pushnil(lua);
  } else if (Access::Type(value) == kBytes) {
    lua_pushinteger(lua, static_cast<unsigned char>(static_cast<const char*>(value)[index]));
  } else {
    PushShared(lua, value.GetArray()[index]);
  }
  return 1;
}

// Methods of objects ------------------------------------------------------------------------------

/// Calls the method named by the upvalue on the object that is the first argument.
int CallObjectMethod(lua_State* lua) {
  const std::string name = lua_tostring(lua, NativeUpvalue(1));
  Variable& object = RequireBox(lua, 1);
  const auto count = static_cast<std::size_t>(lua_gettop(lua) - 1);
  ArgumentRegisters registers(count);
  for (std::size_t i = 0; i < count; ++i) {
    ReadValue(lua, static_cast<int>(i) + 2, registers[i].GetVar());
  }
  HostState& host = HostOf(lua);
  Variable result;
  {
    const PendingErrorAside aside(host);
    CallMethod(host, object, name.c_str(), registers.Get(), static_cast<int>(count), result,
               Conversion::kToDeclaredTypes);
    if (std::optional<HostError> error = aside.Raised()) throw RaisedError(*std::move(error));
  }
  PushMoved(lua, result);
  return 1;
}

constexpr NativeFunction kCallObjectMethod{nullptr, CallObjectMethod};

/// Pushes the member or method of the object. False, and nothing pushed, when there is none.
bool PushMember(lua_State* lua, const Object& object, const char* name) {
  const std::uint16_t nameId = FindNameId(name);
  const Variable* member = nameId == kNoName ? nullptr : object.FindMember(nameId);
  if (member != nullptr) {
    PushShared(lua, *member);
    return true;
  }
  if (object.Class().FindMethod(name) == nullptr) return false;
  lua_pushstring(lua, name);
  PushNativeFunction(lua, kCallObjectMethod, 1);
  return true;
}

int ReadNamed(lua_State* lua, const Variable& value) {
  const char* name = lua_tostring(lua, 2);
  const Object* object = value.GetObject();
  if (object != nullptr && PushMember(lua, *object, name)) return 1;
  if (PushComplexField(lua, value, name)) return 1;
  lua_rawgetp(lua, LUA_REGISTRYINDEX, &kBoxMethodTable);
  lua_pushvalue(lua, 2);
  lua_rawget(lua, -2);
  return 1;
}

// Metamethods -------------------------------------------------------------------------------------

int IndexBox(lua_State* lua) {
  const Variable& value = RequireBox(lua, 1);
  switch (lua_type(lua, 2)) {
    case LUA_TNUMBER:
      return ReadElement(lua, value);
    case LUA_TSTRING:
      return ReadNamed(lua, value);
    default:
      lua_pushnil(lua);
      return 1;
  }
}

int WriteByte(lua_State* lua, Variable& bytes, std::int64_t index) {
  const lua_Integer number = lua_isinteger(lua, 3) != 0 ? lua_tointeger(lua, 3) : -1;
  if (number < 0 || number > 255) {
    throw ScriptError(kErrorArgument,
                      "a byte is a whole number from 0 to 255, got " + DescribeValue(lua, 3));
  }
  static_cast<char*>(bytes)[index] = static_cast<char>(static_cast<unsigned char>(number));
  return 0;
}

int WriteElement(lua_State* lua, Variable& value) {
  const std::int64_t index = ElementIndex(lua, 2);
  if (index < 0 || index >= value.GetDim()) {
    throw ScriptError(kErrorArgument, "index " + DescribeValue(lua, 2) + " is not one of the " +
                                          std::to_string(value.GetDim()) + " elements");
  }
  if (Access::Type(value) == kBytes) return WriteByte(lua, value, index);
  Variable& element = value.GetArray()[index];
  if (lua_type(lua, 3) == LUA_TNUMBER && lua_isinteger(lua, 3) == 0) {
    element = lua_tonumber(lua, 3);
    return 0;
  }
  // Read aside: reading may fail, and the element may be what is read.
  Variable written;
  ReadValue(lua, 3, written);
  Access::Move(Access::Resolve(element), written);
  return 0;
}

int WriteMember(lua_State* lua, Object& object) {
  Variable written;
  ReadValue(lua, 3, written);
  const std::uint16_t nameId = MakeNameId(lua_tostring(lua, 2));
  Variable* member = nameId == kNoName ? nullptr : object.FindOrCreateMember(nameId);
  if (member == nullptr) throw ScriptError(kErrorMemory, "memory exhausted");
  Access::Move(Access::Resolve(*member), written);
  return 0;
}

int WriteBox(lua_State* lua) {
  Variable& value = RequireBox(lua, 1);
  if (lua_type(lua, 2) == LUA_TNUMBER) return WriteElement(lua, value);
  if (lua_type(lua, 2) == LUA_TSTRING && value.GetObject() != nullptr) {
    return WriteMember(lua, *value.GetObject());
  }
  throw ScriptError(kErrorArgument,
                    DescribeKind(value) + " has no field to be set by " + DescribeValue(lua, 2));
}

int BoxLength(lua_State* lua) {
  lua_pushinteger(lua, RequireBox(lua, 1).GetDim());
  return 1;
}

int BoxToText(lua_State* lua) {
  const std::string text = ValueText(RequireBox(lua, 1));
  lua_pushlstring(lua, text.data(), text.size());
  return 1;
}

/// Complex numbers are equal by value, everything else when it is the same storage.
int BoxesEqual(lua_State* lua) {
  const Variable& left = RequireBox(lua, 1);
  const Variable& right = RequireBox(lua, 2);
  const bool sameType = Access::Type(left) == Access::Type(right);
  if (sameType && Access::Type(left) == kComplex) {
    const ComplexNumber a = Access::Complex(left);
    const ComplexNumber b = Access::Complex(right);
    lua_pushboolean(lua, a.real == b.real && a.imaginary == b.imaginary);
  } else {
    lua_pushboolean(lua, sameType && Access::Data(left).block == Access::Data(right).block);
  }
  return 1;
}

/// The box stays a valid empty value: a finaliser of a script may still hold it.
int CollectBox(lua_State* lua) {
  if (Variable* boxed = BoxedValue(lua, 1)) boxed->Clear();
  return 0;
}

constexpr struct {
  const char* event;
  NativeFunction function;
} kMetamethods[] = {
    {"__index", {nullptr, IndexBox}},      {"__newindex", {nullptr, WriteBox}},
    {"__len", {nullptr, BoxLength}},       {"__tostring", {nullptr, BoxToText}},
    {"__eq", {nullptr, BoxesEqual}},       {"__gc", {nullptr, CollectBox}},
    {"__add", {nullptr, AddComplex}},      {"__sub", {nullptr, SubtractComplex}},
    {"__mul", {nullptr, MultiplyComplex}}, {"__div", {nullptr, DivideComplex}},
    {"__unm", {nullptr, NegateComplex}},
};

// Methods of every box ----------------------------------------------------------------------------

/// value:table(), the elements as a table.
int BoxToTable(lua_State* lua) {
  const Variable& value = RequireBox(lua, 1);
  if (!HasElements(value)) {
    throw ScriptError(kErrorArgument, DescribeKind(value) + " has no elements");
  }
  PushTable(lua, value);
  return 1;
}

/// value:copy(), a deep copy.
int CopyBox(lua_State* lua) {
  const Variable& value = RequireBox(lua, 1);
  if (!Access::DeepCopy(PushBox(lua), value)) throw ScriptError(kErrorMemory, "memory exhausted");
  return 1;
}

/// bytes:text(), the bytes as a string.
int BytesToText(lua_State* lua) {
  const Variable& value = RequireBox(lua, 1);
  if (value.TypeWord() != VARTYPE_BYTES) {
    throw ScriptError(kErrorArgument, DescribeKind(value) + " holds no bytes");
  }
  lua_pushlstring(lua, static_cast<const char*>(value), static_cast<std::size_t>(value.GetDim()));
  return 1;
}

/// value:kind(), the class of an object, a word for everything else.
int BoxKind(lua_State* lua) {
  const Variable& value = RequireBox(lua, 1);
  const Object* object = value.GetObject();
  const std::uint32_t type = Access::Type(value);
  const char* kind = object != nullptr  ? object->Class().Name()
                     : type == kArray   ? "array"
                     : type == kComplex ? "complex"
                     : type == kBytes   ? "bytes"
                                        : "pointer";
  lua_pushstring(lua, kind);
  return 1;
}

constexpr struct {
  const char* name;
  NativeFunction function;
} kBoxMethods[] = {
    {"table", {"table", BoxToTable}}, {"copy", {"copy", CopyBox}},  {"text", {"text", BytesToText}},
    {"kind", {"kind", BoxKind}},      {"abs", {"abs", ComplexAbs}}, {"arg", {"arg", ComplexArg}},
    {"conj", {"conj", ComplexConj}},
};

}  // namespace

void OpenBoxes(lua_State* lua) {
  lua_createtable(lua, 0, 16);
  for (const auto& metamethod : kMetamethods) {
    PushNativeFunction(lua, metamethod.function);
    lua_setfield(lua, -2, metamethod.event);
  }
  lua_pushliteral(lua, "host value");
  lua_setfield(lua, -2, "__name");
  lua_pushboolean(lua, 0);
  lua_setfield(lua, -2, "__metatable");
  lua_rawsetp(lua, LUA_REGISTRYINDEX, &kBoxMetatable);

  lua_createtable(lua, 0, 8);
  for (const auto& method : kBoxMethods) {
    PushNativeFunction(lua, method.function);
    lua_setfield(lua, -2, method.name);
  }
  lua_rawsetp(lua, LUA_REGISTRYINDEX, &kBoxMethodTable);
}

Variable& PushBox(lua_State* lua) {
  // The interpreter runs no finalisers for boxes that are made while it ends.
  if (HostOf(lua).closing) throw ScriptError(kErrorScript, "the interpreter is ending");
  auto* value = new (lua_newuserdatauv(lua, sizeof(Variable), 0)) Variable;
  lua_rawgetp(lua, LUA_REGISTRYINDEX, &kBoxMetatable);
  lua_setmetatable(lua, -2);
  return *value;
}

Variable* BoxedValue(lua_State* lua, int index) {
  if (lua_type(lua, index) != LUA_TUSERDATA || lua_getmetatable(lua, index) == 0) return nullptr;
  lua_rawgetp(lua, LUA_REGISTRYINDEX, &kBoxMetatable);
  const bool isBox = lua_rawequal(lua, -1, -2) != 0;
  lua_pop(lua, 2);
  return isBox ? static_cast<Variable*>(lua_touserdata(lua, index)) : nullptr;
}

}  // namespace tarn
