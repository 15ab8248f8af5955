#ifndef TARN_OPTIM_CLIMB_EVALUATE_IMPL_H
#define TARN_OPTIM_CLIMB_EVALUATE_IMPL_H

/// @file
/// `T_Climb`: conversion between scaled and real coordinates, calls of the user functions, trace.

#include <cstddef>

#include "optim/climb.h"
#include "optim/search_host.h"

namespace tarn {

/// n scaled coordinates in real units; `bounds` holds two per coordinate. Without a range it is the
/// lower bound: a choice between values, so that compilers work on several coordinates at a time.
template <class T>
void ToRealCoordinates(T* x, const T* s, const T* invRange, const T* bounds, int n) {
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const T lower = bounds[2 * i];
    const T real = s[i] / invRange[i] + lower;
    x[i] = invRange[i] == 0 ? lower : real;
  }
}

}  // namespace tarn

template <class T>
T_MatVectorCol<T>& T_Climb<T>::ScaleResult(T_MatVectorCol<T>& s) {
  resultBuffer_.SetDim(dimension_);
  if (s.Dim() != dimension_ || resultBuffer_.Dim() != dimension_) return resultBuffer_;
  tarn::ToRealCoordinates<T>(resultBuffer_, s, invRange_, boundaries_, dimension_);
  return resultBuffer_;
}

template <class T>
T_MatVectorCol<T>& T_Climb<T>::GetResult() {
  return ScaleResult(bestPoint_);
}

/// s = the N real values at `x` in scaled coordinates; 0 for fixed variables. False when s cannot
/// take them.
template <class T>
bool T_Climb<T>::ToScaled(T_MatVectorCol<T>& s, const T* x) const {
  s.SetDim(dimension_);
  if (s.Dim() != dimension_) return false;
  for (int i = 0; i < dimension_; ++i) {
    s[i] = IsFixed(i) ? T(0) : (x[i] - LowerBound(i)) * invRange_[i];
  }
  return true;
}

/// Keeps in the record that memory was refused unless `granted`, which it returns.
template <class T>
bool T_Climb<T>::RecordMemory(bool granted) {
  record_.outOfMemory = record_.outOfMemory || !granted;
  return granted;
}

/// Room for a batch of `count` points, and for the copy that the objective gets of each.
template <class T>
bool T_Climb<T>::ReservePool(int count) {
  evaluatedPoint_.SetDim(dimension_);
  return RecordMemory(pool_.Reserve(count, dimension_) && evaluatedPoint_.Dim() == dimension_);
}

template <class T>
T T_Climb<T>::Func(T_MatVector<T>& x) {
  ++record_.evaluations;
  using Function = T (*)(T_MatVector<T>&, Variable*);
  if (auto* native = tarn::NativeFunction<Function>(function_)) return native(x, &extraParam_);
  Processor* processor = GetOwner();
  if (processor == nullptr) return T(0);
  VarRegister arguments[2];
  x.ExportToMVector(arguments[0].GetVar());
  tarn::PassByReference(arguments[1], extraParam_);
  return tarn::RunScriptFunction<T>(*processor, function_, arguments, 2);
}

/// The objective at a scaled point. An objective that was written for variables whose storage was
/// refused is not called without them.
template <class T>
T T_Climb<T>::FuncAtScaled(T_MatVectorCol<T>& s) {
  return storageRefused_ ? T(0) : Func(ScaleResult(s));
}

/// Evaluates the scaled points one after the other. Each gets a copy, because an objective may
/// write to its argument. Where there is no room for copies, the values are 0.
template <class T>
void T_Climb<T>::_DoParallelCalculation(T* values, T_MatVectorCol<T>* points, int count) {
  evaluatedPoint_.SetDim(dimension_);
  const bool canEvaluate = RecordMemory(evaluatedPoint_.Dim() == dimension_) && !storageRefused_;
  for (int k = 0; k < count; ++k) {
    if (canEvaluate) evaluatedPoint_ = ScaleResult(points[k]);
    values[k] = canEvaluate ? Func(evaluatedPoint_) : T(0);
  }
}

template <class T>
T T_Climb<T>::CalculateDerivative(Variable& derivFunc, T_MatVector<T>& x, int i) {
  using Function = T (*)(T_MatVector<T>&, int, Variable*);
  if (auto* native = tarn::NativeFunction<Function>(derivFunc)) return native(x, i, &extraParam_);
  Processor* processor = GetOwner();
  if (processor == nullptr) return T(0);
  VarRegister arguments[3];
  x.ExportToMVector(arguments[0].GetVar());
  arguments[1] = i;
  tarn::PassByReference(arguments[2], extraParam_);
  return tarn::RunScriptFunction<T>(*processor, derivFunc, arguments, 3);
}

/// A script function of second derivatives is told about three of the four arguments only: x, i and
/// j. That is how scripts know it.
template <class T>
T T_Climb<T>::CalculateDerivative2(Variable& deriv2Func, T_MatVector<T>& x, int i, int j) {
  using Function = T (*)(T_MatVector<T>&, int, int, Variable*);
  if (auto* native = tarn::NativeFunction<Function>(deriv2Func)) {
    return native(x, i, j, &extraParam_);
  }
  Processor* processor = GetOwner();
  if (processor == nullptr) return T(0);
  VarRegister arguments[4];
  x.ExportToMVector(arguments[0].GetVar());
  arguments[1] = i;
  arguments[2] = j;
  tarn::PassByReference(arguments[3], extraParam_);
  return tarn::RunScriptFunction<T>(*processor, deriv2Func, arguments, 3);
}

/// Derivatives in real coordinates by one call per index. The whole vector is computed anew for
/// every free variable: user functions may count on being called k*N times for k free variables.
template <class T>
void T_Climb<T>::CalculateGradient(T_MatVectorCol<T>& grad, Variable& derivFunc,
                                   T_MatVector<T>& x) {
  for (int i = 0; i < dimension_; ++i) {
    if (IsFixed(i)) {
      grad[i] = T(0);
    } else if (!CalculateAllDerivatives(grad, derivFunc, x)) {
      return;
    }
  }
}

/// grad_j for every j. False when there is no processor to ask.
template <class T>
bool T_Climb<T>::CalculateAllDerivatives(T_MatVectorCol<T>& grad, Variable& derivFunc,
                                         T_MatVector<T>& x) {
  using Function = T (*)(T_MatVector<T>&, int, Variable*);
  if (auto* native = tarn::NativeFunction<Function>(derivFunc)) {
    for (int j = 0; j < dimension_; ++j) grad[j] = native(x, j, &extraParam_);
    return true;
  }
  Processor* processor = GetOwner();
  if (processor == nullptr) return false;
  VarRegister arguments[3];
  x.ExportToMVector(arguments[0].GetVar());
  tarn::PassByReference(arguments[2], extraParam_);
  for (int j = 0; j < dimension_; ++j) {
    arguments[1] = j;
    grad[j] = tarn::RunScriptFunction<T>(*processor, derivFunc, arguments, 3);
  }
  return true;
}

template <class T>
void T_Climb<T>::TraceResult(T residue) {
  if (silent_ != 0) return;
  Processor* processor = GetOwner();
  if (processor == nullptr) return;
  Buffer buffer(tarn::kTraceBufferSize);
  for (int i = 0; i < dimension_; ++i) {
    buffer.Printf(tarn::kTraceBufferSize, "%g ", static_cast<double>(bestPoint_[i]));
  }
  buffer.Printf(tarn::kTraceBufferSize, "\r\nResidue = %g\r\n", static_cast<double>(residue));
  processor->PrintText(buffer.GetText());
}

#endif
