#ifndef TARN_OPTIM_CLIMB_H
#define TARN_OPTIM_CLIMB_H

/// @file
/// Minimiser of a function of N variables inside a box: `T_Climb`.

#include <cstdint>

#include "frame/export.h"
#include "frame/host.h"
#include "linalg/matrix.h"
#include "linalg/vector.h"
#include "optim/point_pool.h"
#include "optim/stop_reason.h"

namespace tarn {

template <class T>
class LineSearch;
template <class T>
class QuasiNewtonRun;
template <class T>
class CoordinateSearch;
/// The one door for tests to what is private in `T_Climb`; only tests define it.
template <class T>
struct ClimbTestAccess;

/// Passes after which a line search ends at the latest. The searches end by themselves long before:
/// they never look twice at a distance, and each pass at least halves a gap every other time.
inline constexpr std::int64_t kLineSearchPassLimit = 10000;

/// What a minimiser reports about its last solve.
struct SolveRecord {
  StopReason reason = StopReason::kNotRun;
  StopReason lineSearchReason = StopReason::kNotRun;
  std::int64_t evaluations = 0;
  std::int64_t iterations = 0;
  std::int64_t lineSearchPasses = 0;
  bool outOfMemory = false;
};

}  // namespace tarn

/// Minimises a function of N variables inside a box [lo_i, hi_i].
///
/// **Functions.** The objective is a script function `f(x, extra)` or a native one,
/// `T f(T_MatVector<T>& x, Variable* extra)`, stored with `Variable::SetCppPointer`; x is in real
/// coordinates, `extra` the object's copy of the extra parameter, by reference. A script function
/// gets x as an object "MVector". Optional derivative functions follow the same pattern, see
/// `SetDerivFunc` and `SetDeriv2Func`. Without a processor a script function counts as 0.
///
/// **Scaled coordinates.** All work is done on s_i = (x_i - lo_i)/(hi_i - lo_i), so that the box is
/// the unit cube; `accuracy` and steps are in these units unless a member says otherwise. A
/// variable whose range is empty (or not finite) is fixed: it stays at lo_i, its scaled value and
/// all its derivatives are 0. From a start inside the box no scaled point outside of the unit cube
/// is evaluated but for rounding errors, and so no x beyond a bound by more than those of
/// s_i (hi_i - lo_i) + lo_i, as long as no minimum step is wider than its range.
///
/// **Methods.** `Solve` (quasi-Newton runs and passes along a set of directions in turn) is the one
/// to start with; `SolveBFGS` and `SolveDFP` (variable metric, for smooth functions), `SolvePowell`
/// (directions only, no derivatives) and `SolveByCoord` (one sweep along the axes) are its parts
/// and alternatives. Each starts from the start point; `GetResult` gives the best point afterwards,
/// whatever ended the solve, `GetStopReason` says what did.
///
/// **Errors.** The host error `ERR_SOLUTION_NOT_FOUND` is raised when a limit of iterations is
/// exhausted (see `SetErrorIfMaxItterNumberExceed`) or a quasi-Newton solve ends above its start.
///
/// Sources: Fletcher, Practical Methods of Optimization (1987), chapter 3 (updates of the inverse
/// Hessian); Powell, Computer Journal 7 (1964) 155 (directions); Press et al., Numerical Recipes,
/// section 10.5 (when a direction is worth replacing).
template <class T>
class TARN_API T_Climb : public TarnAss {
 public:
  /// Default step of finite differences and of first directions, in scaled units; one for all
  /// objects of the instantiation. The first constructor that finds it 0 sets it to 5e-6 (`double`)
  /// or 0.001 (`float`); a program may change it at any time.
  static T aMinStep;

  // Life ----------------------------------------------------------------------------------------

