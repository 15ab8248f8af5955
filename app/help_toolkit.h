#ifndef TARN_APP_HELP_TOOLKIT_H
#define TARN_APP_HELP_TOOLKIT_H

/// @file
/// What the command says about the functions and methods of the companion module.

#include <span>

#include "app/help_data.h"

namespace tarn {

/// The entries, by family. Methods have the name of their class in the signature,
/// "MVector.Norm(...)", and are called on an object in `call` and `example`. `errors` holds all
/// errors.
std::span<const HelpEntry> ToolkitHelpEntries();

}  // namespace tarn

#endif
