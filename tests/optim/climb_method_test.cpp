// T_Climb: beginnings and ends of the methods, directions, limits of iterations.

#include "climb_support.h"
#include "problems/more_garbow_hillstrom.h"

namespace {

template <class T>
using Access = tarn::ClimbTestAccess<T>;
using tarn::StopReason;

template <class T>
class ClimbMethodTest : public ClimbTest {
 protected:
  static constexpr T kAccuracy = sizeof(T) == 4 ? T(1e-4) : T(1e-8);

  /// (x0 - 1)^2 + (x1 - 2)^2 + 1 on [-3, 5]^2.
  static T_Climb<T> Bowl(T x0, T x1, T accuracy = kAccuracy) {
    return MakeClimb<T>(
        [](const T* x) { return (x[0] - 1) * (x[0] - 1) + (x[1] - 2) * (x[1] - 2) + 1; },
        {-3, 5, -3, 5}, {x0, x1}, accuracy);
  }

  /// Rosenbrock's valley from its standard start.
  static T_Climb<T> Valley(T accuracy = kAccuracy) {
    return MakeClimb(problems::MoreGarbowHillstrom<T>::All()[0], accuracy);
  }

  bool RaisedSolutionNotFound() {
    const HostError error = host.TakeError();
    return error.name == "Can't find solution of system.";
  }

  std::vector<Point<T>>& calls = RecordedObjective<T>::calls;
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(ClimbMethodTest, Elements);

// Line search -------------------------------------------------------------------------------------

TYPED_TEST(ClimbMethodTest, RangeOfADirectionEndsAtTheNearestFaces) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T*) { return T(0); }, {0, 1, 0, 1, 3, 3}, {0, 0, 3}, T(1e-3));
  const auto range = [&](std::vector<T> s, std::vector<T> d) {
    T_MatVectorCol<T> point = Vector(s);
    T_MatVectorCol<T> direction = Vector(d);
    T tmin = 9;
    T tmax = 9;
    climb.GetOrtBoundaries(point, direction, tmin, tmax);
    return std::pair<T, T>(tmin, tmax);
  };
  EXPECT_EQ(range({T(0.25), T(0.5), 0}, {1, 0, 0}), (std::pair<T, T>(T(-0.25), T(0.75))));
  EXPECT_EQ(range({T(0.25), T(0.5), 0}, {-1, 0, 0}), (std::pair<T, T>(T(-0.75), T(0.25))));
  EXPECT_EQ(range({T(0.25), T(0.5), 0}, {1, 2, 0}), (std::pair<T, T>(T(-0.25), T(0.25))));
  EXPECT_EQ(range({0, 1, 0}, {1, 1, 0}), (std::pair<T, T>(0, 0)));
  EXPECT_EQ(range({T(0.25), T(0.5), 0}, {0, 0, 5}), (std::pair<T, T>(0, 0)));
  EXPECT_EQ(range({T(0.25), T(0.5), 0}, {0, 0, 0}), (std::pair<T, T>(0, 0)));
  EXPECT_EQ(range({T(0.25), T(0.5)}, {1, 0, 0}), (std::pair<T, T>(0, 0)));
  EXPECT_EQ(range({T(0.25), T(0.5), 0}, {1, 0}), (std::pair<T, T>(0, 0)));
  // No further than the diagonal of the cube.
  const T diagonal = std::sqrt(T(3));
  EXPECT_EQ(range({T(0.5), T(0.5), 0}, {T(0.125), 0, 0}), (std::pair<T, T>(-diagonal, diagonal)));
}

TYPED_TEST(ClimbMethodTest, LineSearchWithoutDirectionOrRangeDoesNothing) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(0, 0);
  climb.SetSilent(0);
  Access<T>::Best(climb) = Vector<T>({0, 1});
  for (const auto& d : {Vector<T>({0, 0}), Vector<T>({-1, -1})}) {
    T_MatVectorCol<T> direction = d;
    // The second leaves the cube at once, forwards and backwards.
    EXPECT_EQ(climb.FindMiniumByDirection(T(7), direction, 0), 7);
    EXPECT_EQ(Values(Access<T>::Best(climb)), (std::vector<T>{0, 1}));
  }
  EXPECT_TRUE(this->calls.empty());
  EXPECT_EQ(this->output, "");
  EXPECT_EQ(climb.GetLineSearchStopReason(), StopReason::kNothingToShrink);
}

