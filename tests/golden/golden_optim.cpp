// Searches, the minimiser and the linear fit: every point that they evaluate, and what they return.

#include <memory>
#include <vector>

#include "golden_bits.h"
#include "tarn_base_math.h"

namespace tarn_golden {
namespace {

/// The hash to which the native functions below add their arguments.
Hash* points = nullptr;

Variable Native(void* function) {
  Variable value;
  value.SetCppPointer(function);
  return value;
}

// One variable ------------------------------------------------------------------------------------

/// A cubic with the coefficients of the extra parameter; they are the state of one search.
template <class T>
T Cubic(T x, void* extra) {
  const T* c = static_cast<const T*>(extra);
  points->Add(x);
  return ((c[3] * x + c[2]) * x + c[1]) * x + c[0];
}

double CubicOfMember(double x, void* extra) {
  return Cubic<double>(x, static_cast<Variable*>(extra)->GetCppPointer());
}

template <class T>
std::vector<T> Coefficients(Inputs& inputs) {
  std::vector<T> c;
  for (int i = 0; i < 4; ++i) c.push_back(static_cast<T>(inputs.Wide(-3, 3)));
  return c;
}

void OneVariable(Report& report) {
  report.Function("BiSection_Double", [](Hash& hash) {
    points = &hash;
    Inputs inputs(71);
    for (int i = 0; i < 400; ++i) {
      std::vector<double> c = Coefficients<double>(inputs);
      double ends[2] = {inputs.Wide(-2, 3), inputs.Wide(-2, 3)};
      Variable function = Native(reinterpret_cast<void*>(&Cubic<double>));
      BiSection_Double search(function, ends, 1e-12);
      search.SetExtraParam(c.data());
      hash.Add(search.Solve());
    }
  });
  report.Function("GoldSection_Double", [](Hash& hash) {
    points = &hash;
    Inputs inputs(72);
    for (int i = 0; i < 400; ++i) {
      std::vector<double> c = Coefficients<double>(inputs);
      double ends[2] = {inputs.Wide(-2, 3), inputs.Wide(-2, 3)};
      Variable function = Native(reinterpret_cast<void*>(&CubicOfMember));
      Variable extra = Native(c.data());
      GoldSection_Double search(function, ends, 1e-9);
      search.SetExtraParam(extra);
      hash.Add(search.Solve());
    }
  });
  report.Function("GoldSection,GoldSection_f", [](Hash& hash) {
    points = &hash;
    Inputs inputs(73);
    for (int i = 0; i < 400; ++i) {
      double ends[2] = {inputs.Wide(-2, 3), inputs.Wide(-2, 3)};
      float floatEnds[2] = {static_cast<float>(ends[0]), static_cast<float>(ends[1])};
      hash.Add(GoldSection(ends, Cubic<double>, Coefficients<double>(inputs).data(), 1e-9));
      hash.Add(GoldSection_f(floatEnds, Cubic<float>, Coefficients<float>(inputs).data(), 1e-5F));
    }
  });
}

// The minimiser -----------------------------------------------------------------------------------

/// A chain of curved valleys.
template <class T>
T Valleys(T_MatVector<T>& x, Variable* /*extra*/) {
  T sum = 0;
  for (int i = 0; i < x.Dim(); ++i) {
    points->Add(x[i]);
    const T away = x[i] - T(0.75);
    sum += away * away;
    if (i == 0) continue;
    const T bend = x[i] - x[i - 1] * x[i - 1];
    sum += 10 * bend * bend;
  }
  return sum;
}

template <class T>
T SlopeOfValleys(T_MatVector<T>& x, int i, Variable* /*extra*/) {
  T slope = 2 * (x[i] - T(0.75));
  if (i > 0) slope += 20 * (x[i] - x[i - 1] * x[i - 1]);
  if (i + 1 < x.Dim()) slope -= 40 * x[i] * (x[i + 1] - x[i] * x[i]);
  return slope;
}

/// A minimiser of the valleys with a box and a start of its own; every seventh variable is fixed.
template <class T>
std::unique_ptr<T_Climb<T>> MakeClimb(Inputs& inputs, int n) {
  std::vector<T> bounds;
  std::vector<T> start;
  for (int i = 0; i < n; ++i) {
    const double lo = -2 + inputs.Below(2);
    const double width = i % 7 == 6 ? 0 : 1 + inputs.Below(2);
    bounds.push_back(static_cast<T>(lo));
    bounds.push_back(static_cast<T>(lo) + static_cast<T>(width));
    start.push_back(static_cast<T>(lo + width * inputs.Unit()));
  }
  Variable function = Native(reinterpret_cast<void*>(&Valleys<T>));
  auto climb = std::make_unique<T_Climb<T>>(function, n, bounds.data(), start.data(),
                                            sizeof(T) == sizeof(float) ? T(1e-4) : T(1e-8));
  climb->SetMaxItterationNumber(6);
  climb->SetErrorIfMaxItterNumberExceed(0);
  return climb;
}

template <class T>
void AddVector(Hash& hash, const T_MatVector<T>& x) {
  for (int i = 0; i < x.Dim(); ++i) hash.Add(x[i]);
}

template <class T>
void AddMatrix(Hash& hash, T_Matrix<T>* matrix) {
  const std::unique_ptr<T_Matrix<T>> owned(matrix);
  for (int i = 0; matrix != nullptr && i < matrix->Y(); ++i) {
    for (int j = 0; j < matrix->X(); ++j) hash.Add((*matrix)(i, j));
  }
}

/// Runs `solve` under every kind of derivative and in several dimensions.
template <class T, class Solve>
void ForAllSettings(Hash& hash, std::uint64_t seed, Solve solve) {
  points = &hash;
  Inputs inputs(seed);
  for (const int n : {1, 2, 3, 5, 9, 20}) {
    for (int setting = 0; setting < 3; ++setting) {
      const auto climb = MakeClimb<T>(inputs, n);
      climb->SetSymmetricDerivative(setting == 1 ? 1 : 0);
      climb->SetLimitDirectionStep(setting == 1 ? 1 : 0);
      Variable slope = Native(reinterpret_cast<void*>(&SlopeOfValleys<T>));
      if (setting == 2) climb->SetDerivFunc(slope);
      solve(*climb);
      AddVector(hash, climb->GetResult());
      hash.Add(climb->GetEvaluationCount());
    }
  }
}

template <class T>
void Minimiser(Report& report, const std::string& type) {
  report.Function(type + "::SolveBFGS", [](Hash& hash) {
    ForAllSettings<T>(hash, 74, [](T_Climb<T>& climb) { climb.SolveBFGS(60); });
  });
  report.Function(type + "::SolveDFP", [](Hash& hash) {
    ForAllSettings<T>(hash, 75, [](T_Climb<T>& climb) { climb.SolveDFP(60); });
  });
  report.Function(type + "::SolvePowell", [](Hash& hash) {
    ForAllSettings<T>(hash, 76, [](T_Climb<T>& climb) { climb.SolvePowell(); });
  });
  report.Function(type + "::Solve", [](Hash& hash) {
    ForAllSettings<T>(hash, 77, [](T_Climb<T>& climb) { climb.Solve(20); });
  });
  report.Function(type + "::SolveByCoord", [](Hash& hash) {
    ForAllSettings<T>(hash, 78, [](T_Climb<T>& climb) {
      T_MatVectorCol<T> steps(climb.GetDimension());
      steps += T(0.1);
      climb.SolveByCoord(steps);
    });
  });
  report.Function(type + "::GetHessian,GetCovariationMatrix", [](Hash& hash) {
    ForAllSettings<T>(hash, 79, [&hash](T_Climb<T>& climb) {
      climb.SolvePowell(0);
      T_MatVectorCol<T> best(climb.GetResult());
      AddMatrix(hash, climb.GetHessian(best));
      AddMatrix(hash, climb.GetCovariationMatrix(best));
    });
  });
}

// The fit -----------------------------------------------------------------------------------------

template <class T>
T One(T, void*) {
  return T(1);
}
template <class T>
T Linear(T x, void*) {
  return x;
}
template <class T>
T Square(T x, void*) {
  return x * x;
}

template <class T>
void LinearFit(Report& report, const std::string& type) {
  report.Function(type + "::DoIt", [](Hash& hash) {
    Inputs inputs(80);
    for (int round = 0; round < 30; ++round) {
      std::vector<T> x;
      std::vector<T> y;
      std::vector<T> var;
      for (int i = 0; i < 25; ++i) {
        x.push_back(static_cast<T>(inputs.Below(4) - 2));
        y.push_back(1 - x.back() + static_cast<T>(inputs.Unit() - 0.5));
        if (i % 9 == 8) y.back() += 8;
        var.push_back(static_cast<T>(0.0625 + inputs.Below(0.0625)));
      }
      T (*basis[])(T, void*) = {One<T>, Linear<T>, Square<T>};
      for (int mode = 0; mode < 3; ++mode) {
        T_Line_LSQM2<T> fit(basis, 3, y.data(), x.data(), var.data(), 25, T(1e-4));
        fit.SetPrior(mode - 1);
        fit.DoIt(mode);
        for (int k = 0; k < 3; ++k) hash.Add(fit.GetA(k));
        for (const T value : {fit.GetChi2(), fit.GetResidue(), fit.GetLogProb()}) hash.Add(value);
        if (fit.GetCovariance() != nullptr) AddMatrix(hash, new T_Matrix<T>(*fit.GetCovariance()));
      }
    }
  });
}

}  // namespace

void RunGoldenOptim(Report& report) {
  OneVariable(report);
  Minimiser<double>(report, "T_Climb<double>");
  Minimiser<float>(report, "T_Climb<float>");
  LinearFit<double>(report, "T_Line_LSQM2<double>");
  LinearFit<float>(report, "T_Line_LSQM2<float>");
}

}  // namespace tarn_golden
