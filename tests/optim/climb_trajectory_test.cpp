// Every point that a solve evaluates, held bit for bit against the second transcription.

#include "climb_support.h"
#include "problems/bounded.h"
#include "problems/more_garbow_hillstrom.h"

namespace {

/// How a solve is set up and run on both sides.
template <class T>
struct Method {
  const char* name;
  std::function<void(T_Climb<T>&)> run;
  std::function<void(reference::Climb<T>&)> runReference;
};

template <class T>
std::vector<Method<T>> Methods() {
  using Climb = T_Climb<T>;
  using Reference = reference::Climb<T>;
  return {
      {"BFGS", [](Climb& c) { c.SolveBFGS(60); },
       [](Reference& r) { r.SolveQuasiNewton(true, 60); }},
      {"DFP", [](Climb& c) { c.SolveDFP(60); },
       [](Reference& r) { r.SolveQuasiNewton(false, 60); }},
      {"Powell", [](Climb& c) { c.SolvePowell(); }, [](Reference& r) { r.SolvePowell(); }},
      {"one pass", [](Climb& c) { c.SolvePowell(0); }, [](Reference& r) { r.SolvePowellOnce(); }},
      {"Solve", [](Climb& c) { c.Solve(40); }, [](Reference& r) { r.Solve(40); }},
      {"coordinates",
       [](Climb& c) {
         const std::vector<T> steps(static_cast<std::size_t>(c.GetDimension()), T(0.1));
         T_MatVectorCol<T> vector = Vector(steps);
         c.SolveByCoord(vector);
       },
       [](Reference& r) { r.SolveByCoord(reference::Point<T>(r.best.Count(), T(0.1))); }},
  };
}

template <class T>
struct Setting {
  const char* name;
  bool central;
  bool limitStep;
  bool steps;
};

const Setting<double> kSettings[] = {
    {"forward", false, false, false},
    {"central", true, false, false},
    {"limited step", false, true, false},
    {"own steps", false, false, true},
};

template <class T>
reference::Point<T> Indexed(const std::vector<T>& values) {
  return reference::Point<T>(values.begin(), values.end());
}

/// Steps of a caller's: smallest a thousandth of the range, largest a fifth; none for variable 1.
template <class T>
std::vector<T> Steps(const problems::Problem<T>& problem, double fraction) {
  std::vector<T> steps;
  for (int i = 0; i < problem.Dimension(); ++i) {
    const T range = problem.bounds[static_cast<std::size_t>(2 * i + 1)] -
                    problem.bounds[static_cast<std::size_t>(2 * i)];
    steps.push_back(i == 1 ? T(0) : static_cast<T>(fraction) * range);
  }
  return steps;
}

template <class T>
reference::Point<T> Scaled(const problems::Problem<T>& problem, const std::vector<T>& steps) {
  reference::Point<T> scaled = Indexed(steps);
  for (int i = 0; i < problem.Dimension(); ++i) {
    const auto k = static_cast<std::size_t>(2 * i);
    const T lo = problem.bounds[k];
    const T hi = problem.bounds[k + 1];
    scaled[i] = lo == hi ? T(0) : scaled[i] * (1 / (hi - lo));
  }
  return scaled;
}

/// The trace of a run as text.
template <class T>
std::string TraceText(const reference::Climb<T>& run) {
  std::string text;
  char number[64];
  for (const auto& [best, value] : run.traced) {
    for (const T s : best) {
      std::snprintf(number, sizeof number, "%g ", static_cast<double>(s));
      text += number;
    }
    std::snprintf(number, sizeof number, "\r\nResidue = %g\r\n", static_cast<double>(value));
    text += number;
  }
  return text;
}

template <class T>
class ClimbTrajectoryTest : public ClimbTest {
 protected:
  void Compare(const problems::Problem<T>& problem, const Method<T>& method,
               const Setting<double>& setting, T accuracy) {
    const std::string what = problem.name + ", " + method.name + ", " + setting.name;
    reference::Climb<T> expected(
        [&problem](const reference::Point<T>& x) { return problem.f(x.data()); },
        Indexed(problem.bounds), Indexed(problem.start));
    expected.accuracy = accuracy;
    expected.maxPasses = 12;
    expected.central = setting.central;
    expected.limitStep = setting.limitStep;
    T_Climb<T> climb = MakeClimb(problem, accuracy);
    climb.SetMaxItterationNumber(12);
    climb.SetSymmetricDerivative(setting.central ? 1 : 0);
    climb.SetLimitDirectionStep(setting.limitStep ? 1 : 0);
    if (setting.steps) {
      const std::vector<T> least = Steps(problem, 0.001);
      const std::vector<T> most = Steps(problem, 0.2);
      T_MatVectorCol<T> leastVector = Vector(least);
      T_MatVectorCol<T> mostVector = Vector(most);
      climb.SetMinStep(leastVector);
      climb.SetMaxStep(mostVector);
      expected.minStep = Scaled(problem, least);
      expected.maxStep = Scaled(problem, most);
    }
    climb.SetSilent(0);
    this->output.clear();
    method.runReference(expected);
    method.run(climb);
    ExpectSamePoints<T>(RecordedObjective<T>::calls, expected.evaluated, what);
    const Point<T> best = Values(tarn::ClimbTestAccess<T>::Best(climb));
    for (int i = 0; i < problem.Dimension(); ++i) {
      ASSERT_EQ(Bits(best[static_cast<std::size_t>(i)]), Bits(expected.best[i])) << what;
    }
    EXPECT_EQ(climb.GetEvaluationCount(), static_cast<std::int64_t>(expected.evaluated.size()));
    EXPECT_EQ(this->output, TraceText(expected)) << what;
    EXPECT_EQ(climb.GetLineSearchPassCount(), expected.passes) << what;
    EXPECT_EQ(this->host.HasError(), expected.limitReached) << what;
    evaluations_ += RecordedObjective<T>::calls.size();
    restarts_ += expected.restarts;
    endsWithoutRestart_ += expected.endsWithoutRestart;
    this->host.TakeError();
  }