TYPED_TEST(ClimbMethodTest, LineSearchTriesTheOtherSideAfterAWorseFirstTrial) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return x[0]; }, {0, 1}, {T(0.5)}, T(1e-3));
  Access<T>::Best(climb) = Vector<T>({T(0.5)});
  T_MatVectorCol<T> up = Vector<T>({1});
  climb.FindMiniumByDirection(T(0.5), up, 0);
  EXPECT_EQ(this->calls[0][0], T(0.5) + T(0.05) * T(1));
  EXPECT_EQ(this->calls[1][0], T(0.5) - T(0.05) * T(1));
  // At the lower end of the range there is no other side: twice as far forwards.
  this->calls.clear();
  Access<T>::Best(climb) = Vector<T>({0});
  EXPECT_EQ(climb.FindMiniumByDirection(T(0), up, 0), 0);
  EXPECT_EQ(this->calls[0][0], T(0.05) * T(1));
  EXPECT_EQ(this->calls[1][0], 2 * (T(0.05) * T(1)));
  EXPECT_EQ(Access<T>::Best(climb)[0], 0);
  // At the upper end: twice as far backwards first.
  this->calls.clear();
  Access<T>::Best(climb) = Vector<T>({1});
  climb.FindMiniumByDirection(T(1), up, 0);
  EXPECT_EQ(this->calls[0][0], 1 + -2 * (T(0.05) * T(1)));
}

TYPED_TEST(ClimbMethodTest, LineSearchCutsItsFirstStepsAtTheEndsOfTheRange) {
  using T = TypeParam;
  // Twice the length leads beyond the far end. There the next step halves the last gap; from a
  // distance beyond the range it would step out once more.
  T_MatVectorCol<T> along = Vector<T>({T(0.75)});
  T_Climb<T> falling = MakeClimb<T>([](const T* x) { return -x[0]; }, {0, 1}, {0}, T(1e-3));
  Access<T>::Best(falling) = Vector<T>({0});
  EXPECT_EQ(falling.FindMiniumByDirection(T(0), along, 1), -1);
  ASSERT_GE(this->calls.size(), 3U);
  EXPECT_EQ(this->calls[0][0], T(0.75));
  EXPECT_EQ(this->calls[1][0], 1);
  EXPECT_EQ(this->calls[2][0], T(0.875));
  T_Climb<T> rising = MakeClimb<T>([](const T* x) { return x[0]; }, {0, 1}, {1}, T(1e-3));
  Access<T>::Best(rising) = Vector<T>({1});
  EXPECT_EQ(rising.FindMiniumByDirection(T(1), along, 1), 0);
  ASSERT_GE(this->calls.size(), 3U);
  EXPECT_EQ(this->calls[0][0], 0);
  EXPECT_EQ(this->calls[1][0], T(0.25));
  EXPECT_EQ(this->calls[2][0], T(0.125));
}

TYPED_TEST(ClimbMethodTest, LineSearchReplacesALengthThatDoesNotLeadDown) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return (x[0] - T(0.5)) * (x[0] - T(0.5)); },
                                  {0, 1}, {T(0.5)}, T(1e-3));
  Access<T>::Best(climb) = Vector<T>({T(0.375)});
  T_MatVectorCol<T> along = Vector<T>({T(0.5)});
  climb.FindMiniumByDirection(T(0.015625), along, 1);
  EXPECT_EQ(this->calls[0][0], T(0.875));
  EXPECT_EQ(this->calls[1][0], T(0.375) + T(0.05) * T(1));
  EXPECT_EQ(this->calls[2][0], T(0.375) - T(0.05) * T(1));
  EXPECT_NEAR(Access<T>::Best(climb)[0], 0.5, 1e-3);
}

TYPED_TEST(ClimbMethodTest, LineSearchWithoutImprovementMovesNothing) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(0, 0);
  Access<T>::Best(climb) = Vector<T>({T(0.5), T(0.625)});  // the minimum
  T_MatVectorCol<T> along = Vector<T>({1, 1});
  EXPECT_EQ(climb.FindMiniumByDirection(T(1), along, 0), 1);
  EXPECT_EQ(Values(Access<T>::Best(climb)), (std::vector<T>{T(0.5), T(0.625)}));
}

