// "Minimise" in scripts: solutions, settings, what it says about mistakes.
//
// Functions and minima: Rosenbrock, Computer Journal 3 (1960) 175; Moré, Garbow and Hillstrom,
// ACM Trans. Math. Software 7 (1981) 17.

#include <cmath>

#include "toolkit/toolkit_fixture.h"

namespace {

class MinimiseTest : public ToolkitTest {
 protected:
  MinimiseTest() {
    Run("function bowl(x) calls = calls + 1 return (x[1] - 1)^2 + 4*(x[2] + 2)^2 + 3 end "
        "function rosenbrock(x) return 100*(x[2] - x[1]^2)^2 + (1 - x[1])^2 end "
        "box = {{-5, 5}, {-5, 5}} "
        "calls = 0");
  }
};

TEST_F(MinimiseTest, EveryMethodFindsTheBottomOfABowl) {
  for (const char* method : {"Solve", "BFGS", "DFP", "Powell"}) {
    Run(std::string("found = Minimise{f = bowl, bounds = box, method = '") + method + "'}");
    ExpectNear(Numbers("found.point"), {1, -2}, 2e-3);
    EXPECT_NEAR(Number("return found.value"), 3.0, 1e-5) << method;
  }
}

TEST_F(MinimiseTest, TheCoordinateMethodGoesDown) {
  Run("found = Minimise{f = bowl, bounds = box, start = {4, 4}, method = 'Coord'}");
  EXPECT_LT(Number("return found.value"), Number("return bowl{4, 4}"));
}

TEST_F(MinimiseTest, FollowsACurvedValley) {
  Run("found = Minimise{f = rosenbrock, bounds = box, start = {-1.2, 1}, method = 'Powell'}");
  ExpectNear(Numbers("found.point"), {1, 1}, 1e-6);
}

TEST_F(MinimiseTest, StaysInsideTheBox) {
  Run("lowest, highest = math.huge, -math.huge "
      "found = Minimise{f = function(x) lowest = math.min(lowest, x[1]) "
      "  highest = math.max(highest, x[1]) return (x[1] - 7)^2 end, bounds = {{-1, 2}}}");
  EXPECT_NEAR(Number("return found.point[1]"), 2.0, 1e-6);
  EXPECT_GE(Number("return lowest"), -1.0);
  EXPECT_LE(Number("return highest"), 2.0);
}

TEST_F(MinimiseTest, StaysInsideABoxWhoseWidthIsRounded) {
  // -2.9 + (0.8 + 2.9) is not 0.8 when it is computed by way of 1/(0.8 + 2.9).
  for (const char* method : {"Solve", "BFGS", "DFP", "Powell", "Coord"}) {
    Run("highest = -math.huge slope = function(x) highest = math.max(highest, x[1]) "
        "  return -x[1] + (x[2] - 0.5)^2 end "
        "rounded = {{-2.9, 0.8}, {0, 1}}");
    Run(std::string("found = Minimise{f = slope, bounds = rounded, method = '") + method + "'}");
    EXPECT_EQ(Number("return highest"), 0.8) << method;
    EXPECT_EQ(Number("return found.point[1]"), 0.8) << method;
    Run("found = Minimise{f = slope, bounds = rounded, start = found.point}");
  }
}

TEST_F(MinimiseTest, TakesTheCurvatureAwayFromFaces) {
  Run("worst = 0 for k = 1, 60 do local low, high = -k/10, 0.13*k "
      "  local found = Minimise{f = function(x) return (x[1] - 2*high)^2 + (x[2] - 0.5)^2 end, "
      "    bounds = {{low, high}, {0, 1}}, method = 'Powell'} "
      "  worst = math.max(worst, math.abs(found.hessian(1, 1) - 2)) end");
  EXPECT_LT(Number("return worst"), 0.02);
}

TEST_F(MinimiseTest, KeepsAVariableWhoseBoundsAreEqual) {
  Run("found = Minimise{f = bowl, bounds = {{-5, 5}, {1, 1}}}");
  EXPECT_EQ(Number("return found.point[2]"), 1.0);
  EXPECT_NEAR(Number("return found.point[1]"), 1.0, 1e-3);
}

TEST_F(MinimiseTest, StartsInTheMiddleUnlessTold) {
  Run("first = nil function watched(x) first = first or {x[1], x[2]} return bowl(x) end");
  Run("Minimise{f = watched, bounds = {{0, 4}, {-3, 1}}}");
  EXPECT_EQ(Numbers("first"), (NumberList{2, -1}));
  Run("first = nil Minimise{f = watched, bounds = box, start = {3, -4}}");
  EXPECT_EQ(Numbers("first"), (NumberList{3, -4}));
}

TEST_F(MinimiseTest, CountsWhatTheSearchAskedFor) {
  Run("found = Minimise{f = bowl, bounds = box, curvature = false}");
  // One call to try the function, one for the value of the result.
  EXPECT_EQ(Number("return found.evaluations"), Number("return calls") - 2.0);
  EXPECT_GT(Number("return found.iterations"), 0.0);
  EXPECT_EQ(Text("found.reason").substr(0, 9), "converged");
}

// f = (x1 - 1)^2 + 4 (x2 + 2)^2 has the second derivatives 2 and 8; twice their inverses are the
// variances of a chi-square function.
TEST_F(MinimiseTest, GivesCurvatureCovarianceAndErrors) {
  Run("found = Minimise{f = bowl, bounds = box}");
  ExpectNear(Elements("found.hessian"), {2, 0, 0, 8}, 1e-4);
  ExpectNear(Elements("found.covariance"), {1, 0, 0, 0.25}, 1e-4);
  ExpectNear(Numbers("found.errors"), {1, 0.5}, 1e-4);
}

TEST_F(MinimiseTest, LeavesCurvatureAwayWhenAsked) {
  Run("found = Minimise{f = bowl, bounds = box, curvature = false}");
  EXPECT_EQ(Text("found.hessian == nil and found.covariance == nil and found.errors == nil"),
            "true");
}

TEST_F(MinimiseTest, UsesDerivativesOfTheScript) {
  Run("asked = {} "
      "found = Minimise{f = bowl, bounds = box, method = 'BFGS', derivative = function(x, i) "
      "  asked[i] = true if i == 1 then return 2*(x[1] - 1) end return 8*(x[2] + 2) end, "
      "  second_derivative = function(x, i, j) asked[10*i + j] = true "
      "    if i ~= j then return 0 end return i == 1 and 2 or 8 end}");
  ExpectNear(Numbers("found.point"), {1, -2}, 1e-6);
  ExpectNear(Elements("found.hessian"), {2, 0, 0, 8}, 1e-12);
  // Indices count from 1.
  EXPECT_EQ(Text("asked[1] and asked[2] and asked[11] and asked[12] and asked[22] and "
                 "asked[0] == nil"),
            "true");
}

TEST_F(MinimiseTest, TracesWhenAsked) {
  Run("Minimise{f = bowl, bounds = box, trace = true, curvature = false}");
  EXPECT_NE(output.find("Residue = "), std::string::npos);
  output.clear();
  Run("Minimise{f = bowl, bounds = box, curvature = false}");
  EXPECT_EQ(output, "");
}

TEST_F(MinimiseTest, AnExhaustedLimitIsAnErrorUnlessTold) {
  const HostError error = Failure(
      "Minimise{f = rosenbrock, bounds = box, start = {-1.2, 1}, method = 'Powell', "
      "max_iterations = 1}");
  EXPECT_EQ(error.message, "Can't find solution of system.");
  Run("found = Minimise{f = rosenbrock, bounds = box, start = {-1.2, 1}, method = 'Powell', "
      "max_iterations = 1, error_at_limit = false}");
  EXPECT_LT(Number("return found.value"), Number("return rosenbrock{-1.2, 1}"));
}

// Arguments ---------------------------------------------------------------------------------------

TEST_F(MinimiseTest, SaysWhatIsWrongWithTheBox) {
  EXPECT_EQ(Refusal("Minimise{f = bowl}"), "3 Minimise: bounds is missing");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = {{-5, 5}, {3, 1}}}"),
            "3 Minimise: bounds[2] has upper 1 below lower 3");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = {{-5, 5}, {3}}}"),
            "3 Minimise: bounds[2] must be a pair {lower, upper}");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = {{-5, 5}, 3}}"),
            "3 Minimise: bounds[2] must be a pair {lower, upper}");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = {{-5, 'x'}}}"),
            "3 Minimise: bounds[1][2] must be a number, got text");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = {{-5, 1/0}}}"),
            "3 Minimise: bounds[1][2] must be a finite number, got inf");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = {}}"),
            "3 Minimise: bounds must have at least 1 element, has 0");
}

