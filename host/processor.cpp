/// @file
/// What modules ask of the interpreter: instances, calls of functions and methods, idle work.

#include <new>
#include <string>

#include "frame/error_numbers.h"
#include "host/host_state.h"
#include "host/method_call.h"
#include "host/script_class.h"
#include "host/variable_access.h"

namespace {

/// Runs what a module asked for. No exception reaches the module: where there is no memory even for
/// the text of an error, the error is that one.
template <class Operation>
int RunForModule(Operation operation) {
  tarn::HostState* host = tarn::CurrentHost();
  if (host == nullptr) return 0;
  try {
    return operation(*host) ? 1 : 0;
  } catch (const std::bad_alloc&) {
    host->Raise(tarn::kErrorMemory, nullptr);
    return 0;
  }
}

/// Makes an object in the empty `value`.
bool MakeInstanceIn(Variable& value, const char* className, VarRegister* arguments, int count) {
  const std::string name = className == nullptr ? "" : className;
  const tarn::ScriptClass* scriptClass = tarn::FindScriptClass(name);
  if (scriptClass != nullptr) return scriptClass->Construct(value, arguments, count);
  TarnError(tarn::kErrorArgument, ("there is no class " + name).c_str());
  return false;
}

int CallMethodFor(Variable* object, const char* method, VarRegister* arguments, int count,
                  Variable& result, tarn::Conversion conversion) {
  return RunForModule([&](tarn::HostState& host) {
    Variable nothing;
    Variable& instance = object == nullptr ? nothing : *object;
    return tarn::CallMethod(host, instance, method, arguments, count, result, conversion);
  });
}

}  // namespace

Processor::~Processor() = default;

void Engine::FlushIdle() {
  const tarn::HostState* host = tarn::CurrentHost();
  if (host != nullptr && host->idleWork) host->idleWork();
}

int Processor::MakeInstance(Variable& value, const char* className, VarRegister* arguments,
                            int count) {
  // Made aside, because an argument may refer to the value.
  Variable made;
  const int succeeded = RunForModule(
      [&](tarn::HostState& /*host*/) { return MakeInstanceIn(made, className, arguments, count); });
  VariableAccess::Move(VariableAccess::Resolve(value), made);
  return succeeded;
}

int Processor::RunFunctionAsIs(VarRegister& result, Variable& function, VarRegister* arguments,
                               int count) {
  return RunForModule([&](tarn::HostState& host) {
    return tarn::CallScriptFunction(host, function, arguments, count, nullptr, result.GetVar());
  });
}

int Processor::RunMethod(VarRegister& object, const char* method, VarRegister* arguments, int count,
                         Variable& result) {
  return CallMethodFor(&object.GetVar(), method, arguments, count, result,
                       tarn::Conversion::kToDeclaredTypes);
}

int Processor::RunMethodAsIs(VarRegister& object, const char* method, VarRegister* arguments,
                             int count, Variable& result) {
  return CallMethodFor(&object.GetVar(), method, arguments, count, result, tarn::Conversion::kNone);
}

int Processor::RunMethod(VarRegister& result, const char* method, VarRegister* arguments, int count,
                         Variable* object) {
  return CallMethodFor(object, method, arguments, count, result.GetVar(),
                       tarn::Conversion::kToDeclaredTypes);
}

int Processor::RunMethodAsIs(VarRegister& result, const char* method, VarRegister* arguments,
                             int count, Variable* object) {
  return CallMethodFor(object, method, arguments, count, result.GetVar(), tarn::Conversion::kNone);
}
