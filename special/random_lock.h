#ifndef TARN_SPECIAL_RANDOM_LOCK_H
#define TARN_SPECIAL_RANDOM_LOCK_H

/// @file
/// The random lock: serialises the host's uniform source and the cached state of the generators in
/// random.h. A thread may enter it repeatedly, so a caller can hold it around draws of its own and
/// call the generators inside.

#include "frame/export.h"

/// Enters the random lock, waiting while another thread holds it. The lock exists once the module
/// has been initialised; before that, both calls do nothing.
TARN_API void EnterRandCriticalSection();
/// Leaves the random lock, once per `EnterRandCriticalSection`.
TARN_API void LeaveRandCriticalSection();

namespace tarn {

/// Creates the random lock (spin count 4096). A lock that exists stays as it is, held or not.
void CreateRandomLock();

/// Holds the random lock for the length of a scope.
class RandomLockGuard {
 public:
  RandomLockGuard() { EnterRandCriticalSection(); }
  ~RandomLockGuard() { LeaveRandCriticalSection(); }
  RandomLockGuard(const RandomLockGuard&) = delete;
  RandomLockGuard& operator=(const RandomLockGuard&) = delete;
};

}  // namespace tarn

#endif
