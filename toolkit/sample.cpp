#include "sample.h"

#include <stat/stat_weighted.h>

#include <algorithm>
#include <cmath>

#include "linear.h"

namespace tarn::toolkit {
namespace {

constexpr int kMostBins = 10'000'000;
constexpr int kMostPoints = 10'000'000;
constexpr int kUsualPoints = 100;
/// Priors are the estimators but "plain".
constexpr int kPriorCount = 4;

Stat& ThisSample(const Call& call) { return NativeObject<Stat>(call.Argument(0)); }

/// A record of results under their names.
void SetResults(const Call& call, std::initializer_list<std::pair<const char*, double>> results) {
  SetRecord(call.Result());
  for (const auto& [name, value] : results) Member(call.Result(), name) = value;
}

}  // namespace

// Arguments ---------------------------------------------------------------------------------------

Numbers ReadVariances(const Input& input, std::size_t count) {
  Numbers numbers = input.ArrayOfLength(count, "values");
  for (std::size_t i = 0; i < count; ++i) {
    const Input element = input.Element(static_cast<int>(i));
    if (element.FiniteNumber() < 0.0) element.RefuseKind("0 or more");
  }
  return numbers;
}

SampleInput ReadSample(const Options& options) {
  SampleInput sample;
  sample.values = options.Required("values").FiniteArray(1);
  if (const auto dispersions = options.Find("dispersions")) {
    sample.dispersions = ReadVariances(*dispersions, sample.values.size());
  }
  constexpr double kUsualAccuracy = 1e-7;
  sample.accuracy = options.PositiveNumber("accuracy", kUsualAccuracy);
  return sample;
}

int ReadEstimator(const Input& input, int count) {
  if (!input.IsText()) return input.Integer(0, count - 1);
  if (count == kPriorCount) {
    return input.Choice({kEstimators[0], kEstimators[1], kEstimators[2], kEstimators[3]});
  }
  return input.Choice(
      {kEstimators[0], kEstimators[1], kEstimators[2], kEstimators[3], kEstimators[4]});
}

namespace {

/// Prior and axis of the most probable value.
struct LocationModel {
  int prior;
  int logNormal;
};

LocationModel ReadLocationModel(const Options& options, Stat& sample) {
  LocationModel model{0, 0};
  if (const auto prior = options.Find("prior")) model.prior = ReadEstimator(*prior, kPriorCount);
  model.logNormal = options.Flag("log_normal", false) ? 1 : 0;
  if (model.logNormal != 0 && !(sample.GetMin() > 0.0)) {
    Refuse("log_normal needs values above 0, the smallest is " + NumberText(sample.GetMin()));
  }
  return model;
}

}  // namespace

void WriteResults(Stat& sample, Variable& object) {
  sample.UpdateTarnObject(object);
  RequireSuccess();
  // Members for which the host has no memory are left out in silence.
  for (const char* name :
       {"Mean", "Disp", "SEM2", "Disp0", "DispSimple", "E2", "E3", "E4", "DistrType", "Min", "Max",
        "Sum", "estDataDisp", "LogNormDisp", "LogNormMean", "MeanType"}) {
    RequireSuccess(HasMember(object, name));
  }
  Variable& dispersions = object("estDataDisp");
  if (dispersions.IsInheritFrom(VARCLASS_ARRAY) != 0) {
    RequireSuccess(dispersions.GetDim() == sample.Len());
  }
}

// Order statistics --------------------------------------------------------------------------------

void MedianSD(const Call& call) {
  double median = NAN;
  double error = NAN;
  ThisSample(call).GetMedian_SD(median, error);
  RequireSuccess();
  SetResults(call, {{"median", median}, {"error", error}});
}

void MedianMAD(const Call& call) {
  double median = NAN;
  double deviation = NAN;
  ThisSample(call).GetMedian_MAD(median, deviation);
  SetResults(call, {{"median", median}, {"mad", deviation}});
}

void CumulativeDistribution(const Call& call) {
  double* x = nullptr;
  double* p = nullptr;
  int count = 0;
  ThisSample(call).GetCumulativeDistr(x, p, count);
  RequireSuccess(x != nullptr && p != nullptr);
  const auto points = static_cast<std::size_t>(count);
  SetFunction(call.Result(), {x, points}, {p, points});
}

namespace {

/// Bins of equal width from `low` to `high`.
struct BinGrid {
  double low;
  double high;
  int bins;

