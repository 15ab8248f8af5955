// "TFunc" in scripts. Expected values are those of the squares 0, 1, 4, 9 at 0, 1, 2, 3, worked out
// by hand.

#include <cmath>
#include <limits>

#include "toolkit/toolkit_fixture.h"

namespace {

class TabulatedFunctionTest : public ToolkitTest {
 protected:
  TabulatedFunctionTest() {
    Run("f = TFunc({0, 1, 2, 3}, {0, 1, 4, 9}); x = TFunc({0, 3}, {0, 3})"
        "local a, b = {}, {} for i = 0, 8 do a[i + 1], b[i + 1] = i, i * i end "
        "long = TFunc(a, b)");
  }
};

TEST_F(TabulatedFunctionTest, IsEvaluatedAtNumbersAndArrays) {
  EXPECT_EQ(Number("return f(1.5)"), 2.5);
  EXPECT_EQ(Number("return f(-1)"), 0.0);
  EXPECT_EQ(Number("return f(7)"), 9.0);
  EXPECT_EQ(Numbers("f{0.5, 1.5, 3}"), (NumberList{0.5, 2.5, 9}));
  EXPECT_EQ(Numbers("f(MVector{2})"), (NumberList{4}));
  EXPECT_EQ(Numbers("f{}"), NumberList{});
}

TEST_F(TabulatedFunctionTest, CombinesWithNumbers) {
  EXPECT_EQ(Numbers("(f + 1).Y"), (NumberList{1, 2, 5, 10}));
  EXPECT_EQ(Numbers("(1 + f).Y"), (NumberList{1, 2, 5, 10}));
  EXPECT_EQ(Numbers("(f - 1).Y"), (NumberList{-1, 0, 3, 8}));
  EXPECT_EQ(Numbers("(1 - f).Y"), (NumberList{1, 0, -3, -8}));
  EXPECT_EQ(Numbers("(f * 2).Y"), (NumberList{0, 2, 8, 18}));
  EXPECT_EQ(Numbers("(2 * f).Y"), (NumberList{0, 2, 8, 18}));
  EXPECT_EQ(Numbers("(f / 2).Y"), (NumberList{0, 0.5, 2, 4.5}));
  EXPECT_EQ(Numbers("(10 / (f + 1)).Y"), (NumberList{10, 5, 2, 1}));
  EXPECT_EQ(Numbers("(-f).Y"), (NumberList{-0.0, -1, -4, -9}));
  EXPECT_EQ(Numbers("(f ^ 0.5).Y"), (NumberList{0, 1, 2, 3}));
}

TEST_F(TabulatedFunctionTest, CombinesWithFunctionsOnTheLeftAbscissae) {
  EXPECT_EQ(Numbers("(f + x).Y"), (NumberList{0, 2, 6, 12}));
  EXPECT_EQ(Numbers("(f - x).Y"), (NumberList{0, 0, 2, 6}));
  EXPECT_EQ(Numbers("(f * x).Y"), (NumberList{0, 1, 8, 27}));
  EXPECT_EQ(Numbers("(x + f).Y"), (NumberList{0, 12}));
  EXPECT_EQ(Numbers("(x + f).X"), (NumberList{0, 3}));
  // Where both are 0 the quotient counts as 0.
  EXPECT_EQ(Numbers("(f / x).Y"), (NumberList{0, 1, 2, 3}));
}

TEST_F(TabulatedFunctionTest, LeavesTheOperandsAlone) {
  Run("local g = f + f; g = f * 2; g = 1 / (f + 1); g = f:Shift(1); g = f:Map(math.sqrt)");
  EXPECT_EQ(Numbers("f.X"), (NumberList{0, 1, 2, 3}));
  EXPECT_EQ(Numbers("f.Y"), (NumberList{0, 1, 4, 9}));
}

TEST_F(TabulatedFunctionTest, IsWhatTheModuleMapsOver) {
  EXPECT_EQ(Text("(f + 1):kind()"), "TFunc");
  EXPECT_EQ(Numbers("Sinc(f * 0).Y"), (NumberList{1, 1, 1, 1}));
  EXPECT_NEAR(Number("return LnGamma(f + 3)(1)"), std::log(6.0), 1e-14);
}

TEST_F(TabulatedFunctionTest, MapsScriptFunctions) {
  EXPECT_EQ(Numbers("f:Map(math.sqrt).Y"), (NumberList{0, 1, 2, 3}));
  EXPECT_EQ(Refusal("f:Map(function(y) return 'x' end)"),
            "3 TFunc.Map: the value at x = 0 must be a number, got text");
  EXPECT_EQ(Refusal("f:Map(5)"), "3 TFunc.Map: argument 1 must be a function, got 5");
  const HostError error = Failure("f:Map(function(y) error('no ' .. y) end)");
  EXPECT_EQ(error.number, 4);
  EXPECT_NE(error.message.find("no 0"), std::string::npos) << error.message;
}

TEST_F(TabulatedFunctionTest, Integrates) {
  EXPECT_EQ(Numbers("f:Integral().Y"), (NumberList{0, 0.5, 3, 9.5}));
  EXPECT_EQ(Number("return f:Integral(0, 3)"), 9.5);
  EXPECT_EQ(Number("return f:Integral(0.5, 1)"), 0.375);
  EXPECT_EQ(Number("return f:Integral(3, 0)"), -9.5);
}

TEST_F(TabulatedFunctionTest, IntegratesByParabolas) {
  ExpectNear(Numbers("f:IntegralSimpson().Y"), {0, 1.0 / 3, 8.0 / 3, 9}, 1e-15);
  EXPECT_NEAR(Number("return long:IntegralSimpson(0, 8)"), 512.0 / 3, 1e-13);
  EXPECT_NEAR(Number("return long:IntegralSimpson(8, 0)"), -512.0 / 3, 1e-13);
  // So few intervals are left to the trapezoids; the sign is right all the same.
  EXPECT_EQ(Number("return f:IntegralSimpson(0, 3)"), 9.5);
  EXPECT_EQ(Number("return f:IntegralSimpson(3, 0)"), -9.5);
}

TEST_F(TabulatedFunctionTest, IntegratesTheExponential) {
  EXPECT_NEAR(Number("return TFunc({0, 2}, {5, 5}):LogIntegralExp()"), 5 + std::log(2.0), 1e-14);
  EXPECT_NEAR(Number("return TFunc({0, 1}, {0, 1}):LogIntegralExp()"), std::log(std::expm1(1.0)),
              1e-15);
  // Far beyond what exp can hold.
  EXPECT_NEAR(Number("return TFunc({0, 1}, {5000, 5000}):LogIntegralExp()"), 5000.0, 1e-12);
  EXPECT_EQ(Number("return TFunc({0}, {0}):LogIntegralExp()"),
            -std::numeric_limits<double>::infinity());
}

TEST_F(TabulatedFunctionTest, FindsZerosAndExtremes) {
  ExpectNear(Numbers("(f - 2):Zeros()"), {4.0 / 3}, 1e-15);
  EXPECT_EQ(Numbers("TFunc({0, 1, 2}, {-1, 0, 1}):Zeros()"), (NumberList{1}));
  EXPECT_EQ(Numbers("(f + 1):Zeros()"), NumberList{});
  EXPECT_EQ(Number("return (4 - f):Maximum().y"), 4.0);
  EXPECT_EQ(Number("return (4 - f):Maximum().x"), 0.0);
  EXPECT_EQ(Number("return (4 - f):Minimum().y"), -5.0);
  EXPECT_EQ(Number("return (4 - f):Minimum().x"), 3.0);
}

TEST_F(TabulatedFunctionTest, FindsPlacesInTheTable) {
  EXPECT_EQ(Number("return f:Index(1.5)"), 2.0);
  EXPECT_EQ(Number("return f:Index(-1)"), 0.0);
  EXPECT_EQ(Number("return f:Index(9)"), 4.0);
  EXPECT_EQ(Number("return f:Nearest(1.5)"), 2.0);
  EXPECT_EQ(Number("return f:Nearest(1.6)"), 3.0);
}

TEST_F(TabulatedFunctionTest, TransformsTheAbscissae) {
  EXPECT_EQ(Numbers("f:Shift(-1).X"), (NumberList{-1, 0, 1, 2}));
  EXPECT_EQ(Numbers("f:ScaleX(2).X"), (NumberList{0, 2, 4, 6}));
  EXPECT_EQ(Numbers("f:ExpX().X"), (NumberList{1, std::exp(1.0), std::exp(2.0), std::exp(3.0)}));
  EXPECT_EQ(Numbers("f:Shift(1):LnX().X"),
            (NumberList{0, std::log(2.0), std::log(3.0), std::log(4.0)}));
  EXPECT_EQ(Numbers("f:Shift(1):LnX().Y"), (NumberList{0, 1, 4, 9}));
}

TEST_F(TabulatedFunctionTest, RefusesOperandsThatAreNone) {
  EXPECT_EQ(Refusal("f + 'x'"), "3 TFunc.__add: cannot compute TFunc + text");
  EXPECT_EQ(Refusal("'x' - f"), "3 TFunc.__sub: cannot compute text - TFunc");
  EXPECT_EQ(Refusal("f * {1, 2}"), "3 TFunc.__mul: cannot compute TFunc * array");
  EXPECT_EQ(Refusal("f ^ f"), "3 TFunc.__pow: cannot compute TFunc ^ TFunc");
  EXPECT_EQ(Refusal("2 ^ f"), "3 TFunc.__pow: cannot compute number ^ TFunc");
}

TEST_F(TabulatedFunctionTest, RefusesDivisionByZero) {
  EXPECT_EQ(Refusal("f / 0"), "10 TFunc.__div: division by 0");
  EXPECT_EQ(Refusal("1 / f"), "10 TFunc.__div: the divisor is 0 at x = 0");
  EXPECT_EQ(Refusal("f / (f - 4)"), "10 TFunc.__div: the divisor is 0 at x = 2");
}

TEST_F(TabulatedFunctionTest, RefusesArgumentsThatAreNoNumbers) {
  EXPECT_EQ(Refusal("f('x')"), "3 TFunc.__call: x must be a number or an array, got text");
  EXPECT_EQ(Refusal("f{1, 'x'}"), "3 TFunc.__call: x[2] must be a number, got text");
  EXPECT_EQ(Refusal("f:Integral(1)"), "3 TFunc.Integral: takes both limits or none");
  EXPECT_EQ(Refusal("f:Integral(0, 1/0)"), "3 TFunc.Integral: to must be a finite number, got inf");
  EXPECT_EQ(Refusal("f:IntegralSimpson('x', 1)"),
            "3 TFunc.IntegralSimpson: from must be a number, got text");
  EXPECT_EQ(Refusal("f:ScaleX(0)"), "3 TFunc.ScaleX: the factor must be above 0, got 0");
  EXPECT_EQ(Refusal("f:Shift('x')"), "3 TFunc.Shift: the shift must be a number, got text");
  EXPECT_EQ(Refusal("f:LnX()"), "3 TFunc.LnX: X[1] = 0 has no finite logarithm");
  EXPECT_EQ(Refusal("f:ScaleX(1000):ExpX()"),
            "3 TFunc.ExpX: X[2] = 1000 has no finite exponential");
}

TEST_F(TabulatedFunctionTest, RefusesTablesThatAreNoFunctions) {
  EXPECT_EQ(Refusal("TFunc({0, 2, 1}, {0, 0, 0})(1)"),
            "3 TFunc.__call: X must ascend, but X[3] is 1 after 2");
  EXPECT_EQ(Refusal("TFunc({0, 0/0}, {0, 0})(1)"),
            "3 TFunc.__call: X[2] must be a finite number, got nan");
  EXPECT_EQ(Refusal("TFunc()(1)"), "3 TFunc.__call: X must have at least 1 element, has 0");
  Run("f.Y = {1, 2}");
  EXPECT_EQ(Refusal("-f"), "3 TFunc.__unm: Y has 2 elements, but X has 4");
  Run("f.Y = {1, 2, 'x', 4}");
  EXPECT_EQ(Refusal("f:Zeros()"), "3 TFunc.Zeros: Y[3] must be a number, got text");
  Run("f.X = nil");
  EXPECT_EQ(Refusal("f:Zeros()"), "3 TFunc.Zeros: X must be an array, got nothing");
}

TEST_F(TabulatedFunctionTest, AZeroAtAPointOfTheTableIsOneZero) {
  EXPECT_EQ(Numbers("TFunc({0, 1, 2}, {-1, 0, 1}):Zeros()"), (NumberList{1}));
  EXPECT_EQ(Numbers("TFunc({0, 1, 2, 3}, {1, 0, 1, -1}):Zeros()"), (NumberList{1, 2.5}));
}

TEST_F(TabulatedFunctionTest, RefusesAbscissaeBeyondTheNumbers) {
  EXPECT_EQ(Refusal("TFunc({0, 1e308}, {1, 2}):Shift(1e308)"),
            "3 TFunc.Shift: X[2] = 1e+308 cannot be shifted so far");
  EXPECT_EQ(Refusal("TFunc({-1e300, 1}, {1, 2}):ScaleX(1e10)"),
            "3 TFunc.ScaleX: X[1] = -1e+300 cannot be scaled so far");
}

TEST_F(TabulatedFunctionTest, NoNumberHasNoPlaceInTheTable) {
  EXPECT_EQ(Refusal("TFunc({0, 1}, {1, 2}):Index(0/0)"),
            "3 TFunc.Index: x must be a number, got nan");
  EXPECT_EQ(Refusal("TFunc({0, 1}, {1, 2}):Nearest(0/0)"),
            "3 TFunc.Nearest: x must be a number, got nan");
  EXPECT_EQ(Number("return TFunc({0, 1}, {1, 2}):Index(1/0)"), 2.0);
}

// exp(-infinity) is 0: of ln x over [0, 1, 2] only the integral over [1, 2] remains, there by the
// interpolant exp((x - 1) ln 2), whose integral is 1/ln 2.
TEST_F(TabulatedFunctionTest, TheLogarithmOfNothingIsMinusInfinity) {
  const double expected = -std::log(std::log(2.0));
  EXPECT_NEAR(Number("return TFunc({0, 1, 2}, {-1/0, 0, math.log(2)}):LogIntegralExp()"), expected,
              1e-14);
  EXPECT_NEAR(Number("return TFunc({0, 1, 2, 3}, {0, math.log(2), -1/0, 9}):LogIntegralExp()"),
              expected, 1e-14);
  EXPECT_NEAR(
      Number("return TFunc({0, 1, 2, 3}, {-1/0, -1e5, -1e5 + math.log(2), -1/0}):LogIntegralExp()"),
      expected - 1e5, 1e-9);
  EXPECT_EQ(Number("return TFunc({0, 1}, {-1/0, -1/0}):LogIntegralExp()"), -INFINITY);
  EXPECT_EQ(Refusal("TFunc({0, 1}, {1, 1/0}):LogIntegralExp()"),
            "3 TFunc.LogIntegralExp: Y[2] must be below infinity, got inf");
  EXPECT_EQ(Refusal("TFunc({0, 1}, {0/0, 1}):LogIntegralExp()"),
            "3 TFunc.LogIntegralExp: Y[1] must be below infinity, got nan");
}

TEST_F(TabulatedFunctionTest, ParabolasTakeNoJumps) {
  Run("f = TFunc({0, 1, 1, 2}, {0, 1, 3, 4})");
  EXPECT_EQ(Refusal("f:IntegralSimpson()"),
            "3 TFunc.IntegralSimpson: X[3] repeats 1; parabolas need different abscissae, Integral "
            "takes jumps");
  EXPECT_EQ(Number("return f:Integral(0, 2)"), 4.0);
}

}  // namespace
