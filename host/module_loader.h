#ifndef TARN_HOST_MODULE_LOADER_H
#define TARN_HOST_MODULE_LOADER_H

/// @file
/// Loading of modules: shared libraries whose four entries are found by number.

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "frame/module_entry.h"
#include "host/signature.h"

namespace tarn {

struct LoadedModule {
  void* library;      ///< handle of the dynamic loader
  void* baseAddress;  ///< what the module knows itself by
  std::string description;
  std::uint16_t errorOffset;
};

/// A module that was opened and checked, not yet initialised.
struct OpenedModule {
  LoadedModule module;
  TarnInitModule initialise;
  std::vector<std::pair<Signature, ScriptHandler>> functions;
};

/// Why a file is no module; the text is a sentence that names the file.
class ModuleError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Opens a library and checks that it is a module: its entries are there, it describes itself as
/// "... |TARN version:5.09.02" does, and every row of its function table has a handler and a
/// signature that can be parsed. Throws `ModuleError`; the library is closed again then.
OpenedModule OpenModule(const std::string& path);

}  // namespace tarn

#endif
