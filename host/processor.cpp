/// @file
/// What modules ask of the interpreter besides calls of functions: instances, methods, idle work.

#include <string>

#include "frame/error_numbers.h"
#include "host/host_state.h"
#include "host/method_call.h"
#include "host/script_class.h"
#include "host/variable_access.h"

namespace {

int CallMethodOfCurrentHost(Variable& object, const char* method, VarRegister* arguments, int count,
                            Variable& result, bool convert) {
  tarn::HostState* host = tarn::CurrentHost();
  if (host == nullptr) return 0;
  return tarn::CallMethod(*host, object, method, arguments, count, result, convert) ? 1 : 0;
}

}  // namespace

Processor::~Processor() = default;

void Engine::FlushIdle() {
  const tarn::HostState* host = tarn::CurrentHost();
  if (host != nullptr && host->idleWork) host->idleWork();
}

int Processor::MakeInstance(Variable& value, const char* className, VarRegister* arguments,
                            int count) {
  const std::string name = className == nullptr ? "" : className;
  const tarn::ScriptClass* scriptClass = tarn::FindScriptClass(name);
  // Made aside, because an argument may refer to the value.
  Variable made;
  if (scriptClass == nullptr) {
    TarnError(tarn::kErrorArgument, ("there is no class " + name).c_str());
  } else {
    scriptClass->Construct(made, arguments, count);
  }
  const int succeeded = made.IsObject() ? 1 : 0;
  VariableAccess::Move(VariableAccess::Resolve(value), made);
  return succeeded;
}

int Processor::RunMethod(VarRegister& object, const char* method, VarRegister* arguments, int count,
                         Variable& result) {
  return CallMethodOfCurrentHost(object.GetVar(), method, arguments, count, result, true);
}

int Processor::RunMethodAsIs(VarRegister& object, const char* method, VarRegister* arguments,
                             int count, Variable& result) {
  return CallMethodOfCurrentHost(object.GetVar(), method, arguments, count, result, false);
}

int Processor::RunMethod(VarRegister& result, const char* method, VarRegister* arguments, int count,
                         Variable* object) {
  return CallMethodOfCurrentHost(*object, method, arguments, count, result.GetVar(), true);
}

int Processor::RunMethodAsIs(VarRegister& result, const char* method, VarRegister* arguments,
                             int count, Variable* object) {
  return CallMethodOfCurrentHost(*object, method, arguments, count, result.GetVar(), false);
}
