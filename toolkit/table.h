#ifndef TARN_TOOLKIT_TABLE_H
#define TARN_TOOLKIT_TABLE_H

/// @file
/// Tabulated functions between scripts and the class library.
///
/// A script's "TFunc" has its points in the members "X" and "Y", which a script can change at any
/// time; each function of this module takes a copy of them as they are.

#include <tfunc/tfunc.h>

#include "arguments.h"

namespace tarn::toolkit {

bool IsTable(const Variable& value);
/// The function of a value of class "TFunc": as many ordinates as abscissae, at least one, the
/// abscissae finite and in ascending order.
TFunc TableOf(Variable& value);
/// Makes `target` a "TFunc".
void SetTable(Variable& target, const TFunc& table);

}  // namespace tarn::toolkit

#endif
