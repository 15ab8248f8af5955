#include "host/function_call.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "frame/error_numbers.h"
#include "host/container.h"
#include "host/script_class.h"

namespace tarn {
namespace {

std::string DescribeObject(const Variable& value) {
  if (value.IsInheritFrom(VARCLASS_VECTOR) != 0) return "a vector value";
  return std::string("an object of class ") + value.GetObject()->Class().Name();
}

/// What is wrong with the elements of a vector-like value; empty: all are numbers.
std::string ElementProblem(const Variable& value, std::size_t number) {
  const Variable* elements = value.GetArray();
  const std::int64_t count = value.GetDim();
  for (std::int64_t i = 0; i < count; ++i) {
    if (elements[i].IsNumber() != 0) continue;
    return ArgumentSubject(number) + ", element " + std::to_string(i + 1) +
           " must be a number, got " + DescribeKind(elements[i]);
  }
  return {};
}

std::string SetObject(VarRegister& target, const Parameter& parameter, Variable& value,
                      std::size_t number) {
  std::string problem;
  if (parameter.className == "Vector" && HasElements(value)) {
    problem = ElementProblem(value, number);
  } else {
    const ScriptClass* wanted = FindScriptClass(parameter.className);
    const bool fits =
        wanted != nullptr && value.GetObject() != nullptr && wanted == &value.GetObject()->Class();
    if (!fits) {
      problem = ArgumentProblem(number, DescribeParameter(parameter), DescribeValue(value));
    }
  }
  target.PointTo(&value);
  target.SetRef();
  return problem;
}

/// Whether a value can be given where options are wanted: named values, or elements alone.
bool HoldsOptions(const Variable& value) {
  if (HasElements(value)) return true;
  const char* kind = value.KindName();
  return value.GetObject() != nullptr &&
         (std::strcmp(kind, "Options") == 0 || std::strcmp(kind, "Record") == 0);
}

bool FitsAsItIs(const Parameter& parameter, const Variable& value) {
  switch (parameter.kind) {
    case ParameterKind::kText:
      return VariableAccess::Type(VariableAccess::Resolve(value)) == kText;
    case ParameterKind::kFunction:
      return VariableAccess::Type(VariableAccess::Resolve(value)) == kFunction;
    case ParameterKind::kOptions:
      return HoldsOptions(value);
    default:
      return true;
  }
}

}  // namespace

bool IsOwnValue(VarRegister& value) {
  const auto* begin = reinterpret_cast<const char*>(&value);
  const auto* held = reinterpret_cast<const char*>(&value.GetVar());
  return held >= begin && held < begin + sizeof(value);
}

bool IsWholeInt32(double number) {
  return number == std::trunc(number) && number >= std::numeric_limits<std::int32_t>::min() &&
         number <= std::numeric_limits<std::int32_t>::max();
}

std::string DescribeNumber(double number) {
  if (std::isnan(number)) return "nan";
  char text[32];
  std::snprintf(text, sizeof(text), "%.15g", number);
  return text;
}

std::string DescribeKind(const Variable& value) {
  const Variable& resolved = VariableAccess::Resolve(value);
  switch (VariableAccess::Type(resolved)) {
    case kEmpty:
      return "nothing";
    case kInteger:
    case kReal:
      return "a number";
    case kPointer:
      return "a native pointer";
    case kFunction:
      return "a function";
    case kComplex:
      return "a complex number";
    case kText:
      return "a text";
    case kBytes:
      return "a byte block";
    case kArray:
      return "an array";
    default:
      return DescribeObject(resolved);
  }
}

std::string DescribeValue(const Variable& value) {
  return value.IsNumber() != 0 ? DescribeNumber(value.GetDoubleNumb()) : DescribeKind(value);
}

std::string ArgumentSubject(std::size_t number) {
  return number == 0 ? "the object of the method" : "argument " + std::to_string(number);
}

std::string ArgumentProblem(std::size_t number, const std::string& wanted, const std::string& got) {
  return ArgumentSubject(number) + " must be " + wanted + ", got " + got;
}

std::string CountProblem(std::size_t expected, std::size_t got) {
  return "expected " + std::to_string(expected) + (expected == 1 ? " argument" : " arguments") +
         ", got " + std::to_string(got);
}

std::string CountProblem(const Signature& signature, std::size_t got) {
  const std::size_t most = signature.parameters.size();
  const std::size_t fewest = signature.RequiredCount();
  if (got >= fewest && got <= most) return {};
  const std::size_t objects = signature.ObjectCount();
  if (got < objects) {
    return "must be called on an object, as object:" + std::string(signature.MethodName()) +
           "(...)";
  }
  if (fewest == most) return CountProblem(most - objects, got - objects);
  return "expected " + std::to_string(fewest - objects) + " to " + std::to_string(most - objects) +
         " arguments, got " + std::to_string(got - objects);
}

std::string DescribeParameter(const Parameter& parameter) {
  switch (parameter.kind) {
    case ParameterKind::kAny:
      return "a value";
    case ParameterKind::kNumber:
      return "a number";
    case ParameterKind::kInteger:
      return "a whole number of 32 bits";
    case ParameterKind::kText:
      return "a text";
    case ParameterKind::kFunction:
      return "a function";
    case ParameterKind::kOptions:
      return "a table";
    case ParameterKind::kReferObject:
      break;
  }
  if (parameter.className == "Vector") return "a vector or an array of numbers";
  return "an object of class " + parameter.className;
}

std::string SetArgument(VarRegister& target, const Parameter& parameter, Variable& value,
                        std::size_t number) {
  if (parameter.optional && VariableAccess::Type(VariableAccess::Resolve(value)) == kEmpty) {
    return {};
  }
  switch (parameter.kind) {
    case ParameterKind::kAny:
    case ParameterKind::kText:
    case ParameterKind::kFunction:
    case ParameterKind::kOptions:
      if (!FitsAsItIs(parameter, value)) break;
      target.PointTo(&value);
      return {};
    case ParameterKind::kNumber:
      if (value.IsNumber() == 0) break;
      target = value.GetDoubleNumb();
      return {};
    case ParameterKind::kInteger:
      if (value.IsNumber() == 0 || !IsWholeInt32(value.GetDoubleNumb())) break;
      target = value.GetInt32Numb();
      return {};
    case ParameterKind::kReferObject:
      return SetObject(target, parameter, value, number);
  }
  return ArgumentProblem(number, DescribeParameter(parameter), DescribeValue(value));
}

std::string SetArguments(const Signature& signature, std::span<Variable* const> arguments,
                         VarRegister* registers) {
  std::string problem = CountProblem(signature, arguments.size());
  const std::size_t objects = signature.ObjectCount();
  for (std::size_t i = 0; i < arguments.size() && problem.empty(); ++i) {
    problem = SetArgument(registers[i], signature.parameters[i], *arguments[i], i + 1 - objects);
  }
  return problem;
}

std::optional<HostError> CallRegistered(HostState& host, const RegisteredFunction& function,
                                        std::span<Variable* const> arguments, Variable& result) {
  ArgumentRegisters registers(function.signature.parameters.size());
  const std::string problem = SetArguments(function.signature, arguments, registers.Get());
  if (!problem.empty()) {
    const RunningFunction scope(host, function.signature.name.c_str());
    return host.NewError(kErrorArgument, problem.c_str());
  }
  VarRegister value;
  std::optional<HostError> error = RunHandler(host, function, value, registers.Get());
  if (IsOwnValue(value)) {
    VariableAccess::Move(result, value.GetVar());
  } else {
    result = value.GetVar();
  }
  return error;
}

std::optional<HostError> CallFunction(HostState& host, const std::string& name,
                                      std::span<Variable> arguments, Variable& result) {
  const RegisteredFunction* function = host.functions.Find(name);
  if (function == nullptr) {
    return host.NewError(kErrorArgument, ("there is no function " + name).c_str());
  }
  std::vector<Variable*> places;
  for (Variable& argument : arguments) places.push_back(&argument);
  return CallRegistered(host, *function, places, result);
}

}  // namespace tarn
