// Sample statistics, weighted samples and probability tables.

#include <cmath>
#include <limits>
#include <memory>

#include "golden_bits.h"
#include "tarn_base_math.h"

namespace tarn_golden {
namespace {

constexpr int kSizes[] = {0, 1, 2, 3, 4, 5, 9, 10, 11, 40, 150, 1200};

enum class Kind { kBell, kPositive, kTied, kContaminated, kWide, kWithNan, kCount };

using Numbers = std::vector<double>;
using Vector = std::unique_ptr<T_MatVectorCol<double>>;

/// A deviate of variance 1 that is nearly normal.
double BellDeviate(Inputs& inputs) {
  double sum = -6;
  for (int i = 0; i < 12; ++i) sum += inputs.Unit();
  return sum;
}

double MakeValue(Inputs& inputs, Kind kind) {
  switch (kind) {
    case Kind::kPositive:
      return std::exp(BellDeviate(inputs));
    case Kind::kTied:
      return static_cast<double>(inputs.Integer(-2, 3));
    case Kind::kContaminated:
      return inputs.Integer(0, 9) == 0 ? 50 : BellDeviate(inputs);
    case Kind::kWide:
      return inputs.Wide(-300, 300);
    case Kind::kWithNan:
      if (inputs.Integer(0, 9) == 0) return std::numeric_limits<double>::quiet_NaN();
      break;
    case Kind::kBell:
    case Kind::kCount:
      break;
  }
  return 3 + 2 * BellDeviate(inputs);
}

struct Sample {
  Numbers values;
  Numbers dispersions;
  Numbers weights;
  int size;
};

Sample MakeSample(Inputs& inputs, Kind kind, int n) {
  Sample sample = {{}, {}, {}, n};
  for (int i = 0; i < n; ++i) {
    sample.values.push_back(MakeValue(inputs, kind));
    // Now and then one that is not positive.
    sample.dispersions.push_back(inputs.Unit() * 2 - (inputs.Integer(0, 19) == 0 ? 2 : 0));
    sample.weights.push_back(inputs.Unit() - (inputs.Integer(0, 19) == 0 ? 1 : 0));
  }
  return sample;
}

/// Calls `compute(sample, inputs)` for samples of every kind with up to `largest` values.
template <class Compute>
void ForAllSamples(std::uint64_t seed, int largest, Compute compute) {
  Inputs inputs(seed);
  for (int kind = 0; kind < static_cast<int>(Kind::kCount); ++kind) {
    for (const int n : kSizes) {
      Sample sample = MakeSample(inputs, static_cast<Kind>(kind), n);
      if (n <= largest) compute(sample, inputs);
    }
  }
}

/// Calls `compute(stat, inputs)` for the samples plain, with dispersions and with weights.
template <class Compute>
void ForAllStats(std::uint64_t seed, int largest, Compute compute) {
  ForAllSamples(seed, largest, [&compute](Sample& s, Inputs& inputs) {
    Stat plain(s.values.data(), s.size);
    Stat measured(s.values.data(), s.dispersions.data(), s.size);
    Stat_Weighted weighted(s.values.data(), s.weights.data(), s.size);
    Stat_Weighted both(s.values.data(), s.dispersions.data(), s.weights.data(), s.size);
    for (Stat* stat : {&plain, &measured, static_cast<Stat*>(&weighted), static_cast<Stat*>(&both)})
      compute(*stat, inputs);
  });
}

void AddResults(Hash& hash, Stat& s) {
  for (const double result : {s.GetMean(), s.GetDisp(), s.GetDisp0(), s.GetSEM2(), s.GetE2(),
                              s.GetE3(), s.GetE4(), s.GetMin(), s.GetMax()}) {
    hash.Add(result);
  }
  hash.Add(s.GetDistrType());
  if (s.GetMean() > 0) hash.Add(s.GetLogNormalMu0());
}

void AddArray(Hash& hash, const double* numbers, int n) {
  for (int i = 0; numbers != nullptr && i < n; ++i) hash.Add(numbers[i]);
}

void AddVector(Hash& hash, const Vector& v) {
  for (int i = 0; v && i < v->Dim(); ++i) hash.Add((*v)[i]);
}

void Construction(Report& report) {
  report.Function("Stat::Stat", [](Hash& hash) {
    ForAllSamples(51, 1200, [&hash](Sample& s, Inputs& inputs) {
      for (int type = 0; type < 5; ++type) {
        Stat stat(s.values.data(), s.dispersions.data(), s.size, type);
        AddResults(hash, stat);
        stat *= inputs.Unit();
        AddResults(hash, stat);
      }
    });
  });
  report.Function("Stat_Weighted::Stat_Weighted", [](Hash& hash) {
    ForAllSamples(52, 1200, [&hash](Sample& s, Inputs&) {
      Stat_Weighted plain(s.values.data(), s.weights.data(), s.size);
      Stat_Weighted measured(s.values.data(), s.dispersions.data(), s.weights.data(), s.size);
      for (Stat_Weighted* stat : {&plain, &measured}) {
        AddArray(hash, stat->GetWeights(), s.size);
        for (const double result :
             {stat->GetDispOfWeights(), stat->GetWeightsCorr(), stat->GetWeightedMean(),
              stat->GetWeightedSEM2(), stat->GetCorrToWeight(0, 0), stat->GetCorrToWeight(0, 1)}) {
          hash.Add(result);
        }
        hash.Add(stat->GetWeightsDistrType());
      }
    });
  });
}

void Order(Report& report) {
  report.Function("Stat::GetMedian_SD,GetMedian_MAD", [](Hash& hash) {
    ForAllStats(53, 1200, [&hash](Stat& s, Inputs&) {
      double median = 0;
      double error = 0;
      // The weighted one comes from a fit.
      if (s.isTooLong() || s.Len() < 150) s.GetMedian_SD(median, error);
      hash.Add(median);
      hash.Add(error);
      s.GetMedian_MAD(median, error);
      hash.Add(median);
      hash.Add(error);
    });
  });
  report.Function("Stat::GetCumulativeDistr", [](Hash& hash) {
    ForAllStats(54, 1200, [&hash](Stat& s, Inputs&) {
      double* x = nullptr;
      double* p = nullptr;
      int n = 0;
      s.GetCumulativeDistr(x, p, n);
      AddArray(hash, x, n);
      AddArray(hash, p, n);
    });
  });
  report.Function("Stat::GetHistogram", [](Hash& hash) {
    ForAllStats(55, 1200, [&hash](Stat& s, Inputs& inputs) {
      double h[24];
      double err[24];
      float hf[24];
      float errf[24];
      int count = 0;
      const int bins = static_cast<int>(inputs.Integer(1, 24));
      const double lo = -8 * inputs.Unit();
      const double hi = 12 * inputs.Unit();
      s.GetHistogram(h, err, count, lo, hi, bins);
      AddArray(hash, h, bins);
      AddArray(hash, err, bins);
      s.GetHistogram(hf, errf, count, lo, hi, bins);
      for (int k = 0; k < bins; ++k) {
        hash.Add(hf[k]);
        hash.Add(errf[k]);
      }
    });
  });
  report.Function("Stat::SampleSubset", [](Hash& hash) {
    ForAllStats(56, 1200, [&hash](Stat& s, Inputs& inputs) {
      const std::unique_ptr<Stat> subset(s.SampleSubset(static_cast<int>(inputs.Integer(1, 300))));
      hash.Add(subset->Len());
      AddResults(hash, *subset);
    });
  });
}

void Searches(Report& report) {
  report.Function("Stat::GetEstimationDisp", [](Hash& hash) {
    ForAllStats(57, 1200,
                [&hash](Stat& s, Inputs&) { AddArray(hash, s.GetEstimationDisp(), s.Len()); });
  });
  report.Function("Stat::FitCumulativeDistribution", [](Hash& hash) {
    ForAllStats(58, 150, [&hash](Stat& s, Inputs&) {
      AddVector(hash, Vector(s.FitCumulativeDistribution()));
    });
  });
  report.Function("Stat::GetMostProbableValue", [](Hash& hash) {
    ForAllStats(59, 40, [&hash](Stat& s, Inputs&) {
      for (int prior = 0; prior < 4; ++prior) {
        for (const int axis : {0, 1}) AddVector(hash, Vector(s.GetMostProbableValue(prior, axis)));
      }
    });
  });
  report.Function("Stat::GetLogProbabilityDistribution", [](Hash& hash) {
    ForAllStats(60, 150, [&hash](Stat& s, Inputs&) {
      constexpr int kPoints = 50;
      for (int prior = 0; prior < 4; ++prior) {
        for (const int axis : {0, 1}) {
          double* x = nullptr;
          double* lp = nullptr;
          s.GetLogProbabilityDistribution(prior, axis, kPoints, x, lp);
          AddArray(hash, x, kPoints);
          AddArray(hash, lp, kPoints);
          delete[] x;
          delete[] lp;
        }
      }
    });
  });
}

void ProbabilityFunctions(Report& report) {
  report.Function("GetCProbFuncPtr", [](Hash& hash) {
    ForAllSamples(61, 150, [&hash](Sample& s, Inputs& inputs) {
      for (int prior = 0; prior < 4; ++prior) {
        for (const int axis : {0, 1}) {
          const auto f = Stat::GetCProbFuncPtr(prior, axis);
          for (int k = 0; k < 20; ++k) {
            hash.Add(f(inputs.Below(8), s.values.data(), s.dispersions.data(), s.weights.data(),
                       s.size));
          }
        }
      }
    });
  });
}

void FloatTables(Report& report) {
  report.Function("BuildCumulativeDistr,BuildPdf", [](Hash& hash) {
    ForAllSamples(62, 1200, [&hash](Sample& s, Inputs& inputs) {
      std::vector<float> x;
      for (const double value : s.values) x.push_back(static_cast<float>(value));
      float* xs = nullptr;
      float* p = nullptr;
      int m = -1;
      BuildCumulativeDistr(x.data(), s.size, xs, p, m);
      for (int i = 0; i < m; ++i) {
        hash.Add(xs[i]);
        hash.Add(p[i]);
      }
      HFREE(xs);
      HFREE(p);
      xs = p = nullptr;
      const int points = static_cast<int>(inputs.Integer(1, 40));
      BuildPdf(static_cast<float>(inputs.Unit()), x.data(), s.size, xs, p, points);
      for (int i = 0; i < points; ++i) {
        hash.Add(xs[i]);
        hash.Add(p[i]);
      }
      HFREE(xs);
      HFREE(p);
    });
  });
}

}  // namespace

void RunGoldenStat(Report& report) {
  Construction(report);
  Order(report);
  Searches(report);
  ProbabilityFunctions(report);
  FloatTables(report);
}

}  // namespace tarn_golden