TYPED_TEST(ClimbMethodTest, LineSearchMovesABestPointOutsideIntoTheCube) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(0, 0);
  Access<T>::Best(climb) = Vector<T>({T(0.25), T(1.5)});  // the point (-1, 9)
  T_MatVectorCol<T> along = Vector<T>({1, 0});
  EXPECT_GE(climb.FindMiniumByDirection(T(54), along, 0), 50);
  for (const auto& call : this->calls) EXPECT_EQ(call[1], 9);
  EXPECT_NEAR(Access<T>::Best(climb)[0], 0.5, 1e-2);
  EXPECT_EQ(Access<T>::Best(climb)[1], 1);
}

TYPED_TEST(ClimbMethodTest, LineSearchStepCounterStartsAnewWithEachSearch) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(0, 0);
  climb.SolveBFGS();
  const int after = Access<T>::LineSearchStep();
  EXPECT_GT(after, 0);
  T_MatVectorCol<T> none = Vector<T>({0, 0});
  climb.FindMiniumByDirection(T(0), none, 0);
  EXPECT_EQ(Access<T>::LineSearchStep(), 0);
  EXPECT_LT(after, 10001);
}

TYPED_TEST(ClimbMethodTest, LineSearchEndsAtItsLimitOfPasses) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(0, 0);
  EXPECT_EQ(Access<T>::LineSearchPassLimit(climb), 10000);
  Access<T>::LineSearchPassLimit(climb) = 2;
  Access<T>::Best(climb) = Vector<T>({0, 0});
  T_MatVectorCol<T> along = Vector<T>({1, T(0.5)});
  const T f = climb.FindMiniumByDirection(T(42), along, 0);
  EXPECT_LT(f, 42);
  EXPECT_EQ(climb.GetLineSearchPassCount(), 2);
  EXPECT_EQ(climb.GetLineSearchStopReason(), StopReason::kLineSearchLimit);
  climb.SolveBFGS();
  EXPECT_TRUE(climb.GetLineSearchStopReason() == StopReason::kLineSearchLimit);
}

TYPED_TEST(ClimbMethodTest, LineSearchThatHasNothingLeftToTryEnds) {
  using T = TypeParam;
  // Every value is lower than all before, and no accuracy is good enough.
  T next = 0;
  T_Climb<T> climb =
      MakeClimb<T>([&next](const T*) { return next -= T(1); }, {0, 1}, {T(0.5)}, T(0));
  Access<T>::Best(climb) = Vector<T>({T(0.5)});
  T_MatVectorCol<T> along = Vector<T>({1});
  climb.FindMiniumByDirection(T(0), along, 0);
  EXPECT_LT(climb.GetLineSearchPassCount(), 3000);
  EXPECT_EQ(climb.GetLineSearchStopReason(), StopReason::kNothingToShrink);
}

// Quasi-Newton ------------------------------------------------------------------------------------

TYPED_TEST(ClimbMethodTest, QuasiNewtonAtAMinimumEndsAfterOneGradient) {
  using T = TypeParam;
  for (const int symmetric : {0, 1}) {
    T_Climb<T> climb = this->Bowl(1, 2, T(0.1));
    climb.SetSymmetricDerivative(symmetric);
    climb.SolveBFGS();
    EXPECT_EQ(this->calls.size(), symmetric != 0 ? 1U + 4U : 1U + 3U);
    EXPECT_EQ(climb.GetStopReason(), StopReason::kConvergedGradient);
    EXPECT_EQ(climb.GetLineSearchPassCount(), 0);
    EXPECT_EQ(Values(climb.GetResult()), (std::vector<T>{1, 2}));
  }
}

TYPED_TEST(ClimbMethodTest, QuasiNewtonMovesAlongAFaceItStartsOn) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return x[0] + (x[1] - T(0.25)) * (x[1] - T(0.25)); },
                   {0, 1, 0, 1}, {0, T(0.75)}, T(1e-4));
  climb.SolveBFGS();
  std::size_t offTheFace = 0;
  for (const auto& call : this->calls) {
    if (call[0] != 0) ++offTheFace;
  }
  // Only the difference steps leave it, one per gradient of three points.
  EXPECT_LE(offTheFace * 3, this->calls.size());
  EXPECT_EQ(climb.GetResult()[0], 0);
  EXPECT_NEAR(climb.GetResult()[1], 0.25, 1e-2);
}

