#ifndef TARN_FRAME_MODULE_STATE_H
#define TARN_FRAME_MODULE_STATE_H

/// @file
/// What the module remembers between load and process end: its handle and the number of the one
/// error that it registers with the host.

#include <cstdint>

namespace tarn {

/// The record that the platform's loader fills at attach.
struct ExtensionModule {
  void* moduleHandle = nullptr;
  bool attached = false;
};

/// Called by the platform file when the process attaches the library: initialises the
/// extension-module record with the loader's handle and keeps the handle.
void AttachModule(void* moduleHandle);

/// The loader's handle of this module; null before the library is attached.
void* GetModuleInstance();
/// The same under the name that resource look-ups go by.
void* GetResourceInstance();

/// The host's number of the error `ERR_SOLUTION_NOT_FOUND`, "Can't find solution of system."; 0
/// until the module has been initialised. Solvers raise it when they give up.
std::int32_t GetSolutionNotFoundError();
/// Stores that number.
void SetSolutionNotFoundError(std::int32_t number);

/// Raises a script error numbered relative to the block of error numbers that the host keeps for
/// this module (`GetErrorOffset`); does nothing when the host keeps none (offset 65535).
void RaiseModuleError(int code);

}  // namespace tarn

#endif
