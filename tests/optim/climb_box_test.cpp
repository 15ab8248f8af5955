// T_Climb: from a start inside the box no method evaluates a point outside of it.

#include <random>

#include "climb_support.h"
#include "problems/bounded.h"
#include "problems/more_garbow_hillstrom.h"

namespace {

template <class T>
void ExpectInside(const problems::Problem<T>& problem) {
  for (const auto& call : RecordedObjective<T>::calls) {
    for (std::size_t i = 0; i < call.size(); ++i) {
      ASSERT_TRUE(problem.Contains(i, call[i]))
          << problem.name << ": " << call[i] << " is not in [" << problem.bounds[2 * i] << ", "
          << problem.bounds[2 * i + 1] << "]";
    }
  }
}

/// Runs every method and looks at every evaluation.
template <class T>
void RunAll(const problems::Problem<T>& problem, T accuracy) {
  const std::vector<std::function<void(T_Climb<T>&)>> methods = {
      [](T_Climb<T>& c) { c.Solve(20); },
      [](T_Climb<T>& c) { c.SolvePowell(); },
      [](T_Climb<T>& c) { c.SolvePowell(0); },
      [](T_Climb<T>& c) { c.SolveBFGS(30); },
      [](T_Climb<T>& c) { c.SolveDFP(30); },
      [](T_Climb<T>& c) {
        T_MatVectorCol<T> steps(c.GetDimension());
        steps += T(0.3);
        c.SolveByCoord(steps);
      },
      [](T_Climb<T>& c) {
        T_MatVectorCol<T> x(c.GetResult());
        delete c.GetHessian(x);
        delete c.GetCovariationMatrix(x);
      },
  };
  for (const int symmetric : {0, 1}) {
    for (const int limitStep : {0, 1}) {
      T_Climb<T> climb = MakeClimb(problem, accuracy);
      climb.SetMaxItterationNumber(5);
      climb.SetErrorIfMaxItterNumberExceed(0);
      climb.SetSymmetricDerivative(symmetric);
      climb.SetLimitDirectionStep(limitStep);
      for (const auto& method : methods) {
        RecordedObjective<T>::calls.clear();
        method(climb);
        ExpectInside(problem);
      }
    }
  }
}

template <class T>
class ClimbBoxTest : public ClimbTest {};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(ClimbBoxTest, Elements);

TYPED_TEST(ClimbBoxTest, CollectionStaysInside) {
  using T = TypeParam;
  for (const auto& problem : problems::MoreGarbowHillstrom<T>::All()) RunAll(problem, T(1e-4));
  for (const auto& problem : problems::Bounded<T>()) RunAll(problem, T(1e-4));
}

TYPED_TEST(ClimbBoxTest, RandomBoxesStayInside) {
  using T = TypeParam;
  std::mt19937 random(7);
  std::uniform_real_distribution<double> uniform(0, 1);
  for (int round = 0; round < 150; ++round) {
    problems::Problem<T> problem;
    const int n = 1 + round % 4;
    std::vector<T> target;
    for (int i = 0; i < n; ++i) {
      const double scale = std::pow(10.0, 12 * uniform(random) - 6);
      const T lo = static_cast<T>(scale * (uniform(random) - 0.5));
      const T hi = lo + static_cast<T>(scale * uniform(random));
      problem.bounds.insert(problem.bounds.end(), {lo, hi});
      // Starts inside, on faces and in corners; minima mostly outside.
      const double place = round % 3 == 0 ? uniform(random) : std::round(uniform(random));
      problem.start.push_back(
          std::clamp(lo + static_cast<T>(place) * (hi - lo), lo, std::max(lo, hi)));
      target.push_back(lo + static_cast<T>(4 * uniform(random) - 2) * (hi - lo));
    }
    problem.name = "round " + std::to_string(round);
    problem.f = [target, bounds = problem.bounds](const T* x) {
      T sum = 0;
      T coupling = 0;
      for (std::size_t i = 0; i < target.size(); ++i) {
        const T range = bounds[2 * i + 1] - bounds[2 * i];
        const T u = range > 0 ? (x[i] - target[i]) / range : T(0);
        sum += u * u;
        coupling += u;
      }
      return sum + coupling * coupling / 2;
    };
    RunAll(problem, T(1e-5));
  }
}

TYPED_TEST(ClimbBoxTest, ScaledCornersAreTheBoundsButForRounding) {
  using T = TypeParam;
  std::mt19937 random(11);
  std::uniform_real_distribution<double> uniform(-1, 1);
  for (int round = 0; round < 2000; ++round) {
    const T lo = static_cast<T>(std::pow(10.0, 6 * uniform(random)) * uniform(random));
    const T hi = lo + static_cast<T>(std::pow(10.0, 6 * uniform(random)));
    T_Climb<T> climb = MakeClimb<T>([](const T*) { return T(0); }, {lo, hi}, {lo}, T(1e-3));
    T_MatVectorCol<T> s = Vector<T>({0});
    EXPECT_EQ(climb.ScaleResult(s)[0], lo);
    s[0] = 1;
    EXPECT_EQ(Bits(climb.ScaleResult(s)[0]), Bits(1 / (1 / (hi - lo)) + lo));
  }
}

TYPED_TEST(ClimbBoxTest, StartOutsideIsNotPulledIn) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return x[0] * x[0]; }, {-1, 1}, {0}, T(1e-3));
  T_MatVectorCol<T> start = Vector<T>({2});
  climb.SetStartPoint(start);
  climb.SolvePowell();
  EXPECT_EQ(RecordedObjective<T>::calls[0][0], 2);
  EXPECT_NEAR(climb.GetResult()[0], 0, 0.2);
}

}  // namespace
