// GoldSection and GoldSection_f: order of evaluation, measure of the interval, ends.

#include "one_dimensional_support.h"

namespace {

template <class T>
struct Recorder {
  std::function<T(T)> f;
  std::vector<T> calls;

  static T Call(T x, void* extra) {
    auto* self = static_cast<Recorder*>(extra);
    self->calls.push_back(x);
    return self->f(x);
  }
};

double RunFree(double* boundaries, Recorder<double>& recorder, double accuracy) {
  return GoldSection(boundaries, &Recorder<double>::Call, &recorder, accuracy);
}
float RunFree(float* boundaries, Recorder<float>& recorder, float accuracy) {
  return GoldSection_f(boundaries, &Recorder<float>::Call, &recorder, accuracy);
}

template <class T>
struct FreeCase {
  const char* name;
  std::function<T(T)> f;
  T a;
  T b;
};

template <class T>
std::vector<FreeCase<T>> Cases() {
  return {
      {"parabola", [](T x) { return (x - T(0.3)) * (x - T(0.3)); }, 0, 1},
      {"far from zero", [](T x) { return std::fabs(x - T(1000.25)); }, 1000, 1001},
      {"below zero", [](T x) { return std::fabs(x + T(20.5)); }, -22, -20},
      {"rising", [](T x) { return std::exp(x); }, -1, 2},
      {"falling", [](T x) { return -x; }, -1, 2},
      {"cosine", [](T x) { return std::cos(x); }, 0, 6},
      {"two minima", [](T x) { return std::cos(3 * x); }, T(-1.2), T(1.3)},
      {"hump", [](T x) { return -(x - T(0.4)) * (x - T(0.4)); }, 0, 1},
      {"constant", [](T) { return T(2.5); }, 0, 1},
      {"steps down", [](T x) { return std::floor(4 * x) / 4; }, 0, T(1.1)},
      {"steps up", [](T x) { return -std::floor(4 * x) / 4; }, 0, T(1.1)},
      {"plateau", [](T x) { return std::max(std::fabs(x - T(0.4)), T(0.2)); }, 0, 1},
      {"reversed interval", [](T x) { return (x - 1) * (x - 1); }, 3, -1},
  };
}

template <class T>
class FreeGoldenTest : public testing::Test {};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(FreeGoldenTest, Elements);

TYPED_TEST(FreeGoldenTest, EvaluatesWhereTheProcedureDoes) {
  using T = TypeParam;
  const T g = std::is_same_v<T, float> ? T(0.381966F) : T(0.381966011250105);
  for (const FreeCase<T>& test : Cases<T>()) {
    for (const T accuracy : {T(1e-1), T(1e-4), T(3)}) {
      reference::Log<T> log;
      const T expected = reference::GoldenFree<T>(test.f, test.a, test.b, accuracy, g, log);
      Recorder<T> recorder{test.f, {}};
      T boundaries[2] = {test.a, test.b};
      EXPECT_EQ(Bits(RunFree(boundaries, recorder, accuracy)), Bits(expected)) << test.name;
      ExpectSameBits(recorder.calls, log.evaluated, test.name);
      EXPECT_EQ(boundaries[0], test.a);
      EXPECT_EQ(boundaries[1], test.b);
    }
  }
}

TYPED_TEST(FreeGoldenTest, NarrowIntervalFarFromZeroEndsAtOnce) {
  using T = TypeParam;
  Recorder<T> recorder{[](T x) { return x; }, {}};
  T boundaries[2] = {1000, 1001};
  // 1/1000.5 of the distance from zero is less than the accuracy.
  EXPECT_EQ(RunFree(boundaries, recorder, T(1e-3)), T(1000));
  EXPECT_EQ(recorder.calls.size(), 3U);
}

TYPED_TEST(FreeGoldenTest, AccuracyZeroEnds) {
  using T = TypeParam;
  for (const FreeCase<T>& test : Cases<T>()) {
    Recorder<T> recorder{test.f, {}};
    T boundaries[2] = {test.a, test.b};
    RunFree(boundaries, recorder, T(0));
    EXPECT_LT(recorder.calls.size(), 5000U) << test.name;
  }
}

TYPED_TEST(FreeGoldenTest, ValuesAndEndsThatAreNotNumbersEndTheSearch) {
  using T = TypeParam;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const T infinity = std::numeric_limits<T>::infinity();
  Recorder<T> recorder{[nan](T) { return nan; }, {}};
  T boundaries[2] = {0, 1};
  const T answer = RunFree(boundaries, recorder, T(1e-3));
  EXPECT_GT(answer, T(0.38));
  EXPECT_LT(answer, T(0.39));
  EXPECT_EQ(recorder.calls.size(), 4U);
  for (const auto& [a, b] : {std::pair<T, T>{nan, 1}, {0, nan}, {-infinity, infinity}, {0, 0}}) {
    Recorder<T> identity{[](T x) { return x; }, {}};
    T ends[2] = {a, b};
    RunFree(ends, identity, T(1e-3));
    EXPECT_LE(identity.calls.size(), 4U) << a << ' ' << b;
  }
}

}  // namespace
