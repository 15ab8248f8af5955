#ifndef TARN_HOST_FUNCTION_CALL_H
#define TARN_HOST_FUNCTION_CALL_H

/// @file
/// Arguments of registered functions: registers for them, and the check against the signature.

#include <memory>
#include <optional>
#include <span>
#include <string>

#include "host/function_table.h"
#include "host/host_state.h"

namespace tarn {

/// One register per parameter; a few need no memory.
class ArgumentRegisters {
 public:
  explicit ArgumentRegisters(std::size_t count)
      : many_(count > kFew ? new VarRegister[count] : nullptr) {}
  VarRegister* Get() { return many_ ? many_.get() : few_; }
  VarRegister& operator[](std::size_t index) { return Get()[index]; }

 private:
  static constexpr std::size_t kFew = 4;
  VarRegister few_[kFew];
  std::unique_ptr<VarRegister[]> many_;
};

/// Whether a register holds its value itself; after `PointTo` it belongs to somebody else.
bool IsOwnValue(VarRegister& value);

/// Whether a number has an exact 32-bit integer of the same value.
bool IsWholeInt32(double number);

/// A number as an error quotes it.
std::string DescribeNumber(double number);
/// What a value is, as an error says it: "a number", "an array".
std::string DescribeKind(const Variable& value);
/// The same, with the number itself for numbers.
std::string DescribeValue(const Variable& value);

/// How errors call an argument: "argument 2"; number 0 is the object of a method.
std::string ArgumentSubject(std::size_t number);
/// "argument 2 must be a number, got a text" with the words put in.
std::string ArgumentProblem(std::size_t number, const std::string& wanted, const std::string& got);
/// "expected 2 arguments, got 1".
std::string CountProblem(std::size_t expected, std::size_t got);
/// The same for a function with optional parameters: "expected 1 to 3 arguments, got 4". Objects of
/// methods are not counted. Empty when `got`, which does count them, is right.
std::string CountProblem(const Signature& signature, std::size_t got);

/// What a parameter wants, as an error says it.
std::string DescribeParameter(const Parameter& parameter);

/// Sets a register to an argument as the parameter wants it. The register refers to the value,
/// except for numbers, which are converted, and optional arguments that are not there, for which it
/// stays empty. Returns what is wrong with it; empty: nothing.
std::string SetArgument(VarRegister& target, const Parameter& parameter, Variable& value,
                        std::size_t number);
/// Sets one register per parameter of the signature. Returns what is wrong; empty: nothing.
std::string SetArguments(const Signature& signature, std::span<Variable* const> arguments,
                         VarRegister* registers);

/// Calls a registered function with its arguments as a script would. Returns the error that it
/// ended with; `result` takes what the handler left in the result register.
std::optional<HostError> CallRegistered(HostState& host, const RegisteredFunction& function,
                                        std::span<Variable* const> arguments, Variable& result);

/// Calls the registered function of that name as a script would. Returns the error that it ended
/// with; `result` takes what the handler left in the result register.
std::optional<HostError> CallFunction(HostState& host, const std::string& name,
                                      std::span<Variable> arguments, Variable& result);

}  // namespace tarn

#endif
