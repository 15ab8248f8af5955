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
#include "host/lua_methods.h"
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
  if (member != nullptr && !IsHiddenFromScripts(*member)) {
    PushShared(lua, *member);
    return true;
  }
  if (PushClassMethod(lua, object.Class(), name)) return true;
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

constexpr NativeFunction kIndexBox{nullptr, IndexBox};

/// The number in an element of an array or vector, which scripts read most, without the machinery
/// of native functions; false where there is more to it.
bool PushNumberElement(lua_State* lua) {
  int isInteger = 0;
  const lua_Integer key = lua_tointegerx(lua, 2, &isInteger);
  const Variable* value = isInteger == 0 ? nullptr : BoxedValue(lua, 1);
  const Variable* elements = value == nullptr ? nullptr : value->GetArray();
  if (elements == nullptr || key < 1 || key > HeaderOf(elements)->count) return false;
  const Variable& element = elements[key - 1];
  if (Access::Type(element) == kReal) {
    lua_pushnumber(lua, Access::Data(element).real);
  } else if (Access::Type(element) == kInteger) {
    lua_pushinteger(lua, Access::Data(element).integer);
  } else {
    return false;
  }
  return true;
}

int IndexBoxQuickly(lua_State* lua) {
  return PushNumberElement(lua) ? 1 : RunNativeFunction(lua, kIndexBox);
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

/// Ends the script when it is about to set a member that it does not see.
void RequireSettable(const Object& object, const char* name) {
  const std::uint16_t nameId = FindNameId(name);
  const Variable* member = nameId == kNoName ? nullptr : object.FindMember(nameId);
  if (member == nullptr || !IsHiddenFromScripts(*member)) return;
  throw ScriptError(kErrorArgument, "the member \"" + std::string(name) +
                                        "\" of an object of class " + object.Class().Name() +
                                        " cannot be set");
}

int WriteMember(lua_State* lua, Object& object) {
  RequireSettable(object, lua_tostring(lua, 2));
  Variable written;
  ReadValue(lua, 3, written);
  const std::uint16_t nameId = MakeNameId(lua_tostring(lua, 2));
  Variable* member = nameId == kNoName ? nullptr : object.FindOrCreateMember(nameId);
  if (member == nullptr) FailForMemory();
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

constexpr NativeFunction kWriteBox{nullptr, WriteBox};

/// The same for storing a real number where a number is.
bool StoreNumberElement(lua_State* lua) {
  int isInteger = 0;
  const lua_Integer key = lua_tointegerx(lua, 2, &isInteger);
  if (isInteger == 0 || lua_type(lua, 3) != LUA_TNUMBER || lua_isinteger(lua, 3) != 0) return false;
  const Variable* value = BoxedValue(lua, 1);
  Variable* elements = value == nullptr ? nullptr : value->GetArray();
  if (elements == nullptr || key < 1 || key > HeaderOf(elements)->count) return false;
  if (!Access::IsPlain(elements[key - 1])) return false;
  elements[key - 1] = lua_tonumber(lua, 3);
  return true;
}

int WriteBoxQuickly(lua_State* lua) {
  return StoreNumberElement(lua) ? 0 : RunNativeFunction(lua, kWriteBox);
}

int BoxLength(lua_State* lua) {
  if (CallOperator(lua, "__len", 1)) return 1;
  lua_pushinteger(lua, RequireBox(lua, 1).GetDim());
  return 1;
}

int BoxToText(lua_State* lua) {
  if (CallOperator(lua, "__tostring", 1)) {
    if (lua_type(lua, -1) == LUA_TSTRING) return 1;
    throw ScriptError(kErrorScript, "the operator __tostring gave " + DescribeKind(lua, -1));
  }
  const std::string text = ValueText(RequireBox(lua, 1));
  lua_pushlstring(lua, text.data(), text.size());
  return 1;
}

/// Complex numbers are equal by value, objects as their class says, everything else when it is the
/// same storage.
int BoxesEqual(lua_State* lua) {
  if (CallOperator(lua, "__eq", 2)) {
    lua_pushboolean(lua, lua_tonumber(lua, -1) != 0.0);
    return 1;
  }
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

/// Objects whose class has the operator use it, everything else may be complex numbers.
template <const char* name, int operands, int (*otherwise)(lua_State*)>
int Arithmetic(lua_State* lua) {
  return CallOperator(lua, name, operands) ? 1 : otherwise(lua);
}

int RefusePower(lua_State* lua) {
  const int base = lua_type(lua, 1) == LUA_TNUMBER ? 2 : 1;
  throw ScriptError(kErrorArgument, DescribeKind(lua, base) + " has no powers");
}

int CallBox(lua_State* lua) {
  if (CallOperator(lua, "__call", 1)) return 1;
  throw ScriptError(kErrorArgument, DescribeKind(lua, 1) + " cannot be called");
}

constexpr char kAdd[] = "__add";
constexpr char kSubtract[] = "__sub";
constexpr char kMultiply[] = "__mul";
constexpr char kDivide[] = "__div";
constexpr char kNegate[] = "__unm";
constexpr char kPower[] = "__pow";

/// The visible member after the one whose name is at `index`; the first where nothing is there.
const Member* MemberAfter(lua_State* lua, int index, const Object& object) {
  if (lua_type(lua, index) != LUA_TSTRING) return VisibleMember(object.FirstMember());
  const std::uint16_t nameId = FindNameId(lua_tostring(lua, index));
  const Member* member = object.FirstMember();
  while (member != nullptr && member->nameId != nameId) member = member->next;
  return member == nullptr ? nullptr : VisibleMember(member->next);
}

/// The step of `pairs`: key and value after a key, elements first, then members.
int NextInBox(lua_State* lua) {
  lua_settop(lua, 2);
  const Variable& value = RequireBox(lua, 1);
  const bool inElements = lua_type(lua, 2) != LUA_TSTRING;
  const lua_Integer next = lua_tointeger(lua, 2) + 1;
  if (inElements && next <= value.GetDim()) {
    lua_pushinteger(lua, next);
    lua_replace(lua, 2);
    lua_pushvalue(lua, 2);
    return 1 + ReadElement(lua, value);
  }
  const Object* object = value.GetObject();
  const Member* member = object == nullptr ? nullptr : MemberAfter(lua, 2, *object);
  if (member == nullptr) {
    lua_pushnil(lua);
    return 1;
  }
  lua_pushstring(lua, NameText(member->nameId));
  PushShared(lua, member->value);
  return 2;
}

constexpr NativeFunction kNextInBox{"next", NextInBox};

int IterateBox(lua_State* lua) {
  RequireBox(lua, 1);
  PushNativeFunction(lua, kNextInBox);
  lua_pushvalue(lua, 1);
  lua_pushnil(lua);
  return 3;
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
    {"__pairs", {nullptr, IterateBox}},
    {"__len", {nullptr, BoxLength}},
    {"__tostring", {nullptr, BoxToText}},
    {"__eq", {nullptr, BoxesEqual}},
    {"__gc", {nullptr, CollectBox}},
    {kAdd, {nullptr, Arithmetic<kAdd, 2, AddComplex>}},
    {kSubtract, {nullptr, Arithmetic<kSubtract, 2, SubtractComplex>}},
    {kMultiply, {nullptr, Arithmetic<kMultiply, 2, MultiplyComplex>}},
    {kDivide, {nullptr, Arithmetic<kDivide, 2, DivideComplex>}},
    {kNegate, {nullptr, Arithmetic<kNegate, 1, NegateComplex>}},
    {kPower, {nullptr, Arithmetic<kPower, 2, RefusePower>}},
    {"__call", {nullptr, CallBox}},
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
  if (!Access::DeepCopy(PushBox(lua), value)) FailForMemory();
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
  lua_pushstring(lua, RequireBox(lua, 1).KindName());
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
  lua_pushcfunction(lua, IndexBoxQuickly);
  lua_setfield(lua, -2, "__index");
  lua_pushcfunction(lua, WriteBoxQuickly);
  lua_setfield(lua, -2, "__newindex");
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
