// Searches, minimiser and fit when memory runs out, request by request: nothing crashes or leaks,
// no function is called with less than its variables, and the object works again afterwards.

#include <memory>

#include "climb_support.h"
#include "linalg/refuse_each_request.h"

namespace {

using tarn::StopReason;

constexpr int kVariables = 3;

/// A curved valley in three variables. Refused memory must not show as a shorter point.
template <class T>
T Valley(T_MatVector<T>& x, Variable* /*extra*/) {
  EXPECT_EQ(x.Dim(), kVariables);
  if (x.Dim() != kVariables) return T(0);
  for (int i = 0; i < kVariables; ++i) EXPECT_LE(std::fabs(x[i]), T(2));
  const T bend = x[1] - x[0] * x[0];
  return 10 * bend * bend + (x[0] - 1) * (x[0] - 1) + (x[2] + x[0]) * (x[2] + x[0]);
}

template <class T>
T Slope(T_MatVector<T>& x, int i, Variable* /*extra*/) {
  EXPECT_EQ(x.Dim(), kVariables);
  if (x.Dim() != kVariables) return T(0);
  const T bend = x[1] - x[0] * x[0];
  if (i == 0) return -40 * bend * x[0] + 2 * (x[0] - 1) + 2 * (x[2] + x[0]);
  return i == 1 ? 20 * bend : 2 * (x[2] + x[0]);
}

template <class T>
T Curvature(T_MatVector<T>& x, int i, int j, Variable* /*extra*/) {
  EXPECT_EQ(x.Dim(), kVariables);
  if (x.Dim() != kVariables) return T(0);
  if (i == 0 && j == 0) return 120 * x[0] * x[0] - 40 * x[1] + 4;
  if (i == 0 && j == 1) return -40 * x[0];
  if (i == 0 && j == 2) return 2;
  return i != j ? T(0) : i == 1 ? T(20) : T(2);
}

template <class Function>
Variable Native(Function* function) {
  Variable value;
  value.SetCppPointer(reinterpret_cast<void*>(function));
  return value;
}

template <class T>
T_Climb<T> MakeValley() {
  Variable function = Native(&Valley<T>);
  T bounds[2 * kVariables] = {-2, 2, -2, 2, -2, 2};
  T start[kVariables] = {T(-1.2), 1, T(0.5)};
  return T_Climb<T>(function, kVariables, bounds, start, T(1e-3));
}

template <class T>
T StartValue() {
  T start[kVariables] = {T(-1.2), 1, T(0.5)};
  T_MatVectorCol<T> x(start, kVariables, 1);
  return Valley<T>(x, nullptr);
}

/// Value of the valley at the best point of a minimiser; of one without variables that at the
/// start.
template <class T>
T BestValue(T_Climb<T>& climb) {
  return climb.GetDimension() == kVariables ? Valley<T>(climb.GetResult(), nullptr)
                                            : StartValue<T>();
}

template <class T>
struct NamedSolve {
  const char* name;
  std::function<void(T_Climb<T>&)> run;
};

template <class T>
std::vector<NamedSolve<T>> Solves() {
  return {{"Solve", [](T_Climb<T>& c) { c.Solve(5); }},
          {"SolvePowell", [](T_Climb<T>& c) { c.SolvePowell(); }},
          {"one pass", [](T_Climb<T>& c) { c.SolvePowell(0); }},
          {"own directions",
           [](T_Climb<T>& c) {
             T_MatVectorCol<T> directions[kVariables];
             T elements[kVariables][kVariables] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
             for (int i = 0; i < kVariables; ++i) directions[i].Set(elements[i], kVariables);
             c.SolvePowell(directions);
           }},
          {"SolveBFGS", [](T_Climb<T>& c) { c.SolveBFGS(5); }},
          {"SolveDFP", [](T_Climb<T>& c) { c.SolveDFP(5); }},
          {"SolveByCoord", [](T_Climb<T>& c) {
             T elements[kVariables] = {T(0.1), T(0.1), T(0.1)};
             T_MatVectorCol<T> steps(elements, kVariables, 1);
             c.SolveByCoord(steps);
           }}};
}

template <class T>
class RefusedMemory : public ClimbTest {
 protected:
  RefusedMemory() {
    host.SetOutput([](std::string_view) {});
  }

