#ifndef TARN_OPTIM_CLIMB_PROGRESS_IMPL_H
#define TARN_OPTIM_CLIMB_PROGRESS_IMPL_H

/// @file
/// `T_Climb`: the progress window, and what every solve does at its beginning and end.

#include <cmath>
#include <cstdio>

#include "optim/climb.h"
#include "optim/search_host.h"

namespace tarn {

/// What to report for a solve that ended at `value` for `reason` as far as its method could see.
/// What happened in its last line search counts first: there, an error of the objective, say, looks
/// like convergence.
template <class T>
StopReason ReasonBehind(StopReason reason, const SolveRecord& record, T value) {
  const StopReason last = record.lineSearchReason;
  if (record.outOfMemory) return StopReason::kMemoryExhausted;
  switch (last) {
    case StopReason::kCancelled:
    case StopReason::kObjectiveError:
    case StopReason::kMemoryExhausted:
    case StopReason::kNotANumber:
      return last;
    case StopReason::kLineSearchLimit:
      return reason == StopReason::kIterationLimit ? reason : last;
    default:
      return std::isnan(value) ? StopReason::kNotANumber : reason;
  }
}

}  // namespace tarn

/// Whether a window is set that is not an empty value.
template <class T>
bool T_Climb<T>::HasProgressWnd() {
  if (progressWnd_.TypeWord() == VARTYPE_EMPTY) return false;
  VarRegister window;
  window.PointTo(&progressWnd_);
  return window.GetVar().TypeWord() != VARTYPE_EMPTY;
}

template <class T>
void T_Climb<T>::SetProgress(Processor& processor, int value) {
  VarRegister result;
  VarRegister arguments[1];
  arguments[0] = value;
  processor.RunMethod(result, "SetProgress", arguments, 1, &progressWnd_);
}

template <class T>
void T_Climb<T>::SetCaption(Processor& processor, T residue) {
  char caption[64];
  std::snprintf(caption, sizeof caption, "Residue = %.10g", static_cast<double>(residue));
  VarRegister result;
  VarRegister arguments[1];
  arguments[0] = caption;
  processor.RunMethod(result, "SetCaption", arguments, 1, &progressWnd_);
}

/// Lets the window raise the error by which the user cancels.
template <class T>
void T_Climb<T>::CheckCancel(Processor& processor) {
  VarRegister result;
  processor.RunMethodAsIs(result, "CheckCancel", nullptr, 0, &progressWnd_);
}

/// Start of a solve. False when an error is pending after the window was asked: the solve is over
/// before it began.
template <class T>
bool T_Climb<T>::StartProgress(int value) {
  Processor* processor = GetOwner();
  if (processor == nullptr || !HasProgressWnd()) return true;
  SetProgress(*processor, value);
  CheckCancel(*processor);
  if (processor->pendingError == 0) return true;
  record_.reason = tarn::PendingErrorReason(*processor);
  return false;
}

/// The calls of every tenth pass.
template <class T>
void T_Climb<T>::ReportProgress(Processor& processor, int pass, T residue) {
  SetProgress(processor, pass % 100);
  SetCaption(processor, residue);
  CheckCancel(processor);
}

/// Progress of the methods that count passes from 0. True when an error is pending afterwards.
template <class T>
bool T_Climb<T>::PassCancelled(int pass, T residue) {
  Processor* processor = GetOwner();
  if (processor == nullptr || pass % 10 != 0 || !HasProgressWnd()) return false;
  ReportProgress(*processor, pass, residue);
  return processor->pendingError != 0;
}

template <class T>
void T_Climb<T>::EndProgress(Processor& processor, T residue) {
  if (!HasProgressWnd()) return;
  SetProgress(processor, 100);
  SetCaption(processor, residue);
  CheckCancel(processor);
}

/// Forgets the matrices computed for an earlier point.
template <class T>
void T_Climb<T>::ClearCaches() {
  covarianceCache_.Set(T(0));
  hessianCache_.Set(T(0));
}

/// Keeps why the solve ended: for `reason`, unless something else was behind it.
template <class T>
void T_Climb<T>::EndSolve(tarn::StopReason reason, T value) {
  const Processor* processor = GetOwner();
  record_.reason = tarn::IsErrorPending(processor) ? tarn::PendingErrorReason(*processor)
                                                   : tarn::ReasonBehind(reason, record_, value);
}

#endif
