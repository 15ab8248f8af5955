#ifndef TARN_STAT_STAT_WEIGHTED_H
#define TARN_STAT_STAT_WEIGHTED_H

/// @file
/// Statistics of a sample whose values carry weights.

#include "stat/stat.h"

/// A sample whose values also carry a weight each.
///
/// Everything that `Stat` computes is computed unweighted; on top come the weights, normalised to
/// mean 1 (a weight that is not positive first becomes the smallest positive one divided by n),
/// their distribution type and dispersion, their correlation with the values, and a weighted mean
/// with its error. Cumulative distribution, medians and script export are weighted versions, and
/// the probability functions receive the weights. Where the weights cannot be copied, for lack of
/// memory or because the array is null, `Len` is 0, the weighted mean NaN and its error that of the
/// unweighted one.
///
/// The inherited `operator*=` scales what it names and nothing more: weighted mean, its error,
/// correlation, and the weights with their dispersion and type stay as they were.
class TARN_API Stat_Weighted : public Stat {
 public:
  /// `n` values and weights.
  Stat_Weighted(double* x, double* w, int n);
  /// `n` values, dispersions and weights; mean type 0.
  Stat_Weighted(double* x, double* d, double* w, int n);
  /// The same sample, computed anew from the normalised weights.
  Stat_Weighted(Stat_Weighted& other);
  /// Copies every field; each object then owns its own arrays. `Len` is 0 when values or weights
  /// cannot be copied.
  Stat_Weighted& operator=(const Stat_Weighted& other);
  ~Stat_Weighted() override;

  /// Always false: a subset would lose the weights.
  bool isTooLong() override;

  /// | n | median | sd |
  /// |---|---|---|
  /// | 0 | untouched | untouched |
  /// | 1 | the value | 0 |
  /// | 2 to 4 | weighted mean | sqrt(WeightedSEM2 pi/2) |
  /// | 5 and more | location of the cumulative fit | its second entry times sqrt(pi/2) |
  ///
  /// A fitted location outside the data is replaced by the result of `GetMedian_MAD`. Without a
  /// fit, for lack of memory, both stay untouched. A fit cut short (see
  /// `FitCumulativeDistribution`) counts as one.
  void GetMedian_SD(double& median, double& sd) override;

  /// Weighted median and weighted median of the absolute deviations, read off the cumulative
  /// distributions at 1/2. One value: (value, 0); two: (weighted mean, their distance). Without
  /// memory for the distribution both stay untouched, without memory for the deviations or their
  /// distribution the mad does.
  void GetMedian_MAD(double& median, double& mad) override;

  /// As in `Stat`, with the running sum of the weights for the number of values.
  void GetCumulativeDistr(double*& x, double*& p, int& n) override;

  /// The normalised weights themselves.
  double* GetWeights() override;
  /// Does nothing: the weights stay with the object.
  void FreeWeights(double* weights) override;

  /// The members that `Stat` writes, then "WeightsDistrType", "DispOfWeights", "WeightsCorr",
  /// "WeightedMean", "WeightedSEM2" and "Weights" (an array).
  void UpdateTarnObject(Variable& obj) override;

  /// sum((w - 1)^2)/(n - 1), not divided for n < 2.
  double GetDispOfWeights() const { return DispOfWeights; }
  double GetWeightedMean() const { return WeightedMean; }  ///< sum(x w)/n
  double GetWeightedSEM2() const { return WeightedSEM2; }  ///< Squared error of that mean.
  double GetWeightsCorr() const { return WeightsCorr; }    ///< Correlation of values and weights.
  int GetWeightsDistrType() const { return WeightsDistrType; }  ///< A `DISTR_TYPE`.

  /// Correlation coefficient of values and weights, sum(u v)/sqrt(sum(u^2) sum(v^2)), over all
  /// samples from the last to the first: u = x - mean, or ln x - ln mean when `logValues` is 1;
  /// v = w - 1, or ln w when `logWeights` is 1. The bare sum(u v) when one of the sums of squares
  /// is not positive. Error 88 and 0 when a logarithm of a number that is not positive is asked
  /// for.
  double GetCorrToWeight(int logValues, int logWeights);

 private:
  void CopyWeights(const double* w);
  void Init_Weight();
  void NormaliseWeights();
  void FindMeanDisp2();
  void FindMeanDisp3();
  void FindWeightedMean();

  double* Weights;
  DISTR_TYPE WeightsDistrType;
  double DispOfWeights;
  double WeightsCorr;
  double WeightedMean;
  double WeightedSEM2;
};

#endif
