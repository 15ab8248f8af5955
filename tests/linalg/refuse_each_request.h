#ifndef TARN_TESTS_LINALG_REFUSE_EACH_REQUEST_H
#define TARN_TESTS_LINALG_REFUSE_EACH_REQUEST_H

// Work under memory that runs out, request by request. For programs that link
// array_new_failure.cpp.

#include <gtest/gtest.h>

#include <cstdint>

#include "host/embedded_host.h"
#include "linalg/array_new_failure.h"

/// Runs `work(false)` to count its requests to array new and to the host heap, then `work(true)`
/// with all of them refused and with each of them refused in turn.
template <class Work>
void RunRefused(EmbeddedHost& host, Work work) {
  host.SetHeapFailure({});
  std::int64_t newRequests = 0;
  {
    const NewFailure watch([](std::int64_t) { return false; });
    work(false);
    newRequests = watch.Requests();
  }
  const std::int64_t heapRequests = host.HeapRequestCount();
  for (std::int64_t k = 0; k <= newRequests; ++k) {
    const NewFailure failure([=](std::int64_t request) { return k == 0 || request == k; });
    work(true);
  }
  for (std::int64_t k = 0; k <= heapRequests; ++k) {
    host.SetHeapFailure([=](std::int64_t request) { return k == 0 || request == k; });
    work(true);
    host.SetHeapFailure({});
  }
}

/// `RunRefused`, after which no block may be left over.
template <class Work>
void RefuseEachRequest(EmbeddedHost& host, Work work) {
  // The first round also makes what the host and the C++ library keep from then on.
  RunRefused(host, work);
  const std::int64_t newBlocks = LiveNewBlocks();
  const std::int64_t heapBlocks = EmbeddedHost::LiveBlockCount();
  RunRefused(host, work);
  EXPECT_EQ(LiveNewBlocks(), newBlocks);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), heapBlocks);
}

#endif