TYPED_TEST(ClimbMethodTest, QuasiNewtonLimitIsSilent) {
  using T = TypeParam;
  T_Climb<T> climb = this->Valley();
  climb.SetSymmetricDerivative(1);
  for (const int limit : {0, 1, 3}) {
    climb.SolveBFGS(limit);
    EXPECT_FALSE(this->host.HasError());
    EXPECT_EQ(climb.GetStopReason(), StopReason::kIterationLimit);
    EXPECT_EQ(climb.GetItterationCount(), limit);
  }
}

TYPED_TEST(ClimbMethodTest, QuasiNewtonFindsTheMinimum) {
  using T = TypeParam;
  for (int method = 0; method < 2; ++method) {
    T_Climb<T> climb = this->Bowl(-2, -1);
    climb.SetSymmetricDerivative(1);
    method == 0 ? climb.SolveBFGS() : climb.SolveDFP();
    EXPECT_NEAR(climb.GetResult()[0], 1, sizeof(T) == 4 ? 0.02 : 1e-4);
    EXPECT_NEAR(climb.GetResult()[1], 2, sizeof(T) == 4 ? 0.02 : 1e-4);
    EXPECT_FALSE(this->host.HasError());
  }
}

TYPED_TEST(ClimbMethodTest, DfpFollowsACurvedValley) {
  using T = TypeParam;
  T_Climb<T> climb = this->Valley();
  climb.SetSymmetricDerivative(1);
  climb.SolveDFP();
  EXPECT_NEAR(climb.GetResult()[0], 1, sizeof(T) == 4 ? 0.1 : 1e-4);
  EXPECT_NEAR(climb.GetResult()[1], 1, sizeof(T) == 4 ? 0.2 : 2e-4);
}

TYPED_TEST(ClimbMethodTest, QuasiNewtonRunsCanBeMadeOneByOne) {
  using T = TypeParam;
  T_Climb<T> climb = this->Valley();
  climb.SolveBFGS(2);
  T_MatVectorCol<T> x(climb.GetResult());
  const T f2 = climb.Func(x);
  const T more = climb.MakeItterationBFGS(f2, 50);
  EXPECT_LE(more, f2);
  const T evenMore = climb.MakeItterationDFP(more, 50);
  EXPECT_LE(evenMore, more);
  EXPECT_LE(climb.MakeQuasiNewtonItteration(1, evenMore, 50), evenMore);
}

TYPED_TEST(ClimbMethodTest, QuasiNewtonStoresItsMatrixAfterMoreThanNIterations) {
  using T = TypeParam;
  T_Climb<T> climb = this->Valley();
  climb.SetSymmetricDerivative(1);
  climb.SolveBFGS(2);
  EXPECT_EQ(Access<T>::CovarianceCache(climb)(0, 0), 0);
  climb.SolveBFGS(3);
  ASSERT_EQ(climb.GetItterationCount(), 3);
  for (int i = 0; i < 2; ++i) {
    for (int j = 0; j < 2; ++j) {
      EXPECT_EQ(Bits(Access<T>::CovarianceCache(climb)(i, j)),
                Bits(Access<T>::InverseHessian(climb)(i, j)));
    }
  }
  EXPECT_NE(Access<T>::CovarianceCache(climb)(0, 0), 0);
  EXPECT_EQ(Values(Access<T>::CachedPoint(climb)), Values(Access<T>::Best(climb)));
}

// Directions --------------------------------------------------------------------------------------

TYPED_TEST(ClimbMethodTest, PowellOfOneVariableEndsAtTheFirstConvergedPass) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return (x[0] - 1) * (x[0] - 1); }, {-3, 5}, {4}, T(1e-3));
  climb.SolvePowell();
  EXPECT_LE(climb.GetItterationCount(), 3);
  EXPECT_EQ(climb.GetStopReason(), StopReason::kConvergedValue);
  EXPECT_NEAR(climb.GetResult()[0], 1, 1e-2);
}