  /// `function` is copied, as are the 2n bounds lo_0, hi_0, lo_1, hi_1, ... and the n start values.
  /// A start outside the box is moved onto its face. n below 0 counts as 0: x then has no elements.
  /// An object that is refused its storage, here or in a copy, has dimension 0 as well; its solves
  /// end at once, call nothing and report `kMemoryExhausted`.
  T_Climb(Variable& function, int n, T* boundaries, T* start, T accuracy);
  T_Climb(const T_Climb& other);             ///< A deep copy.
  T_Climb& operator=(const T_Climb& other);  ///< A deep copy.
  ~T_Climb() override;

  // Settings ------------------------------------------------------------------------------------

  /// A new start in real coordinates. It is not moved into the box. Vectors of another dimension
  /// than N are ignored here and in the next two.
  void SetStartPoint(T_MatVectorCol<T>& start);
  /// Difference steps and smallest steps of the coordinate search per variable, in real units; 0:
  /// the default.
  void SetMinStep(T_MatVectorCol<T>& step);
  /// Largest steps of the coordinate search per variable, in real units; 0: no limit.
  void SetMaxStep(T_MatVectorCol<T>& step);
  /// Limit of outer iterations of `Solve`, `SolvePowell` and `SolveByCoord`; 3000 at first.
  void SetMaxItterationNumber(int limit);
  /// 0 (at first): forward differences; anything else: central differences.
  void SetSymmetricDerivative(int symmetric);
  int GetSymmetricDerivative() const;  ///< What `SetSymmetricDerivative` set.
  /// 0: every accepted point is traced to the host's text output; anything else (at first):
  /// silence.
  void SetSilent(int silent);
  /// Non-zero (at first): an exhausted iteration limit raises `ERR_SOLUTION_NOT_FOUND`.
  void SetErrorIfMaxItterNumberExceed(int raise);
  /// Non-zero: the fitted step of a line search is limited to ten times the distance of the points
  /// it was fitted to. 0 at first.
  void SetLimitDirectionStep(int limit);
  /// Kept and copied with the object; no method consults it. 0.1 at first.
  void SetMaxRealtiveStepNorm(T norm);

  /// The extra argument of all user functions; `extra` is copied.
  void SetExtraParam(Variable& extra);
  /// That argument as the user functions left it.
  Variable& GetExtraParam();
  /// First derivatives in real coordinates: a script function `df(x, i, extra)` or a native one,
  /// `T df(T_MatVector<T>& x, int i, Variable* extra)`. An empty value brings differences back.
  void SetDerivFunc(Variable& function);
  /// Second derivatives in real coordinates: a script function `ddf(x, i, j)`, which does not get
  /// the extra parameter, or a native one, `T ddf(T_MatVector<T>& x, int i, int j, Variable*
  /// extra)`.
  void SetDeriv2Func(Variable& function);
  /// Kept and copied with the object; never called.
  void SetGradFunc(Variable& function);
  /// The progress window: a script object with methods "SetProgress", "SetCaption" and
  /// "CheckCancel". The object refers to `window`, which the caller keeps alive. "CheckCancel" is
  /// to raise the error "Progress window got cancel" when the user cancels.
  void SetProgressWnd(Variable& window);

  // Solving -------------------------------------------------------------------------------------

  /// Quasi-Newton runs (DFP, at most `innerIter` iterations each) and passes along the directions
  /// in turn, after one coarse pass along the axes. The limit of iterations counts the turns.
  void Solve(int innerIter);
  void Solve();  ///< `Solve(max(10*N, 1000))`
  /// Passes along a set of directions that adapts itself (Powell's method); no derivatives.
  void SolvePowell();
  /// `n` = 0: one pass from the start along the axes; anything else: `SolvePowell()`.
  void SolvePowell(int n);
  /// One pass from the start along the caller's N directions, one of which may be replaced.
  void SolvePowell(T_MatVectorCol<T>* directions);
  /// One sweep along the axes with doubling and halving steps; `steps` are the first ones per
  /// variable, in scaled units. Further sweeps follow only while a sweep raises the value.
  void SolveByCoord(T_MatVectorCol<T>& steps);
  /// Variable-metric minimisation with the update of Broyden, Fletcher, Goldfarb and Shanno.
  void SolveBFGS(int maxIter);
  void SolveBFGS();  ///< `SolveBFGS(max(10*N, 1000))`
  /// Variable-metric minimisation with the update of Davidon, Fletcher and Powell.
  void SolveDFP(int maxIter);
  void SolveDFP();  ///< `SolveDFP(max(10*N, 1000))`

