#include "host/method_call.h"

#include <string>
#include <vector>

#include "frame/error_numbers.h"
#include "host/function_call.h"
#include "host/names.h"
#include "host/script_class.h"
#include "host/value_text.h"
#include "host/variable_access.h"

using Access = VariableAccess;

namespace tarn {
namespace {

bool Fail(HostState& host, const std::string& message) {
  host.Raise(kErrorArgument, message.c_str());
  return false;
}

void ConvertArgument(Variable& target, const Variable& argument, MethodParameter type) {
  if (type == MethodParameter::kInteger) {
    target = argument.GetInt32Numb();
  } else if (argument.IsNumber() != 0) {
    Access::SetText(target, NumberText(argument.GetDoubleNumb()));
  } else {
    target = argument;
  }
}

bool CallOwnMethod(HostState& host, Object& object, const ScriptMethod& method,
                   VarRegister* arguments, int count, Variable& result, Conversion conversion) {
  const int expected = method.ParameterCount();
  if (count != expected) {
    return Fail(host, std::string("method ") + method.name + " " +
                          CountProblem(static_cast<std::size_t>(expected),
                                       static_cast<std::size_t>(count)));
  }
  const std::int64_t raisedBefore = host.raisedErrors;
  if (conversion == Conversion::kToDeclaredTypes && count == 1) {
    VarRegister converted;
    ConvertArgument(converted.GetVar(), arguments[0].GetVar(), method.parameter);
    method.run(object, &converted, result);
  } else {
    method.run(object, arguments, result);
  }
  return host.raisedErrors == raisedBefore;
}

bool CallModuleMethod(HostState& host, Variable& object, const RegisteredFunction& method,
                      VarRegister* arguments, int count, Variable& result) {
  std::vector<Variable*> places{&Access::Resolve(object)};
  for (int i = 0; i < count; ++i) places.push_back(&arguments[i].GetVar());
  Variable made;
  std::optional<HostError> error = CallRegistered(host, method, places, made);
  if (error) {
    host.MakePending(*std::move(error));
    return false;
  }
  Access::Move(Access::Resolve(result), made);
  return true;
}

/// The script function that a member of that name holds; null when there is none.
const Variable* FindScriptMethod(const Object& object, const char* name) {
  const std::uint16_t nameId = FindNameId(name);
  const Variable* member = nameId == kNoName ? nullptr : object.FindMember(nameId);
  if (member == nullptr) return nullptr;
  const Variable& value = Access::Resolve(*member);
  return Access::Type(value) == kFunction ? &value : nullptr;
}

}  // namespace

bool CallMethod(HostState& host, Variable& object, const char* name, VarRegister* arguments,
                int count, Variable& result, Conversion conversion) {
  Object* instance = object.GetObject();
  if (instance == nullptr || name == nullptr) {
    return Fail(host, DescribeKind(object) + " has no methods");
  }
  if (const Variable* function = FindScriptMethod(*instance, name)) {
    return CallScriptFunction(host, *function, arguments, count, &object, result);
  }
  const std::string className = instance->Class().Name();
  if (const RegisteredFunction* method = host.functions.Find(className + '.' + name)) {
    return CallModuleMethod(host, object, *method, arguments, count, result);
  }
  const ScriptMethod* method = instance->Class().FindMethod(name);
  if (method == nullptr) return Fail(host, "class " + className + " has no method " + name);
  return CallOwnMethod(host, *instance, *method, arguments, count, result, conversion);
}

}  // namespace tarn
