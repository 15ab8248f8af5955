// T_Climb: points and values of finite differences, user derivatives, step tests.

#include "climb_support.h"

namespace {

template <class T>
using Access = tarn::ClimbTestAccess<T>;

/// Differences of exactly representable points: a quadratic on [0, 1]^n with steps that are powers
/// of two.
template <class T>
class ClimbDerivativeTest : public ClimbTest {
 protected:
  static constexpr T kStep = T(0.0625);

  ClimbDerivativeTest() {
    T_Climb<T>::aMinStep = kStep;
    calls.clear();
  }

  /// x0^2 + 2*x1 (+ 0*x2), the box the unit cube.
  static T_Climb<T> Quadratic(int n, T accuracy = T(1e-3)) {
    std::vector<T> bounds;
    for (int i = 0; i < n; ++i) bounds.insert(bounds.end(), {0, 1});
    return MakeClimb<T>([](const T* x) { return x[0] * x[0] + 2 * x[1]; }, bounds,
                        std::vector<T>(static_cast<std::size_t>(n), T(0.5)), accuracy);
  }

  std::vector<Point<T>>& calls = RecordedObjective<T>::calls;
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(ClimbDerivativeTest, Elements);

TYPED_TEST(ClimbDerivativeTest, ForwardDifferenceLeavesTheVectorAtTheFarPoint) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.25)});
  EXPECT_EQ(climb.GetDerivative(s, 0), T(1.0625));  // (0.5625^2 - 0.5^2)/0.0625
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{{T(0.5), T(0.25)}, {T(0.5625), T(0.25)}}));
  EXPECT_EQ(Values(s), (std::vector<T>{T(0.5625), T(0.25)}));
}

TYPED_TEST(ClimbDerivativeTest, ForwardDifferenceOnTheUpperFaceStepsInwards) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  T_MatVectorCol<T> s = Vector<T>({1, T(0.25)});
  EXPECT_EQ(climb.GetDerivative(s, 0), T(1.9375));
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{{T(0.9375), T(0.25)}, {1, T(0.25)}}));
  EXPECT_EQ(s[0], 1);
}

TYPED_TEST(ClimbDerivativeTest, ForwardDifferenceNearTheUpperFaceIsShortened) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  T_MatVectorCol<T> s = Vector<T>({T(0.96875), 0});
  EXPECT_EQ(climb.GetDerivative(s, 0), T(1.96875));
  EXPECT_EQ(this->calls[1][0], 1);
}

TYPED_TEST(ClimbDerivativeTest, CentralDifferenceEvaluatesBelowAndAboveOnACopy) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  climb.SetSymmetricDerivative(1);
  EXPECT_EQ(climb.GetSymmetricDerivative(), 1);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.25)});
  EXPECT_EQ(climb.GetDerivative(s, 0), T(1));
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{{T(0.4375), T(0.25)}, {T(0.5625), T(0.25)}}));
  EXPECT_EQ(Values(s), (std::vector<T>{T(0.5), T(0.25)}));
}

TYPED_TEST(ClimbDerivativeTest, CentralDifferenceOnAFaceMovesItsMiddleInwards) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  climb.SetSymmetricDerivative(1);
  T_MatVectorCol<T> s = Vector<T>({0, T(0.25)});
  EXPECT_EQ(climb.GetDerivative(s, 0), T(0.125));
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{{0, T(0.25)}, {T(0.125), T(0.25)}}));
  this->calls.clear();
  s = Vector<T>({1, T(0.25)});
  EXPECT_EQ(climb.GetDerivative(s, 0), T(1.875));
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{{T(0.875), T(0.25)}, {1, T(0.25)}}));
}

TYPED_TEST(ClimbDerivativeTest, NoStepMeansNoDerivativeAndNoEvaluation) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  T_Climb<T>::aMinStep = 0;
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.25)});
  EXPECT_EQ(climb.GetDerivative(s, 0), 0);
  climb.SetSymmetricDerivative(1);
  EXPECT_EQ(climb.GetDerivative(s, 0), 0);
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 0), 0);
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 1), 0);
  EXPECT_TRUE(this->calls.empty());
}

TYPED_TEST(ClimbDerivativeTest, OwnStepReplacesTheDefaultUnlessItIsZero) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  T_MatVectorCol<T> steps = Vector<T>({T(0.25), 0});
  climb.SetMinStep(steps);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.25)});
  climb.GetDerivative(s, 0);
  EXPECT_EQ(this->calls[1][0], T(0.75));
  climb.GetDerivative(s, 1);
  EXPECT_EQ(this->calls[3][1], T(0.25) + this->kStep);
}

