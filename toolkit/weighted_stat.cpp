/// @file
/// "WeightedStat": statistics of a sample whose values carry weights.

#include <stat/stat_weighted.h>

#include <algorithm>

#include "families.h"
#include "handler.h"
#include "results.h"
#include "sample.h"

namespace tarn::toolkit {
namespace {

/// Weights of 0 or more, not all of them 0.
Numbers ReadWeights(const Input& input, std::size_t count) {
  Numbers weights = ReadVariances(input, count);
  if (*std::max_element(weights.begin(), weights.end()) == 0.0) {
    input.Refuse("are all 0");
  }
  return weights;
}

void Make(const Call& call) {
  const Options options(call.Argument(0), {"values", "dispersions", "weights", "accuracy"});
  SampleInput input = ReadSample(options);
  Numbers weights = ReadWeights(options.Required("weights"), input.values.size());
  auto sample = input.Dispersions() == nullptr
                    ? std::make_unique<Stat_Weighted>(input.Values(), weights.data(), input.Count())
                    : std::make_unique<Stat_Weighted>(input.Values(), input.Dispersions(),
                                                      weights.data(), input.Count());
  sample->SetAccuracy(input.accuracy);
  RequireSuccess(sample->Len() == input.Count());
  Stat_Weighted& shown = *sample;
  SetNativeObject(call.Result(), "WeightedStat", std::move(sample));
  WriteResults(shown, call.Result());
  for (const char* name :
       {"WeightsDistrType", "DispOfWeights", "WeightsCorr", "WeightedMean", "WeightedSEM2"}) {
    RequireSuccess(HasMember(call.Result(), name));
  }
  RequireSuccess(Member(call.Result(), "Weights").GetDim() == input.Count());
}

void CorrelationToWeights(const Call& call) {
  auto& sample = NativeObject<Stat_Weighted>(call.Argument(0));
  const Options options(call.Argument(1), {"log_values", "log_weights"});
  const int logValues = options.Flag("log_values", false) ? 1 : 0;
  const int logWeights = options.Flag("log_weights", false) ? 1 : 0;
  if (logValues != 0 && !(sample.GetMin() > 0.0)) {
    throw Fault(kErrorLogarithm,
                "log_values needs values above 0, the smallest is " + NumberText(sample.GetMin()));
  }
  const double correlation = sample.GetCorrToWeight(logValues, logWeights);
  RequireSuccess();
  call.Result() = correlation;
}

constexpr ScriptFunction kRows[] = {
    {Handler<Make>, "WeightedStat(options)"},
    {Handler<SampleText>, "WeightedStat.__tostring(any)"},
    {Handler<MedianSD>, "WeightedStat.MedianSD(refer object WeightedStat)"},
    {Handler<MedianMAD>, "WeightedStat.MedianMAD(refer object WeightedStat)"},
    {Handler<CumulativeDistribution>,
     "WeightedStat.CumulativeDistribution(refer object WeightedStat)"},
    {Handler<Histogram>, "WeightedStat.Histogram(refer object WeightedStat, options?)"},
    {Handler<MostProbableValue>,
     "WeightedStat.MostProbableValue(refer object WeightedStat, options?)"},
    {Handler<LogProbability>, "WeightedStat.LogProbability(refer object WeightedStat, options?)"},
    {Handler<CumulativeFit>, "WeightedStat.CumulativeFit(refer object WeightedStat)"},
    {Handler<EstimatedDispersions>, "WeightedStat.EstimatedDispersions(refer object WeightedStat)"},
    {Handler<CorrelationToWeights>,
     "WeightedStat.CorrelationToWeights(refer object WeightedStat, options?)"},
};

}  // namespace

std::span<const ScriptFunction> WeightedStatRows() { return kRows; }

}  // namespace tarn::toolkit
