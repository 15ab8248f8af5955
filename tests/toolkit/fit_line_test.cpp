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

TEST_F(FitLineTest, BearsBasisFunctionsOfAnyScale) {
  for (const char* scale : {"1e-200", "1e200"}) {
    Run(std::string("fit = FitLine{basis = {one, function(x) return ") + scale +
        "*x end, square}, x = x, y = y}");
    EXPECT_NEAR(Number(std::string("return fit.coefficients[2]*") + scale), 2, 1e-11);
    EXPECT_NEAR(Number("return fit.coefficients[3]"), -0.5, 1e-11);
  }
}

// Powers up to x^8 at 0 ... 19 have a normal matrix whose determinant is below 1e-16.
TEST_F(FitLineTest, BearsFunctionsThatLookAlike) {
  Run("for i = 1, 20 do x[i] = i - 1; y[i] = 0 "
      "for k = 0, 8 do y[i] = y[i] + (-1)^k/(k + 1)*x[i]^k end end "
      "fit = FitLine{basis = 'powers', terms = 9, x = x, y = y}");
  const NumberList found = Numbers("fit.coefficients");
  for (int k = 0; k <= 8; ++k) {
    const double expected = (k % 2 == 0 ? 1.0 : -1.0) / (k + 1);
    EXPECT_NEAR(found[static_cast<std::size_t>(k)], expected, 1e-2 * std::pow(0.1, k));
  }
}

// Coefficients, errors, chi-square and residue by mpmath, 40 digits.
TEST_F(FitLineTest, BearsValuesThatAreLargeBesideTheirErrors) {
  Run("for i = 1, 31 do x[i] = i; y[i] = 1e6 + i + (i % 3 - 1)*1e-3; variances[i] = 1e-6 end "
      "fit = FitLine{basis = 'powers', terms = 2, x = x, y = y, variances = variances}");
  ExpectNear(Numbers("fit.coefficients"), {1000000.0000645161321, 0.99999596774174396}, 1e-9);
  ExpectNear(Numbers("fit.errors"), {0.000368081337434733, 2.00804832225625e-5}, 1e-15);
  EXPECT_NEAR(Number("return fit.chi2"), 19.9596793154, 1e-5);
  EXPECT_NEAR(Number("return fit.residue"), 1.99596793154e-5, 1e-11);
}

// With M functions, N points, A the plain normal matrix, S0 the sum of y^2 and R the residue:
// ln(2 pi) M/2 - sum of ln(S0/A_kk)/2 - ln det(A)/2 - ln(R) (N - 2)/2, by mpmath, 40 digits.
TEST_F(FitLineTest, GivesTheProbabilityOfTheModel) {
  Run("x, y = {0, 1, 2, 3, 4}, {1.1, 2.9, 5.1, 6.9, 9.05} variances = {.01, .02, .01, .04, .01}");
  for (const char* basis : {"{one, line}", "{one, function(x) return 1e3*x end}"}) {
    Run(std::string("fit = FitLine{basis = ") + basis + ", x = x, y = y, variances = variances}");
    EXPECT_NEAR(Number("return fit.log_probability"), 1.8470764060032783, 1e-12);
    EXPECT_NEAR(Number("return fit.residue"), 0.047621642095448966, 1e-15);
    EXPECT_NEAR(Number("return fit.chi2"), 2.1374045801526701, 1e-13);
  }
  Run("fit = FitLine{basis = {one, line, square}, x = x, y = y, variances = variances}");
  EXPECT_NEAR(Number("return fit.log_probability"), 2.0165355265149053, 1e-11);
}

// Which functions span the model is a matter of taste: its probability is none.
TEST_F(FitLineTest, TheProbabilityOfARefinedModelBearsOtherUnits) {
  Run("for i = 1, 11 do y[i] = y[i] + 0.2*math.sin(7*i) end "
      "function of(basis) return FitLine{basis = basis, x = x, y = y, variances = variances, "
      "mode = 'refined'} end "
      "a, b = of{one, line}, of{function() return 1000 end, function(x) return x/1000 end}");
  EXPECT_NEAR(Number("return b.coefficients[2]/a.coefficients[2]"), 1000, 1e-3);
  EXPECT_NEAR(Number("return b.log_probability - a.log_probability"), 0, 1e-9);
}

