// "FindRoot" and "FindMinimum" in scripts.

#include <cmath>
#include <numbers>

#include "toolkit/toolkit_fixture.h"

namespace {

TEST_F(ToolkitTest, FindsTheRootOfAFunction) {
  EXPECT_NEAR(Number("return FindRoot{f = function(x) return x*x - 2 end, from = 0, to = 2}.x"),
              std::numbers::sqrt2, 4e-15);
  // The other way round, and a root at an end.
  EXPECT_NEAR(Number("return FindRoot{f = math.cos, from = 3, to = 0}.x"), std::numbers::pi / 2,
              6e-15);
  EXPECT_EQ(Number("return FindRoot{f = function(x) return x end, from = 0, to = 2}.x"), 0.0);
}

TEST_F(ToolkitTest, RootsComeWithTheirValueAndWhyTheSearchEnded) {
  Run("root = FindRoot{f = function(x) return x - 1 end, from = 0, to = 4}");
  EXPECT_EQ(Number("return root.value"), 0.0);
  EXPECT_EQ(Number("return root.evaluations"), 4.0);  // the ends, 2 and 1
  EXPECT_EQ(Text("root.reason"), "converged: the value changes by less than the accuracy");
}

TEST_F(ToolkitTest, RootsAreAsCloseAsTheAccuracyAskedFor) {
  const double x = Number(
      "return FindRoot{f = function(x) return x - 1/3 end, from = 0, to = 1, "
      "accuracy = 1e-3}.x");
  EXPECT_NEAR(x, 1.0 / 3.0, 1e-3);
  EXPECT_GT(std::fabs(x - 1.0 / 3.0), 1e-9);
}

TEST_F(ToolkitTest, RefusesIntervalsWithoutAChangeOfSign) {
  EXPECT_EQ(Refusal("FindRoot{f = function(x) return x*x + 2 end, from = 0, to = 2}"),
            "3 FindRoot: f does not change its sign: f(0) = 2, f(2) = 6");
  EXPECT_EQ(Refusal("FindRoot{f = function(x) return 0/0 end, from = 0, to = 2}"),
            "3 FindRoot: f(0) is nan");
}

TEST_F(ToolkitTest, FindsTheMinimumOfAFunction) {
  EXPECT_NEAR(Number("return FindMinimum{f = math.cos, from = 0, to = 6}.x"), std::numbers::pi,
              1e-7);
  EXPECT_NEAR(Number("return FindMinimum{f = math.cos, from = 0, to = 6}.value"), -1.0, 1e-14);
  // The lower of two minima, on both sides of a maximum above the ends.
  EXPECT_NEAR(
      Number("return FindMinimum{f = function(x) return math.cos(x) + x/10 end, from = -4.5, "
             "to = 4.5}.x"),
      -std::numbers::pi - std::asin(0.1), 1e-6);
}

TEST_F(ToolkitTest, SearchesSayWhatIsWrongWithTheirArguments) {
  EXPECT_EQ(Refusal("FindRoot{from = 0, to = 2}"), "3 FindRoot: f is missing");
  EXPECT_EQ(Refusal("FindRoot{f = 1, from = 0, to = 2}"),
            "3 FindRoot: f must be a function, got 1");
  EXPECT_EQ(Refusal("FindRoot{f = math.sin, to = 2}"), "3 FindRoot: from is missing");
  EXPECT_EQ(Refusal("FindMinimum{f = math.sin, from = 1/0, to = 2}"),
            "3 FindMinimum: from must be a finite number, got inf");
  EXPECT_EQ(Refusal("FindMinimum{f = math.sin, from = 2, to = 2}"),
            "3 FindMinimum: from and to must differ");
  EXPECT_EQ(Refusal("FindMinimum{f = math.sin, from = 1, to = 2, accuracy = 0}"),
            "3 FindMinimum: accuracy must be above 0, got 0");
  EXPECT_EQ(Refusal("FindMinimum{f = math.sin, form = 1, to = 2}"),
            "3 FindMinimum: unknown option \"form\"; did you mean \"from\"?");
}

TEST_F(ToolkitTest, SearchesEndWithTheErrorOfTheFunction) {
  EXPECT_EQ(Refusal("FindMinimum{f = function(x) return {} end, from = 0, to = 2}"),
            "3 FindMinimum: f must return a number, it returned array");
  Run("calls = 0");
  const HostError error = Failure(
      "return FindMinimum{f = function(x) calls = calls + 1"
      "  if calls == 5 then error('enough', 0) end return x end, from = 0, to = 2}");
  EXPECT_EQ(error.number, 4);
  EXPECT_EQ(error.message, "enough");
  EXPECT_EQ(Number("return calls"), 5.0);  // the script was left alone after that
}

TEST_F(ToolkitTest, SearchesEndWhereTheFunctionIsNoNumber) {
  const std::string f = "f = function(x) return x == 1 and 0/0 or x - 1 end, from = 0, to = 2}";
  EXPECT_EQ(Refusal("FindRoot{" + f), "3 FindRoot: f(1) is nan");
  EXPECT_EQ(
      Refusal("FindMinimum{f = function(x) return x > 1.5 and 0/0 or -x end, from = 1, to = 2}")
          .substr(0, 17),
      "3 FindMinimum: f(");
}

TEST_F(ToolkitTest, SearchesRefuseAnIntervalThatIsTooWide) {
  for (const char* search : {"FindRoot", "FindMinimum"}) {
    EXPECT_EQ(Refusal(std::string(search) + "{f = print, from = -1e308, to = 1e308}"),
              "3 " + std::string(search) + ": from -1e+308 to 1e+308 is too wide");
  }
}

}  // namespace
