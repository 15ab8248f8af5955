#ifndef TARN_STAT_STAT_H
#define TARN_STAT_STAT_H

/// @file
/// Statistics of one sample of real numbers.

#include <cstdint>

#include "frame/export.h"
#include "frame/host.h"
#include "linalg/vector.h"
#include "stat/probability_functions.h"

/// Which distribution describes a sample better.
enum DISTR_TYPE : std::int32_t {
  DISTR_GAUSS = 0,     ///< normal; also the answer for samples that cannot be log-normal
  DISTR_LOGNORMAL = 1  ///< log-normal, by at least one unit of log-likelihood
};

/// Statistics of a sample: mean, dispersions, error of the mean, raw moments, extremes,
/// distribution type, log-normal parameters; order statistics, histograms, most probable value.
///
/// A sample may come with a dispersion (squared measurement error) per value. The mean is then a
/// weighted one, and the intrinsic dispersion of the population that the measurement errors do not
/// explain is estimated by the maximum of a likelihood under a prior, chosen by the mean type:
///
/// | mean type | estimator |
/// |---|---|
/// | 0 | limited Jeffreys prior |
/// | 1 | Jeffreys prior; so is every type not listed |
/// | 2 | uniform prior |
/// | 3 | weighted by the given dispersions only |
/// | 4 | plain, unweighted; always so without dispersions |
///
/// Everything is computed by the constructor from copies of the arrays. All sums run in index
/// order. A count below 0 counts as 0, a null array of values as no values, a null dispersion array
/// as none. Values may be NaN or infinite: results then are what the arithmetic gives, and
/// everything ends.
///
/// Where memory is refused to the constructor it goes on without: no copy of the values leaves an
/// empty sample, none of the dispersions a sample without dispersions; without a work area the
/// intrinsic dispersion is 0, and a sample of 100 and more values counts as normal.
class TARN_API Stat : public TarnAss {
 public:
  /// A sample of `n` values without dispersions (mean type 4).
  Stat(double* x, int n);
  /// The same from single precision, widened.
  Stat(float* x, int n);
  /// A sample of `n` values with dispersions, mean type 0.
  Stat(double* x, double* d, int n);
  /// A sample of `n` values with dispersions and the given mean type, stored as given.
  Stat(double* x, double* d, int n, int meanType);
  /// The same sample with the same mean type, computed anew; caches and the accuracy (1e-7 again)
  /// are not copied.
  Stat(Stat& other);
  /// Copies every field; the arrays are copied too, so that each object owns its own. An array
  /// whose copy is refused is missing: without values `Len` is 0 and the results stay those of
  /// `other`, cumulative distribution and estimated dispersions are built again when asked for.
  Stat& operator=(const Stat& other);
  ~Stat() override;

  /// Whether the sample has more than 1000 values; the most probable value then comes from a
  /// subset.
  virtual bool isTooLong();

  /// Median and its standard error.
  ///
  /// | n | median | sd |
  /// |---|---|---|
  /// | 0 | untouched | untouched |
  /// | 1 | the value | 0 |
  /// | 2 | mean | sqrt(SEM2) sqrt(pi/2) |
  /// | 3 | the middle value | sqrt(SEM2) sqrt(pi/2) |
  /// | 4 to 9 | of `GetMedian_MAD` | its mad / sqrt(n) |
  /// | 10 and more | `QMedian` of the values | sqrt(SEM2) sqrt(pi/2) |
  ///
  /// Both stay untouched when work memory is refused, which may happen from 4 values on.
  virtual void GetMedian_SD(double& median, double& sd);

  /// Median and median absolute deviation, both as `QMedian` gives them and the latter without a
  /// consistency factor. One value: (value, 0); two: (mean, their distance); none, or work memory
  /// refused: both untouched.
  virtual void GetMedian_MAD(double& median, double& mad);

