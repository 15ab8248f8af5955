/// @file
/// "Stat": statistics of a sample.

#include <stat/stat.h>

#include "families.h"
#include "handler.h"
#include "results.h"
#include "sample.h"

namespace tarn::toolkit {
namespace {

constexpr int kPlain = 4;

/// Hands a sample over to a new object and writes its results into the members.
void SetSample(Variable& target, std::unique_ptr<Stat> sample, int count) {
  RequireSuccess(sample->Len() == count);
  Stat& shown = *sample;
  SetNativeObject(target, "Stat", std::move(sample));
  WriteResults(shown, target);
}

/// The mean type: without dispersions there is only the plain mean.
int ReadMeanType(const Options& options, bool hasDispersions) {
  const auto given = options.Find("mean_type");
  if (!given) return hasDispersions ? 0 : kPlain;
  const int meanType = ReadEstimator(*given, kPlain + 1);
  if (!hasDispersions && meanType != kPlain) Refuse("mean_type needs dispersions");
  return meanType;
}

std::unique_ptr<Stat> MakeSample(SampleInput& input, int meanType) {
  std::unique_ptr<Stat> sample;
  if (input.Dispersions() == nullptr) {
    sample = std::make_unique<Stat>(input.Values(), input.Count());
  } else {
    sample = std::make_unique<Stat>(input.Values(), input.Dispersions(), input.Count(), meanType);
  }
  sample->SetAccuracy(input.accuracy);
  return sample;
}

void Make(const Call& call) {
  Variable& argument = call.Argument(0);
  const Input values(argument, "values");
  SampleInput input{{}, {}, 1e-7};
  int meanType = kPlain;
  if (values.IsArray()) {
    input.values = values.FiniteArray(1);
  } else {
    const Options options(argument, {"values", "dispersions", "mean_type", "accuracy"});
    input = ReadSample(options);
    meanType = ReadMeanType(options, input.Dispersions() != nullptr);
  }
  SetSample(call.Result(), MakeSample(input, meanType), input.Count());
}

void Subset(const Call& call) {
  Stat& sample = NativeObject<Stat>(call.Argument(0));
  const int wanted = Input(call.Argument(1), "the number of values").Integer(1);
  auto subset = Own(sample.SampleSubset(wanted));
  const int count = subset->Len();
  SetSample(call.Result(), std::move(subset), count);
}

constexpr ScriptFunction kRows[] = {
    {Handler<Make>, "Stat(options)"},
    {Handler<SampleText>, "Stat.__tostring(any)"},
    {Handler<MedianSD>, "Stat.MedianSD(refer object Stat)"},
    {Handler<MedianMAD>, "Stat.MedianMAD(refer object Stat)"},
    {Handler<CumulativeDistribution>, "Stat.CumulativeDistribution(refer object Stat)"},
    {Handler<Histogram>, "Stat.Histogram(refer object Stat, options?)"},
    {Handler<MostProbableValue>, "Stat.MostProbableValue(refer object Stat, options?)"},
    {Handler<LogProbability>, "Stat.LogProbability(refer object Stat, options?)"},
    {Handler<CumulativeFit>, "Stat.CumulativeFit(refer object Stat)"},
    {Handler<EstimatedDispersions>, "Stat.EstimatedDispersions(refer object Stat)"},
    {Handler<Subset>, "Stat.Subset(refer object Stat, any)"},
};

}  // namespace

std::span<const ScriptFunction> StatRows() { return kRows; }

}  // namespace tarn::toolkit