TYPED_TEST(ClimbDerivativeTest, AStepWiderThanTheBoxLeavesItFromTheUpperFace) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  T_MatVectorCol<T> steps = Vector<T>({T(1.5), 0});
  climb.SetMinStep(steps);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), 0});
  climb.GetDerivative(s, 0);
  s[0] = 1;
  climb.GetDerivative(s, 0);
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{{T(0.5), 0}, {1, 0}, {T(-0.5), 0}, {1, 0}}));
}

TYPED_TEST(ClimbDerivativeTest, FixedVariableHasNoDerivativeAndIsNotAsked) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return x[0] * x[1]; }, {2, 2, 0, 1}, {2, T(0.5)}, T(1e-3));
  T_MatVectorCol<T> s = Vector<T>({0, T(0.5)});
  EXPECT_EQ(climb.GetDerivative(s, 0), 0);
  Variable derivative = this->Script("function() error('asked') end");
  climb.SetDerivFunc(derivative);
  EXPECT_EQ(climb.GetDerivative(s, 0), 0);
  EXPECT_TRUE(this->calls.empty());
  EXPECT_FALSE(this->host.HasError());
}

TYPED_TEST(ClimbDerivativeTest, ThereIsNoDerivativeByWhatIsNoVariable) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.5)});
  for (const int i : {-1, 2, 1000}) EXPECT_EQ(climb.GetDerivative(s, i), 0);
  EXPECT_TRUE(this->calls.empty());
  EXPECT_EQ(Values(s), (std::vector<T>{T(0.5), T(0.5)}));
}

TYPED_TEST(ClimbDerivativeTest, ForwardGradientIsOneBatchAndRestoresTheBestPoint) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return x[0] * x[0] + 2 * x[2]; },
                                  {0, 1, 3, 3, 0, 1}, {T(0.5), 3, 1}, T(1e-3));
  T_MatVectorCol<T>& best = Access<T>::Best(climb);
  best = Vector<T>({T(0.5), 0, 1});
  T_MatVectorCol<T> gradient;
  climb.GetGradient(gradient, best);
  EXPECT_EQ(Values(gradient), (std::vector<T>{T(1.0625), 0, 2}));
  // The point of the fixed variable is the lower corner of the box; it is evaluated all the same.
  EXPECT_EQ(this->calls,
            (std::vector<Point<T>>{
                {T(0.5), 3, 1}, {T(0.5625), 3, 1}, {0, 3, 0}, {T(0.5), 3, T(0.9375)}}));
  EXPECT_EQ(Values(best), (std::vector<T>{T(0.5), 0, 1}));
}

TYPED_TEST(ClimbDerivativeTest, ForwardGradientOfAnotherVectorMeasuresFromTheBestPoint) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  Access<T>::Best(climb) = Vector<T>({T(0.5), T(0.5)});
  T_MatVectorCol<T> s = Vector<T>({T(0.25), T(0.25)});
  T_MatVectorCol<T> gradient;
  climb.GetGradient(gradient, s);
  // Steps add up in s and are divided by the distance from the best point.
  EXPECT_EQ(Values(s), (std::vector<T>{T(0.3125), T(0.3125)}));
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{
                             {T(0.25), T(0.25)}, {T(0.3125), T(0.25)}, {T(0.3125), T(0.3125)}}));
  const T f0 = T(0.0625) + T(0.5);
  const T f1 = T(0.09765625) + T(0.5);
  const T f2 = T(0.09765625) + T(0.625);
  const T delta = T(0.3125) - T(0.5);
  EXPECT_EQ(Values(gradient), (std::vector<T>{(f1 - f0) / delta, (f2 - f0) / delta}));
}

TYPED_TEST(ClimbDerivativeTest, CentralGradientIsOneBatchOfPairs) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return x[0] * x[0] + 2 * x[2]; },
                                  {0, 1, 3, 3, 0, 1}, {T(0.5), 3, 1}, T(1e-3));
  climb.SetSymmetricDerivative(1);
  T_MatVectorCol<T>& best = Access<T>::Best(climb);
  best = Vector<T>({T(0.5), 0, 1});
  T_MatVectorCol<T> gradient;
  climb.GetGradient(gradient, best);
  EXPECT_EQ(Values(gradient), (std::vector<T>{1, 0, 2}));
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{{T(0.4375), 3, 1},
                                                {T(0.5625), 3, 1},
                                                {T(0.5), 3, 1},
                                                {T(0.5), 3, 1},
                                                {T(0.5), 3, T(0.875)},
                                                {T(0.5), 3, 1}}));
  EXPECT_EQ(Values(best), (std::vector<T>{T(0.5), 0, 1}));
}