  /// The empirical cumulative distribution: `n` ascending abscissae `x` and the probabilities `p`
  /// that a value does not exceed them, 0 at the first point, which lies below the data, 1 at the
  /// last. Samples of more than 1000 values are thinned to 1000 points; equal abscissae are merged.
  /// The arrays belong to this object. For an empty sample or without memory the outputs stay
  /// untouched; a later call tries again. NaN stands last.
  virtual void GetCumulativeDistr(double*& x, double*& p, int& n);

  /// One weight per value, all 1, in a new array to be handed back to `FreeWeights`; null when the
  /// memory is refused.
  virtual double* GetWeights();
  /// Takes back what `GetWeights` returned.
  virtual void FreeWeights(double* weights);

  /// Writes the results into members of a script object: "Mean", "Disp", "SEM2", "Disp0",
  /// "DispSimple", "E2", "E3", "E4", "DistrType", "Min", "Max", "Sum", "estDataDisp" (an array,
  /// cleared while `GetEstimationDisp` has not built it), "LogNormDisp", "LogNormMean", "MeanType".
  /// A member that the host heap refuses is missing, an array that it refuses has no elements.
  virtual void UpdateTarnObject(Variable& obj);

  double GetMean() const { return Mean; }          ///< Mean, weighted where there are dispersions.
  double GetDisp() const { return Disp; }          ///< Dispersion of the sample.
  double GetDisp0() const { return Disp0; }        ///< Intrinsic dispersion; 0 when not estimated.
  double GetSEM2() const { return SEM2; }          ///< Squared standard error of the mean.
  double GetE2() const { return E2; }              ///< Mean of x^2.
  double GetE3() const { return E3; }              ///< Mean of x^3.
  double GetE4() const { return E4; }              ///< Mean of x^4.
  double GetMin() const { return Min; }            ///< Smallest value; 1e300 for an empty sample.
  double GetMax() const { return Max; }            ///< Largest value; -1e300 for an empty sample.
  int GetDistrType() const { return DistrType; }   ///< A `DISTR_TYPE`.
  int Len() const { return len; }                  ///< Number of values.
  double GetAccuracy() const { return Accuracy; }  ///< Tolerance of later searches.
  /// Relative tolerance of later searches: cumulative fit, most probable value and its error.
  /// Nothing is recomputed on the spot.
  void SetAccuracy(double accuracy) { Accuracy = accuracy; }

  /// ln(Disp / Mean^2 + 1), the dispersion of the logarithm of a log-normal variable with this mean
  /// and dispersion. Error 10 and 1.0 when the mean is not greater than 0.
  double GetLogNormalDisp();
  /// Mean * exp(-GetLogNormalDisp() / 2), the median of that variable.
  double GetLogNormalMu0();

  /// Scales the sample in place: values, mean, extremes and the abscissae of the cumulative
  /// distribution by `a`; dispersions, `Disp`, `Disp0`, `SEM2` and `E2` by a^2, `E3` by a^3, `E4`
  /// by a^4. `DispSimple`, `Sum`, the log-normal parameters and the distribution type stay, and the
  /// extremes are not exchanged for a negative `a`.
  Stat& operator*=(double a);

  /// Histogram of the values in [lo, hi): bin k counts those with k <= (v - lo)/width < k + 1,
  /// width = (hi - lo)/(nBins + 1) or 1 when that is 0. The divisor counts one bin more than there
  /// are, so the bins cover the lower nBins/(nBins + 1) of the range. `count` is the number of
  /// values counted.
  void GetHistogram(double* h, int& count, double lo, double hi, int nBins);
  /// The same with the binomial variance of every count, (1 - h/count) * max(h, 1); all 0 when
  /// nothing was counted.
  void GetHistogram(double* h, double* err, int& count, double lo, double hi, int nBins);
  void GetHistogram(float* h, int& count, double lo, double hi, int nBins);  ///< In floats.
  /// In floats.
  void GetHistogram(float* h, float* err, int& count, double lo, double hi, int nBins);

