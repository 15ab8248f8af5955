#ifndef TARN_APP_PRELUDE_H
#define TARN_APP_PRELUDE_H

/// @file
/// What the command adds to the script language: `help` and `show`.

#include <string>
#include <string_view>

#include "host/embedded_host.h"

namespace tarn {

/// Defines `help` and `show` in the host's scripts. False with a pending error when that fails.
bool InstallPrelude(EmbeddedHost& host);

/// A string literal of the script language with these characters.
std::string QuoteForScript(std::string_view text);

}  // namespace tarn

#endif
