#ifndef TARN_OPTIM_BISECTION_H
#define TARN_OPTIM_BISECTION_H

/// @file
/// Zero of a function of one variable by bisection.

#include <cstdint>

#include "frame/export.h"
#include "frame/host.h"
#include "optim/stop_reason.h"

/// Finds a zero of a function on a closed interval [a, b] by halving a bracketing interval.
///
/// The function is a script function `f(x, extra)` or a native one, `double f(double x, void*
/// extra)`, stored with `Variable::SetCppPointer`. It may be discontinuous: the search then closes
/// in on a change of sign. The interval need not be ordered.
///
/// The search ends
///  - where a value is exactly 0;
///  - when |b - a| has shrunk to `accuracy` times its first width. The accuracy is relative to the
///    width, not to the zero, and there is no limit on iterations;
///  - when no number is left between the ends: the midpoint is the answer.
/// A value that is not a number counts as one on the other side of the zero than that of b.
///
/// Ends of the same sign are no error: the end whose value is nearer to zero is the answer (b when
/// both are positive and equal, a when both are negative and equal) and `GetStopReason()` says so.
///
/// Nothing is raised here. Errors of a script function stay pending with the host; without a
/// processor a script function counts as 0 everywhere.
class TARN_API BiSection_Double : public TarnAss {
 public:
  /// `function` is copied, as are the ends `boundaries[0]` and `boundaries[1]`.
  BiSection_Double(Variable& function, double* boundaries, double accuracy);
  BiSection_Double(const BiSection_Double& other);                 ///< Copies every field.
  BiSection_Double(BiSection_Double&& other) noexcept;             ///< Copies every field.
  BiSection_Double& operator=(const BiSection_Double& other);      ///< Copies every field.
  BiSection_Double& operator=(BiSection_Double&& other) noexcept;  ///< Copies every field.
  ~BiSection_Double() override;

  /// Runs the search: b is evaluated first, then a, then midpoints. Returns the answer.
  double Solve();

  /// The two ends inside the object; a caller may move the interval between solves.
  double* GetBoundaries();
  /// The function's second argument: a copy of `extra`, passed by reference (a script function may
  /// change it for its next call), or its address for a native function.
  void SetExtraParam(Variable& extra);
  /// The second argument of a native function: this very pointer.
  void SetExtraParam(double* extra);
  /// 0: every evaluation is traced to the host's text output; anything else: silence.
  void SetSilent(int silent);

  /// Why the last solve ended.
  tarn::StopReason GetStopReason() const;
  /// Number of evaluations of the last solve.
  std::int64_t GetEvaluationCount() const;
  /// Number of halvings of the last solve.
  std::int64_t GetItterationCount() const;

 private:
  double Func(double x);
  void TraceResult(double x, double f) const;
  double Search();
  double Halve(double a, double b, double fb);
  double NearerEnd(double fa, double fb) const;
  double End(tarn::StopReason reason, double answer);

  double accuracy_;
  int maxIterations_;  ///< kept with the object; the search has no limit
  int status_;         ///< 0 after a search; 1 when the ends did not bracket a zero
  Variable extraParam_;
  double* extraParamPtr_;
  int extraMode_;  ///< 0: a native function gets the address of extraParam_; 1: extraParamPtr_
  int silent_;
  Variable function_;
  double boundaries_[2];
  double result_;
  tarn::StopReason stopReason_;
  std::int64_t evaluationCount_;
  std::int64_t iterationCount_;
};

#endif
