#include "host/lua_complex.h"

#include <complex>
#include <string_view>

#include "frame/error_numbers.h"

using Access = VariableAccess;

namespace tarn {
namespace {

using Complex = std::complex<double>;

Complex RequireComplex(lua_State* lua, int index) {
  if (lua_type(lua, index) == LUA_TNUMBER) return {lua_tonumber(lua, index), 0.0};
  const Variable* boxed = BoxedValue(lua, index);
  if (boxed == nullptr || Access::Type(*boxed) != kComplex) {
    throw ScriptError(kErrorArgument, "arithmetic needs numbers or complex numbers, got " +
                                          DescribeKind(lua, index));
  }
  const ComplexNumber number = Access::Complex(*boxed);
  return {number.real, number.imaginary};
}

int PushComplex(lua_State* lua, Complex number) {
  Variable& boxed = PushBox(lua);
  Access::SetComplex(boxed, {number.real(), number.imag()});
  if (Access::Type(boxed) != kComplex) FailForMemory();
  return 1;
}

int PushNumber(lua_State* lua, double number) {
  lua_pushnumber(lua, number);
  return 1;
}

}  // namespace

bool PushComplexField(lua_State* lua, const Variable& value, const char* name) {
  if (Access::Type(value) != kComplex) return false;
  const std::string_view field = name;
  const ComplexNumber number = Access::Complex(value);
  if (field == "real") return PushNumber(lua, number.real) == 1;
  if (field == "imag") return PushNumber(lua, number.imaginary) == 1;
  return false;
}

int AddComplex(lua_State* lua) {
  return PushComplex(lua, RequireComplex(lua, 1) + RequireComplex(lua, 2));
}

int SubtractComplex(lua_State* lua) {
  return PushComplex(lua, RequireComplex(lua, 1) - RequireComplex(lua, 2));
}

int MultiplyComplex(lua_State* lua) {
  return PushComplex(lua, RequireComplex(lua, 1) * RequireComplex(lua, 2));
}

int DivideComplex(lua_State* lua) {
  return PushComplex(lua, RequireComplex(lua, 1) / RequireComplex(lua, 2));
}

int NegateComplex(lua_State* lua) { return PushComplex(lua, -RequireComplex(lua, 1)); }

int ComplexAbs(lua_State* lua) { return PushNumber(lua, std::abs(RequireComplex(lua, 1))); }

int ComplexArg(lua_State* lua) { return PushNumber(lua, std::arg(RequireComplex(lua, 1))); }

int ComplexConj(lua_State* lua) { return PushComplex(lua, std::conj(RequireComplex(lua, 1))); }

int MakeComplex(lua_State* lua) {
  for (int index = 1; index <= 2; ++index) {
    if (lua_type(lua, index) == LUA_TNUMBER || (index == 2 && lua_isnoneornil(lua, 2))) continue;
    throw ScriptError(kErrorArgument, "argument " + std::to_string(index) +
                                          " must be a number, got " + DescribeKind(lua, index));
  }
  return PushComplex(lua, {lua_tonumber(lua, 1), lua_tonumber(lua, 2)});
}

}  // namespace tarn
