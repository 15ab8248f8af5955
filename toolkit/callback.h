#ifndef TARN_TOOLKIT_CALLBACK_H
#define TARN_TOOLKIT_CALLBACK_H

/// @file
/// Script functions that the class library calls as native ones.

#include <linalg/vector.h>

#include <string>

#include "arguments.h"

namespace tarn::toolkit {

/// A script function whose value is a number.
///
/// The first call that fails, or whose value is no number, ends all others: from then on the value
/// is NaN and the script is left alone, so that the search which called comes to its end soon.
/// `RequireSuccess` then ends the function of this module with what went wrong.
class Callback {
 public:
  /// A function under the name that messages call it by.
  explicit Callback(const Input& input) : function_(input.Function()), name_(input.Name()) {}

  double At(double x);
  double At(const T_MatVector<double>& x);
  /// With one or two indices behind the point; the script counts them from 1.
  double At(const T_MatVector<double>& x, int i);
  double At(const T_MatVector<double>& x, int i, int j);

  /// Ends the function when a call failed.
  void RequireSuccess() const;

 private:
  bool HasFailed() const { return errorNumber_ != 0 || !mistake_.empty(); }
  double Run(VarRegister* arguments, int count);
  bool Pass(const T_MatVector<double>& x, VarRegister& argument);

  Variable
      function_;  ///< a use of its own: a script can change the options while they are worked on
  std::string name_;
  int errorNumber_ = 0;  ///< of the error that a call raised
  std::string mistake_;  ///< what was wrong with a value
};

}  // namespace tarn::toolkit

#endif