  // Results -------------------------------------------------------------------------------------

  int GetDimension() const;  ///< Number of variables.
  /// The best point in real coordinates. This and `ScaleResult` return the object's one buffer,
  /// which the next call of either overwrites.
  T_MatVectorCol<T>& GetResult();
  /// A scaled point in real coordinates: x_i = s_i/invRange_i + lo_i, with invRange_i = 1/(hi_i -
  /// lo_i); lo_i for fixed variables.
  T_MatVectorCol<T>& ScaleResult(T_MatVectorCol<T>& s);
  /// Matrix of second derivatives at x (real coordinates), by central differences or from the
  /// second derivative function; rows and columns of fixed variables are 0. New, deleted by the
  /// caller; null when x is not of dimension N. Asked again for the same point it evaluates
  /// nothing.
  T_Matrix<T>* GetHessian(T_MatVectorCol<T>& x);
  T_Matrix<T>* GetHessian(T* x);  ///< The same for N values at `x`.
  /// Covariance of the variables at x (real coordinates): twice the inverse of the matrix of second
  /// derivatives, which is the covariance for an objective that is a sum of squares of errors in
  /// units of their standard deviation. Negative curvature on the diagonal counts as positive; flat
  /// variables (no curvature) and fixed ones are left out and get the variance 1 in scaled units, a
  /// fixed one 1 as it stands. Raises 10 when the matrix cannot be inverted. Ownership as above.
  ///
  /// At the very point where a quasi-Newton run of more than N iterations ended, it is the inverse
  /// that the run has built up, without the factor 2.
  T_Matrix<T>* GetCovariationMatrix(T_MatVectorCol<T>& x);
  T_Matrix<T>* GetCovariationMatrix(T* x);  ///< The same for N values at `x`.

  /// Why the last solve ended.
  tarn::StopReason GetStopReason() const;
  /// Why the last line search ended, within a solve or by itself.
  tarn::StopReason GetLineSearchStopReason() const;
  /// Evaluations of the objective during the last solve, those for derivatives included.
  std::int64_t GetEvaluationCount() const;
  /// Iterations of the last solve: moves of a quasi-Newton solve, passes of `SolvePowell`, turns of
  /// `Solve`, sweeps of `SolveByCoord`.
  std::int64_t GetItterationCount() const;
  /// Passes through all line searches of the last solve.
  std::int64_t GetLineSearchPassCount() const;

  // Building blocks -----------------------------------------------------------------------------

  /// The objective at x (real coordinates).
  T Func(T_MatVector<T>& x);
  /// Derivative with respect to scaled variable i at the scaled point s. Forward differences leave
  /// s_i at the far point. 0 for an i that is no variable.
  T GetDerivative(T_MatVectorCol<T>& s, int i);
  /// Gradient with respect to the scaled variables at the scaled point s. Components that point out
  /// of the box are 0 within `accuracy` of its faces. Forward differences expect s to be the best
  /// point of the object, as all methods have it; of any other vector they leave the elements at
  /// their far points and measure each step from the best point.
  void GetGradient(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s);
  /// Range of t for which s + t*d stays in the unit cube, no wider than its diagonal; 0, 0 when d
  /// moves no free variable, or s or d is not of dimension N.
  void GetOrtBoundaries(T_MatVector<T>& s, T_MatVector<T>& d, T& tmin, T& tmax);
  /// Minimises along d from the best point, whose value is f0; moves the best point there and
  /// returns its value. The first step has the length of d when `useLength` is non-zero, else it is
  /// a twentieth of the range. At most 10,000 passes. Cancelled, it returns 0 and moves nothing.
  T FindMiniumByDirection(T f0, T_MatVectorCol<T>& d, int useLength);
  /// Quasi-Newton run from the best point, whose value is f0; returns the value reached, never one
  /// above f0.
  T MakeItterationBFGS(T f0, int maxIter);
  T MakeItterationDFP(T f0, int maxIter);  ///< The same with the other update.
  /// `type` 0: `MakeItterationBFGS`, 1: `MakeItterationDFP`.
  T MakeQuasiNewtonItteration(int type, T f0, int maxIter);

