// T_Climb: every solve ends, whatever the objective, the box and the accuracy are, and says why.

#include "climb_support.h"

namespace {

template <class T>
using Access = tarn::ClimbTestAccess<T>;
using tarn::StopReason;

template <class T>
struct Nasty {
  const char* name;
  std::function<T(const T*)> f;
};

/// A number in [0, 1) that depends on every bit of x.
template <class T>
double Hash(const T* x) {
  std::uint64_t h = 1469598103934665603U;
  for (int i = 0; i < 2; ++i) {
    h ^= static_cast<std::uint64_t>(Bits(x[i]));
    h *= 1099511628211U;
    h ^= h >> 29;
  }
  return static_cast<double>(h >> 11) / 9007199254740992.0;
}

template <class T>
std::vector<Nasty<T>> NastyObjectives() {
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const T infinity = std::numeric_limits<T>::infinity();
  const T huge = std::numeric_limits<T>::max();
  return {
      {"constant", [](const T*) { return T(3); }},
      {"zero", [](const T*) { return T(0); }},
      {"never a number", [nan](const T*) { return nan; }},
      {"infinite", [infinity](const T*) { return infinity; }},
      {"minus infinite", [infinity](const T*) { return -infinity; }},
      {"often no number", [nan](const T* x) { return Hash(x) < 0.4 ? nan : x[0] * x[0] + x[1]; }},
      {"no number on one side", [nan](const T* x) { return x[0] > T(0.2) ? nan : x[0] * x[0]; }},
      {"no number at the start", [nan](const T* x) { return x[0] == T(0.3) ? nan : x[0] * x[0]; }},
      {"often infinite", [infinity](const T* x) { return Hash(x) < 0.4 ? infinity : x[0] * x[0]; }},
      {"falls to minus infinity", [](const T* x) { return std::log(std::fabs(x[0] - T(0.1))); }},
      {"noise", [](const T* x) { return static_cast<T>(Hash(x)); }},
      {"noise on a bowl", [](const T* x) { return x[0] * x[0] + static_cast<T>(1e-3 * Hash(x)); }},
      {"largest numbers", [huge](const T* x) { return x[0] > 0 ? huge : -huge; }},
      {"steps", [](const T* x) { return std::floor(10 * x[0]) + std::floor(10 * x[1]); }},
      {"flat with a needle", [](const T* x) { return x[0] == T(0.25) ? T(-1) : T(0); }},
      {"tiny", [](const T* x) { return x[0] * std::numeric_limits<T>::denorm_min(); }},
  };
}

template <class T>
struct Boxed {
  const char* name;
  std::vector<T> bounds;
};

template <class T>
std::vector<Boxed<T>> Boxes() {
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const T infinity = std::numeric_limits<T>::infinity();
  const T huge = std::numeric_limits<T>::max();
  return {
      {"usual", {-1, 1, -1, 2}},
      {"reversed", {1, -1, 2, -1}},
      {"no width", {T(0.3), T(0.3), 1, 1}},
      {"one width", {-1, 1, 1, 1}},
      {"infinite", {-infinity, infinity, 0, infinity}},
      {"too wide", {-huge, huge, -1, 1}},
      {"not a number", {nan, 1, 0, nan}},
      {"narrow", {T(0.3), std::nextafter(T(0.3), T(1)), 0, 1}},
  };
}

template <class T>
std::vector<std::pair<const char*, std::function<void(T_Climb<T>&)>>> Solves() {
  return {
      {"Solve", [](T_Climb<T>& c) { c.Solve(30); }},
      {"SolvePowell", [](T_Climb<T>& c) { c.SolvePowell(); }},
      {"SolveBFGS", [](T_Climb<T>& c) { c.SolveBFGS(100); }},
      {"SolveDFP", [](T_Climb<T>& c) { c.SolveDFP(100); }},
      {"SolveByCoord",
       [](T_Climb<T>& c) {
         T_MatVectorCol<T> steps(c.GetDimension());
         steps += T(0.1);
         c.SolveByCoord(steps);
       }},
      {"covariance",
       [](T_Climb<T>& c) {
         T_MatVectorCol<T> x(c.GetResult());
         delete c.GetCovariationMatrix(x);
       }},
  };
}

template <class T>
class ClimbEndTest : public ClimbTest {
 protected:
  static constexpr std::int64_t kEvaluationLimit = 2'000'000;

