#include "linalg/array_new_failure.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace {

std::function<bool(std::int64_t)>* refusal = nullptr;
std::int64_t requests = 0;
std::int64_t lastSize = 0;
std::int64_t liveBlocks = 0;

void* Allocate(std::size_t size) {
  void* const block = std::malloc(size != 0 ? size : 1);
  if (block != nullptr) ++liveBlocks;
  return block;
}

void* AllocateUnlessRefused(std::size_t size) {
  if (refusal != nullptr) {
    ++requests;
    lastSize = static_cast<std::int64_t>(size);
    if ((*refusal)(requests)) return nullptr;
  }
  return Allocate(size);
}

void* AllocateOrThrow(std::size_t size) {
  void* const block = Allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void Release(void* block) {
  if (block != nullptr) --liveBlocks;
  std::free(block);
}

}  // namespace

NewFailure::NewFailure(std::function<bool(std::int64_t)> refuse) {
  auto* const installed = new std::function<bool(std::int64_t)>(std::move(refuse));
  requests = 0;
  lastSize = 0;
  refusal = installed;
}

NewFailure::~NewFailure() {
  const auto* const installed = refusal;
  refusal = nullptr;
  delete installed;
}

std::int64_t NewFailure::Requests() const { return requests; }
std::int64_t NewFailure::LastSize() const { return lastSize; }

std::int64_t LiveNewBlocks() { return liveBlocks; }

#if defined(__SANITIZE_ADDRESS__)
// Sizes that nobody can serve are to be refused, not reported.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
#endif

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateUnlessRefused(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return AllocateUnlessRefused(size);
}
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { Release(block); }
