// "FitLine" in scripts: coefficients, errors, outliers.

#include <cmath>

#include "toolkit/toolkit_fixture.h"

namespace {

class FitLineTest : public ToolkitTest {
 protected:
  FitLineTest() {
    Run("x, y, variances = {}, {}, {} "
        "for i = 1, 11 do x[i] = i - 1; y[i] = 3 + 2*x[i] - x[i]^2/2; variances[i] = 0.01 end "
        "one = function() return 1 end "
        "line = function(x) return x end "
        "square = function(x) return x*x end");
  }
};

TEST_F(FitLineTest, RecoversAPolynomial) {
  Run("fit = FitLine{basis = 'powers', terms = 3, x = x, y = y}");
  ExpectNear(Numbers("fit.coefficients"), {3, 2, -0.5}, 1e-11);
  ExpectNear(Numbers("fit.fitted"), {3, 4.5, 5, 4.5, 3, 0.5, -3, -7.5, -13, -19.5, -27}, 1e-11);
  EXPECT_EQ(Number("return fit.degrees"), 8.0);
  EXPECT_NEAR(Number("return fit.chi2"), 0.0, 1e-9);
}

TEST_F(FitLineTest, ScriptFunctionsGiveTheSameFit) {
  Run("a = FitLine{basis = 'powers', terms = 3, x = x, y = y, variances = variances} "
      "b = FitLine{basis = {one, line, square}, x = x, y = y, variances = variances}");
  EXPECT_EQ(Numbers("a.coefficients"), Numbers("b.coefficients"));
  EXPECT_EQ(Numbers("a.errors"), Numbers("b.errors"));
}

// The straight line through n points of equal variance v at x = 0 ... 10: the variance of the slope
// is v / sum of (x - 5)^2 = v / 110, that of the height at 0 is v (1/11 + 25/110), their covariance
// -5 v / 110.
TEST_F(FitLineTest, GivesTheCovarianceOfAStraightLine) {
  Run("fit = FitLine{basis = 'powers', terms = 2, x = x, y = y, variances = variances}");
  ExpectNear(Elements("fit.covariance"),
             {0.01 * (1.0 / 11 + 25.0 / 110), -0.05 / 110, -0.05 / 110, 0.01 / 110}, 1e-14);
  ExpectNear(Numbers("fit.errors"),
             {std::sqrt(0.01 * (1.0 / 11 + 25.0 / 110)), std::sqrt(0.01 / 110)}, 1e-14);
}

// Small variances make a normal matrix of huge determinant; the coefficients stay exact.
TEST_F(FitLineTest, BearsErrorsOfAnyScale) {
  for (const char* scale : {"1e-12", "1e12"}) {
    Run(std::string("for i = 1, 11 do variances[i] = ") + scale + " end");
    Run("fit = FitLine{basis = 'powers', terms = 3, x = x, y = y, variances = variances}");
    ExpectNear(Numbers("fit.coefficients"), {3, 2, -0.5}, 1e-10);
  }
}

TEST_F(FitLineTest, FitsCosines) {
  Run("for i = 1, 11 do y[i] = 1 + 2*math.cos(2*math.pi*x[i]/12) end");
  ExpectNear(
      Numbers("FitLine{basis = 'cosines', terms = 3, period = 12, x = x, y = y}.coefficients"),
      {1, 2, 0}, 1e-12);
  Run("for i = 1, 11 do y[i] = 1 + 2*math.cos(x[i]) end");
  ExpectNear(Numbers("FitLine{basis = 'cosines', terms = 2, x = x, y = y}.coefficients"), {1, 2},
             1e-12);
}

TEST_F(FitLineTest, WeighsPointsByTheirVariances) {
  // Two values of the same quantity: the mean weighted by 1/v.
  ExpectNear(Numbers("FitLine{basis = {one}, x = {0, 1}, y = {10, 20}, variances = {1, 4}}"
                     ".coefficients"),
             {12}, 1e-13);
}

TEST_F(FitLineTest, BothRefinementsLeaveAnOutlierAlone) {
  Run("y[6] = y[6] + 30 for i = 1, 11 do variances[i] = 1 end");
  const double plain =
      Number("return FitLine{basis = {one, line}, x = x, y = y, mode = 'plain'}.coefficients[1]");
  EXPECT_GT(std::fabs(plain - 3), 0.5);
  for (const char* prior : {"'inverse_square'", "'Jeffreys'", "0", "1"}) {
    Run(std::string("fit = FitLine{basis = {one, line, square}, x = x, y = y, "
                    "variances = variances, mode = 'refined', prior = ") +
        prior + "}");
    ExpectNear(Numbers("fit.coefficients"), {3, 2, -0.5}, 0.05);
    EXPECT_NEAR(Number("return fit.chi2"), 900, 10) << prior;
  }
}

// Arguments ---------------------------------------------------------------------------------------

TEST_F(FitLineTest, SaysWhatIsWrongWithThePoints) {
  EXPECT_EQ(Refusal("FitLine{basis = {one}, y = y}"), "3 FitLine: x is missing");
  EXPECT_EQ(Refusal("FitLine{basis = {one}, x = x, y = {1, 2}}"),
            "3 FitLine: y has 2 elements, but x has 11");
  EXPECT_EQ(Refusal("FitLine{basis = {one}, x = {1, 2}, y = {1, 0/0}}"),
            "3 FitLine: y[2] must be a finite number, got nan");
  EXPECT_EQ(Refusal("FitLine{basis = {one}, x = {1, 2}, y = {1, 2}, variances = {1, 0}}"),
            "3 FitLine: variances[2] must be above 0, got 0");
  EXPECT_EQ(Refusal("FitLine{basis = {one}, x = {1, 2}, y = {1, 2}, variances = {1}}"),
            "3 FitLine: variances has 1 element, but x has 2");
  EXPECT_EQ(Refusal("FitLine{basis = {one, line}, x = {1}, y = {1}}"),
            "3 FitLine: 2 basis functions cannot be told apart on 1 point");
}

TEST_F(FitLineTest, SaysWhatIsWrongWithTheBasis) {
  EXPECT_EQ(Refusal("FitLine{x = x, y = y}"), "3 FitLine: basis is missing");
  EXPECT_EQ(Refusal("FitLine{basis = 3, x = x, y = y}"),
            "3 FitLine: basis must be an array of functions, \"powers\" or \"cosines\", got 3");
  EXPECT_EQ(Refusal("FitLine{basis = 'power', terms = 2, x = x, y = y}"),
            "3 FitLine: basis has the unknown value \"power\"; did you mean \"powers\"?");
  EXPECT_EQ(Refusal("FitLine{basis = 'powers', x = x, y = y}"), "3 FitLine: terms is missing");
  EXPECT_EQ(Refusal("FitLine{basis = 'powers', terms = 65, x = x, y = y}"),
            "3 FitLine: terms must be a whole number 1 to 64, got 65");
  EXPECT_EQ(Refusal("FitLine{basis = {one}, terms = 1, x = x, y = y}"),
            "3 FitLine: terms goes with a basis named by a text only");
  EXPECT_EQ(Refusal("FitLine{basis = {one, 2}, x = x, y = y}"),
            "3 FitLine: basis[2] must be a function, got 2");
  EXPECT_EQ(Refusal("FitLine{basis = {one, function() end}, x = x, y = y}"),
            "3 FitLine: basis[2] must return a number, it returned nothing");
  EXPECT_EQ(Refusal("FitLine{basis = {one, math.log}, x = x, y = y}"),
            "3 FitLine: basis[2] is -inf at x = 0");
}

TEST_F(FitLineTest, SaysWhatIsWrongWithTheMode) {
  EXPECT_EQ(Refusal("FitLine{basis = {one}, x = x, y = y, mode = 'robust'}"),
            "3 FitLine: mode has the unknown value \"robust\"; known are \"plain\", \"refined\"");
  EXPECT_EQ(Refusal("FitLine{basis = {one}, x = x, y = y, prior = 2}"),
            "3 FitLine: prior must be a whole number 0 to 1, got 2");
}

}  // namespace
