#ifndef TARN_TESTS_ARRAYS_ARRAY_NEW_REFUSAL_H
#define TARN_TESTS_ARRAYS_ARRAY_NEW_REFUSAL_H

// Array new that refuses on demand. A program that links array_new_refusal.cpp replaces array new
// and delete in all its libraries.

#include <cstdint>
#include <functional>

namespace tarn_test {

/// Makes array new without exceptions refuse requests: `refuse(k)` is asked for the k-th one from
/// this call on. An empty function ends it.
void SetArrayNewFailure(std::function<bool(std::int64_t request)> refuse);
/// Requests to array new without exceptions since the last `SetArrayNewFailure`.
std::int64_t ArrayNewRequestCount();
/// Arrays allocated and not deleted.
std::int64_t LiveArrayCount();

}  // namespace tarn_test

#endif
