#ifndef TARN_FRAME_SCRIPT_DISPATCH_H
#define TARN_FRAME_SCRIPT_DISPATCH_H

/// @file
/// Element-wise application of a scalar function to a script argument of any kind.
///
/// | kind of argument (tested in this order) | result |
/// |---|---|
/// | plain number | f(number) |
/// | vector value (object of class 42) | f of the one number that the host makes of it |
/// | array (type 1024 or a class inheriting 1) | new plain array, f of every element |
/// | tabulated function (object of class "TFunc") | deep copy with f of every ordinate "Y" |
/// | anything else | host error 3, the result stays as it was |

#include <cstdint>

#include "frame/error_numbers.h"
#include "frame/host.h"

namespace tarn {

/// What the dispatch distinguishes.
enum class ArgumentKind { kNumber, kVectorValue, kArray, kTabulatedFunction, kOther };

/// The kind of an argument value.
ArgumentKind ClassifyArgument(const Variable& argument);

/// target[i] = f(source[i]) for i = 0 ... count-1 in order; both may be the same storage.
template <class Function>
void MapElements(Variable* target, const Variable* source, std::int64_t count, Function f) {
  for (std::int64_t i = 0; i < count; ++i) target[i] = f(source[i].GetDoubleNumb());
}

/// Makes `target` a plain array with f of every element of `source`, another value.
template <class Function>
void MapArrayInto(Variable& target, const Variable& source, Function f) {
  const std::int64_t count = source.GetDim();
  target.Init(VARTYPE_ARRAY, count);
  // The host heap may have refused the elements; the result is then an empty array.
  if (target.GetDim() != count) return;
  MapElements(target.GetArray(), source.GetArray(), count, f);
}

/// Maps `argument`, which may be the result, part of it or around it. What an empty result or a
/// number holds is nobody's argument, and needs no value aside.
template <class Function>
void MapArray(Variable& result, const Variable& argument, Function f) {
  if (result.TypeWord() == VARTYPE_EMPTY || result.IsNumber() != 0) {
    MapArrayInto(result, argument, f);
    return;
  }
  Variable mapped;
  MapArrayInto(mapped, argument, f);
  result = mapped;
}

/// The ordinates are read from the copy: the assignment may have freed an argument that was part of
/// the result.
template <class Function>
void MapTabulatedFunction(Variable& result, const Variable& argument, Function f) {
  if (&result != &argument) result = argument;
  Variable& ordinates = result("Y");
  if (ordinates.GetArray() == nullptr) return;  // bytes have a length, but no elements
  MapElements(ordinates.GetArray(), ordinates.GetArray(), ordinates.GetDim(), f);
}

/// Applies f to the argument's value by its kind and writes the result register.
template <class Function>
void ApplyElementWise(VarRegister& resultRegister, VarRegister& argumentRegister, Function f) {
  Variable& argument = argumentRegister.GetVar();
  Variable& result = resultRegister.GetVar();
  switch (ClassifyArgument(argument)) {
    case ArgumentKind::kNumber:
    case ArgumentKind::kVectorValue:
      result = f(argument.GetDoubleNumb());
      return;
    case ArgumentKind::kArray:
      MapArray(result, argument, f);
      return;
    case ArgumentKind::kTabulatedFunction:
      MapTabulatedFunction(result, argument, f);
      return;
    case ArgumentKind::kOther:
      TarnError(kErrorArgument);
      return;
  }
}

}  // namespace tarn

#endif
