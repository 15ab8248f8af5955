#include "host/script_function.h"

#include "frame/host.h"
#include "host/host_state.h"

namespace tarn {

ScriptFunctionHandle* MakeScriptFunctionHandle(int registryKey, std::uint64_t host) {
  auto* handle = static_cast<ScriptFunctionHandle*>(HMALLOC(sizeof(ScriptFunctionHandle)));
  if (handle != nullptr) *handle = {1, registryKey, host};
  return handle;
}

void AddUse(ScriptFunctionHandle* handle) { ++handle->uses; }

void DropUse(ScriptFunctionHandle* handle) {
  if (--handle->uses != 0) return;
  HostState* host = CurrentHost();
  if (host != nullptr && host->serial == handle->host) host->NoteForgotten(handle->registryKey);
  HFREE(handle);
}

}  // namespace tarn
