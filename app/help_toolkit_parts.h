#ifndef TARN_APP_HELP_TOOLKIT_PARTS_H
#define TARN_APP_HELP_TOOLKIT_PARTS_H

/// @file
/// The parts of which `ToolkitHelpEntries` is made, a file for each group of families.

#include <span>

#include "app/help_data.h"

namespace tarn {

std::span<const HelpEntry> LinearHelpEntries();    ///< help_toolkit_linear.cpp
std::span<const HelpEntry> FunctionHelpEntries();  ///< help_toolkit_functions.cpp
std::span<const HelpEntry> SampleHelpEntries();    ///< help_toolkit_samples.cpp
std::span<const HelpEntry> SearchHelpEntries();    ///< help_toolkit_searches.cpp

}  // namespace tarn

#endif