TYPED_TEST(ClimbDerivativeTest, NumericalGradientIsCancelledWithinTheAccuracyOfAFace) {
  using T = TypeParam;
  const T accuracy = T(0.125);
  // Rising in variable 0, falling in variable 1.
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return x[0] - x[1]; }, {0, 1, 0, 1},
                                  {T(0.5), T(0.5)}, accuracy);
  T_MatVectorCol<T>& best = Access<T>::Best(climb);
  const auto gradientAt = [&](T s0, T s1) {
    best = Vector<T>({s0, s1});
    T_MatVectorCol<T> gradient;
    climb.GetGradient(gradient, best);
    return Values(gradient);
  };
  for (const int symmetric : {0, 1}) {
    climb.SetSymmetricDerivative(symmetric);
    EXPECT_EQ(gradientAt(T(0.0625), T(0.9375)), (std::vector<T>{0, 0}));
    EXPECT_EQ(gradientAt(T(0.125), T(0.875)), (std::vector<T>{1, -1}));
    EXPECT_EQ(gradientAt(T(0.9375), T(0.0625)), (std::vector<T>{1, -1}));
  }
}

template <class T>
T SlopeOfPlane(T_MatVector<T>& /*x*/, int i, Variable* /*extra*/) {
  return i == 0 ? T(1) : T(-1);
}

TYPED_TEST(ClimbDerivativeTest, AnalyticGradientIsCancelledWithinTwiceTheAccuracyOfAFace) {
  using T = TypeParam;
  const T accuracy = T(0.125);
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return x[0] - x[1]; }, {0, 4, 0, 1},
                                  {T(0.5), T(0.5)}, accuracy);
  Variable derivative;
  derivative.SetCppPointer(reinterpret_cast<void*>(&SlopeOfPlane<T>));
  climb.SetDerivFunc(derivative);
  T_MatVectorCol<T> gradient;
  T_MatVectorCol<T> s = Vector<T>({T(0.1875), T(0.8125)});
  climb.GetGradient(gradient, s);
  EXPECT_EQ(Values(gradient), (std::vector<T>{0, 0}));
  s = Vector<T>({T(0.25), T(0.75)});
  climb.GetGradient(gradient, s);
  EXPECT_EQ(Values(gradient), (std::vector<T>{4, -1}));  // the range of variable 0 is 4
  EXPECT_EQ(climb.GetDerivative(s, 0), 4);
  EXPECT_TRUE(this->calls.empty());
}

template <class T>
struct DerivativeLog {
  static inline std::vector<int> indices;
  static T Call(T_MatVector<T>& x, int i, Variable* extra) {
    indices.push_back(i);
    return static_cast<T>(10 * i) + x[0] + static_cast<T>(extra->GetDoubleNumb());
  }
};

TYPED_TEST(ClimbDerivativeTest, AnalyticGradientAsksForAllComponentsOncePerFreeVariable) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T*) { return T(0); }, {0, 1, 3, 3, 0, 1, 5, 5},
                                  {T(0.5), 3, T(0.5), 5}, T(1e-3));
  Variable extra(std::int32_t{2});
  climb.SetExtraParam(extra);
  Variable derivative;
  derivative.SetCppPointer(reinterpret_cast<void*>(&DerivativeLog<T>::Call));
  T_MatVectorCol<T> x = Vector<T>({T(0.5), 3, T(0.5), 5});
  T_MatVectorCol<T> gradient(4);
  Access<T>::CalculateGradient(climb, gradient, derivative, x);
  EXPECT_EQ(DerivativeLog<T>::indices, (std::vector<int>{0, 1, 2, 3, 0, 1, 2, 3}));
  // Variable 1 is fixed, but computed again with variable 2; nothing follows variable 3.
  EXPECT_EQ(Values(gradient), (std::vector<T>{T(2.5), T(12.5), T(22.5), 0}));
  climb.SetDerivFunc(derivative);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), 0, T(0.5), 0});
  climb.GetGradient(gradient, s);
  EXPECT_EQ(Values(gradient), (std::vector<T>{T(2.5), 0, T(22.5), 0}));
}