TEST_F(MinimiseTest, SaysWhatIsWrongWithTheStart) {
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, start = {1}}"),
            "3 Minimise: start has 1 element, but bounds has 2");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, start = {1, 6}}"),
            "3 Minimise: start[2] = 6 lies outside bounds[2] = {-5, 5}");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, start = {0/0, 0}}"),
            "3 Minimise: start[1] = nan lies outside bounds[1] = {-5, 5}");
}

TEST_F(MinimiseTest, SaysWhatIsWrongWithTheSettings) {
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, acuracy = 1}"),
            "3 Minimise: unknown option \"acuracy\"; did you mean \"accuracy\"?");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, method = 'bfgs'}"),
            "3 Minimise: method has the unknown value \"bfgs\"; did you mean \"BFGS\"?");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, accuracy = -1}"),
            "3 Minimise: accuracy must be above 0, got -1");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, max_iterations = 0}"),
            "3 Minimise: max_iterations must be a whole number 1 to 1000000000, got 0");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, min_step = {1, -1}}"),
            "3 Minimise: min_step[2] must be finite and not below 0, got -1");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, max_step = {1}}"),
            "3 Minimise: max_step has 1 element, but bounds has 2");
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, derivative = 2}"),
            "3 Minimise: derivative must be a function, got 2");
}

