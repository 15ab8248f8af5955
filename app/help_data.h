#ifndef TARN_APP_HELP_DATA_H
#define TARN_APP_HELP_DATA_H

/// @file
/// What the command and the reference say about each script function of the module.

#include <span>
#include <string_view>

namespace tarn {

/// One script function. Texts are plain English without line breaks; what a field has nothing to
/// say about is empty.
struct HelpEntry {
  std::string_view signature;  ///< as in the module's function table
  std::string_view call;       ///< the same with names for the arguments
  std::string_view family;     ///< heading of the group that it belongs to
  std::string_view summary;    ///< one line for the index
  std::string_view meaning;    ///< formula and method, with the accuracy where it is not full
  std::string_view domain;     ///< arguments for which the result means something, and the edges
  std::string_view errors;     ///< errors of its own, beyond those of `CommonErrors`
  std::string_view caution;    ///< what surprises people
  std::string_view example;    ///< an expression to try
  std::string_view value;      ///< its value to six digits; empty for random deviates

  /// The function's name.
  std::string_view Name() const { return signature.substr(0, signature.find('(')); }
};

/// All entries, in the order of the module's function table.
std::span<const HelpEntry> HelpEntries();

/// The entry of a function; null when there is none of that name.
const HelpEntry* FindHelp(std::string_view name);

/// Errors that the function with this signature raises because of the kinds of its arguments; empty
/// for other modules' functions.
std::string_view CommonErrors(std::string_view signature);

}  // namespace tarn

#endif
