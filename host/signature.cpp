#include "host/signature.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// The text not yet consumed; every step consumes what it recognises or nothing.
class SignatureReader {
 public:
  explicit SignatureReader(std::string_view text) : rest_(text) {}

  bool Take(std::string_view word) {
    if (!rest_.starts_with(word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }

  std::optional<std::string> TakeName() {
    std::size_t length = 0;
    while (length < rest_.size() &&
           (IsLetter(rest_[length]) || (length > 0 && IsDigit(rest_[length])))) {
      ++length;
    }
    if (length == 0) return std::nullopt;
    std::string name(rest_.substr(0, length));
    rest_.remove_prefix(length);
    return name;
  }

  std::optional<Parameter> TakeParameter() {
    std::optional<Parameter> parameter = TakeKind();
    if (parameter) parameter->optional = Take("?");
    return parameter;
  }

  bool AtEnd() const { return rest_.empty(); }

 private:
  std::optional<Parameter> TakeKind() {
    constexpr std::pair<std::string_view, ParameterKind> kWords[] = {
        {"any", ParameterKind::kAny},           {"number", ParameterKind::kNumber},
        {"int", ParameterKind::kInteger},       {"text", ParameterKind::kText},
        {"function", ParameterKind::kFunction}, {"options", ParameterKind::kOptions}};
    const std::optional<std::string> word = TakeName();
    for (const auto& [name, kind] : kWords) {
      if (word == name) return Parameter{kind, {}};
    }
    if (word != "refer" || !Take(" object ")) return std::nullopt;
    std::optional<std::string> className = TakeName();
    if (!className) return std::nullopt;
    return Parameter{ParameterKind::kReferObject, *std::move(className)};
  }

  std::string_view rest_;
};

constexpr std::string_view kOperatorMark = "__";
constexpr std::string_view kCallOperator = "__call";

/// Number of operands; 0 for what is no operator.
std::size_t OperandCount(std::string_view name) {
  for (const char* binary : {"__add", "__sub", "__mul", "__div", "__pow", "__eq"}) {
    if (name == binary) return 2;
  }
  for (const char* unary : {"__unm", "__len", "__tostring"}) {
    if (name == unary) return 1;
  }
  return 0;
}

bool StartsWithObject(const Signature& signature) {
  return !signature.parameters.empty() &&
         signature.parameters.front() ==
             Parameter{ParameterKind::kReferObject, signature.className};
}

/// Whether name and parameters of a method fit each other.
bool IsGoodMethod(const Signature& signature) {
  const std::string_view name = signature.MethodName();
  if (!name.starts_with(kOperatorMark) || name == kCallOperator) return StartsWithObject(signature);
  const std::size_t operands = OperandCount(name);
  return operands > 0 && signature.RequiredCount() == operands &&
         signature.parameters.size() == operands;
}

bool OptionalParametersComeLast(const std::vector<Parameter>& parameters) {
  return std::is_partitioned(parameters.begin(), parameters.end(),
                             [](const Parameter& parameter) { return !parameter.optional; });
}

}  // namespace

std::string_view Signature::MethodName() const {
  return std::string_view(name).substr(className.empty() ? 0 : className.size() + 1);
}

bool Signature::IsOperator() const {
  return IsMethod() && MethodName().starts_with(kOperatorMark) && MethodName() != kCallOperator;
}

std::size_t Signature::RequiredCount() const {
  return static_cast<std::size_t>(
      std::count_if(parameters.begin(), parameters.end(),
                    [](const Parameter& parameter) { return !parameter.optional; }));
}

std::optional<Signature> ParseSignature(std::string_view text) {
  SignatureReader reader(text);
  std::optional<std::string> name = reader.TakeName();
  if (!name) return std::nullopt;
  Signature signature{std::string(text), *std::move(name), {}, {}};
  if (reader.Take(".")) {
    const std::optional<std::string> method = reader.TakeName();
    if (!method) return std::nullopt;
    signature.className = std::exchange(signature.name, signature.name + '.' + *method);
  }
  if (!reader.Take("(")) return std::nullopt;
  if (!reader.Take(")")) {
    do {
      std::optional<Parameter> parameter = reader.TakeParameter();
      if (!parameter) return std::nullopt;
      signature.parameters.push_back(*std::move(parameter));
    } while (reader.Take(", "));
    if (!reader.Take(")")) return std::nullopt;
  }
  if (!reader.AtEnd() || !OptionalParametersComeLast(signature.parameters)) return std::nullopt;
  if (signature.IsMethod() && !IsGoodMethod(signature)) return std::nullopt;
  return signature;
}

}  // namespace tarn