  /// The dispersions to use for the values, owned by this object; built at the first call.
  ///
  /// With given dispersions (three or more): the given ones with a floor of exp(m - s), m and s
  /// median and its error of their logarithms; the given ones as they are when memory is refused,
  /// be it for the copy or for the median. Without: `EstimateDisp` of the values; null when memory
  /// is refused. The next call tries again.
  double* GetEstimationDisp();

  /// One dispersion common to all `n` values, estimated robustly from the values alone, in a new
  /// array of `n` equal entries that the caller releases with `delete[]`; null for n < 1 or when
  /// memory is refused. The third argument is not used.
  ///
  /// The values are trimmed one by one at the end farther from the mean of the rest; the variance
  /// of what remains follows that of a normal law cut at +-t sqrt(2),
  /// c^2 (1 - 2 t exp(-t^2) / (sqrt(pi) erf(t))), whose c is fitted to the most trimmed quarter by
  /// golden section, twice: the second time with the count of values within 3c for the population.
  static double* EstimateDisp(double* x, int n, double ignored);

  /// A new, smaller sample of about `k` values that keeps the shape of the distribution: every
  /// n/k-th of the sorted values (with their dispersions, mean type 0). A copy when the sample has
  /// no more than `k` values; null for k < 1 and when any of its memory is refused. The caller
  /// deletes it.
  Stat* SampleSubset(int k);

  /// Fits a normal cumulative distribution to the sample's own (at most 101 points of it).
  ///
  /// Returns a new vector [location, sigma / sqrt(n), error of the location, error of the scale]
  /// that the caller deletes. Null when the distribution cannot be built, when memory is refused
  /// for the vector or for setting up the fit. Later refusals may end the fit before its optimum
  /// (see `T_Climb`); both errors are NaN where the curvature or its inverse cannot be had, and the
  /// linear algebra may then have raised error 1.
  T_MatVectorCol<double>* FitCumulativeDistribution();

  /// The location that maximises the marginal probability of the sample under a prior (see
  /// probability_functions.h), on the logarithmic axis when `logNormal` is not 0.
  ///
  /// Returns a new vector [location, squared error, count of values within location +-
  /// sqrt(n * squared error)] that the caller deletes. [mean, dispersion, 0] for one value; [mean,
  /// SEM2, 0] for two, for values equal to one part in 1e7, and where a dispersion is not positive.
  ///
  /// When memory is refused: null without the vector itself; [mean, SEM2, 0] without dispersions,
  /// weights, arguments or a work area of the search, for a long sample also without its subset;
  /// [location, SEM2, count] without the table that the error is read from. A subset that meets a
  /// refusal answers likewise with its own mean and SEM2.
  T_MatVectorCol<double>* GetMostProbableValue(int prior, int logNormal);

  /// Logarithm of the marginal probability of a location at `m` points from a quarter of the range
  /// below the smallest value to a quarter above the largest (of their logarithms when the sample
  /// is log-normal), shifted to peak at 0. Both arrays are new and the caller's (`delete[]`). When
  /// memory is refused: null for the array in question, the other then holds nothing; a curve of
  /// zeros without dispersions or weights.
  void GetLogProbabilityDistribution(int prior, int logNormal, int m, double*& x, double*& lp);

  /// The probability function for a prior and an axis, over a script array.
  static ProbFunc GetProbFuncPtr(int prior, int logNormal);
  /// The same over arrays.
  static CProbFunc GetCProbFuncPtr(int prior, int logNormal);

