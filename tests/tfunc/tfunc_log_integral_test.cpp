/// Logarithm of the integral of the exponential of tabulated functions.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "host/embedded_host.h"
#include "tfunc_reference.h"
#include "tfunc_test_support.h"

namespace {

using tfunc_test::GuardedArray;
using tfunc_test::kInfinity;
using tfunc_test::kNaN;
using tfunc_test::MakeFunction;
using tfunc_test::MakeTables;
using tfunc_test::SameBits;
using tfunc_test::Table;

constexpr double kHalfUlp = std::numeric_limits<double>::epsilon() / 2;

double LogIntegralExp(const std::vector<double>& x, const std::vector<double>& y) {
  return TFunc(x.data(), y.data(), static_cast<int>(x.size())).LogIntegralExp();
}

/// How far rounding can move the logarithm for the interval between the knots i - 1 and i, with the
/// library's exponential and logarithm good to one unit in the last place, u being half of one:
///
///  - dx and dy are rounded once; either error reaches the logarithm at most as it is: u and u
///  |dy|;
///  - the logarithms are wrong by 2u of their size, and every one of the three sums by u of its
///  own:
///    the intermediate sums are below |y| + |ln dx| + |dy| + |ln|dy||;
///  - exp(dy) is wrong by 2u of itself, the difference to 1 by u more and the quotient by u more;
///    against exp(dy) - 1 the first is 2u / (1 - exp(-dy)), which 2u (1 + 1 / |dy|) bounds;
///  - below 1e-14 the neglected term is |dy| / 2, above 20 it is exp(-dy).
double BoundOfInterval(double x0, double y0, double x1, double y1) {
  const double dx = x1 - x0;
  const double dy = std::fabs(y1 - y0);
  const double logDy = dy > 0 ? std::fabs(std::log(dy)) : 0;
  const double size = std::fabs(y0) + std::fabs(std::log(dx)) + dy + logDy + 1;
  double bound = kHalfUlp * (1 + dy + 8 * size);
  if (dy < 1e-14) {
    bound += dy / 2;
  } else if (y1 - y0 > 20) {
    bound += std::exp(y0 - y1);
  } else {
    bound += kHalfUlp * (2 + 2 * (1 + 1 / dy));
  }
  return bound;
}

/// The same for the whole table. The sum of exponentials is a weighted mean of what it is made of,
/// so the worst interval bounds that part. The exponents t - M are rounded once (|t - M| exp(t - M)
/// is below 1, and the largest exponential is 1), the exponentials wrong by 2u, the sum by u for
/// each term; then come a logarithm and a sum.
double BoundOfTable(const std::vector<double>& x, const std::vector<double>& y, double result) {
  double worst = 0;
  for (std::size_t i = 1; i < x.size(); ++i) {
    if (x[i] != x[i - 1]) worst = std::max(worst, BoundOfInterval(x[i - 1], y[i - 1], x[i], y[i]));
  }
  const double n = static_cast<double>(x.size());
  return worst + kHalfUlp * (4 * n + 3 * std::log(n + 1) + 2 * std::fabs(result));
}

struct TruthRow {
  std::string region;
  std::vector<double> x, y;
  double value;
};

/// Rows "x0 x1 ... y0 y1 ... value" under lines "region NAME ...", as written by
/// tests/truth/log_integral_exp_truth.py.
std::vector<TruthRow> ReadTruth() {
  std::ifstream file(TARN_SOURCE_DIR "/tests/tfunc/data/LogIntegralExp.txt");
  std::vector<TruthRow> rows;
  std::string region;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::vector<double> numbers;
    if (line.starts_with("#")) continue;
    if (line.starts_with("region")) {
      words >> region >> region;
      continue;
    }
    for (std::string word; words >> word;) numbers.push_back(std::strtod(word.c_str(), nullptr));
    const auto n = static_cast<std::ptrdiff_t>(numbers.size() / 2);
    rows.push_back({region,
                    {numbers.begin(), numbers.begin() + n},
                    {numbers.begin() + n, numbers.begin() + 2 * n},
                    numbers.back()});
  }
  return rows;
}

TEST(TFuncLogIntegralExp, AgreesWithTheTruthAsFarAsItsFormulaeAllow) {
  const std::vector<TruthRow> rows = ReadTruth();
  ASSERT_GT(rows.size(), 300u);
  for (const TruthRow& row : rows) {
    const double result = LogIntegralExp(row.x, row.y);
    EXPECT_LE(std::fabs(result - row.value), BoundOfTable(row.x, row.y, row.value))
        << row.region << ", " << row.x.size() << " knots from y = " << row.y[0] << " to "
        << row.y.back();
  }
}

TEST(TFuncLogIntegralExp, OfAConstant) {
  EXPECT_EQ(LogIntegralExp({0, 1}, {0, 0}), 0);
  EXPECT_EQ(LogIntegralExp({2, 3}, {-700, -700}), -700);
  EXPECT_DOUBLE_EQ(LogIntegralExp({0, 1, 2, 5}, {3, 3, 3, 3}), 3 + std::log(5.0));
}

TEST(TFuncLogIntegralExp, NeitherLargeNorSmallOrdinatesOverflow) {
  EXPECT_EQ(LogIntegralExp({0, 1}, {1e300, 1e300}), 1e300);
  EXPECT_EQ(LogIntegralExp({0, 1}, {-1e299, -1e299}), -1e299);
  EXPECT_DOUBLE_EQ(LogIntegralExp({0, 1, 2}, {5000, 5000, 5000}), 5000 + std::log(2.0));
}

