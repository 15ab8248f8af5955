// T_Climb: objectives and derivatives written in the script language, errors in them, trace.

#include "climb_support.h"
#include "problems/more_garbow_hillstrom.h"

namespace {

template <class T>
using Access = tarn::ClimbTestAccess<T>;
using tarn::StopReason;

template <class T>
class ClimbScriptTest : public ClimbTest {
 protected:
  /// A minimiser of a script function of two variables on [-3, 5]^2 from (-1, 2).
  T_Climb<T> Make(const std::string& objective, T accuracy = sizeof(T) == 4 ? T(1e-4) : T(1e-8)) {
    Variable function = this->Script(objective);
    T bounds[4] = {-3, 5, -3, 5};
    T start[2] = {-1, 2};
    return T_Climb<T>(function, 2, bounds, start, accuracy);
  }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(ClimbScriptTest, Elements);

TYPED_TEST(ClimbScriptTest, ScriptObjectiveFollowsTheSameSteps) {
  using T = TypeParam;
  T_Climb<T> climb = this->Make(R"(function(x)
    points = points or {}
    points[#points + 1] = {x[1], x[2]}
    return (x[1] - 1)*(x[1] - 1) + 2*(x[2] + x[1])*(x[2] + x[1])
  end)");
  // The script computes in double precision; the value is rounded on its way back.
  reference::Climb<T> expected(
      [](const reference::Point<T>& x) {
        const double a = static_cast<double>(x[0]);
        const double b = static_cast<double>(x[1]);
        return static_cast<T>((a - 1) * (a - 1) + 2 * (b + a) * (b + a));
      },
      {-3, 5, -3, 5}, {-1, 2});
  expected.accuracy = sizeof(T) == 4 ? T(1e-4) : T(1e-8);
  climb.Solve(40);
  expected.Solve(40);
  ASSERT_FALSE(this->host.HasError()) << this->host.TakeError().ToString();
  ASSERT_EQ(this->Number("#points"), static_cast<double>(expected.evaluated.size()));
  for (std::size_t k = 0; k < expected.evaluated.size(); ++k) {
    for (int i = 0; i < 2; ++i) {
      const std::string element =
          "points[" + std::to_string(k + 1) + "][" + std::to_string(i + 1) + "]";
      ASSERT_EQ(Bits(static_cast<T>(this->Number(element))), Bits(expected.evaluated[k][i])) << k;
    }
  }
}

TYPED_TEST(ClimbScriptTest, ObjectiveGetsAnMVectorAndTheExtraParameterByReference) {
  using T = TypeParam;
  T_Climb<T> climb = this->Make(R"(function(x, extra)
    described = tostring(x)
    dimension = #x
    return (x[1] - 1)^2 + x[2]^2, extra + 1
  end)");
  Variable extra(std::int32_t{10});
  climb.SetExtraParam(extra);
  T_MatVectorCol<T> x = Vector<T>({3, 1});
  EXPECT_EQ(climb.Func(x), 5);
  EXPECT_EQ(climb.GetExtraParam().GetInt32Numb(), 11);
  EXPECT_EQ(extra.GetInt32Numb(), 10);
  EXPECT_EQ(this->Number("dimension"), 2);
  EXPECT_EQ(this->Number("string.find(described, 'MVector') and 1 or 0"), 1);
  climb.SolveBFGS();
  EXPECT_EQ(climb.GetExtraParam().GetInt32Numb(), 11 + climb.GetEvaluationCount());
}

TYPED_TEST(ClimbScriptTest, WithoutProcessorEverythingIsZero) {
  using T = TypeParam;
  T_Climb<T> climb = this->Make("function(x) return x[1]*x[1] + 1 end");
  Variable derivative = this->Script("function() return 7 end");
  T_MatVectorCol<T> x = Vector<T>({3, 1});
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.5)});
  T_MatVectorCol<T> gradient = Vector<T>({9, 9});
  climb.SetSilent(0);
  this->host.HideOwner(true);
  EXPECT_EQ(climb.Func(x), 0);
  climb.SetDerivFunc(derivative);
  EXPECT_EQ(Access<T>::CalculateDerivative(climb, derivative, x, 0), 0);
  EXPECT_EQ(Access<T>::CalculateDerivative2(climb, derivative, x, 0, 0), 0);
  climb.GetGradient(gradient, s);
  EXPECT_EQ(Values(gradient), (std::vector<T>{0, 0}));
  climb.Solve();
  climb.SolveBFGS();
  this->host.HideOwner(false);
  EXPECT_EQ(this->output, "");
  EXPECT_FALSE(this->host.HasError());
}

TYPED_TEST(ClimbScriptTest, FirstDerivativeScriptGetsPointIndexAndExtraParameter) {
  using T = TypeParam;
  T_Climb<T> climb = this->Make("function(x) return 0 end");
  Variable derivative = this->Script(R"(function(...)
    count = select('#', ...)
    local x, i, extra = ...
    return 100*i + x[1] + extra, extra + 1
  end)");
  climb.SetDerivFunc(derivative);
  Variable extra(std::int32_t{5});
  climb.SetExtraParam(extra);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.5)});  // the point (1, 1); ranges of 8
  EXPECT_EQ(climb.GetDerivative(s, 1), 106 * 8);
  EXPECT_EQ(this->Number("count"), 3);
  EXPECT_EQ(climb.GetExtraParam().GetInt32Numb(), 6);
  T_MatVectorCol<T> gradient;
  climb.GetGradient(gradient, s);  // twice for each component; the second time counts
  EXPECT_EQ(Values(gradient), (std::vector<T>{9 * 8, 110 * 8}));
  EXPECT_EQ(climb.GetExtraParam().GetInt32Numb(), 10);
}

