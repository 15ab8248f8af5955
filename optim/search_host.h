#ifndef TARN_OPTIM_SEARCH_HOST_H
#define TARN_OPTIM_SEARCH_HOST_H

/// @file
/// What all searches ask of the host in the same way: whether a function is native, what kind of
/// error is pending, where trace text goes.

#include "frame/host.h"
#include "optim/stop_reason.h"

namespace tarn {

/// Room that the searches ask for in the host's text buffers, and the first argument of its
/// `Printf` calls.
inline constexpr int kTraceBufferSize = 128;

/// The native function held by `function`, to be called as a `Function` pointer; null when the
/// value holds something else, which is then for the interpreter to call.
template <class Function>
Function NativeFunction(const Variable& function) {
  if (function.TypeWord() != VARTYPE_CPP_POINTER) return nullptr;
  return reinterpret_cast<Function>(function.GetCppPointer());
}

/// Whether an error is pending; false without a processor.
bool IsErrorPending(const Processor* processor);

/// Whether the last error raised is the one by which a user cancels.
bool IsLastErrorCancel(const Processor& processor);

/// How the error that is pending is reported as the end of a search.
StopReason PendingErrorReason(const Processor& processor);

/// Watches one run of a search: says whether an error was raised during it that is still pending.
/// One that was pending before hides those of the run.
class ObjectiveErrorWatch {
 public:
  ObjectiveErrorWatch() : pendingBefore_(IsErrorPending(GetOwner())) {}
  bool HasRaised() const { return !pendingBefore_ && IsErrorPending(GetOwner()); }
  /// The reason to report for a run that ended for `reason` by itself.
  StopReason Reason(StopReason reason) const;

 private:
  bool pendingBefore_;
};

/// Marks `argument` as `value` passed by reference, so that a script function may change it.
inline void PassByReference(VarRegister& argument, Variable& value) {
  argument.PointTo(&value);
  argument.SetRef();
}

/// The value of a script function for `count` arguments, as a number. Whether the call succeeded
/// shows in the processor's pending-error flag only.
template <class T>
T RunScriptFunction(Processor& processor, Variable& function, VarRegister* arguments, int count) {
  VarRegister result;
  processor.RunFunctionAsIs(result, function, arguments, count);
  return static_cast<T>(result);
}

/// f(x, extra) of a script function of one variable; 0 without a processor.
double CallScriptFunction(Variable& function, double x, Variable& extra);

/// Prints "Argument = %g, Function = %g" and a line end; nothing without a processor.
void TraceArgument(double argument, double value);

}  // namespace tarn

#endif
