#include "special/accuracy.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <set>

namespace accuracy {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLeastNormal = std::numeric_limits<double>::min();

// Errors below are made of last digits, which depend on the C library's exp and log.
constexpr double kLastDigits = 1e-13;

double Number(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

const Budget* FindBudget(const std::vector<Budget>& budgets, const std::string& function,
                         const std::string& region) {
  for (const Budget& budget : budgets) {
    if (budget.function == function && budget.region == region) return &budget;
  }
  return nullptr;
}

class AccuracyBudget : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override { ASSERT_TRUE(host.Load(TARN_MODULE_PATH)); }

  Function FindFunction() {
    for (const Function& function : Functions(host)) {
      if (function.name == GetParam()) return function;
    }
    ADD_FAILURE() << "no function has the table " << GetParam();
    return {};
  }

  EmbeddedHost host;
};

TEST_P(AccuracyBudget, HoldsInEveryRegion) {
  const Function function = FindFunction();
  const std::vector<Budget> budgets = ReadBudgets();
  for (const Region& region : ReadTable(GetParam())) {
    SCOPED_TRACE(region.name);
    const Budget* const budget = FindBudget(budgets, GetParam(), region.name);
    ASSERT_NE(budget, nullptr);
    ASSERT_FALSE(region.rows.empty());
    const double error = LargestError(function, region, host);
    const double measured = Number(budget->measured);
    if (std::isinf(measured)) {
      EXPECT_EQ(error, kInfinity) << "no longer without bound: state the figure";
      continue;
    }
    EXPECT_LE(error, Number(budget->allowed));
    EXPECT_LE(Number(budget->allowed), 1.5 * measured);
    if (measured > kLastDigits) {
      EXPECT_GE(error, measured / 1.5) << "better than stated";
    }
  }
}

TEST_P(AccuracyBudget, StandsInTheDocument) {
  const std::string document = ReadText(ProjectFile("docs/accuracy.md"));
  const std::string table = "<!-- table of " + GetParam() + " -->\n" +
                            MarkdownTable(GetParam(), ReadBudgets()) + "<!-- end of table -->\n";
  EXPECT_NE(document.find(table), std::string::npos) << "run tests/truth/update-accuracy";
}

std::vector<std::string> TableNames() {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(ProjectFile("tests/truth/data"))) {
    names.insert(entry.path().stem().string());
  }
  return {names.begin(), names.end()};
}

INSTANTIATE_TEST_SUITE_P(Functions, AccuracyBudget, testing::ValuesIn(TableNames()),
                         [](const auto& instance) { return instance.param; });

TEST(AccuracyBudgets, NameNoRegionWithoutTable) {
  for (const Budget& budget : ReadBudgets()) {
    bool found = false;
    for (const Region& region : ReadTable(budget.function)) found |= region.name == budget.region;
    EXPECT_TRUE(found) << budget.function << ' ' << budget.region;
  }
}

TEST(ErrorMeasure, OfOrdinaryTruth) {
  EXPECT_EQ(ErrorOf(Measure::kAbsolute, 3.0, 4.0L), 1.0);
  EXPECT_EQ(ErrorOf(Measure::kRelative, 3.0, -4.0L), 1.75);
  EXPECT_EQ(ErrorOf(Measure::kUlp, std::nextafter(1.0, 2.0), 1.0L), 1.0);
  EXPECT_EQ(ErrorOf(Measure::kUlp, std::nextafter(-1.0, -2.0), -1.0L), 1.0);
}

TEST(ErrorMeasure, OfZeroAndUnderflow) {
  EXPECT_EQ(ErrorOf(Measure::kAbsolute, 1e-30, 0.0L), 1e-30);
  EXPECT_EQ(ErrorOf(Measure::kRelative, 0.0, 0.0L), 0.0);
  EXPECT_EQ(ErrorOf(Measure::kRelative, -kLeastNormal, 0.0L), 1.0);
  EXPECT_EQ(ErrorOf(Measure::kRelative, 0.0, static_cast<long double>(kLeastNormal) / 4), 0.25);
}

TEST(ErrorMeasure, OfInfinity) {
  for (const Measure measure : {Measure::kAbsolute, Measure::kRelative, Measure::kUlp}) {
    EXPECT_EQ(ErrorOf(measure, kInfinity, 1e400L), 0.0);
    EXPECT_EQ(ErrorOf(measure, -kInfinity, 1e400L), kInfinity);
    EXPECT_EQ(ErrorOf(measure, 1e308, 1e400L), kInfinity);
    EXPECT_EQ(ErrorOf(measure, kInfinity, 1.0L), kInfinity);
  }
}

TEST(ErrorMeasure, OfNaN) {
  for (const Measure measure : {Measure::kAbsolute, Measure::kRelative, Measure::kUlp}) {
    EXPECT_EQ(ErrorOf(measure, kNaN, kNaN), 0.0);
    EXPECT_EQ(ErrorOf(measure, 1.0, kNaN), kInfinity);
    EXPECT_EQ(ErrorOf(measure, kNaN, 1.0L), kInfinity);
  }
}

TEST(ErrorMeasure, RejectsUnknownNames) {
  EXPECT_THROW(MeasureNamed("percent"), std::runtime_error);
}

}  // namespace
}  // namespace accuracy
