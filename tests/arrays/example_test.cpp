// The table of medians in docs/arrays.md.

#include <gtest/gtest.h>

#include <vector>

#include "host/embedded_host.h"
#include "tarn_base_math.h"

namespace tarn_test {
namespace {

TEST(DocumentedExample, Medians) {
  EmbeddedHost host;
  const auto median = [](std::vector<double> a) {
    return QMedian(a.data(), static_cast<std::int64_t>(a.size()));
  };
  EXPECT_EQ(median({1, 2}), 1.5);
  EXPECT_EQ(median({1, 2, 3}), 2.5);
  EXPECT_EQ(median({1, 2, 8, 9}), 8);
  EXPECT_EQ(median({9, 1, 2, 8}), 5.5);
}

}  // namespace
}  // namespace tarn_test
