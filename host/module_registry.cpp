#include "host/module_registry.h"

#include <dlfcn.h>

#include <utility>

#include "host/error_table.h"
#include "host/interpreter.h"

namespace tarn {
namespace {

/// The entry of a module that this host has loaded; null for any other.
LoadedModule* FindLoaded(HostState& host, const void* library) {
  for (LoadedModule& module : host.modules) {
    if (module.library == library) return &module;
  }
  return nullptr;
}

std::optional<HostError> Initialise(HostState& host, const OpenedModule& opened) {
  const PendingErrorAside aside(host);
  opened.initialise(&host.processor);
  return aside.Raised();
}

std::optional<HostError> RegisterFunctions(HostState& host, OpenedModule& opened) {
  for (auto& [signature, handler] : opened.functions) {
    const RegisteredFunction& added = host.functions.Add(std::move(signature), handler);
    if (std::optional<HostError> error = PublishFunction(host, added)) return error;
  }
  return std::nullopt;
}

std::optional<HostError> Register(HostState& host, OpenedModule opened) {
  opened.module.errorOffset = host.moduleErrorOffset;
  if (LoadedModule* known = FindLoaded(host, opened.module.library)) {
    known->errorOffset = opened.module.errorOffset;
    dlclose(opened.module.library);
    return std::nullopt;
  }
  // The module may ask for its error offset while it initialises itself.
  host.modules.push_back(opened.module);
  if (std::optional<HostError> error = Initialise(host, opened)) {
    host.modules.pop_back();
    return error;
  }
  return RegisterFunctions(host, opened);
}

}  // namespace

std::optional<HostError> LoadModule(HostState& host, const std::string& path) {
  try {
    return Register(host, OpenModule(path));
  } catch (const ModuleError& error) {
    return host.NewError(kErrorModule, error.what());
  }
}

}  // namespace tarn

std::uint16_t GetErrorOffset(void* moduleHandle) {
  constexpr std::uint16_t kNone = 65535;
  const tarn::HostState* host = tarn::CurrentHost();
  if (host == nullptr) return kNone;
  for (const tarn::LoadedModule& module : host->modules) {
    if (module.baseAddress == moduleHandle) return module.errorOffset;
  }
  return kNone;
}
