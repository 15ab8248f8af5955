/// @file
/// What modules ask of the interpreter: instances, calls and methods.

#include <string>

#include "frame/error_numbers.h"
#include "host/host_state.h"
#include "host/names.h"
#include "host/script_class.h"
#include "host/script_function.h"

using Access = VariableAccess;

namespace tarn {
namespace {

int Fail(const std::string& message) {
  TarnError(kErrorArgument, message.c_str());
  return 0;
}

/// Converts the argument of a method to its declared type.
void ConvertArgument(Variable& target, const Variable& argument, MethodParameter type) {
  if (type == MethodParameter::kInteger) {
    target = argument.GetInt32Numb();
  } else if (argument.IsNumber() != 0) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.15g", argument.GetDoubleNumb());
    Access::SetText(target, text);
  } else {
    target = argument;
  }
}

int RunBuiltinMethod(Object& object, const ScriptMethod& method, VarRegister* arguments, int count,
                     Variable& result, bool convert) {
  if (count != method.ParameterCount()) {
    return Fail(std::string("method ") + method.name + " expects " +
                std::to_string(method.ParameterCount()) + " arguments, got " +
                std::to_string(count));
  }
  const std::int64_t raisedBefore = CurrentHost()->raisedErrors;
  if (convert && count == 1) {
    VarRegister converted;
    ConvertArgument(converted.GetVar(), arguments[0].GetVar(), method.parameter);
    method.run(object, &converted, result);
  } else {
    method.run(object, arguments, result);
  }
  return CurrentHost()->raisedErrors == raisedBefore ? 1 : 0;
}

int CallMethod(Variable& object, const char* name, VarRegister* arguments, int count,
               Variable& result, bool convert) {
  Object* instance = object.GetObject();
  if (instance == nullptr) return Fail(std::string("method ") + name + " of a value without class");
  const ScriptMethod* method = instance->Class().FindMethod(name);
  if (method == nullptr) {
    return Fail(std::string("class ") + instance->Class().Name() + " has no method " + name);
  }
  return RunBuiltinMethod(*instance, *method, arguments, count, result, convert);
}

}  // namespace
}  // namespace tarn

Processor::~Processor() = default;

void Engine::FlushIdle() {
  const tarn::HostState* host = tarn::CurrentHost();
  if (host != nullptr && host->idleWork) host->idleWork();
}

int Processor::MakeInstance(Variable& value, const char* className, VarRegister* arguments,
                            int count) {
  const tarn::ScriptClass* scriptClass =
      className == nullptr ? nullptr : tarn::FindScriptClass(className);
  Variable made;
  if (scriptClass == nullptr) {
    tarn::Fail(std::string("there is no class ") + (className == nullptr ? "" : className));
  } else {
    scriptClass->Construct(made, arguments, count);
  }
  const int succeeded = made.IsObject() ? 1 : 0;
  Access::Move(Access::Resolve(value), made);
  return succeeded;
}

int Processor::RunFunctionAsIs(VarRegister& /*result*/, Variable& function,
                               VarRegister* /*arguments*/, int /*count*/) {
  if (Access::Type(Access::Resolve(function)) != tarn::kFunction) {
    return tarn::Fail("the value called is no function");
  }
  return 0;
}

int Processor::RunMethod(VarRegister& object, const char* method, VarRegister* arguments, int count,
                         Variable& result) {
  return tarn::CallMethod(object.GetVar(), method, arguments, count, result, true);
}

int Processor::RunMethodAsIs(VarRegister& object, const char* method, VarRegister* arguments,
                             int count, Variable& result) {
  return tarn::CallMethod(object.GetVar(), method, arguments, count, result, false);
}

int Processor::RunMethod(VarRegister& result, const char* method, VarRegister* arguments, int count,
                         Variable* object) {
  return tarn::CallMethod(*object, method, arguments, count, result.GetVar(), true);
}

int Processor::RunMethodAsIs(VarRegister& result, const char* method, VarRegister* arguments,
                             int count, Variable* object) {
  return tarn::CallMethod(*object, method, arguments, count, result.GetVar(), false);
}
