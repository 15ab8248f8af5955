#ifndef TARN_APP_MODULE_PATH_H
#define TARN_APP_MODULE_PATH_H

/// @file
/// Where the command finds the modules.

#include <optional>
#include <string>

namespace tarn {

/// The module's file: `chosen` where the command line names one, else the environment variable
/// TARN_MODULE where it is set and not empty, else the library ../lib/libTarn_base_math.so as seen
/// from the folder of the program, else the one in that folder itself. Empty when there is none at
/// either place; a chosen one is not checked.
std::string FindModule(const std::optional<std::string>& chosen);

/// The same for the companion module: TARN_TOOLKIT and libTarn_toolkit.so.
std::string FindToolkit(const std::optional<std::string>& chosen);

}  // namespace tarn

#endif
