/// @file
/// "FitLine": coefficients of a linear combination of functions, by least squares or by likelihoods
/// that bear outliers.

#include <optim/line_lsqm2.h>

#include <cmath>
#include <numbers>
#include <utility>

#include "callback.h"
#include "families.h"
#include "handler.h"
#include "linear.h"
#include "results.h"

namespace tarn::toolkit {
namespace {

using Fit = T_Line_LSQM2<double>;
using Basis = Fit::Basis;

constexpr int kMostTerms = 64;
const Names kBuiltinBases = {"powers", "cosines"};
enum BuiltinBasis { kPowers, kCosines };
const Names kModes = {"plain", "refined"};
/// What a refined fit assumes of the true errors above the stated ones: that their density falls as
/// 1/s^2, or as 1/s.
const Names kPriors = {"inverse_square", "Jeffreys"};
constexpr double kDefaultAccuracy = 1e-7;

// The table of basis functions --------------------------------------------------------------------
//
// Every basis function is computed once per point. The class library then fits "functions" of the
// number of the point that look the value up.
//
// Each function is divided by its weighted norm over the points, which makes the diagonal of the
// normal matrix 1. The class library regularises a matrix whose determinant lies outside [1e-16,
// 1e16]; without the division small errors of the points would be enough for that.

/// Values of the basis functions at the points.
class BasisTable {
 public:
  BasisTable(std::size_t terms, std::size_t points)
      : points_(points), values_(terms * points), norms_(terms, 1.0) {}

  std::size_t Terms() const { return norms_.size(); }
  double& At(std::size_t term, std::size_t point) { return values_[term * points_ + point]; }
  double At(std::size_t term, std::size_t point) const { return values_[term * points_ + point]; }
  /// What the values of a term were divided by.
  double Norm(std::size_t term) const { return norms_[term]; }

  void Normalise(const Numbers& variances) {
    for (std::size_t term = 0; term < Terms(); ++term) {
      double squares = 0.0;
      for (std::size_t i = 0; i < points_; ++i) squares += At(term, i) * At(term, i) / variances[i];
      if (!(squares > 0.0 && std::isfinite(squares))) continue;
      norms_[term] = std::sqrt(squares);
      for (std::size_t i = 0; i < points_; ++i) At(term, i) /= norms_[term];
    }
  }

