#ifndef TARN_TESTS_SUPPORT_HOST_FIXTURE_H
#define TARN_TESTS_SUPPORT_HOST_FIXTURE_H

/// @file
/// A host per test, with its text output captured.

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "host/embedded_host.h"

/// A path for a file of this test process alone; tests run side by side.
inline std::string TemporaryPath(const std::string& name) {
  return ::testing::TempDir() + "tarn_" + std::to_string(getpid()) + "_" + name;
}

class HostTest : public ::testing::Test {
 protected:
  HostTest() {
    host.SetOutput([this](std::string_view text) { output += text; });
  }

  /// Runs a script that must succeed.
  void Run(const std::string& text) {
    EXPECT_TRUE(host.Evaluate(text)) << text << "\n  " << host.TakeError().ToString();
  }

  /// The value of a script that must succeed.
  Variable Value(const std::string& text) {
    Variable value;
    EXPECT_TRUE(host.Evaluate(text, &value)) << text << "\n  " << host.TakeError().ToString();
    return value;
  }

  double Number(const std::string& text) { return Value(text).GetDoubleNumb(); }

  std::string Text(const std::string& text) {
    const Variable value = Value("return tostring(" + text + ")");
    const char* characters = value;
    return characters == nullptr ? "" : characters;
  }

  /// The error of a script that must fail.
  HostError Failure(const std::string& text) {
    EXPECT_FALSE(host.Evaluate(text)) << text;
    EXPECT_TRUE(host.HasError()) << text;
    return host.TakeError();
  }

  EmbeddedHost host;
  std::string output;
};

#endif
