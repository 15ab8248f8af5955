#ifndef TARN_TESTS_OPTIM_CLIMB_SUPPORT_H
#define TARN_TESTS_OPTIM_CLIMB_SUPPORT_H

/// @file
/// What the tests of the minimiser share: native functions that record their calls, a host whose
/// text output is kept, the door to private members.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "climb_reference.h"
#include "host/embedded_host.h"
#include "problems/problem.h"
#include "tarn_base_math.h"

namespace tarn {

/// What tests reach of the private members.
template <class T>
struct ClimbTestAccess {
  using Climb = T_Climb<T>;
  using Vector = T_MatVectorCol<T>;

  static Vector& Best(Climb& c) { return c.bestPoint_; }
  static Vector& ScaledStart(Climb& c) { return c.scaledStart_; }
  static Vector& StartPoint(Climb& c) { return c.startPoint_; }
  static Vector& InvRange(Climb& c) { return c.invRange_; }
  static Vector& MinStep(Climb& c) { return c.minStep_; }
  static Vector& MaxStep(Climb& c) { return c.maxStep_; }
  static Vector* Directions(Climb& c) { return c.directions_; }
  static Vector& CachedPoint(Climb& c) { return c.cachedPoint_; }
  static T_Matrix<T>& InverseHessian(Climb& c) { return c.inverseHessian_; }
  static T_Matrix<T>& CovarianceCache(Climb& c) { return c.covarianceCache_; }
  static T_Matrix<T>& HessianCache(Climb& c) { return c.hessianCache_; }
  static int& CovarianceFlag(Climb& c) { return c.covarianceFlag_; }
  static T MaxRealtiveStepNorm(Climb& c) { return c.maxRealtiveStepNorm_; }
  static Variable& GradFunc(Climb& c) { return c.gradFunc_; }
  static std::int64_t& LineSearchPassLimit(Climb& c) { return c.lineSearchPassLimit_; }
  static int LineSearchStep() { return T_Climb<T>::lineSearchStep_; }

  static void InitStep(Climb& c) { c.InitStep(); }
  static bool CheckDeltaSize(Climb& c, const Vector& d) { return c.CheckDeltaSize(d); }
  static bool CheckStepSize(Climb& c, const Vector* dirs) { return c.CheckStepSize(dirs); }
  static void CalculateGradient(Climb& c, Vector& grad, Variable& f, Vector& x) {
    c.CalculateGradient(grad, f, x);
  }
  static T CalculateDerivative(Climb& c, Variable& f, Vector& x, int i) {
    return c.CalculateDerivative(f, x, i);
  }
  static T CalculateDerivative2(Climb& c, Variable& f, Vector& x, int i, int j) {
    return c.CalculateDerivative2(f, x, i, j);
  }
  static void DoParallelCalculation(Climb& c, T* values, Vector* points, int count) {
    c._DoParallelCalculation(values, points, count);
  }
  static T GetDerivative2(Climb& c, Vector& s, int i, int j) { return c.GetDerivative2(s, i, j); }
  static T MakeItterationPowell(Climb& c, T f0, Vector* dirs, int& replaced) {
    return c.MakeItterationPowell(f0, dirs, replaced);
  }
  static void TraceResult(Climb& c, T residue) { c.TraceResult(residue); }

  /// Addresses of the fields in the order in which they are declared.
  static std::vector<const void*> FieldAddresses(const Climb& c) {
    return {&c.accuracy_,
            &c.maxItterationNumber_,
            &c.dimension_,
            &c.symmetricDerivative_,
            &c.extraParam_,
            &c.silent_,
            &c.progressWnd_,
            &c.function_,
            &c.derivFunc_,
            &c.deriv2Func_,
            &c.gradFunc_,
            &c.boundaries_,
            &c.startPoint_,
            &c.scaledStart_,
            &c.bestPoint_,
            &c.resultBuffer_,
            &c.invRange_,
            &c.minStepSet_,
            &c.minStep_,
            &c.maxStepSet_,
            &c.maxStep_,
            &c.directions_,
            &c.errorIfMaxItterNumberExceed_,
            &c.limitDirectionStep_,
            &c.inverseHessian_,
            &c.covarianceCache_,
            &c.hessianCache_,
            &c.cachedPoint_,
            &c.maxRealtiveStepNorm_,
            &c.covarianceFlag_,
            &c.record_};
  }
};

}  // namespace tarn