 private:
  std::size_t points_;
  Numbers values_;
  Numbers norms_;
};

/// Basis function `Term` at the point of that number.
template <std::size_t Term>
double LookUp(double point, void* table) {
  return static_cast<const BasisTable*>(table)->At(Term, static_cast<std::size_t>(point));
}

template <std::size_t... Terms>
void FillLookUps(Basis* basis, std::index_sequence<Terms...> /*terms*/) {
  ((basis[Terms] = &LookUp<Terms>), ...);
}

double BuiltinValue(int builtin, int term, double x, double period) {
  if (builtin == kPowers) return std::pow(x, term);
  return std::cos(2.0 * std::numbers::pi * term * x / period);
}

BasisTable TabulateBuiltin(const Options& options, const Input& basis, const Numbers& x) {
  const int builtin = basis.Choice(kBuiltinBases);
  const int terms = options.Required("terms").Integer(1, kMostTerms);
  const double period = options.PositiveNumber("period", 2.0 * std::numbers::pi);
  BasisTable table(static_cast<std::size_t>(terms), x.size());
  for (int term = 0; term < terms; ++term) {
    for (std::size_t i = 0; i < x.size(); ++i) {
      table.At(static_cast<std::size_t>(term), i) = BuiltinValue(builtin, term, x[i], period);
    }
  }
  return table;
}

BasisTable TabulateFunctions(const Input& basis, const Numbers& x) {
  const int terms = basis.Length(1);
  if (terms > kMostTerms)
    basis.Refuse("has more than " + std::to_string(kMostTerms) + " functions");
  std::vector<Callback> functions;
  functions.reserve(static_cast<std::size_t>(terms));
  for (int term = 0; term < terms; ++term) functions.emplace_back(basis.Element(term));
  BasisTable table(functions.size(), x.size());
  for (std::size_t term = 0; term < functions.size(); ++term) {
    for (std::size_t i = 0; i < x.size(); ++i) table.At(term, i) = functions[term].At(x[i]);
    functions[term].RequireSuccess();
  }
  return table;
}

BasisTable Tabulate(const Options& options, const Numbers& x) {
  const Input basis = options.Required("basis");
  if (basis.IsText()) return TabulateBuiltin(options, basis, x);
  if (!basis.IsArray()) basis.RefuseKind("an array of functions, \"powers\" or \"cosines\"");
  if (options.Has("terms")) Refuse("terms goes with a basis named by a text only");
  return TabulateFunctions(basis, x);
}

// Request -----------------------------------------------------------------------------------------

/// What the script asked for.
struct Request {
  Numbers x;
  Numbers y;
  Numbers variances;
  double accuracy;
  int mode;
  int prior;
};

/// One of two, by its name or its number; the first one where nothing is given.
int ReadChoice(const Options& options, const char* name, Names names) {
  const auto given = options.Find(name);
  if (!given) return 0;
  return given->IsNumber() ? given->Integer(0, 1) : given->Choice(names);
}

/// Finite, as many as the points.
Numbers ReadPoints(const Input& input, std::size_t count) {
  Numbers numbers = input.FiniteArray();
  if (numbers.size() == count) return numbers;
  input.Refuse("has " + CountText(static_cast<std::int64_t>(numbers.size()), "element") +
               ", but x has " + std::to_string(count));
}

/// 1 for every point where none are given.
Numbers ReadVariances(const Options& options, std::size_t count) {
  const auto given = options.Find("variances");
  if (!given) return Numbers(count, 1.0);
  Numbers variances = ReadPoints(*given, count);
  for (std::size_t i = 0; i < count; ++i) {
    if (!(variances[i] > 0.0)) given->Element(static_cast<int>(i)).RefuseKind("above 0");
  }
  return variances;
}

Request ReadRequest(const Options& options) {
  Numbers x = options.Required("x").FiniteArray(1);
  const std::size_t count = x.size();
  return {std::move(x),
          ReadPoints(options.Required("y"), count),
          ReadVariances(options, count),
          options.PositiveNumber("accuracy", kDefaultAccuracy),
          ReadChoice(options, "mode", kModes),
          ReadChoice(options, "prior", kPriors)};
}

void RequireEnoughPoints(const Request& request, const BasisTable& table) {
  if (request.x.size() >= table.Terms()) return;
  Refuse(CountText(static_cast<std::int64_t>(table.Terms()), "basis function") +
         " cannot be told " + "apart on " +
         CountText(static_cast<std::int64_t>(request.x.size()), "point"));
}

void RequireFiniteBasis(const Request& request, const BasisTable& table) {
  for (std::size_t term = 0; term < table.Terms(); ++term) {
    for (std::size_t i = 0; i < request.x.size(); ++i) {
      if (std::isfinite(table.At(term, i))) continue;
      Refuse("basis[" + std::to_string(term + 1) + "] is " + NumberText(table.At(term, i)) +
             " at x = " + NumberText(request.x[i]));
    }
  }
}

// Results -----------------------------------------------------------------------------------------

void SetCoefficients(Variable& record, const Fit& fit, const BasisTable& table) {
  const T_Matrix<double>* scaled = fit.GetCovariance();
  RequireSuccess(scaled != nullptr && scaled->X() == static_cast<int>(table.Terms()));
  const int terms = static_cast<int>(table.Terms());
  Numbers coefficients;
  Numbers errors;
  auto covariance = MakeMatrix(terms, terms);
  for (int i = 0; i < terms; ++i) {
    const double norm = table.Norm(static_cast<std::size_t>(i));
    for (int j = 0; j < terms; ++j) {
      (*covariance)[i][j] = (*scaled)[i][j] / norm / table.Norm(static_cast<std::size_t>(j));
    }
    coefficients.push_back(fit.GetA(i) / norm);
    errors.push_back(std::sqrt((*covariance)[i][i]));
  }
  SetVector(Member(record, "coefficients"), coefficients);
  SetVector(Member(record, "errors"), errors);
  SetMatrix(Member(record, "covariance"), std::move(covariance));
}

/// The fitted function at the points.
Numbers FittedValues(const Fit& fit, const BasisTable& table, std::size_t points) {
  Numbers fitted(points, 0.0);
  for (std::size_t term = 0; term < table.Terms(); ++term) {
    for (std::size_t i = 0; i < points; ++i) {
      fitted[i] += fit.GetA(static_cast<int>(term)) * table.At(term, i);
    }
  }
  return fitted;
}

void FitLine(const Call& call) {
  const Options options(call.Argument(0), {"basis", "terms", "period", "x", "y", "variances",
                                           "mode", "prior", "accuracy"});
  Request request = ReadRequest(options);
  BasisTable table = Tabulate(options, request.x);
  RequireEnoughPoints(request, table);
  RequireFiniteBasis(request, table);
  table.Normalise(request.variances);

  Basis basis[kMostTerms];
  FillLookUps(basis, std::make_index_sequence<kMostTerms>());
  Numbers places(request.x.size());
  for (std::size_t i = 0; i < places.size(); ++i) places[i] = static_cast<double>(i);
  Fit fit(basis, static_cast<int>(table.Terms()), request.y.data(), places.data(),
          request.variances.data(), static_cast<int>(places.size()), request.accuracy);
  fit.SetExtraParam(&table);
  fit.SetPrior(request.prior);
  fit.DoIt(request.mode);
  RequireSuccess();

  Variable& record = call.Result();
  SetRecord(record);
  SetCoefficients(record, fit, table);
  SetArray(Member(record, "fitted"), FittedValues(fit, table, places.size()));
  Member(record, "chi2") = fit.GetChi2();
  Member(record, "degrees") = static_cast<std::int64_t>(places.size() - table.Terms());
  Member(record, "residue") = fit.GetResidue();
  Member(record, "log_probability") = fit.GetLogProb();
}

constexpr ScriptFunction kRows[] = {{Handler<FitLine>, "FitLine(options)"}};

}  // namespace

std::span<const ScriptFunction> FitLineRows() { return kRows; }

}  // namespace tarn::toolkit
