// The table of a line search: order and values of its records, its lowest record.

#include "optim/line_table.h"

#include <random>

#include "climb_support.h"

namespace {

/// Values in which ties, zeros of both signs and NaNs are frequent.
double Draw(std::mt19937& random) {
  const double values[] = {0.0, -0.0, 1, 2, -1, std::numeric_limits<double>::quiet_NaN(), 0.5};
  return values[random() % std::size(values)];
}

TEST(LineTableTest, HoldsWhatAnArrayOfRecordsHoldsAndKnowsItsLowestRecord) {
  EmbeddedHost host;
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    tarn::LineTable<double> table(2, 1);
    T_ArrayEx<double> plain(1, 2);
    table(0, 1) = plain(0, 1) = Draw(random);
    for (int k = 1; k < 120; ++k) {
      const auto place = static_cast<std::int64_t>(random() % static_cast<unsigned>(k + 1));
      const double record[2] = {static_cast<double>(k), Draw(random)};
      ASSERT_TRUE(table.Insert(place, record));
      plain.InsertItem(place, record);
      ASSERT_EQ(table.Len(), plain.Len());
      ASSERT_EQ(table.Lowest(), plain.FindMinIndex(1)) << round << ' ' << k;
    }
    for (std::int64_t i = 0; i < plain.Len(); ++i) {
      ASSERT_EQ(table(i, 0), plain(i, 0));
      ASSERT_EQ(Bits(table(i, 1)), Bits(plain(i, 1)));
    }
  }
}

TEST(LineTableTest, RefusedRoomLeavesTheTable) {
  EmbeddedHost host;
  tarn::LineTable<double> table(2, 1);
  const double record[2] = {1, 2};
  host.SetHeapFailure([](std::int64_t) { return true; });
  EXPECT_FALSE(table.Insert(1, record));
  host.SetHeapFailure({});
  EXPECT_EQ(table.Len(), 1);
  EXPECT_TRUE(table.Insert(1, record));
  EXPECT_EQ(table.Len(), 2);
}

}  // namespace