  void RunAll(const Nasty<T>& objective, const Boxed<T>& box, T accuracy, int passes) {
    for (const auto& [name, solve] : Solves<T>()) {
      std::int64_t evaluations = 0;
      static std::function<T(const T*)> f;
      static std::int64_t* count = nullptr;
      f = objective.f;
      count = &evaluations;
      Variable function;
      function.SetCppPointer(reinterpret_cast<void*>(+[](T_MatVector<T>& x, Variable*) {
        ++*count;
        return f(x);
      }));
      std::vector<T> bounds = box.bounds;
      T start[2] = {T(0.3), 1};
      T_Climb<T> climb(function, 2, bounds.data(), start, accuracy);
      climb.SetMaxItterationNumber(passes);
      solve(climb);
      host.TakeError();
      EXPECT_LT(evaluations, kEvaluationLimit)
          << objective.name << ", " << box.name << ", " << accuracy << ", " << name;
      if (std::string(name) != "covariance") {
        EXPECT_NE(climb.GetStopReason(), StopReason::kNotRun);
      }
    }
  }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(ClimbEndTest, Elements);

TYPED_TEST(ClimbEndTest, NastyObjectivesEnd) {
  using T = TypeParam;
  for (const auto& objective : NastyObjectives<T>()) {
    for (const T accuracy :
         {T(1e-3), T(0), T(-1), std::numeric_limits<T>::min(), std::numeric_limits<T>::quiet_NaN(),
          std::numeric_limits<T>::infinity()}) {
      this->RunAll(objective, Boxes<T>()[0], accuracy, 4);
    }
  }
}

TYPED_TEST(ClimbEndTest, NastyBoxesEnd) {
  using T = TypeParam;
  for (const auto& objective : NastyObjectives<T>()) {
    for (const auto& box : Boxes<T>()) {
      for (const T accuracy : {T(1e-4), T(0)}) this->RunAll(objective, box, accuracy, 4);
    }
  }
}

TYPED_TEST(ClimbEndTest, NastyObjectivesEndUnderTheDefaultLimit) {
  using T = TypeParam;
  for (const auto& objective : NastyObjectives<T>()) {
    this->RunAll(objective, Boxes<T>()[0], T(1e-4), 3000);
  }
}

TYPED_TEST(ClimbEndTest, ReasonsAreTold) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const auto bowl = [](const T* x) { return (x[0] - T(0.25)) * (x[0] - T(0.25)); };
  T_Climb<T> converged = MakeClimb<T>(bowl, {-1, 1}, {T(0.9)}, T(1e-3));
  converged.SolvePowell();
  EXPECT_EQ(converged.GetStopReason(), StopReason::kConvergedValue);
  T_Climb<T> atMinimum = MakeClimb<T>(bowl, {-1, 1}, {T(0.25)}, T(0.1));
  atMinimum.SolveBFGS();
  EXPECT_EQ(atMinimum.GetStopReason(), StopReason::kConvergedGradient);
  T_Climb<T> noNumber = MakeClimb<T>([nan](const T*) { return nan; }, {-1, 1}, {T(0.9)}, T(1e-3));
  noNumber.SetMaxItterationNumber(3);
  noNumber.SolveBFGS();
  EXPECT_EQ(noNumber.GetStopReason(), StopReason::kNotANumber);
  noNumber.Solve();
  EXPECT_EQ(noNumber.GetStopReason(), StopReason::kNotANumber);
  this->host.TakeError();
  T_Climb<T> limited = MakeClimb<T>(bowl, {-1, 1}, {T(0.9)}, T(0));
  limited.SetMaxItterationNumber(2);
  limited.SolvePowell();
  EXPECT_EQ(limited.GetStopReason(), StopReason::kIterationLimit);
  this->host.TakeError();
}

TYPED_TEST(ClimbEndTest, ConstantObjectiveStaysAtItsStart) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T*) { return T(3); }, {-1, 1, -1, 1}, {T(0.5), T(-0.25)}, T(1e-3));
  climb.Solve();
  EXPECT_EQ(Values(climb.GetResult()), (std::vector<T>{T(0.5), T(-0.25)}));
  EXPECT_EQ(climb.GetStopReason(), StopReason::kConvergedValue);
}

TYPED_TEST(ClimbEndTest, ObjectiveThatFallsForEverEnds) {
  using T = TypeParam;
  double next = 0;
  T_Climb<T> climb = MakeClimb<T>([&next](const T*) { return static_cast<T>(next -= 1); },
                                  {-1, 1, -1, 1}, {T(0.5), T(-0.25)}, T(1e-3));
  climb.SetMaxItterationNumber(3);
  climb.Solve(20);
  this->host.TakeError();
  EXPECT_LT(climb.GetEvaluationCount(), 3'000'000);
  for (const T step : {T(0.1), T(-0.1), T(0)}) {
    const std::vector<T> steps = {step, step};
    T_MatVectorCol<T> vector = Vector(steps);
    climb.SolveByCoord(vector);
    EXPECT_LT(climb.GetEvaluationCount(), 100) << step;
  }
}

}  // namespace
