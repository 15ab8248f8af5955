#ifndef TARN_HOST_LUA_COMPLEX_H
#define TARN_HOST_LUA_COMPLEX_H

/// @file
/// Complex numbers in scripts: fields `real` and `imag`, arithmetic with each other and with
/// numbers, `z:abs()`, `z:arg()`, `z:conj()`.

#include "host/lua_values.h"

namespace tarn {

/// Pushes the field of a complex number. False, and nothing pushed, when `value` or name is other.
bool PushComplexField(lua_State* lua, const Variable& value, const char* name);

// Native functions; both operands may be numbers or complex numbers.
int AddComplex(lua_State* lua);
int SubtractComplex(lua_State* lua);
int MultiplyComplex(lua_State* lua);
int DivideComplex(lua_State* lua);
int NegateComplex(lua_State* lua);
int ComplexAbs(lua_State* lua);
int ComplexArg(lua_State* lua);
int ComplexConj(lua_State* lua);
/// complex(real [, imaginary])
int MakeComplex(lua_State* lua);

}  // namespace tarn

#endif