TYPED_TEST(ClimbMethodTest, PowellPassWithoutImprovementChangesNothing) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(1, 2);
  Access<T>::Best(climb) = Vector<T>({T(0.5), T(0.625)});
  Access<T>::InitStep(climb);
  const auto direction0 = Values(Access<T>::Directions(climb)[0]);
  int replaced = 1;
  EXPECT_EQ(Access<T>::MakeItterationPowell(climb, T(1), Access<T>::Directions(climb), replaced),
            1);
  EXPECT_EQ(replaced, 1);
  EXPECT_EQ(Values(Access<T>::Best(climb)), (std::vector<T>{T(0.5), T(0.625)}));
  EXPECT_EQ(Values(Access<T>::Directions(climb)[0]), direction0);
}

TYPED_TEST(ClimbMethodTest, SinglePassUsesTheDirectionsOfTheCaller) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(-2, -2);
  T_MatVectorCol<T> directions[2] = {Vector<T>({T(0.125), T(0.125)}), Vector<T>({0, T(0.25)})};
  climb.SetSilent(0);
  climb.SetMaxItterationNumber(0);
  climb.SolvePowell(directions);
  EXPECT_EQ(climb.GetItterationCount(), 1);
  EXPECT_FALSE(this->host.HasError());
  EXPECT_NEAR(climb.GetResult()[0], 1, 0.6);
  ASSERT_GE(this->calls.size(), 2U);
  EXPECT_EQ(this->calls[0], (Point<T>{-2, -2}));
  EXPECT_EQ(this->calls[1][0], this->calls[1][1]);  // along the first of them
}

TYPED_TEST(ClimbMethodTest, SinglePassMayReplaceADirectionOfTheCaller) {
  using T = TypeParam;
  // A narrow valley along the diagonal: the way of a whole pass is worth more than an axis.
  bool replaced = false;
  for (const auto& problem : problems::MoreGarbowHillstrom<T>::All()) {
    T_Climb<T> climb = MakeClimb(problem, T(1e-4));
    std::vector<T_MatVectorCol<T>> directions;
    for (int i = 0; i < problem.Dimension(); ++i) {
      directions.emplace_back(problem.Dimension());
      directions.back()[i] = T(0.01);
    }
    climb.SolvePowell(directions.data());
    replaced = replaced || directions[0][0] == 0;
  }
  EXPECT_TRUE(replaced);
}

TYPED_TEST(ClimbMethodTest, SinglePassWithoutDirectionsDoesNothing) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(-2, -2);
  climb.SolvePowell(static_cast<T_MatVectorCol<T>*>(nullptr));
  EXPECT_TRUE(this->calls.empty());
}

TYPED_TEST(ClimbMethodTest, SinglePassAlongTheAxes) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(-2, -2);
  climb.SetMaxItterationNumber(0);
  climb.SolvePowell(0);
  EXPECT_EQ(climb.GetItterationCount(), 1);
  EXPECT_FALSE(this->host.HasError());
  EXPECT_NEAR(climb.GetResult()[0], 1, 1e-1);
  EXPECT_NEAR(climb.GetResult()[1], 2, 1e-1);
  T_Climb<T> full = this->Bowl(-2, -2);
  full.SolvePowell(5);
  EXPECT_GT(full.GetItterationCount(), 1);
}

TYPED_TEST(ClimbMethodTest, IterationLimitRaisesUnlessToldOtherwise) {
  using T = TypeParam;
  const std::vector<std::function<void(T_Climb<T>&)>> methods = {
      [](T_Climb<T>& c) { c.SolvePowell(); }, [](T_Climb<T>& c) { c.Solve(); },
      [](T_Climb<T>& c) { c.Solve(2); }};
  for (const auto& method : methods) {
    for (const int limit : {0, 1}) {
      T_Climb<T> climb = this->Valley();
      climb.SetMaxItterationNumber(limit);
      method(climb);
      EXPECT_EQ(climb.GetStopReason(), StopReason::kIterationLimit);
      EXPECT_EQ(climb.GetItterationCount(), limit);
      EXPECT_TRUE(this->RaisedSolutionNotFound());
      T_MatVectorCol<T> x(climb.GetResult());
      EXPECT_LE(climb.Func(x), T(24.2F) * T(1.001));  // the best point so far is kept
      climb.SetErrorIfMaxItterNumberExceed(0);
      method(climb);
      EXPECT_FALSE(this->host.HasError());
      climb.SetErrorIfMaxItterNumberExceed(1);
      this->host.HideOwner(true);
      method(climb);
      this->host.HideOwner(false);
      EXPECT_FALSE(this->host.HasError());
    }
  }
}

