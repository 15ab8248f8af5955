#ifndef TARN_HOST_SCRIPT_FUNCTION_H
#define TARN_HOST_SCRIPT_FUNCTION_H

/// @file
/// Script functions held by host values.
///
/// The function itself lives in the interpreter's registry; host values share a counted handle. A
/// handle may outlive the host: calling it is then an error, releasing it frees only the handle.

#include <cstdint>

#include "frame/host_value.h"

namespace tarn {

struct ScriptFunctionHandle {
  std::uint32_t uses;
  int registryKey;     ///< place in the interpreter's registry
  std::uint64_t host;  ///< serial number of the host that it belongs to
};

/// A handle with one use; null when the heap refuses.
ScriptFunctionHandle* MakeScriptFunctionHandle(int registryKey, std::uint64_t host);
void AddUse(ScriptFunctionHandle* handle);
/// Gives one use back. The last one frees the handle and, unless the host is gone, notes that the
/// interpreter may forget the function as soon as it runs again.
void DropUse(ScriptFunctionHandle* handle);

}  // namespace tarn

#endif