TEST_F(MinimiseTest, MistakesAreToldBeforeTheFunctionIsCalled) {
  Refusal("Minimise{f = bowl, bounds = box, method = 'none'}");
  EXPECT_EQ(Number("return calls"), 0.0);
}

// Errors of the functions -------------------------------------------------------------------------

TEST_F(MinimiseTest, AFunctionWithoutNumberIsToldOfAtOnce) {
  EXPECT_EQ(Refusal("Minimise{f = function() calls = calls + 1 end, bounds = box}"),
            "3 Minimise: f must return a number, it returned nothing");
  EXPECT_EQ(Number("return calls"), 1.0);
}

TEST_F(MinimiseTest, AnErrorOfTheFunctionEndsTheSearchWithIt) {
  const HostError error = Failure(
      "Minimise{f = function(x) calls = calls + 1 if calls >= 10 then error('enough', 0) end "
      "return bowl(x) end, bounds = box}");
  EXPECT_EQ(error.number, 4);
  EXPECT_EQ(error.message, "enough");
}

TEST_F(MinimiseTest, AnErrorOfADerivativeEndsTheSearchWithIt) {
  EXPECT_EQ(Refusal("Minimise{f = bowl, bounds = box, method = 'BFGS', "
                    "derivative = function() return 'steep' end}"),
            "3 Minimise: derivative must return a number, it returned text");
}

// Progress ----------------------------------------------------------------------------------------

TEST_F(MinimiseTest, TellsAProgressWindowHowFarItIs) {
  std::vector<int> seen;
  host.SetProgressWatcher([&](int progress, std::string_view) { seen.push_back(progress); });
  Run("Minimise{f = bowl, bounds = box, curvature = false}");
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(seen.front(), 1);
  EXPECT_EQ(seen.back(), 100);
  seen.clear();
  Run("Minimise{f = bowl, bounds = box, curvature = false, progress = false}");
  EXPECT_TRUE(seen.empty());
}

