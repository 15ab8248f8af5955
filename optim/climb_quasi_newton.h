#ifndef TARN_OPTIM_CLIMB_QUASI_NEWTON_H
#define TARN_OPTIM_CLIMB_QUASI_NEWTON_H

/// @file
/// One quasi-Newton run of `T_Climb`: its state and its steps.
///
/// The run builds up an approximation H of the inverse Hessian from successive gradients and moves
/// along -H*g (Fletcher, Practical Methods of Optimization, 1987, chapter 3; Press et al.,
/// Numerical Recipes, section 10.7). Departures: the line search of `T_Climb` replaces an inexact
/// one, and the additional vector of the BFGS update is formed with H*dx of the H already updated,
/// where the textbook has H*dg of the H before.

#include <cstdint>

#include "linalg/matrix.h"
#include "linalg/vector.h"
#include "optim/climb.h"

namespace tarn {

template <class T>
class QuasiNewtonRun {
 public:
  /// `bfgs`: with the additional term of BFGS; otherwise plain DFP. `f0`: value at the best point.
  QuasiNewtonRun(T_Climb<T>& climb, bool bfgs, T f0);

  /// Runs at most `maxIter` iterations from the best point; returns the value reached.
  T Minimise(int maxIter);

 private:
  bool HasStorage() const;
  bool FirstMove();
  bool FirstMoveSuffices();
  bool Iterate(int maxIter);
  bool ProgressCancels();
  bool MeasureCurvature();
  void UpdateInverseHessian();
  void AddBfgsTerm();
  bool SetDirection();
  bool Move(T& fn);
  bool Restart(T& fn);
  bool HasConverged(T fn);
  void StoreCovariance();
  T EarlyEnd();
  void End(StopReason reason) { reason_ = reason; }

  T_Climb<T>& climb_;
  T_Matrix<T>& h_;  ///< approximation of the inverse Hessian
  bool bfgs_;
  T f0_;
  T f_;

  T_MatVectorCol<T> saved_;     ///< best point before the run
  T_MatVectorCol<T> previous_;  ///< best point before the last move
  T_MatVectorCol<T> newStart_;  ///< best point before the move under way
  T_MatVectorCol<T> g_;
  T_MatVectorCol<T> gPrevious_;
  T_MatVectorCol<T> dx_;
  T_MatVectorCol<T> dg_;
  T_MatVectorCol<T> hdg_;
  T_MatVectorCol<T> d_;
  T_MatVectorCol<T> u_;
  T a_ = 0;  ///< dx.dg
  T b_ = 0;  ///< dg.H.dg

  int iterations_ = 0;
  int progressCounter_ = 0;
  bool lastOk_ = false;
  StopReason reason_ = StopReason::kNotRun;
};

}  // namespace tarn

#endif
