#ifndef TESTS_SPECIAL_HOST_ERRORS_H
#define TESTS_SPECIAL_HOST_ERRORS_H

/// @file
/// Expectations about the errors that a function raised in the embedded host.

#include <gtest/gtest.h>

#include <limits>

#include "host/embedded_host.h"

namespace host_errors {

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// A test with a host; whatever error a test does not take itself fails it.
class HostTest : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(host.TakeError().number, 0); }

  /// One error 3 was raised since the last call, without a text of its own.
  void ExpectBareError() {
    ExpectCount();
    const HostError error = host.TakeError();
    EXPECT_EQ(error.number, 3);
    EXPECT_EQ(error.message, error.name);
  }

  /// One error 3 was raised since the last call, with this text.
  void ExpectError(const char* text) {
    ExpectCount();
    const HostError error = host.TakeError();
    EXPECT_EQ(error.number, 3);
    EXPECT_EQ(error.message, text);
  }

  EmbeddedHost host;

 private:
  void ExpectCount() {
    EXPECT_EQ(host.RaisedErrorCount(), taken_ + 1);
    taken_ = host.RaisedErrorCount();
  }

  std::int64_t taken_ = 0;
};

}  // namespace host_errors

#endif
