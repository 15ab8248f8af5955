#ifndef TARN_TOOLKIT_ARGUMENTS_H
#define TARN_TOOLKIT_ARGUMENTS_H

/// @file
/// The one place where arguments are checked and mistakes in them put into words.
///
/// Every reader gives the value or ends the function (fault.h) with a sentence that begins with the
/// name of the value and says what it must be and what it is:
///
///     accuracy must be a number, got text
///     bounds[2] has upper 1 below lower 3
///     unknown option "acuracy"; did you mean "accuracy"?
///
/// Functions read all of their arguments before they start to work.

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "fault.h"
#include "frame/host.h"
#include "nearest_name.h"

namespace tarn::toolkit {

using Numbers = std::vector<double>;

/// A number as a message shows it, in at most 15 digits.
std::string NumberText(double number);
/// "1 number", "3 numbers".
std::string CountText(std::int64_t count, const std::string& noun);

/// A value under the name that messages call it by.
class Input {
 public:
  /// The value must outlive the input.
  Input(Variable& value, std::string name) : value_(&value), name_(std::move(name)) {}

  Variable& Value() const { return *value_; }
  const std::string& Name() const { return name_; }

  // What it is ----------------------------------------------------------------------------------

  bool IsNumber() const { return value_->IsNumber() != 0; }
  bool IsText() const { return IsOfKind("text"); }
  bool IsFunction() const { return IsOfKind("function"); }
  /// Whether the kind, or the class, has that name.
  bool IsOfKind(const char* kind) const;
  /// Whether it has elements: a plain array, an array object, a vector.
  bool IsArray() const;

  // Numbers -------------------------------------------------------------------------------------

  double Number() const;          ///< any number, NaN and infinities too
  double FiniteNumber() const;    ///< neither NaN nor infinite
  double PositiveNumber() const;  ///< finite and above 0
  /// A whole number from `lowest` to `highest`.
  int Integer(int lowest, int highest = std::numeric_limits<int>::max()) const;
  /// `true` or `false`, which arrive as 1 and 0.
  bool Flag() const;

  // Texts and functions -------------------------------------------------------------------------

  std::string Text() const;
  /// A script function.
  Variable& Function() const;
  /// The place of the text in `names`.
  int Choice(Names names) const;

  // Arrays --------------------------------------------------------------------------------------

  /// Number of elements, between `fewest` and the largest int.
  int Length(int fewest = 0) const;
  /// An element by its zero-based index; its name is that of the array and the index from 1 on.
  Input Element(int index) const;
  /// The elements, all of them numbers and at least `fewest`.
  Numbers Array(int fewest = 0) const;
  /// The same, neither NaN nor infinite.
  Numbers FiniteArray(int fewest = 0) const;
  /// As many numbers as `count`, the length of `like`.
  Numbers ArrayOfLength(std::size_t count, const std::string& like) const;
  /// Pairs of lower and upper limits, one after another: { {lo, hi}, {lo, hi}, ... }.
  Numbers Bounds() const;

  /// Ends the function with "name what".
  [[noreturn]] void Refuse(const std::string& what) const;
  /// Ends the function with "name must be wanted, got ...".
  [[noreturn]] void RefuseKind(const std::string& wanted) const;

 private:
  void CheckLength(std::size_t count, const std::string& like) const;
  void ReadBound(Numbers& bounds) const;

  Variable* value_;
  std::string name_;
};

/// Named values: a table {values = ..., prior = ...}.
class Options {
 public:
  /// Refuses names that are not among `known`, and elements without a name. Nothing, an argument
  /// left out, stands for no options. Options within others have the name of their place, which
  /// messages put before the names of the values: "curves[2].y".
  Options(Variable& value, Names known, std::string place = "");

  bool Has(const char* name) const;
  /// The value of that name; its absence is a mistake.
  Input Required(const char* name) const;
  /// The value of that name, where it is there.
  std::optional<Input> Find(const char* name) const;

  // With a value that stands for one left out.
  int Integer(const char* name, int otherwise, int lowest, int highest) const;
  bool Flag(const char* name, bool otherwise) const;
  int Choice(const char* name, int otherwise, Names names) const;
  double PositiveNumber(const char* name, double otherwise) const;

 private:
  /// The name of a value in messages.
  std::string NameOf(const char* name) const;

  Variable* value_;
  std::string place_;
};

}  // namespace tarn::toolkit

#endif