  void CompareAll(const std::vector<problems::Problem<T>>& list) {
    const T accuracy = sizeof(T) == 4 ? T(1e-4) : T(1e-7);
    for (const auto& problem : list) {
      for (const auto& method : Methods<T>()) {
        for (const auto& setting : kSettings) Compare(problem, method, setting, accuracy);
      }
    }
    this->RecordProperty("evaluations", std::to_string(evaluations_));
  }

  std::size_t evaluations_ = 0;
  int restarts_ = 0;
  int endsWithoutRestart_ = 0;
};

using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(ClimbTrajectoryTest, Elements);

TYPED_TEST(ClimbTrajectoryTest, StandardCollection) {
  this->CompareAll(problems::MoreGarbowHillstrom<TypeParam>::All());
  // A direction that fails is replaced by the gradient, but not after it failed twice in a row.
  EXPECT_GT(this->restarts_, 0);
  EXPECT_GT(this->endsWithoutRestart_, 0);
}

TYPED_TEST(ClimbTrajectoryTest, BoundedProblems) {
  this->CompareAll(problems::Bounded<TypeParam>());
}

template <class T>
T SlopeOfBowl(T_MatVector<T>& x, int i, Variable* /*extra*/) {
  return i == 0 ? 2 * (x[0] - T(0.3)) : i == 1 ? 8 * (x[1] + 1) : T(0);
}

TYPED_TEST(ClimbTrajectoryTest, DerivativeFunction) {
  using T = TypeParam;
  const auto bowl = [](const T* x) {
    return (x[0] - T(0.3)) * (x[0] - T(0.3)) + 4 * (x[1] + 1) * (x[1] + 1);
  };
  for (const T lower : {T(-3), T(-1), T(0.5)}) {
    const problems::Problem<T> problem{
        "bowl", {T(0.9), 2, 7}, {T(-2), T(1), lower, T(3), 7, 7}, 0, 0, bowl};
    for (const bool bfgs : {false, true}) {
      reference::Climb<T> expected(
          [&problem](const reference::Point<T>& x) { return problem.f(x.data()); },
          Indexed(problem.bounds), Indexed(problem.start));
      expected.accuracy = T(1e-4);
      expected.derivative = [](const reference::Point<T>& x, int i) {
        T_MatVectorCol<T> vector(x.data(), x.Count());
        return SlopeOfBowl<T>(vector, i, nullptr);
      };
      T_Climb<T> climb = MakeClimb(problem, T(1e-4));
      Variable derivative;
      derivative.SetCppPointer(reinterpret_cast<void*>(&SlopeOfBowl<T>));
      climb.SetDerivFunc(derivative);
      expected.SolveQuasiNewton(bfgs, 50);
      bfgs ? climb.SolveBFGS(50) : climb.SolveDFP(50);
      ExpectSamePoints<T>(RecordedObjective<T>::calls, expected.evaluated, "bowl");
      EXPECT_NEAR(climb.GetResult()[1], std::max(lower, T(-1)), 1e-2);
    }
  }
}

TYPED_TEST(ClimbTrajectoryTest, CurvatureThatUnderflowsEndsAQuasiNewtonRun) {
  using T = TypeParam;
  // A plane with a slight twist: the gradient has a length and dx.dg is a number, but the square of
  // the change of the gradient is not.
  const T tiny = sizeof(T) == 4 ? T(1e-21F) : static_cast<T>(1e-160);
  const problems::Problem<T> problem{
      "tiny plane", {T(0.9), 2}, {T(-2), T(1), T(-3), T(3)}, 0, 0, [tiny](const T* x) {
        return tiny * (x[0] + 2 * x[1] + x[0] * x[1] * T(1e-3));
      }};
  for (int method = 0; method < 2; ++method) {
    this->Compare(problem, Methods<T>()[static_cast<std::size_t>(method)], kSettings[0], T(0));
  }
  EXPECT_EQ(this->restarts_, 0);
}

TYPED_TEST(ClimbTrajectoryTest, CoarseAndZeroAccuracy) {
  for (const auto& problem : problems::Bounded<TypeParam>()) {
    for (const auto& method : Methods<TypeParam>()) {
      this->Compare(problem, method, kSettings[0], TypeParam(0.05));
      this->Compare(problem, method, kSettings[0], TypeParam(0));
    }
  }
}

}  // namespace
