/// @file
/// "FitLine": coefficients of a linear combination of functions, by least squares or by likelihoods
/// that bear outliers.

#include <optim/line_lsqm2.h>

#include <cmath>
#include <new>
#include <numbers>
#include <utility>

#include "basis_table.h"
#include "callback.h"
#include "families.h"
#include "handler.h"
#include "likelihood.h"
#include "linear.h"
#include "matrix_solving.h"
#include "results.h"

namespace tarn::toolkit {
namespace {

using Fit = T_Line_LSQM2<double>;
using Basis = Fit::Basis;

constexpr int kMostTerms = 64;
const Names kBuiltinBases = {"powers", "cosines"};
enum BuiltinBasis { kPowers, kCosines };
const Names kModes = {"plain", "refined"};
enum Mode { kPlain, kRefined };
/// In the order of `ErrorPrior`.
const Names kPriors = {"inverse_square", "Jeffreys"};
constexpr double kDefaultAccuracy = 1e-7;

// The table of basis functions --------------------------------------------------------------------
//
// Every basis function is computed once per point. The class library then fits "functions" of the
// number of the point that look the value up.

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

void RequireEnoughPoints(int terms, std::size_t points) {
  if (points >= static_cast<std::size_t>(terms)) return;
  Refuse(CountText(terms, "basis function") + " cannot be told apart on " +
         CountText(static_cast<std::int64_t>(points), "point"));
}

BasisTable TabulateBuiltin(const Options& options, const Input& basis, const Numbers& x) {
  const int builtin = basis.Choice(kBuiltinBases);
  const int terms = options.Required("terms").Integer(1, kMostTerms);
  if (builtin != kCosines && options.Has("period")) Refuse("period goes with \"cosines\" only");
  RequireEnoughPoints(terms, x.size());
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
  RequireEnoughPoints(terms, x.size());
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
  for (const char* name : {"terms", "period"}) {
    if (options.Has(name)) Refuse(std::string(name) + " goes with a basis named by a text only");
  }
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
  Request request{std::move(x),
                  ReadPoints(options.Required("y"), count),
                  ReadVariances(options, count),
                  options.PositiveNumber("accuracy", kDefaultAccuracy),
                  ReadChoice(options, "mode", kModes),
                  ReadChoice(options, "prior", kPriors)};
  if (request.mode == kPlain && options.Has("prior"))
    Refuse("prior goes with the mode \"refined\"");
  return request;
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

Numbers CoefficientsOf(const Fit& fit, std::size_t terms) {
  Numbers coefficients;
  for (std::size_t k = 0; k < terms; ++k) coefficients.push_back(fit.GetA(static_cast<int>(k)));
  return coefficients;
}

/// What the covariance of the orthonormal functions' coefficients says of those of the functions as
/// they were.
void SetCovariance(Variable& record, const BasisTable& table, const DenseMatrix& covariance) {
  auto restored = table.Restored(covariance);
  Numbers errors;
  for (int k = 0; k < restored->X(); ++k) errors.push_back(std::sqrt((*restored)(k, k)));
  SetVector(Member(record, "errors"), errors);
  SetMatrix(Member(record, "covariance"), std::move(restored));
}

/// The fitted function at the points.
Numbers FittedValues(const Numbers& coefficients, const BasisTable& table, std::size_t points) {
  Numbers fitted(points, 0.0);
  for (std::size_t term = 0; term < table.Terms(); ++term) {
    for (std::size_t i = 0; i < points; ++i) fitted[i] += coefficients[term] * table.At(term, i);
  }
  return fitted;
}

Numbers ResidualsOf(const Request& request, const Numbers& fitted) {
  Numbers residuals;
  for (std::size_t i = 0; i < fitted.size(); ++i) residuals.push_back(request.y[i] - fitted[i]);
  return residuals;
}

/// The logarithm of a residue where it enters a probability; a perfect fit counts as a good one.
double LogOfResidue(double residue) { return std::log(residue > 0.0 ? residue : 1e-8); }

/// The probability of the model of the functions as they were. The class library has computed that
/// of the orthonormal ones, with a residue that is the difference of two large sums.
double PlainLogProbability(const Request& request, const Fit& fit, const BasisTable& table,
                           double residue) {
  const double freedom = static_cast<double>(request.x.size()) - 2.0;
  return fit.GetLogProb() + table.PlainLogGain() -
         freedom / 2.0 * (LogOfResidue(residue) - LogOfResidue(fit.GetResidue()));
}

/// The same after a refinement, by the class library's formula, whose covariance is twice the
/// inverse of the second derivatives; `logCurvature` is the logarithm of their determinant.
double RefinedLogProbability(const Request& request, const BasisTable& table, double residue,
                             double logCurvature) {
  double s1 = 0.0;
  for (std::size_t i = 0; i < request.y.size(); ++i) {
    s1 += request.y[i] * request.y[i] / request.variances[i];
  }
  const double half = static_cast<double>(table.Terms()) / 2.0;
  const double volume = half * std::log(2.0) - logCurvature / 2.0;
  return half * std::log(4.0 * std::numbers::pi) - residue / 2.0 + volume - half * std::log(s1) +
         table.WeightedLogGain();
}

double LogOfDeterminant(const DenseMatrix& cholesky) {
  double sum = 0.0;
  for (int k = 0; k < cholesky.X(); ++k) sum += 2.0 * std::log(cholesky(k, k));
  return sum;
}

/// Errors and probability of a refined fit; nothing where the likelihood has no peak.
void SetRefined(Variable& record, const Request& request, const BasisTable& table,
                const Numbers& residuals, double residue) {
  const auto hessian = LikelihoodHessian(table, residuals, request.variances, request.prior);
  const auto factor = FindCholesky(*hessian);
  const auto covariance = FindPositiveInverse(*hessian);
  if (factor == nullptr || covariance == nullptr) return;
  SetCovariance(record, table, *covariance);
  Member(record, "log_probability") =
      RefinedLogProbability(request, table, residue, LogOfDeterminant(*factor));
}

/// Errors and probability of a plain fit.
void SetPlain(Variable& record, const Request& request, const Fit& fit, const BasisTable& table,
              double residue) {
  const DenseMatrix* covariance = fit.GetCovariance();
  if (covariance == nullptr || covariance->X() != static_cast<int>(table.Terms())) {
    throw std::bad_alloc();
  }
  SetCovariance(record, table, *covariance);
  Member(record, "log_probability") = PlainLogProbability(request, fit, table, residue);
}

void SetResults(Variable& record, const Request& request, const Fit& fit, const BasisTable& table) {
  const Numbers coefficients = CoefficientsOf(fit, table.Terms());
  const Numbers fitted = FittedValues(coefficients, table, request.x.size());
  const Numbers residuals = ResidualsOf(request, fitted);
  double chi2 = 0.0;
  double residue = 0.0;
  for (std::size_t i = 0; i < residuals.size(); ++i) {
    chi2 += residuals[i] * residuals[i] / request.variances[i];
    residue += residuals[i] * residuals[i];
  }
  SetRecord(record);
  SetVector(Member(record, "coefficients"), table.Restored(coefficients));
  if (request.mode == kRefined) {
    SetRefined(record, request, table, residuals, residue);
  } else {
    SetPlain(record, request, fit, table, residue);
  }
  SetArray(Member(record, "fitted"), fitted);
  Member(record, "chi2") = chi2;
  Member(record, "degrees") = static_cast<std::int64_t>(request.x.size() - table.Terms());
  Member(record, "residue") = residue;
}

void FitLine(const Call& call) {
  const Options options(call.Argument(0), {"basis", "terms", "period", "x", "y", "variances",
                                           "mode", "prior", "accuracy"});
  Request request = ReadRequest(options);
  BasisTable table = Tabulate(options, request.x);
  RequireFiniteBasis(request, table);
  table.Orthonormalise(request.variances);

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
  SetResults(call.Result(), request, fit, table);
}

constexpr ScriptFunction kRows[] = {{Handler<FitLine>, "FitLine(options)"}};

}  // namespace

std::span<const ScriptFunction> FitLineRows() { return kRows; }

}  // namespace tarn::toolkit
