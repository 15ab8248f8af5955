/// @file
/// Windows: how the library learns its handle, and the critical section.

#if defined(_WIN32)

#include <windows.h>

#include <new>

#include "frame/critical_section.h"
#include "frame/module_state.h"

/// The loader's notifications. Only the attachment of the process does anything.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) tarn::AttachModule(instance);
  return TRUE;
}

namespace tarn {
namespace {

CRITICAL_SECTION* SectionIn(unsigned char* storage) {
  return std::launder(reinterpret_cast<CRITICAL_SECTION*>(storage));
}

}  // namespace

void CriticalSection::Create(unsigned spinCount) {
  static_assert(sizeof(CRITICAL_SECTION) <= sizeof(storage_));
  if (created_) return;
  InitializeCriticalSectionAndSpinCount(new (storage_) CRITICAL_SECTION, spinCount);
  spinCount_ = spinCount;
  created_ = true;
}

void CriticalSection::Enter() {
  if (created_) EnterCriticalSection(SectionIn(storage_));
}

void CriticalSection::Leave() {
  if (created_) LeaveCriticalSection(SectionIn(storage_));
}

}  // namespace tarn

#endif
