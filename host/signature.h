#ifndef TARN_HOST_SIGNATURE_H
#define TARN_HOST_SIGNATURE_H

/// @file
/// Signature texts of script functions.
///
/// ```
/// signature = name "(" [ kind { ", " kind } ] ")"
/// kind      = "any" | "number" | "int" | "refer object " name
/// name      = letter or "_", then letters, digits and "_"
/// ```
/// Nothing else may stand in a signature, no blank more or less.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

enum class ParameterKind {
  kAny,         ///< every value, not converted
  kNumber,      ///< converted to a double
  kInteger,     ///< converted to a 32-bit integer
  kReferObject  ///< reference to an object of a class
};

struct Parameter {
  ParameterKind kind;
  std::string className;  ///< of `kReferObject`

  bool operator==(const Parameter&) const = default;
};

struct Signature {
  std::string text;
  std::string name;
  std::vector<Parameter> parameters;
};

/// The parsed text, or nothing when it does not follow the grammar.
std::optional<Signature> ParseSignature(std::string_view text);

}  // namespace tarn

#endif