TYPED_TEST(ClimbDerivativeTest, EmptyDerivativeFunctionBringsDifferencesBack) {
  using T = TypeParam;
  T_Climb<T> climb = this->Quadratic(2);
  Variable derivative;
  derivative.SetCppPointer(reinterpret_cast<void*>(&SlopeOfPlane<T>));
  climb.SetDerivFunc(derivative);
  Variable none;
  climb.SetDerivFunc(none);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.25)});
  climb.GetDerivative(s, 0);
  EXPECT_EQ(this->calls.size(), 2U);
}

TYPED_TEST(ClimbDerivativeTest, BatchGivesEachEvaluationACopyOfItsPoint) {
  using T = TypeParam;
  Variable function;
  function.SetCppPointer(reinterpret_cast<void*>(+[](T_MatVector<T>& x, Variable*) {
    const T value = x[0];
    x[0] = 99;
    return value;
  }));
  T bounds[2] = {0, 4};
  T start[1] = {0};
  T_Climb<T> climb(function, 1, bounds, start, T(1e-3));
  T_MatVectorCol<T> points[2] = {Vector<T>({T(0.25)}), Vector<T>({T(0.5)})};
  T values[2] = {-1, -1};
  Access<T>::DoParallelCalculation(climb, values, points, 0);
  Access<T>::DoParallelCalculation(climb, values, points, -2);
  EXPECT_EQ(values[0], -1);
  Access<T>::DoParallelCalculation(climb, values, points, 2);
  EXPECT_EQ(values[0], 1);
  EXPECT_EQ(values[1], 2);
  EXPECT_EQ(points[0][0], T(0.25));
}

TYPED_TEST(ClimbDerivativeTest, ObjectiveThatResizesItsArgumentDoesNoHarm) {
  using T = TypeParam;
  Variable function;
  function.SetCppPointer(reinterpret_cast<void*>(+[](T_MatVector<T>& x, Variable*) {
    const T value = x[0] * x[0] + x[1] * x[1];
    x.SetDim(1);
    return value;
  }));
  T bounds[4] = {-1, 2, -1, 2};
  T start[2] = {1, 1};
  T_Climb<T> climb(function, 2, bounds, start, T(1e-3));
  climb.Solve();
  EXPECT_NEAR(climb.GetResult()[0], 0, 2e-2);
  EXPECT_EQ(climb.GetResult().Dim(), 2);
}

TYPED_TEST(ClimbDerivativeTest, StepTestsLookAtFreeVariablesOnly) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T*) { return T(0); }, {0, 1, 3, 3}, {0, 3}, T(0.125));
  const T nan = std::numeric_limits<T>::quiet_NaN();
  EXPECT_TRUE(Access<T>::CheckDeltaSize(climb, Vector<T>({T(0.0625), 5})));
  EXPECT_TRUE(Access<T>::CheckDeltaSize(climb, Vector<T>({T(-0.0625), 5})));
  EXPECT_FALSE(Access<T>::CheckDeltaSize(climb, Vector<T>({T(0.125), 5})));
  EXPECT_FALSE(Access<T>::CheckDeltaSize(climb, Vector<T>({T(-1), 5})));
  EXPECT_FALSE(Access<T>::CheckDeltaSize(climb, Vector<T>({nan, 0})));
  T_MatVectorCol<T> directions[2] = {Vector<T>({0, 1}), Vector<T>({T(0.0625), 0})};
  EXPECT_TRUE(Access<T>::CheckStepSize(climb, directions));
  directions[1][0] = T(0.5);
  EXPECT_FALSE(Access<T>::CheckStepSize(climb, directions));
}

TYPED_TEST(ClimbDerivativeTest, StepTestsOfNoVariablesNeedAPositiveAccuracy) {
  using T = TypeParam;
  Variable function = RecordedObjective<T>::Make([](const T*) { return T(0); });
  for (const T accuracy : {T(0), T(1e-3)}) {
    T_Climb<T> climb(function, 0, nullptr, nullptr, accuracy);
    EXPECT_EQ(Access<T>::CheckDeltaSize(climb, T_MatVectorCol<T>()), accuracy > 0);
    EXPECT_TRUE(Access<T>::CheckStepSize(climb, nullptr));
  }
}

}  // namespace
