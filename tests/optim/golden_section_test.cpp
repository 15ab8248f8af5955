// GoldSection_Double: order of evaluation, split intervals, ties, ends, extra parameter, trace.

#include "one_dimensional_support.h"

namespace {

using tarn::StopReason;

const SearchCase kCases[] = {
    {"parabola", [](double x) { return (x - 0.3) * (x - 0.3); }, 0, 1},
    {"minimum near b", [](double x) { return (x - 4.9) * (x - 4.9); }, -3, 5},
    {"rising", [](double x) { return std::exp(x); }, -1, 2},
    {"falling", [](double x) { return -x; }, -1, 2},
    {"absolute value", [](double x) { return std::fabs(x - 0.123); }, -1, 1},
    {"cosine", [](double x) { return std::cos(x); }, 0, 6},
    {"two minima", [](double x) { return std::cos(3 * x); }, -1.2, 1.3},
    {"many minima", [](double x) { return std::sin(20 * x) + 0.1 * x * x; }, -4, 5},
    {"constant", [](double) { return 2.5; }, 0, 1},
    {"steps down", [](double x) { return std::floor(4 * x) / 4; }, 0, 1.1},
    {"steps up", [](double x) { return -std::floor(4 * x) / 4; }, 0, 1.1},
    {"plateau", [](double x) { return std::max(std::fabs(x - 0.4), 0.2); }, 0, 1},
    {"plateau above a", [](double x) { return x < 0.1 ? 0.0 : 1.0; }, 0, 1},
    {"plateau above b", [](double x) { return x > 0.9 ? 0.0 : 1.0; }, 0, 1},
    {"reversed interval", [](double x) { return (x - 1) * (x - 1); }, 3, -1},
    {"infinite at an end", [](double x) { return 1 / x + x; }, 0, 9},
    {"not a number at b", [](double x) { return x > 8.9 ? kNaN : (x - 2) * (x - 2); }, 0, 9},
    {"hump", [](double x) { return -(x - 0.4) * (x - 0.4); }, 0, 1},
};

TEST_F(SearchTest, GoldenSectionEvaluatesWhereTheProcedureDoes) {
  for (const SearchCase& test : kCases) {
    for (const double accuracy : {1e-3, 1e-7, 0.3, 1.5}) {
      reference::Log<double> log;
      const double expected = reference::Golden(test.f, test.a, test.b, accuracy, log);
      Variable function = RecordedFunction::Make(test.f);
      double boundaries[2] = {test.a, test.b};
      GoldSection_Double search(function, boundaries, accuracy);
      search.SetSilent(0);
      output.clear();
      EXPECT_EQ(Bits(search.Solve()), Bits(expected)) << test.name;
      ExpectSameBits(RecordedFunction::calls, log.evaluated, test.name);
      EXPECT_EQ(output, TraceText(log.traced)) << test.name;
      EXPECT_EQ(search.GetEvaluationCount(), static_cast<std::int64_t>(log.evaluated.size()));
      EXPECT_EQ(search.GetBoundaries()[0], test.a);
      EXPECT_EQ(search.GetBoundaries()[1], test.b);
    }
  }
}

/// A search of a recorded function on [a, b].
GoldSection_Double Search(std::function<double(double)> f, double a, double b,
                          double accuracy = 1e-9) {
  Variable function = RecordedFunction::Make(std::move(f));
  double boundaries[2] = {a, b};
  return GoldSection_Double(function, boundaries, accuracy);
}

TEST_F(SearchTest, GoldenSectionFindsTheMinimum) {
  GoldSection_Double search = Search([](double x) { return std::fabs(x - 0.3); }, 0, 1, 1e-12);
  EXPECT_NEAR(search.Solve(), 0.3, 1e-12);
  EXPECT_EQ(search.GetStopReason(), StopReason::kConvergedStep);
  EXPECT_EQ(search.GetItterationCount() + 3, search.GetEvaluationCount());
}

TEST_F(SearchTest, GoldenSectionOfAnEmptyIntervalEvaluatesItThreeTimes) {
  GoldSection_Double search = Search([](double x) { return x; }, 3, 3);
  EXPECT_EQ(search.Solve(), 3);
  EXPECT_EQ(RecordedFunction::calls, (std::vector<double>{3, 3, 3}));
  EXPECT_EQ(search.GetStopReason(), StopReason::kNothingToShrink);
}

TEST_F(SearchTest, GoldenSectionSplitsWhereTheInnerPointLiesAboveBothEnds) {
  // Steeper on the left, so that the left end is the lowest point.
  static const auto hump = [](double x) { return (x < 0.45 ? -2 : -1) * (x - 0.45) * (x - 0.45); };
  GoldSection_Double search = Search(hump, 0, 1, 1e-9);
  EXPECT_EQ(search.Solve(), 0);
  EXPECT_EQ(search.GetBoundaries()[0], 0);
  EXPECT_EQ(search.GetBoundaries()[1], 1);
  // Not split, the search follows the lower of the two inner points to the other end.
  double boundaries[2] = {0, 1};
  const auto plain = [](double x, void*) { return hump(x); };
  EXPECT_EQ(GoldSection(boundaries, plain, nullptr, 1e-9), 1);
}

TEST_F(SearchTest, GoldenSectionReportsTheEndOfTheChosenPart) {
  // The left part is searched well and chosen; the right one meets a value that is not a number.
  const double split = 0.381966011250105;
  GoldSection_Double search = Search(
      [split](double x) {
        if (x == split) return 1.0;
        if (x < split) return (x - 0.1) * (x - 0.1) - 5;
        return x < 1 ? kNaN : 0.0;
      },
      0, 1, 1e-9);
  EXPECT_NEAR(search.Solve(), 0.1, 1e-7);
  EXPECT_EQ(search.GetStopReason(), StopReason::kConvergedStep);
}

TEST_F(SearchTest, GoldenSectionTieKeepsTheSideOfTheLowerEnd) {
  // Inner points tie above the ends: with a the lower end the answer is a, with b it is b, and with
  // equal ends a. (Both ends below the inner point would split, so one end is level with it.)
  EXPECT_EQ(Search([](double x) { return x == 0 ? 0.0 : 1.0; }, 0, 1).Solve(), 0);
  EXPECT_EQ(Search([](double x) { return x == 1 ? 0.0 : 1.0; }, 0, 1).Solve(), 1);
}

TEST_F(SearchTest, GoldenSectionWithAccuracyOneAnswersAfterThreeEvaluations) {
  GoldSection_Double lowInside = Search([](double x) { return std::fabs(x - 0.4); }, 0, 1, 1);
  EXPECT_EQ(lowInside.Solve(), 0.381966011250105);
  EXPECT_EQ(lowInside.GetEvaluationCount(), 3);
  GoldSection_Double lowAtA = Search([](double x) { return x; }, 0, 1, 2);
  EXPECT_EQ(lowAtA.Solve(), 0);
  GoldSection_Double lowAtB = Search([](double x) { return -x; }, 0, 1, 2);
  EXPECT_EQ(lowAtB.Solve(), 1);
}

TEST_F(SearchTest, GoldenSectionWithAccuracyZeroEnds) {
  for (const auto& f : {std::function<double(double)>([](double x) { return (x - 2) * (x - 2); }),
                        std::function<double(double)>([](double x) { return x; }),
                        std::function<double(double)>([](double) { return 0.0; })}) {
    GoldSection_Double search = Search(f, 0, 3, 0);
    search.Solve();
    EXPECT_LT(search.GetEvaluationCount(), 5000);
    EXPECT_TRUE(search.GetStopReason() == StopReason::kNothingToShrink ||
                search.GetStopReason() == StopReason::kConvergedStep);
  }
}

TEST_F(SearchTest, GoldenSectionEndsWhereTheValueIsNotANumber) {
  GoldSection_Double always = Search([](double) { return kNaN; }, 0, 1);
  EXPECT_EQ(always.Solve(), 0.381966011250105);  // neither end lies below it
  EXPECT_EQ(always.GetStopReason(), StopReason::kNotANumber);
  EXPECT_EQ(always.GetEvaluationCount(), 4);
  GoldSection_Double later =
      Search([](double x) { return x > 0.5 && x < 0.7 ? kNaN : (x - 0.4) * (x - 0.4); }, 0, 1);
  EXPECT_EQ(later.Solve(), 0.381966011250105);
  EXPECT_EQ(later.GetStopReason(), StopReason::kNotANumber);
}

TEST_F(SearchTest, GoldenSectionOfInfiniteIntervalsEnds) {
  GoldSection_Double search = Search([](double x) { return x; }, -kInfinity, kInfinity);
  search.Solve();
  EXPECT_LE(search.GetEvaluationCount(), 4);
}

TEST_F(SearchTest, GoldenSectionOfAFunctionThatAlwaysSplitsEnds) {
  // Every value is higher than all before: each part splits again.
  double next = 0;
  GoldSection_Double search = Search([&next](double) { return next += 1; }, 0, 1, 1e-9);
  search.Solve();
  EXPECT_LT(search.GetEvaluationCount(), 3'000'000);
  EXPECT_EQ(search.GetBoundaries()[0], 0);
  EXPECT_EQ(search.GetBoundaries()[1], 1);
}

TEST_F(SearchTest, GoldenSectionGivesNativeFunctionsTheAddressOfItsExtraParameter) {
  GoldSection_Double search = Search([](double x) { return x * x; }, -1, 2);
  Variable extra(std::int32_t{7});
  search.SetExtraParam(extra);
  search.Solve();
  const auto* seen = static_cast<Variable*>(RecordedFunction::lastExtra);
  EXPECT_NE(seen, &extra);
  EXPECT_EQ(seen->GetInt32Numb(), 7);
}

TEST_F(SearchTest, GoldenSectionOfAScriptFunctionFollowsTheSameSteps) {
  const auto f = [](double x) { return (x - 0.5) * (x - 0.5) + 3 / (x + 1); };
  reference::Log<double> log;
  const double expected = reference::Golden(f, 0, 4, 1e-9, log);
  Variable function = Script("function(x, k) return (x - k)*(x - k) + 3/(x + 1) end");
  double boundaries[2] = {0, 4};
  GoldSection_Double search(function, boundaries, 1e-9);
  Variable extra;
  extra = 0.5;
  search.SetExtraParam(extra);
  search.SetSilent(0);
  EXPECT_EQ(Bits(search.Solve()), Bits(expected));
  EXPECT_EQ(output, TraceText(log.traced));
}

TEST_F(SearchTest, GoldenSectionWithoutProcessorTakesScriptsForZero) {
  Variable function = Script("function(x) return x end");
  double boundaries[2] = {0, 1};
  GoldSection_Double search(function, boundaries, 0.5);
  host.HideOwner(true);
  // All values tie, so that each new point becomes the inner one.
  reference::Log<double> log;
  const double expected = reference::Golden([](double) { return 0.0; }, 0, 1, 0.5, log);
  EXPECT_EQ(search.Solve(), expected);
  host.HideOwner(false);
}

TEST_F(SearchTest, GoldenSectionLeavesErrorsOfTheFunctionPending) {
  Variable function = Script("function(x) error('no value here') end");
  double boundaries[2] = {0, 1};
  GoldSection_Double search(function, boundaries, 0.1);
  search.Solve();
  EXPECT_TRUE(host.HasError());
  EXPECT_EQ(search.GetStopReason(), StopReason::kObjectiveError);
}

TEST_F(SearchTest, GoldenSectionIsSilentUnlessToldOtherwise) {
  GoldSection_Double search = Search([](double x) { return x * x; }, -1, 2, 0.5);
  search.Solve();
  EXPECT_EQ(output, "");
}

TEST_F(SearchTest, GoldenSectionCopiesShareNothing) {
  GoldSection_Double search = Search([](double x) { return std::cos(x); }, 2, 5, 1e-9);
  GoldSection_Double copy(search);
  copy.GetBoundaries()[0] = 8;
  copy.GetBoundaries()[1] = 11;
  GoldSection_Double assigned = Search([](double x) { return std::cos(x); }, 0, 1);
  assigned = copy;
  GoldSection_Double moved(std::move(copy));
  EXPECT_NEAR(search.Solve(), 3.14159265, 1e-6);
  EXPECT_NEAR(assigned.Solve(), 9.42477796, 1e-6);
  EXPECT_NEAR(moved.Solve(), 9.42477796, 1e-6);
  moved = GoldSection_Double(search);
  EXPECT_NEAR(moved.Solve(), 3.14159265, 1e-6);
}

}  // namespace