inline std::uint64_t Bits(double x) { return std::bit_cast<std::uint64_t>(x); }
inline std::uint32_t Bits(float x) { return std::bit_cast<std::uint32_t>(x); }

template <class T>
using Point = std::vector<T>;

template <class T>
T_MatVectorCol<T> Vector(const std::vector<T>& values) {
  return T_MatVectorCol<T>(values.data(), static_cast<int>(values.size()));
}

template <class T>
std::vector<T> Values(const T_MatVector<T>& vector) {
  const T* data = vector;
  return data == nullptr ? std::vector<T>() : std::vector<T>(data, data + vector.Dim());
}

/// An objective of the kind that the minimiser calls; behaviour and record are process-wide because
/// a plain pointer carries nothing. Every test case runs in a process of its own.
template <class T>
struct RecordedObjective {
  static inline std::function<T(const T*)> f;
  static inline std::vector<Point<T>> calls;
  static inline Variable* lastExtra = nullptr;
  static inline std::function<void(std::size_t)> onCall;  ///< told the number of the call, from 1

  static T Call(T_MatVector<T>& x, Variable* extra) {
    calls.push_back(Values(x));
    lastExtra = extra;
    if (onCall) onCall(calls.size());
    return f(calls.back().data());
  }

  static Variable Make(std::function<T(const T*)> behaviour) {
    f = std::move(behaviour);
    calls.clear();
    onCall = nullptr;
    Variable value;
    value.SetCppPointer(reinterpret_cast<void*>(&Call));
    return value;
  }
};

template <class T>
T_Climb<T> MakeClimb(std::function<T(const T*)> f, std::vector<T> bounds, std::vector<T> start,
                     T accuracy) {
  Variable function = RecordedObjective<T>::Make(std::move(f));
  return T_Climb<T>(function, static_cast<int>(start.size()), bounds.data(), start.data(),
                    accuracy);
}

template <class T>
T_Climb<T> MakeClimb(const problems::Problem<T>& problem, T accuracy) {
  return MakeClimb<T>(problem.f, problem.bounds, problem.start, accuracy);
}

/// Fails unless both lists hold the same points, bit for bit.
template <class T, class List>
void ExpectSamePoints(const std::vector<Point<T>>& actual, const List& expected,
                      const std::string& what) {
  const std::size_t common = std::min(actual.size(), expected.size());
  for (std::size_t k = 0; k < common; ++k) {
    for (std::size_t i = 0; i < actual[k].size(); ++i) {
      const T wanted = expected[k].data()[i];
      ASSERT_EQ(Bits(actual[k][i]), Bits(wanted))
          << what << ": evaluation " << k << ", variable " << i << ": " << actual[k][i]
          << " instead of " << wanted;
    }
  }
  ASSERT_EQ(actual.size(), expected.size()) << what;
}

/// The host, its text output in `output`. The module is loaded, so that its error is registered.
class ClimbTest : public testing::Test {
 protected:
  ClimbTest() {
    T_Climb<float>::aMinStep = 0;  // the next constructor sets the default
    T_Climb<double>::aMinStep = 0;
    EXPECT_TRUE(host.Load(TARN_MODULE_PATH)) << host.TakeError().ToString();
    host.SetOutput([this](std::string_view text) { output += text; });
  }

  Variable Script(const std::string& text) {
    Variable value;
    EXPECT_TRUE(host.Evaluate("return " + text, &value)) << host.TakeError().ToString();
    return value;
  }

  /// The number that a script expression has.
  double Number(const std::string& expression) { return Script(expression).GetDoubleNumb(); }

  EmbeddedHost host;
  std::string output;
};

#endif
