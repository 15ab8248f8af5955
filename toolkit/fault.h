#ifndef TARN_TOOLKIT_FAULT_H
#define TARN_TOOLKIT_FAULT_H

/// @file
/// How a function of this module ends early.
///
/// Inside the module a mistake is thrown; `Handler` (handler.h) catches it at the boundary and
/// hands it to the host. Nothing is thrown through host or library code.

#include <stdexcept>
#include <string>

#include "frame/error_numbers.h"

namespace tarn::toolkit {

// Numbers of the host's table.
inline constexpr int kErrorFile = 6;       ///< file that cannot be read or written
inline constexpr int kErrorCancel = 1000;  ///< somebody cancelled

/// A script error with number and sentence. The host puts the name of the function before it.
class Fault : public std::runtime_error {
 public:
  Fault(int number, const std::string& sentence) : std::runtime_error(sentence), number_(number) {}
  int Number() const { return number_; }

 private:
  int number_;
};

/// An error that the class library has raised with the host already; nothing is to be added.
class AlreadyRaised {};

/// Ends the function with error 3, a mistake in its arguments.
[[noreturn]] inline void Refuse(const std::string& sentence) {
  throw Fault(kErrorArgument, sentence);
}

}  // namespace tarn::toolkit

#endif