  template <class Work>
  void Refuse(Work work) {
    RefuseEachRequest(host, [&](bool refused) {
      work(refused);
      host.TakeError();
    });
  }
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(RefusedMemory, Elements);

TYPED_TEST(RefusedMemory, ConstructionCopyAndAssignment) {
  using T = TypeParam;
  const T_Climb<T> source = MakeValley<T>();
  T_Climb<T> assigned = MakeValley<T>();
  this->Refuse([&](bool refused) {
    T_Climb<T> made = MakeValley<T>();
    T_Climb<T> copy(source);
    assigned = source;
    for (T_Climb<T>* climb : {&made, &copy, &assigned}) {
      climb->SetErrorIfMaxItterNumberExceed(0);
      climb->SolveByCoord(climb->GetResult());
      EXPECT_TRUE(climb->GetDimension() == kVariables || refused);
      climb->SolveBFGS(2);
      EXPECT_TRUE(climb->GetDimension() == kVariables ||
                  climb->GetStopReason() == StopReason::kMemoryExhausted);
      EXPECT_EQ(climb->GetResult().Dim(), climb->GetDimension());
    }
  });
  // An object that was left without variables takes those of another again.
  assigned = source;
  assigned.SolveBFGS(40);
  EXPECT_LT(BestValue(assigned), T(1e-2));
}

TYPED_TEST(RefusedMemory, Settings) {
  using T = TypeParam;
  T_Climb<T> climb = MakeValley<T>();
  T elements[kVariables] = {T(0.25), T(0.5), T(0.75)};
  Variable window;
  this->Refuse([&](bool) {
    T_MatVectorCol<T> vector(elements, kVariables, 1);
    climb.SetStartPoint(vector);
    climb.SetMinStep(vector);
    climb.SetMaxStep(vector);
    Variable extra(VARTYPE_ARRAY, 4);
    climb.SetExtraParam(extra);
    climb.SetProgressWnd(window);
    Variable nothing;
    climb.SetExtraParam(nothing);
    climb.SetDerivFunc(nothing);
    climb.SetDeriv2Func(nothing);
    climb.SetGradFunc(nothing);
  });
  EXPECT_EQ(Values(climb.ScaleResult(tarn::ClimbTestAccess<T>::ScaledStart(climb))),
            (std::vector<T>{T(0.25), T(0.5), T(0.75)}));
}

TYPED_TEST(RefusedMemory, SolvesKeepTheBestPoint) {
  using T = TypeParam;
  for (const int symmetric : {0, 1}) {
    for (const auto& [name, run] : Solves<T>()) {
      T_Climb<T> fresh = MakeValley<T>();
      fresh.SetSymmetricDerivative(symmetric);
      fresh.SetErrorIfMaxItterNumberExceed(0);
      fresh.SetMaxItterationNumber(3);
      const T_Climb<T> source = fresh;
      run(fresh);
      this->Refuse([&, &solve = run](bool) {
        T_Climb<T> climb(source);
        solve(climb);
        EXPECT_NE(climb.GetStopReason(), StopReason::kNotRun);
        EXPECT_LE(BestValue(climb), StartValue<T>()) << name;
      });
      T_Climb<T> climb(source);
      run(climb);
      EXPECT_EQ(Values(climb.GetResult()), Values(fresh.GetResult())) << name;
      EXPECT_EQ(climb.GetStopReason(), fresh.GetStopReason()) << name;
    }
  }
}

TYPED_TEST(RefusedMemory, EverythingRefusedIsReported) {
  using T = TypeParam;
  T_Climb<T> climb = MakeValley<T>();
  climb.SetErrorIfMaxItterNumberExceed(0);
  const NewFailure failure([](std::int64_t) { return true; });
  this->host.SetHeapFailure([](std::int64_t) { return true; });
  for (const auto& [name, run] : Solves<T>()) {
    if (std::string(name) == "own directions" || std::string(name) == "SolveByCoord") continue;
    run(climb);
    EXPECT_EQ(climb.GetStopReason(), StopReason::kMemoryExhausted) << name;
  }
  this->host.SetHeapFailure({});
}

TYPED_TEST(RefusedMemory, SolvesWithDerivativeFunctions) {
  using T = TypeParam;
  T_Climb<T> climb = MakeValley<T>();
  Variable slope = Native(&Slope<T>);
  climb.SetDerivFunc(slope);
  const T_Climb<T> source = climb;
  this->Refuse([&](bool) {
    T_Climb<T> copy(source);
    copy.SolveBFGS(5);
    if (copy.GetDimension() != kVariables) return;
    T_MatVectorCol<T> gradient;
    T elements[kVariables] = {T(0.25), T(0.5), T(0.75)};
    T_MatVectorCol<T> s(elements, kVariables, 1);
    copy.GetGradient(gradient, s);
    copy.GetDerivative(s, 1);
  });
  climb.SolveBFGS(40);
  EXPECT_LT(BestValue(climb), T(1e-2));
}

TYPED_TEST(RefusedMemory, Derivatives) {
  using T = TypeParam;
  for (const int symmetric : {0, 1}) {
    T_Climb<T> climb = MakeValley<T>();
    climb.SetSymmetricDerivative(symmetric);
    this->Refuse([&](bool refused) {
      // A copy has no work space yet: the requests are the same every time.
      T_Climb<T> copy(climb);
      if (copy.GetDimension() != kVariables) return;
      T elements[kVariables] = {T(0.25), T(0.5), T(0.75)};
      T_MatVectorCol<T> s(elements, kVariables, 1);
      const T derivative = copy.GetDerivative(s, 1);
      EXPECT_TRUE(derivative != 0 || refused);
      T_MatVectorCol<T> gradient;
      copy.GetGradient(gradient, s);
      EXPECT_TRUE(gradient.Dim() == kVariables || refused);
    });
  }
}

TYPED_TEST(RefusedMemory, LineSearches) {
  using T = TypeParam;
  T_Climb<T> climb = MakeValley<T>();
  climb.SolvePowell(0);
  const T_Climb<T> source = climb;
  const T f0 = BestValue(climb);
  this->Refuse([&](bool) {
    T_Climb<T> work(source);
    if (work.GetDimension() != kVariables) return;
    T elements[kVariables] = {1, 2, T(-0.5)};
    T_MatVectorCol<T> d(elements, kVariables, 1);
    const T f = work.FindMiniumByDirection(f0, d, 1);
    EXPECT_LE(f, f0);
    EXPECT_EQ(f, BestValue(work));
  });
}

TYPED_TEST(RefusedMemory, HessianAndCovarianceAreWholeOrNull) {
  using T = TypeParam;
  using Result = std::unique_ptr<T_Matrix<T>>;
  Variable curvature = Native(&Curvature<T>);
  for (const bool byFunction : {false, true}) {
    T_Climb<T> climb = MakeValley<T>();
    if (byFunction) climb.SetDeriv2Func(curvature);
    T point[kVariables] = {T(0.25), T(0.5), T(0.75)};
    const T_Climb<T> source = climb;
    const Result hessian(climb.GetHessian(point));
    const Result covariance(climb.GetCovariationMatrix(point));
    const auto expectWhole = [](const Result& actual, const Result& expected, bool refused) {
      EXPECT_TRUE(actual != nullptr || refused);
      for (int k = 0; actual != nullptr && k < kVariables * kVariables; ++k) {
        const int i = k / kVariables;
        const int j = k % kVariables;
        EXPECT_EQ((*actual)(i, j), (*expected)(i, j)) << i << ' ' << j;
      }
    };
    this->Refuse([&](bool refused) {
      T_Climb<T> copy(source);
      if (copy.GetDimension() != kVariables) return;
      T_MatVectorCol<T> x(point, kVariables, 1);
      // The second one of each comes from the cache where the first one could be had.
      for (int round = 0; round < 2; ++round) {
        expectWhole(Result(copy.GetHessian(x)), hessian, refused);
        expectWhole(Result(copy.GetCovariationMatrix(point)), covariance, refused);
      }
    });
  }
}

TYPED_TEST(RefusedMemory, ScriptObjective) {
  using T = TypeParam;
  Variable function = this->Script("function(x) return (x[1] - 0.3)^2 + (x[2] + x[1])^2 end");
  T bounds[4] = {-1, 1, -1, 1};
  T start[2] = {T(0.9), T(0.8)};
  T_Climb<T> climb(function, 2, bounds, start, T(1e-2));
  climb.SetSilent(0);
  // Values of the interpreter are collected by itself, so blocks in use are not compared.
  RunRefused(this->host, [&](bool) {
    climb.SolveBFGS(2);
    EXPECT_NE(climb.GetStopReason(), StopReason::kNotRun);
    this->host.TakeError();
  });
  climb.SolveBFGS(40);
  EXPECT_NEAR(climb.GetResult()[0], 0.3, 0.05);
}

TYPED_TEST(RefusedMemory, OneDimensionalSearches) {
  double (*const shifted)(double, void*) = [](double x, void*) { return x - 0.25; };
  double (*const bowl)(double, void*) = [](double x, void*) { return (x - 0.25) * (x - 0.25); };
  Variable zero = Native(shifted);
  Variable minimum = Native(bowl);
  double boundaries[2] = {0, 1};
  this->Refuse([&](bool) {
    BiSection_Double bisection(zero, boundaries, 1e-3);
    GoldSection_Double golden(minimum, boundaries, 1e-3);
    Variable extra(VARTYPE_ARRAY, 3);
    bisection.SetExtraParam(extra);
    golden.SetExtraParam(extra);
    bisection.SetSilent(0);
    golden.SetSilent(0);
    BiSection_Double bisectionCopy(bisection);
    GoldSection_Double goldenCopy(golden);
    bisectionCopy = bisection;
    goldenCopy = golden;
    EXPECT_NEAR(bisectionCopy.Solve(), 0.25, 1e-3);
    EXPECT_NEAR(goldenCopy.Solve(), 0.25, 1e-3);
  });
}

template <class T>
T One(T, void*) {
  return T(1);
}
template <class T>
T Linear(T x, void*) {
  return x;
}

TYPED_TEST(RefusedMemory, LinearFit) {
  using T = TypeParam;
  constexpr int kPoints = 9;
  T x[kPoints];
  T y[kPoints];
  T var[kPoints];
  for (int i = 0; i < kPoints; ++i) {
    x[i] = T(i) / 8;
    y[i] = 2 - 3 * x[i] + T(i % 3 - 1) / 10;
    var[i] = T(0.01);
  }
  T (*basis[2])(T, void*) = {One<T>, Linear<T>};
  for (const int mode : {0, 1, 2}) {
    T_Line_LSQM2<T> whole(basis, 2, y, x, var, kPoints, T(1e-3));
    whole.SetPrior(mode - 1);
    whole.DoIt(mode);
    T_Line_LSQM2<T> kept = whole;
    this->Refuse([&](bool refused) {
      T_Line_LSQM2<T> fit(basis, 2, y, x, var, kPoints, T(1e-3));
      fit.SetPrior(mode - 1);
      fit.DoIt(mode);
      const int error = this->host.TakeError().number;
      EXPECT_TRUE(error == 0 || (refused && error == 1)) << error;
      EXPECT_TRUE(fit.GetCovariance() != nullptr || error == 1);
      if (mode == 0 && error == 0) {
        EXPECT_EQ(fit.GetA(1), whole.GetA(1));
      }
      kept = fit;
      const T_Line_LSQM2<T> copy(kept);
      EXPECT_TRUE(copy.GetA(1) == kept.GetA(1) || refused);
      kept = whole;
      EXPECT_TRUE(kept.GetA(0) == whole.GetA(0) || refused);
    });
    kept = whole;
    kept.DoIt(mode);
    EXPECT_EQ(kept.GetA(0), whole.GetA(0));
  }
}

/// Orders above 3 take work space for their determinant too.
TYPED_TEST(RefusedMemory, LinearFitOfFourFunctionsIsExactOrFails) {
  using T = TypeParam;
  constexpr int kPoints = 8;
  T x[kPoints];
  T y[kPoints];
  T var[kPoints];
  for (int i = 0; i < kPoints; ++i) {
    x[i] = T(i) / 4;
    y[i] = x[i] * x[i] - T(i % 2);
    var[i] = T(0.01);
  }
  using Basis = T (*)(T, void*);
  Basis basis[4] = {One<T>, Linear<T>, [](T v, void*) { return v * v; },
                    [](T v, void*) { return v * v * v; }};
  T_Line_LSQM2<T> whole(basis, 4, y, x, var, kPoints, T(1e-3));
  whole.DoIt(0);
  this->Refuse([&](bool) {
    T_Line_LSQM2<T> fit(basis, 4, y, x, var, kPoints, T(1e-3));
    fit.DoIt(0);
    if (this->host.TakeError().number != 0) return;
    for (int k = 0; k < 4; ++k) EXPECT_EQ(fit.GetA(k), whole.GetA(k));
  });
}

}  // namespace
