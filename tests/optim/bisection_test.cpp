// BiSection_Double: order of evaluation, ends, extra parameter, trace.

#include "one_dimensional_support.h"

namespace {

using tarn::StopReason;

const SearchCase kCases[] = {
    {"line", [](double x) { return x - 0.3; }, 0, 1},
    {"falling line", [](double x) { return 0.7 - x; }, 0, 1},
    {"cubic", [](double x) { return x * x * x - 2 * x - 5; }, 2, 3},
    {"cosine", [](double x) { return std::cos(x) - x; }, 0, 1},
    {"exponential", [](double x) { return std::exp(x) - 3; }, -5, 5},
    {"logarithm", [](double x) { return std::log(x); }, 1e-3, 20},
    {"several zeros", [](double x) { return std::sin(x); }, 1, 17},
    {"step", [](double x) { return x < 0.123 ? -1.0 : 1.0; }, -1, 1},
    {"steep", [](double x) { return std::tanh(1e6 * (x - 0.25)); }, -4, 3},
    {"flat", [](double x) { return std::pow(x - 1.1, 9); }, 0, 2},
    {"reversed interval", [](double x) { return x * x - 2; }, 2, 0},
    {"infinite at an end", [](double x) { return 1 / x - 4; }, 0, 3},
    {"far from zero", [](double x) { return x - 1000000.3; }, 1e6, 1e6 + 1},
    {"tiny", [](double x) { return x - 3e-200; }, 0, 1e-199},
};

TEST_F(SearchTest, BisectionEvaluatesWhereTheProcedureDoes) {
  for (const SearchCase& test : kCases) {
    for (const double accuracy : {1e-3, 1e-10, 0.4, 2.0}) {
      reference::Log<double> log;
      const double expected = reference::Bisect(test.f, test.a, test.b, accuracy, log);
      Variable function = RecordedFunction::Make(test.f);
      double boundaries[2] = {test.a, test.b};
      BiSection_Double search(function, boundaries, accuracy);
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
BiSection_Double Search(std::function<double(double)> f, double a, double b,
                        double accuracy = 1e-9) {
  Variable function = RecordedFunction::Make(std::move(f));
  double boundaries[2] = {a, b};
  return BiSection_Double(function, boundaries, accuracy);
}

TEST_F(SearchTest, BisectionOfAnEmptyIntervalReturnsItsEndWithoutEvaluation) {
  BiSection_Double search = Search([](double x) { return x; }, 3, 3);
  EXPECT_EQ(search.Solve(), 3);
  EXPECT_TRUE(RecordedFunction::calls.empty());
  EXPECT_EQ(search.GetStopReason(), StopReason::kNothingToShrink);
}

TEST_F(SearchTest, BisectionReturnsAZeroAtBAfterOneEvaluationWithoutTrace) {
  BiSection_Double search = Search([](double x) { return x - 2; }, 0, 2);
  search.SetSilent(0);
  EXPECT_EQ(search.Solve(), 2);
  EXPECT_EQ(RecordedFunction::calls, (std::vector<double>{2}));
  EXPECT_EQ(output, "");
  EXPECT_EQ(search.GetStopReason(), StopReason::kConvergedValue);
}

TEST_F(SearchTest, BisectionReturnsAZeroAtAAfterTwoEvaluationsAndTracesOnlyB) {
  BiSection_Double search = Search([](double x) { return x; }, 0, 2);
  search.SetSilent(0);
  EXPECT_EQ(search.Solve(), 0);
  EXPECT_EQ(RecordedFunction::calls, (std::vector<double>{2, 0}));
  EXPECT_EQ(output, "Argument = 2, Function = 2\r\n");
}

TEST_F(SearchTest, BisectionStopsAtAZeroInTheMiddle) {
  BiSection_Double search = Search([](double x) { return x - 1; }, 0, 2);
  EXPECT_EQ(search.Solve(), 1);
  EXPECT_EQ(RecordedFunction::calls, (std::vector<double>{2, 0, 1}));
  EXPECT_EQ(search.GetStopReason(), StopReason::kConvergedValue);
  EXPECT_EQ(search.GetItterationCount(), 0);
}

TEST_F(SearchTest, BisectionWithoutSignChangeReturnsTheEndNearerToZero) {
  struct {
    double fa, fb, answer;
  } const rows[] = {
      {1, 1, 10},   // equal and positive: b
      {-1, -1, 0},  // equal and negative: a
      {1, 2, 0},   {2, 1, 10}, {-1, -2, 0}, {-2, -1, 10},
  };
  for (const auto& row : rows) {
    BiSection_Double search = Search([row](double x) { return x == 0 ? row.fa : row.fb; }, 0, 10);
    EXPECT_EQ(search.Solve(), row.answer) << row.fa << ' ' << row.fb;
    EXPECT_EQ(search.GetStopReason(), StopReason::kNoSignChange);
    EXPECT_EQ(search.GetEvaluationCount(), 2);
  }
}

TEST_F(SearchTest, BisectionWithAccuracyOneReturnsTheMidpointAfterThreeEvaluations) {
  for (const double accuracy : {1.0, 7.0}) {
    BiSection_Double search = Search([](double x) { return x - 0.1; }, 0, 1, accuracy);
    EXPECT_EQ(search.Solve(), 0.5);
    EXPECT_EQ(search.GetEvaluationCount(), 3);
    EXPECT_EQ(search.GetStopReason(), StopReason::kConvergedStep);
  }
}

TEST_F(SearchTest, BisectionWithAccuracyZeroEndsAtNeighbouringNumbers) {
  const double zero = std::sqrt(2.0);
  BiSection_Double search = Search([](double x) { return x * x - 2; }, 0, 2, 0);
  EXPECT_NEAR(search.Solve(), zero, 3e-16);
  EXPECT_LT(search.GetEvaluationCount(), 70);
  EXPECT_EQ(search.GetStopReason(), StopReason::kNothingToShrink);
}

TEST_F(SearchTest, BisectionToNeighbouringNumbersEvaluatesTheLastMidpoint) {
  // Three steps between the ends. The first midpoint is rounded to the second step, becomes an end,
  // and is the rounded midpoint of the interval of one step that is left: it is evaluated again.
  const double step = std::numeric_limits<double>::epsilon();
  const auto f = [step](double x) { return x < 1 + 3 * step ? -1.0 : 1.0; };
  reference::Log<double> log;
  const double expected = reference::Bisect(f, 1, 1 + 3 * step, 1.0 / 3, log);
  ASSERT_EQ(log.evaluated, (std::vector<double>{1 + 3 * step, 1, 1 + 2 * step, 1 + 2 * step}));
  BiSection_Double search = Search(f, 1, 1 + 3 * step, 1.0 / 3);
  search.SetSilent(0);
  EXPECT_EQ(Bits(search.Solve()), Bits(expected));
  ExpectSameBits(RecordedFunction::calls, log.evaluated, "step");
  EXPECT_EQ(output, TraceText(log.traced));
  EXPECT_EQ(search.GetStopReason(), StopReason::kConvergedStep);
}

TEST_F(SearchTest, BisectionOfAnIntervalWithoutInnerNumbersEnds) {
  const double a = 1e16;
  BiSection_Double search = Search([a](double x) { return x == a ? -1.0 : 1.0; }, a, a + 2, 1e-3);
  const double answer = search.Solve();
  EXPECT_TRUE(answer == a || answer == a + 2);
  EXPECT_EQ(search.GetStopReason(), StopReason::kNothingToShrink);
}

TEST_F(SearchTest, BisectionTakesAValueThatIsNotANumberForTheOtherSideOfTheZero) {
  const auto always = [](double) { return kNaN; };
  const auto above = [](double x) { return x > 0.5 ? kNaN : x - 0.1; };
  const auto between = [](double x) { return x > 2 && x < 3.5 ? kNaN : x - 2.1; };
  const std::tuple<std::function<double(double)>, double, double> cases[] = {
      {always, 2, 6}, {above, -1, 1}, {between, 0, 6}};
  for (const auto& [f, a, b] : cases) {
    reference::Log<double> log;
    const double expected = reference::Bisect(f, a, b, 1e-3, log);
    BiSection_Double search = Search(f, a, b, 1e-3);
    EXPECT_EQ(Bits(search.Solve()), Bits(expected));
    ExpectSameBits(RecordedFunction::calls, log.evaluated, "not a number");
  }
}

TEST_F(SearchTest, BisectionThatEndsAtNoNumberSaysSo) {
  for (const double accuracy : {1e-3, 0.0}) {
    BiSection_Double search = Search([](double) { return kNaN; }, 2, 6, accuracy);
    EXPECT_NEAR(search.Solve(), 6, 5e-3);
    EXPECT_EQ(search.GetStopReason(), StopReason::kNotANumber);
  }
}

TEST_F(SearchTest, BisectionOfInfiniteIntervalsEnds) {
  BiSection_Double search = Search([](double x) { return x; }, -kInfinity, kInfinity);
  search.Solve();
  EXPECT_LE(search.GetEvaluationCount(), 3);
  BiSection_Double half = Search([](double x) { return x - 1; }, 0, kInfinity);
  half.Solve();
  EXPECT_LE(half.GetEvaluationCount(), 4);
}

TEST_F(SearchTest, BisectionGivesNativeFunctionsTheAddressOfItsExtraParameter) {
  BiSection_Double search = Search([](double x) { return x - 1; }, 0, 3);
  search.Solve();  // none set: the empty one
  EXPECT_NE(RecordedFunction::lastExtra, nullptr);
  Variable extra(std::int32_t{7});
  search.SetExtraParam(extra);
  search.Solve();
  const auto* seen = static_cast<Variable*>(RecordedFunction::lastExtra);
  EXPECT_NE(seen, &extra);
  EXPECT_EQ(seen->GetInt32Numb(), 7);
}

TEST_F(SearchTest, BisectionGivesNativeFunctionsAPointerOfTheCallers) {
  BiSection_Double search = Search([](double x) { return x - 1; }, 0, 3);
  double mine = 5;
  search.SetExtraParam(&mine);
  search.Solve();
  EXPECT_EQ(RecordedFunction::lastExtra, &mine);
  Variable extra(std::int32_t{7});
  search.SetExtraParam(extra);
  search.Solve();
  EXPECT_EQ(static_cast<Variable*>(RecordedFunction::lastExtra)->GetInt32Numb(), 7);
}

TEST_F(SearchTest, BisectionOfAScriptFunctionFollowsTheSameSteps) {
  const auto f = [](double x) { return x * x * x - 2 * x - 5; };
  reference::Log<double> log;
  const double expected = reference::Bisect(f, 2, 3, 1e-12, log);
  Variable function = Script("function(x) return x*x*x - 2*x - 5 end");
  double boundaries[2] = {2, 3};
  BiSection_Double search(function, boundaries, 1e-12);
  search.SetSilent(0);
  EXPECT_EQ(Bits(search.Solve()), Bits(expected));
  EXPECT_EQ(output, TraceText(log.traced));
  EXPECT_FALSE(host.HasError());
}

TEST_F(SearchTest, BisectionPassesTheExtraParameterOnToScripts) {
  Variable function = Script("function(x, extra) return x - extra end");
  double boundaries[2] = {0, 10};
  BiSection_Double search(function, boundaries, 1e-12);
  Variable extra;
  extra = 2.5;
  search.SetExtraParam(extra);
  EXPECT_EQ(search.Solve(), 2.5);
}

TEST_F(SearchTest, BisectionWithoutProcessorTakesScriptsForZero) {
  Variable function = Script("function(x) return x - 1 end");
  double boundaries[2] = {0, 10};
  BiSection_Double search(function, boundaries, 1e-12);
  search.SetSilent(0);
  host.HideOwner(true);
  EXPECT_EQ(search.Solve(), 10);
  EXPECT_EQ(search.GetEvaluationCount(), 1);
  host.HideOwner(false);
  EXPECT_EQ(output, "");
}

TEST_F(SearchTest, BisectionWithoutProcessorSearchesNativeFunctionsWithoutTrace) {
  BiSection_Double search = Search([](double x) { return x - 1; }, 0, 3);
  search.SetSilent(0);
  host.HideOwner(true);
  EXPECT_NEAR(search.Solve(), 1, 3e-9);
  host.HideOwner(false);
  EXPECT_EQ(output, "");
}

TEST_F(SearchTest, BisectionLeavesErrorsOfTheFunctionPending) {
  Variable function = Script("function(x) error('no value here') end");
  double boundaries[2] = {0, 10};
  BiSection_Double search(function, boundaries, 1e-3);
  search.Solve();
  EXPECT_TRUE(host.HasError());
  EXPECT_EQ(search.GetStopReason(), StopReason::kObjectiveError);
}

TEST_F(SearchTest, BisectionSolvesAgainAfterItsIntervalWasMoved) {
  BiSection_Double search = Search([](double x) { return std::sin(x); }, 2, 4, 1e-12);
  EXPECT_NEAR(search.Solve(), 3.14159265358979, 1e-11);
  search.GetBoundaries()[0] = 5;
  search.GetBoundaries()[1] = 7;
  EXPECT_NEAR(search.Solve(), 6.28318530717959, 1e-11);
}

TEST_F(SearchTest, BisectionCopiesShareNothing) {
  BiSection_Double search = Search([](double x) { return std::sin(x); }, 2, 4, 1e-12);
  Variable extra(std::int32_t{1});
  search.SetExtraParam(extra);
  BiSection_Double copy(search);
  copy.GetBoundaries()[0] = 5;
  copy.GetBoundaries()[1] = 7;
  BiSection_Double assigned = Search([](double x) { return std::sin(x); }, 0, 1);
  assigned = copy;
  BiSection_Double moved(std::move(copy));
  EXPECT_NEAR(search.Solve(), 3.14159265358979, 1e-11);
  EXPECT_NEAR(assigned.Solve(), 6.28318530717959, 1e-11);
  const void* extraOfAssigned = RecordedFunction::lastExtra;
  EXPECT_NEAR(moved.Solve(), 6.28318530717959, 1e-11);
  EXPECT_NE(RecordedFunction::lastExtra, extraOfAssigned);
  moved = BiSection_Double(search);
  EXPECT_NEAR(moved.Solve(), 3.14159265358979, 1e-11);
}

TEST_F(SearchTest, BisectionHasNotRunBeforeItsFirstSolve) {
  BiSection_Double search = Search([](double x) { return x; }, -1, 2);
  EXPECT_EQ(search.GetStopReason(), StopReason::kNotRun);
  EXPECT_EQ(search.GetEvaluationCount(), 0);
}

TEST_F(SearchTest, BisectionCountsHalvings) {
  BiSection_Double search = Search([](double x) { return x - 0.3; }, 0, 1, 0.1);
  search.Solve();  // 1, 0, 0.5 and then halves until 1/16
  EXPECT_EQ(search.GetItterationCount(), 4);
  EXPECT_EQ(search.GetEvaluationCount(), 7);
}

}  // namespace
