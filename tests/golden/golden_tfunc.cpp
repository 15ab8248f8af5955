// Tabulated functions: evaluation, arithmetic and integrals.

#include <algorithm>
#include <limits>
#include <memory>

#include "golden_bits.h"
#include "tarn_base_math.h"

namespace tarn_golden {
namespace {

constexpr int kSizes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 16, 17, 33, 100, 255, 1000};

enum class Kind { kUniform, kRandom, kTied, kShuffled, kWithNan, kCount };

double MakeAbscissa(Inputs& inputs, Kind kind, int i) {
  switch (kind) {
    case Kind::kUniform:
      return 0.5 * i - 2;
    case Kind::kTied:
      return static_cast<double>(inputs.Integer(-4, 40));
    case Kind::kWithNan:
      if (inputs.Integer(0, 9) == 0) return std::numeric_limits<double>::quiet_NaN();
      return i;
    case Kind::kRandom:
    case Kind::kShuffled:
    case Kind::kCount:
      break;
  }
  return inputs.Below(64) - 8;
}

TFunc MakeFunction(Inputs& inputs, Kind kind, int n, double height) {
  TFunc f(n);
  for (int i = 0; i < n; ++i) {
    f.X[i] = MakeAbscissa(inputs, kind, i);
    f.Y[i] = height * (inputs.Unit() - 0.5);
  }
  if (kind == Kind::kRandom || kind == Kind::kTied) std::sort(f.X, f.X + n);
  return f;
}

/// Calls `compute(f, inputs)` for functions of every kind and size.
template <class Compute>
void ForAllFunctions(std::uint64_t seed, double height, Compute compute) {
  Inputs inputs(seed);
  for (int kind = 0; kind < static_cast<int>(Kind::kCount); ++kind) {
    for (const int n : kSizes) {
      TFunc f = MakeFunction(inputs, static_cast<Kind>(kind), n, height);
      compute(f, inputs);
    }
  }
}

void AddPoints(Hash& hash, const TFunc& f) {
  for (int i = 0; i < f.N; ++i) {
    hash.Add(f.X[i]);
    hash.Add(f.Y[i]);
  }
}

void Evaluation(Report& report) {
  report.Function("TFunc::operator()", [](Hash& hash) {
    ForAllFunctions(31, 8, [&hash](TFunc& f, Inputs& inputs) {
      for (int i = 0; i < 500; ++i) hash.Add(f(inputs.Below(64) - 8));
      for (int i = -100; i < 700; ++i) hash.Add(f(0.1 * i));
    });
  });
  report.Function("TFunc::pos,Index", [](Hash& hash) {
    ForAllFunctions(32, 8, [&hash](TFunc& f, Inputs& inputs) {
      for (int i = 0; i < 200; ++i) {
        const double x = inputs.Below(64) - 8;
        hash.Add(f.pos(x));
        hash.Add(f.Index(x));
      }
    });
  });
  report.Function("TFunc::Zero", [](Hash& hash) {
    ForAllFunctions(33, 8, [&hash](TFunc& f, Inputs&) {
      const std::unique_ptr<T_MatVector<double>> roots(f.Zero());
      for (int i = 0; i < roots->Dim(); ++i) hash.Add((*roots)[i]);
    });
  });
  report.Function("TFunc::Max,Min", [](Hash& hash) {
    ForAllFunctions(34, 8, [&hash](TFunc& f, Inputs&) {
      double x = 0;
      double y = 0;
      f.Max(x, y);
      hash.Add(x);
      hash.Add(y);
      f.Min(x, y);
      hash.Add(x);
      hash.Add(y);
    });
  });
}

void Arithmetic(Report& report) {
  report.Function("TFunc::arithmetic", [](Hash& hash) {
    ForAllFunctions(35, 8, [&hash](TFunc& f, Inputs& inputs) {
      TFunc g = MakeFunction(inputs, Kind::kRandom, 50, 4);
      (((f += g) *= 3.0) -= 0.7) /= 1.1;
      (f *= g) /= g;
      f -= g;
      f.pow(2).Shift(9).ScaleX(0.3).LnX();
      AddPoints(hash, f);
      f.ExpX();
      AddPoints(hash, f);
    });
  });
}

void Integrals(Report& report) {
  report.Function("TFunc::Integral,IntegralSimpson", [](Hash& hash) {
    ForAllFunctions(36, 8, [&hash](TFunc& f, Inputs&) {
      AddPoints(hash, *std::unique_ptr<TFunc>(f.Integral()));
      AddPoints(hash, *std::unique_ptr<TFunc>(f.IntegralSimpson()));
    });
  });
  report.Function("TFunc::Integral,IntegralSimpson(a,b)", [](Hash& hash) {
    ForAllFunctions(37, 8, [&hash](TFunc& f, Inputs& inputs) {
      for (int i = 0; i < 100; ++i) {
        const double a = inputs.Below(64) - 8;
        const double b = inputs.Below(64) - 8;
        hash.Add(f.Integral(a, b));
        hash.Add(f.IntegralSimpson(a, b));
      }
    });
  });
  report.Function("TFunc::LogIntegralExp", [](Hash& hash) {
    for (const double height : {1e-14, 1e-6, 1.0, 60.0, 1e4}) {
      ForAllFunctions(38, height, [&hash](TFunc& f, Inputs&) { hash.Add(f.LogIntegralExp()); });
    }
  });
}

}  // namespace

void RunGoldenTFunc(Report& report) {
  Evaluation(report);
  Arithmetic(report);
  Integrals(report);
}

}  // namespace tarn_golden
