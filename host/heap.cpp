#include "host/heap.h"

#include <atomic>
#include <cstdlib>
#include <utility>

#include "frame/host.h"

namespace tarn {
namespace {

// Numeric objects of several threads share the heap, so the counts are atomic.
std::atomic<std::int64_t> requests{0};
std::atomic<std::int64_t> blocks{0};
std::atomic<bool> mayRefuse{false};

std::function<bool(std::int64_t)>& Refusal() {
  static auto& refusal = *new std::function<bool(std::int64_t)>;
  return refusal;
}

bool Refused() {
  const std::int64_t request = requests.fetch_add(1, std::memory_order_relaxed) + 1;
  return mayRefuse.load(std::memory_order_relaxed) && Refusal()(request);
}

/// Counts a block that was made; a block of 0 bytes is one of 1 byte, so that it has an address.
void* Counted(void* block) {
  if (block != nullptr) blocks.fetch_add(1, std::memory_order_relaxed);
  return block;
}

std::size_t AtLeastOne(std::size_t bytes) { return bytes == 0 ? 1 : bytes; }

}  // namespace

void SetHeapRefusal(std::function<bool(std::int64_t)> refuse) {
  mayRefuse = false;
  Refusal() = std::move(refuse);
  requests = 0;
  mayRefuse = static_cast<bool>(Refusal());
}

std::int64_t HeapRequests() { return requests; }
std::int64_t HeapBlocks() { return blocks; }

}  // namespace tarn

void* HMALLOC(std::size_t bytes) {
  if (tarn::Refused()) return nullptr;
  return tarn::Counted(std::malloc(tarn::AtLeastOne(bytes)));
}

void* HMALLOCZ(std::size_t bytes) {
  if (tarn::Refused()) return nullptr;
  return tarn::Counted(std::calloc(1, tarn::AtLeastOne(bytes)));
}

void* HREALLOC(void* block, std::size_t bytes) {
  if (block == nullptr) return HMALLOC(bytes);
  if (tarn::Refused()) return nullptr;
  return std::realloc(block, tarn::AtLeastOne(bytes));
}

void HFREE(void* block) {
  if (block == nullptr) return;
  tarn::blocks.fetch_sub(1, std::memory_order_relaxed);
  std::free(block);
}
