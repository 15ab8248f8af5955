#ifndef TARN_HOST_VALUE_TEXT_H
#define TARN_HOST_VALUE_TEXT_H

/// @file
/// Values as text for people.

#include <string>

#include "frame/host_value.h"

namespace tarn {

/// A number with as few digits as tell it from every other number.
std::string NumberText(double number);

/// A value on one line: "{1, 2.5, 3}", "MVector{3, 4}", "1-2i", "TFunc(X = {0, 1}, Y = {5, 6})". Of
/// a long array the first elements and the count are shown.
std::string ValueText(const Variable& value);

}  // namespace tarn

#endif
