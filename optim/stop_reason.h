#ifndef TARN_OPTIM_STOP_REASON_H
#define TARN_OPTIM_STOP_REASON_H

/// @file
/// Why a search ended. Every search object keeps the reason of its last run.

namespace tarn {

/// Why the last run of a search ended. docs/why-did-it-stop.md says what to do about each.
enum class StopReason : int {
  kNotRun,             ///< nothing was run yet
  kConvergedStep,      ///< the step or the interval became smaller than the accuracy asked for
  kConvergedGradient,  ///< every free component of the gradient is smaller than the accuracy
  kConvergedValue,     ///< the value changes by less than the accuracy, or a zero was hit exactly
  kIterationLimit,     ///< the limit of iterations was reached
  kNoImprovement,      ///< no direction tried led to a smaller value
  kCancelled,          ///< the user cancelled from the progress window or stopped the script
  kObjectiveError,     ///< the objective raised an error
  kNotANumber,         ///< the objective or a quantity computed from it is not a number
  kNothingToShrink,    ///< nothing left to search: no two different numbers to choose between
  kLineSearchLimit,    ///< a line search reached its limit of passes
  kNoSignChange,       ///< bisection: the values at the ends have the same sign
  kMemoryExhausted     ///< work space could not be had
};

/// One line that explains `reason`; never null.
inline const char* GetStopReasonText(StopReason reason) {
  switch (reason) {
    case StopReason::kNotRun:
      return "not run yet";
    case StopReason::kConvergedStep:
      return "converged: the step is smaller than the accuracy";
    case StopReason::kConvergedGradient:
      return "converged: the gradient is smaller than the accuracy";
    case StopReason::kConvergedValue:
      return "converged: the value changes by less than the accuracy";
    case StopReason::kIterationLimit:
      return "the iteration limit was reached";
    case StopReason::kNoImprovement:
      return "no direction tried led to a smaller value";
    case StopReason::kCancelled:
      return "cancelled by the user";
    case StopReason::kObjectiveError:
      return "the objective raised an error";
    case StopReason::kNotANumber:
      return "the objective is not a number";
    case StopReason::kNothingToShrink:
      return "nothing left to shrink: there are no further numbers to try";
    case StopReason::kLineSearchLimit:
      return "a line search reached its limit of passes";
    case StopReason::kNoSignChange:
      return "the values at the ends of the interval have the same sign";
    case StopReason::kMemoryExhausted:
      return "work space could not be had";
  }
  return "unknown";
}

}  // namespace tarn

#endif
