#ifndef TARN_OPTIM_GOLDEN_SECTION_H
#define TARN_OPTIM_GOLDEN_SECTION_H

/// @file
/// Minimum of a function of one variable by golden-section search: a class for callers inside the
/// host and two free functions for compiled callers with a plain callback.

#include <cstdint>

#include "frame/export.h"
#include "frame/host.h"
#include "optim/stop_reason.h"

namespace tarn {
template <class T>
struct GoldenBracket;
}

/// Finds a minimum of a function on a closed interval [a, b] by golden-section search.
///
/// The function is a script function `f(x, extra)` or a native one, `double f(double x, void*
/// extra)`, stored with `Variable::SetCppPointer`; `extra` is the address of the object's copy of
/// the extra parameter.
///
/// The first inner point lies at a + g*(b - a) with g = 0.381966011250105. When its value is above
/// both ends, the interval is taken for one with two minima: each part is searched by itself and
/// the better answer returned, the second on a tie. A run splits at most 10,000 times; beyond that
/// an interval is searched as it stands.
///
/// The search ends when |b - a| has shrunk to `accuracy` times its first width (relative to the
/// width, not to the minimum), when a step moves none of the three points any more, and when the
/// value at the inner or at a new point is not a number. The answer is a when the inner point lies
/// above a, else b when it lies above b, else the inner point.
///
/// Nothing is raised here. Errors of a script function stay pending with the host; without a
/// processor a script function counts as 0 everywhere.
class TARN_API GoldSection_Double : public TarnAss {
 public:
  /// `function` is copied, as are the ends `boundaries[0]` and `boundaries[1]`.
  GoldSection_Double(Variable& function, double* boundaries, double accuracy);
  GoldSection_Double(const GoldSection_Double& other);                 ///< Copies every field.
  GoldSection_Double(GoldSection_Double&& other) noexcept;             ///< Copies every field.
  GoldSection_Double& operator=(const GoldSection_Double& other);      ///< Copies every field.
  GoldSection_Double& operator=(GoldSection_Double&& other) noexcept;  ///< Copies every field.
  ~GoldSection_Double() override;

  /// Runs the search: b is evaluated first, then a, then the inner point. Returns the answer.
  double Solve();

  /// The two ends inside the object; a caller may move the interval between solves. A solve leaves
  /// them as it found them.
  double* GetBoundaries();
  /// The function's second argument: a copy of `extra`, passed by reference (a script function may
  /// change it for its next call), or its address for a native function.
  void SetExtraParam(Variable& extra);
  /// 0: every evaluation is traced to the host's text output; anything else: silence.
  void SetSilent(int silent);

  /// Why the last solve ended; of a split interval, why the search of the chosen part did.
  tarn::StopReason GetStopReason() const;
  /// Number of evaluations of the last solve.
  std::int64_t GetEvaluationCount() const;
  /// Number of steps of the last solve, over all parts of a split interval.
  std::int64_t GetItterationCount() const;

 private:
  double Func(double x);
  void TraceResult(double x, double f) const;
  double SearchInterval();
  double SearchBothParts(double split);
  void Shrink(tarn::GoldenBracket<double>& bracket);

  double accuracy_;
  int maxIterations_;  ///< kept with the object; the search has no limit
  Variable extraParam_;
  int silent_;
  Variable function_;
  double boundaries_[2];
  double result_;  ///< answer of the search that ended last, which a split may not have chosen
  tarn::StopReason stopReason_;
  std::int64_t evaluationCount_;
  std::int64_t iterationCount_;
  int splitsLeft_;
};

/// Abscissa of a minimum of `f` on [boundaries[0], boundaries[1]] by golden-section search.
///
/// `f` is called with `extra` at b, a, a + g*(b - a) and then once per step. The steps are those of
/// `GoldSection_Double`, but an interval is never split and the search runs while
/// |b - a|/d > accuracy with d = max(b - a, (|a| + |b|)/2) of the first interval: a narrow interval
/// far from zero ends sooner. No host is needed; `boundaries` is only read.
TARN_API double GoldSection(double* const boundaries, double (*f)(double, void*), void* extra,
                            double accuracy);
/// The same in single precision, with g = 0.381966.
TARN_API float GoldSection_f(float* const boundaries, float (*f)(float, void*), void* extra,
                             float accuracy);

#endif
