// The example of docs/arrays.md and its table of medians.

#include <gtest/gtest.h>

#include <vector>

#include "host/embedded_host.h"
#include "tarn_base_math.h"

namespace tarn_test {
namespace {

TEST(DocumentedExample, SortsFindsAndKeepsATable) {
  EmbeddedHost host;
  double keys[] = {2.5, 0.5, 1.5};
  int order[] = {0, 1, 2};
  QSortIndex(order, keys, 3);
  EXPECT_EQ(std::vector<int>(order, order + 3), (std::vector<int>{1, 2, 0}));
  QSort(keys, 3);
  EXPECT_EQ(std::vector<double>(keys, keys + 3), (std::vector<double>{0.5, 1.5, 2.5}));
  EXPECT_EQ(BFind(keys, 1.5, 3), 1);
  EXPECT_EQ(BFindInsertIndex(keys, 2.0, 3), 2);

  T_ArrayEx<double> table(0, 2);
  for (const double t : {3.0, 1.0, 2.0}) {
    const double record[] = {t, (t - 2) * (t - 2)};
    table.InsertItem(BFindInsertIndex(table[0], t, table.Len(), 2), record);
  }
  EXPECT_EQ(table.FindMinIndex(1), 1);
  EXPECT_EQ(table(1, 0), 2);
  EXPECT_EQ(table(1, 1), 0);
}

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