TEST_F(MinimiseTest, ACancelledSearchEndsWithTheErrorOfTheWindow) {
  host.SetProgressWatcher([this](int, std::string_view) { host.RequestStop(); });
  const HostError error = Failure("Minimise{f = rosenbrock, bounds = box, start = {-1.2, 1}}");
  EXPECT_EQ(error.name, "Progress window got cancel");
}

TEST_F(MinimiseTest, LeavesOutTheCovarianceWhereTheFunctionDoesNotBend) {
  Run("found = Minimise{f = function(x) return (x[1] - 1)^2 end, bounds = {{-5, 5}, {-5, 5}}}");
  EXPECT_EQ(Text("found.covariance"), "nil");
  EXPECT_EQ(Text("found.errors"), "nil");
  ExpectNear(Elements("found.hessian"), {2, 0, 0, 0}, 1e-6);
  Run("found = Minimise{f = function(x) return (x[1] - 1)^2 end, bounds = {{-5, 5}, {2, 2}}}");
  ExpectNear(Numbers("found.errors"), {1, 0}, 1e-6);
  Run("found = Minimise{f = function(x) return x[1]^2 end, bounds = {{-5, 5}}, "
      "second_derivative = function() return 0/0 end}");
  EXPECT_EQ(Text("found.errors"), "nil");
}

TEST_F(MinimiseTest, RefusesAStartWithoutAFiniteValue) {
  for (const char* method : {"Solve", "BFGS", "DFP", "Powell", "Coord"}) {
    const std::string options = std::string("bounds = {{0, 4}, {0, 2}}, method = '") + method + "'";
    EXPECT_EQ(Refusal("Minimise{f = function() return 0/0 end, " + options + "}"),
              "3 Minimise: f is nan at the start {2, 1}");
    EXPECT_EQ(Refusal("Minimise{f = function() return -1/0 end, start = {1, 1}, " + options + "}"),
              "3 Minimise: f is -inf at the start {1, 1}");
  }
}

TEST_F(MinimiseTest, RefusesABoxThatIsTooWide) {
  EXPECT_EQ(Refusal("Minimise{f = print, bounds = {{0, 1}, {-1e308, 1e308}}}"),
            "3 Minimise: bounds[2] is too wide, from -1e+308 to 1e+308");
}

TEST_F(MinimiseTest, FlagsAreTrueOrFalse) {
  EXPECT_EQ(Refusal("Minimise{f = print, bounds = {{0, 1}}, central = 5}"),
            "3 Minimise: central must be true or false, got 5");
}

TEST_F(MinimiseTest, CallsTheFunctionThatItWasGiven) {
  Run("o = Options() o.bounds = {{-5, 5}} o.progress = 0 "
      "o.f = function(x) o.f = 7 return (x[1] - 1)^2 end");
  EXPECT_NEAR(Number("return Minimise(o).point[1]"), 1, 1e-6);
}

TEST_F(MinimiseTest, KeepsTheErrorOfTheFunctionAtWhicheverCall) {
  Run("function failAt(last) local calls = 0 return function(x) calls = calls + 1 "
      "if calls == last then error('call ' .. last) end return (x[1] - 1)^2 + x[2]^4 end end");
  for (const char* method : {"Solve", "BFGS", "DFP", "Powell", "Coord"}) {
    for (int call = 1; call <= 20; ++call) {
      const std::string number = std::to_string(call);
      const HostError error = Failure("Minimise{f = failAt(" + number +
                                      "), bounds = {{-5, 5}, {-5, 5}}, method = '" + method + "'}");
      EXPECT_NE(error.message.find("call " + number), std::string::npos)
          << method << ": " << error.message;
    }
  }
}

TEST_F(MinimiseTest, EveryMethodTellsOfAnExhaustedLimit) {
  for (const char* method : {"BFGS", "DFP", "Powell"}) {
    const HostError error = Failure(
        std::string("Minimise{f = rosenbrock, bounds = box, start = {-1.2, 1}, max_iterations = 1, "
                    "method = '") +
        method + "'}");
    EXPECT_EQ(error.message, "Can't find solution of system.") << method;
  }
}

}  // namespace