TEST_F(FitLineTest, RefusesFunctionsThatCannotBeToldApart) {
  EXPECT_EQ(Refusal("FitLine{basis = {one, line, function(x) return 3 - 2*x end}, x = x, y = y}"),
            "10 FitLine: basis[3] is a combination of the functions before it at these points");
  EXPECT_EQ(Refusal("FitLine{basis = 'powers', terms = 2, x = {1, 1, 1}, y = {1, 2, 3}}"),
            "10 FitLine: basis[2] is a combination of the functions before it at these points");
  EXPECT_EQ(Refusal("FitLine{basis = {function() return 0 end}, x = x, y = y}"),
            "10 FitLine: basis[1] is 0 at all points");
}

TEST_F(FitLineTest, CallsTheFunctionsThatItWasGiven) {
  Run("basis = array(2) basis[2] = line "
      "basis[1] = function() basis[1] = 7 basis[2] = 'x' return 1 end");
  ExpectNear(Numbers("FitLine{basis = basis, x = x, y = x}.coefficients"), {0, 1}, 1e-13);
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

// Maximum, inverse of the second derivatives there and probability, by mpmath, 30 digits.
TEST_F(FitLineTest, TheErrorsOfARefinementAreThoseOfItsLikelihood) {
  struct Expected {
    const char* prior;
    NumberList coefficients;
    NumberList errors;
    double covariance;
    double logProbability;
  };
  const Expected cases[] = {
      {"inverse_square", {3.10028, 1.994044}, {0.0897453, 0.0161251}, -0.001123308, -11.23758},
      {"Jeffreys", {3.105098, 1.994122}, {0.1142045, 0.0212981}, -0.001828889, -10.66026}};
  Run("for i = 1, 11 do y[i] = 3 + 2*x[i] + 0.2*math.sin(7*i) end y[6] = y[6] + 3");
  for (const Expected& expected : cases) {
    Run("fit = FitLine{basis = 'powers', terms = 2, x = x, y = y, variances = variances, "
        "mode = 'refined', prior = '" +
        std::string(expected.prior) + "'}");
    ExpectNear(Numbers("fit.coefficients"), expected.coefficients, 3e-3);
    ExpectNear(Numbers("fit.errors"), expected.errors, 5e-4);
    EXPECT_NEAR(Number("return fit.covariance(1, 2)"), expected.covariance, 1e-5);
    EXPECT_NEAR(Number("return fit.covariance(2, 1)"), expected.covariance, 1e-5);
    EXPECT_NEAR(Number("return fit.log_probability"), expected.logProbability, 3e-3);
  }
}

// The minimiser's own covariance says 100 and more here.
TEST_F(FitLineTest, TheErrorsOfARefinementDoNotDependOnTheWayToIt) {
  Run("fit = FitLine{basis = 'cosines', terms = 2, x = {0, 1, 2, 3, 4}, "
      "y = {1.1, 2.9, 5.1, 6.9, 9.05}, variances = {.01, .01, .01, .01, .01}, "
      "mode = 'refined', prior = 'Jeffreys'}");
  ExpectNear(Numbers("fit.errors"), {0.1139971, 0.1253730}, 2e-3);
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
  EXPECT_EQ(Refusal("FitLine{basis = {one}, period = 1, x = x, y = y}"),
            "3 FitLine: period goes with a basis named by a text only");
  EXPECT_EQ(Refusal("FitLine{basis = 'powers', terms = 1, period = 1, x = x, y = y}"),
            "3 FitLine: period goes with \"cosines\" only");
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
  EXPECT_EQ(Refusal("FitLine{basis = {one}, x = x, y = y, prior = 'Jeffreys'}"),
            "3 FitLine: prior goes with the mode \"refined\"");
}

}  // namespace
