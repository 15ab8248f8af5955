#ifndef TARN_HOST_SIGNATURE_H
#define TARN_HOST_SIGNATURE_H

/// @file
/// Signature texts of script functions and of methods of script classes.
///
/// ```
/// signature = [ class "." ] name "(" [ kind { ", " kind } ] ")"
/// kind      = ( "any" | "number" | "int" | "text" | "function" | "options"
///             | "refer object " class ) [ "?" ]
/// class     = name
/// name      = letter or "_", then letters, digits and "_"
/// ```
/// Nothing else may stand in a signature, no blank more or less. A parameter behind an optional one
/// ("?") is optional, too.
///
/// With a class it is a method, whose first parameter is "refer object " and that class. A method
/// whose name begins with "__" is an operator: `__add`, `__sub`, `__mul`, `__div`, `__pow` and
/// `__eq` have two parameters of any kind, `__unm`, `__len` and `__tostring` one; `__call` has the
/// parameters of a method. There are no others.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

enum class ParameterKind {
  kAny,         ///< every value, not converted
  kNumber,      ///< converted to a double
  kInteger,     ///< converted to a 32-bit integer
  kText,        ///< a text
  kFunction,    ///< a script function
  kOptions,     ///< a table with named values; see `ReadOptions` in host/lua_read_values.cpp
  kReferObject  ///< reference to an object of a class
};

struct Parameter {
  ParameterKind kind;
  std::string className;  ///< of `kReferObject`
  bool optional = false;  ///< may be missing or nil; the register is empty then

  bool operator==(const Parameter&) const = default;
};

struct Signature {
  std::string text;
  std::string name;       ///< with the class where there is one: "Matrix.Solve"
  std::string className;  ///< empty for functions
  std::vector<Parameter> parameters;

  bool IsMethod() const { return !className.empty(); }
  /// The name behind the class.
  std::string_view MethodName() const;
  /// Whether the interpreter calls it for operands instead of by its name; `__call` counts as a
  /// method, which has an object and arguments.
  bool IsOperator() const;
  /// How many of the first parameters are not arguments, but the object of a method.
  std::size_t ObjectCount() const { return IsMethod() && !IsOperator() ? 1 : 0; }
  /// How many parameters must be there.
  std::size_t RequiredCount() const;
};

/// The parsed text, or nothing when it does not follow the grammar.
std::optional<Signature> ParseSignature(std::string_view text);

}  // namespace tarn

#endif