 private:
  friend class tarn::LineSearch<T>;
  friend class tarn::QuasiNewtonRun<T>;
  friend class tarn::CoordinateSearch<T>;
  friend struct tarn::ClimbTestAccess<T>;

  // Names that begin with an underscore and a capital are reserved to compilers; these are fixed.
  // NOLINTBEGIN(bugprone-reserved-identifier)

  // Set-up (climb_setup_impl.h)
  void Build(const T* boundaries, const T* start);
  bool AllocateDirections();
  bool HasStorage() const;
  void BecomeEmpty();
  void CopySettings(const T_Climb& other);
  void CopyState(const T_Climb& other);
  void FindRanges();
  bool IsFixed(int i) const { return invRange_[i] == 0; }
  T ScaledStart(int i) const;
  T LowerBound(int i) const { return boundaries_[2 * i]; }

  // Evaluation (climb_evaluate_impl.h)
  bool RecordMemory(bool granted);
  bool ReservePool(int count);
  bool ToScaled(T_MatVectorCol<T>& s, const T* x) const;
  T FuncAtScaled(T_MatVectorCol<T>& s);
  void _DoParallelCalculation(T* values, T_MatVectorCol<T>* points, int count);
  T CalculateDerivative(Variable& derivFunc, T_MatVector<T>& x, int i);
  T CalculateDerivative2(Variable& deriv2Func, T_MatVector<T>& x, int i, int j);
  void CalculateGradient(T_MatVectorCol<T>& grad, Variable& derivFunc, T_MatVector<T>& x);
  bool CalculateAllDerivatives(T_MatVectorCol<T>& grad, Variable& derivFunc, T_MatVector<T>& x);
  void TraceResult(T residue);

  // First derivatives (climb_derivatives_impl.h)
  T DifferenceStep(int i) const;
  T _GetDerivative_Parallel(T_MatVectorCol<T>& s, int i);
  T _GetDerivative_Parallel_Forward(T_MatVectorCol<T>& s, int i);
  T _GetDerivative_Parallel_Symmetric(const T_MatVectorCol<T>& s, int i);
  void AnalyticGradient(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s);
  void _GetGradient_Parallel(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s);
  void _GetGradient_ParallelForward(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s);
  T StepForward(T_MatVectorCol<T>& s, T_MatVectorCol<T>& point, int i);
  void _GetGradient_ParallelSymmetric(T_MatVectorCol<T>& grad, T_MatVectorCol<T>& s);
  void CancelOutwardComponents(T_MatVectorCol<T>& grad, const T_MatVectorCol<T>& s) const;
  bool CheckDeltaSize(const T_MatVectorCol<T>& d) const;
  bool CheckStepSize(const T_MatVectorCol<T>* dirs) const;
  void InitStep();

  // Progress window and ends (climb_progress_impl.h)
  bool HasProgressWnd();
  void SetProgress(Processor& processor, int value);
  void SetCaption(Processor& processor, T residue);
  void CheckCancel(Processor& processor);
  bool StartProgress(int value);
  void ReportProgress(Processor& processor, int pass, T residue);
  bool PassCancelled(int pass, T residue);
  void EndProgress(Processor& processor, T residue);
  void BeginRecord();
  void BeginSolve();
  void ClearCaches();
  void EndSolve(tarn::StopReason reason, T value);

