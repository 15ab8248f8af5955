#ifndef TARN_TOOLKIT_SAMPLE_H
#define TARN_TOOLKIT_SAMPLE_H

/// @file
/// What "Stat" and "WeightedStat" have in common: their arguments and their methods.
///
/// The objects hold a `Stat` or `Stat_Weighted`; its results stand in members under the names of
/// `Stat::UpdateTarnObject`.

#include <stat/stat.h>

#include "arguments.h"
#include "handler.h"

namespace tarn::toolkit {

/// Values of a sample, with their dispersions where they have some.
struct SampleInput {
  Numbers values;
  Numbers dispersions;
  double accuracy;

  double* Values() { return values.data(); }
  /// Null without dispersions.
  double* Dispersions() { return dispersions.empty() ? nullptr : dispersions.data(); }
  int Count() const { return static_cast<int>(values.size()); }
};

/// Reads values, dispersions and accuracy.
SampleInput ReadSample(const Options& options);
/// Finite numbers of 0 or more, as many as the values.
Numbers ReadVariances(const Input& input, std::size_t count);

/// Names of the estimators, in the order of the mean types.
inline constexpr std::string_view kEstimators[] = {"limited Jeffreys", "Jeffreys", "uniform",
                                                   "weighted", "plain"};
/// A mean type or prior, given by its number or its name, below `count`.
int ReadEstimator(const Input& input, int count);

/// Writes the results of the sample into the members of its object.
void WriteResults(Stat& sample, Variable& object);

// Methods of both classes.
void MedianSD(const Call& call);
void MedianMAD(const Call& call);
void CumulativeDistribution(const Call& call);
void Histogram(const Call& call);
void MostProbableValue(const Call& call);
void LogProbability(const Call& call);
void CumulativeFit(const Call& call);
void EstimatedDispersions(const Call& call);
void SampleText(const Call& call);

}  // namespace tarn::toolkit

#endif
