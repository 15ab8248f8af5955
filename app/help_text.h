#ifndef TARN_APP_HELP_TEXT_H
#define TARN_APP_HELP_TEXT_H

/// @file
/// The help data as people read it: at the terminal and as a page of the documentation.

#include <span>
#include <string>

#include "app/help_data.h"

namespace tarn {

/// What `help("Name")` prints about one function: plain text of at most 80 columns.
std::string RenderEntry(const HelpEntry& entry);

/// What `help()` prints: the functions by family, one line each.
std::string RenderIndex(std::span<const HelpEntry> entries);

/// The page docs/script-reference.md.
std::string RenderReference();

}  // namespace tarn

#endif