TYPED_TEST(ClimbScriptTest, SecondDerivativeScriptGetsThreeArgumentsOnly) {
  using T = TypeParam;
  T_Climb<T> climb = this->Make("function(x) return 0 end");
  Variable derivative = this->Script(R"(function(...)
    count = select('#', ...)
    local x, i, j = ...
    return 10*i + j + x[2]
  end)");
  climb.SetDeriv2Func(derivative);
  Variable extra(std::int32_t{5});
  climb.SetExtraParam(extra);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.5)});
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 1, 0), 11 * 64);
  EXPECT_EQ(this->Number("count"), 3);
}

TYPED_TEST(ClimbScriptTest, SolvesWithScriptDerivatives) {
  using T = TypeParam;
  T_Climb<T> climb = this->Make("function(x) return (x[1] - 1)^2 + 3*(x[2] - 2)^2 end");
  Variable derivative = this->Script(
      "function(x, i) if i == 0 then return 2*(x[1] - 1) else return 6*(x[2] - 2) end end");
  climb.SetDerivFunc(derivative);
  climb.SolveBFGS();
  EXPECT_NEAR(climb.GetResult()[0], 1, 1e-2);
  EXPECT_NEAR(climb.GetResult()[1], 2, 1e-2);
  EXPECT_FALSE(this->host.HasError());
}

TYPED_TEST(ClimbScriptTest, ErrorInTheObjectiveShortensALineSearchOnly) {
  using T = TypeParam;
  // A value below 0 everywhere, because a failed call counts as 0.
  T_Climb<T> climb = this->Make(R"(function(x)
    calls = (calls or 0) + 1
    if calls % 25 == 0 then error('not today') end
    return (x[1] - 1)^2 + (x[2] - 2)^2 - 1000
  end)");
  climb.SolvePowell();
  EXPECT_NEAR(climb.GetResult()[0], 1, 0.1);
  EXPECT_NEAR(climb.GetResult()[1], 2, 0.1);
  EXPECT_GT(this->host.RaisedErrorCount(), 0);
}

TYPED_TEST(ClimbScriptTest, ErrorInALineSearchIsClearedAndTheBestPointTaken) {
  using T = TypeParam;
  T_Climb<T> climb = this->Make(R"(function(x)
    calls = (calls or 0) + 1
    if calls == 5 then error('not today') end
    return (x[1] - 1)^2 - 1000
  end)");
  T_MatVectorCol<T> along = Vector<T>({1, 0});
  Access<T>::Best(climb) = Vector<T>({T(0.25), T(0.5)});
  const T f = climb.FindMiniumByDirection(T(-996), along, 0);
  EXPECT_LT(f, -996);
  EXPECT_FALSE(this->host.HasError());
  EXPECT_EQ(climb.GetLineSearchStopReason(), StopReason::kObjectiveError);
  EXPECT_NE(Access<T>::Best(climb)[0], T(0.25));
}

TYPED_TEST(ClimbScriptTest, ObjectiveThatAlwaysFailsIsReported) {
  using T = TypeParam;
  for (const auto& solve : std::vector<std::function<void(T_Climb<T>&)>>{
           [](auto& c) { c.Solve(); }, [](auto& c) { c.SolvePowell(); },
           [](auto& c) { c.SolveBFGS(); }, [](auto& c) { c.SolveDFP(); }}) {
    T_Climb<T> climb = this->Make("function(x) error('never') end");
    solve(climb);
    EXPECT_EQ(climb.GetStopReason(), StopReason::kObjectiveError);
    EXPECT_LT(climb.GetEvaluationCount(), 100);
    this->host.TakeError();
  }
}

TYPED_TEST(ClimbScriptTest, NativeObjectiveMayRaiseErrorsToo) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return (x[0] - 1) * (x[0] - 1) - 1000; },
                                  {-3, 5}, {4}, T(1e-3));
  RecordedObjective<T>::onCall = [](std::size_t call) {
    if (call == 6) TarnError(3, "sixth call");
  };
  climb.Solve();
  EXPECT_NEAR(climb.GetResult()[0], 1, 0.1);
}

TYPED_TEST(ClimbScriptTest, TraceShowsTheScaledPointAndTheResidue) {
  using T = TypeParam;
  T_Climb<T> climb = this->Make("function(x) return 0 end");
  Access<T>::Best(climb) = Vector<T>({T(0.125), T(0.5)});
  Access<T>::TraceResult(climb, T(2.5));
  EXPECT_EQ(this->output, "");
  climb.SetSilent(0);
  Access<T>::TraceResult(climb, T(2.5));
  EXPECT_EQ(this->output, "0.125 0.5 \r\nResidue = 2.5\r\n");
}

}  // namespace