TYPED_TEST(ClimbMethodTest, SolveFindsTheMinimum) {
  using T = TypeParam;
  T_Climb<T> climb = this->Valley();
  climb.Solve();
  EXPECT_NEAR(climb.GetResult()[0], 1, sizeof(T) == 4 ? 2e-2 : 1e-4);
  EXPECT_NEAR(climb.GetResult()[1], 1, sizeof(T) == 4 ? 4e-2 : 2e-4);
  EXPECT_EQ(climb.GetStopReason(), StopReason::kConvergedValue);
}

TYPED_TEST(ClimbMethodTest, SolveCanBeRepeated) {
  using T = TypeParam;
  T_Climb<T> climb = this->Valley();
  climb.Solve();
  const auto first = this->calls;
  this->calls.clear();
  climb.Solve();
  EXPECT_EQ(this->calls, first);
}

// Coordinates -------------------------------------------------------------------------------------

TYPED_TEST(ClimbMethodTest, CoordinateSearchAtAFaceEvaluatesTheFace) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return -x[0]; }, {0, 1}, {T(0.75)}, T(1e-2));
  T_MatVectorCol<T> steps = Vector<T>({T(0.5)});
  climb.SolveByCoord(steps);
  EXPECT_EQ(this->calls[0][0], T(0.75));
  EXPECT_EQ(this->calls[1][0], 1);
  EXPECT_EQ(climb.GetResult()[0], 1);
  EXPECT_EQ(steps[0], T(0.5));
}

TYPED_TEST(ClimbMethodTest, CoordinateSearchMakesOneSweep) {
  using T = TypeParam;
  T_Climb<T> climb = this->Valley();
  T_MatVectorCol<T> steps = Vector<T>({T(0.1), T(0.1)});
  climb.SetSilent(0);
  climb.SolveByCoord(steps);
  EXPECT_EQ(climb.GetItterationCount(), 1);
  EXPECT_FALSE(this->host.HasError());
  EXPECT_NE(this->output, "");
}

TYPED_TEST(ClimbMethodTest, CoordinateSearchWithLimitZeroRaisesWithoutASweep) {
  using T = TypeParam;
  T_Climb<T> climb = this->Valley();
  T_MatVectorCol<T> steps = Vector<T>({T(0.1), T(0.1)});
  climb.SetMaxItterationNumber(0);
  climb.SolveByCoord(steps);
  EXPECT_EQ(this->calls.size(), 1U);
  EXPECT_TRUE(this->RaisedSolutionNotFound());
  EXPECT_EQ(climb.GetStopReason(), StopReason::kIterationLimit);
  climb.SetErrorIfMaxItterNumberExceed(0);
  climb.SolveByCoord(steps);
  EXPECT_FALSE(this->host.HasError());
  // It raises without a processor too.
  climb.SetErrorIfMaxItterNumberExceed(1);
  this->host.HideOwner(true);
  climb.SolveByCoord(steps);
  this->host.HideOwner(false);
  EXPECT_TRUE(this->RaisedSolutionNotFound());
}

TYPED_TEST(ClimbMethodTest, CoordinateSearchSweepsOnWhileTheValueIsNotANumber) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  T_Climb<T> climb = MakeClimb<T>([nan](const T*) { return nan; }, {0, 1}, {T(0.5)}, T(0));
  climb.SetMaxItterationNumber(4);
  T_MatVectorCol<T> steps = Vector<T>({T(0.25)});
  climb.SolveByCoord(steps);
  EXPECT_EQ(climb.GetItterationCount(), 4);
  EXPECT_TRUE(this->RaisedSolutionNotFound());
  EXPECT_EQ(climb.GetStopReason(), StopReason::kNotANumber);
}

TYPED_TEST(ClimbMethodTest, CoordinateSearchIgnoresAStepThatIsNotANumber) {
  using T = TypeParam;
  T_Climb<T> climb = this->Bowl(-2, -2);
  T_MatVectorCol<T> steps = Vector<T>({std::numeric_limits<T>::quiet_NaN(), T(0.125)});
  climb.SolveByCoord(steps);
  EXPECT_EQ(climb.GetResult()[0], -2);
  EXPECT_NEAR(climb.GetResult()[1], 2, 0.1);
}

}  // namespace
