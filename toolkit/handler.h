#ifndef TARN_TOOLKIT_HANDLER_H
#define TARN_TOOLKIT_HANDLER_H

/// @file
/// From a function of this module to a row of its function table.

#include "frame/module_entry.h"

namespace tarn::toolkit {

/// What a function gets and where its value goes.
struct Call {
  VarRegister& resultRegister;
  VarRegister* arguments;

  /// The value of the argument at a zero-based place; of a method, place 0 is the object.
  Variable& Argument(int place) const { return arguments[place].GetVar(); }
  /// Whether an optional argument was given.
  bool Has(int place) const { return Argument(place).TypeWord() != VARTYPE_EMPTY; }
  Variable& Result() const { return resultRegister.GetVar(); }
};

using Body = void (*)(const Call& call);

/// Runs a function and hands what it throws to the host as an error.
void RunBody(Body body, const Call& call);

/// The handler of a row: `{Handler<Norm>, "MVector.Norm(refer object MVector)"}`.
template <Body body>
void Handler(VarRegister& result, VarRegister* arguments) {
  RunBody(body, Call{result, arguments});
}

}  // namespace tarn::toolkit

#endif
