#include "callback.h"

#include <limits>

#include "results.h"

namespace tarn::toolkit {
namespace {

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

}  // namespace

double Callback::Run(VarRegister* arguments, int count) {
  Processor* processor = GetOwner();
  if (HasFailed() || processor == nullptr) return kNoValue;
  VarRegister result;
  if (processor->RunFunctionAsIs(result, function_, arguments, count) == 0) {
    errorNumber_ = processor->GetLastError();
    return kNoValue;
  }
  const Variable& value = result.GetVar();
  if (value.IsNumber() != 0) return value.GetDoubleNumb();
  mistake_ = name_ + " must return a number, it returned " + value.KindName();
  return kNoValue;
}

double Callback::At(double x) {
  VarRegister argument;
  argument = x;
  return Run(&argument, 1);
}

double Callback::At(const T_MatVector<double>& x) {
  VarRegister argument;
  return Pass(x, argument) ? Run(&argument, 1) : kNoValue;
}

double Callback::At(const T_MatVector<double>& x, int i) {
  VarRegister arguments[2];
  arguments[1] = i + 1;
  return Pass(x, arguments[0]) ? Run(arguments, 2) : kNoValue;
}

double Callback::At(const T_MatVector<double>& x, int i, int j) {
  VarRegister arguments[3];
  arguments[1] = i + 1;
  arguments[2] = j + 1;
  return Pass(x, arguments[0]) ? Run(arguments, 3) : kNoValue;
}

/// Whether the point found memory as an argument.
bool Callback::Pass(const T_MatVector<double>& x, VarRegister& argument) {
  x.ExportToMVector(argument.GetVar());
  if (argument.GetVar().GetDim() == x.Dim()) return true;
  if (!HasFailed()) errorNumber_ = kErrorMemory;
  return false;
}

void Callback::RequireSuccess() const {
  if (!mistake_.empty()) {
    ForgetError();
    Refuse(mistake_);
  }
  if (errorNumber_ == 0) return;
  // A search may have cleared the error on its way; it still is the last one, with its text.
  Processor* processor = GetOwner();
  if (processor->GetLastError() != errorNumber_) {
    throw Fault(errorNumber_, processor->GetErrorName(errorNumber_));
  }
  processor->pendingError = 1;
  throw AlreadyRaised();
}

}  // namespace tarn::toolkit
