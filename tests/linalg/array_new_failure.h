#ifndef TARN_TESTS_LINALG_ARRAY_NEW_FAILURE_H
#define TARN_TESTS_LINALG_ARRAY_NEW_FAILURE_H

// A program that links array_new_failure.cpp has its own operators new and delete: they count the
// blocks in use and can be made to refuse requests that may be refused (the nothrow forms).

#include <cstdint>
#include <functional>

/// Lets the nothrow forms of new fail while the object lives: `refuse(k)` is asked for the k-th
/// request from its construction on.
class NewFailure {
 public:
  explicit NewFailure(std::function<bool(std::int64_t request)> refuse);
  ~NewFailure();
  NewFailure(const NewFailure&) = delete;
  NewFailure& operator=(const NewFailure&) = delete;

  /// Requests seen so far.
  std::int64_t Requests() const;
  /// Bytes of the last request.
  std::int64_t LastSize() const;
};

/// Blocks from any form of new that are in use.
std::int64_t LiveNewBlocks();

#endif
