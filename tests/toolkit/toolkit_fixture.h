#ifndef TARN_TESTS_TOOLKIT_TOOLKIT_FIXTURE_H
#define TARN_TESTS_TOOLKIT_TOOLKIT_FIXTURE_H

/// @file
/// A host with the base module and the companion module loaded.

#include <vector>

#include "support/host_fixture.h"

class ToolkitTest : public HostTest {
 protected:
  ToolkitTest() {
    EXPECT_TRUE(host.Load(TARN_MODULE_PATH)) << host.TakeError().ToString();
    EXPECT_TRUE(host.Load(TARN_TOOLKIT_PATH)) << host.TakeError().ToString();
  }

  /// The error of an expression that must fail, as "number function: message".
  std::string Refusal(const std::string& expression) {
    const HostError error = Failure("return " + expression);
    return std::to_string(error.number) + ' ' + error.function + ": " + error.message;
  }

  /// The elements of an array or vector that an expression gives.
  std::vector<double> Numbers(const std::string& expression) {
    const Variable value = Value("return " + expression);
    std::vector<double> numbers;
    for (std::int64_t i = 0; i < value.GetDim(); ++i) {
      numbers.push_back(value.GetArray()[i].GetDoubleNumb());
    }
    return numbers;
  }

  /// The elements of a matrix that an expression gives, row after row.
  std::vector<double> Elements(const std::string& expression) {
    const Variable rows = Value("return (" + expression + "):Array()");
    std::vector<double> numbers;
    for (std::int64_t i = 0; i < rows.GetDim(); ++i) {
      const Variable& row = rows.GetArray()[i];
      for (std::int64_t j = 0; j < row.GetDim(); ++j) {
        numbers.push_back(row.GetArray()[j].GetDoubleNumb());
      }
    }
    return numbers;
  }

  static void ExpectNear(const std::vector<double>& got, const std::vector<double>& expected,
                         double tolerance) {
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
      EXPECT_NEAR(got[i], expected[i], tolerance) << "element " << i + 1;
    }
  }
};

using NumberList = std::vector<double>;

#endif