TEST(TFuncLogIntegralExp, IntervalsWithoutWidthDoNotCount) {
  EXPECT_TRUE(SameBits(LogIntegralExp({0, 1, 1, 1, 3}, {0, 1, 900, 2, 4}),
                       tfunc_reference::LogIntegralExp({0, 1, 1, 1, 3}, {0, 1, 900, 2, 4})));
  EXPECT_EQ(LogIntegralExp({0, 1, 1, 2}, {0, 0, 700, 700}), 700);
}

TEST(TFuncLogIntegralExp, WithoutAnIntervalThatCountsItIsMinusInfinity) {
  EXPECT_EQ(LogIntegralExp({}, {}), -kInfinity);
  EXPECT_EQ(LogIntegralExp({1}, {5}), -kInfinity);
  EXPECT_EQ(LogIntegralExp({1, 1, 1}, {5, 6, 7}), -kInfinity);
}

TEST(TFuncLogIntegralExp, TheThreeFormsMeetWhereTheyAreStated) {
  const auto logOfRatio = [](double dy) { return std::log((std::exp(dy) - 1) / dy); };
  const double below = std::nextafter(1e-14, 0.0);
  EXPECT_TRUE(SameBits(LogIntegralExp({0, 1}, {0, below}), 0.0));
  EXPECT_TRUE(SameBits(LogIntegralExp({0, 1}, {0, 1e-14}), logOfRatio(1e-14)));
  EXPECT_TRUE(SameBits(LogIntegralExp({0, 1}, {0, -1e-14}), logOfRatio(-1e-14)));
  EXPECT_TRUE(SameBits(LogIntegralExp({0, 1}, {0, -below}), 0.0));
  EXPECT_TRUE(SameBits(LogIntegralExp({0, 1}, {0, 20}), logOfRatio(20)));
  const double above = std::nextafter(20.0, 21.0);
  EXPECT_TRUE(SameBits(LogIntegralExp({0, 1}, {0, above}), above - std::log(above)));
  EXPECT_TRUE(SameBits(LogIntegralExp({0, 1}, {0, -above}), logOfRatio(-above)));
}

TEST(TFuncLogIntegralExp, NaNAndInfinityEnd) {
  EXPECT_TRUE(std::isnan(LogIntegralExp({0, 1, 2}, {0, kNaN, 1})));
  EXPECT_TRUE(std::isnan(LogIntegralExp({0, kNaN, 2}, {0, 1, 1})));
  EXPECT_TRUE(std::isnan(LogIntegralExp({0, 1}, {0, kInfinity})));
  EXPECT_TRUE(std::isnan(LogIntegralExp({1, 0}, {0, 1})));
}

TEST(TFuncLogIntegralExp, SameBitsAsStepByStepInEveryTable) {
  for (const Table& table : MakeTables(false)) {
    for (const double factor : {1e-16, 1e-13, 1.0, 30.0, 1e4}) {
      Table scaled = table;
      for (double& value : scaled.y) value *= factor;
      EXPECT_TRUE(SameBits(MakeFunction(scaled).LogIntegralExp(),
                           tfunc_reference::LogIntegralExp(scaled.x, scaled.y)))
          << table.name << " times " << factor;
    }
  }
}

TEST(TFuncLogIntegralExp, ReadsItsPointsOnly) {
  for (const Table& table : MakeTables(false)) {
    for (const bool atEnd : {false, true}) {
      GuardedArray x(table.x, atEnd);
      GuardedArray y(table.y, atEnd);
      EXPECT_TRUE(SameBits(TFunc(x.Data(), y.Data(), table.Size(), 1).LogIntegralExp(),
                           tfunc_reference::LogIntegralExp(table.x, table.y)));
    }
  }
}

/// A table of `n` knots with steps of 1/4 and ordinates that go up and down.
Table WaveOf(int n) {
  Table table;
  for (int i = 0; i < n; ++i) {
    table.x.push_back(0.25 * i);
    table.y.push_back(3 * std::sin(0.01 * i));
  }
  return table;
}

TEST(TFuncLogIntegralExp, TermsUpTo64KiBLiveOnTheStack) {
  EmbeddedHost host;
  const Table table = WaveOf(8193);
  const std::int64_t before = host.HeapRequestCount();
  const double result = MakeFunction(table).LogIntegralExp();
  EXPECT_EQ(host.HeapRequestCount(), before);
  EXPECT_TRUE(SameBits(result, tfunc_reference::LogIntegralExp(table.x, table.y)));
}

TEST(TFuncLogIntegralExp, MoreTermsLiveInTheHostHeap) {
  EmbeddedHost host;
  const Table table = WaveOf(8194);
  const std::int64_t before = host.HeapRequestCount();
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  const double result = MakeFunction(table).LogIntegralExp();
  EXPECT_EQ(host.HeapRequestCount(), before + 1);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
  EXPECT_TRUE(SameBits(result, tfunc_reference::LogIntegralExp(table.x, table.y)));
}

TEST(TFuncLogIntegralExp, ARefusedWorkAreaCostsTimeOnly) {
  EmbeddedHost host;
  Table table = WaveOf(20000);
  for (std::size_t i = 100; i < 200; ++i) table.x[i] = table.x[100];
  host.SetHeapFailure([](std::int64_t) { return true; });
  const double result = MakeFunction(table).LogIntegralExp();
  EXPECT_EQ(host.HeapRequestCount(), 1);
  host.SetHeapFailure({});
  EXPECT_FALSE(host.HasError());
  EXPECT_TRUE(SameBits(result, tfunc_reference::LogIntegralExp(table.x, table.y)));
}

TEST(TFuncLogIntegralExp, AMillionKnots) {
  EmbeddedHost host;
  const Table table = WaveOf(1000000);
  EXPECT_TRUE(SameBits(MakeFunction(table).LogIntegralExp(),
                       tfunc_reference::LogIntegralExp(table.x, table.y)));
}

}  // namespace
