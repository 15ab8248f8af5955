#include "special/random_lock.h"

#include "frame/critical_section.h"

namespace {

constexpr unsigned kSpinCount = 4096;

constinit tarn::CriticalSection randomLock = {};

}  // namespace

void EnterRandCriticalSection() { randomLock.Enter(); }
void LeaveRandCriticalSection() { randomLock.Leave(); }

namespace tarn {

void CreateRandomLock() { randomLock.Create(kSpinCount); }

}  // namespace tarn
