#include "frame/module_state.h"

#include "frame/host.h"

namespace tarn {
namespace {

constexpr std::uint16_t kNoErrorBlock = 65535;

ExtensionModule extensionModule;
void* storedModuleHandle = nullptr;
std::int32_t solutionNotFoundError = 0;

}  // namespace

void AttachModule(void* moduleHandle) {
  extensionModule.moduleHandle = moduleHandle;
  extensionModule.attached = true;
  storedModuleHandle = moduleHandle;
}

void* GetModuleInstance() { return storedModuleHandle; }
void* GetResourceInstance() { return storedModuleHandle; }

std::int32_t GetSolutionNotFoundError() { return solutionNotFoundError; }
void SetSolutionNotFoundError(std::int32_t number) { solutionNotFoundError = number; }

void RaiseModuleError(int code) {
  const std::uint16_t offset = GetErrorOffset(GetModuleInstance());
  if (offset == kNoErrorBlock) return;
  TarnError(offset + code);
}

}  // namespace tarn