 protected:
  /// The computation at construction: distribution type, floor of the dispersions, the estimator of
  /// the mean type, the log-normal parameters.
  void FindMeanDisp();
  /// `DISTR_LOGNORMAL` where all values are positive, not all equal, and ln of the marginal
  /// likelihood is greater by 1 or more for the log-normal law; else `DISTR_GAUSS`.
  static DISTR_TYPE CheckDistrType(double* x, int n);
  /// Replaces dispersions that are not positive by the population variance of the values.
  void CheckDisp();
  /// Extremes, sums, moments and unweighted statistics: all of mean type 4, the start of the
  /// others.
  void FindMeanDisp0();
  void FindMeanDisp_LimitedJefferysPrior();  ///< Estimator of mean type 0.
  void FindMeanDisp_JefferysPrior();         ///< Estimator of mean type 1.
  void FindMeanDisp_UniformPrior();          ///< Estimator of mean type 2.
  void FindMeanDisp_WeightedByDisp();        ///< Estimator of mean type 3.
  /// Mean weighted by the inverse of `Disp0` plus the given dispersions, with `Disp` and `SEM2`.
  void FindMeanDisp_Ex();

  /// Derivative of a log-likelihood with respect to ln D, up to a positive factor, as a function of
  /// t = ln D; `work` has room for `n` numbers.
  using Disp0RootFunction = double (*)(double t, double* data, double* disp, double* work, int n);
  /// Sets `Disp0` to the D where that derivative vanishes, looked for from `DispSimple`/100 to
  /// 100 `DispSimple`; 0 without a change of sign there or without work memory.
  void FindDisp0(Disp0RootFunction rootFunction);

  /// ln of the marginal likelihood of a normal law; 0 when a value is not positive.
  static double GetLogLikelihoodOfGauss(double* x, int n);
  /// ln of the marginal likelihood of a log-normal law; -1e300 when a value is not positive or the
  /// logarithms find no memory.
  static double GetLogLikelihoodOfLogNormal(double* x, int n);
  /// The fit of `FitCumulativeDistribution()` to `n` given points, x ascending, p in [0, 1].
  T_MatVectorCol<double>* FitCumulativeDistribution(double* x, double* p, int n);

  /// Squared error of a most probable value from the shape of the probability around it: a quarter
  /// of the squared length of the interval that holds 34 % on each side. `SEM2` when the table of
  /// the probability gets no memory.
  double GetSEM2OfMostProbableValue(double location, ProbFunc function, Variable& args,
                                    int logNormal);

  /// Merges equal neighbours of the first `CumLen` points of the cumulative distribution, adds a
  /// point below the data and normalises.
  void FinishCumulativeDistr();
  /// Releases the cumulative distribution.
  void ReleaseCumulativeDistr();

  double* Data;           ///< the values
  double* DataDisp;       ///< their dispersions, or null
  double* estDataDisp;    ///< what `GetEstimationDisp` built, or null
  double* AuxArray;       ///< always null
  std::int32_t len;       ///< number of values
  double Mean;            ///< see `GetMean`
  double Disp;            ///< see `GetDisp`
  double DispSimple;      ///< plain sample variance
  double SEM2;            ///< see `GetSEM2`
  double Sum;             ///< sum of the values
  double Disp0;           ///< see `GetDisp0`
  DISTR_TYPE DistrType;   ///< see `GetDistrType`
  double LogNormMean;     ///< mean of the logarithms, of a log-normal sample
  double LogNormDisp;     ///< dispersion of the logarithms, of a log-normal sample
  std::int32_t MeanType;  ///< the estimator, see above
  double E2;              ///< mean of x^2
  double E3;              ///< mean of x^3
  double E4;              ///< mean of x^4
  double Min;             ///< see `GetMin`
  double Max;             ///< see `GetMax`
  double* CumX;           ///< abscissae of the cumulative distribution, or null
  double* CumP;           ///< its probabilities, or null
  std::int32_t CumLen;    ///< number of its points
  double Accuracy;        ///< see `SetAccuracy`

 private:
  void ClearResults();
  void CopyResults(const Stat& other);
  template <class Element>
  void CopyData(const Element* x, int n);
  double* FloorDispersions();
  bool IsTooNarrowToSearch() const;
  void TakeMostProbableValueOfSubset(T_MatVectorCol<double>& result, int prior, int logNormal);
  void SearchMostProbableValue(T_MatVectorCol<double>& result, int prior, int logNormal);
  double CountWithin(double location, double squaredError) const;
};

#endif
