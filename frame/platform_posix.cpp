/// @file
/// POSIX: how the library learns its handle, and the critical section.

#if !defined(_WIN32)

#include <dlfcn.h>
#include <pthread.h>

#include <new>

#include "frame/critical_section.h"
#include "frame/module_state.h"

namespace tarn {
namespace {

/// Runs when the dynamic loader maps the library. ELF passes no handle to initialisers; the load
/// address identifies a library as uniquely, and a host finds the same one with `dladdr` on
/// anything that the module exports.
__attribute__((constructor)) void ProcessAttach() {
  Dl_info library = {};
  if (dladdr(reinterpret_cast<void*>(&ProcessAttach), &library) == 0) return;
  AttachModule(library.dli_fbase);
}

pthread_mutex_t* MutexIn(unsigned char* storage) {
  return std::launder(reinterpret_cast<pthread_mutex_t*>(storage));
}

}  // namespace

void CriticalSection::Create(unsigned spinCount) {
  static_assert(sizeof(pthread_mutex_t) <= sizeof(storage_));
  if (created_) return;
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(new (storage_) pthread_mutex_t, &attributes);
  pthread_mutexattr_destroy(&attributes);
  spinCount_ = spinCount;
  created_ = true;
}

void CriticalSection::Enter() {
  if (!created_) return;
  pthread_mutex_t* mutex = MutexIn(storage_);
  for (unsigned attempt = 0; attempt <= spinCount_; ++attempt) {
    if (pthread_mutex_trylock(mutex) == 0) return;
  }
  pthread_mutex_lock(mutex);
}

void CriticalSection::Leave() {
  if (!created_) return;
  pthread_mutex_unlock(MutexIn(storage_));
}

}  // namespace tarn

#endif