  // Methods (climb_quasi_newton_impl.h, climb_powell_impl.h, climb_coord_impl.h)
  int DefaultIterations() const;
  void SolveQuasiNewton(int type, int maxIter);
  T StartFromScaledStart();
  T MakeItterationPowell(T f0, T_MatVectorCol<T>* dirs, int& replaced);
  T Extrapolate(T f0, T f, T maxDrop, T_MatVectorCol<T>& before, T_MatVectorCol<T>* dirs,
                int& replaced);
  T CoarsePowellPass(T f);
  template <class Pass>
  void RunPasses(T f, Pass pass);
  void EndPasses(int passes, T f);
  T MakeIterationsByCoord(T f0, T step, int i);

  // Second derivatives (climb_hessian_impl.h)
  bool IsCacheValid(const T_Matrix<T>& cache, const T_MatVectorCol<T>& s) const;
  T GetDerivative2(T_MatVectorCol<T>& s, int i, int j);
  T _GetDerivative2_Parallel(T_MatVectorCol<T>& s, int i, int j);
  int _GetDerivative2_Params(T_MatVectorCol<T>& s, int i, int j, T_MatVectorCol<T>* points, T& di,
                             T& dj);
  int GetDerivative2_ParamsDiagonal(T_MatVectorCol<T>& s, int i, T_MatVectorCol<T>* points, T& hm,
                                    T& hp);
  int _GetDerivative2_ParamsForward(T_MatVectorCol<T>& s, int i, int j, T_MatVectorCol<T>* points,
                                    T& di, T& dj);
  int _GetDerivative2_ParamsSymmetric(T_MatVectorCol<T>& s, int i, int j, T_MatVectorCol<T>* points,
                                      T& di, T& dj);
  void _GetHessian_Parallel(T_MatVectorCol<T>& s);
  void FillHessianFromFunction(T_MatVectorCol<T>& s);
  T_Matrix<T>* _GetHessian(T_MatVectorCol<T>& s);
  T_Matrix<T>* _GetCovariationMatrix(T_MatVectorCol<T>& s);
  bool FillCovariance(T_MatVectorCol<T>& s);
  // NOLINTEND(bugprone-reserved-identifier)

  T accuracy_;
  int maxItterationNumber_;
  int dimension_;
  int symmetricDerivative_;
  Variable extraParam_;
  int silent_;
  Variable progressWnd_;
  Variable function_;
  Variable derivFunc_;
  Variable deriv2Func_;
  Variable gradFunc_;
  T_MatVectorCol<T> boundaries_;
  T_MatVectorCol<T> startPoint_;
  T_MatVectorCol<T> scaledStart_;
  T_MatVectorCol<T> bestPoint_;
  T_MatVectorCol<T> resultBuffer_;
  T_MatVectorCol<T> invRange_;  ///< 1/(hi_i - lo_i), 0 for fixed variables
  int minStepSet_;
  T_MatVectorCol<T> minStep_;
  int maxStepSet_;
  T_MatVectorCol<T> maxStep_;
  T_MatVectorCol<T>* directions_;
  int errorIfMaxItterNumberExceed_;
  int limitDirectionStep_;
  T_Matrix<T> inverseHessian_;
  T_Matrix<T> covarianceCache_;
  T_Matrix<T> hessianCache_;
  T_MatVectorCol<T> cachedPoint_;  ///< scaled point for which the two caches hold
  T maxRealtiveStepNorm_;
  int covarianceFlag_;  ///< non-zero: the covariance is twice the inverse Hessian

  tarn::SolveRecord record_;
  tarn::PointPool<T> pool_;           ///< points and values of one batch, kept between batches
  T_MatVectorCol<T> evaluatedPoint_;  ///< the copy of a point that an objective may write to
  std::int64_t lineSearchPassLimit_;
  bool storageRefused_;  ///< this is what `BecomeEmpty` left

  /// Steps of all line searches since the last one began; one counter for all objects.
  static int lineSearchStep_;
};

extern template class T_Climb<float>;
extern template class T_Climb<double>;

#endif
