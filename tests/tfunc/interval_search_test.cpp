/// The search behind tabulated functions: always the interval of plain bisection.

#include "tfunc/interval_search.h"

#include <gtest/gtest.h>

#include "tfunc_reference.h"
#include "tfunc_test_support.h"

namespace {

using tfunc_test::GuardedArray;
using tfunc_test::kNaN;
using tfunc_test::MakeArguments;
using tfunc_test::MakeTables;
using tfunc_test::Table;

TEST(BisectInterval, EndsWhereTheLoopOfTheTextbookEnds) {
  for (const Table& table : MakeTables(false)) {
    for (const double value : MakeArguments(table, 1)) {
      if (table.x[0] > value) continue;
      EXPECT_EQ(tarn::BisectInterval(table.x.data(), table.Size(), value),
                tfunc_reference::Bisect(table.x, value).lo)
          << table.name << " at " << value;
    }
  }
}

TEST(BisectInterval, TakesTheRightNumberOfStepsForEverySize) {
  std::vector<double> x;
  for (int n = 1; n <= 300; ++n) {
    x.push_back(n - 1);
    for (int i = 0; i < std::max(n - 1, 1); ++i) {
      EXPECT_EQ(tarn::BisectInterval(x.data(), n, i), i) << n;
      EXPECT_EQ(tarn::BisectInterval(x.data(), n, i + 0.5), i) << n;
    }
  }
}

TEST(BisectInterval, FindsTheLastOfEqualAbscissae) {
  const double x[] = {0, 1, 1, 1, 2, 3};
  EXPECT_EQ(tarn::BisectInterval(x, 6, 1.0), 3);
}

TEST(BisectInterval, GoesRightAtNaN) {
  const double x[] = {0, 1, kNaN, 3, 4};
  EXPECT_EQ(tarn::BisectInterval(x, 5, 0.5), 2);
  EXPECT_EQ(tarn::BisectInterval(x, 5, kNaN), 3);
}

TEST(IntervalSearch, RemembersWithoutChangingTheResult) {
  for (const Table& table : MakeTables(false)) {
    std::vector<double> arguments = MakeArguments(table, 2);
    const std::vector<double> more = MakeArguments(table, 3);
    std::vector<double> ascending = more;
    std::erase_if(ascending, [](double value) { return std::isnan(value); });
    std::sort(ascending.begin(), ascending.end());
    arguments.insert(arguments.end(), ascending.begin(), ascending.end());
    arguments.insert(arguments.end(), ascending.rbegin(), ascending.rend());

    tarn::IntervalSearch search;
    for (const double value : arguments) {
      if (table.x[0] > value) continue;
      EXPECT_EQ(search.Find(table.x.data(), table.Size(), value),
                tfunc_reference::Bisect(table.x, value).lo)
          << table.name << " at " << value;
    }
  }
}

TEST(IntervalSearch, WalksThroughATableByStepsOfEveryLength) {
  std::vector<double> x(50);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<double>(i * i);
  for (int step = 0; step <= 7; ++step) {
    tarn::IntervalSearch search;
    for (int i = 0; i < 49; i += std::max(step, 1)) {
      EXPECT_EQ(search.Find(x.data(), 50, i * i), i);
      EXPECT_EQ(search.Find(x.data(), 50, i * i + 0.5), i);
    }
  }
}

TEST(IntervalSearch, StaysInsideATableThatShrank) {
  std::vector<double> x(100);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<double>(i);
  tarn::IntervalSearch search;
  ASSERT_EQ(search.Find(x.data(), 100, 97.5), 97);
  for (int n = 1; n <= 8; ++n) {
    GuardedArray few({x.begin(), x.begin() + n}, true);
    tarn::IntervalSearch remembering = search;
    EXPECT_EQ(remembering.Find(few.Data(), n, 97.5), std::max(n - 2, 0));
    EXPECT_EQ(remembering.Find(few.Data(), n, 0.5), 0);
  }
}

TEST(IntervalSearch, StaysInsideATableThatIsPutOutOfOrder) {
  std::vector<double> x(100);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<double>(i);
  tarn::IntervalSearch search;
  ASSERT_EQ(search.Find(x.data(), 100, 50.5), 50);
  std::shuffle(x.begin() + 1, x.end(), std::mt19937_64(7));
  GuardedArray shuffled(x, true);
  for (int i = 1; i < 1000; ++i) {
    const int found = search.Find(shuffled.Data(), 100, i * 0.1);
    EXPECT_GE(found, 0);
    EXPECT_LE(found, 98);
  }
}

TEST(IntervalSearch, ForgetsOneTableForAnother) {
  const double ascending[] = {0, 1, 2, 3, 4, 5};
  const double descending[] = {0, 5, 4, 3, 2, 6};
  tarn::IntervalSearch search;
  ASSERT_EQ(search.Find(ascending, 6, 1.5), 1);
  search.Forget();
  for (const double value : {0.5, 2.5, 3.5, 4.5, 5.5}) {
    EXPECT_EQ(search.Find(descending, 6, value),
              tfunc_reference::Bisect({descending, descending + 6}, value).lo);
  }
}

}  // namespace
