#include "host/signature.h"

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
    const std::optional<std::string> word = TakeName();
    if (word == "any") return Parameter{ParameterKind::kAny, {}};
    if (word == "number") return Parameter{ParameterKind::kNumber, {}};
    if (word == "int") return Parameter{ParameterKind::kInteger, {}};
    if (word != "refer" || !Take(" object ")) return std::nullopt;
    std::optional<std::string> className = TakeName();
    if (!className) return std::nullopt;
    return Parameter{ParameterKind::kReferObject, *std::move(className)};
  }

  bool AtEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

}  // namespace

std::optional<Signature> ParseSignature(std::string_view text) {
  SignatureReader reader(text);
  std::optional<std::string> name = reader.TakeName();
  if (!name || !reader.Take("(")) return std::nullopt;
  Signature signature{std::string(text), *std::move(name), {}};
  if (!reader.Take(")")) {
    do {
      std::optional<Parameter> parameter = reader.TakeParameter();
      if (!parameter) return std::nullopt;
      signature.parameters.push_back(*std::move(parameter));
    } while (reader.Take(", "));
    if (!reader.Take(")")) return std::nullopt;
  }
  if (!reader.AtEnd()) return std::nullopt;
  return signature;
}

}  // namespace tarn
