#ifndef TARN_HOST_HEAP_H
#define TARN_HOST_HEAP_H

/// @file
/// The host heap behind `HMALLOC` and its relatives: counted, and refusing on demand.

#include <cstdint>
#include <functional>

namespace tarn {

/// Lets the heap refuse the requests for which `refuse(k)` is true, k counted from 1 at this call.
void SetHeapRefusal(std::function<bool(std::int64_t request)> refuse);
/// Requests since the last `SetHeapRefusal`.
std::int64_t HeapRequests();
/// Blocks in use.
std::int64_t HeapBlocks();

}  // namespace tarn

#endif
