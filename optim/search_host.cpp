#include "optim/search_host.h"

#include <cstring>

namespace tarn {

bool IsErrorPending(const Processor* processor) {
  return processor != nullptr && processor->pendingError != 0;
}

bool IsLastErrorCancel(const Processor& processor) {
  return std::strcmp(processor.GetErrorName(processor.GetLastError()),
                     "Progress window got cancel") == 0;
}

StopReason PendingErrorReason(const Processor& processor) {
  return IsLastErrorCancel(processor) ? StopReason::kCancelled : StopReason::kObjectiveError;
}

StopReason ObjectiveErrorWatch::Reason(StopReason reason) const {
  return HasRaised() ? PendingErrorReason(*GetOwner()) : reason;
}

double CallScriptFunction(Variable& function, double x, Variable& extra) {
  Processor* processor = GetOwner();
  if (processor == nullptr) return 0.0;
  VarRegister arguments[2];
  arguments[0] = x;
  PassByReference(arguments[1], extra);
  return RunScriptFunction<double>(*processor, function, arguments, 2);
}

void TraceArgument(double argument, double value) {
  Processor* processor = GetOwner();
  if (processor == nullptr) return;
  Buffer buffer(kTraceBufferSize);
  buffer.Printf(kTraceBufferSize, "Argument = %g, Function = %g\r\n", argument, value);
  processor->PrintText(buffer.GetText());
}

}  // namespace tarn
