#ifndef TARN_FRAME_CRITICAL_SECTION_H
#define TARN_FRAME_CRITICAL_SECTION_H

/// @file
/// A re-entrant critical section with a spin count, one implementation per platform
/// (platform_posix.cpp, platform_windows.cpp).

#include <cstddef>

namespace tarn {

/// A mutual-exclusion lock that its own thread may enter repeatedly. A thread that finds it held
/// tries `spinCount` more times before it sleeps.
///
/// Objects have static storage duration and need no constructor to run, so they may be used from
/// any other static initialiser; there is no way to destroy one.
class CriticalSection {
 public:
  /// Prepares the lock. Calling it again changes nothing, whether the lock is held or not.
  void Create(unsigned spinCount);
  /// Waits until no other thread holds the lock, then takes it. Before `Create` it does nothing.
  void Enter();
  /// Gives the lock back, once per `Enter`. Before `Create` it does nothing.
  void Leave();

 private:
  /// Room for the platform's lock object; platform files assert that theirs fits.
  alignas(16) unsigned char storage_[64];
  unsigned spinCount_;
  bool created_;
};

}  // namespace tarn

#endif
