#include "arrays/array_new_refusal.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace {

std::function<bool(std::int64_t)> refusal;
std::int64_t requests = 0;
std::int64_t liveArrays = 0;

void* AllocateArray(std::size_t bytes) {
  void* const array = std::malloc(bytes == 0 ? 1 : bytes);
  if (array != nullptr) ++liveArrays;
  return array;
}

void DeleteArray(void* array) {
  if (array != nullptr) --liveArrays;
  std::free(array);
}

}  // namespace

namespace tarn_test {

void SetArrayNewFailure(std::function<bool(std::int64_t request)> refuse) {
  refusal = std::move(refuse);
  requests = 0;
}
std::int64_t ArrayNewRequestCount() { return requests; }
std::int64_t LiveArrayCount() { return liveArrays; }

}  // namespace tarn_test

void* operator new[](std::size_t bytes) {
  void* const array = AllocateArray(bytes);
  if (array == nullptr) throw std::bad_alloc();
  return array;
}

void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  ++requests;
  if (refusal && refusal(requests)) return nullptr;
  return AllocateArray(bytes);
}

void operator delete[](void* array) noexcept { DeleteArray(array); }
void operator delete[](void* array, std::size_t) noexcept { DeleteArray(array); }
void operator delete[](void* array, const std::nothrow_t&) noexcept { DeleteArray(array); }