  double Width() const { return (high - low) / bins; }
};

/// Without limits the first and the last bin are centred on the extremes of the sample.
BinGrid ReadBins(const Options& options, const Stat& sample) {
  const int usualBins = static_cast<int>(std::ceil(std::sqrt(sample.Len())));
  BinGrid grid{0.0, 0.0, options.Integer("bins", usualBins, 1, kMostBins)};
  const double range = sample.GetMax() - sample.GetMin();
  const double width = range > 0.0 && grid.bins > 1 ? range / (grid.bins - 1) : range + 1.0;
  const auto low = options.Find("low");
  const auto high = options.Find("high");
  grid.low = low ? low->FiniteNumber() : sample.GetMin() - width / 2;
  grid.high = high ? high->FiniteNumber() : sample.GetMax() + width / 2;
  if (!(grid.low < grid.high)) {
    Refuse("high " + NumberText(grid.high) + " must be above low " + NumberText(grid.low));
  }
  if (!std::isfinite(grid.high + grid.Width() - grid.low)) {
    Refuse("low " + NumberText(grid.low) + " to high " + NumberText(grid.high) + " is too wide");
  }
  return grid;
}

void SetBins(Variable& record, const BinGrid& grid) {
  Numbers edges;
  Numbers centres;
  for (int k = 0; k <= grid.bins; ++k) edges.push_back(grid.low + k * grid.Width());
  for (int k = 0; k < grid.bins; ++k) centres.push_back(grid.low + (k + 0.5) * grid.Width());
  SetArray(Member(record, "edges"), edges);
  SetArray(Member(record, "centres"), centres);
}

}  // namespace

/// The class library divides its range into one bin more than it counts; asked for a range that is
/// one bin longer, its bins cover the one that was given.
void Histogram(const Call& call) {
  Stat& sample = ThisSample(call);
  const Options options(call.Argument(1), {"bins", "low", "high"});
  const BinGrid grid = ReadBins(options, sample);
  Numbers counts(static_cast<std::size_t>(grid.bins));
  Numbers variances(counts.size());
  int inside = 0;
  sample.GetHistogram(counts.data(), variances.data(), inside, grid.low, grid.high + grid.Width(),
                      grid.bins);
  SetRecord(call.Result());
  Variable& record = call.Result();
  SetBins(record, grid);
  SetArray(Member(record, "counts"), counts);
  SetArray(Member(record, "variances"), variances);
  Member(record, "inside") = inside;
}

// Locations ---------------------------------------------------------------------------------------

void MostProbableValue(const Call& call) {
  Stat& sample = ThisSample(call);
  const LocationModel model =
      ReadLocationModel(Options(call.Argument(1), {"prior", "log_normal"}), sample);
  const auto location = Own(sample.GetMostProbableValue(model.prior, model.logNormal));
  RequireSuccess(location->Dim() == 3);
  WriteResults(sample, call.Argument(0));
  SetResults(call, {{"value", (*location)[0]},
                    {"error", std::sqrt((*location)[1])},
                    {"inside", (*location)[2]}});
}

void LogProbability(const Call& call) {
  Stat& sample = ThisSample(call);
  const Options options(call.Argument(1), {"prior", "log_normal", "points"});
  const LocationModel model = ReadLocationModel(options, sample);
  const int points = options.Integer("points", kUsualPoints, 2, kMostPoints);
  double* x = nullptr;
  double* logarithms = nullptr;
  sample.GetLogProbabilityDistribution(model.prior, model.logNormal, points, x, logarithms);
  const std::unique_ptr<double[]> xOwner(x);
  const std::unique_ptr<double[]> logarithmsOwner(logarithms);
  RequireSuccess(x != nullptr && logarithms != nullptr);
  WriteResults(sample, call.Argument(0));
  // On the logarithmic axis there is nothing at or below 0.
  int first = 0;
  while (model.logNormal != 0 && first < points && !(x[first] > 0.0)) ++first;
  const auto count = static_cast<std::size_t>(points - first);
  SetFunction(call.Result(), {x + first, count}, {logarithms + first, count});
}

void CumulativeFit(const Call& call) {
  const auto fit = Own(ThisSample(call).FitCumulativeDistribution());
  RequireSuccess(fit->Dim() == 4);
  SetResults(call, {{"location", (*fit)[0]},
                    {"location_scale", (*fit)[1]},
                    {"location_error", (*fit)[2]},
                    {"scale_error", (*fit)[3]}});
}

void EstimatedDispersions(const Call& call) {
  Stat& sample = ThisSample(call);
  const double* dispersions = sample.GetEstimationDisp();
  RequireSuccess(dispersions != nullptr);
  WriteResults(sample, call.Argument(0));
  SetArray(call.Result(), {dispersions, static_cast<std::size_t>(sample.Len())});
}

void SampleText(const Call& call) {
  Stat& sample = ThisSample(call);
  char text[160];
  std::snprintf(text, sizeof(text), "%s of %s: mean %.6g, error %.3g, dispersion %.6g",
                call.Argument(0).KindName(), CountText(sample.Len(), "value").c_str(),
                sample.GetMean(), std::sqrt(sample.GetSEM2()), sample.GetDisp());
  SetText(call.Result(), text);
}

}  // namespace tarn::toolkit
